#pragma once

#include <hostcontract/InitialEntryLookups.h>

#include <memory>
#include <string>

namespace Brennvik {

class DisplayItemCloneMap;

/// Kind 7: finds the item of a key in a display item tree: the first item in
/// pre-order whose business property \a keyProperty has the key as its value,
/// or, with an empty \a keyProperty, whose display name is the key.
class BRENNVIK_HOST_EXPORT ToolKeyLookup : public Kind7Lookup
{
public:
    ToolKeyLookup(std::weak_ptr<DisplayItemInterface> root, std::string keyProperty);
    ~ToolKeyLookup() override;

    /// Empty when no item matches or the tree is gone.
    std::shared_ptr<DisplayItemInterface> findDisplayItem(const Kind7Key& key) const override;

    const std::string& keyProperty() const;
    /// The tree searched; empty when it is gone.
    std::shared_ptr<DisplayItemInterface> root() const;

    /// The same lookup over the counterpart of the tree in a deep copy.
    std::shared_ptr<ToolKeyLookup> remapped(const DisplayItemCloneMap& map) const;

private:
    bool matches(const DisplayItemInterface& item, const Kind7Key& key) const;

    std::weak_ptr<DisplayItemInterface> m_root;
    std::string m_keyProperty;
};

} // namespace Brennvik
