#include "ToolTipDriver.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QToolTip>
#include <QWidget>

namespace Brennvik::Test {

QString toolTipAt(QAbstractItemView* view, const QPoint& viewportPos)
{
    takeDownToolTip();
    QWidget* viewport = view->viewport();
    QHelpEvent event(QEvent::ToolTip, viewportPos, viewport->mapToGlobal(viewportPos));
    QApplication::sendEvent(viewport, &event);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
}

void takeDownToolTip()
{
    // Qt's tool tip is one top-level label; deleting it ends the tip at once.
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->objectName() == QLatin1String("qtooltip_label"))
            delete widget;
    }
}

} // namespace Brennvik::Test
