#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/ShellItem.h>

#include "../common/DebugIcons.h"

#include <QTest>
#include <QTreeWidget>

using namespace Brennvik;
using Brennvik::Test::debugIconName;
using Brennvik::Test::debugIconNames;

namespace {

// A host item that reports visual changes only when told to, so that a test
// can look at a row between a change and its event.
class DeferredEventsItem : public DisplayItem
{
public:
    using DisplayItem::DisplayItem;
    void notifyVisualPropertiesChanged() override { ++deferredNotifications; }
    void deliverVisualEvent() { DisplayItem::notifyVisualPropertiesChanged(); }
    int deferredNotifications = 0;
};

// A row that counts property events, to see that visual events pass through the virtual table.
class CountingRow : public DisplayItemTreeWidgetItem
{
public:
    using DisplayItemTreeWidgetItem::DisplayItemTreeWidgetItem;
    void onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item) override
    {
        ++propertyEvents;
        lastItem = item.get();
        DisplayItemTreeWidgetItem::onPropertiesChangedEvent(item);
    }
    int propertyEvents = 0;
    DisplayItemInterface* lastItem = nullptr;
};

} // namespace

class tst_DisplayItemTreeWidgetItem : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void rowType();
    void freshRowShowsOnlyColumnZero();
    void rowText_data();
    void rowText();
    void childRowIsAppendedLast();
    void icon_data();
    void icon();
    void rowsShareTheIconsOfOneState();
    void differentVisibilitySwitchesIconAtOnce();
    void differentVisibilityMarkIsKeptInColumnZeroData();
    void toggleVisibilityWaitsForTheHost();
    void toggleVisibilityOfGoneItemOnlyRefreshesIcon();
    void toggleSelection_data();
    void toggleSelection();
    void toggleSelectionOfGoneItemDoesNothing();
    void eventsWithoutDialogChangeOnlyTheIcon();
    void visualEventsPassThroughPropertiesEvent();
    void getDisplayItemIsEmptyOnceTheItemHasGone();
    void rowDoesNotKeepItsItemAlive();
    void registrationFollowsRowLifetime();
    void copyKeepsRowStateWithoutRegistering();
    void expandAllStopsAtForeignRows();

private:
    QTreeWidget* m_tree = nullptr;
};

void tst_DisplayItemTreeWidgetItem::init()
{
    m_tree = new QTreeWidget;
    m_tree->setColumnCount(2);
}

void tst_DisplayItemTreeWidgetItem::cleanup()
{
    delete m_tree;
    m_tree = nullptr;
}

void tst_DisplayItemTreeWidgetItem::rowType()
{
    auto item = std::make_shared<DisplayItem>("Blank");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    QCOMPARE(row->type(), 1000);
    QCOMPARE(row->type(), int(QTreeWidgetItem::UserType));
    QCOMPARE(m_tree->topLevelItem(0), row);
}

void tst_DisplayItemTreeWidgetItem::freshRowShowsOnlyColumnZero()
{
    auto item = std::make_shared<DisplayItem>("Blank");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    QCOMPARE(row->text(0), QStringLiteral("Blank"));
    QVERIFY(row->text(1).isEmpty());
    QCOMPARE(row->getItemIndex(), -1);

    row->setItemIndex(3);
    QCOMPARE(row->getItemIndex(), 3);
    QVERIFY(row->text(1).isEmpty());

    auto* child = new DisplayItemTreeWidgetItem(row, std::make_shared<DisplayItem>("Child"), nullptr, false);
    child->setItemIndex(0);
    QVERIFY(child->text(1).isEmpty());
}

void tst_DisplayItemTreeWidgetItem::rowText_data()
{
    QTest::addColumn<bool>("shell");
    QTest::addColumn<QString>("expected");
    QTest::newRow("shell shows name and type-and-name") << true << QStringLiteral("A [Tool: B]");
    QTest::newRow("plain item shows its name alone") << false << QStringLiteral("A");
}

void tst_DisplayItemTreeWidgetItem::rowText()
{
    QFETCH(bool, shell);
    QFETCH(QString, expected);
    std::shared_ptr<DisplayItem> item;
    if (shell)
        item = std::make_shared<ShellItem>("A", "Tool", "B");
    else
        item = std::make_shared<DisplayItem>("A");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    QCOMPARE(row->text(0), expected);
}

