// A seeded, model-based random test of the dialogs.
//
// Each run interleaves host mutations (subtrees added and removed, items
// hidden, shown, renamed, selected, the current row's item deleted, the view
// model replaced, clone defects and 2D plot trees changed) with what a user
// does through the widgets (double clicks, every context-menu entry, "Find
// next", "Update", clone mode on and off, current-row changes in both trees,
// the 2D dialog's list and visibility toggles). After every step each tree is
// compared with an expected tree that this file keeps by the dialogs' rules,
// independently of the library: rows of added items are appended last, only
// the first row of a removed item goes, row texts are set once, geometry
// modules list their items a second time after a "Geometry" row, and so on.
// Every tree widget's model is watched by QAbstractItemModelTester.
//
// The host also reacts inside the dialogs' own calls: an observer armed on
// an item (or on the display model's updates) removes the item, its parent or
// its top ancestor, adds children, replaces the root or the view model, or
// removes an item of the clone, while a double click, a context-menu entry or
// a 2D toggle is still running. And some items list empty children or
// themselves or an ancestor among their children (broken trees).
//
// Environment:
//   BRENNVIK_RANDOM_SEEDS      comma-separated seeds (default 1,2,3)
//   BRENNVIK_RANDOM_STEPS      steps per seed (default 1500)
//   BRENNVIK_RANDOM_TRACE      1: log every step (to replay a failure)
//   BRENNVIK_RANDOM_REACTIONS  0: no host reactions inside the dialogs' calls (default 1)
//   BRENNVIK_RANDOM_BROKEN     0: no broken trees (default 1)
// A failure names the seed and the step; rerun with that seed alone.

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/BKCheckBox.h>
#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayItem2DObserver.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/EditorDisplayModel.h>
#include <hostcontract/GeometryModuleDisplayItemInterface.h>
#include <hostcontract/LabelableDisplayItemInterface.h>
#include <hostcontract/ShellDisplayItem.h>

#include <referencehost/model/CloneDefect.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/model/ShellItem.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include "BrokenItem.h"
#include "ContextMenuDriver.h"
#include "DebugIcons.h"
#include "DisplayModelDialogTestAccess.h"
#include "Plot2DHost.h"
#include "RecordingObserver.h"
#include "TestTree.h"

#include <QAbstractItemModelTester>
#include <QAbstractListModel>
#include <QApplication>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QElapsedTimer>
#include <QHash>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <typeinfo>
#include <vector>

using namespace Brennvik;
using Access = Brennvik::DisplayModelDialogTestAccess;

namespace {

const QString SelectEntry = QStringLiteral("&Select/deselect display item");
const QString DeleteEntry = QStringLiteral("&Delete display item");
const QString InvisibleEntry = QStringLiteral("Make subtree invisible");
const QString VisibleEntry = QStringLiteral("Make subtree visible");
const QStringList KitEntries{QStringLiteral("Expand recursively"), QStringLiteral("Collapse all"),
                             QStringLiteral("Copy")};

// ------------------------------------------------------------------ settings

QList<quint64> seedsFromEnvironment()
{
    QList<quint64> seeds;
    const QByteArray text = qgetenv("BRENNVIK_RANDOM_SEEDS");
    for (const QByteArray& part : text.split(',')) {
        bool ok = false;
        const quint64 seed = part.trimmed().toULongLong(&ok);
        if (ok)
            seeds << seed;
    }
    if (seeds.isEmpty())
        seeds = {1, 2, 3};
    return seeds;
}

int stepsFromEnvironment()
{
    bool ok = false;
    const int steps = qEnvironmentVariableIntValue("BRENNVIK_RANDOM_STEPS", &ok);
    return ok && steps > 0 ? steps : 1500;
}

bool traceSteps()
{
    return qEnvironmentVariableIntValue("BRENNVIK_RANDOM_TRACE") != 0;
}

// The variable's value as a switch; \a byDefault when it is not set to a number.
bool switchedOn(const char* name, bool byDefault)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(name, &ok);
    return ok ? value != 0 : byDefault;
}

bool reactionsFromEnvironment()
{
    return switchedOn("BRENNVIK_RANDOM_REACTIONS", true);
}

bool brokenTreesFromEnvironment()
{
    return switchedOn("BRENNVIK_RANDOM_BROKEN", true);
}

// ------------------------------------------------------------------ messages

// What the model testers report (category qt.modeltest), and every other
// warning, so that a step that provoked one can be named.
QStringList g_modelTestFailures;
QStringList g_otherWarnings;
QtMessageHandler g_previousHandler = nullptr;
bool g_trace = false;
bool g_quiet = false; // records without printing

void recordingHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const bool fromTester = context.category && qstrcmp(context.category, "qt.modeltest") == 0;
    // The offscreen platform warns at every menu that it cannot grab the keyboard.
    if (!fromTester && message.startsWith(QLatin1String("This plugin does not support")))
        return;
    if (fromTester && type != QtDebugMsg && type != QtInfoMsg) {
        g_modelTestFailures << message;
    } else if (type == QtWarningMsg || type == QtCriticalMsg) {
        g_otherWarnings << message;
    }
    // The context menu writes a debug line per opening; thousands of them only hide what matters.
    if ((type == QtDebugMsg && !g_trace) || g_quiet)
        return;
    if (g_previousHandler)
        g_previousHandler(type, context, message);
}

// Attaches a tester to a view's model. Testers must go before their models:
// a model that is destroyed resets itself first, and a tester would then
// look into a view that is half gone.
using Testers = std::vector<QPointer<QAbstractItemModelTester>>;

void watch(QAbstractItemView* view, Testers& testers)
{
    if (!view)
        return;
    testers.emplace_back(
        new QAbstractItemModelTester(view->model(), QAbstractItemModelTester::FailureReportingMode::Warning));
}

void unwatch(Testers& testers)
{
    for (const auto& tester : testers)
        delete tester.data();
    testers.clear();
}

// ------------------------------------------------------------------ icons

// The icon a row shows, by name; memoised per icon, since rows share the
// library's few icon objects.
QString iconName(const QIcon& icon)
{
    static QHash<qint64, QString> names;
    if (icon.isNull())
        return QString();
    const qint64 key = icon.cacheKey();
    auto it = names.find(key);
    if (it == names.end())
        it = names.insert(key, Brennvik::Test::debugIconName(icon));
    return it.value();
}

// ------------------------------------------------------------------ text of a row

QString expectedRowText(const std::shared_ptr<DisplayItemInterface>& item)
{
    if (!item)
        return QString();
    QString text = QString::fromStdString(item->getDisplayName());
    if (const auto shell = std::dynamic_pointer_cast<ShellDisplayItem>(item))
        text += QStringLiteral(" [") + QString::fromStdString(shell->getShellTypeAndNameAsString()) + QLatin1Char(']');
    return text;
}

// ------------------------------------------------------------------ host walks

// The items of \a root's subtree in pre-order as the host holds them: real
// children only, since a broken item's extra entries are no part of the model.
std::vector<std::shared_ptr<DisplayItem>> hostPreOrder(const std::shared_ptr<DisplayItem>& root)
{
    std::vector<std::shared_ptr<DisplayItem>> items;
    std::vector<std::shared_ptr<DisplayItem>> pending;
    if (root)
        pending.push_back(root);
    while (!pending.empty()) {
        auto item = std::move(pending.back());
        pending.pop_back();
        const auto& children = item->children();
        pending.insert(pending.end(), children.rbegin(), children.rend());
        items.push_back(std::move(item));
    }
    return items;
}

// The items on the way down from where a dialog's build started. A dialog
// gives an empty child no row, and an item already on the way down (the host
// listed the item itself or an ancestor among its children) a row with
// nothing below it. A build for added children starts at the added item.
using ItemPath = std::vector<const DisplayItemInterface*>;

bool isOnPath(const ItemPath& path, const DisplayItemInterface* item)
{
    return std::find(path.begin(), path.end(), item) != path.end();
}

// The texts of a tree built by the clone comparison dialog from \a root: one
// row per item in pre-order, by the same rules for broken trees.
QStringList comparisonTexts(const std::shared_ptr<DisplayItemInterface>& root)
{
    QStringList texts;
    if (!root)
        return texts;
    struct Pending
    {
        std::shared_ptr<DisplayItemInterface> item;
        std::size_t depth;
    };
    std::vector<Pending> pending{{root, 0}};
    ItemPath path;
    while (!pending.empty()) {
        Pending next = std::move(pending.back());
        pending.pop_back();
        path.resize(next.depth);
        texts << expectedRowText(next.item);
        if (isOnPath(path, next.item.get()))
            continue;
        path.push_back(next.item.get());
        const DisplayItemList children = next.item->getChildren();
        for (auto it = children.rbegin(); it != children.rend(); ++it) {
            if (*it)
                pending.push_back({*it, next.depth + 1});
        }
    }
    return texts;
}

// The clone comparison dialog's report on \a original and \a cloned below
// the items of \a originalPath and \a clonedPath: a message and the
// original item's description per finding, a pair's before its children's.
// Children pair up by position when both lists are as long; a pair with an
// empty side is passed over, and one that repeats an item on the way down is
// compared but not descended into.
void addComparisonFindings(const std::shared_ptr<DisplayItemInterface>& original,
                           const std::shared_ptr<DisplayItemInterface>& cloned, ItemPath& originalPath,
                           ItemPath& clonedPath, QStringList& report)
{
    const auto finding = [&report](const char* message, const DisplayItemInterface& item) {
        report << QLatin1String(message) << QString::fromStdString(item.getDescription());
    };
    const DisplayItemList originalChildren = original->getChildren();
    const DisplayItemList clonedChildren = cloned->getChildren();
    if (originalChildren.size() != clonedChildren.size()) {
        finding("Child count differs", *original);
        return;
    }
    originalPath.push_back(original.get());
    clonedPath.push_back(cloned.get());
    for (std::size_t i = 0; i < originalChildren.size(); ++i) {
        const auto& o = originalChildren[i];
        const auto& c = clonedChildren[i];
        if (!o || !c)
            continue;
        if (typeid(*o) != typeid(*c)) {
            finding("Type differs", *o);
            continue;
        }
        if (o == c) {
            finding("Pointer was copied", *o);
            continue;
        }
        if (o->isVisible() != c->isVisible())
            finding("Visibility differs", *o);
        if (!isOnPath(originalPath, o.get()) && !isOnPath(clonedPath, c.get()))
            addComparisonFindings(o, c, originalPath, clonedPath, report);
    }
    originalPath.pop_back();
    clonedPath.pop_back();
}

QStringList comparisonReport(const std::shared_ptr<DisplayItemInterface>& original,
                             const std::shared_ptr<DisplayItemInterface>& cloned)
{
    QStringList report;
    ItemPath originalPath;
    ItemPath clonedPath;
    addComparisonFindings(original, cloned, originalPath, clonedPath, report);
    if (report.isEmpty())
        report << QStringLiteral("Trees are equal");
    return report;
}

// ------------------------------------------------------------------ expected 3D tree

struct ExpectedRow
{
    bool edit = false;
    std::weak_ptr<DisplayItemInterface> item;
    std::weak_ptr<EditorDisplayItem> editItem;
    QString text;
    bool duplicate = false;
    int itemIndex = -1;
    bool bold = false;
    bool different = false;
    // The icon the row showed when the last event reached it: a row whose item
    // has gone keeps it until something refreshes it.
    QString lastIcon;
    // The icon may be either (a gone row that a cut-short operation may or
    // may not have refreshed): taken from the tree at the next check.
    bool anyIcon = false;
    ExpectedRow* parent = nullptr;
    std::vector<std::unique_ptr<ExpectedRow>> children;

    QString iconFor(const std::shared_ptr<DisplayItemInterface>& alive) const
    {
        if (edit) {
            const auto e = editItem.lock();
            if (!e)
                return lastIcon;
            return e->isVisible() ? QStringLiteral("visible") : QStringLiteral("not_visible");
        }
        if (!alive)
            return QStringLiteral("visible_different");
        if (alive->isVisible())
            return duplicate ? QStringLiteral("visible_duplicate")
                : different  ? QStringLiteral("visible_different")
                             : QStringLiteral("visible");
        return different ? QStringLiteral("visible_different") : QStringLiteral("not_visible");
    }
    QString expectedIcon() const
    {
        if (edit)
            return iconFor(nullptr);
        const auto alive = item.lock();
        return alive ? iconFor(alive) : lastIcon;
    }
};

using RowList = std::vector<std::unique_ptr<ExpectedRow>>;

ExpectedRow* appendRow(ExpectedRow* parent, RowList& list, const std::shared_ptr<DisplayItemInterface>& item,
                       bool duplicate)
{
    auto row = std::make_unique<ExpectedRow>();
    row->item = item;
    row->text = expectedRowText(item);
    row->duplicate = duplicate;
    row->parent = parent;
    row->lastIcon = row->iconFor(item);
    list.push_back(std::move(row));
    return list.back().get();
}

