// Very deep and broken host trees through every dialog: chains far deeper
// than a call stack can follow, and trees whose getChildren lists an empty
// reference, the item itself or an ancestor.

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/MainWindowPresenter.h>

#include "ContextMenuDriver.h"
#include "LinkedTreeHost.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <memory>
#include <vector>

using namespace Brennvik;
using Brennvik::Test::LinkedItem;
using Brennvik::Test::LinkedViewModel;
using Brennvik::Test::makeChain;

namespace {

// Deep enough that every recursive walk of the dialogs overflowed an 8 MiB
// stack, and quick enough for every run. BRENNVIK_DEEP_CHAIN_DEPTH sets
// another depth, e.g. 1000000 for the million-item chain, which takes minutes
// and about 2 GB in a release build: too slow for every run.
const int kDepth = [] {
    bool ok = false;
    const int depth = qEnvironmentVariableIntValue("BRENNVIK_DEEP_CHAIN_DEPTH", &ok);
    return ok && depth > 1 ? depth : 100000;
}();

QString itemName(int i)
{
    return QStringLiteral("item %1").arg(i);
}

// The number of rows from \a top down along first children, and the last of them.
int chainLength(QTreeWidgetItem* top, QTreeWidgetItem** last = nullptr)
{
    int length = 0;
    QTreeWidgetItem* row = top;
    while (row) {
        ++length;
        if (last)
            *last = row;
        row = row->childCount() > 0 ? row->child(0) : nullptr;
    }
    return length;
}

// Whether some row from \a top down along first children is marked as differing.
bool anyMarked(QTreeWidgetItem* top)
{
    for (QTreeWidgetItem* row = top; row; row = row->childCount() > 0 ? row->child(0) : nullptr) {
        auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row);
        if (row->font(0).weight() == QFont::Bold || (itemRow && itemRow->isDifferentVisibility()))
            return true;
    }
    return false;
}

// The rows of \a tree in pre-order as "depth:text", without recursion.
QStringList rowLines(QTreeWidget* tree)
{
    QStringList lines;
    std::vector<std::pair<QTreeWidgetItem*, int>> pending;
    for (int i = tree->topLevelItemCount() - 1; i >= 0; --i)
        pending.emplace_back(tree->topLevelItem(i), 0);
    while (!pending.empty()) {
        const auto [row, depth] = pending.back();
        pending.pop_back();
        lines << QStringLiteral("%1:%2").arg(depth).arg(row->text(0));
        for (int i = row->childCount() - 1; i >= 0; --i)
            pending.emplace_back(row->child(i), depth + 1);
    }
    return lines;
}

std::shared_ptr<LinkedItem> named(const char* name)
{
    return std::make_shared<LinkedItem>(name);
}

// Builds one of the broken trees by name; all of them have the rows
// root, alpha, beta below alpha and gamma, in that order, plus the broken link.
std::shared_ptr<LinkedViewModel> brokenTree(const QString& kind)
{
    auto root = named("root");
    auto a = named("alpha");
    auto b = named("beta");
    auto c = named("gamma");
    root->appendChild(a);
    a->appendChild(b);
    if (kind == QLatin1String("empty child"))
        a->appendEmpty();
    else if (kind == QLatin1String("itself"))
        b->appendLink(b);
    else if (kind == QLatin1String("parent"))
        b->appendLink(a);
    else if (kind == QLatin1String("root"))
        b->appendLink(root);
    else if (kind == QLatin1String("empty root child"))
        root->appendEmpty();
    root->appendChild(c);
    return std::make_shared<LinkedViewModel>(root);
}

