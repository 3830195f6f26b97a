// Every public operation and every slot of the dialogs and row classes,
// called while what it works on has gone: the row's display item removed from
// its parent and released, the model's tree or the view model replaced or
// released, a null pointer where the caller may pass one, a context-menu
// entry chosen after its row went while the menu was open. Each must do
// nothing beyond what it does for a gone object (a row's icon turns to
// "visible different", the panes of a gone current row empty), and nothing
// may crash. One data row per operation.

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayItemTreeWidgetItem2D.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>
#include <debugmenucontent/treewidgets/EditModelTreeWidgetItem.h>

#include <hostcontract/BKCheckBox.h>
#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/EditorDisplayModel.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include "ContextMenuDriver.h"
#include "DebugIcons.h"
#include "DisplayItemMenuEntries.h"
#include "DisplayModelDialogTestAccess.h"
#include "ItemWidgetDriver.h"
#include "Plot2DHost.h"
#include "ShownWindow.h"
#include "TestTree.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>
#include <functional>
#include <memory>

using namespace Brennvik;
using Access = Brennvik::DisplayModelDialogTestAccess;
using namespace Brennvik::Test;

namespace {

// ------------------------------------------------------------------ the 3D fixture

// Root
//   A
//     A1
//   M          geometry module listing g1 and g2
//     Geometry
//       g1     removed and released: its duplicate row under M stays, gone
//       g2
//     g1 (dup) current row before g1 went
//     g2 (dup)
//   B
//   e1, e2     edit-model rows; e2's primitive removed and released
struct Fixture
{
    std::shared_ptr<SceneViewModel> viewModel;
    std::shared_ptr<DisplayItem> root;
    std::shared_ptr<DisplayItem> a;
    std::shared_ptr<GeometryModuleItem> module;
    std::shared_ptr<DisplayItem> geometry;
    std::shared_ptr<DisplayItem> g2;
    std::shared_ptr<DisplayItem> b;
    std::weak_ptr<DisplayItem> g1;
    std::weak_ptr<EditorDisplayItem> e2;
    SceneDrawAreaPresenter presenter;
    std::unique_ptr<DisplayModelDialog> dialog;
    DisplayItemTreeWidgetItem* goneRow = nullptr;
    QTreeWidgetItem* goneEditRow = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester;
    std::vector<std::shared_ptr<DisplayItemInterface>> held; // items a case needs alive till the end

    DisplayItemTreeWidget* tree() const { return dialog->m_displayItemTreeWidget; }
    DisplayItemTreeWidgetItem* rowNamed(const QString& text) const
    {
        for (QTreeWidgetItemIterator it(tree()); *it; ++it) {
            if ((*it)->text(0) == text)
                return dynamic_cast<DisplayItemTreeWidgetItem*>(*it);
        }
        return nullptr;
    }

    void build()
    {
        root = std::make_shared<DisplayItem>("Root");
        a = std::make_shared<DisplayItem>("A");
        a->appendChild(std::make_shared<DisplayItem>("A1"));
        module = std::make_shared<GeometryModuleItem>("M");
        geometry = std::make_shared<DisplayItem>("Geometry");
        auto first = std::make_shared<DisplayItem>("g1");
        first->setBusinessProperty("material", "DC04");
        g2 = std::make_shared<DisplayItem>("g2");
        g2->setBusinessProperty("material", "DC04");
        geometry->appendChildren({first, g2});
        module->appendChild(geometry);
        module->addGeometryDisplayItem(first);
        module->addGeometryDisplayItem(g2);
        b = std::make_shared<DisplayItem>("B");
        root->appendChildren({a, module, b});
        viewModel = Test::makeViewModel(root);
        EditorDisplayModel& editor = viewModel->ensureEditorDisplayModel();
        editor.addEditModelPrimitive("e1");
        e2 = editor.addEditModelPrimitive("e2");

        dialog = std::make_unique<DisplayModelDialog>(nullptr);
        dialog->resize(600, 700);
        dialog->setDrawAreaPresenter(&presenter);
        tester = std::make_unique<QAbstractItemModelTester>(tree()->model(),
                                                            QAbstractItemModelTester::FailureReportingMode::QtTest);
        dialog->show();
        (void)QTest::qWaitForWindowExposed(dialog.get());
        dialog->setViewModel(viewModel);
        tree()->expandAll();

        // The duplicate row of g1 is current, then g1 goes: its row under
        // Geometry with it, the duplicate row stays with a gone item.
        QTreeWidgetItem* moduleRow = rowNamed(QStringLiteral("M"));
        goneRow = dynamic_cast<DisplayItemTreeWidgetItem*>(moduleRow->child(1));
        tree()->setCurrentItem(goneRow);
        g1 = first;
        geometry->removeChild(first, false);
        first.reset();
        // The edit primitive e2 goes as well; no event tells its row.
        const auto primitive = e2.lock();
        editor.removeEditModelPrimitive(primitive);
        goneEditRow = tree()->topLevelItem(0)->child(tree()->topLevelItem(0)->childCount() - 1);
    }

    void tearDown()
    {
        tester.reset();
        dialog.reset();
    }
};

// A row's state as the tests compare it.
QString rowLine(QTreeWidgetItem* row, int depth, QTreeWidget* tree)
{
    QString line = QString(depth * 2, QLatin1Char(' ')) + row->text(0) + QLatin1Char(' ') + debugIconName(row->icon(0));
    if (auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row)) {
        line += itemRow->isDuplicate() ? QStringLiteral(" dup") : QString();
        line += itemRow->getDisplayItem() ? QString() : QStringLiteral(" gone");
        line += itemRow->isDifferentVisibility() ? QStringLiteral(" different") : QString();
    }
    line += row->isExpanded() ? QStringLiteral(" expanded") : QString();
    line += tree->currentItem() == row ? QStringLiteral(" current") : QString();
    return line;
}

void dumpRows(QTreeWidgetItem* row, int depth, QTreeWidget* tree, QStringList& lines)
{
    lines << rowLine(row, depth, tree);
    for (int i = 0; i < row->childCount(); ++i)
        dumpRows(row->child(i), depth + 1, tree, lines);
}

QStringList dumpTree(QTreeWidget* tree)
{
    QStringList lines;
    for (int i = 0; tree && i < tree->topLevelItemCount(); ++i)
        dumpRows(tree->topLevelItem(i), 0, tree, lines);
    return lines;
}

QStringList paneLines(const QTreeWidget* pane)
{
    QStringList lines;
    for (int i = 0; pane && i < pane->topLevelItemCount(); ++i)
        lines << pane->topLevelItem(i)->text(0) + QStringLiteral(" = ") + pane->topLevelItem(i)->text(1);
    return lines;
}

