#include <hostcontract/BKLabel.h>

#include <QColor>
#include <QCoreApplication>
#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>

namespace Brennvik {

namespace {

// The status bar on the left edge and the gap between it and the text.
constexpr int BarWidth = 3;
constexpr int BarGap = 3;
constexpr int BarRoom = BarWidth + BarGap;

// The tool tip the label set itself, so that a tool tip of the caller's is
// never replaced or cleared.
constexpr char AutoToolTipProperty[] = "bkAutoToolTip";

// Posted to itself after geometry or font changes, so that the elision is
// checked once per round of changes rather than once per change.
QEvent::Type refreshToolTipEventType()
{
    static const QEvent::Type type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

// Only a single line of plain text is elided; rich text, wrapped text and
// mnemonics are left to QLabel.
bool elidesText(const BKLabel* label)
{
    const QString text = label->text();
    if (text.isEmpty() || label->wordWrap() || label->buddy() || text.contains(QLatin1Char('\n')))
        return false;
    switch (label->textFormat()) {
    case Qt::PlainText:
        return true;
    case Qt::AutoText:
        return !Qt::mightBeRichText(text);
    default:
        return false;
    }
}

// Where QLabel lays out its text.
QRect textRect(const BKLabel* label)
{
    QRect rect = label->contentsRect();
    const int margin = label->margin();
    rect.adjust(margin, margin, -margin, -margin);
    const int indent = label->indent();
    if (indent > 0) {
        const Qt::Alignment align = QStyle::visualAlignment(label->layoutDirection(), label->alignment());
        if (align & Qt::AlignLeft)
            rect.setLeft(rect.left() + indent);
        else if (align & Qt::AlignRight)
            rect.setRight(rect.right() - indent);
    }
    return rect;
}

bool isElided(const BKLabel* label)
{
    return elidesText(label) && label->fontMetrics().horizontalAdvance(label->text()) > textRect(label).width();
}

void refreshToolTip(BKLabel* label)
{
    const QString autoToolTip = label->property(AutoToolTipProperty).toString();
    const QString toolTip = label->toolTip();
    if (!toolTip.isEmpty() && toolTip != autoToolTip)
        return;

    if (isElided(label)) {
        if (toolTip != label->text()) {
            label->setToolTip(label->text());
            label->setProperty(AutoToolTipProperty, label->text());
        }
    } else if (!autoToolTip.isEmpty()) {
        label->setToolTip(QString());
        label->setProperty(AutoToolTipProperty, QVariant());
    }
}

} // namespace

BKLabel::BKLabel(QWidget* parent)
    : QLabel(parent)
{
    // The text starts right of the status bar.
    setContentsMargins(BarRoom, 0, 0, 0);
}

BKLabel::~BKLabel() = default;

QWidget* BKLabel::getStatusWidget() const
{
    return const_cast<BKLabel*>(this);
}

QSize BKLabel::sizeHint() const
{
    // QLabel counts the contents margins, which hold the bar; a form that
    // narrowed them still gets room for the bar.
    QSize hint = QLabel::sizeHint();
    hint.rwidth() += qMax(0, BarRoom - contentsMargins().left());
    return hint;
}

QSize BKLabel::minimumSizeHint() const
{
    QSize hint = QLabel::minimumSizeHint();
    hint.rwidth() += qMax(0, BarRoom - contentsMargins().left());
    return hint;
}

void BKLabel::paintEvent(QPaintEvent* event)
{
    if (isElided(this)) {
        QPainter painter(this);
        drawFrame(&painter);
        const QRect rect = textRect(this);
        const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, rect.width());
        style()->drawItemText(&painter, rect, QStyle::visualAlignment(layoutDirection(), alignment()), palette(),
                              isEnabled(), shown, foregroundRole());
    } else {
        QLabel::paintEvent(event);
    }

    const QColor colour(statusColorName(getBkStatus()));
    if (colour.isValid()) {
        QPainter painter(this);
        painter.fillRect(QRect(0, 0, BarWidth, height()), colour);
    }
}

bool BKLabel::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::ToolTip:
        // The size may have changed since the mouse entered.
        refreshToolTip(this);
        break;
    case QEvent::Resize:
    case QEvent::FontChange:
    case QEvent::ContentsRectChange:
    case QEvent::StyleChange:
        QCoreApplication::removePostedEvents(this, refreshToolTipEventType());
        QCoreApplication::postEvent(this, new QEvent(refreshToolTipEventType()));
        break;
    default:
        break;
    }
    return QLabel::event(event);
}

void BKLabel::customEvent(QEvent* event)
{
    if (event->type() == refreshToolTipEventType()) {
        refreshToolTip(this);
        return;
    }
    QLabel::customEvent(event);
}

void BKLabel::enterEvent(BKEnterEvent* event)
{
    // QLabel::setText does not tell the label's subclass: the text may have
    // changed since the last check.
    refreshToolTip(this);
    QLabel::enterEvent(event);
}

} // namespace Brennvik
