#include "RandomRun.h"

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/BKCheckBox.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneViewModel.h>

#include "ItemWidgetDriver.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

namespace Brennvik::Test {

// ------------------------------------------------------------------ find next

QString RandomRun::userFindNext()
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    static const char* const values[] = {"DisplayItem", "ShellItem", "0x", "DC04", "red", "Geometry", "n1", "zzz", "1"};
    const QString value = QString::fromLatin1(values[pick(9)]);
    const int criterion = pick(3);
    m_dialog->m_searchValueLE->setText(value);
    m_dialog->m_searchTypeCB->setCurrentIndex(criterion);
    note(QStringLiteral("findNext %1 criterion %2").arg(value).arg(criterion));
    QTreeWidgetItem* start = tree->currentItem();
    QTreeWidgetItem* expected = expectedFindResult(tree, value, criterion);
    QStringList currents;
    QList<QTreeWidgetItem*> madeCurrent;
    const auto log = QObject::connect(tree, &QTreeWidget::currentItemChanged, [&](QTreeWidgetItem* c) {
        currents << (c ? c->text(0) : QStringLiteral("none"));
        madeCurrent << c;
    });
    QStringList clonedCurrents;
    QMetaObject::Connection clonedLog;
    if (DisplayItemTreeWidget* cloned = clonedTree())
        clonedLog = QObject::connect(cloned, &QTreeWidget::currentItemChanged, [&](QTreeWidgetItem* c) {
            clonedCurrents << (c ? c->text(0) : QStringLiteral("none"));
        });
    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
    QObject::disconnect(log);
    QObject::disconnect(clonedLog);
    if (g_trace)
        qInfo("  current rows: %s; cloned: %s", qPrintable(currents.join(QStringLiteral(", "))),
              qPrintable(clonedCurrents.join(QStringLiteral(", "))));
    if (currentMayBounce()) {
        // The find's choice may come back changed from the clone; it must have been made.
        if (expected != start && !madeCurrent.contains(expected))
            return QStringLiteral("find next never made the expected row current");
        return QString();
    }
    if (tree->currentItem() != expected)
        return findMismatch(tree, expected, start);
    return QString();
}

// The first row after the current one (from the top without one) whose item
// has a property, of the criterion's kind, whose value contains \a value.
QTreeWidgetItem* RandomRun::expectedFindResult(QTreeWidget* tree, const QString& value, int criterion)
{
    const QString fragment = criterion == 1 ? QStringLiteral("pointer")
        : criterion == 2                    ? QStringLiteral("display item type")
                                            : QString();
    const auto matches = [&](QTreeWidgetItem* r) {
        auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(r);
        const auto item = row ? row->getDisplayItem() : nullptr;
        if (!item)
            return false;
        PropertyList business;
        PropertyList display;
        item->getProperties(business, display);
        for (const PropertyList* list : {&business, &display}) {
            for (const auto& [name, v] : *list) {
                if (!fragment.isEmpty() && !QString::fromStdString(name).contains(fragment, Qt::CaseInsensitive))
                    continue;
                if (QString::fromStdString(v).contains(value, Qt::CaseInsensitive))
                    return true;
            }
        }
        return false;
    };
    QTreeWidgetItem* start = tree->currentItem();
    QTreeWidgetItem* expected = start;
    bool pending = start != nullptr;
    for (QTreeWidgetItem* r : allRows(tree)) {
        if (pending) {
            if (r == start)
                pending = false;
            continue;
        }
        if (matches(r)) {
            expected = r;
            break;
        }
    }
    return expected;
}

QString RandomRun::findMismatch(QTreeWidget* tree, QTreeWidgetItem* expected, QTreeWidgetItem* start)
{
    QStringList lines;
    if (auto* r = dynamic_cast<DisplayItemTreeWidgetItem*>(expected)) {
        PropertyList b, d;
        if (auto i = r->getDisplayItem())
            i->getProperties(b, d);
        lines << propertyLines(b) << propertyLines(d);
    }
    return QStringLiteral("find next made %1 (row %2) current, expected %3 (row %4), start %5")
               .arg(tree->currentItem() ? tree->currentItem()->text(0) : QStringLiteral("none"))
               .arg(allRows(tree).indexOf(tree->currentItem()))
               .arg(expected ? expected->text(0) : QStringLiteral("none"))
               .arg(allRows(tree).indexOf(expected))
               .arg(allRows(tree).indexOf(start))
        + QStringLiteral(" (expected row's properties: %1; search text \"%2\" criterion %3)")
              .arg(lines.join(QStringLiteral("; ")), m_dialog->m_searchValueLE->text())
              .arg(m_dialog->m_searchTypeCB->currentData().toInt());
}

// ------------------------------------------------------------------ other widgets of the dialogs

QString RandomRun::userCount()
{
    note(QStringLiteral("count"));
    // A dialog without a view model is disabled: the click does nothing.
    const QString expected
        = m_dialog->isEnabled() ? QString::number(hostPreOrder(root()).size()) : m_dialog->m_displayItemCountLE->text();
    QTest::mouseClick(m_dialog->m_displayItemCountPB, Qt::LeftButton);
    if (m_dialog->m_displayItemCountLE->text() != expected)
        return QStringLiteral("count %1, expected %2").arg(m_dialog->m_displayItemCountLE->text(), expected);
    return QString();
}