// Everything a gone-item operation must leave alone, or change only as documented.
struct State
{
    QStringList tree;
    QStringList businessPane;
    QStringList displayPane;
    QString count;
    bool enabled = true;
    bool cloneMode = false;
    int displayUpdates = 0;
    int visibilityUpdates = 0;
    QStringList model;

    static State of(Fixture& f)
    {
        State s;
        s.tree = dumpTree(f.tree());
        s.businessPane = paneLines(f.dialog->m_businessObjectProperties);
        s.displayPane = paneLines(f.dialog->m_displayItemProperties);
        s.count = f.dialog->m_displayItemCountLE->text();
        s.enabled = f.dialog->isEnabled();
        s.cloneMode = Access::clonedTree(*f.dialog) != nullptr;
        s.displayUpdates = f.viewModel->displayModel().totalDisplayUpdateCount();
        s.visibilityUpdates = f.viewModel->displayModel().visibilityUpdateCount();
        s.model = Test::treeLines(f.viewModel->displayModel().rootDisplayItem());
        if (const auto g = f.g1.lock())
            s.model << QStringLiteral("g1 still alive");
        if (EditorDisplayModel* editor = f.viewModel->editorDisplayModel()) {
            for (const auto& primitive : editor->getAllEditModelPrimitives())
                s.model << QString::fromStdString(primitive->getDisplayName())
                        + (primitive->isVisible() ? QStringLiteral(" visible") : QStringLiteral(" hidden"))
                        + (primitive->isSelected() ? QStringLiteral(" selected") : QString());
        }
        return s;
    }
};

// Replaces \a from by \a to in the line of the row whose text is \a text.
void expectInLine(QStringList& lines, const QString& text, const QString& from, const QString& to)
{
    for (QString& line : lines) {
        if (line.trimmed().startsWith(text + QLatin1Char(' ')))
            line.replace(from, to);
    }
}

// An operation and what it may change: \a expected starts as the state
// before and is edited by the operation to what must hold after it.
using Operation = std::function<void(Fixture&, State& expected)>;

// Opens the context menu on \a row and chooses \a entry; \a whileOpen runs
// while the menu is open. Returns the entries shown.
QStringList chooseFromMenu(Fixture& f, QTreeWidgetItem* row, const QString& entry,
                           const std::function<void()>& whileOpen = {})
{
    f.tree()->scrollToItem(row);
    const auto visit = Test::rightClick(f.tree(), f.tree()->visualItemRect(row).center(), entry, whileOpen);
    return visit.entries;
}

struct Case
{
    const char* name;
    Operation operation;
};

