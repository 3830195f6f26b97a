#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Brennvik {

class DisplayItemInterface;

/// One (name, value) pair of narrow host text.
using Property = std::pair<std::string, std::string>;

/// Ordered list of properties that an item fills through getProperties.
using PropertyList = std::list<Property>;

/// Ordered sequence of shared display item references (children, collected subtrees).
using DisplayItemList = std::vector<std::shared_ptr<DisplayItemInterface>>;

/// Set of display items carried by the removed event.
using DisplayItemSet = std::set<std::shared_ptr<DisplayItemInterface>>;

/// Kind of a display update, passed to DisplayModel::doDisplayUpdate.
/// The host defines: 0 full redraw (geometry rebuilt), 1 geometry of changed items,
/// 2 attributes only (visibility, selection, structure). The library always passes 2.
using DisplayUpdateKind = int;

namespace DisplayUpdate {
constexpr DisplayUpdateKind Full = 0;
constexpr DisplayUpdateKind Geometry = 1;
constexpr DisplayUpdateKind Attributes = 2;
} // namespace DisplayUpdate

/// Result of DisplayItemInterface::removeChild: a small plain value.
/// The library ignores it.
enum class RemoveChildResult : std::uint8_t {
    Removed,   ///< the child was detached from this item
    NotAChild, ///< the item given is not a child of this item (or is empty)
};

} // namespace Brennvik
