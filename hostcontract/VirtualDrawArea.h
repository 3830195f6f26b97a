#pragma once

#include "HostExport.h"

#include <QPointer>

#include <vector>

class QWidget;

namespace Brennvik {

/// The draw area of a presenter as one whole: redraw repaints all its widgets.
class BRENNVIK_HOST_EXPORT VirtualDrawArea
{
public:
    VirtualDrawArea();
    virtual ~VirtualDrawArea();
    VirtualDrawArea(const VirtualDrawArea&) = delete;
    VirtualDrawArea& operator=(const VirtualDrawArea&) = delete;

    /// Schedules a repaint of every widget of the area that still exists;
    /// returns how many that were.
    virtual int redraw();

    /// Not owned; forgotten by itself when destroyed. Adding a widget twice keeps one.
    void addWidget(QWidget* widget);
    void removeWidget(QWidget* widget);
    /// The widgets that still exist, in the order they were added.
    std::vector<QWidget*> widgets() const;
    /// How often redraw ran.
    int redrawCount() const;

private:
    std::vector<QPointer<QWidget>> m_widgets;
    int m_redrawCount = 0;
};

} // namespace Brennvik
