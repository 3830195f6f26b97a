#include <referencehost/model/DisplayItem.h>
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
#include <referencehost/modelfile/ModelFile.h>

#include <RawFileNames.h>

#include <hostcontract/EditorDisplayModel.h>

#include <QScopeGuard>
#include <QtTest>

#include <map>
#include <vector>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/types.h>
#include <unistd.h>

using namespace Brennvik;

Q_DECLARE_METATYPE(std::shared_ptr<Brennvik::SceneViewModel>)
Q_DECLARE_METATYPE(Brennvik::ModelFileLimits)

namespace {

using ItemMap = std::map<const DisplayItemInterface*, std::shared_ptr<DisplayItemInterface>>;

// The display properties without the ones that carry addresses.
PropertyList displayPropertiesWithoutPointers(const DisplayItemInterface& item)
{
    PropertyList business;
    PropertyList display;
    item.getProperties(business, display);
    display.remove_if([](const Property& p) { return p.first.rfind("pointer", 0) == 0; });
    return display;
}

std::shared_ptr<DisplayItemInterface> mapped(const ItemMap& map, const std::shared_ptr<DisplayItemInterface>& item)
{
    if (!item)
        return nullptr;
    const auto it = map.find(item.get());
    return it != map.end() ? it->second : nullptr;
}

// The entry the display model dialog starts from, found the same way it does.
std::shared_ptr<DisplayItemInterface> initialEntry(const SceneDisplayModel& model)
{
    const auto context = model.getActiveContext();
    const int kind = context ? context->getContextKind() : -1;
    if (kind == ContextKind::ProcessStep)
        return model.getKind6Provider() ? model.getKind6Provider()->getDisplayItemAt(model.getKind6Index()) : nullptr;
    if (kind == ContextKind::Tool)
        return model.getKind7Lookup() && model.getKind7Source()
            ? model.getKind7Lookup()->findDisplayItem(model.getKind7Source()->getKey())
            : nullptr;
    return model.getDefaultEntryOwner() ? model.getDefaultEntryOwner()->getEntryDisplayItem() : nullptr;
}

// Compares two trees item by item in pre-order and records which loaded item
// stands for which original one. Geometry lists are compared afterwards,
// through the map, by compareGeometryLists.
void compareTrees(const std::shared_ptr<DisplayItem>& original, const std::shared_ptr<DisplayItem>& loaded,
                  const SceneDisplayModel& loadedModel, ItemMap& map)
{
    QCOMPARE(bool(loaded), bool(original));
    if (!original)
        return;
    std::vector<std::pair<DisplayItem*, DisplayItem*>> pending{{original.get(), loaded.get()}};
    while (!pending.empty()) {
        const auto [a, b] = pending.back();
        pending.pop_back();
        const QByteArray where = QByteArray::fromStdString(a->path());
        QVERIFY2(a != b, where);
        QCOMPARE(b->typeName(), a->typeName());
        QCOMPARE(b->getDisplayName(), a->getDisplayName());
        QVERIFY2(b->isVisible() == a->isVisible(), where);
        QVERIFY2(b->isSelected() == a->isSelected(), where);
        QVERIFY2(b->isSelectionAllowed() == a->isSelectionAllowed(), where);
        QVERIFY2(b->isSelectable() == a->isSelectable(), where);
        QCOMPARE(b->businessProperties(), a->businessProperties());
        QCOMPARE(b->displayProperties(), a->displayProperties());
        // Includes the computed type properties (shell type and name, geometry item count).
        QCOMPARE(displayPropertiesWithoutPointers(*b), displayPropertiesWithoutPointers(*a));
        if (const auto* shell = dynamic_cast<const ShellItem*>(a)) {
            const auto* loadedShell = dynamic_cast<const ShellItem*>(b);
            QVERIFY2(loadedShell, where);
            QCOMPARE(loadedShell->getShellType(), shell->getShellType());
            QCOMPARE(loadedShell->getShellName(), shell->getShellName());
        }
        if (const auto* labelable = dynamic_cast<const LabelableItem*>(a)) {
            const auto* loadedLabelable = dynamic_cast<const LabelableItem*>(b);
            QVERIFY2(loadedLabelable, where);
            QCOMPARE(loadedLabelable->getLabel(), labelable->getLabel());
            QCOMPARE(loadedLabelable->areLabelsAllowed(), labelable->areLabelsAllowed());
        }
        QVERIFY2(b->getDisplayModel() == &loadedModel, where);
        QCOMPARE(b->childCount(), a->childCount());
        map[a] = b->shared_from_this();
        for (std::size_t i = a->childCount(); i-- > 0;) {
            QVERIFY2(b->childAt(i)->parentItem() == b, where);
            pending.emplace_back(a->childAt(i).get(), b->childAt(i).get());
        }
    }
}

void compareGeometryLists(const std::shared_ptr<DisplayItem>& original, const ItemMap& map)
{
    if (!original)
        return;
    std::vector<DisplayItem*> pending{original.get()};
    int modules = 0;
    while (!pending.empty()) {
        DisplayItem* item = pending.back();
        pending.pop_back();
        if (const auto* module = dynamic_cast<const GeometryModuleItem*>(item)) {
            ++modules;
            const auto loaded = std::dynamic_pointer_cast<GeometryModuleItem>(mapped(map, item->shared_from_this()));
            QVERIFY(loaded);
            const DisplayItemList originalList = module->getGeometryDisplayItems();
            const DisplayItemList loadedList = loaded->getGeometryDisplayItems();
            QCOMPARE(loadedList.size(), originalList.size());
            for (std::size_t i = 0; i < originalList.size(); ++i)
                QVERIFY(loadedList[i] == mapped(map, originalList[i]));
        }
        for (const auto& child : item->children())
            pending.push_back(child.get());
    }
}

void compareLookups(const SceneDisplayModel& original, const SceneDisplayModel& loaded, const ItemMap& map)
{
    const auto context = std::dynamic_pointer_cast<SceneContext>(original.getActiveContext());
    const auto loadedContext = std::dynamic_pointer_cast<SceneContext>(loaded.getActiveContext());
    QCOMPARE(bool(loadedContext), bool(original.getActiveContext()));
    if (context) {
        QCOMPARE(loadedContext->getContextKind(), context->getContextKind());
        QCOMPARE(loadedContext->name(), context->name());
    }

    QCOMPARE(loaded.getKind6Index(), original.getKind6Index());
    const auto* steps = dynamic_cast<const ProcessStepProvider*>(original.getKind6Provider());
    const auto* loadedSteps = dynamic_cast<const ProcessStepProvider*>(loaded.getKind6Provider());
    QCOMPARE(bool(loadedSteps), bool(original.getKind6Provider()));
    if (steps) {
        QCOMPARE(loadedSteps->stepCount(), steps->stepCount());
        for (std::size_t i = 0; i < steps->stepCount(); ++i) {
            const auto index = static_cast<Kind6Index>(i);
            QVERIFY(loadedSteps->getDisplayItemAt(index) == mapped(map, steps->getDisplayItemAt(index)));
        }
    }

    const auto* source = dynamic_cast<const ToolKeySource*>(original.getKind7Source());
    const auto* loadedSource = dynamic_cast<const ToolKeySource*>(loaded.getKind7Source());
    QCOMPARE(bool(loadedSource), bool(original.getKind7Source()));
    if (source)
        QCOMPARE(loadedSource->getKey(), source->getKey());

    const auto lookup = std::dynamic_pointer_cast<ToolKeyLookup>(original.getKind7Lookup());
    const auto loadedLookup = std::dynamic_pointer_cast<ToolKeyLookup>(loaded.getKind7Lookup());
    QCOMPARE(bool(loadedLookup), bool(original.getKind7Lookup()));
    if (lookup) {
        QCOMPARE(loadedLookup->keyProperty(), lookup->keyProperty());
        QVERIFY(loadedLookup->root() == mapped(map, lookup->root()));
    }

    const auto* owner = dynamic_cast<const FixedEntryOwner*>(original.getDefaultEntryOwner());
    const auto* loadedOwner = dynamic_cast<const FixedEntryOwner*>(loaded.getDefaultEntryOwner());
    QCOMPARE(bool(loadedOwner), bool(original.getDefaultEntryOwner()));
    if (owner)
        QVERIFY(loadedOwner->getEntryDisplayItem() == mapped(map, owner->getEntryDisplayItem()));

    QVERIFY(initialEntry(loaded) == mapped(map, initialEntry(original)));
}

void compareEditors(const SceneViewModel& original, const SceneViewModel& loaded)
{
    QCOMPARE(bool(loaded.editorDisplayModel()), bool(original.editorDisplayModel()));
    if (!original.editorDisplayModel())
        return;
    const auto& primitives = original.editorDisplayModel()->getAllEditModelPrimitives();
    const auto& loadedPrimitives = loaded.editorDisplayModel()->getAllEditModelPrimitives();
    QCOMPARE(loadedPrimitives.size(), primitives.size());
    for (std::size_t i = 0; i < primitives.size(); ++i) {
        QCOMPARE(loadedPrimitives[i]->getDisplayName(), primitives[i]->getDisplayName());
        QCOMPARE(loadedPrimitives[i]->isVisible(), primitives[i]->isVisible());
        QCOMPARE(loadedPrimitives[i]->isSelected(), primitives[i]->isSelected());
        QCOMPARE(loadedPrimitives[i]->isSelectable(), primitives[i]->isSelectable());
        QVERIFY(loadedPrimitives[i]->getViewUpdater() == loaded.editorDisplayModel());
        PropertyList properties;
        PropertyList loadedProperties;
        primitives[i]->getProperties(properties);
        loadedPrimitives[i]->getProperties(loadedProperties);
        QCOMPARE(loadedProperties, properties);
    }
}

// Everything a model file keeps, compared between an original and its loaded copy.
void compareViewModels(const SceneViewModel& original, const SceneViewModel& loaded)
{
    ItemMap map;
    compareTrees(original.displayModel().rootDisplayItem(), loaded.displayModel().rootDisplayItem(),
                 loaded.displayModel(), map);
    if (QTest::currentTestFailed())
        return;
    compareTrees(original.labelDisplayModel().rootDisplayItem(), loaded.labelDisplayModel().rootDisplayItem(),
                 loaded.labelDisplayModel(), map);
    if (QTest::currentTestFailed())
        return;
    compareGeometryLists(original.displayModel().rootDisplayItem(), map);
    compareGeometryLists(original.labelDisplayModel().rootDisplayItem(), map);
    compareLookups(original.displayModel(), loaded.displayModel(), map);
    compareLookups(original.labelDisplayModel(), loaded.labelDisplayModel(), map);
    compareEditors(original, loaded);
}

std::shared_ptr<SceneViewModel> loadOrFail(const QByteArray& json)
{
    ModelFileError error;
    auto model = ModelFile::loadFromData(json, QStringLiteral("model.json"), &error);
    if (!model)
        qWarning().noquote() << error.toString();
    return model;
}

// Every property name in the item objects of a written file's tree.
void collectPropertyNames(const QJsonObject& item, QSet<QString>& names)
{
    for (const QString& list : {QStringLiteral("businessProperties"), QStringLiteral("displayProperties")}) {
        for (const auto& pair : item.value(list).toArray())
            names.insert(pair.toArray().at(0).toString());
    }
    for (const auto& child : item.value(QStringLiteral("children")).toArray())
        collectPropertyNames(child.toObject(), names);
}

// A test-only context type that the file format does not know.
class ForeignContext : public ActiveContext
{
public:
    int getContextKind() const override { return 3; }
};

// A view model whose display tree is \a root.
std::shared_ptr<SceneViewModel> withRoot(std::shared_ptr<DisplayItem> root)
{
    auto viewModel = std::make_shared<SceneViewModel>();
    viewModel->displayModel().setRootDisplayItem(std::move(root));
    return viewModel;
}

// A chain of \a levels items named L0, L1, ...; the last one gets a property.
std::shared_ptr<SceneViewModel> chain(int levels)
{
    auto root = std::make_shared<DisplayItem>("L0");
    auto item = root;
    for (int level = 1; level < levels; ++level) {
        auto child = std::make_shared<DisplayItem>("L" + std::to_string(level));
        item->appendChild(child);
        item = child;
    }
    item->setBusinessProperty("p", "v");
    return withRoot(root);
}

// A root with \a count children.
std::shared_ptr<SceneViewModel> withChildren(int count)
{
    auto root = std::make_shared<DisplayItem>("Root");
    for (int i = 0; i < count; ++i)
        root->appendChild(std::make_shared<DisplayItem>("C" + std::to_string(i)));
    return withRoot(root);
}

// A root with \a count business properties whose values have \a valueLength characters.
std::shared_ptr<SceneViewModel> withProperties(int count, int valueLength = 1)
{
    auto root = std::make_shared<DisplayItem>("Root");
    for (int i = 0; i < count; ++i)
        root->setBusinessProperty("p" + std::to_string(i), std::string(static_cast<std::size_t>(valueLength), 'v'));
    return withRoot(root);
}

// An editor with \a count primitives.
std::shared_ptr<SceneViewModel> withPrimitives(int count)
{
    auto viewModel = std::make_shared<SceneViewModel>();
    EditorDisplayModel& editor = viewModel->ensureEditorDisplayModel();
    for (int i = 0; i < count; ++i)
        editor.addEditModelPrimitive("P" + std::to_string(i));
    return viewModel;
}

// A process with \a count steps, all on the root.
std::shared_ptr<SceneViewModel> withSteps(int count)
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto steps = std::make_shared<ProcessStepProvider>();
    for (int i = 0; i < count; ++i)
        steps->appendStep(root);
    auto viewModel = withRoot(root);
    viewModel->displayModel().setKind6Provider(steps);
    return viewModel;
}

