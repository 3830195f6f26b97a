#include "ConformanceChecks.h"

#include "ConformanceHost.h"
#include "EventRecorder.h"
#include "EventRecorder2D.h"

#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayItemTreeTraverser.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/EditorDisplayModel.h>
#include <hostcontract/TreeViewIndex.h>
#include <hostcontract/ViewModelInterface.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QStandardItemModel>
#include <QTreeView>

#include <algorithm>
#include <functional>
#include <new>
#include <set>
#include <type_traits>

namespace Brennvik::Conformance {

namespace {

using Event = EventRecorder::Event;
using Event2D = EventRecorder2D::Event;
using Item = std::shared_ptr<DisplayItemInterface>;

// More messages than this from one check only hide the first, which is the one to fix.
constexpr int MaxFailures = 20;

QString text(const std::string& s)
{
    return QString::fromStdString(s);
}

QString quoted(const Item& item)
{
    return item ? QStringLiteral("'%1'").arg(text(item->getDisplayName())) : QStringLiteral("(empty)");
}

QString times(int n)
{
    return n == 1 ? QStringLiteral("1 time") : QStringLiteral("%1 times").arg(n);
}

// Hands queued work a few chances to run, so that an event the host
// delivers late shows up and can be reported as late rather than missing.
void drainEventLoop()
{
    for (int i = 0; i < 5; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    }
}

QString notSynchronous(const QString& what, const QString& call, const QString& event, int inside, int later)
{
    QString message
        = QStringLiteral("%1: observer was notified %2 inside %3 (expected 1 synchronous %4 before the call returns)")
              .arg(what, times(inside), call, event);
    if (later > 0)
        message += QStringLiteral("; it arrived %1 later from the event loop").arg(times(later));
    if (inside == 0)
        message += QStringLiteral(
            " — events must be delivered synchronously: the dialogs update their rows inside the call");
    else
        message += QStringLiteral(" — raise one event per change, or the dialogs add or update rows twice");
    return message;
}

bool contains(const DisplayItemList& items, const Item& item)
{
    return std::find(items.begin(), items.end(), item) != items.end();
}

bool containsProperty(const PropertyList& list, const Property& property, std::size_t skipFirst = 0)
{
    auto it = list.begin();
    for (std::size_t i = 0; i < skipFirst && it != list.end(); ++i)
        ++it;
    return std::find(it, list.end(), property) != list.end();
}

// A child that breaks the tree: an empty reference, or the item itself or
// one of its ancestors.
struct BrokenLink
{
    Item parent;
    /// Empty for an empty reference.
    Item child;
    bool cycle = false;
    /// 1-based, among the parent's getChildren().
    std::size_t position = 0;
    std::size_t childCount = 0;
};

// Pre-order through getChildren() with a stack of our own, so that any depth
// is safe. An empty child is skipped and a child that is the item itself or
// one of its ancestors is not followed; both go to onBroken.
void walkTree(const Item& root, const std::function<void(const Item&)>& visit,
              const std::function<void(const BrokenLink&)>& onBroken)
{
    if (!root)
        return;
    struct Level
    {
        Item item;
        DisplayItemList children;
        std::size_t next = 0;
    };
    std::vector<Level> levels;
    std::set<const DisplayItemInterface*> onPath;
    const auto enter = [&](const Item& item) {
        visit(item);
        levels.push_back({item, item->getChildren()});
        onPath.insert(item.get());
    };
    enter(root);
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == level.children.size()) {
            onPath.erase(level.item.get());
            levels.pop_back();
            continue;
        }
        const Item child = level.children[level.next++];
        const bool cycle = child && onPath.count(child.get()) != 0;
        if (!child || cycle)
            onBroken({level.item, child, cycle, level.next, level.children.size()});
        else
            enter(child);
    }
}

void preOrder(const Item& root, DisplayItemList& out)
{
    walkTree(
        root, [&out](const Item& item) { out.push_back(item); }, [](const BrokenLink&) {});
}

QString brokenLinkMessage(const BrokenLink& link)
{
    const QString where = QStringLiteral("(child %1 of %2)").arg(link.position).arg(link.childCount);
    if (!link.cycle)
        return QStringLiteral("tree: %1 lists an empty reference among getChildren() %2 — every child must be an "
                              "item: code that walks the display model trusts them")
            .arg(quoted(link.parent), where);
    const QString listed = link.child == link.parent ? QStringLiteral("itself")
                                                     : QStringLiteral("its ancestor %1").arg(quoted(link.child));
    return QStringLiteral("tree: %1 lists %2 among getChildren() %3 — the display model must be a tree: a walk "
                          "that follows the children would never end")
        .arg(quoted(link.parent), listed, where);
}

enum class Links { EmptyChildren, Cycles, All };

// The messages of the broken links of the kinds \a links below \a root, at most MaxFailures of them.
QStringList brokenLinks(const Item& root, Links links)
{
    QStringList messages;
    walkTree(
        root, [](const Item&) {},
        [&messages, links](const BrokenLink& link) {
            const bool wanted = links == Links::All || link.cycle == (links == Links::Cycles);
            if (wanted && messages.size() < MaxFailures)
                messages << brokenLinkMessage(link);
        });
    return messages;
}

// The tree most checks work on: root(a(a1, a2), b), made with the host's hooks.
struct SmallTree
{
    explicit SmallTree(ConformanceHost& host)
        : root(host.makeItem("root"))
        , a(host.makeItem("a"))
        , a1(host.makeItem("a1"))
        , a2(host.makeItem("a2"))
        , b(host.makeItem("b"))
    {
        host.appendChild(root, a);
        host.appendChild(a, a1);
        host.appendChild(a, a2);
        host.appendChild(root, b);
    }

    Item root;
    Item a;
    Item a1;
    Item a2;
    Item b;
};

// The check's reaction needs synchronous events; without them the
// re-entrancy cases cannot even be set up.
bool eventArrived(int inside, const QString& what, CheckResult& result)
{
    if (inside > 0)
        return true;
    result.failures << QStringLiteral("%1: no event arrived inside the call that caused it, so no observer could act "
                                      "during an event — fix the synchronous delivery first (see the sync/ checks)")
                           .arg(what);
    return false;
}

