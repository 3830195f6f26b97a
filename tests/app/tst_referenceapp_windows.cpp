// The reference application's windows as a user handles them: closing and
// quitting, the menu shortcuts, and where the windows open on the screen.
#include "StartupProgressWatch.h"

#include <ModelFileLoading.h>
#include <ReferenceMainWindow.h>
#include <StartupProgress.h>
#include <WindowPlacement.h>

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/modelfile/ModelFile.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QScreen>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>

using namespace Brennvik;

using IsDialog = std::function<bool(QWidget*)>;
Q_DECLARE_METATYPE(IsDialog)

namespace {

// Every action of the menu bar's menus, submenus included.
QList<QAction*> menuActions(QMenuBar* menuBar)
{
    QList<QAction*> actions;
    QList<QMenu*> menus;
    for (QAction* action : menuBar->actions())
        if (action->menu())
            menus << action->menu();
    while (!menus.isEmpty()) {
        QMenu* menu = menus.takeFirst();
        for (QAction* action : menu->actions()) {
            if (action->menu())
                menus << action->menu();
            else if (!action->isSeparator())
                actions << action;
        }
    }
    return actions;
}

QStringList visibleWindowTitles()
{
    QStringList titles;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible())
            titles << widget->windowTitle();
    return titles;
}

// Runs the application's event loop, does \a act from inside it, and tells
// whether the application then ended by itself (Qt ends it once no window
// is left) rather than by the time limit.
bool applicationEndsAfter(const std::function<void()>& act)
{
    bool timedOut = false;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, [&timedOut]() {
        timedOut = true;
        QApplication::exit(1);
    });
    limit.start(10000);
    QTimer::singleShot(0, act);
    const int status = QApplication::exec();
    return !timedOut && status == 0;
}

} // namespace

class tst_ReferenceAppWindows : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void closingTheMainWindowClosesEveryWindow();
    void quitShortcutClosesEveryWindow();
    void debugMenuShortcutsOpenTheDialogs_data();
    void debugMenuShortcutsOpenTheDialogs();
    void menuShortcutsDoNotClash();

    void dialogBesideTheMainWindow_data();
    void dialogBesideTheMainWindow();
    void firstMainWindowLeavesRoomForADialog_data();
    void firstMainWindowLeavesRoomForADialog();
    void everyWindowOpensOnTheAvailableScreen();
    void placementIsRememberedBetweenRuns();
    void generatingAModelShowsItsProgress();
    void loadingAModelFileShowsItsProgress();

private:
    std::shared_ptr<SceneViewModel> m_viewModel;
    std::unique_ptr<ReferenceMainWindow> m_window;
};

void tst_ReferenceAppWindows::init()
{
    m_viewModel = buildSampleViewModel();
    m_window = std::make_unique<ReferenceMainWindow>(m_viewModel);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_ReferenceAppWindows::cleanup()
{
    m_window.reset();
    m_viewModel.reset();
}

void tst_ReferenceAppWindows::closingTheMainWindowClosesEveryWindow()
{
    m_window->openDisplayModelDialog();
    m_window->openCloneComparisonDialog();
    m_window->openDisplayModel2DDialog();
    QVERIFY(m_window->materialGeneratorWindow()->isVisible());
    QCOMPARE(m_window->openDialogs().size(), 4);

    // As the window's close button does it.
    QVERIFY(applicationEndsAfter([this]() { m_window->close(); }));

    QVERIFY2(visibleWindowTitles().isEmpty(), qPrintable(visibleWindowTitles().join(QLatin1String(", "))));
    QCOMPARE(m_window->openDialogs().size(), 0);
}

void tst_ReferenceAppWindows::quitShortcutClosesEveryWindow()
{
    m_window->openDisplayModelDialog();
    QApplication::setActiveWindow(m_window.get());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));

    QVERIFY(applicationEndsAfter([this]() { QTest::keyClick(m_window.get(), Qt::Key_Q, Qt::ControlModifier); }));

    QVERIFY(!m_window->isVisible());
    QVERIFY2(visibleWindowTitles().isEmpty(), qPrintable(visibleWindowTitles().join(QLatin1String(", "))));
}

void tst_ReferenceAppWindows::debugMenuShortcutsOpenTheDialogs_data()
{
    QTest::addColumn<QKeySequence>("keys");
    QTest::addColumn<IsDialog>("isDialog");
    QTest::newRow("display model") << QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_D)
                                   << IsDialog([](QWidget* w) { return dynamic_cast<DisplayModelDialog*>(w); });
    QTest::newRow("clone comparison") << QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C) << IsDialog([](QWidget* w) {
        return dynamic_cast<DebugCloneDisplayModelDialog*>(w);
    });
    QTest::newRow("2D display models") << QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P)
                                       << IsDialog([](QWidget* w) { return dynamic_cast<DisplayModel2DDialog*>(w); });
}

