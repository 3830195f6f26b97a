// The reference application's main window on host trees that break the
// contract or strain it: empty children, cycles, a very deep chain.
#include "ExtraChildrenItem.h"
#include "ItemWidgetDriver.h"
#include "TestTree.h"

#include <ReferenceMainWindow.h>
#include <SceneView3D.h>

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <QAction>
#include <QTreeWidgetItemIterator>
#include <QtTest>

#include <memory>
#include <vector>

using namespace Brennvik;
using namespace Brennvik::Test;

namespace {

using TreeMaker = std::shared_ptr<ExtraChildrenItem> (*)();

std::shared_ptr<ExtraChildrenItem> coloured(const char* name)
{
    auto item = std::make_shared<ExtraChildrenItem>(name);
    item->setDisplayProperty("color", "#c08040");
    return item;
}

QAction* viewMenuAction(ReferenceMainWindow& window, const char* text)
{
    for (QAction* action : window.findChildren<QAction*>()) {
        if (action->text() == QLatin1String(text))
            return action;
    }
    return nullptr;
}

QAction* rebuildAction(ReferenceMainWindow& window)
{
    return viewMenuAction(window, "&Rebuild tree");
}

// Whether \a row and every row below it is expanded or has no children.
bool allExpanded(const QTreeWidgetItem* row)
{
    std::vector<const QTreeWidgetItem*> pending{row};
    while (!pending.empty()) {
        const QTreeWidgetItem* next = pending.back();
        pending.pop_back();
        if (next->childCount() > 0 && !next->isExpanded())
            return false;
        for (int i = 0; i < next->childCount(); ++i)
            pending.push_back(next->child(i));
    }
    return true;
}

// Deep enough to overflow the stack of a recursive walk, small enough for CI;
// BRENNVIK_APP_CHAIN_DEPTH sets another depth for a measurement by hand.
int chainDepth(int usual = 200000)
{
    bool ok = false;
    const int depth = qEnvironmentVariableIntValue("BRENNVIK_APP_CHAIN_DEPTH", &ok);
    return ok && depth > 0 ? depth : usual;
}

// Expanding a chain row by row costs Qt the square of its depth (about 100 s
// at 200,000 levels), so "Expand all" gets a shorter chain: still more than
// twice the about 26,000 levels at which Qt's recursive layout overflowed.
int expandAllChainDepth()
{
    return chainDepth(60000);
}

} // namespace

Q_DECLARE_METATYPE(TreeMaker)

class tst_ReferenceAppHostTrees : public QObject
{
    Q_OBJECT
private slots:
    void brokenTreeIsShownWithoutItsFaults_data();
    void brokenTreeIsShownWithoutItsFaults();
    void cycleInTheLabelModelEnds();
    void deepChainIsShown();
    void expandAllOnADeepChain();
};

