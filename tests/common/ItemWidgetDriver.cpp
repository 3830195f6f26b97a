#include "ItemWidgetDriver.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>

#include <QListWidget>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <vector>

namespace Brennvik::Test {

QTreeWidgetItem* rowNamed(QTreeWidget* tree, const QString& text)
{
    const QList<QTreeWidgetItem*> rows = tree->findItems(text, Qt::MatchExactly | Qt::MatchRecursive, 0);
    return rows.isEmpty() ? nullptr : rows.first();
}

int fetchAllRows(QTreeWidget* tree)
{
    // Top down with an explicit stack: the tree may be a very deep chain,
    // which is also why no row stays expanded (the view lays out expanded
    // rows recursively).
    int made = 0;
    std::vector<QTreeWidgetItem*> pending;
    for (int i = tree->topLevelItemCount() - 1; i >= 0; --i)
        pending.push_back(tree->topLevelItem(i));
    while (!pending.empty()) {
        QTreeWidgetItem* row = pending.back();
        pending.pop_back();
        if (row->childCount() == 0 && row->childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator) {
            row->setExpanded(true);
            row->setExpanded(false);
            made += row->childCount();
        }
        for (int i = row->childCount() - 1; i >= 0; --i)
            pending.push_back(row->child(i));
    }
    return made;
}

QString rowShape(const QTreeWidgetItem* row)
{
    QString text = row->text(0);
    if (row->childCount() == 0)
        return text;
    QStringList children;
    for (int i = 0; i < row->childCount(); ++i)
        children << rowShape(row->child(i));
    return text + '(' + children.join(',') + ')';
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
