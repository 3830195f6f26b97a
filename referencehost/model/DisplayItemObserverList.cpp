#include "DisplayItemObserverList.h"

#include <QVarLengthArray>

#include <algorithm>
#include <atomic>

namespace Brennvik {

namespace {

bool sameItem(const std::weak_ptr<DisplayItemInterface>& a, const std::weak_ptr<DisplayItemInterface>& b)
{
    // Compares control blocks, so it still works once the item has expired.
    return !a.owner_before(b) && !b.owner_before(a);
}

// Serial numbers are unique across all lists, so a list needs no counter of its own.
std::uint64_t nextSerial()
{
    static std::atomic<std::uint64_t> next{1};
    return next++;
}

} // namespace

void DisplayItemObserverList::add(DisplayItemEventObserver* observer, const std::weak_ptr<DisplayItemInterface>& owner)
{
    if (!observer || contains(observer))
        return;
    m_registrations.append({observer, nextSerial()});
    rememberOwner(*observer, owner);
}

void DisplayItemObserverList::remove(DisplayItemEventObserver* observer,
                                     const std::weak_ptr<DisplayItemInterface>& owner)
{
    if (!m_registrations.remove(observer))
        return;
    forgetOwner(*observer, owner);
}

void DisplayItemObserverList::clear(const std::weak_ptr<DisplayItemInterface>& owner)
{
    // Take the registrations out first: forgetting may not call back into us,
    // but the list must be empty whatever happens.
    const auto registrations = m_registrations.takeAll();
    for (const Registration& registration : registrations)
        forgetOwner(*registration.observer, owner);
}

bool DisplayItemObserverList::contains(const DisplayItemEventObserver* observer) const
{
    return std::any_of(m_registrations.begin(), m_registrations.end(),
                       [observer](const Registration& r) { return r.observer == observer; });
}

std::size_t DisplayItemObserverList::size() const
{
    return m_registrations.size();
}

bool DisplayItemObserverList::empty() const
{
    return m_registrations.empty();
}

bool DisplayItemObserverList::isRegistered(const Registration& registration) const
{
    return std::any_of(m_registrations.begin(), m_registrations.end(), [&registration](const Registration& r) {
        return r.observer == registration.observer && r.serial == registration.serial;
    });
}

void DisplayItemObserverList::dispatch(const std::function<void(DisplayItemEventObserver&)>& event) const
{
    if (m_registrations.empty())
        return;
    // Most items have one or two observers, the rows that show them: a
    // snapshot that small stays on the stack.
    const QVarLengthArray<Registration, 4> snapshot(m_registrations.begin(), m_registrations.end());
    for (const Registration& registration : snapshot) {
        // Observers are cheap to check and lists are short; a linear lookup keeps
        // the book simple and correct under any re-entrant change.
        if (isRegistered(registration))
            event(*registration.observer);
    }
}

void DisplayItemObserverList::notifyPropertiesChanged(const std::shared_ptr<DisplayItemInterface>& item) const
{
    dispatch([&item](DisplayItemEventObserver& o) { o.onPropertiesChangedEvent(item); });
}

void DisplayItemObserverList::notifyVisualPropertiesChanged(const std::shared_ptr<DisplayItemInterface>& item) const
{
    dispatch([&item](DisplayItemEventObserver& o) { o.onVisualPropertiesChangedEvent(item); });
}

void DisplayItemObserverList::notifyItemsAdded(const DisplayItemList& items) const
{
    dispatch([&items](DisplayItemEventObserver& o) { o.onDisplayItemsAddedEvent(items); });
}

void DisplayItemObserverList::notifyItemsRemoved(const DisplayItemSet& items) const
{
    dispatch([&items](DisplayItemEventObserver& o) { o.onDisplayItemsRemovedEvent(items); });
}

void DisplayItemObserverList::notifyPreDisplayUpdate() const
{
    dispatch([](DisplayItemEventObserver& o) { o.onPreDisplayUpdateEvent(); });
}

void DisplayItemObserverList::notifyPostDisplayUpdate() const
{
    dispatch([](DisplayItemEventObserver& o) { o.onPostDisplayUpdateEvent(); });
}

void DisplayItemObserverList::notifyChildOverallVisibilityChanged(bool visible) const
{
    dispatch([visible](DisplayItemEventObserver& o) { o.onChildOverallVisibilityChangedEvent(visible); });
}

void DisplayItemObserverList::rememberOwner(DisplayItemEventObserver& observer,
                                            const std::weak_ptr<DisplayItemInterface>& owner)
{
    if (sameItem(owner, std::weak_ptr<DisplayItemInterface>{}))
        return; // no owner known yet
    auto& items = observer.m_observedItems;
    const bool known = std::any_of(items.begin(), items.end(), [&owner](const std::weak_ptr<DisplayItemInterface>& w) {
        return sameItem(w, owner);
    });
    if (!known)
        items.append(owner);
}

void DisplayItemObserverList::forgetOwner(DisplayItemEventObserver& observer,
                                          const std::weak_ptr<DisplayItemInterface>& owner)
{
    auto& items = observer.m_observedItems;
    items.erase(std::remove_if(items.begin(), items.end(),
                               [&owner](const std::weak_ptr<DisplayItemInterface>& w) {
                                   return sameItem(w, owner) || w.expired();
                               }),
                items.end());
}

} // namespace Brennvik
