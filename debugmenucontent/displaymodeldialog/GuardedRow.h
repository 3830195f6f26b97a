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
// QTreeWidget::indexFromItem and QAbstractItemView::selectionCommand are
// protected; pointers to them taken through a derived class are the legal
// way to ask any tree widget.
struct TreeAccess : QTreeWidget
{
    static QModelIndex indexOf(const QTreeWidget& tree, const QTreeWidgetItem* row)
    {
        using IndexFromItem = QModelIndex (QTreeWidget::*)(const QTreeWidgetItem*, int) const;
        const IndexFromItem indexFromItem = &TreeAccess::indexFromItem;
        return (tree.*indexFromItem)(row, 0);
    }
    static QItemSelectionModel::SelectionFlags commandFor(const QTreeWidget& tree, const QModelIndex& index)
    {
        using Command
            = QItemSelectionModel::SelectionFlags (QAbstractItemView::*)(const QModelIndex&, const QEvent*) const;
        const Command command = &TreeAccess::selectionCommand;
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
inline void setCurrentRowFollowed(QTreeWidget* tree, QTreeWidgetItem* row)
{
    using GuardedRowDetail::TreeAccess;
    const QPersistentModelIndex index(TreeAccess::indexOf(*tree, row));
    if (index.isValid() && !(index.flags() & Qt::ItemIsEnabled))
        return;
    tree->selectionModel()->setCurrentIndex(index, TreeAccess::commandFor(*tree, index));
}

} // namespace Brennvik
