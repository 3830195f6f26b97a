#include <hostcontract/BKCheckBox.h>
#include <hostcontract/BKLabel.h>
#include <hostcontract/BKListWidget.h>
#include <hostcontract/BKPushButton.h>

#include <QCoreApplication>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QImageReader>
#include <QPixmap>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Brennvik;

namespace {

// Counts the status changes the mix-in reports.
class CountingButton : public BKPushButton
{
public:
    using BKPushButton::BKPushButton;

    void onStatusChanged() override
    {
        ++changes;
        statusSeen = getBkStatus();
    }

    int changes = 0;
    BKWidgetStatus::Statuses statusSeen;
};

std::unique_ptr<QWidget> makeKitWidget(const QString& kind)
{
    if (kind == "label")
        return std::make_unique<BKLabel>(nullptr);
    if (kind == "check box")
        return std::make_unique<BKCheckBox>(nullptr);
    if (kind == "push button")
        return std::make_unique<BKPushButton>(nullptr);
    if (kind == "list")
        return std::make_unique<BKListWidget>(nullptr);
    return nullptr;
}

BKWidgetInterface* kitInterface(QWidget* widget)
{
    return dynamic_cast<BKWidgetInterface*>(widget);
}

bool hasVisiblePixels(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0)
                return true;
        }
    }
    return false;
}

QImage renderIcon(const QString& path)
{
    return QIcon(path).pixmap(32, 32).toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

class tst_BKWidgets : public QObject
{
    Q_OBJECT

private slots:
    void defaultStatusIsNormal_data();
    void defaultStatusIsNormal();
    void statusRoundTrip_data();
    void statusRoundTrip();
    void singleFlagsAddAndRemove();
    void statusColours();
    void statusTintsTextAndRestoresIt();
    void readOnlyCheckBoxIgnoresInput_data();
    void readOnlyCheckBoxIgnoresInput();
    void labelToolTipWhenElided();
    void labelKeepsCallersToolTip();
    void labelSizeHintHasRoomForBar();
    void labelPaintsStatusBar();
    void listSizeHintFollowsRows();
    void icons_data();
    void icons();
    void iconsDiffer();
};

void tst_BKWidgets::defaultStatusIsNormal_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("BKLabel") << "label";
    QTest::newRow("BKCheckBox") << "check box";
    QTest::newRow("BKPushButton") << "push button";
    QTest::newRow("BKListWidget") << "list";
}

void tst_BKWidgets::defaultStatusIsNormal()
{
    QFETCH(QString, kind);
    const std::unique_ptr<QWidget> widget = makeKitWidget(kind);
    BKWidgetInterface* kit = kitInterface(widget.get());
    QVERIFY(kit);

    QCOMPARE(kit->getBkStatus(), BKWidgetStatus::Statuses(BKWidgetStatus::Normal));
    QVERIFY(kit->getBkStatus(BKWidgetStatus::Normal));
    for (auto status : {BKWidgetStatus::Modified, BKWidgetStatus::Warning, BKWidgetStatus::Error,
                        BKWidgetStatus::ReadOnly, BKWidgetStatus::Highlighted})
        QVERIFY(!kit->getBkStatus(status));
    QCOMPARE(kit->getStatusWidget(), widget.get());
}

void tst_BKWidgets::statusRoundTrip_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("modified") << int(BKWidgetStatus::Modified);
    QTest::newRow("error and read-only") << int(BKWidgetStatus::Error | BKWidgetStatus::ReadOnly);
    QTest::newRow("warning and highlighted") << int(BKWidgetStatus::Warning | BKWidgetStatus::Highlighted);
    QTest::newRow("all") << int(BKWidgetStatus::Modified | BKWidgetStatus::Warning | BKWidgetStatus::Error
                                | BKWidgetStatus::ReadOnly | BKWidgetStatus::Highlighted);
}

