#include "BenchSupport.h"

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/GeometryModuleDisplayItemInterface.h>
#include <hostcontract/ShellDisplayItem.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QStringList>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QTreeWidgetItemIterator>

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

namespace Brennvik::Bench {

namespace {

constexpr unsigned kSeed = 4711;

// A field of /proc/self/status in MiB ("VmHWM:   123456 kB"); 0 when absent.
double statusFieldMiB(const char* field)
{
    std::ifstream status("/proc/self/status");
    std::string line;
    const std::string prefix = std::string(field) + ":";
    while (std::getline(status, line)) {
        if (line.compare(0, prefix.size(), prefix) != 0)
            continue;
        std::istringstream value(line.substr(prefix.size()));
        double kib = 0.0;
        value >> kib;
        return kib / 1024.0;
    }
    return 0.0;
}

// Big trees take seconds per run; small ones are quick enough to repeat.
int iterationsFor(long n)
{
    if (n <= 10000)
        return 5;
    if (n <= 100000)
        return 2;
    return 1;
}

} // namespace

namespace {

int largeRepetitions = 1;
// The size of the case running now; large cases wait for the guest before
// they are timed.
long runningCaseSize = 0;

// What the guest kernel has handed back to the hypervisor so far, KiB
// ("free page reporting"); -1 where the kernel does not report.
long long reportedFreeKiB()
{
    std::ifstream reported("/sys/module/page_reporting/parameters/reported_kib");
    long long kib = -1;
    if (!(reported >> kib))
        return -1;
    return kib;
}

// The guest reports freed memory to the hypervisor about two seconds after it
// was freed, a little at a time, and a case timed meanwhile pays for the
// previous case's frees. Waits until nothing more was reported for three
// seconds, at most 20 seconds in all.
void waitForFreedMemoryReported()
{
    using namespace std::chrono_literals;
    long long last = reportedFreeKiB();
    if (last < 0)
        return;
    const auto giveUp = std::chrono::steady_clock::now() + 20s;
    auto quietSince = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() < giveUp) {
        std::this_thread::sleep_for(250ms);
        const long long now = reportedFreeKiB();
        if (now != last) {
            last = now;
            quietSince = std::chrono::steady_clock::now();
        } else if (std::chrono::steady_clock::now() - quietSince >= 3s) {
            return;
        }
    }
}

} // namespace

void setLargeRepetitions(int repetitions)
{
    largeRepetitions = std::max(1, repetitions);
}

void registerCase(const std::string& scenario, const std::string& side, long n, Body body, int iterations)
{
    const std::string name = scenario + "/" + side + "/" + std::to_string(n);
    benchmark::internal::Benchmark* bench = benchmark::RegisterBenchmark(name.c_str(),
                                                                         [body, n](benchmark::State& state) {
                                                                             runningCaseSize = n;
                                                                             body(state);
                                                                         })
                                                ->UseManualTime()
                                                ->Unit(benchmark::kMillisecond)
                                                ->Iterations(iterations > 0 ? iterations : iterationsFor(n));
    if (n >= 1000000 && largeRepetitions > 1)
        bench->Repetitions(largeRepetitions);
}

void settle()
{
    // Layouts are deferred to zero-time timers and paints to posted update
    // requests; a second pass catches what the first one queued.
    for (int pass = 0; pass < 2; ++pass) {
        QCoreApplication::sendPostedEvents();
        QApplication::processEvents(QEventLoop::AllEvents);
    }
}

void PeakMemory::reset()
{
    malloc_trim(0);
    if (runningCaseSize >= 1000000)
        waitForFreedMemoryReported();
    {
        std::ofstream clearRefs("/proc/self/clear_refs");
        clearRefs << "5";
    }
    m_baselineMiB = statusFieldMiB("VmRSS");
}

double PeakMemory::peakMiB() const
{
    return statusFieldMiB("VmHWM");
}

double PeakMemory::addedMiB() const
{
    return std::max(0.0, peakMiB() - m_baselineMiB);
}

void Recorder::add(const PeakMemory& memory)
{
    m_peakMiB = std::max(m_peakMiB, memory.peakMiB());
    m_addedMiB = std::max(m_addedMiB, memory.addedMiB());
}

void Recorder::setRows(std::size_t rows)
{
    m_rows = rows;
}

void Recorder::finish(benchmark::State& state, long n) const
{
    state.counters["N"] = static_cast<double>(n);
    state.counters["rows"] = static_cast<double>(m_rows);
    state.counters["peak_MiB"] = m_peakMiB;
    state.counters["added_MiB"] = m_addedMiB;
}

std::shared_ptr<SceneViewModel> syntheticModel(std::size_t n)
{
    return buildSyntheticViewModel(n, kSeed);
}

WideModel wideModel(std::size_t n)
{
    WideModel model;
    model.viewModel = std::make_shared<SceneViewModel>();
    model.root = std::make_shared<DisplayItem>("Wide model");
    model.parent = std::make_shared<DisplayItem>("Parent");
    model.root->appendChild(model.parent);
    model.children.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        auto child = std::make_shared<DisplayItem>("Item " + std::to_string(i + 1));
        child->setBusinessProperty("id", std::to_string(i + 1));
        child->setBusinessProperty("weight", std::to_string((i * 37) % 10000 / 100) + ".00");
        child->setDisplayProperty("color", "#" + std::to_string(100000 + (i * 7919) % 900000));
        if (i % 10 == 3)
            child->setVisible(false);
        model.children.push_back(child);
    }
    // One event for all of them; nobody observes the model yet anyway.
    model.parent->appendChildren(model.children);
    model.viewModel->displayModel().setRootDisplayItem(model.root);
    return model;
}

