#include "RawFileNames.h"

#include <QtGlobal>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace Brennvik::Test {

QList<QByteArray> rawEntryNames(const QByteArray& folder)
{
    QList<QByteArray> names;
#ifdef Q_OS_UNIX
    DIR* directory = ::opendir(folder.constData());
    if (!directory)
        return names;
    while (const dirent* entry = ::readdir(directory)) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..")
            names << name;
    }
    ::closedir(directory);
    std::sort(names.begin(), names.end());
#else
    Q_UNUSED(folder)
#endif
    return names;
}

QByteArray readRawFile(const QByteArray& path)
{
    QByteArray data;
#ifdef Q_OS_UNIX
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return data;
    char buffer[65536];
    ssize_t count = 0;
    while ((count = ::read(descriptor, buffer, sizeof buffer)) > 0)
        data.append(buffer, int(count));
    ::close(descriptor);
#else
    Q_UNUSED(path)
#endif
    return data;
}

} // namespace Brennvik::Test
