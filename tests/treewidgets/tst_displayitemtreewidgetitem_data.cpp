// What a host or a user sees of a row's data: its texts, icon and data roles,
// the signals its tree and the tree's model send when the row changes, and
// how Qt's own copies, streams, sorting and searching treat it. The rows are
// compared with what Qt shows for them, in a shown tree and detached.

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/DisplayItem.h>

#include "../common/DebugIcons.h"
#include "../common/ShownWindow.h"

#include <QAbstractItemModelTester>
#include <QDataStream>
#include <QTest>

#include <typeinfo>

using namespace Brennvik;
using Brennvik::Test::debugIconName;

namespace {

const int DifferentRole = DisplayItemTreeWidgetItem::DifferentVisibilityRole;

QString rolesText(const QVector<int>& roles)
{
    QStringList parts;
    for (int role : roles)
        parts << QString::number(role);
    return QStringLiteral("[%1]").arg(parts.join(QLatin1Char(',')));
}

// Writes what the tree and its model announce, one line per signal, naming
// rows by the label the test gave them.
class SignalLog : public QObject
{
public:
    explicit SignalLog(DisplayItemTreeWidget* tree)
        : m_tree(tree)
    {
        connect(tree, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
            lines << QStringLiteral("item %1 %2").arg(label(item)).arg(column);
        });
        QAbstractItemModel* model = tree->model();
        connect(model, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles) {
                    const QString rows = topLeft.parent() == bottomRight.parent() && topLeft.row() == bottomRight.row()
                        ? labelOf(topLeft)
                        : labelOf(topLeft) + QLatin1Char('/') + labelOf(bottomRight);
                    lines << QStringLiteral("data %1 %2-%3 %4")
                                 .arg(rows)
                                 .arg(topLeft.column())
                                 .arg(bottomRight.column())
                                 .arg(rolesText(roles));
                });
        connect(model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex&, int first, int last) {
            lines << QStringLiteral("inserted %1-%2").arg(first).arg(last);
        });
        connect(model, &QAbstractItemModel::layoutChanged, this, [this]() { lines << QStringLiteral("layout"); });
    }

    void name(QTreeWidgetItem* row, const QString& label) { m_labels.insert(row, label); }
    QStringList take() { return std::exchange(lines, {}); }

    QStringList lines;

private:
    // Rows not named yet (a row announces itself while it is being built) go
    // by their place: the rows above them and their own position.
    QString label(QTreeWidgetItem* row) const
    {
        if (!row)
            return QStringLiteral("-");
        if (m_labels.contains(row))
            return m_labels.value(row);
        QTreeWidgetItem* parent = row->parent();
        const int position = parent ? parent->indexOfChild(row) : m_tree->indexOfTopLevelItem(row);
        return (parent ? label(parent) + QLatin1Char('/') : QStringLiteral("#")) + QString::number(position);
    }
    QString labelOf(const QModelIndex& index) const { return label(m_tree->getItemFromModelIndex(index)); }

    DisplayItemTreeWidget* m_tree;
    QHash<QTreeWidgetItem*, QString> m_labels;
};

// Everything a row answers through Qt's item interface, as one text per
// question, so that two rows can be compared in one go.
QStringList observed(const QTreeWidgetItem& row)
{
    QStringList lines;
    lines << QStringLiteral("columns %1").arg(row.columnCount());
    for (int column = 0; column < 3; ++column) {
        lines << QStringLiteral("text %1 '%2'").arg(column).arg(row.text(column));
        lines << QStringLiteral("icon %1 %2").arg(column).arg(debugIconName(row.icon(column)));
        for (int role :
             {int(Qt::DisplayRole), int(Qt::EditRole), int(Qt::ToolTipRole), int(Qt::UserRole), DifferentRole}) {
            const QVariant value = row.data(column, role);
            lines << QStringLiteral("data %1 %2 %3 %4")
                         .arg(column)
                         .arg(role)
                         .arg(value.isValid() ? QString::fromLatin1(value.typeName()) : QStringLiteral("-"))
                         .arg(value.toString());
        }
    }
    lines << QStringLiteral("flags %1").arg(int(row.flags()));
    return lines;
}

