#include "RecordingObserver.h"
#include "TestTree.h"

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/DisplayItemCloner.h>

#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <numeric>
#include <stdexcept>

using namespace Brennvik;
using Brennvik::Test::RecordedEvent;
using Brennvik::Test::RecordingObserver;

Q_DECLARE_METATYPE(RecordedEvent::Type)

namespace {

QStringList names(const std::vector<std::string>& texts)
{
    QStringList list;
    for (const auto& text : texts)
        list << QString::fromStdString(text);
    return list;
}

// "name=value" texts as a property list; a text without "=" is a name with an empty value.
PropertyList propertyList(const QStringList& texts)
{
    PropertyList list;
    for (const QString& text : texts) {
        const int split = text.indexOf('=');
        list.emplace_back(text.left(split).toStdString(),
                          split < 0 ? std::string() : text.mid(split + 1).toStdString());
    }
    return list;
}

QStringList names(const DisplayItemList& items)
{
    QStringList list;
    for (const auto& item : items)
        list << QString::fromStdString(item->getDisplayName());
    return list;
}

} // namespace

class tst_DisplayItem : public QObject
{
    Q_OBJECT

private slots:
    void eventsAreRaisedInsideTheCall_data();
    void eventsAreRaisedInsideTheCall();
    void structure();
    void insertChildPositions_data();
    void insertChildPositions();
    void movingAChildReparentsIt();
    void indexOfChildInAnyOrder_data();
    void indexOfChildInAnyOrder();
    void removedChildrenLeaveNoTrace_data();
    void removedChildrenLeaveNoTrace();
    void invalidChildrenAreRefused();
    void removeChildResults();
    void removeChildrenRaisesOneEvent();
    void childrenLoseTheirParentWithIt();
    void resourcesFollowKeepResources();
    void visibilityAndSelectionRaiseNothing();
    void visualNotificationCount();
    void getPropertiesContents();
    void propertiesReplaceInPlace();
    void bulkPropertiesAsSingleSets_data();
    void bulkPropertiesAsSingleSets();
    void numberOfDisplayItems_data();
    void numberOfDisplayItems();
    void collectSubtreeIsPreOrder();
    void descriptionNamesTypeAndPath();
    void copyWithoutChildren();
};

void tst_DisplayItem::eventsAreRaisedInsideTheCall_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<RecordedEvent::Type>("type");
    QTest::addColumn<QStringList>("carried");
    QTest::addColumn<QString>("shapeAfter");

    using T = RecordedEvent::Type;
    QTest::newRow("appendChild") << "appendChild" << T::ItemsAdded << QStringList{"new"} << "root(a,b,new)";
    QTest::newRow("insertChild") << "insertChild" << T::ItemsAdded << QStringList{"new"} << "root(a,new,b)";
    QTest::newRow("appendChildren") << "appendChildren" << T::ItemsAdded << QStringList{"n1", "n2"}
                                    << "root(a,b,n1,n2)";
    QTest::newRow("removeChild") << "removeChild" << T::ItemsRemoved << QStringList{"a"} << "root(b)";
    QTest::newRow("removeChildren") << "removeChildren" << T::ItemsRemoved << QStringList{"a", "b"} << "root";
    QTest::newRow("setDisplayName") << "setDisplayName" << T::PropertiesChanged << QStringList{"renamed"}
                                    << "renamed(a,b)";
    QTest::newRow("setBusinessProperty") << "setBusinessProperty" << T::PropertiesChanged << QStringList{"root"}
                                         << "root(a,b)";
    QTest::newRow("setDisplayProperty") << "setDisplayProperty" << T::PropertiesChanged << QStringList{"root"}
                                        << "root(a,b)";
    QTest::newRow("notifyPropertiesChanged")
        << "notifyPropertiesChanged" << T::PropertiesChanged << QStringList{"root"} << "root(a,b)";
    QTest::newRow("notifyVisualPropertiesChanged")
        << "notifyVisualPropertiesChanged" << T::VisualPropertiesChanged << QStringList{"root"} << "root(a,b)";
}

