#include "LazyDisplayItemRows.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>

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
    // Top down with an explicit stack: any depth fits.
    const quint64 generation = m_generation;
    std::vector<QTreeWidgetItem*> pending;
    for (int i = m_tree->topLevelItemCount() - 1; i >= 0; --i)
        pending.push_back(m_tree->topLevelItem(i));
    while (!pending.empty() && generation == m_generation) {
        QTreeWidgetItem* row = pending.back();
        pending.pop_back();
        fetchChildren(row);
        if (generation != m_generation)
            return;
        for (int i = row->childCount() - 1; i >= 0; --i)
            pending.push_back(row->child(i));
    }
    if (generation == m_generation)
        m_tree->expandAll();
}

} // namespace Brennvik
