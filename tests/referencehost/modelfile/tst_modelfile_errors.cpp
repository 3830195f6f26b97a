#include <referencehost/model/SceneViewModel.h>
#include <referencehost/modelfile/ModelFile.h>

#include <QtTest>

#include <sys/resource.h>
#include <unistd.h>

using namespace Brennvik;

namespace {

// The first line of most cases; the top-level object starts at 1:1.
const QByteArray kHead = "{\"format\": \"brennvik-display-model\", \"version\": 1,\n";

// A file whose root item is the whole of line 3.
QByteArray withRoot(const QByteArray& item)
{
    return kHead + "\"displayModel\": {\"root\":\n" + item + "}}";
}

// A file whose display model members (after a root with id "r") are line 3.
QByteArray withModelMembers(const QByteArray& members)
{
    return kHead + "\"displayModel\": {\"root\": {\"name\": \"r\", \"id\": \"r\"},\n" + members + "}}";
}

// A file whose single edit primitive is line 3.
QByteArray withPrimitive(const QByteArray& primitive)
{
    return kHead + "\"displayModel\": {}, \"editor\": {\"primitives\": [\n" + primitive + "]}}";
}

// Items nested \a levels deep, one per line from line 3 on.
QByteArray nestedItems(int levels)
{
    QByteArray item;
    for (int level = 0; level < levels; ++level)
        item += "{\"name\": \"" + QByteArray::number(level) + "\", \"children\": [\n";
    item += "{\"name\": \"leaf\"}";
    for (int level = 0; level < levels; ++level)
        item += "]}";
    return withRoot(item);
}

} // namespace

class tst_ModelFileErrors : public QObject
{
    Q_OBJECT

private slots:
    void malformedInput_data();
    void malformedInput();
    void errorFields();
    void validHeadLoads();
    void deepNestingIsRefusedInBoundedMemory_data();
    void deepNestingIsRefusedInBoundedMemory();
};

