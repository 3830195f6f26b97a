#include "ShellItem.h"

namespace Brennvik {

ShellItem::ShellItem(std::string displayName, std::string shellType, std::string shellName)
    : DisplayItem(std::move(displayName))
    , ShellDisplayItem(std::move(shellType), std::move(shellName))
{
}

ShellItem::~ShellItem() = default;

std::string ShellItem::typeName() const
{
    return "ShellItem";
}

std::shared_ptr<DisplayItem> ShellItem::copyWithoutChildren() const
{
    auto copy = std::make_shared<ShellItem>(getDisplayName(), getShellType(), getShellName());
    copy->copyStateFrom(*this);
    return copy;
}

void ShellItem::appendTypeProperties(PropertyList& displayItemProperties) const
{
    displayItemProperties.emplace_back("shell type", getShellType());
    displayItemProperties.emplace_back("shell name", getShellName());
}

std::string ShellItem::descriptionDetail() const
{
    return getShellTypeAndNameAsString();
}

} // namespace Brennvik
