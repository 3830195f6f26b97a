#include "RandomRun.h"

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include "ContextMenuDriver.h"
#include "DisplayItemMenuEntries.h"

#include <QTest>
#include <QTreeWidget>

#include <algorithm>

namespace Brennvik::Test {

// The row a context menu opens on and what its entry acts on, taken before the menu opens.
struct MenuTarget
{
    QTreeWidgetItem* row = nullptr;
    DisplayItemTreeWidgetItem* itemRow = nullptr;
    std::shared_ptr<DisplayItemInterface> item;
    DisplayItemList subtree;
    bool selectedBefore = false;
    SceneDisplayModel* model = nullptr;
    int displayUpdates = 0;
    int visibilityUpdates = 0;
    DisplayItem* parent = nullptr;
    std::shared_ptr<DisplayItem> parentRef;
    // Rows may show items that the host has taken out of the model with an ancestor.
    bool inModel = false;
};

// What the host's removal while the menu was open left.
struct MenuOutcome
{
    bool rowGone = false;
    std::vector<std::pair<DisplayItemInterface*, std::pair<bool, bool>>> statesAfterRemoval;
};

namespace {

QStringList menuEntriesFor(const MenuTarget& target)
{
    QStringList entries;
    if (!target.itemRow)
        return entries;
    if (target.item && target.item->isSelectionAllowed())
        entries << SelectEntry;
    if (target.item && target.item->getParent())
        entries << DeleteEntry;
    entries << InvisibleEntry << VisibleEntry;
    entries << KitEntries;
    return entries;
}

void captureBeforeMenu(MenuTarget& target, const QString& entry, SceneViewModel* viewModel)
{
    const auto& item = target.item;
    if (item && (entry == InvisibleEntry || entry == VisibleEntry)) {
        if (entry == InvisibleEntry)
            item->collectSubtree(target.subtree);
        else
            item->collectSubtreeToShow(target.subtree);
    }
    target.selectedBefore = item ? item->isSelected() : false;
    target.model = viewModel ? &viewModel->displayModel() : nullptr;
    target.displayUpdates = target.model ? target.model->displayUpdateCount(2) : 0;
    target.visibilityUpdates = target.model ? target.model->visibilityUpdateCount() : 0;
    target.parent = item ? dynamic_cast<DisplayItem*>(item->getParent()) : nullptr;
    target.parentRef = target.parent ? target.parent->shared_from_this() : nullptr;
    target.inModel = item && target.model && item->getDisplayModel() == target.model;
}

} // namespace

// ------------------------------------------------------------------ double click

QString RandomRun::userDoubleClick()
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QTreeWidgetItem* target = pickRow(tree);
    if (!target)
        return QString();
    note(QStringLiteral("doubleClick %1").arg(target->text(0)));

    // The first click makes the row current; the double click acts on the current row.
    tree->scrollToItem(target);
    const QPoint pos = tree->visualItemRect(target).center();
    // Expansion mirrored back from the clone can fold the row away again.
    if (tree->itemAt(pos) != target) {
        ++m_actionCounts[QStringLiteral("(row off screen)")];
        return QString();
    }
    bool byKeyboard = false;
    const QString problem = pressToMakeCurrent(tree, target, pos, byKeyboard);
    if (!problem.isEmpty())
        return problem;
    const VisibilityBefore before = visibilityBefore(tree);
    offerReactionAround(target);
    const int updates = m_viewModel ? m_viewModel->displayModel().visibilityUpdateCount() : 0;
    QTreeWidgetItem* actedOn = doubleClickCurrent(tree, target, pos, byKeyboard);
    if (m_reacted) {
        // The host changed the model inside the toggle: which rows the dialog
        // still toggled after that is its own business, as long as it stopped
        // safely. A gone row it toggled shows the gone icon, one it did not
        // keeps its icon; its row may itself have gone with the reaction.
        for (ExpectedRow* e : before.goneRows) {
            if (contains(m_expected, e))
                e->anyIcon = true;
        }
        return QString();
    }
    return checkToggled(actedOn, before, updates);
}

