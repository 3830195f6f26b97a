#include "RecordingObserver.h"
#include "TestTree.h"

#include <referencehost/model/DisplayItem.h>

#include <QtTest>

#include <memory>

using namespace Brennvik;
using Brennvik::Test::RecordedEvent;
using Brennvik::Test::RecordingObserver;

class tst_DisplayItemEventObserver : public QObject
{
    Q_OBJECT

private slots:
    void emptyReferencesAreHarmless();
    void registeringTwiceKeepsOneRegistration();
    void unregisterStopsEvents();
    void destructorUnregistersFromLiveItems();
    void itemDestroyedBeforeObserver();
    void copyStartsUnregistered();
    void assignmentKeepsOwnRegistrations();
    void dispatchSurvivesUnregistration_data();
    void dispatchSurvivesUnregistration();
    void dispatchSurvivesDestruction_data();
    void dispatchSurvivesDestruction();
    void observerRegisteredDuringEventGetsNextEvent();
    void observerReRegisteredDuringEventIsNotCalledTwice();
    void itemDestroyedDuringOwnEvent_data();
    void itemDestroyedDuringOwnEvent();
};

void tst_DisplayItemEventObserver::emptyReferencesAreHarmless()
{
    RecordingObserver observer;
    observer.registerToDisplayItem(nullptr);
    QCOMPARE(observer.registrationCount(), std::size_t(0));
    observer.unregisterFromDisplayItem(nullptr);
    QCOMPARE(observer.registrationCount(), std::size_t(0));

    // An item that is already gone reaches the observer as an empty lock.
    std::weak_ptr<DisplayItemInterface> gone;
    {
        auto item = std::make_shared<DisplayItem>("temporary");
        observer.registerToDisplayItem(item);
        gone = item;
    }
    QCOMPARE(observer.registrationCount(), std::size_t(0));
    observer.unregisterFromDisplayItem(gone.lock());

    // Unregistering from an item never registered to changes nothing.
    auto other = std::make_shared<DisplayItem>("other");
    observer.unregisterFromDisplayItem(other);
    QCOMPARE(other->observerCount(), std::size_t(0));
    QCOMPARE(observer.total(), 0);
}

void tst_DisplayItemEventObserver::registeringTwiceKeepsOneRegistration()
{
    auto item = std::make_shared<DisplayItem>("item");
    RecordingObserver observer;
    observer.registerToDisplayItem(item);
    observer.registerToDisplayItem(item);
    QCOMPARE(item->observerCount(), std::size_t(1));
    QCOMPARE(observer.registrationCount(), std::size_t(1));

    item->notifyVisualPropertiesChanged();
    QCOMPARE(observer.count(RecordedEvent::Type::VisualPropertiesChanged), 1);

    observer.unregisterFromDisplayItem(item);
    QCOMPARE(item->observerCount(), std::size_t(0));
    QCOMPARE(observer.registrationCount(), std::size_t(0));
}

void tst_DisplayItemEventObserver::unregisterStopsEvents()
{
    auto item = std::make_shared<DisplayItem>("item");
    RecordingObserver observer;
    observer.registerToDisplayItem(item);
    item->setDisplayName("renamed");
    observer.unregisterFromDisplayItem(item);
    item->setDisplayName("renamed again");
    item->notifyVisualPropertiesChanged();
    QCOMPARE(observer.total(), 1);
    QCOMPARE(observer.events().front().names, std::vector<std::string>{"renamed"});
}

void tst_DisplayItemEventObserver::destructorUnregistersFromLiveItems()
{
    auto a = std::make_shared<DisplayItem>("a");
    auto b = std::make_shared<DisplayItem>("b");
    auto c = std::make_shared<DisplayItem>("c");
    RecordingObserver survivor;
    survivor.registerToDisplayItem(b);
    {
        RecordingObserver observer;
        observer.registerToDisplayItem(a);
        observer.registerToDisplayItem(b);
        observer.registerToDisplayItem(c);
        QCOMPARE(observer.registrationCount(), std::size_t(3));
        QVERIFY(b->isObservedBy(&observer));
        c.reset(); // one item goes first
        QCOMPARE(observer.registrationCount(), std::size_t(2));
    }
    QCOMPARE(a->observerCount(), std::size_t(0));
    QCOMPARE(b->observerCount(), std::size_t(1));
    QVERIFY(b->isObservedBy(&survivor));
    // The items still raise events without touching the destroyed observer.
    a->notifyVisualPropertiesChanged();
    b->notifyVisualPropertiesChanged();
    QCOMPARE(survivor.count(RecordedEvent::Type::VisualPropertiesChanged), 1);
}