// The dialog's tree builder: children in model order with their positions,
// and, once a "Geometry" row has been built among the children here or
// further up, a geometry module's items again as duplicate rows at the end.
// \a path holds \a item and the items above it down from the build's start.
void buildRows(ExpectedRow* parentRow, const std::shared_ptr<DisplayItemInterface>& item, bool geometrySeen,
               bool duplicate, ItemPath& path)
{
    int index = 0;
    const auto addRow
        = [&](const std::shared_ptr<DisplayItemInterface>& child, bool childGeometrySeen, bool childDuplicate) {
              ExpectedRow* row = appendRow(parentRow, parentRow->children, child, childDuplicate);
              row->itemIndex = index++;
              if (!isOnPath(path, child.get())) {
                  path.push_back(child.get());
                  buildRows(row, child, childGeometrySeen, childDuplicate, path);
                  path.pop_back();
              }
              return row;
          };
    for (const auto& child : item->getChildren()) {
        if (!child)
            continue;
        const ExpectedRow* row = addRow(child, geometrySeen, duplicate);
        if (!geometrySeen && row->text == QLatin1String("Geometry"))
            geometrySeen = true;
    }
    if (!geometrySeen || duplicate)
        return;
    if (const auto module = std::dynamic_pointer_cast<GeometryModuleDisplayItemInterface>(item)) {
        for (const auto& entry : module->getGeometryDisplayItems()) {
            if (entry)
                addRow(entry, true, true);
        }
    }
}

// The rows a build from \a item makes below \a row.
void buildRowsFrom(ExpectedRow* row, const std::shared_ptr<DisplayItemInterface>& item, bool geometrySeen,
                   bool duplicate)
{
    if (!item)
        return;
    ItemPath path{item.get()};
    buildRows(row, item, geometrySeen, duplicate, path);
}

void collectRows(RowList& list, std::vector<ExpectedRow*>& out)
{
    for (auto& row : list) {
        out.push_back(row.get());
        collectRows(row->children, out);
    }
}

bool contains(RowList& list, const ExpectedRow* wanted)
{
    for (auto& row : list) {
        if (row.get() == wanted || contains(row->children, wanted))
            return true;
    }
    return false;
}

// The expected row at the place of \a actual (the trees were found alike after the last step).
ExpectedRow* expectedFor(RowList& list, QTreeWidgetItem* actual)
{
    QList<int> path;
    QTreeWidgetItem* top = actual;
    for (; top->parent(); top = top->parent())
        path.prepend(top->parent()->indexOfChild(top));
    const int topIndex = top->treeWidget() ? top->treeWidget()->indexOfTopLevelItem(top) : -1;
    if (topIndex < 0 || std::size_t(topIndex) >= list.size())
        return nullptr;
    ExpectedRow* row = list[std::size_t(topIndex)].get();
    for (int i : path) {
        if (std::size_t(i) >= row->children.size())
            return nullptr;
        row = row->children[std::size_t(i)].get();
    }
    return row;
}

// ------------------------------------------------------------------ expected 2D tree

struct Expected2DRow
{
    std::shared_ptr<DisplayItem2D> item;
    QString text;
    std::vector<std::unique_ptr<Expected2DRow>> children;
};

void build2DRows(Expected2DRow& row)
{
    for (const auto& child : row.item->getChildren()) {
        auto childRow = std::make_unique<Expected2DRow>();
        childRow->item = child;
        childRow->text = QString::fromStdString(child->getDisplayName());
        build2DRows(*childRow);
        row.children.push_back(std::move(childRow));
    }
}

void collect2DRows(Expected2DRow& row, std::vector<Expected2DRow*>& out)
{
    out.push_back(&row);
    for (auto& child : row.children)
        collect2DRows(*child, out);
}

// ------------------------------------------------------------------ property lists

QStringList paneLines(const QTreeWidget* pane)
{
    QStringList lines;
    for (int i = 0; pane && i < pane->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = pane->topLevelItem(i);
        lines << row->text(0) + QStringLiteral(" = ") + row->text(1) + QStringLiteral(" [") + row->toolTip(1)
                + QLatin1Char(']');
    }
    return lines;
}

QStringList propertyLines(const PropertyList& properties)
{
    QStringList lines;
    for (const auto& [name, value] : properties) {
        const QString v = QString::fromStdString(value);
        lines << QString::fromStdString(name) + QStringLiteral(" = ") + v + QStringLiteral(" [") + v + QLatin1Char(']');
    }
    return lines;
}

} // namespace

// ====================================================================== the run

// Sets whether the host's events come from inside a dialog's own call, for
// the scope of one user action (or of a host change made in the middle of one).
class DialogCall
{
public:
    explicit DialogCall(bool& flag, bool inside = true)
        : m_flag(flag)
        , m_before(flag)
    {
        m_flag = inside;
    }
    ~DialogCall() { m_flag = m_before; }
    DialogCall(const DialogCall&) = delete;
    DialogCall& operator=(const DialogCall&) = delete;

private:
    bool& m_flag;
    bool m_before;
};

// Runs the run's 2D reaction at any event of the items it observes.
class Reacting2DObserver : public DisplayItem2DObserver
{
public:
    explicit Reacting2DObserver(std::function<void()> reaction)
        : m_reaction(std::move(reaction))
    {
    }
    void onDisplayItemModified() override { m_reaction(); }
    void onChildAdded(DisplayItem2D*, std::shared_ptr<DisplayItem2D>) override { m_reaction(); }
    void onChildRemoved(DisplayItem2D*, std::shared_ptr<DisplayItem2D>) override { m_reaction(); }

private:
    std::function<void()> m_reaction;
};

class RandomRun
{
public:
    RandomRun(quint64 seed, int steps)
        : m_seed(seed)
        , m_steps(steps)
        , m_rng(seed)
        , m_reactionsOn(reactionsFromEnvironment())
        , m_brokenTreesOn(brokenTreesFromEnvironment())
    {
    }
    ~RandomRun() { tearDown(); }

    /// Empty when every step passed; otherwise what went wrong, with seed and step.
    QString run();
    int clonesMade() const { return m_clonesMade; }
    QMap<QString, int> actionCounts() const { return m_actionCounts; }

private:
    // randomness
    std::uint64_t next() { return m_rng(); }
    int pick(int n) { return n <= 0 ? 0 : int(next() % std::uint64_t(n)); }
    bool chance(int percent) { return pick(100) < percent; }
    template<typename T>
    T pickFrom(const std::vector<T>& v)
    {
        return v.empty() ? T() : v[std::size_t(pick(int(v.size())))];
    }

    // setup
    void setUp();
    void tearDown();
    std::shared_ptr<SceneViewModel> makeRandomViewModel();
    std::shared_ptr<DisplayItem> makeRandomItem(int depth);
    std::vector<Test::BrokenItem::Flaw> randomFlaws();
    std::string freshName();

    // the model
    std::shared_ptr<DisplayItem> root() const;
    std::vector<std::shared_ptr<DisplayItem>> modelItems() const;

    // expected trees
    void rebuildExpected(bool cloneOnly);
    void compareClone(ExpectedRow* original, ExpectedRow* cloned, ExpectedRow* clonedParent);
    void markAncestorsBold(ExpectedRow* row);
    void expectAdded(const DisplayItemInterface* parent, const DisplayItemList& items);
    void expectRemoved(const DisplayItemInterface* parent, const DisplayItemSet& items);
    void rebuildExpected2D();
    void expect2DAdded(const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child);
    void expect2DRemoved(const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child);

    // checks
    QString checkAll();
    QString checkTree(QTreeWidget* tree, RowList& expected, const QString& name);
    QString checkRow(QTreeWidgetItem* actual, ExpectedRow* expected, const QString& path);
    QString checkPanes();
    QString check2D();
    QString checkListing();
    void refreshLastIcons();

    // steps
    QString step(int index);
    QString hostAddSubtree();
    QString hostRemove();
    QString hostReattach();
    QString hostToggleVisible();
    QString hostChangeProperties();
    QString hostToggleSelection();
    QString hostDeleteCurrentRowItem();
    QString hostReplaceViewModel();
    QString hostGeometryList();
    QString hostCloneDefects();
    QString hostEditor();
    QString host2D();
    QString userDoubleClick();
    QString userContextMenu(bool removeWhileOpen);
    QString userClonedContextMenu();
    QString userFindNext();
    QString userCount();
    QString userToggleClone();
    QString userCloneCheckBoxes();
    QString userCurrentRow();
    QString userClonedCurrentRow();
    QString userClonedDoubleClick();
    QString user2DList();
    QString user2DDoubleClick();
    QString user2DCurrentRow();
    QString userCloneComparisonDialog();

    QString hostBreakItem();

    // host reactions inside the dialogs' own calls
    void armReaction(const std::shared_ptr<DisplayItem>& item, bool onUpdates);
    void offerReaction(const std::vector<std::shared_ptr<DisplayItem>>& near);
    void disarmReaction();
    void react();
    void reactRemove(const std::shared_ptr<DisplayItem>& item);
    void reactRemoveChildren(const std::shared_ptr<DisplayItem>& item);
    void reactAddChildren(const std::shared_ptr<DisplayItem>& item);
    void reactReplaceRoot();
    void reactRemoveClonedItem();
    void offer2DReaction(const std::shared_ptr<DisplayItem2D>& item);
    void react2D();
    void disarm2DReaction();
    std::shared_ptr<DisplayItem> rowItem(QTreeWidgetItem* row) const;

    void replaceViewModel(std::shared_ptr<SceneViewModel> next);
    void dropDetached();
    void doubleClick(QTreeWidget* tree, QTreeWidgetItem* row);
    QList<QTreeWidgetItem*> allRows(QTreeWidget* tree) const;
    void note(const QString& what);
    void noteReaction(const QString& what);

    quint64 m_seed;
    int m_steps;
    std::mt19937_64 m_rng;
    int m_step = 0;
    int m_nameCounter = 0;
    int m_clonesMade = 0;
    // Rebuilds with a new view model while clone mode stays on. Each connects
    // the cloned tree's current-row slot once more, and from the second
    // connection on a current-row change made in the original tree comes back
    // to it from the clone (the guard is cleared by the first call).
    int m_cloneRebuilds = 0;
    // In clone mode a current-row change made in the original tree may come
    // back changed from the clone: the cloned tree's slot clears the guard
    // before the walk along the path is over, so a second row made current in
    // the clone in the same walk (or a second connection after a rebuild) is
    // mirrored back. The panes then show the row last printed, which is the
    // first change, printed last.
    bool currentMayBounce() const { return Access::useClone(*m_dialog); }
    bool m_panesUnreliable = false;
    QString m_lastAction;
    QMap<QString, int> m_actionCounts;

    std::shared_ptr<SceneViewModel> m_viewModel;          // the one the dialog shows (may be empty)
    std::shared_ptr<SceneViewModel> m_spareViewModel;     // kept aside, shown again later
    std::vector<std::shared_ptr<DisplayItem>> m_detached; // removed items the host still holds
    SceneDrawAreaPresenter m_presenter;
    DisplayModelDialog* m_dialog = nullptr;
    Testers m_testers;
    Testers m_clonedTesters;
    Testers m_cloneDialogTesters;
    RowList m_expected;
    RowList m_expectedCloned;

    std::unique_ptr<Test::Plot2DHost> m_plotHost;
    std::vector<BkHQWidget2D*> m_plots;
    std::vector<QPoint> m_plotPositions;
    std::vector<std::shared_ptr<PlotLabelItem>> m_labels;
    std::vector<QPoint> m_labelPoints;
    std::vector<DisplayModel2D*> m_labelModels;
    DisplayModel2DDialog* m_dialog2D = nullptr;
    DisplayModel2D* m_selectedModel2D = nullptr; // what the 2D tree is expected to show
    std::unique_ptr<Expected2DRow> m_expected2D;

    DebugCloneDisplayModelDialog* m_cloneDialog = nullptr;
    QStringList m_cloneDialogShape;

    // Host reactions. A dialog's own call runs while m_inDialogCall is set;
    // only then does an armed reaction fire, once, and it is disarmed at the
    // end of the step. What it removes is kept alive until the next step, so
    // that the rows that still show it keep telling its state.
    bool m_reactionsOn = true;
    bool m_brokenTreesOn = true;
    bool m_inDialogCall = false;
    std::unique_ptr<Test::RecordingObserver> m_reactor;
    std::weak_ptr<DisplayItem> m_reactorItem;
    std::weak_ptr<SceneViewModel> m_reactorUpdates; // whose update callback reacts
    int m_reactorArmedAt = 0;
    bool m_reactorFired = false;
    bool m_reacted = false;        // in this step
    bool m_replacedInCall = false; // in this step the reaction replaced the view model
    std::vector<std::shared_ptr<void>> m_keptAlive;
    std::unique_ptr<Reacting2DObserver> m_reactor2D;
    std::weak_ptr<DisplayItem2D> m_reactor2DItem;
    bool m_reactor2DFired = false;
};

void RandomRun::note(const QString& what)
{
    m_lastAction = what;
    m_actionCounts[what.section(QLatin1Char(' '), 0, 0)]++;
    if (g_trace)
        qInfo("seed %llu step %d: %s", m_seed, m_step, qPrintable(what));
}

void RandomRun::noteReaction(const QString& what)
{
    m_lastAction += QStringLiteral(", then inside it: ") + what;
    m_actionCounts[what]++;
    if (g_trace)
        qInfo("seed %llu step %d: inside the call: %s", m_seed, m_step, qPrintable(what));
}

std::string RandomRun::freshName()
{
    return "n" + std::to_string(++m_nameCounter);
}

