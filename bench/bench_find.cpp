// "Find next" from the top row to the one row whose item has a matching
// property, the last row in pre-order: the dialog's button against a walk
// over the items that reads their properties and searches the values (the
// floor), and against the same walk over the rows, geometry duplicates
// included, since find next tests every row (the same-rows floor).

#include "BenchSupport.h"

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>
#include <hostcontract/DisplayItemInterface.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <benchmark/benchmark.h>

#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

#include <algorithm>
#include <cctype>

namespace Brennvik::Bench {

namespace {

// Occurs in no generated property, so the only match is the marked item.
const char* const kNeedle = "Needle-In-The-Last-Row";

// Gives the last item in pre-order (the last row that is not a duplicate)
// the property the search looks for, and returns it.
std::shared_ptr<DisplayItemInterface> markLastItem(const std::shared_ptr<SceneViewModel>& model)
{
    DisplayItemList items;
    model->getDisplayModel()->getRootDisplayItem()->collectSubtree(items);
    const std::shared_ptr<DisplayItemInterface> last = items.back();
    std::dynamic_pointer_cast<DisplayItem>(last)->setBusinessProperty("marker", kNeedle);
    return last;
}

bool containsIgnoringCase(const std::string& text, const std::string& fragment)
{
    const auto equal = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    return std::search(text.begin(), text.end(), fragment.begin(), fragment.end(), equal) != text.end();
}

void findLibrary(benchmark::State& state, long n)
{
    const std::shared_ptr<SceneViewModel> model = syntheticModel(static_cast<std::size_t>(n));
    const std::shared_ptr<DisplayItemInterface> target = markLastItem(model);

    auto dialog = std::make_unique<DisplayModelDialog>(nullptr);
    dialog->show();
    dialog->setViewModel(model);
    dialog->m_searchValueLE->setText(QString::fromLatin1(kNeedle));
    dialog->m_searchTypeCB->setCurrentIndex(0); // "Any (*)"
    settle();
    DisplayItemTreeWidget* tree = dialog->m_displayItemTreeWidget;

    Recorder recorder;
    recorder.setRows(countRows(tree));
    for (auto _ : state) {
        tree->setCurrentItem(tree->topLevelItem(0));
        settle();

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        dialog->m_findDisplayItemPB->click();
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        auto* found = dynamic_cast<DisplayItemTreeWidgetItem*>(tree->currentItem());
        if (!found || found->getDisplayItem() != target) {
            state.SkipWithError("Find next did not reach the marked row");
            break;
        }
    }
    recorder.finish(state, n);
}

// The position of the first of \a items after the first whose properties
// hold \a needle in a value, ignoring case; items.size() when none does.
std::size_t firstMatchAfterTop(const DisplayItemList& items, const std::string& needle)
{
    const auto holdsNeedle = [&needle](const PropertyList& properties) {
        return std::any_of(properties.begin(), properties.end(), [&needle](const Property& property) {
            return containsIgnoringCase(property.second, needle);
        });
    };
    // The top row is where the search starts, not a candidate.
    for (std::size_t i = 1; i < items.size(); ++i) {
        PropertyList businessObjectProperties;
        PropertyList displayItemProperties;
        items[i]->getProperties(businessObjectProperties, displayItemProperties);
        if (holdsNeedle(businessObjectProperties) || holdsNeedle(displayItemProperties))
            return i;
    }
    return items.size();
}

// \a sameRows: walk the rows' items, duplicates included, as the rows hold
// them; otherwise collect the items from the host and walk those.
void findFloor(benchmark::State& state, long n, bool sameRows)
{
    const std::shared_ptr<SceneViewModel> model = syntheticModel(static_cast<std::size_t>(n));
    const std::shared_ptr<DisplayItemInterface> target = markLastItem(model);
    const std::shared_ptr<DisplayItemInterface> root = model->getDisplayModel()->getRootDisplayItem();
    const std::string needle = kNeedle;

    // The same state as the dialog's: a shown tree of all rows.
    std::unique_ptr<QTreeWidget> tree = makeFloorTreeWidget();
    FloorRows floorRows;
    Recorder recorder;
    recorder.setRows(buildSameRowsFloorTree(tree.get(), root, &floorRows));
    settle();

    for (auto _ : state) {
        tree->setCurrentItem(tree->topLevelItem(0));
        settle();

        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        DisplayItemList collected;
        if (!sameRows)
            root->collectSubtree(collected);
        const DisplayItemList& items = sameRows ? floorRows.allItems : collected;
        const std::vector<QTreeWidgetItem*>& rows = sameRows ? floorRows.allRows : floorRows.itemRows;
        const std::size_t foundAt = firstMatchAfterTop(items, needle);
        if (foundAt < rows.size())
            tree->setCurrentItem(rows[foundAt]);
        settle();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);

        if (foundAt >= items.size() || items[foundAt] != target) {
            state.SkipWithError("the walk did not reach the marked item");
            break;
        }
    }
    recorder.finish(state, n);
}

} // namespace

void registerFind(const Config& config)
{
    for (long n : config.sizes) {
        registerCase("FindNext", "Library", n, [n](benchmark::State& state) { findLibrary(state, n); });
        registerCase("FindNext", "Floor", n, [n](benchmark::State& state) { findFloor(state, n, false); });
        registerCase("FindNext", "FloorSameRows", n, [n](benchmark::State& state) { findFloor(state, n, true); });
    }
}

} // namespace Brennvik::Bench
