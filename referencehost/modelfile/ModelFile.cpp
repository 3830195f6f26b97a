#include "ModelFile.h"

#include "ModelFileReader.h"
#include "ModelFileWriter.h"
#include "ReplaceFile.h"

#include <referencehost/model/SceneViewModel.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <QFileInfo>
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

/// Opens the file named \a nativePath for reading when it is a regular file.
/// A FIFO or a device is refused without waiting for a writer; an empty
/// reason means success.
QString openRegularFile(QFile& file, const QByteArray& nativePath)
{
#ifdef Q_OS_UNIX
    // Opened without blocking and checked through the descriptor, so that
    // the file checked is the file read.
    const int descriptor = ::open(nativePath.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return QStringLiteral("cannot open the file: %1").arg(qt_error_string(errno));
    struct stat status
    {
    };
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        const bool directory = S_ISDIR(status.st_mode);
        ::close(descriptor);
        return directory ? kDirectory : QStringLiteral("cannot read the file: ") + notRegularFileReason();
    }
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return QStringLiteral("cannot open the file: %1").arg(file.errorString());
    }
#else
    const QString path = QFile::decodeName(nativePath);
    const QFileInfo info(path);
    if (info.isDir())
        return kDirectory;
    if (info.exists() && !info.isFile())
        return QStringLiteral("cannot read the file: ") + notRegularFileReason();
    file.setFileName(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot open the file: %1").arg(file.errorString());
#endif
    return {};
}

/// Reads the file named \a nativePath; \a name stands for it in messages.
std::shared_ptr<SceneViewModel> loadFile(const QByteArray& nativePath, const QString& name, ModelFileError* error,
                                         const ModelFileLimits& limits, const ModelFileProgress& progress)
{
    QFile file;
    const QString reason = openRegularFile(file, nativePath);
    if (!reason.isEmpty())
        return failWith(error, name, reason);
    // Checked before reading so that a huge file is not pulled into memory.
    if (file.size() > limits.maxFileSize)
        return failWith(error, name, QStringLiteral("the file is larger than %1 bytes").arg(limits.maxFileSize));
    // Reading a large file takes a while of its own: the load begins here.
    if (progress)
        progress(0, LoadProgress::Total);
    const QByteArray text = file.read(limits.maxFileSize + 1);
    if (file.error() != QFileDevice::NoError)
        return failWith(error, name, QStringLiteral("cannot read the file: %1").arg(file.errorString()));
    const ModelFileProgress afterTheStart = [&progress](std::size_t done, std::size_t total) {
        if (progress && done > 0)
            progress(done, total);
    };
    return ModelFile::loadFromData(text, name, error, limits, afterTheStart);
}

/// Writes \a viewModel to the file named \a nativePath; \a name stands for
/// it in messages.
bool saveFile(const SceneViewModel& viewModel, const QByteArray& nativePath, const QString& name, QString* error,
              const ModelFileLimits& limits)
{
    QString reason;
    const QByteArray json = ModelFile::toJson(viewModel, &reason, limits);
    if (json.isEmpty()) {
        if (error)
            *error = QStringLiteral("%1: cannot save the model: %2").arg(name, reason);
        return false;
    }
    if (!replaceFileContents(nativePath, json, &reason)) {
        if (error)
            *error = QStringLiteral("%1: cannot write the file: %2").arg(name, reason);
        return false;
    }
    return true;
}

} // namespace

std::shared_ptr<SceneViewModel> ModelFile::load(const QString& path, ModelFileError* error,
                                                const ModelFileLimits& limits, const ModelFileProgress& progress)
{
    return loadFile(QFile::encodeName(path), path, error, limits, progress);
}

std::shared_ptr<SceneViewModel> ModelFile::load(const QByteArray& nativePath, ModelFileError* error,
                                                const ModelFileLimits& limits, const ModelFileProgress& progress)
{
    return loadFile(nativePath, QFile::decodeName(nativePath), error, limits, progress);
}

std::shared_ptr<SceneViewModel> ModelFile::loadFromData(const QByteArray& json, const QString& name,
                                                        ModelFileError* error, const ModelFileLimits& limits,
                                                        const ModelFileProgress& progress)
{
    ModelFileReader reader(json, name, limits);
    reader.setProgress(progress);
    return reader.read(error);
}

bool ModelFile::save(const SceneViewModel& viewModel, const QString& path, QString* error,
                     const ModelFileLimits& limits)
{
    return saveFile(viewModel, QFile::encodeName(path), path, error, limits);
}

bool ModelFile::save(const SceneViewModel& viewModel, const QByteArray& nativePath, QString* error,
                     const ModelFileLimits& limits)
{
    return saveFile(viewModel, nativePath, QFile::decodeName(nativePath), error, limits);
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
