#include <hostcontract/BKWidgetInterface.h>

#include <hostcontract/BKLabel.h>

#include <QColor>
#include <QPalette>
#include <QStyle>
#include <QVariant>
#include <QWidget>

namespace Brennvik {

namespace {

// Dynamic properties on the status widget. "bkStatus" lets style sheets
// select on the status ([bkStatus="4"]); the other two remember the text
// colours the widget had before the kit tinted them, to restore them.
constexpr char StatusProperty[] = "bkStatus";
constexpr char NaturalActiveProperty[] = "bkNaturalActiveText";
constexpr char NaturalInactiveProperty[] = "bkNaturalInactiveText";

void tintText(QWidget* widget, const QColor& colour)
{
    const QPalette::ColorRole role = widget->foregroundRole();
    QPalette palette = widget->palette();
    const bool tinted = widget->property(NaturalActiveProperty).isValid();

    if (colour.isValid()) {
        if (!tinted) {
            widget->setProperty(NaturalActiveProperty, palette.color(QPalette::Active, role));
            widget->setProperty(NaturalInactiveProperty, palette.color(QPalette::Inactive, role));
        }
        // The disabled group keeps its colour: a disabled widget looks disabled
        // whatever its status.
        palette.setColor(QPalette::Active, role, colour);
        palette.setColor(QPalette::Inactive, role, colour);
    } else {
        if (!tinted)
            return;
        palette.setColor(QPalette::Active, role, widget->property(NaturalActiveProperty).value<QColor>());
        palette.setColor(QPalette::Inactive, role, widget->property(NaturalInactiveProperty).value<QColor>());
        widget->setProperty(NaturalActiveProperty, QVariant());
        widget->setProperty(NaturalInactiveProperty, QVariant());
    }
    widget->setPalette(palette);
}

} // namespace

BKWidgetInterface::BKWidgetInterface()
    : m_status(BKWidgetStatus::Normal)
{
}

BKWidgetInterface::~BKWidgetInterface() = default;

void BKWidgetInterface::updateWidget()
{
    QWidget* widget = getStatusWidget();
    if (!widget)
        return;

    widget->setProperty(StatusProperty, static_cast<int>(m_status));
    // A label marks its status with the bar it paints itself; the other
    // widgets show it in the colour of their text.
    if (!qobject_cast<BKLabel*>(widget))
        tintText(widget, QColor(statusColorName(m_status)));

    // Style sheets that select on the status property re-evaluate only on polish.
    QStyle* style = widget->style();
    style->unpolish(widget);
    style->polish(widget);
    widget->update();
}

void BKWidgetInterface::setBkStatus(QFlags<BKWidgetStatus::Status> status)
{
    if (status == m_status)
        return;
    m_status = status;
    onStatusChanged();
    updateWidget();
}

void BKWidgetInterface::setBkStatus(BKWidgetStatus::Status status, bool on)
{
    QFlags<BKWidgetStatus::Status> flags = m_status;
    flags.setFlag(status, on);
    setBkStatus(flags);
}

void BKWidgetInterface::onStatusChanged()
{
}

bool BKWidgetInterface::getBkStatus(BKWidgetStatus::Status status) const
{
    // testFlag(Normal) holds only when no other flag is set.
    return m_status.testFlag(status);
}

QFlags<BKWidgetStatus::Status> BKWidgetInterface::getBkStatus()
{
    return m_status;
}

const char* BKWidgetInterface::statusColorName(QFlags<BKWidgetStatus::Status> status)
{
    // The most serious status wins when several are set.
    if (status.testFlag(BKWidgetStatus::Error))
        return "#d32f2f";
    if (status.testFlag(BKWidgetStatus::Warning))
        return "#e08a00";
    if (status.testFlag(BKWidgetStatus::Highlighted))
        return "#1e78d2";
    if (status.testFlag(BKWidgetStatus::Modified))
        return "#2e8b3e";
    if (status.testFlag(BKWidgetStatus::ReadOnly))
        return "#7f7f7f";
    return nullptr;
}

} // namespace Brennvik