// Stands at the address of an observer destroyed during an event: any call
// it receives came through the host's stale pointer to the destroyed one.
class Tombstone : public DisplayItemEventObserver
{
public:
    void onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface>) override { ++calls; }
    void onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface>) override { ++calls; }
    void updateDynamicSectionSceneGraph() override { ++calls; }
    void onPreDisplayUpdateEvent() override { ++calls; }
    void onPostDisplayUpdateEvent() override { ++calls; }
    void onDisplayItemsAddedEvent(const DisplayItemList&) override { ++calls; }
    void onDisplayItemsRemovedEvent(const DisplayItemSet&) override { ++calls; }
    void onChildOverallVisibilityChangedEvent(bool) override { ++calls; }

    int calls = 0;
};

class NodeCounter : public DisplayItemTreeTraverser::NodeProcessorInterface
{
public:
    void processNode(std::shared_ptr<DisplayItemInterface>) override { ++count; }
    int count = 0;
};

// ---------------------------------------------------------------- synchronous events

void checkAddChild(ConformanceHost& host, CheckResult& result)
{
    const Item parent = host.makeItem("parent");
    const Item child = host.makeItem("child");
    EventRecorder recorder;
    recorder.registerToDisplayItem(parent);
    bool childListedInEvent = false;
    bool childAmongChildren = false;
    recorder.setReaction([&](Event event, const DisplayItemList& items) {
        if (event != Event::ItemsAdded)
            return;
        childListedInEvent = contains(items, child);
        childAmongChildren = contains(parent->getChildren(), child);
    });

    host.appendChild(parent, child);
    const int inside = recorder.count(Event::ItemsAdded);
    drainEventLoop();
    const int later = recorder.count(Event::ItemsAdded) - inside;

    if (inside != 1) {
        result.failures << notSynchronous(QStringLiteral("add child"), QStringLiteral("appendChild"),
                                          QStringLiteral("onDisplayItemsAddedEvent on the parent's observers"), inside,
                                          later);
    } else {
        if (!childListedInEvent)
            result.failures << QStringLiteral("add child: onDisplayItemsAddedEvent did not carry the added child "
                                              "— the dialogs add rows for exactly the items the event names");
        if (!childAmongChildren)
            result.failures << QStringLiteral("add child: the child was not yet among the parent's getChildren() when "
                                              "the added event arrived — apply the change before raising the event");
    }
    if (child->getParent() != parent.get())
        result.failures << QStringLiteral("add child: getParent() of the appended child is not the parent "
                                          "— the delete action removes an item through its parent");
}

void checkRemoveChild(ConformanceHost& host, CheckResult& result)
{
    const Item parent = host.makeItem("parent");
    const Item child = host.makeItem("child");
    host.appendChild(parent, child);
    drainEventLoop();

    EventRecorder recorder;
    recorder.registerToDisplayItem(parent);
    bool childListedInEvent = false;
    bool childStillAmongChildren = false;
    recorder.setReaction([&](Event event, const DisplayItemList& items) {
        if (event != Event::ItemsRemoved)
            return;
        childListedInEvent = contains(items, child);
        childStillAmongChildren = contains(parent->getChildren(), child);
    });

    const RemoveChildResult removed = parent->removeChild(child, false);
    const int inside = recorder.count(Event::ItemsRemoved);
    drainEventLoop();
    const int later = recorder.count(Event::ItemsRemoved) - inside;

    if (removed != RemoveChildResult::Removed)
        result.failures << QStringLiteral("remove child: removeChild returned NotAChild for a child appended with "
                                          "appendChild (expected Removed)");
    if (inside != 1) {
        result.failures << notSynchronous(QStringLiteral("remove child"), QStringLiteral("removeChild"),
                                          QStringLiteral("onDisplayItemsRemovedEvent on the parent's observers"),
                                          inside, later);
    } else {
        if (!childListedInEvent)
            result.failures << QStringLiteral(
                "remove child: onDisplayItemsRemovedEvent did not carry the removed "
                "child — the dialogs delete the rows of exactly the items the event names");
        if (childStillAmongChildren)
            result.failures << QStringLiteral(
                "remove child: the child was still among the parent's getChildren() "
                "when the removed event arrived — apply the change before raising the event");
    }
    if (contains(parent->getChildren(), child))
        result.failures << QStringLiteral(
            "remove child: the child is still among the parent's getChildren() after removeChild");
    if (child->getParent() != nullptr)
        result.failures << QStringLiteral(
            "remove child: getParent() of the removed child is not null after removeChild");
}

// Visibility and selection both arrive as the visual-properties event.
void checkVisualChange(ConformanceHost& host, CheckResult& result, bool visibility)
{
    const QString what = visibility ? QStringLiteral("visibility change") : QStringLiteral("selection change");
    const QString call = visibility ? QStringLiteral("setVisibility (setVisible + notifyVisualPropertiesChanged)")
                                    : QStringLiteral("setSelection (setSelected + notifyVisualPropertiesChanged)");
    const Item item = host.makeItem("item");
    if (!visibility && (!item->isSelectionAllowed() || !item->isSelectable())) {
        result.skipped
            = QStringLiteral("items from makeItem do not allow selection (isSelectionAllowed or isSelectable "
                             "is false); make them selectable to check selection events");
        return;
    }

    EventRecorder recorder;
    recorder.registerToDisplayItem(item);
    Item eventItem;
    bool stateInEvent = false;
    recorder.setReaction([&](Event event, const DisplayItemList& items) {
        if (event != Event::VisualPropertiesChanged)
            return;
        eventItem = items.empty() ? Item() : items.front();
        stateInEvent = visibility ? item->isVisible() : item->isSelected();
    });

    for (const bool target : {visibility ? false : true, visibility ? true : false}) {
        const int before = recorder.count(Event::VisualPropertiesChanged);
        if (visibility)
            host.setVisibility(item, target);
        else
            host.setSelection(item, target);
        const int inside = recorder.count(Event::VisualPropertiesChanged) - before;
        drainEventLoop();
        const int later = recorder.count(Event::VisualPropertiesChanged) - before - inside;
        const QString step
            = QStringLiteral("%1 to %2").arg(what, target ? QStringLiteral("true") : QStringLiteral("false"));
        if (inside != 1) {
            result.failures << notSynchronous(step, call, QStringLiteral("onVisualPropertiesChangedEvent"), inside,
                                              later);
            continue;
        }
        if (stateInEvent != target)
            result.failures << QStringLiteral("%1: %2 still returned %3 inside onVisualPropertiesChangedEvent "
                                              "— the rows read the new state while the event is delivered")
                                   .arg(step,
                                        visibility ? QStringLiteral("isVisible()") : QStringLiteral("isSelected()"),
                                        target ? QStringLiteral("false") : QStringLiteral("true"));
        if (eventItem && eventItem != item)
            result.failures << QStringLiteral("%1: onVisualPropertiesChangedEvent passed %2, not the changed item")
                                   .arg(step, quoted(eventItem));
    }
}

