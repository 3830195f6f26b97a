#include "RecordingObserver.h"
#include "TestTree.h"

#include <referencehost/model/FixedEntryOwner.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/ProcessStepProvider.h>
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneContext.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/model/ShellItem.h>
#include <referencehost/model/ToolKeyLookup.h>
#include <referencehost/model/ToolKeySource.h>

#include <hostcontract/EditorDisplayModel.h>

#include <QtTest>

#include <algorithm>
#include <set>

using namespace Brennvik;

Q_DECLARE_METATYPE(CloneDefect::Kind)

namespace {

std::set<const DisplayItemInterface*> identities(const std::shared_ptr<DisplayItemInterface>& root)
{
    std::set<const DisplayItemInterface*> ids;
    for (const auto& item : Test::preOrder(root))
        ids.insert(item.get());
    return ids;
}

std::size_t sharedCount(const std::shared_ptr<DisplayItemInterface>& a, const std::shared_ptr<DisplayItemInterface>& b)
{
    const auto idsA = identities(a);
    std::size_t shared = 0;
    for (const auto* id : identities(b))
        shared += idsA.count(id);
    return shared;
}

std::shared_ptr<DisplayItem> rootOf(const SceneViewModel& viewModel)
{
    return viewModel.displayModel().rootDisplayItem();
}

std::shared_ptr<DisplayItem> rootOf(const std::shared_ptr<ViewModelInterface>& viewModel)
{
    return std::dynamic_pointer_cast<DisplayItem>(viewModel->getDisplayModel()->getRootDisplayItem());
}

// A small view model with every item type; the targets of the defect tests.
std::shared_ptr<SceneViewModel> buildDefectViewModel()
{
    auto viewModel = std::make_shared<SceneViewModel>();
    auto root = std::make_shared<DisplayItem>("root");
    root->setDisplayProperty("color", "grey");

    auto die = std::make_shared<ShellItem>("Upper die", "Tool", "Upper die");
    die->setBusinessProperty("tool id", "UD");
    die->setDisplayProperty("color", "orange");
    auto face1 = std::make_shared<DisplayItem>("Face 1");
    face1->setDisplayProperty("color", "orange");
    auto face2 = std::make_shared<DisplayItem>("Face 2");
    face2->setDisplayProperty("color", "orange");
    face2->setVisible(false);
    die->appendChildren({face1, face2});

    auto module = std::make_shared<GeometryModuleItem>("Module");
    auto geometry = std::make_shared<DisplayItem>("Geometry");
    auto surface1 = std::make_shared<DisplayItem>("Surface 1");
    auto surface2 = std::make_shared<DisplayItem>("Surface 2");
    geometry->appendChildren({surface1, surface2});
    module->appendChild(geometry);
    module->addGeometryDisplayItem(surface1);
    module->addGeometryDisplayItem(surface2);

    auto point = std::make_shared<LabelableItem>("MP 1", "t = 1.1 mm", true);
    point->setDisplayProperty("marker", "sphere");

    auto group = std::make_shared<DisplayItem>("Group");
    group->setSelected(true);
    group->setSelectable(false);
    group->setDisplayProperty("render mode", "group");
    auto leaf1 = std::make_shared<DisplayItem>("Leaf 1");
    leaf1->setBusinessProperty("id", "L1");
    leaf1->setDisplayProperty("color", "red");
    leaf1->setDisplayProperty("line width", "2");
    auto leaf2 = std::make_shared<DisplayItem>("Leaf 2");
    leaf2->setDisplayProperty("color", "blue");
    group->appendChildren({leaf1, leaf2});

    root->appendChildren({die, module, point, group});
    viewModel->displayModel().setRootDisplayItem(root);

    auto labels = std::make_shared<DisplayItem>("Plot labels");
    labels->appendChild(std::make_shared<LabelableItem>("Plot label", "FLD", true));
    viewModel->labelDisplayModel().setRootDisplayItem(labels);
    return viewModel;
}

// A copy of \a item's subtree made through the host's public copy operation.
std::shared_ptr<DisplayItem> copySubtree(const DisplayItem& item)
{
    auto copy = item.copyWithoutChildren();
    for (const auto& child : item.children())
        copy->appendChild(copySubtree(*child));
    return copy;
}

// The documented effect of each defect, made on a faithful clone through the
// host's ordinary API.
void applyByHand(CloneDefect::Kind kind, const std::shared_ptr<DisplayItem>& target)
{
    switch (kind) {
    case CloneDefect::Kind::DropChild:
        target->parentItem()->removeChild(target, false);
        break;
    case CloneDefect::Kind::AddChild:
        target->appendChild(std::make_shared<DisplayItem>("Unexpected child"));
        break;
    case CloneDefect::Kind::ShareChild:
        break; // same content; only identity differs
    case CloneDefect::Kind::ChangeChildType: {
        std::shared_ptr<DisplayItem> replacement;
        if (target->typeName() == "DisplayItem")
            replacement = std::make_shared<LabelableItem>(target->getDisplayName(), std::string(), false);
        else
            replacement = std::make_shared<DisplayItem>(target->getDisplayName());
        replacement->setVisible(target->isVisible());
        replacement->setSelected(target->isSelected());
        replacement->setSelectionAllowed(target->isSelectionAllowed());
        replacement->setSelectable(target->isSelectable());
        for (const auto& [name, value] : target->businessProperties())
            replacement->setBusinessProperty(name, value);
        for (const auto& [name, value] : target->displayProperties())
            replacement->setDisplayProperty(name, value);
        replacement->appendChildren(std::vector<std::shared_ptr<DisplayItem>>(target->children()));
        DisplayItem* parent = target->parentItem();
        const int index = parent->indexOfChild(target.get());
        parent->removeChild(target, false);
        parent->insertChild(static_cast<std::size_t>(index), replacement);
        break;
    }
    case CloneDefect::Kind::FlipVisibility:
        target->setVisible(!target->isVisible());
        break;
    case CloneDefect::Kind::ChangePropertyValue: {
        const Property first = target->displayProperties().front();
        target->setDisplayProperty(first.first, first.second + " (cloned)");
        break;
    }
    case CloneDefect::Kind::RepeatChild: {
        DisplayItem* parent = target->parentItem();
        const int index = parent->indexOfChild(target.get());
        parent->insertChild(static_cast<std::size_t>(index + 1), copySubtree(*target));
        break;
    }
    case CloneDefect::Kind::DropGeometryEntry: {
        const auto module = std::dynamic_pointer_cast<GeometryModuleItem>(target);
        QVERIFY(module);
        const DisplayItemList entries = module->getGeometryDisplayItems();
        QVERIFY(!entries.empty());
        QVERIFY(module->removeGeometryDisplayItem(entries.back().get()));
        break;
    }
    }
}

} // namespace

