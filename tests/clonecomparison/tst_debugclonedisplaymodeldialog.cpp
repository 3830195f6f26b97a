#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/BKLabel.h>
#include <hostcontract/DisplayModel.h>

#include <referencehost/model/CloneDefect.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include "ContextMenuDriver.h"
#include "CursorRecordingItem.h"
#include "DebugIcons.h"
#include "ShownWindow.h"
#include "ContextMarkingTranslator.h"
#include "ReactingHost.h"
#include "TestTree.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTest>
#include <QTextBlock>
#include <QTranslator>
#include <QTreeWidgetItemIterator>

#include <memory>
#include <type_traits>
#include <typeinfo>
#include <vector>

using namespace Brennvik;
using Brennvik::Test::debugIconName;
using Brennvik::Test::findItem;

Q_DECLARE_METATYPE(CloneDefect::Kind)
Q_DECLARE_METATYPE(Brennvik::Test::HostReaction)
Q_DECLARE_METATYPE(Brennvik::Test::ReactingItem::Getter)

namespace {

using Brennvik::Test::DefectList;
// (message, name of the original item that the entry names)
using Finding = QPair<QString, QString>;
using FindingList = QList<Finding>;

using Brennvik::Test::makeViewModel;

using Brennvik::Test::setDefects;

//   root
//     A
//       B
//         C1
//         C2
//       D
//         D1
//     E
std::shared_ptr<DisplayItem> buildRuleTree()
{
    auto root = Test::buildTree({"root", {{"A", {{"B", {{"C1"}, {"C2"}}}, {"D", {{"D1"}}}}}, {"E"}}});
    findItem(root, "D1")->setDisplayProperty("colour", "red");
    return root;
}

// A view model that records the argument of every clone request and
// otherwise is the scene view model it wraps.
class RecordingViewModel : public ViewModelInterface
{
public:
    explicit RecordingViewModel(std::shared_ptr<SceneViewModel> inner)
        : m_inner(std::move(inner))
    {
    }
    std::shared_ptr<ViewModelInterface> cloneViewModel(bool shareGeometry) const override
    {
        m_cloneArguments.push_back(shareGeometry);
        return m_inner->cloneViewModel(shareGeometry);
    }
    DisplayModel* getDisplayModel() const override { return m_inner->getDisplayModel(); }
    EditorDisplayModel* getEditorDisplayModel() const override { return m_inner->getEditorDisplayModel(); }
    ViewBase* getView() const override { return m_inner->getView(); }
    DisplayModel* getLabelDisplayModel() const override { return m_inner->getLabelDisplayModel(); }

    const std::vector<bool>& cloneArguments() const { return m_cloneArguments; }

private:
    std::shared_ptr<SceneViewModel> m_inner;
    mutable std::vector<bool> m_cloneArguments;
};

// The report the dialog writes for \a findings: per entry the message, the
// original item's description, then a paragraph holding one line break.
QString expectedReport(const std::shared_ptr<DisplayItem>& root, const FindingList& findings)
{
    if (findings.isEmpty())
        return QStringLiteral("Trees are equal");
    QStringList paragraphs;
    for (const Finding& finding : findings) {
        const auto item = findItem(root, finding.second.toStdString());
        paragraphs << finding.first << QString::fromStdString(item ? item->getDescription() : std::string("<missing>"))
                   << QStringLiteral("\n");
    }
    return paragraphs.join(QLatin1Char('\n'));
}

QString rowPath(const QTreeWidgetItem* row)
{
    QStringList parts;
    for (const QTreeWidgetItem* r = row; r; r = r->parent())
        parts.prepend(r->text(0));
    return parts.join(QLatin1Char('/'));
}

QStringList rowPaths(QTreeWidget* tree)
{
    QStringList paths;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        paths << rowPath(*it);
    return paths;
}

QStringList dumpTree(QTreeWidget* tree)
{
    QStringList lines;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        lines << rowPath(*it) + QLatin1Char(' ') + debugIconName((*it)->icon(0));
    return lines;
}

using Brennvik::Test::ContextMarkingTranslator;

using Brennvik::Test::ReactingItem;

// The rule tree with root, A, B and C1 (the way down to C1) made of items
// whose getters can be armed to change the model; C1 and E differ in their
// clone's visibility, so that the report names C1 on line 0 and E on line 4.
struct ArmableModel
{
    std::shared_ptr<SceneViewModel> viewModel;
    std::vector<std::shared_ptr<ReactingItem>> wayToC1;
};

ArmableModel buildArmableModel()
{
    ArmableModel model;
    for (const char* name : {"root", "A", "B", "C1"}) {
        auto item = std::make_shared<ReactingItem>(name);
        if (!model.wayToC1.empty())
            model.wayToC1.back()->appendChild(item);
        model.wayToC1.push_back(item);
    }
    model.wayToC1[2]->appendChild(Test::buildTree({"C2"}));
    model.wayToC1[1]->appendChild(Test::buildTree({"D", {{"D1"}}}));
    model.wayToC1[0]->appendChild(Test::buildTree({"E"}));
    model.viewModel = makeViewModel(model.wayToC1[0]);
    setDefects(*model.viewModel, {{CloneDefect::Kind::FlipVisibility, "C1"}, {CloneDefect::Kind::FlipVisibility, "E"}});
    return model;
}

} // namespace

