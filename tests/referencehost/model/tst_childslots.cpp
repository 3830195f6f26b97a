#include <referencehost/model/ChildSlots.h>
#include <referencehost/model/DisplayItem.h>

#include <QtTest>

#include <vector>

using namespace Brennvik;

namespace {

std::vector<std::shared_ptr<DisplayItem>> makeItems(int count)
{
    std::vector<std::shared_ptr<DisplayItem>> items;
    for (int i = 0; i < count; ++i)
        items.push_back(std::make_shared<DisplayItem>("child " + std::to_string(i)));
    return items;
}

QStringList names(const ChildSlots::Items& items)
{
    QStringList list;
    for (const auto& item : items)
        list << (item ? QString::fromStdString(item->getDisplayName()) : QStringLiteral("-"));
    return list;
}

} // namespace

class tst_ChildSlots : public QObject
{
    Q_OBJECT

private slots:
    void noChildrenHasNothing();
    void insertKeepsOrderAndClampsTheIndex();
    void takingLeavesEmptySlotsThatReadsClose_data();
    void takingLeavesEmptySlotsThatReadsClose();
    void takeAllEmptiesTheSlots();
};

void tst_ChildSlots::noChildrenHasNothing()
{
    ChildSlots children;
    children.reserveMore(0);
    QCOMPARE(children.count(), std::size_t(0));
    QVERIFY(children.items().empty());
    QVERIFY(children.slotList().empty());
    const auto stranger = std::make_shared<DisplayItem>("stranger");
    QCOMPARE(children.indexOf(stranger.get()), -1);
    QCOMPARE(children.slotOf(nullptr), -1);
    QVERIFY(children.takeAll().empty());
}

void tst_ChildSlots::insertKeepsOrderAndClampsTheIndex()
{
    const auto items = makeItems(4);
    ChildSlots children;
    children.reserveMore(3);
    children.append(items[1]);
    children.insert(0, items[0]);
    children.insert(99, items[3]);
    children.insert(2, items[2]);
    QCOMPARE(names(children.items()), (QStringList{"child 0", "child 1", "child 2", "child 3"}));
    QCOMPARE(children.count(), std::size_t(4));
    for (int i = 0; i < 4; ++i)
        QCOMPARE(children.indexOf(items[static_cast<std::size_t>(i)].get()), i);
}

void tst_ChildSlots::takingLeavesEmptySlotsThatReadsClose_data()
{
    QTest::addColumn<QList<int>>("taken");       // children by their first position, in the order taken
    QTest::addColumn<QStringList>("slotsAfter"); // before any read closes them; "-" is an empty slot
    QTest::addColumn<QStringList>("itemsAfter");

    QTest::newRow("one in the middle") << QList<int>{2} << QStringList{"child 0", "child 1", "-", "child 3", "child 4"}
                                       << QStringList{"child 0", "child 1", "child 3", "child 4"};
    QTest::newRow("the last one: its slot goes at once")
        << QList<int>{4} << QStringList{"child 0", "child 1", "child 2", "child 3"}
        << QStringList{"child 0", "child 1", "child 2", "child 3"};
    QTest::newRow("empty slots before the last go with it")
        << QList<int>{3, 4} << QStringList{"child 0", "child 1", "child 2"}
        << QStringList{"child 0", "child 1", "child 2"};
    QTest::newRow("more than half empty: closed at once")
        << QList<int>{0, 1, 2} << QStringList{"child 3", "child 4"} << QStringList{"child 3", "child 4"};
    QTest::newRow("all of them") << QList<int>{1, 0, 3, 2, 4} << QStringList{} << QStringList{};
}

void tst_ChildSlots::takingLeavesEmptySlotsThatReadsClose()
{
    QFETCH(QList<int>, taken);
    QFETCH(QStringList, slotsAfter);
    QFETCH(QStringList, itemsAfter);

    const auto items = makeItems(5);
    ChildSlots children;
    for (const auto& item : items)
        children.append(item);
    for (const int index : taken) {
        const DisplayItem* child = items[static_cast<std::size_t>(index)].get();
        const int slot = children.slotOf(child);
        QVERIFY(slot >= 0);
        QCOMPARE(children.take(static_cast<std::size_t>(slot)).get(), child);
        QCOMPARE(children.slotOf(child), -1);
    }
    QCOMPARE(children.count(), std::size_t(itemsAfter.size()));
    QCOMPARE(names(children.slotList()), slotsAfter);
    QCOMPARE(names(children.items()), itemsAfter);
    QCOMPARE(names(children.slotList()), itemsAfter);
}

void tst_ChildSlots::takeAllEmptiesTheSlots()
{
    const auto items = makeItems(3);
    ChildSlots children;
    for (const auto& item : items)
        children.append(item);
    children.take(static_cast<std::size_t>(children.slotOf(items[1].get())));
    QCOMPARE(names(children.takeAll()), (QStringList{"child 0", "-", "child 2"}));
    QCOMPARE(children.count(), std::size_t(0));
    QVERIFY(children.slotList().empty());
    children.append(items[1]);
    QCOMPARE(names(children.items()), QStringList{"child 1"});
}

QTEST_GUILESS_MAIN(tst_ChildSlots)
#include "tst_childslots.moc"
