#include "WindowPlacement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWidget>

#include <algorithm>

namespace Brennvik {

namespace {

// The room a dialog needs beside the main window on a small screen: the
// display model dialog at its narrowest, with its frame.
constexpr int DialogRoom = 960;
constexpr int NarrowestMainWindow = 400;
const QSize LargestMainWindow(1280, 820);

QString geometryKey(const QWidget* window)
{
    return QStringLiteral("windows/%1/geometry").arg(window->objectName());
}

QRect availableGeometryFor(const QWidget* window)
{
    const QScreen* screen = window->screen();
    return screen ? screen->availableGeometry() : QRect();
}

// What a window manager commonly adds around a window: a title bar and thin
// borders. Used while no window has been decorated yet.
const QSize TypicalDecoration(8, 32);

// The size the window manager adds around \a window's contents; before a
// window is first shown, that of \a shown, which the manager decorates alike.
QSize decorationSize(const QWidget* window, const QWidget* shown)
{
    const QWidget* decorated = window->isVisible() || !shown ? window : shown;
    const QSize decoration = decorated->frameGeometry().size() - decorated->size();
    if (decoration.isEmpty() && QGuiApplication::platformName() != QLatin1String("offscreen"))
        return TypicalDecoration;
    return decoration;
}

// Sets the frame \a frame on \a window: move() places the frame, resize() sizes the contents.
void setFrame(QWidget* window, const QRect& frame, const QSize& decoration)
{
    window->resize((frame.size() - decoration).expandedTo(QSize(1, 1)));
    window->move(frame.topLeft());
}

} // namespace

QRect fittedInto(const QRect& frame, const QRect& available)
{
    if (!available.isValid())
        return frame;
    QRect fitted(frame.topLeft(), frame.size().boundedTo(available.size()));
    fitted.moveLeft(std::clamp(fitted.left(), available.left(), available.right() - fitted.width() + 1));
    fitted.moveTop(std::clamp(fitted.top(), available.top(), available.bottom() - fitted.height() + 1));
    return fitted;
}

QRect besideMainWindow(const QRect& mainFrame, const QSize& size, int minimumWidth, const QRect& available)
{
    const int height = std::min(size.height(), available.height());
    const int rightGap = available.right() - mainFrame.right();
    const int leftGap = mainFrame.left() - available.left();
    QRect frame;
    if (rightGap >= size.width())
        frame = QRect(mainFrame.right() + 1, mainFrame.top(), size.width(), height);
    else if (leftGap >= size.width())
        frame = QRect(mainFrame.left() - size.width(), mainFrame.top(), size.width(), height);
    else if (std::max(rightGap, leftGap) >= minimumWidth && rightGap >= leftGap)
        frame = QRect(mainFrame.right() + 1, mainFrame.top(), rightGap, height);
    else if (std::max(rightGap, leftGap) >= minimumWidth)
        frame = QRect(available.left(), mainFrame.top(), leftGap, height);
    else if (rightGap > leftGap)
        frame = QRect(available.right() - size.width() + 1, mainFrame.top(), size.width(), height);
    else
        frame = QRect(available.left(), mainFrame.top(), size.width(), height);
    return fittedInto(frame, available);
}

QRect firstMainWindowFrame(const QRect& available)
{
    const int width = std::clamp(available.width() - DialogRoom, std::min(NarrowestMainWindow, available.width()),
                                 LargestMainWindow.width());
    const QRect frame(available.topLeft(), QSize(width, LargestMainWindow.height()));
    return fittedInto(frame, available);
}

WindowPlacement::WindowPlacement(QSettings* settings)
    : m_settings(settings)
{
}

void WindowPlacement::setSettings(QSettings* settings)
{
    m_settings = settings;
}

void WindowPlacement::placeMainWindow(QWidget* mainWindow) const
{
    if (!restore(mainWindow))
        setFrame(mainWindow, firstMainWindowFrame(availableGeometryFor(mainWindow)),
                 decorationSize(mainWindow, nullptr));
}

void WindowPlacement::placeBeside(QWidget* window, const QWidget* mainWindow) const
{
    if (restore(window))
        return;
    const QSize decoration = decorationSize(window, mainWindow);
    const QRect frame
        = besideMainWindow(mainWindow->frameGeometry(), window->size() + decoration,
                           window->minimumSizeHint().width() + decoration.width(), availableGeometryFor(mainWindow));
    setFrame(window, frame, decoration);
}

void WindowPlacement::remember(const QWidget* window) const
{
    if (m_settings && !window->objectName().isEmpty())
        m_settings->setValue(geometryKey(window), window->saveGeometry());
}

// The remembered geometry, on the screen as it is now: a screen may have
// shrunk or gone since.
bool WindowPlacement::restore(QWidget* window) const
{
    if (!m_settings || window->objectName().isEmpty())
        return false;
    const QByteArray geometry = m_settings->value(geometryKey(window)).toByteArray();
    if (geometry.isEmpty() || !window->restoreGeometry(geometry))
        return false;
    const QSize decoration = window->frameGeometry().size() - window->size();
    const QRect frame(window->pos(), window->size() + decoration);
    const QRect fitted = fittedInto(frame, availableGeometryFor(window));
    if (fitted != frame)
        setFrame(window, fitted, decoration);
    return true;
}

} // namespace Brennvik
