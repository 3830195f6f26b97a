#pragma once

#include <hostcontract/DisplayItemInterface.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Brennvik {

class DisplayItemEventObserver;

/// A display item that gets everything right except the timing of its
/// events: it queues them and delivers them from the event loop, after the
/// call that caused them has returned. The conformance kit must catch it.
class DeferredDisplayItem : public DisplayItemInterface, public std::enable_shared_from_this<DeferredDisplayItem>
{
public:
    explicit DeferredDisplayItem(std::string name);
    ~DeferredDisplayItem() override;

    RemoveChildResult removeChild(std::shared_ptr<DisplayItemInterface> child, bool keepResources) override;
    DisplayItemInterface* getParent() const override;
    void setVisible(bool visible) override;
    bool isVisible() const override;
    DisplayItemList getChildren() const override;
    /// This item and its descendants, in pre-order.
    void collectSubtreeToShow(DisplayItemList& items) const override;
    /// This item and its descendants, in pre-order.
    void collectSubtree(DisplayItemList& items) const override;
    std::string getDisplayName() const override;
    void getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const override;
    /// Always null: these items belong to no display model.
    DisplayModel* getDisplayModel() const override;
    std::uint64_t getNumberOfDisplayItems() const override;
    std::string getDescription() const override;
    bool isSelectionAllowed() const override;
    void setSelected(bool selected) override;
    bool isSelected() const override;
    bool isSelectable() const override;
    void notifyVisualPropertiesChanged() override;
    void addEventObserver(DisplayItemEventObserver* observer) override;
    void removeEventObserver(DisplayItemEventObserver* observer) override;

    /// Appends \a child; the added event follows later.
    void appendChild(const std::shared_ptr<DeferredDisplayItem>& child);
    /// Sets a business property; the properties event follows later.
    void setProperty(const std::string& name, const std::string& value);
    /// A faithful copy of the subtree, without observers.
    std::shared_ptr<DeferredDisplayItem> deepCopy() const;

private:
    /// Queues \a event for the observers registered when it is delivered.
    void post(std::function<void(DisplayItemEventObserver&)> event);

    std::string m_name;
    DeferredDisplayItem* m_parent = nullptr;
    std::vector<std::shared_ptr<DeferredDisplayItem>> m_children;
    PropertyList m_properties;
    bool m_visible = true;
    bool m_selected = false;
    std::vector<DisplayItemEventObserver*> m_observers;
};

} // namespace Brennvik