// A geometry module listing \a count of its children.
std::shared_ptr<SceneViewModel> withGeometryItems(int count)
{
    auto module = std::make_shared<GeometryModuleItem>("Module");
    for (int i = 0; i < count; ++i) {
        auto face = std::make_shared<DisplayItem>("F" + std::to_string(i));
        module->appendChild(face);
        module->addGeometryDisplayItem(face);
    }
    return withRoot(module);
}

ModelFileLimits limitsWith(int ModelFileLimits::*limit, int value)
{
    ModelFileLimits limits;
    limits.*limit = value;
    return limits;
}

// Whether \a path names a FIFO or a character device itself (not a regular file put in its place).
bool isSpecialFile(const QString& path)
{
    struct stat status
    {
    };
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0
        && (S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode));
}

// Makes a FIFO or (with privileges) a null device at \a path; false when the system refuses.
bool makeSpecialFile(const QString& kind, const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    if (kind == QLatin1String("FIFO"))
        return ::mkfifo(name.constData(), 0600) == 0;
    return ::mknod(name.constData(), S_IFCHR | 0600, makedev(1, 3)) == 0;
}

} // namespace

class tst_ModelFile : public QObject
{
    Q_OBJECT

private slots:
    void roundTripSample();
    void roundTripSynthetic_data();
    void roundTripSynthetic();
    void roundTripThroughFile();
    void initialEntriesAfterLoading();
    void writtenTextLeavesOutComputedProperties();
    void handWrittenFileUsesDefaults();
    void goneReferencesAreWrittenAsNull();
    void emptyViewModel();
    void saveRefusesWhatAFileCannotHold_data();
    void saveRefusesWhatAFileCannotHold();
    void saveRefusesWhatLoadingRefuses_data();
    void saveRefusesWhatLoadingRefuses();
    void saveRefusesJsonNestingTheParserRefuses();
    void saveReportsUnwritablePath();
    void saveKeepsTheReasonOfAShortWrite();
    void saveRefusesSpecialFiles_data();
    void saveRefusesSpecialFiles();
    void loadRefusesSpecialFiles_data();
    void loadRefusesSpecialFiles();
    void loadReportsFileProblems();
    void nameThatIsNotTextRoundTrips();
    void nameThatIsNotTextKeepsTheReasonOfAFailure();
    void defaultLimitsAllowLargeModels();

private:
    // Items that lookups point at from outside the trees, alive while the rows run.
    std::vector<std::shared_ptr<DisplayItem>> m_keepAlive;
};

