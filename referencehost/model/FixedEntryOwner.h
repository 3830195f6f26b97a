#pragma once

#include <hostcontract/InitialEntryLookups.h>

#include <memory>

namespace Brennvik {

class DisplayItemCloneMap;

/// Owner of the default entry: a display item chosen by the application (the
/// part, as a rule). Holds it weakly; a gone item gives an empty reference.
class BRENNVIK_HOST_EXPORT FixedEntryOwner : public DefaultEntryOwner
{
public:
    explicit FixedEntryOwner(std::weak_ptr<DisplayItemInterface> entry);
    ~FixedEntryOwner() override;

    std::shared_ptr<DisplayItemInterface> getEntryDisplayItem() const override;
    void setEntryDisplayItem(std::weak_ptr<DisplayItemInterface> entry);

    /// The same owner, pointing at the entry's counterpart in a deep copy.
    std::shared_ptr<FixedEntryOwner> remapped(const DisplayItemCloneMap& map) const;

private:
    std::weak_ptr<DisplayItemInterface> m_entry;
};

} // namespace Brennvik