QByteArray streamed(const QTreeWidgetItem& row)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << row;
    return bytes;
}

} // namespace

class tst_DisplayItemTreeWidgetItemData : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rowData_data();
    void rowData();
    void rowsOfOneStateShareTheirIcon();
    void newRowsAnnounceIconThenText();
    void changeSignals_data();
    void changeSignals();
    void flagsSignalCoversAllColumnsOfTheRow();
    void iconChangeKeepsWhatOthersSet();
    void rowUnderDisabledParentIsDisabled();
    void rowMovedToAnotherParentKeepsItsData();
    void copiesShowWhatTheRowShows();
    void qtCopiesShowWhatTheRowShows();
    void iconChangesLeaveQtCopiesAlone();
    void cloneIsPlainRowWithSameData();
    void streamedRowReadsBackAlike();
    void modelItemDataOfColumnZero();
    void sortByColumnZero();
    void rowsInSortingTreeAreSortedLater();
    void findItemsByText();
    void typeAheadFindsRow();
    void modelStaysConsistentWhileRowsChange();

private:
    DisplayItemTreeWidgetItem* addRow(const QString& name, bool duplicate = false);

    DisplayItemTreeWidget* m_tree = nullptr;
    std::vector<std::shared_ptr<DisplayItem>> m_items;
};

void tst_DisplayItemTreeWidgetItemData::init()
{
    m_tree = new DisplayItemTreeWidget(nullptr, true);
    m_tree->setColumnCount(2);
    m_tree->resize(400, 300);
    QVERIFY(Test::showAtOrigin(*m_tree));
}

void tst_DisplayItemTreeWidgetItemData::cleanup()
{
    delete m_tree;
    m_tree = nullptr;
    m_items.clear();
}

DisplayItemTreeWidgetItem* tst_DisplayItemTreeWidgetItemData::addRow(const QString& name, bool duplicate)
{
    auto item = std::make_shared<DisplayItem>(name.toStdString());
    m_items.push_back(item);
    return new DisplayItemTreeWidgetItem(m_tree, item, nullptr, duplicate);
}

void tst_DisplayItemTreeWidgetItemData::rowData_data()
{
    QTest::addColumn<bool>("attached");
    QTest::addColumn<QString>("state"); // "visible", "hidden", "gone"
    QTest::addColumn<bool>("duplicate");
    QTest::addColumn<bool>("different");
    QTest::addColumn<QString>("icon");

    for (bool attached : {true, false}) {
        const char* where = attached ? "shown tree, " : "detached, ";
        auto row
            = [&](const char* name) -> QTestData& { return QTest::newRow(QByteArray(where).append(name).constData()); };
        row("visible") << attached << "visible" << false << false << "visible";
        row("visible duplicate") << attached << "visible" << true << false << "visible_duplicate";
        row("visible different") << attached << "visible" << false << true << "visible_different";
        row("hidden") << attached << "hidden" << false << false << "not_visible";
        row("hidden duplicate") << attached << "hidden" << true << false << "not_visible";
        row("hidden different") << attached << "hidden" << false << true << "visible_different";
        row("gone") << attached << "gone" << false << false << "visible_different";
    }
}

