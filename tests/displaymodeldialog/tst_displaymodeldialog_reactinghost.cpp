// Every user action of the display model dialog, driven through its widgets,
// against a host that reacts inside the calls the action makes: while it is
// told of a change, asked for properties or asked to update the display, the
// host removes the item, its parent or its whole branch, removes its
// children, adds children, or replaces the model's root. The action must end
// quietly where what it worked on has gone, and the tree must still show the
// model afterwards. One data row per action and reaction; under the
// sanitizers a read of a deleted row fails the row.

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/EditorDisplayModel.h>

#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include "../common/ContextMenuDriver.h"
#include "../common/DisplayItemMenuEntries.h"
#include "../common/ItemWidgetDriver.h"
#include "../common/ReactingHost.h"
#include "../common/TestTree.h"
#include "../common/ToolTipDriver.h"
#include "../common/DisplayModelDialogTestAccess.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <functional>
#include <memory>
#include <utility>
#include <optional>

using namespace Brennvik;
using namespace Brennvik::Test;
using Access = Brennvik::DisplayModelDialogTestAccess;

namespace {

// What the user does.
enum class Action {
    DoubleClick, // on the row
    MenuEntry,   // the row's context menu, then the entry
    OpenMenu,    // the row's context menu, closed again
    Pick,        // a click that makes the row current
    PickCloned,  // the same in the cloned tree (clone mode)
    FindNext,    // "Find next" with the search value "needle"
    Navigate,    // the host asks the dialog to show the row's item
    ToolTip,     // the mouse rests on the row
};

// Where the host reacts: inside an event of the item, inside the next
// display or visibility update, or inside a getter of the item.
enum class Trigger { Visual, Removed, Update, Properties, SelectionAllowed, Subtree, Visible, Selected, Selectable };

struct Operation
{
    const char* name;
    Action action;
    const char* row; // the row acted on
    QString entry;   // the menu entry, for MenuEntry
    Trigger trigger;
    const char* item; // the item that triggers and that the reaction is about
    bool cloneMode = false;
};

// Root
//   A
//     A1
//     A2
//   M          geometry module listing g1
//     Geometry
//       g1
//     g1 (dup)
//   B          its business property "mark" is "needle"
//   e1         edit-model row
const std::vector<Operation>& operations()
{
    static const std::vector<Operation> list{
        {"double click", Action::DoubleClick, "A", {}, Trigger::Visual, "A"},
        {"double click, duplicate child", Action::DoubleClick, "M", {}, Trigger::Visual, "g1"},
        {"double click, update", Action::DoubleClick, "A", {}, Trigger::Update, "A"},
        {"double click on an edit row, update", Action::DoubleClick, "e1", {}, Trigger::Update, "A"},
        {"select", Action::MenuEntry, "A", SelectEntry, Trigger::Visual, "A"},
        {"select, update", Action::MenuEntry, "A", SelectEntry, Trigger::Update, "A"},
        {"delete", Action::MenuEntry, "A1", DeleteEntry, Trigger::Removed, "A"},
        {"delete, update", Action::MenuEntry, "A1", DeleteEntry, Trigger::Update, "A"},
        {"hide subtree", Action::MenuEntry, "A", InvisibleEntry, Trigger::Visual, "A1"},
        {"hide subtree, collecting", Action::MenuEntry, "A", InvisibleEntry, Trigger::Subtree, "A"},
        {"hide subtree, update", Action::MenuEntry, "A", InvisibleEntry, Trigger::Update, "A"},
        {"show subtree", Action::MenuEntry, "A", VisibleEntry, Trigger::Visual, "A1"},
        {"show subtree, collecting", Action::MenuEntry, "A", VisibleEntry, Trigger::Subtree, "A"},
        {"open menu", Action::OpenMenu, "A", {}, Trigger::SelectionAllowed, "A"},
        {"open menu, selectable asked", Action::OpenMenu, "A", {}, Trigger::Selectable, "A"},
        {"tool tip, visibility asked", Action::ToolTip, "A1", {}, Trigger::Visible, "A1"},
        {"tool tip, selection asked", Action::ToolTip, "A1", {}, Trigger::Selected, "A1"},
        {"tool tip, the parent's visibility asked", Action::ToolTip, "A1", {}, Trigger::Visible, "A"},
        {"pick a row", Action::Pick, "A", {}, Trigger::Properties, "A"},
        {"find next", Action::FindNext, "", {}, Trigger::Properties, "A1"},
        {"navigate to an item", Action::Navigate, "A", {}, Trigger::Properties, "A"},
        {"clone mode, pick a row", Action::Pick, "A", {}, Trigger::Properties, "A", true},
        {"clone mode, pick a row, its clone reacts", Action::Pick, "A", {}, Trigger::Properties, "A (clone)", true},
        {"clone mode, pick a cloned row", Action::PickCloned, "A", {}, Trigger::Properties, "A (clone)", true},
        {"clone mode, pick a cloned row, the original reacts",
         Action::PickCloned,
         "A",
         {},
         Trigger::Properties,
         "A",
         true},
        {"clone mode, double click", Action::DoubleClick, "A", {}, Trigger::Visual, "A", true},
    };
    return list;
}

// The item's getter that a trigger of the getter kind arms.
ReactingItem::Getter getterOf(Trigger trigger)
{
    switch (trigger) {
    case Trigger::Properties:
        return ReactingItem::Getter::Properties;
    case Trigger::Subtree:
        return ReactingItem::Getter::Subtree;
    case Trigger::Visible:
        return ReactingItem::Getter::Visible;
    case Trigger::Selected:
        return ReactingItem::Getter::Selected;
    case Trigger::Selectable:
        return ReactingItem::Getter::Selectable;
    default:
        return ReactingItem::Getter::SelectionAllowed;
    }
}

std::shared_ptr<ReactingItem> makeItem(const std::string& name)
{
    return std::make_shared<ReactingItem>(name);
}

} // namespace

