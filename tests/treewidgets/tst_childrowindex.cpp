// The index of a parent row's children by display item: which row a search
// or a take finds, and that it stays right while rows are appended, taken
// behind its back or show the same item.

#include <debugmenucontent/treewidgets/ChildRowIndex.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/DisplayItem.h>

#include <QHash>
#include <QList>
#include <QStringList>
#include <QTest>
#include <QTreeWidgetItem>

#include <memory>
#include <vector>

using namespace Brennvik;

namespace {

// Marks the rows with the order they were made in, so that a test names a
// row whatever its position is now.
constexpr int kRowNumberColumn = 1;

// Children made from a layout: a letter is a row showing the item of that
// letter (the same letter, the same item), '-' a row of another kind and
// '*' a row whose item has gone.
class Children
{
public:
    explicit Children(const QString& layout)
    {
        for (const QChar c : layout)
            append(c);
    }

    QTreeWidgetItem& parent() { return m_parent; }

    std::shared_ptr<DisplayItem> item(QChar letter)
    {
        std::shared_ptr<DisplayItem>& item = m_items[letter];
        if (!item)
            item = std::make_shared<DisplayItem>(QString(letter).toStdString());
        return item;
    }

    void append(QChar c)
    {
        QTreeWidgetItem* row = nullptr;
        if (c == QLatin1Char('-')) {
            row = new QTreeWidgetItem(&m_parent, QTreeWidgetItem::UserType);
        } else if (c == QLatin1Char('*')) {
            auto gone = std::make_shared<DisplayItem>("gone");
            row = new DisplayItemTreeWidgetItem(&m_parent, gone, nullptr, false);
        } else {
            row = new DisplayItemTreeWidgetItem(&m_parent, item(c), nullptr, false);
        }
        row->setText(kRowNumberColumn, QString::number(m_made++));
    }

    // The numbers of the rows still there, in their order.
    QString rowsLeft() const
    {
        QStringList numbers;
        for (int i = 0; i < m_parent.childCount(); ++i)
            numbers << m_parent.child(i)->text(kRowNumberColumn);
        return numbers.join(QLatin1Char(' '));
    }

private:
    // Before the parent: the rows go first, while their items still exist.
    QHash<QChar, std::shared_ptr<DisplayItem>> m_items;
    QTreeWidgetItem m_parent;
    int m_made = 0;
};

QString numberOf(const QTreeWidgetItem* row)
{
    return row ? row->text(kRowNumberColumn) : QStringLiteral("none");
}

// What each take returned, and how many rows the index covered after it.
struct Takes
{
    QStringList rows;
    QList<int> indexed;
};

// Runs "take <letter>", "append <layout char>" and "detach <position>" (a row
// taken out behind the index's back, kept alive so that no new row reuses
// its address) and returns what each take did.
Takes runOperations(Children& children, ChildRowIndex& index, const QStringList& operations)
{
    Takes takes;
    std::vector<std::unique_ptr<QTreeWidgetItem>> detached;
    for (const QString& operation : operations) {
        const QStringList words = operation.split(QLatin1Char(' '));
        const QString& argument = words.at(1);
        if (words.at(0) == QLatin1String("take")) {
            std::unique_ptr<QTreeWidgetItem> row(index.takeFirstChildShowing(children.item(argument.at(0))));
            takes.rows << numberOf(row.get());
            takes.indexed << index.indexedCount();
        } else if (words.at(0) == QLatin1String("append")) {
            children.append(argument.at(0));
        } else if (words.at(0) == QLatin1String("detach")) {
            detached.emplace_back(children.parent().takeChild(argument.toInt()));
        } else {
            qFatal("unknown operation %s", qPrintable(operation));
        }
    }
    return takes;
}

} // namespace

class tst_ChildRowIndex : public QObject
{
    Q_OBJECT

private slots:
    void positionOfFirstChildShowing_data();
    void positionOfFirstChildShowing();
    void positionOfChildRow_data();
    void positionOfChildRow();
    void takesRows_data();
    void takesRows();
    void nullItemTakesNothing();
};

void tst_ChildRowIndex::positionOfFirstChildShowing_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QChar>("letter");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("expected");
    QTest::newRow("first row") << "abc" << QChar('a') << 0 << 0;
    QTest::newRow("middle row") << "abc" << QChar('b') << 0 << 1;
    QTest::newRow("first of two") << "abcb" << QChar('b') << 0 << 1;
    QTest::newRow("second of two, from after the first") << "abcb" << QChar('b') << 2 << 3;
    QTest::newRow("before from") << "abc" << QChar('a') << 1 << -1;
    QTest::newRow("from past the end") << "abc" << QChar('c') << 5 << -1;
    QTest::newRow("item without a row") << "abc" << QChar('x') << 0 << -1;
    QTest::newRow("other kinds and gone items skipped") << "-*-a" << QChar('a') << 0 << 3;
    QTest::newRow("no children") << "" << QChar('a') << 0 << -1;
}

void tst_ChildRowIndex::positionOfFirstChildShowing()
{
    QFETCH(QString, layout);
    QFETCH(QChar, letter);
    QFETCH(int, from);
    QFETCH(int, expected);
    Children children(layout);
    QCOMPARE(ChildRowIndex::positionOfFirstChildShowing(children.parent(), children.item(letter), from), expected);
}

