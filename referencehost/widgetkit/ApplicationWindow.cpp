#include <hostcontract/ApplicationWindow.h>

#include <referencehost/model/HostCallLog.h>

#include <QGuiApplication>
#include <QPointer>
#include <QWindow>

namespace Brennvik {

namespace {

// Forgets the window by itself when the window is destroyed.
QPointer<QWindow>& registeredWindow()
{
    static QPointer<QWindow> window;
    return window;
}

} // namespace

QWindow* getWindow()
{
    HostCallLog::note("getWindow");
    if (QWindow* window = registeredWindow())
        return window;
    if (!qGuiApp)
        return nullptr;
    if (QWindow* active = QGuiApplication::focusWindow())
        return active;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    // A shown window's screen is the one that counts; a hidden one only when
    // nothing is shown.
    for (QWindow* window : windows) {
        if (window->isVisible())
            return window;
    }
    return windows.isEmpty() ? nullptr : windows.first();
}

double getDevicePixelRatio(QWindow* window)
{
    HostCallLog::note("getDevicePixelRatio");
    if (window)
        return window->devicePixelRatio();
    return qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
}

void setApplicationWindow(QWindow* window)
{
    registeredWindow() = window;
}

} // namespace Brennvik
