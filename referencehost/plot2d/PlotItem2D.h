#pragma once

#include <hostcontract/DisplayItem2D.h>

#include <QPointF>
#include <QRectF>

#include <vector>

class QPainter;

namespace Brennvik {

class PlotCurveItem2D;

/// Where and how a plot is painted: the pixel rectangle of the plot area and
/// the data range shown in it.
struct PlotCanvas
{
    /// The plot area in widget pixels.
    QRectF plotRect;
    /// The data range; y grows upwards.
    QRectF dataRect;
    /// The curves that are drawn, in tree order (for the legend).
    std::vector<const PlotCurveItem2D*> drawnCurves;

    /// Widget pixel position of the data point \a point.
    QPointF map(const QPointF& point) const;
};

/// A 2D display item that paints something of a plot.
class BRENNVIK_HOST_EXPORT PlotItem2D : public DisplayItem2D
{
public:
    using DisplayItem2D::DisplayItem2D;
    ~PlotItem2D() override;

    /// The data the item shows, for the plot's data range; an invalid
    /// rectangle when the item shows no data.
    virtual QRectF dataBounds() const;
    /// Paints the item; called only when the item is drawn.
    virtual void paint(QPainter& painter, const PlotCanvas& canvas) const = 0;
};

} // namespace Brennvik
