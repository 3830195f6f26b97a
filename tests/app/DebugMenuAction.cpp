#include "DebugMenuAction.h"

#include "ReferenceMainWindow.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

namespace Brennvik {

QAction* debugMenuAction(ReferenceMainWindow& window, const char* objectName)
{
    auto* debugMenu = window.menuBar()->findChild<QMenu*>(QStringLiteral("debugMenu"));
    return debugMenu ? debugMenu->findChild<QAction*>(QString::fromLatin1(objectName)) : nullptr;
}

} // namespace Brennvik
