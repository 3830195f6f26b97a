#include "TreeBuilding.h"

#include "RowRemovalWatch.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/GeometryModuleDisplayItemInterface.h>
#include <hostcontract/HostTypes.h>
#include <hostcontract/InitialEntryLookups.h>

#include <QLatin1String>
#include <QTreeWidget>

#include <cstddef>
#include <memory_resource>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Brennvik {

namespace {

// One item whose rows are being made: its children first, then, when the
// item is a geometry module after a "Geometry" row, its geometry list.
struct BuildFrame
{
    DisplayItemTreeWidgetItem* parentRow;
    std::shared_ptr<DisplayItemInterface> item;
    DisplayItemList pending;
    std::size_t next;
    int index;
    bool geometrySeen;
    bool duplicate;
    bool listingGeometry;
};

// Once the frame's children are built: true when the frame goes on with its
// geometry list, false when it is done. Geometry modules after the "Geometry"
// group list their geometry a second time.
bool startGeometryList(BuildFrame& frame)
{
    if (frame.listingGeometry || !frame.geometrySeen || frame.duplicate)
        return false;
    frame.listingGeometry = true;
    const auto module = std::dynamic_pointer_cast<GeometryModuleDisplayItemInterface>(frame.item);
    if (!module)
        return false;
    frame.pending = module->getGeometryDisplayItems();
    frame.next = 0;
    return true;
}

} // namespace

// Depth first with an explicit stack, in the order of a recursive build: the
// host's tree may be a chain far deeper than the call stack.
void buildSubtreeRows(DisplayModelDialog* dialog, DisplayItemTreeWidgetItem* parentRow,
                      const std::shared_ptr<DisplayItemInterface>& item, bool geometrySeen, bool duplicate,
                      const RowRemovalWatch& watch)
{
    if (!parentRow || !item)
        return;
    // The path set takes and drops a node per row; a pool hands the same few
    // nodes round instead of asking the heap each time.
    std::pmr::unsynchronized_pool_resource pathNodes;
    std::pmr::unordered_set<const DisplayItemInterface*> onPath{&pathNodes};
    onPath.insert(item.get());
    std::vector<BuildFrame> stack;
    stack.push_back({parentRow, item, item->getChildren(), 0, 0, geometrySeen, duplicate, false});
    while (!stack.empty() && !watch.rowsRemoved()) {
        BuildFrame& frame = stack.back();
        if (frame.next == frame.pending.size()) {
            if (startGeometryList(frame))
                continue;
            onPath.erase(frame.item.get());
            stack.pop_back();
            continue;
        }

        const std::shared_ptr<DisplayItemInterface> child = frame.pending[frame.next++];
        if (!child)
            continue;
        // Rows of a geometry list, and every row below them, are duplicates.
        const bool childDuplicate = frame.listingGeometry || frame.duplicate;
        const bool childGeometrySeen = frame.listingGeometry || frame.geometrySeen;
        auto* row = new DisplayItemTreeWidgetItem(frame.parentRow, child, dialog, childDuplicate,
                                                  DisplayItemTreeWidgetItem::ShownLater{});
        // Showing the row asks the host, whose events may delete it.
        if (!row->showItem() || watch.rowsRemoved())
            return;
        row->setItemIndex(frame.index++);
        // The row's text is set once, so it can be tested before its subtree is built.
        if (!frame.listingGeometry && !frame.geometrySeen && row->text(0) == QLatin1String("Geometry"))
            frame.geometrySeen = true;
        if (!onPath.insert(child.get()).second)
            continue;
        DisplayItemList grandChildren = child->getChildren();
        stack.push_back({row, child, std::move(grandChildren), 0, 0, childGeometrySeen, childDuplicate, false});
    }
}

std::optional<InitialEntry> initialEntry(DisplayModel& displayModel)
{
    const std::shared_ptr<ActiveContext> context = displayModel.getActiveContext();
    if (!context)
        return std::nullopt;
    switch (context->getContextKind()) {
    case ContextKind::ProcessStep:
        if (Kind6Provider* provider = displayModel.getKind6Provider())
            return InitialEntry{provider->getDisplayItemAt(displayModel.getKind6Index()), true};
        break;
    case ContextKind::Tool:
        if (Kind7Source* source = displayModel.getKind7Source()) {
            if (const std::shared_ptr<Kind7Lookup> lookup = displayModel.getKind7Lookup())
                return InitialEntry{lookup->findDisplayItem(source->getKey()), false};
        }
        break;
    default:
        if (DefaultEntryOwner* owner = displayModel.getDefaultEntryOwner())
            return InitialEntry{owner->getEntryDisplayItem(), false};
        break;
    }
    return std::nullopt;
}

std::vector<DisplayItemTreeWidgetItem*> rowsShowing(QTreeWidget* tree,
                                                    const std::shared_ptr<DisplayItemInterface>& item)
{
    std::vector<DisplayItemTreeWidgetItem*> rows;
    if (!tree || !item)
        return rows;
    // Pre-order over the rows with a stack of next children: the tree may be
    // far deeper than the call stack, and Qt's item iterator costs several
    // times as much per row.
    std::vector<std::pair<QTreeWidgetItem*, int>> pending{{tree->invisibleRootItem(), 0}};
    while (!pending.empty()) {
        auto& [parent, next] = pending.back();
        if (next == parent->childCount()) {
            pending.pop_back();
            continue;
        }
        QTreeWidgetItem* child = parent->child(next++);
        auto* row = DisplayItemTreeWidgetItem::asDisplayItemRow(child);
        if (row && row->showsDisplayItem(item))
            rows.push_back(row);
        if (child->childCount() > 0)
            pending.emplace_back(child, 0);
    }
    return rows;
}

} // namespace Brennvik
