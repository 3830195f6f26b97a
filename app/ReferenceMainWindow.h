#pragma once

#include <QMainWindow>

#include <memory>

namespace Brennvik {

class DisplayItemTreeWidget;
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

private:
    void rebuildTree();
    void updateStatus();

    std::shared_ptr<SceneViewModel> m_viewModel;
    DisplayItemTreeWidget* m_tree;
    quint64 m_shownItemCount = 0;
};

} // namespace Brennvik