void tst_BKWidgets::statusRoundTrip()
{
    QFETCH(int, status);
    const auto flags = BKWidgetStatus::Statuses(status);

    CountingButton button(nullptr);
    button.setBkStatus(flags);
    QCOMPARE(button.getBkStatus(), flags);
    QCOMPARE(button.changes, 1);
    QCOMPARE(button.statusSeen, flags); // called after the change
    QCOMPARE(button.property("bkStatus").toInt(), status);
    QVERIFY(!button.getBkStatus(BKWidgetStatus::Normal));

    // The same status again is no change.
    button.setBkStatus(flags);
    QCOMPARE(button.changes, 1);

    button.setBkStatus(BKWidgetStatus::Statuses(BKWidgetStatus::Normal));
    QCOMPARE(button.changes, 2);
    QVERIFY(button.getBkStatus(BKWidgetStatus::Normal));
    QCOMPARE(button.property("bkStatus").toInt(), 0);
}

void tst_BKWidgets::singleFlagsAddAndRemove()
{
    CountingButton button(nullptr);
    button.setBkStatus(BKWidgetStatus::Warning, true);
    button.setBkStatus(BKWidgetStatus::Modified, true);
    QCOMPARE(button.getBkStatus(), BKWidgetStatus::Warning | BKWidgetStatus::Modified);
    QVERIFY(button.getBkStatus(BKWidgetStatus::Warning));
    QVERIFY(button.getBkStatus(BKWidgetStatus::Modified));
    QVERIFY(!button.getBkStatus(BKWidgetStatus::Error));

    button.setBkStatus(BKWidgetStatus::Warning, false);
    QCOMPARE(button.getBkStatus(), BKWidgetStatus::Statuses(BKWidgetStatus::Modified));
    button.setBkStatus(BKWidgetStatus::Error, false); // not set: no change
    QCOMPARE(button.changes, 3);
}

void tst_BKWidgets::statusColours()
{
    QVERIFY(!QColor(BKWidgetInterface::statusColorName(BKWidgetStatus::Normal)).isValid());

    QSet<QRgb> colours;
    for (auto status : {BKWidgetStatus::Modified, BKWidgetStatus::Warning, BKWidgetStatus::Error,
                        BKWidgetStatus::ReadOnly, BKWidgetStatus::Highlighted}) {
        const QColor colour(BKWidgetInterface::statusColorName(status));
        QVERIFY(colour.isValid());
        colours.insert(colour.rgb());
    }
    QCOMPARE(colours.size(), 5);

    // The most serious status shows.
    QCOMPARE(QColor(BKWidgetInterface::statusColorName(BKWidgetStatus::Error | BKWidgetStatus::Warning
                                                       | BKWidgetStatus::Modified)),
             QColor(BKWidgetInterface::statusColorName(BKWidgetStatus::Error)));
    QCOMPARE(QColor(BKWidgetInterface::statusColorName(BKWidgetStatus::Warning | BKWidgetStatus::ReadOnly)),
             QColor(BKWidgetInterface::statusColorName(BKWidgetStatus::Warning)));
}

void tst_BKWidgets::statusTintsTextAndRestoresIt()
{
    BKPushButton button(nullptr);
    const QColor natural = button.palette().color(QPalette::Active, QPalette::ButtonText);
    const QColor error(BKWidgetInterface::statusColorName(BKWidgetStatus::Error));
    QVERIFY(natural != error);

    button.setBkStatus(BKWidgetStatus::Error, true);
    QCOMPARE(button.palette().color(QPalette::Active, QPalette::ButtonText), error);
    button.setBkStatus(BKWidgetStatus::Warning, true); // error still wins
    QCOMPARE(button.palette().color(QPalette::Active, QPalette::ButtonText), error);
    button.setBkStatus(BKWidgetStatus::Statuses(BKWidgetStatus::Normal));
    QCOMPARE(button.palette().color(QPalette::Active, QPalette::ButtonText), natural);
}

