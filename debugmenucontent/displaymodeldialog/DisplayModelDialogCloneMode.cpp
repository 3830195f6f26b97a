// The clone mode of the display model dialog: the cloned tree and panes, the
// comparison of the two trees and their properties, and the mirroring of
// expansion and the current row between them.

#include "DisplayModelDialog.h"

#include "CloneModeLayout.h"
#include "CloneRowMarking.h"
#include "ClonedPanes.h"
#include "RowProperties.h"
#include "RowRemovalWatch.h"
#include "TreeMirroring.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DrawAreaPresenter.h>
#include <hostcontract/HostTypes.h>

#include <QBoxLayout>
#include <QCheckBox>
#include <QTreeWidget>

#include <utility>

namespace Brennvik {

namespace {

// Hands a cloned pane's widgets to the dialog members that name them.
void keepPaneWidgets(const ClonedPane& pane, QHBoxLayout*& header, QLabel*& title, QTreeWidget*& paneWidget)
{
    header = pane.header;
    title = pane.title;
    paneWidget = pane.pane;
}

} // namespace

void DisplayModelDialog::createClonedWidgets()
{
    m_clonedDisplayItemTreeWidget = addClonedTree(this, m_mainHLayout);

    m_vl_clonedProperties = new QVBoxLayout();
    m_vl_clonedProperties->setSpacing(6);
    m_vl_clonedProperties->setObjectName(QStringLiteral("m_vl_clonedProperties"));

    // The cloned business pane carries the original pane's object name: hosts'
    // tools find the panes by it, so it is kept.
    const ClonedPane business = addClonedPane(this, m_vl_clonedProperties,
                                              {"m_hl_cloned_business_props", "m_lbl_cloned_business_obj_props",
                                               "Cloned business object properties", "m_businessObjectProperties"});
    keepPaneWidgets(business, m_hl_cloned_business_props, m_lbl_cloned_business_obj_props,
                    m_clonedBusinessObjectProperties);

    const ClonedPane display = addClonedPane(this, m_vl_clonedProperties,
                                             {"m_hl_cloned_display_props", "m_lbl_cloned_display_props",
                                              "Cloned display item properties", "m_clonedDisplayItemProperties"});
    keepPaneWidgets(display, m_hl_cloned_display_props, m_lbl_cloned_display_props, m_clonedDisplayItemProperties);

    // The form's spacer members now name the cloned headers' spacers, as hosts
    // have always found them; the original spacers stay in their layouts, which own them.
    horizontalSpacer_4 = business.spacer;
    horizontalSpacer_5 = display.spacer;

    m_mainHLayout->addLayout(m_vl_clonedProperties);
}

void DisplayModelDialog::removeClonedWidgets()
{
    if (!m_clonedDisplayItemTreeWidget)
        return;
    m_mainHLayout->removeWidget(m_clonedDisplayItemTreeWidget);
    delete m_clonedDisplayItemTreeWidget;
    m_clonedDisplayItemTreeWidget = nullptr;
    m_clonedTopRow = nullptr;
    // The emptied column stays in m_mainHLayout and the pane pointers are not
    // reset; the next switch-on adds a new column. Kept as hosts know it.
    clearLayout(m_vl_clonedProperties);
}

void DisplayModelDialog::onUseCloneStateChanged(int state)
{
    m_useClone = state == Qt::Checked;
    if (m_useClone) {
        createClonedWidgets();
        m_sizeBeforeCloneMode = widenForCloneMode(this);
    } else {
        removeClonedWidgets();
        if (const std::optional<QSize> size = std::exchange(m_sizeBeforeCloneMode, std::nullopt))
            resize(*size);
    }
    m_showCloneIn3dCheckBox->setEnabled(m_useClone);
    m_propertyCompareMode->setEnabled(m_useClone);
    rebuildTree(true);
    // The clone starts out opened as the original is; later changes mirror row by row.
    if (m_useClone)
        mirrorExpansion(m_displayItemTreeWidget, m_clonedDisplayItemTreeWidget);
    if (m_showCloneIn3d && m_drawAreaPresenter)
        m_drawAreaPresenter->showViewModel(m_useClone ? m_clonedViewModel : m_viewModel);
}

void DisplayModelDialog::onShowClone3dStateChanged(int state)
{
    m_showCloneIn3d = state == Qt::Checked;
    if (!m_drawAreaPresenter)
        return;
    m_drawAreaPresenter->showViewModel(m_useClone && state == Qt::Checked ? m_clonedViewModel : m_viewModel);
}

void DisplayModelDialog::onPropertyCompareModeChanged(int /*state*/)
{
    // Without a draw area the cloned panes keep what they show until the next
    // row change; hosts without a draw area rely on that, so it is kept.
    if (!m_drawAreaPresenter)
        return;
    // No cloned tree: clone mode is off and its panes are on their way out.
    if (!m_clonedDisplayItemTreeWidget)
        return;
    printClonedProperties(dynamic_cast<DisplayItemTreeWidgetItem*>(m_clonedDisplayItemTreeWidget->currentItem()));
}

void DisplayModelDialog::onCurrentClonedTreeWidgetItemChanged(QTreeWidgetItem* current)
{
    {
        const CurrentRowSyncGuard syncing(m_syncingCurrentItem);
        if (syncing.entered())
            syncExpandedTreeItems(m_displayItemTreeWidget, current);
    }
    printClonedProperties(current);
}

void DisplayModelDialog::printClonedProperties(const QTreeWidgetItem* clonedRow)
{
    if (m_clonedDisplayItemProperties)
        m_clonedDisplayItemProperties->clear();
    if (m_clonedBusinessObjectProperties)
        m_clonedBusinessObjectProperties->clear();

    const auto* cloned = dynamic_cast<const DisplayItemTreeWidgetItem*>(clonedRow);
    if (!cloned)
        return;
    const auto* original = dynamic_cast<const DisplayItemTreeWidgetItem*>(m_displayItemTreeWidget->currentItem());

    // Checked: values are compared only while both trees show a row of the same name.
    bool compare = true;
    if (m_propertyCompareMode->isChecked())
        compare = original && original->text(0) == cloned->text(0);
    m_onlyCompareMirrored = compare;
    compareProperties(original, cloned);
}

void DisplayModelDialog::compareRecursiveTree(DisplayItemTreeWidgetItem* original, DisplayItemTreeWidgetItem* cloned,
                                              QTreeWidgetItem* clonedParent)
{
    const RowRemovalWatch watch(m_rowRemovals);
    markClonedTreeDifferences(original, cloned, clonedParent, watch);
}

void DisplayModelDialog::paintFalseClonedItem(DisplayItemTreeWidgetItem* row)
{
    Brennvik::paintFalseClonedItem(row);
}

void DisplayModelDialog::syncExpandedTreeItems(DisplayItemTreeWidget* target, QTreeWidgetItem* source)
{
    QTreeWidget* sourceTree = source ? source->treeWidget() : nullptr;
    expandPathWalk().mirror(target, source, sourceTree ? sourceTree->currentIndex().row() : -1,
                            PathAction::MakeCurrent);
}

void DisplayModelDialog::syncTreeItemsForExpandingCollapsing(DisplayItemTreeWidget* target, QTreeWidgetItem* source,
                                                             bool expand)
{
    expandPathWalk().mirror(target, source, source ? itemIndexOf(source) : -1,
                            expand ? PathAction::Expand : PathAction::Collapse);
}

void DisplayModelDialog::setOrigExpanded(QTreeWidgetItem* item)
{
    syncTreeItemsForExpandingCollapsing(m_displayItemTreeWidget, item, true);
}

void DisplayModelDialog::setOrigCollapsed(QTreeWidgetItem* item)
{
    syncTreeItemsForExpandingCollapsing(m_displayItemTreeWidget, item, false);
}

void DisplayModelDialog::setClonedExpanded(QTreeWidgetItem* item)
{
    syncTreeItemsForExpandingCollapsing(m_clonedDisplayItemTreeWidget, item, true);
}

void DisplayModelDialog::setClonedCollapsed(QTreeWidgetItem* item)
{
    syncTreeItemsForExpandingCollapsing(m_clonedDisplayItemTreeWidget, item, false);
}

bool DisplayModelDialog::compareProperties(const DisplayItemTreeWidgetItem* original,
                                           const DisplayItemTreeWidgetItem* cloned)
{
    PropertyList originalBusinessObjectProperties;
    PropertyList originalDisplayItemProperties;
    collectDisplayItemProperties(original, originalBusinessObjectProperties, originalDisplayItemProperties);
    PropertyList clonedBusinessObjectProperties;
    PropertyList clonedDisplayItemProperties;
    collectDisplayItemProperties(cloned, clonedBusinessObjectProperties, clonedDisplayItemProperties);

    // The cloned panes exist only in clone mode; the comparison is made without them too.
    bool differs = fillComparedPane(m_clonedDisplayItemProperties, clonedDisplayItemProperties,
                                    originalDisplayItemProperties, m_onlyCompareMirrored);
    if (fillComparedPane(m_clonedBusinessObjectProperties, clonedBusinessObjectProperties,
                         originalBusinessObjectProperties, m_onlyCompareMirrored))
        differs = true;
    return differs;
}

void DisplayModelDialog::processItem(QTreeWidgetItem* item, int level, const QPair<int, QString>* entry)
{
    expandPathWalk().walk(item, level, entry, PathAction::MakeCurrent);
}

void DisplayModelDialog::expandCollapseItem(QTreeWidgetItem* item, int level, const QPair<int, QString>* entry,
                                            bool expand)
{
    expandPathWalk().walk(item, level, entry, expand ? PathAction::Expand : PathAction::Collapse);
}

ExpandPathWalk DisplayModelDialog::expandPathWalk()
{
    return ExpandPathWalk(m_expandPath, [this](QTreeWidgetItem* row) { compareMirroredRow(row); });
}

void DisplayModelDialog::compareMirroredRow(QTreeWidgetItem* row)
{
    m_onlyCompareMirrored = true;
    const auto* original = dynamic_cast<const DisplayItemTreeWidgetItem*>(m_displayItemTreeWidget->currentItem());
    compareProperties(original, dynamic_cast<const DisplayItemTreeWidgetItem*>(row));
}

} // namespace Brennvik
