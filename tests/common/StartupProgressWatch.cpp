#include "StartupProgressWatch.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QProgressBar>
#include <QWidget>

namespace Brennvik::Test {

StartupProgressWatch::StartupProgressWatch()
{
    qApp->installEventFilter(this);
}

StartupProgressWatch::~StartupProgressWatch()
{
    qApp->removeEventFilter(this);
}

bool StartupProgressWatch::eventFilter(QObject* watched, QEvent* event)
{
    auto* widget = qobject_cast<QWidget*>(watched);
    QWidget* window = widget ? widget->window() : nullptr;
    if (!window || window->objectName() != QLatin1String("startupProgress"))
        return false;
    if (event->type() == QEvent::Show && widget == window) {
        if (const auto* label = window->findChild<QLabel*>())
            shownText = label->text();
    }
    if (event->type() == QEvent::Paint) {
        if (const auto* bar = qobject_cast<QProgressBar*>(widget))
            paintedValues << bar->value();
    }
    return false;
}

} // namespace Brennvik::Test
