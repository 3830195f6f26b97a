#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include "../common/ContextMenuDriver.h"
#include "../common/DebugIcons.h"
#include "../common/DisplayItemMenuEntries.h"
#include "../common/ItemWidgetDriver.h"

#include <QAction>
#include <QHeaderView>
#include <QMetaMethod>
#include <QTest>
#include <QTreeWidgetItemIterator>

using namespace Brennvik;
using namespace Brennvik::Test;

namespace {

const QStringList ItemEntries{SelectEntry, DeleteEntry, InvisibleEntry, VisibleEntry};

QPoint centreOf(QTreeWidget* tree, QTreeWidgetItem* row)
{
    return tree->visualItemRect(row).center();
}

DisplayItemTreeWidgetItem* itemRowNamed(QTreeWidget* tree, const QString& text)
{
    return dynamic_cast<DisplayItemTreeWidgetItem*>(rowNamed(tree, text));
}

// A parent that hands removal requests to the host's queue instead of
// carrying them out at once, so that a test can look at the rows between
// the request and the host's removed event.
class QueuedRemovalItem : public DisplayItem
{
public:
    using DisplayItem::DisplayItem;
    RemoveChildResult removeChild(std::shared_ptr<DisplayItemInterface> child, bool keepResources) override
    {
        queued.push_back(child);
        return RemoveChildResult::Removed;
    }
    void carryOutQueuedRemovals()
    {
        for (const auto& child : std::exchange(queued, {}))
            DisplayItem::removeChild(child, false);
    }
    std::vector<std::shared_ptr<DisplayItemInterface>> queued;
};

} // namespace

class tst_DisplayItemTreeWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void metaObjectAddsNothing();
    void actions_data();
    void actions();
    void treeWithoutActionsHasNone();
    void contextMenuEntries_data();
    void contextMenuEntries();
    void contextMenuWritesRowText();
    void noMenuOutsideDisplayItemRows_data();
    void noMenuOutsideDisplayItemRows();
    void selectEntryTogglesAndUpdatesOnce();
    void selectEntryEnabledOnlyWhileSelectable_data();
    void selectEntryEnabledOnlyWhileSelectable();
    void deleteEntryLeavesRowToTheHostsEvent();
    void subtreeEntries_data();
    void subtreeEntries();
    void subtreeEntryOnLeafLeavesAncestors();
    void rowRemovedWhileMenuIsOpen();
    void deleteRemovesRowWhenTheRemovedEventReachesTheDialog();
    void dfsIndexRoundTrip();
    void dfsIndexOfMissingRow();
    void modelIndexAccess();

private:
    void buildModel();

    DisplayItemTreeWidget* m_tree = nullptr;      // with display item actions
    DisplayItemTreeWidget* m_plainTree = nullptr; // without
    std::unique_ptr<SceneDisplayModel> m_model;
    std::shared_ptr<DisplayItem> m_root;
};

void tst_DisplayItemTreeWidget::initTestCase()
{
    m_tree = new DisplayItemTreeWidget(nullptr, true);
    m_plainTree = new DisplayItemTreeWidget(nullptr, false);
    for (DisplayItemTreeWidget* tree : {m_tree, m_plainTree}) {
        tree->resize(400, 500);
        tree->show();
        QVERIFY(QTest::qWaitForWindowExposed(tree));
    }
}

void tst_DisplayItemTreeWidget::cleanupTestCase()
{
    delete m_tree;
    delete m_plainTree;
}

void tst_DisplayItemTreeWidget::buildModel()
{
    // Root
    //   Blank
    //     Blank mesh
    //   Tools
    //     Upper die      (selection not allowed)
    //     Punch
    //       Punch radius
    m_model = std::make_unique<SceneDisplayModel>();
    m_root = std::make_shared<DisplayItem>("Root");
    auto blank = std::make_shared<DisplayItem>("Blank");
    blank->appendChild(std::make_shared<DisplayItem>("Blank mesh"));
    auto tools = std::make_shared<DisplayItem>("Tools");
    auto die = std::make_shared<DisplayItem>("Upper die");
    die->setSelectionAllowed(false);
    auto punch = std::make_shared<DisplayItem>("Punch");
    punch->appendChild(std::make_shared<DisplayItem>("Punch radius"));
    tools->appendChild(die);
    tools->appendChild(punch);
    m_root->appendChild(blank);
    m_root->appendChild(tools);
    m_model->setRootDisplayItem(m_root);

    for (DisplayItemTreeWidget* tree : {m_tree, m_plainTree}) {
        addRowsWithoutDialog(tree, nullptr, m_root);
        tree->expandAll();
    }
}

