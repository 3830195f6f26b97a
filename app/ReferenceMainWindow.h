#pragma once

#include "WindowPlacement.h"

#include <QList>
#include <QMainWindow>
#include <QPointer>

#include <memory>

class QSettings;

namespace Brennvik {

class DebugCloneDisplayModelDialog;
class DisplayItemTreeWidget;
class DisplayModel2DDialog;
class DisplayModelDialog;
class LazyDisplayItemRows;
class MainWindowPresenter;
class ProcessPlots;
class ViewBase;
class SceneDrawAreaPresenter;
class SceneView3D;
class SceneViewModel;
class ViewModelInterface;

/// Main window of the reference application: the display model of the
/// sample part and process as a live tree beside the 3D view that draws it,
/// the process plots below the view, a material generator window with more
/// plots, and the debug dialogs in the Debug menu.
class ReferenceMainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit ReferenceMainWindow(std::shared_ptr<SceneViewModel> viewModel, QWidget* parent = nullptr);
    ~ReferenceMainWindow() override;

    DisplayItemTreeWidget* displayItemTree() const { return m_tree; }
    SceneView3D* sceneView() const { return m_sceneView; }
    SceneDrawAreaPresenter* drawAreaPresenter() const { return m_drawAreaPresenter.get(); }
    MainWindowPresenter* mainWindowPresenter() const { return m_mainWindowPresenter.get(); }
    QWidget* materialGeneratorWindow() const { return m_materialGenerator; }

    /// Opens the display model dialog of the Debug menu (made on first use).
    DisplayModelDialog* openDisplayModelDialog();
    /// Opens a new clone comparison dialog (a one-shot check of a fresh clone).
    DebugCloneDisplayModelDialog* openCloneComparisonDialog();
    /// Opens the 2D display model dialog of the Debug menu (made on first use).
    DisplayModel2DDialog* openDisplayModel2DDialog();
    /// Keeps the placement of the windows in \a settings (not owned; null, as
    /// at first: nothing is read or written). To be set before the window shows.
    void setSettings(QSettings* settings);

    /// The dialogs of the Debug menu that are open now.
    QList<QWidget*> openDialogs() const;

    /// Imports the 3D scene file at \a path and shows it instead of the
    /// model shown now. A file that cannot be imported leaves the model as it
    /// is and shows the reason in a message box; the reason is also returned
    /// (empty on success).
    QString openSceneFile(const QString& path);
    /// Shows \a viewModel instead of the model shown now. The display model
    /// and clone comparison dialogs are closed: they showed the old model.
    void showViewModel(std::shared_ptr<SceneViewModel> viewModel);
    /// File > Open...: a file dialog listing the formats of scene files.
    QWidget* openSceneFileDialog();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    /// A scene file dropped on the window is opened.
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void createMenus();
    void createDebugMenu();
    void rememberPlacement() const;
    void rebuildTree();
    void updateStatus();
    void onModelUpdated();
    void showInSceneView(const std::shared_ptr<ViewModelInterface>& viewModel);
    void attachViewModel();
    void detachViewModel();

    std::shared_ptr<SceneViewModel> m_viewModel;
    std::unique_ptr<SceneDrawAreaPresenter> m_drawAreaPresenter;
    std::unique_ptr<MainWindowPresenter> m_mainWindowPresenter;
    std::unique_ptr<ProcessPlots> m_plots;
    std::unique_ptr<ViewBase> m_view;
    DisplayItemTreeWidget* m_tree;
    LazyDisplayItemRows* m_rows;
    SceneView3D* m_sceneView;
    // A view model other than ours that the draw area was handed (a clone):
    // its updates repaint the 3D view while it is shown.
    std::weak_ptr<SceneViewModel> m_foreignViewModel;
    DisplayModelDialog* m_displayModelDialog = nullptr;
    DisplayModel2DDialog* m_displayModel2DDialog = nullptr;
    QPointer<DebugCloneDisplayModelDialog> m_cloneComparisonDialog;
    QPointer<QWidget> m_materialGenerator;
    quint64 m_shownItemCount = 0;
    WindowPlacement m_placement;
    bool m_placed = false;
};

} // namespace Brennvik
