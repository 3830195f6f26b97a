#include "ReplaceFile.h"

#include <QFile>

#ifdef Q_OS_UNIX
#include <QRandomGenerator>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#else
#include <QFileInfo>
#include <QSaveFile>
#endif

namespace Brennvik {

namespace {

bool failWith(QString* reason, const QString& text)
{
    if (reason)
        *reason = text;
    return false;
}

#ifdef Q_OS_UNIX

/// The file a symbolic link at \a path names, or \a path itself.
QByteArray resolvedTarget(const QByteArray& path)
{
    struct stat status
    {
    };
    if (::lstat(path.constData(), &status) != 0 || !S_ISLNK(status.st_mode))
        return path;
    char* resolved = ::realpath(path.constData(), nullptr);
    if (!resolved)
        return path;
    const QByteArray target(resolved);
    std::free(resolved);
    return target;
}

/// Creates a file of a new name beside \a target, for writing; its name goes
/// to \a name. The descriptor, or -1 with the reason in errno.
int createBeside(const QByteArray& target, QByteArray* name)
{
    constexpr int Attempts = 100;
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        *name = target + '.' + QByteArray::number(QRandomGenerator::global()->generate(), 36);
        const int descriptor = ::open(name->constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
    return -1;
}

/// Writes all of \a data. The system may take part of it and fail only on
/// the next write; writing the rest then gives that failure its reason.
bool writeAll(int descriptor, const QByteArray& data)
{
    const char* next = data.constData();
    qint64 left = data.size();
    while (left > 0) {
        const ssize_t written = ::write(descriptor, next, size_t(left));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        next += written;
        left -= written;
    }
    return true;
}

/// Gives the new file \a mode (when not null), writes \a data, puts it on
/// disk and closes \a descriptor. Zero, or the errno of the first failure.
int writeAndClose(int descriptor, const QByteArray& data, const mode_t* mode)
{
    int error = 0;
    if ((mode && ::fchmod(descriptor, *mode) != 0) || !writeAll(descriptor, data) || ::fsync(descriptor) != 0)
        error = errno;
    if (::close(descriptor) != 0 && error == 0)
        error = errno;
    return error;
}

#endif

} // namespace

QString notRegularFileReason()
{
    return QStringLiteral("it is not a regular file");
}

bool replaceFileContents(const QByteArray& nativePath, const QByteArray& data, QString* reason)
{
#ifdef Q_OS_UNIX
    const QByteArray target = resolvedTarget(nativePath);
    struct stat status
    {
    };
    const bool exists = ::stat(target.constData(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode))
        return failWith(reason, qt_error_string(EISDIR));
    // Renaming over a FIFO or a device would put an ordinary file in its place.
    if (exists && !S_ISREG(status.st_mode))
        return failWith(reason, notRegularFileReason());
    QByteArray temporary;
    const int descriptor = createBeside(target, &temporary);
    if (descriptor < 0)
        return failWith(reason, qt_error_string(errno));
    const mode_t mode = status.st_mode & 07777;
    int error = writeAndClose(descriptor, data, exists ? &mode : nullptr);
    if (error == 0 && ::rename(temporary.constData(), target.constData()) != 0)
        error = errno;
    if (error == 0)
        return true;
    ::unlink(temporary.constData());
    return failWith(reason, qt_error_string(error));
#else
    const QString path = QFile::decodeName(nativePath);
    const QFileInfo target(path);
    if (target.exists() && !target.isFile() && !target.isDir())
        return failWith(reason, notRegularFileReason());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        return failWith(reason, file.errorString());
    return true;
#endif
}

} // namespace Brennvik
