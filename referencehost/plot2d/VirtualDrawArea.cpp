#include <hostcontract/VirtualDrawArea.h>

#include <QWidget>

#include <algorithm>

namespace Brennvik {

VirtualDrawArea::VirtualDrawArea() = default;

VirtualDrawArea::~VirtualDrawArea() = default;

int VirtualDrawArea::redraw()
{
    ++m_redrawCount;
    int repainted = 0;
    for (const QPointer<QWidget>& widget : m_widgets) {
        if (widget) {
            widget->update();
            ++repainted;
        }
    }
    return repainted;
}

void VirtualDrawArea::addWidget(QWidget* widget)
{
    if (!widget)
        return;
    const auto known = std::find(m_widgets.begin(), m_widgets.end(), widget);
    if (known == m_widgets.end())
        m_widgets.emplace_back(widget);
}

void VirtualDrawArea::removeWidget(QWidget* widget)
{
    m_widgets.erase(std::remove_if(m_widgets.begin(), m_widgets.end(),
                                   [widget](const QPointer<QWidget>& known) { return !known || known == widget; }),
                    m_widgets.end());
}

std::vector<QWidget*> VirtualDrawArea::widgets() const
{
    std::vector<QWidget*> alive;
    for (const QPointer<QWidget>& widget : m_widgets) {
        if (widget)
            alive.push_back(widget);
    }
    return alive;
}

int VirtualDrawArea::redrawCount() const
{
    return m_redrawCount;
}

} // namespace Brennvik
