#pragma once

#include "DisplayItemInterface.h"

namespace Brennvik {

/// A display item that draws a shell (a sheet, a die, a punch) of the part or
/// its process. The shell's type and name are fixed when the item is made.
class BRENNVIK_HOST_EXPORT ShellDisplayItem : public virtual DisplayItemInterface
{
public:
    ShellDisplayItem(std::string shellType, std::string shellName);
    ~ShellDisplayItem() override;

    /// "<type>: <name>", for example "Tool: Upper die".
    std::string getShellTypeAndNameAsString() const;

    const std::string& getShellType() const { return m_shellType; }
    const std::string& getShellName() const { return m_shellName; }

private:
    std::string m_shellType;
    std::string m_shellName;
};

} // namespace Brennvik
