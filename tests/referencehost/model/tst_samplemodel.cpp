#include "TestTree.h"

#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/model/ShellItem.h>

#include <hostcontract/EditorDisplayModel.h>

#include <QtTest>

#include <map>
#include <set>

using namespace Brennvik;

namespace {

std::map<std::string, int> countTypes(const DisplayItemList& items)
{
    std::map<std::string, int> counts;
    for (const auto& item : items)
        ++counts[std::dynamic_pointer_cast<DisplayItem>(item)->typeName()];
    return counts;
}

// Every geometry module lists items that live in its own "Geometry" group child.
bool geometryModulesAreWellFormed(const DisplayItemList& items, int& modules)
{
    modules = 0;
    for (const auto& item : items) {
        const auto module = std::dynamic_pointer_cast<GeometryModuleItem>(item);
        if (!module)
            continue;
        ++modules;
        std::shared_ptr<DisplayItem> group;
        for (const auto& child : module->children()) {
            if (child->getDisplayName() == "Geometry")
                group = child;
        }
        if (!group || module->getGeometryDisplayItems().empty())
            return false;
        for (const auto& geometry : module->getGeometryDisplayItems()) {
            if (geometry->getParent() != group.get())
                return false;
        }
    }
    return true;
}

} // namespace

class tst_SampleModel : public QObject
{
    Q_OBJECT

private slots:
    void sampleSanity();
    void sampleInitialEntries();
    void sampleEditorAndLabels();
    void syntheticSizes_data();
    void syntheticSizes();
    void syntheticIsReproducible();
};

void tst_SampleModel::sampleSanity()
{
    const auto viewModel = buildSampleViewModel();
    const auto root = viewModel->displayModel().rootDisplayItem();
    QVERIFY(root);
    const DisplayItemList items = Test::preOrder(root);
    QVERIFY2(items.size() >= 200 && items.size() <= 600, std::to_string(items.size()).c_str());
    QCOMPARE(root->getNumberOfDisplayItems(), std::uint64_t(items.size()));

    const auto types = countTypes(items);
    QVERIFY(types.at("ShellItem") >= 10);
    QVERIFY(types.at("LabelableItem") >= 10);
    QVERIFY(types.at("GeometryModuleItem") >= 2);

    int modules = 0;
    QVERIFY(geometryModulesAreWellFormed(items, modules));
    QCOMPARE(modules, types.at("GeometryModuleItem"));
    QVERIFY(Test::findItem(root, "Geometry"));

    std::set<std::string> shellTypes;
    int hidden = 0;
    int selected = 0;
    int notSelectable = 0;
    for (const auto& item : items) {
        QCOMPARE(item->getDisplayModel(), viewModel->getDisplayModel());
        if (const auto shell = std::dynamic_pointer_cast<ShellDisplayItem>(item))
            shellTypes.insert(shell->getShellType());
        hidden += item->isVisible() ? 0 : 1;
        selected += item->isSelected() ? 1 : 0;
        notSelectable += item->isSelectable() ? 0 : 1;
        PropertyList business;
        PropertyList display;
        item->getProperties(business, display);
        QVERIFY2(display.size() >= 3, item->getDescription().c_str()); // every item has a display property of its own
    }
    QCOMPARE(shellTypes, (std::set<std::string>{"Blank", "Tool"}));
    QVERIFY(hidden > 0);
    QVERIFY(selected > 0);
    QVERIFY(notSelectable > 0);
    QCOMPARE(Test::findItem(root, "Blank")->getDescription(),
             std::string("ShellItem \"Blank\" [Blank: DC04 1.20 mm] at Forming simulation/Part/Blank"));
}

void tst_SampleModel::sampleInitialEntries()
{
    const auto viewModel = buildSampleViewModel();
    const DisplayModel& model = *viewModel->getDisplayModel();
    const auto ids = Test::preOrder(model.getRootDisplayItem());
    const auto inTree = [&ids](const std::shared_ptr<DisplayItemInterface>& item) {
        return std::find(ids.begin(), ids.end(), item) != ids.end();
    };

    QVERIFY(model.getActiveContext());
    QCOMPARE(model.getActiveContext()->getContextKind(), ContextKind::ProcessStep);
    QVERIFY(model.getKind6Provider());
    const auto step = model.getKind6Provider()->getDisplayItemAt(model.getKind6Index());
    QVERIFY(step && inTree(step));
    QCOMPARE(step->getDisplayName(), std::string("OP20 Trimming"));

    QVERIFY(model.getKind7Source() && model.getKind7Lookup());
    const auto tool = model.getKind7Lookup()->findDisplayItem(model.getKind7Source()->getKey());
    QVERIFY(tool && inTree(tool));
    QCOMPARE(tool->getDisplayName(), std::string("Punch"));

    QVERIFY(model.getDefaultEntryOwner());
    const auto entry = model.getDefaultEntryOwner()->getEntryDisplayItem();
    QVERIFY(entry && inTree(entry));
    QCOMPARE(entry->getDisplayName(), std::string("Blank"));
}

