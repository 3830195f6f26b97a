#pragma once

#include <hostcontract/HostExport.h>

#include <QByteArray>
#include <QString>

namespace Brennvik {

/// The reason given when a file to be replaced is a FIFO, a device or the like.
BRENNVIK_HOST_EXPORT QString notRegularFileReason();

/// Writes \a data to the file named by \a nativePath (the name's bytes as the
/// system takes them, which need not be valid text) through a new file beside
/// it that replaces it only once all of it is written, so that a failed write
/// leaves what was there and nothing beside it. Only a regular file is
/// replaced; a symbolic link keeps pointing at the replaced file. False with
/// the reason in \a reason (which may be null).
BRENNVIK_HOST_EXPORT bool replaceFileContents(const QByteArray& nativePath, const QByteArray& data, QString* reason);

} // namespace Brennvik