void checkVisibility(ConformanceHost& host, CheckResult& result)
{
    checkVisualChange(host, result, true);
}

void checkSelection(ConformanceHost& host, CheckResult& result)
{
    checkVisualChange(host, result, false);
}

void checkPropertyChange(ConformanceHost& host, CheckResult& result)
{
    const Item item = host.makeItem("item");
    const Property property{"conformance.check", "changed value"};
    EventRecorder recorder;
    recorder.registerToDisplayItem(item);
    bool propertyListed = false;
    recorder.setReaction([&](Event event, const DisplayItemList&) {
        if (event != Event::PropertiesChanged)
            return;
        PropertyList business;
        PropertyList display;
        item->getProperties(business, display);
        propertyListed = containsProperty(business, property) || containsProperty(display, property);
    });

    host.setProperty(item, property.first, property.second);
    const int inside = recorder.count(Event::PropertiesChanged);
    drainEventLoop();
    const int later = recorder.count(Event::PropertiesChanged) - inside;
    if (inside != 1) {
        result.failures << notSynchronous(QStringLiteral("property change"), QStringLiteral("setProperty"),
                                          QStringLiteral("onPropertiesChangedEvent"), inside, later);
    } else if (!propertyListed) {
        result.failures << QStringLiteral(
                               "property change: getProperties() did not list (\"%1\", \"%2\") inside "
                               "onPropertiesChangedEvent — the property panes re-read the item during the event")
                               .arg(text(property.first), text(property.second));
    }
}

// ---------------------------------------------------------------- observers acting during an event

void checkUnregisterSelf(ConformanceHost& host, CheckResult& result)
{
    const Item item = host.makeItem("item");
    EventRecorder first;
    EventRecorder leaving;
    EventRecorder last;
    first.registerToDisplayItem(item);
    leaving.registerToDisplayItem(item);
    last.registerToDisplayItem(item);
    leaving.setReaction([&](Event, const DisplayItemList&) { leaving.unregisterFromDisplayItem(item); });

    host.setVisibility(item, false);
    if (!eventArrived(first.total() + leaving.total() + last.total(), QStringLiteral("observer unregistering itself"),
                      result))
        return;
    if (leaving.total() != 1)
        result.failures << QStringLiteral("observer unregistering itself: it received %1 during the event it "
                                          "unregistered in (expected 1)")
                               .arg(times(leaving.total()));
    if (first.total() != 1 || last.total() != 1)
        result.failures << QStringLiteral("observer unregistering itself: the other observers received the event "
                                          "%1 and %2 (expected 1 each) — an observer leaving during dispatch must not "
                                          "make the host skip or repeat the others")
                               .arg(times(first.total()), times(last.total()));

    host.setVisibility(item, true);
    if (leaving.total() != 1)
        result.failures << QStringLiteral(
            "observer unregistering itself: it was notified again by the next event "
            "after unregisterFromDisplayItem — unregistering during an event must take effect");
    if (first.total() != 2 || last.total() != 2)
        result.failures << QStringLiteral("observer unregistering itself: after it left, the next event reached the "
                                          "others %1 and %2 in total (expected 2 each)")
                               .arg(times(first.total()), times(last.total()));
}

void checkUnregisterOther(ConformanceHost& host, CheckResult& result)
{
    const Item item = host.makeItem("item");
    EventRecorder acting;
    EventRecorder removed;
    acting.registerToDisplayItem(item);
    removed.registerToDisplayItem(item);
    int removedBeforeUnregistering = -1;
    acting.setReaction([&](Event, const DisplayItemList&) {
        if (removedBeforeUnregistering < 0) {
            removedBeforeUnregistering = removed.total();
            removed.unregisterFromDisplayItem(item);
        }
    });

    host.setVisibility(item, false);
    if (!eventArrived(acting.total() + removed.total(), QStringLiteral("observer unregistering another"), result))
        return;
    if (acting.total() != 1)
        result.failures << QStringLiteral("observer unregistering another: the acting observer received the event "
                                          "%1 (expected 1)")
                               .arg(times(acting.total()));
    if (removedBeforeUnregistering >= 0 && removed.total() != removedBeforeUnregistering)
        result.failures << QStringLiteral(
            "observer unregistering another: the observer unregistered during the "
            "event still received it afterwards — skip observers that left during dispatch");

    host.setVisibility(item, true);
    if (acting.total() != 2)
        result.failures << QStringLiteral("observer unregistering another: the acting observer missed the next "
                                          "event (received %1 in total, expected 2)")
                               .arg(times(acting.total()));
    if (removedBeforeUnregistering >= 0 && removed.total() != removedBeforeUnregistering)
        result.failures << QStringLiteral("observer unregistering another: the unregistered observer was notified "
                                          "by the next event");
}

void checkDestroyOther(ConformanceHost& host, CheckResult& result)
{
    const Item item = host.makeItem("item");
    using Storage = std::aligned_storage_t<std::max(sizeof(EventRecorder), sizeof(Tombstone)),
                                           std::max(alignof(EventRecorder), alignof(Tombstone))>;
    Storage storage;
    auto* victim = new (&storage) EventRecorder;
    Tombstone* tombstone = nullptr;

    EventRecorder acting;
    acting.registerToDisplayItem(item);
    victim->registerToDisplayItem(item);
    acting.setReaction([&](Event, const DisplayItemList&) {
        if (!tombstone) {
            victim->~EventRecorder();
            tombstone = new (&storage) Tombstone;
        }
    });

    host.setVisibility(item, false);
    const bool arrived = tombstone != nullptr;
    if (arrived) {
        host.setVisibility(item, true);
        if (tombstone->calls > 0)
            result.failures << QStringLiteral("observer destroyed during an event: the host called it %1 after its "
                                              "destructor ran — the destructor unregisters, and the host must not keep "
                                              "calling a pointer it was told to forget")
                                   .arg(times(tombstone->calls));
        if (acting.total() != 2)
            result.failures << QStringLiteral("observer destroyed during an event: the observer that destroyed it "
                                              "received %1 in two events (expected 2)")
                                   .arg(times(acting.total()));
        tombstone->~Tombstone();
    } else {
        drainEventLoop();
        if (tombstone)
            tombstone->~Tombstone();
        else
            victim->~EventRecorder();
        eventArrived(0, QStringLiteral("observer destroyed during an event"), result);
    }
}