// A host that, while the dialog asks an item for its children, hands the
// dialog another view model (closing a document from inside an event does).
class HandOverItem : public DisplayItem
{
public:
    explicit HandOverItem(std::string name)
        : DisplayItem(std::move(name))
    {
    }
    std::function<void()> handOver;

    DisplayItemList getChildren() const override
    {
        if (std::function<void()> once = std::exchange(const_cast<HandOverItem*>(this)->handOver, nullptr))
            once();
        return DisplayItem::getChildren();
    }
};

class tst_DisplayModelDialogReactingHost : public QObject
{
    Q_OBJECT

private slots:
    void actionSurvivesHostReaction_data();
    void actionSurvivesHostReaction();
    void viewModelHandedOverDuringBuild_data();
    void viewModelHandedOverDuringBuild();
};

void tst_DisplayModelDialogReactingHost::actionSurvivesHostReaction_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<int>("reaction");
    for (std::size_t i = 0; i < operations().size(); ++i) {
        for (const auto& [reactionName, reaction] : Test::allHostReactions()) {
            QTest::addRow("%s, host %s", operations()[i].name, reactionName) << int(i) << int(reaction);
        }
    }
}

void tst_DisplayModelDialogReactingHost::actionSurvivesHostReaction()
{
    QFETCH(int, operation);
    QFETCH(int, reaction);
    const Operation& op = operations()[std::size_t(operation)];
    const auto hostReaction = HostReaction(reaction);

    // Only the model holds the items: a reaction that removes them releases them.
    std::shared_ptr<SceneViewModel> viewModel;
    {
        auto root = makeItem("Root");
        auto a = makeItem("A");
        a->appendChildren({makeItem("A1"), makeItem("A2")});
        auto module = std::make_shared<GeometryModuleItem>("M");
        auto geometry = makeItem("Geometry");
        auto g1 = makeItem("g1");
        geometry->appendChild(g1);
        module->appendChild(geometry);
        module->addGeometryDisplayItem(g1);
        auto b = makeItem("B");
        b->setBusinessProperty("mark", "needle");
        root->appendChildren({a, module, b});
        viewModel = Test::makeViewModel(root);
        viewModel->ensureEditorDisplayModel().addEditModelPrimitive("e1");
    }

    DisplayModelDialog dialog(nullptr);
    dialog.resize(900, 700);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    DisplayItemTreeWidget* tree = dialog.m_displayItemTreeWidget;
    QAbstractItemModelTester tester(tree->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    dialog.setViewModel(viewModel);
    if (op.cloneMode)
        dialog.m_useCloneCheckBox->setChecked(true);
    DisplayItemTreeWidget* clonedTree = Access::clonedTree(dialog);
    QCOMPARE(clonedTree != nullptr, op.cloneMode);
    // The cloned tree is shown from the event loop.
    if (clonedTree)
        QTRY_VERIFY(clonedTree->isVisible());
    tree->expandAll();

    // The item that triggers, in the model or in the clone the dialog shows.
    const QString itemName = QString::fromLatin1(op.item);
    const bool inClone = itemName.endsWith(QLatin1String(" (clone)"));
    QTreeWidget* itemTree = inClone ? static_cast<QTreeWidget*>(clonedTree) : tree;
    QVERIFY(itemTree);
    auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(
        rowNamed(itemTree, inClone ? itemName.chopped(int(qstrlen(" (clone)"))) : itemName));
    QVERIFY(itemRow);
    std::shared_ptr<DisplayItem> item = std::dynamic_pointer_cast<DisplayItem>(itemRow->getDisplayItem());
    QVERIFY(item);
    auto* model = dynamic_cast<SceneDisplayModel*>(item->getDisplayModel());
    QVERIFY(model);

    std::optional<ReactingObserver> observer;
    std::shared_ptr<const bool> reacted;
    switch (op.trigger) {
    case Trigger::Visual:
        observer.emplace(item, *model, ReactingObserver::Trigger::VisualPropertiesChanged, hostReaction);
        break;
    case Trigger::Removed:
        observer.emplace(item, *model, ReactingObserver::Trigger::ItemsRemoved, hostReaction);
        break;
    case Trigger::Update:
        reacted = Test::reactInNextUpdate(*model, item, hostReaction);
        break;
    default: {
        const auto armed = std::dynamic_pointer_cast<ReactingItem>(item);
        QVERIFY(armed);
        reacted = armed->reactInGetter(getterOf(op.trigger), *model, item, hostReaction);
        break;
    }
    }
    item.reset();
    // The model of the cloned tree lives as long as the dialog's clone.
    SceneDisplayModel* clonedModel = nullptr;
    if (clonedTree) {
        const auto clonedRoot = dynamic_cast<DisplayItemTreeWidgetItem*>(clonedTree->topLevelItem(0))->getDisplayItem();
        clonedModel = dynamic_cast<SceneDisplayModel*>(clonedRoot->getDisplayModel());
        QVERIFY(clonedModel);
    }

    // The reaction may release the item and all rows that show it.
    const QString rowName = QString::fromLatin1(op.row);
    switch (op.action) {
    case Action::DoubleClick:
        doubleClickRow(tree, rowNamed(tree, rowName));
        break;
    case Action::MenuEntry: {
        QTreeWidgetItem* row = rowNamed(tree, rowName);
        tree->scrollToItem(row);
        const Test::ContextMenuVisit visit = Test::rightClick(tree, tree->visualItemRect(row).center(), op.entry);
        QVERIFY2(visit.triggered, qPrintable(visit.entries.join(QLatin1String(", "))));
        break;
    }
    case Action::OpenMenu: {
        QTreeWidgetItem* row = rowNamed(tree, rowName);
        tree->scrollToItem(row);
        QVERIFY(Test::rightClick(tree, tree->visualItemRect(row).center()).accepted);
        break;
    }
    case Action::Pick:
        clickRow(tree, rowNamed(tree, rowName));
        break;
    case Action::PickCloned:
        clickRow(clonedTree, rowNamed(clonedTree, rowName));
        break;
    case Action::FindNext:
        tree->setCurrentItem(nullptr);
        dialog.m_searchValueLE->setText(QStringLiteral("needle"));
        QTest::mouseClick(dialog.m_findDisplayItemPB, Qt::LeftButton);
        break;
    case Action::Navigate:
        dialog.navigateToInitialEntry(
            dynamic_cast<DisplayItemTreeWidgetItem*>(rowNamed(tree, rowName))->getDisplayItem(), false, true);
        break;
    case Action::ToolTip: {
        QTreeWidgetItem* row = rowNamed(tree, rowName);
        tree->scrollToItem(row);
        Test::toolTipAt(tree, tree->visualItemRect(row).center());
        Test::takeDownToolTip();
        break;
    }
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    // The host did react inside the action.
    QVERIFY(observer ? observer->hasReacted() : *reacted);

    QCOMPARE(Test::rowsDifferFromModel(tree, viewModel->getDisplayModel()->getRootDisplayItem()), QString());
    if (clonedModel)
        QCOMPARE(Test::rowsDifferFromModel(clonedTree, clonedModel->getRootDisplayItem()), QString());
}

QTEST_MAIN(tst_DisplayModelDialogReactingHost)
void tst_DisplayModelDialogReactingHost::viewModelHandedOverDuringBuild_data()
{
    QTest::addColumn<QString>("handedOver");
    QTest::addColumn<QStringList>("topRows");

    QTest::newRow("none") << "none" << QStringList{};
    QTest::newRow("another") << "another" << QStringList{"Other"};
    QTest::newRow("the same again") << "same" << QStringList{"Root"};
}

void tst_DisplayModelDialogReactingHost::viewModelHandedOverDuringBuild()
{
    QFETCH(QString, handedOver);
    QFETCH(QStringList, topRows);

    auto root = makeItem("Root");
    auto a = std::make_shared<HandOverItem>("A");
    a->appendChildren({makeItem("A1")});
    root->appendChildren({a, makeItem("B")});
    const std::shared_ptr<SceneViewModel> viewModel = Test::makeViewModel(root);
    viewModel->ensureEditorDisplayModel().addEditModelPrimitive("e1");
    const std::shared_ptr<SceneViewModel> other = Test::makeViewModel(makeItem("Other"));

    DisplayModelDialog dialog(nullptr);
    DisplayItemTreeWidget* tree = dialog.m_displayItemTreeWidget;
    QAbstractItemModelTester tester(tree->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    a->handOver = [&] {
        if (handedOver == "none")
            dialog.setViewModel(nullptr);
        else
            dialog.setViewModel(handedOver == "another" ? other : viewModel);
    };
    dialog.setViewModel(viewModel);

    // The tree shows what the last hand-over built, once.
    QStringList texts;
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        texts << tree->topLevelItem(i)->text(0);
    QCOMPARE(texts, topRows);
}

#include "tst_displaymodeldialog_reactinghost.moc"
