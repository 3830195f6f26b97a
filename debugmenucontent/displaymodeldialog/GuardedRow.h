#pragma once

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/RowGuard.h>

#include <QModelIndex>

namespace Brennvik {

/// A row of either tree of the display model dialog, followed across a call
/// into the host; a row outside a DisplayItemTreeWidget counts as gone.
template<typename Row>
RowGuard<Row> guardRow(Row* row)
{
    auto* tree = row ? dynamic_cast<DisplayItemTreeWidget*>(row->treeWidget()) : nullptr;
    return RowGuard<Row>(row, tree ? tree->getModelIndexFromItem(row, 0) : QModelIndex());
}

} // namespace Brennvik
