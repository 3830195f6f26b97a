#include "DisplayModel2DDialog.h"

#include "DisplayItemTreeWidgetItem2D.h"
#include "PlotListing.h"

#include <debugmenucontent/treewidgets/KeepOpenOnEscape.h>
#include <debugmenucontent/treewidgets/PropertyPane.h>
#include <debugmenucontent/treewidgets/PropertyPaneCopy.h>
#include <debugmenucontent/treewidgets/RowColumns.h>
#include <debugmenucontent/treewidgets/RowTeardown.h>
#include <debugmenucontent/treewidgets/WaitCursor.h>

#include <hostcontract/BasePresenter.h>
#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/GenericPlotManager.h>
#include <hostcontract/MainWindowPresenter.h>
#include <hostcontract/PlotDescription.h>
#include <hostcontract/PlotLabelDisplayItem.h>
#include <hostcontract/ProcessDesignerPresenter.h>
#include <hostcontract/ViewModelInterface.h>
#include <hostcontract/VirtualDrawArea.h>

#include <QShowEvent>
#include <QString>
#include <QStringList>
#include <QTreeWidgetItem>

#include <list>
#include <string>
#include <utility>
#include <vector>

namespace Brennvik {

DisplayModel2DDialog::DisplayModel2DDialog(const MainWindowPresenter& presenter, QWidget* parent)
    : QDialog(parent)
    , ViewModelHolder(this)
    , m_mainWindowPresenter(&presenter)
    , m_plotWidgets()
    , m_plotLabels()
    , m_selectedIndex(-1)
    , m_rootItem(nullptr)
    , m_displayModel2D(nullptr)
{
    setupUi(this);

    m_businessObjectProperties->setHeaderLabels(QStringList() << tr("Name") << tr("Value"));
    m_displayItemProperties->setHeaderLabels(QStringList() << tr("Name") << tr("Value"));
    m_displayItemTreeWidget->setHeaderLabels(QStringList() << tr("Display items"));
    addPropertyCopying(m_businessObjectProperties);
    addPropertyCopying(m_displayItemProperties);

    // Filled before the list is connected: the first row becomes current
    // without building a tree; the tree comes with the first showEvent.
    onUpdateListPBClicked();

    connect(m_plotListWdg, &QListWidget::currentRowChanged, this,
            [this](int row) { onPlotWidgetSelectionChanged(row); });
    connect(m_displayItemTreeWidget, &QTreeWidget::currentItemChanged, this,
            &DisplayModel2DDialog::onDisplayItemTreeWidgetCurrentItemChanged);
    connect(m_displayItemTreeWidget, &QTreeWidget::itemDoubleClicked, this,
            &DisplayModel2DDialog::onDisplayItemTreeWidgetItemDoubleClicked);
    connect(m_updateListPB, &QPushButton::clicked, this, &DisplayModel2DDialog::onUpdateListPBClicked);

    keepOpenOnEscape(*this);
}

DisplayModel2DDialog::~DisplayModel2DDialog()
{
    // QTreeWidget's own teardown would free a deep chain of rows recursively.
    deleteRowsQuietly(m_displayItemTreeWidget);
}

void DisplayModel2DDialog::setViewModel(std::shared_ptr<ViewModelInterface> viewModel)
{
    m_viewModel = viewModel;
}

void DisplayModel2DDialog::showEvent(QShowEvent*)
{
    onUpdateListPBClicked();
}

void DisplayModel2DDialog::onPlotWidgetSelectionChanged(int row)
{
    m_selectedIndex = row;
    m_displayModel2D = getDisplayModelOfSelectedPlot();
    rebuildTree();
}

DisplayModel2D* DisplayModel2DDialog::getDisplayModelOfSelectedPlot() const
{
    const int index = m_selectedIndex;
    const std::size_t plotCount = m_plotWidgets.size();
    if (index < 0)
        return nullptr;
    if (std::size_t(index) < plotCount) {
        // A widget the host has destroyed since the listing reads as none.
        if (std::size_t(index) < m_plotWidgetGuards.size() && !m_plotWidgetGuards[std::size_t(index)])
            return nullptr;
        const BkHQWidget2D* widget = m_plotWidgets[std::size_t(index)];
        GenericPlotManager* manager = widget ? widget->getPlotManager() : nullptr;
        return manager ? manager->getDisplayModel2D() : nullptr;
    }
    if (std::size_t(index) < plotCount + m_plotLabels.size()) {
        // So does a label the host has released.
        const std::size_t labelIndex = std::size_t(index) - plotCount;
        if (labelIndex < m_plotLabelGuards.size() && m_plotLabelGuards[labelIndex].expired())
            return nullptr;
        const PlotLabelDisplayItem* label = m_plotLabels[labelIndex];
        const PlotDescription* description = label ? label->getPlotDescription() : nullptr;
        return description ? description->getDisplayModel2D() : nullptr;
    }
    return nullptr;
}

void DisplayModel2DDialog::setDisplayModel2D(DisplayModel2D* model)
{
    m_displayModel2D = model;
    rebuildTree();
}

void DisplayModel2DDialog::rebuildTree()
{
    const WaitCursor waitCursor;
    clearRowsDeepestFirst(m_displayItemTreeWidget);
    if (!m_displayModel2D)
        return;
    const std::shared_ptr<DisplayItem2D> root = m_displayModel2D->getRootDisplayItem();
    if (!root)
        return;
    m_rootItem = new DisplayItemTreeWidgetItem2D(m_displayItemTreeWidget, root, this);
    buildTreeRecursively(m_rootItem, root);
}

// Depth first with an explicit stack, as a recursive build would go: a plot's
// tree may be deeper than the call stack. The children are read afresh at
// each step, so that rows made meanwhile by the items' events cannot leave
// the build holding a list the host has changed.
void DisplayModel2DDialog::buildTreeRecursively(DisplayItemTreeWidgetItem2D* parentRow,
                                                std::shared_ptr<DisplayItem2D> item)
{
    struct Frame
    {
        DisplayItemTreeWidgetItem2D* row;
        std::shared_ptr<DisplayItem2D> item;
        std::size_t next;
    };
    std::vector<Frame> stack{{parentRow, std::move(item), 0}};
    while (!stack.empty()) {
        Frame& frame = stack.back();
        const std::vector<std::shared_ptr<DisplayItem2D>>& children = frame.item->getChildren();
        if (frame.next >= children.size()) {
            stack.pop_back();
            continue;
        }
        std::shared_ptr<DisplayItem2D> child = children[frame.next++];
        if (!child)
            continue;
        auto* row = new DisplayItemTreeWidgetItem2D(frame.row, child, this);
        stack.push_back({row, std::move(child), 0});
    }
}

void DisplayModel2DDialog::addChildRecursively(DisplayItemTreeWidgetItem2D* parentRow,
                                               std::shared_ptr<DisplayItem2D> item)
{
    auto* row = new DisplayItemTreeWidgetItem2D(parentRow, item, this);
    buildTreeRecursively(row, item);
}

void DisplayModel2DDialog::displayItemAdded(DisplayItemTreeWidgetItem2D* row, std::shared_ptr<DisplayItem2D> child)
{
    addChildRecursively(row, child);
}

void DisplayModel2DDialog::displayItemRemoved(DisplayItemTreeWidgetItem2D* row, std::shared_ptr<DisplayItem2D> child)
{
    const bool hadCurrent = m_displayItemTreeWidget->currentItem() != nullptr;
    for (int i = 0; i < row->childCount(); ++i) {
        auto* childRow = dynamic_cast<DisplayItemTreeWidgetItem2D*>(row->child(i));
        if (childRow && childRow->getDisplayItem() == child) {
            deleteDetachedRows(row->takeChild(i));
            break;
        }
    }
    // Qt drops a current row that was below the removed one without a
    // current-row change; the panes must not go on showing it.
    if (hadCurrent && !m_displayItemTreeWidget->currentItem())
        printProperties(nullptr);
}

void DisplayModel2DDialog::displayItemModified(DisplayItemTreeWidgetItem2D* row)
{
    if (m_displayItemTreeWidget->currentItem() == row)
        printProperties(row);
}

void DisplayModel2DDialog::displayItemsModified(const std::vector<std::shared_ptr<DisplayItem2D>>& items)
{
    auto* current = dynamic_cast<DisplayItemTreeWidgetItem2D*>(m_displayItemTreeWidget->currentItem());
    if (!current)
        return;
    for (const std::shared_ptr<DisplayItem2D>& item : items) {
        if (item == current->getDisplayItem())
            printProperties(current);
    }
}

void DisplayModel2DDialog::updateVisiblity(QTreeWidgetItem* item)
{
    QTreeWidgetItem* start = item ? item : m_rootItem;
    // The root row is kept after the tree was emptied; a row that is no longer
    // in the tree has nothing below it to refresh (compared, not dereferenced).
    if (!item && m_displayItemTreeWidget->indexOfTopLevelItem(m_rootItem) < 0)
        return;
    if (!start)
        return;
    // Pre-order with an explicit stack of (row, next child): the tree may be
    // deeper than the call stack. Rows of another kind end their branch.
    std::vector<std::pair<QTreeWidgetItem*, int>> stack{{start, 0}};
    while (!stack.empty()) {
        auto& [row, next] = stack.back();
        if (next >= row->childCount()) {
            stack.pop_back();
            continue;
        }
        if (auto* childRow = dynamic_cast<DisplayItemTreeWidgetItem2D*>(row->child(next++))) {
            childRow->setVisiblityIcon();
            stack.emplace_back(childRow, 0);
        }
    }
}

void DisplayModel2DDialog::onDisplayItemTreeWidgetCurrentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem*)
{
    printProperties(current);
}

