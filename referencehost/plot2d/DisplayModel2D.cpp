#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>

#include <algorithm>

namespace Brennvik {

DisplayModel2D::DisplayModel2D() = default;

DisplayModel2D::~DisplayModel2D() = default;

std::shared_ptr<DisplayItem2D> DisplayModel2D::getRootDisplayItem() const
{
    return m_root;
}

void DisplayModel2D::doDisplayUpdate(DisplayUpdate2D update)
{
    ++m_displayUpdateCount;
    m_lastDisplayUpdate = update;
    // A listener may remove itself (or others) while we call them.
    const auto listeners = m_listeners;
    for (const auto& [id, listener] : listeners) {
        const bool stillListening = std::any_of(m_listeners.begin(), m_listeners.end(),
                                                [id = id](const auto& entry) { return entry.first == id; });
        if (stillListening && listener)
            listener(update);
    }
}

void DisplayModel2D::setRootDisplayItem(std::shared_ptr<DisplayItem2D> root)
{
    m_root = std::move(root);
}

int DisplayModel2D::addUpdateListener(UpdateListener listener)
{
    const int id = m_nextListenerId++;
    m_listeners.emplace_back(id, std::move(listener));
    return id;
}

void DisplayModel2D::removeUpdateListener(int id)
{
    m_listeners.erase(
        std::remove_if(m_listeners.begin(), m_listeners.end(), [id](const auto& entry) { return entry.first == id; }),
        m_listeners.end());
}

int DisplayModel2D::displayUpdateCount() const
{
    return m_displayUpdateCount;
}

DisplayUpdate2D DisplayModel2D::lastDisplayUpdate() const
{
    return m_lastDisplayUpdate;
}

} // namespace Brennvik
