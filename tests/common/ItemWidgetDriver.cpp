#include "ItemWidgetDriver.h"

#include <QListWidget>
#include <QTest>
#include <QTreeWidget>

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

} // namespace Brennvik::Test
