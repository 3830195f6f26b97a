#include "ToolKeySource.h"

namespace Brennvik {

ToolKeySource::ToolKeySource(Kind7Key key)
    : m_key(std::move(key))
{
}

ToolKeySource::~ToolKeySource() = default;

Kind7Key ToolKeySource::getKey() const
{
    return m_key;
}

void ToolKeySource::setKey(Kind7Key key)
{
    m_key = std::move(key);
}

} // namespace Brennvik