// The cases, one per operation. Each leaves the model alone; what it does to the
// rows and panes is stated in its body.
const std::vector<Case>& dialogCases()
{
    static const std::vector<Case> cases{
        // ---- DisplayItemTreeWidgetItem, its item gone
        {"row getDisplayItem", [](Fixture& f, State&) { QVERIFY(!f.goneRow->getDisplayItem()); }},
        {"row toggleSelection", [](Fixture& f, State&) { f.goneRow->toggleSelection(); }},
        {"row toggleVisibility",
         [](Fixture& f, State& e) {
             f.goneRow->toggleVisibility();
             // Only the icon is refreshed: a gone item shows "visible different".
             expectInLine(e.tree, QStringLiteral("g1"), QStringLiteral("visible_duplicate"),
                          QStringLiteral("visible_different"));
         }},
        {"row setDifferentVisibility",
         [](Fixture& f, State& e) {
             f.goneRow->setDifferentVisibility(true);
             expectInLine(e.tree, QStringLiteral("g1"), QStringLiteral("visible_duplicate dup gone"),
                          QStringLiteral("visible_different dup gone different"));
         }},
        {"row isDifferentVisibility", [](Fixture& f, State&) { QVERIFY(!f.goneRow->isDifferentVisibility()); }},
        {"row isDuplicate", [](Fixture& f, State&) { QVERIFY(f.goneRow->isDuplicate()); }},
        {"row item index",
         [](Fixture& f, State&) {
             QCOMPARE(f.goneRow->getItemIndex(), 1);
             f.goneRow->setItemIndex(1);
             QCOMPARE(f.goneRow->getItemIndex(), 1);
             QVERIFY(f.goneRow->text(1).isEmpty());
         }},
        {"row expandAll", [](Fixture& f, State&) { f.goneRow->expandAll(); }},
        {"row onPropertiesChangedEvent",
         [](Fixture& f, State& e) {
             f.goneRow->onPropertiesChangedEvent(nullptr);
             // The current row's item has gone: its panes empty; its icon refreshes.
             expectInLine(e.tree, QStringLiteral("g1"), QStringLiteral("visible_duplicate"),
                          QStringLiteral("visible_different"));
             e.businessPane.clear();
             e.displayPane.clear();
         }},
        {"row onVisualPropertiesChangedEvent",
         [](Fixture& f, State& e) {
             f.goneRow->onVisualPropertiesChangedEvent(nullptr);
             expectInLine(e.tree, QStringLiteral("g1"), QStringLiteral("visible_duplicate"),
                          QStringLiteral("visible_different"));
             e.businessPane.clear();
             e.displayPane.clear();
         }},
        {"row onDisplayItemsAddedEvent (nothing added)",
         [](Fixture& f, State&) { f.goneRow->onDisplayItemsAddedEvent({}); }},
        {"row onDisplayItemsRemovedEvent (no row of it)",
         [](Fixture& f, State&) { f.goneRow->onDisplayItemsRemovedEvent({f.b}); }},
        {"row copy",
         [](Fixture& f, State&) {
             auto* copy = new DisplayItemTreeWidgetItem(*f.goneRow);
             QVERIFY(!copy->getDisplayItem());
             QVERIFY(copy->isDuplicate());
             copy->toggleVisibility();
             copy->toggleSelection();
             delete copy;
         }},
        {"row assignment",
         [](Fixture& f, State&) {
             DisplayItemTreeWidgetItem other(static_cast<QTreeWidget*>(nullptr), f.b, nullptr, false);
             other = *f.goneRow;
             QVERIFY(!other.getDisplayItem());
             QVERIFY(other.isDuplicate());
         }},
        {"row made for no item",
         [](Fixture&, State&) {
             DisplayItemTreeWidgetItem row(static_cast<QTreeWidget*>(nullptr), nullptr, nullptr, false);
             QVERIFY(row.text(0).isEmpty());
             QCOMPARE(debugIconName(row.icon(0)), QStringLiteral("visible_different"));
             row.toggleVisibility();
             row.toggleSelection();
             row.onPropertiesChangedEvent(nullptr);
             row.onDisplayItemsAddedEvent({});
             auto* child = new DisplayItemTreeWidgetItem(&row, nullptr, nullptr, true);
             QVERIFY(child->text(0).isEmpty());
             QCOMPARE(debugIconName(child->icon(0)), QStringLiteral("visible_different"));
             row.expandAll();
         }},
        {"edit row made for no primitive",
         [](Fixture& f, State&) {
             // A primitive that has gone is not drawn: the row shows it as not visible.
             EditModelTreeWidgetItem row(static_cast<QTreeWidget*>(nullptr), nullptr, f.dialog.get());
             QVERIFY(row.text(0).isEmpty());
             QCOMPARE(debugIconName(row.icon(0)), QStringLiteral("not_visible"));
             row.toggleVisibility();
             row.toggleSelection();
             QVERIFY(!row.getEditorDisplayItem());
         }},
        {"row destroyed",
         [](Fixture& f, State& e) {
             delete f.goneRow;
             // The current row went; Qt makes its next sibling current, whose properties show.
             QVERIFY(dumpTree(f.tree()).filter(QStringLiteral(" gone")).isEmpty());
             auto* current = dynamic_cast<DisplayItemTreeWidgetItem*>(f.tree()->currentItem());
             QVERIFY(current && current->isDuplicate() && current->text(0) == QLatin1String("g2"));
             e.tree.erase(std::remove_if(e.tree.begin(), e.tree.end(),
                                         [](const QString& l) { return l.contains(QLatin1String(" gone")); }),
                          e.tree.end());
             for (QString& line : e.tree) {
                 line.remove(QStringLiteral(" current"));
                 if (line.trimmed().startsWith(QLatin1String("g2 ")) && line.contains(QLatin1String(" dup")))
                     line += QStringLiteral(" current");
             }
             e.businessPane = paneLines(f.dialog->m_businessObjectProperties);
             e.displayPane = paneLines(f.dialog->m_displayItemProperties);
             QVERIFY(e.businessPane.contains(QStringLiteral("material = DC04")));
         }},

        // ---- edit-model row, its primitive gone
        {"edit row toggleVisibility",
         [](Fixture& f, State&) {
             auto* row = static_cast<EditModelTreeWidgetItem*>(f.goneEditRow);
             QVERIFY(!row->getEditorDisplayItem());
             row->toggleVisibility();
         }},
        {"edit row toggleSelection",
         [](Fixture& f, State&) { static_cast<EditModelTreeWidgetItem*>(f.goneEditRow)->toggleSelection(); }},
        {"edit row double click",
         [](Fixture& f, State& e) {
             f.tree()->setCurrentItem(f.goneEditRow);
             emit f.tree()->itemDoubleClicked(f.goneEditRow, 0);
             // The dialog still asks for its one visibility update; the row keeps its icon.
             e.visibilityUpdates += 1;
             QCOMPARE(debugIconName(f.goneEditRow->icon(0)), QStringLiteral("visible"));
             e.tree = dumpTree(f.tree());
             e.businessPane.clear();
             e.displayPane.clear();
         }},

        // ---- DisplayItemTreeWidget
        {"tree getDFSIndex of no row", [](Fixture& f, State&) { QCOMPARE(f.tree()->getDFSIndex(nullptr), -1); }},
        {"tree itemFromDFSIndex out of range",
         [](Fixture& f, State&) {
             QVERIFY(!f.tree()->itemFromDFSIndex(-1));
             QVERIFY(!f.tree()->itemFromDFSIndex(1000));
             QVERIFY(!f.tree()->indexFromDFSIndex(1000).isValid());
         }},
        {"tree model index of no row",
         [](Fixture& f, State&) {
             QVERIFY(!f.tree()->getModelIndexFromItem(nullptr, 0).isValid());
             QVERIFY(!f.tree()->getItemFromModelIndex(QModelIndex()));
         }},
        {"tree DFS index of a gone row",
         [](Fixture& f, State&) {
             const int index = f.tree()->getDFSIndex(f.goneRow);
             QVERIFY(index > 0);
             QCOMPARE(f.tree()->itemFromDFSIndex(index), static_cast<QTreeWidgetItem*>(f.goneRow));
         }},
        {"tree context menu on empty space",
         [](Fixture& f, State&) {
             const QPoint below(5, f.tree()->viewport()->height() - 2);
             QVERIFY(!f.tree()->itemAt(below));
             const auto visit = Test::rightClick(f.tree(), below);
             QVERIFY(visit.accepted);
             QVERIFY(!visit.opened);
         }},
        {"tree menu on a gone row: invisible",
         [](Fixture& f, State&) {
             QCOMPARE(chooseFromMenu(f, f.goneRow, InvisibleEntry),
                      QStringList({InvisibleEntry, VisibleEntry}) + KitEntries);
         }},
        {"tree menu on a gone row: visible",
         [](Fixture& f, State&) {
             QCOMPARE(chooseFromMenu(f, f.goneRow, VisibleEntry),
                      QStringList({InvisibleEntry, VisibleEntry}) + KitEntries);
         }},
        {"tree menu on a gone row: expand", [](Fixture& f, State&) { chooseFromMenu(f, f.goneRow, KitEntries.at(0)); }},
        {"tree menu on a gone row: copy", [](Fixture& f, State&) { chooseFromMenu(f, f.goneRow, KitEntries.at(2)); }},

        // ---- DisplayModelDialog
        {"dialog double click on a gone row",
         [](Fixture& f, State& e) {
             emit f.tree()->itemDoubleClicked(f.goneRow, 0);
             expectInLine(e.tree, QStringLiteral("g1"), QStringLiteral("visible_duplicate"),
                          QStringLiteral("visible_different"));
             e.visibilityUpdates += 1;
         }},
        {"dialog double click in column 1 of a gone row",
         [](Fixture& f, State&) { emit f.tree()->itemDoubleClicked(f.goneRow, 1); }},
        {"dialog displayItemModified of a gone row",
         [](Fixture& f, State& e) {
             f.dialog->displayItemModified(f.goneRow);
             e.businessPane.clear();
             e.displayPane.clear();
         }},
        {"dialog displayItemModified of no row",
         [](Fixture& f, State&) {
             f.dialog->displayItemModified(static_cast<DisplayItemTreeWidgetItem*>(nullptr));
             f.dialog->displayItemModified(static_cast<EditModelTreeWidgetItem*>(nullptr));
         }},
        {"dialog displayItemAdded to no row",
         [](Fixture& f, State&) { f.dialog->displayItemAdded(nullptr, std::make_shared<DisplayItem>("x")); }},
        {"dialog displayItemsRemoved from no row",
         [](Fixture& f, State&) { f.dialog->displayItemsRemoved(nullptr, {f.b}); }},
        {"dialog displayItemsRemoved of an empty reference",
         [](Fixture& f, State&) {
             // An empty reference is no item: it does not match the row whose item has gone.
             f.dialog->displayItemsRemoved(dynamic_cast<DisplayItemTreeWidgetItem*>(f.goneRow->parent()), {nullptr});
         }},
        {"dialog navigateToInitialEntry of no item",
         [](Fixture& f, State& e) {
             f.dialog->navigateToInitialEntry(nullptr, false, true);
             // Nothing matches, not even the gone row; the top row is expanded as always.
             Q_UNUSED(e);
         }},
        {"dialog navigateToInitialEntry in a cloned tree that is not there",
         [](Fixture& f, State&) { f.dialog->navigateToInitialEntry(f.b, true, true); }},
        {"dialog processItem from no row",
         [](Fixture& f, State&) {
             const QPair<int, QString> pair(0, QStringLiteral("Root"));
             f.dialog->processItem(nullptr, 0, &pair);
             f.dialog->expandCollapseItem(nullptr, 0, &pair, true);
             // A pair that is not part of the dialog's path names no row.
             f.dialog->processItem(f.tree()->topLevelItem(0), 0, &pair);
             f.dialog->expandCollapseItem(f.tree()->topLevelItem(0), 0, &pair, false);
         }},
        {"dialog find next from a gone row",
         [](Fixture& f, State& e) {
             f.dialog->m_searchValueLE->setText(QStringLiteral("DC04"));
             QTest::mouseClick(f.dialog->m_findDisplayItemPB, Qt::LeftButton);
             // The gone row does not match; the next row that does is g2's duplicate.
             e.tree = dumpTree(f.tree());
             QCOMPARE(f.tree()->currentItem()->text(0), QStringLiteral("g2"));
             QVERIFY(dynamic_cast<DisplayItemTreeWidgetItem*>(f.tree()->currentItem())->isDuplicate());
             e.businessPane = paneLines(f.dialog->m_businessObjectProperties);
             e.displayPane = paneLines(f.dialog->m_displayItemProperties);
             QVERIFY(e.businessPane.contains(QStringLiteral("material = DC04")));
         }},
        {"dialog current row set to a gone row",
         [](Fixture& f, State& e) {
             f.tree()->setCurrentItem(f.b ? f.rowNamed(QStringLiteral("B")) : nullptr);
             f.tree()->setCurrentItem(f.goneRow);
             e.tree = dumpTree(f.tree());
             e.businessPane.clear();
             e.displayPane.clear();
         }},
        {"dialog setDrawAreaPresenter with no presenter",
         [](Fixture& f, State&) { f.dialog->setDrawAreaPresenter(nullptr); }},
        {"dialog closed and shown again",
         [](Fixture& f, State&) {
             QVERIFY(f.dialog->close());
             QVERIFY(!f.dialog->isVisible());
             f.dialog->show();
         }},
        {"dialog displayItemAdded under a gone row",
         [](Fixture& f, State& e) {
             // Rows follow what they are told: the new subtree is appended, duplicate like its parent.
             auto item = Test::buildTree({"late", {{"late child"}}});
             f.dialog->displayItemAdded(f.goneRow, item);
             QCOMPARE(f.goneRow->childCount(), 1);
             auto* added = dynamic_cast<DisplayItemTreeWidgetItem*>(f.goneRow->child(0));
             QVERIFY(added && added->isDuplicate() && added->getDisplayItem() == item);
             f.held.push_back(item);
             e.tree = dumpTree(f.tree());
         }},
        {"dialog clone mode with a gone row current",
         [](Fixture& f, State& e) {
             f.dialog->m_useCloneCheckBox->click();
             QVERIFY(Access::clonedTree(*f.dialog));
             // The clone has no g1: its duplicate row is missing there, which marks nothing.
             f.dialog->m_showCloneIn3dCheckBox->click();
             f.dialog->m_propertyCompareMode->click();
             f.dialog->setVisible(false);
             f.dialog->setVisible(true);
             f.dialog->m_showCloneIn3dCheckBox->click();
             f.dialog->m_useCloneCheckBox->click();
             QVERIFY(!Access::clonedTree(*f.dialog));
             e.tree = dumpTree(f.tree());
             e.businessPane = paneLines(f.dialog->m_businessObjectProperties);
             e.displayPane = paneLines(f.dialog->m_displayItemProperties);
             QCOMPARE(e.tree.filter(QStringLiteral(" gone")).size(), 1);
         }},
    };
    return cases;
}

