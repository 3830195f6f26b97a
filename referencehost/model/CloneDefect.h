#pragma once

#include <hostcontract/HostExport.h>

#include <optional>
#include <string>
#include <string_view>

namespace Brennvik {

/// A deliberate fault that a view model builds into its clones, so that the
/// clone diagnostics have something to find.
///
/// The target is the first item, in pre-order of the original display model's
/// tree (root included), whose display name equals \a target. The label display
/// model is never affected. A defect whose target is not found, or that cannot
/// apply to it, is left out and reported by SceneViewModel::lastCloneUnappliedDefects.
struct BRENNVIK_HOST_EXPORT CloneDefect
{
    enum class Kind {
        /// The target (with its subtree) is missing from the clone. Not for the root.
        DropChild,
        /// The target's copy gets one more child, appended: a DisplayItem named
        /// \a value, or "Unexpected child" when \a value is empty.
        AddChild,
        /// The clone's parent holds the original target object (and so its
        /// original subtree) instead of a copy. Not for the root.
        ShareChild,
        /// The target's copy is of another concrete type: a plain DisplayItem becomes
        /// a LabelableItem (empty label, labels not allowed), every other type
        /// becomes a plain DisplayItem. Name, state, properties and children are
        /// copied as usual.
        ChangeChildType,
        /// The target's copy has the opposite visibility.
        FlipVisibility,
        /// The value of one display property of the target's copy differs: the
        /// property named \a property (the first display property set on the item
        /// when empty) gets \a value, or its old value with " (cloned)" appended
        /// when \a value is empty. Not applied if the item has no such property.
        ChangePropertyValue,
        /// The target's copy is followed, in its parent's copy, by a second faithful
        /// copy of the target with its whole subtree, so the parent has one more
        /// child. References to the target keep following the first copy. Not for
        /// the root.
        RepeatChild,
        /// The copy of the target geometry module does not list the last entry of
        /// its geometry list (the listed item itself is copied as usual). Not
        /// applied to an item that is no geometry module or lists nothing.
        DropGeometryEntry,
    };

    Kind kind = Kind::DropChild;
    std::string target;
    /// ChangePropertyValue: the property name.
    std::string property;
    /// AddChild: the added child's name; ChangePropertyValue: the new value.
    std::string value;

    /// "drop-child", "add-child", "share-child", "change-type", "flip-visibility", "change-property",
    /// "repeat-child", "drop-geometry-entry".
    static std::string toString(Kind kind);
    /// The kind named \a text (as toString writes it); empty for an unknown name.
    static std::optional<Kind> kindFromString(std::string_view text);

    /// "<kind>:<target>", the command-line form.
    std::string toString() const;
    /// Parses "<kind>:<target>" (the target is everything after the first ':').
    /// Empty for an unknown kind, a missing ':' or an empty target.
    static std::optional<CloneDefect> fromString(std::string_view text);

    bool operator==(const CloneDefect& other) const;
    bool operator!=(const CloneDefect& other) const { return !(*this == other); }
};

} // namespace Brennvik
