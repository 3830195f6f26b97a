#pragma once

#include <QCursor>
#include <QGuiApplication>

namespace Brennvik {

/// Shows the wait cursor over the whole application while it lives, for work
/// through the host's model that keeps the user interface busy (a million
/// items take seconds). Held on the stack of the work, not by a dialog, so
/// that the cursor comes back however the work ends, even when the host's
/// events take the model or the dialog away meanwhile. Nested guards stack.
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor)); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace Brennvik
