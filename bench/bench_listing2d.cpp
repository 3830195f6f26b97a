// The 2D dialog's listing: "Update list" with P plot widgets in the process
// designer and 10 P plot labels in the 3D view, against the same host calls
// (draw areas, their places, the visible labels and their projection) and a
// bare list filled with the same texts.

#include "BenchSupport.h"

#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>

#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItemTreeTraverser.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/PlotLabelDisplayItem.h>
#include <hostcontract/ProcessDesignerPresenter.h>
#include <hostcontract/ViewBase.h>
#include <hostcontract/ViewTransformationProvider.h>

#include <referencehost/model/SceneViewModel.h>
#include <hostcontract/DisplayItem2D.h>

#include "Plot2DHost.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QListWidget>
#include <QPushButton>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace Brennvik::Bench {

namespace {

// P plots on a grid and 10 P labels spread over the view.
void populate(Test::Plot2DHost& host, long plots)
{
    for (long i = 0; i < plots; ++i) {
        const QPoint pos(int(i % 20) * 40, int(i / 20) * 30);
        host.addPlot(pos, std::make_shared<DisplayItem2D>("plot " + std::to_string(i)));
    }
    for (long i = 0; i < 10 * plots; ++i) {
        const Vector<float, 3> anchor(float(i % 97) * 7.3f, -float(i / 97) * 5.1f, 0.0f);
        host.addLabel("label " + std::to_string(i), anchor, std::make_shared<DisplayItem2D>("labelled plot"));
    }
    host.show();
    settle();
}

void listingLibrary(benchmark::State& state, long plots)
{
    Test::Plot2DHost host;
    populate(host, plots);
    DisplayModel2DDialog dialog(host.presenter(), nullptr);
    dialog.setViewModel(host.viewModel());
    dialog.show();
    settle();

    Recorder recorder;
    for (auto _ : state) {
        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        dialog.m_updateListPB->click();
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        if (dialog.m_plotListWdg->count() != int(11 * plots)) {
            state.SkipWithError("the list does not hold every plot and label");
            break;
        }
        recorder.setRows(std::size_t(dialog.m_plotListWdg->count()));
    }
    recorder.finish(state, 11 * plots);
}

void listingFloor(benchmark::State& state, long plots)
{
    Test::Plot2DHost host;
    populate(host, plots);
    QListWidget list;
    list.show();
    settle();

    Recorder recorder;
    for (auto _ : state) {
        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        list.clear();
        std::vector<QPoint> places;
        for (QWidget* area : host.presenter().getLeftProcessDesigner()->getDrawAreas2D()) {
            if (area->isVisible())
                places.push_back(area->mapToGlobal(QPoint(0, 0)));
        }
        std::sort(places.begin(), places.end(),
                  [](const QPoint& a, const QPoint& b) { return a.y() < b.y() || (a.y() == b.y() && a.x() < b.x()); });
        for (const QPoint& p : places)
            list.addItem(QStringLiteral("Plot at (%1, %2)").arg(p.x()).arg(p.y()));

        const ViewBase& view = *host.viewModel()->getView();
        const ViewTransformationProvider& transformation = view.getMainWindowTransformationProvider();
        DisplayItemList items;
        host.viewModel()->getLabelDisplayModel()->getRootDisplayItem()->collectSubtree(items);
        std::vector<Vector<float, 3>> points;
        for (const std::shared_ptr<DisplayItemInterface>& item : items) {
            const auto label = std::dynamic_pointer_cast<PlotLabelDisplayItem>(item);
            if (label && label->isVisible())
                points.push_back(transformation.transformWorldToPixelCoordinates(label->getAnchorPointForDisplay()));
        }
        std::sort(points.begin(), points.end(), [](const Vector<float, 3>& a, const Vector<float, 3>& b) {
            return a.y() < b.y() || (a.y() == b.y() && a.x() < b.x());
        });
        for (const Vector<float, 3>& p : points)
            list.addItem(QStringLiteral("PlotLabel at (%1, %2)").arg(int(p.x())).arg(int(p.y())));
        list.setCurrentRow(0);
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        if (list.count() != int(11 * plots)) {
            state.SkipWithError("the floor did not list every plot and label");
            break;
        }
        recorder.setRows(std::size_t(list.count()));
    }
    recorder.finish(state, 11 * plots);
}

} // namespace

void registerListing2D(const Config& config)
{
    // 100 plots and 1,000 labels, and ten times as many for the growth.
    for (long plots : {100L, 1000L}) {
        const long n = 11 * plots;
        if (!config.sizes.empty() && n > config.sizes.back())
            continue;
        registerCase(
            "Listing2D", "Library", n, [plots](benchmark::State& state) { listingLibrary(state, plots); }, 5);
        registerCase(
            "Listing2D", "Floor", n, [plots](benchmark::State& state) { listingFloor(state, plots); }, 5);
    }
}

} // namespace Brennvik::Bench