// The broken trees by name, with the rows every dialog shows of them.
void addBrokenTreeRows()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("rows");

    // An empty child gets no row; an item listed again on its own path gets
    // a row that shows it, with nothing below it.
    QTest::newRow("empty child") << "empty child" << QStringList{"0:root", "1:alpha", "2:beta", "1:gamma"};
    QTest::newRow("empty child of the root")
        << "empty root child" << QStringList{"0:root", "1:alpha", "2:beta", "1:gamma"};
    QTest::newRow("lists itself") << "itself" << QStringList{"0:root", "1:alpha", "2:beta", "3:beta", "1:gamma"};
    QTest::newRow("lists its parent") << "parent" << QStringList{"0:root", "1:alpha", "2:beta", "3:alpha", "1:gamma"};
    QTest::newRow("lists the root") << "root" << QStringList{"0:root", "1:alpha", "2:beta", "3:root", "1:gamma"};
}

} // namespace

class tst_DeepTrees : public QObject
{
    Q_OBJECT

private slots:
    void displayModelDialogBuildsFindsAndCountsDeepChain();
    void displayModelDialogClonesDeepChain();
    void displayModelDialogHidesDeepSubtree();
    void displayModelDialogCopiesAddedDeepSubtree();
    void expandAllOnDeepChain();
    void cloneModeMirrorsDeepExpansion();
    void cloneComparisonDialogComparesDeepChain();
    void displayModel2DDialogBuildsDeepChain();

    void displayModelDialogOnBrokenTree_data();
    void displayModelDialogOnBrokenTree();
    void cloneComparisonDialogOnBrokenTree_data();
    void cloneComparisonDialogOnBrokenTree();
};

void tst_DeepTrees::displayModelDialogBuildsFindsAndCountsDeepChain()
{
    const auto viewModel = makeChain(kDepth);
    auto dialog = std::make_unique<DisplayModelDialog>(nullptr);
    dialog->setViewModel(viewModel);

    QTreeWidgetItem* last = nullptr;
    QCOMPARE(chainLength(dialog->m_displayItemTreeWidget->topLevelItem(0), &last), kDepth);
    QCOMPARE(last->text(0), itemName(kDepth - 1));

    dialog->m_displayItemCountPB->click();
    QCOMPARE(dialog->m_displayItemCountLE->text(), QString::number(kDepth));

    dialog->m_searchValueLE->setText(itemName(kDepth - 1));
    dialog->m_findDisplayItemPB->click();
    QCOMPARE(dialog->m_displayItemTreeWidget->currentItem(), last);
    // Found once: the search goes on after the current row and does not wrap.
    dialog->m_findDisplayItemPB->click();
    QCOMPARE(dialog->m_displayItemTreeWidget->currentItem(), last);

    dialog.reset();
    QCOMPARE(viewModel->root()->observerCount(), std::size_t(0));
}

void tst_DeepTrees::displayModelDialogClonesDeepChain()
{
    const auto viewModel = makeChain(kDepth);
    DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(viewModel);
    dialog.m_searchValueLE->setText(itemName(kDepth - 2));
    dialog.m_findDisplayItemPB->click();

    dialog.m_useCloneCheckBox->setChecked(true);
    auto* cloned = dialog.findChild<DisplayItemTreeWidget*>(QStringLiteral("m_clonedDisplayItemTreeWidget"));
    QVERIFY(cloned);
    QTreeWidgetItem* clonedLast = nullptr;
    QCOMPARE(chainLength(cloned->topLevelItem(0), &clonedLast), kDepth);
    QCOMPARE(clonedLast->text(0), itemName(kDepth - 1));
    QVERIFY(!anyMarked(cloned->topLevelItem(0)));
    // The rebuild mirrors the current row into the cloned tree along the whole path.
    QVERIFY(cloned->currentItem());
    QCOMPARE(cloned->currentItem()->text(0), itemName(kDepth - 2));

    // The next find mirrors its row too.
    dialog.m_searchValueLE->setText(itemName(kDepth - 1));
    dialog.m_findDisplayItemPB->click();
    QCOMPARE(cloned->currentItem(), clonedLast);

    dialog.m_useCloneCheckBox->setChecked(false);
    QVERIFY(!dialog.findChild<DisplayItemTreeWidget*>(QStringLiteral("m_clonedDisplayItemTreeWidget")));
}

