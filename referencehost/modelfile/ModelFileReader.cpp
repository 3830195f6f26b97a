#include "ModelFileReader.h"

#include "MessageText.h"
#include "ModelFile.h"

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/FixedEntryOwner.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/ProcessStepProvider.h>
#include <referencehost/model/SceneContext.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/model/ShellItem.h>
#include <referencehost/model/ToolKeyLookup.h>
#include <referencehost/model/ToolKeySource.h>

#include <hostcontract/EditorDisplayModel.h>

#include <QJsonDocument>
#include <QSet>

#include <cmath>
#include <iterator>
#include <limits>

namespace Brennvik {

namespace {

/// Thrown inside the reader; read() turns it into a positioned error.
struct ReadFailure
{
    JsonPath path;
    QString message;
    /// Byte offset to report instead of the position of \a path; -1 for none.
    int offset = -1;
    /// For errors about the file as a whole.
    bool positioned = true;
};

[[noreturn]] void fail(const JsonPath& path, QString message)
{
    throw ReadFailure{path, std::move(message)};
}

bool isLetter(char c)
{
    return c >= 'a' && c <= 'z';
}

/// As QByteArray::trimmed takes it.
bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

/// The word that starts just before \a offset (where the parser reports an
/// illegal value) when nothing but whitespace follows it; empty otherwise.
QByteArray wordEndingTheText(const QByteArray& text, int offset)
{
    const int start = offset - 1;
    if (start < 0 || start >= text.size() || !isLetter(text[start]))
        return {};
    int end = start;
    while (end < text.size() && isLetter(text[end]))
        ++end;
    for (int pos = end; pos < text.size(); ++pos) {
        if (!isSpace(text[pos]))
            return {};
    }
    return text.mid(start, end - start);
}

bool isLiteral(const QByteArray& word)
{
    return word == "true" || word == "false" || word == "null";
}

/// Only whitespace and perhaps a byte order mark; read in place, as a copy
/// of a large text would cost as much memory again.
bool isBlank(const QByteArray& text)
{
    bool bom = false;
    for (int pos = 0; pos < text.size(); ++pos) {
        if (!bom && text.mid(pos, 3) == "\xEF\xBB\xBF") {
            bom = true;
            pos += 2;
        } else if (!isSpace(text[pos])) {
            return false;
        }
    }
    return true;
}

QString syntaxReason(QJsonParseError::ParseError error)
{
    switch (error) {
    case QJsonParseError::UnterminatedObject:
        return QStringLiteral("expected \",\" or \"}\" after an object member");
    case QJsonParseError::MissingNameSeparator:
        return QStringLiteral("expected \":\" after a key");
    case QJsonParseError::UnterminatedArray:
        return QStringLiteral("expected \",\" or \"]\" after an array element");
    case QJsonParseError::MissingValueSeparator:
        return QStringLiteral("expected \",\" between values");
    case QJsonParseError::IllegalValue:
        return QStringLiteral("expected a JSON value");
    case QJsonParseError::TerminationByNumber:
        return QStringLiteral("unexpected end after a number");
    case QJsonParseError::IllegalNumber:
        return QStringLiteral("invalid number");
    case QJsonParseError::IllegalEscapeSequence:
        return QStringLiteral("invalid escape sequence in a string");
    case QJsonParseError::IllegalUTF8String:
        return QStringLiteral("invalid UTF-8 in a string");
    case QJsonParseError::UnterminatedString:
        return QStringLiteral("unterminated string");
    case QJsonParseError::MissingObject:
        return QStringLiteral("expected a value after \",\"");
    case QJsonParseError::DeepNesting:
        return QStringLiteral("objects and arrays nested too deeply");
    case QJsonParseError::DocumentTooLarge:
        return QStringLiteral("the document is too large");
    case QJsonParseError::GarbageAtEnd:
        return QStringLiteral("unexpected text after the top-level object");
    case QJsonParseError::NoError:
        break;
    }
    return QStringLiteral("unknown error");
}

/// The items that \a document describes: the roots of its models and every
/// object listed as a child below them. Counted before anything is built, for
/// the progress of the build; a file that is wrong fails later, in the build.
std::size_t countItems(const QJsonObject& document)
{
    const QString rootKey = QStringLiteral("root");
    const QString childrenKey = QStringLiteral("children");
    std::vector<QJsonObject> pending;
    for (const QString& modelKey : {QStringLiteral("displayModel"), QStringLiteral("labelModel")}) {
        const QJsonValue root = document.value(modelKey).toObject().value(rootKey);
        if (root.isObject())
            pending.push_back(root.toObject());
    }
    std::size_t count = 0;
    while (!pending.empty()) {
        const QJsonArray children = pending.back().value(childrenKey).toArray();
        pending.pop_back();
        ++count;
        for (const QJsonValue child : children) {
            if (child.isObject())
                pending.push_back(child.toObject());
        }
    }
    return count;
}

const QString kKind = QStringLiteral("kind");
const QString kName = QStringLiteral("name");
const QString kVisible = QStringLiteral("visible");
const QString kSelected = QStringLiteral("selected");
const QString kSelectable = QStringLiteral("selectable");

} // namespace

JsonPath ModelFileReader::Location::path() const
{
    std::vector<const Location*> chain;
    for (const Location* step = this; step && step->parent; step = step->parent)
        chain.push_back(step);
    JsonPath result;
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
        if ((*it)->index < 0)
            result.appendKey((*it)->key);
        else
            result.appendIndex((*it)->index);
    }
    return result;
}

