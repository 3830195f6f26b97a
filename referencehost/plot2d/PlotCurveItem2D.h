#pragma once

#include "PlotItem2D.h"

#include <QColor>
#include <QPointF>

#include <string>
#include <vector>

namespace Brennvik {

/// A curve of a plot: a polyline through data points in one colour.
class BRENNVIK_HOST_EXPORT PlotCurveItem2D : public PlotItem2D
{
public:
    PlotCurveItem2D(std::string displayName, QColor color, std::vector<QPointF> points);
    ~PlotCurveItem2D() override;

    std::string typeName() const override;
    QRectF dataBounds() const override;
    void paint(QPainter& painter, const PlotCanvas& canvas) const override;

    const QColor& color() const;
    /// Raises onDisplayItemModified.
    void setColor(const QColor& color);
    const std::vector<QPointF>& points() const;
    /// Raises onDisplayItemModified.
    void setPoints(std::vector<QPointF> points);

    /// Width of the curve's pen in pixels.
    static constexpr double PenWidth = 3.0;

protected:
    /// ("color", "#rrggbb"), ("points", count).
    void appendTypeProperties(PropertyList& displayItemProperties) const override;

private:
    QColor m_color;
    std::vector<QPointF> m_points;
};

} // namespace Brennvik