QString RandomRun::userToggleClone()
{
    note(QStringLiteral("clone %1").arg(!m_dialog->m_useCloneCheckBox->isChecked()));
    // Switching off deletes the cloned tree and panes.
    unwatch(m_clonedTesters);
    m_dialog->m_useCloneCheckBox->click();
    if (cloneMode() != m_dialog->m_useCloneCheckBox->isChecked())
        return QStringLiteral("clone mode does not follow its box");
    // Its own enabled state: the whole dialog is disabled without a view model.
    if (m_dialog->m_showCloneIn3dCheckBox->testAttribute(Qt::WA_ForceDisabled) == cloneMode())
        return QStringLiteral("\"Show Clone in 3D View\" enabled %1")
            .arg(!m_dialog->m_showCloneIn3dCheckBox->testAttribute(Qt::WA_ForceDisabled));
    if (cloneMode()) {
        m_cloneRebuilds = 0;
        if (m_viewModel)
            ++m_clonesMade;
        if (DisplayItemTreeWidget* cloned = clonedTree()) {
            watch(cloned, m_clonedTesters);
            watch(clonedBusinessPane(), m_clonedTesters);
            watch(clonedDisplayPane(), m_clonedTesters);
        }
    }
    rebuildExpected(true);
    if (showCloneIn3d() && m_viewModel) {
        const auto shown = m_presenter.getViewModel();
        const auto wanted = cloneMode() ? clonedViewModel() : std::static_pointer_cast<ViewModelInterface>(m_viewModel);
        if (shown != wanted)
            return QStringLiteral("draw area shows the wrong view model after the clone box");
    }
    return QString();
}

QString RandomRun::userCloneCheckBoxes()
{
    if (chance(50)) {
        note(QStringLiteral("showCloneIn3d click"));
        const bool enabled = m_dialog->m_showCloneIn3dCheckBox->isEnabled();
        const bool before = m_dialog->m_showCloneIn3dCheckBox->isChecked();
        m_dialog->m_showCloneIn3dCheckBox->click();
        if (!enabled) {
            if (m_dialog->m_showCloneIn3dCheckBox->isChecked() != before)
                return QStringLiteral("a disabled box changed");
            return QString();
        }
        const auto wanted = cloneMode() && m_dialog->m_showCloneIn3dCheckBox->isChecked()
            ? clonedViewModel()
            : std::static_pointer_cast<ViewModelInterface>(m_viewModel);
        if (m_presenter.getViewModel() != wanted)
            return QStringLiteral("draw area shows the wrong view model");
    } else {
        note(QStringLiteral("compareMode click"));
        m_dialog->m_propertyCompareMode->click();
    }
    return QString();
}

QString RandomRun::userCurrentRow()
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    QTreeWidgetItem* target = rows.isEmpty() || chance(5) ? nullptr : rows.at(pick(rows.size()));
    note(QStringLiteral("current %1").arg(target ? target->text(0) : QStringLiteral("none")));
    if (target && chance(50)
        && (tree->scrollToItem(target), tree->itemAt(tree->visualItemRect(target).center()) == target)) {
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualItemRect(target).center());
    } else {
        tree->setCurrentItem(target);
    }
    if (tree->currentItem() != target && !currentMayBounce())
        return QStringLiteral("the row did not become current");
    if (chance(30) && target) {
        note(QStringLiteral("expand/collapse %1").arg(target->text(0)));
        target->setExpanded(!target->isExpanded());
    }
    return QString();
}

QString RandomRun::userClonedCurrentRow()
{
    DisplayItemTreeWidget* tree = clonedTree();
    QTreeWidgetItem* target = pickRow(tree);
    if (!target)
        return QString();
    note(QStringLiteral("clonedCurrent %1").arg(target->text(0)));
    tree->setCurrentItem(target);
    // The change is mirrored into the original tree, and may come back changed
    // (the guard is cleared before the walk along the path is over).
    if (tree->currentItem() != target)
        ++m_actionCounts[QStringLiteral("(cloned row change came back)")];
    return QString();
}

QString RandomRun::userClonedDoubleClick()
{
    DisplayItemTreeWidget* tree = clonedTree();
    QTreeWidgetItem* target = pickRow(tree);
    if (!target)
        return QString();
    note(QStringLiteral("clonedDoubleClick %1").arg(target->text(0)));
    doubleClickRow(tree, target);
    return QString();
}

