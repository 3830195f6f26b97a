#pragma once

class QTreeWidget;
class QTreeWidgetItem;

namespace Brennvik {

/// Deletes \a row and every row below it, deepest first. \a row must be out
/// of any tree (taken from its parent or tree widget); null does nothing.
///
/// QTreeWidgetItem's destructor deletes the children through nested
/// destructor calls, one per level, so a row showing a deep host chain
/// would exhaust the call stack if deleted whole.
void deleteDetachedRows(QTreeWidgetItem* row);

/// Deletes every row of \a tree, deepest first, without a current-row or
/// expansion signal of the tree: for the destructors of the trees' owners,
/// which Qt would otherwise leave to QTreeWidgetItem's recursive destructor.
void deleteRowsQuietly(QTreeWidget* tree);

/// Empties \a tree as QTreeWidget::clear does (the current row goes first,
/// with its signal), with the rows deleted deepest first.
void clearRowsDeepestFirst(QTreeWidget* tree);

} // namespace Brennvik
