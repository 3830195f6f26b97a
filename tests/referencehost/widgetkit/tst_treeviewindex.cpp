#include <hostcontract/TreeViewIndex.h>

#include <QStandardItemModel>
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

#include <functional>

using namespace Brennvik;

namespace {

// Opens up the item/index conversions of QTreeWidget.
class ItemTree : public QTreeWidget
{
public:
    using QTreeWidget::indexFromItem;
    using QTreeWidget::itemFromIndex;
};

// The tree every test starts from, as (depth, name) lines in pre-order.
// Positions: A 0, A1 1, A1a 2, A1b 3, A2 4, B 5, C 6, C1 7, C1a 8, C1a-i 9,
// C2 10, C3 11, D 12.
const QVector<QPair<int, QString>>& shape()
{
    static const QVector<QPair<int, QString>> lines = {
        {0, "A"},  {1, "A1"},  {2, "A1a"},   {2, "A1b"}, {1, "A2"}, {0, "B"}, {0, "C"},
        {1, "C1"}, {2, "C1a"}, {3, "C1a-i"}, {1, "C2"},  {1, "C3"}, {0, "D"},
    };
    return lines;
}

void fillStandardModel(QStandardItemModel& model, const QString& prefix = QString())
{
    model.setColumnCount(2);
    QVector<QStandardItem*> parents;
    for (const auto& line : shape()) {
        parents.resize(line.first);
        QList<QStandardItem*> row{new QStandardItem(prefix + line.second),
                                  new QStandardItem("value of " + line.second)};
        if (parents.isEmpty())
            model.appendRow(row);
        else
            parents.last()->appendRow(row);
        parents.append(row.first());
    }
}

void fillTreeWidget(QTreeWidget& tree, int columns, const QString& prefix = QString())
{
    tree.setColumnCount(columns);
    QVector<QTreeWidgetItem*> parents;
    for (const auto& line : shape()) {
        parents.resize(line.first);
        QStringList texts{prefix + line.second};
        for (int column = 1; column < columns; ++column)
            texts << QString("%1/%2").arg(line.second).arg(column);
        auto* item = parents.isEmpty() ? new QTreeWidgetItem(&tree, texts) : new QTreeWidgetItem(parents.last(), texts);
        parents.append(item);
    }
}

// The pre-order walk written out plainly, as the reference the fast lookups
// are checked against.
void collectPreOrder(const QAbstractItemModel* model, const QModelIndex& parent, QModelIndexList& out)
{
    for (int row = 0; row < model->rowCount(parent); ++row) {
        const QModelIndex index = model->index(row, 0, parent);
        out << index;
        collectPreOrder(model, index, out);
    }
}

QModelIndexList preOrder(const QAbstractItemModel* model)
{
    QModelIndexList out;
    collectPreOrder(model, QModelIndex(), out);
    return out;
}

// "2/0/1": the rows from the top down.
QString pathOf(QModelIndex index)
{
    QStringList rows;
    for (; index.isValid(); index = index.parent())
        rows.prepend(QString::number(index.row()));
    return rows.join('/');
}

QModelIndex indexAtPath(const QAbstractItemModel* model, const QString& path)
{
    QModelIndex index;
    for (const QString& row : path.split('/'))
        index = model->index(row.toInt(), 0, index);
    return index;
}

// Every row's position matches the reference walk, and back.
void verifyAgainstReference(const QAbstractItemView* view)
{
    const QModelIndexList expected = preOrder(view->model());
    for (int position = 0; position < expected.size(); ++position) {
        const QModelIndex index = expected.at(position);
        QCOMPARE(getDFSIdx(view, index), position);
        QCOMPARE(indexFromDFSIdx(view, position), index);
        QCOMPARE(indexFromDFSIdx(view, getDFSIdx(view, index)), index);
    }
    QVERIFY(!indexFromDFSIdx(view, expected.size()).isValid());
}

} // namespace

