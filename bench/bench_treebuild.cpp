// Building the tree: DisplayModelDialog::setViewModel on a shown dialog
// against a shown bare QTreeWidget filled with one row per item, text and
// icon (the floor), and against one filled with the library's very rows,
// geometry duplicates included.

#include "BenchSupport.h"

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QTreeWidget>

namespace Brennvik::Bench {

void measureTreeBuild(benchmark::State& state, const std::shared_ptr<SceneViewModel>& model, long n)
{
    Recorder recorder;
    for (auto _ : state) {
        auto dialog = std::make_unique<DisplayModelDialog>(nullptr);
        dialog->show();
        settle();

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        dialog->setViewModel(model);
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        recorder.setRows(countRows(dialog->m_displayItemTreeWidget));
    }
    recorder.finish(state, n);
}

void measureFloorTreeBuild(benchmark::State& state, const std::shared_ptr<SceneViewModel>& model, long n,
                           FloorFill fill)
{
    const std::shared_ptr<DisplayItemInterface> root = model->getDisplayModel()->getRootDisplayItem();
    rowIcons();
    Recorder recorder;
    for (auto _ : state) {
        std::unique_ptr<QTreeWidget> tree = makeFloorTreeWidget();

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        const std::size_t rows = fill(tree.get(), root);
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        recorder.setRows(rows);
    }
    recorder.finish(state, n);
}

void registerTreeBuild(const Config& config)
{
    for (long n : config.sizes) {
        const auto model = [n]() { return syntheticModel(static_cast<std::size_t>(n)); };
        registerCase("TreeBuild", "Library", n,
                     [n, model](benchmark::State& state) { measureTreeBuild(state, model(), n); });
        registerCase("TreeBuild", "Floor", n, [n, model](benchmark::State& state) {
            measureFloorTreeBuild(state, model(), n, &buildFloorTree);
        });
        registerCase("TreeBuild", "FloorSameRows", n, [n, model](benchmark::State& state) {
            measureFloorTreeBuild(state, model(), n, &fillSameRowsFloorTree);
        });
    }
}

} // namespace Brennvik::Bench
