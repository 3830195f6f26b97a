#include <hostcontract/EditorDisplayModel.h>

#include <QtTest>

#include <stdexcept>

using namespace Brennvik;

namespace {

class CountingUpdater : public EditorDisplayUpdateViewsInterface
{
public:
    void updateViews() override { ++calls; }
    int calls = 0;
};

} // namespace

class tst_EditorDisplayModel : public QObject
{
    Q_OBJECT

private slots:
    void primitivesRefreshThroughTheirModel();
    void primitiveState_data();
    void primitiveState();
    void primitiveProperties();
    void appendAndRemove();
    void updateViewsCountsAndCallsBack();
    void primitiveNeedsAViewUpdater();
};

void tst_EditorDisplayModel::primitivesRefreshThroughTheirModel()
{
    EditorDisplayModel model;
    const auto point = model.addEditModelPrimitive("Pick point 1");
    QCOMPARE(model.getAllEditModelPrimitives().size(), std::size_t(1));
    QCOMPARE(model.getAllEditModelPrimitives().front(), point);
    QCOMPARE(point->getDisplayName(), std::string("Pick point 1"));
    QCOMPARE(point->getViewUpdater(), static_cast<EditorDisplayUpdateViewsInterface*>(&model));

    point->getViewUpdater()->updateViews();
    QCOMPARE(model.viewUpdateCount(), 1);
}

void tst_EditorDisplayModel::primitiveState_data()
{
    QTest::addColumn<bool>("selectable");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("visible");
    QTest::newRow("defaults flipped") << false << true << false;
    QTest::newRow("defaults kept") << true << false << true;
    QTest::newRow("selected and hidden") << true << true << false;
}

void tst_EditorDisplayModel::primitiveState()
{
    QFETCH(bool, selectable);
    QFETCH(bool, selected);
    QFETCH(bool, visible);
    EditorDisplayModel model;
    const auto primitive = model.addEditModelPrimitive("Guide line");
    QVERIFY(primitive->isSelectable());
    QVERIFY(!primitive->isSelected());
    QVERIFY(primitive->isVisible());

    primitive->setSelectable(selectable);
    primitive->setIsSelected(selected);
    primitive->setIsVisible(visible);
    QCOMPARE(primitive->isSelectable(), selectable);
    QCOMPARE(primitive->isSelected(), selected);
    QCOMPARE(primitive->isVisible(), visible);
    // Changing state does not refresh the views by itself: the caller does, once.
    QCOMPARE(model.viewUpdateCount(), 0);
}

void tst_EditorDisplayModel::primitiveProperties()
{
    EditorDisplayModel model;
    const auto plane = model.addEditModelPrimitive("Cutting plane");
    PropertyList properties{{"before", "x"}};
    plane->getProperties(properties);
    QCOMPARE(properties.size(), std::size_t(1));

    plane->setProperties({{"normal", "(1, 0, 0)"}, {"offset", "250.0 mm"}});
    plane->getProperties(properties);
    QCOMPARE(properties, (PropertyList{{"before", "x"}, {"normal", "(1, 0, 0)"}, {"offset", "250.0 mm"}}));
}

void tst_EditorDisplayModel::appendAndRemove()
{
    EditorDisplayModel model;
    CountingUpdater otherUpdater;
    const auto first = model.addEditModelPrimitive("first");
    const auto foreign = std::make_shared<EditorDisplayItem>("foreign", &otherUpdater);
    model.appendEditModelPrimitive(foreign);
    QVERIFY_EXCEPTION_THROWN(model.appendEditModelPrimitive(nullptr), std::invalid_argument);
    QCOMPARE(model.getAllEditModelPrimitives(), (std::vector<std::shared_ptr<EditorDisplayItem>>{first, foreign}));
    // An appended primitive keeps its own view updater.
    foreign->getViewUpdater()->updateViews();
    QCOMPARE(otherUpdater.calls, 1);
    QCOMPARE(model.viewUpdateCount(), 0);

    QVERIFY(model.removeEditModelPrimitive(first));
    QVERIFY(!model.removeEditModelPrimitive(first));
    QVERIFY(!model.removeEditModelPrimitive(nullptr));
    QCOMPARE(model.getAllEditModelPrimitives().size(), std::size_t(1));
    model.clear();
    QVERIFY(model.getAllEditModelPrimitives().empty());
}

void tst_EditorDisplayModel::updateViewsCountsAndCallsBack()
{
    EditorDisplayModel model;
    QList<int> seen;
    model.setViewsUpdatedCallback([&] { seen << model.viewUpdateCount(); });
    model.updateViews();
    model.updateViews();
    QCOMPARE(seen, (QList<int>{1, 2}));
    model.setViewsUpdatedCallback({});
    model.updateViews();
    QCOMPARE(model.viewUpdateCount(), 3);
    QCOMPARE(seen.size(), 2);
}

void tst_EditorDisplayModel::primitiveNeedsAViewUpdater()
{
    QVERIFY_EXCEPTION_THROWN(EditorDisplayItem("orphan", nullptr), std::invalid_argument);
}

QTEST_GUILESS_MAIN(tst_EditorDisplayModel)
#include "tst_editordisplaymodel.moc"
