#include <referencehost/modelfile/JsonPath.h>
#include <referencehost/modelfile/JsonTextLocator.h>

#include <QtTest>

using namespace Brennvik;

Q_DECLARE_METATYPE(Brennvik::JsonPath)

namespace {

// Builds a path from "key" and index steps: path({"a", 2, "b"}).
JsonPath path(std::initializer_list<JsonPath::Step> steps)
{
    JsonPath result;
    for (const auto& step : steps) {
        if (const auto* key = std::get_if<QString>(&step))
            result.appendKey(*key);
        else
            result.appendIndex(std::get<int>(step));
    }
    return result;
}

JsonPath::Step key(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace

class tst_ModelFileLocator : public QObject
{
    Q_OBJECT

private slots:
    void pathText_data();
    void pathText();
    void pathEditing();
    void valueOffset_data();
    void valueOffset();
    void lastOfRepeatedKeysCounts();
    void missingValueFallsBackToAncestor();
    void position_data();
    void position();
    void firstDuplicateKey_data();
    void firstDuplicateKey();
    void endOfText_data();
    void endOfText();
    void deepNestingIsSafe();
};

void tst_ModelFileLocator::pathText_data()
{
    QTest::addColumn<JsonPath>("path");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("pointer");

    QTest::newRow("top level") << JsonPath() << "the top level"
                               << "";
    QTest::newRow("key") << path({key("name")}) << "\"name\""
                         << "/name";
    QTest::newRow("nested key") << path({key("displayModel"), key("root"), key("visible")}) << "\"visible\""
                                << "/displayModel/root/visible";
    QTest::newRow("index after key") << path({key("root"), key("children"), 2}) << "\"children\"[2]"
                                     << "/root/children/2";
    QTest::newRow("two indexes") << path({key("businessProperties"), 0, 1}) << "\"businessProperties\"[0][1]"
                                 << "/businessProperties/0/1";
    QTest::newRow("index at the top") << path({3, 1}) << "the top level[3][1]"
                                      << "/3/1";
    QTest::newRow("escaped pointer") << path({key("a/b~c")}) << "\"a/b~c\""
                                     << "/a~1b~0c";
}

void tst_ModelFileLocator::pathText()
{
    QFETCH(JsonPath, path);
    QFETCH(QString, description);
    QFETCH(QString, pointer);
    QCOMPARE(path.describe(), description);
    QCOMPARE(path.toPointer(), pointer);
}

void tst_ModelFileLocator::pathEditing()
{
    JsonPath p;
    QVERIFY(p.isEmpty());
    p.appendKey(QStringLiteral("children"));
    p.appendIndex(4);
    QCOMPARE(p.size(), 2);
    QCOMPARE(std::get<int>(p.at(1)), 4);
    const JsonPath longer = p.withKey(QStringLiteral("name"));
    QCOMPARE(longer.size(), 3);
    QCOMPARE(p.size(), 2);
    QVERIFY(longer != p);
    JsonPath shorter = longer;
    shorter.removeLast();
    QVERIFY(shorter == p);
    QCOMPARE(p.withIndex(7).toPointer(), QStringLiteral("/children/4/7"));
    JsonPath empty;
    empty.removeLast();
    QVERIFY(empty.isEmpty());
}

void tst_ModelFileLocator::valueOffset_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<JsonPath>("path");
    QTest::addColumn<int>("offset");

    const QByteArray doc = R"({"a": 1, "b": {"c": [10, {"d": "x"}, [true, null]], "e": "s,]}"}, "f": false})";
    QTest::newRow("top") << doc << JsonPath() << 0;
    QTest::newRow("first member") << doc << path({key("a")}) << 6;
    QTest::newRow("object member") << doc << path({key("b")}) << 14;
    QTest::newRow("array") << doc << path({key("b"), key("c")}) << 20;
    QTest::newRow("array element 0") << doc << path({key("b"), key("c"), 0}) << 21;
    QTest::newRow("object in array") << doc << path({key("b"), key("c"), 1, key("d")}) << 31;
    QTest::newRow("nested array element") << doc << path({key("b"), key("c"), 2, 1}) << 44;
    QTest::newRow("after a tricky string") << doc << path({key("f")}) << doc.indexOf("false");
    QTest::newRow("string with brackets") << doc << path({key("b"), key("e")}) << doc.indexOf("\"s,]}\"");
    QTest::newRow("no such key") << doc << path({key("z")}) << -1;
    QTest::newRow("index past the end") << doc << path({key("b"), key("c"), 3}) << -1;
    QTest::newRow("key on an array") << doc << path({key("b"), key("c"), key("x")}) << -1;
    QTest::newRow("index on an object") << doc << path({key("b"), 0}) << -1;
    QTest::newRow("negative index") << doc << path({key("b"), key("c"), -1}) << -1;
    QTest::newRow("whitespace and lines")
        << QByteArray("\n  {\n  \"k\"  :\n\t[ 1 ,\n 2 ]\n}\n") << path({key("k"), 1}) << 22;
    QTest::newRow("escaped key") << QByteArray(R"({"x\"y": 1, "\u0041b\/": 2})") << path({key("Ab/")}) << 25;
    QTest::newRow("quote escape in key") << QByteArray(R"({"x\"y": 1})") << path({key("x\"y")}) << 9;
    QTest::newRow("unknown escape taken literally") << QByteArray(R"({"\q": 1, "b": 2})") << path({key("q")}) << 7;
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF{\"a\": 5}") << path({key("a")}) << 9;
    QTest::newRow("multi-byte text before")
        << QByteArray("{\"\xC3\xA4\": \"\xE2\x82\xAC\", \"b\": 1}") << path({key("b")}) << 19;
    QTest::newRow("cut short") << QByteArray(R"({"a": [1, 2)") << path({key("a"), 1}) << 10;
    QTest::newRow("cut short before") << QByteArray(R"({"a": [1, )") << path({key("a"), 1}) << -1;
}

