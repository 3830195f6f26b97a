#pragma once

#include "HostExport.h"
#include "HostTypes.h"

namespace Brennvik {

class DisplayModel;
class DisplayItemEventObserver;

/// Abstract node of the host's 3D display model tree.
///
/// Display items are shared objects owned by the host. Clients hold them by
/// std::shared_ptr while they work on them and by std::weak_ptr otherwise.
/// Every call happens on the GUI thread; events are raised synchronously
/// inside the call that causes them.
class BRENNVIK_HOST_EXPORT DisplayItemInterface
{
public:
    DisplayItemInterface() = default;
    virtual ~DisplayItemInterface() = default;
    DisplayItemInterface(const DisplayItemInterface&) = delete;
    DisplayItemInterface& operator=(const DisplayItemInterface&) = delete;

    /// Detaches \a child from this item and raises the removed event on this
    /// item's observers. The bool asks the host to keep the child's resources
    /// for a later re-insertion (false: release them).
    virtual RemoveChildResult removeChild(std::shared_ptr<DisplayItemInterface> child, bool keepResources) = 0;
    /// The item that holds this one; null for the root. Non-owning.
    virtual DisplayItemInterface* getParent() const = 0;
    /// Makes the item itself visible or invisible. Raises no event by itself:
    /// callers follow up with notifyVisualPropertiesChanged.
    virtual void setVisible(bool visible) = 0;
    virtual bool isVisible() const = 0;
    /// The children, in order.
    virtual DisplayItemList getChildren() const = 0;
    /// Appends the items that "make subtree visible" acts on.
    virtual void collectSubtreeToShow(DisplayItemList& items) const = 0;
    /// Appends the items that "make subtree invisible" acts on.
    virtual void collectSubtree(DisplayItemList& items) const = 0;
    virtual std::string getDisplayName() const = 0;
    /// Appends first the business object's properties, then the display item's own.
    virtual void getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const = 0;
    /// The display model this item belongs to; null while the item is detached.
    virtual DisplayModel* getDisplayModel() const = 0;
    /// Number of display items this item stands for (itself and its subtree).
    virtual std::uint64_t getNumberOfDisplayItems() const = 0;
    /// Text that identifies the item in reports.
    virtual std::string getDescription() const = 0;
    virtual bool isSelectionAllowed() const = 0;
    virtual void setSelected(bool selected) = 0;
    virtual bool isSelected() const = 0;
    /// Whether the selection state may be changed now.
    virtual bool isSelectable() const = 0;
    /// Tells the item's observers (and through them the display) that its
    /// visibility or selection changed. Raises the visual-properties event.
    virtual void notifyVisualPropertiesChanged() = 0;

    /// \name Host side of DisplayItemEventObserver
    /// Used by DisplayItemEventObserver::registerToDisplayItem and
    /// unregisterFromDisplayItem; clients do not call these directly.
    /// Adding an observer twice keeps one registration.
    ///@{
    virtual void addEventObserver(DisplayItemEventObserver* observer) = 0;
    virtual void removeEventObserver(DisplayItemEventObserver* observer) = 0;
    ///@}
};

} // namespace Brennvik