// Context-menu entries chosen after the row's item went while the menu was
// open: the row goes too (its item was a plain child), or it stays with a gone
// item (a duplicate row). Either way the entry does nothing.
struct MenuCase
{
    const char* name;
    const char* entry;
    bool rowStays;
};

const std::vector<MenuCase>& menuCases()
{
    static const std::vector<MenuCase> cases{
        {"select, row removed", "&Select/deselect display item", false},
        {"delete, row removed", "&Delete display item", false},
        {"invisible, row removed", "Make subtree invisible", false},
        {"visible, row removed", "Make subtree visible", false},
        {"expand, row removed", "Expand recursively", false},
        {"collapse, row removed", "Collapse all", false},
        {"copy, row removed", "Copy", false},
        {"select, row stays", "&Select/deselect display item", true},
        {"delete, row stays", "&Delete display item", true},
        {"invisible, row stays", "Make subtree invisible", true},
        {"visible, row stays", "Make subtree visible", true},
        {"expand, row stays", "Expand recursively", true},
        {"copy, row stays", "Copy", true},
    };
    return cases;
}

// ------------------------------------------------------------------ 2D

std::shared_ptr<DisplayItem2D> plotTree(const std::string& name)
{
    auto root = std::make_shared<DisplayItem2D>(name);
    auto curve = std::make_shared<DisplayItem2D>(name + " curve");
    curve->appendChild(std::make_shared<DisplayItem2D>(name + " point"));
    root->appendChild(curve);
    root->appendChild(std::make_shared<DisplayItem2D>(name + " legend"));
    return root;
}

QString shape2D(const QTreeWidgetItem* row)
{
    QString text = row->text(0) + QLatin1Char(' ') + debugIconName(row->icon(0));
    if (row->childCount() > 0) {
        QStringList children;
        for (int i = 0; i < row->childCount(); ++i)
            children << shape2D(row->child(i));
        text += QStringLiteral("(") + children.join(QStringLiteral(", ")) + QLatin1Char(')');
    }
    return text;
}

QString shape2D(const QTreeWidget* tree)
{
    QStringList rows;
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        rows << shape2D(tree->topLevelItem(i));
    return rows.join(QStringLiteral("; "));
}

} // namespace

