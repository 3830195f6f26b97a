#include "TestTree.h"

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/FixedEntryOwner.h>
#include <referencehost/model/ProcessStepProvider.h>
#include <referencehost/model/SceneContext.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/ToolKeyLookup.h>
#include <referencehost/model/ToolKeySource.h>

#include <QtTest>

#include <stdexcept>

using namespace Brennvik;

namespace {

bool allItemsHaveModel(const std::shared_ptr<DisplayItemInterface>& root, const DisplayModel* model)
{
    for (const auto& item : Test::preOrder(root)) {
        if (item->getDisplayModel() != model)
            return false;
    }
    return true;
}

} // namespace

class tst_SceneDisplayModel : public QObject
{
    Q_OBJECT

private slots:
    void emptyModel();
    void updateCounters_data();
    void updateCounters();
    void callbackRunsAfterEachUpdate();
    void rootAttachesTheTree();
    void attachedSubtreesFollowTheModel();
    void replacingTheRootDetachesTheOldTree();
    void destroyedModelDetachesItsTree();
    void invalidRootsAreRefused();
    void entryLookups();
    void processStepProviderIndices_data();
    void processStepProviderIndices();
    void toolKeyLookup_data();
    void toolKeyLookup();
};

void tst_SceneDisplayModel::emptyModel()
{
    SceneDisplayModel model;
    QCOMPARE(model.getRootDisplayItem(), nullptr);
    QCOMPARE(model.getActiveContext(), nullptr);
    QCOMPARE(model.getKind6Provider(), nullptr);
    QCOMPARE(model.getKind7Source(), nullptr);
    QCOMPARE(model.getKind7Lookup(), nullptr);
    QCOMPARE(model.getDefaultEntryOwner(), nullptr);
    QCOMPARE(model.getKind6Index(), 0);
    QCOMPARE(model.totalDisplayUpdateCount(), 0);
    QCOMPARE(model.visibilityUpdateCount(), 0);
    QVERIFY(!model.lastDisplayUpdateKind());
    // Updates of an empty model are fine (nothing to draw).
    model.doDisplayUpdate(DisplayUpdate::Attributes);
    model.doVisibilityUpdate();
}

void tst_SceneDisplayModel::updateCounters_data()
{
    QTest::addColumn<QList<int>>("kinds");   // -1: a visibility update
    QTest::addColumn<QList<int>>("perKind"); // counts of kinds 0, 1, 2
    QTest::addColumn<int>("visibility");

    QTest::newRow("none") << QList<int>{} << QList<int>{0, 0, 0} << 0;
    QTest::newRow("one attributes update") << QList<int>{2} << QList<int>{0, 0, 1} << 0;
    QTest::newRow("visibility only") << QList<int>{-1, -1} << QList<int>{0, 0, 0} << 2;
    QTest::newRow("mixed") << QList<int>{0, 2, -1, 2, 1, -1, 2} << QList<int>{1, 1, 3} << 2;
}

void tst_SceneDisplayModel::updateCounters()
{
    QFETCH(QList<int>, kinds);
    QFETCH(QList<int>, perKind);
    QFETCH(int, visibility);

    SceneDisplayModel model;
    for (int kind : kinds) {
        if (kind < 0)
            model.doVisibilityUpdate();
        else
            model.doDisplayUpdate(kind);
    }
    QList<int> counts;
    for (int kind = 0; kind < 3; ++kind)
        counts << model.displayUpdateCount(kind);
    QCOMPARE(counts, perKind);
    QCOMPARE(model.totalDisplayUpdateCount(), perKind[0] + perKind[1] + perKind[2]);
    QCOMPARE(model.visibilityUpdateCount(), visibility);
    QCOMPARE(model.displayUpdateCount(7), 0);

    model.resetUpdateCounts();
    QCOMPARE(model.totalDisplayUpdateCount(), 0);
    QCOMPARE(model.visibilityUpdateCount(), 0);
    QVERIFY(!model.lastDisplayUpdateKind());
}

