#include "LazyDisplayItemRows.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace Brennvik {

LazyDisplayItemRows::LazyDisplayItemRows(DisplayItemTreeWidget* tree)
    : QObject(tree)
    , m_tree(tree)
{
    connect(tree, &QTreeWidget::itemExpanded, this, &LazyDisplayItemRows::fetchChildren);
}

LazyDisplayItemRows::~LazyDisplayItemRows() = default;

QTreeWidgetItem* LazyDisplayItemRows::showRoot(const std::shared_ptr<DisplayItemInterface>& root)
{
    clear();
    if (!root)
        return nullptr;
    const quint64 generation = m_generation;
    auto* top = new DisplayItemTreeWidgetItem(m_tree, root, nullptr, false);
    m_rowOfItem[root.get()] = top;
    if (!root->getChildren().empty() && generation == m_generation)
        top->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return generation == m_generation ? top : nullptr;
}

void LazyDisplayItemRows::clear()
{
    ++m_generation;
    m_rowOfItem.clear();
    // The view follows each expanded row with a persistent index, and taking
    // rows out of the tree walks every such index up to the top: with every
    // level of a deep chain expanded that costs the square of the depth.
    // Collapsed first, no such index is left.
    m_tree->collapseAll();
    // A row deletes its children recursively, which a deep host tree would
    // take past the end of the stack, and taking a row's children walks their
    // subtrees: taken from rows whose children are already bare, each row is
    // walked once.
    std::vector<QTreeWidgetItem*> rows;
    while (m_tree->topLevelItemCount() > 0)
        rows.push_back(m_tree->takeTopLevelItem(m_tree->topLevelItemCount() - 1));
    const std::size_t topLevelCount = rows.size();
    // Level by level: every row comes after its parent.
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (int child = 0; child < rows[i]->childCount(); ++child)
            rows.push_back(rows[i]->child(child));
    }
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        qDeleteAll((*row)->takeChildren());
    for (std::size_t i = 0; i < topLevelCount; ++i)
        delete rows[i];
}

bool LazyDisplayItemRows::hasUnfetchedChildren(const QTreeWidgetItem* row)
{
    return row && row->childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator;
}

void LazyDisplayItemRows::fetchChildren(QTreeWidgetItem* row)
{
    DisplayItemTreeWidgetItem* parentRow = DisplayItemTreeWidgetItem::asDisplayItemRow(row);
    if (!parentRow || !hasUnfetchedChildren(parentRow))
        return;
    // Marked first, so that an expansion raised inside the host's calls below
    // does not make the rows twice.
    parentRow->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
    const std::shared_ptr<DisplayItemInterface> item = parentRow->getDisplayItem();
    if (!item)
        return;
    const quint64 generation = m_generation;
    const DisplayItemList children = item->getChildren();
    for (std::size_t index = 0; index < children.size() && generation == m_generation; ++index) {
        if (children[index] && !hasRow(children[index]))
            addRow(parentRow, children[index], static_cast<int>(index));
    }
}

DisplayItemTreeWidgetItem* LazyDisplayItemRows::addRow(QTreeWidgetItem* parentRow,
                                                       const std::shared_ptr<DisplayItemInterface>& item, int index)
{
    const quint64 generation = m_generation;
    auto* row = new DisplayItemTreeWidgetItem(parentRow, item, nullptr, false);
    // Registering with the item may have raised events that cleared the rows.
    if (generation != m_generation)
        return nullptr;
    row->setItemIndex(index);
    m_rowOfItem[item.get()] = row;
    const bool hasChildren = !item->getChildren().empty();
    if (generation != m_generation)
        return nullptr;
    if (hasChildren)
        row->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return row;
}

bool LazyDisplayItemRows::hasRow(const std::shared_ptr<DisplayItemInterface>& item) const
{
    // An entry whose item has gone names a freed address that a new item may
    // have taken: only a row that still shows the item counts.
    const auto found = m_rowOfItem.find(item.get());
    return found != m_rowOfItem.end() && found->second->showsDisplayItem(item);
}

void LazyDisplayItemRows::expandAll()
{
    const int levels = fetchAllChildren();
    if (levels < 0)
        return;
    // Qt's own expandAll() lays out the whole tree recursively, once per
    // level: quick on the trees hosts have, but a deep chain takes it past the
    // end of the stack. A row expanded on its own is laid out alone, its
    // children still collapsed: expanded top down, one by one, the view's work
    // stays flat, though each expansion costs the view a walk over the row's
    // ancestors and some bookkeeping of its own.
    if (levels <= MostLevelsExpandedAtOnce) {
        m_tree->expandAll();
        return;
    }
    // Making rows has made the view plan a layout of the whole tree; it is
    // done first, while few rows are expanded, or it would take in every
    // expansion below.
    m_tree->visualItemRect(m_tree->topLevelItem(0));
    forEachRowTopDown([](QTreeWidgetItem* row, int) {
        row->setExpanded(true);
        return true;
    });
}

int LazyDisplayItemRows::fetchAllChildren()
{
    const quint64 generation = m_generation;
    int levels = 0;
    forEachRowTopDown([this, generation, &levels](QTreeWidgetItem* row, int level) {
        levels = std::max(levels, level);
        fetchChildren(row);
        return generation == m_generation;
    });
    return generation == m_generation ? levels : -1;
}

void LazyDisplayItemRows::forEachRowTopDown(const std::function<bool(QTreeWidgetItem*, int)>& visit)
{
    // Pre-order with an explicit stack: any depth fits. A row's children are
    // taken after the visit, which may make them; a visit that returns false
    // ends the walk.
    std::vector<std::pair<QTreeWidgetItem*, int>> pending;
    for (int i = m_tree->topLevelItemCount() - 1; i >= 0; --i)
        pending.emplace_back(m_tree->topLevelItem(i), 1);
    while (!pending.empty()) {
        const auto [row, level] = pending.back();
        pending.pop_back();
        if (!visit(row, level))
            return;
        for (int i = row->childCount() - 1; i >= 0; --i)
            pending.emplace_back(row->child(i), level + 1);
    }
}

} // namespace Brennvik
