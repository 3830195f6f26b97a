// The main window's display item tree makes its rows on demand: what it makes
// at start, on expansion and for "Expand all", and how it follows the host's
// changes in the parts it has made and in those it has not.
#include "ItemWidgetDriver.h"
#include "ReactingHost.h"
#include "TestTree.h"

#include <LazyDisplayItemRows.h>
#include <ReferenceMainWindow.h>

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <QAction>
#include <QTreeWidgetItemIterator>
#include <QtTest>

#include <functional>
#include <memory>

using namespace Brennvik;
using namespace Brennvik::Test;

namespace {

// root(a(a1(a11,a12),a2),b(b1)); a1 reacts in its getters when armed.
struct Model
{
    std::shared_ptr<DisplayItem> root;
    std::shared_ptr<ReactingItem> a1;
    std::shared_ptr<SceneViewModel> viewModel;
};

Model makeModel()
{
    Model model;
    model.root = buildTree({"root", {{"a", {{"a2"}}}, {"b", {{"b1"}}}}});
    model.a1 = std::make_shared<ReactingItem>("a1");
    model.a1->appendChild(buildTree({"a11"}));
    model.a1->appendChild(buildTree({"a12"}));
    findItem(model.root, "a")->insertChild(0, model.a1);
    model.viewModel = makeViewModel(model.root);
    return model;
}

int rowCount(QTreeWidget* tree)
{
    int rows = 0;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        ++rows;
    return rows;
}

// The shape of the host's tree as the rows show it once all are made.
QString fetchedShape(QTreeWidget* tree)
{
    fetchAllRows(tree);
    return tree->topLevelItemCount() == 1 ? rowShape(tree->topLevelItem(0)) : QString();
}

QString modelShape(const SceneViewModel& viewModel)
{
    return QString::fromStdString(treeShape(viewModel.displayModel().rootDisplayItem()));
}

using Change = std::function<void(Model&)>;

} // namespace

Q_DECLARE_METATYPE(Change)
Q_DECLARE_METATYPE(Brennvik::Test::HostReaction)

class tst_LazyDisplayItemRows : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void startMakesTheOpenLevelsOnly();
    void expandingARowMakesItsChildrenOnce();
    void expandAllMakesAndExpandsEveryRow();
    void updateUnderAnUnfetchedRowDoesNotFetchIt_data();
    void updateUnderAnUnfetchedRowDoesNotFetchIt();
    void updateOfAFetchedPartIsShown_data();
    void updateOfAFetchedPartIsShown();
    void visibilityOfAFetchedRowIsShown();
    void hostReactsWhileRowsAreMade_data();
    void hostReactsWhileRowsAreMade();

private:
    Model m_model;
    std::unique_ptr<ReferenceMainWindow> m_window;
};