void checkRegisterDuringEvent(ConformanceHost& host, CheckResult& result)
{
    const Item item = host.makeItem("item");
    EventRecorder acting;
    EventRecorder newcomer;
    acting.registerToDisplayItem(item);
    bool registered = false;
    acting.setReaction([&](Event, const DisplayItemList&) {
        if (!registered) {
            registered = true;
            newcomer.registerToDisplayItem(item);
        }
    });

    host.setVisibility(item, false);
    if (!eventArrived(acting.total(), QStringLiteral("observer registered during an event"), result))
        return;
    if (newcomer.total() != 0)
        result.failures << QStringLiteral("observer registered during an event: it received the event being "
                                          "dispatched (expected only the next one) — dispatch over the observers "
                                          "registered when the event started");
    host.setVisibility(item, true);
    if (newcomer.total() != 1)
        result.failures << QStringLiteral("observer registered during an event: it received %1 from the next event "
                                          "(expected 1) — the registration must hold after the event")
                               .arg(times(newcomer.total()));
}

// ---------------------------------------------------------------- empty references

void checkEmptyReferences(ConformanceHost& host, CheckResult& result)
{
    EventRecorder recorder;
    recorder.registerToDisplayItem(nullptr);
    recorder.unregisterFromDisplayItem(nullptr);
    if (recorder.registrationCount() != 0)
        result.failures << QStringLiteral("empty references: registerToDisplayItem(nullptr) counted as a registration "
                                          "(registrationCount() is %1, expected 0)")
                               .arg(recorder.registrationCount());

    std::weak_ptr<DisplayItemInterface> gone;
    {
        const Item item = host.makeItem("gone");
        recorder.registerToDisplayItem(item);
        gone = item;
    }
    if (gone.expired()) {
        // What a row does when its item went away.
        recorder.unregisterFromDisplayItem(gone.lock());
        if (recorder.registrationCount() != 0)
            result.failures << QStringLiteral("empty references: registrationCount() still counts an item that is "
                                              "gone (%1, expected 0)")
                                   .arg(recorder.registrationCount());
    }
    {
        // The observer outlives the item it observed; its destructor must not reach the gone item.
        EventRecorder survivor;
        {
            const Item item = host.makeItem("short-lived");
            survivor.registerToDisplayItem(item);
        }
    }

    const Item parent = host.makeItem("parent");
    const Item child = host.makeItem("child");
    const Item stranger = host.makeItem("stranger");
    host.appendChild(parent, child);
    drainEventLoop();
    EventRecorder parentRecorder;
    parentRecorder.registerToDisplayItem(parent);
    const DisplayItemList childrenBefore = parent->getChildren();
    if (parent->removeChild(nullptr, false) != RemoveChildResult::NotAChild)
        result.failures << QStringLiteral("empty references: removeChild(nullptr) did not return NotAChild");
    if (parent->removeChild(stranger, false) != RemoveChildResult::NotAChild)
        result.failures << QStringLiteral(
            "empty references: removeChild(item that is not a child) did not return NotAChild");
    drainEventLoop();
    if (parentRecorder.total() != 0)
        result.failures << QStringLiteral("empty references: removeChild of an empty reference or a non-child raised "
                                          "%1 (expected none)")
                               .arg(times(parentRecorder.total()));
    if (parent->getChildren() != childrenBefore)
        result.failures << QStringLiteral("empty references: removeChild of an empty reference or a non-child changed "
                                          "the children (%1 left, expected %2)")
                               .arg(parent->getChildren().size())
                               .arg(childrenBefore.size());

    NodeCounter all;
    DisplayItemTreeTraverser::process(nullptr, all);
    NodeCounter visible;
    DisplayItemTreeTraverser::processVisible(nullptr, visible);
    if (all.count != 0 || visible.count != 0)
        result.failures << QStringLiteral("empty references: DisplayItemTreeTraverser visited %1 items of an empty "
                                          "root (expected none)")
                               .arg(all.count + visible.count);

    EventRecorder2D recorder2D;
    recorder2D.observe(nullptr);
    recorder2D.stopObserving(nullptr);
    if (recorder2D.observedItemCount() != 0)
        result.failures << QStringLiteral("empty references: DisplayItem2DObserver::observe(nullptr) counted as an "
                                          "observed item");
    std::weak_ptr<DisplayItem2D> gone2D;
    {
        const auto item2D = host.makeItem2D("gone");
        recorder2D.observe(item2D);
        gone2D = item2D;
    }
    if (gone2D.expired() && recorder2D.observedItemCount() != 0)
        result.failures << QStringLiteral("empty references: observedItemCount() still counts a 2D item that is gone");
}

// ---------------------------------------------------------------- out-parameters

void checkCollected(const QString& function, const Item& sentinel, const DisplayItemList& list,
                    const DisplayItemList& subtree, CheckResult& result)
{
    if (list.empty() || list.front() != sentinel) {
        result.failures
            << QStringLiteral("%1 cleared or replaced the list it was given — it must append to it").arg(function);
        return;
    }
    if (list.size() == 1)
        result.failures << QStringLiteral("%1 appended nothing for an item with %2 descendants — the subtree actions "
                                          "of the context menu would change nothing")
                               .arg(function)
                               .arg(subtree.size() - 1);
    for (std::size_t i = 1; i < list.size(); ++i) {
        if (!list[i])
            result.failures << QStringLiteral("%1 appended an empty reference at position %2").arg(function).arg(i);
        else if (!contains(subtree, list[i]))
            result.failures
                << QStringLiteral("%1 appended %2, which is not in the item's subtree").arg(function, quoted(list[i]));
    }
}

