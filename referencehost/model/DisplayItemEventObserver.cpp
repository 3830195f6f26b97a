#include <hostcontract/DisplayItemEventObserver.h>
#include <hostcontract/DisplayItemInterface.h>

#include <algorithm>

namespace Brennvik {

namespace {

bool sameItem(const std::weak_ptr<DisplayItemInterface>& a, const std::weak_ptr<DisplayItemInterface>& b)
{
    return !a.owner_before(b) && !b.owner_before(a);
}

} // namespace

DisplayItemEventObserver::DisplayItemEventObserver() = default;

DisplayItemEventObserver::DisplayItemEventObserver(const DisplayItemEventObserver& /*other*/)
{
    // Registrations belong to one observer object; a copy starts unregistered.
}

DisplayItemEventObserver& DisplayItemEventObserver::operator=(const DisplayItemEventObserver& /*other*/)
{
    return *this;
}

DisplayItemEventObserver::~DisplayItemEventObserver()
{
    // The items call back into m_observedItems while we unregister; work on a copy.
    const auto observed = m_observedItems;
    m_observedItems.clear();
    for (const auto& weakItem : observed) {
        if (const auto item = weakItem.lock())
            item->removeEventObserver(this);
    }
}

void DisplayItemEventObserver::registerToDisplayItem(std::shared_ptr<DisplayItemInterface> item)
{
    if (!item)
        return;
    item->addEventObserver(this);
    // Items of the reference host keep this book themselves; other items may not,
    // and the destructor must still find every item to unregister from.
    const std::weak_ptr<DisplayItemInterface> weakItem = item;
    const bool known = std::any_of(m_observedItems.begin(), m_observedItems.end(),
                                   [&weakItem](const auto& w) { return sameItem(w, weakItem); });
    if (!known)
        m_observedItems.append(weakItem);
}

void DisplayItemEventObserver::unregisterFromDisplayItem(std::shared_ptr<DisplayItemInterface> item)
{
    if (!item)
        return;
    item->removeEventObserver(this);
    const std::weak_ptr<DisplayItemInterface> weakItem = item;
    m_observedItems.erase(std::remove_if(m_observedItems.begin(), m_observedItems.end(),
                                         [&weakItem](const auto& w) { return sameItem(w, weakItem); }),
                          m_observedItems.end());
}

void DisplayItemEventObserver::onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> /*item*/)
{
}

void DisplayItemEventObserver::onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> /*item*/)
{
}

void DisplayItemEventObserver::updateDynamicSectionSceneGraph()
{
}

void DisplayItemEventObserver::onPreDisplayUpdateEvent()
{
}

void DisplayItemEventObserver::onPostDisplayUpdateEvent()
{
}

void DisplayItemEventObserver::onDisplayItemsAddedEvent(const DisplayItemList& /*items*/)
{
}

void DisplayItemEventObserver::onDisplayItemsRemovedEvent(const DisplayItemSet& /*items*/)
{
}

void DisplayItemEventObserver::onChildOverallVisibilityChangedEvent(bool /*visible*/)
{
}

std::size_t DisplayItemEventObserver::registrationCount() const
{
    return static_cast<std::size_t>(
        std::count_if(m_observedItems.begin(), m_observedItems.end(), [](const auto& w) { return !w.expired(); }));
}

} // namespace Brennvik