class tst_DebugCloneDisplayModelDialog : public QObject
{
    Q_OBJECT

private slots:
    // form
    void dialogInheritsItsFormAndIsModal();
    void formWidgets_data();
    void formWidgets();
    void gridAndTreeSettings();
    void textsAreTranslatedInFormContext();

    // report
    void faithfulCloneReportsTreesAreEqual();
    void modelWithoutRootShowsEmptyTrees();
    void report_data();
    void report();
    void reportEntryIsMessageItemBlankLine();
    void doubleClickOnLineShowsItem_data();
    void doubleClickOnLineShowsItem();
    void doubleClickOnGoneItemDoesNothing();
    void doubleClickAsksTheHostNothing_data();
    void doubleClickAsksTheHostNothing();
    void doubleClickAfterTheHostChanged_data();
    void doubleClickAfterTheHostChanged();

    // lifecycle
    void cloneIsMadeOnceAndDroppedWithDialog();
    void rowsFollowNoDialog();

    // What the dialog does for its users
    void cloneBuildAndComparisonShowWaitCursor();
    void escapeStillClosesTheModalDialog();
};

// ---------------------------------------------------------------- form

void tst_DebugCloneDisplayModelDialog::dialogInheritsItsFormAndIsModal()
{
    static_assert(std::is_base_of_v<QDialog, DebugCloneDisplayModelDialog>, "a dialog");
    static_assert(std::is_base_of_v<Ui::DebugCloneDisplayModelDialogClass, DebugCloneDisplayModelDialog>,
                  "with its form");

    DebugCloneDisplayModelDialog dialog(nullptr, makeViewModel(buildRuleTree()));
    QCOMPARE(dialog.objectName(), QStringLiteral("DebugCloneDisplayModelDialogClass"));
    QCOMPARE(dialog.metaObject()->className(), "Brennvik::DebugCloneDisplayModelDialog");
    QVERIFY(dialog.isModal());
    QCOMPARE(dialog.windowTitle(), QStringLiteral("DisplayModelDialog"));
    QCOMPARE(dialog.size(), QSize(764, 902));
    QCOMPARE(dialog.layout(), static_cast<QLayout*>(dialog.gridLayout));
}

void tst_DebugCloneDisplayModelDialog::formWidgets_data()
{
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("className");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("columnSpan");
    QTest::addColumn<QString>("text");

    QTest::newRow("original label") << "bkLabel"
                                    << "Brennvik::BKLabel" << 0 << 0 << 1 << "Display Model";
    QTest::newRow("cloned label") << "bkLabel_2"
                                  << "Brennvik::BKLabel" << 0 << 1 << 1 << "Cloned Display Model";
    QTest::newRow("original tree") << "m_displayItemTree"
                                   << "Brennvik::DisplayItemTreeWidget" << 1 << 0 << 1 << "";
    QTest::newRow("cloned tree") << "m_clonedDisplayItemTree"
                                 << "Brennvik::DisplayItemTreeWidget" << 1 << 1 << 1 << "";
    QTest::newRow("output") << "m_outputTextField"
                            << "QPlainTextEdit" << 2 << 0 << 2 << "";
}