void tst_ModelFile::roundTripSample()
{
    const auto sample = buildSampleViewModel();
    QString error;
    const QByteArray json = ModelFile::toJson(*sample, &error);
    QVERIFY2(!json.isEmpty(), qPrintable(error));
    const auto loaded = loadOrFail(json);
    QVERIFY(loaded);
    compareViewModels(*sample, *loaded);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(loaded->displayModel().rootDisplayItem()->getNumberOfDisplayItems(),
             sample->displayModel().rootDisplayItem()->getNumberOfDisplayItems());
    QCOMPARE(ModelFile::toJson(*loaded), json);
}

void tst_ModelFile::roundTripSynthetic_data()
{
    QTest::addColumn<int>("itemCount");
    QTest::addColumn<unsigned>("seed");
    QTest::newRow("root only") << 1 << 1u;
    QTest::newRow("small") << 40 << 7u;
    QTest::newRow("medium") << 3000 << 11u;
    QTest::newRow("other seed") << 3000 << 2024u;
}

void tst_ModelFile::roundTripSynthetic()
{
    QFETCH(int, itemCount);
    QFETCH(unsigned, seed);
    const auto synthetic = buildSyntheticViewModel(static_cast<std::size_t>(itemCount), seed);
    const QByteArray json = ModelFile::toJson(*synthetic);
    QVERIFY(!json.isEmpty());
    const auto loaded = loadOrFail(json);
    QVERIFY(loaded);
    compareViewModels(*synthetic, *loaded);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(loaded->displayModel().rootDisplayItem()->getNumberOfDisplayItems(),
             static_cast<std::uint64_t>(itemCount));
    QCOMPARE(ModelFile::toJson(*loaded), json);
}

