// The registrations of one item: kept in the order they were made through
// appends and removals, whether they are held inline or in the vector a
// second one brings, and handed over whole.

#include <referencehost/model/ObserverRegistrations.h>

#include <hostcontract/DisplayItemEventObserver.h>

#include <QTest>

#include <array>
#include <vector>

using namespace Brennvik;

namespace {

// Observers named by letters; only their addresses are used.
std::array<DisplayItemEventObserver, 4> observers;

DisplayItemEventObserver* observerOf(QChar letter)
{
    return &observers[static_cast<std::size_t>(letter.unicode() - 'a')];
}

QString lettersOf(const ObserverRegistrations& registrations)
{
    QString letters;
    for (const ObserverRegistration& registration : registrations)
        letters += QChar('a' + static_cast<int>(registration.observer - observers.data()));
    return letters;
}

} // namespace

class tst_ObserverRegistrations : public QObject
{
    Q_OBJECT

private slots:
    void edits_data();
    void edits();
    void takeAllEmpties();
};

// A sequence of edits: "+x" appends observer x, "-x" removes it. After each
// edit the store holds the letters given, in order.
void tst_ObserverRegistrations::edits_data()
{
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("one") << QStringList{"+a"} << QStringList{"a"};
    QTest::newRow("one removed") << QStringList{"+a", "-a"} << QStringList{"a", ""};
    QTest::newRow("unknown removed") << QStringList{"+a", "-b"} << QStringList{"a", "a"};
    QTest::newRow("removed from empty") << QStringList{"-a"} << QStringList{""};
    QTest::newRow("two in order") << QStringList{"+a", "+b"} << QStringList{"a", "ab"};
    QTest::newRow("first of two removed") << QStringList{"+a", "+b", "-a"} << QStringList{"a", "ab", "b"};
    QTest::newRow("second of two removed") << QStringList{"+a", "+b", "-b"} << QStringList{"a", "ab", "a"};
    QTest::newRow("back to one, then another")
        << QStringList{"+a", "+b", "-a", "+c"} << QStringList{"a", "ab", "b", "bc"};
    QTest::newRow("middle of three removed")
        << QStringList{"+a", "+b", "+c", "-b"} << QStringList{"a", "ab", "abc", "ac"};
    QTest::newRow("all of four removed in turn") << QStringList{"+a", "+b", "+c", "+d", "-c", "-a", "-d", "-b"}
                                                 << QStringList{"a", "ab", "abc", "abcd", "abd", "bd", "b", ""};
    QTest::newRow("refilled after emptied")
        << QStringList{"+a", "+b", "-a", "-b", "+c", "+d"} << QStringList{"a", "ab", "b", "", "c", "cd"};
}

void tst_ObserverRegistrations::edits()
{
    QFETCH(QStringList, steps);
    QFETCH(QStringList, expected);
    ObserverRegistrations registrations;
    std::uint64_t serial = 0;
    for (int i = 0; i < steps.size(); ++i) {
        const QString& step = steps.at(i);
        DisplayItemEventObserver* observer = observerOf(step.at(1));
        if (step.at(0) == QLatin1Char('+'))
            registrations.append({observer, ++serial});
        else
            registrations.remove(observer);
        QCOMPARE(lettersOf(registrations), expected.at(i));
        QCOMPARE(registrations.size(), static_cast<std::size_t>(expected.at(i).size()));
        QCOMPARE(registrations.empty(), expected.at(i).isEmpty());
    }
}

void tst_ObserverRegistrations::takeAllEmpties()
{
    ObserverRegistrations registrations;
    registrations.append({observerOf('a'), 1});
    registrations.append({observerOf('b'), 2});
    registrations.append({observerOf('c'), 3});
    const auto taken = registrations.takeAll();
    QCOMPARE(taken.size(), 3);
    QCOMPARE(taken.at(0).observer, observerOf('a'));
    QCOMPARE(taken.at(2).serial, std::uint64_t(3));
    QVERIFY(registrations.empty());
    QCOMPARE(lettersOf(registrations), QString());
    registrations.append({observerOf('d'), 4});
    QCOMPARE(lettersOf(registrations), QStringLiteral("d"));
}

QTEST_GUILESS_MAIN(tst_ObserverRegistrations)
#include "tst_observerregistrations.moc"
