#include "CloneModeLayout.h"

#include <QRect>
#include <QScreen>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QWidget>

#include <utility>
#include <vector>

namespace Brennvik {

std::optional<QSize> widenForCloneMode(QWidget* dialog)
{
    if (!dialog || dialog->isMaximized() || dialog->isFullScreen())
        return std::nullopt;
    const QScreen* screen = dialog->screen();
    if (!screen)
        return std::nullopt;
    const QRect available = screen->availableGeometry();
    const QSize before = dialog->size();
    const QRect frame = dialog->frameGeometry();
    const int frameExtra = frame.width() - dialog->width();
    const int width = qMin(2 * before.width(), available.width() - frameExtra);
    if (width <= before.width())
        return std::nullopt;

    dialog->resize(width, before.height());
    // Keep the wider frame on the screen: move it left, never past the left edge.
    const int overhang = frame.x() + width + frameExtra - (available.x() + available.width());
    if (overhang > 0)
        dialog->move(qMax(available.x(), frame.x() - overhang), frame.y());
    return before;
}

void mirrorExpansion(QTreeWidget* original, QTreeWidget* cloned)
{
    if (!original || !cloned)
        return;
    std::vector<std::pair<QTreeWidgetItem*, QTreeWidgetItem*>> pending;
    const int topCount = qMin(original->topLevelItemCount(), cloned->topLevelItemCount());
    for (int i = topCount - 1; i >= 0; --i)
        pending.emplace_back(original->topLevelItem(i), cloned->topLevelItem(i));

    std::vector<QTreeWidgetItem*> toExpand;
    while (!pending.empty()) {
        const auto [originalRow, clonedRow] = pending.back();
        pending.pop_back();
        if (originalRow->text(0) != clonedRow->text(0))
            continue;
        if (originalRow->isExpanded())
            toExpand.push_back(clonedRow);
        const int childCount = qMin(originalRow->childCount(), clonedRow->childCount());
        for (int i = childCount - 1; i >= 0; --i)
            pending.emplace_back(originalRow->child(i), clonedRow->child(i));
    }

    const QSignalBlocker quiet(cloned);
    // Deepest first: a row below a collapsed one is only marked expanded, and
    // each shown row is laid out once, when its own ancestors open.
    for (auto row = toExpand.rbegin(); row != toExpand.rend(); ++row)
        (*row)->setExpanded(true);
}

} // namespace Brennvik
