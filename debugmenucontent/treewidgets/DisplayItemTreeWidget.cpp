#include "DisplayItemTreeWidget.h"

#include "DisplayItemTreeWidgetItem.h"
#include "RowGuard.h"
#include "RowState.h"
#include "RowTeardown.h"

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/TreeViewContextMenu.h>
#include <hostcontract/TreeViewIndex.h>

#include <QAction>
#include <QContextMenuEvent>
#include <QDebug>
#include <QHelpEvent>
#include <QStringList>
#include <QToolTip>

namespace Brennvik {

DisplayItemTreeWidget::DisplayItemTreeWidget(QWidget* parent, bool withDisplayItemActions)
    : QTreeWidget(parent)
    , m_selectAction(nullptr)
    , m_deleteAction(nullptr)
    , m_makeInvisibleAction(nullptr)
    , m_makeVisibleAction(nullptr)
    , m_contextItem(nullptr)
{
    if (!withDisplayItemActions)
        return;

    m_selectAction = new QAction(tr("&Select/deselect display item"), this);
    m_selectAction->setStatusTip(tr("Select or deselect the display item"));
    connect(m_selectAction, &QAction::triggered, this, &DisplayItemTreeWidget::onSelectDisplayItem);

    m_deleteAction = new QAction(tr("&Delete display item"), this);
    m_deleteAction->setStatusTip(tr("Delete a display item"));
    connect(m_deleteAction, &QAction::triggered, this, &DisplayItemTreeWidget::onDeleteDisplayItem);

    m_makeInvisibleAction = new QAction(tr("Make subtree invisible"), this);
    m_makeInvisibleAction->setStatusTip(tr("Make recursively all items in the subtree invisible"));
    connect(m_makeInvisibleAction, &QAction::triggered, this, &DisplayItemTreeWidget::onMakeAllSubtreeItemsInvisible);

    m_makeVisibleAction = new QAction(tr("Make subtree visible"), this);
    m_makeVisibleAction->setStatusTip(tr("Make recursively all items in the subtree visible"));
    connect(m_makeVisibleAction, &QAction::triggered, this, &DisplayItemTreeWidget::onMakeAllSubtreeItemsVisible);
}

DisplayItemTreeWidget::~DisplayItemTreeWidget()
{
    // QTreeWidget's own teardown would free a deep chain of rows recursively.
    deleteRowsQuietly(this);
    delete m_selectAction;
    delete m_deleteAction;
    delete m_makeInvisibleAction;
    delete m_makeVisibleAction;
}

int DisplayItemTreeWidget::getDFSIndex(const QTreeWidgetItem* item) const
{
    if (!item)
        return -1;
    return getDFSIdx(this, indexFromItem(item, 0));
}

QTreeWidgetItem* DisplayItemTreeWidget::itemFromDFSIndex(int index) const
{
    const QModelIndex modelIndex = indexFromDFSIdx(this, index);
    return modelIndex.isValid() ? itemFromIndex(modelIndex) : nullptr;
}

QModelIndex DisplayItemTreeWidget::indexFromDFSIndex(int index)
{
    return indexFromDFSIdx(this, index);
}

QModelIndex DisplayItemTreeWidget::getModelIndexFromItem(const QTreeWidgetItem* item, int column)
{
    return indexFromItem(item, column);
}

QTreeWidgetItem* DisplayItemTreeWidget::getItemFromModelIndex(const QModelIndex& index) const
{
    return itemFromIndex(index);
}

void DisplayItemTreeWidget::contextMenuEvent(QContextMenuEvent* event)
{
    m_contextItem = dynamic_cast<DisplayItemTreeWidgetItem*>(itemAt(event->pos()));
    if (m_contextItem) {
        m_contextIndex = indexFromItem(m_contextItem, 0);
        qDebug().noquote() << m_contextItem->text(0);

        auto* menu = new TreeViewContextMenu(this, event->pos());
        // A row whose item has gone offers no item entries; the subtree
        // handlers then find nothing to do.
        appendSelectAction(*menu);
        // Asking the host may have removed the row.
        DisplayItemTreeWidgetItem* row = contextItem();
        const std::shared_ptr<DisplayItemInterface> forDelete = row ? row->getDisplayItem() : nullptr;
        if (m_deleteAction && forDelete && forDelete->getParent())
            menu->appendAction(m_deleteAction, true);
        if (m_makeInvisibleAction)
            menu->appendAction(m_makeInvisibleAction, true);
        if (m_makeVisibleAction)
            menu->appendAction(m_makeVisibleAction, true);

        menu->show(nullptr);

        m_contextItem = nullptr;
        m_contextIndex = QPersistentModelIndex();
        delete menu;
    }
    event->accept();
}

void DisplayItemTreeWidget::appendSelectAction(TreeViewContextMenu& menu)
{
    const std::shared_ptr<DisplayItemInterface> item = m_contextItem->getDisplayItem();
    if (!m_selectAction || !item || !item->isSelectionAllowed())
        return;
    menu.appendAction(m_selectAction, true);
    // Offered whenever selection is allowed, but inert while the item's
    // selection may not change now; a row gone meanwhile has nothing to toggle.
    m_selectAction->setEnabled(contextItem() && item->isSelectable());
}

bool DisplayItemTreeWidget::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        if (DisplayItemTreeWidgetItem* row = DisplayItemTreeWidgetItem::asDisplayItemRow(itemAt(help->pos()))) {
            showRowToolTip(row, *help);
            return true;
        }
    }
    return QTreeWidget::viewportEvent(event);
}

