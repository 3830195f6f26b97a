// Clone mode of the display model dialog and the clone comparison dialog,
// each on a faithful clone, against one deep clone plus two bare trees (both
// dialogs show the original and the clone side by side). Clone mode has a
// second floor whose two trees hold the library's very rows, geometry
// duplicates included.

#include "BenchSupport.h"

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <hostcontract/DisplayModel.h>
#include <hostcontract/ViewModelInterface.h>

#include <referencehost/model/SceneViewModel.h>

#include <benchmark/benchmark.h>

#include <QCheckBox>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTreeWidget>

#include <memory>

namespace Brennvik {

// The cloned tree is the dialog's own; the benchmark reads it as the tests do.
class DisplayModelDialogTestAccess
{
public:
    static DisplayItemTreeWidget* clonedTree(DisplayModelDialog& dialog)
    {
        return dialog.m_clonedDisplayItemTreeWidget;
    }
};

} // namespace Brennvik

namespace Brennvik::Bench {

namespace {

std::shared_ptr<DisplayItemInterface> rootOf(const std::shared_ptr<ViewModelInterface>& viewModel)
{
    return viewModel->getDisplayModel()->getRootDisplayItem();
}

void cloneModeLibrary(benchmark::State& state, long n)
{
    const std::shared_ptr<SceneViewModel> model = syntheticModel(static_cast<std::size_t>(n));
    Recorder recorder;
    for (auto _ : state) {
        auto dialog = std::make_unique<DisplayModelDialog>(nullptr);
        dialog->show();
        dialog->setViewModel(model);
        settle();

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        dialog->m_useCloneCheckBox->click();
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        DisplayItemTreeWidget* clonedTree = DisplayModelDialogTestAccess::clonedTree(*dialog);
        if (!clonedTree) {
            state.SkipWithError("clone mode did not make the cloned tree");
            break;
        }
        const std::size_t rows = countRows(clonedTree);
        // The main tree also holds the edit-model rows under its top row.
        if (rows == 0 || rows > countRows(dialog->m_displayItemTreeWidget)) {
            state.SkipWithError("the cloned tree is not a copy of the main tree");
            break;
        }
        recorder.setRows(rows);
    }
    recorder.finish(state, n);
}

void cloneModeFloor(benchmark::State& state, long n, FloorFill fill)
{
    const std::shared_ptr<SceneViewModel> model = syntheticModel(static_cast<std::size_t>(n));
    rowIcons();
    Recorder recorder;
    for (auto _ : state) {
        std::unique_ptr<QTreeWidget> tree = makeFloorTreeWidget();
        std::unique_ptr<QTreeWidget> clonedTree = makeFloorTreeWidget();
        settle();

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        const std::shared_ptr<ViewModelInterface> clone = model->cloneViewModel(false);
        fill(tree.get(), rootOf(model));
        const std::size_t rows = fill(clonedTree.get(), rootOf(clone));
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);
        recorder.setRows(rows);
    }
    recorder.finish(state, n);
}

void cloneComparisonLibrary(benchmark::State& state, long n)
{
    const std::shared_ptr<SceneViewModel> model = syntheticModel(static_cast<std::size_t>(n));
    Recorder recorder;
    for (auto _ : state) {
        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        auto dialog = std::make_unique<DebugCloneDisplayModelDialog>(nullptr, model);
        dialog->show();
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        if (dialog->m_outputTextField->toPlainText() != QStringLiteral("Trees are equal")) {
            state.SkipWithError("a faithful clone was reported as different");
            break;
        }
        recorder.setRows(countRows(dialog->m_displayItemTree) + countRows(dialog->m_clonedDisplayItemTree));
    }
    recorder.finish(state, n);
}

void cloneComparisonFloor(benchmark::State& state, long n)
{
    const std::shared_ptr<SceneViewModel> model = syntheticModel(static_cast<std::size_t>(n));
    rowIcons();
    Recorder recorder;
    for (auto _ : state) {
        std::unique_ptr<QTreeWidget> tree = makeFloorTreeWidget();
        std::unique_ptr<QTreeWidget> clonedTree = makeFloorTreeWidget();
        settle();

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        const std::shared_ptr<ViewModelInterface> clone = model->cloneViewModel(false);
        std::size_t rows = buildFloorTree(tree.get(), rootOf(model));
        rows += buildFloorTree(clonedTree.get(), rootOf(clone));
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);
        recorder.setRows(rows);
    }
    recorder.finish(state, n);
}

} // namespace

void registerClone(const Config& config)
{
    for (long n : config.sizes) {
        registerCase("CloneMode", "Library", n, [n](benchmark::State& state) { cloneModeLibrary(state, n); });
        registerCase("CloneMode", "Floor", n,
                     [n](benchmark::State& state) { cloneModeFloor(state, n, &buildFloorTree); });
        registerCase("CloneMode", "FloorSameRows", n,
                     [n](benchmark::State& state) { cloneModeFloor(state, n, &fillSameRowsFloorTree); });
    }
    for (long n : config.sizes) {
        registerCase("CloneComparison", "Library", n,
                     [n](benchmark::State& state) { cloneComparisonLibrary(state, n); });
        registerCase("CloneComparison", "Floor", n, [n](benchmark::State& state) { cloneComparisonFloor(state, n); });
    }
}

} // namespace Brennvik::Bench
