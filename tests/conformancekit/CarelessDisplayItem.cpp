#include "CarelessDisplayItem.h"

namespace Brennvik {

CarelessDisplayItem::CarelessDisplayItem(std::string displayName)
    : DisplayItem(std::move(displayName))
{
}

RemoveChildResult CarelessDisplayItem::removeChild(std::shared_ptr<DisplayItemInterface> child, bool keepResources)
{
    if (!child)
        return RemoveChildResult::Removed;
    return DisplayItem::removeChild(std::move(child), keepResources);
}

void CarelessDisplayItem::collectSubtreeToShow(DisplayItemList& /*items*/) const
{
}

void CarelessDisplayItem::collectSubtree(DisplayItemList& items) const
{
    items.clear();
    DisplayItem::collectSubtree(items);
}

void CarelessDisplayItem::getProperties(PropertyList& businessObjectProperties,
                                        PropertyList& displayItemProperties) const
{
    businessObjectProperties.clear();
    displayItemProperties.clear();
    DisplayItem::getProperties(businessObjectProperties, displayItemProperties);
}

} // namespace Brennvik