const RowIcons& rowIcons()
{
    static const RowIcons icons{QIcon(QStringLiteral(":/Icons/Debug/visible.svg")),
                                QIcon(QStringLiteral(":/Icons/Debug/visible_duplicate.svg")),
                                QIcon(QStringLiteral(":/Icons/Debug/visible_different.svg")),
                                QIcon(QStringLiteral(":/Icons/Debug/not_visible.svg"))};
    return icons;
}

QString rowTextOf(const std::shared_ptr<DisplayItemInterface>& item)
{
    QString text = QString::fromStdString(item->getDisplayName());
    if (const auto shell = std::dynamic_pointer_cast<ShellDisplayItem>(item)) {
        text += QStringLiteral(" [");
        text += QString::fromStdString(shell->getShellTypeAndNameAsString());
        text += QStringLiteral("]");
    }
    return text;
}

QTreeWidgetItem* makeFloorRow(QTreeWidgetItem* parentRow, const std::shared_ptr<DisplayItemInterface>& item,
                              bool duplicate)
{
    auto* row = new QTreeWidgetItem(parentRow, QStringList{rowTextOf(item)});
    const RowIcons& icons = rowIcons();
    row->setIcon(0, !item->isVisible() ? icons.notVisible : duplicate ? icons.duplicate : icons.visible);
    return row;
}

namespace {

// Notes a new row of \a item in \a out, when given.
void noteRow(FloorRows* out, QTreeWidgetItem* row, const std::shared_ptr<DisplayItemInterface>& item, bool duplicate)
{
    if (!out)
        return;
    if (!duplicate)
        out->itemRows.push_back(row);
    out->allRows.push_back(row);
    out->allItems.push_back(item);
}

// The dialog's rule: once a "Geometry" child is built, it holds for the later
// siblings' subtrees too, and a geometry module then lists its geometry again.
void buildFloorRows(QTreeWidgetItem* parentRow, const std::shared_ptr<DisplayItemInterface>& item, bool geometrySeen,
                    bool duplicate, std::size_t& rows, FloorRows* out)
{
    for (const std::shared_ptr<DisplayItemInterface>& child : item->getChildren()) {
        QTreeWidgetItem* row = makeFloorRow(parentRow, child, duplicate);
        ++rows;
        noteRow(out, row, child, duplicate);
        buildFloorRows(row, child, geometrySeen, duplicate, rows, out);
        if (!geometrySeen && row->text(0) == QLatin1String("Geometry"))
            geometrySeen = true;
    }
    if (!geometrySeen || duplicate)
        return;
    const auto module = std::dynamic_pointer_cast<GeometryModuleDisplayItemInterface>(item);
    if (!module)
        return;
    for (const std::shared_ptr<DisplayItemInterface>& entry : module->getGeometryDisplayItems()) {
        QTreeWidgetItem* row = makeFloorRow(parentRow, entry, true);
        ++rows;
        noteRow(out, row, entry, true);
        buildFloorRows(row, entry, true, true, rows, out);
    }
}

} // namespace

std::size_t buildSameRowsFloorTree(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& root, FloorRows* out)
{
    auto* top = new QTreeWidgetItem(QStringList{rowTextOf(root)});
    top->setIcon(0, root->isVisible() ? rowIcons().visible : rowIcons().notVisible);
    std::size_t rows = 1;
    noteRow(out, top, root, false);
    buildFloorRows(top, root, false, false, rows, out);
    // Attached last: a whole subtree enters the view in one insertion, the
    // cheapest way a bare tree can take it.
    tree->addTopLevelItem(top);
    top->setExpanded(true);
    return rows;
}

std::size_t buildFloorTree(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& root)
{
    auto* top = new QTreeWidgetItem(QStringList{rowTextOf(root)});
    top->setIcon(0, root->isVisible() ? rowIcons().visible : rowIcons().notVisible);
    std::size_t rows = 1;
    // An explicit stack: one row per item in pre-order, children in order.
    std::vector<std::pair<QTreeWidgetItem*, std::shared_ptr<DisplayItemInterface>>> pending{{top, root}};
    std::vector<QTreeWidgetItem*> childRows;
    while (!pending.empty()) {
        const auto [row, item] = pending.back();
        pending.pop_back();
        const DisplayItemList children = item->getChildren();
        childRows.clear();
        for (const std::shared_ptr<DisplayItemInterface>& child : children) {
            childRows.push_back(makeFloorRow(row, child, false));
            ++rows;
        }
        for (std::size_t i = children.size(); i-- > 0;)
            pending.emplace_back(childRows[i], children[i]);
    }
    tree->addTopLevelItem(top);
    top->setExpanded(true);
    return rows;
}

std::size_t fillSameRowsFloorTree(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& root)
{
    return buildSameRowsFloorTree(tree, root);
}

std::size_t countRows(QTreeWidget* tree)
{
    std::size_t rows = 0;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        ++rows;
    return rows;
}

std::unique_ptr<QTreeWidget> makeFloorTreeWidget()
{
    auto tree = std::make_unique<QTreeWidget>();
    tree->setHeaderLabel(QStringLiteral("Display items"));
    tree->resize(764, 902);
    tree->show();
    settle();
    return tree;
}

} // namespace Brennvik::Bench
