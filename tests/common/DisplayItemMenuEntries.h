#pragma once

#include <QString>
#include <QStringList>

namespace Brennvik::Test {

// The entries of the display item tree's context menu, as the user sees them.
inline const QString SelectEntry = QStringLiteral("&Select/deselect display item");
inline const QString DeleteEntry = QStringLiteral("&Delete display item");
inline const QString InvisibleEntry = QStringLiteral("Make subtree invisible");
inline const QString VisibleEntry = QStringLiteral("Make subtree visible");
// The entries the host's own tree view adds after them.
inline const QStringList KitEntries{QStringLiteral("Expand recursively"), QStringLiteral("Collapse all"),
                                    QStringLiteral("Copy")};

} // namespace Brennvik::Test
