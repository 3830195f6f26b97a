#pragma once

#include <QList>
#include <QMainWindow>

#include <memory>

namespace Brennvik {

class DisplayItemTreeWidget;
class DisplayModelDialog;
class SceneDrawAreaPresenter;
class SceneView3D;
class SceneViewModel;
class ViewModelInterface;

/// Main window of the reference application: the display model of the
/// sample part and process as a live tree beside the 3D view that draws it.
class ReferenceMainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit ReferenceMainWindow(std::shared_ptr<SceneViewModel> viewModel, QWidget* parent = nullptr);
    ~ReferenceMainWindow() override;

    DisplayItemTreeWidget* displayItemTree() const { return m_tree; }
    SceneView3D* sceneView() const { return m_sceneView; }
    SceneDrawAreaPresenter* drawAreaPresenter() const { return m_drawAreaPresenter.get(); }

    /// Opens the display model dialog of the Debug menu (made on first use).
    DisplayModelDialog* openDisplayModelDialog();
    /// The dialogs of the Debug menu that are open now.
    QList<QWidget*> openDialogs() const;

private:
    void rebuildTree();
    void updateStatus();
    void onModelUpdated();
    void showInSceneView(const std::shared_ptr<ViewModelInterface>& viewModel);

    std::shared_ptr<SceneViewModel> m_viewModel;
    std::unique_ptr<SceneDrawAreaPresenter> m_drawAreaPresenter;
    DisplayItemTreeWidget* m_tree;
    SceneView3D* m_sceneView;
    // A view model other than ours that the draw area was handed (a clone):
    // its updates repaint the 3D view while it is shown.
    std::weak_ptr<SceneViewModel> m_foreignViewModel;
    DisplayModelDialog* m_displayModelDialog = nullptr;
    quint64 m_shownItemCount = 0;
};

} // namespace Brennvik