void checkCollectSubtree(ConformanceHost& host, CheckResult& result)
{
    const SmallTree tree(host);
    const Item& root = tree.root;
    host.setVisibility(tree.a2, false);
    drainEventLoop();
    DisplayItemList subtree;
    preOrder(root, subtree);
    if (subtree.size() != 5) {
        result.failures << QStringLiteral("collect subtree: the tree built with appendChild has %1 items through "
                                          "getChildren (expected 5)")
                               .arg(subtree.size());
        return;
    }

    const Item sentinel = host.makeItem("sentinel");
    DisplayItemList hide{sentinel};
    root->collectSubtree(hide);
    checkCollected(QStringLiteral("collectSubtree"), sentinel, hide, subtree, result);
    DisplayItemList show{sentinel};
    root->collectSubtreeToShow(show);
    checkCollected(QStringLiteral("collectSubtreeToShow"), sentinel, show, subtree, result);
}

void checkGetProperties(ConformanceHost& host, CheckResult& result)
{
    const Property business{"conformance.sentinel.business", "kept"};
    const Property display{"conformance.sentinel.display", "kept"};

    const Item item = host.makeItem("item");
    const Property set{"conformance.property", "value"};
    host.setProperty(item, set.first, set.second);
    drainEventLoop();
    PropertyList businessList{business};
    PropertyList displayList{display};
    item->getProperties(businessList, displayList);
    if (businessList.empty() || businessList.front() != business || displayList.empty()
        || displayList.front() != display)
        result.failures << QStringLiteral("getProperties cleared or replaced the lists it was given — it must append "
                                          "(the dialogs collect into lists that may hold entries already)");
    else if (!containsProperty(businessList, set, 1) && !containsProperty(displayList, set, 1))
        result.failures << QStringLiteral("getProperties did not list (\"%1\", \"%2\") set with setProperty")
                               .arg(text(set.first), text(set.second));

    const auto item2D = host.makeItem2D("item");
    const Property business2D{"conformance.business", "b"};
    const Property display2D{"conformance.display", "d"};
    item2D->setBusinessProperty(business2D.first, business2D.second);
    item2D->setDisplayProperty(display2D.first, display2D.second);
    PropertyList businessList2D{business};
    PropertyList displayList2D{display};
    item2D->getProperties(businessList2D, displayList2D);
    if (businessList2D.front() != business || displayList2D.front() != display)
        result.failures << QStringLiteral(
            "DisplayItem2D::getProperties cleared or replaced the lists it was given — it must append");
    else if (!containsProperty(businessList2D, business2D, 1) || !containsProperty(displayList2D, display2D, 1))
        result.failures << QStringLiteral("DisplayItem2D::getProperties did not list the business property in the "
                                          "first list and the display property in the second");

    EditorDisplayModel editorModel;
    const auto primitive = editorModel.addEditModelPrimitive("primitive");
    const Property primitiveProperty{"conformance.primitive", "p"};
    primitive->setProperties({primitiveProperty});
    PropertyList primitiveList{business};
    primitive->getProperties(primitiveList);
    if (primitiveList.front() != business)
        result.failures << QStringLiteral(
            "EditorDisplayItem::getProperties cleared or replaced the list it was given — it must append");
    else if (!containsProperty(primitiveList, primitiveProperty, 1))
        result.failures << QStringLiteral(
            "EditorDisplayItem::getProperties did not list the property given to setProperties");
    const auto& primitives = editorModel.getAllEditModelPrimitives();
    if (std::find(primitives.begin(), primitives.end(), primitive) == primitives.end())
        result.failures << QStringLiteral("EditorDisplayModel::getAllEditModelPrimitives() does not hold the primitive "
                                          "made with addEditModelPrimitive");
}

// ---------------------------------------------------------------- deep clone

QStringList comparableProperties(const ConformanceHost& host, const Item& item)
{
    PropertyList business;
    PropertyList display;
    item->getProperties(business, display);
    QStringList lines;
    for (const auto* list : {&business, &display}) {
        for (const auto& [name, value] : *list) {
            if (!host.isIdentityProperty(name))
                lines << (list == &business ? QStringLiteral("business ") : QStringLiteral("display ")) + text(name)
                        + QLatin1Char('=') + text(value);
        }
    }
    return lines;
}

struct CloneWalk
{
    const ConformanceHost& host;
    std::set<const DisplayItemInterface*> originals;
    const DisplayModel* originalModel;
    CheckResult& result;

    void fail(const QString& message)
    {
        if (result.failures.size() < MaxFailures)
            result.failures << message;
    }

