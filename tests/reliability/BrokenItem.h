#pragma once

#include <referencehost/model/DisplayItem.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Brennvik::Test {

/// A display item whose list of children breaks the host contract on
/// purpose, as a careless host's might: empty references, the item itself or
/// one of its ancestors among its real children.
///
/// Only getChildren shows the flaws. The host's own walks (counts, subtree
/// collection, copies, removal) keep to the real children, so the model stays
/// a tree; a copy carries the same flaws.
class BrokenItem : public DisplayItem
{
public:
    /// One extra entry of getChildren, before the real child at \a position
    /// (after the last one when beyond them).
    struct Flaw
    {
        std::size_t position = 0;
        /// -1: an empty reference; 0: the item itself; n > 0: its n-th ancestor
        /// (left out while the item has fewer ancestors).
        int ancestorLevel = -1;
    };

    explicit BrokenItem(std::string displayName);

    void setFlaws(std::vector<Flaw> flaws);
    const std::vector<Flaw>& flaws() const;

    DisplayItemList getChildren() const override;
    std::string typeName() const override;
    std::shared_ptr<DisplayItem> copyWithoutChildren() const override;

private:
    std::shared_ptr<DisplayItemInterface> entryFor(const Flaw& flaw) const;

    std::vector<Flaw> m_flaws;
};

} // namespace Brennvik::Test
