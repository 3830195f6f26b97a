#include "KeepOpenOnEscape.h"

#include <QDialog>
#include <QEvent>
#include <QKeyEvent>
#include <QKeySequence>

namespace Brennvik {

namespace {

// Takes the Escape presses that reach the dialog, where QDialog would reject:
// a widget inside that uses Escape itself (an item editor) accepts it first.
class EscapeFilter : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Cancel)) {
            event->accept();
            return true;
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

void keepOpenOnEscape(QDialog& dialog)
{
    dialog.installEventFilter(new EscapeFilter(&dialog));
}

} // namespace Brennvik
