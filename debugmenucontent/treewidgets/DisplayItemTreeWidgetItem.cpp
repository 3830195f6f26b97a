#include "DisplayItemTreeWidgetItem.h"

#include "ChildRowIndex.h"
#include "RowColumns.h"
#include "RowText.h"
#include "SharedIconData.h"

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <hostcontract/DisplayItemInterface.h>

#include <QIcon>
#include <QString>
#include <QVariant>

#include <typeinfo>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Brennvik {

// Shared by every row of every tree; created on first use and kept for the
// life of the process, so that no row pays for loading an SVG.
QIcon* DisplayItemTreeWidgetItem::s_visibleIcon = nullptr;
QIcon* DisplayItemTreeWidgetItem::s_visibleDuplicateIcon = nullptr;
QIcon* DisplayItemTreeWidgetItem::s_visibleDifferentIcon = nullptr;
QIcon* DisplayItemTreeWidgetItem::s_notVisibleIcon = nullptr;

namespace {

// The child-row indexes of the wide parents, by row. Never freed, like the
// icons, so that rows deleted while the process exits still find it.
std::unordered_map<const DisplayItemTreeWidgetItem*, std::unique_ptr<ChildRowIndex>>& childRowIndexes()
{
    static auto* indexes = new std::unordered_map<const DisplayItemTreeWidgetItem*, std::unique_ptr<ChildRowIndex>>;
    return *indexes;
}

// A row that asks the host about its item, followed across the call: rows
// made inside the call nest, innermost first, and a row's destructor clears
// its entry, so that the row learns that it has gone.
struct RowBeingShown
{
    const DisplayItemTreeWidgetItem* row;
    RowBeingShown* outer;
};

RowBeingShown* innermostRowBeingShown = nullptr;

class FollowedRow
{
public:
    explicit FollowedRow(const DisplayItemTreeWidgetItem* row)
        : m_entry{row, innermostRowBeingShown}
    {
        innermostRowBeingShown = &m_entry;
    }
    ~FollowedRow() { innermostRowBeingShown = m_entry.outer; }
    FollowedRow(const FollowedRow&) = delete;
    FollowedRow& operator=(const FollowedRow&) = delete;

    bool rowExists() const { return m_entry.row != nullptr; }

private:
    RowBeingShown m_entry;
};

void forgetRowBeingShown(const DisplayItemTreeWidgetItem* row)
{
    for (RowBeingShown* entry = innermostRowBeingShown; entry; entry = entry->outer) {
        if (entry->row == row)
            entry->row = nullptr;
    }
}

} // namespace

DisplayItemTreeWidgetItem::DisplayItemTreeWidgetItem(QTreeWidget* parent,
                                                     std::shared_ptr<DisplayItemInterface> displayItem,
                                                     DisplayModelDialog* dialog, bool isDuplicate)
    : DisplayItemTreeWidgetItem(parent, std::move(displayItem), dialog, isDuplicate, ShownLater{})
{
    showItem();
}

DisplayItemTreeWidgetItem::DisplayItemTreeWidgetItem(QTreeWidgetItem* parent,
                                                     std::shared_ptr<DisplayItemInterface> displayItem,
                                                     DisplayModelDialog* dialog, bool isDuplicate)
    : DisplayItemTreeWidgetItem(parent, std::move(displayItem), dialog, isDuplicate, ShownLater{})
{
    showItem();
}

DisplayItemTreeWidgetItem::DisplayItemTreeWidgetItem(QTreeWidget* parent,
                                                     std::shared_ptr<DisplayItemInterface> displayItem,
                                                     DisplayModelDialog* dialog, bool isDuplicate, ShownLater)
    : QTreeWidgetItem(parent, QTreeWidgetItem::UserType)
    , m_isDuplicate(isDuplicate)
    , m_hasChildRowIndex(false)
{
    init(displayItem, dialog, isDuplicate);
}

DisplayItemTreeWidgetItem::DisplayItemTreeWidgetItem(QTreeWidgetItem* parent,
                                                     std::shared_ptr<DisplayItemInterface> displayItem,
                                                     DisplayModelDialog* dialog, bool isDuplicate, ShownLater)
    : QTreeWidgetItem(parent, QTreeWidgetItem::UserType)
    , m_isDuplicate(isDuplicate)
    , m_hasChildRowIndex(false)
{
    init(displayItem, dialog, isDuplicate);
}

DisplayItemTreeWidgetItem::DisplayItemTreeWidgetItem(const DisplayItemTreeWidgetItem& other)
    : QTreeWidgetItem(other)
    , DisplayItemEventObserver(other)
    , m_displayItem(other.m_displayItem)
    , m_dialog(other.m_dialog)
    , m_itemIndex(other.m_itemIndex)
    , m_isDuplicate(other.m_isDuplicate)
    , m_hasChildRowIndex(false)
{
}