QString RandomRun::user2DList()
{
    QListWidget* list = m_dialog2D->m_plotListWdg;
    if (chance(40) || list->count() == 0) {
        note(QStringLiteral("2D update list"));
        QTest::mouseClick(m_dialog2D->m_updateListPB, Qt::LeftButton);
        QString problem = checkPlotListing(m_scene, *list);
        if (!problem.isEmpty())
            return problem;
        m_selectedModel2D = list->count() > 0 ? m_dialog2D->getDisplayModelOfSelectedPlot() : nullptr;
        if (list->count() > 0 && list->currentRow() != 0)
            return QStringLiteral("after a listing row %1 is current").arg(list->currentRow());
        rebuildExpected2D();
        return QString();
    }
    const int row = pick(list->count());
    note(QStringLiteral("2D select row %1").arg(row));
    const int before = list->currentRow();
    QListWidgetItem* entry = list->item(row);
    list->scrollToItem(entry);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualItemRect(entry).center());
    if (list->currentRow() != row)
        return QStringLiteral("2D list row %1 did not become current").arg(row);
    if (before != row) {
        // Which model that row stands for, from its text.
        const QString text = entry->text();
        DisplayModel2D* expected = modelOfListEntry(m_scene, text);
        if (m_dialog2D->getDisplayModelOfSelectedPlot() != expected)
            return QStringLiteral("2D row %1 gives another model").arg(text);
        m_selectedModel2D = expected;
        rebuildExpected2D();
    }
    return QString();
}

QString RandomRun::user2DDoubleClick()
{
    QTreeWidget* tree = m_dialog2D->m_displayItemTreeWidget;
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    if (rows.isEmpty() || !m_expected2D)
        return QString();
    const int index = pick(rows.size());
    QTreeWidgetItem* target = rows.at(index);
    std::vector<Expected2DRow*> expectedRows;
    collect2DRows(*m_expected2D, expectedRows);
    const auto item = expectedRows[std::size_t(index)]->item;
    const int before = item->getVisibility();
    const int updates = m_selectedModel2D ? m_selectedModel2D->displayUpdateCount() : 0;
    note(QStringLiteral("2D doubleClick %1").arg(target->text(0)));
    offer2DReaction(item);
    {
        const DialogCall call(m_inDialogCall);
        doubleClickRow(tree, target);
    }
    // The toggle came first; the rest is checked against the trees.
    if (m_reacted)
        return QString();
    if (tree->currentItem() != target)
        return QStringLiteral("2D double click did not make the row current");
    if (item->getVisibility() != (before == 0 ? 1 : 0))
        return QStringLiteral("2D double click: visibility %1 from %2").arg(item->getVisibility()).arg(before);
    if (m_selectedModel2D && m_selectedModel2D->displayUpdateCount() != updates + 1)
        return QStringLiteral("2D double click: %1 display updates")
            .arg(m_selectedModel2D->displayUpdateCount() - updates);
    return QString();
}

QString RandomRun::user2DCurrentRow()
{
    QTreeWidget* tree = m_dialog2D->m_displayItemTreeWidget;
    const QList<QTreeWidgetItem*> rows = allRows(tree);
    QTreeWidgetItem* target = rows.isEmpty() || chance(10) ? nullptr : rows.at(pick(rows.size()));
    note(QStringLiteral("2D current %1").arg(target ? target->text(0) : QStringLiteral("none")));
    tree->setCurrentItem(target);
    return QString();
}

QString RandomRun::userCloneComparisonDialog()
{
    if (m_cloneDialog) {
        note(QStringLiteral("close clone comparison"));
        unwatch(m_cloneDialogTesters);
        delete m_cloneDialog;
        m_cloneDialog = nullptr;
        return QString();
    }
    // This dialog takes a model with a root for granted; a host that emptied
    // its model is not shown in it.
    if (!m_viewModel || !root())
        return QString();
    note(QStringLiteral("open clone comparison"));
    m_cloneDialog = new DebugCloneDisplayModelDialog(nullptr, m_viewModel);
    ++m_clonesMade;
    watch(m_cloneDialog->m_displayItemTree, m_cloneDialogTesters);
    watch(m_cloneDialog->m_clonedDisplayItemTree, m_cloneDialogTesters);
    m_cloneDialogShape = cloneDialogShape(*m_cloneDialog);
    // The original side shows the model as it is now, the other side the
    // dialog's own clone, and the report compares the two.
    const QStringList expected = comparisonTexts(root());
    const int separator = m_cloneDialogShape.indexOf(QStringLiteral("|"));
    if (m_cloneDialogShape.mid(0, separator) != expected)
        return QStringLiteral("clone comparison: original tree differs from the model");
    auto* clonedTop = dynamic_cast<DisplayItemTreeWidgetItem*>(m_cloneDialog->m_clonedDisplayItemTree->topLevelItem(0));
    const auto clonedRoot = clonedTop ? clonedTop->getDisplayItem() : nullptr;
    if (!clonedRoot)
        return QStringLiteral("clone comparison: no clone shown");
    if (m_cloneDialogShape.mid(separator + 1, m_cloneDialogShape.size() - separator - 2) != comparisonTexts(clonedRoot))
        return QStringLiteral("clone comparison: cloned tree differs from the clone");
    const QStringList report
        = m_cloneDialog->m_outputTextField->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QStringList expectedReport = comparisonReport(root(), clonedRoot);
    if (report != expectedReport)
        return QStringLiteral("clone comparison: report \"%1\", expected \"%2\"")
            .arg(report.join(QStringLiteral("; ")), expectedReport.join(QStringLiteral("; ")));
    return QString();
}

} // namespace Brennvik::Test
