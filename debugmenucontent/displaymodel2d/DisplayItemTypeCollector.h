#pragma once

#include "DisplayItemTypeFilter.h"

#include <memory>
#include <vector>

namespace Brennvik {

/// Collects the visited items of type T, in visiting order.
template<typename T>
class DisplayItemTypeCollector : public DisplayItemTypeFilter<T>
{
public:
    /// Appends to \a items (not owned; must outlive the walk).
    explicit DisplayItemTypeCollector(std::vector<std::shared_ptr<T>>* items)
        : m_items(items)
    {
    }

    void processTypedNode(std::shared_ptr<T> item) override { m_items->push_back(std::move(item)); }

private:
    std::vector<std::shared_ptr<T>>* m_items;
};

} // namespace Brennvik
