#include "BackLinkHost.h"

#include <referencehost/model/DisplayItem.h>

namespace Brennvik {

namespace {

class BackLinkDisplayItem : public DisplayItem
{
public:
    using DisplayItem::DisplayItem;

    DisplayItemList getChildren() const override
    {
        DisplayItemList children = DisplayItem::getChildren();
        const DisplayItem* back = parentItem() ? parentItem() : this;
        children.push_back(std::const_pointer_cast<DisplayItem>(back->shared_from_this()));
        return children;
    }

    std::shared_ptr<DisplayItem> copyWithoutChildren() const override
    {
        auto copy = std::make_shared<BackLinkDisplayItem>(getDisplayName());
        copy->copyStateFrom(*this);
        return copy;
    }
};

} // namespace

std::string BackLinkHost::hostName() const
{
    return "host whose items link back to their parents";
}

std::shared_ptr<DisplayItemInterface> BackLinkHost::makeItem(const std::string& name)
{
    return std::make_shared<BackLinkDisplayItem>(name);
}

} // namespace Brennvik
