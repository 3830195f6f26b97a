#include "PlotAxisItem2D.h"

#include <QFontMetrics>
#include <QPainter>

namespace Brennvik {

namespace {
constexpr int TickCount = 5;
constexpr double TickLength = 4.0;
} // namespace

PlotAxisItem2D::PlotAxisItem2D(std::string displayName, Qt::Orientation orientation, std::string title)
    : PlotItem2D(std::move(displayName))
    , m_orientation(orientation)
    , m_title(std::move(title))
{
}

PlotAxisItem2D::~PlotAxisItem2D() = default;

std::string PlotAxisItem2D::typeName() const
{
    return "PlotAxisItem2D";
}

void PlotAxisItem2D::paint(QPainter& painter, const PlotCanvas& canvas) const
{
    painter.save();
    painter.setPen(QPen(Qt::black, 1.0));
    const QRectF& area = canvas.plotRect;
    const QFontMetrics metrics(painter.font());
    const bool horizontal = m_orientation == Qt::Horizontal;
    if (horizontal)
        painter.drawLine(area.bottomLeft(), area.bottomRight());
    else
        painter.drawLine(area.bottomLeft(), area.topLeft());

    for (int i = 0; i <= TickCount; ++i) {
        const double fraction = double(i) / TickCount;
        if (horizontal) {
            const double value = canvas.dataRect.left() + fraction * canvas.dataRect.width();
            const double x = area.left() + fraction * area.width();
            painter.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + TickLength));
            const QString text = QString::number(value, 'g', 3);
            painter.drawText(QPointF(x - metrics.horizontalAdvance(text) / 2.0,
                                     area.bottom() + TickLength + metrics.ascent()),
                             text);
        } else {
            const double value = canvas.dataRect.top() + fraction * canvas.dataRect.height();
            const double y = area.bottom() - fraction * area.height();
            painter.drawLine(QPointF(area.left() - TickLength, y), QPointF(area.left(), y));
            const QString text = QString::number(value, 'g', 3);
            painter.drawText(QPointF(area.left() - TickLength - 2 - metrics.horizontalAdvance(text),
                                     y + metrics.ascent() / 2.0),
                             text);
        }
    }

    const QString title = QString::fromStdString(m_title);
    if (horizontal) {
        painter.drawText(QPointF(area.center().x() - metrics.horizontalAdvance(title) / 2.0,
                                 area.bottom() + TickLength + 2 * metrics.height()),
                         title);
    } else {
        painter.translate(area.left() - TickLength - metrics.height() * 3, area.center().y());
        painter.rotate(-90.0);
        painter.drawText(QPointF(-metrics.horizontalAdvance(title) / 2.0, 0.0), title);
    }
    painter.restore();
}

Qt::Orientation PlotAxisItem2D::orientation() const
{
    return m_orientation;
}

const std::string& PlotAxisItem2D::title() const
{
    return m_title;
}

void PlotAxisItem2D::appendTypeProperties(PropertyList& displayItemProperties) const
{
    displayItemProperties.emplace_back("orientation", m_orientation == Qt::Horizontal ? "horizontal" : "vertical");
    displayItemProperties.emplace_back("title", m_title);
}

} // namespace Brennvik