ModelFileReader::ModelFileReader(QByteArray text, QString fileName, ModelFileLimits limits)
    : m_text(std::move(text))
    , m_fileName(std::move(fileName))
    , m_limits(limits)
    , m_locator(m_text)
{
}

ModelFileReader::~ModelFileReader() = default;

void ModelFileReader::setProgress(ModelFileProgress progress)
{
    m_progressCallback = std::move(progress);
}

std::shared_ptr<SceneViewModel> ModelFileReader::read(ModelFileError* error)
{
    m_progress = LoadProgress(m_progressCallback);
    m_progress.started();
    m_itemCount = 0;
    m_items.clear();
    m_geometryReferences.clear();
    try {
        return readDocument();
    } catch (const ReadFailure& failure) {
        // Drop what was built before anyone can see it.
        m_items.clear();
        m_geometryReferences.clear();
        if (error) {
            ModelFileError result{m_fileName, 0, 0, failure.message};
            if (failure.positioned) {
                const JsonTextLocator::Position position
                    = failure.offset >= 0 ? m_locator.position(failure.offset) : m_locator.valuePosition(failure.path);
                result.line = position.line;
                result.column = position.column;
            }
            *error = result;
        }
        return nullptr;
    }
}

std::shared_ptr<SceneViewModel> ModelFileReader::readDocument()
{
    const Location top;
    if (m_text.size() > m_limits.maxFileSize)
        throw ReadFailure{JsonPath(), QStringLiteral("the file is larger than %1 bytes").arg(m_limits.maxFileSize), -1,
                          false};
    if (isBlank(m_text))
        throw ReadFailure{JsonPath(), QStringLiteral("the file is empty, expected a JSON object"), 0};

    // Qt's parser (5.15) keeps the last of repeated keys and loses the first
    // value without freeing it when that is an object or an array. A repeated
    // key is refused anyway, so Qt never sees one: only the text before it is
    // checked, with a digit in the key's place, which a text that is fine up
    // to there makes Qt stop at as an unfinished object at the very end.
    const std::size_t textSize = std::size_t(m_text.size());
    const std::optional<JsonTextLocator::DuplicateKey> duplicate = m_locator.firstDuplicateKey(
        [this, textSize](int scanned) { m_progress.textChecked(std::size_t(scanned), textSize); });
    m_progress.textChecked(textSize, textSize);
    QJsonParseError parseError;
    QJsonDocument document;
    if (duplicate) {
        const QByteArray probe = m_text.left(duplicate->offset) + '0';
        QJsonDocument::fromJson(probe, &parseError);
        if (parseError.error == QJsonParseError::UnterminatedObject && parseError.offset == probe.size())
            parseError.error = QJsonParseError::NoError;
    } else {
        document = QJsonDocument::fromJson(m_text, &parseError);
    }
    if (parseError.error != QJsonParseError::NoError) {
        // Qt reports a cut-off text with whatever it expected next; say what happened.
        // A literal cut short ("tr") is a word that is no JSON value; a whole
        // one at the end ends a text that is not finished.
        const QByteArray lastWord = parseError.error == QJsonParseError::IllegalValue
            ? wordEndingTheText(m_text, parseError.offset)
            : QByteArray();
        const bool atEnd
            = lastWord.isEmpty() ? parseError.offset >= m_locator.lastNonWhitespace() : isLiteral(lastWord);
        const bool truncated = atEnd && m_locator.endsInsideValue();
        const QString message = truncated ? QStringLiteral("unexpected end of the file, the JSON text is incomplete")
                                          : QStringLiteral("not valid JSON: ") + syntaxReason(parseError.error);
        // For these errors QJsonDocument reports the offset just after the
        // character it could not take; point at the character itself.
        int offset = parseError.offset;
        switch (parseError.error) {
        case QJsonParseError::UnterminatedObject:
        case QJsonParseError::MissingNameSeparator:
        case QJsonParseError::UnterminatedArray:
        case QJsonParseError::MissingValueSeparator:
        case QJsonParseError::IllegalValue:
        case QJsonParseError::IllegalNumber:
        case QJsonParseError::MissingObject:
        case QJsonParseError::DeepNesting:
            if (!truncated && offset > 0)
                --offset;
            break;
        default:
            break;
        }
        if (truncated)
            offset = m_text.size();
        throw ReadFailure{JsonPath(), message, offset};
    }
    // QJsonDocument keeps the last of repeated keys silently; a file that says
    // two things about one field is refused instead.
    if (duplicate)
        throw ReadFailure{JsonPath(), QStringLiteral("duplicate key %1").arg(quotedExcerpt(duplicate->key)),
                          duplicate->offset};
    if (!document.isObject())
        fail(top.path(), QStringLiteral("expected a JSON object at the top level"));
    const QJsonObject object = document.object();
    // Counted only for someone who is told the progress.
    m_progress.textParsed(m_progressCallback ? countItems(object) : 0);

    const QString format = QString::fromLatin1(ModelFile::formatName);
    const Location formatPath = top.child(QStringLiteral("format"));
    const QJsonValue formatValue = required(object, top, QStringLiteral("format"));
    if (!formatValue.isString() || formatValue.toString() != format)
        fail(formatPath.path(), QStringLiteral("expected %1 for \"format\"").arg(quotedExcerpt(format)));
    const Location versionPath = top.child(QStringLiteral("version"));
    const int version = toInt(required(object, top, QStringLiteral("version")), versionPath);
    if (version != ModelFile::formatVersion)
        fail(versionPath.path(),
             QStringLiteral("unsupported version %1, expected %2").arg(version).arg(ModelFile::formatVersion));
    checkKnownFields(object, top,
                     {QStringLiteral("format"), QStringLiteral("version"), QStringLiteral("displayModel"),
                      QStringLiteral("labelModel"), QStringLiteral("editor")});

    const QString displayKey = QStringLiteral("displayModel");
    const ModelParts display = readModel(required(object, top, displayKey), top.child(displayKey));
    ModelParts labels;
    const QString labelKey = QStringLiteral("labelModel");
    if (present(object, labelKey))
        labels = readModel(object.value(labelKey), top.child(labelKey));
    const QString editorKey = QStringLiteral("editor");
    const bool hasEditor = present(object, editorKey);
    std::vector<PrimitiveParts> primitives;
    if (hasEditor)
        primitives = readEditor(object.value(editorKey), top.child(editorKey));

    // Every id is known only now: geometry lists and lookups may point into
    // either tree, before or after themselves.
    for (const auto& [module, reference] : m_geometryReferences)
        module->addGeometryDisplayItem(resolve(reference));

    auto viewModel = std::make_shared<SceneViewModel>();
    assemble(viewModel->displayModel(), display);
    assemble(viewModel->labelDisplayModel(), labels);
    if (hasEditor) {
        EditorDisplayModel& editor = viewModel->ensureEditorDisplayModel();
        for (const PrimitiveParts& parts : primitives) {
            auto primitive = editor.addEditModelPrimitive(parts.name);
            primitive->setIsVisible(parts.visible);
            primitive->setIsSelected(parts.selected);
            primitive->setSelectable(parts.selectable);
            primitive->setProperties(PropertyList(parts.properties.begin(), parts.properties.end()));
        }
    }
    m_items.clear();
    m_geometryReferences.clear();
    m_progress.finished();
    return viewModel;
}

