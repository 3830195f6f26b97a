#include <hostcontract/ShellDisplayItem.h>

namespace Brennvik {

ShellDisplayItem::ShellDisplayItem(std::string shellType, std::string shellName)
    : m_shellType(std::move(shellType))
    , m_shellName(std::move(shellName))
{
}

ShellDisplayItem::~ShellDisplayItem() = default;

std::string ShellDisplayItem::getShellTypeAndNameAsString() const
{
    return m_shellType + ": " + m_shellName;
}

} // namespace Brennvik