void tst_DisplayItemTreeWidgetItem::childRowIsAppendedLast()
{
    auto* top = new DisplayItemTreeWidgetItem(m_tree, std::make_shared<DisplayItem>("Top"), nullptr, false);
    auto* first = new DisplayItemTreeWidgetItem(top, std::make_shared<DisplayItem>("First"), nullptr, false);
    auto* second = new DisplayItemTreeWidgetItem(top, std::make_shared<DisplayItem>("Second"), nullptr, true);
    QCOMPARE(top->childCount(), 2);
    QCOMPARE(top->child(0), first);
    QCOMPARE(top->child(1), second);
    QVERIFY(!first->isDuplicate());
    QVERIFY(second->isDuplicate());
}

void tst_DisplayItemTreeWidgetItem::icon_data()
{
    QTest::addColumn<QString>("state"); // "gone", "visible", "hidden"
    QTest::addColumn<bool>("duplicate");
    QTest::addColumn<bool>("different");
    QTest::addColumn<QString>("expected");

    QTest::newRow("gone") << "gone" << false << false << "visible_different";
    QTest::newRow("gone duplicate") << "gone" << true << false << "visible_different";
    QTest::newRow("visible duplicate") << "visible" << true << false << "visible_duplicate";
    QTest::newRow("visible duplicate different") << "visible" << true << true << "visible_duplicate";
    QTest::newRow("visible different") << "visible" << false << true << "visible_different";
    QTest::newRow("visible") << "visible" << false << false << "visible";
    QTest::newRow("hidden different") << "hidden" << false << true << "visible_different";
    QTest::newRow("hidden duplicate different") << "hidden" << true << true << "visible_different";
    QTest::newRow("hidden") << "hidden" << false << false << "not_visible";
    QTest::newRow("hidden duplicate") << "hidden" << true << false << "not_visible";
}

void tst_DisplayItemTreeWidgetItem::icon()
{
    QFETCH(QString, state);
    QFETCH(bool, duplicate);
    QFETCH(bool, different);
    QFETCH(QString, expected);

    // The four resources must differ, or comparing images would prove nothing.
    QSet<QString> seen;
    for (const QString& name : debugIconNames())
        seen.insert(debugIconName(QIcon(QStringLiteral(":/Icons/Debug/%1.svg").arg(name))));
    QCOMPARE(seen.size(), 4);
    QVERIFY(!seen.contains(QString()));

    auto item = std::make_shared<DisplayItem>("Item");
    item->setVisible(state != QLatin1String("hidden"));
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, duplicate);
    if (state == QLatin1String("gone"))
        item.reset();
    row->setDifferentVisibility(different);

    QCOMPARE(debugIconName(row->icon(0)), expected);
    QVERIFY(row->icon(1).isNull());
}

void tst_DisplayItemTreeWidgetItem::rowsShareTheIconsOfOneState()
{
    auto a = std::make_shared<DisplayItem>("A");
    auto b = std::make_shared<DisplayItem>("B");
    auto hidden = std::make_shared<DisplayItem>("Hidden");
    hidden->setVisible(false);
    auto* rowA = new DisplayItemTreeWidgetItem(m_tree, a, nullptr, false);
    auto* rowB = new DisplayItemTreeWidgetItem(m_tree, b, nullptr, false);
    auto* rowHidden = new DisplayItemTreeWidgetItem(m_tree, hidden, nullptr, false);

    // One icon object per state, shared by every row.
    QCOMPARE(rowA->icon(0).cacheKey(), rowB->icon(0).cacheKey());
    QVERIFY(rowA->icon(0).cacheKey() != rowHidden->icon(0).cacheKey());

    rowA->setDifferentVisibility(true);
    rowB->setDifferentVisibility(true);
    QCOMPARE(rowA->icon(0).cacheKey(), rowB->icon(0).cacheKey());
    rowHidden->setDifferentVisibility(true);
    QCOMPARE(rowHidden->icon(0).cacheKey(), rowA->icon(0).cacheKey());
}

void tst_DisplayItemTreeWidgetItem::differentVisibilitySwitchesIconAtOnce()
{
    auto item = std::make_shared<DisplayItem>("Item");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));
    QVERIFY(!row->isDifferentVisibility());

    row->setDifferentVisibility(true);
    QVERIFY(row->isDifferentVisibility());
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible_different"));

    row->setDifferentVisibility(false);
    QVERIFY(!row->isDifferentVisibility());
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));
}

void tst_DisplayItemTreeWidgetItem::differentVisibilityMarkIsKeptInColumnZeroData()
{
    auto item = std::make_shared<DisplayItem>("Item");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    const int role = Qt::UserRole + 300;
    QCOMPARE(role, 556);
    QVERIFY(!row->data(0, role).isValid());

    row->setDifferentVisibility(true);
    QCOMPARE(row->data(0, role), QVariant(true));
    QVERIFY(!row->data(1, role).isValid());

    // A mark written by others through the data role counts too.
    row->setData(0, role, QVariant(false));
    QVERIFY(!row->isDifferentVisibility());
    row->setData(0, role, QVariant(true));
    QVERIFY(row->isDifferentVisibility());
}