void tst_DisplayItemTreeWidgetItemData::rowData()
{
    QFETCH(bool, attached);
    QFETCH(QString, state);
    QFETCH(bool, duplicate);
    QFETCH(bool, different);
    QFETCH(QString, icon);

    auto item = std::make_shared<DisplayItem>("Item");
    item->setVisible(state != QLatin1String("hidden"));
    QTreeWidget* tree = attached ? m_tree : nullptr;
    auto* row = new DisplayItemTreeWidgetItem(tree, item, nullptr, duplicate);
    std::unique_ptr<DisplayItemTreeWidgetItem> detached(attached ? nullptr : row);
    if (state == QLatin1String("gone")) {
        item.reset();
        row->onPropertiesChangedEvent(nullptr);
    }
    if (different)
        row->setDifferentVisibility(true);

    QCOMPARE(row->treeWidget(), tree);
    QCOMPARE(row->columnCount(), 1);
    QCOMPARE(row->text(0), QStringLiteral("Item"));
    QCOMPARE(row->text(1), QString());
    QCOMPARE(debugIconName(row->icon(0)), icon);
    QVERIFY(row->icon(1).isNull());

    QCOMPARE(row->data(0, Qt::DisplayRole), QVariant(QStringLiteral("Item")));
    QCOMPARE(row->data(0, Qt::EditRole), QVariant(QStringLiteral("Item")));
    const QVariant decoration = row->data(0, Qt::DecorationRole);
    QCOMPARE(decoration.userType(), int(QMetaType::QIcon));
    QCOMPARE(decoration.value<QIcon>().cacheKey(), row->icon(0).cacheKey());
    QVERIFY(!row->data(0, Qt::ToolTipRole).isValid());
    QVERIFY(!row->data(0, Qt::UserRole).isValid());
    QCOMPARE(row->data(0, DifferentRole), different ? QVariant(true) : QVariant());
    for (int role : {int(Qt::DisplayRole), int(Qt::EditRole), int(Qt::DecorationRole), int(Qt::ToolTipRole),
                     int(Qt::UserRole), DifferentRole})
        QVERIFY2(!row->data(1, role).isValid(), qPrintable(QString::number(role)));

    if (attached) {
        const QModelIndex index = m_tree->getModelIndexFromItem(row, 0);
        QCOMPARE(index.data(Qt::DisplayRole), QVariant(QStringLiteral("Item")));
        QCOMPARE(index.data(Qt::DecorationRole).value<QIcon>().cacheKey(), row->icon(0).cacheKey());
        QVERIFY(!index.sibling(0, 1).data(Qt::DisplayRole).isValid());
    }
}

void tst_DisplayItemTreeWidgetItemData::rowsOfOneStateShareTheirIcon()
{
    auto* shown = addRow(QStringLiteral("Shown"));
    auto item = std::make_shared<DisplayItem>("Detached");
    DisplayItemTreeWidgetItem detached(static_cast<QTreeWidget*>(nullptr), item, nullptr, false);
    QCOMPARE(shown->icon(0).cacheKey(), detached.icon(0).cacheKey());
    auto* duplicate = addRow(QStringLiteral("Duplicate"), true);
    QVERIFY(duplicate->icon(0).cacheKey() != shown->icon(0).cacheKey());
}

void tst_DisplayItemTreeWidgetItemData::newRowsAnnounceIconThenText()
{
    SignalLog log(m_tree);
    auto* first = addRow(QStringLiteral("First"));
    log.name(first, QStringLiteral("first"));
    auto item = std::make_shared<DisplayItem>("Child");
    new DisplayItemTreeWidgetItem(first, item, nullptr, false);
    const QStringList expected{
        QStringLiteral("inserted 0-0"),      QStringLiteral("item #0 0"),
        QStringLiteral("data #0 0-0 [1]"),   QStringLiteral("item #0 0"),
        QStringLiteral("data #0 0-0 [0,2]"), QStringLiteral("inserted 0-0"),
        QStringLiteral("item first/0 0"),    QStringLiteral("data first/0 0-0 [1]"),
        QStringLiteral("item first/0 0"),    QStringLiteral("data first/0 0-0 [0,2]"),
    };
    QCOMPARE(log.take(), expected);
}

