#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/GenericPlotManager.h>

#include "PlotCurveItem2D.h"
#include "PlotItem2D.h"

#include <QPaintEvent>
#include <QPainter>

#include <functional>
#include <memory>
#include <vector>

namespace Brennvik {

namespace {

constexpr double LeftMargin = 64.0;
constexpr double RightMargin = 16.0;
constexpr double TopMargin = 24.0;
constexpr double BottomMargin = 48.0;

struct DrawnItems
{
    std::vector<const PlotItem2D*> painted;
    QRectF dataRect;
};

// Pre-order over the tree: an item that is not visible hides its subtree,
// an excluded one also takes its subtree out of the data range. An explicit
// stack, so that a plot of any depth is drawn.
void collect(const std::shared_ptr<DisplayItem2D>& root, DrawnItems& result)
{
    struct Pending
    {
        const DisplayItem2D* item;
        bool drawn;
        bool inRange;
    };
    std::vector<Pending> pending{{root.get(), true, true}};
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        if (!next.item)
            continue;
        const bool drawn = next.drawn && next.item->getVisibility() == DisplayItem2D::Visible;
        const bool inRange = next.inRange && next.item->getVisibility() != DisplayItem2D::Excluded;
        if (const auto* plotItem = dynamic_cast<const PlotItem2D*>(next.item)) {
            if (drawn)
                result.painted.push_back(plotItem);
            const QRectF bounds = plotItem->dataBounds();
            if (inRange && !bounds.isNull())
                result.dataRect = result.dataRect.isNull() ? bounds : result.dataRect.united(bounds);
        }
        const auto& children = next.item->getChildren();
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            pending.push_back({it->get(), drawn, inRange});
    }
}

// Some room around the data, and a range of 1 where the data has none.
QRectF paddedRange(QRectF range)
{
    if (range.isNull())
        return QRectF(0.0, 0.0, 1.0, 1.0);
    if (range.width() <= 0.0)
        range.adjust(-0.5, 0.0, 0.5, 0.0);
    if (range.height() <= 0.0)
        range.adjust(0.0, -0.5, 0.0, 0.5);
    const double dx = range.width() * 0.05;
    const double dy = range.height() * 0.05;
    return range.adjusted(-dx, -dy, dx, dy);
}

} // namespace

BkHQWidget2D::BkHQWidget2D(QWidget* parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

BkHQWidget2D::~BkHQWidget2D()
{
    listenTo(nullptr);
}

GenericPlotManager* BkHQWidget2D::getPlotManager() const
{
    return m_plotManager;
}

void BkHQWidget2D::setPlotManager(GenericPlotManager* manager)
{
    m_plotManager = manager;
    listenTo(manager ? manager->sharedDisplayModel2D() : nullptr);
    update();
}

QSize BkHQWidget2D::sizeHint() const
{
    return QSize(400, 300);
}

QSize BkHQWidget2D::minimumSizeHint() const
{
    return QSize(160, 120);
}

void BkHQWidget2D::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);

    const std::shared_ptr<DisplayModel2D> model = m_plotManager ? m_plotManager->sharedDisplayModel2D() : nullptr;
    // The manager may have been given another model since we started listening.
    if (model != m_listenedModel.lock())
        listenTo(model);

    if (m_plotManager && !m_plotManager->title().empty()) {
        painter.setPen(Qt::black);
        painter.drawText(QRectF(0.0, 0.0, width(), TopMargin), Qt::AlignCenter,
                         QString::fromStdString(m_plotManager->title()));
    }

    const QRectF plotRect(LeftMargin, TopMargin, std::max(1.0, width() - LeftMargin - RightMargin),
                          std::max(1.0, height() - TopMargin - BottomMargin));
    painter.setPen(QPen(Qt::lightGray, 1.0));
    painter.drawRect(plotRect);

    DrawnItems items;
    if (model)
        collect(model->getRootDisplayItem(), items);

    PlotCanvas canvas;
    canvas.plotRect = plotRect;
    canvas.dataRect = paddedRange(items.dataRect);
    for (const PlotItem2D* item : items.painted) {
        if (const auto* curve = dynamic_cast<const PlotCurveItem2D*>(item))
            canvas.drawnCurves.push_back(curve);
    }
    for (const PlotItem2D* item : items.painted)
        item->paint(painter, canvas);
}

void BkHQWidget2D::listenTo(const std::shared_ptr<DisplayModel2D>& model)
{
    if (const auto listened = m_listenedModel.lock())
        listened->removeUpdateListener(m_listenerId);
    m_listenedModel = model;
    m_listenerId = model ? model->addUpdateListener([this](DisplayUpdate2D) { update(); }) : 0;
}

} // namespace Brennvik
