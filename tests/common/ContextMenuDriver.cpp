#include "ContextMenuDriver.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QTimer>

namespace Brennvik::Test {

namespace {

void chooseOrClose(QMenu* menu, const QString& entryToTrigger, ContextMenuVisit& visit)
{
    QAction* wanted = nullptr;
    for (QAction* action : menu->actions()) {
        if (action->isSeparator())
            continue;
        visit.entries << action->text();
        if (!action->isEnabled())
            visit.disabledEntries << action->text();
        if (!wanted && !entryToTrigger.isEmpty() && action->text() == entryToTrigger)
            wanted = action;
    }
    if (wanted && wanted->isEnabled()) {
        visit.triggered = true;
        menu->setActiveAction(wanted);
        QTest::keyClick(menu, Qt::Key_Return);
    } else {
        QTest::keyClick(menu, Qt::Key_Escape);
    }
}

} // namespace

ContextMenuVisit rightClick(QAbstractItemView* view, const QPoint& viewportPos, const QString& entryToTrigger,
                            const std::function<void()>& whileOpen)
{
    ContextMenuVisit visit;
    bool timerRan = false;

    // Started before the click: the menu runs its own event loop, in which
    // this timer fires while the menu is open.
    QTimer::singleShot(0, [&]() {
        timerRan = true;
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            visit.opened = true;
            if (whileOpen)
                whileOpen();
            chooseOrClose(menu, entryToTrigger, visit);
        }
    });

    QWidget* viewport = view->viewport();
    QContextMenuEvent event(QContextMenuEvent::Mouse, viewportPos, viewport->mapToGlobal(viewportPos));
    event.setAccepted(false);
    QApplication::sendEvent(viewport, &event);
    visit.accepted = event.isAccepted();

    // Without a menu the timer fires only now.
    if (!timerRan)
        (void)QTest::qWaitFor([&]() { return timerRan; }, 2000);
    return visit;
}

} // namespace Brennvik::Test