void tst_ReferenceAppWindows::debugMenuShortcutsOpenTheDialogs()
{
    QFETCH(QKeySequence, keys);
    QFETCH(IsDialog, isDialog);
    QApplication::setActiveWindow(m_window.get());
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    const QList<QWidget*> before = m_window->openDialogs();
    QVERIFY(std::none_of(before.cbegin(), before.cend(), isDialog));

    QTest::keySequence(m_window.get(), keys);

    const QList<QWidget*> after = m_window->openDialogs();
    QVERIFY(std::any_of(after.cbegin(), after.cend(), isDialog));
}

void tst_ReferenceAppWindows::menuShortcutsDoNotClash()
{
    QHash<QKeySequence, QString> owners;
    int withShortcut = 0;
    for (QAction* action : menuActions(m_window->menuBar())) {
        for (const QKeySequence& keys : action->shortcuts()) {
            ++withShortcut;
            QVERIFY2(
                !owners.contains(keys),
                qPrintable(QStringLiteral("%1: %2 and %3").arg(keys.toString(), owners.value(keys), action->text())));
            owners.insert(keys, action->text());
        }
    }
    // Quit and the three dialogs at least.
    QVERIFY(withShortcut >= 4);
}

void tst_ReferenceAppWindows::dialogBesideTheMainWindow_data()
{
    QTest::addColumn<QRect>("mainFrame");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("minimumWidth");
    QTest::addColumn<QRect>("expected");
    const QRect screen(0, 0, 1366, 740); // 1366 x 768 less a panel
    QTest::newRow("room on the right") << QRect(0, 0, 746, 740) << QSize(620, 792) << 300 << QRect(746, 0, 620, 740);
    QTest::newRow("room on the left only")
        << QRect(620, 20, 746, 700) << QSize(620, 500) << 300 << QRect(0, 20, 620, 500);
    QTest::newRow("narrowed into the right gap")
        << QRect(0, 0, 746, 740) << QSize(764, 600) << 500 << QRect(746, 0, 620, 600);
    QTest::newRow("narrowed into the wider left gap")
        << QRect(700, 0, 600, 740) << QSize(764, 600) << 500 << QRect(0, 0, 700, 600);
    QTest::newRow("no room: against the edge of the wider gap")
        << QRect(0, 0, 500, 740) << QSize(940, 600) << 940 << QRect(426, 0, 940, 600);
    QTest::newRow("no gap: over the tree side")
        << QRect(0, 0, 1366, 740) << QSize(764, 600) << 500 << QRect(0, 0, 764, 600);
    QTest::newRow("main window low on the screen: pulled up")
        << QRect(0, 400, 746, 300) << QSize(620, 600) << 300 << QRect(746, 140, 620, 600);
    QTest::newRow("second screen to the right")
        << QRect(1366, 0, 746, 740) << QSize(620, 500) << 300 << QRect(1366 + 746, 0, 620, 500);
}

void tst_ReferenceAppWindows::dialogBesideTheMainWindow()
{
    QFETCH(QRect, mainFrame);
    QFETCH(QSize, size);
    QFETCH(int, minimumWidth);
    QFETCH(QRect, expected);
    const QRect available = QTest::currentDataTag() == QByteArray("second screen to the right")
        ? QRect(1366, 0, 1366, 740)
        : QRect(0, 0, 1366, 740);
    QCOMPARE(besideMainWindow(mainFrame, size, minimumWidth, available), expected);
}

void tst_ReferenceAppWindows::firstMainWindowLeavesRoomForADialog_data()
{
    QTest::addColumn<QRect>("available");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("1366 x 768") << QRect(0, 0, 1366, 740) << QRect(0, 0, 406, 740);
    QTest::newRow("1920 x 1080") << QRect(0, 0, 1920, 1050) << QRect(0, 0, 960, 820);
    QTest::newRow("2560 x 1440") << QRect(0, 0, 2560, 1410) << QRect(0, 0, 1280, 820);
    QTest::newRow("800 x 600") << QRect(0, 0, 800, 600) << QRect(0, 0, 400, 600);
    QTest::newRow("narrower than the narrowest") << QRect(0, 0, 320, 240) << QRect(0, 0, 320, 240);
    QTest::newRow("panel on the left") << QRect(64, 0, 1702, 768) << QRect(64, 0, 742, 768);
}

void tst_ReferenceAppWindows::firstMainWindowLeavesRoomForADialog()
{
    QFETCH(QRect, available);
    QFETCH(QRect, expected);
    QCOMPARE(firstMainWindowFrame(available), expected);
}

