#include "ShownWindow.h"

#include <QTest>
#include <QWidget>

namespace Brennvik::Test {

bool showAtOrigin(QWidget& window)
{
    window.move(0, 0);
    window.show();
    return QTest::qWaitForWindowExposed(&window);
}

} // namespace Brennvik::Test
