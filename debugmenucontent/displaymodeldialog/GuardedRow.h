#pragma once

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/RowGuard.h>

#include <QItemSelectionModel>
#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QTreeWidget>

namespace Brennvik {

/// A row of either tree of the display model dialog, followed across a call
/// into the host; a row outside a DisplayItemTreeWidget counts as gone.
template<typename Row>
RowGuard<Row> guardRow(Row* row)
{
    auto* tree = row ? dynamic_cast<DisplayItemTreeWidget*>(row->treeWidget()) : nullptr;
    return RowGuard<Row>(row, tree ? tree->getModelIndexFromItem(row, 0) : QModelIndex());
}

/// Makes \a row of \a tree current, with \a command for the selection, as
/// the three-argument QTreeWidget::setCurrentItem does. The host's events
/// inside Qt's current-row signal may delete the row; the selection model
/// keeps the row as a persistent index, which Qt invalidates in place.
inline void setCurrentRowFollowed(DisplayItemTreeWidget* tree, QTreeWidgetItem* row,
                                  QItemSelectionModel::SelectionFlags command)
{
    const QPersistentModelIndex index(tree->getModelIndexFromItem(row, 0));
    tree->selectionModel()->setCurrentIndex(index, command);
}

namespace GuardedRowDetail {
// QAbstractItemView::selectionCommand is protected; a pointer to it taken
// through a derived class is the legal way to ask any view.
struct ViewCommand : QTreeWidget
{
    static QItemSelectionModel::SelectionFlags of(const QTreeWidget& tree, const QModelIndex& index)
    {
        using Command
            = QItemSelectionModel::SelectionFlags (QAbstractItemView::*)(const QModelIndex&, const QEvent*) const;
        const Command command = &ViewCommand::selectionCommand;
        return (tree.*command)(index, nullptr);
    }
};
} // namespace GuardedRowDetail

/// Makes \a row of \a tree current as QTreeWidget::setCurrentItem does, with
/// the selection the view chooses, but through the selection model alone.
/// The view's own setCurrentIndex keeps the index it was handed as the start
/// of the next range selection, made persistent only after the current-row
/// signal: a row the host deleted inside that signal stayed named there, and
/// Qt read the freed row when later rows went.
inline void setCurrentRowFollowed(DisplayItemTreeWidget* tree, QTreeWidgetItem* row)
{
    const QModelIndex index = tree->getModelIndexFromItem(row, 0);
    if (index.isValid() && !(index.flags() & Qt::ItemIsEnabled))
        return;
    setCurrentRowFollowed(tree, row, GuardedRowDetail::ViewCommand::of(*tree, index));
}

} // namespace Brennvik
