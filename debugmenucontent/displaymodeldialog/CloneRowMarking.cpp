#include "CloneRowMarking.h"

#include "RowRemovalWatch.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>

#include <QBrush>
#include <QFont>

#include <algorithm>
#include <memory>
#include <vector>

namespace Brennvik {

namespace {

// A pair of rows at the same position and the cloned row's parent.
struct ComparedRows
{
    DisplayItemTreeWidgetItem* original;
    DisplayItemTreeWidgetItem* cloned;
    QTreeWidgetItem* clonedParent;
};

// A cloned row that the original lacks: it and its whole subtree are extra.
void markExtraClonedRow(DisplayItemTreeWidgetItem* cloned, std::vector<ComparedRows>& pending)
{
    paintFalseClonedItem(cloned);
    for (int i = cloned->childCount() - 1; i >= 0; --i)
        pending.push_back({nullptr, DisplayItemTreeWidgetItem::asDisplayItemRow(cloned->child(i)), cloned->parent()});
}

// Compares one pair and appends the pairs of their children to \a pending,
// last child first, so that they come off the stack in order. The host is
// asked for both items' visibility; false when rows went meanwhile, and the
// pair is then left alone.
bool compareRowPair(const ComparedRows& rows, std::vector<ComparedRows>& pending, const RowRemovalWatch& watch)
{
    DisplayItemTreeWidgetItem* const original = rows.original;
    DisplayItemTreeWidgetItem* const cloned = rows.cloned;
    if (!cloned) {
        // A child missing in the clone. The marking starts at clonedParent,
        // which the caller hands down as the grandparent of the missing row;
        // a missing duplicate row is no defect of the clone.
        if (rows.clonedParent && original && !original->isDuplicate())
            paintFalseClonedAncestors(rows.clonedParent);
        return true;
    }
    if (!original) {
        markExtraClonedRow(cloned, pending);
        return true;
    }

    // Only fewer children in the original count here: a clone that lost
    // children is marked above, from the missing rows' grandparent.
    if (original->text(0) != cloned->text(0) || original->childCount() < cloned->childCount()
        || original->getItemIndex() != cloned->getItemIndex()) {
        paintFalseClonedItem(cloned);
        paintFalseClonedAncestors(cloned->parent());
    }

    const std::shared_ptr<DisplayItemInterface> originalItem = original->getDisplayItem();
    const std::shared_ptr<DisplayItemInterface> clonedItem = cloned->getDisplayItem();
    if (originalItem && clonedItem) {
        const bool differentVisibility = originalItem->isVisible() != clonedItem->isVisible();
        if (watch.rowsRemoved())
            return false;
        if (differentVisibility && !markDifferentVisibilityUpwards(cloned, watch))
            return false;
    }

    const int count = std::max(original->childCount(), cloned->childCount());
    for (int i = count - 1; i >= 0; --i) {
        pending.push_back({DisplayItemTreeWidgetItem::asDisplayItemRow(original->child(i)),
                           DisplayItemTreeWidgetItem::asDisplayItemRow(cloned->child(i)), cloned->parent()});
    }
    return true;
}

} // namespace

// With an explicit stack: the trees may show a chain far deeper than the call stack.
void markClonedTreeDifferences(DisplayItemTreeWidgetItem* original, DisplayItemTreeWidgetItem* cloned,
                               QTreeWidgetItem* clonedParent, const RowRemovalWatch& watch)
{
    std::vector<ComparedRows> pending{{original, cloned, clonedParent}};
    while (!pending.empty()) {
        const ComparedRows rows = pending.back();
        pending.pop_back();
        // The pending rows may be among those that went: the walk ends.
        if (!compareRowPair(rows, pending, watch))
            return;
    }
}

void paintFalseClonedItem(DisplayItemTreeWidgetItem* row)
{
    if (!row)
        return;
    QFont font = row->font(0);
    // Weight 75, the bold that hosts' row readers compare against.
    font.setWeight(QFont::Bold);
    row->setFont(0, font);
    // The bold text is the mark; the brush paints nothing. Made red and then
    // emptied, as hosts that read the row's brush have always found it.
    QBrush brush(Qt::red, Qt::SolidPattern);
    brush.setStyle(Qt::NoBrush);
    row->setForeground(0, brush);
}

void paintFalseClonedAncestors(QTreeWidgetItem* row)
{
    for (QTreeWidgetItem* ancestor = row; ancestor && ancestor->parent(); ancestor = ancestor->parent())
        paintFalseClonedItem(dynamic_cast<DisplayItemTreeWidgetItem*>(ancestor));
}

bool markDifferentVisibilityUpwards(DisplayItemTreeWidgetItem* row, const RowRemovalWatch& watch)
{
    row->setDifferentVisibility(true);
    if (watch.rowsRemoved())
        return false;
    for (QTreeWidgetItem* ancestor = row->parent(); ancestor && ancestor->parent(); ancestor = ancestor->parent()) {
        if (auto* ancestorRow = dynamic_cast<DisplayItemTreeWidgetItem*>(ancestor)) {
            ancestorRow->setDifferentVisibility(true);
            if (watch.rowsRemoved())
                return false;
        }
    }
    return true;
}

} // namespace Brennvik