void tst_DebugCloneDisplayModelDialog::formWidgets()
{
    QFETCH(QString, objectName);
    QFETCH(QString, className);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(int, columnSpan);
    QFETCH(QString, text);

    DebugCloneDisplayModelDialog dialog(nullptr, makeViewModel(buildRuleTree()));
    QWidget* widget = dialog.findChild<QWidget*>(objectName);
    QVERIFY(widget);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);
    QCOMPARE(widget->parentWidget(), static_cast<QWidget*>(&dialog));

    QGridLayout* grid = dialog.gridLayout;
    const int index = grid->indexOf(widget);
    QVERIFY(index >= 0);
    int r = -1, c = -1, rowSpan = 0, colSpan = 0;
    grid->getItemPosition(index, &r, &c, &rowSpan, &colSpan);
    QCOMPARE(r, row);
    QCOMPARE(c, column);
    QCOMPARE(rowSpan, 1);
    QCOMPARE(colSpan, columnSpan);

    if (auto* label = qobject_cast<QLabel*>(widget)) {
        QCOMPARE(label->text(), text);
        QCOMPARE(label->alignment(), Qt::AlignLeading | Qt::AlignLeft | Qt::AlignVCenter);
    }
}

void tst_DebugCloneDisplayModelDialog::gridAndTreeSettings()
{
    DebugCloneDisplayModelDialog dialog(nullptr, makeViewModel(buildRuleTree()));
    QGridLayout* grid = dialog.gridLayout;
    QCOMPARE(grid->objectName(), QStringLiteral("gridLayout"));
    QCOMPARE(grid->spacing(), 6);
    QCOMPARE(grid->contentsMargins(), QMargins(11, 11, 11, 11));
    QCOMPARE(grid->rowStretch(0), 0);
    QCOMPARE(grid->rowStretch(1), 1);
    QCOMPARE(grid->rowStretch(2), 0);
    QCOMPARE(grid->count(), 5);

    for (DisplayItemTreeWidget* tree : {dialog.m_displayItemTree, dialog.m_clonedDisplayItemTree}) {
        QVERIFY(typeid(*tree) == typeid(DisplayItemTreeWidget));
        QVERIFY(!tree->expandsOnDoubleClick());
        QCOMPARE(tree->columnCount(), 1);
        QCOMPARE(tree->header()->defaultSectionSize(), 40);
        QVERIFY(tree->header()->stretchLastSection());
        QCOMPARE(tree->headerItem()->text(0), QStringLiteral("1"));

        // Both trees are made with their display item actions.
        tree->expandAll();
        QTreeWidgetItem* child = tree->topLevelItem(0)->child(0);
        const Test::ContextMenuVisit visit = Test::rightClick(tree, tree->visualItemRect(child).center());
        QVERIFY(visit.opened);
        QVERIFY2(visit.entries.contains(QStringLiteral("&Delete display item"))
                     && visit.entries.contains(QStringLiteral("Make subtree invisible"))
                     && visit.entries.contains(QStringLiteral("Make subtree visible")),
                 qPrintable(visit.entries.join(", ")));
    }
}

void tst_DebugCloneDisplayModelDialog::textsAreTranslatedInFormContext()
{
    ContextMarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    DebugCloneDisplayModelDialog dialog(nullptr, makeViewModel(buildRuleTree()));
    QCoreApplication::removeTranslator(&translator);

    const QString context = QStringLiteral("DebugCloneDisplayModelDialogClass:");
    QCOMPARE(dialog.windowTitle(), context + "DisplayModelDialog");
    QCOMPARE(dialog.bkLabel->text(), context + "Display Model");
    QCOMPARE(dialog.bkLabel_2->text(), context + "Cloned Display Model");
    QCOMPARE(dialog.m_displayItemTree->headerItem()->text(0), context + "1");
    QCOMPARE(dialog.m_clonedDisplayItemTree->headerItem()->text(0), context + "1");
}