void tst_ModelFile::roundTripThroughFile()
{
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString path = directory.filePath(QStringLiteral("sample.json"));
    const auto sample = buildSampleViewModel();
    QString saveError;
    QVERIFY2(ModelFile::save(*sample, path, &saveError), qPrintable(saveError));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray written = file.readAll();
    file.close();
    QCOMPARE(written, ModelFile::toJson(*sample));

    ModelFileError error;
    const auto loaded = ModelFile::load(path, &error);
    QVERIFY2(loaded, qPrintable(error.toString()));
    compareViewModels(*sample, *loaded);
    if (QTest::currentTestFailed())
        return;

    // Saving the loaded model over the file writes the same bytes.
    QVERIFY2(ModelFile::save(*loaded, path, &saveError), qPrintable(saveError));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), written);
}

void tst_ModelFile::initialEntriesAfterLoading()
{
    const auto loaded = loadOrFail(ModelFile::toJson(*buildSampleViewModel()));
    QVERIFY(loaded);
    SceneDisplayModel& model = loaded->displayModel();
    auto entry = initialEntry(model);
    QVERIFY(entry);
    QCOMPARE(entry->getDisplayName(), std::string("OP20 Trimming"));

    model.setActiveContext(std::make_shared<SceneContext>(ContextKind::Tool, "Punch"));
    entry = initialEntry(model);
    QVERIFY(entry);
    QCOMPARE(entry->getDescription(),
             std::string("ShellItem \"Punch\" [Tool: Punch] at Forming simulation/Process/OP10 Drawing/Punch"));

    model.setActiveContext(std::make_shared<SceneContext>(0, "Part"));
    entry = initialEntry(model);
    QVERIFY(entry);
    QCOMPARE(entry->getDisplayName(), std::string("Blank"));
    QVERIFY(entry->getDisplayModel() == &model);
}

void tst_ModelFile::writtenTextLeavesOutComputedProperties()
{
    const auto sample = buildSampleViewModel();
    const QJsonObject file = QJsonDocument::fromJson(ModelFile::toJson(*sample)).object();
    QCOMPARE(file.value(QStringLiteral("format")).toString(), QStringLiteral("brennvik-display-model"));
    QCOMPARE(file.value(QStringLiteral("version")).toInt(), 1);

    const QJsonObject root
        = file.value(QStringLiteral("displayModel")).toObject().value(QStringLiteral("root")).toObject();
    QSet<QString> names;
    collectPropertyNames(root, names);
    QVERIFY(names.contains(QStringLiteral("tool id")));
    QVERIFY(names.contains(QStringLiteral("render mode")));
    for (const char* computed : {"pointer", "pointer (DisplayItemInterface)", "display item type", "shell type",
                                 "shell name", "geometry items"})
        QVERIFY2(!names.contains(QLatin1String(computed)), computed);

    // Only referenced items carry ids: the root (searched by the kind-7 lookup)
    // does, the "Part" group (referenced by nothing) does not.
    QVERIFY(root.contains(QStringLiteral("id")));
    const QJsonObject part = root.value(QStringLiteral("children")).toArray().at(0).toObject();
    QCOMPARE(part.value(QStringLiteral("name")).toString(), QStringLiteral("Part"));
    QVERIFY(!part.contains(QStringLiteral("id")));
    const QJsonObject blank = part.value(QStringLiteral("children")).toArray().at(0).toObject();
    QCOMPARE(blank.value(QStringLiteral("kind")).toString(), QStringLiteral("ShellItem"));

    // Fields at their defaults are left out; the others are written.
    for (const char* field : {"kind", "visible", "selected", "selectionAllowed", "selectable"})
        QVERIFY2(!part.contains(QLatin1String(field)), field);
    QCOMPARE(blank.value(QStringLiteral("selected")), QJsonValue(true));
    const QJsonObject curves = blank.value(QStringLiteral("children")).toArray().at(1).toObject();
    QCOMPARE(curves.value(QStringLiteral("name")).toString(), QStringLiteral("Boundary curves"));
    QCOMPARE(curves.value(QStringLiteral("visible")), QJsonValue(false));
    const QJsonObject coordinateSystem = root.value(QStringLiteral("children")).toArray().last().toObject();
    QCOMPARE(coordinateSystem.value(QStringLiteral("selectable")), QJsonValue(false));
    QVERIFY(!coordinateSystem.contains(QStringLiteral("children")));
    QVERIFY(!coordinateSystem.contains(QStringLiteral("businessProperties")));
    QCOMPARE(blank.value(QStringLiteral("shellName")).toString(), QStringLiteral("DC04 1.20 mm"));
    const QJsonValue entry = file.value(QStringLiteral("displayModel"))
                                 .toObject()
                                 .value(QStringLiteral("defaultEntryOwner"))
                                 .toObject()
                                 .value(QStringLiteral("entry"));
    QCOMPARE(entry, blank.value(QStringLiteral("id")));
}