void tst_DisplayItemTreeWidget::init()
{
    buildModel();
}

void tst_DisplayItemTreeWidget::cleanup()
{
    m_tree->clear();
    m_plainTree->clear();
    m_root.reset();
    m_model.reset();
}

void tst_DisplayItemTreeWidget::metaObjectAddsNothing()
{
    const QMetaObject* meta = m_tree->metaObject();
    QCOMPARE(QString::fromLatin1(meta->className()), QStringLiteral("Brennvik::DisplayItemTreeWidget"));
    QCOMPARE(meta->superClass(), &QTreeWidget::staticMetaObject);
    QCOMPARE(meta->methodCount(), QTreeWidget::staticMetaObject.methodCount());
    QCOMPARE(meta->propertyCount(), QTreeWidget::staticMetaObject.propertyCount());
    QVERIFY(m_tree->inherits("Brennvik::DisplayItemTreeWidget"));
    QVERIFY(qobject_cast<DisplayItemTreeWidget*>(static_cast<QObject*>(m_tree)));
}

void tst_DisplayItemTreeWidget::actions_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("statusTip");
    QTest::newRow("select") << SelectEntry << QStringLiteral("Select or deselect the display item");
    QTest::newRow("delete") << DeleteEntry << QStringLiteral("Delete a display item");
    QTest::newRow("invisible") << InvisibleEntry
                               << QStringLiteral("Make recursively all items in the subtree invisible");
    QTest::newRow("visible") << VisibleEntry << QStringLiteral("Make recursively all items in the subtree visible");
}

void tst_DisplayItemTreeWidget::actions()
{
    QFETCH(QString, text);
    QFETCH(QString, statusTip);
    const QList<QAction*> actions = m_tree->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(actions.size(), 4);
    QAction* found = nullptr;
    for (QAction* action : actions) {
        if (action->text() == text)
            found = action;
    }
    QVERIFY(found);
    QCOMPARE(found->statusTip(), statusTip);
    QCOMPARE(found->parent(), m_tree);
}

void tst_DisplayItemTreeWidget::treeWithoutActionsHasNone()
{
    QVERIFY(m_plainTree->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly).isEmpty());
    const auto visit = rightClick(m_plainTree, centreOf(m_plainTree, itemRowNamed(m_plainTree, "Punch")));
    QVERIFY(visit.opened);
    QVERIFY(visit.accepted);
    QVERIFY(!visit.entries.isEmpty()); // the kit's own entries
    for (const QString& entry : ItemEntries)
        QVERIFY2(!visit.entries.contains(entry), qPrintable(entry));
}

void tst_DisplayItemTreeWidget::contextMenuEntries_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("root: no delete") << "Root" << QStringList{SelectEntry, InvisibleEntry, VisibleEntry};
    QTest::newRow("child: all four") << "Punch" << QStringList{SelectEntry, DeleteEntry, InvisibleEntry, VisibleEntry};
    QTest::newRow("leaf: all four") << "Punch radius"
                                    << QStringList{SelectEntry, DeleteEntry, InvisibleEntry, VisibleEntry};
    QTest::newRow("selection not allowed: no select")
        << "Upper die" << QStringList{DeleteEntry, InvisibleEntry, VisibleEntry};
}

void tst_DisplayItemTreeWidget::contextMenuEntries()
{
    QFETCH(QString, row);
    QFETCH(QStringList, expected);
    DisplayItemTreeWidgetItem* target = itemRowNamed(m_tree, row);
    QVERIFY(target);

    const auto visit = rightClick(m_tree, centreOf(m_tree, target));
    QVERIFY(visit.opened);
    QVERIFY(visit.accepted);
    // The tree's entries come first, in order; the kit's own follow.
    QVERIFY(visit.entries.size() > expected.size());
    QCOMPARE(visit.entries.mid(0, expected.size()), expected);
    for (const QString& entry : visit.entries.mid(expected.size()))
        QVERIFY2(!ItemEntries.contains(entry), qPrintable(entry));

    // Nothing was chosen: the model is untouched.
    QCOMPARE(m_model->totalDisplayUpdateCount(), 0);
    QCOMPARE(m_model->visibilityUpdateCount(), 0);
}

void tst_DisplayItemTreeWidget::contextMenuWritesRowText()
{
    QTest::ignoreMessage(QtDebugMsg, "Blank mesh");
    const auto visit = rightClick(m_tree, centreOf(m_tree, itemRowNamed(m_tree, "Blank mesh")));
    QVERIFY(visit.opened);
}

