#include "BrokenItem.h"

#include <algorithm>

namespace Brennvik::Test {

BrokenItem::BrokenItem(std::string displayName)
    : DisplayItem(std::move(displayName))
{
}

void BrokenItem::setFlaws(std::vector<Flaw> flaws)
{
    // By position, so that getChildren can merge them in one pass.
    std::stable_sort(flaws.begin(), flaws.end(), [](const Flaw& a, const Flaw& b) { return a.position < b.position; });
    m_flaws = std::move(flaws);
}

const std::vector<BrokenItem::Flaw>& BrokenItem::flaws() const
{
    return m_flaws;
}

DisplayItemList BrokenItem::getChildren() const
{
    const DisplayItemList real = DisplayItem::getChildren();
    DisplayItemList children;
    children.reserve(real.size() + m_flaws.size());
    auto flaw = m_flaws.begin();
    for (std::size_t i = 0; i <= real.size(); ++i) {
        for (; flaw != m_flaws.end() && (flaw->position <= i || i == real.size()); ++flaw) {
            if (flaw->ancestorLevel < 0 || entryFor(*flaw))
                children.push_back(entryFor(*flaw));
        }
        if (i < real.size())
            children.push_back(real[i]);
    }
    return children;
}

std::string BrokenItem::typeName() const
{
    return "BrokenItem";
}

std::shared_ptr<DisplayItem> BrokenItem::copyWithoutChildren() const
{
    auto copy = std::make_shared<BrokenItem>(getDisplayName());
    copy->copyStateFrom(*this);
    copy->m_flaws = m_flaws;
    return copy;
}

std::shared_ptr<DisplayItemInterface> BrokenItem::entryFor(const Flaw& flaw) const
{
    if (flaw.ancestorLevel < 0)
        return nullptr;
    const DisplayItem* item = this;
    for (int level = 0; item && level < flaw.ancestorLevel; ++level)
        item = item->parentItem();
    if (!item)
        return nullptr;
    return std::const_pointer_cast<DisplayItem>(item->shared_from_this());
}

} // namespace Brennvik::Test