void tst_SceneDisplayModel::callbackRunsAfterEachUpdate()
{
    SceneDisplayModel model;
    QStringList calls;
    model.setUpdateCallback([&] {
        // The update is counted before the repaint runs.
        calls << QStringLiteral("display=%1 visibility=%2")
                     .arg(model.totalDisplayUpdateCount())
                     .arg(model.visibilityUpdateCount());
    });
    model.doDisplayUpdate(DisplayUpdate::Attributes);
    model.doVisibilityUpdate();
    model.doDisplayUpdate(DisplayUpdate::Full);
    QCOMPARE(calls, (QStringList{"display=1 visibility=0", "display=1 visibility=1", "display=2 visibility=1"}));
    QCOMPARE(model.lastDisplayUpdateKind(), std::optional<int>(DisplayUpdate::Full));

    model.setUpdateCallback({});
    model.doVisibilityUpdate();
    QCOMPARE(calls.size(), 3);
}

void tst_SceneDisplayModel::rootAttachesTheTree()
{
    SceneDisplayModel model;
    auto root = Test::buildTree({"root", {{"a", {{"a1"}}}, {"b"}}});
    QVERIFY(allItemsHaveModel(root, nullptr));
    model.setRootDisplayItem(root);
    QCOMPARE(model.getRootDisplayItem(), std::static_pointer_cast<DisplayItemInterface>(root));
    QCOMPARE(model.rootDisplayItem(), root);
    QVERIFY(allItemsHaveModel(root, &model));
    model.setRootDisplayItem(root); // again: no change
    QVERIFY(allItemsHaveModel(root, &model));
}

void tst_SceneDisplayModel::attachedSubtreesFollowTheModel()
{
    SceneDisplayModel model;
    auto root = Test::buildTree({"root", {{"a"}}});
    model.setRootDisplayItem(root);

    auto subtree = Test::buildTree({"sub", {{"s1", {{"s11"}}}}});
    root->childAt(0)->appendChild(subtree);
    QVERIFY(allItemsHaveModel(subtree, &model));

    root->childAt(0)->removeChild(subtree, false);
    QVERIFY(allItemsHaveModel(subtree, nullptr));
    QVERIFY(allItemsHaveModel(root, &model));
}

void tst_SceneDisplayModel::replacingTheRootDetachesTheOldTree()
{
    SceneDisplayModel model;
    auto first = Test::buildTree({"first", {{"a"}}});
    auto second = Test::buildTree({"second", {{"b"}}});
    model.setRootDisplayItem(first);
    model.setRootDisplayItem(second);
    QVERIFY(allItemsHaveModel(first, nullptr));
    QVERIFY(allItemsHaveModel(second, &model));
    model.setRootDisplayItem(nullptr);
    QCOMPARE(model.getRootDisplayItem(), nullptr);
    QVERIFY(allItemsHaveModel(second, nullptr));
}

void tst_SceneDisplayModel::destroyedModelDetachesItsTree()
{
    auto root = Test::buildTree({"root", {{"a"}}});
    {
        SceneDisplayModel model;
        model.setRootDisplayItem(root);
        QVERIFY(allItemsHaveModel(root, &model));
    }
    QVERIFY(allItemsHaveModel(root, nullptr));
}

void tst_SceneDisplayModel::invalidRootsAreRefused()
{
    SceneDisplayModel model;
    SceneDisplayModel other;
    auto root = Test::buildTree({"root", {{"a"}}});
    QVERIFY_EXCEPTION_THROWN(model.setRootDisplayItem(root->childAt(0)), std::invalid_argument);
    other.setRootDisplayItem(root);
    QVERIFY_EXCEPTION_THROWN(model.setRootDisplayItem(root), std::invalid_argument);
    QCOMPARE(model.getRootDisplayItem(), nullptr);
    QVERIFY(allItemsHaveModel(root, &other));
}