void tst_BKWidgets::readOnlyCheckBoxIgnoresInput_data()
{
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<QString>("input");
    QTest::addColumn<bool>("toggles");

    QTest::newRow("normal, mouse") << false << "mouse" << true;
    QTest::newRow("normal, space") << false << "space" << true;
    QTest::newRow("read-only, mouse") << true << "mouse" << false;
    QTest::newRow("read-only, space") << true << "space" << false;
    QTest::newRow("read-only, double click") << true << "double click" << false;
}

void tst_BKWidgets::readOnlyCheckBoxIgnoresInput()
{
    QFETCH(bool, readOnly);
    QFETCH(QString, input);
    QFETCH(bool, toggles);

    BKCheckBox box(nullptr);
    box.setText("Clone");
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    box.setFocus();
    box.setBkStatus(BKWidgetStatus::ReadOnly, readOnly);
    QSignalSpy toggled(&box, &QCheckBox::toggled);

    const QPoint centre = box.rect().center();
    if (input == "mouse") {
        QTest::mouseClick(&box, Qt::LeftButton, Qt::NoModifier, centre);
    } else if (input == "space") {
        QTest::keyClick(&box, Qt::Key_Space);
    } else {
        QTest::mouseDClick(&box, Qt::LeftButton, Qt::NoModifier, centre);
    }
    QCOMPARE(box.isChecked(), toggles);
    QCOMPARE(toggled.count(), toggles ? 1 : 0);

    // A read-only box still follows the program.
    box.setChecked(!box.isChecked());
    QCOMPARE(box.isChecked(), !toggles);

    // Cleared, it takes clicks again.
    box.setBkStatus(BKWidgetStatus::ReadOnly, false);
    const bool before = box.isChecked();
    QTest::mouseClick(&box, Qt::LeftButton, Qt::NoModifier, centre);
    QCOMPARE(box.isChecked(), !before);
}

void tst_BKWidgets::labelToolTipWhenElided()
{
    const QString text = QStringLiteral("A label text far too long for the narrow label it is shown in");
    BKLabel label(nullptr);
    label.setText(text);
    label.resize(60, label.sizeHint().height());
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));

    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(&label, &enter);
    QCOMPARE(label.toolTip(), text);

    // Wide enough: the tool tip goes once the label has settled.
    label.resize(label.sizeHint().width() + 20, label.height());
    QTRY_VERIFY(label.toolTip().isEmpty());

    // Narrowed again, a tool tip event finds the text elided.
    label.resize(60, label.height());
    QHelpEvent help(QEvent::ToolTip, QPoint(5, 5), label.mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(&label, &help);
    QCOMPARE(label.toolTip(), text);

    // Rich text is not elided by the label.
    label.setText(QStringLiteral("<b>%1</b>").arg(text));
    QCoreApplication::sendEvent(&label, &enter);
    QVERIFY(label.toolTip().isEmpty());
}

void tst_BKWidgets::labelKeepsCallersToolTip()
{
    BKLabel label(nullptr);
    label.setText(QStringLiteral("Another text that does not fit into the label"));
    label.setToolTip(QStringLiteral("caller's tip"));
    label.resize(40, 20);
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(&label, &enter);
    QCOMPARE(label.toolTip(), QString("caller's tip"));
    label.resize(800, 20);
    QCoreApplication::sendEvent(&label, &enter);
    QCOMPARE(label.toolTip(), QString("caller's tip"));
}

void tst_BKWidgets::labelSizeHintHasRoomForBar()
{
    const QString text = QStringLiteral("Clone differences");
    QLabel plain(text);
    BKLabel label(nullptr);
    label.setText(text);
    QVERIFY(label.sizeHint().width() > plain.sizeHint().width());
    QVERIFY(label.minimumSizeHint().width() > plain.minimumSizeHint().width());
    const int room = label.sizeHint().width() - plain.sizeHint().width();

    // A form that resets the margins still leaves room for the bar.
    label.setContentsMargins(0, 0, 0, 0);
    QCOMPARE(label.sizeHint().width() - plain.sizeHint().width(), room);
}

