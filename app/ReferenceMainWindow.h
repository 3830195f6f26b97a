#pragma once

#include <QList>
#include <QMainWindow>

#include <memory>

namespace Brennvik {

class DisplayItemTreeWidget;
class DisplayModelDialog;
class SceneDrawAreaPresenter;
class SceneViewModel;

/// Main window of the reference application: the display model of the
/// sample part and process as a live tree.
class ReferenceMainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit ReferenceMainWindow(std::shared_ptr<SceneViewModel> viewModel, QWidget* parent = nullptr);
    ~ReferenceMainWindow() override;

    DisplayItemTreeWidget* displayItemTree() const { return m_tree; }

    /// Opens the display model dialog of the Debug menu (made on first use).
    DisplayModelDialog* openDisplayModelDialog();
    /// The dialogs of the Debug menu that are open now.
    QList<QWidget*> openDialogs() const;

private:
    void rebuildTree();
    void updateStatus();

    std::shared_ptr<SceneViewModel> m_viewModel;
    std::unique_ptr<SceneDrawAreaPresenter> m_drawAreaPresenter;
    DisplayItemTreeWidget* m_tree;
    DisplayModelDialog* m_displayModelDialog = nullptr;
    quint64 m_shownItemCount = 0;
};

} // namespace Brennvik
