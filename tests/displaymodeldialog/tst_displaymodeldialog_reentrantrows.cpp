// Rows are made and compared while the host is asked about their items: for
// the visibility icon, for the row's text, for the children below. A host
// that reacts inside such a call may remove the row being made, its parent or
// the whole branch, replace the root, or hand the dialog another view model
// (or none), which clears the trees. The dialog must end quietly where its
// rows went, never leave a half-made row behind, and show the model again
// when it is handed over anew. One data row per phase, getter, reacting item
// and reaction; under the sanitizers a read of a deleted row fails the row.

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include "../common/DisplayModelDialogTestAccess.h"
#include "../common/ReactingHost.h"
#include "../common/TestTree.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace Brennvik;
using namespace Brennvik::Test;
using Access = Brennvik::DisplayModelDialogTestAccess;

namespace {

// When the rows are made.
enum class Phase {
    Build,     // the dialog is handed the view model
    CloneMode, // clone mode is switched on: the clone is built and compared
    AddedRows, // the host adds a branch, whose rows the dialog then makes
};

// What the host does: one of the reactions on the reacting item, or a
// hand-over of the dialog's view model.
enum class DialogReaction { HandOverAnother = -1, TakeAway = -2 };

std::shared_ptr<ReactingItem> makeItem(const std::string& name)
{
    return std::make_shared<ReactingItem>(name);
}

// Root
//   A
//     A1
//     A2
//   B
// and, for AddedRows, the branch N (N1) that the host appends to A.
std::shared_ptr<ReactingItem> makeTree()
{
    auto root = makeItem("Root");
    auto a = makeItem("A");
    a->appendChildren({makeItem("A1"), makeItem("A2")});
    root->appendChildren({a, makeItem("B")});
    return root;
}

// The name of the first row that shows a live item but not its name: a row
// that was left half made. Empty when there is none.
QString firstHalfMadeRow(QTreeWidget* tree)
{
    if (!tree)
        return {};
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(*it);
        const auto item = row ? std::dynamic_pointer_cast<DisplayItem>(row->getDisplayItem()) : nullptr;
        // The plain getter: the check must not set a reaction off.
        if (item && row->text(0) != QString::fromStdString(item->DisplayItem::getDisplayName()))
            return QStringLiteral("a row of %1 shows \"%2\"")
                .arg(QString::fromStdString(item->DisplayItem::getDisplayName()), row->text(0));
    }
    return {};
}

} // namespace

Q_DECLARE_METATYPE(Phase)
Q_DECLARE_METATYPE(ReactingItem::Getter)

class tst_DisplayModelDialogReentrantRows : public QObject
{
    Q_OBJECT

private slots:
    void rowsSurviveHostReaction_data();
    void rowsSurviveHostReaction();
};

void tst_DisplayModelDialogReentrantRows::rowsSurviveHostReaction_data()
{
    QTest::addColumn<Phase>("phase");
    QTest::addColumn<ReactingItem::Getter>("getter");
    QTest::addColumn<QString>("itemName");
    QTest::addColumn<int>("reaction");

    struct Case
    {
        const char* name;
        Phase phase;
        std::vector<const char*> items;
    };
    const Case phases[] = {
        {"build", Phase::Build, {"Root", "A", "A1"}},
        {"clone mode", Phase::CloneMode, {"Root", "A", "A1"}},
        {"added rows", Phase::AddedRows, {"N", "N1"}},
    };
    const std::pair<const char*, ReactingItem::Getter> getters[] = {
        {"visibility", ReactingItem::Getter::Visible},
        {"name", ReactingItem::Getter::DisplayName},
        {"children", ReactingItem::Getter::Children},
    };
    QList<QPair<const char*, int>> reactions;
    for (const auto& [name, reaction] : allHostReactions())
        reactions.append({name, int(reaction)});
    reactions.append({"hands over another view model", int(DialogReaction::HandOverAnother)});
    reactions.append({"takes the view model away", int(DialogReaction::TakeAway)});

    for (const Case& phase : phases) {
        for (const auto& [getterName, getter] : getters) {
            // Clone mode asks the original items for their visibility only:
            // it compares rows by their texts, and copies without asking.
            if (phase.phase == Phase::CloneMode && getter != ReactingItem::Getter::Visible)
                continue;
            for (const char* item : phase.items) {
                for (const auto& [reactionName, reaction] : reactions) {
                    QTest::addRow("%s, %s of %s asked, host %s", phase.name, getterName, item, reactionName)
                        << phase.phase << getter << QString::fromLatin1(item) << reaction;
                }
            }
        }
    }
}

