// Taking a child row out by its display item: the first matching row goes,
// whether the parent is narrow (scanned) or wide (indexed), and the index
// stays right while rows are appended, taken elsewhere or shown twice.

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/DisplayItem.h>

#include <QTest>
#include <QTreeWidget>

#include <memory>
#include <string>
#include <vector>

using namespace Brennvik;

namespace {

// A QTreeWidgetItem that is not a display item row, as edit-model rows are.
class ForeignRow : public QTreeWidgetItem
{
public:
    explicit ForeignRow(QTreeWidgetItem* parent)
        : QTreeWidgetItem(parent, QTreeWidgetItem::UserType)
    {
        setText(0, QStringLiteral("foreign"));
    }
};

struct Wide
{
    std::vector<std::shared_ptr<DisplayItem>> items;
    DisplayItemTreeWidgetItem* parentRow = nullptr;
};

// \a count rows under one parent row, row i showing items[i].
Wide makeWide(QTreeWidget* tree, int count)
{
    Wide wide;
    wide.parentRow = new DisplayItemTreeWidgetItem(tree, std::make_shared<DisplayItem>("parent"), nullptr, false);
    for (int i = 0; i < count; ++i) {
        wide.items.push_back(std::make_shared<DisplayItem>("item " + std::to_string(i)));
        new DisplayItemTreeWidgetItem(wide.parentRow, wide.items.back(), nullptr, false);
    }
    return wide;
}

DisplayItemTreeWidgetItem* rowAt(QTreeWidgetItem* parent, int index)
{
    return dynamic_cast<DisplayItemTreeWidgetItem*>(parent->child(index));
}

// Takes the row of \a item and checks it is the row that was at \a expectedPosition.
void takeAndCheck(DisplayItemTreeWidgetItem* parentRow, const std::shared_ptr<DisplayItem>& item, int expectedPosition)
{
    const int before = parentRow->childCount();
    QTreeWidgetItem* expected = parentRow->child(expectedPosition);
    QTreeWidgetItem* taken = parentRow->takeFirstChildShowing(item);
    QCOMPARE(taken, expected);
    QVERIFY(taken->parent() == nullptr);
    QCOMPARE(parentRow->childCount(), before - 1);
    delete taken;
}

} // namespace

class tst_DisplayItemTreeWidgetItemChildren : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void takesTheRowOfTheItem_data();
    void takesTheRowOfTheItem();
    void onlyTheFirstOfTwoRowsGoes_data();
    void onlyTheFirstOfTwoRowsGoes();
    void itemWithoutRowTakesNothing_data();
    void itemWithoutRowTakesNothing();
    void appendedRowsAreFound();
    void rowsTakenElsewhereAreNotReturned();
    void rowOfGoneItemNeverMatches();
    void foreignRowsAreSkipped();
    void runOfRemovalsKeepsOrder();
    void scatteredRemovalsTakeTheRightRows();

private:
    std::unique_ptr<QTreeWidget> m_tree;
};

void tst_DisplayItemTreeWidgetItemChildren::init()
{
    m_tree = std::make_unique<QTreeWidget>();
}

void tst_DisplayItemTreeWidgetItemChildren::cleanup()
{
    m_tree.reset();
}

void tst_DisplayItemTreeWidgetItemChildren::takesTheRowOfTheItem_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("position");
    QTest::newRow("narrow, first") << 10 << 0;
    QTest::newRow("narrow, last") << 10 << 9;
    QTest::newRow("wide, first") << 1000 << 0;
    QTest::newRow("wide, middle") << 1000 << 517;
    QTest::newRow("wide, last") << 1000 << 999;
}

void tst_DisplayItemTreeWidgetItemChildren::takesTheRowOfTheItem()
{
    QFETCH(int, count);
    QFETCH(int, position);
    Wide wide = makeWide(m_tree.get(), count);
    takeAndCheck(wide.parentRow, wide.items[position], position);
    // Taken once, the item has no row left under the parent.
    QVERIFY(!wide.parentRow->takeFirstChildShowing(wide.items[position]));
    QCOMPARE(wide.parentRow->childCount(), count - 1);
}

