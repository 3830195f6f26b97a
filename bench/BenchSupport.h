#pragma once

// Shared pieces of the scale benchmarks: the models, the bare-tree floor,
// the peak-memory probe and the bookkeeping of counters.

#include <hostcontract/HostTypes.h>

#include <QIcon>
#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

namespace benchmark {
class State;
}

namespace Brennvik {
class DisplayItem;
class DisplayItemInterface;
class SceneViewModel;
} // namespace Brennvik

namespace Brennvik::Bench {

/// What the command line chose: the display-item counts to run.
struct Config
{
    std::vector<long> sizes;
};

/// Google Benchmark entries need a name and a function of the state.
using Body = std::function<void(benchmark::State&)>;
/// Registers \a body as "<scenario>/<Library|Floor>/<n>", timed by hand in
/// milliseconds, with a few iterations at small sizes and one at large ones
/// unless \a iterations says otherwise.
void registerCase(const std::string& scenario, const std::string& side, long n, Body body, int iterations = 0);

/// How often each case of a million display items or more is repeated
/// (default 1). A single run at that size says as much about the virtual
/// machine's memory as about the code; the summary takes the median.
void setLargeRepetitions(int repetitions);

/// Lets queued events run until none is left, so that the views have laid
/// out and painted what changed; part of every measured interval.
void settle();

/// The peak resident set of the process since reset(), from /proc/self.
class PeakMemory
{
public:
    /// Hands freed heap back to the system and restarts the peak at the
    /// current resident set. In a case of a million items or more it first
    /// waits until the guest has handed freed memory to the hypervisor.
    void reset();
    /// Peak resident set since reset, MiB.
    double peakMiB() const;
    /// Peak minus the resident set at reset, MiB: what the measured part added.
    double addedMiB() const;

private:
    double m_baselineMiB = 0.0;
};

/// Keeps the largest peak over the iterations and writes the counters.
class Recorder
{
public:
    void add(const PeakMemory& memory);
    void setRows(std::size_t rows);
    void finish(benchmark::State& state, long n) const;

private:
    double m_peakMiB = 0.0;
    double m_addedMiB = 0.0;
    std::size_t m_rows = 0;
};

/// The generated model of \a n display items, always from the same seed.
std::shared_ptr<SceneViewModel> syntheticModel(std::size_t n);

/// A root with one "Parent" item that holds \a n plain children, each with
/// the properties of a generated item.
struct WideModel
{
    std::shared_ptr<SceneViewModel> viewModel;
    std::shared_ptr<DisplayItem> root;
    std::shared_ptr<DisplayItem> parent;
    std::vector<std::shared_ptr<DisplayItem>> children;
};
WideModel wideModel(std::size_t n);

/// The four row icons from the host's resources, loaded once.
struct RowIcons
{
    QIcon visible;
    QIcon duplicate;
    QIcon different;
    QIcon notVisible;
};
const RowIcons& rowIcons();

/// The column-0 text a row shows: the display name, and for a shell its type
/// and name in brackets.
QString rowTextOf(const std::shared_ptr<DisplayItemInterface>& item);

/// A bare QTreeWidgetItem row with that text and the icon of its item.
QTreeWidgetItem* makeFloorRow(QTreeWidgetItem* parentRow, const std::shared_ptr<DisplayItemInterface>& item,
                              bool duplicate);

/// The floor of a tree: fills \a tree with one bare row per item of \a
/// root's subtree in pre-order, each with the item's column-0 text and
/// visibility icon, walking the model through the host calls; the rows are
/// built detached and the whole subtree is inserted once. No geometry
/// duplicates. Returns the number of rows.
std::size_t buildFloorTree(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& root);

/// What buildSameRowsFloorTree can report of the rows it made, each in
/// pre-order.
struct FloorRows
{
    /// The rows of the items, duplicates left out.
    std::vector<QTreeWidgetItem*> itemRows;
    /// Every row, duplicates included.
    std::vector<QTreeWidgetItem*> allRows;
    /// The item of each of allRows.
    DisplayItemList allItems;
};

/// The same bare rows in the shape the display model dialog builds: also,
/// under each geometry module, a duplicate row for every geometry item it
/// lists (after a "Geometry" child), so that the floor has exactly the
/// library's rows. \a rows, when given, receives the rows made. Returns the
/// number of rows.
std::size_t buildSameRowsFloorTree(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& root,
                                   FloorRows* rows = nullptr);

/// A way to fill a bare tree from a root item; returns the number of rows.
using FloorFill = std::size_t (*)(QTreeWidget*, const std::shared_ptr<DisplayItemInterface>&);
/// buildSameRowsFloorTree without the row lists, as a FloorFill.
std::size_t fillSameRowsFloorTree(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& root);

/// All rows of \a tree.
std::size_t countRows(QTreeWidget* tree);

/// A shown bare tree of the dialog's size.
std::unique_ptr<QTreeWidget> makeFloorTreeWidget();

/// Times DisplayModelDialog::setViewModel of \a model on a shown dialog,
/// reported as a case of \a n items.
void measureTreeBuild(benchmark::State& state, const std::shared_ptr<SceneViewModel>& model, long n);
/// Times filling a bare tree with \a fill from \a model's root, the floor
/// of measureTreeBuild.
void measureFloorTreeBuild(benchmark::State& state, const std::shared_ptr<SceneViewModel>& model, long n,
                           FloorFill fill);

} // namespace Brennvik::Bench