void tst_DisplayItemTreeWidget::noMenuOutsideDisplayItemRows_data()
{
    QTest::addColumn<bool>("onForeignRow");
    QTest::newRow("empty space") << false;
    QTest::newRow("row of another type") << true;
}

void tst_DisplayItemTreeWidget::noMenuOutsideDisplayItemRows()
{
    QFETCH(bool, onForeignRow);
    const QPoint pos = pointOutsideDisplayItemRows(m_tree, onForeignRow);
    QVERIFY(pos.y() < m_tree->viewport()->height());
    QVERIFY(!dynamic_cast<DisplayItemTreeWidgetItem*>(m_tree->itemAt(pos)));
    const auto visit = rightClick(m_tree, pos);
    QVERIFY(!visit.opened);
    QVERIFY(visit.accepted);
}

void tst_DisplayItemTreeWidget::selectEntryTogglesAndUpdatesOnce()
{
    DisplayItemTreeWidgetItem* row = itemRowNamed(m_tree, "Punch");
    auto punch = std::dynamic_pointer_cast<DisplayItem>(row->getDisplayItem());

    QTest::ignoreMessage(QtDebugMsg, "Punch");
    QTest::ignoreMessage(QtDebugMsg, "onSelectDisplayItem()");
    const auto visit = rightClick(m_tree, centreOf(m_tree, row), SelectEntry);
    QVERIFY(visit.triggered);
    QVERIFY(punch->isSelected());
    QCOMPARE(punch->visualNotificationCount(), 1);
    QCOMPARE(m_model->displayUpdateCount(2), 1);
    QCOMPARE(m_model->totalDisplayUpdateCount(), 1);
    QCOMPARE(m_model->visibilityUpdateCount(), 0);
}

void tst_DisplayItemTreeWidget::selectEntryEnabledOnlyWhileSelectable_data()
{
    QTest::addColumn<bool>("selectable");
    QTest::newRow("selectable: enabled") << true;
    QTest::newRow("not selectable now: shown disabled") << false;
}

void tst_DisplayItemTreeWidget::selectEntryEnabledOnlyWhileSelectable()
{
    QFETCH(bool, selectable);
    DisplayItemTreeWidgetItem* row = itemRowNamed(m_tree, "Punch");
    auto punch = std::dynamic_pointer_cast<DisplayItem>(row->getDisplayItem());
    punch->setSelectable(selectable);

    // The same menu twice: the entry's state is the item's of the moment.
    for (int round = 0; round < 2; ++round) {
        const auto visit = rightClick(m_tree, centreOf(m_tree, row), SelectEntry);
        QVERIFY(visit.entries.contains(SelectEntry));
        QCOMPARE(visit.disabledEntries.contains(SelectEntry), !selectable);
        QCOMPARE(visit.disabledEntries.size(), selectable ? 0 : 1);
        QCOMPARE(visit.triggered, selectable);
    }
    // Chosen twice when enabled; a disabled entry cannot be chosen at all.
    QCOMPARE(punch->isSelected(), false);
    QCOMPARE(punch->visualNotificationCount(), selectable ? 2 : 0);
    QCOMPARE(m_model->totalDisplayUpdateCount(), selectable ? 2 : 0);

    // A selectable item's entry is enabled again in the next menu.
    punch->setSelectable(true);
    const auto visit = rightClick(m_tree, centreOf(m_tree, row));
    QVERIFY(visit.disabledEntries.isEmpty());
}

void tst_DisplayItemTreeWidget::deleteEntryLeavesRowToTheHostsEvent()
{
    DisplayItemTreeWidgetItem* row = itemRowNamed(m_tree, "Punch");
    auto punch = row->getDisplayItem();
    DisplayItemInterface* tools = punch->getParent();
    QVERIFY(tools);
    QCOMPARE(tools->getChildren().size(), std::size_t(2));

    QTest::ignoreMessage(QtDebugMsg, "Punch");
    QTest::ignoreMessage(QtDebugMsg, "onDeleteDisplayItem()");
    const auto visit = rightClick(m_tree, centreOf(m_tree, row), DeleteEntry);
    QVERIFY(visit.triggered);

    // The host removed the item and was asked for one display update ...
    QCOMPARE(tools->getChildren().size(), std::size_t(1));
    QVERIFY(!punch->getParent());
    QCOMPARE(m_model->displayUpdateCount(2), 1);
    QCOMPARE(m_model->totalDisplayUpdateCount(), 1);
    // ... but only a dialog that hears the removed event drops rows; these rows have none.
    QCOMPARE(itemRowNamed(m_tree, "Punch"), row);
    QCOMPARE(row->parent()->childCount(), 2);
}