std::shared_ptr<DisplayItem> RandomRun::makeRandomItem(int depth)
{
    std::shared_ptr<DisplayItem> item;
    const int kind = pick(10);
    if (kind == 0) {
        item = std::make_shared<ShellItem>(freshName(), "Tool", "t" + std::to_string(m_nameCounter));
    } else if (kind == 1) {
        item = std::make_shared<LabelableItem>(freshName(), "label", chance(50));
    } else if (kind == 2 && depth > 0) {
        // A module with its "Geometry" group, whose items it lists again.
        auto module = std::make_shared<GeometryModuleItem>(freshName());
        auto group = std::make_shared<DisplayItem>("Geometry");
        module->appendChild(group);
        const int n = 1 + pick(2);
        for (int i = 0; i < n; ++i) {
            auto g = std::make_shared<DisplayItem>(freshName());
            group->appendChild(g);
            module->addGeometryDisplayItem(g);
        }
        item = module;
    } else if (kind == 3) {
        item = std::make_shared<DisplayItem>("Geometry");
    } else if (kind == 4 && m_brokenTreesOn) {
        auto broken = std::make_shared<Test::BrokenItem>(freshName());
        broken->setFlaws(randomFlaws());
        item = broken;
    } else {
        item = std::make_shared<DisplayItem>(freshName());
    }
    if (chance(20))
        item->setVisible(false);
    if (chance(15))
        item->setSelectionAllowed(false);
    if (chance(15))
        item->setSelectable(false);
    if (chance(40))
        item->setBusinessProperty("material", chance(50) ? "DC04" : "AA6016");
    if (chance(30))
        item->setDisplayProperty("colour", chance(50) ? "red" : "blue");
    const int children = depth > 0 ? pick(4) : 0;
    for (int i = 0; i < children; ++i)
        item->appendChild(makeRandomItem(depth - 1));
    return item;
}

// None to three: empty references, the item itself, its parent or grandparent.
std::vector<Test::BrokenItem::Flaw> RandomRun::randomFlaws()
{
    std::vector<Test::BrokenItem::Flaw> flaws(std::size_t(pick(4)));
    for (auto& flaw : flaws) {
        flaw.position = std::size_t(pick(4));
        flaw.ancestorLevel = chance(50) ? -1 : pick(3);
    }
    return flaws;
}

std::shared_ptr<SceneViewModel> RandomRun::makeRandomViewModel()
{
    auto rootItem = std::make_shared<DisplayItem>("Root");
    const int children = 2 + pick(4);
    for (int i = 0; i < children; ++i)
        rootItem->appendChild(makeRandomItem(3));
    auto viewModel = Test::makeViewModel(rootItem);
    if (chance(40)) {
        EditorDisplayModel& editor = viewModel->ensureEditorDisplayModel();
        const int n = 1 + pick(3);
        for (int i = 0; i < n; ++i) {
            auto primitive = editor.addEditModelPrimitive("edit " + freshName());
            primitive->setProperties({{"handle", std::to_string(i)}});
        }
    }
    return viewModel;
}

std::shared_ptr<DisplayItem> RandomRun::root() const
{
    return m_viewModel ? m_viewModel->displayModel().rootDisplayItem() : nullptr;
}

std::vector<std::shared_ptr<DisplayItem>> RandomRun::modelItems() const
{
    return hostPreOrder(root());
}

void RandomRun::setUp()
{
    m_viewModel = makeRandomViewModel();
    m_dialog = new DisplayModelDialog(nullptr);
    m_dialog->setDrawAreaPresenter(&m_presenter);
    m_dialog->resize(900, 700);
    watch(m_dialog->m_displayItemTreeWidget, m_testers);
    watch(m_dialog->m_businessObjectProperties, m_testers);
    watch(m_dialog->m_displayItemProperties, m_testers);
    m_dialog->show();
    (void)QTest::qWaitForWindowExposed(m_dialog);
    m_dialog->setViewModel(m_viewModel);
    rebuildExpected(false);
    // A row change made outside clone mode prints what it makes current.
    QObject::connect(m_dialog->m_displayItemTreeWidget, &QTreeWidget::currentItemChanged, m_dialog, [this]() {
        if (!currentMayBounce())
            m_panesUnreliable = false;
    });

    // The 2D side: plots at distinct places, labels at distinct anchors.
    m_plotHost = std::make_unique<Test::Plot2DHost>();
    m_plotHost->show();
    const int plots = 2 + pick(3);
    for (int i = 0; i < plots; ++i) {
        auto plotRoot = std::make_shared<DisplayItem2D>("plot " + std::to_string(i));
        for (int c = 0; c < 1 + pick(3); ++c) {
            auto child = std::make_shared<DisplayItem2D>("curve " + freshName());
            if (chance(50))
                child->appendChild(std::make_shared<DisplayItem2D>("point " + freshName()));
            plotRoot->appendChild(child);
        }
        const QPoint pos(10 + 130 * (i % 3) + pick(5), 10 + 90 * (i / 3) + pick(5));
        m_plots.push_back(m_plotHost->addPlot(pos, plotRoot));
        m_plotPositions.push_back(pos);
    }
    const int labels = 1 + pick(2);
    for (int i = 0; i < labels; ++i) {
        const QPoint point(300 + 40 * i + pick(10), 400 + pick(50));
        auto labelRoot = std::make_shared<DisplayItem2D>("label plot " + std::to_string(i));
        labelRoot->appendChild(std::make_shared<DisplayItem2D>("legend " + freshName()));
        // The view's projection puts world (x, y) at pixel (x, -y).
        auto label = m_plotHost->addLabel("label " + std::to_string(i),
                                          Vector<float, 3>(float(point.x()), float(-point.y()), 0.0f), labelRoot);
        m_labels.push_back(label);
        m_labelPoints.push_back(point);
        m_labelModels.push_back(Test::Plot2DHost::modelOf(*label));
    }
    m_dialog2D = new DisplayModel2DDialog(m_plotHost->presenter(), nullptr);
    m_dialog2D->setViewModel(m_plotHost->viewModel());
    watch(m_dialog2D->m_displayItemTreeWidget, m_testers);
    watch(m_dialog2D->m_businessObjectProperties, m_testers);
    watch(m_dialog2D->m_displayItemProperties, m_testers);
    watch(m_dialog2D->m_plotListWdg, m_testers);
    m_dialog2D->move(0, 0);
    m_dialog2D->show();
    (void)QTest::qWaitForWindowExposed(m_dialog2D);
    // The show lists the plots and selects the first row.
    m_selectedModel2D = nullptr;
    const int row = m_dialog2D->m_plotListWdg->currentRow();
    if (row >= 0)
        m_selectedModel2D = m_dialog2D->getDisplayModelOfSelectedPlot();
    rebuildExpected2D();
}

void RandomRun::tearDown()
{
    disarmReaction();
    disarm2DReaction();
    unwatch(m_cloneDialogTesters);
    unwatch(m_clonedTesters);
    unwatch(m_testers);
    delete m_cloneDialog;
    m_cloneDialog = nullptr;
    delete m_dialog;
    m_dialog = nullptr;
    delete m_dialog2D;
    m_dialog2D = nullptr;
    m_expected.clear();
    m_expectedCloned.clear();
    m_expected2D.reset();
    m_labels.clear();
    m_plotHost.reset();
}

// ------------------------------------------------------------------ expected trees

void RandomRun::rebuildExpected(bool cloneOnly)
{
    if (!cloneOnly)
        m_expected.clear();
    m_expectedCloned.clear();
    const auto rootItem = root();
    if (!rootItem)
        return;
    if (!cloneOnly) {
        ExpectedRow* top = appendRow(nullptr, m_expected, rootItem, false);
        buildRowsFrom(top, rootItem, false, false);
        if (EditorDisplayModel* editor = m_viewModel->editorDisplayModel()) {
            for (const auto& primitive : editor->getAllEditModelPrimitives()) {
                auto row = std::make_unique<ExpectedRow>();
                row->edit = true;
                row->editItem = primitive;
                row->text = QString::fromStdString(primitive->getDisplayName());
                row->lastIcon = row->iconFor(nullptr);
                row->parent = top;
                top->children.push_back(std::move(row));
            }
        }
    }
    if (!Access::useClone(*m_dialog))
        return;
    const auto clone = Access::clonedViewModel(*m_dialog);
    if (!clone || !clone->getDisplayModel())
        return;
    const auto clonedRoot = clone->getDisplayModel()->getRootDisplayItem();
    if (!clonedRoot)
        return;
    ExpectedRow* clonedTop = appendRow(nullptr, m_expectedCloned, clonedRoot, false);
    buildRowsFrom(clonedTop, clonedRoot, false, false);
    for (std::size_t i = 0; i < m_expected.size(); ++i) {
        ExpectedRow* cloned = i < m_expectedCloned.size() ? m_expectedCloned[i].get() : nullptr;
        compareClone(m_expected[i].get(), cloned, cloned ? cloned->parent : nullptr);
    }
}

void RandomRun::markAncestorsBold(ExpectedRow* row)
{
    for (ExpectedRow* r = row; r && r->parent; r = r->parent)
        r->bold = true;
}

// Edit-model rows take part as "no row": only display item rows are compared.
void RandomRun::compareClone(ExpectedRow* original, ExpectedRow* cloned, ExpectedRow* clonedParent)
{
    if (original && original->edit)
        original = nullptr;
    if (!cloned) {
        if (clonedParent && original && !original->duplicate)
            markAncestorsBold(clonedParent);
        return;
    }
    if (!original) {
        cloned->bold = true;
        for (auto& child : cloned->children)
            compareClone(nullptr, child.get(), cloned->parent);
        return;
    }
    if (original->text != cloned->text || original->children.size() < cloned->children.size()
        || original->itemIndex != cloned->itemIndex) {
        cloned->bold = true;
        markAncestorsBold(cloned->parent);
    }
    const auto o = original->item.lock();
    const auto c = cloned->item.lock();
    if (o && c && o->isVisible() != c->isVisible()) {
        for (ExpectedRow* r = cloned; r && (r == cloned || r->parent); r = r->parent) {
            r->different = true;
            const auto alive = r->item.lock();
            r->lastIcon = r->iconFor(alive);
        }
    }
    const std::size_t n = std::max(original->children.size(), cloned->children.size());
    for (std::size_t i = 0; i < n; ++i) {
        ExpectedRow* oc = i < original->children.size() ? original->children[i].get() : nullptr;
        ExpectedRow* cc = i < cloned->children.size() ? cloned->children[i].get() : nullptr;
        compareClone(oc, cc, cloned->parent);
    }
}

// Every row that observes \a parent appends rows for \a items, last.
void RandomRun::expectAdded(const DisplayItemInterface* parent, const DisplayItemList& items)
{
    std::vector<ExpectedRow*> rows;
    collectRows(m_expected, rows);
    collectRows(m_expectedCloned, rows);
    for (ExpectedRow* row : rows) {
        if (row->edit || row->item.lock().get() != parent)
            continue;
        for (const auto& item : items) {
            ExpectedRow* added = appendRow(row, row->children, item, row->duplicate);
            buildRowsFrom(added, item, row->duplicate, false);
        }
    }
}

// Every row that observes \a parent loses its first row of each removed item.
void RandomRun::expectRemoved(const DisplayItemInterface* parent, const DisplayItemSet& items)
{
    std::vector<ExpectedRow*> rows;
    collectRows(m_expected, rows);
    collectRows(m_expectedCloned, rows);
    for (ExpectedRow* row : rows) {
        if (!contains(m_expected, row) && !contains(m_expectedCloned, row))
            continue; // went with an earlier removal
        if (row->edit || row->item.lock().get() != parent)
            continue;
        for (const auto& item : items) {
            for (auto it = row->children.begin(); it != row->children.end(); ++it) {
                if (!(*it)->edit && (*it)->item.lock() == item) {
                    row->children.erase(it);
                    break;
                }
            }
        }
    }
}

void RandomRun::rebuildExpected2D()
{
    m_expected2D.reset();
    if (!m_selectedModel2D || !m_selectedModel2D->getRootDisplayItem())
        return;
    m_expected2D = std::make_unique<Expected2DRow>();
    m_expected2D->item = m_selectedModel2D->getRootDisplayItem();
    m_expected2D->text = QString::fromStdString(m_expected2D->item->getDisplayName());
    build2DRows(*m_expected2D);
}

void RandomRun::expect2DAdded(const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child)
{
    if (!m_expected2D)
        return;
    std::vector<Expected2DRow*> rows;
    collect2DRows(*m_expected2D, rows);
    for (Expected2DRow* row : rows) {
        if (row->item.get() != parent)
            continue;
        auto added = std::make_unique<Expected2DRow>();
        added->item = child;
        added->text = QString::fromStdString(child->getDisplayName());
        build2DRows(*added);
        row->children.push_back(std::move(added));
    }
}

void RandomRun::expect2DRemoved(const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child)
{
    if (!m_expected2D)
        return;
    std::vector<Expected2DRow*> rows;
    collect2DRows(*m_expected2D, rows);
    for (Expected2DRow* row : rows) {
        if (row->item.get() != parent)
            continue;
        for (auto it = row->children.begin(); it != row->children.end(); ++it) {
            if ((*it)->item == child) {
                row->children.erase(it);
                break;
            }
        }
        // A 2D item has one row; the rows collected after it may have gone with the erased one.
        return;
    }
}

// ------------------------------------------------------------------ checks

