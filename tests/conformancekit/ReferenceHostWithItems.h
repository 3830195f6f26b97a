#pragma once

#include "ReferenceConformanceHost.h"

#include <referencehost/model/DisplayItem.h>

#include <memory>
#include <string>

namespace Brennvik {

/// The reference host with items of class \a Item: the broken hosts whose
/// only fault is in their items are this under another name.
template<class Item>
class ReferenceHostWithItems : public ReferenceConformanceHost
{
public:
    explicit ReferenceHostWithItems(std::string name)
        : m_name(std::move(name))
    {
    }

    std::string hostName() const override { return m_name; }

    std::shared_ptr<DisplayItemInterface> makeItem(const std::string& name) override
    {
        return std::make_shared<Item>(name);
    }

private:
    std::string m_name;
};

/// A reference item whose clones are of its own class \a Self, so that its
/// fault is in the clone too.
template<class Self>
class SelfCopyingDisplayItem : public DisplayItem
{
public:
    using DisplayItem::DisplayItem;

    std::shared_ptr<DisplayItem> copyWithoutChildren() const override
    {
        auto copy = std::make_shared<Self>(getDisplayName());
        copy->copyStateFrom(*this);
        return copy;
    }
};

} // namespace Brennvik
