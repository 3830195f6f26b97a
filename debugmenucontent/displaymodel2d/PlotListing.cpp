#include "PlotListing.h"

#include "DisplayItemTypeCollector.h"

#include <hostcontract/ApplicationWindow.h>
#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItemTreeTraverser.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/MainWindowPresenter.h>
#include <hostcontract/PlotLabelDisplayItem.h>
#include <hostcontract/ProcessDesignerPresenter.h>
#include <hostcontract/ViewBase.h>
#include <hostcontract/ViewModelInterface.h>
#include <hostcontract/ViewTransformationProvider.h>

#include <QCoreApplication>
#include <QPoint>
#include <QVariant>
#include <QWidget>
#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

namespace Brennvik {

namespace {

QPoint globalTopLeft(const QWidget* widget)
{
    return widget->mapToGlobal(widget->rect().topLeft());
}

// Top to bottom, then left to right.
template<typename Point>
bool aboveOrLeftOf(const Point& a, const Point& b)
{
    return a.y() < b.y() || (a.y() == b.y() && a.x() < b.x());
}

// Halves round upwards, -7.5 to -7, as Qt 5's qRound does; Qt 6's rounds
// them away from zero.
int roundHalfUp(float value)
{
    return int(std::floor(value + 0.5f));
}

QPoint toDevicePixels(const QPoint& logical, float pixelRatio)
{
    return QPoint(roundHalfUp(float(logical.x()) * pixelRatio), roundHalfUp(float(logical.y()) * pixelRatio));
}

std::string positionText(const char* what, int x, int y)
{
    return std::string(what) + " at (" + std::to_string(x) + ", " + std::to_string(y) + ")";
}

void appendVisible(std::vector<BkHQWidget2D*>& plotWidgets, BkHQWidget2D* plotWidget)
{
    if (plotWidget && plotWidget->isVisible())
        plotWidgets.push_back(plotWidget);
}

// Only visible labels, in traversal order; the filter's cache skips runs of
// other item types without a cast.
std::vector<std::shared_ptr<PlotLabelDisplayItem>> collectVisibleLabels(const DisplayModel& labelModel)
{
    std::vector<std::shared_ptr<PlotLabelDisplayItem>> labels;
    DisplayItemTypeCollector<PlotLabelDisplayItem> collector(&labels);
    DisplayItemTreeTraverser::processVisible(labelModel.getRootDisplayItem(), collector);
    return labels;
}

// Sorted through a list of indices, so that labels at the same place come out
// in the order the listing has always given them.
std::vector<PlacedPlotLabel> inScreenOrder(const std::vector<PlacedPlotLabel>& placed)
{
    std::vector<std::size_t> order(placed.size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::sort(order.begin(), order.end(),
              [&placed](std::size_t a, std::size_t b) { return aboveOrLeftOf(placed[a].point, placed[b].point); });
    std::vector<PlacedPlotLabel> sorted;
    sorted.reserve(placed.size());
    for (const std::size_t index : order)
        sorted.push_back(placed[index]);
    return sorted;
}

} // namespace

std::vector<BkHQWidget2D*> gatherPlotWidgets(const MainWindowPresenter& presenter)
{
    std::vector<BkHQWidget2D*> plotWidgets;
    if (ProcessDesignerPresenter* designer = presenter.getLeftProcessDesigner()) {
        // A copy: the set is the host's and may change while we look.
        const std::set<QWidget*> drawAreas = designer->getDrawAreas2D();
        for (QWidget* drawArea : drawAreas)
            appendVisible(plotWidgets, dynamic_cast<BkHQWidget2D*>(drawArea));
    }
    const QVariant materialGenerator = QCoreApplication::instance()->property("MaterialGenerator");
    if (QWidget* window = materialGenerator.value<QWidget*>()) {
        // Not checked against the designer's: hosts that show one plot in
        // both places expect to find it listed twice.
        for (BkHQWidget2D* plotWidget : window->findChildren<BkHQWidget2D*>())
            appendVisible(plotWidgets, plotWidget);
    }
    return plotWidgets;
}

void sortByScreenPosition(std::vector<BkHQWidget2D*>& plotWidgets)
{
    std::sort(plotWidgets.begin(), plotWidgets.end(), [](const BkHQWidget2D* a, const BkHQWidget2D* b) {
        return aboveOrLeftOf(globalTopLeft(a), globalTopLeft(b));
    });
}

float listingPixelRatio()
{
    return float(getDevicePixelRatio(getWindow()));
}

std::string plotRowText(const BkHQWidget2D* plotWidget, float pixelRatio)
{
    const QPoint p = toDevicePixels(globalTopLeft(plotWidget), pixelRatio);
    return positionText("Plot", p.x(), p.y());
}

std::vector<PlacedPlotLabel> placePlotLabels(const ViewModelInterface& viewModel, float pixelRatio)
{
    const ViewBase* view = viewModel.getView();
    if (!view)
        return {};
    const ViewTransformationProvider& projection = view->getMainWindowTransformationProvider();
    const QWidget* viewWidget = view->getViewWidget();
    if (!viewWidget)
        return {};
    const QPoint origin = toDevicePixels(viewWidget->mapToGlobal(QPoint(0, 0)), pixelRatio);
    const DisplayModel* labelModel = viewModel.getLabelDisplayModel();
    if (!labelModel)
        return {};

    std::vector<PlacedPlotLabel> placed;
    for (std::shared_ptr<PlotLabelDisplayItem>& label : collectVisibleLabels(*labelModel)) {
        const Vector<float, 3> pixel = projection.transformWorldToPixelCoordinates(label->getAnchorPointForDisplay());
        Vector<float, 3> point(float(origin.x()), float(origin.y()), 0.0f);
        point += pixel;
        placed.push_back({std::move(label), point});
    }
    return inScreenOrder(placed);
}

std::string labelRowText(const Vector<float, 3>& point)
{
    // Truncated toward zero, unlike the rounded plot rows: hosts and their
    // tests match these texts as they are, so the difference stays.
    return positionText("PlotLabel", int(point.x()), int(point.y()));
}

} // namespace Brennvik
