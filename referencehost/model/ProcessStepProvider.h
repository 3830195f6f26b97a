#pragma once

#include <hostcontract/InitialEntryLookups.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace Brennvik {

class DisplayItemCloneMap;

/// Kind 6: the display items of the process steps, by step index (0-based).
/// Holds weak references; a step whose item is gone gives an empty reference.
class BRENNVIK_HOST_EXPORT ProcessStepProvider : public Kind6Provider
{
public:
    ProcessStepProvider();
    ~ProcessStepProvider() override;

    /// Empty for a negative index, an index past the last step or a gone item.
    std::shared_ptr<DisplayItemInterface> getDisplayItemAt(Kind6Index index) const override;

    /// Appends the item of the next step; its index is the previous stepCount().
    void appendStep(std::shared_ptr<DisplayItemInterface> item);
    std::size_t stepCount() const;

    /// The same steps, pointing at the counterparts in a deep copy.
    std::shared_ptr<ProcessStepProvider> remapped(const DisplayItemCloneMap& map) const;

private:
    std::vector<std::weak_ptr<DisplayItemInterface>> m_steps;
};

} // namespace Brennvik
