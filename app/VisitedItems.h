#pragma once

#include <hostcontract/DisplayItemInterface.h>

#include <memory>
#include <unordered_set>

namespace Brennvik {

/// The items that a walk over a host's tree has met. A broken host may list
/// an item in two places or an ancestor as a child; a walk that takes each
/// item once ends on any tree. The items are held until the walk ends, so
/// that the address of an item freed meanwhile cannot pass for a new one.
class VisitedItems
{
public:
    /// True the first time \a item is met; false for an empty pointer and every later time.
    bool firstVisit(const std::shared_ptr<DisplayItemInterface>& item) { return item && m_items.insert(item).second; }
    /// Whether \a item has been met.
    bool contains(const std::shared_ptr<DisplayItemInterface>& item) const { return m_items.count(item) > 0; }

private:
    std::unordered_set<std::shared_ptr<DisplayItemInterface>> m_items;
};

} // namespace Brennvik
