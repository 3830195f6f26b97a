#pragma once

#include <debugmenucontent/DebugMenuContentExport.h>

#include "ui_DisplayModelDialog.h"

#include <QDialog>
#include <QList>
#include <QPair>
#include <QSize>
#include <QString>

#include <list>
#include <memory>
#include <optional>
#include <set>

class QCloseEvent;
class QHBoxLayout;
class QLabel;
class QLayout;
class QTreeWidget;
class QTreeWidgetItem;
class QVBoxLayout;

namespace Brennvik {

class DisplayItemInterface;
class DisplayModel;
class DisplayItemTreeWidget;
class DisplayItemTreeWidgetItem;
class DrawAreaPresenter;
class EditModelTreeWidgetItem;
class ExpandPathWalk;
class NoMatchMark;
class ViewModelInterface;

/// The debugging dialog of the 3D display model.
///
/// Shows the display model of a view model as a tree, one row per display
/// item, keeps that tree in step with the model's events, and prints the
/// properties of the current row. In clone mode ("Clone") it also shows a
/// fresh clone of the view model beside the original, marks the cloned rows
/// and property values that differ, and mirrors expansion and the current
/// row between the two trees. The dialog owns nothing of the model: rows hold
/// their items weakly, and whatever has gone is skipped.
class BRENNVIK_DEBUGMENU_EXPORT DisplayModelDialog : public QDialog, public Ui::DisplayModelDialogClass
{
public:
    explicit DisplayModelDialog(QWidget* parent);
    ~DisplayModelDialog() override;

    /// Shows the display model of \a viewModel; an empty reference empties
    /// the tree and disables the dialog.
    void setViewModel(std::shared_ptr<ViewModelInterface> viewModel);
    /// The draw area that clone mode drives; not owned, may be null.
    void setDrawAreaPresenter(DrawAreaPresenter* drawAreaPresenter);
    /// Also hands the draw area back its view model when clone mode drew the clone.
    void setVisible(bool visible) override;

    /// Selects every row of \a item (in the cloned tree if \a inClonedTree),
    /// makes the last of them current, expands or collapses them, and expands
    /// the top row in any case.
    void navigateToInitialEntry(std::shared_ptr<DisplayItemInterface> item, bool inClonedTree, bool expand);

    /// Called by a row when its item got a child: the child's subtree is
    /// appended under the row.
    void displayItemAdded(DisplayItemTreeWidgetItem* parentRow, std::shared_ptr<DisplayItemInterface> item);
    /// Called by a row when its item's properties changed.
    void displayItemModified(DisplayItemTreeWidgetItem* row);
    /// Called by an edit-model row after it changed its primitive.
    void displayItemModified(EditModelTreeWidgetItem* row);
    /// Called by a row when children of its item were removed: one row per
    /// item goes, the first that shows it.
    void displayItemsRemoved(DisplayItemTreeWidgetItem* parentRow,
                             std::set<std::shared_ptr<DisplayItemInterface>> items);

    /// Walks down from \a item along m_expandPath, from \a entry (an element
    /// of it, the top-level end) towards its head, and makes current the row
    /// of \a item's tree that the path names. Rows correspond when their
    /// positions among their siblings and their column-0 texts are equal.
    void processItem(QTreeWidgetItem* item, int level, const QPair<int, QString>* entry);
    /// The same walk as processItem; expands (or collapses) the row that the
    /// path names instead, when it has children.
    void expandCollapseItem(QTreeWidgetItem* item, int level, const QPair<int, QString>* entry, bool expand);

protected:
    /// Closing only hides the dialog.
    void closeEvent(QCloseEvent* event) override;

private:
    // Lets the tests reach the expansion path, the compare flag and the clone-mode members.
    friend class DisplayModelDialogTestAccess;

    void clearLayout(QLayout* layout);

