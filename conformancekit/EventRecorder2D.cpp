#include "EventRecorder2D.h"

namespace Brennvik::Conformance {

EventRecorder2D::EventRecorder2D() = default;

EventRecorder2D::~EventRecorder2D() = default;

void EventRecorder2D::setReaction(Reaction reaction)
{
    m_reaction = std::move(reaction);
}

int EventRecorder2D::count(Event event) const
{
    return m_counts[static_cast<int>(event)];
}

int EventRecorder2D::total() const
{
    return m_counts[0] + m_counts[1] + m_counts[2];
}

const std::shared_ptr<DisplayItem2D>& EventRecorder2D::lastChild() const
{
    return m_lastChild;
}

void EventRecorder2D::onDisplayItemModified()
{
    record(Event::Modified, nullptr);
}

void EventRecorder2D::onChildAdded(DisplayItem2D* /*parent*/, std::shared_ptr<DisplayItem2D> child)
{
    record(Event::ChildAdded, std::move(child));
}

void EventRecorder2D::onChildRemoved(DisplayItem2D* /*parent*/, std::shared_ptr<DisplayItem2D> child)
{
    record(Event::ChildRemoved, std::move(child));
}

void EventRecorder2D::record(Event event, std::shared_ptr<DisplayItem2D> child)
{
    ++m_counts[static_cast<int>(event)];
    if (event != Event::Modified)
        m_lastChild = std::move(child);
    if (const Reaction reaction = m_reaction)
        reaction(event, event == Event::Modified ? std::shared_ptr<DisplayItem2D>() : m_lastChild);
}

} // namespace Brennvik::Conformance
