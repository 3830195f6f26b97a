#pragma once

class QIcon;
class QTreeWidgetItem;

namespace Brennvik {

/// Shows \a icon in column 0 of \a row as QTreeWidgetItem::setIcon does on
/// Qt 5, with the same signals (none when the row shows it already), but lets
/// the row share Qt's data for it.
///
/// Qt keeps an item's icon in two vectors of its own per row. A row that holds
/// nothing but one of the few shared row icons can use the vectors of a
/// template row that shows only that icon: Qt's vectors are implicitly shared,
/// and Qt copies them as soon as anything of the row changes. A row that still
/// shares them takes another template's when its icon changes, so hiding and
/// showing rows costs no memory. Rows that hold other data, and rows of a tree
/// that sorts itself, take Qt's setIcon.
void showRowIcon(QTreeWidgetItem& row, const QIcon& icon);

} // namespace Brennvik
