#include "FixedEntryOwner.h"

#include "DisplayItemCloneMap.h"

namespace Brennvik {

FixedEntryOwner::FixedEntryOwner(std::weak_ptr<DisplayItemInterface> entry)
    : m_entry(std::move(entry))
{
}

FixedEntryOwner::~FixedEntryOwner() = default;

std::shared_ptr<DisplayItemInterface> FixedEntryOwner::getEntryDisplayItem() const
{
    return m_entry.lock();
}

void FixedEntryOwner::setEntryDisplayItem(std::weak_ptr<DisplayItemInterface> entry)
{
    m_entry = std::move(entry);
}

std::shared_ptr<FixedEntryOwner> FixedEntryOwner::remapped(const DisplayItemCloneMap& map) const
{
    return std::make_shared<FixedEntryOwner>(map.remap(m_entry.lock()));
}

} // namespace Brennvik
