#pragma once

#include "DisplayItem.h"

#include <hostcontract/GeometryModuleDisplayItemInterface.h>

#include <unordered_map>

namespace Brennvik {

/// A geometry module: groups geometry items that have their own place in the
/// tree (usually under the module's "Geometry" group child) and lists them a
/// second time. The list holds weak references: an item that is gone drops out.
/// Changing the list raises no event; readers take it when they need it.
class BRENNVIK_HOST_EXPORT GeometryModuleItem : public DisplayItem, public GeometryModuleDisplayItemInterface
{
public:
    explicit GeometryModuleItem(std::string displayName);
    ~GeometryModuleItem() override;

    /// The listed items that still exist, in the order they were added.
    DisplayItemList getGeometryDisplayItems() const override;

    /// Appends \a item to the list; an empty reference or an item already listed changes nothing.
    void addGeometryDisplayItem(std::shared_ptr<DisplayItemInterface> item);
    /// False when \a item is not listed.
    bool removeGeometryDisplayItem(const DisplayItemInterface* item);
    void clearGeometryDisplayItems();

    std::string typeName() const override;
    std::shared_ptr<DisplayItem> copyWithoutChildren() const override;
    /// Re-points the list at the copies; entries whose item was left out of the copy are dropped.
    void remapReferences(const DisplayItemCloneMap& map) override;

protected:
    /// ("geometry items", count).
    void appendTypeProperties(PropertyList& displayItemProperties) const override;

private:
    /// Rebuilds m_listed from m_geometryItems.
    void indexGeometryItems();

    std::vector<std::weak_ptr<DisplayItemInterface>> m_geometryItems;
    // The listed items by address, so that adding one need not search the
    // list: a module may list 100,000 items. An entry whose item is gone may
    // share its address with a new item, hence the weak reference to compare.
    std::unordered_map<const DisplayItemInterface*, std::weak_ptr<DisplayItemInterface>> m_listed;
};

} // namespace Brennvik
