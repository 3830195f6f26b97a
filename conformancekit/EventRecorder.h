#pragma once

#include <hostcontract/DisplayItemEventObserver.h>

#include <functional>
#include <vector>

namespace Brennvik::Conformance {

/// An observer of 3D display items that counts the events it receives and
/// can act inside each one (unregister, register others, inspect the item).
class EventRecorder : public DisplayItemEventObserver
{
public:
    enum class Event {
        PropertiesChanged,
        VisualPropertiesChanged,
        ItemsAdded,
        ItemsRemoved,
        Other,
    };

    /// Runs inside every event, after it was counted. The list holds the
    /// items the event carried (the changed item for the properties events).
    using Reaction = std::function<void(Event, const DisplayItemList&)>;

    EventRecorder();
    ~EventRecorder() override;

    void setReaction(Reaction reaction);
    int count(Event event) const;
    int total() const;
    /// The items of the last event of that kind.
    const DisplayItemList& lastItems(Event event) const;

    void onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item) override;
    void onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item) override;
    void updateDynamicSectionSceneGraph() override;
    void onPreDisplayUpdateEvent() override;
    void onPostDisplayUpdateEvent() override;
    void onDisplayItemsAddedEvent(const DisplayItemList& items) override;
    void onDisplayItemsRemovedEvent(const DisplayItemSet& items) override;
    void onChildOverallVisibilityChangedEvent(bool visible) override;

private:
    void record(Event event, DisplayItemList items);

    std::vector<int> m_counts;
    std::vector<DisplayItemList> m_lastItems;
    Reaction m_reaction;
};

} // namespace Brennvik::Conformance