void tst_DisplayItem::eventsAreRaisedInsideTheCall()
{
    QFETCH(QString, action);
    QFETCH(RecordedEvent::Type, type);
    QFETCH(QStringList, carried);
    QFETCH(QString, shapeAfter);

    auto root = Test::buildTree({"root", {{"a"}, {"b"}}});
    RecordingObserver observer;
    RecordingObserver childObserver;
    observer.registerToDisplayItem(root);
    childObserver.registerToDisplayItem(root->childAt(0));

    bool insideCall = false;
    bool receivedInsideCall = false;
    QString shapeAtEvent;
    observer.setReaction([&](const RecordedEvent&) {
        receivedInsideCall = insideCall;
        // The change is complete when observers hear of it.
        shapeAtEvent = QString::fromStdString(Test::treeShape(root));
    });

    insideCall = true;
    if (action == "appendChild")
        root->appendChild(std::make_shared<DisplayItem>("new"));
    else if (action == "insertChild")
        root->insertChild(1, std::make_shared<DisplayItem>("new"));
    else if (action == "appendChildren")
        root->appendChildren({std::make_shared<DisplayItem>("n1"), std::make_shared<DisplayItem>("n2")});
    else if (action == "removeChild")
        QCOMPARE(root->removeChild(root->childAt(0), false), RemoveChildResult::Removed);
    else if (action == "removeChildren")
        QCOMPARE(root->removeChildren({root->childAt(0), root->childAt(1)}), std::size_t(2));
    else if (action == "setDisplayName")
        root->setDisplayName("renamed");
    else if (action == "setBusinessProperty")
        root->setBusinessProperty("material", "DC04");
    else if (action == "setDisplayProperty")
        root->setDisplayProperty("color", "#ff0000");
    else if (action == "notifyPropertiesChanged")
        root->notifyPropertiesChanged();
    else if (action == "notifyVisualPropertiesChanged")
        root->notifyVisualPropertiesChanged();
    else
        QFAIL("unknown action");
    insideCall = false;

    QCOMPARE(observer.total(), 1);
    QVERIFY(receivedInsideCall);
    const RecordedEvent& event = observer.events().front();
    QCOMPARE(event.type, type);
    QStringList received = names(event.names);
    if (type == RecordedEvent::Type::ItemsRemoved)
        received.sort(); // a set has no meaningful order
    QCOMPARE(received, carried);
    if (type == RecordedEvent::Type::PropertiesChanged || type == RecordedEvent::Type::VisualPropertiesChanged)
        QCOMPARE(event.items.front(), static_cast<const DisplayItemInterface*>(root.get()));
    QCOMPARE(shapeAtEvent, shapeAfter);
    QCOMPARE(QString::fromStdString(Test::treeShape(root)), shapeAfter);
    // Only the changed item's observers hear of it.
    QCOMPARE(childObserver.total(), 0);
}

void tst_DisplayItem::structure()
{
    auto root = Test::buildTree({"root", {{"a", {{"a1"}, {"a2"}}}, {"b"}}});
    QCOMPARE(root->childCount(), std::size_t(2));
    QCOMPARE(root->getParent(), nullptr);
    const auto a = root->childAt(0);
    QCOMPARE(a->getParent(), static_cast<DisplayItemInterface*>(root.get()));
    QCOMPARE(a->parentItem(), root.get());
    QCOMPARE(a->childAt(1)->getDisplayName(), std::string("a2"));
    QCOMPARE(root->childAt(5), nullptr);
    QCOMPARE(root->indexOfChild(root->childAt(1).get()), 1);
    QCOMPARE(root->indexOfChild(a->childAt(0).get()), -1);
    QCOMPARE(names(root->getChildren()), (QStringList{"a", "b"}));
    QCOMPARE(root->findByDisplayName("a2"), a->childAt(1));
    QCOMPARE(root->findByDisplayName("missing"), nullptr);
    QCOMPARE(a->childAt(1)->path(), std::string("root/a/a2"));
}

