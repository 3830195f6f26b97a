#include "GeneratedModelBudget.h"

#include <QFile>
#include <QLocale>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace Brennvik {

namespace {

// Peak resident sizes with --generate 1000000 (45 MB for one item): the main
// window alone 0.34 GB, 0.29 KB per item (the model nearly all of it: the
// tree makes the rows of a collapsed branch only when it is expanded); with
// the display model dialog 0.77 GB, 0.43 KB more per item; with the clone
// comparison as well (a clone of the model and two more trees) 1.85 GB,
// 1.09 KB more per item. 10,000,000 items with the display model dialog took
// 7.0 GB. Rounded up, with room for other builds.
constexpr quint64 BaseBytes = 64ULL << 20;
constexpr quint64 MainWindowBytesPerItem = 400;

// The extra share per item of each dialog that shows the generated model; the
// 2D dialog shows plots only.
quint64 dialogBytesPerItem(const QString& dialog)
{
    if (dialog == QLatin1String("display-model"))
        return 600;
    if (dialog == QLatin1String("clone-comparison"))
        return 1600;
    return 0;
}

std::optional<quint64> memAvailableFromProc()
{
    QFile meminfo(QStringLiteral("/proc/meminfo"));
    if (!meminfo.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    const QByteArray prefix("MemAvailable:");
    for (QByteArray line = meminfo.readLine(); !line.isEmpty(); line = meminfo.readLine()) {
        if (!line.startsWith(prefix))
            continue;
        bool ok = false;
        const quint64 kilobytes = line.mid(prefix.size()).trimmed().split(' ').value(0).toULongLong(&ok);
        return ok ? std::optional<quint64>(kilobytes * 1024) : std::nullopt;
    }
    return std::nullopt;
}

QString sizeText(quint64 bytes)
{
    return QLocale::c().formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeTraditionalFormat);
}

} // namespace

quint64 estimatedMemoryForGeneratedModel(quint64 itemCount, const QStringList& openDialogs)
{
    quint64 bytesPerItem = MainWindowBytesPerItem;
    QStringList dialogs = openDialogs;
    dialogs.removeDuplicates();
    for (const QString& dialog : qAsConst(dialogs))
        bytesPerItem += dialogBytesPerItem(dialog);
    return BaseBytes + itemCount * bytesPerItem;
}

std::optional<quint64> availablePhysicalMemory()
{
#ifdef Q_OS_WIN
    MEMORYSTATUSEX status;
    status.dwLength = sizeof(status);
    if (!GlobalMemoryStatusEx(&status))
        return std::nullopt;
    return status.ullAvailPhys;
#else
    // Linux counts reclaimable caches as available; free pages alone would
    // refuse far too early on a machine that has been running a while.
    if (const std::optional<quint64> available = memAvailableFromProc())
        return available;
    const long pages = sysconf(_SC_AVPHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0)
        return std::nullopt;
    return static_cast<quint64>(pages) * static_cast<quint64>(pageSize);
#endif
}

QString generatedModelRefusal(quint64 itemCount, std::optional<quint64> available, const QStringList& openDialogs)
{
    const quint64 needed = estimatedMemoryForGeneratedModel(itemCount, openDialogs);
    if (!available || needed <= *available)
        return QString();
    return QStringLiteral("--generate %1 would need about %2 of memory, more than the %3 available")
        .arg(itemCount)
        .arg(sizeText(needed), sizeText(*available));
}

} // namespace Brennvik
