#include "ItemWidgetDriver.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>

#include <QListWidget>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace Brennvik::Test {

QTreeWidgetItem* rowNamed(QTreeWidget* tree, const QString& text)
{
    const QList<QTreeWidgetItem*> rows = tree->findItems(text, Qt::MatchExactly | Qt::MatchRecursive, 0);
    return rows.isEmpty() ? nullptr : rows.first();
}

void clickRow(QTreeWidget* tree, QTreeWidgetItem* row)
{
    tree->scrollToItem(row);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualItemRect(row).center());
}

void doubleClickRow(QTreeWidget* tree, QTreeWidgetItem* row)
{
    tree->scrollToItem(row);
    const QPoint pos = tree->visualItemRect(row).center();
    QTest::mousePress(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
}

QStringList listTexts(const QListWidget* list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text();
    return texts;
}

DisplayItemTreeWidgetItem* addRowsWithoutDialog(QTreeWidget* tree, QTreeWidgetItem* parentRow,
                                                const std::shared_ptr<DisplayItemInterface>& item)
{
    auto* row = parentRow ? new DisplayItemTreeWidgetItem(parentRow, item, nullptr, false)
                          : new DisplayItemTreeWidgetItem(tree, item, nullptr, false);
    for (const auto& child : item->getChildren())
        addRowsWithoutDialog(tree, row, child);
    return row;
}

QPoint pointOutsideDisplayItemRows(QTreeWidget* tree, bool onForeignRow)
{
    if (onForeignRow) {
        auto* foreign = new QTreeWidgetItem(tree, QStringList{QStringLiteral("Not a display item")});
        return tree->visualItemRect(foreign).center();
    }
    QTreeWidgetItem* last = nullptr;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        last = *it;
    return QPoint(10, last ? tree->visualItemRect(last).bottom() + 40 : 10);
}

} // namespace Brennvik::Test