// ---------------------------------------------------------------- report

// A host whose model has lost its root: nothing to show or compare, and no crash.
void tst_DebugCloneDisplayModelDialog::modelWithoutRootShowsEmptyTrees()
{
    auto viewModel = buildSampleViewModel();
    viewModel->displayModel().setRootDisplayItem(nullptr);
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    QCOMPARE(dialog.m_displayItemTree->topLevelItemCount(), 0);
    QCOMPARE(dialog.m_clonedDisplayItemTree->topLevelItemCount(), 0);
    QCOMPARE(dialog.m_outputTextField->toPlainText(), QStringLiteral("Trees are equal"));
}

void tst_DebugCloneDisplayModelDialog::faithfulCloneReportsTreesAreEqual()
{
    auto viewModel = buildSampleViewModel();
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    QCOMPARE(dialog.m_outputTextField->toPlainText(), QStringLiteral("Trees are equal"));
    QCOMPARE(dialog.m_outputTextField->document()->blockCount(), 1);

    // Both trees show every item once, in the model's order, with the same icons.
    const QStringList original = dumpTree(dialog.m_displayItemTree);
    QCOMPARE(original.size(), int(Test::preOrder(viewModel->getDisplayModel()->getRootDisplayItem()).size()));
    QCOMPARE(dumpTree(dialog.m_clonedDisplayItemTree), original);
    QCOMPARE(dialog.m_displayItemTree->topLevelItemCount(), 1);
    QCOMPARE(dialog.m_clonedDisplayItemTree->topLevelItemCount(), 1);
}

void tst_DebugCloneDisplayModelDialog::report_data()
{
    QTest::addColumn<DefectList>("defects");
    QTest::addColumn<FindingList>("findings");
    using K = CloneDefect::Kind;

    QTest::newRow("shared child") << DefectList{{K::ShareChild, "B"}} << FindingList{{"Pointer was copied", "B"}};
    QTest::newRow("shared leaf") << DefectList{{K::ShareChild, "E"}} << FindingList{{"Pointer was copied", "E"}};
    // Below a differing type nothing is examined: C1's visibility goes unreported.
    QTest::newRow("other type") << DefectList{{K::ChangeChildType, "B"}, {K::FlipVisibility, "C1"}}
                                << FindingList{{"Type differs", "B"}};
    QTest::newRow("one more child") << DefectList{{K::AddChild, "B"}, {K::FlipVisibility, "C1"}}
                                    << FindingList{{"Child count differs", "B"}};
    QTest::newRow("one child less") << DefectList{{K::DropChild, "C2"}, {K::FlipVisibility, "C1"}}
                                    << FindingList{{"Child count differs", "B"}};
    QTest::newRow("repeated subtree") << DefectList{{K::RepeatChild, "D"}, {K::FlipVisibility, "B"}}
                                      << FindingList{{"Child count differs", "A"}};
    QTest::newRow("one more child of the root")
        << DefectList{{K::AddChild, "root"}} << FindingList{{"Child count differs", "root"}};
    QTest::newRow("visibility at several depths") << DefectList{{K::FlipVisibility, "E"},
                                                                {K::FlipVisibility, "D1"},
                                                                {K::FlipVisibility, "A"},
                                                                {K::FlipVisibility, "C2"}}
                                                  << FindingList{{"Visibility differs", "A"},
                                                                 {"Visibility differs", "C2"},
                                                                 {"Visibility differs", "D1"},
                                                                 {"Visibility differs", "E"}};
    // The roots themselves are compared only through their children.
    QTest::newRow("visibility of the root") << DefectList{{K::FlipVisibility, "root"}} << FindingList{};
    QTest::newRow("property value") << DefectList{{K::ChangePropertyValue, "D1"}} << FindingList{};
    QTest::newRow("all kinds, in pre-order")
        << DefectList{{K::ShareChild, "E"}, {K::FlipVisibility, "A"}, {K::ChangeChildType, "D"}, {K::AddChild, "B"}}
        << FindingList{{"Visibility differs", "A"},
                       {"Child count differs", "B"},
                       {"Type differs", "D"},
                       {"Pointer was copied", "E"}};
}

