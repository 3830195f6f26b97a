#pragma once

#include <hostcontract/DisplayItemEventObserver.h>

#include <functional>
#include <string>
#include <vector>

namespace Brennvik::Test {

/// One event as a RecordingObserver received it.
struct RecordedEvent
{
    enum class Type {
        PropertiesChanged,
        VisualPropertiesChanged,
        DynamicSectionSceneGraph,
        PreDisplayUpdate,
        PostDisplayUpdate,
        ItemsAdded,
        ItemsRemoved,
        ChildOverallVisibilityChanged,
    };

    Type type;
    /// The items the event carried (one for the properties events; none for the
    /// update events), by identity, in the order the event gave them.
    std::vector<const DisplayItemInterface*> items;
    /// Their display names at the time of the event.
    std::vector<std::string> names;
    /// ChildOverallVisibilityChanged: the visibility passed.
    bool visible = false;
};

/// An observer that records every event it receives and can react to each
/// while it is being dispatched (to unregister, destroy things, ...).
class RecordingObserver : public DisplayItemEventObserver
{
public:
    using Reaction = std::function<void(const RecordedEvent&)>;

    /// Runs inside every later event, after the event was recorded; empty to stop.
    void setReaction(Reaction reaction);

    const std::vector<RecordedEvent>& events() const;
    int count(RecordedEvent::Type type) const;
    /// The number of events of all types.
    int total() const;
    void clear();

    void onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item) override;
    void onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item) override;
    void updateDynamicSectionSceneGraph() override;
    void onPreDisplayUpdateEvent() override;
    void onPostDisplayUpdateEvent() override;
    void onDisplayItemsAddedEvent(const DisplayItemList& items) override;
    void onDisplayItemsRemovedEvent(const DisplayItemSet& items) override;
    void onChildOverallVisibilityChangedEvent(bool visible) override;

private:
    void record(RecordedEvent event);

    std::vector<RecordedEvent> m_events;
    Reaction m_reaction;
};

} // namespace Brennvik::Test