void tst_ChildRowIndex::positionOfChildRow_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("start");
    QTest::newRow("at the start") << 10 << 5 << 5;
    QTest::newRow("after the start") << 10 << 7 << 0;
    QTest::newRow("before the start") << 10 << 2 << 9;
    QTest::newRow("one before the start") << 10 << 4 << 5;
    QTest::newRow("start before the first row") << 10 << 3 << -4;
    QTest::newRow("start past the last row") << 10 << 6 << 40;
    QTest::newRow("last row, start at the first") << 10 << 9 << 0;
    QTest::newRow("first row, start at the last") << 10 << 0 << 9;
    QTest::newRow("not a child") << 10 << -1 << 3;
    QTest::newRow("no children") << 0 << -1 << 0;
}

void tst_ChildRowIndex::positionOfChildRow()
{
    QFETCH(int, count);
    QFETCH(int, position);
    QFETCH(int, start);
    Children children(QString(count, QLatin1Char('-')));
    QTreeWidgetItem stranger;
    const QTreeWidgetItem* row = position < 0 ? &stranger : children.parent().child(position);
    QCOMPARE(ChildRowIndex::positionOfChildRow(children.parent(), row, start), position);
}

void tst_ChildRowIndex::takesRows_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QStringList>("operations");
    QTest::addColumn<QStringList>("taken");
    QTest::addColumn<QList<int>>("indexed");
    QTest::addColumn<QString>("left");

    QTest::newRow("first row") << "abc" << QStringList{"take a"} << QStringList{"0"} << QList<int>{2} << "1 2";
    QTest::newRow("last row") << "abc" << QStringList{"take c"} << QStringList{"2"} << QList<int>{2} << "0 1";
    QTest::newRow("backwards") << "abcd" << QStringList{"take d", "take c", "take b", "take a"}
                               << QStringList{"3", "2", "1", "0"} << QList<int>{3, 2, 1, 0} << "";
    QTest::newRow("scattered") << "abcdefg" << QStringList{"take e", "take b", "take g", "take a"}
                               << QStringList{"4", "1", "6", "0"} << QList<int>{6, 5, 4, 3} << "2 3 5";
    QTest::newRow("item without a row") << "abc" << QStringList{"take x", "take b"} << QStringList{"none", "1"}
                                        << QList<int>{3, 2} << "0 2";
    QTest::newRow("taken twice") << "abc" << QStringList{"take b", "take b"} << QStringList{"1", "none"}
                                 << QList<int>{2, 2} << "0 2";
    QTest::newRow("shared item, rows in order") << "abab" << QStringList{"take a", "take a", "take a"}
                                                << QStringList{"0", "2", "none"} << QList<int>{3, 2, 2} << "1 3";
    QTest::newRow("shared item, three rows") << "aaba" << QStringList{"take a", "take a", "take a"}
                                             << QStringList{"0", "1", "3"} << QList<int>{3, 2, 1} << "2";
    QTest::newRow("other kinds and gone items skipped")
        << "-a*a" << QStringList{"take a", "take a"} << QStringList{"1", "3"} << QList<int>{3, 2} << "0 2";
    QTest::newRow("rows appended after indexing")
        << "ab" << QStringList{"take a", "append c", "append b", "take c", "take b", "take b"}
        << QStringList{"0", "2", "1", "3"} << QList<int>{1, 2, 1, 0} << "";
    // Fewer rows than indexed: the index starts over.
    QTest::newRow("row detached behind the index's back")
        << "abcd" << QStringList{"take a", "detach 1", "take c", "take d"} << QStringList{"0", "none", "3"}
        << QList<int>{3, 2, 1} << "1";
    // As many rows as indexed, one of them new: the stale entry sends the
    // take to a scan, and the index starts over on the next one.
    QTest::newRow("row replaced behind the index's back")
        << "abcd" << QStringList{"take a", "detach 1", "append c", "take c", "take d"} << QStringList{"0", "4", "3"}
        << QList<int>{3, 0, 1} << "1";
    QTest::newRow("no children") << "" << QStringList{"take a"} << QStringList{"none"} << QList<int>{0} << "";
}

void tst_ChildRowIndex::takesRows()
{
    QFETCH(QString, layout);
    QFETCH(QStringList, operations);
    QFETCH(QStringList, taken);
    QFETCH(QList<int>, indexed);
    QFETCH(QString, left);
    Children children(layout);
    ChildRowIndex index(children.parent());
    const Takes takes = runOperations(children, index, operations);
    QCOMPARE(takes.rows, taken);
    QCOMPARE(takes.indexed, indexed);
    QCOMPARE(children.rowsLeft(), left);
}

void tst_ChildRowIndex::nullItemTakesNothing()
{
    Children children(QStringLiteral("ab"));
    ChildRowIndex index(children.parent());
    QVERIFY(!index.takeFirstChildShowing(nullptr));
    QCOMPARE(children.rowsLeft(), QStringLiteral("0 1"));
}

QTEST_MAIN(tst_ChildRowIndex)
#include "tst_childrowindex.moc"