void tst_DisplayItemTreeWidgetItemData::changeSignals_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QStringList>("expected");

    const QString iconChange = QStringLiteral("data row 0-0 [1]");
    const QString itemChanged = QStringLiteral("item row 0");
    QTest::newRow("host hides the item") << "hide" << QStringList{itemChanged, iconChange};
    QTest::newRow("host hides and shows the item")
        << "hide and show" << QStringList{itemChanged, iconChange, itemChanged, iconChange};
    QTest::newRow("host event without a change") << "notify" << QStringList{};
    QTest::newRow("difference marked") << "mark"
                                       << QStringList{itemChanged, QStringLiteral("data row 0-0 [556]"), itemChanged,
                                                      iconChange};
    QTest::newRow("difference marked twice")
        << "mark twice" << QStringList{itemChanged, QStringLiteral("data row 0-0 [556]"), itemChanged, iconChange};
    QTest::newRow("difference cleared on a fresh row")
        << "clear" << QStringList{itemChanged, QStringLiteral("data row 0-0 [556]")};
    QTest::newRow("difference marked then cleared")
        << "mark and clear" << QStringList{itemChanged, QStringLiteral("data row 0-0 [556]"), itemChanged, iconChange,
                                           itemChanged, QStringLiteral("data row 0-0 [556]"), itemChanged, iconChange};
    QTest::newRow("new text") << "text" << QStringList{itemChanged, QStringLiteral("data row 0-0 [0,2]")};
    QTest::newRow("same text") << "same text" << QStringList{};
    QTest::newRow("text of column 1") << "text 1"
                                      << QStringList{QStringLiteral("item row 1"),
                                                     QStringLiteral("data row 1-1 [0,2]")};
    QTest::newRow("other icon") << "icon" << QStringList{itemChanged, iconChange};
    // Qt's own setIcon, which the row leaves alone: Qt 6's QVariant finds no icon equal to another.
    QTest::newRow("same icon") << "same icon"
                               << (QT_VERSION_MAJOR >= 6 ? QStringList{itemChanged, iconChange} : QStringList{});
    QTest::newRow("user data") << "user" << QStringList{itemChanged, QStringLiteral("data row 0-0 [256]")};
    QTest::newRow("flags") << "flags" << QStringList{itemChanged, QStringLiteral("data row 0-0 []")};
    QTest::newRow("tool tip") << "tooltip" << QStringList{itemChanged, QStringLiteral("data row 0-0 [3]")};
    QTest::newRow("edit role") << "edit" << QStringList{itemChanged, QStringLiteral("data row 0-0 [0,2]")};
}

void tst_DisplayItemTreeWidgetItemData::changeSignals()
{
    QFETCH(QString, change);
    QFETCH(QStringList, expected);

    auto* row = addRow(QStringLiteral("Item"));
    const std::shared_ptr<DisplayItem> item = m_items.back();
    SignalLog log(m_tree);
    log.name(row, QStringLiteral("row"));

    if (change == QLatin1String("hide")) {
        item->setVisible(false);
        item->notifyVisualPropertiesChanged();
        QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));
        QCOMPARE(row->text(0), QStringLiteral("Item"));
    } else if (change == QLatin1String("hide and show")) {
        item->setVisible(false);
        item->notifyVisualPropertiesChanged();
        item->setVisible(true);
        item->notifyVisualPropertiesChanged();
        QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));
        QCOMPARE(row->text(0), QStringLiteral("Item"));
    } else if (change == QLatin1String("notify")) {
        item->notifyVisualPropertiesChanged();
    } else if (change == QLatin1String("mark")) {
        row->setDifferentVisibility(true);
    } else if (change == QLatin1String("mark twice")) {
        row->setDifferentVisibility(true);
        row->setDifferentVisibility(true);
    } else if (change == QLatin1String("clear")) {
        row->setDifferentVisibility(false);
    } else if (change == QLatin1String("mark and clear")) {
        row->setDifferentVisibility(true);
        row->setDifferentVisibility(false);
    } else if (change == QLatin1String("text")) {
        row->setText(0, QStringLiteral("Renamed"));
    } else if (change == QLatin1String("same text")) {
        row->setText(0, QStringLiteral("Item"));
    } else if (change == QLatin1String("text 1")) {
        row->setText(1, QStringLiteral("7"));
        QCOMPARE(row->columnCount(), 2);
    } else if (change == QLatin1String("icon")) {
        row->setIcon(0, QIcon(QStringLiteral(":/Icons/Debug/not_visible.svg")));
        QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));
    } else if (change == QLatin1String("same icon")) {
        row->setIcon(0, row->icon(0));
    } else if (change == QLatin1String("user")) {
        row->setData(0, Qt::UserRole, 42);
        QCOMPARE(row->data(0, Qt::UserRole), QVariant(42));
    } else if (change == QLatin1String("flags")) {
        row->setFlags(Qt::ItemIsEnabled);
        QCOMPARE(row->flags(), Qt::ItemFlags(Qt::ItemIsEnabled));
    } else if (change == QLatin1String("tooltip")) {
        row->setToolTip(0, QStringLiteral("Tip"));
        QCOMPARE(row->toolTip(0), QStringLiteral("Tip"));
    } else if (change == QLatin1String("edit")) {
        row->setData(0, Qt::EditRole, QStringLiteral("Edited"));
        QCOMPARE(row->text(0), QStringLiteral("Edited"));
    } else {
        QFAIL("unknown change");
    }
    QCOMPARE(log.take(), expected);
}

