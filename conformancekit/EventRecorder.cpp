#include "EventRecorder.h"

#include <numeric>

namespace Brennvik::Conformance {

namespace {
constexpr std::size_t EventKinds = 5;
}

EventRecorder::EventRecorder()
    : m_counts(EventKinds, 0)
    , m_lastItems(EventKinds)
{
}

EventRecorder::~EventRecorder() = default;

void EventRecorder::setReaction(Reaction reaction)
{
    m_reaction = std::move(reaction);
}

int EventRecorder::count(Event event) const
{
    return m_counts[static_cast<std::size_t>(event)];
}

int EventRecorder::total() const
{
    return std::accumulate(m_counts.begin(), m_counts.end(), 0);
}

const DisplayItemList& EventRecorder::lastItems(Event event) const
{
    return m_lastItems[static_cast<std::size_t>(event)];
}

void EventRecorder::onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item)
{
    record(Event::PropertiesChanged, {std::move(item)});
}

void EventRecorder::onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item)
{
    record(Event::VisualPropertiesChanged, {std::move(item)});
}

void EventRecorder::updateDynamicSectionSceneGraph()
{
    record(Event::Other, {});
}

void EventRecorder::onPreDisplayUpdateEvent()
{
    record(Event::Other, {});
}

void EventRecorder::onPostDisplayUpdateEvent()
{
    record(Event::Other, {});
}

void EventRecorder::onDisplayItemsAddedEvent(const DisplayItemList& items)
{
    record(Event::ItemsAdded, items);
}

void EventRecorder::onDisplayItemsRemovedEvent(const DisplayItemSet& items)
{
    record(Event::ItemsRemoved, DisplayItemList(items.begin(), items.end()));
}

void EventRecorder::onChildOverallVisibilityChangedEvent(bool /*visible*/)
{
    record(Event::Other, {});
}

void EventRecorder::record(Event event, DisplayItemList items)
{
    const auto index = static_cast<std::size_t>(event);
    ++m_counts[index];
    m_lastItems[index] = std::move(items);
    // Copy: the reaction may replace itself.
    if (const Reaction reaction = m_reaction)
        reaction(event, m_lastItems[index]);
}

} // namespace Brennvik::Conformance