void tst_DisplayItemTreeWidgetItemChildren::onlyTheFirstOfTwoRowsGoes_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("narrow") << 10;
    QTest::newRow("wide") << 1000;
}

void tst_DisplayItemTreeWidgetItemChildren::onlyTheFirstOfTwoRowsGoes()
{
    QFETCH(int, count);
    Wide wide = makeWide(m_tree.get(), count);
    // Item 3 gets a second row at the end, as a duplicate row would be.
    auto* second = new DisplayItemTreeWidgetItem(wide.parentRow, wide.items[3], nullptr, true);

    takeAndCheck(wide.parentRow, wide.items[3], 3);
    QCOMPARE(wide.parentRow->child(wide.parentRow->childCount() - 1), second);
    // The next removal of the same item finds the second row.
    QCOMPARE(wide.parentRow->takeFirstChildShowing(wide.items[3]), second);
    delete second;
    QVERIFY(!wide.parentRow->takeFirstChildShowing(wide.items[3]));
    QCOMPARE(wide.parentRow->childCount(), count - 1);
}

void tst_DisplayItemTreeWidgetItemChildren::itemWithoutRowTakesNothing_data()
{
    onlyTheFirstOfTwoRowsGoes_data();
}

void tst_DisplayItemTreeWidgetItemChildren::itemWithoutRowTakesNothing()
{
    QFETCH(int, count);
    Wide wide = makeWide(m_tree.get(), count);
    QVERIFY(!wide.parentRow->takeFirstChildShowing(std::make_shared<DisplayItem>("stranger")));
    QVERIFY(!wide.parentRow->takeFirstChildShowing(nullptr));
    // A grandchild is not a direct child.
    auto grandchild = std::make_shared<DisplayItem>("grandchild");
    new DisplayItemTreeWidgetItem(wide.parentRow->child(1), grandchild, nullptr, false);
    QVERIFY(!wide.parentRow->takeFirstChildShowing(grandchild));
    QCOMPARE(wide.parentRow->childCount(), count);
}

void tst_DisplayItemTreeWidgetItemChildren::appendedRowsAreFound()
{
    Wide wide = makeWide(m_tree.get(), 1000);
    takeAndCheck(wide.parentRow, wide.items[10], 10); // builds the index

    auto late = std::make_shared<DisplayItem>("late");
    auto* lateRow = new DisplayItemTreeWidgetItem(wide.parentRow, late, nullptr, false);
    // A second row of an indexed item, appended after the index was built.
    auto* secondOf20 = new DisplayItemTreeWidgetItem(wide.parentRow, wide.items[20], nullptr, false);

    QCOMPARE(wide.parentRow->takeFirstChildShowing(late), lateRow);
    delete lateRow;
    takeAndCheck(wide.parentRow, wide.items[20], 19);
    QCOMPARE(wide.parentRow->takeFirstChildShowing(wide.items[20]), secondOf20);
    delete secondOf20;
}

void tst_DisplayItemTreeWidgetItemChildren::rowsTakenElsewhereAreNotReturned()
{
    Wide wide = makeWide(m_tree.get(), 1000);
    takeAndCheck(wide.parentRow, wide.items[0], 0); // builds the index

    // Row of item 500 taken and deleted behind the index's back, and a new
    // row of item 500 appended: the count is what it was.
    delete wide.parentRow->takeChild(499);
    auto* replacement = new DisplayItemTreeWidgetItem(wide.parentRow, wide.items[500], nullptr, false);
    QCOMPARE(wide.parentRow->takeFirstChildShowing(wide.items[500]), replacement);
    delete replacement;

    // A row deleted outright shrinks the list; its item is no longer found.
    delete wide.parentRow->child(600); // shows item 602
    QVERIFY(!wide.parentRow->takeFirstChildShowing(wide.items[602]));
    takeAndCheck(wide.parentRow, wide.items[603], 600);
}

