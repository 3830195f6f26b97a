#pragma once

#include "HostExport.h"

class QWindow;

namespace Brennvik {

/// The application's window whose pixel ratio counts: the one registered
/// with setApplicationWindow, else the active window, else the first
/// top-level window; null when there is none.
BRENNVIK_HOST_EXPORT QWindow* getWindow();

/// The device pixel ratio of \a window; the application's ratio for null.
BRENNVIK_HOST_EXPORT double getDevicePixelRatio(QWindow* window);

/// Registers the main window of the application (null to forget it).
BRENNVIK_HOST_EXPORT void setApplicationWindow(QWindow* window);

} // namespace Brennvik
