#pragma once

class QAction;

namespace Brennvik {

class ReferenceMainWindow;

/// The action named \a objectName in the Debug menu of \a window; null when there is none.
QAction* debugMenuAction(ReferenceMainWindow& window, const char* objectName);

} // namespace Brennvik
