#include "SearchField.h"

#include <QDialog>
#include <QEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QShortcut>

#include <algorithm>
#include <utility>

namespace Brennvik {

namespace {

// Runs the find for Enter in the field, before QLineEdit passes the key on
// to the dialog, which would click its default button ("Update").
class EnterFindsNext : public QObject
{
public:
    EnterFindsNext(QLineEdit& field, std::function<void()> findNext)
        : QObject(&field)
        , m_findNext(std::move(findNext))
    {
        field.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress || !isEnter(*static_cast<QKeyEvent*>(event)))
            return QObject::eventFilter(watched, event);
        event->accept();
        // The find may end in anything the host does; nothing of this filter
        // is used after it.
        m_findNext();
        return true;
    }

private:
    static bool isEnter(const QKeyEvent& event)
    {
        const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
        return modifiers == Qt::NoModifier && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter);
    }

    std::function<void()> m_findNext;
};

// Keeps the field's minimum width at that of a typical value in the field's
// own font, also when the font changes (a host or a style may set another).
class FitsTypicalValue : public QObject
{
public:
    explicit FitsTypicalValue(QLineEdit& field)
        : QObject(&field)
        , m_field(field)
    {
        field.installEventFilter(this);
        fit();
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::FontChange)
            fit();
        return QObject::eventFilter(watched, event);
    }

private:
    void fit()
    {
        // The text, and about a character either side for the frame and margins.
        const QFontMetrics metrics = m_field.fontMetrics();
        const int width
            = metrics.horizontalAdvance(QStringLiteral("0x0000000000000000")) + 2 * metrics.averageCharWidth();
        m_field.setMinimumWidth(std::max(width, m_field.minimumSizeHint().width()));
    }

    QLineEdit& m_field;
};

} // namespace

void fitSearchField(QLineEdit& field)
{
    new FitsTypicalValue(field);
}

void installSearchKeys(QDialog& dialog, QLineEdit& field, std::function<void()> findNext)
{
    new EnterFindsNext(field, findNext);

    auto* findNextKey = new QShortcut(QKeySequence(Qt::Key_F3), &dialog);
    QObject::connect(findNextKey, &QShortcut::activated, &dialog, std::move(findNext));

    auto* findKey = new QShortcut(QKeySequence::Find, &dialog);
    QLineEdit* const searchField = &field;
    QObject::connect(findKey, &QShortcut::activated, searchField, [searchField] {
        searchField->setFocus(Qt::ShortcutFocusReason);
        searchField->selectAll();
    });
}

} // namespace Brennvik
