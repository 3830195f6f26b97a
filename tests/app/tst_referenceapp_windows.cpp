// The reference application's windows as a user handles them: closing and
// quitting, the menu shortcuts, and where the windows open on the screen.
#include <ReferenceMainWindow.h>

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
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

QTEST_MAIN(tst_ReferenceAppWindows)
#include "tst_referenceapp_windows.moc"