void tst_ReferenceAppHostTrees::brokenTreeIsShownWithoutItsFaults_data()
{
    QTest::addColumn<TreeMaker>("makeTree");
    QTest::addColumn<QString>("rows");
    QTest::addColumn<QStringList>("drawn");

    QTest::newRow("empty child of the root") << TreeMaker([]() {
        auto root = coloured("root");
        root->appendChild(coloured("a"));
        root->listEmpty();
        root->listOwned(coloured("b"));
        return root;
    }) << "root(a,b)" << QStringList{"a", "b"};
    QTest::newRow("empty child further down") << TreeMaker([]() {
        auto root = coloured("root");
        auto a = coloured("a");
        a->listEmpty();
        a->listOwned(coloured("c"));
        root->appendChild(a);
        return root;
    }) << "root(a(c))" << QStringList{"a", "c"};
    QTest::newRow("item lists itself") << TreeMaker([]() {
        auto root = coloured("root");
        auto a = coloured("a");
        a->listUnowned(a);
        a->listOwned(coloured("b"));
        root->appendChild(a);
        return root;
    }) << "root(a(b))" << QStringList{"a", "b"};
    QTest::newRow("item lists its parent") << TreeMaker([]() {
        auto root = coloured("root");
        auto a = coloured("a");
        auto b = coloured("b");
        b->listUnowned(a);
        b->listOwned(coloured("c"));
        a->listOwned(b);
        root->appendChild(a);
        return root;
    }) << "root(a(b(c)))" << QStringList{"a", "b", "c"};
    QTest::newRow("item lists the root") << TreeMaker([]() {
        auto root = coloured("root");
        auto a = coloured("a");
        a->listUnowned(root);
        root->appendChild(a);
        root->appendChild(coloured("d"));
        return root;
    }) << "root(a,d)" << QStringList{"a", "d"};
    QTest::newRow("item listed in two places") << TreeMaker([]() {
        auto root = coloured("root");
        auto a = coloured("a");
        auto b = coloured("b");
        b->listUnowned(a);
        root->appendChild(a);
        root->appendChild(b);
        return root;
    }) << "root(a,b)" << QStringList{"a", "b"};
}

void tst_ReferenceAppHostTrees::brokenTreeIsShownWithoutItsFaults()
{
    QFETCH(TreeMaker, makeTree);
    QFETCH(QString, rows);
    QFETCH(QStringList, drawn);

    const std::shared_ptr<SceneViewModel> viewModel = makeViewModel(makeTree());
    ReferenceMainWindow window(viewModel);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));

    DisplayItemTreeWidget* tree = window.displayItemTree();
    QCOMPARE(tree->topLevelItemCount(), 1);
    fetchAllRows(tree);
    QCOMPARE(rowShape(tree->topLevelItem(0)), rows);
    QCOMPARE(window.sceneView()->drawnItemNames(), drawn);

    // Built again on the same broken tree, the result is the same.
    viewModel->displayModel().doVisibilityUpdate();
    QCOMPARE(window.sceneView()->drawnItemNames(), drawn);
    QAction* rebuild = rebuildAction(window);
    QVERIFY(rebuild);
    rebuild->trigger();
    QCOMPARE(tree->topLevelItemCount(), 1);
    // This time every row made by "Expand all".
    QAction* expandAll = viewMenuAction(window, "&Expand all");
    QVERIFY(expandAll);
    expandAll->trigger();
    QCOMPARE(rowShape(tree->topLevelItem(0)), rows);
    QVERIFY(allExpanded(tree->topLevelItem(0)));
}

void tst_ReferenceAppHostTrees::cycleInTheLabelModelEnds()
{
    auto labels = coloured("Labels");
    auto group = coloured("Group");
    group->listUnowned(labels);
    group->listEmpty();
    labels->appendChild(group);
    const std::shared_ptr<SceneViewModel> viewModel = makeViewModel(coloured("root"));
    viewModel->labelDisplayModel().setRootDisplayItem(labels);

    ReferenceMainWindow window(viewModel);
    // The application's own plot labels are real children of the label root, after the group.
    QCOMPARE(window.sceneView()->drawnPlotLabels().size(), 4);
}