QString RandomRun::checkRow(QTreeWidgetItem* actual, ExpectedRow* expected, const QString& path)
{
    const QString where = path + QLatin1Char('/') + expected->text;
    auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(actual);
    if (expected->edit) {
        if (itemRow || actual->type() != QTreeWidgetItem::UserType)
            return where + QStringLiteral(": expected an edit-model row");
    } else {
        if (!itemRow)
            return where + QStringLiteral(": expected a display item row");
        if (itemRow->getDisplayItem() != expected->item.lock())
            return where + QStringLiteral(": shows another item");
        if (itemRow->isDuplicate() != expected->duplicate)
            return where + QStringLiteral(": duplicate flag %1").arg(itemRow->isDuplicate());
        if (itemRow->getItemIndex() != expected->itemIndex)
            return where
                + QStringLiteral(": item index %1, expected %2").arg(itemRow->getItemIndex()).arg(expected->itemIndex);
        if (itemRow->isDifferentVisibility() != expected->different)
            return where + QStringLiteral(": different-visibility mark %1").arg(itemRow->isDifferentVisibility());
        if ((actual->font(0).weight() == 75) != expected->bold)
            return where + QStringLiteral(": bold %1").arg(actual->font(0).weight() == 75);
        if (!actual->text(1).isEmpty())
            return where + QStringLiteral(": column 1 shows %1").arg(actual->text(1));
    }
    if (actual->text(0) != expected->text)
        return where + QStringLiteral(": text \"%1\"").arg(actual->text(0));
    const QString icon = iconName(actual->icon(0));
    if (expected->anyIcon && (icon == expected->expectedIcon() || icon == QLatin1String("visible_different"))) {
        expected->lastIcon = icon;
        expected->anyIcon = false;
    }
    if (icon != expected->expectedIcon())
        return where + QStringLiteral(": icon %1, expected %2").arg(icon, expected->expectedIcon());
    if (actual->childCount() != int(expected->children.size())) {
        QStringList actualTexts;
        for (int i = 0; i < actual->childCount(); ++i)
            actualTexts << actual->child(i)->text(0);
        QStringList expectedTexts;
        for (const auto& child : expected->children)
            expectedTexts << child->text;
        return where
            + QStringLiteral(": %1 child rows (%2), expected %3 (%4)")
                  .arg(actual->childCount())
                  .arg(actualTexts.join(QStringLiteral(", ")))
                  .arg(expected->children.size())
                  .arg(expectedTexts.join(QStringLiteral(", ")));
    }
    for (int i = 0; i < actual->childCount(); ++i) {
        const QString problem = checkRow(actual->child(i), expected->children[std::size_t(i)].get(), where);
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

QString RandomRun::checkTree(QTreeWidget* tree, RowList& expected, const QString& name)
{
    if (tree->topLevelItemCount() != int(expected.size()))
        return name + QStringLiteral(": %1 top rows, expected %2").arg(tree->topLevelItemCount()).arg(expected.size());
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QString problem = checkRow(tree->topLevelItem(i), expected[std::size_t(i)].get(), name);
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

void RandomRun::refreshLastIcons()
{
    std::vector<ExpectedRow*> rows;
    collectRows(m_expected, rows);
    collectRows(m_expectedCloned, rows);
    for (ExpectedRow* row : rows) {
        if (row->edit)
            row->lastIcon = row->iconFor(nullptr);
        else if (const auto alive = row->item.lock())
            row->lastIcon = row->iconFor(alive);
    }
}

QString RandomRun::checkPanes()
{
    QTreeWidgetItem* current = m_dialog->m_displayItemTreeWidget->currentItem();
    PropertyList business;
    PropertyList display;
    // A change that came back from the clone is printed before the change that
    // caused it, which is printed last: the panes may show the row the user chose.
    if (currentMayBounce())
        m_panesUnreliable = true;
    if (m_panesUnreliable)
        return QString();
    if (auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(current)) {
        const auto item = row->getDisplayItem();
        // A gone item's panes keep what was printed last; nothing to compare with.
        if (!item)
            return QString();
        item->getProperties(business, display);
        if (const auto labelable = std::dynamic_pointer_cast<LabelableDisplayItemInterface>(item)) {
            display.emplace_back("Label", labelable->getLabel());
            display.emplace_back("Labels allowed", labelable->areLabelsAllowed() ? "true" : "false");
        }
    } else if (!current) {
        // A current row can vanish without a current-row change: Qt says nothing
        // when the current row was below a removed row. The panes then keep what
        // they showed (tst_goneitems covers it); nothing to compare here.
        return QString();
    } else {
        // An edit-model row: its primitive changes silently, so the pane shows
        // what it had when the row was last printed.
        return QString();
    }
    // A module's geometry list loses items that have gone without an event.
    const auto withoutGeometryCount = [](QStringList lines) {
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const QString& l) { return l.startsWith(QLatin1String("geometry items = ")); }),
                    lines.end());
        return lines;
    };
    if (withoutGeometryCount(paneLines(m_dialog->m_displayItemProperties))
        != withoutGeometryCount(propertyLines(display)))
        return QStringLiteral("display item pane of %1: %2, expected %3")
            .arg(current ? current->text(0) : QStringLiteral("no row"),
                 paneLines(m_dialog->m_displayItemProperties).join(QStringLiteral("; ")),
                 propertyLines(display).join(QStringLiteral("; ")));
    if (paneLines(m_dialog->m_businessObjectProperties) != propertyLines(business))
        return QStringLiteral("business object pane: %1")
            .arg(paneLines(m_dialog->m_businessObjectProperties).join(QStringLiteral("; ")));
    return QString();
}

QString RandomRun::checkListing()
{
    // Visible plots by position (top to bottom, then left to right), then visible labels alike.
    std::vector<std::pair<QPoint, QString>> plots;
    for (std::size_t i = 0; i < m_plots.size(); ++i) {
        if (m_plots[i]->isVisible())
            plots.emplace_back(
                m_plotPositions[i],
                QStringLiteral("Plot at (%1, %2)").arg(m_plotPositions[i].x()).arg(m_plotPositions[i].y()));
    }
    std::vector<std::pair<QPoint, QString>> labels;
    for (std::size_t i = 0; i < m_labels.size(); ++i) {
        if (m_labels[i]->isVisible())
            labels.emplace_back(
                m_labelPoints[i],
                QStringLiteral("PlotLabel at (%1, %2)").arg(m_labelPoints[i].x()).arg(m_labelPoints[i].y()));
    }
    const auto byPosition = [](const std::pair<QPoint, QString>& a, const std::pair<QPoint, QString>& b) {
        return a.first.y() < b.first.y() || (a.first.y() == b.first.y() && a.first.x() < b.first.x());
    };
    std::sort(plots.begin(), plots.end(), byPosition);
    std::sort(labels.begin(), labels.end(), byPosition);
    QStringList expected;
    for (const auto& p : plots)
        expected << p.second;
    for (const auto& l : labels)
        expected << l.second;
    QStringList actual;
    for (int i = 0; i < m_dialog2D->m_plotListWdg->count(); ++i)
        actual << m_dialog2D->m_plotListWdg->item(i)->text();
    if (actual != expected)
        return QStringLiteral("plot list %1, expected %2")
            .arg(actual.join(QStringLiteral("; ")), expected.join(QStringLiteral("; ")));
    return QString();
}

QString RandomRun::check2D()
{
    QTreeWidget* tree = m_dialog2D->m_displayItemTreeWidget;
    if (!m_expected2D)
        return tree->topLevelItemCount() == 0 ? QString() : QStringLiteral("2D tree: rows without a model");
    if (tree->topLevelItemCount() != 1)
        return QStringLiteral("2D tree: %1 top rows").arg(tree->topLevelItemCount());
    std::function<QString(QTreeWidgetItem*, Expected2DRow*, QString)> compare
        = [&](QTreeWidgetItem* actual, Expected2DRow* expected, QString path) -> QString {
        path += QLatin1Char('/') + expected->text;
        if (actual->text(0) != expected->text)
            return path + QStringLiteral(": text \"%1\"").arg(actual->text(0));
        const QString icon = iconName(actual->icon(0));
        const QString wanted = expected->item->getVisibility() == DisplayItem2D::Visible
            ? QStringLiteral("visible")
            : QStringLiteral("not_visible");
        if (icon != wanted)
            return path + QStringLiteral(": icon %1, expected %2").arg(icon, wanted);
        if (actual->childCount() != int(expected->children.size()))
            return path
                + QStringLiteral(": %1 child rows, expected %2")
                      .arg(actual->childCount())
                      .arg(expected->children.size());
        for (int i = 0; i < actual->childCount(); ++i) {
            const QString problem = compare(actual->child(i), expected->children[std::size_t(i)].get(), path);
            if (!problem.isEmpty())
                return problem;
        }
        return QString();
    };
    QString problem = compare(tree->topLevelItem(0), m_expected2D.get(), QStringLiteral("2D tree"));
    if (!problem.isEmpty())
        return problem;

    // The current row's properties: the item's display list and business list.
    QTreeWidgetItem* current = tree->currentItem();
    PropertyList business;
    PropertyList display;
    // As in the 3D tree, a current row below a removed row goes without a
    // current-row change, and the panes keep what they showed.
    if (!current)
        return QString();
    {
        // Find the expected row at the same place to learn its item.
        QList<int> path;
        for (QTreeWidgetItem* r = current; r->parent(); r = r->parent())
            path.prepend(r->parent()->indexOfChild(r));
        Expected2DRow* row = m_expected2D.get();
        for (int i : path)
            row = row->children[std::size_t(i)].get();
        row->item->getProperties(business, display);
    }
    if (paneLines(m_dialog2D->m_displayItemProperties) != propertyLines(display))
        return QStringLiteral("2D display item pane: %1")
            .arg(paneLines(m_dialog2D->m_displayItemProperties).join(QStringLiteral("; ")));
    if (paneLines(m_dialog2D->m_businessObjectProperties) != propertyLines(business))
        return QStringLiteral("2D business pane: %1")
            .arg(paneLines(m_dialog2D->m_businessObjectProperties).join(QStringLiteral("; ")));
    return QString();
}

QString RandomRun::checkAll()
{
    QString problem = checkTree(m_dialog->m_displayItemTreeWidget, m_expected, QStringLiteral("tree"));
    if (!problem.isEmpty())
        return problem;
    DisplayItemTreeWidget* cloned = Access::clonedTree(*m_dialog);
    if (Access::useClone(*m_dialog) != (cloned != nullptr))
        return QStringLiteral("cloned tree exists: %1 in clone mode %2")
            .arg(cloned != nullptr)
            .arg(Access::useClone(*m_dialog));
    if (cloned) {
        problem = checkTree(cloned, m_expectedCloned, QStringLiteral("cloned tree"));
        if (!problem.isEmpty())
            return problem;
    }
    problem = checkPanes();
    if (!problem.isEmpty())
        return problem;
    problem = check2D();
    if (!problem.isEmpty())
        return problem;
    if (m_cloneDialog) {
        QStringList shape;
        for (QTreeWidget* tree : {static_cast<QTreeWidget*>(m_cloneDialog->m_displayItemTree),
                                  static_cast<QTreeWidget*>(m_cloneDialog->m_clonedDisplayItemTree)}) {
            for (QTreeWidgetItemIterator it(tree); *it; ++it)
                shape << (*it)->text(0);
            shape << QStringLiteral("|");
        }
        // Its rows have no dialog: the trees stay as built whatever the model does.
        if (shape != m_cloneDialogShape)
            return QStringLiteral("clone comparison trees changed");
    }
    if (!g_modelTestFailures.isEmpty())
        return QStringLiteral("model tester: ") + g_modelTestFailures.join(QStringLiteral(" | "));
    refreshLastIcons();
    return QString();
}

// ------------------------------------------------------------------ helpers

QList<QTreeWidgetItem*> RandomRun::allRows(QTreeWidget* tree) const
{
    QList<QTreeWidgetItem*> rows;
    if (!tree)
        return rows;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        rows << *it;
    return rows;
}