QString RandomRun::pressToMakeCurrent(QTreeWidget* tree, QTreeWidgetItem* target, const QPoint& pos, bool& byKeyboard)
{
    QStringList changes;
    const auto spy = QObject::connect(tree, &QTreeWidget::currentItemChanged, [&](QTreeWidgetItem* c) {
        changes << (c ? c->text(0) : QStringLiteral("none"));
    });
    QTest::mousePress(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QObject::disconnect(spy);
    if (g_trace)
        qInfo("  current rows: %s", qPrintable(changes.join(QStringLiteral(", "))));
    QTreeWidgetItem* acting = tree->currentItem();
    if (acting != target && !currentMayBounce() && changes.isEmpty()) {
        // A row nested deeper than the tree is wide has its text under the branch
        // lines, where a press only opens or closes branches; the user picks the
        // row with the keyboard instead.
        ++m_actionCounts[QStringLiteral("(row chosen by keyboard)")];
        tree->setCurrentItem(target);
        acting = tree->currentItem();
        byKeyboard = true;
    }
    if (acting != target && !currentMayBounce())
        return QStringLiteral("the click did not make the row current (current %1)")
            .arg(acting ? acting->text(0) : QStringLiteral("none"));
    return QString();
}

// Every item's visibility before; the double click acts on the row that is
// current when the view reports it, which a change mirrored from the clone
// (or rows that moved under the pointer meanwhile) may have made another one.
RandomRun::VisibilityBefore RandomRun::visibilityBefore(QTreeWidget* tree)
{
    VisibilityBefore before;
    for (QTreeWidgetItem* r : allRows(tree)) {
        if (auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(r)) {
            if (auto item = itemRow->getDisplayItem())
                before.items.emplace_back(item, item->isVisible());
            else if (ExpectedRow* e = expectedFor(m_expected, r))
                before.goneRows.push_back(e);
        }
    }
    return before;
}

// The row's item, its parent and its children's items.
void RandomRun::offerReactionAround(QTreeWidgetItem* target)
{
    const auto item = rowItem(target);
    if (!item)
        return;
    std::vector<std::shared_ptr<DisplayItem>> near{item};
    if (DisplayItem* parent = item->parentItem())
        near.push_back(parent->shared_from_this());
    for (int i = 0; i < target->childCount(); ++i) {
        if (auto child = rowItem(target->child(i)))
            near.push_back(child);
    }
    offerReaction(near);
}

// The row that was current when the view reported the double click; null when it did not.
QTreeWidgetItem* RandomRun::doubleClickCurrent(QTreeWidget* tree, QTreeWidgetItem* target, const QPoint& pos,
                                               bool byKeyboard)
{
    bool reported = false;
    QTreeWidgetItem* actedOn = nullptr;
    const auto doubleClickSpy = QObject::connect(tree, &QTreeWidget::itemDoubleClicked, [&](QTreeWidgetItem*, int) {
        reported = true;
        actedOn = tree->currentItem();
    });
    {
        const DialogCall call(m_inDialogCall);
        if (byKeyboard) {
            // What the view reports for a double click there.
            emit tree->itemDoubleClicked(target, 0);
        } else {
            QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
            QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
        }
    }
    QObject::disconnect(doubleClickSpy);
    if (!reported)
        ++m_actionCounts[QStringLiteral("(double click not reported)")];
    return actedOn;
}

// What must have flipped: the row's item, then the item of each duplicate child row.
QString RandomRun::checkToggled(QTreeWidgetItem* actedOn, const VisibilityBefore& before, int updates)
{
    std::vector<const DisplayItemInterface*> flips;
    std::vector<DisplayItemTreeWidgetItem*> goneRows;
    if (auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(actedOn)) {
        flips.push_back(row->getDisplayItem().get());
        if (!row->getDisplayItem())
            goneRows.push_back(row);
        for (int i = 0; i < row->childCount(); ++i) {
            auto* child = dynamic_cast<DisplayItemTreeWidgetItem*>(row->child(i));
            if (child && child->isDuplicate()) {
                flips.push_back(child->getDisplayItem().get());
                if (!child->getDisplayItem())
                    goneRows.push_back(child);
            }
        }
    }
    for (const auto& [item, visible] : before.items) {
        const auto times = std::count(flips.begin(), flips.end(), item.get());
        const bool expected = times % 2 ? !visible : visible;
        if (item->isVisible() != expected)
            return QStringLiteral("double click on %1: %2 visible %3")
                .arg(actedOn ? actedOn->text(0) : QStringLiteral("no row"),
                     QString::fromStdString(item->getDisplayName()))
                .arg(item->isVisible());
    }
    // Toggling a row whose item has gone only refreshes its icon.
    for (DisplayItemTreeWidgetItem* gone : goneRows) {
        if (ExpectedRow* e = expectedFor(m_expected, gone))
            e->lastIcon = QStringLiteral("visible_different");
    }
    // Display item rows and edit-model rows (type 1000 both) toggle; other rows do not.
    const bool toggles = actedOn && actedOn->type() == QTreeWidgetItem::UserType;
    if (m_viewModel && m_viewModel->displayModel().visibilityUpdateCount() != updates + (toggles ? 1 : 0))
        return QStringLiteral("double click: %1 visibility updates")
            .arg(m_viewModel->displayModel().visibilityUpdateCount() - updates);
    return QString();
}

// ------------------------------------------------------------------ context menu

QString RandomRun::userContextMenu(bool removeWhileOpen)
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    MenuTarget target;
    target.row = pickRow(tree);
    if (!target.row)
        return QString();
    target.itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(target.row);
    tree->scrollToItem(target.row);
    const QPoint pos = tree->visualItemRect(target.row).center();
    if (tree->itemAt(pos) != target.row)
        return QString();

    target.item = target.itemRow ? target.itemRow->getDisplayItem() : nullptr;
    const QStringList expectedEntries = menuEntriesFor(target);
    QString entry = expectedEntries.isEmpty() ? QString() : expectedEntries.at(pick(expectedEntries.size()));
    if (removeWhileOpen && entry == DeleteEntry)
        entry = InvisibleEntry;
    note(QStringLiteral("contextMenu%1 %2 on %3").arg(removeWhileOpen ? "+remove" : "", entry, target.row->text(0)));
    captureBeforeMenu(target, entry, m_viewModel.get());
    // An item whose selection may not change now shows the entry disabled: it cannot be chosen.
    const bool selectInert = entry == SelectEntry && target.item && !target.item->isSelectable();
    offerMenuReaction(target, entry);

    MenuOutcome outcome;
    const auto whileOpen = [&]() {
        if (removeWhileOpen)
            removeWhileMenuOpen(tree, target, outcome);
    };
    ContextMenuVisit visit;
    {
        const DialogCall call(m_inDialogCall);
        visit = rightClick(tree, pos, entry, whileOpen);
    }
    if (!visit.accepted)
        return QStringLiteral("context menu event not accepted");
    if (target.itemRow && !visit.opened)
        return QStringLiteral("no menu over a display item row");
    if (target.itemRow && visit.entries != expectedEntries)
        return QStringLiteral("menu entries %1, expected %2")
            .arg(visit.entries.join(QStringLiteral(", ")), expectedEntries.join(QStringLiteral(", ")));
    if (!entry.isEmpty() && !visit.triggered && !selectInert)
        return QStringLiteral("entry %1 not triggered").arg(entry);
    if (selectInert && (visit.triggered || !visit.disabledEntries.contains(SelectEntry)))
        return QStringLiteral("select entry of an item that is not selectable was not disabled");
    if (m_reacted) {
        // The entry's own change came first (no host call before it raises
        // an event); what the dialog did after the reaction is its business.
        // A removal reached the rows that saw its event, unless the reaction
        // rebuilt the tree from the model that no longer held the item.
        if (entry == DeleteEntry && !m_replacedInCall && target.parent)
            expectRemoved(target.parent, {target.item});
        return QString();
    }
    if (selectInert)
        return target.model && target.model->displayUpdateCount(2) != target.displayUpdates
            ? QStringLiteral("a disabled select entry asked for a display update")
            : QString();
    if (removeWhileOpen && outcome.rowGone)
        return checkMenuOnGoneRow(target, entry, outcome);
    return checkMenuEntry(target, entry, removeWhileOpen);
}