void tst_DisplayModelDialogReentrantRows::rowsSurviveHostReaction()
{
    QFETCH(Phase, phase);
    QFETCH(ReactingItem::Getter, getter);
    QFETCH(QString, itemName);
    QFETCH(int, reaction);

    // Only the models hold the items: a reaction that removes them releases them.
    const std::shared_ptr<SceneViewModel> viewModel = makeViewModel(makeTree());
    const std::shared_ptr<SceneViewModel> other = makeViewModel(makeTree());
    SceneDisplayModel& model = viewModel->displayModel();

    DisplayModelDialog dialog(nullptr);
    DisplayItemTreeWidget* tree = dialog.m_displayItemTreeWidget;
    QAbstractItemModelTester tester(tree->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    if (phase != Phase::Build)
        dialog.setViewModel(viewModel);

    std::shared_ptr<ReactingItem> addedBranch;
    if (phase == Phase::AddedRows) {
        addedBranch = makeItem("N");
        addedBranch->appendChild(makeItem("N1"));
    }
    const std::shared_ptr<DisplayItem> root = std::dynamic_pointer_cast<DisplayItem>(model.getRootDisplayItem());
    const auto item
        = std::dynamic_pointer_cast<ReactingItem>(findItem(addedBranch ? addedBranch : root, itemName.toStdString()));
    QVERIFY(item);
    std::shared_ptr<const bool> reacted;
    if (reaction >= 0) {
        reacted = item->reactInGetter(getter, model, item, HostReaction(reaction));
    } else {
        const bool takeAway = reaction == int(DialogReaction::TakeAway);
        reacted = item->reactInGetter(getter, [&dialog, &other, takeAway] {
            dialog.setViewModel(takeAway ? nullptr : std::shared_ptr<ViewModelInterface>(other));
        });
    }

    switch (phase) {
    case Phase::Build:
        dialog.setViewModel(viewModel);
        break;
    case Phase::CloneMode:
        dialog.m_useCloneCheckBox->setChecked(true);
        break;
    case Phase::AddedRows:
        std::dynamic_pointer_cast<DisplayItem>(findItem(root, "A"))->appendChild(addedBranch);
        break;
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(*reacted);

    // What is left shows whole rows: the model as far as the dialog got, the
    // model handed over, or nothing.
    DisplayItemTreeWidget* clonedTree = Access::clonedTree(dialog);
    QCOMPARE(firstHalfMadeRow(tree), QString());
    QCOMPARE(firstHalfMadeRow(clonedTree), QString());
    if (reaction == int(DialogReaction::TakeAway))
        QCOMPARE(tree->topLevelItemCount(), 0);
    if (reaction == int(DialogReaction::HandOverAnother))
        QCOMPARE(rowsDifferFromModel(tree, other->getDisplayModel()->getRootDisplayItem()), QString());

    // Handed the model anew, the dialog shows it whole.
    dialog.setViewModel(viewModel);
    QCOMPARE(rowsDifferFromModel(tree, model.getRootDisplayItem()), QString());
    if (clonedTree) {
        const std::shared_ptr<ViewModelInterface> clone = Access::clonedViewModel(dialog);
        QVERIFY(clone);
        QCOMPARE(rowsDifferFromModel(clonedTree, clone->getDisplayModel()->getRootDisplayItem()), QString());
    }
}

QTEST_MAIN(tst_DisplayModelDialogReentrantRows)
#include "tst_displaymodeldialog_reentrantrows.moc"