void tst_DeepTrees::displayModelDialogHidesDeepSubtree()
{
    const auto viewModel = makeChain(kDepth);
    DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(viewModel);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));

    QTreeWidget* tree = dialog.m_displayItemTreeWidget;
    const QPoint topRowCentre = tree->visualItemRect(tree->topLevelItem(0)).center();
    const auto visit = Brennvik::Test::rightClick(tree, topRowCentre, QStringLiteral("Make subtree invisible"));
    QVERIFY(visit.triggered);

    const auto items = Brennvik::Test::ownedPreOrder(viewModel->root());
    QCOMPARE(int(items.size()), kDepth);
    QVERIFY(!items.front()->isVisible());
    QVERIFY(!items.back()->isVisible());
    QCOMPARE(viewModel->linkedDisplayModel().visibilityUpdates(), 1);
}

void tst_DeepTrees::displayModelDialogCopiesAddedDeepSubtree()
{
    const auto viewModel = makeChain(1);
    DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(viewModel);

    // A deep subtree added under the root arrives as one added event.
    const auto subtree = makeChain(kDepth);
    std::shared_ptr<LinkedItem> subtreeRoot = subtree->root();
    viewModel->root()->appendChild(subtreeRoot);

    QTreeWidgetItem* top = dialog.m_displayItemTreeWidget->topLevelItem(0);
    QCOMPARE(top->childCount(), 1);
    QTreeWidgetItem* last = nullptr;
    QCOMPARE(chainLength(top->child(0), &last), kDepth);
    QCOMPARE(last->text(0), itemName(kDepth - 1));

    // Removing it again drops the whole subtree of rows.
    viewModel->root()->removeChild(subtreeRoot, false);
    QCOMPARE(top->childCount(), 0);
}

void tst_DeepTrees::expandAllOnDeepChain()
{
    const auto viewModel = makeChain(kDepth);
    DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(viewModel);
    auto* top = dynamic_cast<DisplayItemTreeWidgetItem*>(dialog.m_displayItemTreeWidget->topLevelItem(0));
    QVERIFY(top);
    top->expandAll();
    QTreeWidgetItem* last = nullptr;
    chainLength(top, &last);
    QVERIFY(top->isExpanded());
    QVERIFY(last->parent()->isExpanded());
}

void tst_DeepTrees::cloneModeMirrorsDeepExpansion()
{
    const auto viewModel = makeChain(kDepth);
    DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(viewModel);
    auto* top = dynamic_cast<DisplayItemTreeWidgetItem*>(dialog.m_displayItemTreeWidget->topLevelItem(0));
    QVERIFY(top);
    top->expandAll();

    dialog.m_useCloneCheckBox->setChecked(true);
    auto* cloned = dialog.findChild<DisplayItemTreeWidget*>(QStringLiteral("m_clonedDisplayItemTreeWidget"));
    QVERIFY(cloned);
    // Row by row as in the original, all the way down.
    QTreeWidgetItem* originalRow = top;
    QTreeWidgetItem* clonedRow = cloned->topLevelItem(0);
    int depth = 0;
    for (; originalRow && clonedRow; ++depth) {
        QCOMPARE(clonedRow->isExpanded(), originalRow->isExpanded());
        originalRow = originalRow->childCount() > 0 ? originalRow->child(0) : nullptr;
        clonedRow = clonedRow->childCount() > 0 ? clonedRow->child(0) : nullptr;
    }
    QCOMPARE(depth, kDepth);
    QVERIFY(cloned->topLevelItem(0)->isExpanded());
}