void tst_DisplayItem::insertChildPositions_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("shape");
    QTest::newRow("front") << 0 << "root(new,a,b)";
    QTest::newRow("middle") << 1 << "root(a,new,b)";
    QTest::newRow("end") << 2 << "root(a,b,new)";
}

void tst_DisplayItem::insertChildPositions()
{
    QFETCH(int, index);
    QFETCH(QString, shape);
    auto root = Test::buildTree({"root", {{"a"}, {"b"}}});
    root->insertChild(static_cast<std::size_t>(index), std::make_shared<DisplayItem>("new"));
    QCOMPARE(QString::fromStdString(Test::treeShape(root)), shape);
    QVERIFY_EXCEPTION_THROWN(root->insertChild(4, std::make_shared<DisplayItem>("late")), std::out_of_range);
    QCOMPARE(QString::fromStdString(Test::treeShape(root)), shape);
}

void tst_DisplayItem::indexOfChildInAnyOrder_data()
{
    QTest::addColumn<QString>("order");
    QTest::addColumn<int>("removeEvery");
    QTest::addColumn<int>("insertFrontEvery");

    QTest::newRow("forwards") << "forwards" << 0 << 0;
    QTest::newRow("backwards") << "backwards" << 0 << 0;
    QTest::newRow("scattered") << "scattered" << 0 << 0;
    QTest::newRow("forwards, removing every third") << "forwards" << 3 << 0;
    QTest::newRow("backwards, removing every third") << "backwards" << 3 << 0;
    QTest::newRow("scattered, removing every third") << "scattered" << 3 << 0;
    QTest::newRow("forwards, inserting at the front") << "forwards" << 0 << 4;
    QTest::newRow("backwards, removing and inserting") << "backwards" << 2 << 5;
}

void tst_DisplayItem::indexOfChildInAnyOrder()
{
    QFETCH(QString, order);
    QFETCH(int, removeEvery);
    QFETCH(int, insertFrontEvery);

    const int count = 40;
    auto parent = std::make_shared<DisplayItem>("parent");
    std::vector<std::shared_ptr<DisplayItem>> children;
    for (int i = 0; i < count; ++i)
        children.push_back(std::make_shared<DisplayItem>("c" + std::to_string(i)));
    parent->appendChildren(children);

    std::vector<int> visits(count);
    std::iota(visits.begin(), visits.end(), 0);
    if (order == "backwards")
        std::reverse(visits.begin(), visits.end());
    else if (order == "scattered")
        std::transform(visits.begin(), visits.end(), visits.begin(), [](int i) { return (i * 17) % count; });

    // Each child is looked up twice in a row and then once more after the
    // list has changed; the answer must be its real position every time.
    int step = 0;
    for (const int visit : visits) {
        const std::shared_ptr<DisplayItem>& child = children[static_cast<std::size_t>(visit)];
        const auto& list = parent->children();
        const int position = static_cast<int>(std::find(list.begin(), list.end(), child) - list.begin());
        QCOMPARE(parent->indexOfChild(child.get()), position);
        QCOMPARE(parent->indexOfChild(child.get()), position);
        ++step;
        if (removeEvery > 0 && step % removeEvery == 0) {
            QCOMPARE(parent->removeChild(child, false), RemoveChildResult::Removed);
            QCOMPARE(parent->indexOfChild(child.get()), -1);
        }
        if (insertFrontEvery > 0 && step % insertFrontEvery == 0)
            parent->insertChild(0, std::make_shared<DisplayItem>("front " + std::to_string(step)));
    }
    for (const auto& child : children) {
        const auto& list = parent->children();
        const auto it = std::find(list.begin(), list.end(), child);
        QCOMPARE(parent->indexOfChild(child.get()), it == list.end() ? -1 : static_cast<int>(it - list.begin()));
    }
    const auto stranger = std::make_shared<DisplayItem>("stranger");
    QCOMPARE(parent->indexOfChild(stranger.get()), -1);
    QCOMPARE(parent->indexOfChild(nullptr), -1);
    QCOMPARE(std::make_shared<DisplayItem>("empty")->indexOfChild(children.front().get()), -1);
}

