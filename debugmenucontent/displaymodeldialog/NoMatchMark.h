#pragma once

#include <QObject>
#include <QPalette>
#include <QString>

class QLineEdit;

namespace Brennvik {

/// Marks a search field whose last find found nothing further: a reddish
/// background and a tool tip that says so. Not a message box, which would
/// stop users stepping through the matches. The mark goes when the field's
/// text changes, or with clear() at the next find that succeeds.
class NoMatchMark : public QObject
{
public:
    /// Lives as a child of \a field.
    explicit NoMatchMark(QLineEdit& field);

    void show();
    void clear();

private:
    QLineEdit& m_field;
    bool m_shown;
    // What the mark replaced, restored as it was: a palette of the field's
    // own, or none (the inherited one).
    bool m_hadOwnPalette;
    QPalette m_palette;
    QString m_toolTip;
};

} // namespace Brennvik
