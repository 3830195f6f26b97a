#pragma once

#include <QByteArray>
#include <QList>

namespace Brennvik::Test {

/// The names in the folder \a folder (without "." and ".."), sorted, as the
/// system's bytes: QDir leaves out names that are not valid text.
QList<QByteArray> rawEntryNames(const QByteArray& folder);

/// The bytes of the file named \a path, read without its name going through
/// QString; empty when it cannot be read.
QByteArray readRawFile(const QByteArray& path);

} // namespace Brennvik::Test