    // Pre-order over both trees with a stack of our own. Empty children and
    // cycles of the original are the tree checks' business: the comparison
    // only stops there.
    void compare(const Item& originalRoot, const Item& copyRoot)
    {
        struct Level
        {
            Item original;
            Item copy;
            QString path;
            DisplayItemList originalChildren;
            DisplayItemList copyChildren;
            std::size_t next = 0;
        };
        std::vector<Level> levels;
        std::set<const DisplayItemInterface*> onPath;
        const auto enter
            = [&](const Item& original, const Item& copy, const DisplayItemInterface* copyParent, const QString& path) {
                  Level level{original, copy, path, {}, {}};
                  if (!compareItem(original, copy, copyParent, path, level.originalChildren, level.copyChildren))
                      return;
                  levels.push_back(std::move(level));
                  onPath.insert(original.get());
              };
        enter(originalRoot, copyRoot, nullptr, QStringLiteral("root"));
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.next == level.originalChildren.size()) {
                onPath.erase(level.original.get());
                levels.pop_back();
                continue;
            }
            const std::size_t i = level.next++;
            const Item original = level.originalChildren[i];
            if (!original || onPath.count(original.get()) != 0)
                continue;
            const Item copy = level.copyChildren[i];
            const Item copyParent = level.copy;
            enter(original, copy, copyParent.get(), level.path + QLatin1Char('/') + text(original->getDisplayName()));
        }
    }

    // Compares one item with its copy; true, with both lists of children,
    // when the children can be compared pairwise.
    bool compareItem(const Item& original, const Item& copy, const DisplayItemInterface* copyParent,
                     const QString& path, DisplayItemList& originalChildren, DisplayItemList& copyChildren)
    {
        if (!copy) {
            fail(QStringLiteral("clone: %1 has an empty reference where the original has an item").arg(path));
            return false;
        }
        if (originals.count(copy.get()) != 0)
            fail(QStringLiteral("clone: the clone shares item %1 with the original (at %2) — a deep copy needs new "
                                "items; the clone mode changes the clone and must leave the original alone")
                     .arg(quoted(copy), path));
        if (copy->getDisplayName() != original->getDisplayName())
            fail(QStringLiteral("clone: %1 is named %2 in the clone").arg(path, quoted(copy)));
        if (copy->isVisible() != original->isVisible())
            fail(QStringLiteral("clone: %1 is %2 in the original but not in the clone")
                     .arg(path, original->isVisible() ? QStringLiteral("visible") : QStringLiteral("hidden")));
        if (copy->isSelected() != original->isSelected())
            fail(QStringLiteral("clone: %1 is %2 in the original but not in the clone")
                     .arg(path, original->isSelected() ? QStringLiteral("selected") : QStringLiteral("unselected")));
        if (copyParent && copy->getParent() != copyParent)
            fail(QStringLiteral("clone: getParent() of %1 in the clone is not its parent in the clone").arg(path));
        if (originalModel && copy->getDisplayModel() == originalModel)
            fail(QStringLiteral("clone: %1 in the clone names the original's display model — updates after edits "
                                "in the clone would redraw the original")
                     .arg(path));
        const QStringList originalProperties = comparableProperties(host, original);
        const QStringList copyProperties = comparableProperties(host, copy);
        if (originalProperties != copyProperties)
            fail(QStringLiteral("clone: the properties of %1 differ: original [%2], clone [%3] (properties that name "
                                "an item's identity belong in ConformanceHost::isIdentityProperty)")
                     .arg(path, originalProperties.join(QStringLiteral("; ")),
                          copyProperties.join(QStringLiteral("; "))));

        originalChildren = original->getChildren();
        copyChildren = copy->getChildren();
        if (originalChildren.size() != copyChildren.size()) {
            fail(QStringLiteral("clone: %1 has %2 children in the original and %3 in the clone")
                     .arg(path)
                     .arg(originalChildren.size())
                     .arg(copyChildren.size()));
            return false;
        }
        return true;
    }
};

void checkCloneIsDeep(ConformanceHost& host, CheckResult& result)
{
    const SmallTree tree(host);
    const Item& root = tree.root;
    const Item& a = tree.a;
    const Item& b = tree.b;
    host.setVisibility(tree.a1, false);
    host.setProperty(tree.a2, "conformance.material", "DC04");
    if (b->isSelectionAllowed() && b->isSelectable())
        host.setSelection(b, true);
    drainEventLoop();

    const auto viewModel = host.makeViewModel(root);
    if (!viewModel || !viewModel->getDisplayModel() || viewModel->getDisplayModel()->getRootDisplayItem() != root) {
        result.failures << QStringLiteral("clone: makeViewModel did not give a view model whose display model has the "
                                          "given root");
        return;
    }
    const auto clone = viewModel->cloneViewModel(false);
    if (!clone) {
        result.failures << QStringLiteral("clone: cloneViewModel(false) returned an empty reference");
        return;
    }
    if (clone == viewModel) {
        result.failures << QStringLiteral("clone: cloneViewModel(false) returned the view model itself");
        return;
    }
    const DisplayModel* originalModel = viewModel->getDisplayModel();
    const DisplayModel* cloneModel = clone->getDisplayModel();
    if (!cloneModel) {
        result.failures << QStringLiteral("clone: the clone has no display model");
        return;
    }
    if (cloneModel == originalModel)
        result.failures << QStringLiteral(
            "clone: the clone shares the original's display model — a deep copy needs its own");
    const Item cloneRoot = cloneModel->getRootDisplayItem();

    DisplayItemList originals;
    preOrder(root, originals);
    CloneWalk walk{host, {}, originalModel, result};
    for (const auto& item : originals)
        walk.originals.insert(item.get());
    walk.compare(root, cloneRoot);
    if (!cloneRoot || cloneRoot == root || cloneRoot->getChildren().empty())
        return;

    // The clone mode toggles items of the clone; the original must not notice.
    const Item copyOfA = cloneRoot->getChildren().front();
    if (copyOfA == a)
        return;
    EventRecorder originalRecorder;
    originalRecorder.registerToDisplayItem(a);
    const bool wasVisible = a->isVisible();
    host.setVisibility(copyOfA, !copyOfA->isVisible());
    drainEventLoop();
    if (a->isVisible() != wasVisible)
        walk.fail(QStringLiteral("clone: hiding an item of the clone changed the visibility of the original's item "
                                 "— the copy must be independent"));
    if (originalRecorder.total() != 0)
        walk.fail(QStringLiteral("clone: changing an item of the clone notified the observers of the original's item "
                                 "— the copy must not carry the original's observers"));
}

// ---------------------------------------------------------------- widget kit

// Row counts per level: three top rows, the first with a deeper subtree.
void fillModel(QStandardItemModel& model, const QString& prefix)
{
    model.setColumnCount(2);
    auto row = [&prefix](const QString& name) {
        return QList<QStandardItem*>{new QStandardItem(prefix + name),
                                     new QStandardItem(prefix + name + QStringLiteral(" value"))};
    };
    const QList<QStandardItem*> top0 = row(QStringLiteral("t0"));
    model.appendRow(top0);
    for (int i = 0; i < 2; ++i) {
        const QList<QStandardItem*> child = row(QStringLiteral("t0.%1").arg(i));
        top0.front()->appendRow(child);
        for (int j = 0; j < 2; ++j)
            child.front()->appendRow(row(QStringLiteral("t0.%1.%2").arg(i).arg(j)));
    }
    model.appendRow(row(QStringLiteral("t1")));
    const QList<QStandardItem*> top2 = row(QStringLiteral("t2"));
    model.appendRow(top2);
    for (int i = 0; i < 3; ++i)
        top2.front()->appendRow(row(QStringLiteral("t2.%1").arg(i)));
}

void rowsPreOrder(const QAbstractItemModel& model, const QModelIndex& parent, QVector<QModelIndex>& out)
{
    for (int r = 0; r < model.rowCount(parent); ++r) {
        const QModelIndex index = model.index(r, 0, parent);
        out << index;
        rowsPreOrder(model, index, out);
    }
}

QString rowName(const QModelIndex& index)
{
    return index.isValid() ? QStringLiteral("'%1'").arg(index.data().toString()) : QStringLiteral("(invalid)");
}

