// Opens, uses and destroys each of the three dialogs again and again, and
// checks what the user sees in every cycle. Run under valgrind by
// scripts/run-leak-check.sh at two cycle counts: memory that the dialogs do
// not give back shows as growth per cycle.
//
// BRENNVIK_LEAK_CYCLES sets the number of cycles (default 3).

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>

#include <referencehost/model/CloneDefect.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/plot2d/MaterialGenerator.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include "../common/ContextMenuDriver.h"
#include "../common/DisplayItemMenuEntries.h"
#include "../common/ItemWidgetDriver.h"
#include "../common/Plot2DHost.h"
#include "../common/ShownWindow.h"
#include "../common/TestTree.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionButton>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <memory>

using namespace Brennvik;
using namespace Brennvik::Test;

namespace {

int cycleCount()
{
    bool ok = false;
    const int cycles = qEnvironmentVariableIntValue("BRENNVIK_LEAK_CYCLES", &ok);
    return ok && cycles > 0 ? cycles : 3;
}

// A job with a tool group, a blank and two measurement points (one hidden);
// the die carries a tool id to find.
std::shared_ptr<DisplayItem> buildJob()
{
    auto root = buildTree(
        {"Job", {{"Tools", {{"Punch"}, {"Die"}}}, {"Blank"}, {"Measurements", {{"MP 01"}, {"MP 02", {}, false}}}}});
    findItem(root, "Die")->setBusinessProperty("tool id", "OP20-DIE");
    findItem(root, "Punch")->setBusinessProperty("tool id", "OP10-PU");
    return root;
}

int rowCount(QTreeWidget* tree)
{
    int count = 0;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        ++count;
    return count;
}

QPoint centreOf(QTreeWidget* tree, QTreeWidgetItem* row)
{
    tree->scrollToItem(row);
    return tree->visualItemRect(row).center();
}

void clickCheckBox(QCheckBox* box)
{
    QStyleOptionButton option;
    option.initFrom(box);
    const QRect indicator = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box);
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, indicator.center());
}

// Deletes what deleteLater scheduled, as the event loop would.
void flushDeferredDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

std::shared_ptr<DisplayItem2D> plotTree(const std::string& root, const std::vector<std::string>& children)
{
    auto item = std::make_shared<DisplayItem2D>(root);
    for (const std::string& child : children)
        item->appendChild(std::make_shared<DisplayItem2D>(child));
    return item;
}

} // namespace

class tst_DialogCycles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void displayModelDialogCycles();
    void cloneComparisonDialogCycles();
    void displayModel2DDialogCycles();

private:
    void useDisplayModelDialog(int cycle);
    void useCloneComparisonDialog(int cycle);
    void useDisplayModel2DDialog(int cycle);

    int m_cycles = 0;
};

void tst_DialogCycles::initTestCase()
{
    m_cycles = cycleCount();
    qInfo("%d cycles per dialog", m_cycles);
}

void tst_DialogCycles::displayModelDialogCycles()
{
    for (int cycle = 0; cycle < m_cycles; ++cycle) {
        useDisplayModelDialog(cycle);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QStringLiteral("in cycle %1").arg(cycle)));
        flushDeferredDeletes();
    }
}

void tst_DialogCycles::useDisplayModelDialog(int cycle)
{
    auto root = buildJob();
    auto viewModel = makeViewModel(root);
    auto dialog = std::make_unique<DisplayModelDialog>(nullptr);
    dialog->setViewModel(viewModel);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    QTreeWidget* tree = dialog->m_displayItemTreeWidget;
    tree->expandAll();
    QCOMPARE(rowCount(tree), 8);

    // The count.
    QTest::mouseClick(dialog->m_displayItemCountPB, Qt::LeftButton);
    QCOMPARE(dialog->m_displayItemCountLE->text(), QStringLiteral("8"));

    // Find next by a property value: the punch, then the die, then nothing more.
    QTest::keyClicks(dialog->m_searchValueLE, QStringLiteral("op"));
    QTest::mouseClick(dialog->m_findDisplayItemPB, Qt::LeftButton);
    QVERIFY(tree->currentItem());
    QCOMPARE(tree->currentItem()->text(0), QStringLiteral("Punch"));
    QTest::mouseClick(dialog->m_findDisplayItemPB, Qt::LeftButton);
    QCOMPARE(tree->currentItem()->text(0), QStringLiteral("Die"));
    QTest::mouseClick(dialog->m_findDisplayItemPB, Qt::LeftButton);
    QCOMPARE(tree->currentItem()->text(0), QStringLiteral("Die"));
    QVERIFY(dialog->m_businessObjectProperties->topLevelItemCount() > 0);

    // The context menu: hide and show a subtree, select, delete.
    auto tools = findItem(root, "Tools");
    ContextMenuVisit visit = rightClick(tree, centreOf(tree, rowNamed(tree, "Tools")), InvisibleEntry);
    QVERIFY2(visit.triggered, qPrintable(visit.entries.join(", ")));
    QVERIFY(!tools->isVisible());
    QVERIFY(!findItem(root, "Punch")->isVisible());
    visit = rightClick(tree, centreOf(tree, rowNamed(tree, "Tools")), VisibleEntry);
    QVERIFY(visit.triggered);
    QVERIFY(tools->isVisible());
    QVERIFY(findItem(root, "Die")->isVisible());

    auto blank = findItem(root, "Blank");
    QVERIFY(!blank->isSelected());
    visit = rightClick(tree, centreOf(tree, rowNamed(tree, "Blank")), SelectEntry);
    QVERIFY(visit.triggered);
    QVERIFY(blank->isSelected());

    visit = rightClick(tree, centreOf(tree, rowNamed(tree, "MP 01")), DeleteEntry);
    QVERIFY(visit.triggered);
    QCOMPARE(findItem(root, "Measurements")->getChildren().size(), std::size_t(1));
    QVERIFY(!rowNamed(tree, "MP 01"));
    QCOMPARE(rowCount(tree), 7);

    // Clone mode on: a second tree like the first; off: gone again.
    clickCheckBox(dialog->m_useCloneCheckBox);
    QCoreApplication::processEvents();
    QVERIFY(dialog->m_useCloneCheckBox->isChecked());
    auto* cloned = dialog->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_clonedDisplayItemTreeWidget"));
    QVERIFY(cloned);
    cloned->expandAll();
    QCOMPARE(rowCount(cloned), 7);
    QVERIFY(rowNamed(cloned, QStringLiteral("Blank")));
    clickCheckBox(dialog->m_useCloneCheckBox);
    flushDeferredDeletes();
    QVERIFY(!dialog->m_useCloneCheckBox->isChecked());
    QVERIFY(!dialog->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_clonedDisplayItemTreeWidget")));

    // Every other cycle closes first, as the user does; the rest are destroyed while shown.
    if (cycle % 2 == 0) {
        QVERIFY(dialog->close());
        QVERIFY(!dialog->isVisible());
    }
    dialog.reset();
    // The rows observed the items; with the dialog gone the model still works.
    tools->setVisible(false);
    QVERIFY(!tools->isVisible());
}

void tst_DialogCycles::cloneComparisonDialogCycles()
{
    for (int cycle = 0; cycle < m_cycles; ++cycle) {
        useCloneComparisonDialog(cycle);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QStringLiteral("in cycle %1").arg(cycle)));
        flushDeferredDeletes();
    }
}

