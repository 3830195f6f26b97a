#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

namespace Brennvik {
class DisplayItemInterface;
}

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

/// Walks the display item tree below \a root (the host's own model, say)
/// through getChildren() and reports every child that breaks it: an empty
/// reference, or an item that lists itself or one of its ancestors, which the
/// walk does not follow. Any depth is safe. Empty for a sound tree or an empty
/// root; at most the first 20 messages.
QStringList checkDisplayTree(const std::shared_ptr<DisplayItemInterface>& root);

} // namespace Brennvik::Conformance
