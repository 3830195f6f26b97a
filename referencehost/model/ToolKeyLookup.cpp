#include "ToolKeyLookup.h"

#include "DisplayItemCloneMap.h"

#include <hostcontract/DisplayItemInterface.h>

#include <algorithm>
#include <vector>

namespace Brennvik {

ToolKeyLookup::ToolKeyLookup(std::weak_ptr<DisplayItemInterface> root, std::string keyProperty)
    : m_root(std::move(root))
    , m_keyProperty(std::move(keyProperty))
{
}

ToolKeyLookup::~ToolKeyLookup() = default;

std::shared_ptr<DisplayItemInterface> ToolKeyLookup::findDisplayItem(const Kind7Key& key) const
{
    std::vector<std::shared_ptr<DisplayItemInterface>> pending;
    if (auto root = m_root.lock())
        pending.push_back(std::move(root));
    while (!pending.empty()) {
        auto item = std::move(pending.back());
        pending.pop_back();
        if (m_keyProperty.empty()) {
            if (item->getDisplayName() == key)
                return item;
        } else {
            PropertyList business;
            PropertyList display;
            item->getProperties(business, display);
            const bool match = std::any_of(business.begin(), business.end(), [this, &key](const Property& p) {
                return p.first == m_keyProperty && p.second == key;
            });
            if (match)
                return item;
        }
        const DisplayItemList children = item->getChildren();
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return nullptr;
}

const std::string& ToolKeyLookup::keyProperty() const
{
    return m_keyProperty;
}

std::shared_ptr<DisplayItemInterface> ToolKeyLookup::root() const
{
    return m_root.lock();
}

std::shared_ptr<ToolKeyLookup> ToolKeyLookup::remapped(const DisplayItemCloneMap& map) const
{
    return std::make_shared<ToolKeyLookup>(map.remap(m_root.lock()), m_keyProperty);
}

} // namespace Brennvik