// The item, its parent, and for the visibility entries the subtree they change.
void RandomRun::offerMenuReaction(const MenuTarget& target, const QString& entry)
{
    const auto held = std::dynamic_pointer_cast<DisplayItem>(target.item);
    if (!held)
        return;
    std::vector<std::shared_ptr<DisplayItem>> near{held};
    if (target.parentRef)
        near.push_back(target.parentRef);
    if (entry == InvisibleEntry || entry == VisibleEntry) {
        for (const auto& i : target.subtree) {
            if (auto d = std::dynamic_pointer_cast<DisplayItem>(i))
                near.push_back(d);
        }
    }
    offerReaction(near);
}

// The host removes the row's item (or, for the root, empties the model) while the menu is open.
void RandomRun::removeWhileMenuOpen(QTreeWidget* tree, const MenuTarget& target, MenuOutcome& outcome)
{
    // The host's own change, not one inside a dialog's call.
    const DialogCall outside(m_inDialogCall, false);
    if (target.parent) {
        target.parent->removeChild(target.item, false);
        expectRemoved(target.parent, {target.item});
        // Kept alive past the check, so that its rows' icons can still be told.
        if (auto held = std::dynamic_pointer_cast<DisplayItem>(target.item))
            m_detached.push_back(held);
    }
    outcome.rowGone = !allRows(tree).contains(target.row);
    for (const auto& i : hostPreOrder(std::dynamic_pointer_cast<DisplayItem>(target.item)))
        outcome.statesAfterRemoval.emplace_back(i.get(), std::make_pair(i->isVisible(), i->isSelected()));
}

