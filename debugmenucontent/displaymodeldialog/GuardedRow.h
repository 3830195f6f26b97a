#pragma once

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/RowGuard.h>

#include <QItemSelectionModel>
#include <QModelIndex>
#include <QPersistentModelIndex>

namespace Brennvik {

/// A row of either tree of the display model dialog, followed across a call
/// into the host; a row outside a DisplayItemTreeWidget counts as gone.
template<typename Row>
RowGuard<Row> guardRow(Row* row)
{
    auto* tree = row ? dynamic_cast<DisplayItemTreeWidget*>(row->treeWidget()) : nullptr;
    return RowGuard<Row>(row, tree ? tree->getModelIndexFromItem(row, 0) : QModelIndex());
}

/// Makes \a row of \a tree current as QTreeWidget::setCurrentItem does. Qt
/// hands the row's index on by reference through its current-row signal and
/// keeps it afterwards (as the start of the next range selection); the host's
/// events inside that signal may delete the row. Given a persistent index,
/// which Qt invalidates in place, Qt keeps nothing that names a deleted row.
inline void setCurrentRowFollowed(DisplayItemTreeWidget* tree, QTreeWidgetItem* row)
{
    const QPersistentModelIndex index(tree->getModelIndexFromItem(row, 0));
    tree->setCurrentIndex(index);
}

/// The same with \a command for the selection, as the three-argument
/// QTreeWidget::setCurrentItem does.
inline void setCurrentRowFollowed(DisplayItemTreeWidget* tree, QTreeWidgetItem* row,
                                  QItemSelectionModel::SelectionFlags command)
{
    const QPersistentModelIndex index(tree->getModelIndexFromItem(row, 0));
    tree->selectionModel()->setCurrentIndex(index, command);
}

} // namespace Brennvik
