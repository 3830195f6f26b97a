#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>

#include <hostcontract/ApplicationWindow.h>
#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>

#include <referencehost/model/SceneViewModel.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include "../common/Plot2DHost.h"

#include <QApplication>
#include <QListWidget>
#include <QTest>

#include <memory>

using namespace Brennvik;
using Brennvik::Test::Plot2DHost;

// The plot listing on a screen whose device pixel ratio is 1.5: positions
// are logical, rows show device pixels.
class tst_DisplayModel2DDialogHiDpi : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void devicePixelRatioIsOneAndAHalf();
    void plotRowsRoundHalvesUpward_data();
    void plotRowsRoundHalvesUpward();
    void labelRowsScaleTheViewOriginOnly();

private:
    QStringList listTexts() const;

    std::unique_ptr<Plot2DHost> m_host;
    DisplayModel2DDialog* m_dialog = nullptr;
};

void tst_DisplayModel2DDialogHiDpi::init()
{
    m_host = std::make_unique<Plot2DHost>();
    m_host->show();
    setApplicationWindow(m_host->window().windowHandle());
}

void tst_DisplayModel2DDialogHiDpi::cleanup()
{
    delete m_dialog;
    m_dialog = nullptr;
    setApplicationWindow(nullptr);
    m_host.reset();
}

QStringList tst_DisplayModel2DDialogHiDpi::listTexts() const
{
    QStringList texts;
    for (int i = 0; i < m_dialog->m_plotListWdg->count(); ++i)
        texts << m_dialog->m_plotListWdg->item(i)->text();
    return texts;
}

void tst_DisplayModel2DDialogHiDpi::devicePixelRatioIsOneAndAHalf()
{
    QCOMPARE(getWindow(), m_host->window().windowHandle());
    QCOMPARE(getDevicePixelRatio(getWindow()), 1.5);
}

void tst_DisplayModel2DDialogHiDpi::plotRowsRoundHalvesUpward_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<QString>("row");

    QTest::newRow("-7.5 rounds up to -7") << QPoint(-5, 10) << "Plot at (-7, 15)";
    QTest::newRow("1.5 rounds up to 2") << QPoint(1, 3) << "Plot at (2, 5)";
    QTest::newRow("-1.5 rounds up to -1") << QPoint(-1, -3) << "Plot at (-1, -4)";
    QTest::newRow("whole numbers stay") << QPoint(1280, 72) << "Plot at (1920, 108)";
}

void tst_DisplayModel2DDialogHiDpi::plotRowsRoundHalvesUpward()
{
    QFETCH(QPoint, position);
    QFETCH(QString, row);
    BkHQWidget2D* plot = m_host->addPlot(position, std::make_shared<DisplayItem2D>("Plot"));
    QCOMPARE(plot->mapToGlobal(plot->rect().topLeft()), position);
    m_dialog = new DisplayModel2DDialog(m_host->presenter(), nullptr);
    QCOMPARE(listTexts(), QStringList{row});
}

void tst_DisplayModel2DDialogHiDpi::labelRowsScaleTheViewOriginOnly()
{
    // Origin (3, 5) logical is (4.5, 7.5) device pixels, rounded to (5, 8);
    // the projection already gives pixels and is not scaled again.
    m_host->viewWidget().move(3, 5);
    m_host->addLabel("label", Vector<float, 3>(12.9f, 3.7f, 0.0f), std::make_shared<DisplayItem2D>("Label plot"));
    m_dialog = new DisplayModel2DDialog(m_host->presenter(), nullptr);
    m_dialog->setViewModel(m_host->viewModel());
    m_dialog->show(); // lists again
    QCOMPARE(listTexts(), QStringList{"PlotLabel at (17, 4)"});
}

int main(int argc, char** argv)
{
    // Before the application exists: Qt reads the scale when it starts.
    qputenv("QT_SCALE_FACTOR", "1.5");
    QApplication application(argc, argv);
    tst_DisplayModel2DDialogHiDpi test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_displaymodel2ddialog_hidpi.moc"