class tst_SceneViewModel : public QObject
{
    Q_OBJECT

private slots:
    void emptyViewModel();
    void defaultCloneIsDeepAndEqual_data();
    void defaultCloneIsDeepAndEqual();
    void cloneRepointsEntryLookups();
    void cloneCopiesEditorAndLabels();
    void cloneHasNoObserversViewOrDefects();
    void eachDefectMakesExactlyItsDifference_data();
    void eachDefectMakesExactlyItsDifference();
    void defectsCombine();
    void repeatedChildLeavesReferencesOnFirstCopy();
    void unappliedDefectsAreReported_data();
    void unappliedDefectsAreReported();
    void defectNames_data();
    void defectNames();
    void defectFromCommandLine_data();
    void defectFromCommandLine();
};

void tst_SceneViewModel::emptyViewModel()
{
    SceneViewModel viewModel;
    QVERIFY(viewModel.getDisplayModel());
    QVERIFY(viewModel.getLabelDisplayModel());
    QVERIFY(viewModel.getDisplayModel() != viewModel.getLabelDisplayModel());
    QCOMPARE(viewModel.getEditorDisplayModel(), nullptr);
    QCOMPARE(viewModel.getView(), nullptr);
    QCOMPARE(viewModel.getDisplayModel()->getRootDisplayItem(), nullptr);

    const auto clone = viewModel.cloneViewModel(false);
    QVERIFY(clone);
    QVERIFY(clone.get() != &viewModel);
    QCOMPARE(clone->getDisplayModel()->getRootDisplayItem(), nullptr);
    QCOMPARE(clone->getEditorDisplayModel(), nullptr);
    QCOMPARE(viewModel.cloneCount(), 1);

    EditorDisplayModel& editor = viewModel.ensureEditorDisplayModel();
    QCOMPARE(viewModel.getEditorDisplayModel(), &editor);
    QCOMPARE(&viewModel.ensureEditorDisplayModel(), &editor);
    viewModel.removeEditorDisplayModel();
    QCOMPARE(viewModel.getEditorDisplayModel(), nullptr);
}