class tst_TreeViewIndex : public QObject
{
    Q_OBJECT

private slots:
    void roundTripStandardModel_data();
    void roundTripStandardModel();
    void roundTripTreeWidget();
    void anyColumnNamesItsRow();
    void exactPositions_data();
    void exactPositions();
    void sameShapeGivesSamePositions();
    void invalidIndexGivesMinusOne();
    void outOfRangeGivesInvalidIndex_data();
    void outOfRangeGivesInvalidIndex();
    void rowsBelowOtherColumnsAreNotWalked();
    void followsStructureChanges();
    void deepAndWideTrees();
};

void tst_TreeViewIndex::roundTripStandardModel_data()
{
    QTest::addColumn<bool>("expanded");
    QTest::newRow("collapsed") << false;
    QTest::newRow("expanded") << true;
}

void tst_TreeViewIndex::roundTripStandardModel()
{
    QFETCH(bool, expanded);
    QStandardItemModel model;
    fillStandardModel(model);
    QTreeView view;
    view.setModel(&model);
    if (expanded)
        view.expandAll();
    else
        view.collapseAll();

    QCOMPARE(preOrder(&model).size(), shape().size());
    verifyAgainstReference(&view);
}

void tst_TreeViewIndex::roundTripTreeWidget()
{
    ItemTree tree;
    fillTreeWidget(tree, 3);
    tree.collapseAll();
    tree.expandItem(tree.topLevelItem(2)); // some expanded, some not

    verifyAgainstReference(&tree);

    // The items themselves, walked by Qt's own pre-order iterator.
    int position = 0;
    for (QTreeWidgetItemIterator it(&tree); *it; ++it, ++position) {
        QCOMPARE(tree.itemFromIndex(indexFromDFSIdx(&tree, position)), *it);
        QCOMPARE(getDFSIdx(&tree, tree.indexFromItem(*it, 0)), position);
        QCOMPARE(getDFSIdx(&tree, tree.indexFromItem(*it, 2)), position);
    }
    QCOMPARE(position, shape().size());
}

void tst_TreeViewIndex::anyColumnNamesItsRow()
{
    QStandardItemModel model;
    fillStandardModel(model);
    QTreeView view;
    view.setModel(&model);

    const QModelIndexList rows = preOrder(&model);
    for (int position = 0; position < rows.size(); ++position) {
        const QModelIndex second = rows.at(position).sibling(rows.at(position).row(), 1);
        QVERIFY(second.isValid());
        QCOMPARE(getDFSIdx(&view, second), position);
        // The inverse always gives column 0.
        QCOMPARE(indexFromDFSIdx(&view, position).column(), 0);
    }
}

void tst_TreeViewIndex::exactPositions_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("position");

    QTest::newRow("first row") << "0"
                               << "A" << 0;
    QTest::newRow("first child") << "0/0"
                                 << "A1" << 1;
    QTest::newRow("grandchild") << "0/0/1"
                                << "A1b" << 3;
    QTest::newRow("after a subtree") << "0/1"
                                     << "A2" << 4;
    QTest::newRow("leaf top-level row") << "1"
                                        << "B" << 5;
    QTest::newRow("deepest row") << "2/0/0/0"
                                 << "C1a-i" << 9;
    QTest::newRow("after the deepest") << "2/1"
                                       << "C2" << 10;
    QTest::newRow("last row") << "3"
                              << "D" << 12;
}

void tst_TreeViewIndex::exactPositions()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    QFETCH(int, position);

    QStandardItemModel model;
    fillStandardModel(model);
    QTreeView view;
    view.setModel(&model);

    const QModelIndex index = indexAtPath(&model, path);
    QCOMPARE(index.data().toString(), name);
    QCOMPARE(getDFSIdx(&view, index), position);
    QCOMPARE(pathOf(indexFromDFSIdx(&view, position)), path);
    QCOMPARE(indexFromDFSIdx(&view, position).data().toString(), name);
}

