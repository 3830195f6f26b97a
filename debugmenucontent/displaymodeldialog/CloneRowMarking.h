#pragma once

class QTreeWidgetItem;

namespace Brennvik {

class DisplayItemTreeWidgetItem;
class RowRemovalWatch;

/// Compares the original tree and the cloned tree pair by pair, in pre-order
/// over rows at the same position, and marks the cloned rows that differ:
/// bold for another text, item index or more children than the original (and
/// their ancestors), the different-visibility state for another visibility.
/// \a clonedParent is the cloned row's parent; each pair of children is handed
/// the parent of the cloned row, not the cloned row itself, so that a child
/// missing in the clone is marked from its grandparent up. Hosts rely on that
/// marking, so it is kept. The walk asks the host for visibilities and ends
/// quietly where \a watch sees rows go meanwhile.
void markClonedTreeDifferences(DisplayItemTreeWidgetItem* original, DisplayItemTreeWidgetItem* cloned,
                               QTreeWidgetItem* clonedParent, const RowRemovalWatch& watch);

/// Marks \a row as differing from its original: bold column 0. Null does nothing.
void paintFalseClonedItem(DisplayItemTreeWidgetItem* row);

/// Marks \a row and every ancestor of it that has a parent: the top-level row
/// is never marked.
void paintFalseClonedAncestors(QTreeWidgetItem* row);

/// Sets the different-visibility state on \a row and on every ancestor of it
/// that has a parent. Each row asks the host for its visibility; where \a watch
/// sees rows go meanwhile, the marking stops and returns false.
bool markDifferentVisibilityUpwards(DisplayItemTreeWidgetItem* row, const RowRemovalWatch& watch);

} // namespace Brennvik
