#pragma once

#include <debugmenucontent/DebugMenuContentExport.h>

#include <hostcontract/DisplayItemEventObserver.h>

#include <QTreeWidgetItem>

#include <memory>

class QIcon;

namespace Brennvik {

class ChildRowIndex;
class DisplayItemInterface;
class DisplayModelDialog;

/// One tree row that stands for one display item.
///
/// The row observes its item: it refreshes its visibility icon on the item's
/// events and passes structural and property changes on to its dialog, so
/// that the tree follows the live display model. It holds the item weakly:
/// a row never keeps a removed item alive, and every operation on a gone
/// item does nothing.
class BRENNVIK_DEBUGMENU_EXPORT DisplayItemTreeWidgetItem : public QTreeWidgetItem, public DisplayItemEventObserver
{
public:
    /// A top-level row of \a parent. \a dialog receives the row's model events; may be null.
    DisplayItemTreeWidgetItem(QTreeWidget* parent, std::shared_ptr<DisplayItemInterface> displayItem,
                              DisplayModelDialog* dialog, bool isDuplicate);
    /// A row appended as the last child of \a parent.
    DisplayItemTreeWidgetItem(QTreeWidgetItem* parent, std::shared_ptr<DisplayItemInterface> displayItem,
                              DisplayModelDialog* dialog, bool isDuplicate);
    /// Tag of the constructors that ask the host nothing: showItem() does that.
    struct ShownLater
    {
    };
    /// A top-level row of \a parent that holds its item but neither shows nor observes it yet.
    DisplayItemTreeWidgetItem(QTreeWidget* parent, std::shared_ptr<DisplayItemInterface> displayItem,
                              DisplayModelDialog* dialog, bool isDuplicate, ShownLater);
    /// A last child of \a parent that holds its item but neither shows nor observes it yet.
    DisplayItemTreeWidgetItem(QTreeWidgetItem* parent, std::shared_ptr<DisplayItemInterface> displayItem,
                              DisplayModelDialog* dialog, bool isDuplicate, ShownLater);
    /// Member-wise copy; the copy does not register with the item itself.
    DisplayItemTreeWidgetItem(const DisplayItemTreeWidgetItem& other);
    DisplayItemTreeWidgetItem& operator=(const DisplayItemTreeWidgetItem& other);
    ~DisplayItemTreeWidgetItem() override;

    /// Shows the item (icon and text) and starts observing it, as the other
    /// constructors do. Each step asks the host, whose events may delete this
    /// row; the row is then left alone. Returns whether the row still exists.
    bool showItem();

    /// The row's display item; empty when it no longer exists.
    std::shared_ptr<DisplayItemInterface> getDisplayItem();

    /// \a row as a display item row; null when it is another kind of row.
    static DisplayItemTreeWidgetItem* asDisplayItemRow(QTreeWidgetItem* row);
    /// Whether the row shows \a item (the same object). Cheaper than
    /// comparing getDisplayItem(), which locks the row's reference.
    bool showsDisplayItem(const std::shared_ptr<DisplayItemInterface>& item) const;
    /// Takes the first direct child row that shows \a item out of this row
    /// and returns it (the caller owns it); null when none does. A row with
    /// many children keeps an index of them, so that a run of removals does
    /// not scan all the siblings each time.
    QTreeWidgetItem* takeFirstChildShowing(const std::shared_ptr<DisplayItemInterface>& item);
    /// The row's position among the children of its parent item; -1 until set.
    int getItemIndex();
    /// Stores the position; the row's text does not change.
    void setItemIndex(int itemIndex);

    /// The row shows an item that the tree also shows in its proper place.
    bool isDuplicate() const;

    /// The row's visibility differs from its counterpart in a compared model.
    bool isDifferentVisibility() const;
    /// Sets the difference mark and refreshes the icon at once.
    void setDifferentVisibility(bool different);

    /// Flips the item's selection when it is selectable and notifies the item.
    void toggleSelection();
    /// Flips the item's visibility and notifies the item. The icon follows
    /// when the host reports the change.
    void toggleVisibility();
    /// Expands this row and, recursively, its display item rows.
    void expandAll();

    void onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item) override;
    void onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item) override;
    void onDisplayItemsAddedEvent(const std::vector<std::shared_ptr<DisplayItemInterface>>& items) override;
    void onDisplayItemsRemovedEvent(const std::set<std::shared_ptr<DisplayItemInterface>>& items) override;

    /// Data role of column 0 that holds the "different visibility" mark.
    static constexpr int DifferentVisibilityRole = Qt::UserRole + 300;

private:
    /// What the constructors do once the row is in its tree: takes the row's data.
    void init(const std::shared_ptr<DisplayItemInterface>& displayItem, DisplayModelDialog* dialog, bool isDuplicate);
    // Spelt so on purpose: the rows share this name, and hosts and their
    // tests know it by this spelling. Asks the host for the visibility, and
    // returns whether the row still exists afterwards.
    bool setVisiblityIcon();
    QIcon* getVisibleIcon();
    QIcon* getNotVisibleIcon();
    static void createVisibleIcons();

    /// The index of this row's children; made for wide parents only.
    ChildRowIndex& childRowIndex();
    void dropChildRowIndex();

    std::weak_ptr<DisplayItemInterface> m_displayItem;
    DisplayModelDialog* m_dialog = nullptr;
    qint32 m_itemIndex = -1;
    bool m_isDuplicate : 1;
    // Whether the row has a child-row index. The indexes are kept beside the
    // rows: few rows are wide parents, and a pointer would cost every row.
    bool m_hasChildRowIndex : 1;

    static QIcon* s_visibleIcon;
    static QIcon* s_visibleDuplicateIcon;
    static QIcon* s_visibleDifferentIcon;
    static QIcon* s_notVisibleIcon;
};

} // namespace Brennvik