void tst_DisplayItemTreeWidget::subtreeEntries_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("startHidden");
    QTest::addColumn<QString>("expectedIcon");
    QTest::newRow("invisible") << InvisibleEntry << false << "not_visible";
    QTest::newRow("visible") << VisibleEntry << true << "visible";
}

void tst_DisplayItemTreeWidget::subtreeEntries()
{
    QFETCH(QString, entry);
    QFETCH(bool, startHidden);
    QFETCH(QString, expectedIcon);
    const QString otherIcon = startHidden ? QStringLiteral("not_visible") : QStringLiteral("visible");

    if (startHidden) {
        QTreeWidgetItemIterator it(m_tree);
        for (; *it; ++it) {
            auto item = static_cast<DisplayItemTreeWidgetItem*>(*it)->getDisplayItem();
            item->setVisible(false);
            item->notifyVisualPropertiesChanged();
        }
    }
    std::map<std::string, int> notificationsBefore;
    {
        QTreeWidgetItemIterator it(m_tree);
        for (; *it; ++it) {
            auto item = std::dynamic_pointer_cast<DisplayItem>(
                static_cast<DisplayItemTreeWidgetItem*>(*it)->getDisplayItem());
            notificationsBefore[item->getDisplayName()] = item->visualNotificationCount();
        }
    }

    const auto visit = rightClick(m_tree, centreOf(m_tree, itemRowNamed(m_tree, "Tools")), entry);
    QVERIFY(visit.triggered);

    const QStringList inSubtree{"Tools", "Upper die", "Punch", "Punch radius"};
    QTreeWidgetItemIterator it(m_tree);
    for (; *it; ++it) {
        auto* row = static_cast<DisplayItemTreeWidgetItem*>(*it);
        auto item = std::dynamic_pointer_cast<DisplayItem>(row->getDisplayItem());
        const bool affected = inSubtree.contains(row->text(0));
        QCOMPARE(debugIconName(row->icon(0)), affected ? expectedIcon : otherIcon);
        QCOMPARE(item->isVisible(), affected ? startHidden : !startHidden);
        QCOMPARE(item->visualNotificationCount() - notificationsBefore[item->getDisplayName()], affected ? 1 : 0);
    }
    QCOMPARE(m_model->visibilityUpdateCount(), 1);
    QCOMPARE(m_model->totalDisplayUpdateCount(), 0);
}