void tst_LazyDisplayItemRows::init()
{
    m_model = makeModel();
    m_window = std::make_unique<ReferenceMainWindow>(m_model.viewModel);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_LazyDisplayItemRows::cleanup()
{
    m_window.reset();
    m_model = Model();
}

void tst_LazyDisplayItemRows::startMakesTheOpenLevelsOnly()
{
    // The root and its children are open: their children have rows, and the
    // rows below those are made when a row is expanded.
    DisplayItemTreeWidget* tree = m_window->displayItemTree();
    QCOMPARE(rowShape(tree->topLevelItem(0)), QStringLiteral("root(a(a1,a2),b(b1))"));
    QTreeWidgetItem* a1 = rowNamed(tree, QStringLiteral("a1"));
    QVERIFY(LazyDisplayItemRows::hasUnfetchedChildren(a1));
    QCOMPARE(a1->childIndicatorPolicy(), QTreeWidgetItem::ShowIndicator);
    QVERIFY(!a1->isExpanded());
    // A leaf has nothing to make and shows no indicator.
    QVERIFY(!LazyDisplayItemRows::hasUnfetchedChildren(rowNamed(tree, QStringLiteral("a2"))));
    QCOMPARE(rowNamed(tree, QStringLiteral("a2"))->childIndicatorPolicy(),
             QTreeWidgetItem::DontShowIndicatorWhenChildless);
    QVERIFY(rowNamed(tree, QStringLiteral("a"))->isExpanded());
    QVERIFY(rowNamed(tree, QStringLiteral("b"))->isExpanded());
}

void tst_LazyDisplayItemRows::expandingARowMakesItsChildrenOnce()
{
    DisplayItemTreeWidget* tree = m_window->displayItemTree();

    auto* a1 = DisplayItemTreeWidgetItem::asDisplayItemRow(rowNamed(tree, QStringLiteral("a1")));
    QVERIFY(a1);
    a1->setExpanded(true);
    QCOMPARE(rowShape(a1), QStringLiteral("a1(a11,a12)"));
    QVERIFY(!LazyDisplayItemRows::hasUnfetchedChildren(a1));
    // The rows are the library's display item rows, with their position among the item's children.
    auto* a12 = DisplayItemTreeWidgetItem::asDisplayItemRow(a1->child(1));
    QVERIFY(a12);
    QCOMPARE(a12->getItemIndex(), 1);
    QCOMPARE(a12->getDisplayItem(), std::static_pointer_cast<DisplayItemInterface>(m_model.a1->childAt(1)));

    // Collapsed and expanded again, nothing is made twice.
    a1->setExpanded(false);
    a1->setExpanded(true);
    QCOMPARE(rowShape(a1), QStringLiteral("a1(a11,a12)"));
    QCOMPARE(rowCount(tree), 8);
}

void tst_LazyDisplayItemRows::expandAllMakesAndExpandsEveryRow()
{
    DisplayItemTreeWidget* tree = m_window->displayItemTree();
    QCOMPARE(rowCount(tree), 6);

    QAction* expandAll = nullptr;
    for (QAction* action : m_window->findChildren<QAction*>()) {
        if (action->text() == QLatin1String("&Expand all"))
            expandAll = action;
    }
    QVERIFY(expandAll);
    expandAll->trigger();
    QCOMPARE(rowShape(tree->topLevelItem(0)), modelShape(*m_model.viewModel));
    QVERIFY(rowNamed(tree, QStringLiteral("a1"))->isExpanded());
}

void tst_LazyDisplayItemRows::updateUnderAnUnfetchedRowDoesNotFetchIt_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("shape");

    QTest::newRow("child added") << Change([](Model& model) {
        model.a1->appendChild(buildTree({"a13"}));
        model.viewModel->displayModel().doDisplayUpdate(DisplayUpdate::Attributes);
    }) << "root(a(a1(a11,a12,a13),a2),b(b1))";
    QTest::newRow("child removed") << Change([](Model& model) {
        model.a1->removeChild(model.a1->childAt(0), false);
        model.viewModel->displayModel().doDisplayUpdate(DisplayUpdate::Attributes);
    }) << "root(a(a1(a12),a2),b(b1))";
    QTest::newRow("child hidden") << Change([](Model& model) {
        const std::shared_ptr<DisplayItem> a11 = model.a1->childAt(0);
        a11->setVisible(false);
        a11->notifyVisualPropertiesChanged();
        model.viewModel->displayModel().doVisibilityUpdate();
    }) << "root(a(a1(a11,a12),a2),b(b1))";
    QTest::newRow("child renamed") << Change([](Model& model) {
        model.a1->childAt(1)->setDisplayName("renamed");
        model.viewModel->displayModel().doDisplayUpdate(DisplayUpdate::Attributes);
    }) << "root(a(a1(a11,renamed),a2),b(b1))";
}

void tst_LazyDisplayItemRows::updateUnderAnUnfetchedRowDoesNotFetchIt()
{
    QFETCH(Change, change);
    QFETCH(QString, shape);

    DisplayItemTreeWidget* tree = m_window->displayItemTree();

    change(m_model);
    QCoreApplication::processEvents(); // a changed number of items rebuilds the tree, queued
    QTreeWidgetItem* a1 = rowNamed(tree, QStringLiteral("a1"));
    QVERIFY(a1);
    QCOMPARE(a1->childCount(), 0);
    QVERIFY(LazyDisplayItemRows::hasUnfetchedChildren(a1));
    QCOMPARE(rowCount(tree), 6);
    // Made now, the rows show the tree as it is.
    QCOMPARE(fetchedShape(tree), shape);
    QCOMPARE(fetchedShape(tree), modelShape(*m_model.viewModel));
}