void tst_DebugCloneDisplayModelDialog::report()
{
    QFETCH(DefectList, defects);
    QFETCH(FindingList, findings);

    auto root = buildRuleTree();
    auto viewModel = makeViewModel(root);
    setDefects(*viewModel, defects);
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    QVERIFY(viewModel->lastCloneUnappliedDefects().empty());

    QCOMPARE(dialog.m_outputTextField->toPlainText(), expectedReport(root, findings));
}

void tst_DebugCloneDisplayModelDialog::reportEntryIsMessageItemBlankLine()
{
    auto root = buildRuleTree();
    auto viewModel = makeViewModel(root);
    setDefects(*viewModel, {{CloneDefect::Kind::FlipVisibility, "C1"}, {CloneDefect::Kind::ShareChild, "D"}});
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);

    const QString c1 = QString::fromStdString(findItem(root, "C1")->getDescription());
    const QString d = QString::fromStdString(findItem(root, "D")->getDescription());
    QVERIFY(c1.contains(QLatin1String("C1")));
    // Message, item text, and a paragraph holding a line break, which shows as a blank line.
    QCOMPARE(dialog.m_outputTextField->toPlainText(),
             QStringLiteral("Visibility differs\n") + c1 + QStringLiteral("\n\n\nPointer was copied\n") + d
                 + QStringLiteral("\n\n"));
    QStringList blocks;
    for (QTextBlock block = dialog.m_outputTextField->document()->begin(); block.isValid(); block = block.next())
        blocks << block.text();
    QCOMPARE(blocks, (QStringList{"Visibility differs", c1, "", "", "Pointer was copied", d, "", ""}));
}

