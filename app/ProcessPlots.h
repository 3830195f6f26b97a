#pragma once

#include <QCoreApplication>

#include <QString>

#include <memory>
#include <vector>

class QWidget;

namespace Brennvik {

class BkHQWidget2D;
class DisplayItem;
class GenericPlotManager;
class PlotDescription;
class SceneViewModel;

/// The 2D plots of the sample job: process curves drawn beside the 3D view
/// and material curves of the material generator window, each with its own
/// display model, and the plot labels in the 3D view that lead to them.
class ProcessPlots
{
    Q_DECLARE_TR_FUNCTIONS(Brennvik::ProcessPlots)

public:
    ProcessPlots();
    ~ProcessPlots();
    ProcessPlots(const ProcessPlots&) = delete;
    ProcessPlots& operator=(const ProcessPlots&) = delete;

    /// Plot widgets of the process curves (force and blank holder force over
    /// stroke), children of \a parent.
    std::vector<BkHQWidget2D*> createProcessPlotWidgets(QWidget* parent) const;
    /// The material generator window with its plots (flow curve, forming
    /// limit curve); a top-level window owned by the caller.
    QWidget* createMaterialGeneratorWindow() const;

    /// Puts one plot label per plot into \a viewModel's label display model,
    /// anchored at points of the 3D view's world.
    void addPlotLabels(SceneViewModel& viewModel) const;

    int plotCount() const;
    GenericPlotManager* plot(int index) const;

private:
    struct Plot
    {
        std::unique_ptr<GenericPlotManager> manager;
        std::shared_ptr<PlotDescription> description;
        QString title;
        bool process = true;
        float anchorX = 0.0f;
        float anchorY = 0.0f;
    };
    std::vector<Plot> m_plots;
};

} // namespace Brennvik
