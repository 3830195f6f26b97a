#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayItem2DObserver.h>

#include <algorithm>

namespace Brennvik {

DisplayItem2DObserver::DisplayItem2DObserver() = default;

DisplayItem2DObserver::~DisplayItem2DObserver()
{
    stopObservingAll();
}

void DisplayItem2DObserver::onDisplayItemModified()
{
}

void DisplayItem2DObserver::onChildAdded(DisplayItem2D*, std::shared_ptr<DisplayItem2D>)
{
}

void DisplayItem2DObserver::onChildRemoved(DisplayItem2D*, std::shared_ptr<DisplayItem2D>)
{
}

void DisplayItem2DObserver::observe(std::shared_ptr<DisplayItem2D> item)
{
    if (!item || item->isObservedBy(this))
        return;
    item->addObserver(this);
    // Drop references to items that have gone, so that the list does not grow.
    m_observedItems.erase(
        std::remove_if(m_observedItems.begin(), m_observedItems.end(),
                       [](const std::weak_ptr<DisplayItem2D>& observed) { return observed.expired(); }),
        m_observedItems.end());
    m_observedItems.push_back(item);
}

void DisplayItem2DObserver::stopObserving(const std::shared_ptr<DisplayItem2D>& item)
{
    if (!item)
        return;
    item->removeObserver(this);
    m_observedItems.erase(std::remove_if(m_observedItems.begin(), m_observedItems.end(),
                                         [&item](const std::weak_ptr<DisplayItem2D>& observed) {
                                             const auto locked = observed.lock();
                                             return !locked || locked == item;
                                         }),
                          m_observedItems.end());
}

void DisplayItem2DObserver::stopObservingAll()
{
    const auto observed = std::move(m_observedItems);
    m_observedItems.clear();
    for (const auto& weak : observed) {
        if (const auto item = weak.lock())
            item->removeObserver(this);
    }
}

std::size_t DisplayItem2DObserver::observedItemCount() const
{
    return std::size_t(std::count_if(m_observedItems.begin(), m_observedItems.end(),
                                     [](const std::weak_ptr<DisplayItem2D>& observed) { return !observed.expired(); }));
}

} // namespace Brennvik
