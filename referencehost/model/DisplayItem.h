#pragma once

#include "ChildSlots.h"
#include "DisplayItemObserverList.h"
#include "PackedProperties.h"

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/HostExport.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Brennvik {

class DisplayItemCloneMap;
class DisplayItemCloner;
class SceneDisplayModel;

/// An in-memory display item: one node of the display model tree.
///
/// Items are made with std::make_shared and own their children; the parent is a
/// raw back pointer. An item attached to a display model (directly as its root or
/// through its ancestors) knows that model; a detached subtree knows none.
///
/// Events are raised synchronously on the item's own observers:
/// - children added (appendChild, insertChild, appendChildren) and removed
///   (removeChild, removeChildren) on the parent's observers, one event per call;
/// - properties changed (setDisplayName, setBusinessProperty, setDisplayProperty,
///   notifyPropertiesChanged and the setters of the specialisations);
/// - visual properties changed by notifyVisualPropertiesChanged only: setVisible
///   and setSelected stay silent so that a caller can change many items and
///   notify each once.
/// The item keeps itself alive while it dispatches, so an observer may drop the
/// last reference to it during the event.
class BRENNVIK_HOST_EXPORT DisplayItem :
    public virtual DisplayItemInterface,
    public std::enable_shared_from_this<DisplayItem>
{
public:
    explicit DisplayItem(std::string displayName);
    /// Children outlive their parent only if someone else holds them; they are
    /// then detached (no parent, no display model).
    ~DisplayItem() override;

    /// \name DisplayItemInterface
    ///@{
    /// Detaches \a child (a direct child, compared by identity) and raises the
    /// removed event with it. With \a keepResources false the child's subtree
    /// releases its drawing resources (see resourcesReleased).
    RemoveChildResult removeChild(std::shared_ptr<DisplayItemInterface> child, bool keepResources) override;
    DisplayItemInterface* getParent() const override;
    void setVisible(bool visible) override;
    bool isVisible() const override;
    DisplayItemList getChildren() const override;
    /// Appends this item and all its descendants in pre-order, whatever their visibility.
    void collectSubtreeToShow(DisplayItemList& items) const override;
    /// Appends this item and all its descendants in pre-order, whatever their visibility.
    void collectSubtree(DisplayItemList& items) const override;
    std::string getDisplayName() const override;
    /// Business list: ("pointer", address of the item), then the business properties.
    /// Display list: ("pointer (DisplayItemInterface)", address of the interface),
    /// ("display item type", typeName()), the type's own properties, then the
    /// display properties.
    void getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const override;
    DisplayModel* getDisplayModel() const override;
    /// This item and all its descendants.
    std::uint64_t getNumberOfDisplayItems() const override;
    /// Type, display name, type detail and path from the root, e.g.
    /// ShellItem "Punch" [Tool: Punch] at Forming simulation/Process/OP10 Drawing/Punch
    std::string getDescription() const override;
    bool isSelectionAllowed() const override;
    /// Changes the state without checking isSelectionAllowed or isSelectable:
    /// those flags are for the callers to honour.
    void setSelected(bool selected) override;
    bool isSelected() const override;
    bool isSelectable() const override;
    /// Counts the call and raises the visual-properties event on this item's observers.
    void notifyVisualPropertiesChanged() override;
    void addEventObserver(DisplayItemEventObserver* observer) override;
    void removeEventObserver(DisplayItemEventObserver* observer) override;
    ///@}

    /// Name of the concrete class, as shown in the "display item type" property.
    virtual std::string typeName() const;
    /// A new item of the same concrete type with this item's name, state and
    /// properties, but without parent, children, observers or display model.
    /// References to other items (geometry lists) still point at the originals;
    /// remapReferences re-points them.
    virtual std::shared_ptr<DisplayItem> copyWithoutChildren() const;
    /// Re-points references to other items through \a map after a deep copy.
    virtual void remapReferences(const DisplayItemCloneMap& map);

    /// Renames the item; raises properties changed.
    void setDisplayName(std::string displayName);

    /// \name Structure
    /// A child that has a parent is first removed from it (with its removed event).
    /// Adding an empty child, the item itself or one of its ancestors throws
    /// std::invalid_argument.
    ///@{
    /// Appends \a child; raises the added event with {child}.
    void appendChild(std::shared_ptr<DisplayItem> child);
    /// Inserts \a child before position \a index (at most childCount());
    /// raises the added event with {child}. Throws std::out_of_range for a larger index.
    void insertChild(std::size_t index, std::shared_ptr<DisplayItem> child);
    /// Appends all \a children in order; raises one added event with all of them.
    void appendChildren(const std::vector<std::shared_ptr<DisplayItem>>& children);
    /// Removes those of \a children that are direct children; raises one removed
    /// event with them (none if no item matched). Returns how many were removed.
    std::size_t removeChildren(const DisplayItemSet& children, bool keepResources = false);
    ///@}

    std::size_t childCount() const;
    /// Empty for an index out of range.
    std::shared_ptr<DisplayItem> childAt(std::size_t index) const;
    const std::vector<std::shared_ptr<DisplayItem>>& children() const;
    /// Position of \a child among the children, or -1.
    int indexOfChild(const DisplayItemInterface* child) const;
    /// The parent as a DisplayItem; null for a root.
    DisplayItem* parentItem() const;
    /// First item of this subtree (this item included) in pre-order whose display name is \a name.
    std::shared_ptr<DisplayItem> findByDisplayName(const std::string& name);
    /// Display names from the root down to this item, separated by "/".
    std::string path() const;

    /// \name Properties
    /// Setting an existing name replaces its value in place; a new name is
    /// appended. Both raise properties changed.
    ///@{
    void setBusinessProperty(const std::string& name, std::string value);
    void setDisplayProperty(const std::string& name, std::string value);
    /// Sets each of \a properties in order as setBusinessProperty would (a
    /// repeated name keeps its first place and its last value), in time linear
    /// in both lists, and raises properties changed once; nothing for an empty list.
    void setBusinessProperties(PropertyList properties);
    /// As setBusinessProperties, for the display properties.
    void setDisplayProperties(PropertyList properties);
    std::optional<std::string> businessProperty(const std::string& name) const;
    std::optional<std::string> displayProperty(const std::string& name) const;
    /// The business properties as a list, made on each call.
    PropertyList businessProperties() const;
    /// The display properties as a list, made on each call.
    PropertyList displayProperties() const;
    ///@}

    /// Whether the selection state may be changed at all (the menu offers selection).
    void setSelectionAllowed(bool allowed);
    /// Whether the selection state may be changed now.
    void setSelectable(bool selectable);

    /// True after the item was removed with keepResources false, until it is attached again.
    bool resourcesReleased() const;

    /// Raises the properties-changed event on this item's observers.
    void notifyPropertiesChanged();
    /// How often notifyVisualPropertiesChanged ran on this item.
    int visualNotificationCount() const;
    /// Number of observers registered now.
    std::size_t observerCount() const;
    bool isObservedBy(const DisplayItemEventObserver* observer) const;

    /// Address of \a object as lower-case hexadecimal with "0x", as the pointer properties show it.
    static std::string addressText(const void* object);

protected:
    /// Appends properties that belong to the concrete type, after "display item type".
    virtual void appendTypeProperties(PropertyList& displayItemProperties) const;
    /// Extra text for getDescription (shown in square brackets); empty for none.
    virtual std::string descriptionDetail() const;
    /// Copies name-independent state (visibility, selection, flags, properties) from \a other.
    void copyStateFrom(const DisplayItem& other);
    /// Raises the properties-changed event; for the setters of derived classes.
    void raisePropertiesChanged();

private:
    friend class DisplayItemCloner;
    friend class SceneDisplayModel;

    void checkCanAdopt(const std::shared_ptr<DisplayItem>& child) const;
    /// Whether \a candidate is \a item or one of its ancestors.
    static bool isSelfOrAncestorOf(const DisplayItem& candidate, const DisplayItem& item);
    /// The first child from \a slot on whose parent this item is; \a slot moves past it.
    const DisplayItem* nextOwnedChild(std::size_t& slot) const;
    void attachWithoutEvent(std::size_t index, const std::shared_ptr<DisplayItem>& child);
    /// Takes the child out of m_children, leaving its slot empty; empty if it is not a child.
    std::shared_ptr<DisplayItem> detachWithoutEvent(const DisplayItemInterface* child, bool keepResources);
    /// Sets the model on this item and on the descendants it owns (whose parent it is).
    void setDisplayModelRecursively(DisplayModel* model);
    void setResourcesReleasedRecursively(bool released);
    /// Visits this item and the descendants it owns (whose parent it is); the
    /// children of an item are visited only if \a visit returns true for it.
    void forEachOwnedItem(const std::function<bool(DisplayItem&)>& visit);
    /// Visits this item and all descendants in pre-order while \a visit returns true.
    void forEachInPreOrder(const std::function<bool(const DisplayItem&)>& visit) const;
    void collectPreOrder(DisplayItemList& items) const;
    /// Detaches and frees the children without recursion; those held elsewhere survive.
    void releaseChildren();
    /// Moves the children into \a pending (last first), detaching those this item owns.
    void takeChildren(std::vector<std::shared_ptr<DisplayItem>>& pending);
    std::shared_ptr<DisplayItemInterface> selfReference();

    // A large model holds millions of items: the members are ordered and
    // sized so that an item takes as little room as it can.
    std::string m_displayName;
    DisplayItem* m_parent = nullptr;
    ChildSlots m_children;
    DisplayModel* m_displayModel = nullptr;
    PackedProperties m_properties;
    DisplayItemObserverList m_observers;
    int m_visualNotificationCount = 0;
    bool m_visible : 1;
    bool m_selected : 1;
    bool m_selectionAllowed : 1;
    bool m_selectable : 1;
    bool m_resourcesReleased : 1;
};

} // namespace Brennvik