ModelFileReader::ModelParts ModelFileReader::readModel(const QJsonValue& value, const Location& path)
{
    const QJsonObject object = toObject(value, path);
    checkKnownFields(object, path,
                     {QStringLiteral("root"), QStringLiteral("activeContext"), QStringLiteral("kind6Provider"),
                      QStringLiteral("kind6Index"), QStringLiteral("kind7Source"), QStringLiteral("kind7Lookup"),
                      QStringLiteral("defaultEntryOwner")});
    ModelParts parts;
    const QString rootKey = QStringLiteral("root");
    if (present(object, rootKey))
        parts.root = readItem(object.value(rootKey), path.child(rootKey), 1, nullptr);

    const QString contextKey = QStringLiteral("activeContext");
    if (present(object, contextKey)) {
        const Location contextPath = path.child(contextKey);
        const QJsonObject context = toObject(object.value(contextKey), contextPath);
        checkKnownFields(context, contextPath, {kKind, kName});
        const int kind = toInt(required(context, contextPath, kKind), contextPath.child(kKind));
        const QString name = optionalText(context, contextPath, kName, m_limits.maxNameLength, QString());
        parts.context = std::make_shared<SceneContext>(kind, name.toStdString());
    }

    const QString providerKey = QStringLiteral("kind6Provider");
    if (present(object, providerKey)) {
        const Location providerPath = path.child(providerKey);
        const QJsonObject provider = toObject(object.value(providerKey), providerPath);
        const QString stepsKey = QStringLiteral("steps");
        checkKnownFields(provider, providerPath, {stepsKey});
        const Location stepsPath = providerPath.child(stepsKey);
        const QJsonArray steps = toArray(required(provider, providerPath, stepsKey), stepsPath, m_limits.maxListLength);
        parts.hasKind6Provider = true;
        for (int i = 0; i < steps.size(); ++i)
            parts.steps.push_back(readReference(steps.at(i), stepsPath.child(i), true));
    }
    const QString indexKey = QStringLiteral("kind6Index");
    if (object.contains(indexKey)) {
        const Location indexPath = path.child(indexKey);
        parts.kind6Index = toInt(object.value(indexKey), indexPath);
        if (parts.kind6Index < 0)
            fail(indexPath.path(), QStringLiteral("\"kind6Index\" must not be negative"));
    }
    if (parts.hasKind6Provider && static_cast<std::size_t>(parts.kind6Index) >= parts.steps.size())
        fail((object.contains(indexKey) ? path.child(indexKey) : path).path(),
             QStringLiteral("\"kind6Index\" must be less than the number of steps (%1)").arg(parts.steps.size()));

    const QString sourceKey = QStringLiteral("kind7Source");
    if (present(object, sourceKey)) {
        const Location sourcePath = path.child(sourceKey);
        const QJsonObject source = toObject(object.value(sourceKey), sourcePath);
        const QString keyKey = QStringLiteral("key");
        checkKnownFields(source, sourcePath, {keyKey});
        parts.kind7Source = std::make_shared<ToolKeySource>(
            requiredText(source, sourcePath, keyKey, m_limits.maxNameLength).toStdString());
    }

    const QString lookupKey = QStringLiteral("kind7Lookup");
    if (present(object, lookupKey)) {
        const Location lookupPath = path.child(lookupKey);
        const QJsonObject lookup = toObject(object.value(lookupKey), lookupPath);
        const QString lookupRootKey = QStringLiteral("root");
        const QString propertyKey = QStringLiteral("keyProperty");
        checkKnownFields(lookup, lookupPath, {lookupRootKey, propertyKey});
        parts.hasKind7Lookup = true;
        parts.lookupRoot
            = readReference(required(lookup, lookupPath, lookupRootKey), lookupPath.child(lookupRootKey), true);
        parts.keyProperty
            = optionalText(lookup, lookupPath, propertyKey, m_limits.maxNameLength, QString()).toStdString();
    }

    const QString ownerKey = QStringLiteral("defaultEntryOwner");
    if (present(object, ownerKey)) {
        const Location ownerPath = path.child(ownerKey);
        const QJsonObject owner = toObject(object.value(ownerKey), ownerPath);
        const QString entryKey = QStringLiteral("entry");
        checkKnownFields(owner, ownerPath, {entryKey});
        parts.hasDefaultEntryOwner = true;
        parts.entry = readReference(required(owner, ownerPath, entryKey), ownerPath.child(entryKey), true);
    }
    return parts;
}