// The row went while the menu was open: its entry must do nothing.
QString RandomRun::checkMenuOnGoneRow(const MenuTarget& target, const QString& entry, const MenuOutcome& outcome)
{
    for (const auto& [i, state] : outcome.statesAfterRemoval) {
        if (std::make_pair(i->isVisible(), i->isSelected()) != state)
            return QStringLiteral("entry %1 acted on a row that had gone").arg(entry);
    }
    if (target.model && target.model->visibilityUpdateCount() != target.visibilityUpdates)
        return QStringLiteral("entry %1 on a gone row asked for a visibility update").arg(entry);
    return QString();
}

QString RandomRun::checkMenuEntry(const MenuTarget& target, const QString& entry, bool removeWhileOpen)
{
    const auto& item = target.item;
    SceneDisplayModel* model = target.model;
    const int displayUpdates = target.displayUpdates;
    const int visibilityUpdates = target.visibilityUpdates;
    const bool inModel = target.inModel;
    if (!item)
        return QString();
    if (entry == SelectEntry) {
        const bool expected = item->isSelectable() ? !target.selectedBefore : target.selectedBefore;
        if (item->isSelected() != expected)
            return QStringLiteral("select entry: selected %1").arg(item->isSelected());
        if (!removeWhileOpen && inModel && model->displayUpdateCount(2) != displayUpdates + 1)
            return QStringLiteral("select entry: %1 display updates")
                .arg(model->displayUpdateCount(2) - displayUpdates);
    } else if (entry == DeleteEntry) {
        expectRemoved(target.parent, {item});
        if (item->getParent())
            return QStringLiteral("delete entry left the item in place");
        if (model && model->displayUpdateCount(2) != displayUpdates + (inModel ? 1 : 0))
            return QStringLiteral("delete entry: %1 display updates")
                .arg(model->displayUpdateCount(2) - displayUpdates);
    } else if (entry == InvisibleEntry || entry == VisibleEntry) {
        for (const auto& i : target.subtree) {
            if (i->isVisible() != (entry == VisibleEntry))
                return QStringLiteral("%1: %2 visible %3")
                    .arg(entry, QString::fromStdString(i->getDisplayName()))
                    .arg(i->isVisible());
        }
        if (!removeWhileOpen && inModel && model->visibilityUpdateCount() != visibilityUpdates + 1)
            return QStringLiteral("%1: %2 visibility updates")
                .arg(entry)
                .arg(model->visibilityUpdateCount() - visibilityUpdates);
    }
    return QString();
}

QString RandomRun::userClonedContextMenu()
{
    DisplayItemTreeWidget* tree = clonedTree();
    QTreeWidgetItem* target = pickRow(tree);
    if (!target)
        return QString();
    tree->scrollToItem(target);
    const QString entry = KitEntries.at(pick(KitEntries.size()));
    note(QStringLiteral("clonedContextMenu %1 on %2").arg(entry, target->text(0)));
    const QPoint pos = tree->visualItemRect(target).center();
    // A narrow tree may not show the row at all; then there is nothing to click.
    if (tree->itemAt(pos) != target)
        return QString();
    const auto visit = rightClick(tree, pos, entry);
    if (!visit.opened || visit.entries != KitEntries)
        return QStringLiteral("cloned tree menu entries %1").arg(visit.entries.join(QStringLiteral(", ")));
    return QString();
}

} // namespace Brennvik::Test
