#pragma once

#include <QPoint>
#include <QString>
#include <QStringList>

#include <memory>

class QListWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace Brennvik {
class DisplayItemInterface;
class DisplayItemTreeWidgetItem;
} // namespace Brennvik

namespace Brennvik::Test {

/// The first row of \a tree, at any depth, whose column 0 reads \a text; null when none does.
QTreeWidgetItem* rowNamed(QTreeWidget* tree, const QString& text);

/// Makes every row of a tree whose rows are made on demand, as the user
/// does: each row that shows the expand indicator without child rows is
/// expanded, which makes them, and collapsed again. Returns the rows made.
int fetchAllRows(QTreeWidget* tree);

/// The rows below \a row as text, e.g. "root(a(b),c)".
QString rowShape(const QTreeWidgetItem* row);

/// Left-clicks the centre of \a row in \a tree's viewport, scrolling it into view first.
void clickRow(QTreeWidget* tree, QTreeWidgetItem* row);

/// Double-clicks \a row the way the mouse does: press and release, then the
/// double-click press and its release, all at the centre of the row.
void doubleClickRow(QTreeWidget* tree, QTreeWidgetItem* row);

/// Rows for \a item and its subtree, under \a parentRow (top-level when null),
/// without a dialog: the rows follow their items' icons, while the tree's
/// structure stays as built. Returns the row of \a item.
DisplayItemTreeWidgetItem* addRowsWithoutDialog(QTreeWidget* tree, QTreeWidgetItem* parentRow,
                                                const std::shared_ptr<DisplayItemInterface>& item);

/// A point of \a tree's viewport where no display item row is: on a new
/// top-level row of the plain QTreeWidgetItem type when \a onForeignRow,
/// else in the empty space below the last row.
QPoint pointOutsideDisplayItemRows(QTreeWidget* tree, bool onForeignRow);

/// The texts of \a list's entries, top to bottom.
QStringList listTexts(const QListWidget* list);

} // namespace Brennvik::Test