class tst_GoneItems : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void displayModelDialog_data();
    void displayModelDialog();
    void menuEntryAfterItemWentWhileOpen_data();
    void menuEntryAfterItemWentWhileOpen();
    void everyRowGoneAfterTheRootWasReplaced();
    void viewModelReleasedAndReplaced_data();
    void viewModelReleasedAndReplaced();
    void currentRowBelowARemovedRowEmptiesThePanes();
    void clonedCurrentRowBelowARemovedRowEmptiesTheClonedPanes();
    void cloneComparisonRowsOfGoneItems();
    void cloneComparisonOutlivesTheHostsReferences();

    void model2DViewModelReleased();
    void model2DEmptyModels_data();
    void model2DEmptyModels();
    void model2DRowsKeepTheirItems();
    void model2DCurrentRowBelowARemovedRowEmptiesThePanes();
    void model2DListRowOfAGoneSource_data();
    void model2DListRowOfAGoneSource();

private:
    std::unique_ptr<Fixture> m_f;
};

void tst_GoneItems::init()
{
    m_f = std::make_unique<Fixture>();
    m_f->build();
    QVERIFY(m_f->goneRow);
    QVERIFY(!m_f->goneRow->getDisplayItem());
    QVERIFY(m_f->g1.expired());
    QVERIFY(m_f->e2.expired());
}

void tst_GoneItems::cleanup()
{
    m_f->tearDown();
    m_f.reset();
}

void tst_GoneItems::displayModelDialog_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < dialogCases().size(); ++i)
        QTest::newRow(dialogCases()[i].name) << int(i);
}

void tst_GoneItems::displayModelDialog()
{
    QFETCH(int, index);
    // The panes still show g1: no event told the dialog that it went.
    QVERIFY(paneLines(m_f->dialog->m_businessObjectProperties).contains(QStringLiteral("material = DC04")));
    State expected = State::of(*m_f);
    dialogCases()[std::size_t(index)].operation(*m_f, expected);
    if (QTest::currentTestFailed())
        return;
    const State after = State::of(*m_f);
    QCOMPARE(after.model, expected.model);
    QCOMPARE(after.tree, expected.tree);
    QCOMPARE(after.businessPane, expected.businessPane);
    QCOMPARE(after.displayPane, expected.displayPane);
    QCOMPARE(after.count, expected.count);
    QCOMPARE(after.enabled, expected.enabled);
    QCOMPARE(after.cloneMode, expected.cloneMode);
    QCOMPARE(after.displayUpdates, expected.displayUpdates);
    QCOMPARE(after.visibilityUpdates, expected.visibilityUpdates);
}

void tst_GoneItems::menuEntryAfterItemWentWhileOpen_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<bool>("rowStays");
    for (const MenuCase& c : menuCases())
        QTest::newRow(c.name) << QString::fromLatin1(c.entry) << c.rowStays;
}

void tst_GoneItems::menuEntryAfterItemWentWhileOpen()
{
    QFETCH(QString, entry);
    QFETCH(bool, rowStays);
    // g2 has a row under Geometry (goes with g2's removal) and a duplicate row under M (stays, gone).
    DisplayItemTreeWidgetItem* row = nullptr;
    for (QTreeWidgetItemIterator it(m_f->tree()); *it; ++it) {
        auto* r = dynamic_cast<DisplayItemTreeWidgetItem*>(*it);
        if (r && r->text(0) == QLatin1String("g2") && r->isDuplicate() == rowStays)
            row = r;
    }
    QVERIFY(row);
    m_f->g2->appendChild(std::make_shared<DisplayItem>("g2 child"));
    m_f->tree()->expandAll();
    const QStringList expectedEntries
        = QStringList{SelectEntry, DeleteEntry, InvisibleEntry, VisibleEntry} + KitEntries;

    std::weak_ptr<DisplayItem> g2 = m_f->g2;
    State afterRemoval;
    const QStringList entries = chooseFromMenu(*m_f, row, entry, [&]() {
        // The host removes g2 and lets it go while the menu is open.
        m_f->geometry->removeChild(m_f->g2, false);
        m_f->g2.reset();
        afterRemoval = State::of(*m_f);
    });
    QCOMPARE(entries, expectedEntries);
    // The menu held the item while it was open; now it has gone.
    QVERIFY(g2.expired());

    const State after = State::of(*m_f);
    // The model is as the removal left it, and nothing asked for a redraw. (The
    // module's geometry list drops g2 once g2 has gone.)
    const auto withoutGeometryList = [](QStringList lines) {
        lines.replaceInStrings(QRegularExpression(QStringLiteral("geometry=\\[[^]]*\\]")),
                               QStringLiteral("geometry=?"));
        lines.replaceInStrings(QRegularExpression(QStringLiteral("geometry items=\\d+")),
                               QStringLiteral("geometry items=?"));
        return lines;
    };
    QCOMPARE(withoutGeometryList(after.model), withoutGeometryList(afterRemoval.model));
    QCOMPARE(after.displayUpdates, afterRemoval.displayUpdates);
    QCOMPARE(after.visibilityUpdates, afterRemoval.visibilityUpdates);
    QStringList expectedTree = afterRemoval.tree;
    if (rowStays && entry == InvisibleEntry) {
        // The row was still there, and the menu still held its item, taken out of
        // the model: the entry hid that detached subtree, and its rows say so.
        for (QString& line : expectedTree) {
            if (line.contains(QLatin1String(" dup")) && (line.trimmed().startsWith(QLatin1String("g2 "))))
                line.replace(QStringLiteral("visible_duplicate"), QStringLiteral("not_visible"));
        }
        expectedTree.replaceInStrings(QStringLiteral("g2 child visible_duplicate"),
                                      QStringLiteral("g2 child not_visible"));
    }
    QStringList actualTree = after.tree;
    if (entry == KitEntries.at(0) || entry == KitEntries.at(1)) {
        // The widget kit's own entries act on the tree's expansion only.
        for (QStringList* lines : {&actualTree, &expectedTree})
            lines->replaceInStrings(QStringLiteral(" expanded"), QString());
    }
    // Rows whose items have gone since are marked so; nothing else changed.
    actualTree.replaceInStrings(QStringLiteral(" gone"), QString());
    expectedTree.replaceInStrings(QStringLiteral(" gone"), QString());
    QCOMPARE(actualTree, expectedTree);
    // Either way one row of g2 is left: the duplicate, whose item has gone.
    QCOMPARE(after.tree.filter(QRegularExpression(QStringLiteral("^\\s*g2 (not_)?visible\\S* dup gone"))).size(), 1);
    QCOMPARE(after.tree.filter(QRegularExpression(QStringLiteral("^\\s*g2 (not_)?visible"))).size(), 1);
}

