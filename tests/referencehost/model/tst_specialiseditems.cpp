#include "RecordingObserver.h"

#include <referencehost/model/DisplayItemCloneMap.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/ShellItem.h>

#include <QtTest>

using namespace Brennvik;
using Brennvik::Test::RecordedEvent;
using Brennvik::Test::RecordingObserver;

namespace {

std::shared_ptr<DisplayItem> makeItem(const QString& type)
{
    if (type == "ShellItem")
        return std::make_shared<ShellItem>("Upper die", "Tool", "Upper die");
    if (type == "GeometryModuleItem")
        return std::make_shared<GeometryModuleItem>("Tool geometry");
    if (type == "LabelableItem")
        return std::make_shared<LabelableItem>("MP 01", "t = 1.12 mm", true);
    return std::make_shared<DisplayItem>("Group");
}

PropertyList displayProperties(const DisplayItemInterface& item)
{
    PropertyList business;
    PropertyList display;
    item.getProperties(business, display);
    return display;
}

} // namespace

class tst_SpecialisedItems : public QObject
{
    Q_OBJECT

private slots:
    void typeProperties_data();
    void typeProperties();
    void copiesKeepTheirType_data();
    void copiesKeepTheirType();
    void shellTypeAndName();
    void geometryList();
    void geometryListDropsGoneItems();
    void geometryListDuplicatesAfterChanges();
    void geometryListRemapping();
    void labelSettersRaisePropertiesChanged();
};

void tst_SpecialisedItems::typeProperties_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("expected"); // display list after the pointer, as name=value

    QTest::newRow("DisplayItem") << "DisplayItem" << QStringList{"display item type=DisplayItem", "color=red"};
    QTest::newRow("ShellItem") << "ShellItem"
                               << QStringList{"display item type=ShellItem", "shell type=Tool", "shell name=Upper die",
                                              "color=red"};
    QTest::newRow("GeometryModuleItem") << "GeometryModuleItem"
                                        << QStringList{"display item type=GeometryModuleItem", "geometry items=0",
                                                       "color=red"};
    QTest::newRow("LabelableItem") << "LabelableItem" << QStringList{"display item type=LabelableItem", "color=red"};
}

void tst_SpecialisedItems::typeProperties()
{
    QFETCH(QString, type);
    QFETCH(QStringList, expected);
    const auto item = makeItem(type);
    item->setDisplayProperty("color", "red");
    QCOMPARE(QString::fromStdString(item->typeName()), type);

    PropertyList display = displayProperties(*item);
    QCOMPARE(display.front().first, std::string("pointer (DisplayItemInterface)"));
    display.pop_front();
    QStringList actual;
    for (const auto& [name, value] : display)
        actual << QString::fromStdString(name + "=" + value);
    QCOMPARE(actual, expected);
}

void tst_SpecialisedItems::copiesKeepTheirType_data()
{
    QTest::addColumn<QString>("type");
    QTest::newRow("DisplayItem") << "DisplayItem";
    QTest::newRow("ShellItem") << "ShellItem";
    QTest::newRow("GeometryModuleItem") << "GeometryModuleItem";
    QTest::newRow("LabelableItem") << "LabelableItem";
}

void tst_SpecialisedItems::copiesKeepTheirType()
{
    QFETCH(QString, type);
    const auto item = makeItem(type);
    item->setVisible(false);
    item->setBusinessProperty("id", "42");
    const auto copy = item->copyWithoutChildren();
    QVERIFY(copy != item);
    QVERIFY(typeid(*copy) == typeid(*item));
    QCOMPARE(copy->getDisplayName(), item->getDisplayName());
    QVERIFY(!copy->isVisible());
    QCOMPARE(copy->businessProperty("id"), std::optional<std::string>("42"));
    if (const auto shell = std::dynamic_pointer_cast<ShellItem>(copy))
        QCOMPARE(shell->getShellTypeAndNameAsString(), std::string("Tool: Upper die"));
    if (const auto labelable = std::dynamic_pointer_cast<LabelableItem>(copy)) {
        QCOMPARE(labelable->getLabel(), std::string("t = 1.12 mm"));
        QVERIFY(labelable->areLabelsAllowed());
    }
}

