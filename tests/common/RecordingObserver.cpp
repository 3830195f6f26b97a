#include "RecordingObserver.h"

#include <hostcontract/DisplayItemInterface.h>

#include <algorithm>

namespace Brennvik::Test {

namespace {

template<typename Items>
RecordedEvent eventWith(RecordedEvent::Type type, const Items& items)
{
    RecordedEvent event{type, {}, {}, false};
    for (const auto& item : items) {
        event.items.push_back(item.get());
        event.names.push_back(item ? item->getDisplayName() : std::string());
    }
    return event;
}

} // namespace

void RecordingObserver::setReaction(Reaction reaction)
{
    m_reaction = std::move(reaction);
}

const std::vector<RecordedEvent>& RecordingObserver::events() const
{
    return m_events;
}

int RecordingObserver::count(RecordedEvent::Type type) const
{
    return static_cast<int>(
        std::count_if(m_events.begin(), m_events.end(), [type](const RecordedEvent& e) { return e.type == type; }));
}

int RecordingObserver::total() const
{
    return static_cast<int>(m_events.size());
}

void RecordingObserver::clear()
{
    m_events.clear();
}

void RecordingObserver::onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item)
{
    record(eventWith(RecordedEvent::Type::PropertiesChanged, DisplayItemList{item}));
}

void RecordingObserver::onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item)
{
    record(eventWith(RecordedEvent::Type::VisualPropertiesChanged, DisplayItemList{item}));
}

void RecordingObserver::updateDynamicSectionSceneGraph()
{
    record({RecordedEvent::Type::DynamicSectionSceneGraph, {}, {}, false});
}

void RecordingObserver::onPreDisplayUpdateEvent()
{
    record({RecordedEvent::Type::PreDisplayUpdate, {}, {}, false});
}

void RecordingObserver::onPostDisplayUpdateEvent()
{
    record({RecordedEvent::Type::PostDisplayUpdate, {}, {}, false});
}

void RecordingObserver::onDisplayItemsAddedEvent(const DisplayItemList& items)
{
    record(eventWith(RecordedEvent::Type::ItemsAdded, items));
}

void RecordingObserver::onDisplayItemsRemovedEvent(const DisplayItemSet& items)
{
    record(eventWith(RecordedEvent::Type::ItemsRemoved, items));
}

void RecordingObserver::onChildOverallVisibilityChangedEvent(bool visible)
{
    record({RecordedEvent::Type::ChildOverallVisibilityChanged, {}, {}, visible});
}

void RecordingObserver::record(RecordedEvent event)
{
    m_events.push_back(std::move(event));
    // Copy both: the reaction may destroy this observer or replace itself.
    const Reaction reaction = m_reaction;
    if (reaction)
        reaction(RecordedEvent(m_events.back()));
}

} // namespace Brennvik::Test
