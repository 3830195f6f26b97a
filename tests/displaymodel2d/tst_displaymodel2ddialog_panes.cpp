// The property panes of the 2D display model dialog as a user reads and
// copies them: full names and values as tool tips, the copy entries of the
// context menu and Ctrl+C.

#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>

#include <hostcontract/DisplayItem2D.h>

#include "Plot2DHost.h"
#include "PropertyPaneDriver.h"

#include <QAbstractItemModel>
#include <QTest>
#include <QTreeWidget>

#include <memory>
#include <string>

using namespace Brennvik;
using Brennvik::Test::chooseFromPaneHeaderMenu;
using Brennvik::Test::chooseFromPaneMenu;
using Brennvik::Test::clipboardMarker;
using Brennvik::Test::CopyAll;
using Brennvik::Test::CopyNameAndValue;
using Brennvik::Test::CopyValue;
using Brennvik::Test::propertyLines;

namespace {

const std::string LongName = "number of sample points drawn per millimetre of stroke";

} // namespace

class tst_DisplayModel2DDialogPanes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void menuCopies_data();
    void menuCopies();
    void emptyPaneOffersNothing_data();
    void emptyPaneOffersNothing();
    void ctrlCCopiesNameAndValueOfCurrentRow_data();
    void ctrlCCopiesNameAndValueOfCurrentRow();
    void menuCopiesWhatIsShownWhenChosen();
    void nameAndValueToolTips_data();
    void nameAndValueToolTips();

private:
    QTreeWidget* pane(const QString& name) const;
    PropertyList hostList(const QString& paneName) const;

    std::unique_ptr<Test::Plot2DHost> m_host;
    std::shared_ptr<DisplayItem2D> m_root;
    std::unique_ptr<DisplayModel2DDialog> m_dialog;
};

void tst_DisplayModel2DDialogPanes::init()
{
    m_host = std::make_unique<Test::Plot2DHost>();
    m_host->show();
    m_root = std::make_shared<DisplayItem2D>("Force plot");
    m_root->setBusinessProperty("plot", "Force over stroke");
    m_root->setBusinessProperty("unit", "kN");
    m_root->setDisplayProperty(LongName, "40");
    m_root->setDisplayProperty("frame", "on");
    m_root->appendChild(std::make_shared<DisplayItem2D>("bare"));
    m_host->addPlot(QPoint(10, 10), m_root);

    m_dialog = std::make_unique<DisplayModel2DDialog>(m_host->presenter(), nullptr);
    m_dialog->move(0, 0);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QVERIFY(tree->topLevelItem(0));
    tree->setCurrentItem(tree->topLevelItem(0));
}

void tst_DisplayModel2DDialogPanes::cleanup()
{
    m_dialog.reset();
    m_host.reset();
    m_root.reset();
}

QTreeWidget* tst_DisplayModel2DDialogPanes::pane(const QString& name) const
{
    return name == QLatin1String("business") ? m_dialog->m_businessObjectProperties : m_dialog->m_displayItemProperties;
}

PropertyList tst_DisplayModel2DDialogPanes::hostList(const QString& paneName) const
{
    PropertyList business;
    PropertyList display;
    m_root->getProperties(business, display);
    return paneName == QLatin1String("business") ? business : display;
}

void tst_DisplayModel2DDialogPanes::menuCopies_data()
{
    QTest::addColumn<QString>("paneName");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("expected");

    QTest::newRow("business: value") << "business" << 1 << CopyValue << "kN";
    QTest::newRow("business: name and value") << "business" << 0 << CopyNameAndValue << "plot\tForce over stroke";
    QTest::newRow("business: all") << "business" << 1 << CopyAll << "plot\tForce over stroke\nunit\tkN";
    QTest::newRow("display: long name and value")
        << "display" << 0 << CopyNameAndValue << QString::fromStdString(LongName + "\t40");
    QTest::newRow("display: all from below the rows")
        << "display" << -1 << CopyAll << QString::fromStdString(LongName + "\t40\nframe\ton");
}

