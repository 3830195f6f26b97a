#include "RandomRun.h"

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <hostcontract/DisplayModel2D.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include "Plot2DHost.h"

#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace Brennvik::Test {

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

std::shared_ptr<DisplayItem> RandomRun::root() const
{
    return m_viewModel ? m_viewModel->displayModel().rootDisplayItem() : nullptr;
}

std::vector<std::shared_ptr<DisplayItem>> RandomRun::modelItems() const
{
    return hostPreOrder(root());
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
    m_scene.labels.clear();
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
    if (!cloneOnly)
        buildExpectedTree(m_expected, rootItem, m_viewModel->editorDisplayModel());
    if (!cloneMode())
        return;
    const auto clone = clonedViewModel();
    if (!clone || !clone->getDisplayModel())
        return;
    const auto clonedRoot = clone->getDisplayModel()->getRootDisplayItem();
    if (!clonedRoot)
        return;
    buildExpectedClone(m_expected, m_expectedCloned, clonedRoot);
}

void RandomRun::expectAdded(const DisplayItemInterface* parent, const DisplayItemList& items)
{
    Test::expectAdded(m_expected, m_expectedCloned, parent, items);
}

void RandomRun::expectRemoved(const DisplayItemInterface* parent, const DisplayItemSet& items)
{
    Test::expectRemoved(m_expected, m_expectedCloned, parent, items);
}

void RandomRun::rebuildExpected2D()
{
    m_expected2D = buildExpected2D(m_selectedModel2D);
}

void RandomRun::expect2DAdded(const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child)
{
    Test::expect2DAdded(m_expected2D.get(), parent, child);
}

void RandomRun::expect2DRemoved(const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child)
{
    Test::expect2DRemoved(m_expected2D.get(), parent, child);
}

// ------------------------------------------------------------------ checks

QString RandomRun::checkPanes()
{
    // A change that came back from the clone is printed before the change that
    // caused it, which is printed last: the panes may show the row the user chose.
    if (currentMayBounce())
        m_panesUnreliable = true;
    if (m_panesUnreliable)
        return QString();
    return checkPropertyPanes(*m_dialog);
}

// Its rows have no dialog: the trees stay as built whatever the model does.
QString RandomRun::checkCloneDialog()
{
    if (m_cloneDialog && cloneDialogShape(*m_cloneDialog) != m_cloneDialogShape)
        return QStringLiteral("clone comparison trees changed");
    return QString();
}

QString RandomRun::checkAll()
{
    QString problem = checkTree(m_dialog->m_displayItemTreeWidget, m_expected, QStringLiteral("tree"));
    if (!problem.isEmpty())
        return problem;
    DisplayItemTreeWidget* cloned = clonedTree();
    if (cloneMode() != (cloned != nullptr))
        return QStringLiteral("cloned tree exists: %1 in clone mode %2").arg(cloned != nullptr).arg(cloneMode());
    if (cloned) {
        problem = checkTree(cloned, m_expectedCloned, QStringLiteral("cloned tree"));
        if (!problem.isEmpty())
            return problem;
    }
    problem = checkPanes();
    if (!problem.isEmpty())
        return problem;
    problem = check2DTree(*m_dialog2D, m_expected2D.get());
    if (!problem.isEmpty())
        return problem;
    problem = checkCloneDialog();
    if (!problem.isEmpty())
        return problem;
    if (!g_modelTestFailures.isEmpty())
        return QStringLiteral("model tester: ") + g_modelTestFailures.join(QStringLiteral(" | "));
    refreshLastIcons(m_expected, m_expectedCloned);
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

// One of \a tree's rows at random; null when it has none.
QTreeWidgetItem* RandomRun::pickRow(QTreeWidget* tree)
{
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    return rows.isEmpty() ? nullptr : rows.at(pick(rows.size()));
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
    // Weights, out of 100: host mutations and user actions about evenly.
    static const std::pair<int, Step> steps[] = {
        {8, &RandomRun::hostAddSubtree},
        {14, &RandomRun::hostRemove},
        {16, &RandomRun::hostReattach},
        {22, &RandomRun::hostToggleVisible},
        {27, &RandomRun::hostChangeProperties},
        {30, &RandomRun::hostToggleSelection},
        {33, &RandomRun::hostDeleteCurrentRowItem},
        {35, &RandomRun::hostReplaceViewModel},
        {37, &RandomRun::hostGeometryList},
        {39, &RandomRun::hostCloneDefects},
        {40, &RandomRun::hostEditor},
        {46, &RandomRun::host2D},
        {53, &RandomRun::userDoubleClick},
        {61, &RandomRun::userMenuEntry},
        {64, &RandomRun::userMenuEntryOnRemovedRow},
        {66, &RandomRun::userClonedContextMenu},
        {70, &RandomRun::userFindNext},
        {72, &RandomRun::userCount},
        {76, &RandomRun::userToggleClone},
        {78, &RandomRun::userCloneCheckBoxes},
        {84, &RandomRun::userCurrentRow},
        {87, &RandomRun::userClonedCurrentRow},
        {89, &RandomRun::userClonedDoubleClick},
        {93, &RandomRun::user2DList},
        {96, &RandomRun::user2DDoubleClick},
        {99, &RandomRun::user2DCurrentRow},
        {100, &RandomRun::userCloneComparisonDialog},
    };
    const int roll = pick(100);
    for (const auto& [below, action] : steps) {
        if (roll < below)
            return (this->*action)();
    }
    return QString();
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

} // namespace Brennvik::Test