void DisplayModel2DDialog::onDisplayItemTreeWidgetItemDoubleClicked(QTreeWidgetItem*, int column)
{
    // The current row: the first click of the double click made it current.
    auto* row = dynamic_cast<DisplayItemTreeWidgetItem2D*>(m_displayItemTreeWidget->currentItem());
    if (!row || column != NameColumn)
        return;
    row->toggleVisibility();
    if (m_displayModel2D)
        m_displayModel2D->doDisplayUpdate(DisplayUpdate2D::Full);
    if (ProcessDesignerPresenter* designer = m_mainWindowPresenter->getLeftProcessDesigner()) {
        BasePresenter* presenter = designer;
        if (VirtualDrawArea* drawArea = presenter->getVirtualDrawArea())
            drawArea->redraw();
    }
}

void DisplayModel2DDialog::printProperties(const QTreeWidgetItem* item)
{
    m_displayItemProperties->clear();
    m_businessObjectProperties->clear();
    const auto* row = dynamic_cast<const DisplayItemTreeWidgetItem2D*>(item);
    if (!row)
        return;
    PropertyList businessObjectProperties;
    PropertyList displayItemProperties;
    const_cast<DisplayItemTreeWidgetItem2D*>(row)->getDisplayItem()->getProperties(businessObjectProperties,
                                                                                   displayItemProperties);
    fillPropertyPane(m_displayItemProperties, displayItemProperties);
    fillPropertyPane(m_businessObjectProperties, businessObjectProperties);
}