void tst_TreeViewIndex::sameShapeGivesSamePositions()
{
    // Different texts, column counts, models and expansion; the same shape.
    QTreeWidget original;
    fillTreeWidget(original, 2);
    original.expandAll();
    QTreeWidget clone;
    fillTreeWidget(clone, 4, "clone of ");
    clone.collapseAll();
    QStandardItemModel model;
    fillStandardModel(model, "model ");
    QTreeView view;
    view.setModel(&model);

    for (int position = 0; position < shape().size(); ++position) {
        const QString path = pathOf(indexFromDFSIdx(&original, position));
        QVERIFY(!path.isEmpty());
        QCOMPARE(pathOf(indexFromDFSIdx(&clone, position)), path);
        QCOMPARE(pathOf(indexFromDFSIdx(&view, position)), path);
        QCOMPARE(getDFSIdx(&clone, indexAtPath(clone.model(), path)), position);
        QCOMPARE(getDFSIdx(&view, indexAtPath(&model, path)), position);
        QCOMPARE(indexFromDFSIdx(&clone, position).data().toString(), "clone of " + shape().at(position).second);
    }
}

void tst_TreeViewIndex::invalidIndexGivesMinusOne()
{
    QStandardItemModel model;
    fillStandardModel(model);
    QTreeView view;
    view.setModel(&model);
    QStandardItemModel other;
    fillStandardModel(other);
    QTreeView viewWithoutModel;

    QCOMPARE(getDFSIdx(&view, QModelIndex()), -1);
    QCOMPARE(getDFSIdx(&view, other.index(0, 0)), -1);
    QCOMPARE(getDFSIdx(&view, other.index(1, 0)), -1);
    QCOMPARE(getDFSIdx(nullptr, model.index(0, 0)), -1);
    QCOMPARE(getDFSIdx(&viewWithoutModel, model.index(0, 0)), -1);
    QVERIFY(!indexFromDFSIdx(nullptr, 0).isValid());
    QVERIFY(!indexFromDFSIdx(&viewWithoutModel, 0).isValid());
}

void tst_TreeViewIndex::outOfRangeGivesInvalidIndex_data()
{
    QTest::addColumn<int>("position");
    QTest::newRow("minus one") << -1;
    QTest::newRow("very negative") << -1000;
    QTest::newRow("one past the last row") << int(shape().size());
    QTest::newRow("far beyond") << 100000;
}

void tst_TreeViewIndex::outOfRangeGivesInvalidIndex()
{
    QFETCH(int, position);
    QStandardItemModel model;
    fillStandardModel(model);
    QTreeView view;
    view.setModel(&model);
    QVERIFY(!indexFromDFSIdx(&view, position).isValid());

    QStandardItemModel empty;
    QTreeView emptyView;
    emptyView.setModel(&empty);
    QVERIFY(!indexFromDFSIdx(&emptyView, position).isValid());
    QVERIFY(!indexFromDFSIdx(&emptyView, 0).isValid());
}

void tst_TreeViewIndex::rowsBelowOtherColumnsAreNotWalked()
{
    // A tree view shows only the children of column 0.
    QStandardItemModel model;
    fillStandardModel(model);
    QStandardItem* valueOfB = model.item(1, 1);
    valueOfB->appendRow(new QStandardItem("hidden"));
    QTreeView view;
    view.setModel(&model);

    QCOMPARE(getDFSIdx(&view, valueOfB->child(0)->index()), -1);
    verifyAgainstReference(&view);
    QCOMPARE(getDFSIdx(&view, model.index(2, 0)), 6);
}

