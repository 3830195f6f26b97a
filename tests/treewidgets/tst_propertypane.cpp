// The property pane filler that both display model dialogs use: one
// top-level (name, value) row per property, in the list's order, with the
// name and the value as their columns' tool tips.

#include <debugmenucontent/treewidgets/PropertyPane.h>

#include <QTest>
#include <QTreeWidget>

#include <memory>

using namespace Brennvik;

class tst_PropertyPane : public QObject
{
    Q_OBJECT

private slots:
    void fillsOneRowPerProperty_data();
    void fillsOneRowPerProperty();
    void appendsAfterExistingRows();
    void propertyRowIsOutsideAnyTree();
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
    PropertyList properties;
    for (int i = 0; i < names.size(); ++i)
        properties.emplace_back(names.at(i).toStdString(), values.at(i).toStdString());

    QTreeWidget pane;
    pane.setColumnCount(2);
    fillPropertyPane(&pane, properties);

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

QTEST_MAIN(tst_PropertyPane)
#include "tst_propertypane.moc"
