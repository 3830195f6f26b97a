#include "ExtraChildrenItem.h"

#include <utility>

namespace Brennvik::Test {

ExtraChildrenItem::ExtraChildrenItem(std::string name)
    : DisplayItem(std::move(name))
{
}

ExtraChildrenItem::~ExtraChildrenItem()
{
    // Freed by the default, a chain of a million links would nest a million
    // destructor calls.
    std::vector<std::shared_ptr<DisplayItemInterface>> pending;
    for (Entry& entry : m_extra)
        pending.push_back(std::move(entry.owned));
    while (!pending.empty()) {
        std::shared_ptr<DisplayItemInterface> item = std::move(pending.back());
        pending.pop_back();
        auto* link = dynamic_cast<ExtraChildrenItem*>(item.get());
        if (!link || item.use_count() != 1)
            continue;
        for (Entry& entry : link->m_extra)
            pending.push_back(std::move(entry.owned));
    }
}

void ExtraChildrenItem::listOwned(std::shared_ptr<DisplayItemInterface> child)
{
    m_extra.push_back({std::move(child), {}});
}

void ExtraChildrenItem::listUnowned(const std::shared_ptr<DisplayItemInterface>& item)
{
    m_extra.push_back({nullptr, item});
}

void ExtraChildrenItem::listEmpty()
{
    m_extra.push_back({});
}

DisplayItemList ExtraChildrenItem::getChildren() const
{
    DisplayItemList children = DisplayItem::getChildren();
    for (const Entry& entry : m_extra)
        children.push_back(entry.owned ? entry.owned : entry.named.lock());
    return children;
}

std::shared_ptr<ExtraChildrenItem> appendChain(ExtraChildrenItem& root, int depth)
{
    ExtraChildrenItem* parent = &root;
    std::shared_ptr<ExtraChildrenItem> link;
    for (int level = 1; level <= depth; ++level) {
        link = std::make_shared<ExtraChildrenItem>(std::to_string(level));
        link->setDisplayProperty("color", "#4080c0");
        parent->listOwned(link);
        parent = link.get();
    }
    return link;
}

} // namespace Brennvik::Test
