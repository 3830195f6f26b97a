// The property pane filler that both display model dialogs use: one
// top-level (name, value) row per property, in the list's order, with the
// name and the value as their columns' tool tips; and the text the pane's
// copy entries write.

#include <debugmenucontent/treewidgets/PropertyPane.h>
#include <debugmenucontent/treewidgets/PropertyPaneCopy.h>

#include "PropertyPaneDriver.h"
#include "ShownWindow.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <memory>

using namespace Brennvik;

namespace {

PropertyList propertiesOf(const QStringList& names, const QStringList& values)
{
    PropertyList properties;
    for (int i = 0; i < names.size(); ++i)
        properties.emplace_back(names.at(i).toStdString(), values.at(i).toStdString());
    return properties;
}

} // namespace

class tst_PropertyPane : public QObject
{
    Q_OBJECT

private slots:
    void fillsOneRowPerProperty_data();
    void fillsOneRowPerProperty();
    void appendsAfterExistingRows();
    void propertyRowIsOutsideAnyTree();
    void paneTextIsOneLinePerRowInPaneOrder_data();
    void paneTextIsOneLinePerRowInPaneOrder();
    void paneDeletedWhileMenuOpenCopiesNothing_data();
    void paneDeletedWhileMenuOpenCopiesNothing();
};

void tst_PropertyPane::fillsOneRowPerProperty_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("values");

    QTest::newRow("empty list") << QStringList() << QStringList();
    QTest::newRow("one") << QStringList{"pointer"} << QStringList{"0x1A"};
    QTest::newRow("host order kept") << QStringList{"z", "a", "m"} << QStringList{"1", "2", "3"};
    QTest::newRow("repeated names") << QStringList{"Label", "Label"} << QStringList{"x", "y"};
    QTest::newRow("empty texts") << QStringList{"", "name"} << QStringList{"value", ""};
    QTest::newRow("utf-8") << QStringList{QString::fromUtf8("Gr\xc3\xb6\xc3\x9f"
                                                            "e")}
                           << QStringList{QString::fromUtf8("\xe2\x84\xaa"
                                                            "elvin")};
}

void tst_PropertyPane::fillsOneRowPerProperty()
{
    QFETCH(QStringList, names);
    QFETCH(QStringList, values);
    QTreeWidget pane;
    pane.setColumnCount(2);
    fillPropertyPane(&pane, propertiesOf(names, values));

    QCOMPARE(pane.topLevelItemCount(), names.size());
    for (int i = 0; i < names.size(); ++i) {
        const QTreeWidgetItem* row = pane.topLevelItem(i);
        QCOMPARE(row->text(0), names.at(i));
        QCOMPARE(row->text(1), values.at(i));
        QCOMPARE(row->toolTip(1), values.at(i));
        QCOMPARE(row->toolTip(0), names.at(i));
        QCOMPARE(row->childCount(), 0);
        QCOMPARE(row->type(), int(QTreeWidgetItem::Type));
    }
}

void tst_PropertyPane::appendsAfterExistingRows()
{
    QTreeWidget pane;
    pane.setColumnCount(2);
    fillPropertyPane(&pane, PropertyList{{"first", "1"}});
    fillPropertyPane(&pane, PropertyList{{"second", "2"}, {"third", "3"}});

    QCOMPARE(pane.topLevelItemCount(), 3);
    QCOMPARE(pane.topLevelItem(0)->text(0), QStringLiteral("first"));
    QCOMPARE(pane.topLevelItem(2)->text(1), QStringLiteral("3"));
}

void tst_PropertyPane::propertyRowIsOutsideAnyTree()
{
    const std::unique_ptr<QTreeWidgetItem> row(makePropertyRow({"display item type", "ShellItem"}));
    QVERIFY(!row->treeWidget());
    QCOMPARE(row->text(0), QStringLiteral("display item type"));
    QCOMPARE(row->text(1), QStringLiteral("ShellItem"));
    QCOMPARE(row->toolTip(0), QStringLiteral("display item type"));
    QCOMPARE(row->toolTip(1), QStringLiteral("ShellItem"));
}

void tst_PropertyPane::paneTextIsOneLinePerRowInPaneOrder_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("paneText");

    QTest::newRow("empty pane") << QStringList() << QStringList() << QString();
    QTest::newRow("one row, no line break") << QStringList{"pointer"} << QStringList{"0x1A"} << "pointer\t0x1A";
    QTest::newRow("pane order kept") << QStringList{"z", "a", "m"} << QStringList{"1", "2", "3"} << "z\t1\na\t2\nm\t3";
    QTest::newRow("repeated names") << QStringList{"Label", "Label"} << QStringList{"x", "y"} << "Label\tx\nLabel\ty";
    QTest::newRow("empty texts") << QStringList{"", "name"} << QStringList{"value", ""} << "\tvalue\nname\t";
    QTest::newRow("utf-8") << QStringList{QString::fromUtf8("Gr\xc3\xb6\xc3\x9f"
                                                            "e")}
                           << QStringList{QString::fromUtf8("\xe2\x84\xaa"
                                                            "elvin")}
                           << QString::fromUtf8("Gr\xc3\xb6\xc3\x9f"
                                                "e\t\xe2\x84\xaa"
                                                "elvin");
}

void tst_PropertyPane::paneTextIsOneLinePerRowInPaneOrder()
{
    QFETCH(QStringList, names);
    QFETCH(QStringList, values);
    QFETCH(QString, paneText);
    QTreeWidget pane;
    pane.setColumnCount(2);
    fillPropertyPane(&pane, propertiesOf(names, values));

    QCOMPARE(propertyPaneText(pane), paneText);
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(propertyRowLine(*pane.topLevelItem(i)), names.at(i) + QLatin1Char('\t') + values.at(i));
}

void tst_PropertyPane::paneDeletedWhileMenuOpenCopiesNothing_data()
{
    QTest::addColumn<int>("entry");
    QTest::newRow("Copy value") << 0;
    QTest::newRow("Copy name and value") << 1;
    QTest::newRow("Copy all properties") << 2;
}

void tst_PropertyPane::paneDeletedWhileMenuOpenCopiesNothing()
{
    QFETCH(int, entry);
    auto* pane = new QTreeWidget;
    pane->setColumnCount(2);
    fillPropertyPane(pane, PropertyList{{"part", "Bracket 7"}, {"unit", "mm"}});
    addPropertyCopying(pane);
    QVERIFY(Test::showAtOrigin(*pane));
    const QPointer<QTreeWidget> paneAlive(pane);
    QGuiApplication::clipboard()->setText(Test::clipboardMarker());

    // The owner deletes the pane while the menu is open, with the entry
    // highlighted; the menu goes with the pane.
    QStringList entries;
    QTimer::singleShot(0, [&]() {
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            for (QAction* action : menu->actions())
                entries << action->text();
            menu->setActiveAction(menu->actions().value(entry));
        }
        delete pane;
    });
    // What a right click on a row makes the pane emit, emitted here so that
    // the pane is not inside its own event handler when it is deleted.
    emit pane->customContextMenuRequested(Test::paneCellPos(pane, 1));

    QCOMPARE(entries, (QStringList{Test::CopyValue, Test::CopyNameAndValue, Test::CopyAll}));
    QVERIFY(!paneAlive);
    QCOMPARE(QGuiApplication::clipboard()->text(), Test::clipboardMarker());
}

QTEST_MAIN(tst_PropertyPane)
#include "tst_propertypane.moc"