void tst_DisplayItemTreeWidgetItem::toggleVisibilityWaitsForTheHost()
{
    auto item = std::make_shared<DeferredEventsItem>("Item");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));

    row->toggleVisibility();
    QVERIFY(!item->isVisible());
    QCOMPARE(item->deferredNotifications, 1);
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));

    item->deliverVisualEvent();
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));

    row->toggleVisibility();
    QVERIFY(item->isVisible());
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));
    item->deliverVisualEvent();
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));
}

void tst_DisplayItemTreeWidgetItem::toggleVisibilityOfGoneItemOnlyRefreshesIcon()
{
    auto item = std::make_shared<DisplayItem>("Item");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));
    item.reset();
    row->toggleVisibility();
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible_different"));
    QCOMPARE(row->text(0), QStringLiteral("Item"));
}

void tst_DisplayItemTreeWidgetItem::toggleSelection_data()
{
    QTest::addColumn<bool>("selectable");
    QTest::addColumn<bool>("initiallySelected");
    QTest::addColumn<bool>("expectedSelected");
    QTest::addColumn<int>("expectedNotifications");

    QTest::newRow("selectable, off to on") << true << false << true << 1;
    QTest::newRow("selectable, on to off") << true << true << false << 1;
    QTest::newRow("not selectable stays off") << false << false << false << 0;
    QTest::newRow("not selectable stays on") << false << true << true << 0;
}

void tst_DisplayItemTreeWidgetItem::toggleSelection()
{
    QFETCH(bool, selectable);
    QFETCH(bool, initiallySelected);
    QFETCH(bool, expectedSelected);
    QFETCH(int, expectedNotifications);

    auto item = std::make_shared<DisplayItem>("Item");
    item->setSelected(initiallySelected);
    item->setSelectable(selectable);
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    const qint64 iconBefore = row->icon(0).cacheKey();

    row->toggleSelection();
    QCOMPARE(item->isSelected(), expectedSelected);
    QCOMPARE(item->visualNotificationCount(), expectedNotifications);
    QCOMPARE(row->icon(0).cacheKey(), iconBefore);
}

void tst_DisplayItemTreeWidgetItem::toggleSelectionOfGoneItemDoesNothing()
{
    auto item = std::make_shared<DisplayItem>("Item");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    item.reset();
    row->toggleSelection();
    QVERIFY(!row->getDisplayItem());
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));
}

void tst_DisplayItemTreeWidgetItem::eventsWithoutDialogChangeOnlyTheIcon()
{
    auto parent = std::make_shared<DisplayItem>("Parent");
    parent->appendChild(std::make_shared<DisplayItem>("Existing"));
    auto* row = new DisplayItemTreeWidgetItem(m_tree, parent, nullptr, false);
    QCOMPARE(row->childCount(), 0);

    auto added = std::make_shared<DisplayItem>("Added");
    parent->appendChild(added);
    QCOMPARE(row->childCount(), 0);
    QCOMPARE(m_tree->topLevelItemCount(), 1);

    auto* shownChild = new DisplayItemTreeWidgetItem(row, added, nullptr, false);
    parent->removeChild(added, false);
    QCOMPARE(row->childCount(), 1);
    QCOMPARE(row->child(0), shownChild);

    parent->setDisplayName("Renamed");
    parent->setDisplayProperty("Colour", "red");
    QCOMPARE(row->text(0), QStringLiteral("Parent"));
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible"));

    parent->setVisible(false);
    parent->notifyVisualPropertiesChanged();
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(row->text(0), QStringLiteral("Parent"));
    QCOMPARE(m_tree->topLevelItemCount(), 1);
}

void tst_DisplayItemTreeWidgetItem::visualEventsPassThroughPropertiesEvent()
{
    auto item = std::make_shared<DisplayItem>("Item");
    auto* row = new CountingRow(m_tree, item, nullptr, false);
    QCOMPARE(row->propertyEvents, 0);

    item->notifyVisualPropertiesChanged();
    QCOMPARE(row->propertyEvents, 1);
    QCOMPARE(row->lastItem, item.get());

    item->setBusinessProperty("Material", "DC04");
    QCOMPARE(row->propertyEvents, 2);
}

void tst_DisplayItemTreeWidgetItem::getDisplayItemIsEmptyOnceTheItemHasGone()
{
    auto item = std::make_shared<DisplayItem>("Item");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    QCOMPARE(row->getDisplayItem().get(), item.get());
    item.reset();
    QVERIFY(!row->getDisplayItem());

    auto* emptyRow = new DisplayItemTreeWidgetItem(m_tree, nullptr, nullptr, false);
    QVERIFY(!emptyRow->getDisplayItem());
    QVERIFY(emptyRow->text(0).isEmpty());
    QCOMPARE(debugIconName(emptyRow->icon(0)), QStringLiteral("visible_different"));
}