DisplayItemTreeWidgetItem& DisplayItemTreeWidgetItem::operator=(const DisplayItemTreeWidgetItem& other)
{
    QTreeWidgetItem::operator=(other);
    DisplayItemEventObserver::operator=(other);
    m_displayItem = other.m_displayItem;
    m_dialog = other.m_dialog;
    m_itemIndex = other.m_itemIndex;
    m_isDuplicate = other.m_isDuplicate;
    // The index describes this row's own children, which a copy does not take.
    dropChildRowIndex();
    return *this;
}

DisplayItemTreeWidgetItem::~DisplayItemTreeWidgetItem()
{
    if (innermostRowBeingShown)
        forgetRowBeingShown(this);
    // The lock is empty when the item has gone; the host accepts that.
    unregisterFromDisplayItem(m_displayItem.lock());
    m_displayItem.reset();
    dropChildRowIndex();
}

std::shared_ptr<DisplayItemInterface> DisplayItemTreeWidgetItem::getDisplayItem()
{
    return m_displayItem.lock();
}

DisplayItemTreeWidgetItem* DisplayItemTreeWidgetItem::asDisplayItemRow(QTreeWidgetItem* row)
{
    // Nearly every row is a plain one; the typeid test spares the
    // dynamic_cast in walks that visit every row.
    if (row && typeid(*row) == typeid(DisplayItemTreeWidgetItem))
        return static_cast<DisplayItemTreeWidgetItem*>(row);
    return dynamic_cast<DisplayItemTreeWidgetItem*>(row);
}

bool DisplayItemTreeWidgetItem::showsDisplayItem(const std::shared_ptr<DisplayItemInterface>& item) const
{
    if (!item)
        return false;
    // Only a row that shares the live item's owner can hold that object, and
    // comparing owners takes no lock; the lock on a match confirms the
    // pointer itself, which an aliasing pointer of the same owner would not.
    const bool sameOwner = !m_displayItem.owner_before(item) && !item.owner_before(m_displayItem);
    return sameOwner && m_displayItem.lock() == item;
}

QTreeWidgetItem* DisplayItemTreeWidgetItem::takeFirstChildShowing(const std::shared_ptr<DisplayItemInterface>& item)
{
    if (!item)
        return nullptr;
    if (childCount() < ChildRowIndex::MinimumChildCount) {
        dropChildRowIndex();
        const int position = ChildRowIndex::positionOfFirstChildShowing(*this, item, 0);
        return position < 0 ? nullptr : takeChild(position);
    }
    return childRowIndex().takeFirstChildShowing(item);
}

ChildRowIndex& DisplayItemTreeWidgetItem::childRowIndex()
{
    std::unique_ptr<ChildRowIndex>& index = childRowIndexes()[this];
    // Only an index this row made itself describes its children.
    if (!m_hasChildRowIndex || !index)
        index = std::make_unique<ChildRowIndex>(*this);
    m_hasChildRowIndex = true;
    return *index;
}

void DisplayItemTreeWidgetItem::dropChildRowIndex()
{
    if (!m_hasChildRowIndex)
        return;
    m_hasChildRowIndex = false;
    childRowIndexes().erase(this);
}

int DisplayItemTreeWidgetItem::getItemIndex()
{
    return m_itemIndex;
}

void DisplayItemTreeWidgetItem::setItemIndex(int itemIndex)
{
    m_itemIndex = itemIndex;
}

bool DisplayItemTreeWidgetItem::isDuplicate() const
{
    return m_isDuplicate;
}

bool DisplayItemTreeWidgetItem::isDifferentVisibility() const
{
    const QVariant mark = data(0, DifferentVisibilityRole);
    return mark.isValid() ? mark.toBool() : false;
}

void DisplayItemTreeWidgetItem::setDifferentVisibility(bool different)
{
    setData(0, DifferentVisibilityRole, QVariant(different));
    setVisiblityIcon();
}

void DisplayItemTreeWidgetItem::toggleSelection()
{
    const std::shared_ptr<DisplayItemInterface> item = m_displayItem.lock();
    if (!item || !item->isSelectable())
        return;
    item->setSelected(!item->isSelected());
    item->notifyVisualPropertiesChanged();
}

void DisplayItemTreeWidgetItem::toggleVisibility()
{
    const std::shared_ptr<DisplayItemInterface> item = m_displayItem.lock();
    if (!item) {
        setVisiblityIcon();
        return;
    }
    // The icon is left alone: it changes when the host reports the change,
    // so the row always shows what the model holds.
    item->setVisible(!item->isVisible());
    item->notifyVisualPropertiesChanged();
}