void tst_ModelFile::handWrittenFileUsesDefaults()
{
    // Ids are any strings; references may point forward and into the label tree.
    const QByteArray json = R"({
  "format": "brennvik-display-model",
  "version": 1,
  "displayModel": {
    "root": {
      "name": "Root",
      "id": "root",
      "children": [
        {"kind": "GeometryModuleItem", "name": "Module", "geometryItems": ["g2", "g1", "label"],
         "children": [{"name": "Geometry", "children": [{"name": "G1", "id": "g1"}, {"name": "G2", "id": "g2"}]}]},
        {"kind": "ShellItem", "name": "Die", "shellType": "Tool", "shellName": "Upper die", "id": "die",
         "businessProperties": [["tool id", "T1"], ["material", "GG25"]], "visible": false},
        {"kind": "LabelableItem", "name": "Point", "label": "t = 1.0 mm", "selectable": false}
      ]
    },
    "activeContext": {"kind": 7},
    "kind6Provider": {"steps": [null, "die"]},
    "kind6Index": 1,
    "kind7Source": {"key": "T1"},
    "kind7Lookup": {"root": "root", "keyProperty": "tool id"},
    "defaultEntryOwner": {"entry": "g1"}
  },
  "labelModel": {"root": {"kind": "LabelableItem", "name": "Label", "id": "label", "label": "L",
                          "labelsAllowed": false, "selected": true, "selectionAllowed": false}},
  "editor": {"primitives": [{"name": "Pick", "properties": [["snap", "node"], ["snap", "edge"]]}]}
})";
    const auto model = loadOrFail(json);
    QVERIFY(model);
    const auto root = model->displayModel().rootDisplayItem();
    QCOMPARE(root->typeName(), std::string("DisplayItem"));
    QVERIFY(root->isVisible());
    QVERIFY(!root->isSelected());
    QVERIFY(root->isSelectionAllowed());
    QVERIFY(root->isSelectable());
    QVERIFY(root->businessProperties().empty());
    QCOMPARE(root->childCount(), std::size_t(3));

    const auto module = std::dynamic_pointer_cast<GeometryModuleItem>(root->childAt(0));
    QVERIFY(module);
    const auto label = model->labelDisplayModel().rootDisplayItem();
    const DisplayItemList geometry = module->getGeometryDisplayItems();
    QCOMPARE(geometry.size(), std::size_t(3));
    QCOMPARE(geometry[0]->getDisplayName(), std::string("G2"));
    QCOMPARE(geometry[1]->getDisplayName(), std::string("G1"));
    QVERIFY(geometry[2] == label);

    const auto die = std::dynamic_pointer_cast<ShellItem>(root->childAt(1));
    QVERIFY(die);
    QCOMPARE(die->getShellTypeAndNameAsString(), std::string("Tool: Upper die"));
    QVERIFY(!die->isVisible());
    QCOMPARE(die->businessProperties(), (PropertyList{{"tool id", "T1"}, {"material", "GG25"}}));

    const auto point = std::dynamic_pointer_cast<LabelableItem>(root->childAt(2));
    QVERIFY(point);
    QVERIFY(point->areLabelsAllowed());
    QVERIFY(!point->isSelectable());

    const auto labelItem = std::dynamic_pointer_cast<LabelableItem>(label);
    QVERIFY(labelItem);
    QVERIFY(!labelItem->areLabelsAllowed());
    QVERIFY(labelItem->isSelected());
    QVERIFY(!labelItem->isSelectionAllowed());

    const SceneDisplayModel& display = model->displayModel();
    QCOMPARE(std::dynamic_pointer_cast<SceneContext>(display.getActiveContext())->name(), std::string());
    QVERIFY(display.getKind6Provider()->getDisplayItemAt(0) == nullptr);
    QVERIFY(display.getKind6Provider()->getDisplayItemAt(1) == die);
    QVERIFY(initialEntry(display) == die);
    QCOMPARE(display.getDefaultEntryOwner()->getEntryDisplayItem()->getDisplayName(), std::string("G1"));
    QVERIFY(!model->labelDisplayModel().getActiveContext());
    QVERIFY(!model->labelDisplayModel().getDefaultEntryOwner());

    QVERIFY(model->editorDisplayModel());
    const auto& primitives = model->editorDisplayModel()->getAllEditModelPrimitives();
    QCOMPARE(primitives.size(), std::size_t(1));
    QVERIFY(primitives[0]->isVisible());
    QVERIFY(!primitives[0]->isSelected());
    QVERIFY(primitives[0]->isSelectable());
    PropertyList properties;
    primitives[0]->getProperties(properties);
    QCOMPARE(properties, (PropertyList{{"snap", "node"}, {"snap", "edge"}}));

    // Writing it back renumbers the ids but keeps every reference.
    const auto again = loadOrFail(ModelFile::toJson(*model));
    QVERIFY(again);
    compareViewModels(*model, *again);
}

void tst_ModelFile::goneReferencesAreWrittenAsNull()
{
    auto viewModel = std::make_shared<SceneViewModel>();
    auto root = std::make_shared<DisplayItem>("Root");
    auto kept = std::make_shared<DisplayItem>("Kept");
    root->appendChild(kept);
    auto steps = std::make_shared<ProcessStepProvider>();
    {
        auto gone = std::make_shared<DisplayItem>("Gone");
        steps->appendStep(gone);
        steps->appendStep(kept);
        viewModel->displayModel().setDefaultEntryOwner(std::make_shared<FixedEntryOwner>(gone));
        viewModel->displayModel().setKind7Lookup(std::make_shared<ToolKeyLookup>(gone, ""));
    }
    viewModel->displayModel().setRootDisplayItem(root);
    viewModel->displayModel().setKind6Provider(steps);
    viewModel->displayModel().setKind6Index(1);

    const QByteArray json = ModelFile::toJson(*viewModel);
    QVERIFY(!json.isEmpty());
    const QJsonObject display = QJsonDocument::fromJson(json).object().value(QStringLiteral("displayModel")).toObject();
    const QJsonArray stepIds
        = display.value(QStringLiteral("kind6Provider")).toObject().value(QStringLiteral("steps")).toArray();
    QCOMPARE(stepIds.size(), 2);
    QVERIFY(stepIds.at(0).isNull());
    QVERIFY(stepIds.at(1).isString());
    QVERIFY(display.value(QStringLiteral("defaultEntryOwner")).toObject().value(QStringLiteral("entry")).isNull());
    QVERIFY(display.value(QStringLiteral("kind7Lookup")).toObject().value(QStringLiteral("root")).isNull());

    const auto loaded = loadOrFail(json);
    QVERIFY(loaded);
    compareViewModels(*viewModel, *loaded);
    QVERIFY(loaded->displayModel().getDefaultEntryOwner());
    QVERIFY(!loaded->displayModel().getDefaultEntryOwner()->getEntryDisplayItem());
    QVERIFY(!loaded->displayModel().getKind7Lookup()->findDisplayItem("Kept"));
}