void tst_SceneViewModel::defaultCloneIsDeepAndEqual_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<bool>("shareGeometry");
    QTest::newRow("sample") << "sample" << false;
    QTest::newRow("sample, geometry shared") << "sample" << true;
    QTest::newRow("every item type") << "types" << false;
    QTest::newRow("synthetic") << "synthetic" << false;
}

void tst_SceneViewModel::defaultCloneIsDeepAndEqual()
{
    QFETCH(QString, model);
    QFETCH(bool, shareGeometry);
    const auto viewModel = model == "sample" ? buildSampleViewModel()
        : model == "types"                   ? buildDefectViewModel()
                                             : buildSyntheticViewModel(2000, 11);
    const auto clone = viewModel->cloneViewModel(shareGeometry);
    QVERIFY(clone);

    const auto root = rootOf(*viewModel);
    const auto cloneRoot = rootOf(clone);
    QVERIFY(cloneRoot);
    QVERIFY(cloneRoot != root);

    // No object of the original in the clone, for both trees.
    QCOMPARE(sharedCount(root, cloneRoot), std::size_t(0));
    const auto labels = viewModel->getLabelDisplayModel()->getRootDisplayItem();
    const auto cloneLabels = clone->getLabelDisplayModel()->getRootDisplayItem();
    QCOMPARE(sharedCount(labels, cloneLabels), std::size_t(0));
    QCOMPARE(sharedCount(root, cloneLabels), std::size_t(0));

    // Equal in structure, types, names, state and properties (pointers aside).
    QCOMPARE(Test::treeLines(cloneRoot), Test::treeLines(root));
    QCOMPARE(Test::treeLines(cloneLabels), Test::treeLines(labels));

    // The copy is a tree of its own: parents and display model inside the copy.
    const auto cloneIds = identities(cloneRoot);
    for (const auto& item : Test::preOrder(cloneRoot)) {
        QCOMPARE(item->getDisplayModel(), clone->getDisplayModel());
        for (const auto& child : item->getChildren())
            QCOMPARE(child->getParent(), item.get());
        if (const auto module = std::dynamic_pointer_cast<GeometryModuleDisplayItemInterface>(item)) {
            for (const auto& geometry : module->getGeometryDisplayItems())
                QVERIFY(cloneIds.count(geometry.get()) == 1);
        }
    }
    QCOMPARE(cloneRoot->getParent(), nullptr);
    // The original still belongs to its own model.
    for (const auto& item : Test::preOrder(root))
        QCOMPARE(item->getDisplayModel(), viewModel->getDisplayModel());
}

void tst_SceneViewModel::cloneRepointsEntryLookups()
{
    const auto viewModel = buildSampleViewModel();
    const auto clone = viewModel->cloneViewModel(false);
    const DisplayModel& original = *viewModel->getDisplayModel();
    const DisplayModel& copy = *clone->getDisplayModel();
    const auto cloneIds = identities(copy.getRootDisplayItem());

    QVERIFY(copy.getActiveContext());
    QVERIFY(copy.getActiveContext() != original.getActiveContext());
    QCOMPARE(copy.getActiveContext()->getContextKind(), original.getActiveContext()->getContextKind());

    QVERIFY(copy.getKind6Provider() && copy.getKind6Provider() != original.getKind6Provider());
    QCOMPARE(copy.getKind6Index(), original.getKind6Index());
    const auto step = copy.getKind6Provider()->getDisplayItemAt(copy.getKind6Index());
    QVERIFY(step);
    QCOMPARE(cloneIds.count(step.get()), std::size_t(1));
    QCOMPARE(step->getDisplayName(),
             original.getKind6Provider()->getDisplayItemAt(original.getKind6Index())->getDisplayName());

    QVERIFY(copy.getKind7Source() && copy.getKind7Source() != original.getKind7Source());
    QCOMPARE(copy.getKind7Source()->getKey(), original.getKind7Source()->getKey());
    QVERIFY(copy.getKind7Lookup() && copy.getKind7Lookup() != original.getKind7Lookup());
    const auto tool = copy.getKind7Lookup()->findDisplayItem(copy.getKind7Source()->getKey());
    QVERIFY(tool);
    QCOMPARE(cloneIds.count(tool.get()), std::size_t(1));
    QCOMPARE(tool->getDisplayName(),
             original.getKind7Lookup()->findDisplayItem(original.getKind7Source()->getKey())->getDisplayName());

    QVERIFY(copy.getDefaultEntryOwner() && copy.getDefaultEntryOwner() != original.getDefaultEntryOwner());
    const auto entry = copy.getDefaultEntryOwner()->getEntryDisplayItem();
    QVERIFY(entry);
    QCOMPARE(cloneIds.count(entry.get()), std::size_t(1));
    QCOMPARE(entry->getDisplayName(), original.getDefaultEntryOwner()->getEntryDisplayItem()->getDisplayName());

    // Lookups of types the host does not know are shared as they are.
    class ForeignContext : public ActiveContext
    {
    public:
        int getContextKind() const override { return 3; }
    };
    auto foreign = std::make_shared<ForeignContext>();
    viewModel->displayModel().setActiveContext(foreign);
    const auto secondClone = viewModel->cloneViewModel(false);
    QCOMPARE(secondClone->getDisplayModel()->getActiveContext(), std::static_pointer_cast<ActiveContext>(foreign));
}

