#pragma once

#include <hostcontract/InitialEntryLookups.h>

namespace Brennvik {

/// Kind 7: the key of the active tool.
class BRENNVIK_HOST_EXPORT ToolKeySource : public Kind7Source
{
public:
    explicit ToolKeySource(Kind7Key key);
    ~ToolKeySource() override;

    Kind7Key getKey() const override;
    void setKey(Kind7Key key);

private:
    Kind7Key m_key;
};

} // namespace Brennvik
