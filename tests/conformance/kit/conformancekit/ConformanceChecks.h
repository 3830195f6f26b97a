#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace Brennvik::Conformance {

class ConformanceHost;

/// The outcome of one check.
struct CheckResult
{
    /// The check's name, e.g. "sync/visibility".
    QString name;
    /// One message per broken expectation, saying what was seen, what was
    /// expected and why the dialogs need it. Empty when the check passed.
    QStringList failures;
    /// Why the check could not run with this host; empty when it ran.
    QString skipped;

    bool passed() const { return failures.isEmpty(); }
};

/// One check: its name and what it verifies.
struct CheckInfo
{
    QString name;
    QString description;
};

/// Every check, in the order runChecks runs them.
QVector<CheckInfo> checkList();

/// Runs the check named \a name against \a host. Needs a QApplication.
/// An unknown name gives one failure.
CheckResult runCheck(ConformanceHost& host, const QString& name);

/// Runs every check against \a host. Needs a QApplication.
QVector<CheckResult> runChecks(ConformanceHost& host);

} // namespace Brennvik::Conformance