void tst_SceneViewModel::cloneCopiesEditorAndLabels()
{
    const auto viewModel = buildSampleViewModel();
    const auto clone = viewModel->cloneViewModel(false);
    const EditorDisplayModel* editor = viewModel->getEditorDisplayModel();
    const EditorDisplayModel* cloneEditor = clone->getEditorDisplayModel();
    QVERIFY(editor);
    QVERIFY(cloneEditor);
    QVERIFY(editor != cloneEditor);
    const auto& primitives = editor->getAllEditModelPrimitives();
    const auto& clonePrimitives = cloneEditor->getAllEditModelPrimitives();
    QCOMPARE(clonePrimitives.size(), primitives.size());
    for (std::size_t i = 0; i < primitives.size(); ++i) {
        QVERIFY(clonePrimitives[i] != primitives[i]);
        QCOMPARE(clonePrimitives[i]->getDisplayName(), primitives[i]->getDisplayName());
        QCOMPARE(clonePrimitives[i]->isSelectable(), primitives[i]->isSelectable());
        QCOMPARE(clonePrimitives[i]->isSelected(), primitives[i]->isSelected());
        QCOMPARE(clonePrimitives[i]->isVisible(), primitives[i]->isVisible());
        PropertyList properties;
        PropertyList cloneProperties;
        primitives[i]->getProperties(properties);
        clonePrimitives[i]->getProperties(cloneProperties);
        QCOMPARE(cloneProperties, properties);
        QCOMPARE(clonePrimitives[i]->getViewUpdater(),
                 static_cast<EditorDisplayUpdateViewsInterface*>(const_cast<EditorDisplayModel*>(cloneEditor)));
    }
    // The clone's primitives refresh the clone's views only.
    clonePrimitives.front()->getViewUpdater()->updateViews();
    QCOMPARE(cloneEditor->viewUpdateCount(), 1);
    QCOMPARE(editor->viewUpdateCount(), 0);

    QVERIFY(clone->getLabelDisplayModel() != viewModel->getLabelDisplayModel());
    for (const auto& item : Test::preOrder(clone->getLabelDisplayModel()->getRootDisplayItem()))
        QCOMPARE(item->getDisplayModel(), clone->getLabelDisplayModel());
}

void tst_SceneViewModel::cloneHasNoObserversViewOrDefects()
{
    const auto viewModel = buildDefectViewModel();
    const auto root = rootOf(*viewModel);
    Test::RecordingObserver observer;
    observer.registerToDisplayItem(root);
    viewModel->setCloneDefects({CloneDefect{CloneDefect::Kind::FlipVisibility, "Leaf 1", {}, {}}});

    const auto clone = viewModel->cloneSceneViewModel(false);
    QCOMPARE(rootOf(*clone)->observerCount(), std::size_t(0));
    QCOMPARE(root->observerCount(), std::size_t(1));
    QCOMPARE(observer.total(), 0); // cloning changes nothing in the original
    QCOMPARE(clone->getView(), nullptr);
    QVERIFY(clone->cloneDefects().empty());
    QCOMPARE(clone->displayModel().totalDisplayUpdateCount(), 0);

    // A clone of the clone is faithful to the clone.
    const auto second = clone->cloneSceneViewModel(false);
    QCOMPARE(Test::treeLines(rootOf(*second)), Test::treeLines(rootOf(*clone)));
    QCOMPARE(viewModel->cloneCount(), 1);
    QCOMPARE(clone->cloneCount(), 1);
}