void tst_ModelFileErrors::malformedInput_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("maxItems");
    QTest::addColumn<int>("maxListLength");

    const auto row
        = [](const char* name, const QByteArray& json, const QString& expected, int maxItems = 0,
             int maxListLength = 0) { QTest::newRow(name) << json << expected << maxItems << maxListLength; };

    // Not a JSON object at all.
    row("empty file", "", "model.json:1:1: the file is empty, expected a JSON object");
    row("only whitespace", "  \n\t\n", "model.json:1:1: the file is empty, expected a JSON object");
    row("not JSON", "model", "model.json:1:1: not valid JSON: expected a JSON value");
    row("truncated", kHead + "\"displayModel\": {\"root\": {\"name\": \"R\"",
        "model.json:2:38: unexpected end of the file, the JSON text is incomplete");
    row("bad literal", kHead + "\"displayModel\": tru}", "model.json:2:17: not valid JSON: expected a JSON value");
    row("missing comma", kHead + "\"displayModel\": {} \"editor\": null}",
        "model.json:2:20: not valid JSON: expected \",\" or \"}\" after an object member");
    row("missing colon", kHead + "\"displayModel\" {}}", "model.json:2:16: not valid JSON: expected \":\" after a key");
    row("missing comma between pairs",
        withRoot("{\"name\": \"r\", \"businessProperties\": [[\"a\", \"1\"] [\"b\", \"2\"]]}"),
        "model.json:3:49: not valid JSON: expected \",\" between values");
    row("comma before closing brace", kHead + "\"displayModel\": {},}",
        "model.json:2:20: not valid JSON: expected a value after \",\"");
    row("truncated inside a string", kHead + "\"displayModel\": {\"root\": {\"name\": \"Ro",
        "model.json:2:38: unexpected end of the file, the JSON text is incomplete");
    row("truncated after a comma", kHead + "\"displayModel\": {},\n  ",
        "model.json:3:3: unexpected end of the file, the JSON text is incomplete");
    row("text after the object", kHead + "\"displayModel\": {}} x",
        "model.json:2:21: not valid JSON: unexpected text after the top-level object");
    row("invalid UTF-8", kHead + "\"displayModel\": {\"root\": {\"name\": \"\xff\"}}}",
        "model.json:2:36: not valid JSON: invalid UTF-8 in a string");
    row("JSON nested too deeply", QByteArray(2000, '[') + QByteArray(2000, ']'),
        "model.json:1:1025: not valid JSON: objects and arrays nested too deeply");
    row("top-level array", "[{\"format\": \"brennvik-display-model\", \"version\": 1}]",
        "model.json:1:1: expected a JSON object at the top level");
    row("duplicate key", kHead + "\"displayModel\": {}, \"version\": 1}", "model.json:2:21: duplicate key \"version\"");
    // Qt's parser takes an escaped lone surrogate and a raw U+FFFD for one key.
    row("lone surrogate and replacement character",
        kHead + "\"displayModel\": {}, \"\\ud800\": [], \"\xef\xbf\xbd\": []}",
        "model.json:2:35: duplicate key \"\xef\xbf\xbd\"");
    row("lone surrogates and replacement characters",
        kHead + "\"displayModel\": {}, \"\\udc00\\ud800\": {}, \"\xef\xbf\xbd\xef\xbf\xbd\": {}}",
        "model.json:2:41: duplicate key \"\xef\xbf\xbd\xef\xbf\xbd\"");
    // Quoted input is cut, so that a huge key does not make a huge message.
    row("long duplicate key",
        kHead + "\"displayModel\": {}, \"" + QByteArray(5000, 'k') + "\": 1, \"" + QByteArray(5000, 'k') + "\": 2}",
        "model.json:2:5028: duplicate key \"" + QString(40, QLatin1Char('k')) + "...\"");
    row("long unknown field", kHead + "\"displayModel\": {}, \"" + QByteArray(5000, 'x') + "\": 0}",
        "model.json:2:5025: unknown field \"" + QString(40, QLatin1Char('x')) + "...\"");
    row("long unknown item kind", withRoot("{\"kind\": \"" + QByteArray(1000, 'M') + "\", \"name\": \"r\"}"),
        "model.json:3:10: unknown item kind \"" + QString(40, QLatin1Char('M'))
            + "...\", expected DisplayItem, ShellItem, GeometryModuleItem or LabelableItem");
    // A literal cut short is a word that is not a JSON value, wherever it ends.
    row("cut inside true", kHead + "\"displayModel\": {\"root\": {\"name\": \"r\", \"visible\": tr",
        "model.json:2:51: not valid JSON: expected a JSON value");
    row("cut inside false", kHead + "\"displayModel\": {\"root\": {\"name\": \"r\", \"visible\": fals",
        "model.json:2:51: not valid JSON: expected a JSON value");
    row("cut inside null", kHead + "\"displayModel\": {\"root\": null, \"kind7Source\": n",
        "model.json:2:47: not valid JSON: expected a JSON value");
    row("cut after a whole literal", kHead + "\"displayModel\": {\"root\": null",
        "model.json:2:30: unexpected end of the file, the JSON text is incomplete");

    // The top level.
    row("missing format", "{\"version\": 1, \"displayModel\": {}}", "model.json:1:1: missing field \"format\"");
    row("wrong format", "{\"format\": \"other\", \"version\": 1, \"displayModel\": {}}",
        "model.json:1:12: expected \"brennvik-display-model\" for \"format\"");
    row("format not a string", "{\"format\": 1, \"version\": 1, \"displayModel\": {}}",
        "model.json:1:12: expected \"brennvik-display-model\" for \"format\"");
    row("missing version", "{\"format\": \"brennvik-display-model\", \"displayModel\": {}}",
        "model.json:1:1: missing field \"version\"");
    row("version as a string", "{\"format\": \"brennvik-display-model\", \"version\": \"1\", \"displayModel\": {}}",
        "model.json:1:49: expected an integer for \"version\"");
    row("version not whole", "{\"format\": \"brennvik-display-model\", \"version\": 1.5, \"displayModel\": {}}",
        "model.json:1:49: expected an integer for \"version\"");
    row("wrong version", "{\"format\": \"brennvik-display-model\", \"version\": 2, \"displayModel\": {}}",
        "model.json:1:49: unsupported version 2, expected 1");
    row("unknown top-level field", kHead + "\"displayModel\": {}, \"extra\": 0}",
        "model.json:2:30: unknown field \"extra\"");
    row("missing display model", kHead + "\"editor\": null}", "model.json:1:1: missing field \"displayModel\"");
    row("display model not an object", kHead + "\"displayModel\": []}",
        "model.json:2:17: expected an object for \"displayModel\"");
    row("label model not an object", kHead + "\"displayModel\": {}, \"labelModel\": \"none\"}",
        "model.json:2:35: expected an object for \"labelModel\"");
    row("editor not an object", kHead + "\"displayModel\": {}, \"editor\": 5}",
        "model.json:2:31: expected an object for \"editor\"");

    // Items.
    row("root not an object", withRoot("[]"), "model.json:3:1: expected an object for \"root\"");
    row("missing name", withRoot("{\"visible\": true}"), "model.json:3:1: missing field \"name\"");
    row("name not a string", withRoot("{\"name\": 5}"), "model.json:3:10: expected a string for \"name\"");
    row("visible not a boolean", withRoot("{\"name\": \"r\", \"visible\": \"yes\"}"),
        "model.json:3:26: expected a boolean for \"visible\"");
    row("selected not a boolean", withRoot("{\"name\": \"r\", \"selected\": 1}"),
        "model.json:3:27: expected a boolean for \"selected\"");
    row("selection allowed null", withRoot("{\"name\": \"r\", \"selectionAllowed\": null}"),
        "model.json:3:35: expected a boolean for \"selectionAllowed\"");
    row("properties not an array", withRoot("{\"name\": \"r\", \"businessProperties\": {}}"),
        "model.json:3:37: expected an array for \"businessProperties\"");
    row("property not a pair", withRoot("{\"name\": \"r\", \"displayProperties\": [[\"color\"]]}"),
        "model.json:3:37: expected a [name, value] pair of strings for \"displayProperties\"[0]");
    row("property value not a string", withRoot("{\"name\": \"r\", \"displayProperties\": [[\"color\", 3]]}"),
        "model.json:3:37: expected a [name, value] pair of strings for \"displayProperties\"[0]");
    row("duplicate property", withRoot("{\"name\": \"r\", \"businessProperties\": [[\"a\", \"1\"], [\"a\", \"2\"]]}"),
        "model.json:3:51: duplicate property \"a\" in \"businessProperties\"");
    row("children not an array", withRoot("{\"name\": \"r\", \"children\": {}}"),
        "model.json:3:27: expected an array for \"children\"");
    row("child not an object", withRoot("{\"name\": \"r\", \"children\": [{\"name\": \"a\"}, \"b\"]}"),
        "model.json:3:43: expected an object for \"children\"[1]");
    row("unknown item kind", withRoot("{\"kind\": \"Mesh\", \"name\": \"r\"}"),
        "model.json:3:10: unknown item kind \"Mesh\", expected DisplayItem, ShellItem, GeometryModuleItem or "
        "LabelableItem");
    row("kind not a string", withRoot("{\"kind\": 3, \"name\": \"r\"}"),
        "model.json:3:10: expected a string for \"kind\"");
    row("shell without type", withRoot("{\"kind\": \"ShellItem\", \"name\": \"s\", \"shellName\": \"Die\"}"),
        "model.json:3:1: missing field \"shellType\"");
    row("labelable without label", withRoot("{\"kind\": \"LabelableItem\", \"name\": \"p\"}"),
        "model.json:3:1: missing field \"label\"");
    row("labels allowed not a boolean",
        withRoot("{\"kind\": \"LabelableItem\", \"name\": \"p\", \"label\": \"x\", \"labelsAllowed\": \"no\"}"),
        "model.json:3:71: expected a boolean for \"labelsAllowed\"");
    row("unknown item field", withRoot("{\"name\": \"r\", \"visble\": false}"),
        "model.json:3:25: unknown field \"visble\"");
    row("field of another kind", withRoot("{\"name\": \"r\", \"label\": \"x\"}"),
        "model.json:3:24: unknown field \"label\"");

    // Ids and references.
    row("duplicate id",
        withRoot("{\"name\": \"r\", \"id\": \"a\", \"children\": [\n  {\"name\": \"c\", \"id\": \"a\"}]}"),
        "model.json:4:23: duplicate item id \"a\" (first used at line 3, column 21)");
    row("empty id", withRoot("{\"name\": \"r\", \"id\": \"\"}"), "model.json:3:21: an item id must not be empty");
    row("id not a string", withRoot("{\"name\": \"r\", \"id\": 7}"), "model.json:3:21: expected a string for \"id\"");
    row("dangling geometry item",
        withRoot("{\"kind\": \"GeometryModuleItem\", \"name\": \"m\", \"geometryItems\": [\"x\"]}"),
        "model.json:3:63: unknown item id \"x\" in \"geometryItems\"[0]");
    row("null geometry item",
        withRoot("{\"kind\": \"GeometryModuleItem\", \"name\": \"m\", \"geometryItems\": [null]}"),
        "model.json:3:63: expected an item id (a string) for \"geometryItems\"[0]");
    row("geometry item listed twice",
        withRoot(
            "{\"kind\": \"GeometryModuleItem\", \"name\": \"m\", \"geometryItems\": [\"m\", \"m\"], \"id\": \"m\"}"),
        "model.json:3:68: the item id \"m\" is listed twice in \"geometryItems\"");
    row("dangling step", withModelMembers("\"kind6Provider\": {\"steps\": [null, \"q\"]}"),
        "model.json:3:35: unknown item id \"q\" in \"steps\"[1]");
    row("step not an id", withModelMembers("\"kind6Provider\": {\"steps\": [4]}"),
        "model.json:3:29: expected an item id (a string) or null for \"steps\"[0]");
    row("dangling lookup root", withModelMembers("\"kind7Lookup\": {\"root\": \"nowhere\"}"),
        "model.json:3:25: unknown item id \"nowhere\" in \"root\"");
    row("dangling default entry", withModelMembers("\"defaultEntryOwner\": {\"entry\": \"x\"}"),
        "model.json:3:32: unknown item id \"x\" in \"entry\"");

    // Contexts and lookups.
    row("context without kind", withModelMembers("\"activeContext\": {\"name\": \"c\"}"),
        "model.json:3:18: missing field \"kind\"");
    row("context kind not a number", withModelMembers("\"activeContext\": {\"kind\": \"6\"}"),
        "model.json:3:27: expected an integer for \"kind\"");
    row("context kind out of range", withModelMembers("\"activeContext\": {\"kind\": 3000000000}"),
        "model.json:3:27: \"kind\" is out of range (-2147483648 to 2147483647)");
    row("negative kind-6 index", withModelMembers("\"kind6Index\": -1"),
        "model.json:3:15: \"kind6Index\" must not be negative");
    row("kind-6 index not whole", withModelMembers("\"kind6Index\": 0.5"),
        "model.json:3:15: expected an integer for \"kind6Index\"");
    row("kind-6 index past the steps", withModelMembers("\"kind6Provider\": {\"steps\": [\"r\"]}, \"kind6Index\": 1"),
        "model.json:3:50: \"kind6Index\" must be less than the number of steps (1)");
    row("steps not an array", withModelMembers("\"kind6Provider\": {\"steps\": \"r\"}"),
        "model.json:3:28: expected an array for \"steps\"");
    row("kind-7 source without key", withModelMembers("\"kind7Source\": {}"), "model.json:3:16: missing field \"key\"");
    row("kind-7 lookup without root", withModelMembers("\"kind7Lookup\": {\"keyProperty\": \"tool id\"}"),
        "model.json:3:16: missing field \"root\"");
    row("unknown model field", withModelMembers("\"kind8\": 1"), "model.json:3:10: unknown field \"kind8\"");

    // Edit primitives.
    row("primitives not an array", kHead + "\"displayModel\": {}, \"editor\": {\"primitives\": 1}}",
        "model.json:2:46: expected an array for \"primitives\"");
    row("primitive without name", withPrimitive("{\"visible\": false}"), "model.json:3:1: missing field \"name\"");
    row("unknown primitive field", withPrimitive("{\"name\": \"p\", \"id\": \"x\"}"),
        "model.json:3:21: unknown field \"id\"");
    row("primitive property not a pair", withPrimitive("{\"name\": \"p\", \"properties\": [[\"a\"]]}"),
        "model.json:3:30: expected a [name, value] pair of strings for \"properties\"[0]");

    // Absurd sizes.
    row("name too long", withRoot("{\"name\": \"" + QByteArray(1025, 'n') + "\"}"),
        "model.json:3:10: \"name\" is longer than 1024 characters");
    row("property value too long",
        withRoot("{\"name\": \"r\", \"businessProperties\": [[\"a\", \"" + QByteArray(65537, 'v') + "\"]]}"),
        "model.json:3:44: \"businessProperties\"[0][1] is longer than 65536 characters");
    row("nested too deeply", nestedItems(256), "model.json:259:1: items nested deeper than 256 levels");
    {
        QByteArray children;
        for (int i = 0; i < 11; ++i)
            children += QByteArray(i ? ",\n" : "") + "{\"name\": \"c" + QByteArray::number(i) + "\"}";
        row("too many items", withRoot("{\"name\": \"r\", \"children\": [\n" + children + "]}"),
            "model.json:13:1: more than 10 items", 10);
    }
    row("too many properties",
        withRoot("{\"name\": \"r\", \"businessProperties\": [[\"a\", \"1\"], [\"b\", \"2\"], [\"c\", \"3\"], [\"d\", "
                 "\"4\"]]}"),
        "model.json:3:37: \"businessProperties\" has more than 3 entries", 0, 3);
}

