#include "EmptyChildHost.h"

namespace Brennvik {

DisplayItemList EmptyChildDisplayItem::getChildren() const
{
    DisplayItemList children = DisplayItem::getChildren();
    children.push_back(nullptr);
    return children;
}

EmptyChildHost::EmptyChildHost()
    : ReferenceHostWithItems("host with empty children")
{
}

} // namespace Brennvik