std::shared_ptr<DisplayItem> ModelFileReader::readItem(const QJsonValue& value, const Location& path, int depth,
                                                       DisplayItem* parent)
{
    if (depth > m_limits.maxDepth)
        fail(path.path(), QStringLiteral("items nested deeper than %1 levels").arg(m_limits.maxDepth));
    if (++m_itemCount > m_limits.maxItems)
        fail(path.path(), QStringLiteral("more than %1 items").arg(m_limits.maxItems));
    const QJsonObject object = toObject(value, path);

    const QString kind = optionalText(object, path, kKind, m_limits.maxNameLength, QStringLiteral("DisplayItem"));
    QStringList known{kKind,
                      QStringLiteral("id"),
                      kName,
                      kVisible,
                      kSelected,
                      QStringLiteral("selectionAllowed"),
                      kSelectable,
                      QStringLiteral("businessProperties"),
                      QStringLiteral("displayProperties"),
                      QStringLiteral("children")};
    if (kind == QLatin1String("ShellItem"))
        known << QStringLiteral("shellType") << QStringLiteral("shellName");
    else if (kind == QLatin1String("LabelableItem"))
        known << QStringLiteral("label") << QStringLiteral("labelsAllowed");
    else if (kind == QLatin1String("GeometryModuleItem"))
        known << QStringLiteral("geometryItems");
    else if (kind != QLatin1String("DisplayItem"))
        fail(path.child(kKind).path(),
             QStringLiteral("unknown item kind %1, expected DisplayItem, ShellItem, "
                            "GeometryModuleItem or LabelableItem")
                 .arg(quotedExcerpt(kind)));
    checkKnownFields(object, path, known);

    const std::string name = requiredText(object, path, kName, m_limits.maxNameLength).toStdString();
    std::shared_ptr<DisplayItem> item;
    if (kind == QLatin1String("ShellItem")) {
        item = std::make_shared<ShellItem>(
            name, requiredText(object, path, QStringLiteral("shellType"), m_limits.maxNameLength).toStdString(),
            requiredText(object, path, QStringLiteral("shellName"), m_limits.maxNameLength).toStdString());
    } else if (kind == QLatin1String("LabelableItem")) {
        item = std::make_shared<LabelableItem>(
            name, requiredText(object, path, QStringLiteral("label"), m_limits.maxTextLength).toStdString(),
            optionalBool(object, path, QStringLiteral("labelsAllowed"), true));
    } else if (kind == QLatin1String("GeometryModuleItem")) {
        auto module = std::make_shared<GeometryModuleItem>(name);
        const QString listKey = QStringLiteral("geometryItems");
        if (object.contains(listKey)) {
            const Location listPath = path.child(listKey);
            const QJsonArray list = toArray(object.value(listKey), listPath, m_limits.maxListLength);
            QSet<QString> listed;
            for (int i = 0; i < list.size(); ++i) {
                auto reference = readReference(list.at(i), listPath.child(i), false);
                if (listed.contains(reference->id))
                    fail(reference->path,
                         QStringLiteral("the item id %1 is listed twice in \"geometryItems\"")
                             .arg(quotedExcerpt(reference->id)));
                listed.insert(reference->id);
                m_geometryReferences.emplace_back(module.get(), std::move(*reference));
            }
        }
        item = module;
    } else {
        item = std::make_shared<DisplayItem>(name);
    }

    item->setVisible(optionalBool(object, path, kVisible, true));
    item->setSelected(optionalBool(object, path, kSelected, false));
    item->setSelectionAllowed(optionalBool(object, path, QStringLiteral("selectionAllowed"), true));
    item->setSelectable(optionalBool(object, path, kSelectable, true));
    readItemProperties(*item, object, path, QStringLiteral("businessProperties"), true);
    readItemProperties(*item, object, path, QStringLiteral("displayProperties"), false);

    const QString idKey = QStringLiteral("id");
    if (object.contains(idKey)) {
        const Location idPath = path.child(idKey);
        const QString id = toText(object.value(idKey), idPath, m_limits.maxNameLength);
        if (id.isEmpty())
            fail(idPath.path(), QStringLiteral("an item id must not be empty"));
        const auto existing = m_items.constFind(id);
        if (existing != m_items.constEnd()) {
            const JsonTextLocator::Position first = m_locator.valuePosition(existing->second);
            fail(idPath.path(),
                 QStringLiteral("duplicate item id %1 (first used at line %2, column %3)")
                     .arg(quotedExcerpt(id))
                     .arg(first.line)
                     .arg(first.column));
        }
        m_items.insert(id, {item, idPath.path()});
    }

    if (parent)
        parent->appendChild(item);
    m_progress.itemBuilt();

    const QString childrenKey = QStringLiteral("children");
    if (object.contains(childrenKey)) {
        const Location childrenPath = path.child(childrenKey);
        // Children are counted against the item limit as they are read.
        const QJsonArray children = toArray(object.value(childrenKey), childrenPath, std::numeric_limits<int>::max());
        for (int i = 0; i < children.size(); ++i)
            readItem(children.at(i), childrenPath.child(i), depth + 1, item.get());
    }
    return item;
}