void tst_DisplayItemTreeWidgetItemData::flagsSignalCoversAllColumnsOfTheRow()
{
    auto* row = addRow(QStringLiteral("Item"));
    row->setText(1, QStringLiteral("3"));
    SignalLog log(m_tree);
    log.name(row, QStringLiteral("row"));
    row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    row->setDisabled(true);
    const QStringList expected{QStringLiteral("item row 0"), QStringLiteral("data row 0-1 []"),
                               QStringLiteral("item row 0"), QStringLiteral("data row 0-1 []")};
    QCOMPARE(log.take(), expected);
}

void tst_DisplayItemTreeWidgetItemData::iconChangeKeepsWhatOthersSet()
{
    auto* row = addRow(QStringLiteral("Item"));
    const std::shared_ptr<DisplayItem> item = m_items.back();
    row->setToolTip(0, QStringLiteral("Tip"));
    row->setData(0, Qt::UserRole, 5);
    row->setText(1, QStringLiteral("1"));
    row->setData(1, Qt::UserRole, 6);

    item->setVisible(false);
    item->notifyVisualPropertiesChanged();
    row->setDifferentVisibility(true);
    row->setDifferentVisibility(false);

    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(row->toolTip(0), QStringLiteral("Tip"));
    QCOMPARE(row->data(0, Qt::UserRole), QVariant(5));
    QCOMPARE(row->text(1), QStringLiteral("1"));
    QCOMPARE(row->data(1, Qt::UserRole), QVariant(6));
    QCOMPARE(row->data(0, DifferentRole), QVariant(false));
    QCOMPARE(row->columnCount(), 2);
    QCOMPARE(row->text(0), QStringLiteral("Item"));
}

void tst_DisplayItemTreeWidgetItemData::rowUnderDisabledParentIsDisabled()
{
    auto* parent = addRow(QStringLiteral("Parent"));
    parent->setDisabled(true);
    auto item = std::make_shared<DisplayItem>("Child");
    auto* child = new DisplayItemTreeWidgetItem(parent, item, nullptr, false);
    QVERIFY(child->isDisabled());
    QVERIFY(!(child->flags() & Qt::ItemIsEnabled));
    QCOMPARE(child->text(0), QStringLiteral("Child"));
    QCOMPARE(debugIconName(child->icon(0)), QStringLiteral("visible"));
    QCOMPARE(child->columnCount(), 1);

    parent->setDisabled(false);
    QVERIFY(!child->isDisabled());
    QCOMPARE(child->flags(), QTreeWidgetItem().flags());
}

