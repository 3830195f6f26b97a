#include "PlotLegendItem2D.h"

#include "PlotCurveItem2D.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace Brennvik {

namespace {
constexpr double Padding = 4.0;
constexpr double SwatchWidth = 16.0;
} // namespace

PlotLegendItem2D::PlotLegendItem2D(std::string displayName)
    : PlotItem2D(std::move(displayName))
{
}

PlotLegendItem2D::~PlotLegendItem2D() = default;

std::string PlotLegendItem2D::typeName() const
{
    return "PlotLegendItem2D";
}

void PlotLegendItem2D::paint(QPainter& painter, const PlotCanvas& canvas) const
{
    if (canvas.drawnCurves.empty())
        return;
    const QFontMetrics metrics(painter.font());
    double textWidth = 0.0;
    for (const PlotCurveItem2D* curve : canvas.drawnCurves)
        textWidth
            = std::max(textWidth, double(metrics.horizontalAdvance(QString::fromStdString(curve->getDisplayName()))));
    const double lineHeight = metrics.height();
    const double width = Padding * 3 + SwatchWidth + textWidth;
    const double height = Padding * 2 + lineHeight * double(canvas.drawnCurves.size());
    const QRectF box(canvas.plotRect.right() - width - Padding, canvas.plotRect.top() + Padding, width, height);

    painter.save();
    painter.setPen(QPen(Qt::darkGray, 1.0));
    painter.setBrush(QColor(255, 255, 255, 230));
    painter.drawRect(box);
    double y = box.top() + Padding;
    for (const PlotCurveItem2D* curve : canvas.drawnCurves) {
        const double middle = y + lineHeight / 2.0;
        painter.setPen(QPen(curve->color(), 2.0));
        painter.drawLine(QPointF(box.left() + Padding, middle), QPointF(box.left() + Padding + SwatchWidth, middle));
        painter.setPen(Qt::black);
        painter.drawText(QPointF(box.left() + Padding * 2 + SwatchWidth, y + metrics.ascent()),
                         QString::fromStdString(curve->getDisplayName()));
        y += lineHeight;
    }
    painter.restore();
}

} // namespace Brennvik
