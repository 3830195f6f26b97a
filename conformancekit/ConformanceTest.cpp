#include "ConformanceTest.h"

#include "ConformanceChecks.h"
#include "ConformanceHost.h"

#include <QApplication>
#include <QtTest>

#include <memory>

namespace Brennvik::Conformance {

ConformanceTest::ConformanceTest(ConformanceHost& host, QObject* parent)
    : QObject(parent)
    , m_host(host)
{
}

void ConformanceTest::initTestCase()
{
    qInfo("Conformance of %s: %d checks", m_host.hostName().c_str(), int(checkList().size()));
}

void ConformanceTest::check_data()
{
    QTest::addColumn<QString>("name");
    for (const CheckInfo& info : checkList())
        QTest::newRow(qPrintable(info.name)) << info.name;
}

void ConformanceTest::check()
{
    QFETCH(QString, name);
    const CheckResult result = runCheck(m_host, name);
    if (!result.skipped.isEmpty())
        QSKIP(qPrintable(result.skipped));
    QVERIFY2(result.passed(), qPrintable(QLatin1Char('\n') + result.failures.join(QLatin1Char('\n'))));
}

int runAll(ConformanceHost& host, int argc, char** argv)
{
    // The widget kit check needs a QApplication; a host's test program may
    // have made one already.
    std::unique_ptr<QApplication> application;
    static int applicationArgc = 1;
    static char applicationName[] = "conformance";
    static char* applicationArgv[] = {applicationName, nullptr};
    if (!QCoreApplication::instance())
        application = std::make_unique<QApplication>(applicationArgc, applicationArgv);
    ConformanceTest test(host);
    return QTest::qExec(&test, argc, argv);
}

} // namespace Brennvik::Conformance