void checkDfsIndex(ConformanceHost& host, CheckResult& result)
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        result.skipped = QStringLiteral("needs a QApplication (widgets)");
        return;
    }
    QStandardItemModel model;
    fillModel(model, QString());
    QStandardItemModel sameShape;
    fillModel(sameShape, QStringLiteral("other "));
    const std::unique_ptr<QAbstractItemView> view(host.makeTreeView(nullptr));
    const std::unique_ptr<QAbstractItemView> otherView(host.makeTreeView(nullptr));
    if (!view || !otherView) {
        result.failures << QStringLiteral("widget kit: makeTreeView returned null");
        return;
    }
    view->setModel(&model);
    otherView->setModel(&sameShape);
    // Some rows expanded, some collapsed: the walk counts the rows of the model either way.
    for (QAbstractItemView* v : {view.get(), otherView.get()}) {
        if (auto* tree = qobject_cast<QTreeView*>(v))
            tree->expand(v->model()->index(0, 0));
    }

    QVector<QModelIndex> rows;
    rowsPreOrder(model, QModelIndex(), rows);
    QVector<QModelIndex> otherRows;
    rowsPreOrder(sameShape, QModelIndex(), otherRows);
    const int count = rows.size();
    std::set<int> seen;
    for (int i = 0; i < count; ++i) {
        const QModelIndex& index = rows[i];
        const int position = getDFSIdx(view.get(), index);
        if (position < 0 || position >= count) {
            result.failures << QStringLiteral("widget kit: getDFSIdx gave %1 for row %2 of a model with %3 rows "
                                              "(expected 0..%4)")
                                   .arg(position)
                                   .arg(rowName(index))
                                   .arg(count)
                                   .arg(count - 1);
            continue;
        }
        if (!seen.insert(position).second)
            result.failures << QStringLiteral(
                                   "widget kit: getDFSIdx gave position %1 to more than one row (again for %2)")
                                   .arg(position)
                                   .arg(rowName(index));
        const QModelIndex back = indexFromDFSIdx(view.get(), position);
        if (back != index)
            result.failures << QStringLiteral("widget kit: indexFromDFSIdx(getDFSIdx(row %1)) gave row %2 — the two "
                                              "must be inverse, the dialogs address rows of two trees with them")
                                   .arg(rowName(index), rowName(back));
        const int otherColumn = getDFSIdx(view.get(), index.sibling(index.row(), 1));
        if (otherColumn != position)
            result.failures << QStringLiteral(
                                   "widget kit: getDFSIdx gave %1 for column 1 of row %2 and %3 for column 0 "
                                   "— any column names its row")
                                   .arg(otherColumn)
                                   .arg(rowName(index))
                                   .arg(position);
        const int otherPosition = getDFSIdx(otherView.get(), otherRows[i]);
        if (otherPosition != position)
            result.failures << QStringLiteral("widget kit: rows in the same place of two trees of the same shape got "
                                              "positions %1 and %2 (row %3) — the clone mode pairs rows by position")
                                   .arg(position)
                                   .arg(otherPosition)
                                   .arg(rowName(index));
        if (result.failures.size() >= MaxFailures)
            return;
    }
    if (getDFSIdx(view.get(), QModelIndex()) != -1)
        result.failures << QStringLiteral("widget kit: getDFSIdx of an invalid index is not -1");
    if (getDFSIdx(view.get(), otherRows.front()) != -1)
        result.failures << QStringLiteral("widget kit: getDFSIdx of an index of another model is not -1");
    if (indexFromDFSIdx(view.get(), count).isValid() || indexFromDFSIdx(view.get(), -1).isValid())
        result.failures << QStringLiteral("widget kit: indexFromDFSIdx of a position out of range gave a valid index");
}

// ---------------------------------------------------------------- 2D

void checkVisibility2D(ConformanceHost& host, CheckResult& result)
{
    const auto root = host.makeItem2D("plot");
    const auto child = host.makeItem2D("curve");
    root->appendChild(child);
    EventRecorder2D recorder;
    recorder.observe(child);
    int visibilityInEvent = -1;
    recorder.setReaction([&](Event2D event, const std::shared_ptr<DisplayItem2D>&) {
        if (event == Event2D::Modified)
            visibilityInEvent = child->getVisibility();
    });

    for (const auto target : {DisplayItem2D::NotVisible, DisplayItem2D::Visible}) {
        const int before = recorder.count(Event2D::Modified);
        host.setVisibility2D(child, target);
        const int inside = recorder.count(Event2D::Modified) - before;
        drainEventLoop();
        const int later = recorder.count(Event2D::Modified) - before - inside;
        const QString step
            = QStringLiteral("2D visibility change to %1")
                  .arg(target == DisplayItem2D::Visible ? QStringLiteral("Visible") : QStringLiteral("NotVisible"));
        if (inside != 1) {
            result.failures << notSynchronous(step, QStringLiteral("setVisibility"),
                                              QStringLiteral("onDisplayItemModified"), inside, later);
        } else if (visibilityInEvent != target) {
            result.failures << QStringLiteral("%1: getVisibility() returned %2 inside onDisplayItemModified — set the "
                                              "new value before raising the event")
                                   .arg(step)
                                   .arg(visibilityInEvent);
        }
    }
}

void checkStructure2D(ConformanceHost& host, CheckResult& result)
{
    const auto parent = host.makeItem2D("plot");
    const auto child = host.makeItem2D("curve");
    EventRecorder2D recorder;
    recorder.observe(parent);
    bool amongChildrenInEvent = false;
    recorder.setReaction([&](Event2D event, const std::shared_ptr<DisplayItem2D>&) {
        const auto& children = parent->getChildren();
        const bool among = std::find(children.begin(), children.end(), child) != children.end();
        if (event == Event2D::ChildAdded)
            amongChildrenInEvent = among;
        else if (event == Event2D::ChildRemoved)
            amongChildrenInEvent = !among;
    });

    parent->appendChild(child);
    int inside = recorder.count(Event2D::ChildAdded);
    drainEventLoop();
    if (inside != 1)
        result.failures << notSynchronous(QStringLiteral("2D add child"), QStringLiteral("appendChild"),
                                          QStringLiteral("onChildAdded"), inside,
                                          recorder.count(Event2D::ChildAdded) - inside);
    else if (recorder.lastChild() != child || !amongChildrenInEvent)
        result.failures << QStringLiteral("2D add child: onChildAdded did not pass the added child, or it was not yet "
                                          "among getChildren()");

    amongChildrenInEvent = false;
    const bool removed = parent->removeChild(child);
    inside = recorder.count(Event2D::ChildRemoved);
    drainEventLoop();
    if (!removed)
        result.failures << QStringLiteral("2D remove child: removeChild returned false for a child");
    if (inside != 1)
        result.failures << notSynchronous(QStringLiteral("2D remove child"), QStringLiteral("removeChild"),
                                          QStringLiteral("onChildRemoved"), inside,
                                          recorder.count(Event2D::ChildRemoved) - inside);
    else if (recorder.lastChild() != child || !amongChildrenInEvent)
        result.failures << QStringLiteral("2D remove child: onChildRemoved did not pass the removed child, or it was "
                                          "still among getChildren()");
}

