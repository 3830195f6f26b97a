#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace Brennvik::Test {

/// What the application's progress window ("startupProgress") shows while a
/// model is made or loaded, watched from the events it gets for as long as
/// the watch lives: its text when shown, and every bar value painted.
class StartupProgressWatch : public QObject
{
public:
    StartupProgressWatch();
    ~StartupProgressWatch() override;

    QString shownText;
    QList<int> paintedValues;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace Brennvik::Test
