#include "PlotAxisItem2D.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Brennvik {

namespace {
constexpr int TickCount = 5;
constexpr double TickLength = 4.0;

// Ticks at round values (1, 2 or 5 times a power of ten) inside [from, to],
// about TickCount of them, as people read axes.
std::vector<double> niceTicks(double from, double to, int* decimals)
{
    std::vector<double> ticks;
    *decimals = 0;
    const double span = to - from;
    if (!(span > 0.0) || !std::isfinite(span))
        return ticks;
    const double rough = span / TickCount;
    const double magnitude = std::pow(10.0, std::floor(std::log10(rough)));
    double step = magnitude;
    for (const double factor : {1.0, 2.0, 5.0, 10.0}) {
        step = factor * magnitude;
        if (step >= rough)
            break;
    }
    *decimals = std::max(0, -static_cast<int>(std::floor(std::log10(step) + 1e-9)));
    for (double value = std::ceil(from / step - 1e-9) * step; value <= to + step * 1e-9; value += step)
        ticks.push_back(std::abs(value) < step * 1e-9 ? 0.0 : value);
    return ticks;
}
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

    int decimals = 0;
    const double from = horizontal ? canvas.dataRect.left() : canvas.dataRect.top();
    const double span = horizontal ? canvas.dataRect.width() : canvas.dataRect.height();
    for (const double value : niceTicks(from, from + span, &decimals)) {
        const double fraction = (value - from) / span;
        const QString text = QString::number(value, 'f', decimals);
        if (horizontal) {
            const double x = area.left() + fraction * area.width();
            painter.drawLine(QPointF(x, area.bottom()), QPointF(x, area.bottom() + TickLength));
            painter.drawText(
                QPointF(x - metrics.horizontalAdvance(text) / 2.0, area.bottom() + TickLength + metrics.ascent()),
                text);
        } else {
            const double y = area.bottom() - fraction * area.height();
            painter.drawLine(QPointF(area.left() - TickLength, y), QPointF(area.left(), y));
            painter.drawText(
                QPointF(area.left() - TickLength - 2 - metrics.horizontalAdvance(text), y + metrics.ascent() / 2.0),
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
