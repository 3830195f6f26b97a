#include "ToolKeyLookup.h"

#include "DisplayItemCloneMap.h"
#include "DisplayTreeWalk.h"

#include <hostcontract/DisplayItemInterface.h>

#include <algorithm>

namespace Brennvik {

ToolKeyLookup::ToolKeyLookup(std::weak_ptr<DisplayItemInterface> root, std::string keyProperty)
    : m_root(std::move(root))
    , m_keyProperty(std::move(keyProperty))
{
}

ToolKeyLookup::~ToolKeyLookup() = default;

std::shared_ptr<DisplayItemInterface> ToolKeyLookup::findDisplayItem(const Kind7Key& key) const
{
    std::shared_ptr<DisplayItemInterface> found;
    walkDisplayTree(m_root.lock(), [this, &key, &found](const std::shared_ptr<DisplayItemInterface>& item) {
        if (!matches(*item, key))
            return WalkStep::Descend;
        found = item;
        return WalkStep::Stop;
    });
    return found;
}

bool ToolKeyLookup::matches(const DisplayItemInterface& item, const Kind7Key& key) const
{
    if (m_keyProperty.empty())
        return item.getDisplayName() == key;
    PropertyList business;
    PropertyList display;
    item.getProperties(business, display);
    return std::any_of(business.begin(), business.end(),
                       [this, &key](const Property& p) { return p.first == m_keyProperty && p.second == key; });
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