void tst_ModelFile::emptyViewModel()
{
    SceneViewModel empty;
    const QByteArray json = ModelFile::toJson(empty);
    QVERIFY(!json.isEmpty());
    const auto loaded = loadOrFail(json);
    QVERIFY(loaded);
    QVERIFY(!loaded->displayModel().rootDisplayItem());
    QVERIFY(!loaded->labelDisplayModel().rootDisplayItem());
    QVERIFY(!loaded->editorDisplayModel());
    QVERIFY(!loaded->displayModel().getActiveContext());
    QVERIFY(!loaded->displayModel().getKind6Provider());
    QCOMPARE(ModelFile::toJson(*loaded), json);

    // An editor without primitives is kept as an editor.
    empty.ensureEditorDisplayModel();
    const auto withEditor = loadOrFail(ModelFile::toJson(empty));
    QVERIFY(withEditor);
    QVERIFY(withEditor->editorDisplayModel());
    QVERIFY(withEditor->editorDisplayModel()->getAllEditModelPrimitives().empty());
}

void tst_ModelFile::saveRefusesWhatAFileCannotHold_data()
{
    QTest::addColumn<std::shared_ptr<SceneViewModel>>("viewModel");
    QTest::addColumn<QString>("message");

    {
        auto viewModel = std::make_shared<SceneViewModel>();
        auto root = std::make_shared<DisplayItem>("Root");
        auto outside = std::make_shared<DisplayItem>("Elsewhere");
        viewModel->displayModel().setRootDisplayItem(root);
        viewModel->displayModel().setDefaultEntryOwner(std::make_shared<FixedEntryOwner>(outside));
        m_keepAlive.push_back(outside);
        QTest::newRow("entry outside the trees")
            << viewModel << "the default entry (\"Elsewhere\") is not an item of the model";
    }
    {
        auto viewModel = std::make_shared<SceneViewModel>();
        auto root = std::make_shared<DisplayItem>("Root");
        auto module = std::make_shared<GeometryModuleItem>("Module");
        root->appendChild(module);
        auto stray = std::make_shared<DisplayItem>("Stray");
        module->addGeometryDisplayItem(stray);
        viewModel->displayModel().setRootDisplayItem(root);
        m_keepAlive.push_back(stray);
        QTest::newRow("geometry item outside the trees")
            << viewModel << "a geometry item of \"Root/Module\" (\"Stray\") is not an item of the model";
    }
    {
        auto viewModel = std::make_shared<SceneViewModel>();
        auto root = std::make_shared<DisplayItem>("L0");
        auto item = root;
        for (int level = 1; level < 257; ++level) {
            auto child = std::make_shared<DisplayItem>("L" + std::to_string(level));
            item->appendChild(child);
            item = child;
        }
        viewModel->displayModel().setRootDisplayItem(root);
        // Quoted names and paths are cut to a few dozen characters.
        QTest::newRow("too deep") << viewModel
                                  << QStringLiteral("the item \"L0/L1/L2/L3/L4/L5/L6/L7/L8/L9/L10/L11/L1...\" is "
                                                    "nested deeper than 256 levels");
    }
    {
        auto viewModel = std::make_shared<SceneViewModel>();
        viewModel->displayModel().setRootDisplayItem(std::make_shared<DisplayItem>(std::string(1025, 'n')));
        QTest::newRow("name too long") << viewModel
                                       << QString::fromStdString("the name of \"" + std::string(40, 'n')
                                                                 + "...\" is longer than 1024 characters");
    }
    {
        auto viewModel = std::make_shared<SceneViewModel>();
        viewModel->displayModel().setActiveContext(std::make_shared<ForeignContext>());
        QTest::newRow("foreign context") << viewModel << "the active context is of a type this host does not know";
    }
    {
        auto viewModel = std::make_shared<SceneViewModel>();
        auto root = std::make_shared<DisplayItem>("Root");
        auto steps = std::make_shared<ProcessStepProvider>();
        steps->appendStep(root);
        viewModel->displayModel().setRootDisplayItem(root);
        viewModel->displayModel().setKind6Provider(steps);
        viewModel->displayModel().setKind6Index(1);
        QTest::newRow("kind-6 index past the steps")
            << viewModel << "the kind-6 index 1 names no process step (there are 1)";
    }
    {
        auto viewModel = std::make_shared<SceneViewModel>();
        viewModel->labelDisplayModel().setKind6Index(-2);
        QTest::newRow("negative kind-6 index") << viewModel << "the kind-6 index -2 is negative";
    }
}

void tst_ModelFile::saveRefusesWhatAFileCannotHold()
{
    QFETCH(std::shared_ptr<SceneViewModel>, viewModel);
    QFETCH(QString, message);
    QString error;
    QVERIFY(ModelFile::toJson(*viewModel, &error).isEmpty());
    QCOMPARE(error, message);

    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString path = directory.filePath(QStringLiteral("refused.json"));
    QVERIFY(!ModelFile::save(*viewModel, path, &error));
    QCOMPARE(error, path + QStringLiteral(": cannot save the model: ") + message);
    QVERIFY(!QFile::exists(path));
}

