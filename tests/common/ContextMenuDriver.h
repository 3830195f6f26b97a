#pragma once

#include <QPoint>

#include <functional>
#include <QString>
#include <QStringList>

class QAbstractItemView;

namespace Brennvik::Test {

/// What a user saw and did in one context menu.
struct ContextMenuVisit
{
    bool opened = false;         ///< a popup menu appeared
    bool accepted = false;       ///< the context menu event was accepted
    QStringList entries;         ///< texts of the menu's actions in order, separators left out
    QStringList disabledEntries; ///< those of the entries that were shown disabled
    bool triggered = false;      ///< the wanted entry was found, enabled, and chosen
};

/// Right-clicks \a view at \a viewportPos the way a user does: a real
/// QContextMenuEvent goes to the viewport. While the (modal) menu is open a
/// zero-delay timer started before the click reads its entries and then
/// either chooses \a entryToTrigger with the keyboard (arrow keys and Return)
/// or closes the menu with Escape when it is empty or not found.
/// \a whileOpen, when given, runs while the menu is open, before the choice.
ContextMenuVisit rightClick(QAbstractItemView* view, const QPoint& viewportPos,
                            const QString& entryToTrigger = QString(), const std::function<void()>& whileOpen = {});

} // namespace Brennvik::Test
