#include "ShownWindow.h"

#include <QApplication>
#include <QString>
#include <QTest>
#include <QWidget>

namespace Brennvik::Test {

bool showAtOrigin(QWidget& window)
{
    window.move(0, 0);
    window.show();
    return QTest::qWaitForWindowExposed(&window);
}

bool showActive(QWidget& window)
{
    window.show();
    QApplication::setActiveWindow(&window);
    return QTest::qWaitForWindowActive(&window);
}

QWidget* focusChild(QWidget& window, const QString& objectName)
{
    auto* child = window.findChild<QWidget*>(objectName);
    if (!child)
        return nullptr;
    child->setFocus(Qt::MouseFocusReason);
    return QApplication::focusWidget() == child ? child : nullptr;
}

} // namespace Brennvik::Test
