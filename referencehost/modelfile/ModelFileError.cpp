#include "ModelFileError.h"

namespace Brennvik {

QString ModelFileError::toString() const
{
    if (line <= 0)
        return QStringLiteral("%1: %2").arg(file, message);
    return QStringLiteral("%1:%2:%3: %4").arg(file).arg(line).arg(column).arg(message);
}

} // namespace Brennvik
