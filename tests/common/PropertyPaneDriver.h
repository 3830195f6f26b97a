#pragma once

#include <hostcontract/HostTypes.h>

#include <QPoint>
#include <QString>
#include <QStringList>

#include <functional>

class QTreeWidget;

namespace Brennvik::Test {

/// The entries of a property pane's context menu, in menu order.
inline const QString CopyValue = QStringLiteral("Copy value");
inline const QString CopyNameAndValue = QStringLiteral("Copy name and value");
inline const QString CopyAll = QStringLiteral("Copy all properties");

/// Put on the clipboard before a copy, so that a copy that copied nothing shows.
QString clipboardMarker();

/// The centre of \a column of top-level row \a row of \a pane, in viewport
/// coordinates, after scrolling the row into view. A row of -1 stands for the
/// empty space below the rows.
QPoint paneCellPos(QTreeWidget* pane, int row, int column = 0);

/// What one right click on a property pane did.
struct PaneMenuVisit
{
    bool opened = false;    ///< a popup menu appeared
    QStringList entries;    ///< its entries, separators left out
    QStringList enabled;    ///< those of them that were enabled
    bool triggered = false; ///< the wanted entry was found, enabled and chosen
    QString clipboard;      ///< the clipboard's text afterwards (the marker when nothing was copied)
};

/// Right-clicks \a pane at row \a row (-1: below the rows) with the
/// clipboard holding the marker, and chooses \a entry from the real context
/// menu. \a whileOpen, when given, runs while the menu is open.
PaneMenuVisit chooseFromPaneMenu(QTreeWidget* pane, int row, const QString& entry,
                                 const std::function<void()>& whileOpen = {});

/// As chooseFromPaneMenu, with the right click on the pane's header.
PaneMenuVisit chooseFromPaneHeaderMenu(QTreeWidget* pane, const QString& entry);

/// Makes row \a row of \a pane current, focuses the pane and presses Ctrl+C
/// there, with the clipboard holding the marker; returns the clipboard's text.
QString pressCopyOnRow(QTreeWidget* pane, int row);

/// Hovers the cell at \a row, \a column of \a pane the way the mouse does
/// (a tool tip event on the viewport) and returns the tool tip shown, empty
/// when none shows.
QString hoverToolTip(QTreeWidget* pane, int row, int column);

/// A property as the copy entries write it: name, a tab, value.
QString propertyLine(const Property& property);
/// \a properties as "Copy all properties" writes them: one line each, in order.
QString propertyLines(const PropertyList& properties);

} // namespace Brennvik::Test