void tst_DisplayItemTreeWidgetItemChildren::rowOfGoneItemNeverMatches()
{
    Wide wide = makeWide(m_tree.get(), 1000);
    takeAndCheck(wide.parentRow, wide.items[0], 0);                 // builds the index
    DisplayItemTreeWidgetItem* goneRow = rowAt(wide.parentRow, 41); // item 42
    wide.items[42].reset();
    QVERIFY(!goneRow->getDisplayItem());
    // Items made now may reuse the gone item's memory; none of them matches its row.
    for (int i = 0; i < 50; ++i) {
        auto fresh = std::make_shared<DisplayItem>("fresh");
        QVERIFY(!wide.parentRow->takeFirstChildShowing(fresh));
    }
    QCOMPARE(rowAt(wide.parentRow, 41), goneRow);
    QCOMPARE(wide.parentRow->childCount(), 999);
}

void tst_DisplayItemTreeWidgetItemChildren::foreignRowsAreSkipped()
{
    Wide wide = makeWide(m_tree.get(), 1000);
    new ForeignRow(wide.parentRow);
    auto tail = std::make_shared<DisplayItem>("tail");
    auto* tailRow = new DisplayItemTreeWidgetItem(wide.parentRow, tail, nullptr, false);
    QCOMPARE(wide.parentRow->takeFirstChildShowing(tail), tailRow);
    delete tailRow;
    QCOMPARE(wide.parentRow->child(1000)->text(0), QStringLiteral("foreign"));
}

void tst_DisplayItemTreeWidgetItemChildren::runOfRemovalsKeepsOrder()
{
    // Every third row goes, from the back and then from the front; the rows
    // left are exactly the others, in their order.
    Wide wide = makeWide(m_tree.get(), 900);
    std::vector<bool> kept(900, true);
    for (int i = 899; i >= 0; i -= 3) {
        QTreeWidgetItem* taken = wide.parentRow->takeFirstChildShowing(wide.items[i]);
        QVERIFY(taken);
        delete taken;
        kept[i] = false;
    }
    for (int i = 1; i < 900; i += 3) {
        QTreeWidgetItem* taken = wide.parentRow->takeFirstChildShowing(wide.items[i]);
        QVERIFY(taken);
        delete taken;
        kept[i] = false;
    }
    int position = 0;
    for (int i = 0; i < 900; ++i) {
        if (!kept[i])
            continue;
        DisplayItemTreeWidgetItem* row = rowAt(wide.parentRow, position++);
        QVERIFY(row);
        QCOMPARE(row->getDisplayItem(), std::static_pointer_cast<DisplayItemInterface>(wide.items[i]));
    }
    QCOMPARE(wide.parentRow->childCount(), position);
    QCOMPARE(position, 300);
}

void tst_DisplayItemTreeWidgetItemChildren::scatteredRemovalsTakeTheRightRows()
{
    // Jumps back and forth across the list, far from where the last row was
    // taken, so that the search for the row's position has to go both ways.
    Wide wide = makeWide(m_tree.get(), 900);
    for (int step = 0; step < 300; ++step) {
        const std::shared_ptr<DisplayItem>& item
            = wide.items[static_cast<std::size_t>((step * 7 + (step % 2) * 450) % 900)];
        int expected = -1;
        for (int i = 0; i < wide.parentRow->childCount() && expected < 0; ++i) {
            if (rowAt(wide.parentRow, i)->getDisplayItem() == std::static_pointer_cast<DisplayItemInterface>(item))
                expected = i;
        }
        QVERIFY2(expected >= 0, qPrintable(QString("step %1").arg(step)));
        takeAndCheck(wide.parentRow, item, expected);
        if (QTest::currentTestFailed())
            return;
    }
    QCOMPARE(wide.parentRow->childCount(), 600);
}

QTEST_MAIN(tst_DisplayItemTreeWidgetItemChildren)
#include "tst_displayitemtreewidgetitem_children.moc"
