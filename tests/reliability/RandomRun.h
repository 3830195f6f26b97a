#pragma once

// One seeded run of the random model test: a host that changes its model and
// reacts inside the dialogs' own calls, a user working the dialogs' widgets,
// and after every step a comparison of each tree with its expected tree.

#include "BrokenItem.h"
#include "Plot2DHost.h"
#include "RandomModelChecks.h"
#include "RandomModelExpected.h"
#include "RandomModelMessages.h"
#include "RecordingObserver.h"

#include <hostcontract/DisplayItem2DObserver.h>

#include <referencehost/model/SceneDrawAreaPresenter.h>

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

namespace Brennvik {

class DebugCloneDisplayModelDialog;
class DisplayItem;
class DisplayItemTreeWidget;
class DisplayModel2DDialog;
class DisplayModelDialog;
class SceneViewModel;
class ViewModelInterface;

namespace Test {

struct MenuOutcome;
struct MenuTarget;

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
    RandomRun(quint64 seed, int steps, bool reactionsOn, bool brokenTreesOn)
        : m_seed(seed)
        , m_steps(steps)
        , m_rng(seed)
        , m_reactionsOn(reactionsOn)
        , m_brokenTreesOn(brokenTreesOn)
    {
    }
    ~RandomRun() { tearDown(); }
    RandomRun(const RandomRun&) = delete;
    RandomRun& operator=(const RandomRun&) = delete;

    /// Empty when every step passed; otherwise what went wrong, with seed and step.
    QString run();
    int clonesMade() const { return m_clonesMade; }
    QMap<QString, int> actionCounts() const { return m_actionCounts; }

private:
    using Step = QString (RandomRun::*)();

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
    void setUpDialog();
    void setUp2D();
    void addPlots();
    void addLabels();
    void tearDown();
    std::shared_ptr<SceneViewModel> makeRandomViewModel();
    std::shared_ptr<DisplayItem> makeRandomItem(int depth);
    std::vector<BrokenItem::Flaw> randomFlaws();
    std::string freshName();

    // the model
    std::shared_ptr<DisplayItem> root() const;
    std::vector<std::shared_ptr<DisplayItem>> modelItems() const;

    // the dialog's clone-mode members, which no widget lookup reaches
    bool cloneMode() const;
    bool showCloneIn3d() const;
    DisplayItemTreeWidget* clonedTree() const;
    std::shared_ptr<ViewModelInterface> clonedViewModel() const;
    QTreeWidget* clonedBusinessPane() const;
    QTreeWidget* clonedDisplayPane() const;

    // expected trees
    void rebuildExpected(bool cloneOnly);
    void expectAdded(const DisplayItemInterface* parent, const DisplayItemList& items);
    void expectRemoved(const DisplayItemInterface* parent, const DisplayItemSet& items);
    void rebuildExpected2D();
    void expect2DAdded(const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child);
    void expect2DRemoved(const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child);

    // checks
    QString checkAll();
    QString checkPanes();
    QString checkCloneDialog();

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
    QString hostBreakItem();
    QString userDoubleClick();
    QString userMenuEntry() { return userContextMenu(false); }
    QString userMenuEntryOnRemovedRow() { return userContextMenu(true); }
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

    // parts of the double click
    struct VisibilityBefore
    {
        std::vector<std::pair<std::shared_ptr<DisplayItemInterface>, bool>> items;
        std::vector<ExpectedRow*> goneRows;
    };
    QString pressToMakeCurrent(QTreeWidget* tree, QTreeWidgetItem* target, const QPoint& pos, bool& byKeyboard);
    VisibilityBefore visibilityBefore(QTreeWidget* tree);
    void offerReactionAround(QTreeWidgetItem* target);
    QTreeWidgetItem* doubleClickCurrent(QTreeWidget* tree, QTreeWidgetItem* target, const QPoint& pos, bool byKeyboard);
    QString checkToggled(QTreeWidgetItem* actedOn, const VisibilityBefore& before, int updates);

    // parts of the context menu
    void offerMenuReaction(const MenuTarget& target, const QString& entry);
    void removeWhileMenuOpen(QTreeWidget* tree, const MenuTarget& target, MenuOutcome& outcome);
    QString checkMenuOnGoneRow(const MenuTarget& target, const QString& entry, const MenuOutcome& outcome);
    QString checkMenuEntry(const MenuTarget& target, const QString& entry, bool removeWhileOpen);

    // parts of "Find next"
    QTreeWidgetItem* expectedFindResult(QTreeWidget* tree, const QString& value, int criterion);
    QString findMismatch(QTreeWidget* tree, QTreeWidgetItem* expected, QTreeWidgetItem* start);

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
    QList<QTreeWidgetItem*> allRows(QTreeWidget* tree) const;
    QTreeWidgetItem* pickRow(QTreeWidget* tree);
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
    bool currentMayBounce() const { return cloneMode(); }
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

    std::unique_ptr<Plot2DHost> m_plotHost;
    PlotScene m_scene;
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
    std::unique_ptr<RecordingObserver> m_reactor;
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

} // namespace Test
} // namespace Brennvik