void DisplayItemTreeWidget::showRowToolTip(DisplayItemTreeWidgetItem* row, const QHelpEvent& event)
{
    const RowGuard<DisplayItemTreeWidgetItem> guardedRow(row, indexFromItem(row, 0));
    const std::optional<RowState> state = queryRowState(guardedRow);
    // The host's events may have removed the row while it was asked.
    if (!state || !guardedRow.get()) {
        QToolTip::hideText();
        return;
    }
    QToolTip::showText(event.globalPos(), rowToolTipText(*state), viewport(), visualItemRect(row));
}

QString DisplayItemTreeWidget::rowToolTipText(const RowState& state)
{
    if (state.itemGone)
        return tr("The display item no longer exists");
    const QStringList lines{state.visible ? tr("Visible") : tr("Not visible"),
                            state.selected ? tr("Selected") : tr("Not selected"),
                            state.hiddenByAncestor ? tr("Hidden by an ancestor") : tr("No ancestor hides it")};
    return lines.join(QLatin1Char('\n'));
}

DisplayItemTreeWidgetItem* DisplayItemTreeWidget::contextItem() const
{
    if (!m_contextItem || !m_contextIndex.isValid() || itemFromIndex(m_contextIndex) != m_contextItem)
        return nullptr;
    return m_contextItem;
}

std::shared_ptr<DisplayItemInterface> DisplayItemTreeWidget::contextDisplayItem() const
{
    DisplayItemTreeWidgetItem* row = contextItem();
    return row ? row->getDisplayItem() : nullptr;
}

void DisplayItemTreeWidget::onSelectDisplayItem()
{
    qDebug().noquote() << "onSelectDisplayItem()";
    DisplayItemTreeWidgetItem* row = contextItem();
    if (!row)
        return;
    // Held across the toggle: the host's events may remove the row meanwhile.
    const std::shared_ptr<DisplayItemInterface> item = row->getDisplayItem();
    row->toggleSelection();
    if (item) {
        if (DisplayModel* displayModel = item->getDisplayModel())
            displayModel->doDisplayUpdate(DisplayUpdate::Attributes);
    }
}

void DisplayItemTreeWidget::onDeleteDisplayItem()
{
    qDebug().noquote() << "onDeleteDisplayItem()";
    const std::shared_ptr<DisplayItemInterface> item = contextDisplayItem();
    if (!item)
        return;
    DisplayItemInterface* parent = item->getParent();
    if (!parent)
        return;
    // Taken before the removal, which detaches the item from its model.
    DisplayModel* displayModel = item->getDisplayModel();
    // The row stays: the host's removed event makes the dialog drop it.
    parent->removeChild(item, false);
    if (displayModel)
        displayModel->doDisplayUpdate(DisplayUpdate::Attributes);
}

void DisplayItemTreeWidget::onMakeAllSubtreeItemsInvisible()
{
    setSubtreeVisible(false);
}

void DisplayItemTreeWidget::onMakeAllSubtreeItemsVisible()
{
    setSubtreeVisible(true);
}

void DisplayItemTreeWidget::setSubtreeVisible(bool visible)
{
    const std::shared_ptr<DisplayItemInterface> item = contextDisplayItem();
    if (!item)
        return;

    // The host decides what the subtree is; the module does not recurse itself.
    std::vector<std::shared_ptr<DisplayItemInterface>> subtree;
    if (visible)
        item->collectSubtreeToShow(subtree);
    else
        item->collectSubtree(subtree);

    for (const std::shared_ptr<DisplayItemInterface>& subtreeItem : subtree) {
        if (!subtreeItem)
            continue;
        subtreeItem->setVisible(visible);
        subtreeItem->notifyVisualPropertiesChanged();
    }

    if (DisplayModel* displayModel = item->getDisplayModel())
        displayModel->doVisibilityUpdate();
}

} // namespace Brennvik
