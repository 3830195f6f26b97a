#pragma once

#include <QPointer>
#include <QStringList>
#include <QtGlobal>

#include <vector>

class QAbstractItemModelTester;
class QAbstractItemView;

namespace Brennvik::Test {

// What the model testers report (category qt.modeltest), and every other
// warning, so that a step that provoked one can be named.
extern QStringList g_modelTestFailures;
extern QStringList g_otherWarnings;
extern QtMessageHandler g_previousHandler;
extern bool g_trace;
extern bool g_quiet; // records without printing

/// Records what the testers and Qt report, then hands it on to the previous handler.
void recordingHandler(QtMsgType type, const QMessageLogContext& context, const QString& message);

// Attaches a tester to a view's model. Testers must go before their models:
// a model that is destroyed resets itself first, and a tester would then
// look into a view that is half gone.
using Testers = std::vector<QPointer<QAbstractItemModelTester>>;

void watch(QAbstractItemView* view, Testers& testers);
void unwatch(Testers& testers);

} // namespace Brennvik::Test