void tst_GoneItems::everyRowGoneAfterTheRootWasReplaced()
{
    // The host replaces its tree without telling the dialog, and the old tree
    // goes: every row's item has gone.
    std::weak_ptr<DisplayItem> oldRoot = m_f->root;
    m_f->viewModel->displayModel().setRootDisplayItem(std::make_shared<DisplayItem>("New root"));
    m_f->root.reset();
    m_f->a.reset();
    m_f->module.reset();
    m_f->geometry.reset();
    m_f->g2.reset();
    m_f->b.reset();
    QVERIFY(oldRoot.expired());
    DisplayItemTreeWidget* tree = m_f->tree();
    const int rows = int(dumpTree(tree).size());
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        if (auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(*it))
            QVERIFY(!row->getDisplayItem());
    }
    const int visibilityUpdates = m_f->viewModel->displayModel().visibilityUpdateCount();
    const int displayUpdates = m_f->viewModel->displayModel().totalDisplayUpdateCount();

    // Every user action on every row.
    int doubleClicks = 0;
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        QTreeWidgetItem* row = *it;
        tree->setCurrentItem(row);
        QVERIFY(paneLines(m_f->dialog->m_businessObjectProperties).isEmpty());
        emit tree->itemDoubleClicked(row, 0);
        ++doubleClicks;
        if (dynamic_cast<DisplayItemTreeWidgetItem*>(row)) {
            QCOMPARE(debugIconName(row->icon(0)), QStringLiteral("visible_different"));
            for (const QString& entry : QStringList{InvisibleEntry, VisibleEntry} + KitEntries)
                QCOMPARE(chooseFromMenu(*m_f, row, entry), QStringList({InvisibleEntry, VisibleEntry}) + KitEntries);
        }
    }
    m_f->dialog->m_searchValueLE->setText(QStringLiteral("0x"));
    tree->setCurrentItem(nullptr);
    QTest::mouseClick(m_f->dialog->m_findDisplayItemPB, Qt::LeftButton);
    QVERIFY(!tree->currentItem());
    QTest::mouseClick(m_f->dialog->m_displayItemCountPB, Qt::LeftButton);
    // The count is the host's, of its new tree.
    QCOMPARE(m_f->dialog->m_displayItemCountLE->text(), QStringLiteral("1"));
    m_f->dialog->m_useCloneCheckBox->click();
    QCOMPARE(dumpTree(Access::clonedTree(*m_f->dialog)), QStringList{QStringLiteral("New root visible")});
    m_f->dialog->m_useCloneCheckBox->click();

    QCOMPARE(int(dumpTree(tree).size()), rows);
    QCOMPARE(m_f->viewModel->displayModel().visibilityUpdateCount(), visibilityUpdates + doubleClicks);
    QCOMPARE(m_f->viewModel->displayModel().totalDisplayUpdateCount(), displayUpdates);
    QCOMPARE(Test::treeShape(m_f->viewModel->displayModel().rootDisplayItem()), std::string("New root"));
}

void tst_GoneItems::viewModelReleasedAndReplaced_data()
{
    QTest::addColumn<int>("replacement");
    QTest::newRow("no view model") << 0;
    QTest::newRow("view model without a tree") << 1;
    QTest::newRow("another view model") << 2;
}

void tst_GoneItems::viewModelReleasedAndReplaced()
{
    QFETCH(int, replacement);
    std::weak_ptr<SceneViewModel> old = m_f->viewModel;
    std::weak_ptr<DisplayItem> oldRoot = m_f->root;
    std::shared_ptr<SceneViewModel> next;
    if (replacement == 1)
        next = std::make_shared<SceneViewModel>();
    else if (replacement == 2)
        next = Test::makeViewModel(Test::buildTree({"Other", {{"x"}}}));
    m_f->dialog->m_useCloneCheckBox->click();
    m_f->dialog->m_showCloneIn3dCheckBox->click();
    QVERIFY(m_f->presenter.getViewModel() && m_f->presenter.getViewModel() != old.lock());

    m_f->dialog->setViewModel(next);
    // The draw area was handed the original back before it was replaced.
    QCOMPARE(m_f->presenter.getViewModel(), std::static_pointer_cast<ViewModelInterface>(old.lock()));
    m_f->presenter.showViewModel(nullptr);
    m_f->viewModel.reset();
    m_f->root.reset();
    m_f->a.reset();
    m_f->module.reset();
    m_f->geometry.reset();
    m_f->g2.reset();
    m_f->b.reset();
    // The dialog keeps nothing of the old model.
    QVERIFY(old.expired());
    QVERIFY(oldRoot.expired());
    QCOMPARE(m_f->dialog->isEnabled(), next != nullptr);

    const QStringList expectedTree = replacement == 2
        ? QStringList{QStringLiteral("Other visible"), QStringLiteral("  x visible")}
        : QStringList{};
    QStringList tree = dumpTree(m_f->tree());
    tree.replaceInStrings(QStringLiteral(" current"), QString());
    tree.replaceInStrings(QStringLiteral(" expanded"), QString());
    QCOMPARE(tree, expectedTree);

    // Everything else, with whatever the dialog now holds.
    m_f->dialog->m_searchValueLE->setText(QStringLiteral("x"));
    QTest::mouseClick(m_f->dialog->m_findDisplayItemPB, Qt::LeftButton);
    QTest::mouseClick(m_f->dialog->m_displayItemCountPB, Qt::LeftButton);
    if (next)
        QCOMPARE(m_f->dialog->m_displayItemCountLE->text(),
                 replacement == 2 ? QStringLiteral("2") : QStringLiteral("0"));
    m_f->dialog->m_propertyCompareMode->click();
    m_f->dialog->m_showCloneIn3dCheckBox->click();
    m_f->dialog->m_useCloneCheckBox->click();
    m_f->dialog->setVisible(false);
    m_f->dialog->setVisible(true);
    m_f->dialog->navigateToInitialEntry(nullptr, true, true);
    m_f->dialog->setDrawAreaPresenter(nullptr);
    m_f->dialog->setViewModel(nullptr);
    QCOMPARE(m_f->tree()->topLevelItemCount(), 0);
    QVERIFY(!m_f->dialog->isEnabled());
}

void tst_GoneItems::currentRowBelowARemovedRowEmptiesThePanes()
{
    // A1 is current; its parent A is removed. The row of A1 goes with A's,
    // and Qt makes no row current without saying so.
    DisplayItemTreeWidgetItem* a1 = m_f->rowNamed(QStringLiteral("A1"));
    m_f->tree()->setCurrentItem(a1);
    QVERIFY(!paneLines(m_f->dialog->m_displayItemProperties).isEmpty());
    m_f->root->removeChild(m_f->a, false);
    m_f->a.reset();
    QVERIFY(!m_f->tree()->currentItem());
    // The panes show the current row's properties: no row, no properties.
    QVERIFY(paneLines(m_f->dialog->m_displayItemProperties).isEmpty());
    QVERIFY(paneLines(m_f->dialog->m_businessObjectProperties).isEmpty());
}

