#pragma once

class QString;
class QWidget;

namespace Brennvik::Test {

/// Shows \a window at the screen's top left corner, where tests expect it, and
/// waits until it is exposed; false when it never is.
bool showAtOrigin(QWidget& window);

/// Shows \a window and makes it the active window, as shortcuts need; false
/// when it never becomes active.
bool showActive(QWidget& window);

/// Gives the child of \a window named \a objectName the keyboard focus, as a
/// click would; the child when it has the focus then, else null.
QWidget* focusChild(QWidget& window, const QString& objectName);

} // namespace Brennvik::Test
