#include "RandomModelMessages.h"

#include <QAbstractItemModelTester>
#include <QAbstractItemView>

namespace Brennvik::Test {

QStringList g_modelTestFailures;
QStringList g_otherWarnings;
QtMessageHandler g_previousHandler = nullptr;
bool g_trace = false;
bool g_quiet = false;

void recordingHandler(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    const bool fromTester = context.category && qstrcmp(context.category, "qt.modeltest") == 0;
    // The offscreen platform warns at every menu that it cannot grab the keyboard.
    if (!fromTester && message.startsWith(QLatin1String("This plugin does not support")))
        return;
    if (fromTester && type != QtDebugMsg && type != QtInfoMsg) {
        g_modelTestFailures << message;
    } else if (type == QtWarningMsg || type == QtCriticalMsg) {
        g_otherWarnings << message;
    }
    // The context menu writes a debug line per opening; thousands of them only hide what matters.
    if ((type == QtDebugMsg && !g_trace) || g_quiet)
        return;
    if (g_previousHandler)
        g_previousHandler(type, context, message);
}

void watch(QAbstractItemView* view, Testers& testers)
{
    if (!view)
        return;
    testers.emplace_back(
        new QAbstractItemModelTester(view->model(), QAbstractItemModelTester::FailureReportingMode::Warning));
}

void unwatch(Testers& testers)
{
    for (const auto& tester : testers)
        delete tester.data();
    testers.clear();
}

} // namespace Brennvik::Test
