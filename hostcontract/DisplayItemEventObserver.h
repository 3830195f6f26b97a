#pragma once

#include "HostTypes.h"
#include "HostExport.h"

#include <QVarLengthArray>

namespace Brennvik {

/// Base class through which a client follows display items.
///
/// After registerToDisplayItem the item raises its events on this observer,
/// synchronously, inside the call that caused them. An observer may
/// unregister itself, register elsewhere or be destroyed during an event;
/// an observer registered during an event receives the next one, not the
/// one being dispatched. The destructor unregisters from every item still
/// alive, so a destroyed observer is never called.
class BRENNVIK_HOST_EXPORT DisplayItemEventObserver
{
public:
    DisplayItemEventObserver();
    /// A copy starts without registrations: it observes nothing until it registers.
    DisplayItemEventObserver(const DisplayItemEventObserver& other);
    /// Assignment keeps this observer's own registrations unchanged.
    DisplayItemEventObserver& operator=(const DisplayItemEventObserver& other);
    virtual ~DisplayItemEventObserver();

    /// From now on the item's events reach this observer. An empty reference does nothing.
    void registerToDisplayItem(std::shared_ptr<DisplayItemInterface> item);
    /// Stops the item's events. An empty reference (an item already gone) does nothing.
    void unregisterFromDisplayItem(std::shared_ptr<DisplayItemInterface> item);

    /// The observed item's properties changed.
    virtual void onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item);
    /// The observed item's visibility or selection changed.
    virtual void onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item);
    virtual void updateDynamicSectionSceneGraph();
    virtual void onPreDisplayUpdateEvent();
    virtual void onPostDisplayUpdateEvent();
    /// Children were added to the observed item, in the order given.
    virtual void onDisplayItemsAddedEvent(const DisplayItemList& items);
    /// Children were removed from the observed item.
    virtual void onDisplayItemsRemovedEvent(const DisplayItemSet& items);
    virtual void onChildOverallVisibilityChangedEvent(bool visible);

    /// Number of items this observer is registered with and that still exist.
    std::size_t registrationCount() const;

private:
    friend class DisplayItemObserverList;
    // Nearly every observer follows a single item; keeping that one inline
    // spares an allocation for each of the million rows a large tree holds.
    QVarLengthArray<std::weak_ptr<DisplayItemInterface>, 1> m_observedItems;
};

} // namespace Brennvik