void RandomRun::doubleClick(QTreeWidget* tree, QTreeWidgetItem* row)
{
    tree->scrollToItem(row);
    const QPoint pos = tree->visualItemRect(row).center();
    QTest::mousePress(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
}

// ------------------------------------------------------------------ host mutations

QString RandomRun::hostAddSubtree()
{
    const auto items = modelItems();
    if (items.empty())
        return QString();
    auto parent = pickFrom(items);
    const int how = pick(3);
    if (how == 0) {
        auto child = makeRandomItem(pick(3));
        const std::size_t index = std::size_t(pick(int(parent->childCount()) + 1));
        note(QStringLiteral("insert %1 at %2 under %3")
                 .arg(QString::fromStdString(child->getDisplayName()))
                 .arg(index)
                 .arg(QString::fromStdString(parent->getDisplayName())));
        parent->insertChild(index, child);
        expectAdded(parent.get(), {child});
    } else if (how == 1) {
        auto child = makeRandomItem(pick(3));
        note(QStringLiteral("append %1 under %2")
                 .arg(QString::fromStdString(child->getDisplayName()),
                      QString::fromStdString(parent->getDisplayName())));
        parent->appendChild(child);
        expectAdded(parent.get(), {child});
    } else {
        std::vector<std::shared_ptr<DisplayItem>> children;
        for (int i = 0, n = 1 + pick(3); i < n; ++i)
            children.push_back(makeRandomItem(1));
        note(QStringLiteral("appendChildren %1 under %2")
                 .arg(children.size())
                 .arg(QString::fromStdString(parent->getDisplayName())));
        parent->appendChildren(children);
        expectAdded(parent.get(), DisplayItemList(children.begin(), children.end()));
    }
    return QString();
}

QString RandomRun::hostRemove()
{
    auto items = modelItems();
    if (items.size() < 2)
        return QString();
    auto item = items[std::size_t(1 + pick(int(items.size()) - 1))];
    DisplayItem* parent = item->parentItem();
    if (!parent)
        return QString();
    DisplayItemSet removed{item};
    if (chance(30)) {
        // Several siblings in one event.
        for (const auto& sibling : parent->children()) {
            if (chance(30))
                removed.insert(sibling);
        }
    }
    note(QStringLiteral("remove %1 items under %2")
             .arg(removed.size())
             .arg(QString::fromStdString(parent->getDisplayName())));
    const auto parentRef = parent->shared_from_this();
    if (removed.size() == 1)
        parent->removeChild(item, false);
    else
        parent->removeChildren(removed, chance(50));
    expectRemoved(parent, removed);
    if (chance(40) && m_detached.size() < 6)
        m_detached.push_back(item);
    return QString();
}

QString RandomRun::hostReattach()
{
    if (m_detached.empty())
        return QString();
    const std::size_t index = std::size_t(pick(int(m_detached.size())));
    auto item = m_detached[index];
    m_detached.erase(m_detached.begin() + std::ptrdiff_t(index));
    const auto items = modelItems();
    if (items.empty() || item->parentItem())
        return QString();
    auto parent = pickFrom(items);
    for (DisplayItem* p = parent.get(); p; p = p->parentItem()) {
        if (p == item.get())
            return QString();
    }
    note(QStringLiteral("reattach %1 under %2")
             .arg(QString::fromStdString(item->getDisplayName()), QString::fromStdString(parent->getDisplayName())));
    parent->appendChild(item);
    expectAdded(parent.get(), {item});
    return QString();
}

QString RandomRun::hostToggleVisible()
{
    std::vector<std::shared_ptr<DisplayItem>> items = modelItems();
    items.insert(items.end(), m_detached.begin(), m_detached.end());
    auto item = pickFrom(items);
    if (!item)
        return QString();
    note(QStringLiteral("visible %1 %2").arg(QString::fromStdString(item->getDisplayName())).arg(!item->isVisible()));
    item->setVisible(!item->isVisible());
    item->notifyVisualPropertiesChanged();
    return QString();
}

QString RandomRun::hostChangeProperties()
{
    auto item = pickFrom(modelItems());
    if (!item)
        return QString();
    const int how = pick(5);
    note(QStringLiteral("properties %1 (%2)").arg(QString::fromStdString(item->getDisplayName())).arg(how));
    switch (how) {
    case 0:
        // The row keeps the name it was built with.
        item->setDisplayName(item->getDisplayName() + "'");
        break;
    case 1:
        item->setBusinessProperty("material", "M" + std::to_string(pick(100)));
        break;
    case 2:
        item->setDisplayProperty("p" + std::to_string(pick(3)), std::to_string(pick(1000)));
        break;
    case 3:
        if (auto labelable = std::dynamic_pointer_cast<LabelableItem>(item))
            labelable->setLabel("label " + std::to_string(pick(100)));
        else
            item->notifyPropertiesChanged();
        break;
    default:
        item->notifyPropertiesChanged();
        break;
    }
    return QString();
}

QString RandomRun::hostToggleSelection()
{
    auto item = pickFrom(modelItems());
    if (!item)
        return QString();
    note(QStringLiteral("selection %1").arg(QString::fromStdString(item->getDisplayName())));
    switch (pick(3)) {
    case 0:
        item->setSelected(!item->isSelected());
        item->notifyVisualPropertiesChanged();
        break;
    case 1:
        item->setSelectionAllowed(!item->isSelectionAllowed());
        break;
    default:
        item->setSelectable(!item->isSelectable());
        break;
    }
    return QString();
}

QString RandomRun::hostDeleteCurrentRowItem()
{
    auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(m_dialog->m_displayItemTreeWidget->currentItem());
    if (!row)
        return QString();
    auto item = std::dynamic_pointer_cast<DisplayItem>(row->getDisplayItem());
    if (!item || !item->parentItem())
        return QString();
    DisplayItem* parent = item->parentItem();
    const auto parentRef = parent->shared_from_this();
    note(QStringLiteral("deleteCurrent %1").arg(QString::fromStdString(item->getDisplayName())));
    parent->removeChild(item, false);
    expectRemoved(parent, {item});
    return QString();
}

QString RandomRun::hostReplaceViewModel()
{
    const int how = pick(10);
    std::shared_ptr<SceneViewModel> next;
    if (how < 5) {
        next = makeRandomViewModel();
        note(QStringLiteral("replace with a new view model"));
    } else if (how < 7) {
        next = m_spareViewModel;
        note(QStringLiteral("replace with the spare view model (%1)").arg(next ? "set" : "empty"));
    } else if (how < 8) {
        note(QStringLiteral("replace with no view model"));
    } else {
        next = m_viewModel;
        note(QStringLiteral("set the same view model again"));
    }
    replaceViewModel(next);
    if (m_dialog->isEnabled() != (m_viewModel != nullptr))
        return QStringLiteral("dialog enabled %1 with view model %2")
            .arg(m_dialog->isEnabled())
            .arg(m_viewModel != nullptr);
    return QString();
}

// The host lets go of the items it held out of the tree. Rows may still show
// them (a geometry list names them) and the call that dropped them may still
// be changing them, so they stay alive until the next step, as removed items do.
void RandomRun::dropDetached()
{
    m_keptAlive.insert(m_keptAlive.end(), m_detached.begin(), m_detached.end());
    m_detached.clear();
}

void RandomRun::replaceViewModel(std::shared_ptr<SceneViewModel> next)
{
    if (chance(50))
        m_spareViewModel = m_viewModel;
    // The old one stays until the next step: the call that replaced it may still be running on it.
    m_keptAlive.push_back(m_viewModel);
    m_viewModel = std::move(next);
    dropDetached();
    m_dialog->setViewModel(m_viewModel);
    if (Access::useClone(*m_dialog)) {
        ++m_clonesMade;
        ++m_cloneRebuilds;
    }
    rebuildExpected(false);
}

QString RandomRun::hostGeometryList()
{
    std::vector<std::shared_ptr<GeometryModuleItem>> modules;
    for (const auto& item : modelItems()) {
        if (auto module = std::dynamic_pointer_cast<GeometryModuleItem>(item))
            modules.push_back(module);
    }
    auto module = pickFrom(modules);
    if (!module)
        return QString();
    note(QStringLiteral("geometry list of %1").arg(QString::fromStdString(module->getDisplayName())));
    const auto entries = module->getGeometryDisplayItems();
    if (!entries.empty() && chance(50)) {
        module->removeGeometryDisplayItem(pickFrom(entries).get());
    } else {
        // Only items of the module's own subtree: the host lists what it groups.
        const auto candidates = hostPreOrder(module);
        if (candidates.size() > 1)
            module->addGeometryDisplayItem(candidates[std::size_t(1 + pick(int(candidates.size()) - 1))]);
    }
    // The list changes silently; a host that changes it tells the item's readers.
    module->notifyPropertiesChanged();
    return QString();
}

QString RandomRun::hostCloneDefects()
{
    if (!m_viewModel)
        return QString();
    Test::DefectList defects;
    const auto items = modelItems();
    const int n = pick(3);
    for (int i = 0; i < n && items.size() > 1; ++i) {
        const auto target = items[std::size_t(1 + pick(int(items.size()) - 1))];
        defects << qMakePair(CloneDefect::Kind(pick(8)), QString::fromStdString(target->getDisplayName()));
    }
    note(QStringLiteral("clone defects %1").arg(defects.size()));
    Test::setDefects(*m_viewModel, defects);
    return QString();
}

QString RandomRun::hostEditor()
{
    if (!m_viewModel)
        return QString();
    note(QStringLiteral("editor primitives"));
    // No event: the rows change only with the next rebuild.
    EditorDisplayModel& editor = m_viewModel->ensureEditorDisplayModel();
    if (!editor.getAllEditModelPrimitives().empty() && chance(50))
        editor.removeEditModelPrimitive(pickFrom(editor.getAllEditModelPrimitives()));
    else
        editor.addEditModelPrimitive("edit " + freshName());
    return QString();
}

QString RandomRun::host2D()
{
    std::vector<DisplayModel2D*> models;
    for (BkHQWidget2D* plot : m_plots)
        models.push_back(Test::Plot2DHost::modelOf(plot));
    models.insert(models.end(), m_labelModels.begin(), m_labelModels.end());
    DisplayModel2D* model = pickFrom(models);
    std::vector<std::shared_ptr<DisplayItem2D>> items;
    std::function<void(const std::shared_ptr<DisplayItem2D>&)> walk = [&](const std::shared_ptr<DisplayItem2D>& i) {
        items.push_back(i);
        for (const auto& c : i->getChildren())
            walk(c);
    };
    walk(model->getRootDisplayItem());
    auto item = pickFrom(items);
    const int how = pick(5);
    if (how == 0) {
        auto child = std::make_shared<DisplayItem2D>("item " + freshName());
        if (chance(40))
            child->appendChild(std::make_shared<DisplayItem2D>("sub " + freshName()));
        note(QStringLiteral("2D add under %1").arg(QString::fromStdString(item->getDisplayName())));
        if (chance(50))
            item->insertChild(std::size_t(pick(int(item->getChildren().size()) + 1)), child);
        else
            item->appendChild(child);
        expect2DAdded(item.get(), child);
    } else if (how == 1 && item->getParent()) {
        DisplayItem2D* parent = item->getParent();
        note(QStringLiteral("2D remove %1").arg(QString::fromStdString(item->getDisplayName())));
        const auto keep = parent->shared_from_this();
        parent->removeChild(item);
        expect2DRemoved(parent, item);
    } else if (how == 2) {
        note(QStringLiteral("2D visibility %1").arg(QString::fromStdString(item->getDisplayName())));
        item->setVisibility(DisplayItem2D::Visibility(pick(3)));
    } else if (how == 3) {
        note(QStringLiteral("2D property %1").arg(QString::fromStdString(item->getDisplayName())));
        item->setDisplayProperty("width", std::to_string(pick(10)));
        item->setBusinessProperty("source", std::to_string(pick(10)));
    } else {
        // Plot widgets and labels shown or hidden: the list changes at its next update.
        if (chance(50) && !m_plots.empty()) {
            BkHQWidget2D* plot = pickFrom(m_plots);
            note(QStringLiteral("2D plot widget visible %1").arg(!plot->isVisible()));
            plot->setVisible(!plot->isVisible());
        } else if (!m_labels.empty()) {
            auto label = pickFrom(m_labels);
            note(QStringLiteral("2D label visible %1").arg(!label->isVisible()));
            label->setVisible(!label->isVisible());
            label->notifyVisualPropertiesChanged();
        }
    }
    return QString();
}

QString RandomRun::hostBreakItem()
{
    std::vector<std::shared_ptr<Test::BrokenItem>> broken;
    for (const auto& item : modelItems()) {
        if (auto b = std::dynamic_pointer_cast<Test::BrokenItem>(item))
            broken.push_back(b);
    }
    auto item = pickFrom(broken);
    if (!item)
        return QString();
    // Silent, as a careless host would be: rows show the change at the next build.
    auto flaws = randomFlaws();
    note(QStringLiteral("break %1 (%2 flaws)").arg(QString::fromStdString(item->getDisplayName())).arg(flaws.size()));
    item->setFlaws(std::move(flaws));
    return QString();
}

// ------------------------------------------------------------------ host reactions

std::shared_ptr<DisplayItem> RandomRun::rowItem(QTreeWidgetItem* row) const
{
    auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row);
    return itemRow ? std::dynamic_pointer_cast<DisplayItem>(itemRow->getDisplayItem()) : nullptr;
}

void RandomRun::armReaction(const std::shared_ptr<DisplayItem>& item, bool onUpdates)
{
    if (!item)
        return;
    m_reactor = std::make_unique<Test::RecordingObserver>();
    m_reactor->setReaction([this](const Test::RecordedEvent&) { react(); });
    m_reactor->registerToDisplayItem(item);
    m_reactorItem = item;
    m_reactorFired = false;
    m_reactorArmedAt = m_step;
    if (onUpdates && m_viewModel) {
        m_viewModel->displayModel().setUpdateCallback([this]() { react(); });
        m_reactorUpdates = m_viewModel;
    }
    if (g_trace)
        qInfo("  reaction armed on %s%s", item->getDisplayName().c_str(), onUpdates ? " and the updates" : "");
}

// Arms a reaction, now and then, on one of the items a user action is about to reach.
void RandomRun::offerReaction(const std::vector<std::shared_ptr<DisplayItem>>& near)
{
    if (!m_reactionsOn || m_reactor || near.empty() || !chance(30))
        return;
    armReaction(pickFrom(near), chance(20));
}

void RandomRun::disarmReaction()
{
    m_reactor.reset();
    m_reactorItem.reset();
    if (const auto viewModel = m_reactorUpdates.lock())
        viewModel->displayModel().setUpdateCallback({});
    m_reactorUpdates.reset();
    m_reactorFired = false;
}

