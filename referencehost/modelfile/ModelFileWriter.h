#pragma once

#include "ModelFileLimits.h"

#include <hostcontract/HostTypes.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace Brennvik {

class DisplayItem;
class DisplayItemInterface;
class SceneDisplayModel;
class SceneViewModel;

/// Turns a view model into the top-level object of a model file (see
/// docs/model-file-format.md). It refuses models that the loader would refuse
/// or that a file cannot express: items nested or counted beyond the limits,
/// texts too long, a text larger than the file size limit or nested deeper
/// than Qt's parser takes, references to items outside the trees, item or lookup
/// types of other hosts, a kind-6 index that names no step.
class BRENNVIK_HOST_EXPORT ModelFileWriter
{
public:
    explicit ModelFileWriter(ModelFileLimits limits = {});

    /// The file's object for \a viewModel; false with the reason in \a error
    /// when the model cannot be written.
    bool write(const SceneViewModel& viewModel, QJsonObject* object, QString* error);

private:
    /// Numbers the items of \a root in pre-order after those numbered so far.
    void numberTree(const std::shared_ptr<DisplayItem>& root);
    /// Adds the items that lookups and geometry lists point at to the referenced set.
    void collectReferences(const SceneDisplayModel& model);
    void reference(const std::shared_ptr<DisplayItemInterface>& item, const QString& what);
    QJsonValue referenceValue(const std::shared_ptr<DisplayItemInterface>& item) const;

    QJsonObject modelObject(const SceneDisplayModel& model) const;
    QJsonValue itemValue(const DisplayItem& item) const;
    /// \a owner names the item or primitive in messages.
    QJsonArray propertyArray(const PropertyList& properties, const QString& owner) const;
    QJsonObject editorObject(const SceneViewModel& viewModel) const;

    /// \a value as a JSON string; refused when longer than \a maxLength characters.
    /// Counts its characters towards the file's size.
    QString text(const std::string& value, int maxLength, const QString& what) const;
    [[noreturn]] void failTooLarge() const;

    ModelFileLimits m_limits;
    std::unordered_map<const DisplayItemInterface*, int> m_numbers;
    std::unordered_set<const DisplayItemInterface*> m_referenced;
    /// Characters of all texts so far: a lower bound of the file's size.
    mutable qint64 m_textSize = 0;
};

} // namespace Brennvik