// The double click of a user on the report's line \a blockNumber.
void doubleClickLine(QPlainTextEdit* edit, int blockNumber)
{
    const QTextBlock block = edit->document()->findBlockByNumber(blockNumber);
    QVERIFY(block.isValid());
    const QPoint pos = edit->cursorRect(QTextCursor(block)).center() + QPoint(2, 0);
    QTest::mouseDClick(edit->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
}

// The current row's path, and whether all rows above it are expanded.
QString shownRow(QTreeWidget* tree)
{
    const QTreeWidgetItem* row = tree->currentItem();
    if (!row)
        return QString();
    for (const QTreeWidgetItem* above = row->parent(); above; above = above->parent()) {
        if (!above->isExpanded())
            return rowPath(row) + QStringLiteral(" (collapsed above)");
    }
    return rowPath(row);
}

// Double-clicks the report's line \a line and checks that both trees show
// \a shown, or for an empty \a shown, that they are left as they were.
void checkDoubleClickShows(DebugCloneDisplayModelDialog& dialog, int line, const QString& shown)
{
    const QString originalBefore = shownRow(dialog.m_displayItemTree);
    const QString clonedBefore = shownRow(dialog.m_clonedDisplayItemTree);
    doubleClickLine(dialog.m_outputTextField, line);
    QCOMPARE(shownRow(dialog.m_displayItemTree), shown.isEmpty() ? originalBefore : shown);
    QCOMPARE(shownRow(dialog.m_clonedDisplayItemTree), shown.isEmpty() ? clonedBefore : shown);
}

void tst_DebugCloneDisplayModelDialog::doubleClickOnLineShowsItem_data()
{
    QTest::addColumn<DefectList>("defects");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("shown");
    using K = CloneDefect::Kind;
    const DefectList two{{K::FlipVisibility, "C1"}, {K::ShareChild, "D"}};

    QTest::newRow("message line") << two << 0 << "root/A/B/C1";
    QTest::newRow("item line") << two << 1 << "root/A/B/C1";
    QTest::newRow("blank line") << two << 2 << "";
    QTest::newRow("second blank line") << two << 3 << "";
    QTest::newRow("second entry, shared object") << two << 4 << "root/A/D";
    QTest::newRow("second entry, item line") << two << 5 << "root/A/D";
    QTest::newRow("child count: the parent") << DefectList{{K::AddChild, "B"}} << 0 << "root/A/B";
    QTest::newRow("other type") << DefectList{{K::ChangeChildType, "E"}} << 1 << "root/E";
    QTest::newRow("trees are equal") << DefectList{} << 0 << "";
}

void tst_DebugCloneDisplayModelDialog::doubleClickOnLineShowsItem()
{
    QFETCH(DefectList, defects);
    QFETCH(int, line);
    QFETCH(QString, shown);
    auto viewModel = makeViewModel(buildRuleTree());
    setDefects(*viewModel, defects);
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QString report = dialog.m_outputTextField->toPlainText();
    // A line that names no item leaves the trees as they were.
    const QString originalBefore = shownRow(dialog.m_displayItemTree);
    const QString clonedBefore = shownRow(dialog.m_clonedDisplayItemTree);
    QVERIFY(originalBefore != shown || shown.isEmpty());

    doubleClickLine(dialog.m_outputTextField, line);
    QCOMPARE(shownRow(dialog.m_displayItemTree), shown.isEmpty() ? originalBefore : shown);
    QCOMPARE(shownRow(dialog.m_clonedDisplayItemTree), shown.isEmpty() ? clonedBefore : shown);
    // The report stays as it was.
    QCOMPARE(dialog.m_outputTextField->toPlainText(), report);
}

void tst_DebugCloneDisplayModelDialog::doubleClickOnGoneItemDoesNothing()
{
    auto root = buildRuleTree();
    auto viewModel = makeViewModel(root);
    setDefects(*viewModel, {{CloneDefect::Kind::FlipVisibility, "C1"}, {CloneDefect::Kind::FlipVisibility, "E"}});
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));

    findItem(root, "B")->removeChild(findItem(root, "C1"), false);
    QVERIFY(!findItem(root, "C1"));
    const QString originalBefore = shownRow(dialog.m_displayItemTree);
    const QString clonedBefore = shownRow(dialog.m_clonedDisplayItemTree);
    doubleClickLine(dialog.m_outputTextField, 0);
    QCOMPARE(shownRow(dialog.m_displayItemTree), originalBefore);
    QCOMPARE(shownRow(dialog.m_clonedDisplayItemTree), clonedBefore);

    // The next entry's item is still there.
    doubleClickLine(dialog.m_outputTextField, 4);
    QCOMPARE(shownRow(dialog.m_displayItemTree), QStringLiteral("root/E"));
    QCOMPARE(shownRow(dialog.m_clonedDisplayItemTree), QStringLiteral("root/E"));
}

// Going to a difference's item reads only what the dialog holds: no host
// call on the way, so no host event can change the trees under it.
void tst_DebugCloneDisplayModelDialog::doubleClickAsksTheHostNothing_data()
{
    using Getter = ReactingItem::Getter;
    QTest::addColumn<Getter>("getter");
    QTest::addColumn<Test::HostReaction>("reaction");
    const QList<QPair<const char*, Getter>> getters{
        {"properties", Getter::Properties}, {"selection allowed", Getter::SelectionAllowed},
        {"subtree", Getter::Subtree},       {"children", Getter::Children},
        {"visible", Getter::Visible},       {"selected", Getter::Selected},
        {"selectable", Getter::Selectable}, {"display name", Getter::DisplayName},
    };
    for (const auto& [getterName, getter] : getters) {
        for (const auto& [reactionName, reaction] : Test::allHostReactions())
            QTest::addRow("%s, %s", getterName, reactionName) << getter << reaction;
    }
}

