#pragma once

#include <hostcontract/HostExport.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Brennvik {

class DisplayItem;
class DisplayItemInterface;

/// The children of one display item, in slots.
///
/// A removal only empties the child's slot, and the next read closes all
/// empty slots at once: removing children one by one from a wide item then
/// costs linear time in all instead of shifting the whole tail each time.
/// Closing them changes no position anyone can see, so reads that close them
/// are const.
///
/// Most items of a large model are leaves: without children the slots take
/// one null pointer, and the list with its counters is made with the first child.
class BRENNVIK_HOST_EXPORT ChildSlots
{
public:
    using Items = std::vector<std::shared_ptr<DisplayItem>>;

    /// The children in order (empty slots closed first).
    const Items& items() const;
    /// The slots as they are: a slot that a removal emptied is null.
    const Items& slotList() const;
    /// The number of children (empty slots not counted).
    std::size_t count() const;
    /// Position of \a child among the children, or -1.
    int indexOf(const DisplayItemInterface* child) const;
    /// Slot of \a child, empty slots included, or -1.
    int slotOf(const DisplayItemInterface* child) const;

    /// Inserts \a child before position \a index (at most count()).
    void insert(std::size_t index, std::shared_ptr<DisplayItem> child);
    /// Appends \a child after the last slot.
    void append(std::shared_ptr<DisplayItem> child);
    /// Makes room for \a added more children: exactly what is needed when
    /// there are none yet, geometric growth otherwise.
    void reserveMore(std::size_t added);
    /// Takes the child out of \a slot, leaving it empty.
    std::shared_ptr<DisplayItem> take(std::size_t slot);
    /// Takes all slots out, empty ones included, in order.
    Items takeAll();

private:
    struct Block
    {
        Items entries;
        std::uint32_t emptySlots = 0;
        // Where slotOf last found a child: the next search starts there.
        std::uint32_t searchStart = 0;
    };

    void closeEmptySlots() const;
    Block& block();

    mutable std::unique_ptr<Block> m_block;
};

} // namespace Brennvik