void tst_TreeViewIndex::followsStructureChanges()
{
    QStandardItemModel model;
    fillStandardModel(model);
    QTreeView view;
    view.setModel(&model);
    verifyAgainstReference(&view); // fills whatever the lookups keep

    // Inserted under A1: everything after it moves on by one.
    model.item(0)->child(0)->insertRow(1, new QStandardItem("A1 new"));
    QCOMPARE(getDFSIdx(&view, indexAtPath(&model, "0/0/1")), 3);
    QCOMPARE(getDFSIdx(&view, indexAtPath(&model, "3")), 13);
    verifyAgainstReference(&view);

    // Removed: C and its subtree.
    model.removeRow(2);
    QCOMPARE(getDFSIdx(&view, indexAtPath(&model, "2")), 7);
    QCOMPARE(indexFromDFSIdx(&view, 7).data().toString(), QString("D"));
    verifyAgainstReference(&view);

    // Moved: A's subtree taken out and appended at the end.
    const QList<QStandardItem*> taken = model.takeRow(0);
    model.appendRow(taken);
    QCOMPARE(indexFromDFSIdx(&view, 0).data().toString(), QString("B"));
    QCOMPARE(indexFromDFSIdx(&view, 2).data().toString(), QString("A"));
    verifyAgainstReference(&view);

    // Reordered by sorting (a layout change).
    model.sort(0, Qt::DescendingOrder);
    QCOMPARE(indexFromDFSIdx(&view, 0).data().toString(), QString("D"));
    verifyAgainstReference(&view);

    // Reset.
    model.clear();
    QVERIFY(!indexFromDFSIdx(&view, 0).isValid());
    fillStandardModel(model);
    verifyAgainstReference(&view);

    // A tree widget changed through its items.
    QTreeWidget tree;
    fillTreeWidget(tree, 2);
    verifyAgainstReference(&tree);
    delete tree.topLevelItem(0)->takeChild(0);
    QCOMPARE(getDFSIdx(&tree, indexAtPath(tree.model(), "1")), 2);
    verifyAgainstReference(&tree);
    tree.topLevelItem(1)->addChild(new QTreeWidgetItem(QStringList{"B1"}));
    QCOMPARE(indexFromDFSIdx(&tree, 3).data().toString(), QString("B1"));
    verifyAgainstReference(&tree);
    tree.sortItems(0, Qt::DescendingOrder);
    verifyAgainstReference(&tree);
}

void tst_TreeViewIndex::deepAndWideTrees()
{
    // A long chain: each row the only child of the one before.
    constexpr int Depth = 3000;
    QStandardItemModel deep;
    QStandardItem* parent = deep.invisibleRootItem();
    for (int level = 0; level < Depth; ++level) {
        auto* item = new QStandardItem(QString::number(level));
        parent->appendRow(item);
        parent = item;
    }
    QTreeView deepView;
    deepView.setModel(&deep);
    QCOMPARE(getDFSIdx(&deepView, parent->index()), Depth - 1);
    QCOMPARE(indexFromDFSIdx(&deepView, Depth - 1), parent->index());
    QCOMPARE(indexFromDFSIdx(&deepView, Depth / 2).data().toString(), QString::number(Depth / 2));
    QVERIFY(!indexFromDFSIdx(&deepView, Depth).isValid());

    // Many rows, each with two children, looked up one after another as
    // the dialogs do when they compare two trees.
    constexpr int TopLevelRows = 4000;
    QStandardItemModel wide;
    for (int row = 0; row < TopLevelRows; ++row) {
        auto* item = new QStandardItem(QString::number(row));
        item->appendRow(new QStandardItem(QString("%1.a").arg(row)));
        item->appendRow(new QStandardItem(QString("%1.b").arg(row)));
        wide.appendRow(item);
    }
    QTreeView wideView;
    wideView.setModel(&wide);
    for (int row = 0; row < TopLevelRows; ++row) {
        const QModelIndex second = wide.index(1, 0, wide.index(row, 0));
        QCOMPARE(getDFSIdx(&wideView, second), 3 * row + 2);
        QCOMPARE(indexFromDFSIdx(&wideView, 3 * row + 2), second);
    }
}

QTEST_MAIN(tst_TreeViewIndex)
#include "tst_treeviewindex.moc"
