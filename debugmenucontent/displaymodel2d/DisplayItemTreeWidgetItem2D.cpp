#include "DisplayItemTreeWidgetItem2D.h"

#include "DisplayModel2DDialog.h"

#include <debugmenucontent/treewidgets/RowColumns.h>

#include <hostcontract/DisplayItem2D.h>

#include <QIcon>
#include <QString>

namespace Brennvik {

// Shared by all 2D rows; made on first use and kept for the life of the process.
QIcon* DisplayItemTreeWidgetItem2D::s_visibleIcon = nullptr;
QIcon* DisplayItemTreeWidgetItem2D::s_notVisibleIcon = nullptr;

DisplayItemTreeWidgetItem2D::DisplayItemTreeWidgetItem2D(QTreeWidget* parent, std::shared_ptr<DisplayItem2D> item,
                                                         DisplayModel2DDialog* dialog)
    : QTreeWidgetItem(parent, QTreeWidgetItem::UserType)
{
    init(std::move(item), dialog);
}

DisplayItemTreeWidgetItem2D::DisplayItemTreeWidgetItem2D(QTreeWidgetItem* parent, std::shared_ptr<DisplayItem2D> item,
                                                         DisplayModel2DDialog* dialog)
    : QTreeWidgetItem(parent, QTreeWidgetItem::UserType)
{
    init(std::move(item), dialog);
}

DisplayItemTreeWidgetItem2D::~DisplayItemTreeWidgetItem2D()
{
    m_displayItem.reset();
}

std::shared_ptr<DisplayItem2D> DisplayItemTreeWidgetItem2D::getDisplayItem()
{
    return m_displayItem;
}

void DisplayItemTreeWidgetItem2D::init(std::shared_ptr<DisplayItem2D> item, DisplayModel2DDialog* dialog)
{
    m_displayItem = std::move(item);
    m_dialog = dialog;
    setVisiblityIcon();
    // Set once: a later rename shows only when the tree is rebuilt.
    setText(NameColumn, QString::fromStdString(m_displayItem->getDisplayName()));
    observe(m_displayItem);
}

void DisplayItemTreeWidgetItem2D::setVisiblityIcon()
{
    // Any value but Visible counts as not visible, also values this module never sets.
    setIcon(NameColumn,
            m_displayItem->getVisibility() != DisplayItem2D::Visible ? *getNotVisibleIcon() : *getVisibleIcon());
}

void DisplayItemTreeWidgetItem2D::toggleVisibility()
{
    // The icon is left alone: it changes with the item's modified event, so
    // the row always shows what the model holds.
    if (m_displayItem->getVisibility() == DisplayItem2D::Visible)
        m_displayItem->setVisibility(DisplayItem2D::NotVisible);
    else
        m_displayItem->setVisibility(DisplayItem2D::Visible);
}

void DisplayItemTreeWidgetItem2D::onDisplayItemModified()
{
    setVisiblityIcon();
    m_dialog->displayItemModified(this);
}

void DisplayItemTreeWidgetItem2D::onChildAdded(DisplayItem2D*, std::shared_ptr<DisplayItem2D> child)
{
    m_dialog->displayItemAdded(this, child);
}

void DisplayItemTreeWidgetItem2D::onChildRemoved(DisplayItem2D*, std::shared_ptr<DisplayItem2D> child)
{
    m_dialog->displayItemRemoved(this, child);
}

QIcon* DisplayItemTreeWidgetItem2D::getVisibleIcon()
{
    if (!s_visibleIcon)
        s_visibleIcon = new QIcon(QStringLiteral(":/Icons/Debug/visible.svg"));
    return s_visibleIcon;
}

QIcon* DisplayItemTreeWidgetItem2D::getNotVisibleIcon()
{
    if (!s_notVisibleIcon)
        s_notVisibleIcon = new QIcon(QStringLiteral(":/Icons/Debug/not_visible.svg"));
    return s_notVisibleIcon;
}

} // namespace Brennvik