void tst_DisplayItemTreeWidget::subtreeEntryOnLeafLeavesAncestors()
{
    // Only what the host collects for the clicked item changes, not its ancestors.
    DisplayItemTreeWidgetItem* leaf = itemRowNamed(m_tree, "Punch radius");
    const auto visit = rightClick(m_tree, centreOf(m_tree, leaf), InvisibleEntry);
    QVERIFY(visit.triggered);
    QCOMPARE(debugIconName(leaf->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(debugIconName(itemRowNamed(m_tree, "Punch")->icon(0)), QStringLiteral("visible"));
    QVERIFY(itemRowNamed(m_tree, "Punch")->getDisplayItem()->isVisible());
    QCOMPARE(m_model->visibilityUpdateCount(), 1);
}

void tst_DisplayItemTreeWidget::rowRemovedWhileMenuIsOpen()
{
    DisplayItemTreeWidgetItem* row = itemRowNamed(m_tree, "Blank");
    auto blank = row->getDisplayItem();
    const auto visit = rightClick(m_tree, centreOf(m_tree, row), InvisibleEntry, [&]() { delete row; });
    QVERIFY(visit.opened);
    QVERIFY(!itemRowNamed(m_tree, "Blank"));
    // The entry found no row to act on: nothing changed, no update was asked.
    QVERIFY(blank->isVisible());
    QCOMPARE(m_model->visibilityUpdateCount(), 0);
}

void tst_DisplayItemTreeWidget::deleteRemovesRowWhenTheRemovedEventReachesTheDialog()
{
    auto viewModel = std::make_shared<SceneViewModel>();
    auto root = std::make_shared<DisplayItem>("Root");
    auto tools = std::make_shared<QueuedRemovalItem>("Tools");
    auto punch = std::make_shared<DisplayItem>("Punch");
    punch->appendChild(std::make_shared<DisplayItem>("Punch radius"));
    tools->appendChild(std::make_shared<DisplayItem>("Upper die"));
    tools->appendChild(punch);
    root->appendChild(tools);
    viewModel->displayModel().setRootDisplayItem(root);

    DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(viewModel);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    DisplayItemTreeWidget* tree = dialog.m_displayItemTreeWidget;
    tree->expandAll();
    DisplayItemTreeWidgetItem* toolsRow = itemRowNamed(tree, "Tools");
    QVERIFY(toolsRow);
    QCOMPARE(toolsRow->childCount(), 2);

    const auto visit = rightClick(tree, centreOf(tree, itemRowNamed(tree, "Punch")), DeleteEntry);
    QVERIFY(visit.triggered);

    // Asked for, not yet done by the host: the row stays.
    QCOMPARE(tools->queued.size(), std::size_t(1));
    QCOMPARE(tools->queued.front().get(), punch.get());
    QCOMPARE(viewModel->displayModel().displayUpdateCount(2), 1);
    QCOMPARE(toolsRow->childCount(), 2);
    QVERIFY(itemRowNamed(tree, "Punch"));

    // The host's removed event reaches the parent row, and the dialog drops the row with its subtree.
    tools->carryOutQueuedRemovals();
    QCOMPARE(toolsRow->childCount(), 1);
    QCOMPARE(toolsRow->child(0)->text(0), QStringLiteral("Upper die"));
    QVERIFY(!itemRowNamed(tree, "Punch"));
    QVERIFY(!itemRowNamed(tree, "Punch radius"));
    QCOMPARE(punch->observerCount(), std::size_t(0));

    // The remaining child goes the same way.
    const auto second = rightClick(tree, centreOf(tree, itemRowNamed(tree, "Upper die")), DeleteEntry);
    QVERIFY(second.triggered);
    QCOMPARE(tools->queued.size(), std::size_t(1));
    QCOMPARE(toolsRow->childCount(), 1);
    tools->carryOutQueuedRemovals();
    QCOMPARE(toolsRow->childCount(), 0);
}

void tst_DisplayItemTreeWidget::dfsIndexRoundTrip()
{
    // A collapsed row still counts.
    itemRowNamed(m_tree, "Blank")->setExpanded(false);
    int expected = 0;
    QTreeWidgetItemIterator it(m_tree);
    for (; *it; ++it, ++expected) {
        QCOMPARE(m_tree->getDFSIndex(*it), expected);
        QCOMPARE(m_tree->itemFromDFSIndex(expected), *it);
        const QModelIndex index = m_tree->indexFromDFSIndex(expected);
        QVERIFY(index.isValid());
        QCOMPARE(index.column(), 0);
        QCOMPARE(m_tree->getItemFromModelIndex(index), *it);
    }
    QCOMPARE(expected, 7);
    QCOMPARE(m_tree->getDFSIndex(itemRowNamed(m_tree, "Tools")), 3);
    QVERIFY(!m_tree->itemFromDFSIndex(expected));
    QVERIFY(!m_tree->itemFromDFSIndex(-1));
    QVERIFY(!m_tree->indexFromDFSIndex(expected).isValid());

    // The same place in a tree of the same shape has the same position.
    for (int i = 0; i < expected; ++i)
        QCOMPARE(m_plainTree->itemFromDFSIndex(i)->text(0), m_tree->itemFromDFSIndex(i)->text(0));
}

void tst_DisplayItemTreeWidget::dfsIndexOfMissingRow()
{
    QCOMPARE(m_tree->getDFSIndex(nullptr), -1);
    QTreeWidgetItem detached(QStringList{QStringLiteral("Detached")});
    QCOMPARE(m_tree->getDFSIndex(&detached), -1);
}

void tst_DisplayItemTreeWidget::modelIndexAccess()
{
    DisplayItemTreeWidgetItem* row = itemRowNamed(m_tree, "Punch");
    const QModelIndex index = m_tree->getModelIndexFromItem(row, 0);
    QVERIFY(index.isValid());
    QCOMPARE(index.data().toString(), QStringLiteral("Punch"));
    QCOMPARE(m_tree->getItemFromModelIndex(index), row);
    const QModelIndex second = m_tree->getModelIndexFromItem(row, 1);
    QCOMPARE(second.column(), 1);
    QCOMPARE(second.row(), index.row());
    QVERIFY(!m_tree->getItemFromModelIndex(QModelIndex()));
}

QTEST_MAIN(tst_DisplayItemTreeWidget)
#include "tst_displayitemtreewidget.moc"