void RandomRun::react()
{
    if (!m_inDialogCall || m_reactorFired)
        return;
    m_reactorFired = true;
    m_reacted = true;
    const auto item = m_reactorItem.lock();
    if (!item)
        return;
    const int roll = pick(100);
    if (roll < 25) {
        noteReaction(QStringLiteral("react: remove the item"));
        reactRemove(item);
    } else if (roll < 40) {
        noteReaction(QStringLiteral("react: remove the parent"));
        if (DisplayItem* parent = item->parentItem())
            reactRemove(parent->shared_from_this());
    } else if (roll < 50) {
        noteReaction(QStringLiteral("react: remove the top ancestor"));
        std::shared_ptr<DisplayItem> top = item;
        while (top->parentItem() && top->parentItem()->parentItem())
            top = top->parentItem()->shared_from_this();
        reactRemove(top);
    } else if (roll < 58) {
        noteReaction(QStringLiteral("react: remove the children"));
        reactRemoveChildren(item);
    } else if (roll < 75) {
        noteReaction(QStringLiteral("react: add children"));
        reactAddChildren(chance(70) ? item : root());
    } else if (roll < 83) {
        noteReaction(QStringLiteral("react: replace the root"));
        reactReplaceRoot();
    } else if (roll < 91) {
        noteReaction(QStringLiteral("react: replace the view model"));
        m_replacedInCall = true;
        replaceViewModel(chance(80) ? makeRandomViewModel() : nullptr);
    } else {
        noteReaction(QStringLiteral("react: remove a cloned item"));
        reactRemoveClonedItem();
    }
}

// Removes \a item from its parent, if it has one.
void RandomRun::reactRemove(const std::shared_ptr<DisplayItem>& item)
{
    DisplayItem* parent = item ? item->parentItem() : nullptr;
    if (!parent)
        return;
    const auto parentRef = parent->shared_from_this();
    m_keptAlive.push_back(item);
    parent->removeChild(item, chance(50));
    expectRemoved(parent, {item});
}

// All of them in one event.
void RandomRun::reactRemoveChildren(const std::shared_ptr<DisplayItem>& item)
{
    const auto& children = item->children();
    if (children.empty())
        return;
    m_keptAlive.insert(m_keptAlive.end(), children.begin(), children.end());
    const DisplayItemSet removed(children.begin(), children.end());
    item->removeChildren(removed, chance(50));
    expectRemoved(item.get(), removed);
}

void RandomRun::reactAddChildren(const std::shared_ptr<DisplayItem>& item)
{
    if (!item)
        return;
    std::vector<std::shared_ptr<DisplayItem>> children;
    for (int i = 0, n = 1 + pick(3); i < n; ++i)
        children.push_back(makeRandomItem(pick(2)));
    if (chance(50)) {
        item->appendChildren(children);
        expectAdded(item.get(), DisplayItemList(children.begin(), children.end()));
        return;
    }
    // One event per child; rows are appended whatever the position.
    for (const auto& child : children) {
        item->insertChild(std::size_t(pick(int(item->childCount()) + 1)), child);
        expectAdded(item.get(), {child});
    }
}

// The host swaps the display model's tree without an event: the rows stay
// with the old tree's items, which go once nothing holds them.
void RandomRun::reactReplaceRoot()
{
    if (!m_viewModel)
        return;
    SceneDisplayModel& model = m_viewModel->displayModel();
    m_keptAlive.push_back(model.rootDisplayItem());
    auto newRoot = std::make_shared<DisplayItem>("Root");
    for (int i = 0, n = 1 + pick(3); i < n; ++i)
        newRoot->appendChild(makeRandomItem(2));
    model.setRootDisplayItem(chance(85) ? newRoot : nullptr);
    dropDetached();
}

void RandomRun::reactRemoveClonedItem()
{
    const auto clone = std::dynamic_pointer_cast<SceneViewModel>(Access::clonedViewModel(*m_dialog));
    if (!clone)
        return;
    const auto items = hostPreOrder(clone->displayModel().rootDisplayItem());
    if (items.size() < 2)
        return;
    reactRemove(items[std::size_t(1 + pick(int(items.size()) - 1))]);
}

void RandomRun::offer2DReaction(const std::shared_ptr<DisplayItem2D>& item)
{
    if (!m_reactionsOn || m_reactor2D || !item || !chance(30))
        return;
    m_reactor2D = std::make_unique<Reacting2DObserver>([this]() { react2D(); });
    m_reactor2D->observe(item);
    m_reactor2DItem = item;
    m_reactor2DFired = false;
}

void RandomRun::react2D()
{
    if (!m_inDialogCall || m_reactor2DFired)
        return;
    m_reactor2DFired = true;
    m_reacted = true;
    const auto item = m_reactor2DItem.lock();
    if (!item)
        return;
    const auto removeFromParent = [this](const std::shared_ptr<DisplayItem2D>& child) {
        DisplayItem2D* parent = child ? child->getParent() : nullptr;
        if (!parent)
            return;
        const auto keep = parent->shared_from_this();
        m_keptAlive.push_back(child);
        parent->removeChild(child);
        expect2DRemoved(parent, child);
    };
    const int roll = pick(4);
    if (roll == 0) {
        noteReaction(QStringLiteral("react2D: remove the item"));
        removeFromParent(item);
    } else if (roll == 1) {
        noteReaction(QStringLiteral("react2D: remove the parent"));
        removeFromParent(item->getParent() ? item->getParent()->shared_from_this() : nullptr);
    } else {
        noteReaction(QStringLiteral("react2D: add a child"));
        auto child = std::make_shared<DisplayItem2D>("reaction " + freshName());
        if (chance(40))
            child->appendChild(std::make_shared<DisplayItem2D>("sub " + freshName()));
        item->appendChild(child);
        expect2DAdded(item.get(), child);
    }
}

void RandomRun::disarm2DReaction()
{
    m_reactor2D.reset();
    m_reactor2DItem.reset();
    m_reactor2DFired = false;
}

// ------------------------------------------------------------------ user actions

QString RandomRun::userDoubleClick()
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    if (rows.isEmpty())
        return QString();
    QTreeWidgetItem* target = rows.at(pick(rows.size()));
    note(QStringLiteral("doubleClick %1").arg(target->text(0)));

    // The first click makes the row current; the double click acts on the current row.
    tree->scrollToItem(target);
    const QPoint pos = tree->visualItemRect(target).center();
    // Expansion mirrored back from the clone can fold the row away again.
    if (tree->itemAt(pos) != target) {
        ++m_actionCounts[QStringLiteral("(row off screen)")];
        return QString();
    }
    bool byKeyboard = false;
    QStringList changes;
    const auto spy = QObject::connect(tree, &QTreeWidget::currentItemChanged, [&](QTreeWidgetItem* c) {
        changes << (c ? c->text(0) : QStringLiteral("none"));
    });
    QTest::mousePress(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QObject::disconnect(spy);
    if (g_trace)
        qInfo("  current rows: %s", qPrintable(changes.join(QStringLiteral(", "))));
    QTreeWidgetItem* acting = tree->currentItem();
    if (acting != target && !currentMayBounce() && changes.isEmpty()) {
        // A row nested deeper than the tree is wide has its text under the branch
        // lines, where a press only opens or closes branches; the user picks the
        // row with the keyboard instead.
        ++m_actionCounts[QStringLiteral("(row chosen by keyboard)")];
        tree->setCurrentItem(target);
        acting = tree->currentItem();
        byKeyboard = true;
    }
    if (acting != target && !currentMayBounce())
        return QStringLiteral("the click did not make the row current (current %1)")
            .arg(acting ? acting->text(0) : QStringLiteral("none"));

    // Every item's visibility before; the double click acts on the row that is
    // current when the view reports it, which a change mirrored from the clone
    // (or rows that moved under the pointer meanwhile) may have made another one.
    std::vector<std::pair<std::shared_ptr<DisplayItemInterface>, bool>> before;
    std::vector<ExpectedRow*> goneBefore;
    for (QTreeWidgetItem* r : allRows(tree)) {
        if (auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(r)) {
            if (auto item = itemRow->getDisplayItem())
                before.emplace_back(item, item->isVisible());
            else if (ExpectedRow* e = expectedFor(m_expected, r))
                goneBefore.push_back(e);
        }
    }
    if (const auto item = rowItem(target)) {
        std::vector<std::shared_ptr<DisplayItem>> near{item};
        if (DisplayItem* parent = item->parentItem())
            near.push_back(parent->shared_from_this());
        for (int i = 0; i < target->childCount(); ++i) {
            if (auto child = rowItem(target->child(i)))
                near.push_back(child);
        }
        offerReaction(near);
    }
    const int updates = m_viewModel ? m_viewModel->displayModel().visibilityUpdateCount() : 0;
    bool reported = false;
    QTreeWidgetItem* actedOn = nullptr;
    const auto doubleClickSpy = QObject::connect(tree, &QTreeWidget::itemDoubleClicked, [&](QTreeWidgetItem*, int) {
        reported = true;
        actedOn = tree->currentItem();
    });
    {
        const DialogCall call(m_inDialogCall);
        if (byKeyboard) {
            // What the view reports for a double click there.
            emit tree->itemDoubleClicked(target, 0);
        } else {
            QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
            QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
        }
    }
    QObject::disconnect(doubleClickSpy);
    if (!reported)
        ++m_actionCounts[QStringLiteral("(double click not reported)")];
    if (m_reacted) {
        // The host changed the model inside the toggle: which rows the dialog
        // still toggled after that is its own business, as long as it stopped
        // safely. A gone row it toggled shows the gone icon, one it did not
        // keeps its icon; its row may itself have gone with the reaction.
        for (ExpectedRow* e : goneBefore) {
            if (contains(m_expected, e))
                e->anyIcon = true;
        }
        return QString();
    }

    // What must have flipped: the row's item, then the item of each duplicate child row.
    std::vector<const DisplayItemInterface*> flips;
    std::vector<DisplayItemTreeWidgetItem*> goneRows;
    if (auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(actedOn)) {
        flips.push_back(row->getDisplayItem().get());
        if (!row->getDisplayItem())
            goneRows.push_back(row);
        for (int i = 0; i < row->childCount(); ++i) {
            auto* child = dynamic_cast<DisplayItemTreeWidgetItem*>(row->child(i));
            if (child && child->isDuplicate()) {
                flips.push_back(child->getDisplayItem().get());
                if (!child->getDisplayItem())
                    goneRows.push_back(child);
            }
        }
    }
    for (const auto& [item, visible] : before) {
        const auto times = std::count(flips.begin(), flips.end(), item.get());
        const bool expected = times % 2 ? !visible : visible;
        if (item->isVisible() != expected)
            return QStringLiteral("double click on %1: %2 visible %3")
                .arg(actedOn ? actedOn->text(0) : QStringLiteral("no row"),
                     QString::fromStdString(item->getDisplayName()))
                .arg(item->isVisible());
    }
    // Toggling a row whose item has gone only refreshes its icon.
    for (DisplayItemTreeWidgetItem* gone : goneRows) {
        if (ExpectedRow* e = expectedFor(m_expected, gone))
            e->lastIcon = QStringLiteral("visible_different");
    }
    // Display item rows and edit-model rows (type 1000 both) toggle; other rows do not.
    const bool toggles = actedOn && actedOn->type() == QTreeWidgetItem::UserType;
    if (m_viewModel && m_viewModel->displayModel().visibilityUpdateCount() != updates + (toggles ? 1 : 0))
        return QStringLiteral("double click: %1 visibility updates")
            .arg(m_viewModel->displayModel().visibilityUpdateCount() - updates);
    return QString();
}

