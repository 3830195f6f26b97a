// The property panes of the display model dialog, the original ones and the
// cloned ones of clone mode, as a user reads and copies them: full names and
// values as tool tips, the copy entries of the context menu and Ctrl+C.

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <hostcontract/DisplayModel.h>
#include <hostcontract/ViewModelInterface.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneViewModel.h>

#include "DisplayModelDialogTestAccess.h"
#include "PropertyPaneDriver.h"
#include "ShownWindow.h"
#include "TestTree.h"

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QTest>
#include <QTreeWidget>

#include <memory>
#include <string>

using namespace Brennvik;
using Access = Brennvik::DisplayModelDialogTestAccess;
using Brennvik::Test::chooseFromPaneHeaderMenu;
using Brennvik::Test::chooseFromPaneMenu;
using Brennvik::Test::clipboardMarker;
using Brennvik::Test::CopyAll;
using Brennvik::Test::CopyNameAndValue;
using Brennvik::Test::CopyValue;
using Brennvik::Test::propertyLine;
using Brennvik::Test::propertyLines;

namespace {

const std::string LongName = "maximum permitted deviation of the drawn outline from the nominal geometry (mm)";

// What a copy entry is expected to put on the clipboard, taken from the host's own list.
enum class Expect { Value, Line, AllLines, Nothing };

QString expectedText(const PropertyList& hostList, int row, Expect expect)
{
    if (expect == Expect::AllLines)
        return propertyLines(hostList);
    if (expect == Expect::Nothing || row < 0 || row >= int(hostList.size()))
        return clipboardMarker();
    const Property& property = *std::next(hostList.begin(), row);
    return expect == Expect::Value ? QString::fromStdString(property.second) : propertyLine(property);
}

} // namespace

Q_DECLARE_METATYPE(Expect)

class tst_DisplayModelDialogPanes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void menuCopies_data();
    void menuCopies();
    void entriesEnabledWhereThereIsSomethingToCopy_data();
    void entriesEnabledWhereThereIsSomethingToCopy();
    void ctrlCCopiesNameAndValueOfCurrentRow_data();
    void ctrlCCopiesNameAndValueOfCurrentRow();
    void ctrlCWithoutCurrentRowCopiesNothing();
    void menuCopiesWhatIsShownWhenChosen_data();
    void menuCopiesWhatIsShownWhenChosen();
    void paneEmptiedWhileMenuOpenCopiesNothing();
    void nameAndValueToolTips_data();
    void nameAndValueToolTips();

private:
    void addPaneColumns();
    QTreeWidget* pane(const QString& name) const;
    QTreeWidget* showRootIn(const QString& paneName, bool cloneMode);
    PropertyList hostList(const QString& paneName) const;

    std::shared_ptr<DisplayItem> m_root;
    std::unique_ptr<DisplayModelDialog> m_dialog;
};

void tst_DisplayModelDialogPanes::init()
{
    m_root = std::make_shared<DisplayItem>("Root");
    m_root->setBusinessProperty("part", "Bracket 7");
    m_root->setBusinessProperty(LongName, "0.05");
    m_root->setDisplayProperty("colour", "dark red");
    m_root->setDisplayProperty("comment", std::string(200, 'c'));
    m_dialog = std::make_unique<DisplayModelDialog>(nullptr);
    m_dialog->setViewModel(Test::makeViewModel(m_root));
    QVERIFY(Test::showAtOrigin(*m_dialog));
}

void tst_DisplayModelDialogPanes::cleanup()
{
    m_dialog.reset();
    m_root.reset();
}

void tst_DisplayModelDialogPanes::addPaneColumns()
{
    QTest::addColumn<QString>("paneName");
    QTest::addColumn<bool>("cloneMode");
}

// Panes by the names the dialog's titles give them.
QTreeWidget* tst_DisplayModelDialogPanes::pane(const QString& name) const
{
    if (name == QLatin1String("business"))
        return m_dialog->m_businessObjectProperties;
    if (name == QLatin1String("display"))
        return m_dialog->m_displayItemProperties;
    if (name == QLatin1String("cloned business"))
        return Access::clonedBusinessPane(*m_dialog);
    if (name == QLatin1String("cloned display"))
        return Access::clonedDisplayPane(*m_dialog);
    return nullptr;
}

// Makes the root's row current in the tree whose panes \a paneName names,
// switching clone mode as told; returns that pane.
QTreeWidget* tst_DisplayModelDialogPanes::showRootIn(const QString& paneName, bool cloneMode)
{
    m_dialog->m_useCloneCheckBox->setChecked(cloneMode);
    QTreeWidget* tree = cloneMode ? Access::clonedTree(*m_dialog) : m_dialog->m_displayItemTreeWidget;
    if (!tree)
        return nullptr;
    tree->setCurrentItem(tree->topLevelItem(0));
    return pane(paneName);
}

