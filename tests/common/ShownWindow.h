#pragma once

class QWidget;

namespace Brennvik::Test {

/// Shows \a window at the screen's top left corner, where tests expect it, and
/// waits until it is exposed; false when it never is.
bool showAtOrigin(QWidget& window);

} // namespace Brennvik::Test
