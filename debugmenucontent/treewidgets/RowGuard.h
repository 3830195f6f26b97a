#pragma once

#include <QModelIndex>
#include <QPersistentModelIndex>

namespace Brennvik {

/// Follows a tree row across a call into the host.
///
/// The host raises its events inside the call, and they may make a dialog
/// delete rows: the row itself, its parent, or the whole tree. Rows are no
/// QObjects that a QPointer could follow, so the row's persistent model index
/// stands in: Qt invalidates it when the row, or a row above it, leaves the tree.
template<typename Row>
class RowGuard
{
public:
    /// \a index is the model index of \a row in its tree; an invalid one
    /// (a row that is in no tree) makes a guard that finds the row gone.
    RowGuard(Row* row, const QModelIndex& index)
        : m_row(row)
        , m_index(index)
    {
    }

    /// The row; null once it has left its tree.
    Row* get() const { return m_index.isValid() ? m_row : nullptr; }

private:
    Row* m_row;
    QPersistentModelIndex m_index;
};

} // namespace Brennvik
