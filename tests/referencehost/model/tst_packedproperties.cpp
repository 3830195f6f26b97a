#include <referencehost/model/PackedProperties.h>

#include <QtTest>

#include <string>

using namespace Brennvik;
using Kind = PackedProperties::Kind;

Q_DECLARE_METATYPE(std::string)
Q_DECLARE_METATYPE(Brennvik::PropertyList)

namespace {

PropertyList numbered(const char* prefix, int count)
{
    PropertyList list;
    for (int i = 0; i < count; ++i)
        list.emplace_back(prefix + std::to_string(i), std::to_string(i * 7));
    return list;
}

} // namespace

class tst_PackedProperties : public QObject
{
    Q_OBJECT

private slots:
    void emptyHasNothing();
    void textsReadBackAsWritten_data();
    void textsReadBackAsWritten();
    void listsKeepOrderAndStayApart();
    void setReplacesTheFirstOfEqualNames();
    void setAllMatchesSingleSets_data();
    void setAllMatchesSingleSets();
    void copiesAreIndependent();
};

void tst_PackedProperties::emptyHasNothing()
{
    const PackedProperties properties;
    for (const Kind kind : {Kind::Business, Kind::Display}) {
        QVERIFY(properties.empty(kind));
        QCOMPARE(properties.size(kind), std::size_t(0));
        QCOMPARE(properties.find(kind, ""), std::optional<std::string>());
        QVERIFY(properties.list(kind).empty());
    }
}

void tst_PackedProperties::textsReadBackAsWritten_data()
{
    QTest::addColumn<std::string>("name");
    QTest::addColumn<std::string>("value");

    QTest::newRow("short") << std::string("color") << std::string("#102030");
    QTest::newRow("empty name") << std::string() << std::string("value");
    QTest::newRow("empty value") << std::string("name") << std::string();
    QTest::newRow("longest short length") << std::string(254, 'n') << std::string(254, 'v');
    QTest::newRow("shortest long length") << std::string(255, 'n') << std::string(255, 'v');
    QTest::newRow("long value") << std::string("text") << std::string(70000, 'x');
    QTest::newRow("embedded zero bytes") << std::string("a\0b", 3) << std::string("\0\xff\0", 3);
}

void tst_PackedProperties::textsReadBackAsWritten()
{
    QFETCH(std::string, name);
    QFETCH(std::string, value);

    // Between neighbours on both sides, in both lists: a length read wrongly
    // would shift every property after it.
    PackedProperties properties;
    for (const Kind kind : {Kind::Business, Kind::Display}) {
        properties.set(kind, "before", "1");
        properties.set(kind, name, value);
        properties.set(kind, "after", "2");
    }
    const PropertyList expected{{"before", "1"}, {name, value}, {"after", "2"}};
    for (const Kind kind : {Kind::Business, Kind::Display}) {
        QCOMPARE(properties.list(kind), expected);
        QCOMPARE(properties.find(kind, name), std::optional<std::string>(value));
        QCOMPARE(properties.find(kind, "after"), std::optional<std::string>("2"));
    }
}

void tst_PackedProperties::listsKeepOrderAndStayApart()
{
    PackedProperties properties;
    properties.set(Kind::Display, "color", "red");
    properties.set(Kind::Business, "id", "7");
    properties.set(Kind::Display, "render mode", "shaded");
    properties.set(Kind::Business, "weight", "1.5");

    QCOMPARE(properties.list(Kind::Business), (PropertyList{{"id", "7"}, {"weight", "1.5"}}));
    QCOMPARE(properties.list(Kind::Display), (PropertyList{{"color", "red"}, {"render mode", "shaded"}}));
    QCOMPARE(properties.size(Kind::Business), std::size_t(2));
    QCOMPARE(properties.find(Kind::Business, "color"), std::optional<std::string>());

    // appendTo adds behind what the list holds.
    PropertyList list{{"pointer", "0x1"}};
    properties.appendTo(Kind::Business, list);
    QCOMPARE(list, (PropertyList{{"pointer", "0x1"}, {"id", "7"}, {"weight", "1.5"}}));
}

void tst_PackedProperties::setReplacesTheFirstOfEqualNames()
{
    PackedProperties properties;
    properties.set(Kind::Business, "a", "1");
    properties.set(Kind::Business, "b", "2");
    properties.set(Kind::Business, "a", "a much longer value than before");
    QCOMPARE(properties.list(Kind::Business), (PropertyList{{"a", "a much longer value than before"}, {"b", "2"}}));
    properties.set(Kind::Business, "a", "");
    QCOMPARE(properties.list(Kind::Business), (PropertyList{{"a", ""}, {"b", "2"}}));
    QVERIFY(properties.empty(Kind::Display));
}

void tst_PackedProperties::setAllMatchesSingleSets_data()
{
    QTest::addColumn<PropertyList>("existing");
    QTest::addColumn<PropertyList>("added");

    QTest::newRow("into empty lists") << PropertyList{} << PropertyList{{"a", "1"}, {"b", "2"}};
    QTest::newRow("existing names keep their place")
        << PropertyList{{"a", "1"}, {"b", "2"}} << PropertyList{{"b", "3"}, {"c", "4"}};
    QTest::newRow("a repeated name") << PropertyList{{"x", "0"}} << PropertyList{{"a", "1"}, {"x", "2"}, {"a", "3"}};
    QTest::newRow("nothing to add") << PropertyList{{"a", "1"}} << PropertyList{};
    QTest::newRow("many") << numbered("p", 3000) << numbered("p", 5000);
}

void tst_PackedProperties::setAllMatchesSingleSets()
{
    QFETCH(PropertyList, existing);
    QFETCH(PropertyList, added);

    for (const Kind kind : {Kind::Business, Kind::Display}) {
        const Kind other = kind == Kind::Business ? Kind::Display : Kind::Business;
        PackedProperties bulk;
        PackedProperties single;
        for (PackedProperties* target : {&bulk, &single}) {
            target->set(other, "untouched", "yes");
            for (const auto& [name, value] : existing)
                target->set(kind, name, value);
        }
        bulk.setAll(kind, added);
        for (const auto& [name, value] : added)
            single.set(kind, name, value);
        QCOMPARE(bulk.list(kind), single.list(kind));
        QCOMPARE(bulk.list(other), (PropertyList{{"untouched", "yes"}}));
    }
}

void tst_PackedProperties::copiesAreIndependent()
{
    PackedProperties original;
    original.set(Kind::Business, "id", "1");
    original.set(Kind::Display, "color", std::string(300, 'c'));

    PackedProperties copy(original);
    copy.set(Kind::Business, "id", "2");
    QCOMPARE(original.find(Kind::Business, "id"), std::optional<std::string>("1"));
    QCOMPARE(copy.find(Kind::Display, "color"), std::optional<std::string>(std::string(300, 'c')));

    PackedProperties assigned;
    assigned.set(Kind::Display, "old", "gone");
    assigned = original;
    QCOMPARE(assigned.list(Kind::Display), original.list(Kind::Display));
    assigned = PackedProperties();
    QVERIFY(assigned.empty(Kind::Business));
    QVERIFY(assigned.empty(Kind::Display));
    QCOMPARE(original.size(Kind::Display), std::size_t(1));
}

QTEST_GUILESS_MAIN(tst_PackedProperties)
#include "tst_packedproperties.moc"
