#include "PlotItem2D.h"

namespace Brennvik {

QPointF PlotCanvas::map(const QPointF& point) const
{
    const double width = dataRect.width() != 0.0 ? dataRect.width() : 1.0;
    const double height = dataRect.height() != 0.0 ? dataRect.height() : 1.0;
    const double x = plotRect.left() + (point.x() - dataRect.left()) / width * plotRect.width();
    const double y = plotRect.bottom() - (point.y() - dataRect.top()) / height * plotRect.height();
    return QPointF(x, y);
}

PlotItem2D::~PlotItem2D() = default;

QRectF PlotItem2D::dataBounds() const
{
    return QRectF();
}

} // namespace Brennvik
