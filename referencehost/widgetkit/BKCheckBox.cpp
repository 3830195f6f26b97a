#include <hostcontract/BKCheckBox.h>

#include <QContextMenuEvent>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>

namespace Brennvik {

namespace {

// The keys with which QAbstractButton toggles a check box.
bool isToggleKey(const QKeyEvent* event)
{
    return event->key() == Qt::Key_Space || event->key() == Qt::Key_Select;
}

} // namespace

BKCheckBox::BKCheckBox(QWidget* parent)
    : QCheckBox(parent)
{
}

BKCheckBox::~BKCheckBox() = default;

QWidget* BKCheckBox::getStatusWidget() const
{
    return const_cast<BKCheckBox*>(this);
}

bool BKCheckBox::event(QEvent* event)
{
    if (getBkStatus(BKWidgetStatus::ReadOnly)) {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
            // Swallowed: passing them on would let the parent act on a click
            // the user meant for the check box.
            event->accept();
            return true;
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            if (isToggleKey(static_cast<QKeyEvent*>(event))) {
                event->accept();
                return true;
            }
            break;
        case QEvent::Shortcut:
            // The mnemonic would click the box.
            return true;
        default:
            break;
        }
    }
    return QCheckBox::event(event);
}

void BKCheckBox::mousePressEvent(QMouseEvent* event)
{
    if (getBkStatus(BKWidgetStatus::ReadOnly)) {
        event->accept();
        return;
    }
    QCheckBox::mousePressEvent(event);
}

void BKCheckBox::mouseReleaseEvent(QMouseEvent* event)
{
    if (getBkStatus(BKWidgetStatus::ReadOnly)) {
        event->accept();
        return;
    }
    QCheckBox::mouseReleaseEvent(event);
}

void BKCheckBox::contextMenuEvent(QContextMenuEvent* event)
{
    // A read-only box offers nothing; the parent's menu may open instead.
    if (getBkStatus(BKWidgetStatus::ReadOnly)) {
        event->ignore();
        return;
    }
    QCheckBox::contextMenuEvent(event);
}

} // namespace Brennvik