void tst_SceneViewModel::eachDefectMakesExactlyItsDifference_data()
{
    QTest::addColumn<CloneDefect::Kind>("kind");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("sharedItems");

    using K = CloneDefect::Kind;
    QTest::newRow("drop a leaf") << K::DropChild << "Leaf 1" << 0;
    QTest::newRow("drop a subtree") << K::DropChild << "Upper die" << 0;
    QTest::newRow("add to a group") << K::AddChild << "Group" << 0;
    QTest::newRow("add to a leaf") << K::AddChild << "Face 2" << 0;
    QTest::newRow("add to the root") << K::AddChild << "root" << 0;
    QTest::newRow("share a subtree") << K::ShareChild << "Upper die" << 3;
    QTest::newRow("share a leaf") << K::ShareChild << "Leaf 2" << 1;
    QTest::newRow("plain item to labelable") << K::ChangeChildType << "Leaf 1" << 0;
    QTest::newRow("shell to plain item") << K::ChangeChildType << "Upper die" << 0;
    QTest::newRow("labelable to plain item") << K::ChangeChildType << "MP 1" << 0;
    QTest::newRow("hide a group") << K::FlipVisibility << "Group" << 0;
    QTest::newRow("show a hidden leaf") << K::FlipVisibility << "Face 2" << 0;
    QTest::newRow("property of a leaf") << K::ChangePropertyValue << "Leaf 1" << 0;
    QTest::newRow("property of a shell") << K::ChangePropertyValue << "Upper die" << 0;
    QTest::newRow("repeat a subtree") << K::RepeatChild << "Group" << 0;
    QTest::newRow("repeat the last leaf") << K::RepeatChild << "Leaf 2" << 0;
    QTest::newRow("repeat a geometry module") << K::RepeatChild << "Module" << 0;
    QTest::newRow("drop a geometry entry") << K::DropGeometryEntry << "Module" << 0;
}

void tst_SceneViewModel::eachDefectMakesExactlyItsDifference()
{
    QFETCH(CloneDefect::Kind, kind);
    QFETCH(QString, target);
    QFETCH(int, sharedItems);

    const auto viewModel = buildDefectViewModel();
    const QStringList originalLines = Test::treeLines(rootOf(*viewModel));
    const auto faithful = viewModel->cloneSceneViewModel(false);
    viewModel->setCloneDefects({CloneDefect{kind, target.toStdString(), {}, {}}});
    const auto defective = viewModel->cloneSceneViewModel(false);
    QVERIFY(viewModel->lastCloneUnappliedDefects().empty());

    const auto root = rootOf(*viewModel);
    const auto defectiveRoot = rootOf(*defective);

    // Expected: the faithful clone with this one change made by hand.
    const auto expected = rootOf(*faithful);
    applyByHand(kind, Test::findItem(expected, target.toStdString()));
    QCOMPARE(Test::treeLines(defectiveRoot), Test::treeLines(expected));
    if (kind != CloneDefect::Kind::ShareChild)
        QVERIFY(Test::treeLines(defectiveRoot) != Test::treeLines(root));
    else
        QCOMPARE(Test::treeLines(defectiveRoot), Test::treeLines(root));

    // Identity: only a shared subtree is the original's.
    QCOMPARE(sharedCount(root, defectiveRoot), std::size_t(sharedItems));
    if (kind == CloneDefect::Kind::ShareChild) {
        const auto original = Test::findItem(root, target.toStdString());
        QCOMPARE(Test::findItem(defectiveRoot, target.toStdString()), original);
        // The shared object still belongs to the original tree.
        QCOMPARE(original->getDisplayModel(), viewModel->getDisplayModel());
        QVERIFY(identities(root).count(original->getParent()) == 1);
        // It is held by a copied parent of the clone.
        std::shared_ptr<DisplayItemInterface> holder;
        for (const auto& item : Test::preOrder(defectiveRoot)) {
            const auto children = item->getChildren();
            if (std::find(children.begin(), children.end(), original) != children.end())
                holder = item;
        }
        QVERIFY(holder);
        QCOMPARE(identities(root).count(holder.get()), std::size_t(0));
        QCOMPARE(holder->getDisplayName(), original->getParent()->getDisplayName());
    }
    if (kind == CloneDefect::Kind::ChangeChildType) {
        const auto changed = Test::findItem(defectiveRoot, target.toStdString());
        const auto originalItem = Test::findItem(root, target.toStdString());
        QVERIFY(typeid(*changed) != typeid(*originalItem));
    }

    // The label model is never touched.
    QCOMPARE(Test::treeLines(defective->getLabelDisplayModel()->getRootDisplayItem()),
             Test::treeLines(viewModel->getLabelDisplayModel()->getRootDisplayItem()));
    // The original is unchanged.
    QCOMPARE(Test::treeLines(root), originalLines);
}

