#include "DisplayItemCloneMap.h"

namespace Brennvik {

void DisplayItemCloneMap::add(const DisplayItemInterface* original, std::shared_ptr<DisplayItemInterface> copy)
{
    if (original)
        m_counterparts[original] = std::move(copy);
}

bool DisplayItemCloneMap::contains(const DisplayItemInterface* original) const
{
    return m_counterparts.count(original) != 0;
}

std::shared_ptr<DisplayItemInterface>
DisplayItemCloneMap::remap(const std::shared_ptr<DisplayItemInterface>& original) const
{
    if (!original)
        return nullptr;
    const auto it = m_counterparts.find(original.get());
    return it != m_counterparts.end() ? it->second : original;
}

std::size_t DisplayItemCloneMap::size() const
{
    return m_counterparts.size();
}

} // namespace Brennvik
