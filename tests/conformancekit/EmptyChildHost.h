#pragma once

#include "ReferenceHostWithItems.h"

namespace Brennvik {

/// A reference item whose getChildren() ends with an empty reference, as a
/// null-terminated array would.
class EmptyChildDisplayItem : public SelfCopyingDisplayItem<EmptyChildDisplayItem>
{
public:
    using SelfCopyingDisplayItem::SelfCopyingDisplayItem;

    DisplayItemList getChildren() const override;
};

/// A broken host for the conformance kit: the reference host with
/// EmptyChildDisplayItems.
class EmptyChildHost : public ReferenceHostWithItems<EmptyChildDisplayItem>
{
public:
    EmptyChildHost();
};

} // namespace Brennvik
