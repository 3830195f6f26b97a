#include "ProcessStepProvider.h"

#include "DisplayItemCloneMap.h"

namespace Brennvik {

ProcessStepProvider::ProcessStepProvider() = default;

ProcessStepProvider::~ProcessStepProvider() = default;

std::shared_ptr<DisplayItemInterface> ProcessStepProvider::getDisplayItemAt(Kind6Index index) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= m_steps.size())
        return nullptr;
    return m_steps[static_cast<std::size_t>(index)].lock();
}

void ProcessStepProvider::appendStep(std::shared_ptr<DisplayItemInterface> item)
{
    m_steps.push_back(item);
}

std::size_t ProcessStepProvider::stepCount() const
{
    return m_steps.size();
}

std::shared_ptr<ProcessStepProvider> ProcessStepProvider::remapped(const DisplayItemCloneMap& map) const
{
    auto copy = std::make_shared<ProcessStepProvider>();
    // Steps keep their indices even when their item has no counterpart.
    for (const auto& step : m_steps)
        copy->m_steps.push_back(map.remap(step.lock()));
    return copy;
}

} // namespace Brennvik