void tst_SceneViewModel::defectsCombine()
{
    const auto viewModel = buildDefectViewModel();
    const auto expected = rootOf(*viewModel->cloneSceneViewModel(false));
    viewModel->setCloneDefects({CloneDefect{CloneDefect::Kind::FlipVisibility, "Leaf 1", {}, {}},
                                CloneDefect{CloneDefect::Kind::DropChild, "Face 1", {}, {}},
                                CloneDefect{CloneDefect::Kind::AddChild, "MP 1", {}, "Extra"}});
    const auto defective = rootOf(*viewModel->cloneSceneViewModel(false));
    QVERIFY(viewModel->lastCloneUnappliedDefects().empty());

    Test::findItem(expected, "Leaf 1")->setVisible(false);
    const auto face1 = Test::findItem(expected, "Face 1");
    face1->parentItem()->removeChild(face1, false);
    Test::findItem(expected, "MP 1")->appendChild(std::make_shared<DisplayItem>("Extra"));
    QCOMPARE(Test::treeLines(defective), Test::treeLines(expected));
}

void tst_SceneViewModel::repeatedChildLeavesReferencesOnFirstCopy()
{
    const auto viewModel = buildDefectViewModel();
    viewModel->setCloneDefects({CloneDefect{CloneDefect::Kind::RepeatChild, "Surface 1", {}, {}}});
    const auto clone = viewModel->cloneSceneViewModel(false);
    QVERIFY(viewModel->lastCloneUnappliedDefects().empty());

    const auto geometry = Test::findItem(rootOf(*clone), "Geometry");
    QCOMPARE(geometry->childCount(), std::size_t(3));
    QCOMPARE(geometry->childAt(0)->getDisplayName(), std::string("Surface 1"));
    QCOMPARE(geometry->childAt(1)->getDisplayName(), std::string("Surface 1"));
    QVERIFY(geometry->childAt(0) != geometry->childAt(1));
    QCOMPARE(geometry->childAt(1)->getParent(), static_cast<DisplayItemInterface*>(geometry.get()));

    // The module still lists two items: the first copy of Surface 1 and Surface 2.
    const auto module = std::dynamic_pointer_cast<GeometryModuleItem>(Test::findItem(rootOf(*clone), "Module"));
    QVERIFY(module);
    const DisplayItemList listed = module->getGeometryDisplayItems();
    QCOMPARE(listed.size(), std::size_t(2));
    QCOMPARE(listed.at(0), std::shared_ptr<DisplayItemInterface>(geometry->childAt(0)));
    QCOMPARE(listed.at(1), std::shared_ptr<DisplayItemInterface>(geometry->childAt(2)));
}

void tst_SceneViewModel::unappliedDefectsAreReported_data()
{
    QTest::addColumn<CloneDefect::Kind>("kind");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("value");

    using K = CloneDefect::Kind;
    QTest::newRow("unknown target") << K::FlipVisibility << "Nowhere"
                                    << ""
                                    << "";
    QTest::newRow("drop the root") << K::DropChild << "root"
                                   << ""
                                   << "";
    QTest::newRow("share the root") << K::ShareChild << "root"
                                    << ""
                                    << "";
    QTest::newRow("no display property") << K::ChangePropertyValue << "Geometry"
                                         << ""
                                         << "";
    QTest::newRow("unknown property") << K::ChangePropertyValue << "Leaf 1"
                                      << "missing"
                                      << "";
    QTest::newRow("same value") << K::ChangePropertyValue << "Leaf 1"
                                << "color"
                                << "red";
    QTest::newRow("only in the label model") << K::FlipVisibility << "Plot label"
                                             << ""
                                             << "";
    QTest::newRow("repeat the root") << K::RepeatChild << "root"
                                     << ""
                                     << "";
    QTest::newRow("geometry entry of a plain item") << K::DropGeometryEntry << "Group"
                                                    << ""
                                                    << "";
}

