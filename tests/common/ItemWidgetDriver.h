#pragma once

#include <QString>
#include <QStringList>

class QListWidget;
class QTreeWidget;
class QTreeWidgetItem;

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

/// The texts of \a list's entries, top to bottom.
QStringList listTexts(const QListWidget* list);

} // namespace Brennvik::Test