void tst_ModelFileErrors::malformedInput()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, expected);
    QFETCH(int, maxItems);
    QFETCH(int, maxListLength);

    ModelFileLimits limits;
    if (maxItems > 0)
        limits.maxItems = maxItems;
    if (maxListLength > 0)
        limits.maxListLength = maxListLength;
    ModelFileError error;
    const auto model = ModelFile::loadFromData(json, QStringLiteral("model.json"), &error, limits);
    QVERIFY(!model);
    QCOMPARE(error.toString(), expected);
}

void tst_ModelFileErrors::errorFields()
{
    ModelFileError error;
    QVERIFY(!ModelFile::loadFromData(withRoot("{\"name\": 5}"), QStringLiteral("dir/snapshot.json"), &error));
    QCOMPARE(error.file, QStringLiteral("dir/snapshot.json"));
    QCOMPARE(error.line, 3);
    QCOMPARE(error.column, 10);
    QCOMPARE(error.message, QStringLiteral("expected a string for \"name\""));

    // The nesting limit counts levels: 256 load, as the message says.
    QVERIFY(!ModelFile::loadFromData(nestedItems(256), QStringLiteral("m"), &error));
    QVERIFY(ModelFile::loadFromData(nestedItems(255), QStringLiteral("m"), &error));
    // And the item limit counts items: exactly the limit loads.
    ModelFileLimits limits;
    limits.maxItems = 3;
    QVERIFY(ModelFile::loadFromData(withRoot("{\"name\": \"r\", \"children\": [{\"name\": \"a\"}, {\"name\": \"b\"}]}"),
                                    QStringLiteral("m"), &error, limits));
}

