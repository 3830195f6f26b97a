#include "PlotCurveItem2D.h"

#include <QPainter>
#include <QPolygonF>

namespace Brennvik {

PlotCurveItem2D::PlotCurveItem2D(std::string displayName, QColor color, std::vector<QPointF> points)
    : PlotItem2D(std::move(displayName))
    , m_color(std::move(color))
    , m_points(std::move(points))
{
}

PlotCurveItem2D::~PlotCurveItem2D() = default;

std::string PlotCurveItem2D::typeName() const
{
    return "PlotCurveItem2D";
}

QRectF PlotCurveItem2D::dataBounds() const
{
    if (m_points.empty())
        return QRectF();
    double left = m_points.front().x();
    double right = left;
    double bottom = m_points.front().y();
    double top = bottom;
    for (const QPointF& point : m_points) {
        left = std::min(left, point.x());
        right = std::max(right, point.x());
        bottom = std::min(bottom, point.y());
        top = std::max(top, point.y());
    }
    // A rectangle whose top is the smallest y: data y grows upwards.
    return QRectF(QPointF(left, bottom), QPointF(right, top));
}

void PlotCurveItem2D::paint(QPainter& painter, const PlotCanvas& canvas) const
{
    if (m_points.empty())
        return;
    QPolygonF polyline;
    for (const QPointF& point : m_points)
        polyline << canvas.map(point);
    painter.save();
    painter.setClipRect(canvas.plotRect.adjusted(-PenWidth, -PenWidth, PenWidth, PenWidth));
    painter.setPen(QPen(m_color, PenWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (polyline.size() == 1)
        painter.drawPoint(polyline.front());
    else
        painter.drawPolyline(polyline);
    painter.restore();
}

const QColor& PlotCurveItem2D::color() const
{
    return m_color;
}

void PlotCurveItem2D::setColor(const QColor& color)
{
    m_color = color;
    notifyModified();
}

const std::vector<QPointF>& PlotCurveItem2D::points() const
{
    return m_points;
}

void PlotCurveItem2D::setPoints(std::vector<QPointF> points)
{
    m_points = std::move(points);
    notifyModified();
}

void PlotCurveItem2D::appendTypeProperties(PropertyList& displayItemProperties) const
{
    displayItemProperties.emplace_back("color", m_color.name().toStdString());
    displayItemProperties.emplace_back("points", std::to_string(m_points.size()));
}

} // namespace Brennvik
