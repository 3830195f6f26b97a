#include <hostcontract/ApplicationWindow.h>

#include <QGuiApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include <memory>

using namespace Brennvik;

class tst_ApplicationWindow : public QObject
{
    Q_OBJECT

private slots:
    void noWindowAtAll();
    void fallsBackToAShownWindow();
    void registeredWindowWins();
    void registeredWindowIsForgottenWhenDestroyed();
    void devicePixelRatio();
};

void tst_ApplicationWindow::noWindowAtAll()
{
    QVERIFY(QGuiApplication::topLevelWindows().isEmpty());
    QCOMPARE(getWindow(), static_cast<QWindow*>(nullptr));
}

void tst_ApplicationWindow::fallsBackToAShownWindow()
{
    QWidget hidden;
    hidden.winId(); // a window that exists but is not shown
    QWidget shown;
    shown.show();
    QVERIFY(QTest::qWaitForWindowExposed(&shown));

    QWindow* window = getWindow();
    QVERIFY(window);
    QVERIFY(window == QGuiApplication::focusWindow() || window == shown.windowHandle());
    QVERIFY(window != hidden.windowHandle());

    shown.activateWindow();
    if (QTest::qWaitForWindowActive(&shown))
        QCOMPARE(getWindow(), shown.windowHandle());
}

void tst_ApplicationWindow::registeredWindowWins()
{
    QWidget main;
    main.winId();
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));

    setApplicationWindow(main.windowHandle());
    QCOMPARE(getWindow(), main.windowHandle());
    setApplicationWindow(nullptr);
    QVERIFY(getWindow() != main.windowHandle());
}

void tst_ApplicationWindow::registeredWindowIsForgottenWhenDestroyed()
{
    auto window = std::make_unique<QWindow>();
    setApplicationWindow(window.get());
    QCOMPARE(getWindow(), window.get());
    window.reset();
    QCOMPARE(getWindow(), static_cast<QWindow*>(nullptr));
}

void tst_ApplicationWindow::devicePixelRatio()
{
    QCOMPARE(getDevicePixelRatio(nullptr), qApp->devicePixelRatio());
    QWidget widget;
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    QCOMPARE(getDevicePixelRatio(widget.windowHandle()), widget.windowHandle()->devicePixelRatio());
    QVERIFY(getDevicePixelRatio(widget.windowHandle()) > 0.0);
}

QTEST_MAIN(tst_ApplicationWindow)
#include "tst_applicationwindow.moc"
