#pragma once

#include "HostExport.h"

#include <QModelIndex>

class QAbstractItemView;

namespace Brennvik {

/// The 0-based position of \a index in a pre-order depth-first walk over all
/// rows of the view's model (each row followed by its children, collapsed
/// rows counted too). Any column names its row. -1 for an invalid index or
/// one of another model.
BRENNVIK_HOST_EXPORT int getDFSIdx(const QAbstractItemView* view, const QModelIndex& index);

/// The inverse of getDFSIdx: the column-0 index of the row at \a dfsIndex,
/// invalid when out of range.
BRENNVIK_HOST_EXPORT QModelIndex indexFromDFSIdx(const QAbstractItemView* view, int dfsIndex);

} // namespace Brennvik
