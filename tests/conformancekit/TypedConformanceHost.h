#pragma once

#include <conformancekit/ConformanceHost.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace Brennvik {

/// The part of a conformance adapter that only knows its item class \a Item:
/// making items, hanging them under each other, and telling a foreign item
/// from its own.
template<class Item>
class TypedConformanceHost : public Conformance::ConformanceHost
{
public:
    std::shared_ptr<DisplayItemInterface> makeItem(const std::string& name) override
    {
        return std::make_shared<Item>(name);
    }

    void appendChild(const std::shared_ptr<DisplayItemInterface>& parent,
                     const std::shared_ptr<DisplayItemInterface>& child) override
    {
        ownItem(parent)->appendChild(ownItem(child));
    }

protected:
    /// \a item as this host's own class; an item of another host is a usage error.
    static std::shared_ptr<Item> ownItem(const std::shared_ptr<DisplayItemInterface>& item)
    {
        auto own = std::dynamic_pointer_cast<Item>(item);
        if (!own)
            throw std::invalid_argument("not an item of this host");
        return own;
    }
};

} // namespace Brennvik
