#pragma once

#include <memory>
#include <optional>
#include <vector>

class QTreeWidget;

namespace Brennvik {

class DisplayItemInterface;
class DisplayItemTreeWidgetItem;
class DisplayModel;
class DisplayModelDialog;
class RowRemovalWatch;

/// Builds the rows of \a item's subtree under \a parentRow, depth first, one
/// row per child in the host's order, each told its position among the rows
/// made under the same parent. Once a row texted "Geometry" has been built
/// (\a geometrySeen), a geometry module after it lists its geometry items a
/// second time, as duplicate rows after its own children; every row below a
/// duplicate row is a duplicate (\a duplicate). An empty child gets no row; an
/// item met again on its own way down gets a row and nothing below it. The
/// rows report to \a dialog. The build ends quietly where \a watch sees rows
/// go while the host is asked.
void buildSubtreeRows(DisplayModelDialog* dialog, DisplayItemTreeWidgetItem* parentRow,
                      const std::shared_ptr<DisplayItemInterface>& item, bool geometrySeen, bool duplicate,
                      const RowRemovalWatch& watch);

/// The display item the tree starts on and whether its rows are expanded.
struct InitialEntry
{
    std::shared_ptr<DisplayItemInterface> item;
    bool expand;
};

/// The initial entry for the display model's active context: by index for a
/// process step, by key for a tool, the default entry owner's for any other
/// kind. Nothing without a context or without the lookup its kind needs; an
/// empty item when the lookup finds none.
std::optional<InitialEntry> initialEntry(DisplayModel& displayModel);

/// The rows of \a item in \a tree, in the order of a pre-order walk over all
/// rows, duplicates included; rows show an item when they hold the same
/// pointer. No item has no rows.
std::vector<DisplayItemTreeWidgetItem*> rowsShowing(QTreeWidget* tree,
                                                    const std::shared_ptr<DisplayItemInterface>& item);

} // namespace Brennvik
