#include "ModelFileWriter.h"

#include "IndentedJsonSize.h"
#include "MessageText.h"
#include "ModelFile.h"

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/FixedEntryOwner.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/ProcessStepProvider.h>
#include <referencehost/model/SceneContext.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneObjectItem.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/model/ShellItem.h>
#include <referencehost/model/ToolKeyLookup.h>
#include <referencehost/model/ToolKeySource.h>

#include <hostcontract/EditorDisplayModel.h>

#include <utility>
#include <vector>

namespace Brennvik {

namespace {

/// Thrown inside the writer; write() turns it into its error text.
struct WriteFailure
{
    QString message;
};

[[noreturn]] void fail(QString message)
{
    throw WriteFailure{std::move(message)};
}

QString quoted(const std::string& text)
{
    return quotedExcerpt(QString::fromStdString(text));
}

/// Objects and arrays Qt's parser takes nested in each other.
constexpr int kParserNestingLimit = 1024;

/// How deep the file nests the object of an item at \a level: each level
/// adds the object and its "children" array, below the top-level and model
/// objects.
int itemNesting(int level)
{
    return 2 * level + 1;
}

/// How deep the file nests what \a item holds below its own object: a
/// property list and its pairs, or the children or geometry array.
int innerNesting(const DisplayItem& item)
{
    if (!item.businessProperties().empty() || !item.displayProperties().empty())
        return 2;
    const auto* module = dynamic_cast<const GeometryModuleItem*>(&item);
    return item.childCount() > 0 || (module && !module->getGeometryDisplayItems().empty()) ? 1 : 0;
}

QString itemName(const DisplayItem& item)
{
    return quoted(item.path());
}

} // namespace

ModelFileWriter::ModelFileWriter(ModelFileLimits limits)
    : m_limits(limits)
{
}

bool ModelFileWriter::write(const SceneViewModel& viewModel, QJsonObject* object, QString* error)
{
    m_numbers.clear();
    m_referenced.clear();
    m_textSize = 0;
    try {
        numberTree(viewModel.displayModel().rootDisplayItem());
        numberTree(viewModel.labelDisplayModel().rootDisplayItem());
        collectReferences(viewModel.displayModel());
        collectReferences(viewModel.labelDisplayModel());

        QJsonObject result;
        result.insert(QStringLiteral("format"), QString::fromLatin1(ModelFile::formatName));
        result.insert(QStringLiteral("version"), ModelFile::formatVersion);
        result.insert(QStringLiteral("displayModel"), modelObject(viewModel.displayModel()));
        result.insert(QStringLiteral("labelModel"), modelObject(viewModel.labelDisplayModel()));
        if (viewModel.editorDisplayModel())
            result.insert(QStringLiteral("editor"), editorObject(viewModel));
        else
            result.insert(QStringLiteral("editor"), QJsonValue::Null);
        // Known only now that all of it is there; the sum of its texts has
        // bounded what building it may cost.
        if (indentedJsonSize(result) > m_limits.maxFileSize)
            failTooLarge();
        if (object)
            *object = std::move(result);
        return true;
    } catch (const WriteFailure& failure) {
        if (error)
            *error = failure.message;
        return false;
    }
}

void ModelFileWriter::numberTree(const std::shared_ptr<DisplayItem>& root)
{
    if (!root)
        return;
    // Iterative: the depth is checked here, before itemValue recurses.
    std::vector<std::pair<const DisplayItem*, int>> pending{{root.get(), 1}};
    while (!pending.empty()) {
        const auto [item, depth] = pending.back();
        pending.pop_back();
        if (depth > m_limits.maxDepth)
            fail(QStringLiteral("the item %1 is nested deeper than %2 levels")
                     .arg(itemName(*item))
                     .arg(m_limits.maxDepth));
        if (itemNesting(depth) + innerNesting(*item) > kParserNestingLimit)
            fail(QStringLiteral("the file would nest objects and arrays deeper than %1 levels")
                     .arg(kParserNestingLimit));
        if (static_cast<int>(m_numbers.size()) >= m_limits.maxItems)
            fail(QStringLiteral("the model has more than %1 items").arg(m_limits.maxItems));
        const auto inserted
            = m_numbers.emplace(static_cast<const DisplayItemInterface*>(item), static_cast<int>(m_numbers.size()));
        if (!inserted.second)
            fail(QStringLiteral("the item %1 occurs twice in the model").arg(itemName(*item)));
        const auto& children = item->children();
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            pending.emplace_back(it->get(), depth + 1);
    }
}

void ModelFileWriter::collectReferences(const SceneDisplayModel& model)
{
    if (const auto root = model.rootDisplayItem()) {
        std::vector<const DisplayItem*> pending{root.get()};
        while (!pending.empty()) {
            const DisplayItem* item = pending.back();
            pending.pop_back();
            if (const auto* module = dynamic_cast<const GeometryModuleItem*>(item)) {
                for (const auto& geometry : module->getGeometryDisplayItems())
                    reference(geometry, QStringLiteral("a geometry item of %1").arg(itemName(*item)));
            }
            for (const auto& child : item->children())
                pending.push_back(child.get());
        }
    }
    if (const auto* provider = dynamic_cast<const ProcessStepProvider*>(model.getKind6Provider())) {
        for (std::size_t step = 0; step < provider->stepCount(); ++step)
            reference(provider->getDisplayItemAt(static_cast<Kind6Index>(step)),
                      QStringLiteral("the item of process step %1").arg(step));
    }
    if (const auto lookup = std::dynamic_pointer_cast<ToolKeyLookup>(model.getKind7Lookup()))
        reference(lookup->root(), QStringLiteral("the root of the kind-7 lookup"));
    if (const auto* owner = dynamic_cast<const FixedEntryOwner*>(model.getDefaultEntryOwner()))
        reference(owner->getEntryDisplayItem(), QStringLiteral("the default entry"));
}

void ModelFileWriter::reference(const std::shared_ptr<DisplayItemInterface>& item, const QString& what)
{
    // A gone item is written as null; a live one must be in a tree to get an id.
    if (!item)
        return;
    if (m_numbers.find(item.get()) == m_numbers.end())
        fail(QStringLiteral("%1 (\"%2\") is not an item of the model")
                 .arg(what, QString::fromStdString(item->getDisplayName())));
    m_referenced.insert(item.get());
}

QJsonValue ModelFileWriter::referenceValue(const std::shared_ptr<DisplayItemInterface>& item) const
{
    if (!item)
        return QJsonValue::Null;
    return QString::number(m_numbers.at(item.get()));
}

QJsonObject ModelFileWriter::modelObject(const SceneDisplayModel& model) const
{
    QJsonObject object;
    const auto root = model.rootDisplayItem();
    object.insert(QStringLiteral("root"), root ? itemValue(*root) : QJsonValue(QJsonValue::Null));

    QJsonValue context = QJsonValue::Null;
    if (const auto active = model.getActiveContext()) {
        const auto scene = std::dynamic_pointer_cast<SceneContext>(active);
        if (!scene)
            fail(QStringLiteral("the active context is of a type this host does not know"));
        QJsonObject contextObject;
        contextObject.insert(QStringLiteral("kind"), scene->getContextKind());
        contextObject.insert(QStringLiteral("name"),
                             text(scene->name(), m_limits.maxNameLength, QStringLiteral("the active context's name")));
        context = contextObject;
    }
    object.insert(QStringLiteral("activeContext"), context);

    QJsonValue provider = QJsonValue::Null;
    const Kind6Index index = model.getKind6Index();
    if (model.getKind6Provider()) {
        const auto* steps = dynamic_cast<const ProcessStepProvider*>(model.getKind6Provider());
        if (!steps)
            fail(QStringLiteral("the kind-6 provider is of a type this host does not know"));
        if (steps->stepCount() > static_cast<std::size_t>(m_limits.maxListLength))
            fail(QStringLiteral("the kind-6 provider has more than %1 steps").arg(m_limits.maxListLength));
        if (index < 0 || static_cast<std::size_t>(index) >= steps->stepCount())
            fail(QStringLiteral("the kind-6 index %1 names no process step (there are %2)")
                     .arg(index)
                     .arg(steps->stepCount()));
        QJsonArray stepArray;
        for (std::size_t step = 0; step < steps->stepCount(); ++step)
            stepArray.append(referenceValue(steps->getDisplayItemAt(static_cast<Kind6Index>(step))));
        provider = QJsonObject{{QStringLiteral("steps"), stepArray}};
    } else if (index < 0) {
        fail(QStringLiteral("the kind-6 index %1 is negative").arg(index));
    }
    object.insert(QStringLiteral("kind6Provider"), provider);
    object.insert(QStringLiteral("kind6Index"), index);

    QJsonValue source = QJsonValue::Null;
    if (const auto* kind7Source = model.getKind7Source()) {
        const auto* toolKey = dynamic_cast<const ToolKeySource*>(kind7Source);
        if (!toolKey)
            fail(QStringLiteral("the kind-7 source is of a type this host does not know"));
        source = QJsonObject{
            {QStringLiteral("key"), text(toolKey->getKey(), m_limits.maxNameLength, QStringLiteral("the kind-7 key"))}};
    }
    object.insert(QStringLiteral("kind7Source"), source);

    QJsonValue lookup = QJsonValue::Null;
    if (const auto kind7Lookup = model.getKind7Lookup()) {
        const auto toolLookup = std::dynamic_pointer_cast<ToolKeyLookup>(kind7Lookup);
        if (!toolLookup)
            fail(QStringLiteral("the kind-7 lookup is of a type this host does not know"));
        lookup = QJsonObject{{QStringLiteral("root"), referenceValue(toolLookup->root())},
                             {QStringLiteral("keyProperty"),
                              text(toolLookup->keyProperty(), m_limits.maxNameLength,
                                   QStringLiteral("the kind-7 lookup's key property"))}};
    }
    object.insert(QStringLiteral("kind7Lookup"), lookup);

    QJsonValue owner = QJsonValue::Null;
    if (const auto* defaultOwner = model.getDefaultEntryOwner()) {
        const auto* fixed = dynamic_cast<const FixedEntryOwner*>(defaultOwner);
        if (!fixed)
            fail(QStringLiteral("the default entry owner is of a type this host does not know"));
        owner = QJsonObject{{QStringLiteral("entry"), referenceValue(fixed->getEntryDisplayItem())}};
    }
    object.insert(QStringLiteral("defaultEntryOwner"), owner);
    return object;
}

QJsonValue ModelFileWriter::itemValue(const DisplayItem& item) const
{
    const QString name = itemName(item);
    QJsonObject object;
    const std::string kind = item.typeName();
    // The objects of an imported scene keep all they say in their properties.
    const bool writtenAsPlain = kind == "DisplayItem" || dynamic_cast<const SceneObjectItem*>(&item) != nullptr;
    if (kind == "ShellItem" && dynamic_cast<const ShellItem*>(&item)) {
        const auto& shell = dynamic_cast<const ShellItem&>(item);
        object.insert(
            QStringLiteral("shellType"),
            text(shell.getShellType(), m_limits.maxNameLength, QStringLiteral("the shell type of %1").arg(name)));
        object.insert(
            QStringLiteral("shellName"),
            text(shell.getShellName(), m_limits.maxNameLength, QStringLiteral("the shell name of %1").arg(name)));
    } else if (kind == "LabelableItem" && dynamic_cast<const LabelableItem*>(&item)) {
        const auto& labelable = dynamic_cast<const LabelableItem&>(item);
        object.insert(QStringLiteral("label"),
                      text(labelable.getLabel(), m_limits.maxTextLength, QStringLiteral("the label of %1").arg(name)));
        if (!labelable.areLabelsAllowed())
            object.insert(QStringLiteral("labelsAllowed"), false);
    } else if (kind == "GeometryModuleItem" && dynamic_cast<const GeometryModuleItem*>(&item)) {
        const auto geometry = dynamic_cast<const GeometryModuleItem&>(item).getGeometryDisplayItems();
        if (geometry.size() > static_cast<std::size_t>(m_limits.maxListLength))
            fail(QStringLiteral("%1 lists more than %2 geometry items").arg(name).arg(m_limits.maxListLength));
        QJsonArray ids;
        for (const auto& geometryItem : geometry)
            ids.append(referenceValue(geometryItem));
        if (!ids.isEmpty())
            object.insert(QStringLiteral("geometryItems"), ids);
    } else if (!writtenAsPlain) {
        fail(QStringLiteral("the item %1 is of a type this host does not know (%2)")
                 .arg(name, QString::fromStdString(kind)));
    }
    // Fields at their default value are left out: files stay small and show
    // what is special about an item.
    if (!writtenAsPlain)
        object.insert(QStringLiteral("kind"), QString::fromStdString(kind));

    const DisplayItemInterface* self = &item;
    if (m_referenced.count(self))
        object.insert(QStringLiteral("id"), QString::number(m_numbers.at(self)));
    object.insert(QStringLiteral("name"),
                  text(item.getDisplayName(), m_limits.maxNameLength, QStringLiteral("the name of %1").arg(name)));
    if (!item.isVisible())
        object.insert(QStringLiteral("visible"), false);
    if (item.isSelected())
        object.insert(QStringLiteral("selected"), true);
    if (!item.isSelectionAllowed())
        object.insert(QStringLiteral("selectionAllowed"), false);
    if (!item.isSelectable())
        object.insert(QStringLiteral("selectable"), false);
    // The item packs its properties and makes each list on request: made once here.
    const PropertyList businessProperties = item.businessProperties();
    if (!businessProperties.empty())
        object.insert(QStringLiteral("businessProperties"), propertyArray(businessProperties, name));
    const PropertyList displayProperties = item.displayProperties();
    if (!displayProperties.empty())
        object.insert(QStringLiteral("displayProperties"), propertyArray(displayProperties, name));

    // Bounded: numberTree refused trees deeper than the limit.
    if (item.childCount() > 0) {
        QJsonArray children;
        for (const auto& child : item.children())
            children.append(itemValue(*child));
        object.insert(QStringLiteral("children"), children);
    }
    return object;
}

QJsonArray ModelFileWriter::propertyArray(const PropertyList& properties, const QString& owner) const
{
    if (properties.size() > static_cast<std::size_t>(m_limits.maxListLength))
        fail(QStringLiteral("%1 has more than %2 properties in one list").arg(owner).arg(m_limits.maxListLength));
    QJsonArray array;
    for (const auto& [propertyName, value] : properties) {
        const QString what = QStringLiteral("property %1 of %2").arg(quoted(propertyName), owner);
        array.append(QJsonArray{text(propertyName, m_limits.maxNameLength, QStringLiteral("the name of the ") + what),
                                text(value, m_limits.maxTextLength, QStringLiteral("the value of the ") + what)});
    }
    return array;
}

QJsonObject ModelFileWriter::editorObject(const SceneViewModel& viewModel) const
{
    const auto& primitives = viewModel.editorDisplayModel()->getAllEditModelPrimitives();
    if (primitives.size() > static_cast<std::size_t>(m_limits.maxListLength))
        fail(QStringLiteral("the editor has more than %1 primitives").arg(m_limits.maxListLength));
    QJsonArray array;
    for (const auto& primitive : primitives) {
        const QString name = QStringLiteral("the edit primitive ") + quoted(primitive->getDisplayName());
        PropertyList properties;
        primitive->getProperties(properties);
        QJsonObject object;
        object.insert(QStringLiteral("name"),
                      text(primitive->getDisplayName(), m_limits.maxNameLength, QStringLiteral("the name of ") + name));
        if (!primitive->isVisible())
            object.insert(QStringLiteral("visible"), false);
        if (primitive->isSelected())
            object.insert(QStringLiteral("selected"), true);
        if (!primitive->isSelectable())
            object.insert(QStringLiteral("selectable"), false);
        if (!properties.empty())
            object.insert(QStringLiteral("properties"), propertyArray(properties, name));
        array.append(object);
    }
    return QJsonObject{{QStringLiteral("primitives"), array}};
}

QString ModelFileWriter::text(const std::string& value, int maxLength, const QString& what) const
{
    QString result = QString::fromStdString(value);
    if (result.size() > maxLength)
        fail(QStringLiteral("%1 is longer than %2 characters").arg(what).arg(maxLength));
    // Each character takes at least a byte of the file.
    m_textSize += result.size();
    if (m_textSize > m_limits.maxFileSize)
        failTooLarge();
    return result;
}

void ModelFileWriter::failTooLarge() const
{
    fail(QStringLiteral("the file would be larger than %1 bytes").arg(m_limits.maxFileSize));
}

} // namespace Brennvik