void checkReentrancy2D(ConformanceHost& host, CheckResult& result)
{
    const auto item = host.makeItem2D("curve");
    EventRecorder2D leaving;
    EventRecorder2D staying;
    EventRecorder2D newcomer;
    leaving.observe(item);
    staying.observe(item);
    leaving.setReaction([&](Event2D, const std::shared_ptr<DisplayItem2D>&) { leaving.stopObserving(item); });
    staying.setReaction([&](Event2D, const std::shared_ptr<DisplayItem2D>&) {
        if (newcomer.observedItemCount() == 0)
            newcomer.observe(item);
    });

    item->notifyModified();
    if (!eventArrived(leaving.total() + staying.total(), QStringLiteral("2D observers acting during an event"), result))
        return;
    if (leaving.total() != 1 || staying.total() != 1)
        result.failures << QStringLiteral("2D observers acting during an event: the observers received the event %1 "
                                          "and %2 (expected 1 each)")
                               .arg(times(leaving.total()), times(staying.total()));
    if (newcomer.total() != 0)
        result.failures << QStringLiteral("2D observer that started observing during an event received that event "
                                          "(expected only the next one)");
    item->notifyModified();
    if (leaving.total() != 1)
        result.failures << QStringLiteral("2D observer that stopped observing during an event received the next one");
    if (staying.total() != 2 || newcomer.total() != 1)
        result.failures << QStringLiteral("2D observers acting during an event: the next event reached the remaining "
                                          "observer %1 in total (expected 2) and the new one %2 (expected 1)")
                               .arg(times(staying.total()), times(newcomer.total()));
}

// ---------------------------------------------------------------- tree shape

void checkChildrenNotEmpty(ConformanceHost& host, CheckResult& result)
{
    const SmallTree tree(host);
    drainEventLoop();
    result.failures << brokenLinks(tree.root, Links::EmptyChildren);
}

void checkAcyclic(ConformanceHost& host, CheckResult& result)
{
    const SmallTree tree(host);
    drainEventLoop();
    result.failures << brokenLinks(tree.root, Links::Cycles);
}

// ---------------------------------------------------------------- table

struct Entry
{
    const char* name;
    const char* description;
    void (*run)(ConformanceHost&, CheckResult&);
};

const Entry entries[] = {
    {"sync/add-child", "appendChild raises one added event on the parent's observers before it returns", checkAddChild},
    {"sync/remove-child", "removeChild detaches and raises one removed event before it returns", checkRemoveChild},
    {"sync/visibility", "setVisible + notifyVisualPropertiesChanged raise one visual event before returning",
     checkVisibility},
    {"sync/selection", "setSelected + notifyVisualPropertiesChanged raise one visual event before returning",
     checkSelection},
    {"sync/property-change", "a property change raises one properties event before it returns", checkPropertyChange},
    {"reentrancy/unregister-self", "an observer may unregister itself during an event", checkUnregisterSelf},
    {"reentrancy/unregister-other", "an observer may unregister another one during an event", checkUnregisterOther},
    {"reentrancy/destroy-other", "an observer may destroy another one during an event", checkDestroyOther},
    {"reentrancy/register-during-event", "an observer registered during an event gets the next one only",
     checkRegisterDuringEvent},
    {"empty-references", "empty and expired references are harmless where the contract allows them",
     checkEmptyReferences},
    {"out-parameters/collect-subtree", "collectSubtree and collectSubtreeToShow append items of the subtree",
     checkCollectSubtree},
    {"out-parameters/get-properties", "the getProperties functions append to the lists they are given",
     checkGetProperties},
    {"clone/deep", "cloneViewModel makes a deep, faithful and independent copy", checkCloneIsDeep},
    {"widgetkit/dfs-index", "getDFSIdx and indexFromDFSIdx are inverse over a populated tree", checkDfsIndex},
    {"2d/sync-visibility", "DisplayItem2D visibility changes notify observers inside the call", checkVisibility2D},
    {"2d/sync-structure", "DisplayItem2D appendChild/removeChild notify observers inside the call", checkStructure2D},
    {"2d/reentrancy", "2D observers may stop or start observing during an event", checkReentrancy2D},
    {"tree/children-not-empty", "getChildren() lists no empty reference", checkChildrenNotEmpty},
    {"tree/acyclic", "no item lists itself or one of its ancestors among getChildren()", checkAcyclic},
};

} // namespace

QVector<CheckInfo> checkList()
{
    QVector<CheckInfo> list;
    for (const Entry& entry : entries)
        list.push_back({QString::fromLatin1(entry.name), QString::fromLatin1(entry.description)});
    return list;
}

CheckResult runCheck(ConformanceHost& host, const QString& name)
{
    CheckResult result;
    result.name = name;
    for (const Entry& entry : entries) {
        if (name == QLatin1String(entry.name)) {
            entry.run(host, result);
            // Nothing a check left queued may leak into the next one.
            drainEventLoop();
            return result;
        }
    }
    result.failures << QStringLiteral("no check is named '%1'").arg(name);
    return result;
}

QStringList checkDisplayTree(const std::shared_ptr<DisplayItemInterface>& root)
{
    return brokenLinks(root, Links::All);
}

QVector<CheckResult> runChecks(ConformanceHost& host)
{
    QVector<CheckResult> results;
    for (const Entry& entry : entries)
        results.push_back(runCheck(host, QString::fromLatin1(entry.name)));
    return results;
}

} // namespace Brennvik::Conformance