void tst_SceneDisplayModel::entryLookups()
{
    SceneDisplayModel model;
    auto root = Test::buildTree({"root", {{"OP10"}, {"OP20"}, {"Blank"}}});
    model.setRootDisplayItem(root);

    auto context = std::make_shared<SceneContext>(ContextKind::ProcessStep, "OP20");
    model.setActiveContext(context);
    QCOMPARE(model.getActiveContext()->getContextKind(), 6);
    QCOMPARE(context->name(), std::string("OP20"));

    auto steps = std::make_shared<ProcessStepProvider>();
    steps->appendStep(root->childAt(0));
    steps->appendStep(root->childAt(1));
    model.setKind6Provider(steps);
    model.setKind6Index(1);
    QCOMPARE(model.getKind6Provider()->getDisplayItemAt(model.getKind6Index())->getDisplayName(), std::string("OP20"));

    model.setKind7Source(std::make_shared<ToolKeySource>("Blank"));
    model.setKind7Lookup(std::make_shared<ToolKeyLookup>(root, std::string()));
    QCOMPARE(model.getKind7Lookup()->findDisplayItem(model.getKind7Source()->getKey()),
             std::static_pointer_cast<DisplayItemInterface>(root->childAt(2)));

    auto owner = std::make_shared<FixedEntryOwner>(root->childAt(2));
    model.setDefaultEntryOwner(owner);
    QCOMPARE(model.getDefaultEntryOwner()->getEntryDisplayItem(),
             std::static_pointer_cast<DisplayItemInterface>(root->childAt(2)));
    // Weak: a removed and dropped entry gives an empty reference.
    root->removeChild(root->childAt(2), false);
    QCOMPARE(model.getDefaultEntryOwner()->getEntryDisplayItem(), nullptr);
    owner->setEntryDisplayItem(root);
    QCOMPARE(model.getDefaultEntryOwner()->getEntryDisplayItem(), std::static_pointer_cast<DisplayItemInterface>(root));
}

void tst_SceneDisplayModel::processStepProviderIndices_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("expected"); // empty: no item
    QTest::newRow("first") << 0 << "OP10";
    QTest::newRow("last") << 2 << "OP30";
    QTest::newRow("negative") << -1 << "";
    QTest::newRow("past the end") << 3 << "";
    QTest::newRow("gone item") << 1 << "";
}

void tst_SceneDisplayModel::processStepProviderIndices()
{
    QFETCH(int, index);
    QFETCH(QString, expected);
    auto root = Test::buildTree({"root", {{"OP10"}, {"OP30"}}});
    ProcessStepProvider steps;
    steps.appendStep(root->childAt(0));
    steps.appendStep(std::make_shared<DisplayItem>("OP20, gone at once"));
    steps.appendStep(root->childAt(1));
    QCOMPARE(steps.stepCount(), std::size_t(3));
    const auto item = steps.getDisplayItemAt(index);
    QCOMPARE(item ? QString::fromStdString(item->getDisplayName()) : QString(), expected);
}

void tst_SceneDisplayModel::toolKeyLookup_data()
{
    QTest::addColumn<QString>("keyProperty");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("expected");
    QTest::newRow("by property") << "tool id"
                                 << "OP10-PU"
                                 << "Punch";
    QTest::newRow("first match in pre-order") << "tool id"
                                              << "OP10-UD"
                                              << "Upper die";
    QTest::newRow("by property, no match") << "tool id"
                                           << "Punch"
                                           << "";
    QTest::newRow("by name") << ""
                             << "Punch"
                             << "Punch";
    QTest::newRow("by name, no match") << ""
                                       << "OP10-PU"
                                       << "";
}

void tst_SceneDisplayModel::toolKeyLookup()
{
    QFETCH(QString, keyProperty);
    QFETCH(QString, key);
    QFETCH(QString, expected);
    auto root = Test::buildTree({"root", {{"OP10", {{"Upper die"}, {"Punch"}}}, {"OP40", {{"Upper die 2"}}}}});
    root->findByDisplayName("Upper die")->setBusinessProperty("tool id", "OP10-UD");
    root->findByDisplayName("Punch")->setBusinessProperty("tool id", "OP10-PU");
    root->findByDisplayName("Upper die 2")->setBusinessProperty("tool id", "OP10-UD");

    ToolKeyLookup lookup(root, keyProperty.toStdString());
    const auto item = lookup.findDisplayItem(key.toStdString());
    QCOMPARE(item ? QString::fromStdString(item->getDisplayName()) : QString(), expected);
}

QTEST_GUILESS_MAIN(tst_SceneDisplayModel)
#include "tst_scenedisplaymodel.moc"
