#include "SceneContext.h"

namespace Brennvik {

SceneContext::SceneContext(int kind, std::string name)
    : m_kind(kind)
    , m_name(std::move(name))
{
}

SceneContext::~SceneContext() = default;

int SceneContext::getContextKind() const
{
    return m_kind;
}

const std::string& SceneContext::name() const
{
    return m_name;
}

} // namespace Brennvik