QString RandomRun::userContextMenu(bool removeWhileOpen)
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QList<QTreeWidgetItem*> rows = allRows(tree);
    if (rows.isEmpty())
        return QString();
    QTreeWidgetItem* target = rows.at(pick(rows.size()));
    auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(target);
    tree->scrollToItem(target);
    const QPoint pos = tree->visualItemRect(target).center();
    if (tree->itemAt(pos) != target)
        return QString();

    QStringList expectedEntries;
    std::shared_ptr<DisplayItemInterface> item = row ? row->getDisplayItem() : nullptr;
    if (row) {
        if (item && item->isSelectionAllowed())
            expectedEntries << SelectEntry;
        if (item && item->getParent())
            expectedEntries << DeleteEntry;
        expectedEntries << InvisibleEntry << VisibleEntry;
        expectedEntries << KitEntries;
    }
    QString entry = expectedEntries.isEmpty() ? QString() : expectedEntries.at(pick(expectedEntries.size()));
    if (removeWhileOpen && entry == DeleteEntry)
        entry = InvisibleEntry;
    note(QStringLiteral("contextMenu%1 %2 on %3").arg(removeWhileOpen ? "+remove" : "", entry, target->text(0)));

    // What the entry acts on, taken before the menu opens.
    DisplayItemList subtree;
    if (item && (entry == InvisibleEntry || entry == VisibleEntry)) {
        if (entry == InvisibleEntry)
            item->collectSubtree(subtree);
        else
            item->collectSubtreeToShow(subtree);
    }
    const bool selectedBefore = item ? item->isSelected() : false;
    SceneDisplayModel* model = m_viewModel ? &m_viewModel->displayModel() : nullptr;
    const int displayUpdates = model ? model->displayUpdateCount(2) : 0;
    const int visibilityUpdates = model ? model->visibilityUpdateCount() : 0;
    DisplayItem* parent = item ? dynamic_cast<DisplayItem*>(item->getParent()) : nullptr;
    const auto parentRef = parent ? parent->shared_from_this() : nullptr;
    // Rows may show items that the host has taken out of the model with an ancestor.
    const bool inModel = item && model && item->getDisplayModel() == model;

    if (const auto held = std::dynamic_pointer_cast<DisplayItem>(item)) {
        std::vector<std::shared_ptr<DisplayItem>> near{held};
        if (parentRef)
            near.push_back(parentRef);
        if (entry == InvisibleEntry || entry == VisibleEntry) {
            for (const auto& i : subtree) {
                if (auto d = std::dynamic_pointer_cast<DisplayItem>(i))
                    near.push_back(d);
            }
        }
        offerReaction(near);
    }

    bool rowGone = false;
    std::vector<std::pair<DisplayItemInterface*, std::pair<bool, bool>>> statesAfterRemoval;
    const auto whileOpen = [&]() {
        if (!removeWhileOpen)
            return;
        // The host's own change, not one inside a dialog's call.
        const DialogCall outside(m_inDialogCall, false);
        // The host removes the row's item (or, for the root, empties the model) while the menu is open.
        if (parent) {
            parent->removeChild(item, false);
            expectRemoved(parent, {item});
            // Kept alive past the check, so that its rows' icons can still be told.
            if (auto held = std::dynamic_pointer_cast<DisplayItem>(item))
                m_detached.push_back(held);
        }
        rowGone = !allRows(tree).contains(target);
        for (const auto& i : hostPreOrder(std::dynamic_pointer_cast<DisplayItem>(item)))
            statesAfterRemoval.emplace_back(i.get(), std::make_pair(i->isVisible(), i->isSelected()));
    };
    Test::ContextMenuVisit visit;
    {
        const DialogCall call(m_inDialogCall);
        visit = Test::rightClick(tree, pos, entry, whileOpen);
    }
    if (!visit.accepted)
        return QStringLiteral("context menu event not accepted");
    if (row && !visit.opened)
        return QStringLiteral("no menu over a display item row");
    if (row && visit.entries != expectedEntries)
        return QStringLiteral("menu entries %1, expected %2")
            .arg(visit.entries.join(QStringLiteral(", ")), expectedEntries.join(QStringLiteral(", ")));
    if (!entry.isEmpty() && !visit.triggered)
        return QStringLiteral("entry %1 not triggered").arg(entry);
    if (m_reacted) {
        // The entry's own change came first (no host call before it raises
        // an event); what the dialog did after the reaction is its business.
        // A removal reached the rows that saw its event, unless the reaction
        // rebuilt the tree from the model that no longer held the item.
        if (entry == DeleteEntry && !m_replacedInCall && parent)
            expectRemoved(parent, {item});
        return QString();
    }

    if (removeWhileOpen && rowGone) {
        // The row went while the menu was open: its entry must do nothing.
        for (const auto& [i, state] : statesAfterRemoval) {
            if (std::make_pair(i->isVisible(), i->isSelected()) != state)
                return QStringLiteral("entry %1 acted on a row that had gone").arg(entry);
        }
        if (model && model->visibilityUpdateCount() != visibilityUpdates)
            return QStringLiteral("entry %1 on a gone row asked for a visibility update").arg(entry);
        return QString();
    }
    if (!item)
        return QString();
    if (entry == SelectEntry) {
        const bool expected = item->isSelectable() ? !selectedBefore : selectedBefore;
        if (item->isSelected() != expected)
            return QStringLiteral("select entry: selected %1").arg(item->isSelected());
        if (!removeWhileOpen && inModel && model->displayUpdateCount(2) != displayUpdates + 1)
            return QStringLiteral("select entry: %1 display updates")
                .arg(model->displayUpdateCount(2) - displayUpdates);
    } else if (entry == DeleteEntry) {
        expectRemoved(parent, {item});
        if (item->getParent())
            return QStringLiteral("delete entry left the item in place");
        if (model && model->displayUpdateCount(2) != displayUpdates + (inModel ? 1 : 0))
            return QStringLiteral("delete entry: %1 display updates")
                .arg(model->displayUpdateCount(2) - displayUpdates);
    } else if (entry == InvisibleEntry || entry == VisibleEntry) {
        for (const auto& i : subtree) {
            if (i->isVisible() != (entry == VisibleEntry))
                return QStringLiteral("%1: %2 visible %3")
                    .arg(entry, QString::fromStdString(i->getDisplayName()))
                    .arg(i->isVisible());
        }
        if (!removeWhileOpen && inModel && model->visibilityUpdateCount() != visibilityUpdates + 1)
            return QStringLiteral("%1: %2 visibility updates")
                .arg(entry)
                .arg(model->visibilityUpdateCount() - visibilityUpdates);
    }
    return QString();
}

QString RandomRun::userClonedContextMenu()
{
    DisplayItemTreeWidget* tree = Access::clonedTree(*m_dialog);
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    if (rows.isEmpty())
        return QString();
    QTreeWidgetItem* target = rows.at(pick(rows.size()));
    tree->scrollToItem(target);
    const QString entry = KitEntries.at(pick(KitEntries.size()));
    note(QStringLiteral("clonedContextMenu %1 on %2").arg(entry, target->text(0)));
    const QPoint pos = tree->visualItemRect(target).center();
    // A narrow tree may not show the row at all; then there is nothing to click.
    if (tree->itemAt(pos) != target)
        return QString();
    const auto visit = Test::rightClick(tree, pos, entry);
    if (!visit.opened || visit.entries != KitEntries)
        return QStringLiteral("cloned tree menu entries %1").arg(visit.entries.join(QStringLiteral(", ")));
    return QString();
}

QString RandomRun::userFindNext()
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    static const char* const values[] = {"DisplayItem", "ShellItem", "0x", "DC04", "red", "Geometry", "n1", "zzz", "1"};
    const QString value = QString::fromLatin1(values[pick(9)]);
    const int criterion = pick(3);
    m_dialog->m_searchValueLE->setText(value);
    m_dialog->m_searchTypeCB->setCurrentIndex(criterion);
    note(QStringLiteral("findNext %1 criterion %2").arg(value).arg(criterion));

    const QString fragment = criterion == 1 ? QStringLiteral("pointer")
        : criterion == 2                    ? QStringLiteral("display item type")
                                            : QString();
    const auto matches = [&](QTreeWidgetItem* r) {
        auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(r);
        const auto item = row ? row->getDisplayItem() : nullptr;
        if (!item)
            return false;
        PropertyList business;
        PropertyList display;
        item->getProperties(business, display);
        for (const PropertyList* list : {&business, &display}) {
            for (const auto& [name, v] : *list) {
                if (!fragment.isEmpty() && !QString::fromStdString(name).contains(fragment, Qt::CaseInsensitive))
                    continue;
                if (QString::fromStdString(v).contains(value, Qt::CaseInsensitive))
                    return true;
            }
        }
        return false;
    };
    QTreeWidgetItem* start = tree->currentItem();
    QTreeWidgetItem* expected = start;
    bool pending = start != nullptr;
    for (QTreeWidgetItem* r : allRows(tree)) {
        if (pending) {
            if (r == start)
                pending = false;
            continue;
        }
        if (matches(r)) {
            expected = r;
            break;
        }
    }
    QStringList currents;
    QList<QTreeWidgetItem*> madeCurrent;
    const auto log = QObject::connect(tree, &QTreeWidget::currentItemChanged, [&](QTreeWidgetItem* c) {
        currents << (c ? c->text(0) : QStringLiteral("none"));
        madeCurrent << c;
    });
    QStringList clonedCurrents;
    QMetaObject::Connection clonedLog;
    if (DisplayItemTreeWidget* cloned = Access::clonedTree(*m_dialog))
        clonedLog = QObject::connect(cloned, &QTreeWidget::currentItemChanged, [&](QTreeWidgetItem* c) {
            clonedCurrents << (c ? c->text(0) : QStringLiteral("none"));
        });
    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
    QObject::disconnect(log);
    QObject::disconnect(clonedLog);
    if (g_trace)
        qInfo("  current rows: %s; cloned: %s", qPrintable(currents.join(QStringLiteral(", "))),
              qPrintable(clonedCurrents.join(QStringLiteral(", "))));
    if (currentMayBounce()) {
        // The find's choice may come back changed from the clone; it must have been made.
        if (expected != start && !madeCurrent.contains(expected))
            return QStringLiteral("find next never made the expected row current");
        return QString();
    }
    if (tree->currentItem() != expected)
        return QStringLiteral("find next made %1 (row %2) current, expected %3 (row %4), start %5")
                   .arg(tree->currentItem() ? tree->currentItem()->text(0) : QStringLiteral("none"))
                   .arg(allRows(tree).indexOf(tree->currentItem()))
                   .arg(expected ? expected->text(0) : QStringLiteral("none"))
                   .arg(allRows(tree).indexOf(expected))
                   .arg(allRows(tree).indexOf(start))
            + [&] {
                  QStringList lines;
                  if (auto* r = dynamic_cast<DisplayItemTreeWidgetItem*>(expected)) {
                      PropertyList b, d;
                      if (auto i = r->getDisplayItem())
                          i->getProperties(b, d);
                      lines << propertyLines(b) << propertyLines(d);
                  }
                  return QStringLiteral(" (expected row's properties: %1; search text \"%2\" criterion %3)")
                      .arg(lines.join(QStringLiteral("; ")), m_dialog->m_searchValueLE->text())
                      .arg(m_dialog->m_searchTypeCB->currentData().toInt());
              }();
    return QString();
}

QString RandomRun::userCount()
{
    note(QStringLiteral("count"));
    // A dialog without a view model is disabled: the click does nothing.
    const QString expected
        = m_dialog->isEnabled() ? QString::number(hostPreOrder(root()).size()) : m_dialog->m_displayItemCountLE->text();
    QTest::mouseClick(m_dialog->m_displayItemCountPB, Qt::LeftButton);
    if (m_dialog->m_displayItemCountLE->text() != expected)
        return QStringLiteral("count %1, expected %2").arg(m_dialog->m_displayItemCountLE->text(), expected);
    return QString();
}

QString RandomRun::userToggleClone()
{
    note(QStringLiteral("clone %1").arg(!m_dialog->m_useCloneCheckBox->isChecked()));
    // Switching off deletes the cloned tree and panes.
    unwatch(m_clonedTesters);
    m_dialog->m_useCloneCheckBox->click();
    if (Access::useClone(*m_dialog) != m_dialog->m_useCloneCheckBox->isChecked())
        return QStringLiteral("clone mode does not follow its box");
    // Its own enabled state: the whole dialog is disabled without a view model.
    if (m_dialog->m_showCloneIn3dCheckBox->testAttribute(Qt::WA_ForceDisabled) == Access::useClone(*m_dialog))
        return QStringLiteral("\"Show Clone in 3D View\" enabled %1")
            .arg(!m_dialog->m_showCloneIn3dCheckBox->testAttribute(Qt::WA_ForceDisabled));
    if (Access::useClone(*m_dialog)) {
        m_cloneRebuilds = 0;
        if (m_viewModel)
            ++m_clonesMade;
        if (DisplayItemTreeWidget* cloned = Access::clonedTree(*m_dialog)) {
            watch(cloned, m_clonedTesters);
            watch(Access::clonedBusinessPane(*m_dialog), m_clonedTesters);
            watch(Access::clonedDisplayPane(*m_dialog), m_clonedTesters);
        }
    }
    rebuildExpected(true);
    if (Access::showCloneIn3d(*m_dialog) && m_viewModel) {
        const auto shown = m_presenter.getViewModel();
        const auto wanted = Access::useClone(*m_dialog) ? Access::clonedViewModel(*m_dialog)
                                                        : std::static_pointer_cast<ViewModelInterface>(m_viewModel);
        if (shown != wanted)
            return QStringLiteral("draw area shows the wrong view model after the clone box");
    }
    return QString();
}

QString RandomRun::userCloneCheckBoxes()
{
    if (chance(50)) {
        note(QStringLiteral("showCloneIn3d click"));
        const bool enabled = m_dialog->m_showCloneIn3dCheckBox->isEnabled();
        const bool before = m_dialog->m_showCloneIn3dCheckBox->isChecked();
        m_dialog->m_showCloneIn3dCheckBox->click();
        if (!enabled) {
            if (m_dialog->m_showCloneIn3dCheckBox->isChecked() != before)
                return QStringLiteral("a disabled box changed");
            return QString();
        }
        const auto wanted = Access::useClone(*m_dialog) && m_dialog->m_showCloneIn3dCheckBox->isChecked()
            ? Access::clonedViewModel(*m_dialog)
            : std::static_pointer_cast<ViewModelInterface>(m_viewModel);
        if (m_presenter.getViewModel() != wanted)
            return QStringLiteral("draw area shows the wrong view model");
    } else {
        note(QStringLiteral("compareMode click"));
        m_dialog->m_propertyCompareMode->click();
    }
    return QString();
}

QString RandomRun::userCurrentRow()
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    QTreeWidgetItem* target = rows.isEmpty() || chance(5) ? nullptr : rows.at(pick(rows.size()));
    note(QStringLiteral("current %1").arg(target ? target->text(0) : QStringLiteral("none")));
    if (target && chance(50)
        && (tree->scrollToItem(target), tree->itemAt(tree->visualItemRect(target).center()) == target)) {
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualItemRect(target).center());
    } else {
        tree->setCurrentItem(target);
    }
    if (tree->currentItem() != target && !currentMayBounce())
        return QStringLiteral("the row did not become current");
    if (chance(30) && target) {
        note(QStringLiteral("expand/collapse %1").arg(target->text(0)));
        target->setExpanded(!target->isExpanded());
    }
    return QString();
}

QString RandomRun::userClonedCurrentRow()
{
    DisplayItemTreeWidget* tree = Access::clonedTree(*m_dialog);
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    if (rows.isEmpty())
        return QString();
    QTreeWidgetItem* target = rows.at(pick(rows.size()));
    note(QStringLiteral("clonedCurrent %1").arg(target->text(0)));
    tree->setCurrentItem(target);
    // The change is mirrored into the original tree, and may come back changed
    // (the guard is cleared before the walk along the path is over).
    if (tree->currentItem() != target)
        ++m_actionCounts[QStringLiteral("(cloned row change came back)")];
    return QString();
}

