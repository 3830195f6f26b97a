#include "RowState.h"

#include "DisplayItemTreeWidgetItem.h"

#include <hostcontract/DisplayItemInterface.h>

namespace Brennvik {

namespace {

// Whether a display item row above \a row shows a hidden item; empty when
// \a guarded leaves its tree meanwhile. Rows with gone items are passed over.
std::optional<bool> hiddenByAncestor(DisplayItemTreeWidgetItem* row, const RowGuard<DisplayItemTreeWidgetItem>& guarded)
{
    // While the guarded row stays in its tree, so do the rows above it.
    for (QTreeWidgetItem* above = row->parent(); above; above = above->parent()) {
        DisplayItemTreeWidgetItem* ancestorRow = DisplayItemTreeWidgetItem::asDisplayItemRow(above);
        const std::shared_ptr<DisplayItemInterface> ancestor = ancestorRow ? ancestorRow->getDisplayItem() : nullptr;
        if (!ancestor)
            continue;
        const bool visible = ancestor->isVisible();
        if (!guarded.get())
            return std::nullopt;
        if (!visible)
            return true;
    }
    return false;
}

} // namespace

std::optional<RowState> queryRowState(const RowGuard<DisplayItemTreeWidgetItem>& row)
{
    DisplayItemTreeWidgetItem* shown = row.get();
    if (!shown)
        return std::nullopt;
    RowState state;
    const std::shared_ptr<DisplayItemInterface> item = shown->getDisplayItem();
    if (!item) {
        state.itemGone = true;
        return state;
    }

    state.visible = item->isVisible();
    if (!row.get())
        return std::nullopt;
    state.selected = item->isSelected();
    if (!row.get())
        return std::nullopt;
    const std::optional<bool> hidden = hiddenByAncestor(row.get(), row);
    if (!hidden)
        return std::nullopt;
    state.hiddenByAncestor = *hidden;
    return state;
}

} // namespace Brennvik