void tst_DisplayItemTreeWidgetItem::rowDoesNotKeepItsItemAlive()
{
    auto item = std::make_shared<DisplayItem>("Item");
    std::weak_ptr<DisplayItem> watch = item;
    new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    QCOMPARE(item.use_count(), 1L);
    item.reset();
    QVERIFY(watch.expired());
}

void tst_DisplayItemTreeWidgetItem::registrationFollowsRowLifetime()
{
    auto item = std::make_shared<DisplayItem>("Item");
    QCOMPARE(item->observerCount(), std::size_t(0));
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    QCOMPARE(item->observerCount(), std::size_t(1));
    auto* child = new DisplayItemTreeWidgetItem(row, item, nullptr, true);
    QCOMPARE(item->observerCount(), std::size_t(2));

    delete row; // deletes the child row too
    QCOMPARE(item->observerCount(), std::size_t(0));
    Q_UNUSED(child);

    // Deleting a row whose item has gone is harmless.
    auto gone = std::make_shared<DisplayItem>("Gone");
    auto* orphan = new DisplayItemTreeWidgetItem(m_tree, gone, nullptr, false);
    gone.reset();
    delete orphan;
    QCOMPARE(m_tree->topLevelItemCount(), 0);
}

void tst_DisplayItemTreeWidgetItem::copyKeepsRowStateWithoutRegistering()
{
    auto item = std::make_shared<DisplayItem>("Item");
    auto* row = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, true);
    row->setItemIndex(7);
    row->setDifferentVisibility(true);
    QCOMPARE(item->observerCount(), std::size_t(1));

    {
        DisplayItemTreeWidgetItem copy(*row);
        QCOMPARE(item->observerCount(), std::size_t(1));
        QCOMPARE(copy.getDisplayItem().get(), item.get());
        QCOMPARE(copy.getItemIndex(), 7);
        QVERIFY(copy.isDuplicate());
        QVERIFY(copy.isDifferentVisibility());
        QCOMPARE(copy.text(0), QStringLiteral("Item"));
        QVERIFY(copy.treeWidget() == nullptr);

        auto other = std::make_shared<DisplayItem>("Other");
        DisplayItemTreeWidgetItem assigned(static_cast<QTreeWidget*>(nullptr), other, nullptr, false);
        QCOMPARE(other->observerCount(), std::size_t(1));
        assigned = *row;
        QCOMPARE(assigned.getDisplayItem().get(), item.get());
        QCOMPARE(assigned.getItemIndex(), 7);
        QVERIFY(assigned.isDuplicate());
        QCOMPARE(assigned.text(0), QStringLiteral("Item"));
    }
    // The copies unregistered only what they had registered; the original row still hears its item.
    QCOMPARE(item->observerCount(), std::size_t(1));
    item->setVisible(false);
    item->notifyVisualPropertiesChanged();
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible_different"));
    row->setDifferentVisibility(false);
    QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("not_visible"));
}

void tst_DisplayItemTreeWidgetItem::expandAllStopsAtForeignRows()
{
    auto item = std::make_shared<DisplayItem>("Item");
    auto* top = new DisplayItemTreeWidgetItem(m_tree, item, nullptr, false);
    auto* displayChild = new DisplayItemTreeWidgetItem(top, std::make_shared<DisplayItem>("A"), nullptr, false);
    auto* grandChild = new DisplayItemTreeWidgetItem(displayChild, std::make_shared<DisplayItem>("A1"), nullptr, false);
    new DisplayItemTreeWidgetItem(grandChild, std::make_shared<DisplayItem>("A1a"), nullptr, false);
    auto* foreign = new QTreeWidgetItem(top, QStringList{QStringLiteral("Plain")});
    auto* belowForeign = new DisplayItemTreeWidgetItem(foreign, std::make_shared<DisplayItem>("B"), nullptr, false);
    new DisplayItemTreeWidgetItem(belowForeign, std::make_shared<DisplayItem>("B1"), nullptr, false);

    top->expandAll();
    QVERIFY(top->isExpanded());
    QVERIFY(displayChild->isExpanded());
    QVERIFY(grandChild->isExpanded());
    QVERIFY(!foreign->isExpanded());
    QVERIFY(!belowForeign->isExpanded());
}

QTEST_MAIN(tst_DisplayItemTreeWidgetItem)
#include "tst_displayitemtreewidgetitem.moc"
