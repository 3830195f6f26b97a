#include "DisplayModel2DDialog.h"

#include "DisplayItemTreeWidgetItem2D.h"
#include "DisplayItemTypeCollector.h"

#include <debugmenucontent/treewidgets/PropertyPane.h>
#include <debugmenucontent/treewidgets/RowTeardown.h>

#include <hostcontract/ApplicationWindow.h>
#include <hostcontract/BasePresenter.h>
#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayItemTreeTraverser.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/GenericPlotManager.h>
#include <hostcontract/MainWindowPresenter.h>
#include <hostcontract/PlotDescription.h>
#include <hostcontract/PlotLabelDisplayItem.h>
#include <hostcontract/ProcessDesignerPresenter.h>
#include <hostcontract/Vector.h>
#include <hostcontract/ViewBase.h>
#include <hostcontract/ViewModelInterface.h>
#include <hostcontract/ViewTransformationProvider.h>
#include <hostcontract/VirtualDrawArea.h>

#include <QCoreApplication>
#include <QPoint>
#include <QShowEvent>
#include <QString>
#include <QStringList>
#include <QTreeWidgetItem>
#include <QVariant>
#include <QtGlobal>

#include <algorithm>
#include <list>
#include <numeric>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Brennvik {

namespace {

QPoint globalTopLeft(const QWidget* widget)
{
    return widget->mapToGlobal(widget->rect().topLeft());
}

} // namespace

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
    if (!row || column != 0)
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
    m_plotWidgets.clear();
    m_plotLabels.clear();
    m_plotWidgetGuards.clear();
    m_plotLabelGuards.clear();
    // May report the current row -1, which empties the tree.
    m_plotListWdg->clear();

    // Plot widgets of the process designer, then those of the material generator.
    if (ProcessDesignerPresenter* designer = m_mainWindowPresenter->getLeftProcessDesigner()) {
        const std::set<QWidget*> drawAreas = designer->getDrawAreas2D();
        for (QWidget* drawArea : drawAreas) {
            auto* plotWidget = dynamic_cast<BkHQWidget2D*>(drawArea);
            if (plotWidget && plotWidget->isVisible())
                m_plotWidgets.push_back(plotWidget);
        }
    }
    const QVariant materialGenerator = QCoreApplication::instance()->property("MaterialGenerator");
    if (QWidget* window = materialGenerator.value<QWidget*>()) {
        // A widget found here as well as in the designer is listed twice.
        for (BkHQWidget2D* plotWidget : window->findChildren<BkHQWidget2D*>()) {
            if (plotWidget->isVisible())
                m_plotWidgets.push_back(plotWidget);
        }
    }

    // Top to bottom, then left to right.
    std::sort(m_plotWidgets.begin(), m_plotWidgets.end(), [](const BkHQWidget2D* a, const BkHQWidget2D* b) {
        const QPoint pa = globalTopLeft(a);
        const QPoint pb = globalTopLeft(b);
        return pa.y() < pb.y() || (pa.y() == pb.y() && pa.x() < pb.x());
    });

    for (BkHQWidget2D* plotWidget : m_plotWidgets)
        m_plotWidgetGuards.emplace_back(plotWidget);

    const float dpr = float(getDevicePixelRatio(getWindow()));
    for (const BkHQWidget2D* plotWidget : m_plotWidgets) {
        const QPoint p = globalTopLeft(plotWidget);
        // qRound rounds halves upwards: -7.5 gives -7.
        const int x = qRound(float(p.x()) * dpr);
        const int y = qRound(float(p.y()) * dpr);
        const std::string text = "Plot at (" + std::to_string(x) + ", " + std::to_string(y) + ")";
        m_plotListWdg->insertItem(m_plotListWdg->count(), QString(text.c_str()));
    }

    if (const std::shared_ptr<ViewModelInterface> viewModel = m_viewModel.lock()) {
        const ViewBase* view = viewModel->getView();
        const QWidget* viewWidget = view ? view->getViewWidget() : nullptr;
        const DisplayModel* labelModel = viewModel->getLabelDisplayModel();
        if (view && viewWidget && labelModel) {
            const ViewTransformationProvider& transformation = view->getMainWindowTransformationProvider();
            const QPoint origin = viewWidget->mapToGlobal(QPoint(0, 0));
            const int originX = qRound(float(origin.x()) * dpr);
            const int originY = qRound(float(origin.y()) * dpr);

            // Only visible labels, in traversal order; the filter's cache skips
            // runs of other item types without a cast.
            std::vector<std::shared_ptr<PlotLabelDisplayItem>> labels;
            DisplayItemTypeCollector<PlotLabelDisplayItem> collector(&labels);
            DisplayItemTreeTraverser::processVisible(labelModel->getRootDisplayItem(), collector);

            std::vector<Vector<float, 3>> points;
            for (const std::shared_ptr<PlotLabelDisplayItem>& label : labels) {
                m_plotLabels.push_back(label.get());
                const Vector<float, 3> pixel
                    = transformation.transformWorldToPixelCoordinates(label->getAnchorPointForDisplay());
                Vector<float, 3> point(float(originX), float(originY), 0.0f);
                point += pixel;
                points.push_back(point);
            }

            std::vector<std::size_t> order(points.size());
            std::iota(order.begin(), order.end(), std::size_t(0));
            std::sort(order.begin(), order.end(), [&points](std::size_t a, std::size_t b) {
                return points[a].y() < points[b].y()
                    || (points[a].y() == points[b].y() && points[a].x() < points[b].x());
            });
            std::vector<PlotLabelDisplayItem*> sortedLabels;
            std::vector<Vector<float, 3>> sortedPoints;
            for (const std::size_t index : order) {
                m_plotLabelGuards.push_back(labels[index]);
                sortedLabels.push_back(m_plotLabels[index]);
                sortedPoints.push_back(points[index]);
            }
            m_plotLabels = std::move(sortedLabels);

            for (const Vector<float, 3>& point : sortedPoints) {
                // Truncated toward zero, unlike the plot rows, which are rounded.
                const std::string text
                    = "PlotLabel at (" + std::to_string(int(point.x())) + ", " + std::to_string(int(point.y())) + ")";
                m_plotListWdg->insertItem(m_plotListWdg->count(), QString(text.c_str()));
            }
        }
    }

    const int total = int(m_plotLabels.size() + m_plotWidgets.size());
    const int currentRow = m_plotListWdg->currentRow();
    // A current row equal to total is left alone, as the bound is written.
    if (total > 0 && (currentRow < 0 || currentRow > total))
        m_plotListWdg->setCurrentRow(0);
}

} // namespace Brennvik
