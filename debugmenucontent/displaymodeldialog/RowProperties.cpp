#include "RowProperties.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>
#include <debugmenucontent/treewidgets/EditModelTreeWidgetItem.h>
#include <debugmenucontent/treewidgets/PropertyPane.h>

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/EditorDisplayItem.h>
#include <hostcontract/LabelableDisplayItemInterface.h>

#include <QBrush>
#include <QTreeWidget>

#include <memory>

namespace Brennvik {

namespace {

// Pointer values always differ between a model and its copy, so they count as equal.
bool isPointerProperty(const Property& property)
{
    return property.first == "pointer" || property.first == "pointer (DisplayItemInterface)";
}

} // namespace

void collectDisplayItemProperties(const DisplayItemTreeWidgetItem* row, PropertyList& businessObjectProperties,
                                  PropertyList& displayItemProperties)
{
    if (!row)
        return;
    // getDisplayItem only locks the row's weak reference; the row is not changed.
    const std::shared_ptr<DisplayItemInterface> item = const_cast<DisplayItemTreeWidgetItem*>(row)->getDisplayItem();
    if (!item)
        return;
    item->getProperties(businessObjectProperties, displayItemProperties);
    if (const auto labelable = std::dynamic_pointer_cast<LabelableDisplayItemInterface>(item)) {
        displayItemProperties.emplace_back("Label", labelable->getLabel());
        displayItemProperties.emplace_back("Labels allowed", labelable->areLabelsAllowed() ? "true" : "false");
    }
}

void collectRowProperties(const QTreeWidgetItem* row, PropertyList& businessObjectProperties,
                          PropertyList& displayItemProperties)
{
    if (const auto* itemRow = dynamic_cast<const DisplayItemTreeWidgetItem*>(row)) {
        collectDisplayItemProperties(itemRow, businessObjectProperties, displayItemProperties);
    } else if (const auto* editRow = dynamic_cast<const EditModelTreeWidgetItem*>(row)) {
        // Edit primitives have one list only; it goes to the display item pane.
        if (const std::shared_ptr<EditorDisplayItem> editItem = editRow->getEditorDisplayItem())
            editItem->getProperties(displayItemProperties);
    }
}

bool fillComparedPane(QTreeWidget* pane, const PropertyList& cloned, const PropertyList& original, bool compare)
{
    if (pane)
        pane->clear();
    bool differs = false;
    auto originalIt = original.cbegin();
    for (const Property& property : cloned) {
        bool equal = true;
        if (compare && !original.empty()) {
            // A value beyond the end of the original list has nothing to equal.
            equal = originalIt != original.cend() && originalIt->second == property.second;
            if (isPointerProperty(property))
                equal = true;
        }
        if (originalIt != original.cend())
            ++originalIt;
        if (!equal)
            differs = true;
        if (!pane)
            continue;
        QTreeWidgetItem* row = makePropertyRow(property);
        row->setForeground(1, QBrush(equal ? Qt::lightGray : Qt::red, Qt::SolidPattern));
        pane->addTopLevelItem(row);
    }
    return differs;
}

} // namespace Brennvik
