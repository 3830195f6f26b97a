// "Make subtree invisible" on the top row, chosen in the row's real context
// menu: N visibility changes, N notifications and an icon update per row,
// against the same host calls and setting the icon of every row of a bare tree.

#include "BenchSupport.h"

#include <ContextMenuDriver.h>

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QTreeWidget>

namespace Brennvik::Bench {

namespace {

// Every item's visibility, in pre-order, to put the model back between runs.
std::vector<bool> visibilities(const DisplayItemList& items)
{
    std::vector<bool> visible;
    visible.reserve(items.size());
    for (const auto& item : items)
        visible.push_back(item->isVisible());
    return visible;
}

void restore(const DisplayItemList& items, const std::vector<bool>& visible)
{
    for (std::size_t i = 0; i < items.size(); ++i)
        items[i]->setVisible(visible[i]);
}

void subtreeInvisibleLibrary(benchmark::State& state, long n)
{
    const std::shared_ptr<SceneViewModel> model = syntheticModel(static_cast<std::size_t>(n));
    DisplayItemList items;
    model->getDisplayModel()->getRootDisplayItem()->collectSubtree(items);
    const std::vector<bool> visible = visibilities(items);

    Recorder recorder;
    for (auto _ : state) {
        restore(items, visible);
        auto dialog = std::make_unique<DisplayModelDialog>(nullptr);
        dialog->show();
        dialog->setViewModel(model);
        DisplayItemTreeWidget* tree = dialog->m_displayItemTreeWidget;
        tree->scrollToTop();
        settle();
        recorder.setRows(countRows(tree));
        const QPoint topRowCentre = tree->visualItemRect(tree->topLevelItem(0)).center();

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        const Test::ContextMenuVisit visit
            = Test::rightClick(tree, topRowCentre, QStringLiteral("Make subtree invisible"));
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        if (!visit.triggered || items.back()->isVisible()) {
            state.SkipWithError("the context menu did not hide the subtree");
            break;
        }
    }
    restore(items, visible);
    recorder.finish(state, n);
}

void subtreeInvisibleFloor(benchmark::State& state, long n)
{
    const std::shared_ptr<SceneViewModel> model = syntheticModel(static_cast<std::size_t>(n));
    const std::shared_ptr<DisplayItemInterface> root = model->getDisplayModel()->getRootDisplayItem();
    DisplayItemList before;
    root->collectSubtree(before);
    const std::vector<bool> visible = visibilities(before);
    const QIcon notVisible = rowIcons().notVisible;

    Recorder recorder;
    for (auto _ : state) {
        restore(before, visible);
        std::unique_ptr<QTreeWidget> tree = makeFloorTreeWidget();
        FloorRows floorRows;
        recorder.setRows(buildSameRowsFloorTree(tree.get(), root, &floorRows));
        tree->scrollToTop();
        settle();

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        DisplayItemList items;
        root->collectSubtree(items);
        for (const auto& item : items) {
            item->setVisible(false);
            item->notifyVisualPropertiesChanged();
        }
        for (QTreeWidgetItem* row : floorRows.allRows)
            row->setIcon(0, notVisible);
        if (DisplayModel* displayModel = root->getDisplayModel())
            displayModel->doVisibilityUpdate();
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);
    }
    restore(before, visible);
    recorder.finish(state, n);
}

} // namespace

void registerSubtreeInvisible(const Config& config)
{
    for (long n : config.sizes) {
        registerCase("SubtreeInvisible", "Library", n,
                     [n](benchmark::State& state) { subtreeInvisibleLibrary(state, n); });
        registerCase("SubtreeInvisible", "Floor", n, [n](benchmark::State& state) { subtreeInvisibleFloor(state, n); });
    }
}

} // namespace Brennvik::Bench