// What the host says the item of the pane has, in the host's order.
PropertyList tst_DisplayModelDialogPanes::hostList(const QString& paneName) const
{
    std::shared_ptr<DisplayItemInterface> item = m_root;
    if (paneName.startsWith(QLatin1String("cloned")))
        item = Access::clonedViewModel(*m_dialog)->getDisplayModel()->getRootDisplayItem();
    PropertyList business;
    PropertyList display;
    item->getProperties(business, display);
    return paneName.endsWith(QLatin1String("business")) ? business : display;
}

void tst_DisplayModelDialogPanes::menuCopies_data()
{
    addPaneColumns();
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<Expect>("expect");

    QTest::newRow("business: value") << "business" << false << 1 << CopyValue << Expect::Value;
    QTest::newRow("business: name and value") << "business" << false << 2 << CopyNameAndValue << Expect::Line;
    QTest::newRow("business: all") << "business" << false << 0 << CopyAll << Expect::AllLines;
    QTest::newRow("display: long value") << "display" << false << 3 << CopyValue << Expect::Value;
    QTest::newRow("display: name and value") << "display" << false << 2 << CopyNameAndValue << Expect::Line;
    QTest::newRow("display: all from below the rows") << "display" << false << -1 << CopyAll << Expect::AllLines;
    QTest::newRow("cloned business: value") << "cloned business" << true << 1 << CopyValue << Expect::Value;
    QTest::newRow("cloned business: all") << "cloned business" << true << 2 << CopyAll << Expect::AllLines;
    QTest::newRow("cloned display: name and value")
        << "cloned display" << true << 2 << CopyNameAndValue << Expect::Line;
    QTest::newRow("cloned display: all") << "cloned display" << true << 0 << CopyAll << Expect::AllLines;
}

void tst_DisplayModelDialogPanes::menuCopies()
{
    QFETCH(QString, paneName);
    QFETCH(bool, cloneMode);
    QFETCH(int, row);
    QFETCH(QString, entry);
    QFETCH(Expect, expect);

    QTreeWidget* target = showRootIn(paneName, cloneMode);
    QVERIFY(target);
    QCOMPARE(target->topLevelItemCount(), int(hostList(paneName).size()));

    const Test::PaneMenuVisit visit = chooseFromPaneMenu(target, row, entry);
    QVERIFY(visit.opened);
    QCOMPARE(visit.entries, (QStringList{CopyValue, CopyNameAndValue, CopyAll}));
    QVERIFY(visit.triggered);
    QCOMPARE(visit.clipboard, expectedText(hostList(paneName), row, expect));
}

void tst_DisplayModelDialogPanes::entriesEnabledWhereThereIsSomethingToCopy_data()
{
    QTest::addColumn<QString>("paneName");
    QTest::addColumn<bool>("emptyPane");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QStringList>("enabled");

    const QStringList all{CopyValue, CopyNameAndValue, CopyAll};
    QTest::newRow("on a row") << "display" << false << "row" << all;
    QTest::newRow("below the rows") << "display" << false << "below" << QStringList{CopyAll};
    QTest::newRow("on the header") << "business" << false << "header" << QStringList{CopyAll};
    QTest::newRow("empty pane, below") << "business" << true << "below" << QStringList();
    QTest::newRow("empty pane, header") << "display" << true << "header" << QStringList();
}

void tst_DisplayModelDialogPanes::entriesEnabledWhereThereIsSomethingToCopy()
{
    QFETCH(QString, paneName);
    QFETCH(bool, emptyPane);
    QFETCH(QString, place);
    QFETCH(QStringList, enabled);

    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(emptyPane ? nullptr : tree->topLevelItem(0));
    QTreeWidget* target = pane(paneName);
    QCOMPARE(target->topLevelItemCount() == 0, emptyPane);

    // Every entry is tried: the disabled ones cannot be chosen and copy nothing.
    for (const QString& entry : {CopyValue, CopyNameAndValue, CopyAll}) {
        const Test::PaneMenuVisit visit = place == QLatin1String("header")
            ? chooseFromPaneHeaderMenu(target, entry)
            : chooseFromPaneMenu(target, place == QLatin1String("row") ? 0 : -1, entry);
        QVERIFY(visit.opened);
        QCOMPARE(visit.entries, (QStringList{CopyValue, CopyNameAndValue, CopyAll}));
        QCOMPARE(visit.enabled, enabled);
        QCOMPARE(visit.triggered, enabled.contains(entry));
        if (!visit.triggered)
            QCOMPARE(visit.clipboard, clipboardMarker());
        else
            QVERIFY(visit.clipboard != clipboardMarker());
    }
}

void tst_DisplayModelDialogPanes::ctrlCCopiesNameAndValueOfCurrentRow_data()
{
    addPaneColumns();
    QTest::addColumn<int>("row");

    QTest::newRow("business, first row") << "business" << false << 0;
    QTest::newRow("business, long name") << "business" << false << 2;
    QTest::newRow("display, last row") << "display" << false << 3;
    QTest::newRow("cloned business") << "cloned business" << true << 1;
    QTest::newRow("cloned display") << "cloned display" << true << 2;
}

