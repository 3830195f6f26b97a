// The conformance kit against hosts that are wrong on purpose: the checks
// that concern the defect must fail with a message that names it, and the
// others must pass.
#include "BackLinkHost.h"
#include "CarelessHost.h"
#include "DeferredEventsHost.h"
#include "EmptyChildHost.h"
#include "ShallowCloneHost.h"

#include "SmallStack.h"

#include <conformancekit/ConformanceChecks.h>
#include <referencehost/model/DisplayItem.h>

#include <QtTest>

using namespace Brennvik;
using namespace Brennvik::Conformance;

namespace {

const QString Deferred = QStringLiteral(" — events must be delivered synchronously");
const QString ArrivedLater = QStringLiteral("; it arrived 1 time later from the event loop");
const QString NoEventInside = QStringLiteral("no event arrived inside the call that caused it");

struct Expectation
{
    QString check;
    /// How many messages the check gives; 0: it passes.
    int failureCount;
    /// Text each of them must contain, in the order of the messages.
    QStringList fragments;
};

QVector<Expectation> deferredEventsExpectations()
{
    return {
        {"sync/add-child",
         1,
         {"add child: observer was notified 0 times inside appendChild (expected 1 synchronous "
          "onDisplayItemsAddedEvent "
          "on the parent's observers before the call returns)"
          + ArrivedLater + Deferred}},
        {"sync/remove-child",
         1,
         {"remove child: observer was notified 0 times inside removeChild (expected 1 synchronous "
          "onDisplayItemsRemovedEvent on the parent's observers before the call returns)"
          + ArrivedLater + Deferred}},
        {"sync/visibility",
         2,
         {"visibility change to false: observer was notified 0 times inside setVisibility (setVisible + "
          "notifyVisualPropertiesChanged) (expected 1 synchronous onVisualPropertiesChangedEvent before the call "
          "returns)"
              + ArrivedLater + Deferred,
          "visibility change to true: observer was notified 0 times inside setVisibility"}},
        {"sync/selection",
         2,
         {"selection change to true: observer was notified 0 times inside setSelection (setSelected + "
          "notifyVisualPropertiesChanged)",
          "selection change to false: observer was notified 0 times inside setSelection"}},
        {"sync/property-change",
         1,
         {"property change: observer was notified 0 times inside setProperty (expected 1 synchronous "
          "onPropertiesChangedEvent before the call returns)"
          + ArrivedLater + Deferred}},
        {"reentrancy/unregister-self", 1, {"observer unregistering itself: " + NoEventInside}},
        {"reentrancy/unregister-other", 1, {"observer unregistering another: " + NoEventInside}},
        {"reentrancy/destroy-other", 1, {"observer destroyed during an event: " + NoEventInside}},
        {"reentrancy/register-during-event", 1, {"observer registered during an event: " + NoEventInside}},
        {"empty-references", 0, {}},
        {"out-parameters/collect-subtree", 0, {}},
        {"out-parameters/get-properties", 0, {}},
        {"clone/deep", 0, {}},
        {"widgetkit/dfs-index", 0, {}},
        {"2d/sync-visibility",
         2,
         {"2D visibility change to NotVisible: observer was notified 0 times inside setVisibility (expected 1 "
          "synchronous "
          "onDisplayItemModified before the call returns)"
              + ArrivedLater + Deferred,
          "2D visibility change to Visible: observer was notified 0 times inside setVisibility"}},
        {"2d/sync-structure", 0, {}},
        {"2d/reentrancy", 0, {}},
        {"tree/children-not-empty", 0, {}},
        {"tree/acyclic", 0, {}},
    };
}

QVector<Expectation> shallowCloneExpectations()
{
    QVector<Expectation> expectations;
    for (const CheckInfo& info : checkList())
        expectations.push_back({info.name, 0, {}});
    for (Expectation& expectation : expectations) {
        if (expectation.check == QLatin1String("clone/deep")) {
            // One message per shared item, in pre-order.
            expectation.failureCount = 5;
            const QString shared
                = QStringLiteral("clone: the clone shares item '%1' with the original (at %2) — a deep "
                                 "copy needs new items");
            expectation.fragments = QStringList{shared.arg(QStringLiteral("root"), QStringLiteral("root")),
                                                shared.arg(QStringLiteral("a"), QStringLiteral("root/a")),
                                                shared.arg(QStringLiteral("a1"), QStringLiteral("root/a/a1")),
                                                shared.arg(QStringLiteral("a2"), QStringLiteral("root/a/a2")),
                                                shared.arg(QStringLiteral("b"), QStringLiteral("root/b"))};
        }
    }
    return expectations;
}

QVector<Expectation> carelessExpectations()
{
    QVector<Expectation> expectations;
    for (const CheckInfo& info : checkList())
        expectations.push_back({info.name, 0, {}});
    for (Expectation& expectation : expectations) {
        if (expectation.check == QLatin1String("empty-references")) {
            expectation.failureCount = 1;
            expectation.fragments
                = QStringList{QStringLiteral("empty references: removeChild(nullptr) did not return NotAChild")};
        } else if (expectation.check == QLatin1String("out-parameters/collect-subtree")) {
            expectation.failureCount = 2;
            expectation.fragments = QStringList{
                QStringLiteral("collectSubtree cleared or replaced the list it was given — it must append to it"),
                QStringLiteral("collectSubtreeToShow appended nothing for an item with 4 descendants — the subtree "
                               "actions of the context menu would change nothing")};
        } else if (expectation.check == QLatin1String("out-parameters/get-properties")) {
            expectation.failureCount = 1;
            expectation.fragments = QStringList{
                QStringLiteral("getProperties cleared or replaced the lists it was given — it must append")};
        }
    }
    return expectations;
}

// Every check passes but \a check, which gives \a fragments, one message each.
QVector<Expectation> failingOnly(const QString& check, const QStringList& fragments)
{
    QVector<Expectation> expectations;
    for (const CheckInfo& info : checkList()) {
        if (info.name == check)
            expectations.push_back({info.name, int(fragments.size()), fragments});
        else
            expectations.push_back({info.name, 0, {}});
    }
    return expectations;
}

// In the order the walk meets them: each item's children before its own end.
QVector<Expectation> emptyChildExpectations()
{
    const QString empty = QStringLiteral("tree: '%1' lists an empty reference among getChildren() (child %2) — every "
                                         "child must be an item");
    return failingOnly(QStringLiteral("tree/children-not-empty"),
                       {empty.arg("a1", "1 of 1"), empty.arg("a2", "1 of 1"), empty.arg("a", "3 of 3"),
                        empty.arg("b", "1 of 1"), empty.arg("root", "3 of 3")});
}

QVector<Expectation> backLinkExpectations()
{
    const QString ancestor = QStringLiteral("tree: '%1' lists its ancestor '%2' among getChildren() (child %3) — the "
                                            "display model must be a tree: a walk that follows the children would "
                                            "never end");
    return failingOnly(QStringLiteral("tree/acyclic"),
                       {ancestor.arg("a1", "a", "1 of 1"), ancestor.arg("a2", "a", "1 of 1"),
                        ancestor.arg("a", "root", "3 of 3"), ancestor.arg("b", "root", "1 of 1"),
                        QStringLiteral("tree: 'root' lists itself among getChildren() (child 3 of 3)")});
}

void addRows(const QVector<Expectation>& expectations)
{
    QTest::addColumn<QString>("check");
    QTest::addColumn<int>("failureCount");
    QTest::addColumn<QStringList>("fragments");
    for (const Expectation& e : expectations)
        QTest::newRow(qPrintable(e.check)) << e.check << e.failureCount << e.fragments;
}

void verify(Conformance::ConformanceHost& host)
{
    QFETCH(QString, check);
    QFETCH(int, failureCount);
    QFETCH(QStringList, fragments);
    const CheckResult result = runCheck(host, check);
    const QString report = result.failures.join(QLatin1Char('\n'));
    QVERIFY2(result.skipped.isEmpty(), qPrintable(result.skipped));
    QVERIFY2(
        result.failures.size() == failureCount,
        qPrintable(
            QStringLiteral("%1 messages, expected %2:\n%3").arg(result.failures.size()).arg(failureCount).arg(report)));
    for (int i = 0; i < fragments.size(); ++i)
        QVERIFY2(result.failures[i].contains(fragments[i]),
                 qPrintable(QStringLiteral("message %1 is\n  %2\nexpected it to contain\n  %3")
                                .arg(i)
                                .arg(result.failures[i], fragments[i])));
}

} // namespace