void tst_DialogCycles::useCloneComparisonDialog(int cycle)
{
    auto viewModel = makeViewModel(buildJob());
    // Odd cycles compare an unfaithful clone.
    const bool faithful = cycle % 2 == 0;
    if (!faithful)
        setDefects(*viewModel, {{CloneDefect::Kind::FlipVisibility, QStringLiteral("Blank")}});

    auto dialog = std::make_unique<DebugCloneDisplayModelDialog>(nullptr, viewModel);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    dialog->m_displayItemTree->expandAll();
    dialog->m_clonedDisplayItemTree->expandAll();
    QCOMPARE(rowCount(dialog->m_displayItemTree), 8);
    QCOMPARE(rowCount(dialog->m_clonedDisplayItemTree), 8);
    const QString report = dialog->m_outputTextField->toPlainText();
    if (faithful)
        QCOMPARE(report, QStringLiteral("Trees are equal"));
    else
        QVERIFY2(report.contains(QStringLiteral("Visibility differs")) && report.contains(QStringLiteral("Blank")),
                 qPrintable(report));
    dialog->close();
    dialog.reset();
}

void tst_DialogCycles::displayModel2DDialogCycles()
{
    for (int cycle = 0; cycle < m_cycles; ++cycle) {
        useDisplayModel2DDialog(cycle);
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QStringLiteral("in cycle %1").arg(cycle)));
        flushDeferredDeletes();
    }
    setMaterialGeneratorWindow(nullptr);
}

void tst_DialogCycles::useDisplayModel2DDialog(int cycle)
{
    Plot2DHost host;
    host.show();
    host.addPlot(QPoint(10, 20), plotTree("Force", {"Axes", "Curves"}));
    host.addPlot(QPoint(300, 40), plotTree("Stroke", {"Axes"}));
    host.addLabel("label", Vector<float, 3>(5.0f, -50.0f, 0.0f), plotTree("Label plot", {"Legend"}));

    auto dialog = std::make_unique<DisplayModel2DDialog>(host.presenter(), nullptr);
    dialog->setViewModel(host.viewModel());
    QVERIFY(showAtOrigin(*dialog));
    QListWidget* list = dialog->m_plotListWdg;
    QTreeWidget* tree = dialog->m_displayItemTreeWidget;
    QCOMPARE(listTexts(list), (QStringList{"Plot at (10, 20)", "Plot at (300, 40)", "PlotLabel at (5, 50)"}));

    const QStringList roots{"Force", "Stroke", "Label plot"};
    const QList<int> childCounts{2, 1, 1};
    // Pick each plot in turn, in a different order each cycle.
    for (int step = 0; step < list->count(); ++step) {
        const int row = (step + cycle) % list->count();
        QListWidgetItem* item = list->item(row);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualItemRect(item).center());
        QCOMPARE(list->currentRow(), row);
        QCOMPARE(tree->topLevelItemCount(), 1);
        QCOMPARE(tree->topLevelItem(0)->text(0), roots.at(row));
        QCOMPARE(tree->topLevelItem(0)->childCount(), childCounts.at(row));
        QVERIFY(dialog->getDisplayModelOfSelectedPlot());
    }
    QTest::mouseClick(dialog->m_updateListPB, Qt::LeftButton);
    QCOMPARE(list->count(), 3);
    dialog->close();
    dialog.reset();
}

QTEST_MAIN(tst_DialogCycles)
#include "tst_dialogcycles.moc"
