// A seeded, model-based random test of the dialogs.
//
// Each run interleaves host mutations (subtrees added and removed, items
// hidden, shown, renamed, selected, the current row's item deleted, the view
// model replaced, clone defects and 2D plot trees changed) with what a user
// does through the widgets (double clicks, every context-menu entry, "Find
// next", "Update", clone mode on and off, current-row changes in both trees,
// the 2D dialog's list and visibility toggles). After every step each tree is
// compared with an expected tree kept by the dialogs' rules (RandomModelExpected),
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

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include "DisplayModelDialogTestAccess.h"
#include "RandomRun.h"

#include <QAbstractItemModelTester>
#include <QAbstractListModel>
#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTreeWidget>

#include <memory>

using namespace Brennvik;
using Access = Brennvik::DisplayModelDialogTestAccess;

namespace Brennvik::Test {

bool RandomRun::cloneMode() const
{
    return Access::useClone(*m_dialog);
}

bool RandomRun::showCloneIn3d() const
{
    return Access::showCloneIn3d(*m_dialog);
}

DisplayItemTreeWidget* RandomRun::clonedTree() const
{
    return Access::clonedTree(*m_dialog);
}

std::shared_ptr<ViewModelInterface> RandomRun::clonedViewModel() const
{
    return Access::clonedViewModel(*m_dialog);
}

QTreeWidget* RandomRun::clonedBusinessPane() const
{
    return Access::clonedBusinessPane(*m_dialog);
}

QTreeWidget* RandomRun::clonedDisplayPane() const
{
    return Access::clonedDisplayPane(*m_dialog);
}

} // namespace Brennvik::Test

using namespace Brennvik::Test;

namespace {

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

} // namespace

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
        RandomRun run(seed, steps, reactionsFromEnvironment(), brokenTreesFromEnvironment());
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