void ModelFileReader::readItemProperties(DisplayItem& item, const QJsonObject& object, const Location& path,
                                         const QString& key, bool business)
{
    if (!object.contains(key))
        return;
    auto read = readPropertyList(object.value(key), path.child(key), true);
    PropertyList properties(std::make_move_iterator(read.begin()), std::make_move_iterator(read.end()));
    if (business)
        item.setBusinessProperties(std::move(properties));
    else
        item.setDisplayProperties(std::move(properties));
}

std::vector<ModelFileReader::PrimitiveParts> ModelFileReader::readEditor(const QJsonValue& value, const Location& path)
{
    const QJsonObject object = toObject(value, path);
    const QString primitivesKey = QStringLiteral("primitives");
    checkKnownFields(object, path, {primitivesKey});
    std::vector<PrimitiveParts> result;
    if (!object.contains(primitivesKey))
        return result;
    const Location listPath = path.child(primitivesKey);
    const QJsonArray list = toArray(object.value(primitivesKey), listPath, m_limits.maxListLength);
    const QString propertiesKey = QStringLiteral("properties");
    for (int i = 0; i < list.size(); ++i) {
        const Location primitivePath = listPath.child(i);
        const QJsonObject primitive = toObject(list.at(i), primitivePath);
        checkKnownFields(primitive, primitivePath, {kName, kVisible, kSelected, kSelectable, propertiesKey});
        PrimitiveParts parts;
        parts.name = requiredText(primitive, primitivePath, kName, m_limits.maxNameLength).toStdString();
        parts.visible = optionalBool(primitive, primitivePath, kVisible, true);
        parts.selected = optionalBool(primitive, primitivePath, kSelected, false);
        parts.selectable = optionalBool(primitive, primitivePath, kSelectable, true);
        // A primitive's properties are a plain list and may repeat a name.
        if (primitive.contains(propertiesKey))
            parts.properties
                = readPropertyList(primitive.value(propertiesKey), primitivePath.child(propertiesKey), false);
        result.push_back(std::move(parts));
    }
    return result;
}