void tst_ModelFile::saveRefusesWhatLoadingRefuses_data()
{
    QTest::addColumn<std::shared_ptr<SceneViewModel>>("atLimit");
    QTest::addColumn<std::shared_ptr<SceneViewModel>>("overLimit");
    QTest::addColumn<ModelFileLimits>("limits");
    QTest::addColumn<QString>("message");

    QTest::newRow("items") << withChildren(4) << withChildren(5) << limitsWith(&ModelFileLimits::maxItems, 5)
                           << "the model has more than 5 items";
    QTest::newRow("levels") << chain(4) << chain(5) << limitsWith(&ModelFileLimits::maxDepth, 4)
                            << "the item \"L0/L1/L2/L3/L4\" is nested deeper than 4 levels";
    QTest::newRow("name length") << withRoot(std::make_shared<DisplayItem>("12345678"))
                                 << withRoot(std::make_shared<DisplayItem>("123456789"))
                                 << limitsWith(&ModelFileLimits::maxNameLength, 8)
                                 << "the name of \"123456789\" is longer than 8 characters";
    QTest::newRow("text length") << withProperties(1, 8) << withProperties(1, 9)
                                 << limitsWith(&ModelFileLimits::maxTextLength, 8)
                                 << "the value of the property \"p0\" of \"Root\" is longer than 8 characters";
    QTest::newRow("properties") << withProperties(3) << withProperties(4)
                                << limitsWith(&ModelFileLimits::maxListLength, 3)
                                << "\"Root\" has more than 3 properties in one list";
    QTest::newRow("primitives") << withPrimitives(3) << withPrimitives(4)
                                << limitsWith(&ModelFileLimits::maxListLength, 3)
                                << "the editor has more than 3 primitives";
    QTest::newRow("steps") << withSteps(3) << withSteps(4) << limitsWith(&ModelFileLimits::maxListLength, 3)
                           << "the kind-6 provider has more than 3 steps";
    QTest::newRow("geometry items") << withGeometryItems(3) << withGeometryItems(4)
                                    << limitsWith(&ModelFileLimits::maxListLength, 3)
                                    << "\"Module\" lists more than 3 geometry items";
    {
        // The same model against a file size limit of its exact size and one byte less.
        const auto sample = buildSampleViewModel();
        const qint64 size = ModelFile::toJson(*sample).size();
        ModelFileLimits exact;
        exact.maxFileSize = size;
        QTest::newRow("file size") << sample << sample << exact
                                   << QStringLiteral("the file would be larger than %1 bytes").arg(size - 1);
    }
}

void tst_ModelFile::saveRefusesWhatLoadingRefuses()
{
    QFETCH(std::shared_ptr<SceneViewModel>, atLimit);
    QFETCH(std::shared_ptr<SceneViewModel>, overLimit);
    QFETCH(ModelFileLimits, limits);
    QFETCH(QString, message);

    // At the limit: written, and read back with the same limits.
    QString error;
    const QByteArray fits = ModelFile::toJson(*atLimit, &error, limits);
    QVERIFY2(!fits.isEmpty(), qPrintable(error));
    ModelFileError loadError;
    QVERIFY2(ModelFile::loadFromData(fits, QStringLiteral("m"), &loadError, limits), qPrintable(loadError.toString()));
    QCOMPARE(ModelFile::toJson(*ModelFile::loadFromData(fits, QStringLiteral("m"), nullptr, limits), nullptr, limits),
             fits);

    // Over it: what the loader refuses, saving refuses before it writes.
    ModelFileLimits over = limits;
    if (QByteArray(QTest::currentDataTag()) == "file size")
        over.maxFileSize = limits.maxFileSize - 1;
    const QByteArray unlimited = ModelFile::toJson(*overLimit);
    QVERIFY(!unlimited.isEmpty());
    QVERIFY(!ModelFile::loadFromData(unlimited, QStringLiteral("m"), &loadError, over));
    QVERIFY(ModelFile::toJson(*overLimit, &error, over).isEmpty());
    QCOMPARE(error, message);

    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString path = directory.filePath(QStringLiteral("model.json"));
    QFile old(path);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    QVERIFY(!ModelFile::save(*overLimit, path, &error, over));
    QCOMPARE(error, path + QStringLiteral(": cannot save the model: ") + message);
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(old.readAll(), QByteArray("old"));
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files), QStringList{QStringLiteral("model.json")});
}

void tst_ModelFile::saveRefusesJsonNestingTheParserRefuses()
{
    // An item at level n is nested 2n + 1 deep in the file and its properties
    // two more; Qt's parser refuses more than 1024 levels whatever the item limit.
    ModelFileLimits deep;
    deep.maxDepth = 1000;
    QString error;
    const QByteArray fits = ModelFile::toJson(*chain(510), &error, deep);
    QVERIFY2(!fits.isEmpty(), qPrintable(error));
    ModelFileError loadError;
    QVERIFY2(ModelFile::loadFromData(fits, QStringLiteral("m"), &loadError, deep), qPrintable(loadError.toString()));

    QVERIFY(ModelFile::toJson(*chain(511), &error, deep).isEmpty());
    QCOMPARE(error, QStringLiteral("the file would nest objects and arrays deeper than 1024 levels"));
}

void tst_ModelFile::saveReportsUnwritablePath()
{
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString path = directory.filePath(QStringLiteral("no such folder/model.json"));
    QString error;
    QVERIFY(!ModelFile::save(*buildSampleViewModel(), path, &error));
    QVERIFY2(error.startsWith(path + QStringLiteral(": cannot write the file: ")), qPrintable(error));
    QVERIFY(error.size() > path.size() + 25);
}

void tst_ModelFile::saveKeepsTheReasonOfAShortWrite()
{
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString path = directory.filePath(QStringLiteral("model.json"));
    const auto viewModel = buildSampleViewModel();
    QVERIFY(ModelFile::toJson(*viewModel).size() > 8192);

    // A file size limit makes the system take part of the text and then fail.
    rlimit previous{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &previous), 0);
    rlimit small = previous;
    small.rlim_cur = 4096;
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    QString error;
    const bool saved = ModelFile::save(*viewModel, path, &error);
    ::setrlimit(RLIMIT_FSIZE, &previous);
    std::signal(SIGXFSZ, previousHandler);

    QVERIFY(!saved);
    QCOMPARE(error, path + QStringLiteral(": cannot write the file: ") + QString::fromLocal8Bit(std::strerror(EFBIG)));
    QVERIFY(!QFile::exists(path));
}

void tst_ModelFile::saveRefusesSpecialFiles_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("FIFO") << QStringLiteral("FIFO");
    QTest::newRow("character device") << QStringLiteral("device");
}

void tst_ModelFile::saveRefusesSpecialFiles()
{
    QFETCH(QString, kind);
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString path = directory.filePath(QStringLiteral("target"));
    if (!makeSpecialFile(kind, path))
        QSKIP("the system does not let this test make such a file");

    QString error;
    QVERIFY(!ModelFile::save(*buildSampleViewModel(), path, &error));
    QCOMPARE(error, path + QStringLiteral(": cannot write the file: it is not a regular file"));
    QVERIFY(isSpecialFile(path));
    QCOMPARE(QDir(directory.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("target")});
}