void tst_DisplayItemTreeWidgetItemData::rowMovedToAnotherParentKeepsItsData()
{
    auto* first = addRow(QStringLiteral("First"));
    auto* second = addRow(QStringLiteral("Second"));
    auto item = std::make_shared<DisplayItem>("Child");
    auto* child = new DisplayItemTreeWidgetItem(first, item, nullptr, true);
    child->setToolTip(0, QStringLiteral("Tip"));
    const QStringList before = observed(*child);

    QCOMPARE(first->takeChild(0), child);
    second->addChild(child);
    QCOMPARE(observed(*child), before);
    QCOMPARE(debugIconName(child->icon(0)), QStringLiteral("visible_duplicate"));

    item->setVisible(false);
    item->notifyVisualPropertiesChanged();
    QCOMPARE(debugIconName(child->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(child->toolTip(0), QStringLiteral("Tip"));
}

void tst_DisplayItemTreeWidgetItemData::copiesShowWhatTheRowShows()
{
    auto* row = addRow(QStringLiteral("Item"), true);
    row->setDifferentVisibility(true);
    row->setToolTip(0, QStringLiteral("Tip"));
    const QStringList shown = observed(*row);

    DisplayItemTreeWidgetItem copy(*row);
    QCOMPARE(observed(copy), shown);
    QCOMPARE(copy.icon(0).cacheKey(), row->icon(0).cacheKey());
    QCOMPARE(copy.type(), int(QTreeWidgetItem::Type));

    auto other = std::make_shared<DisplayItem>("Other");
    other->setVisible(false);
    DisplayItemTreeWidgetItem assigned(static_cast<QTreeWidget*>(nullptr), other, nullptr, false);
    assigned.setText(1, QStringLiteral("9"));
    assigned = *row;
    QCOMPARE(observed(assigned), shown);
    QCOMPARE(assigned.icon(0).cacheKey(), row->icon(0).cacheKey());

    // The copy holds its own data: changing it leaves the row alone.
    copy.setText(0, QStringLiteral("Copy"));
    copy.setIcon(0, QIcon());
    QCOMPARE(observed(*row), shown);
}

void tst_DisplayItemTreeWidgetItemData::qtCopiesShowWhatTheRowShows()
{
    auto* row = addRow(QStringLiteral("Item"));
    row->setText(1, QStringLiteral("4"));
    const QStringList shown = observed(*row);

    QTreeWidgetItem plainCopy(*row);
    QCOMPARE(observed(plainCopy), shown);
    QCOMPARE(plainCopy.icon(0).cacheKey(), row->icon(0).cacheKey());

    QTreeWidgetItem plainAssigned;
    plainAssigned = *row;
    QCOMPARE(observed(plainAssigned), shown);
}

void tst_DisplayItemTreeWidgetItemData::iconChangesLeaveQtCopiesAlone()
{
    auto* row = addRow(QStringLiteral("Item"));
    const std::shared_ptr<DisplayItem> item = m_items.back();
    const QStringList shown = observed(*row);
    QTreeWidgetItem before(*row);

    item->setVisible(false);
    item->notifyVisualPropertiesChanged();
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(observed(before), shown);
    QCOMPARE(debugIconName(before.icon(0)), QStringLiteral("visible"));

    // A copy that takes data of its own keeps it while the row's icon changes back.
    QTreeWidgetItem after(*row);
    after.setData(0, Qt::UserRole, 3);
    item->setVisible(true);
    item->notifyVisualPropertiesChanged();
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));
    QCOMPARE(debugIconName(after.icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(after.data(0, Qt::UserRole), QVariant(3));
    QVERIFY(!row->data(0, Qt::UserRole).isValid());
    QCOMPARE(row->text(0), QStringLiteral("Item"));
}

void tst_DisplayItemTreeWidgetItemData::cloneIsPlainRowWithSameData()
{
    auto* row = addRow(QStringLiteral("Item"));
    row->setToolTip(0, QStringLiteral("Tip"));
    auto item = std::make_shared<DisplayItem>("Child");
    item->setVisible(false);
    auto* child = new DisplayItemTreeWidgetItem(row, item, nullptr, false);

    std::unique_ptr<QTreeWidgetItem> clone(row->clone());
    QVERIFY(typeid(*clone) == typeid(QTreeWidgetItem));
    QCOMPARE(clone->type(), int(QTreeWidgetItem::Type));
    QVERIFY(clone->treeWidget() == nullptr);
    QCOMPARE(observed(*clone), observed(*row));
    QCOMPARE(clone->icon(0).cacheKey(), row->icon(0).cacheKey());
    QCOMPARE(clone->childCount(), 1);
    QCOMPARE(observed(*clone->child(0)), observed(*child));
    QCOMPARE(debugIconName(clone->child(0)->icon(0)), QStringLiteral("not_visible"));
}

void tst_DisplayItemTreeWidgetItemData::streamedRowReadsBackAlike()
{
    auto* row = addRow(QStringLiteral("Item"), true);
    row->setData(0, Qt::UserRole, QStringLiteral("user"));
    const QByteArray bytes = streamed(*row);

    QTreeWidgetItem plain;
    plain.setText(0, QStringLiteral("Item"));
    plain.setIcon(0, row->icon(0));
    plain.setData(0, Qt::UserRole, QStringLiteral("user"));
    QCOMPARE(bytes, streamed(plain));

    QTreeWidgetItem readBack;
    QDataStream in(bytes);
    in >> readBack;
    QCOMPARE(observed(readBack), observed(*row));
}

void tst_DisplayItemTreeWidgetItemData::modelItemDataOfColumnZero()
{
    auto* row = addRow(QStringLiteral("Item"));
    row->setDifferentVisibility(true);
    const QMap<int, QVariant> roles = m_tree->model()->itemData(m_tree->getModelIndexFromItem(row, 0));
    QCOMPARE(roles.keys(), (QList<int>{Qt::DisplayRole, Qt::DecorationRole, DifferentRole}));
    QCOMPARE(roles.value(Qt::DisplayRole), QVariant(QStringLiteral("Item")));
    QCOMPARE(roles.value(Qt::DecorationRole).value<QIcon>().cacheKey(), row->icon(0).cacheKey());
    QCOMPARE(roles.value(DifferentRole), QVariant(true));
    QVERIFY(m_tree->model()->itemData(m_tree->getModelIndexFromItem(row, 1)).isEmpty());
}

void tst_DisplayItemTreeWidgetItemData::sortByColumnZero()
{
    for (const char* name : {"Punch", "blank", "Die", "Blank"})
        addRow(QString::fromLatin1(name));
    m_tree->sortItems(0, Qt::AscendingOrder);
    QStringList order;
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i)
        order << m_tree->topLevelItem(i)->text(0);
    QCOMPARE(order, (QStringList{"Blank", "Die", "Punch", "blank"}));

    m_tree->sortItems(0, Qt::DescendingOrder);
    order.clear();
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i)
        order << m_tree->topLevelItem(i)->text(0);
    QCOMPARE(order, (QStringList{"blank", "Punch", "Die", "Blank"}));
}