void DisplayModel2DDialog::onUpdateListPBClicked()
{
    clearListing();
    m_plotWidgets = gatherPlotWidgets(*m_mainWindowPresenter);
    sortByScreenPosition(m_plotWidgets);
    guardPlotWidgets();
    const float pixelRatio = listingPixelRatio();
    listPlotWidgets(pixelRatio);
    if (const std::shared_ptr<ViewModelInterface> viewModel = m_viewModel.lock())
        listPlotLabels(placePlotLabels(*viewModel, pixelRatio));
    selectFirstRowWhenNoneIs();
}

void DisplayModel2DDialog::clearListing()
{
    m_plotWidgets.clear();
    m_plotLabels.clear();
    m_plotWidgetGuards.clear();
    m_plotLabelGuards.clear();
    // May report the current row -1, which empties the tree.
    m_plotListWdg->clear();
}

void DisplayModel2DDialog::guardPlotWidgets()
{
    for (BkHQWidget2D* plotWidget : m_plotWidgets)
        m_plotWidgetGuards.emplace_back(plotWidget);
}

void DisplayModel2DDialog::listPlotWidgets(float pixelRatio)
{
    for (const BkHQWidget2D* plotWidget : m_plotWidgets)
        appendListRow(plotRowText(plotWidget, pixelRatio));
}

void DisplayModel2DDialog::listPlotLabels(const std::vector<PlacedPlotLabel>& placedLabels)
{
    for (const PlacedPlotLabel& placed : placedLabels) {
        m_plotLabels.push_back(placed.label.get());
        m_plotLabelGuards.push_back(placed.label);
        appendListRow(labelRowText(placed.point));
    }
}

void DisplayModel2DDialog::appendListRow(const std::string& text)
{
    m_plotListWdg->insertItem(m_plotListWdg->count(), QString(text.c_str()));
}

void DisplayModel2DDialog::selectFirstRowWhenNoneIs()
{
    const int total = int(m_plotLabels.size() + m_plotWidgets.size());
    const int currentRow = m_plotListWdg->currentRow();
    // "Above total", not "at or above": a current row equal to total is left
    // alone. Hosts drive the list through this check as it has always been.
    if (total > 0 && (currentRow < 0 || currentRow > total))
        m_plotListWdg->setCurrentRow(0);
}

} // namespace Brennvik
