#include "RowTeardown.h"

#include <QItemSelectionModel>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QTreeWidgetItem>

namespace Brennvik {

void deleteDetachedRows(QTreeWidgetItem* row)
{
    QTreeWidgetItem* const top = row;
    while (row) {
        if (row->childCount() > 0) {
            row = row->child(0);
            continue;
        }
        // A row without children: its destructor only takes it out of its
        // parent, at the front of the parent's list, which costs nothing.
        QTreeWidgetItem* const parent = row == top ? nullptr : row->parent();
        delete row;
        row = parent;
    }
}

void deleteRowsQuietly(QTreeWidget* tree)
{
    if (!tree)
        return;
    {
        // The view keeps a persistent index per expanded row, and taking rows
        // out walks every persistent index up its ancestors: quadratic on an
        // expanded chain. The expansion goes with the rows anyway.
        const QSignalBlocker quiet(tree);
        tree->collapseAll();
    }
    const QSignalBlocker quiet(tree->selectionModel());
    while (const int count = tree->topLevelItemCount())
        deleteDetachedRows(tree->takeTopLevelItem(count - 1));
}

void clearRowsDeepestFirst(QTreeWidget* tree)
{
    if (!tree)
        return;
    // As QTreeWidget::clear does first: the listeners see the current row go.
    if (QItemSelectionModel* selection = tree->selectionModel())
        selection->clear();
    deleteRowsQuietly(tree);
    tree->clear();
}

} // namespace Brennvik
