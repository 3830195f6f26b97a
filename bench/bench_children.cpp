// One parent with N children, shown expanded: removing every tenth child
// from the model, one removeChild (one host event) each, and appending them
// back, one appendChild each, while the dialog follows; against the same
// host calls with the same rows taken from or added to a bare tree.

#include "BenchSupport.h"

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneViewModel.h>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QTreeWidget>

namespace Brennvik::Bench {

namespace {

// Every tenth child, spread over the whole list.
std::vector<std::shared_ptr<DisplayItem>> victimsOf(const WideModel& model)
{
    std::vector<std::shared_ptr<DisplayItem>> victims;
    for (std::size_t i = 5; i < model.children.size(); i += 10)
        victims.push_back(model.children[i]);
    return victims;
}

std::size_t victimIndex(std::size_t k)
{
    return 5 + 10 * k;
}

// The dialog on the model with the parent's row expanded and in view.
std::unique_ptr<DisplayModelDialog> showDialog(const WideModel& model)
{
    auto dialog = std::make_unique<DisplayModelDialog>(nullptr);
    dialog->show();
    dialog->setViewModel(model.viewModel);
    QTreeWidgetItem* top = dialog->m_displayItemTreeWidget->topLevelItem(0);
    top->setExpanded(true);
    top->child(0)->setExpanded(true);
    settle();
    return dialog;
}

QTreeWidgetItem* showFloor(QTreeWidget* tree, const WideModel& model, std::size_t& rows)
{
    rows = buildSameRowsFloorTree(tree, model.root);
    QTreeWidgetItem* parentRow = tree->topLevelItem(0)->child(0);
    parentRow->setExpanded(true);
    settle();
    return parentRow;
}

void removeLibrary(benchmark::State& state, long n)
{
    Recorder recorder;
    for (auto _ : state) {
        const WideModel model = wideModel(static_cast<std::size_t>(n));
        const auto victims = victimsOf(model);
        std::unique_ptr<DisplayModelDialog> dialog = showDialog(model);
        QTreeWidgetItem* parentRow = dialog->m_displayItemTreeWidget->topLevelItem(0)->child(0);

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        for (const auto& victim : victims)
            model.parent->removeChild(victim, false);
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        recorder.setRows(victims.size());
        if (static_cast<std::size_t>(parentRow->childCount()) != model.children.size() - victims.size()) {
            state.SkipWithError("the dialog did not drop the removed rows");
            break;
        }
        dialog.reset();
    }
    recorder.finish(state, n);
}

void removeFloor(benchmark::State& state, long n)
{
    Recorder recorder;
    for (auto _ : state) {
        const WideModel model = wideModel(static_cast<std::size_t>(n));
        const auto victims = victimsOf(model);
        std::unique_ptr<QTreeWidget> tree = makeFloorTreeWidget();
        std::size_t rows = 0;
        QTreeWidgetItem* parentRow = showFloor(tree.get(), model, rows);

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        for (std::size_t k = 0; k < victims.size(); ++k) {
            model.parent->removeChild(victims[k], false);
            // The k rows taken before it stood in front of it.
            delete parentRow->takeChild(static_cast<int>(victimIndex(k) - k));
        }
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        recorder.setRows(victims.size());
        tree.reset();
    }
    recorder.finish(state, n);
}

void appendLibrary(benchmark::State& state, long n)
{
    Recorder recorder;
    for (auto _ : state) {
        const WideModel model = wideModel(static_cast<std::size_t>(n));
        const auto victims = victimsOf(model);
        model.parent->removeChildren(DisplayItemSet(victims.begin(), victims.end()), true);
        std::unique_ptr<DisplayModelDialog> dialog = showDialog(model);
        QTreeWidgetItem* parentRow = dialog->m_displayItemTreeWidget->topLevelItem(0)->child(0);

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        for (const auto& victim : victims)
            model.parent->appendChild(victim);
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        recorder.setRows(victims.size());
        if (static_cast<std::size_t>(parentRow->childCount()) != model.children.size()) {
            state.SkipWithError("the dialog did not add the appended rows");
            break;
        }
        dialog.reset();
    }
    recorder.finish(state, n);
}

void appendFloor(benchmark::State& state, long n)
{
    Recorder recorder;
    for (auto _ : state) {
        const WideModel model = wideModel(static_cast<std::size_t>(n));
        const auto victims = victimsOf(model);
        model.parent->removeChildren(DisplayItemSet(victims.begin(), victims.end()), true);
        std::unique_ptr<QTreeWidget> tree = makeFloorTreeWidget();
        std::size_t rows = 0;
        QTreeWidgetItem* parentRow = showFloor(tree.get(), model, rows);

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        for (const auto& victim : victims) {
            model.parent->appendChild(victim);
            makeFloorRow(parentRow, victim, false);
        }
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        recorder.setRows(victims.size());
        tree.reset();
    }
    recorder.finish(state, n);
}

} // namespace

void registerChildren(const Config& config)
{
    for (long n : config.sizes) {
        // One run at 100,000 children and more: what stays above linear is
        // the shifting of Qt's list of child rows on each removal.
        const int removeIterations = n >= 100000 ? 1 : 0;
        registerCase(
            "ChildRemove", "Library", n, [n](benchmark::State& state) { removeLibrary(state, n); }, removeIterations);
        registerCase(
            "ChildRemove", "Floor", n, [n](benchmark::State& state) { removeFloor(state, n); }, removeIterations);
        registerCase("ChildAppend", "Library", n, [n](benchmark::State& state) { appendLibrary(state, n); });
        registerCase("ChildAppend", "Floor", n, [n](benchmark::State& state) { appendFloor(state, n); });
    }
}

} // namespace Brennvik::Bench