QString RandomRun::userClonedDoubleClick()
{
    DisplayItemTreeWidget* tree = Access::clonedTree(*m_dialog);
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    if (rows.isEmpty())
        return QString();
    QTreeWidgetItem* target = rows.at(pick(rows.size()));
    note(QStringLiteral("clonedDoubleClick %1").arg(target->text(0)));
    doubleClick(tree, target);
    return QString();
}

QString RandomRun::user2DList()
{
    QListWidget* list = m_dialog2D->m_plotListWdg;
    if (chance(40) || list->count() == 0) {
        note(QStringLiteral("2D update list"));
        QTest::mouseClick(m_dialog2D->m_updateListPB, Qt::LeftButton);
        QString problem = checkListing();
        if (!problem.isEmpty())
            return problem;
        m_selectedModel2D = list->count() > 0 ? m_dialog2D->getDisplayModelOfSelectedPlot() : nullptr;
        if (list->count() > 0 && list->currentRow() != 0)
            return QStringLiteral("after a listing row %1 is current").arg(list->currentRow());
        rebuildExpected2D();
        return QString();
    }
    const int row = pick(list->count());
    note(QStringLiteral("2D select row %1").arg(row));
    const int before = list->currentRow();
    QListWidgetItem* entry = list->item(row);
    list->scrollToItem(entry);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualItemRect(entry).center());
    if (list->currentRow() != row)
        return QStringLiteral("2D list row %1 did not become current").arg(row);
    if (before != row) {
        // Which model that row stands for, from its text.
        const QString text = entry->text();
        DisplayModel2D* expected = nullptr;
        for (std::size_t i = 0; i < m_plots.size(); ++i) {
            if (text == QStringLiteral("Plot at (%1, %2)").arg(m_plotPositions[i].x()).arg(m_plotPositions[i].y()))
                expected = Test::Plot2DHost::modelOf(m_plots[i]);
        }
        for (std::size_t i = 0; i < m_labels.size(); ++i) {
            if (text == QStringLiteral("PlotLabel at (%1, %2)").arg(m_labelPoints[i].x()).arg(m_labelPoints[i].y()))
                expected = m_labelModels[i];
        }
        if (m_dialog2D->getDisplayModelOfSelectedPlot() != expected)
            return QStringLiteral("2D row %1 gives another model").arg(text);
        m_selectedModel2D = expected;
        rebuildExpected2D();
    }
    return QString();
}

QString RandomRun::user2DDoubleClick()
{
    QTreeWidget* tree = m_dialog2D->m_displayItemTreeWidget;
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    if (rows.isEmpty() || !m_expected2D)
        return QString();
    const int index = pick(rows.size());
    QTreeWidgetItem* target = rows.at(index);
    std::vector<Expected2DRow*> expectedRows;
    collect2DRows(*m_expected2D, expectedRows);
    const auto item = expectedRows[std::size_t(index)]->item;
    const int before = item->getVisibility();
    const int updates = m_selectedModel2D ? m_selectedModel2D->displayUpdateCount() : 0;
    note(QStringLiteral("2D doubleClick %1").arg(target->text(0)));
    offer2DReaction(item);
    {
        const DialogCall call(m_inDialogCall);
        doubleClick(tree, target);
    }
    // The toggle came first; the rest is checked against the trees.
    if (m_reacted)
        return QString();
    if (tree->currentItem() != target)
        return QStringLiteral("2D double click did not make the row current");
    if (item->getVisibility() != (before == 0 ? 1 : 0))
        return QStringLiteral("2D double click: visibility %1 from %2").arg(item->getVisibility()).arg(before);
    if (m_selectedModel2D && m_selectedModel2D->displayUpdateCount() != updates + 1)
        return QStringLiteral("2D double click: %1 display updates")
            .arg(m_selectedModel2D->displayUpdateCount() - updates);
    return QString();
}

QString RandomRun::user2DCurrentRow()
{
    QTreeWidget* tree = m_dialog2D->m_displayItemTreeWidget;
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    QTreeWidgetItem* target = rows.isEmpty() || chance(10) ? nullptr : rows.at(pick(rows.size()));
    note(QStringLiteral("2D current %1").arg(target ? target->text(0) : QStringLiteral("none")));
    tree->setCurrentItem(target);
    return QString();
}

QString RandomRun::userCloneComparisonDialog()
{
    if (m_cloneDialog) {
        note(QStringLiteral("close clone comparison"));
        unwatch(m_cloneDialogTesters);
        delete m_cloneDialog;
        m_cloneDialog = nullptr;
        return QString();
    }
    // This dialog takes a model with a root for granted; a host that emptied
    // its model is not shown in it.
    if (!m_viewModel || !root())
        return QString();
    note(QStringLiteral("open clone comparison"));
    m_cloneDialog = new DebugCloneDisplayModelDialog(nullptr, m_viewModel);
    ++m_clonesMade;
    watch(m_cloneDialog->m_displayItemTree, m_cloneDialogTesters);
    watch(m_cloneDialog->m_clonedDisplayItemTree, m_cloneDialogTesters);
    m_cloneDialogShape.clear();
    for (QTreeWidget* tree : {static_cast<QTreeWidget*>(m_cloneDialog->m_displayItemTree),
                              static_cast<QTreeWidget*>(m_cloneDialog->m_clonedDisplayItemTree)}) {
        for (QTreeWidgetItemIterator it(tree); *it; ++it)
            m_cloneDialogShape << (*it)->text(0);
        m_cloneDialogShape << QStringLiteral("|");
    }
    // The original side shows the model as it is now, the other side the
    // dialog's own clone, and the report compares the two.
    const QStringList expected = comparisonTexts(root());
    const int separator = m_cloneDialogShape.indexOf(QStringLiteral("|"));
    if (m_cloneDialogShape.mid(0, separator) != expected)
        return QStringLiteral("clone comparison: original tree differs from the model");
    auto* clonedTop = dynamic_cast<DisplayItemTreeWidgetItem*>(m_cloneDialog->m_clonedDisplayItemTree->topLevelItem(0));
    const auto clonedRoot = clonedTop ? clonedTop->getDisplayItem() : nullptr;
    if (!clonedRoot)
        return QStringLiteral("clone comparison: no clone shown");
    if (m_cloneDialogShape.mid(separator + 1, m_cloneDialogShape.size() - separator - 2) != comparisonTexts(clonedRoot))
        return QStringLiteral("clone comparison: cloned tree differs from the clone");
    const QStringList report
        = m_cloneDialog->m_outputTextField->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QStringList expectedReport = comparisonReport(root(), clonedRoot);
    if (report != expectedReport)
        return QStringLiteral("clone comparison: report \"%1\", expected \"%2\"")
            .arg(report.join(QStringLiteral("; ")), expectedReport.join(QStringLiteral("; ")));
    return QString();
}

// ------------------------------------------------------------------ the loop

QString RandomRun::step(int index)
{
    m_step = index;
    m_reacted = false;
    m_replacedInCall = false;
    m_keptAlive.clear();
    // A reaction armed on an item no action has reached for a while makes way for another.
    if (m_reactor && (m_reactorItem.expired() || m_step - m_reactorArmedAt > 40))
        disarmReaction();
    if (m_reactionsOn && !m_reactor && chance(5))
        armReaction(pickFrom(modelItems()), chance(30));
    if (m_brokenTreesOn && chance(2))
        return hostBreakItem();
    // Weights: host mutations and user actions about evenly.
    const int roll = pick(100);
    if (roll < 8)
        return hostAddSubtree();
    if (roll < 14)
        return hostRemove();
    if (roll < 16)
        return hostReattach();
    if (roll < 22)
        return hostToggleVisible();
    if (roll < 27)
        return hostChangeProperties();
    if (roll < 30)
        return hostToggleSelection();
    if (roll < 33)
        return hostDeleteCurrentRowItem();
    if (roll < 35)
        return hostReplaceViewModel();
    if (roll < 37)
        return hostGeometryList();
    if (roll < 39)
        return hostCloneDefects();
    if (roll < 40)
        return hostEditor();
    if (roll < 46)
        return host2D();
    if (roll < 53)
        return userDoubleClick();
    if (roll < 61)
        return userContextMenu(false);
    if (roll < 64)
        return userContextMenu(true);
    if (roll < 66)
        return userClonedContextMenu();
    if (roll < 70)
        return userFindNext();
    if (roll < 72)
        return userCount();
    if (roll < 76)
        return userToggleClone();
    if (roll < 78)
        return userCloneCheckBoxes();
    if (roll < 84)
        return userCurrentRow();
    if (roll < 87)
        return userClonedCurrentRow();
    if (roll < 89)
        return userClonedDoubleClick();
    if (roll < 93)
        return user2DList();
    if (roll < 96)
        return user2DDoubleClick();
    if (roll < 99)
        return user2DCurrentRow();
    return userCloneComparisonDialog();
}

QString RandomRun::run()
{
    g_modelTestFailures.clear();
    setUp();
    QString problem = checkAll();
    if (!problem.isEmpty())
        return QStringLiteral("seed %1, after setup: %2").arg(m_seed).arg(problem);
    for (int i = 1; i <= m_steps; ++i) {
        m_lastAction = QStringLiteral("(nothing)");
        problem = step(i);
        if (problem.isEmpty())
            problem = checkAll();
        // A reaction fires once; the 2D one is offered for one double click.
        if (m_reactorFired)
            disarmReaction();
        disarm2DReaction();
        if (!problem.isEmpty())
            return QStringLiteral("seed %1, step %2 (%3): %4").arg(m_seed).arg(i).arg(m_lastAction, problem);
    }
    // Everything goes: dialogs first, while the models they watch still exist, then the models.
    tearDown();
    m_viewModel.reset();
    m_spareViewModel.reset();
    m_detached.clear();
    if (!g_modelTestFailures.isEmpty())
        return QStringLiteral("seed %1, teardown: model tester: %2")
            .arg(m_seed)
            .arg(g_modelTestFailures.join(QStringLiteral(" | ")));
    return QString();
}

// ====================================================================== test class

class tst_RandomModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void randomRun_data();
    void randomRun();
};

// A model that breaks the rules, to see that the testers' reports are caught.
class NegativeRowCountModel : public QAbstractListModel
{
public:
    int rowCount(const QModelIndex& = QModelIndex()) const override { return -1; }
    QVariant data(const QModelIndex&, int) const override { return QVariant(); }
};

void tst_RandomModel::initTestCase()
{
    g_trace = traceSteps();
    g_previousHandler = qInstallMessageHandler(recordingHandler);
    {
        g_quiet = true;
        NegativeRowCountModel broken;
        QAbstractItemModelTester tester(&broken, QAbstractItemModelTester::FailureReportingMode::Warning);
        g_quiet = false;
    }
    QVERIFY2(!g_modelTestFailures.isEmpty(), "a model tester's report was not seen");
    g_modelTestFailures.clear();
    QStringList seeds;
    for (quint64 seed : seedsFromEnvironment())
        seeds << QString::number(seed);
    qInfo("random model test: %d steps per seed, seeds %s (BRENNVIK_RANDOM_STEPS, BRENNVIK_RANDOM_SEEDS); "
          "host reactions %s (BRENNVIK_RANDOM_REACTIONS), broken trees %s (BRENNVIK_RANDOM_BROKEN)",
          stepsFromEnvironment(), qPrintable(seeds.join(QLatin1Char(','))), reactionsFromEnvironment() ? "on" : "off",
          brokenTreesFromEnvironment() ? "on" : "off");
}

void tst_RandomModel::cleanupTestCase()
{
    qInstallMessageHandler(g_previousHandler);
}

void tst_RandomModel::randomRun_data()
{
    QTest::addColumn<quint64>("seed");
    for (quint64 seed : seedsFromEnvironment())
        QTest::newRow(qPrintable(QStringLiteral("seed %1").arg(seed))) << seed;
}

void tst_RandomModel::randomRun()
{
    QFETCH(quint64, seed);
    const int steps = stepsFromEnvironment();
    QElapsedTimer timer;
    timer.start();
    g_otherWarnings.clear();
    QString problem;
    QMap<QString, int> counts;
    int clones = 0;
    {
        RandomRun run(seed, steps);
        problem = run.run();
        counts = run.actionCounts();
        clones = run.clonesMade();
    }
    if (!problem.isEmpty()) {
        qWarning("random model test failed: %s (rerun: BRENNVIK_RANDOM_SEEDS=%llu BRENNVIK_RANDOM_STEPS=%d)",
                 qPrintable(problem), seed, steps);
        QFAIL(qPrintable(problem));
    }
    QStringList summary;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        summary << QStringLiteral("%1 %2").arg(it.key()).arg(it.value());
    qInfo("seed %llu: %d steps in %lld ms, %d clones, %d other warnings; actions: %s", seed, steps, timer.elapsed(),
          clones, int(g_otherWarnings.size()), qPrintable(summary.join(QStringLiteral(", "))));
    QStringList distinct = g_otherWarnings;
    distinct.removeDuplicates();
    for (const QString& warning : distinct.mid(0, 5))
        qInfo("  warning seen: %s", qPrintable(warning));
    // Every kind of step ran in a long enough run.
    if (steps >= 1000)
        QVERIFY2(counts.size() >= 20, qPrintable(summary.join(QStringLiteral(", "))));
}

QTEST_MAIN(tst_RandomModel)
#include "tst_randommodel.moc"