void tst_ModelFileLocator::valueOffset()
{
    QFETCH(QByteArray, text);
    QFETCH(JsonPath, path);
    QFETCH(int, offset);
    QCOMPARE(JsonTextLocator(text).valueOffset(path), offset);
}

void tst_ModelFileLocator::lastOfRepeatedKeysCounts()
{
    // QJsonDocument keeps the last value of a repeated key; positions follow it.
    const QByteArray text = R"({"a": 1, "a": [2]})";
    QCOMPARE(JsonTextLocator(text).valueOffset(path({key("a")})), 14);
    QCOMPARE(JsonTextLocator(text).valueOffset(path({key("a"), 0})), 15);
}

void tst_ModelFileLocator::missingValueFallsBackToAncestor()
{
    const QByteArray text = "{\n  \"root\": {\n    \"name\": \"r\"\n  }\n}";
    const JsonTextLocator locator(text);
    // The missing "visible" is reported at its object.
    QCOMPARE(locator.valuePosition(path({key("root"), key("visible")})), (JsonTextLocator::Position{2, 11}));
    QCOMPARE(locator.valuePosition(path({key("root"), key("name")})), (JsonTextLocator::Position{3, 13}));
    QCOMPARE(locator.valuePosition(path({key("nothing"), 3})), (JsonTextLocator::Position{1, 1}));
}

void tst_ModelFileLocator::position_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");

    const QByteArray lines = "ab\ncd\n\nef";
    QTest::newRow("start") << lines << 0 << 1 << 1;
    QTest::newRow("second character") << lines << 1 << 1 << 2;
    QTest::newRow("the line feed itself") << lines << 2 << 1 << 3;
    QTest::newRow("second line") << lines << 3 << 2 << 1;
    QTest::newRow("empty line") << lines << 6 << 3 << 1;
    QTest::newRow("last line") << lines << 8 << 4 << 2;
    QTest::newRow("past the end") << lines << 100 << 4 << 3;
    QTest::newRow("negative") << lines << -5 << 1 << 1;
    QTest::newRow("empty text") << QByteArray() << 0 << 1 << 1;
    // "ä€" are 2 and 3 bytes but one column each.
    QTest::newRow("multi-byte characters") << QByteArray("\"\xC3\xA4\xE2\x82\xAC\" x") << 8 << 1 << 6;
    QTest::newRow("tab is one column") << QByteArray("\t\tx") << 2 << 1 << 3;
    QTest::newRow("carriage return line feed") << QByteArray("a\r\nb") << 3 << 2 << 1;
    QTest::newRow("byte order mark takes no column") << QByteArray("\xEF\xBB\xBF{}") << 4 << 1 << 2;
}

