#pragma once

#include <referencehost/model/DisplayItem.h>

namespace Brennvik {

/// A reference display item that fills its out-parameters carelessly:
/// collectSubtree and getProperties replace what the caller's lists held,
/// collectSubtreeToShow finds nothing, and removeChild claims to have
/// removed an empty reference. Its events are right.
class CarelessDisplayItem : public DisplayItem
{
public:
    explicit CarelessDisplayItem(std::string displayName);

    RemoveChildResult removeChild(std::shared_ptr<DisplayItemInterface> child, bool keepResources) override;
    void collectSubtreeToShow(DisplayItemList& items) const override;
    void collectSubtree(DisplayItemList& items) const override;
    void getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const override;
};

} // namespace Brennvik