std::vector<std::pair<std::string, std::string>>
ModelFileReader::readPropertyList(const QJsonValue& value, const Location& path, bool uniqueNames)
{
    const QJsonArray list = toArray(value, path, m_limits.maxListLength);
    std::vector<std::pair<std::string, std::string>> result;
    result.reserve(static_cast<std::size_t>(list.size()));
    QSet<QString> names;
    for (int i = 0; i < list.size(); ++i) {
        const Location pairPath = path.child(i);
        const QJsonValue entry = list.at(i);
        const QJsonArray pair = entry.toArray();
        if (!entry.isArray() || pair.size() != 2 || !pair.at(0).isString() || !pair.at(1).isString())
            fail(pairPath.path(),
                 QStringLiteral("expected a [name, value] pair of strings for %1").arg(pairPath.describe()));
        const QString name = toText(pair.at(0), pairPath.child(0), m_limits.maxNameLength);
        const QString text = toText(pair.at(1), pairPath.child(1), m_limits.maxTextLength);
        if (uniqueNames) {
            if (names.contains(name))
                fail(pairPath.child(0).path(),
                     QStringLiteral("duplicate property %1 in %2").arg(quotedExcerpt(name), path.describe()));
            names.insert(name);
        }
        result.emplace_back(name.toStdString(), text.toStdString());
    }
    return result;
}

