#include "ChildSlots.h"

#include "DisplayItem.h"

#include <algorithm>

namespace Brennvik {

const ChildSlots::Items& ChildSlots::items() const
{
    closeEmptySlots();
    return slotList();
}

const ChildSlots::Items& ChildSlots::slotList() const
{
    static const Items none;
    return m_block ? m_block->entries : none;
}

std::size_t ChildSlots::count() const
{
    return m_block ? m_block->entries.size() - m_block->emptySlots : 0;
}

int ChildSlots::indexOf(const DisplayItemInterface* child) const
{
    closeEmptySlots();
    return slotOf(child);
}

int ChildSlots::slotOf(const DisplayItemInterface* child) const
{
    // Removals tend to walk through the children in order, forwards or
    // backwards; searching outwards from the last find keeps such a walk
    // from scanning the whole list each time. A child is in the list once,
    // and an empty slot never matches.
    if (!m_block || m_block->entries.empty() || !child)
        return -1;
    const Items& entries = m_block->entries;
    const std::size_t size = entries.size();
    const std::size_t start = std::min<std::size_t>(m_block->searchStart, size - 1);
    const auto found = [this, &entries, child](std::size_t i) {
        if (static_cast<const DisplayItemInterface*>(entries[i].get()) != child)
            return false;
        m_block->searchStart = static_cast<std::uint32_t>(i);
        return true;
    };
    const std::size_t reach = std::max(start, size - 1 - start);
    for (std::size_t distance = 0; distance <= reach; ++distance) {
        if (start + distance < size && found(start + distance))
            return static_cast<int>(start + distance);
        if (distance > 0 && distance <= start && found(start - distance))
            return static_cast<int>(start - distance);
    }
    return -1;
}

void ChildSlots::insert(std::size_t index, std::shared_ptr<DisplayItem> child)
{
    closeEmptySlots();
    Items& entries = block().entries;
    const std::size_t position = std::min(index, entries.size());
    entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(position), std::move(child));
}

void ChildSlots::append(std::shared_ptr<DisplayItem> child)
{
    block().entries.push_back(std::move(child));
}

void ChildSlots::reserveMore(std::size_t added)
{
    if (added == 0)
        return;
    closeEmptySlots();
    Items& entries = block().entries;
    const std::size_t needed = entries.size() + added;
    if (needed > entries.capacity())
        entries.reserve(std::max(needed, 2 * entries.capacity()));
}

std::shared_ptr<DisplayItem> ChildSlots::take(std::size_t slot)
{
    Block& taken = block();
    std::shared_ptr<DisplayItem> child = std::move(taken.entries[slot]);
    ++taken.emptySlots;
    // Empty entries at the end cost nothing to drop; once half the entries are
    // empty they are closed, so that the list never grows without bound.
    while (!taken.entries.empty() && !taken.entries.back()) {
        taken.entries.pop_back();
        --taken.emptySlots;
    }
    if (std::size_t{taken.emptySlots} * 2 > taken.entries.size())
        closeEmptySlots();
    if (taken.entries.empty())
        m_block.reset();
    return child;
}

ChildSlots::Items ChildSlots::takeAll()
{
    Items all = m_block ? std::move(m_block->entries) : Items();
    m_block.reset();
    return all;
}

void ChildSlots::closeEmptySlots() const
{
    if (!m_block || m_block->emptySlots == 0)
        return;
    Items& entries = m_block->entries;
    entries.erase(std::remove(entries.begin(), entries.end(), nullptr), entries.end());
    m_block->emptySlots = 0;
}

ChildSlots::Block& ChildSlots::block()
{
    if (!m_block)
        m_block = std::make_unique<Block>();
    return *m_block;
}

} // namespace Brennvik
