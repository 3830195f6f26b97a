#include "DifferenceLines.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <QEvent>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCursor>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <utility>
#include <vector>

namespace Brennvik {

LineDoubleClickWatch::LineDoubleClickWatch(QPlainTextEdit* edit, LineDoubleClicked lineDoubleClicked)
    : QObject(edit)
    , m_edit(edit)
    , m_lineDoubleClicked(std::move(lineDoubleClicked))
{
    edit->viewport()->installEventFilter(this);
}

bool LineDoubleClickWatch::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonDblClick && watched == m_edit->viewport()) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton && m_lineDoubleClicked)
            m_lineDoubleClicked(m_edit->cursorForPosition(mouse->pos()).block());
    }
    return QObject::eventFilter(watched, event);
}

void showItemRow(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& item)
{
    if (!tree || !item)
        return;
    QTreeWidgetItem* found = nullptr;
    for (QTreeWidgetItemIterator it(tree); *it && !found; ++it) {
        const DisplayItemTreeWidgetItem* row = DisplayItemTreeWidgetItem::asDisplayItemRow(*it);
        if (row && row->showsDisplayItem(item))
            found = *it;
    }
    if (!found)
        return;
    // Nearest first: a row below a collapsed one is only marked expanded,
    // and the chain is laid out once, when its top opens.
    for (QTreeWidgetItem* above = found->parent(); above; above = above->parent())
        above->setExpanded(true);
    tree->setCurrentItem(found);
    tree->scrollToItem(found);
}

} // namespace Brennvik
