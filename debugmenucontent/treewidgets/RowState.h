#pragma once

#include "RowGuard.h"

#include <optional>

namespace Brennvik {

class DisplayItemTreeWidgetItem;

/// What a display item row's tool tip tells, asked of the host when the tool
/// tip is wanted: rows are many, and none stores it.
struct RowState
{
    /// The row's display item no longer exists; the other fields are then false.
    bool itemGone = false;
    bool visible = false;
    bool selected = false;
    /// A display item row above this one in the tree shows a hidden item.
    bool hiddenByAncestor = false;
};

/// The state of \a row's item. Each host call may raise events that remove
/// the row: empty when it has left its tree. The way up is a loop, so a row
/// a million levels down costs no call stack.
std::optional<RowState> queryRowState(const RowGuard<DisplayItemTreeWidgetItem>& row);

} // namespace Brennvik