void tst_DebugCloneDisplayModelDialog::doubleClickAsksTheHostNothing()
{
    QFETCH(ReactingItem::Getter, getter);
    QFETCH(Test::HostReaction, reaction);
    const ArmableModel model = buildArmableModel();
    DebugCloneDisplayModelDialog dialog(nullptr, model.viewModel);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));

    // Every item on the way to C1 and C1's copy in the clone change the
    // model around C1 as soon as the getter is asked.
    std::vector<std::shared_ptr<const bool>> reacted;
    const std::shared_ptr<DisplayItem> c1 = model.wayToC1.back();
    SceneDisplayModel& displayModel = model.viewModel->displayModel();
    for (const std::shared_ptr<ReactingItem>& item : model.wayToC1)
        reacted.push_back(item->reactInGetter(getter, displayModel, c1, reaction));
    const QList<QTreeWidgetItem*> clonedC1Rows
        = dialog.m_clonedDisplayItemTree->findItems(QStringLiteral("C1"), Qt::MatchExactly | Qt::MatchRecursive);
    QCOMPARE(clonedC1Rows.size(), 1);
    const DisplayItemTreeWidgetItem* clonedC1Row = DisplayItemTreeWidgetItem::asDisplayItemRow(clonedC1Rows.first());
    QVERIFY(clonedC1Row);
    auto* clonedC1Item
        = dynamic_cast<ReactingItem*>(const_cast<DisplayItemTreeWidgetItem*>(clonedC1Row)->getDisplayItem().get());
    QVERIFY(clonedC1Item);
    reacted.push_back(
        clonedC1Item->reactInGetter(getter, [&]() { Test::applyHostReaction(reaction, c1, displayModel); }));

    checkDoubleClickShows(dialog, 0, QStringLiteral("root/A/B/C1"));
    for (const std::shared_ptr<const bool>& ran : reacted)
        QVERIFY2(!*ran, "the double click asked the host");
}

// The host changes its model inside one of its own updates; the report and
// the trees stay a snapshot, and a line whose item has gone names nothing.
void tst_DebugCloneDisplayModelDialog::doubleClickAfterTheHostChanged_data()
{
    QTest::addColumn<Test::HostReaction>("reaction");
    QTest::addColumn<QString>("shownForC1");
    QTest::addColumn<QString>("shownForE");
    using Test::HostReaction;
    const QString c1 = QStringLiteral("root/A/B/C1");
    const QString e = QStringLiteral("root/E");
    QTest::newRow("removes the item") << HostReaction::RemoveItem << QString() << e;
    QTest::newRow("removes its parent") << HostReaction::RemoveParent << QString() << e;
    QTest::newRow("removes the whole branch") << HostReaction::RemoveBranch << QString() << e;
    QTest::newRow("removes its children") << HostReaction::RemoveChildren << c1 << e;
    QTest::newRow("adds children") << HostReaction::AddChildren << c1 << e;
    QTest::newRow("replaces the root") << HostReaction::ReplaceRoot << QString() << QString();
}

void tst_DebugCloneDisplayModelDialog::doubleClickAfterTheHostChanged()
{
    QFETCH(Test::HostReaction, reaction);
    QFETCH(QString, shownForC1);
    QFETCH(QString, shownForE);
    std::shared_ptr<SceneViewModel> viewModel = buildArmableModel().viewModel;
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QString report = dialog.m_outputTextField->toPlainText();
    const QStringList originalRows = rowPaths(dialog.m_displayItemTree);
    const QStringList clonedRows = dumpTree(dialog.m_clonedDisplayItemTree);

    SceneDisplayModel& displayModel = viewModel->displayModel();
    const std::shared_ptr<const bool> reacted
        = Test::reactInNextUpdate(displayModel, findItem(displayModel.rootDisplayItem(), "C1"), reaction);
    displayModel.doVisibilityUpdate();
    QVERIFY(*reacted);

    checkDoubleClickShows(dialog, 0, shownForC1);
    checkDoubleClickShows(dialog, 4, shownForE);
    // The report and the rows are as they were made.
    QCOMPARE(dialog.m_outputTextField->toPlainText(), report);
    QCOMPARE(dumpTree(dialog.m_clonedDisplayItemTree), clonedRows);
    QCOMPARE(rowPaths(dialog.m_displayItemTree), originalRows);
}

// ---------------------------------------------------------------- lifecycle