void tst_DisplayModel2DDialogPanes::menuCopies()
{
    QFETCH(QString, paneName);
    QFETCH(int, row);
    QFETCH(QString, entry);
    QFETCH(QString, expected);

    QCOMPARE(pane(paneName)->topLevelItemCount(), int(hostList(paneName).size()));

    const Test::PaneMenuVisit visit = chooseFromPaneMenu(pane(paneName), row, entry);
    QVERIFY(visit.opened);
    QCOMPARE(visit.entries, (QStringList{CopyValue, CopyNameAndValue, CopyAll}));
    QVERIFY(visit.triggered);
    QCOMPARE(visit.clipboard, expected);
}

void tst_DisplayModel2DDialogPanes::emptyPaneOffersNothing_data()
{
    QTest::addColumn<QString>("paneName");
    QTest::addColumn<bool>("onHeader");

    QTest::newRow("business, below the rows") << "business" << false;
    QTest::newRow("display, on the header") << "display" << true;
}

void tst_DisplayModel2DDialogPanes::emptyPaneOffersNothing()
{
    QFETCH(QString, paneName);
    QFETCH(bool, onHeader);

    // The child has no properties: both panes are empty.
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(tree->topLevelItem(0)->child(0));
    QCOMPARE(pane(paneName)->topLevelItemCount(), 0);

    for (const QString& entry : {CopyValue, CopyNameAndValue, CopyAll}) {
        const Test::PaneMenuVisit visit = onHeader ? chooseFromPaneHeaderMenu(pane(paneName), entry)
                                                   : chooseFromPaneMenu(pane(paneName), -1, entry);
        QVERIFY(visit.opened);
        QCOMPARE(visit.entries, (QStringList{CopyValue, CopyNameAndValue, CopyAll}));
        QCOMPARE(visit.enabled, QStringList());
        QVERIFY(!visit.triggered);
        QCOMPARE(visit.clipboard, clipboardMarker());
    }
}

void tst_DisplayModel2DDialogPanes::ctrlCCopiesNameAndValueOfCurrentRow_data()
{
    QTest::addColumn<QString>("paneName");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("expected");

    QTest::newRow("business, second row") << "business" << 1 << "unit\tkN";
    QTest::newRow("display, long name") << "display" << 0 << QString::fromStdString(LongName + "\t40");
    QTest::newRow("display, no current row") << "display" << -1 << clipboardMarker();
}

void tst_DisplayModel2DDialogPanes::ctrlCCopiesNameAndValueOfCurrentRow()
{
    QFETCH(QString, paneName);
    QFETCH(int, row);
    QFETCH(QString, expected);

    QCOMPARE(Test::pressCopyOnRow(pane(paneName), row), expected);
}

void tst_DisplayModel2DDialogPanes::menuCopiesWhatIsShownWhenChosen()
{
    QTreeWidget* target = m_dialog->m_displayItemProperties;
    const Test::PaneMenuVisit visit = chooseFromPaneMenu(target, 1, CopyAll, [this]() {
        m_root->setDisplayProperty("frame", "off");
        m_root->setDisplayProperty("grid", "dotted");
    });
    QVERIFY(visit.triggered);
    QCOMPARE(target->topLevelItemCount(), 3);
    QCOMPARE(visit.clipboard, QString::fromStdString(LongName + "\t40\nframe\toff\ngrid\tdotted"));
    QCOMPARE(visit.clipboard, propertyLines(hostList("display")));
}

void tst_DisplayModel2DDialogPanes::nameAndValueToolTips_data()
{
    QTest::addColumn<QString>("paneName");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");

    QTest::newRow("display, long name") << "display" << 0 << 0 << QString::fromStdString(LongName);
    QTest::newRow("business, name") << "business" << 0 << 0 << "plot";
    QTest::newRow("business, value") << "business" << 0 << 1 << "Force over stroke";
}

void tst_DisplayModel2DDialogPanes::nameAndValueToolTips()
{
    QFETCH(QString, paneName);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QString, text);

    QTreeWidget* target = pane(paneName);
    const QModelIndex index = target->model()->index(row, column);
    QCOMPARE(target->model()->data(index, Qt::DisplayRole).toString(), text);
    QCOMPARE(target->model()->data(index, Qt::ToolTipRole).toString(), text);

    QCOMPARE(target->indexAt(Test::paneCellPos(target, row, column)), index);
    QCOMPARE(Test::hoverToolTip(target, row, column), text);
}

QTEST_MAIN(tst_DisplayModel2DDialogPanes)
#include "tst_displaymodel2ddialog_panes.moc"