std::optional<ModelFileReader::Reference> ModelFileReader::readReference(const QJsonValue& value, const Location& path,
                                                                         bool nullable)
{
    if (nullable && value.isNull())
        return std::nullopt;
    if (!value.isString())
        fail(path.path(),
             QStringLiteral("expected an item id (a string)%1 for %2")
                 .arg(nullable ? QStringLiteral(" or null") : QString(), path.describe()));
    return Reference{toText(value, path, m_limits.maxNameLength), path.path()};
}

std::shared_ptr<DisplayItem> ModelFileReader::resolve(const std::optional<Reference>& reference) const
{
    if (!reference)
        return nullptr;
    const auto it = m_items.constFind(reference->id);
    if (it == m_items.constEnd())
        fail(reference->path,
             QStringLiteral("unknown item id %1 in %2").arg(quotedExcerpt(reference->id), reference->path.describe()));
    return it->first;
}

void ModelFileReader::assemble(SceneDisplayModel& model, const ModelParts& parts) const
{
    // Resolve everything first: a dangling reference must fail before the model changes.
    std::vector<std::shared_ptr<DisplayItem>> steps;
    for (const auto& step : parts.steps)
        steps.push_back(resolve(step));
    const auto lookupRoot = resolve(parts.lookupRoot);
    const auto entry = resolve(parts.entry);

    model.setRootDisplayItem(parts.root);
    model.setActiveContext(parts.context);
    if (parts.hasKind6Provider) {
        auto provider = std::make_shared<ProcessStepProvider>();
        for (const auto& step : steps)
            provider->appendStep(step);
        model.setKind6Provider(provider);
    }
    model.setKind6Index(parts.kind6Index);
    model.setKind7Source(parts.kind7Source);
    if (parts.hasKind7Lookup)
        model.setKind7Lookup(std::make_shared<ToolKeyLookup>(lookupRoot, parts.keyProperty));
    if (parts.hasDefaultEntryOwner)
        model.setDefaultEntryOwner(std::make_shared<FixedEntryOwner>(entry));
}