void tst_BKWidgets::labelPaintsStatusBar()
{
    BKLabel label(nullptr);
    label.setText(QStringLiteral("Status"));
    label.resize(label.sizeHint());
    const QColor error(BKWidgetInterface::statusColorName(BKWidgetStatus::Error));

    const QImage normal = label.grab().toImage();
    QVERIFY(QColor(normal.pixel(1, normal.height() / 2)) != error);

    label.setBkStatus(BKWidgetStatus::Error, true);
    const QImage marked = label.grab().toImage();
    QCOMPARE(QColor(marked.pixel(1, marked.height() / 2)), error);
    // The text colour is left alone: the bar is the label's mark.
    QVERIFY(label.palette().color(QPalette::Active, QPalette::WindowText) != error);
}

void tst_BKWidgets::listSizeHintFollowsRows()
{
    BKListWidget list(nullptr);
    const QSize empty = list.sizeHint();
    QVERIFY(empty.height() > 0);

    // A few rows fit in the minimum room.
    list.addItems({"one", "two", "three"});
    QCOMPARE(list.sizeHint().height(), empty.height());

    int previous = list.sizeHint().height();
    for (int rows = 4; rows < 15; ++rows) {
        list.addItem(QString("row %1").arg(rows));
        QVERIFY2(list.sizeHint().height() > previous, qPrintable(QString::number(rows)));
        previous = list.sizeHint().height();
    }
    QCOMPARE(list.count(), 14);

    list.addItem("row 15");
    const QSize full = list.sizeHint();
    QVERIFY(full.height() > previous);
    for (int rows = 16; rows <= 200; ++rows)
        list.addItem(QString("row %1").arg(rows));
    QCOMPARE(list.sizeHint().height(), full.height());

    // The width follows the widest row within bounds.
    const int narrow = list.sizeHint().width();
    list.addItem(QString(40, QLatin1Char('W')));
    QVERIFY(list.sizeHint().width() > narrow);
    list.addItem(QString(2000, QLatin1Char('W')));
    QVERIFY(list.sizeHint().width() <= 480);

    QVERIFY(list.minimumSizeHint().height() <= list.sizeHint().height());
    list.clear();
    QCOMPARE(list.sizeHint().height(), empty.height());
}

void tst_BKWidgets::icons_data()
{
    QTest::addColumn<QString>("path");
    for (const char* name : {"visible", "visible_duplicate", "visible_different", "not_visible"}) {
        const QString path = QStringLiteral(":/Icons/Debug/%1.svg").arg(QLatin1String(name));
        QTest::newRow(name) << path;
    }
}

void tst_BKWidgets::icons()
{
    QFETCH(QString, path);
    QVERIFY(QFile(path).exists());
    QVERIFY2(QImageReader(path).canRead(), "the SVG image plugin is missing");
    const QIcon icon(path);
    QVERIFY(!icon.isNull());
    const QImage image = renderIcon(path);
    QVERIFY(!image.isNull());
    QCOMPARE(image.size(), QSize(32, 32));
    QVERIFY(hasVisiblePixels(image));
}

void tst_BKWidgets::iconsDiffer()
{
    const QStringList names{"visible", "visible_duplicate", "visible_different", "not_visible"};
    QVector<QImage> images;
    for (const QString& name : names)
        images << renderIcon(QStringLiteral(":/Icons/Debug/%1.svg").arg(name));
    for (int i = 0; i < images.size(); ++i) {
        for (int j = i + 1; j < images.size(); ++j)
            QVERIFY2(images.at(i) != images.at(j), qPrintable(names.at(i) + " == " + names.at(j)));
    }
}

QTEST_MAIN(tst_BKWidgets)
#include "tst_bkwidgets.moc"