void tst_GoneItems::clonedCurrentRowBelowARemovedRowEmptiesTheClonedPanes()
{
    // The same in the cloned tree: the clone's A goes from the clone's model.
    m_f->dialog->m_useCloneCheckBox->click();
    DisplayItemTreeWidget* cloned = Access::clonedTree(*m_f->dialog);
    QVERIFY(cloned);
    cloned->expandAll();
    QTreeWidgetItem* a1 = nullptr;
    for (QTreeWidgetItemIterator it(cloned); *it && !a1; ++it) {
        if ((*it)->text(0) == QLatin1String("A1"))
            a1 = *it;
    }
    QVERIFY(a1);
    cloned->setCurrentItem(a1);
    QVERIFY(!paneLines(Access::clonedDisplayPane(*m_f->dialog)).isEmpty());
    QVERIFY(!paneLines(Access::clonedBusinessPane(*m_f->dialog)).isEmpty());

    const auto clonedRoot = std::dynamic_pointer_cast<DisplayItem>(
        Access::clonedViewModel(*m_f->dialog)->getDisplayModel()->getRootDisplayItem());
    QVERIFY(clonedRoot);
    const auto clonedA = Test::findItem(clonedRoot, "A");
    QVERIFY(clonedA);
    clonedRoot->removeChild(clonedA, false);
    QVERIFY(!cloned->currentItem());
    QVERIFY(paneLines(Access::clonedDisplayPane(*m_f->dialog)).isEmpty());
    QVERIFY(paneLines(Access::clonedBusinessPane(*m_f->dialog)).isEmpty());
}

void tst_GoneItems::cloneComparisonRowsOfGoneItems()
{
    auto viewModel = Test::makeViewModel(Test::buildTree({"Root", {{"A", {{"A1"}}}, {"B"}}}));
    DebugCloneDisplayModelDialog dialog(nullptr, viewModel);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QAbstractItemModelTester tester(dialog.m_displayItemTree->model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    dialog.m_displayItemTree->expandAll();
    const QString report = dialog.m_outputTextField->toPlainText();
    const QStringList before = dumpTree(dialog.m_displayItemTree);

    // The rows have no dialog: A goes from the model, its rows stay, gone.
    auto root = viewModel->displayModel().rootDisplayItem();
    auto a = Test::findItem(root, "A");
    root->removeChild(a, false);
    std::weak_ptr<DisplayItem> gone = a;
    a.reset();
    QVERIFY(gone.expired());
    QStringList expected = before;
    expected.replaceInStrings(QStringLiteral("  A visible"), QStringLiteral("  A visible gone"));
    expected.replaceInStrings(QStringLiteral("    A1 visible"), QStringLiteral("    A1 visible gone"));
    QCOMPARE(dumpTree(dialog.m_displayItemTree), expected);

    auto* aRow = dynamic_cast<DisplayItemTreeWidgetItem*>(dialog.m_displayItemTree->topLevelItem(0)->child(0));
    QVERIFY(aRow && !aRow->getDisplayItem());
    aRow->onPropertiesChangedEvent(nullptr);
    aRow->onDisplayItemsAddedEvent({std::make_shared<DisplayItem>("x")});
    aRow->onDisplayItemsRemovedEvent({root});
    QCOMPARE(debugIconName(aRow->icon(0)), QStringLiteral("visible_different"));
    QCOMPARE(aRow->childCount(), 1);
    const int visibilityUpdates = viewModel->displayModel().visibilityUpdateCount();
    for (const QString& entry : QStringList{InvisibleEntry, VisibleEntry} + KitEntries) {
        dialog.m_displayItemTree->scrollToItem(aRow);
        const auto visit = Test::rightClick(dialog.m_displayItemTree,
                                            dialog.m_displayItemTree->visualItemRect(aRow).center(), entry);
        QCOMPARE(visit.entries, QStringList({InvisibleEntry, VisibleEntry}) + KitEntries);
    }
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), visibilityUpdates);
    QCOMPARE(dialog.m_outputTextField->toPlainText(), report);
    QCOMPARE(Test::treeShape(root), std::string("Root(B)"));
}

void tst_GoneItems::cloneComparisonOutlivesTheHostsReferences()
{
    auto viewModel = Test::makeViewModel(Test::buildTree({"Root", {{"A"}}}));
    std::weak_ptr<SceneViewModel> weak = viewModel;
    auto* dialog = new DebugCloneDisplayModelDialog(nullptr, viewModel);
    viewModel.reset();
    // The dialog holds the view model and its clone until it goes.
    QVERIFY(!weak.expired());
    QCOMPARE(dialog->m_outputTextField->toPlainText(), QStringLiteral("Trees are equal"));
    QCOMPARE(dumpTree(dialog->m_clonedDisplayItemTree).size(), 2);
    delete dialog;
    QVERIFY(weak.expired());
}

// ------------------------------------------------------------------ 2D

void tst_GoneItems::model2DViewModelReleased()
{
    Test::Plot2DHost host;
    host.show();
    host.addPlot(QPoint(10, 10), plotTree("plot"));
    auto labelRoot = plotTree("label plot");
    host.addLabel("label", Vector<float, 3>(50.0f, -60.0f, 0.0f), labelRoot);
    // The dialog holds the view model weakly; this one is only the dialog's.
    auto viewModel = std::make_shared<SceneViewModel>();
    viewModel->setView(&host.view());
    viewModel->labelDisplayModel().setRootDisplayItem(std::make_shared<DisplayItem>("Labels"));
    DisplayModel2DDialog dialog(host.presenter(), nullptr);
    dialog.setViewModel(host.viewModel());
    QVERIFY(showAtOrigin(dialog));
    QCOMPARE(listTexts(dialog.m_plotListWdg), (QStringList{"Plot at (10, 10)", "PlotLabel at (50, 60)"}));

    dialog.setViewModel(viewModel);
    viewModel.reset();
    QTest::mouseClick(dialog.m_updateListPB, Qt::LeftButton);
    // No view model, no labels; the plots are listed, the first row shown.
    QCOMPARE(listTexts(dialog.m_plotListWdg), QStringList{"Plot at (10, 10)"});
    QVERIFY(dialog.isEnabled());
    QCOMPARE(shape2D(dialog.m_displayItemTreeWidget),
             QStringLiteral("plot visible(plot curve visible(plot point visible), plot legend visible)"));

    dialog.setViewModel(nullptr);
    QTest::mouseClick(dialog.m_updateListPB, Qt::LeftButton);
    QCOMPARE(listTexts(dialog.m_plotListWdg), QStringList{"Plot at (10, 10)"});
    QVERIFY(dialog.isEnabled());
}

void tst_GoneItems::model2DEmptyModels_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("setDisplayModel2D with no model") << 0;
    QTest::newRow("setDisplayModel2D with a model without a root") << 1;
    QTest::newRow("list emptied") << 2;
}