void tst_DisplayModelDialogPanes::ctrlCCopiesNameAndValueOfCurrentRow()
{
    QFETCH(QString, paneName);
    QFETCH(bool, cloneMode);
    QFETCH(int, row);

    QTreeWidget* target = showRootIn(paneName, cloneMode);
    QVERIFY(target);

    QCOMPARE(Test::pressCopyOnRow(target, row), expectedText(hostList(paneName), row, Expect::Line));
}

void tst_DisplayModelDialogPanes::ctrlCWithoutCurrentRowCopiesNothing()
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(tree->topLevelItem(0));
    QTreeWidget* target = m_dialog->m_displayItemProperties;
    QVERIFY(target->topLevelItemCount() > 0);

    QCOMPARE(Test::pressCopyOnRow(target, -1), clipboardMarker());
}

void tst_DisplayModelDialogPanes::menuCopiesWhatIsShownWhenChosen_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<Expect>("expect");

    QTest::newRow("value") << CopyValue << Expect::Value;
    QTest::newRow("name and value") << CopyNameAndValue << Expect::Line;
    QTest::newRow("all") << CopyAll << Expect::AllLines;
}

void tst_DisplayModelDialogPanes::menuCopiesWhatIsShownWhenChosen()
{
    QFETCH(QString, entry);
    QFETCH(Expect, expect);

    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(tree->topLevelItem(0));
    QTreeWidget* target = m_dialog->m_displayItemProperties;
    const int colourRow = 2;
    QCOMPARE(target->topLevelItem(colourRow)->text(0), QStringLiteral("colour"));

    // The host changes the item while the menu is open: the pane is rebuilt.
    const Test::PaneMenuVisit visit = chooseFromPaneMenu(target, colourRow, entry, [this]() {
        m_root->setDisplayProperty("colour", "bright green");
        m_root->setDisplayProperty("added while the menu was open", "yes");
    });
    QVERIFY(visit.triggered);
    QCOMPARE(target->topLevelItem(colourRow)->text(1), QStringLiteral("bright green"));
    QCOMPARE(visit.clipboard, expectedText(hostList("display"), colourRow, expect));
}

void tst_DisplayModelDialogPanes::paneEmptiedWhileMenuOpenCopiesNothing()
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(tree->topLevelItem(0));
    QTreeWidget* target = m_dialog->m_businessObjectProperties;

    for (const QString& entry : {CopyValue, CopyNameAndValue, CopyAll}) {
        tree->setCurrentItem(tree->topLevelItem(0));
        QVERIFY(target->topLevelItemCount() > 0);
        const Test::PaneMenuVisit visit
            = chooseFromPaneMenu(target, 1, entry, [tree]() { tree->setCurrentItem(nullptr); });
        QVERIFY(visit.triggered);
        QCOMPARE(target->topLevelItemCount(), 0);
        QCOMPARE(visit.clipboard, clipboardMarker());
    }
}

void tst_DisplayModelDialogPanes::nameAndValueToolTips_data()
{
    addPaneColumns();
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");

    const QString longName = QString::fromStdString(LongName);
    const QString longValue(200, QLatin1Char('c'));
    QTest::newRow("business, long name") << "business" << false << 2 << 0 << longName;
    QTest::newRow("business, short name") << "business" << false << 1 << 0 << QStringLiteral("part");
    QTest::newRow("business, value") << "business" << false << 2 << 1 << QStringLiteral("0.05");
    QTest::newRow("display, long value") << "display" << false << 3 << 1 << longValue;
    QTest::newRow("display, name") << "display" << false << 2 << 0 << QStringLiteral("colour");
    QTest::newRow("cloned business, long name") << "cloned business" << true << 2 << 0 << longName;
    QTest::newRow("cloned display, long value") << "cloned display" << true << 3 << 1 << longValue;
}

void tst_DisplayModelDialogPanes::nameAndValueToolTips()
{
    QFETCH(QString, paneName);
    QFETCH(bool, cloneMode);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QString, text);

    QTreeWidget* target = showRootIn(paneName, cloneMode);
    QVERIFY(target);
    QTreeWidgetItem* item = target->topLevelItem(row);
    QVERIFY(item);
    QCOMPARE(item->text(column), text);

    const QModelIndex index = target->model()->index(row, column);
    QCOMPARE(target->model()->data(index, Qt::ToolTipRole).toString(), text);

    const QPoint pos = Test::paneCellPos(target, row, column);
    QCOMPARE(target->itemAt(pos), item);
    QCOMPARE(target->columnAt(pos.x()), column);
    QCOMPARE(Test::hoverToolTip(target, row, column), text);
}

QTEST_MAIN(tst_DisplayModelDialogPanes)
#include "tst_displaymodeldialog_panes.moc"