    void rebuildTree(bool cloneOnly);
    // The build steps of one rebuild. A host may hand the dialog a view model
    // inside their calls: the rebuild that this starts replaces the tree, and
    // the outer one stops where it is (false).
    bool buildOriginalTree(DisplayModel& displayModel, const std::shared_ptr<DisplayItemInterface>& root,
                           quint64 rebuild);
    void buildClonedTree(quint64 rebuild);
    /// Builds \a root's rows under \a topRow with the row out of \a tree;
    /// deletes them and gives false when another rebuild began meanwhile.
    bool buildDetached(QTreeWidget* tree, DisplayItemTreeWidgetItem* topRow,
                       const std::shared_ptr<DisplayItemInterface>& root, quint64 rebuild);
    bool rebuiltSince(quint64 rebuild) const { return m_rebuilds != rebuild; }
    void buildTreeRecursively(DisplayItemTreeWidgetItem* parentRow, std::shared_ptr<DisplayItemInterface> item,
                              bool geometrySeen, bool duplicate);
    void addChildRecursively(DisplayItemTreeWidgetItem* parentRow, std::shared_ptr<DisplayItemInterface> item,
                             bool duplicate);
    void displayItemsModified(const std::list<std::shared_ptr<DisplayItemInterface>>& items);

    void printProperties(const QTreeWidgetItem* item);
    bool compareProperties(const DisplayItemTreeWidgetItem* original, const DisplayItemTreeWidgetItem* cloned);

    void createClonedWidgets();
    void removeClonedWidgets();
    void printClonedProperties(const QTreeWidgetItem* clonedRow);
    void compareRecursiveTree(DisplayItemTreeWidgetItem* original, DisplayItemTreeWidgetItem* cloned,
                              QTreeWidgetItem* clonedParent);
    void paintFalseClonedItem(DisplayItemTreeWidgetItem* row);
    void syncExpandedTreeItems(DisplayItemTreeWidget* target, QTreeWidgetItem* source);
    void syncTreeItemsForExpandingCollapsing(DisplayItemTreeWidget* target, QTreeWidgetItem* source, bool expand);
    // The walks along m_expandPath; a row made current at the source's
    // position under another text has its properties compared.
    ExpandPathWalk expandPathWalk();
    void compareMirroredRow(QTreeWidgetItem* row);

    void onCurrentTreeWidgetItemChanged(QTreeWidgetItem* current);
    void onTreeWidgetItemDoubleClicked(QTreeWidgetItem* item, int column);
    void onDisplayItemCountClicked();
    void onFindDisplayItemClicked();
    void onUseCloneStateChanged(int state);
    void onShowClone3dStateChanged(int state);
    void onPropertyCompareModeChanged(int state);
    void onCurrentClonedTreeWidgetItemChanged(QTreeWidgetItem* current);
    void setOrigExpanded(QTreeWidgetItem* item);
    void setOrigCollapsed(QTreeWidgetItem* item);
    void setClonedExpanded(QTreeWidgetItem* item);
    void setClonedCollapsed(QTreeWidgetItem* item);

    std::shared_ptr<ViewModelInterface> m_viewModel;
    bool m_useClone;
    bool m_showCloneIn3d;
    DrawAreaPresenter* m_drawAreaPresenter;
    std::shared_ptr<ViewModelInterface> m_clonedViewModel;
    DisplayItemTreeWidget* m_clonedDisplayItemTreeWidget;
    DisplayItemTreeWidgetItem* m_clonedTopRow;
    QVBoxLayout* m_vl_clonedProperties;
    QHBoxLayout* m_hl_cloned_business_props;
    QHBoxLayout* m_hl_cloned_display_props;
    QLabel* m_lbl_cloned_business_obj_props;
    QLabel* m_lbl_cloned_display_props;
    QTreeWidget* m_clonedBusinessObjectProperties;
    QTreeWidget* m_clonedDisplayItemProperties;
    QList<QPair<int, QString>> m_expandPath;
    bool m_onlyCompareMirrored;
    bool m_syncingCurrentItem;
    // Counts the rows removed and the rebuilds, so that a walk that asks the
    // host along the way can tell whether the rows it stands on may have gone.
    quint64 m_rowRemovals;
    // Counts the rebuilds, so that a rebuild can tell that a newer one has
    // replaced what it was building.
    quint64 m_rebuilds;
    // Shows on the search field that the last find found nothing further.
    NoMatchMark* m_noMatchMark;
    // The size clone mode widened the dialog from; given back when it ends.
    std::optional<QSize> m_sizeBeforeCloneMode;
};

} // namespace Brennvik