void tst_SpecialisedItems::shellTypeAndName()
{
    auto shell = std::make_shared<ShellItem>("Blank", "Blank", "DC04 1.20 mm");
    std::shared_ptr<DisplayItemInterface> asInterface = shell;
    const auto* viaCast = dynamic_cast<const ShellDisplayItem*>(asInterface.get());
    QVERIFY(viaCast);
    QCOMPARE(viaCast->getShellTypeAndNameAsString(), std::string("Blank: DC04 1.20 mm"));
    QCOMPARE(viaCast->getShellType(), std::string("Blank"));
    QCOMPARE(viaCast->getShellName(), std::string("DC04 1.20 mm"));
    QCOMPARE(shell->getDescription(), std::string("ShellItem \"Blank\" [Blank: DC04 1.20 mm] at Blank"));
    // A plain item is no shell.
    std::shared_ptr<DisplayItemInterface> plain = std::make_shared<DisplayItem>("plain");
    QCOMPARE(dynamic_cast<const ShellDisplayItem*>(plain.get()), nullptr);
}

void tst_SpecialisedItems::geometryList()
{
    auto module = std::make_shared<GeometryModuleItem>("Module");
    auto geometry = std::make_shared<DisplayItem>("Geometry");
    module->appendChild(geometry);
    auto face = std::make_shared<DisplayItem>("Face");
    auto edge = std::make_shared<DisplayItem>("Edge");
    geometry->appendChildren({face, edge});

    RecordingObserver observer;
    observer.registerToDisplayItem(module);
    module->addGeometryDisplayItem(face);
    module->addGeometryDisplayItem(edge);
    module->addGeometryDisplayItem(face); // listed once
    module->addGeometryDisplayItem(nullptr);
    QCOMPARE(module->getGeometryDisplayItems(), (DisplayItemList{face, edge}));
    QCOMPARE(displayProperties(*module).back(), (Property{"geometry items", "2"}));
    QCOMPARE(observer.total(), 0);

    std::shared_ptr<DisplayItemInterface> asInterface = module;
    const auto* viaCast = dynamic_cast<const GeometryModuleDisplayItemInterface*>(asInterface.get());
    QVERIFY(viaCast);
    QCOMPARE(viaCast->getGeometryDisplayItems().size(), std::size_t(2));

    QVERIFY(module->removeGeometryDisplayItem(face.get()));
    QVERIFY(!module->removeGeometryDisplayItem(face.get()));
    QVERIFY(!module->removeGeometryDisplayItem(nullptr));
    QCOMPARE(module->getGeometryDisplayItems(), (DisplayItemList{edge}));
    module->clearGeometryDisplayItems();
    QVERIFY(module->getGeometryDisplayItems().empty());
}

void tst_SpecialisedItems::geometryListDropsGoneItems()
{
    auto module = std::make_shared<GeometryModuleItem>("Module");
    auto kept = std::make_shared<DisplayItem>("kept");
    {
        auto gone = std::make_shared<DisplayItem>("gone");
        module->addGeometryDisplayItem(gone);
        module->addGeometryDisplayItem(kept);
    }
    QCOMPARE(module->getGeometryDisplayItems(), (DisplayItemList{kept}));
}

