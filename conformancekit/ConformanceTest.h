#pragma once

#include <QObject>

namespace Brennvik::Conformance {

class ConformanceHost;

/// The checks as a Qt Test class: one data-driven test function, one row
/// per check, so that a failing row prints the check's messages.
class ConformanceTest : public QObject
{
    Q_OBJECT
public:
    /// \a host must outlive the test object.
    explicit ConformanceTest(ConformanceHost& host, QObject* parent = nullptr);

private slots:
    void initTestCase();
    void check_data();
    void check();

private:
    ConformanceHost& m_host;
};

/// Runs every check against \a host as a Qt Test run and returns what
/// QTest::qExec returns (0 when all passed). Takes the usual Qt Test
/// arguments (e.g. "check:sync/visibility" runs one row). Makes a
/// QApplication when there is none yet.
int runAll(ConformanceHost& host, int argc, char** argv);

} // namespace Brennvik::Conformance