void tst_ModelFileLocator::position()
{
    QFETCH(QByteArray, text);
    QFETCH(int, offset);
    QFETCH(int, line);
    QFETCH(int, column);
    const JsonTextLocator::Position position = JsonTextLocator(text).position(offset);
    QCOMPARE(position.line, line);
    QCOMPARE(position.column, column);
}

void tst_ModelFileLocator::firstDuplicateKey_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("offset");

    QTest::newRow("none") << QByteArray(R"({"a": 1, "b": {"a": 2}, "c": [{"a": 3}, {"a": 4}]})") << QString() << -1;
    QTest::newRow("same value text is no key") << QByteArray(R"({"a": "a", "b": ["a", "a"]})") << QString() << -1;
    QTest::newRow("top level") << QByteArray(R"({"a": 1, "b": 2, "a": 3})") << "a" << 17;
    QTest::newRow("nested") << QByteArray(R"({"x": {"n": 1, "n": 2}})") << "n" << 15;
    QTest::newRow("inside an array") << QByteArray(R"([{"k": 1}, {"k": 2, "k": 3}])") << "k" << 20;
    QTest::newRow("after a closed sibling") << QByteArray(R"({"o": {"p": 1}, "p": 2, "o": 3})") << "o" << 24;
    QTest::newRow("escaped spelling") << QByteArray(R"({"ab": 1, "\u0061b": 2})") << "ab" << 10;
    QTest::newRow("first in text order") << QByteArray(R"({"z": {"q": 1, "q": 2}, "z": 3})") << "q" << 15;
    QTest::newRow("not well-formed") << QByteArray(R"({"a": "open)") << QString() << -1;
}

void tst_ModelFileLocator::firstDuplicateKey()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, key);
    QFETCH(int, offset);
    const auto duplicate = JsonTextLocator(text).firstDuplicateKey();
    if (offset < 0) {
        QVERIFY(!duplicate.has_value());
        return;
    }
    QVERIFY(duplicate.has_value());
    QCOMPARE(duplicate->key, key);
    QCOMPARE(duplicate->offset, offset);
}

void tst_ModelFileLocator::endOfText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("open");
    QTest::addColumn<int>("last");

    QTest::newRow("complete") << QByteArray("{\"a\": [1]}\n") << false << 9;
    QTest::newRow("open object") << QByteArray("{\"a\": 1") << true << 6;
    QTest::newRow("open array") << QByteArray("{\"a\": [1, \n") << true << 8;
    QTest::newRow("open string") << QByteArray("{\"a\": \"x") << true << 7;
    QTest::newRow("brackets in a string") << QByteArray("{\"a\": \"[{\"}") << false << 10;
    QTest::newRow("escaped quote") << QByteArray(R"({"a": "\"}")") << true << 10;
    QTest::newRow("too many closers") << QByteArray("{}}") << false << 2;
    QTest::newRow("empty") << QByteArray(" \n") << false << -1;
}

void tst_ModelFileLocator::endOfText()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, open);
    QFETCH(int, last);
    const JsonTextLocator locator(text);
    QCOMPARE(locator.endsInsideValue(), open);
    QCOMPARE(locator.lastNonWhitespace(), last);
}

void tst_ModelFileLocator::deepNestingIsSafe()
{
    // Far deeper than any recursion would survive; the locator keeps its own stack.
    const int depth = 200000;
    QByteArray text = QByteArray(depth, '[') + "{\"a\": 1, \"a\": 2}" + QByteArray(depth, ']');
    const JsonTextLocator locator(text);
    // Past the parser's 1,024 levels the parser refuses the text for its
    // nesting, so the search for repeated keys stops there.
    QVERIFY(!locator.firstDuplicateKey());
    const int deepest = 1023;
    const auto duplicate = JsonTextLocator(QByteArray(deepest, '[') + "{\"a\": 1, \"a\": 2}" + QByteArray(deepest, ']'))
                               .firstDuplicateKey();
    QVERIFY(duplicate.has_value());
    QCOMPARE(duplicate->offset, deepest + 9);
    JsonPath inner;
    for (int i = 0; i < depth; ++i)
        inner.appendIndex(0);
    QCOMPARE(locator.valueOffset(inner), depth);
    QCOMPARE(locator.valueOffset(JsonPath().withIndex(1)), -1);
    QVERIFY(!locator.endsInsideValue());
    QVERIFY(JsonTextLocator(QByteArray(depth, '[')).endsInsideValue());
}

QTEST_GUILESS_MAIN(tst_ModelFileLocator)
#include "tst_modelfile_locator.moc"
