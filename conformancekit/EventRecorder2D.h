#pragma once

#include <hostcontract/DisplayItem2DObserver.h>

#include <functional>
#include <memory>

namespace Brennvik::Conformance {

/// An observer of 2D display items that counts the events it receives and
/// can act inside each one.
class EventRecorder2D : public DisplayItem2DObserver
{
public:
    enum class Event {
        Modified,
        ChildAdded,
        ChildRemoved,
    };

    /// Runs inside every event, after it was counted; \a child is empty for Modified.
    using Reaction = std::function<void(Event, const std::shared_ptr<DisplayItem2D>& child)>;

    EventRecorder2D();
    ~EventRecorder2D() override;

    void setReaction(Reaction reaction);
    int count(Event event) const;
    int total() const;
    /// The child of the last ChildAdded or ChildRemoved event.
    const std::shared_ptr<DisplayItem2D>& lastChild() const;

    void onDisplayItemModified() override;
    void onChildAdded(DisplayItem2D* parent, std::shared_ptr<DisplayItem2D> child) override;
    void onChildRemoved(DisplayItem2D* parent, std::shared_ptr<DisplayItem2D> child) override;

private:
    void record(Event event, std::shared_ptr<DisplayItem2D> child);

    int m_counts[3] = {0, 0, 0};
    std::shared_ptr<DisplayItem2D> m_lastChild;
    Reaction m_reaction;
};

} // namespace Brennvik::Conformance
