#include "NoMatchMark.h"

#include <QColor>
#include <QCoreApplication>
#include <QLineEdit>

namespace Brennvik {

namespace {

// The field's background moved a third of the way to red: pink on a light
// theme, dark red on a dark one, the text readable on either.
QColor tinted(const QColor& base)
{
    const auto towardsRed = [](int channel, int red) { return channel + (red - channel) / 3; };
    return QColor(towardsRed(base.red(), 255), towardsRed(base.green(), 0), towardsRed(base.blue(), 0));
}

} // namespace

NoMatchMark::NoMatchMark(QLineEdit& field)
    : QObject(&field)
    , m_field(field)
    , m_shown(false)
    , m_hadOwnPalette(false)
{
    connect(&field, &QLineEdit::textChanged, this, &NoMatchMark::clear);
}

void NoMatchMark::show()
{
    if (m_shown)
        return;
    m_shown = true;
    m_hadOwnPalette = m_field.testAttribute(Qt::WA_SetPalette);
    m_palette = m_field.palette();
    m_toolTip = m_field.toolTip();

    QPalette marked = m_palette;
    marked.setColor(QPalette::Base, tinted(m_palette.color(QPalette::Base)));
    m_field.setPalette(marked);
    // Translated in the form's context, as the dialog's other run-time texts.
    m_field.setToolTip(
        QCoreApplication::translate("DisplayModelDialogClass", "no further match below the current row"));
}

void NoMatchMark::clear()
{
    if (!m_shown)
        return;
    m_shown = false;
    m_field.setPalette(m_hadOwnPalette ? m_palette : QPalette());
    m_field.setToolTip(m_toolTip);
}

} // namespace Brennvik