void tst_DisplayItemEventObserver::itemDestroyedBeforeObserver()
{
    RecordingObserver observer;
    {
        auto root = Test::buildTree({"root", {{"a"}, {"b"}}});
        observer.registerToDisplayItem(root);
        observer.registerToDisplayItem(root->childAt(0));
        QCOMPARE(observer.registrationCount(), std::size_t(2));
    }
    QCOMPARE(observer.registrationCount(), std::size_t(0));
    QCOMPARE(observer.total(), 0);
}

void tst_DisplayItemEventObserver::copyStartsUnregistered()
{
    auto item = std::make_shared<DisplayItem>("item");
    RecordingObserver original;
    original.registerToDisplayItem(item);
    RecordingObserver copy(original);
    QCOMPARE(copy.registrationCount(), std::size_t(0));
    QCOMPARE(item->observerCount(), std::size_t(1));
    item->notifyVisualPropertiesChanged();
    QCOMPARE(original.total(), 1);
    QCOMPARE(copy.total(), 0);
}

void tst_DisplayItemEventObserver::assignmentKeepsOwnRegistrations()
{
    auto a = std::make_shared<DisplayItem>("a");
    auto b = std::make_shared<DisplayItem>("b");
    RecordingObserver first;
    RecordingObserver second;
    first.registerToDisplayItem(a);
    second.registerToDisplayItem(b);
    static_cast<DisplayItemEventObserver&>(second) = first;
    QCOMPARE(second.registrationCount(), std::size_t(1));
    QVERIFY(b->isObservedBy(&second));
    QVERIFY(!a->isObservedBy(&second));
    a->notifyVisualPropertiesChanged();
    b->notifyVisualPropertiesChanged();
    QCOMPARE(first.total(), 1);
    QCOMPARE(second.total(), 1);
    QCOMPARE(second.events().front().names, std::vector<std::string>{"b"});
}

// Three observers in registration order; during the first event the acting
// observer unregisters the victim. Expected: how many events each received
// after two notifications.
void tst_DisplayItemEventObserver::dispatchSurvivesUnregistration_data()
{
    QTest::addColumn<int>("actor");
    QTest::addColumn<int>("victim");
    QTest::addColumn<QList<int>>("expectedCounts");

    QTest::newRow("first removes a later one") << 0 << 2 << QList<int>{2, 2, 0};
    QTest::newRow("last removes an earlier one") << 2 << 0 << QList<int>{1, 2, 2};
    QTest::newRow("middle removes itself") << 1 << 1 << QList<int>{2, 1, 2};
    QTest::newRow("first removes the next") << 0 << 1 << QList<int>{2, 0, 2};
}

void tst_DisplayItemEventObserver::dispatchSurvivesUnregistration()
{
    QFETCH(int, actor);
    QFETCH(int, victim);
    QFETCH(QList<int>, expectedCounts);

    auto item = std::make_shared<DisplayItem>("item");
    RecordingObserver observers[3];
    for (auto& observer : observers)
        observer.registerToDisplayItem(item);
    bool done = false;
    observers[actor].setReaction([&](const RecordedEvent&) {
        if (!done) {
            done = true;
            observers[victim].unregisterFromDisplayItem(item);
        }
    });

    item->notifyVisualPropertiesChanged();
    item->notifyVisualPropertiesChanged();

    QList<int> counts;
    for (const auto& observer : observers)
        counts << observer.total();
    QCOMPARE(counts, expectedCounts);
    QCOMPARE(item->observerCount(), std::size_t(2));
}

void tst_DisplayItemEventObserver::dispatchSurvivesDestruction_data()
{
    QTest::addColumn<int>("actor");
    QTest::addColumn<int>("victim");
    QTest::addColumn<QList<int>>("expectedCounts"); // -1: destroyed

    QTest::newRow("first destroys a later one") << 0 << 2 << QList<int>{2, 2, -1};
    QTest::newRow("first destroys the next") << 0 << 1 << QList<int>{2, -1, 2};
    QTest::newRow("middle destroys itself") << 1 << 1 << QList<int>{2, -1, 2};
    QTest::newRow("last destroys the first") << 2 << 0 << QList<int>{-1, 2, 2};
}