void tst_DisplayItem::removedChildrenLeaveNoTrace_data()
{
    QTest::addColumn<QList<int>>("removed");

    QTest::newRow("none") << QList<int>{};
    QTest::newRow("every third from the front") << QList<int>{0, 3, 6, 9};
    QTest::newRow("from the back") << QList<int>{11, 10, 9};
    QTest::newRow("the last only") << QList<int>{11};
    QTest::newRow("more than half") << QList<int>{1, 2, 3, 5, 6, 7, 8};
    QTest::newRow("all but one") << QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 11};
    QTest::newRow("all") << QList<int>{4, 0, 11, 1, 2, 3, 5, 6, 7, 8, 9, 10};
}

void tst_DisplayItem::removedChildrenLeaveNoTrace()
{
    QFETCH(QList<int>, removed);

    // Each child has a child of its own, so that counts and walks reach below.
    auto parent = std::make_shared<DisplayItem>("parent");
    std::vector<std::shared_ptr<DisplayItem>> children;
    for (int i = 0; i < 12; ++i) {
        children.push_back(std::make_shared<DisplayItem>("c" + std::to_string(i)));
        children.back()->appendChild(std::make_shared<DisplayItem>("g" + std::to_string(i)));
    }
    parent->appendChildren(children);
    std::vector<std::shared_ptr<DisplayItem>> expected = children;
    for (const int index : removed) {
        const auto child = children[static_cast<std::size_t>(index)];
        QCOMPARE(parent->removeChild(child, false), RemoveChildResult::Removed);
        QCOMPARE(child->getParent(), nullptr);
        expected.erase(std::find(expected.begin(), expected.end(), child));
        QCOMPARE(parent->childCount(), expected.size());
    }

    // Every read sees exactly the children that are left, in their order.
    QCOMPARE(parent->children(), expected);
    QCOMPARE(parent->getChildren(), DisplayItemList(expected.begin(), expected.end()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        QCOMPARE(parent->childAt(i), expected[i]);
        QCOMPARE(parent->indexOfChild(expected[i].get()), static_cast<int>(i));
    }
    QCOMPARE(parent->childAt(expected.size()), nullptr);
    QCOMPARE(parent->getNumberOfDisplayItems(), std::uint64_t(1 + 2 * expected.size()));
    DisplayItemList subtree;
    parent->collectSubtree(subtree);
    QCOMPARE(subtree.size(), 1 + 2 * expected.size());
    for (const int index : removed) {
        QCOMPARE(parent->indexOfChild(children[static_cast<std::size_t>(index)].get()), -1);
        QCOMPARE(parent->findByDisplayName("c" + std::to_string(index)), nullptr);
    }
    QCOMPARE(parent->removeChild(children[static_cast<std::size_t>(removed.value(0, 0))], false),
             removed.isEmpty() ? RemoveChildResult::Removed : RemoveChildResult::NotAChild);
    if (removed.isEmpty())
        expected.erase(expected.begin());

    // A copy of the tree has no trace of them either.
    DisplayItemCloner cloner(std::vector<CloneDefect>{});
    const auto copy = cloner.cloneTree(parent, false);
    QCOMPARE(copy->childCount(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        QCOMPARE(copy->childAt(i)->getDisplayName(), expected[i]->getDisplayName());

    // Positions for insertion are those of the children left.
    const auto inserted = std::make_shared<DisplayItem>("inserted");
    parent->insertChild(std::min<std::size_t>(1, expected.size()), inserted);
    expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(1, expected.size())),
                    inserted);
    const auto appended = std::make_shared<DisplayItem>("appended");
    parent->appendChild(appended);
    expected.push_back(appended);
    QVERIFY_EXCEPTION_THROWN(parent->insertChild(expected.size() + 1, std::make_shared<DisplayItem>("far")),
                             std::out_of_range);
    QCOMPARE(parent->children(), expected);
    QCOMPARE(inserted->getParent(), static_cast<DisplayItemInterface*>(parent.get()));
}

void tst_DisplayItem::movingAChildReparentsIt()
{
    auto root = Test::buildTree({"root", {{"a", {{"x"}}}, {"b"}}});
    const auto a = root->childAt(0);
    const auto b = root->childAt(1);
    const auto x = a->childAt(0);
    RecordingObserver aObserver;
    RecordingObserver bObserver;
    aObserver.registerToDisplayItem(a);
    bObserver.registerToDisplayItem(b);

    b->appendChild(x);
    QCOMPARE(QString::fromStdString(Test::treeShape(root)), QString("root(a,b(x))"));
    QCOMPARE(x->parentItem(), b.get());
    QCOMPARE(aObserver.count(RecordedEvent::Type::ItemsRemoved), 1);
    QCOMPARE(bObserver.count(RecordedEvent::Type::ItemsAdded), 1);
    // Moving keeps the resources: the item is drawn again at once.
    QVERIFY(!x->resourcesReleased());

    // Moving within one parent.
    root->insertChild(0, b);
    QCOMPARE(QString::fromStdString(Test::treeShape(root)), QString("root(b(x),a)"));
    root->insertChild(2, b);
    QCOMPARE(QString::fromStdString(Test::treeShape(root)), QString("root(a,b(x))"));
}

void tst_DisplayItem::invalidChildrenAreRefused()
{
    auto root = Test::buildTree({"root", {{"a", {{"a1"}}}}});
    const auto a = root->childAt(0);
    RecordingObserver observer;
    observer.registerToDisplayItem(a);
    QVERIFY_EXCEPTION_THROWN(a->appendChild(nullptr), std::invalid_argument);
    QVERIFY_EXCEPTION_THROWN(a->appendChild(a), std::invalid_argument);
    QVERIFY_EXCEPTION_THROWN(a->appendChild(root), std::invalid_argument);
    const auto extra = std::make_shared<DisplayItem>("extra");
    QVERIFY_EXCEPTION_THROWN(a->appendChildren({extra, extra}), std::invalid_argument);
    // A repeat far from the first occurrence is refused too, before anything moves.
    const auto other1 = std::make_shared<DisplayItem>("other1");
    const auto other2 = std::make_shared<DisplayItem>("other2");
    QVERIFY_EXCEPTION_THROWN(a->appendChildren({other1, extra, other2, extra}), std::invalid_argument);
    QCOMPARE(other1->getParent(), nullptr);
    QVERIFY_EXCEPTION_THROWN(a->appendChildren({extra, nullptr}), std::invalid_argument);
    QCOMPARE(QString::fromStdString(Test::treeShape(root)), QString("root(a(a1))"));
    QCOMPARE(extra->getParent(), nullptr);
    QCOMPARE(observer.total(), 0);
}

void tst_DisplayItem::removeChildResults()
{
    auto root = Test::buildTree({"root", {{"a", {{"a1"}}}, {"b"}}});
    RecordingObserver observer;
    observer.registerToDisplayItem(root);
    const auto grandchild = root->childAt(0)->childAt(0);

    QCOMPARE(root->removeChild(nullptr, false), RemoveChildResult::NotAChild);
    QCOMPARE(root->removeChild(grandchild, false), RemoveChildResult::NotAChild);
    QCOMPARE(root->removeChild(std::make_shared<DisplayItem>("stranger"), false), RemoveChildResult::NotAChild);
    QCOMPARE(observer.total(), 0);

    const auto a = root->childAt(0);
    QCOMPARE(root->removeChild(a, false), RemoveChildResult::Removed);
    QCOMPARE(a->getParent(), nullptr);
    QCOMPARE(grandchild->parentItem(), a.get()); // the subtree stays whole
    QCOMPARE(root->removeChild(a, false), RemoveChildResult::NotAChild);
    QCOMPARE(observer.total(), 1);
    QCOMPARE(observer.events().front().items.front(), static_cast<const DisplayItemInterface*>(a.get()));
}

void tst_DisplayItem::removeChildrenRaisesOneEvent()
{
    auto root = Test::buildTree({"root", {{"a"}, {"b"}, {"c"}}});
    RecordingObserver observer;
    observer.registerToDisplayItem(root);
    const auto stranger = std::make_shared<DisplayItem>("stranger");
    QCOMPARE(root->removeChildren({root->childAt(0), root->childAt(2), stranger, nullptr}), std::size_t(2));
    QCOMPARE(QString::fromStdString(Test::treeShape(root)), QString("root(b)"));
    QCOMPARE(observer.total(), 1);
    QCOMPARE(observer.events().front().items.size(), std::size_t(2));

    QCOMPARE(root->removeChildren({stranger}), std::size_t(0));
    QCOMPARE(observer.total(), 1); // nothing removed, nothing raised
}

void tst_DisplayItem::childrenLoseTheirParentWithIt()
{
    std::shared_ptr<DisplayItem> survivor;
    {
        auto root = Test::buildTree({"root", {{"a", {{"a1"}}}}});
        survivor = root->childAt(0);
    }
    QCOMPARE(survivor->getParent(), nullptr);
    QCOMPARE(survivor->path(), std::string("a"));
    QCOMPARE(survivor->childAt(0)->parentItem(), survivor.get());
}

void tst_DisplayItem::resourcesFollowKeepResources()
{
    auto root = Test::buildTree({"root", {{"a", {{"a1"}}}, {"b"}}});
    const auto a = root->childAt(0);
    const auto b = root->childAt(1);
    root->removeChild(a, false);
    QVERIFY(a->resourcesReleased());
    QVERIFY(a->childAt(0)->resourcesReleased());
    root->removeChild(b, true);
    QVERIFY(!b->resourcesReleased());
    root->appendChild(a);
    QVERIFY(!a->resourcesReleased());
    QVERIFY(!a->childAt(0)->resourcesReleased());
}

void tst_DisplayItem::visibilityAndSelectionRaiseNothing()
{
    auto item = std::make_shared<DisplayItem>("item");
    RecordingObserver observer;
    observer.registerToDisplayItem(item);
    QVERIFY(item->isVisible());
    QVERIFY(!item->isSelected());
    QVERIFY(item->isSelectionAllowed());
    QVERIFY(item->isSelectable());

    item->setVisible(false);
    item->setSelected(true);
    item->setSelectionAllowed(false);
    item->setSelectable(false);
    QVERIFY(!item->isVisible());
    QVERIFY(item->isSelected());
    QVERIFY(!item->isSelectionAllowed());
    QVERIFY(!item->isSelectable());
    // The item does not police its own flags: callers honour them.
    item->setSelected(false);
    QVERIFY(!item->isSelected());
    QCOMPARE(observer.total(), 0);
}

void tst_DisplayItem::visualNotificationCount()
{
    auto item = std::make_shared<DisplayItem>("item");
    QCOMPARE(item->visualNotificationCount(), 0);
    item->notifyVisualPropertiesChanged();
    item->notifyVisualPropertiesChanged();
    item->setVisible(false);
    QCOMPARE(item->visualNotificationCount(), 2);
}

void tst_DisplayItem::getPropertiesContents()
{
    auto item = std::make_shared<DisplayItem>("item");
    item->setBusinessProperty("material", "DC04");
    item->setBusinessProperty("thickness", "1.20 mm");
    item->setDisplayProperty("color", "#ff8000");

    PropertyList business{{"kept", "first"}};
    PropertyList display;
    item->getProperties(business, display);

    const QRegularExpression hex("^0x[0-9a-f]+$");
    QCOMPARE(business.size(), std::size_t(4));
    auto it = business.begin();
    QCOMPARE(it->first, std::string("kept")); // appended, not replaced
    ++it;
    QCOMPARE(it->first, std::string("pointer"));
    QVERIFY2(hex.match(QString::fromStdString(it->second)).hasMatch(), it->second.c_str());
    QCOMPARE(it->second, DisplayItem::addressText(item.get()));
    ++it;
    QCOMPARE(*it, (Property{"material", "DC04"}));
    ++it;
    QCOMPARE(*it, (Property{"thickness", "1.20 mm"}));

    QCOMPARE(display.size(), std::size_t(3));
    it = display.begin();
    QCOMPARE(it->first, std::string("pointer (DisplayItemInterface)"));
    QVERIFY(hex.match(QString::fromStdString(it->second)).hasMatch());
    QCOMPARE(it->second, DisplayItem::addressText(static_cast<const DisplayItemInterface*>(item.get())));
    ++it;
    QCOMPARE(*it, (Property{"display item type", "DisplayItem"}));
    ++it;
    QCOMPARE(*it, (Property{"color", "#ff8000"}));

    // Another item has other addresses.
    auto other = std::make_shared<DisplayItem>("item");
    PropertyList otherBusiness;
    PropertyList otherDisplay;
    other->getProperties(otherBusiness, otherDisplay);
    QVERIFY(otherBusiness.front().second != std::next(business.begin())->second);
    QVERIFY(otherDisplay.front().second != display.front().second);
}

void tst_DisplayItem::propertiesReplaceInPlace()
{
    auto item = std::make_shared<DisplayItem>("item");
    item->setDisplayProperty("color", "red");
    item->setDisplayProperty("line width", "2");
    item->setDisplayProperty("color", "blue");
    QCOMPARE(item->displayProperties(), (PropertyList{{"color", "blue"}, {"line width", "2"}}));
    QCOMPARE(item->displayProperty("color"), std::optional<std::string>("blue"));
    QCOMPARE(item->displayProperty("missing"), std::optional<std::string>());
    item->setBusinessProperty("id", "7");
    QCOMPARE(item->businessProperty("id"), std::optional<std::string>("7"));
    QCOMPARE(item->businessProperties().size(), std::size_t(1));
}

void tst_DisplayItem::bulkPropertiesAsSingleSets_data()
{
    QTest::addColumn<bool>("business");
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QStringList>("added");
    QTest::addColumn<QStringList>("expected");

    for (const bool business : {true, false}) {
        const char* list = business ? "business" : "display";
        const auto row = [list](const char* name) -> QTestData& { return QTest::addRow("%s: %s", list, name); };
        row("into an empty list") << business << QStringList{} << QStringList{"a=1", "b=2"}
                                  << QStringList{"a=1", "b=2"};
        row("existing names keep their place")
            << business << QStringList{"a=1", "b=2"} << QStringList{"b=3", "c=4"} << QStringList{"a=1", "b=3", "c=4"};
        row("a repeated name: last value, first place")
            << business << QStringList{} << QStringList{"a=1", "b=2", "a=3"} << QStringList{"a=3", "b=2"};
        row("repeating an existing name")
            << business << QStringList{"x=0"} << QStringList{"a=1", "x=2", "a=3", "x=4"} << QStringList{"x=4", "a=3"};
        row("empty names and values") << business << QStringList{"=0"} << QStringList{"", "b", "=5"}
                                      << QStringList{"=5", "b"};
        row("nothing to add") << business << QStringList{"a=1"} << QStringList{} << QStringList{"a=1"};
    }
}

void tst_DisplayItem::bulkPropertiesAsSingleSets()
{
    QFETCH(bool, business);
    QFETCH(QStringList, existing);
    QFETCH(QStringList, added);
    QFETCH(QStringList, expected);

    const auto item = std::make_shared<DisplayItem>("bulk");
    const auto single = std::make_shared<DisplayItem>("single");
    for (const auto& [name, value] : propertyList(existing)) {
        for (const auto& target : {item, single})
            business ? target->setBusinessProperty(name, value) : target->setDisplayProperty(name, value);
    }
    RecordingObserver observer;
    observer.registerToDisplayItem(item);
    business ? item->setBusinessProperties(propertyList(added)) : item->setDisplayProperties(propertyList(added));
    for (const auto& [name, value] : propertyList(added))
        business ? single->setBusinessProperty(name, value) : single->setDisplayProperty(name, value);

    const PropertyList& result = business ? item->businessProperties() : item->displayProperties();
    QCOMPARE(result, propertyList(expected));
    QCOMPARE(result, business ? single->businessProperties() : single->displayProperties());
    // The other list stays as it was.
    QVERIFY((business ? item->displayProperties() : item->businessProperties()).empty());
    // One event for the whole list, none when nothing was set.
    QCOMPARE(observer.total(), added.isEmpty() ? 0 : 1);
    QCOMPARE(observer.count(RecordedEvent::Type::PropertiesChanged), added.isEmpty() ? 0 : 1);
}

void tst_DisplayItem::numberOfDisplayItems_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<int>("expected");
    QTest::newRow("root") << "root" << 6;
    QTest::newRow("inner") << "a" << 3;
    QTest::newRow("leaf") << "b1" << 1;
}

