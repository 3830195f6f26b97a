#include "DebugIcons.h"

#include <QHash>
#include <QImage>
#include <QPixmap>

namespace Brennvik::Test {

namespace {
constexpr int ProbeSize = 32;

QImage render(const QIcon& icon)
{
    return icon.pixmap(ProbeSize, ProbeSize).toImage().convertToFormat(QImage::Format_ARGB32);
}
} // namespace

QStringList debugIconNames()
{
    return {QStringLiteral("visible"), QStringLiteral("visible_duplicate"), QStringLiteral("visible_different"),
            QStringLiteral("not_visible")};
}

QString debugIconName(const QIcon& icon)
{
    if (icon.isNull())
        return QString();
    static QHash<QString, QImage> references;
    if (references.isEmpty()) {
        for (const QString& name : debugIconNames())
            references.insert(name, render(QIcon(QStringLiteral(":/Icons/Debug/%1.svg").arg(name))));
    }
    const QImage image = render(icon);
    for (auto it = references.cbegin(); it != references.cend(); ++it) {
        if (!it.value().isNull() && it.value() == image)
            return it.key();
    }
    return QString();
}

} // namespace Brennvik::Test