void tst_DisplayItemTreeWidgetItemData::rowsInSortingTreeAreSortedLater()
{
    m_tree->setSortingEnabled(true);
    m_tree->sortByColumn(0, Qt::AscendingOrder);
    SignalLog log(m_tree);
    auto* punch = addRow(QStringLiteral("Punch"));
    auto* blank = addRow(QStringLiteral("Blank"));
    log.name(punch, QStringLiteral("punch"));
    log.name(blank, QStringLiteral("blank"));
    const QStringList expected{
        QStringLiteral("inserted 0-0"),      QStringLiteral("item #0 0"),         QStringLiteral("data #0 0-0 [1]"),
        QStringLiteral("item #0 0"),         QStringLiteral("data #0 0-0 [0,2]"), QStringLiteral("inserted 1-1"),
        QStringLiteral("item #1 0"),         QStringLiteral("data #1 0-0 [1]"),   QStringLiteral("item #1 0"),
        QStringLiteral("data #1 0-0 [0,2]"),
    };
    QCOMPARE(log.take(), expected);

    QCOMPARE(m_tree->topLevelItem(0), blank);
    QCOMPARE(m_tree->topLevelItem(1), punch);
    QCOMPARE(log.take(), QStringList{QStringLiteral("layout")});

    // A renamed row moves at once.
    blank->setText(0, QStringLiteral("Tool"));
    QCOMPARE(m_tree->topLevelItem(0), punch);
    QCOMPARE(m_tree->topLevelItem(1), blank);
}