void tst_SceneViewModel::unappliedDefectsAreReported()
{
    QFETCH(CloneDefect::Kind, kind);
    QFETCH(QString, target);
    QFETCH(QString, property);
    QFETCH(QString, value);

    const auto viewModel = buildDefectViewModel();
    const CloneDefect defect{kind, target.toStdString(), property.toStdString(), value.toStdString()};
    viewModel->setCloneDefects({defect});
    const auto clone = viewModel->cloneSceneViewModel(false);
    QCOMPARE(viewModel->lastCloneUnappliedDefects(), std::vector<CloneDefect>{defect});
    QCOMPARE(Test::treeLines(rootOf(*clone)), Test::treeLines(rootOf(*viewModel)));
    QCOMPARE(sharedCount(rootOf(*viewModel), rootOf(*clone)), std::size_t(0));

    // A named property with a new value does apply.
    if (kind == CloneDefect::Kind::ChangePropertyValue && property == "color") {
        viewModel->setCloneDefects({CloneDefect{kind, target.toStdString(), "line width", "5"}});
        const auto changed = viewModel->cloneSceneViewModel(false);
        QVERIFY(viewModel->lastCloneUnappliedDefects().empty());
        QCOMPARE(Test::findItem(rootOf(*changed), "Leaf 1")->displayProperty("line width"),
                 std::optional<std::string>("5"));
        QCOMPARE(Test::findItem(rootOf(*changed), "Leaf 1")->displayProperty("color"),
                 std::optional<std::string>("red"));
    }
}

void tst_SceneViewModel::defectNames_data()
{
    QTest::addColumn<CloneDefect::Kind>("kind");
    QTest::addColumn<QString>("name");
    using K = CloneDefect::Kind;
    QTest::newRow("drop-child") << K::DropChild << "drop-child";
    QTest::newRow("add-child") << K::AddChild << "add-child";
    QTest::newRow("share-child") << K::ShareChild << "share-child";
    QTest::newRow("change-type") << K::ChangeChildType << "change-type";
    QTest::newRow("flip-visibility") << K::FlipVisibility << "flip-visibility";
    QTest::newRow("change-property") << K::ChangePropertyValue << "change-property";
    QTest::newRow("repeat-child") << K::RepeatChild << "repeat-child";
    QTest::newRow("drop-geometry-entry") << K::DropGeometryEntry << "drop-geometry-entry";
}

void tst_SceneViewModel::defectNames()
{
    QFETCH(CloneDefect::Kind, kind);
    QFETCH(QString, name);
    QCOMPARE(QString::fromStdString(CloneDefect::toString(kind)), name);
    QCOMPARE(CloneDefect::kindFromString(name.toStdString()), std::optional<CloneDefect::Kind>(kind));
    QCOMPARE(CloneDefect::kindFromString(name.toUpper().toStdString()), std::optional<CloneDefect::Kind>());
}

void tst_SceneViewModel::defectFromCommandLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<CloneDefect::Kind>("kind");
    QTest::addColumn<QString>("target");
    using K = CloneDefect::Kind;
    QTest::newRow("plain") << "drop-child:Punch" << true << K::DropChild << "Punch";
    QTest::newRow("target with colon") << "flip-visibility:Section X: 250" << true << K::FlipVisibility
                                       << "Section X: 250";
    QTest::newRow("target with spaces") << "share-child:Upper die" << true << K::ShareChild << "Upper die";
    QTest::newRow("unknown kind") << "explode:Punch" << false << K::DropChild << "";
    QTest::newRow("no colon") << "drop-child" << false << K::DropChild << "";
    QTest::newRow("empty target") << "add-child:" << false << K::DropChild << "";
    QTest::newRow("empty") << "" << false << K::DropChild << "";
}

void tst_SceneViewModel::defectFromCommandLine()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QFETCH(CloneDefect::Kind, kind);
    QFETCH(QString, target);
    const auto defect = CloneDefect::fromString(text.toStdString());
    QCOMPARE(defect.has_value(), valid);
    if (valid) {
        QCOMPARE(defect->kind, kind);
        QCOMPARE(QString::fromStdString(defect->target), target);
        QCOMPARE(QString::fromStdString(defect->toString()), text);
    }
}

QTEST_GUILESS_MAIN(tst_SceneViewModel)
#include "tst_sceneviewmodel.moc"
