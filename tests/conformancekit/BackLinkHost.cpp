#include "BackLinkHost.h"

namespace Brennvik {

DisplayItemList BackLinkDisplayItem::getChildren() const
{
    DisplayItemList children = DisplayItem::getChildren();
    const DisplayItem* back = parentItem() ? parentItem() : this;
    children.push_back(std::const_pointer_cast<DisplayItem>(back->shared_from_this()));
    return children;
}

BackLinkHost::BackLinkHost()
    : ReferenceHostWithItems("host whose items link back to their parents")
{
}

} // namespace Brennvik