void tst_SampleModel::sampleEditorAndLabels()
{
    const auto viewModel = buildSampleViewModel();
    const EditorDisplayModel* editor = viewModel->getEditorDisplayModel();
    QVERIFY(editor);
    QCOMPARE(editor->getAllEditModelPrimitives().size(), std::size_t(5));
    QCOMPARE(editor->getAllEditModelPrimitives().front()->getDisplayName(), std::string("Pick point 1"));
    int hidden = 0;
    int unselectable = 0;
    for (const auto& primitive : editor->getAllEditModelPrimitives()) {
        hidden += primitive->isVisible() ? 0 : 1;
        unselectable += primitive->isSelectable() ? 0 : 1;
        PropertyList properties;
        primitive->getProperties(properties);
        QVERIFY(!properties.empty());
    }
    QCOMPARE(hidden, 1);
    QCOMPARE(unselectable, 1);

    const auto labels = viewModel->getLabelDisplayModel()->getRootDisplayItem();
    QVERIFY(labels);
    QVERIFY(!labels->getChildren().empty());
    for (const auto& label : labels->getChildren())
        QVERIFY(std::dynamic_pointer_cast<LabelableDisplayItemInterface>(label));
}

void tst_SampleModel::syntheticSizes_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<unsigned>("seed");
    QTest::newRow("root only") << 1 << 1u;
    QTest::newRow("zero asks for the root") << 0 << 1u;
    QTest::newRow("tiny") << 3 << 5u;
    QTest::newRow("small") << 50 << 2u;
    QTest::newRow("thousand") << 1000 << 3u;
    QTest::newRow("ten thousand") << 10000 << 4u;
}

void tst_SampleModel::syntheticSizes()
{
    QFETCH(int, count);
    QFETCH(unsigned, seed);
    const auto viewModel = buildSyntheticViewModel(static_cast<std::size_t>(count), seed);
    const auto root = viewModel->displayModel().rootDisplayItem();
    const DisplayItemList items = Test::preOrder(root);
    QCOMPARE(items.size(), std::size_t(std::max(count, 1)));
    QCOMPARE(root->getNumberOfDisplayItems(), std::uint64_t(items.size()));

    int modules = 0;
    QVERIFY(geometryModulesAreWellFormed(items, modules));
    if (count >= 1000) {
        QVERIFY(modules > 0);
        const auto types = countTypes(items);
        QVERIFY(types.at("ShellItem") > 0);
        QVERIFY(types.at("LabelableItem") > 0);
        // Fan-out about 10: the items that have children have 5 to 15 (the last may have fewer),
        // geometry groups aside.
        std::size_t parents = 0;
        std::size_t children = 0;
        for (const auto& item : items) {
            const auto n = item->getChildren().size();
            if (n > 0 && item->getDisplayName() != "Geometry" && !std::dynamic_pointer_cast<GeometryModuleItem>(item)) {
                ++parents;
                children += n;
            }
        }
        const double fanOut = double(children) / double(parents);
        QVERIFY2(fanOut >= 7.0 && fanOut <= 13.0, std::to_string(fanOut).c_str());
    }
    if (count > 1) {
        QVERIFY(viewModel->displayModel().getDefaultEntryOwner()->getEntryDisplayItem());
        QCOMPARE(viewModel->getEditorDisplayModel(), nullptr);
    }
}

void tst_SampleModel::syntheticIsReproducible()
{
    const auto first = buildSyntheticViewModel(500, 42);
    const auto again = buildSyntheticViewModel(500, 42);
    const auto other = buildSyntheticViewModel(500, 43);
    const QStringList lines = Test::treeLines(first->displayModel().rootDisplayItem());
    QCOMPARE(Test::treeLines(again->displayModel().rootDisplayItem()), lines);
    QVERIFY(Test::treeLines(other->displayModel().rootDisplayItem()) != lines);
}

QTEST_GUILESS_MAIN(tst_SampleModel)
#include "tst_samplemodel.moc"