void tst_DisplayItemTreeWidgetItemData::findItemsByText()
{
    auto* blank = addRow(QStringLiteral("Blank"));
    addRow(QStringLiteral("Punch"));
    auto item = std::make_shared<DisplayItem>("Blank mesh");
    auto* mesh = new DisplayItemTreeWidgetItem(blank, item, nullptr, false);

    QCOMPARE(m_tree->findItems(QStringLiteral("Blank"), Qt::MatchExactly, 0), QList<QTreeWidgetItem*>{blank});
    QCOMPARE(m_tree->findItems(QStringLiteral("Blank"), Qt::MatchStartsWith | Qt::MatchRecursive, 0),
             (QList<QTreeWidgetItem*>{blank, mesh}));
    QVERIFY(m_tree->findItems(QStringLiteral("Blank"), Qt::MatchExactly, 1).isEmpty());

    mesh->setText(0, QStringLiteral("Mesh"));
    QCOMPARE(m_tree->findItems(QStringLiteral("Mesh"), Qt::MatchExactly | Qt::MatchRecursive, 0),
             QList<QTreeWidgetItem*>{mesh});
}

void tst_DisplayItemTreeWidgetItemData::typeAheadFindsRow()
{
    auto* blank = addRow(QStringLiteral("Blank"));
    auto* punch = addRow(QStringLiteral("Punch"));
    auto* die = addRow(QStringLiteral("Die"));
    m_tree->setFocus();
    m_tree->setCurrentItem(blank);

    m_tree->keyboardSearch(QStringLiteral("p"));
    QCOMPARE(m_tree->currentItem(), punch);
    QTest::qWait(QApplication::keyboardInputInterval() + 50);
    QTest::keyClicks(m_tree, QStringLiteral("di"));
    QCOMPARE(m_tree->currentItem(), die);
}

void tst_DisplayItemTreeWidgetItemData::modelStaysConsistentWhileRowsChange()
{
    // One column: the tester takes Qt's tree model to task for giving a
    // column-1 parent the children of column 0, whatever the rows.
    m_tree->setColumnCount(1);
    QAbstractItemModelTester tester(m_tree->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    auto* top = addRow(QStringLiteral("Top"));
    const std::shared_ptr<DisplayItem> topItem = m_items.back();
    std::vector<std::shared_ptr<DisplayItem>> children;
    for (int i = 0; i < 5; ++i) {
        children.push_back(std::make_shared<DisplayItem>("Child " + std::to_string(i)));
        new DisplayItemTreeWidgetItem(top, children.back(), nullptr, i % 2 == 1);
    }
    top->setExpanded(true);
    topItem->setVisible(false);
    topItem->notifyVisualPropertiesChanged();
    auto* first = static_cast<DisplayItemTreeWidgetItem*>(top->child(0));
    first->setDifferentVisibility(true);
    first->setText(0, QStringLiteral("Renamed"));
    first->setFlags(Qt::ItemIsEnabled);
    delete top->takeChild(2);
    auto* goneRow = static_cast<DisplayItemTreeWidgetItem*>(top->child(3));
    children[4].reset();
    goneRow->toggleVisibility();
    m_tree->sortItems(0, Qt::DescendingOrder);
    QCOMPARE(top->childCount(), 4);
    QCOMPARE(top->child(0), first);
    QCOMPARE(debugIconName(top->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(debugIconName(goneRow->icon(0)), QStringLiteral("visible_different"));
}

QTEST_MAIN(tst_DisplayItemTreeWidgetItemData)
#include "tst_displayitemtreewidgetitem_data.moc"