void tst_LazyDisplayItemRows::updateOfAFetchedPartIsShown_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("shape");

    QTest::newRow("child added") << Change([](Model& model) {
        findItem(model.root, "b")->appendChild(buildTree({"b2"}));
        model.viewModel->displayModel().doDisplayUpdate(DisplayUpdate::Attributes);
    }) << "root(a(a1,a2),b(b1,b2))";
    QTest::newRow("child removed") << Change([](Model& model) {
        const std::shared_ptr<DisplayItem> a = findItem(model.root, "a");
        a->removeChild(findItem(model.root, "a2"), false);
        model.viewModel->displayModel().doDisplayUpdate(DisplayUpdate::Attributes);
    }) << "root(a(a1),b(b1))";
    QTest::newRow("subtree removed") << Change([](Model& model) {
        model.root->removeChild(findItem(model.root, "a"), false);
        model.viewModel->displayModel().doDisplayUpdate(DisplayUpdate::Attributes);
    }) << "root(b(b1))";
    QTest::newRow("root replaced") << Change([](Model& model) {
        model.viewModel->displayModel().setRootDisplayItem(buildTree({"new", {{"x", {{"y", {{"z"}}}}}}}));
        model.viewModel->displayModel().doDisplayUpdate(DisplayUpdate::Attributes);
    }) << "new(x(y))";
}

void tst_LazyDisplayItemRows::updateOfAFetchedPartIsShown()
{
    QFETCH(Change, change);
    QFETCH(QString, shape);

    DisplayItemTreeWidget* tree = m_window->displayItemTree();

    change(m_model);
    QTRY_COMPARE(rowShape(tree->topLevelItem(0)), shape);
}

void tst_LazyDisplayItemRows::visibilityOfAFetchedRowIsShown()
{
    DisplayItemTreeWidget* tree = m_window->displayItemTree();
    const qint64 visibleIcon = rowNamed(tree, QStringLiteral("a2"))->icon(0).cacheKey();

    const std::shared_ptr<DisplayItem> a2 = findItem(m_model.root, "a2");
    a2->setVisible(false);
    a2->notifyVisualPropertiesChanged();
    const qint64 hiddenIcon = rowNamed(tree, QStringLiteral("a2"))->icon(0).cacheKey();
    QVERIFY(hiddenIcon != visibleIcon);
    QCOMPARE(rowNamed(tree, QStringLiteral("b1"))->icon(0).cacheKey(), visibleIcon);

    a2->setVisible(true);
    a2->notifyVisualPropertiesChanged();
    QCOMPARE(rowNamed(tree, QStringLiteral("a2"))->icon(0).cacheKey(), visibleIcon);
}

void tst_LazyDisplayItemRows::hostReactsWhileRowsAreMade_data()
{
    QTest::addColumn<HostReaction>("reaction");
    for (const auto& [name, reaction] : allHostReactions())
        QTest::newRow(name) << reaction;
}

void tst_LazyDisplayItemRows::hostReactsWhileRowsAreMade()
{
    QFETCH(HostReaction, reaction);

    DisplayItemTreeWidget* tree = m_window->displayItemTree();

    // a1 changes the host's tree while its children are listed for the rows.
    SceneDisplayModel& displayModel = m_model.viewModel->displayModel();
    const std::shared_ptr<const bool> reacted
        = m_model.a1->reactInGetter(ReactingItem::Getter::Children, displayModel, m_model.a1, reaction);
    rowNamed(tree, QStringLiteral("a1"))->setExpanded(true);
    QVERIFY(*reacted);

    // The host's update that follows its change brings the rows in line.
    displayModel.doDisplayUpdate(DisplayUpdate::Attributes);
    QCoreApplication::processEvents();
    QCOMPARE(fetchedShape(tree), modelShape(*m_model.viewModel));
}

QTEST_MAIN(tst_LazyDisplayItemRows)
#include "tst_lazydisplayitemrows.moc"