class tst_ConformanceBrokenHost : public QObject
{
    Q_OBJECT

private slots:
    void deferredEvents_data() { addRows(deferredEventsExpectations()); }
    void deferredEvents()
    {
        DeferredEventsHost host;
        verify(host);
    }

    void shallowClone_data() { addRows(shallowCloneExpectations()); }
    void shallowClone()
    {
        ShallowCloneHost host;
        verify(host);
    }

    void carelessOutParameters_data() { addRows(carelessExpectations()); }
    void carelessOutParameters()
    {
        CarelessHost host;
        verify(host);
    }

    void emptyChildren_data() { addRows(emptyChildExpectations()); }
    void emptyChildren()
    {
        EmptyChildHost host;
        verify(host);
    }

    void backLinks_data() { addRows(backLinkExpectations()); }
    void backLinks()
    {
        BackLinkHost host;
        verify(host);
    }

    // A new check needs an expectation for the broken hosts too.
    void everyCheckHasAnExpectation()
    {
        QStringList names;
        for (const CheckInfo& info : checkList())
            names << info.name;
        QStringList expected;
        for (const Expectation& e : deferredEventsExpectations())
            expected << e.check;
        QCOMPARE(expected, names);
    }

    // The tree check for a host's own model: every broken link once, any depth.
    void displayTreeCheck_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QStringList>("fragments");
        QTest::newRow("sound") << 0 << QStringList{};
        QTest::newRow("empty children") << 1
                                        << QStringList{"tree: 'level 19999' lists an empty reference among "
                                                       "getChildren() (child 1 of 1)",
                                                       "tree: 'level 19998' lists an empty reference among "
                                                       "getChildren() (child 2 of 2)"};
        QTest::newRow("back links") << 2
                                    << QStringList{"tree: 'level 19999' lists its ancestor 'level 19998' among "
                                                   "getChildren() (child 1 of 1)",
                                                   "tree: 'level 19998' lists its ancestor 'level 19997' among "
                                                   "getChildren() (child 2 of 2)"};
    }

    void displayTreeCheck()
    {
        QFETCH(int, kind);
        QFETCH(QStringList, fragments);
        constexpr int depth = 20000;
        QStringList messages;
        Test::runOnSmallStack([&] {
            EmptyChildHost emptyChildHost;
            BackLinkHost backLinkHost;
            ReferenceConformanceHost soundHost;
            ConformanceHost* hosts[] = {&soundHost, &emptyChildHost, &backLinkHost};
            ConformanceHost& host = *hosts[kind];
            const auto root = host.makeItem("level 0");
            auto last = root;
            for (int level = 1; level < depth; ++level) {
                const auto item = host.makeItem("level " + std::to_string(level));
                host.appendChild(last, item);
                last = item;
            }
            messages = checkDisplayTree(root);
        });
        QCOMPARE(messages.size(), fragments.isEmpty() ? 0 : 20);
        for (int i = 0; i < fragments.size(); ++i)
            QVERIFY2(messages[i].contains(fragments[i]), qPrintable(messages[i]));
        QVERIFY(checkDisplayTree(nullptr).isEmpty());
    }

    void unknownCheckFails()
    {
        DeferredEventsHost host;
        const CheckResult result = runCheck(host, QStringLiteral("no/such-check"));
        QCOMPARE(result.failures, QStringList{QStringLiteral("no check is named 'no/such-check'")});
    }
};

QTEST_MAIN(tst_ConformanceBrokenHost)
#include "tst_conformance_brokenhost.moc"
