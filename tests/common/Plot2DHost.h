#pragma once

#include <hostcontract/MainWindowPresenter.h>
#include <hostcontract/Vector.h>
#include <hostcontract/ViewBase.h>

#include <QPoint>
#include <QWidget>

#include <memory>
#include <string>
#include <vector>

namespace Brennvik {
class BkHQWidget2D;
class DisplayItem2D;
class DisplayModel2D;
class GenericPlotManager;
class PlotDescription;
class PlotLabelItem;
class SceneViewModel;
} // namespace Brennvik

namespace Brennvik::Test {

/// A host application's 2D side for tests: a main window presenter whose left
/// process designer holds plot widgets placed on a frameless top-level
/// window at the screen's origin, and a 3D view model whose view widget sits
/// on that window too and whose label model holds plot labels.
///
/// The view's projection is the default one: world (x, y, z) lands on the
/// view widget's pixel (x, -y).
class Plot2DHost
{
public:
    Plot2DHost();
    ~Plot2DHost();

    /// Shows the window; plot widgets count as visible only then.
    void show();

    /// A plot widget at \a pos (window coordinates, which are global ones)
    /// drawing a model whose root is \a root (none when empty). \a inDesigner:
    /// registered with the left process designer.
    BkHQWidget2D* addPlot(const QPoint& pos, std::shared_ptr<DisplayItem2D> root, bool inDesigner = true);
    /// The display model a plot widget of this host draws.
    static DisplayModel2D* modelOf(const BkHQWidget2D* plot);

    /// A plot label under the label model's root, at world point \a anchor,
    /// standing for a plot with \a root (no description when \a withDescription is false).
    std::shared_ptr<PlotLabelItem> addLabel(const std::string& name, const Vector<float, 3>& anchor,
                                            std::shared_ptr<DisplayItem2D> root, bool withDescription = true);
    /// The display model a label of this host stands for; null without description.
    static DisplayModel2D* modelOf(const PlotLabelItem& label);

    MainWindowPresenter& presenter() { return m_presenter; }
    QWidget& window() { return *m_window; }
    QWidget& viewWidget() { return *m_viewWidget; }
    ViewBase& view() { return m_view; }
    const std::shared_ptr<SceneViewModel>& viewModel() const { return m_viewModel; }

private:
    MainWindowPresenter m_presenter;
    std::unique_ptr<QWidget> m_window;
    QWidget* m_viewWidget;
    ViewBase m_view;
    std::shared_ptr<SceneViewModel> m_viewModel;
    std::vector<std::unique_ptr<GenericPlotManager>> m_managers;
    std::vector<std::shared_ptr<DisplayModel2D>> m_labelModels;
};

} // namespace Brennvik::Test