void tst_DisplayItem::numberOfDisplayItems()
{
    QFETCH(QString, which);
    QFETCH(int, expected);
    auto root = Test::buildTree({"root", {{"a", {{"a1"}, {"a2"}}}, {"b", {{"b1"}}}}});
    const auto item = root->findByDisplayName(which.toStdString());
    QVERIFY(item);
    QCOMPARE(item->getNumberOfDisplayItems(), std::uint64_t(expected));
}

void tst_DisplayItem::collectSubtreeIsPreOrder()
{
    auto root = Test::buildTree({"root", {{"a", {{"a1", {}, false}, {"a2"}}, false}, {"b"}}});
    DisplayItemList hide;
    root->collectSubtree(hide);
    QCOMPARE(names(hide), (QStringList{"root", "a", "a1", "a2", "b"}));
    DisplayItemList show;
    root->childAt(0)->collectSubtreeToShow(show);
    // Hidden items are included: showing acts on the whole subtree.
    QCOMPARE(names(show), (QStringList{"a", "a1", "a2"}));
    QCOMPARE(show.front().get(), static_cast<DisplayItemInterface*>(root->childAt(0).get()));
}

void tst_DisplayItem::descriptionNamesTypeAndPath()
{
    auto root = Test::buildTree({"Simulation", {{"Process", {{"OP10"}}}}});
    const auto op10 = root->findByDisplayName("OP10");
    QCOMPARE(op10->getDescription(), std::string("DisplayItem \"OP10\" at Simulation/Process/OP10"));
    QCOMPARE(root->getDescription(), std::string("DisplayItem \"Simulation\" at Simulation"));
}

void tst_DisplayItem::copyWithoutChildren()
{
    auto root = Test::buildTree({"root", {{"a"}}});
    root->setVisible(false);
    root->setSelected(true);
    root->setSelectionAllowed(false);
    root->setSelectable(false);
    root->setBusinessProperty("id", "1");
    root->setDisplayProperty("color", "red");
    RecordingObserver observer;
    observer.registerToDisplayItem(root);

    const auto copy = root->copyWithoutChildren();
    QVERIFY(copy != root);
    QCOMPARE(copy->typeName(), std::string("DisplayItem"));
    QCOMPARE(copy->getDisplayName(), std::string("root"));
    QCOMPARE(copy->childCount(), std::size_t(0));
    QCOMPARE(copy->getParent(), nullptr);
    QCOMPARE(copy->observerCount(), std::size_t(0));
    QVERIFY(!copy->isVisible());
    QVERIFY(copy->isSelected());
    QVERIFY(!copy->isSelectionAllowed());
    QVERIFY(!copy->isSelectable());
    QCOMPARE(copy->businessProperties(), root->businessProperties());
    QCOMPARE(copy->displayProperties(), root->displayProperties());
}

QTEST_GUILESS_MAIN(tst_DisplayItem)
#include "tst_displayitem.moc"