void tst_DisplayItemEventObserver::dispatchSurvivesDestruction()
{
    QFETCH(int, actor);
    QFETCH(int, victim);
    QFETCH(QList<int>, expectedCounts);

    auto item = std::make_shared<DisplayItem>("item");
    // Counts live outside the observers so that calls after destruction would show.
    int counts[3] = {0, 0, 0};
    std::unique_ptr<RecordingObserver> observers[3];
    for (int i = 0; i < 3; ++i) {
        observers[i] = std::make_unique<RecordingObserver>();
        observers[i]->registerToDisplayItem(item);
    }
    for (int i = 0; i < 3; ++i) {
        observers[i]->setReaction([&, i](const RecordedEvent&) {
            ++counts[i];
            if (i == actor && observers[victim])
                observers[victim].reset();
        });
    }

    item->setDisplayName("first");
    // A new observer may now reuse the destroyed one's memory: it is called once
    // for its own registration, never for the old one.
    auto latecomer = std::make_unique<RecordingObserver>();
    latecomer->registerToDisplayItem(item);
    item->setDisplayName("second");

    QList<int> result;
    for (int i = 0; i < 3; ++i)
        result << (observers[i] ? counts[i] : -1);
    QCOMPARE(result, expectedCounts);
    // The destroyed observer received the first event only if it came before (or was) the actor.
    QCOMPARE(counts[victim], victim <= actor ? 1 : 0);
    QCOMPARE(latecomer->total(), 1);
    QCOMPARE(item->observerCount(), std::size_t(3));
}

void tst_DisplayItemEventObserver::observerRegisteredDuringEventGetsNextEvent()
{
    auto item = std::make_shared<DisplayItem>("item");
    RecordingObserver first;
    RecordingObserver late;
    first.registerToDisplayItem(item);
    first.setReaction([&](const RecordedEvent&) { late.registerToDisplayItem(item); });

    item->notifyVisualPropertiesChanged();
    QCOMPARE(first.total(), 1);
    QCOMPARE(late.total(), 0);
    QCOMPARE(item->observerCount(), std::size_t(2));

    item->notifyVisualPropertiesChanged();
    QCOMPARE(first.total(), 2);
    QCOMPARE(late.total(), 1);
}

void tst_DisplayItemEventObserver::observerReRegisteredDuringEventIsNotCalledTwice()
{
    // Unregister and register again during the same event: the new registration
    // starts with the next event, and the old one is gone.
    auto item = std::make_shared<DisplayItem>("item");
    RecordingObserver first;
    RecordingObserver flipper;
    first.registerToDisplayItem(item);
    flipper.registerToDisplayItem(item);
    first.setReaction([&](const RecordedEvent&) {
        flipper.unregisterFromDisplayItem(item);
        flipper.registerToDisplayItem(item);
    });
    item->notifyVisualPropertiesChanged();
    QCOMPARE(flipper.total(), 0);
    first.setReaction({});
    item->notifyVisualPropertiesChanged();
    QCOMPARE(flipper.total(), 1);
}

void tst_DisplayItemEventObserver::itemDestroyedDuringOwnEvent_data()
{
    QTest::addColumn<QString>("trigger");
    QTest::newRow("visual properties") << "visual";
    QTest::newRow("properties") << "properties";
    QTest::newRow("child added") << "added";
    QTest::newRow("child removed") << "removed";
}

void tst_DisplayItemEventObserver::itemDestroyedDuringOwnEvent()
{
    QFETCH(QString, trigger);

    auto root = Test::buildTree({"root", {{"doomed", {{"inner"}}}}});
    std::weak_ptr<DisplayItem> doomed = root->childAt(0);
    DisplayItem* raw = doomed.lock().get();
    auto extra = std::make_shared<DisplayItem>("extra");
    if (trigger == "removed")
        raw->appendChild(extra);

    RecordingObserver remover;
    RecordingObserver after;
    remover.registerToDisplayItem(doomed.lock());
    after.registerToDisplayItem(doomed.lock());
    // The tree holds the only strong reference; the remover drops it.
    remover.setReaction([&](const RecordedEvent&) {
        if (auto item = doomed.lock())
            root->removeChild(item, false);
    });
    QCOMPARE(doomed.use_count(), 1L);

    if (trigger == "visual")
        raw->notifyVisualPropertiesChanged();
    else if (trigger == "properties")
        raw->setDisplayName("renamed");
    else if (trigger == "added")
        raw->appendChild(std::make_shared<DisplayItem>("new"));
    else
        raw->removeChild(extra, false);

    QVERIFY(doomed.expired());
    QCOMPARE(remover.total(), 1);
    QCOMPARE(after.total(), 1); // the dispatch went on to the next observer
    QCOMPARE(remover.registrationCount(), std::size_t(0));
    QCOMPARE(root->childCount(), std::size_t(0));
}

QTEST_GUILESS_MAIN(tst_DisplayItemEventObserver)
#include "tst_displayitemeventobserver.moc"
