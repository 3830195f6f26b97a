#pragma once

#include "CloneDefect.h"
#include "DisplayItemCloneMap.h"

#include <hostcontract/HostExport.h>

#include <memory>
#include <vector>

namespace Brennvik {

class DisplayItem;

/// Deep copy of display item trees: every item is copied into a new object of
/// the same concrete type with the same name, state and properties, children in
/// order. Clone defects, if given, are built into the tree copied with defects on.
///
/// Use: cloneTree for each tree of a view model, then remapReferences once, so
/// that references between items follow the copies across all trees.
class BRENNVIK_HOST_EXPORT DisplayItemCloner
{
public:
    explicit DisplayItemCloner(std::vector<CloneDefect> defects = {});

    /// A copy of \a root's subtree, or empty for an empty root. With
    /// \a applyDefects the defects are resolved against this tree and built in.
    std::shared_ptr<DisplayItem> cloneTree(const std::shared_ptr<DisplayItem>& root, bool applyDefects);
    /// Re-points the references that the copies hold (geometry lists) at the copies.
    void remapReferences();

    const DisplayItemCloneMap& cloneMap() const;
    /// Defects that no tree copied with defects on could apply, in the order given.
    std::vector<CloneDefect> unappliedDefects() const;

private:
    struct PendingDefect
    {
        CloneDefect defect;
        const DisplayItem* target = nullptr;
        bool applied = false;
    };

    std::shared_ptr<DisplayItem> copyNode(const DisplayItem& original);
    std::shared_ptr<DisplayItem> copyRepeated(const DisplayItem& original);
    void copyChildren(const DisplayItem& original, DisplayItem& copy);
    /// Puts what stands for \a child into \a parentCopy: nothing, the child itself
    /// or a new copy. Returns the new copy, whose children are still to come.
    DisplayItem* copyChild(const std::shared_ptr<DisplayItem>& child, DisplayItem& parentCopy);
    /// What follows a copied child once its own children are copied: its added child and its repeat.
    void finishChild(const DisplayItem& child, DisplayItem& childCopy, DisplayItem& parentCopy);
    void appendAddedChildren(const DisplayItem& original, DisplayItem& copy);
    void recordSubtree(const DisplayItem& original, bool shared);
    PendingDefect* defectFor(const DisplayItem& item, CloneDefect::Kind kind);
    static std::shared_ptr<DisplayItem> copyAsOtherType(const DisplayItem& original);
    static bool changeProperty(DisplayItem& copy, const CloneDefect& defect);

    std::vector<PendingDefect> m_defects;
    bool m_defectsActive = false;
    DisplayItemCloneMap m_map;
    std::vector<std::shared_ptr<DisplayItem>> m_copies;
    // Geometry modules whose last list entry goes once the lists are remapped.
    std::vector<std::shared_ptr<DisplayItem>> m_geometryEntryDrops;
};

} // namespace Brennvik
