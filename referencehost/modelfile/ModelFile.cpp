#include "ModelFile.h"

#include "ModelFileReader.h"
#include "ModelFileWriter.h"

#include <referencehost/model/SceneViewModel.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace Brennvik {

namespace {

std::shared_ptr<SceneViewModel> failWith(ModelFileError* error, const QString& file, const QString& message)
{
    if (error)
        *error = ModelFileError{file, 0, 0, message};
    return nullptr;
}

} // namespace

std::shared_ptr<SceneViewModel> ModelFile::load(const QString& path, ModelFileError* error,
                                                const ModelFileLimits& limits)
{
    const QFileInfo info(path);
    if (info.isDir())
        return failWith(error, path, QStringLiteral("cannot read the file: it is a directory"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failWith(error, path, QStringLiteral("cannot open the file: %1").arg(file.errorString()));
    // Checked before reading so that a huge file is not pulled into memory.
    if (file.size() > limits.maxFileSize)
        return failWith(error, path, QStringLiteral("the file is larger than %1 bytes").arg(limits.maxFileSize));
    const QByteArray text = file.read(limits.maxFileSize + 1);
    if (file.error() != QFileDevice::NoError)
        return failWith(error, path, QStringLiteral("cannot read the file: %1").arg(file.errorString()));
    return loadFromData(text, path, error, limits);
}

std::shared_ptr<SceneViewModel> ModelFile::loadFromData(const QByteArray& json, const QString& name,
                                                        ModelFileError* error, const ModelFileLimits& limits)
{
    ModelFileReader reader(json, name, limits);
    return reader.read(error);
}

bool ModelFile::save(const SceneViewModel& viewModel, const QString& path, QString* error)
{
    QString reason;
    const QByteArray json = toJson(viewModel, &reason);
    if (json.isEmpty()) {
        if (error)
            *error = QStringLiteral("%1: cannot save the model: %2").arg(path, reason);
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size() || !file.commit()) {
        if (error)
            *error = QStringLiteral("%1: cannot write the file: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

QByteArray ModelFile::toJson(const SceneViewModel& viewModel, QString* error)
{
    QJsonObject object;
    ModelFileWriter writer;
    if (!writer.write(viewModel, &object, error))
        return {};
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace Brennvik
