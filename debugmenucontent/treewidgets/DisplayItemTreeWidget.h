#pragma once

#include <debugmenucontent/DebugMenuContentExport.h>

#include <QPersistentModelIndex>
#include <QTreeWidget>

#include <memory>

class QAction;
class QHelpEvent;

namespace Brennvik {

class DisplayItemInterface;
class DisplayItemTreeWidgetItem;
class TreeViewContextMenu;
struct RowState;

/// The tree widget in which the 3D dialogs show display item rows.
///
/// Adds a right-click menu that acts on the display item under the mouse
/// (select/deselect, delete, hide or show the whole subtree), tool tips that
/// tell a row's visibility and selection, and conversions between rows and
/// their depth-first position, with which two trees of the same shape (a
/// model and its clone) are kept in step.
class BRENNVIK_DEBUGMENU_EXPORT DisplayItemTreeWidget : public QTreeWidget
{
    Q_OBJECT
public:
    /// \a withDisplayItemActions false makes a tree whose context menu holds
    /// only the widget kit's own entries (the cloned tree of a comparison).
    /// The default lets a form create the tree with the display item actions.
    DisplayItemTreeWidget(QWidget* parent, bool withDisplayItemActions = true);
    ~DisplayItemTreeWidget() override;

    /// The row's position in a pre-order walk over all rows; -1 for null.
    int getDFSIndex(const QTreeWidgetItem* item) const;
    /// The row at a pre-order position; null when out of range.
    QTreeWidgetItem* itemFromDFSIndex(int index) const;
    /// The column-0 model index of the row at a pre-order position.
    QModelIndex indexFromDFSIndex(int index);

    QModelIndex getModelIndexFromItem(const QTreeWidgetItem* item, int column);
    QTreeWidgetItem* getItemFromModelIndex(const QModelIndex& index) const;

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    /// Answers a tool tip over a display item row with its item's state, asked
    /// of the host there and then: rows are many, and none keeps a tool tip.
    bool viewportEvent(QEvent* event) override;

private:
    void onSelectDisplayItem();
    void onDeleteDisplayItem();
    void onMakeAllSubtreeItemsInvisible();
    void onMakeAllSubtreeItemsVisible();
    void setSubtreeVisible(bool visible);
    void appendSelectAction(TreeViewContextMenu& menu);
    void showRowToolTip(DisplayItemTreeWidgetItem* row, const QHelpEvent& event);
    static QString rowToolTipText(const RowState& state);
    DisplayItemTreeWidgetItem* contextItem() const;
    // The item of the menu's row; empty when the row or its item is gone.
    std::shared_ptr<DisplayItemInterface> contextDisplayItem() const;

    QAction* m_selectAction;
    QAction* m_deleteAction;
    QAction* m_makeInvisibleAction;
    QAction* m_makeVisibleAction;
    DisplayItemTreeWidgetItem* m_contextItem;
    // Tells whether m_contextItem still exists: the host may remove its row
    // while the menu is open.
    QPersistentModelIndex m_contextIndex;
};

} // namespace Brennvik
