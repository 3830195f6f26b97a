#include "GeometryModuleItem.h"

#include "DisplayItemCloneMap.h"

#include <algorithm>

namespace Brennvik {

GeometryModuleItem::GeometryModuleItem(std::string displayName)
    : DisplayItem(std::move(displayName))
{
}

GeometryModuleItem::~GeometryModuleItem() = default;

DisplayItemList GeometryModuleItem::getGeometryDisplayItems() const
{
    DisplayItemList items;
    items.reserve(m_geometryItems.size());
    for (const auto& weakItem : m_geometryItems) {
        if (auto item = weakItem.lock())
            items.push_back(std::move(item));
    }
    return items;
}

void GeometryModuleItem::addGeometryDisplayItem(std::shared_ptr<DisplayItemInterface> item)
{
    if (!item)
        return;
    auto& listed = m_listed[item.get()];
    if (listed.lock() == item)
        return;
    listed = item;
    m_geometryItems.push_back(item);
}

bool GeometryModuleItem::removeGeometryDisplayItem(const DisplayItemInterface* item)
{
    const auto it = std::find_if(m_geometryItems.begin(), m_geometryItems.end(),
                                 [item](const auto& w) { return w.lock().get() == item; });
    if (!item || it == m_geometryItems.end())
        return false;
    m_geometryItems.erase(it);
    m_listed.erase(item);
    return true;
}

void GeometryModuleItem::clearGeometryDisplayItems()
{
    m_geometryItems.clear();
    m_listed.clear();
}

std::string GeometryModuleItem::typeName() const
{
    return "GeometryModuleItem";
}

std::shared_ptr<DisplayItem> GeometryModuleItem::copyWithoutChildren() const
{
    auto copy = std::make_shared<GeometryModuleItem>(getDisplayName());
    copy->copyStateFrom(*this);
    copy->m_geometryItems = m_geometryItems;
    copy->m_listed = m_listed;
    return copy;
}

void GeometryModuleItem::remapReferences(const DisplayItemCloneMap& map)
{
    std::vector<std::weak_ptr<DisplayItemInterface>> remapped;
    remapped.reserve(m_geometryItems.size());
    for (const auto& weakItem : m_geometryItems) {
        if (auto counterpart = map.remap(weakItem.lock()))
            remapped.push_back(counterpart);
    }
    m_geometryItems = std::move(remapped);
    indexGeometryItems();
}

void GeometryModuleItem::appendTypeProperties(PropertyList& displayItemProperties) const
{
    displayItemProperties.emplace_back("geometry items", std::to_string(getGeometryDisplayItems().size()));
}

void GeometryModuleItem::indexGeometryItems()
{
    m_listed.clear();
    for (const auto& weakItem : m_geometryItems) {
        if (auto item = weakItem.lock())
            m_listed[item.get()] = weakItem;
    }
}

} // namespace Brennvik
