#include "EmptyChildHost.h"

#include <referencehost/model/DisplayItem.h>

namespace Brennvik {

namespace {

class EmptyChildDisplayItem : public DisplayItem
{
public:
    using DisplayItem::DisplayItem;

    DisplayItemList getChildren() const override
    {
        DisplayItemList children = DisplayItem::getChildren();
        children.push_back(nullptr);
        return children;
    }

    std::shared_ptr<DisplayItem> copyWithoutChildren() const override
    {
        auto copy = std::make_shared<EmptyChildDisplayItem>(getDisplayName());
        copy->copyStateFrom(*this);
        return copy;
    }
};

} // namespace

std::string EmptyChildHost::hostName() const
{
    return "host with empty children";
}

std::shared_ptr<DisplayItemInterface> EmptyChildHost::makeItem(const std::string& name)
{
    return std::make_shared<EmptyChildDisplayItem>(name);
}

} // namespace Brennvik
