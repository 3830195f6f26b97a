#pragma once

#include <hostcontract/DisplayItemEventObserver.h>
#include <hostcontract/HostExport.h>
#include <hostcontract/HostTypes.h>

#include <QVarLengthArray>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

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
class BRENNVIK_HOST_EXPORT DisplayItemObserverList
{
public:
    /// \a owner identifies the item the list belongs to in its observers' books;
    /// it may be set later with setOwner (an item cannot name itself while it is
    /// being constructed).
    explicit DisplayItemObserverList(std::weak_ptr<DisplayItemInterface> owner = {});
    /// Forgets every observer; they no longer count this item as observed.
    ~DisplayItemObserverList();
    DisplayItemObserverList(const DisplayItemObserverList&) = delete;
    DisplayItemObserverList& operator=(const DisplayItemObserverList&) = delete;

    void setOwner(std::weak_ptr<DisplayItemInterface> owner);

    /// Adds \a observer; a null pointer or an observer already present changes nothing.
    void add(DisplayItemEventObserver* observer);
    /// Removes \a observer; a null pointer or an unknown observer changes nothing.
    void remove(DisplayItemEventObserver* observer);
    /// Removes every observer.
    void clear();

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
    struct Registration
    {
        DisplayItemEventObserver* observer;
        std::uint64_t serial;
    };

    bool isRegistered(const Registration& registration) const;
    void rememberOwner(DisplayItemEventObserver& observer) const;
    void forgetOwner(DisplayItemEventObserver& observer) const;

    std::weak_ptr<DisplayItemInterface> m_owner;
    // Most items have one observer, the row that shows them: inline, so that
    // neither registering nor taking the snapshot of an event allocates.
    using Registrations = QVarLengthArray<Registration, 1>;
    Registrations m_registrations;
    std::uint64_t m_nextSerial = 1;
};

} // namespace Brennvik
