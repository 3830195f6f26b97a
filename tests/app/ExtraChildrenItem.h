#pragma once

#include <referencehost/model/DisplayItem.h>

#include <memory>
#include <string>
#include <vector>

namespace Brennvik::Test {

/// A reference-host item that lists, after its own children, extra entries
/// chosen by a test: items it keeps alive (a chain built without the host's
/// own bookkeeping), items it only names (itself or an ancestor: a cycle) and
/// empty pointers. The extra entries are what a careless host hands over; the
/// item is attached to nothing through them.
class ExtraChildrenItem : public DisplayItem
{
public:
    explicit ExtraChildrenItem(std::string name);
    /// Frees a chain of owned entries one link at a time.
    ~ExtraChildrenItem() override;

    /// Lists \a child and keeps it alive.
    void listOwned(std::shared_ptr<DisplayItemInterface> child);
    /// Lists \a item without keeping it alive.
    void listUnowned(const std::shared_ptr<DisplayItemInterface>& item);
    /// Lists an empty pointer.
    void listEmpty();

    /// The real children, then the extra entries in the order listed.
    DisplayItemList getChildren() const override;

private:
    struct Entry
    {
        std::shared_ptr<DisplayItemInterface> owned;
        std::weak_ptr<DisplayItemInterface> named;
    };
    std::vector<Entry> m_extra;
};

/// A chain of \a depth items below \a root (named "1", "2", ... from the top),
/// each with a colour so that the 3D view draws it; returns the last link.
std::shared_ptr<ExtraChildrenItem> appendChain(ExtraChildrenItem& root, int depth);

} // namespace Brennvik::Test
