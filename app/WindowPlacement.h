#pragma once

#include <QRect>
#include <QSize>

class QSettings;
class QWidget;

namespace Brennvik {

/// \a frame moved, and shrunk where it must be, to lie inside \a available.
QRect fittedInto(const QRect& frame, const QRect& available);

/// The frame of a window of \a size that opens beside the main window's
/// \a mainFrame, top-aligned with it, inside \a available: to its right, else
/// to its left, else narrowed (not below \a minimumWidth) into the wider of
/// the two gaps. Without room for that it lies against the screen's edge on
/// the side of the wider gap, covering as little of the main window as it can;
/// with no gap at all, on the left, over the tree rather than the 3D view.
QRect besideMainWindow(const QRect& mainFrame, const QSize& size, int minimumWidth, const QRect& available);

/// A first size for the main window on \a available: at most 1280 x 820, and
/// on a smaller screen narrower (not below 400), so that the display model
/// dialog fits beside it.
QRect firstMainWindowFrame(const QRect& available);

/// Where the reference application's windows open: on the screen's available
/// area, dialogs beside the main window, and, with settings, where the user
/// left them in the last run (keyed by the window's object name).
class WindowPlacement
{
public:
    /// \a settings is not owned and may be null: nothing is then remembered.
    explicit WindowPlacement(QSettings* settings = nullptr);

    void setSettings(QSettings* settings);

    /// Gives \a mainWindow its remembered geometry or a first one that fits.
    void placeMainWindow(QWidget* mainWindow) const;
    /// Gives \a window its remembered geometry or a place beside \a mainWindow.
    void placeBeside(QWidget* window, const QWidget* mainWindow) const;
    /// Keeps the geometry of \a window for the next run.
    void remember(const QWidget* window) const;

private:
    bool restore(QWidget* window) const;

    QSettings* m_settings;
};

} // namespace Brennvik