void tst_GoneItems::model2DEmptyModels()
{
    QFETCH(int, how);
    Test::Plot2DHost host;
    host.show();
    BkHQWidget2D* plot = host.addPlot(QPoint(10, 10), plotTree("plot"));
    DisplayModel2DDialog dialog(host.presenter(), nullptr);
    QVERIFY(showAtOrigin(dialog));
    QAbstractItemModelTester tester(dialog.m_displayItemTreeWidget->model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(dialog.m_displayItemTreeWidget->topLevelItemCount() == 1);
    dialog.m_displayItemTreeWidget->setCurrentItem(dialog.m_displayItemTreeWidget->topLevelItem(0)->child(0));

    DisplayModel2D empty;
    if (how == 0) {
        dialog.setDisplayModel2D(nullptr);
    } else if (how == 1) {
        dialog.setDisplayModel2D(&empty);
    } else {
        plot->hide();
        QTest::mouseClick(dialog.m_updateListPB, Qt::LeftButton);
        QCOMPARE(dialog.m_plotListWdg->count(), 0);
    }
    QCOMPARE(dialog.m_displayItemTreeWidget->topLevelItemCount(), 0);
    QCOMPARE(dialog.m_businessObjectProperties->topLevelItemCount(), 0);
    QCOMPARE(dialog.m_displayItemProperties->topLevelItemCount(), 0);
    if (how == 2)
        QVERIFY(!dialog.getDisplayModelOfSelectedPlot());

    // Every operation on the emptied dialog.
    dialog.updateVisiblity(nullptr);
    dialog.displayItemsModified({std::make_shared<DisplayItem2D>("x")});
    emit dialog.m_displayItemTreeWidget->itemDoubleClicked(nullptr, 0);
    QCOMPARE(dialog.m_displayItemTreeWidget->topLevelItemCount(), 0);
    QCOMPARE(empty.displayUpdateCount(), 0);
    QCOMPARE(Test::Plot2DHost::modelOf(plot)->displayUpdateCount(), 0);
}

void tst_GoneItems::model2DRowsKeepTheirItems()
{
    // The host replaces a plot's tree without an event; the rows keep the old
    // items alive (2D rows hold them), and acting on them touches only those.
    Test::Plot2DHost host;
    host.show();
    BkHQWidget2D* plot = host.addPlot(QPoint(10, 10), plotTree("old"));
    DisplayModel2DDialog dialog(host.presenter(), nullptr);
    QVERIFY(showAtOrigin(dialog));
    DisplayModel2D* model = Test::Plot2DHost::modelOf(plot);
    std::weak_ptr<DisplayItem2D> oldRoot = model->getRootDisplayItem();
    model->setRootDisplayItem(plotTree("new"));
    QVERIFY(!oldRoot.expired());
    QTreeWidget* tree = dialog.m_displayItemTreeWidget;
    QTreeWidgetItem* curveRow = tree->topLevelItem(0)->child(0);
    auto* row = static_cast<DisplayItemTreeWidgetItem2D*>(curveRow);
    const std::shared_ptr<DisplayItem2D> curve = row->getDisplayItem();
    tree->setCurrentItem(curveRow);
    emit tree->itemDoubleClicked(curveRow, 0);
    QCOMPARE(int(curve->getVisibility()), int(DisplayItem2D::NotVisible));
    QCOMPARE(debugIconName(curveRow->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(model->displayUpdateCount(), 1);
    // The new tree is untouched.
    QCOMPARE(int(model->getRootDisplayItem()->getChildren().front()->getVisibility()), int(DisplayItem2D::Visible));
    // Callbacks for rows and items that are not there change nothing.
    const QString shape = shape2D(tree);
    dialog.displayItemRemoved(static_cast<DisplayItemTreeWidgetItem2D*>(tree->topLevelItem(0)), plotTree("stranger"));
    dialog.displayItemModified(static_cast<DisplayItemTreeWidgetItem2D*>(tree->topLevelItem(0)));
    dialog.displayItemsModified({});
    dialog.updateVisiblity(nullptr);
    QCOMPARE(shape2D(tree), shape);
    // Rebuilding lets the old tree go.
    dialog.setDisplayModel2D(model);
    QVERIFY(oldRoot.expired());
    QCOMPARE(tree->topLevelItem(0)->text(0), QStringLiteral("new"));
}

void tst_GoneItems::model2DCurrentRowBelowARemovedRowEmptiesThePanes()
{
    Test::Plot2DHost host;
    host.show();
    BkHQWidget2D* plot = host.addPlot(QPoint(10, 10), plotTree("plot"));
    DisplayModel2DDialog dialog(host.presenter(), nullptr);
    QVERIFY(showAtOrigin(dialog));
    QTreeWidget* tree = dialog.m_displayItemTreeWidget;
    auto root = Test::Plot2DHost::modelOf(plot)->getRootDisplayItem();
    auto curve = root->getChildren().front();
    auto point = curve->getChildren().front();
    point->setDisplayProperty("x", "1");
    tree->setCurrentItem(tree->topLevelItem(0)->child(0)->child(0));
    QCOMPARE(dialog.m_displayItemProperties->topLevelItemCount(), 1);
    root->removeChild(curve);
    QVERIFY(!tree->currentItem());
    QCOMPARE(dialog.m_displayItemProperties->topLevelItemCount(), 0);
}

void tst_GoneItems::model2DListRowOfAGoneSource_data()
{
    QTest::addColumn<bool>("label");
    QTest::newRow("plot widget destroyed") << false;
    QTest::newRow("plot label removed and released") << true;
}

void tst_GoneItems::model2DListRowOfAGoneSource()
{
    QFETCH(bool, label);
    Test::Plot2DHost host;
    host.show();
    host.addPlot(QPoint(10, 10), plotTree("first"));
    BkHQWidget2D* second = host.addPlot(QPoint(10, 200), plotTree("second"));
    auto labelItem = host.addLabel("label", Vector<float, 3>(50.0f, -300.0f, 0.0f), plotTree("label plot"));
    DisplayModel2DDialog dialog(host.presenter(), nullptr);
    dialog.setViewModel(host.viewModel());
    QVERIFY(showAtOrigin(dialog));
    QCOMPARE(listTexts(dialog.m_plotListWdg),
             (QStringList{"Plot at (10, 10)", "Plot at (10, 200)", "PlotLabel at (50, 300)"}));

    // The source of a listed row goes while the dialog is open; the user then picks that row.
    if (label) {
        auto labels
            = std::dynamic_pointer_cast<DisplayItem>(host.viewModel()->labelDisplayModel().getRootDisplayItem());
        labels->removeChild(labelItem, false);
        labelItem.reset();
    } else {
        delete second;
    }
    dialog.m_plotListWdg->setCurrentRow(label ? 2 : 1);
    // A row whose source has gone shows nothing.
    QCOMPARE(dialog.m_displayItemTreeWidget->topLevelItemCount(), 0);
}

QTEST_MAIN(tst_GoneItems)
#include "tst_goneitems.moc"
