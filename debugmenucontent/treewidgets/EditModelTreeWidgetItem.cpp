#include "EditModelTreeWidgetItem.h"

#include "RowColumns.h"
#include "RowText.h"

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <hostcontract/EditorDisplayItem.h>
#include <hostcontract/EditorDisplayUpdateViewsInterface.h>

#include <QIcon>
#include <QString>

namespace Brennvik {

// Separate from the display item rows' icons, so that neither kind of row
// depends on the other having been shown first.
QIcon* EditModelTreeWidgetItem::s_visibleIcon = nullptr;
QIcon* EditModelTreeWidgetItem::s_notVisibleIcon = nullptr;

EditModelTreeWidgetItem::EditModelTreeWidgetItem(QTreeWidget* parent, std::shared_ptr<EditorDisplayItem> item,
                                                 DisplayModelDialog* dialog)
    : QTreeWidgetItem(parent, QTreeWidgetItem::UserType)
    , m_editorDisplayItem(item)
    , m_dialog(dialog)
    , m_reserved(0)
{
    init(-1);
}

EditModelTreeWidgetItem::EditModelTreeWidgetItem(QTreeWidgetItem* parent, std::shared_ptr<EditorDisplayItem> item,
                                                 DisplayModelDialog* dialog, int itemIndex)
    : QTreeWidgetItem(parent, QTreeWidgetItem::UserType)
    , m_editorDisplayItem(item)
    , m_dialog(dialog)
    , m_reserved(0)
{
    init(itemIndex);
}

EditModelTreeWidgetItem::~EditModelTreeWidgetItem()
{
    m_editorDisplayItem.reset();
}

std::shared_ptr<EditorDisplayItem> EditModelTreeWidgetItem::getEditorDisplayItem() const
{
    return m_editorDisplayItem.lock();
}

void EditModelTreeWidgetItem::toggleSelection()
{
    const std::shared_ptr<EditorDisplayItem> item = m_editorDisplayItem.lock();
    if (!item || !item->isSelectable())
        return;
    item->setIsSelected(!item->isSelected());
}

void EditModelTreeWidgetItem::toggleVisibility()
{
    const std::shared_ptr<EditorDisplayItem> item = m_editorDisplayItem.lock();
    if (!item)
        return;
    item->setIsVisible(!item->isVisible());
    // No observer reports the change back to this row, so the icon follows at once.
    setVisiblityIcon();
    if (EditorDisplayUpdateViewsInterface* updater = item->getViewUpdater())
        updater->updateViews();
    if (m_dialog)
        m_dialog->displayItemModified(this);
}

void EditModelTreeWidgetItem::init(int itemIndex)
{
    setVisiblityIcon();

    // A primitive may also be a shell; it is then named like a shell's display item row.
    setText(NameColumn, rowText(m_editorDisplayItem.lock()));

    if (itemIndex >= 0)
        setText(IndexColumn, rowIndexText(itemIndex));
}

void EditModelTreeWidgetItem::setVisiblityIcon()
{
    if (!s_visibleIcon)
        s_visibleIcon = new QIcon(QStringLiteral(":/Icons/Debug/visible.svg"));
    if (!s_notVisibleIcon)
        s_notVisibleIcon = new QIcon(QStringLiteral(":/Icons/Debug/not_visible.svg"));

    // A primitive that has gone is not drawn: it shows as not visible.
    const std::shared_ptr<EditorDisplayItem> item = m_editorDisplayItem.lock();
    setIcon(NameColumn, item && item->isVisible() ? *s_visibleIcon : *s_notVisibleIcon);
}

} // namespace Brennvik