void tst_ModelFileErrors::validHeadLoads()
{
    // The fragments the table breaks are valid once filled in correctly.
    ModelFileError error;
    for (const QByteArray& json : {withRoot("{\"name\": \"r\"}"), withModelMembers("\"kind6Index\": 3"),
                                   withPrimitive("{\"name\": \"p\"}"), kHead + "\"displayModel\": {}}"}) {
        const auto model = ModelFile::loadFromData(json, QStringLiteral("model.json"), &error);
        QVERIFY2(model, qPrintable(error.toString()));
    }
}

void tst_ModelFileErrors::deepNestingIsRefusedInBoundedMemory_data()
{
    QTest::addColumn<QByteArray>("opening");
    QTest::newRow("objects") << QByteArray("{\"a\":");
    QTest::newRow("arrays") << QByteArray("[");
}

void tst_ModelFileErrors::deepNestingIsRefusedInBoundedMemory()
{
#if defined(__SANITIZE_ADDRESS__)
    QSKIP("the address sanitizer reserves more address space than this test allows");
#endif
    QFETCH(QByteArray, opening);
    // 20 MB of openings, refused at the parser's 1,025th level.
    const QByteArray json = opening.repeated(20 * 1024 * 1024 / opening.size());
    const QString expected = QStringLiteral("model.json:1:%1: not valid JSON: objects and arrays nested too deeply")
                                 .arg(1024 * opening.size() + 1);

    // Memory in proportion to the file's size would exceed this limit.
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        QSKIP("no /proc/self/statm to measure the address space from");
    const rlim_t used = statm.readAll().split(' ').value(0).toULongLong() * ::sysconf(_SC_PAGESIZE);
    rlimit previous{};
    QCOMPARE(::getrlimit(RLIMIT_AS, &previous), 0);
    rlimit bounded = previous;
    bounded.rlim_cur = used + 64 * 1024 * 1024;
    QCOMPARE(::setrlimit(RLIMIT_AS, &bounded), 0);
    ModelFileError error;
    bool loaded = true;
    try {
        loaded = ModelFile::loadFromData(json, QStringLiteral("model.json"), &error) != nullptr;
    } catch (const std::bad_alloc&) {
        ::setrlimit(RLIMIT_AS, &previous);
        QFAIL("the loader ran out of memory");
    }
    ::setrlimit(RLIMIT_AS, &previous);
    QVERIFY(!loaded);
    QCOMPARE(error.toString(), expected);
}

QTEST_GUILESS_MAIN(tst_ModelFileErrors)
#include "tst_modelfile_errors.moc"
