#pragma once

#include "ReferenceHostWithItems.h"

namespace Brennvik {

/// A reference item whose getChildren() ends with a link back to its parent,
/// the root's to itself, as in a doubly linked list.
class BackLinkDisplayItem : public SelfCopyingDisplayItem<BackLinkDisplayItem>
{
public:
    using SelfCopyingDisplayItem::SelfCopyingDisplayItem;

    DisplayItemList getChildren() const override;
};

/// A broken host for the conformance kit: the reference host with
/// BackLinkDisplayItems.
class BackLinkHost : public ReferenceHostWithItems<BackLinkDisplayItem>
{
public:
    BackLinkHost();
};

} // namespace Brennvik
