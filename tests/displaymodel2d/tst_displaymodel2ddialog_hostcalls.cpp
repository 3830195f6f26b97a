#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>

#include <hostcontract/DisplayItem2D.h>

#include <referencehost/model/HostCallLog.h>
#include <referencehost/model/SceneViewModel.h>

#include "../common/Plot2DHost.h"

#include <QListWidget>
#include <QPushButton>
#include <QStringList>
#include <QTest>

#include <memory>
#include <string>

using namespace Brennvik;
using Brennvik::Test::Plot2DHost;

namespace {

// The view model's 3D side as a case sets it up before the listing runs.
enum class LabelSide {
    NoViewModel,
    NoView,
    ViewWithoutWidget,
    Complete,
};

QStringList namesOf(const HostCallLog& log)
{
    QStringList names;
    for (const std::string& call : log.calls())
        names << QString::fromStdString(call);
    return names;
}

// What every listing asks before it turns to the labels. The application
// property "MaterialGenerator" is read between the draw areas and the
// window; a property read leaves no trace, so it is not in the log.
const QStringList plotSteps{"getLeftProcessDesigner", "getDrawAreas2D", "getWindow", "getDevicePixelRatio"};

} // namespace

Q_DECLARE_METATYPE(LabelSide)

// The order in which the plot listing asks the host: the draw areas, the
// pixel ratio, then the view, its projection, its widget and only then the
// label tree, and per label its anchor and its projection.
class tst_DisplayModel2DDialogHostCalls : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void listingAsksTheHostInOrder_data();
    void listingAsksTheHostInOrder();

private:
    std::unique_ptr<Plot2DHost> m_host;
    DisplayModel2DDialog* m_dialog = nullptr;
};

void tst_DisplayModel2DDialogHostCalls::init()
{
    m_host = std::make_unique<Plot2DHost>();
    m_host->show();
}

void tst_DisplayModel2DDialogHostCalls::cleanup()
{
    delete m_dialog;
    m_dialog = nullptr;
    m_host.reset();
}

void tst_DisplayModel2DDialogHostCalls::listingAsksTheHostInOrder_data()
{
    QTest::addColumn<LabelSide>("labelSide");
    QTest::addColumn<QStringList>("expected");

    const QStringList viewSteps{"getView", "getMainWindowTransformationProvider", "getViewWidget"};
    const QStringList labelSteps{"getLabelDisplayModel", "getRootDisplayItem", "processVisible"};
    const QStringList perLabel{"getAnchorPointForDisplay", "transformWorldToPixelCoordinates"};

    QTest::newRow("no view model") << LabelSide::NoViewModel << plotSteps;
    QTest::newRow("no view") << LabelSide::NoView << plotSteps + QStringList{"getView"};
    QTest::newRow("view without widget") << LabelSide::ViewWithoutWidget << plotSteps + viewSteps;
    QTest::newRow("two labels") << LabelSide::Complete << plotSteps + viewSteps + labelSteps + perLabel + perLabel;
}

void tst_DisplayModel2DDialogHostCalls::listingAsksTheHostInOrder()
{
    QFETCH(LabelSide, labelSide);
    QFETCH(QStringList, expected);

    m_host->addPlot(QPoint(10, 10), std::make_shared<DisplayItem2D>("first plot"));
    m_host->addPlot(QPoint(200, 10), std::make_shared<DisplayItem2D>("second plot"));
    m_host->addLabel("upper", Vector<float, 3>(30.0f, -20.0f, 0.0f), std::make_shared<DisplayItem2D>("upper"));
    m_host->addLabel("lower", Vector<float, 3>(30.0f, -90.0f, 0.0f), std::make_shared<DisplayItem2D>("lower"));
    if (labelSide == LabelSide::NoView)
        m_host->viewModel()->setView(nullptr);
    if (labelSide == LabelSide::ViewWithoutWidget)
        m_host->view().setViewWidget(nullptr);

    m_dialog = new DisplayModel2DDialog(m_host->presenter(), nullptr);
    if (labelSide != LabelSide::NoViewModel)
        m_dialog->setViewModel(m_host->viewModel());

    HostCallLog log;
    m_dialog->m_updateListPB->click();

    QCOMPARE(namesOf(log), expected);
    // The log watched a real listing: both plots, and the labels when they could be placed.
    QCOMPARE(m_dialog->m_plotListWdg->count(), labelSide == LabelSide::Complete ? 4 : 2);
}

QTEST_MAIN(tst_DisplayModel2DDialogHostCalls)
#include "tst_displaymodel2ddialog_hostcalls.moc"
