#pragma once

#include <QIcon>
#include <QString>
#include <QStringList>

namespace Brennvik::Test {

/// The base names of the four row icons, as in ":/Icons/Debug/<name>.svg".
QStringList debugIconNames();

/// Which of the four row icons \a icon shows: its base name, or an empty
/// string when it shows none of them (or nothing). Rendered images are
/// compared pixel for pixel with the resources.
QString debugIconName(const QIcon& icon);

} // namespace Brennvik::Test
