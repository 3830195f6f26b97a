#pragma once

#include "DisplayItem.h"

#include <hostcontract/ShellDisplayItem.h>

namespace Brennvik {

/// A display item that draws a shell: a blank, a die, a punch, a binder.
class BRENNVIK_HOST_EXPORT ShellItem : public DisplayItem, public ShellDisplayItem
{
public:
    /// \a shellType and \a shellName are fixed for the item's life, e.g. "Tool", "Upper die".
    ShellItem(std::string displayName, std::string shellType, std::string shellName);
    ~ShellItem() override;

    std::string typeName() const override;
    std::shared_ptr<DisplayItem> copyWithoutChildren() const override;

protected:
    /// ("shell type", ...), ("shell name", ...).
    void appendTypeProperties(PropertyList& displayItemProperties) const override;
    std::string descriptionDetail() const override;
};

} // namespace Brennvik
