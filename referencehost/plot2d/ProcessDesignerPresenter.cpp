#include <hostcontract/ProcessDesignerPresenter.h>
#include <hostcontract/VirtualDrawArea.h>

#include <referencehost/model/HostCallLog.h>

#include <QObject>
#include <QWidget>

namespace Brennvik {

ProcessDesignerPresenter::ProcessDesignerPresenter() = default;

ProcessDesignerPresenter::~ProcessDesignerPresenter()
{
    for (const auto& entry : m_destroyedConnections)
        QObject::disconnect(entry.second);
}

const std::set<QWidget*>& ProcessDesignerPresenter::getDrawAreas2D() const
{
    HostCallLog::note("getDrawAreas2D");
    return m_drawAreas2D;
}

void ProcessDesignerPresenter::addDrawArea2D(QWidget* widget)
{
    if (!widget || !m_drawAreas2D.insert(widget).second)
        return;
    getVirtualDrawArea()->addWidget(widget);
    // The set holds raw pointers: a destroyed widget must leave it at once.
    m_destroyedConnections[widget] = QObject::connect(widget, &QObject::destroyed, [this, widget]() {
        m_drawAreas2D.erase(widget);
        m_destroyedConnections.erase(widget);
    });
}

void ProcessDesignerPresenter::removeDrawArea2D(QWidget* widget)
{
    const auto connection = m_destroyedConnections.find(widget);
    if (connection == m_destroyedConnections.end())
        return;
    QObject::disconnect(connection->second);
    m_destroyedConnections.erase(connection);
    m_drawAreas2D.erase(widget);
    getVirtualDrawArea()->removeWidget(widget);
}

} // namespace Brennvik