void tst_DebugCloneDisplayModelDialog::cloneIsMadeOnceAndDroppedWithDialog()
{
    auto root = buildRuleTree();
    auto scene = makeViewModel(root);
    auto viewModel = std::make_shared<RecordingViewModel>(scene);
    std::weak_ptr<DisplayItemInterface> clonedRoot;
    {
        DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
        QCOMPARE(viewModel->cloneArguments(), std::vector<bool>{false});
        auto* clonedTop = dynamic_cast<DisplayItemTreeWidgetItem*>(dialog.m_clonedDisplayItemTree->topLevelItem(0));
        QVERIFY(clonedTop);
        clonedRoot = clonedTop->getDisplayItem();
        QVERIFY(!clonedRoot.expired());
        QVERIFY(clonedRoot.lock() != std::shared_ptr<DisplayItemInterface>(root));
        QCOMPARE(dynamic_cast<DisplayItemTreeWidgetItem*>(dialog.m_displayItemTree->topLevelItem(0))->getDisplayItem(),
                 std::shared_ptr<DisplayItemInterface>(root));
        QCOMPARE(root->observerCount(), std::size_t(1));

        // Showing and hiding the snapshot computes nothing again.
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        dialog.hide();
        QCOMPARE(viewModel->cloneArguments().size(), std::size_t(1));
        QCOMPARE(scene->cloneCount(), 1);
    }
    QVERIFY(clonedRoot.expired());
    QCOMPARE(root->observerCount(), std::size_t(0));
}

void tst_DebugCloneDisplayModelDialog::rowsFollowNoDialog()
{
    auto root = buildRuleTree();
    auto viewModel = makeViewModel(root);
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    QTreeWidgetItem* rowOfE = dialog.m_displayItemTree->topLevelItem(0)->child(1);
    QCOMPARE(rowOfE->text(0), QStringLiteral("E"));
    QCOMPARE(debugIconName(rowOfE->icon(0)), QStringLiteral("visible"));

    // A row refreshes its own icon on its item's events ...
    auto e = findItem(root, "E");
    e->setVisible(false);
    e->notifyVisualPropertiesChanged();
    QCOMPARE(debugIconName(rowOfE->icon(0)), QStringLiteral("not_visible"));
    // ... while the tree and the report stay a snapshot.
    const QStringList before = dumpTree(dialog.m_displayItemTree);
    root->appendChild(std::make_shared<DisplayItem>("Late"));
    findItem(root, "C1")->parentItem()->removeChild(findItem(root, "C1"), false);
    QCOMPARE(dumpTree(dialog.m_displayItemTree), before);
    QCOMPARE(dialog.m_outputTextField->toPlainText(), QStringLiteral("Trees are equal"));
}

void tst_DebugCloneDisplayModelDialog::cloneBuildAndComparisonShowWaitCursor()
{
    using namespace Brennvik::Test;
    const auto log = std::make_shared<CursorLog>();
    const auto viewModel = makeViewModel(cursorRecordingTree(log));
    log->clear();
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    QCOMPARE(dialog.m_outputTextField->toPlainText(), QStringLiteral("Trees are equal"));
    // Asked while cloning, building both trees and comparing them.
    QVERIFY(!log->isEmpty());
    for (int shape : qAsConst(*log))
        QCOMPARE(shape, int(Qt::WaitCursor));
    QCOMPARE(currentOverrideCursor(), NoOverrideCursor);
}

// Unlike the tool dialogs, this one is modal and has no button: it cannot be
// lost behind the application, and Escape is the keyboard's way out of it.
void tst_DebugCloneDisplayModelDialog::escapeStillClosesTheModalDialog()
{
    const auto viewModel = Brennvik::Test::makeViewModel(Brennvik::Test::buildTree({"root", {{"a"}}}));
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    QVERIFY(Brennvik::Test::showActive(dialog));
    QVERIFY(Brennvik::Test::focusChild(dialog, QStringLiteral("m_displayItemTree")));
    QTest::keyClick(dialog.m_displayItemTree, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

QTEST_MAIN(tst_DebugCloneDisplayModelDialog)
#include "tst_debugclonedisplaymodeldialog.moc"
