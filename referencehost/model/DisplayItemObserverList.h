#pragma once

#include <hostcontract/DisplayItemEventObserver.h>
#include <hostcontract/HostExport.h>
#include <hostcontract/HostTypes.h>

#include "ObserverRegistrations.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace Brennvik {

class DisplayItemInterface;

/// The observers of one display item, held by raw pointer, and the dispatch of
/// the item's events to them.
///
/// Dispatch is synchronous and runs over a snapshot of the registrations taken
/// when the event starts: an observer that unregisters (or is destroyed, which
/// unregisters it) during the event is skipped from then on, and one that
/// registers during the event receives the next event only. Each registration
/// carries a serial number, so an observer that is destroyed and a new one that
/// happens to get the same address are never confused.
///
/// The list does not know its item: the item names itself (\a owner) where the
/// observers' books of the items they observe change. Every display item has a
/// list, so it is kept to one vector: empty, it holds no memory.
class BRENNVIK_HOST_EXPORT DisplayItemObserverList
{
public:
    DisplayItemObserverList() = default;
    /// The owning item clears the list before it goes; what is left is dropped.
    ~DisplayItemObserverList() = default;
    DisplayItemObserverList(const DisplayItemObserverList&) = delete;
    DisplayItemObserverList& operator=(const DisplayItemObserverList&) = delete;

    /// Adds \a observer, which then counts \a owner among the items it
    /// observes (unless \a owner is empty: an item that no shared reference
    /// holds yet). A null pointer or an observer already present changes nothing.
    void add(DisplayItemEventObserver* observer, const std::weak_ptr<DisplayItemInterface>& owner);
    /// Removes \a observer, which no longer counts \a owner; a null pointer or
    /// an unknown observer changes nothing.
    void remove(DisplayItemEventObserver* observer, const std::weak_ptr<DisplayItemInterface>& owner);
    /// Removes every observer; none of them counts \a owner any more.
    void clear(const std::weak_ptr<DisplayItemInterface>& owner);

    bool contains(const DisplayItemEventObserver* observer) const;
    std::size_t size() const;
    bool empty() const;

    /// Calls \a event on every observer registered now that is still registered
    /// when its turn comes.
    void dispatch(const std::function<void(DisplayItemEventObserver&)>& event) const;

    void notifyPropertiesChanged(const std::shared_ptr<DisplayItemInterface>& item) const;
    void notifyVisualPropertiesChanged(const std::shared_ptr<DisplayItemInterface>& item) const;
    void notifyItemsAdded(const DisplayItemList& items) const;
    void notifyItemsRemoved(const DisplayItemSet& items) const;
    void notifyPreDisplayUpdate() const;
    void notifyPostDisplayUpdate() const;
    void notifyChildOverallVisibilityChanged(bool visible) const;

private:
    using Registration = ObserverRegistration;

    bool isRegistered(const Registration& registration) const;
    static void rememberOwner(DisplayItemEventObserver& observer, const std::weak_ptr<DisplayItemInterface>& owner);
    static void forgetOwner(DisplayItemEventObserver& observer, const std::weak_ptr<DisplayItemInterface>& owner);

    ObserverRegistrations m_registrations;
};

} // namespace Brennvik
