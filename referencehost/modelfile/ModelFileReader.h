#pragma once

#include "JsonPath.h"
#include "JsonTextLocator.h"
#include "LoadProgress.h"
#include "ModelFileError.h"
#include "ModelFileLimits.h"

#include <hostcontract/InitialEntryLookups.h>

#include <QByteArray>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Brennvik {

class DisplayItem;
class GeometryModuleItem;
class SceneDisplayModel;
class SceneViewModel;

/// Reads one model file's text into a new view model (see
/// docs/model-file-format.md). All of the file is checked and all items are
/// built before the view model is put together, so a failure leaves nothing
/// behind but the error. Recursion follows the item levels only and stops at
/// the depth limit.
class BRENNVIK_HOST_EXPORT ModelFileReader
{
public:
    /// \a fileName names the text in messages.
    ModelFileReader(QByteArray text, QString fileName, ModelFileLimits limits = {});
    ~ModelFileReader();
    ModelFileReader(const ModelFileReader&) = delete;
    ModelFileReader& operator=(const ModelFileReader&) = delete;

    /// Tells \a progress how far read() has come (see ModelFileProgress).
    void setProgress(ModelFileProgress progress);

    /// The model; null on failure, with the error in \a error (which may be null).
    std::shared_ptr<SceneViewModel> read(ModelFileError* error);

private:
    /// A place in the document while it is read: a chain of steps on the
    /// stack, turned into a JsonPath only for an error or a reference, so
    /// that reading does not copy paths for every value.
    struct Location
    {
        const Location* parent = nullptr;
        /// The member key when index is negative.
        QString key;
        int index = -1;

        Location child(const QString& memberKey) const { return Location{this, memberKey, -1}; }
        Location child(int elementIndex) const { return Location{this, QString(), elementIndex}; }
        JsonPath path() const;
        QString describe() const { return path().describe(); }
    };

    /// An item id in the file and where it was written.
    struct Reference
    {
        QString id;
        JsonPath path;
    };

    /// One display model as read, before its references are resolved.
    struct ModelParts
    {
        std::shared_ptr<DisplayItem> root;
        std::shared_ptr<ActiveContext> context;
        bool hasKind6Provider = false;
        std::vector<std::optional<Reference>> steps;
        Kind6Index kind6Index = 0;
        std::shared_ptr<Kind7Source> kind7Source;
        bool hasKind7Lookup = false;
        std::optional<Reference> lookupRoot;
        std::string keyProperty;
        bool hasDefaultEntryOwner = false;
        std::optional<Reference> entry;
    };

    /// An edit primitive as read.
    struct PrimitiveParts
    {
        std::string name;
        bool visible = true;
        bool selected = false;
        bool selectable = true;
        std::vector<std::pair<std::string, std::string>> properties;
    };

    std::shared_ptr<SceneViewModel> readDocument();
    ModelParts readModel(const QJsonValue& value, const Location& path);
    /// Reads the item at \a path and its subtree; the item is appended to
    /// \a parent before its children are read, so that attaching stays cheap.
    std::shared_ptr<DisplayItem> readItem(const QJsonValue& value, const Location& path, int depth,
                                          DisplayItem* parent);
    void readItemProperties(DisplayItem& item, const QJsonObject& object, const Location& path, const QString& key,
                            bool business);
    std::vector<PrimitiveParts> readEditor(const QJsonValue& value, const Location& path);
    std::vector<std::pair<std::string, std::string>> readPropertyList(const QJsonValue& value, const Location& path,
                                                                      bool uniqueNames);
    std::optional<Reference> readReference(const QJsonValue& value, const Location& path, bool nullable);
    std::shared_ptr<DisplayItem> resolve(const std::optional<Reference>& reference) const;
    void assemble(SceneDisplayModel& model, const ModelParts& parts) const;

    /// \name Typed access; each fails with a positioned message
    ///@{
    void checkKnownFields(const QJsonObject& object, const Location& path, const QStringList& known) const;
    QJsonObject toObject(const QJsonValue& value, const Location& path) const;
    QJsonArray toArray(const QJsonValue& value, const Location& path, int maxLength) const;
    QString toText(const QJsonValue& value, const Location& path, int maxLength) const;
    int toInt(const QJsonValue& value, const Location& path) const;
    bool toBool(const QJsonValue& value, const Location& path) const;
    QJsonValue required(const QJsonObject& object, const Location& path, const QString& key) const;
    /// True when \a key is there and not null.
    static bool present(const QJsonObject& object, const QString& key);
    QString requiredText(const QJsonObject& object, const Location& path, const QString& key, int maxLength) const;
    QString optionalText(const QJsonObject& object, const Location& path, const QString& key, int maxLength,
                         const QString& fallback) const;
    bool optionalBool(const QJsonObject& object, const Location& path, const QString& key, bool fallback) const;
    ///@}

    QByteArray m_text;
    QString m_fileName;
    ModelFileLimits m_limits;
    JsonTextLocator m_locator;
    ModelFileProgress m_progressCallback;
    LoadProgress m_progress;
    int m_itemCount = 0;
    /// Items by id, with where the id was written.
    QHash<QString, std::pair<std::shared_ptr<DisplayItem>, JsonPath>> m_items;
    std::vector<std::pair<GeometryModuleItem*, Reference>> m_geometryReferences;
};

} // namespace Brennvik