void ModelFileReader::checkKnownFields(const QJsonObject& object, const Location& path, const QStringList& known) const
{
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        if (!known.contains(it.key()))
            fail(path.child(it.key()).path(), QStringLiteral("unknown field %1").arg(quotedExcerpt(it.key())));
    }
}

QJsonObject ModelFileReader::toObject(const QJsonValue& value, const Location& path) const
{
    if (!value.isObject())
        fail(path.path(), QStringLiteral("expected an object for %1").arg(path.describe()));
    return value.toObject();
}

QJsonArray ModelFileReader::toArray(const QJsonValue& value, const Location& path, int maxLength) const
{
    if (!value.isArray())
        fail(path.path(), QStringLiteral("expected an array for %1").arg(path.describe()));
    QJsonArray array = value.toArray();
    if (array.size() > maxLength)
        fail(path.path(), QStringLiteral("%1 has more than %2 entries").arg(path.describe()).arg(maxLength));
    return array;
}

QString ModelFileReader::toText(const QJsonValue& value, const Location& path, int maxLength) const
{
    if (!value.isString())
        fail(path.path(), QStringLiteral("expected a string for %1").arg(path.describe()));
    QString text = value.toString();
    if (text.size() > maxLength)
        fail(path.path(), QStringLiteral("%1 is longer than %2 characters").arg(path.describe()).arg(maxLength));
    return text;
}

int ModelFileReader::toInt(const QJsonValue& value, const Location& path) const
{
    const double number = value.toDouble();
    if (!value.isDouble() || std::floor(number) != number)
        fail(path.path(), QStringLiteral("expected an integer for %1").arg(path.describe()));
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        fail(path.path(),
             QStringLiteral("%1 is out of range (%2 to %3)")
                 .arg(path.describe())
                 .arg(std::numeric_limits<int>::min())
                 .arg(std::numeric_limits<int>::max()));
    return static_cast<int>(number);
}

bool ModelFileReader::toBool(const QJsonValue& value, const Location& path) const
{
    if (!value.isBool())
        fail(path.path(), QStringLiteral("expected a boolean for %1").arg(path.describe()));
    return value.toBool();
}

QJsonValue ModelFileReader::required(const QJsonObject& object, const Location& path, const QString& key) const
{
    const auto it = object.constFind(key);
    if (it == object.constEnd())
        fail(path.path(), QStringLiteral("missing field %1").arg(quotedExcerpt(key)));
    return it.value();
}

bool ModelFileReader::present(const QJsonObject& object, const QString& key)
{
    const auto it = object.constFind(key);
    return it != object.constEnd() && !it.value().isNull();
}

QString ModelFileReader::requiredText(const QJsonObject& object, const Location& path, const QString& key,
                                      int maxLength) const
{
    return toText(required(object, path, key), path.child(key), maxLength);
}

QString ModelFileReader::optionalText(const QJsonObject& object, const Location& path, const QString& key,
                                      int maxLength, const QString& fallback) const
{
    const auto it = object.constFind(key);
    return it == object.constEnd() ? fallback : toText(it.value(), path.child(key), maxLength);
}

bool ModelFileReader::optionalBool(const QJsonObject& object, const Location& path, const QString& key,
                                   bool fallback) const
{
    const auto it = object.constFind(key);
    return it == object.constEnd() ? fallback : toBool(it.value(), path.child(key));
}

} // namespace Brennvik