void tst_SpecialisedItems::geometryListDuplicatesAfterChanges()
{
    auto module = std::make_shared<GeometryModuleItem>("Module");
    auto a = std::make_shared<DisplayItem>("a");
    auto b = std::make_shared<DisplayItem>("b");
    auto c = std::make_shared<DisplayItem>("c");
    for (const auto& item : {a, b, c, b, a})
        module->addGeometryDisplayItem(item);
    QCOMPARE(module->getGeometryDisplayItems(), (DisplayItemList{a, b, c}));

    // A removed item may be listed again, at the end.
    QVERIFY(module->removeGeometryDisplayItem(a.get()));
    module->addGeometryDisplayItem(a);
    module->addGeometryDisplayItem(a);
    QCOMPARE(module->getGeometryDisplayItems(), (DisplayItemList{b, c, a}));

    // A copy knows what it lists; a remapped copy knows the new items only.
    const auto copy = std::dynamic_pointer_cast<GeometryModuleItem>(module->copyWithoutChildren());
    QVERIFY(copy);
    copy->addGeometryDisplayItem(c);
    QCOMPARE(copy->getGeometryDisplayItems(), (DisplayItemList{b, c, a}));
    const auto copyOfC = std::make_shared<DisplayItem>("c");
    DisplayItemCloneMap map;
    map.add(c.get(), copyOfC);
    copy->remapReferences(map);
    copy->addGeometryDisplayItem(copyOfC);
    copy->addGeometryDisplayItem(c);
    QCOMPARE(copy->getGeometryDisplayItems(),
             (DisplayItemList{b, copyOfC, a, std::static_pointer_cast<DisplayItemInterface>(c)}));

    module->clearGeometryDisplayItems();
    module->addGeometryDisplayItem(c);
    module->addGeometryDisplayItem(c);
    QCOMPARE(module->getGeometryDisplayItems(), (DisplayItemList{c}));
}

void tst_SpecialisedItems::geometryListRemapping()
{
    auto module = std::make_shared<GeometryModuleItem>("Module");
    auto copied = std::make_shared<DisplayItem>("copied");
    auto dropped = std::make_shared<DisplayItem>("dropped");
    auto outside = std::make_shared<DisplayItem>("outside");
    module->addGeometryDisplayItem(copied);
    module->addGeometryDisplayItem(dropped);
    module->addGeometryDisplayItem(outside);

    const auto copyOfCopied = std::make_shared<DisplayItem>("copied");
    DisplayItemCloneMap map;
    map.add(copied.get(), copyOfCopied);
    map.add(dropped.get(), nullptr);
    QVERIFY(map.contains(dropped.get()));
    QVERIFY(!map.contains(outside.get()));

    const auto moduleCopy = std::dynamic_pointer_cast<GeometryModuleItem>(module->copyWithoutChildren());
    QVERIFY(moduleCopy);
    // Before remapping the copy still lists the originals.
    QCOMPARE(moduleCopy->getGeometryDisplayItems(), (DisplayItemList{copied, dropped, outside}));
    moduleCopy->remapReferences(map);
    QCOMPARE(moduleCopy->getGeometryDisplayItems(),
             (DisplayItemList{copyOfCopied, std::static_pointer_cast<DisplayItemInterface>(outside)}));
    // The original is untouched.
    QCOMPARE(module->getGeometryDisplayItems().size(), std::size_t(3));
}

void tst_SpecialisedItems::labelSettersRaisePropertiesChanged()
{
    auto label = std::make_shared<LabelableItem>("MP 01", "old", false);
    RecordingObserver observer;
    observer.registerToDisplayItem(label);
    label->setLabel("t = 1.05 mm");
    label->setLabelsAllowed(true);
    QCOMPARE(label->getLabel(), std::string("t = 1.05 mm"));
    QVERIFY(label->areLabelsAllowed());
    QCOMPARE(observer.count(RecordedEvent::Type::PropertiesChanged), 2);
    std::shared_ptr<DisplayItemInterface> asInterface = label;
    const auto* viaCast = dynamic_cast<const LabelableDisplayItemInterface*>(asInterface.get());
    QVERIFY(viaCast);
    QCOMPARE(viaCast->getLabel(), std::string("t = 1.05 mm"));
}

QTEST_GUILESS_MAIN(tst_SpecialisedItems)
#include "tst_specialiseditems.moc"