void tst_DeepTrees::cloneComparisonDialogComparesDeepChain()
{
    const auto viewModel = makeChain(kDepth);
    auto dialog = std::make_unique<DebugCloneDisplayModelDialog>(nullptr, viewModel);
    QCOMPARE(dialog->m_outputTextField->toPlainText(), QStringLiteral("Trees are equal"));
    QCOMPARE(chainLength(dialog->m_displayItemTree->topLevelItem(0)), kDepth);
    QTreeWidgetItem* clonedLast = nullptr;
    QCOMPARE(chainLength(dialog->m_clonedDisplayItemTree->topLevelItem(0), &clonedLast), kDepth);
    QCOMPARE(clonedLast->text(0), itemName(kDepth - 1));
    dialog.reset();
    QCOMPARE(viewModel->root()->observerCount(), std::size_t(0));
}

void tst_DeepTrees::displayModel2DDialogBuildsDeepChain()
{
    // Built from the leaf up, so that each adoption finds no ancestors to check.
    std::vector<std::shared_ptr<DisplayItem2D>> items;
    items.reserve(kDepth);
    for (int i = 0; i < kDepth; ++i)
        items.push_back(std::make_shared<DisplayItem2D>(itemName(i).toStdString()));
    for (int i = kDepth - 1; i > 0; --i)
        items[i - 1]->appendChild(items[i]);
    DisplayModel2D model;
    model.setRootDisplayItem(items.front());

    MainWindowPresenter presenter;
    {
        DisplayModel2DDialog dialog(presenter, nullptr);
        dialog.setDisplayModel2D(&model);
        auto* tree = dialog.findChild<QTreeWidget*>(QStringLiteral("m_displayItemTreeWidget"));
        QVERIFY(tree);
        QTreeWidgetItem* last = nullptr;
        QCOMPARE(chainLength(tree->topLevelItem(0), &last), kDepth);
        QCOMPARE(last->text(0), itemName(kDepth - 1));
        dialog.updateVisiblity(nullptr);
    }
    // Front to back: each item goes while its child is still held here, so
    // no destructor frees a chain below it.
    model.setRootDisplayItem(nullptr);
    for (auto& item : items)
        item.reset();
}

void tst_DeepTrees::displayModelDialogOnBrokenTree_data()
{
    addBrokenTreeRows();
}

void tst_DeepTrees::displayModelDialogOnBrokenTree()
{
    QFETCH(QString, kind);
    QFETCH(QStringList, rows);

    const auto viewModel = brokenTree(kind);
    DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(viewModel);
    QCOMPARE(rowLines(dialog.m_displayItemTreeWidget), rows);

    // Clone mode builds the clone, which is broken alike, and compares both.
    dialog.m_useCloneCheckBox->setChecked(true);
    auto* cloned = dialog.findChild<DisplayItemTreeWidget*>(QStringLiteral("m_clonedDisplayItemTreeWidget"));
    QVERIFY(cloned);
    QCOMPARE(rowLines(cloned), rows);
    QVERIFY(!anyMarked(cloned->topLevelItem(0)));

    // Find next walks the rows once and stops on the last match.
    dialog.m_searchValueLE->setText(QStringLiteral("beta"));
    dialog.m_findDisplayItemPB->click();
    QVERIFY(dialog.m_displayItemTreeWidget->currentItem());
    QCOMPARE(dialog.m_displayItemTreeWidget->currentItem()->text(0), QStringLiteral("beta"));
    QVERIFY(cloned->currentItem());
    QCOMPARE(cloned->currentItem()->text(0), QStringLiteral("beta"));
}

void tst_DeepTrees::cloneComparisonDialogOnBrokenTree_data()
{
    addBrokenTreeRows();
}

void tst_DeepTrees::cloneComparisonDialogOnBrokenTree()
{
    QFETCH(QString, kind);
    QFETCH(QStringList, rows);

    const auto viewModel = brokenTree(kind);
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    QCOMPARE(rowLines(dialog.m_displayItemTree), rows);
    QCOMPARE(rowLines(dialog.m_clonedDisplayItemTree), rows);
    // Empty pairs are skipped and a repeated item is not compared again.
    QCOMPARE(dialog.m_outputTextField->toPlainText(), QStringLiteral("Trees are equal"));
}

QTEST_MAIN(tst_DeepTrees)
#include "tst_deeptrees.moc"