void tst_ReferenceAppWindows::everyWindowOpensOnTheAvailableScreen()
{
    m_window->openDisplayModelDialog();
    m_window->openCloneComparisonDialog();
    m_window->openDisplayModel2DDialog();
    const QRect available = m_window->screen()->availableGeometry();
    const QList<QWidget*> windows = QList<QWidget*>{m_window.get()} + m_window->openDialogs();
    QCOMPARE(windows.size(), 5);
    for (const QWidget* window : windows) {
        // Of a window larger at its smallest than the screen, only its start is checked.
        QRect frame = window->frameGeometry();
        const QSize smallest = window->minimumSize() + (frame.size() - window->size());
        if (smallest.width() > available.width() && frame.left() >= available.left())
            frame = QRect(available.left(), frame.top(), available.width(), frame.height());
        if (smallest.height() > available.height() && frame.top() >= available.top())
            frame = QRect(frame.left(), available.top(), frame.width(), available.height());
        QVERIFY2(available.contains(frame),
                 qPrintable(QStringLiteral("%1 at %2,%3 %4x%5")
                                .arg(window->windowTitle())
                                .arg(window->frameGeometry().x())
                                .arg(window->frameGeometry().y())
                                .arg(window->frameGeometry().width())
                                .arg(window->frameGeometry().height())));
    }
}

void tst_ReferenceAppWindows::placementIsRememberedBetweenRuns()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString file = dir.filePath(QStringLiteral("referenceapp.ini"));
    m_window.reset();

    QRect mainGeometry;
    QRect generatorGeometry;
    {
        QSettings settings(file, QSettings::IniFormat);
        ReferenceMainWindow window(m_viewModel);
        window.setSettings(&settings);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.setGeometry(40, 30, 500, 400);
        QWidget* generator = window.materialGeneratorWindow();
        generator->setGeometry(300, 50, 450, 320);
        mainGeometry = window.geometry();
        generatorGeometry = generator->geometry();
        window.close();
    }
    QVERIFY(QFile::exists(file));

    QSettings settings(file, QSettings::IniFormat);
    ReferenceMainWindow window(m_viewModel);
    window.setSettings(&settings);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.geometry(), mainGeometry);
    QCOMPARE(window.materialGeneratorWindow()->geometry(), generatorGeometry);
}

void tst_ReferenceAppWindows::generatingAModelShowsItsProgress()
{
    m_window.reset();
    StartupProgress progress(QStringLiteral("Generating"));
    QVERIFY(!progress.isVisible());
    // What the user sees at each step, read from inside the generator's loop.
    QList<int> shown;
    bool alwaysVisible = true;
    const auto viewModel = buildSyntheticViewModel(20000, 3, [&](std::size_t done, std::size_t total) {
        QCOMPARE(total, std::size_t(20000));
        progress.report(done, total);
        alwaysVisible = alwaysVisible && progress.isVisible();
        shown << progress.progressBar()->value();
    });

    QVERIFY(viewModel);
    QVERIFY(alwaysVisible);
    QVERIFY2(shown.size() >= 50, qPrintable(QString::number(shown.size())));
    QVERIFY(std::is_sorted(shown.cbegin(), shown.cend()));
    QVERIFY(shown.first() < 10);
    QCOMPARE(shown.last(), 100);
}

void tst_ReferenceAppWindows::loadingAModelFileShowsItsProgress()
{
    m_window.reset();
    QTemporaryDir directory;
    QVERIFY(directory.isValid());
    const QString file = directory.filePath(QStringLiteral("large model.json"));
    QString saveError;
    QVERIFY2(ModelFile::save(*buildSyntheticViewModel(20000, 3), file, &saveError), qPrintable(saveError));

    Test::StartupProgressWatch watch;
    ModelFileError error;
    const auto viewModel = loadModelFileShowingProgress(QFile::encodeName(file), &error);
    QVERIFY2(viewModel, qPrintable(error.toString()));
    QCOMPARE(watch.shownText, QStringLiteral("Loading large model.json..."));
    QVERIFY2(watch.paintedValues.size() >= 20, qPrintable(QString::number(watch.paintedValues.size())));
    QVERIFY(std::is_sorted(watch.paintedValues.cbegin(), watch.paintedValues.cend()));
    QCOMPARE(watch.paintedValues.first(), 0);
    QCOMPARE(watch.paintedValues.last(), 100);
    // The window goes with the load.
    for (QWidget* window : QApplication::topLevelWidgets())
        QVERIFY(window->objectName() != QLatin1String("startupProgress"));
}

QTEST_MAIN(tst_ReferenceAppWindows)
#include "tst_referenceapp_windows.moc"