void DisplayItemTreeWidgetItem::expandAll()
{
    // Pre-order with an explicit stack: the rows may stand for a chain far
    // deeper than the call stack. Rows of other kinds end their branch.
    std::vector<DisplayItemTreeWidgetItem*> pending{this};
    while (!pending.empty()) {
        DisplayItemTreeWidgetItem* row = pending.back();
        pending.pop_back();
        row->setExpanded(true);
        for (int i = row->childCount() - 1; i >= 0; --i) {
            if (auto* child = dynamic_cast<DisplayItemTreeWidgetItem*>(row->child(i)))
                pending.push_back(child);
        }
    }
}

void DisplayItemTreeWidgetItem::onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item)
{
    if (!setVisiblityIcon())
        return;
    if (m_dialog)
        m_dialog->displayItemModified(this);
}

void DisplayItemTreeWidgetItem::onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item)
{
    // Through the virtual table, so that an override of the properties event sees visual changes too.
    onPropertiesChangedEvent(item);
}

void DisplayItemTreeWidgetItem::onDisplayItemsAddedEvent(
    const std::vector<std::shared_ptr<DisplayItemInterface>>& items)
{
    if (!m_dialog)
        return;
    for (const std::shared_ptr<DisplayItemInterface>& item : items)
        m_dialog->displayItemAdded(this, item);
}

void DisplayItemTreeWidgetItem::onDisplayItemsRemovedEvent(const std::set<std::shared_ptr<DisplayItemInterface>>& items)
{
    if (!m_dialog)
        return;
    m_dialog->displayItemsRemoved(this, items);
}

void DisplayItemTreeWidgetItem::init(const std::shared_ptr<DisplayItemInterface>& displayItem,
                                     DisplayModelDialog* dialog, bool isDuplicate)
{
    m_displayItem = displayItem;
    m_dialog = dialog;
    m_itemIndex = -1;
    m_isDuplicate = isDuplicate;
}

bool DisplayItemTreeWidgetItem::showItem()
{
    if (!setVisiblityIcon())
        return false;
    const FollowedRow followed(this);

    const std::shared_ptr<DisplayItemInterface> item = m_displayItem.lock();
    const QString text = rowText(item);
    if (!followed.rowExists())
        return false;
    setText(NameColumn, text);

    // The index is -1 on a row that init() has just set up, so the index
    // column stays empty on a new row. Kept so: hosts read the index back
    // through getItemIndex and rely on the column showing nothing.
    if (m_itemIndex >= 0)
        setText(IndexColumn, rowIndexText(m_itemIndex));

    registerToDisplayItem(item);
    return followed.rowExists();
}

bool DisplayItemTreeWidgetItem::setVisiblityIcon()
{
    const std::shared_ptr<DisplayItemInterface> item = m_displayItem.lock();
    if (!item) {
        createVisibleIcons();
        showRowIcon(*this, *s_visibleDifferentIcon);
        return true;
    }
    const FollowedRow followed(this);
    const bool visible = item->isVisible();
    if (!followed.rowExists())
        return false;
    showRowIcon(*this, visible ? *getVisibleIcon() : *getNotVisibleIcon());
    return true;
}

void DisplayItemTreeWidgetItem::createVisibleIcons()
{
    if (!s_visibleIcon)
        s_visibleIcon = new QIcon(QStringLiteral(":/Icons/Debug/visible.svg"));
    if (!s_visibleDuplicateIcon)
        s_visibleDuplicateIcon = new QIcon(QStringLiteral(":/Icons/Debug/visible_duplicate.svg"));
    if (!s_visibleDifferentIcon)
        s_visibleDifferentIcon = new QIcon(QStringLiteral(":/Icons/Debug/visible_different.svg"));
}

QIcon* DisplayItemTreeWidgetItem::getVisibleIcon()
{
    createVisibleIcons();
    if (m_isDuplicate)
        return s_visibleDuplicateIcon;
    if (isDifferentVisibility())
        return s_visibleDifferentIcon;
    return s_visibleIcon;
}

QIcon* DisplayItemTreeWidgetItem::getNotVisibleIcon()
{
    if (!s_notVisibleIcon)
        s_notVisibleIcon = new QIcon(QStringLiteral(":/Icons/Debug/not_visible.svg"));
    if (!s_visibleDifferentIcon)
        s_visibleDifferentIcon = new QIcon(QStringLiteral(":/Icons/Debug/visible_different.svg"));
    // An invisible duplicate shows the plain not-visible icon.
    return isDifferentVisibility() ? s_visibleDifferentIcon : s_notVisibleIcon;
}

} // namespace Brennvik