void tst_ReferenceAppHostTrees::deepChainIsShown()
{
    const int depth = chainDepth();
    auto root = std::make_shared<ExtraChildrenItem>("root");
    appendChain(*root, depth);
    const std::shared_ptr<SceneViewModel> viewModel = makeViewModel(root);
    root.reset();

    auto window = std::make_unique<ReferenceMainWindow>(viewModel);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));

    // One row per level, each the only child of the one above, once every
    // level has been expanded.
    QCOMPARE(fetchAllRows(window->displayItemTree()), depth - 2);
    int rows = 0;
    const QTreeWidgetItem* deepest = nullptr;
    for (const QTreeWidgetItem* row = window->displayItemTree()->topLevelItem(0); row;
         row = row->childCount() == 1 ? row->child(0) : nullptr) {
        deepest = row;
        ++rows;
    }
    QCOMPARE(rows, depth + 1);
    QCOMPARE(deepest->childCount(), 0);
    QCOMPARE(deepest->text(0), QString::number(depth));

    // Every level but the root is drawn, from the top down.
    SceneView3D* view = window->sceneView();
    QCOMPARE(view->drawnItemCount(), depth);
    const QStringList names = view->drawnItemNames();
    QVERIFY(!names.isEmpty());
    QCOMPARE(names.first(), QStringLiteral("1"));
    QCOMPARE(names.last(), QString::number(names.size()));

    // Drawn and built again, then torn down: none of it may recurse either.
    viewModel->displayModel().doVisibilityUpdate();
    QCOMPARE(view->drawnItemCount(), depth);
    QAction* rebuild = rebuildAction(*window);
    QVERIFY(rebuild);
    rebuild->trigger();
    QCOMPARE(window->displayItemTree()->topLevelItemCount(), 1);
    window.reset();
}

// Qt's tree view lays out expanded rows recursively, once per level, when it
// lays out the whole tree: "Expand all" must leave it nothing of the kind to do.
void tst_ReferenceAppHostTrees::expandAllOnADeepChain()
{
    const int depth = expandAllChainDepth();
    auto root = std::make_shared<ExtraChildrenItem>("root");
    appendChain(*root, depth);
    root->listOwned(coloured("beside the chain"));
    const std::shared_ptr<SceneViewModel> viewModel = makeViewModel(root);
    root.reset();
    auto window = std::make_unique<ReferenceMainWindow>(viewModel);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    DisplayItemTreeWidget* tree = window->displayItemTree();

    QAction* expandAll = viewMenuAction(*window, "&Expand all");
    QVERIFY(expandAll);
    expandAll->trigger();
    // Every row is expanded, leaves too, as Qt's own expandAll() leaves them.
    int expanded = 0;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        expanded += (*it)->isExpanded() ? 1 : 0;
    QCOMPARE(expanded, depth + 2);

    // Every level has its row, expanded, the deepest one included.
    int rows = 0;
    QTreeWidgetItem* deepest = nullptr;
    for (QTreeWidgetItem* row = tree->topLevelItem(0); row; row = row->childCount() > 0 ? row->child(0) : nullptr) {
        if (!row->isExpanded())
            break;
        deepest = row;
        ++rows;
    }
    QCOMPARE(rows, depth + 1);
    QCOMPARE(deepest->childCount(), 0);
    QCOMPARE(deepest->text(0), QString::number(depth));

    // The view has every row in its layout: the deepest one has a place and is painted.
    tree->scrollToItem(deepest);
    QVERIFY(tree->visualItemRect(deepest).isValid());
    QVERIFY(!tree->viewport()->grab().isNull());
    QCOMPARE(tree->itemBelow(deepest)->text(0), QStringLiteral("beside the chain"));
    QCOMPARE(tree->itemAbove(deepest), deepest->parent());

    // Expanding all again, building anew with every row expanded (as the
    // host's changes do) and collapsing recurse neither.
    expandAll->trigger();
    QVERIFY(tree->visualItemRect(deepest).isValid());
    QAction* rebuild = rebuildAction(*window);
    QVERIFY(rebuild);
    rebuild->trigger();
    QCOMPARE(tree->topLevelItemCount(), 1);
    QCOMPARE(tree->topLevelItem(0)->childCount(), 2);
    QVERIFY(tree->topLevelItem(0)->isExpanded());
    QAction* collapseAll = viewMenuAction(*window, "&Collapse all");
    QVERIFY(collapseAll);
    collapseAll->trigger();
    QVERIFY(!tree->topLevelItem(0)->isExpanded());
    window.reset();
}

QTEST_MAIN(tst_ReferenceAppHostTrees)
#include "tst_referenceapp_hosttrees.moc"
