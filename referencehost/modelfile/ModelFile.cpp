#include "ModelFile.h"

#include "ModelFileReader.h"
#include "ModelFileWriter.h"

#include <referencehost/model/SceneViewModel.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace Brennvik {

namespace {

std::shared_ptr<SceneViewModel> failWith(ModelFileError* error, const QString& file, const QString& message)
{
    if (error)
        *error = ModelFileError{file, 0, 0, message};
    return nullptr;
}

const QString kDirectory = QStringLiteral("cannot read the file: it is a directory");
const QString kNotRegular = QStringLiteral("it is not a regular file");

/// Opens \a path for reading when it is a regular file. A FIFO or a device
/// is refused without waiting for a writer; an empty reason means success.
QString openRegularFile(QFile& file, const QString& path)
{
#ifdef Q_OS_UNIX
    // Opened without blocking and checked through the descriptor, so that
    // the file checked is the file read.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return QStringLiteral("cannot open the file: %1").arg(qt_error_string(errno));
    struct stat status
    {
    };
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        const bool directory = S_ISDIR(status.st_mode);
        ::close(descriptor);
        return directory ? kDirectory : QStringLiteral("cannot read the file: ") + kNotRegular;
    }
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return QStringLiteral("cannot open the file: %1").arg(file.errorString());
    }
#else
    const QFileInfo info(path);
    if (info.isDir())
        return kDirectory;
    if (info.exists() && !info.isFile())
        return QStringLiteral("cannot read the file: ") + kNotRegular;
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot open the file: %1").arg(file.errorString());
#endif
    return {};
}

/// Writes all of \a data. The system may take part of it and fail only on
/// the next write; writing the rest then gives that failure its reason.
bool writeAll(QSaveFile& file, const QByteArray& data)
{
    qint64 written = 0;
    while (written < data.size()) {
        const qint64 chunk = file.write(data.constData() + written, data.size() - written);
        if (chunk <= 0)
            return false;
        written += chunk;
    }
    return true;
}

} // namespace

std::shared_ptr<SceneViewModel> ModelFile::load(const QString& path, ModelFileError* error,
                                                const ModelFileLimits& limits)
{
    QFile file;
    const QString reason = openRegularFile(file, path);
    if (!reason.isEmpty())
        return failWith(error, path, reason);
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

bool ModelFile::save(const SceneViewModel& viewModel, const QString& path, QString* error,
                     const ModelFileLimits& limits)
{
    QString reason;
    const QByteArray json = toJson(viewModel, &reason, limits);
    if (json.isEmpty()) {
        if (error)
            *error = QStringLiteral("%1: cannot save the model: %2").arg(path, reason);
        return false;
    }
    // The new file replaces the old one by renaming: over a FIFO or a device
    // that would put an ordinary file in its place.
    const QFileInfo target(path);
    if (target.exists() && !target.isFile() && !target.isDir()) {
        if (error)
            *error = QStringLiteral("%1: cannot write the file: %2").arg(path, kNotRegular);
        return false;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !writeAll(file, json) || !file.commit()) {
        if (error)
            *error = QStringLiteral("%1: cannot write the file: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

QByteArray ModelFile::toJson(const SceneViewModel& viewModel, QString* error, const ModelFileLimits& limits)
{
    QJsonObject object;
    ModelFileWriter writer(limits);
    if (!writer.write(viewModel, &object, error))
        return {};
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace Brennvik