void tst_ModelFile::loadRefusesSpecialFiles_data()
{
    saveRefusesSpecialFiles_data();
}

void tst_ModelFile::loadRefusesSpecialFiles()
{
    QFETCH(QString, kind);
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString path = directory.filePath(QStringLiteral("source"));
    if (!makeSpecialFile(kind, path))
        QSKIP("the system does not let this test make such a file");

    // A FIFO without a writer would block the reader for ever.
    ModelFileError error;
    QVERIFY(!ModelFile::load(path, &error));
    QCOMPARE(error.toString(), path + QStringLiteral(": cannot read the file: it is not a regular file"));
}

void tst_ModelFile::loadReportsFileProblems()
{
    QTemporaryDir directory;
    QVERIFY(directory.isValid());

    ModelFileError error;
    const QString missing = directory.filePath(QStringLiteral("missing.json"));
    QVERIFY(!ModelFile::load(missing, &error));
    QCOMPARE(error.toString(), missing + QStringLiteral(": cannot open the file: No such file or directory"));
    QCOMPARE(error.file, missing);
    QCOMPARE(error.line, 0);
    QCOMPARE(error.column, 0);

    QVERIFY(!ModelFile::load(directory.path(), &error));
    QCOMPARE(error.toString(), directory.path() + QStringLiteral(": cannot read the file: it is a directory"));

    const QString path = directory.filePath(QStringLiteral("model.json"));
    QString saveError;
    QVERIFY2(ModelFile::save(*buildSampleViewModel(), path, &saveError), qPrintable(saveError));
    ModelFileLimits small;
    small.maxFileSize = 1000;
    QVERIFY(!ModelFile::load(path, &error, small));
    QCOMPARE(error.toString(), path + QStringLiteral(": the file is larger than 1000 bytes"));
    QVERIFY(
        !ModelFile::loadFromData(ModelFile::toJson(*buildSampleViewModel()), QStringLiteral("data"), &error, small));
    QCOMPARE(error.toString(), QStringLiteral("data: the file is larger than 1000 bytes"));

    // A null error pointer is fine.
    QVERIFY(ModelFile::load(path, nullptr));
    QVERIFY(!ModelFile::load(missing, nullptr));
}

void tst_ModelFile::nameThatIsNotTextRoundTrips()
{
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    // Byte 0xff is not valid UTF-8: such a name has no QString form.
    const QByteArray path = QFile::encodeName(directory.path()) + QByteArrayLiteral("/model-\xff.json");
    // The temporary folder's own clean-up goes through QString names.
    const auto removeRawName = qScopeGuard([&] { ::unlink(path.constData()); });
    const auto sample = buildSampleViewModel();
    QString saveError;
    QVERIFY2(ModelFile::save(*sample, path, &saveError), qPrintable(saveError));

    struct stat status
    {
    };
    QCOMPARE(::stat(path.constData(), &status), 0);
    QVERIFY(S_ISREG(status.st_mode));
    const QByteArray json = ModelFile::toJson(*sample);
    QCOMPARE(qint64(status.st_size), qint64(json.size()));
    // Nothing but the target is left in the folder.
    const QList<QByteArray> onlyTarget{QByteArrayLiteral("model-\xff.json")};
    QCOMPARE(Test::rawEntryNames(QFile::encodeName(directory.path())), onlyTarget);

    ModelFileError error;
    const auto loaded = ModelFile::load(path, &error);
    QVERIFY2(loaded, qPrintable(error.toString()));
    compareViewModels(*sample, *loaded);

    // Saving again replaces the file in place.
    QVERIFY2(ModelFile::save(*loaded, path, &saveError), qPrintable(saveError));
    QCOMPARE(::stat(path.constData(), &status), 0);
    QCOMPARE(Test::readRawFile(path), json);
    QCOMPARE(Test::rawEntryNames(QFile::encodeName(directory.path())), onlyTarget);
}

void tst_ModelFile::nameThatIsNotTextKeepsTheReasonOfAFailure()
{
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QByteArray folder = QFile::encodeName(directory.path()) + QByteArrayLiteral("/folder-\xff");
    const QByteArray missing = folder + QByteArrayLiteral("/model.json");
    const QString shown = QFile::decodeName(missing);
    const auto removeRawName = qScopeGuard([&] { ::rmdir(folder.constData()); });

    QString saveError;
    QVERIFY(!ModelFile::save(*buildSampleViewModel(), missing, &saveError));
    QCOMPARE(saveError,
             shown + QStringLiteral(": cannot write the file: ") + QString::fromLocal8Bit(std::strerror(ENOENT)));
    ModelFileError error;
    QVERIFY(!ModelFile::load(missing, &error));
    QCOMPARE(error.toString(),
             shown + QStringLiteral(": cannot open the file: ") + QString::fromLocal8Bit(std::strerror(ENOENT)));

    // A folder of that name is not replaced, and nothing is left beside it.
    QCOMPARE(::mkdir(folder.constData(), 0700), 0);
    QVERIFY(!ModelFile::save(*buildSampleViewModel(), folder, &saveError));
    QVERIFY2(saveError.startsWith(QFile::decodeName(folder) + QStringLiteral(": cannot write the file: ")),
             qPrintable(saveError));
    struct stat status
    {
    };
    QCOMPARE(::stat(folder.constData(), &status), 0);
    QVERIFY(S_ISDIR(status.st_mode));
    QCOMPARE(Test::rawEntryNames(QFile::encodeName(directory.path())), QList<QByteArray>{"folder-\xff"});
}

void tst_ModelFile::defaultLimitsAllowLargeModels()
{
    // Far beyond the sample, well within the default limits.
    const auto synthetic = buildSyntheticViewModel(20000, 5);
    const QByteArray json = ModelFile::toJson(*synthetic);
    QVERIFY(!json.isEmpty());
    const auto loaded = loadOrFail(json);
    QVERIFY(loaded);
    QCOMPARE(loaded->displayModel().rootDisplayItem()->getNumberOfDisplayItems(), std::uint64_t(20000));
}

QTEST_GUILESS_MAIN(tst_ModelFile)
#include "tst_modelfile.moc"
