#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/BKCheckBox.h>
#include <hostcontract/DisplayModel.h>

#include <referencehost/model/CloneDefect.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/SampleModel.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>

#include "ContextMenuDriver.h"
#include "DebugIcons.h"
#include "ContextMarkingTranslator.h"
#include "TestTree.h"
#include "DisplayModelDialogTestAccess.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMetaEnum>
#include <QPointer>
#include <QSignalSpy>
#include <QSpacerItem>
#include <QStyle>
#include <QStyleOptionButton>
#include <QFont>
#include <QScreen>
#include <QTest>
#include <QTranslator>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <memory>
#include <typeinfo>
#include <vector>

using namespace Brennvik;
using Access = Brennvik::DisplayModelDialogTestAccess;
using Brennvik::Test::debugIconName;
using Brennvik::Test::findItem;

Q_DECLARE_METATYPE(CloneDefect::Kind)

namespace {

using Brennvik::Test::DefectList;

using Brennvik::Test::makeViewModel;

using Brennvik::Test::setDefects;

// The tree on which the marking rules are shown:
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
    return Test::buildTree({"root", {{"A", {{"B", {{"C1"}, {"C2"}}}, {"D", {{"D1"}}}}}, {"E"}}});
}

// root > Process > Module, whose "Geometry" group holds S1 and S2 and which
// lists both again: the tree shows them a second time as duplicate rows.
std::shared_ptr<DisplayItem> buildGeometryTree()
{
    auto root = std::make_shared<DisplayItem>("root");
    auto process = std::make_shared<DisplayItem>("Process");
    auto module = std::make_shared<GeometryModuleItem>("Module");
    auto geometry = std::make_shared<DisplayItem>("Geometry");
    auto s1 = std::make_shared<DisplayItem>("S1");
    auto s2 = std::make_shared<DisplayItem>("S2");
    geometry->appendChildren({s1, s2});
    module->appendChild(geometry);
    module->addGeometryDisplayItem(s1);
    module->addGeometryDisplayItem(s2);
    process->appendChild(module);
    root->appendChild(process);
    return root;
}

// The rows' column-0 texts from the top down; a sibling position is added
// when the parent holds another row of the same text.
QString rowPath(const QTreeWidgetItem* row)
{
    QStringList parts;
    for (const QTreeWidgetItem* r = row; r; r = r->parent()) {
        QString part = r->text(0);
        if (const QTreeWidgetItem* parent = r->parent()) {
            int sameText = 0;
            for (int i = 0; i < parent->childCount(); ++i)
                sameText += parent->child(i)->text(0) == part ? 1 : 0;
            if (sameText > 1)
                part += QStringLiteral("[%1]").arg(parent->indexOfChild(const_cast<QTreeWidgetItem*>(r)));
        }
        parts.prepend(part);
    }
    return parts.join(QLatin1Char('/'));
}

// The first row whose path (without sibling positions) is \a path.
QTreeWidgetItem* rowByPath(QTreeWidget* tree, const QString& path)
{
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        if (rowPath(*it) == path)
            return *it;
    }
    return nullptr;
}

bool isBold(const QTreeWidgetItem* row)
{
    return row->font(0).weight() == QFont::Bold;
}

// Every marked row of a tree in pre-order: "path [bold]", "path [different <icon>]"
// or both. Rows not listed carry no mark.
QStringList marks(QTreeWidget* tree)
{
    QStringList lines;
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(*it);
        if (!row)
            continue;
        QStringList rowMarks;
        if (isBold(row))
            rowMarks << QStringLiteral("bold");
        if (row->isDifferentVisibility())
            rowMarks << QStringLiteral("different ") + debugIconName(row->icon(0));
        if (!rowMarks.isEmpty())
            lines << rowPath(row) + QStringLiteral(" [") + rowMarks.join(QStringLiteral(", ")) + QLatin1Char(']');
    }
    return lines;
}

// Bold rows carry exactly the difference mark: QFont::Bold in column 0 (75
// on Qt 5, 700 on Qt 6), and a foreground that paints nothing (the red brush
// is given no style, which leaves column 0 in its default colour); other rows
// keep the default font and no foreground of their own; column 1 is never
// touched.
QString markFormProblem(QTreeWidget* tree)
{
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        QTreeWidgetItem* row = *it;
        const QVariant foreground = row->data(0, Qt::ForegroundRole);
        if (isBold(row)) {
            if (row->foreground(0).style() != Qt::NoBrush)
                return rowPath(row) + QStringLiteral(": bold row with a visible foreground");
        } else {
            if (row->font(0).weight() != QFont::Normal || foreground.isValid())
                return rowPath(row) + QStringLiteral(": unmarked row with a mark");
        }
        if (row->data(1, Qt::ForegroundRole).isValid() || row->font(1).weight() != QFont::Normal)
            return rowPath(row) + QStringLiteral(": column 1 marked");
        if (auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row)) {
            const bool roleSet = row->data(0, Qt::UserRole + 300).toBool();
            if (roleSet != itemRow->isDifferentVisibility())
                return rowPath(row) + QStringLiteral(": role 556 and isDifferentVisibility disagree");
        }
    }
    return QString();
}

// One line per pane row: "name = value [grey|red|plain]", the colour being
// that of column 1; column 0 must keep the default colour.
QStringList colouredRows(QTreeWidget* pane)
{
    QStringList rows;
    for (int i = 0; i < pane->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = pane->topLevelItem(i);
        QString colour = QStringLiteral("plain");
        if (row->data(1, Qt::ForegroundRole).isValid()) {
            const QBrush brush = row->foreground(1);
            if (brush.style() != Qt::SolidPattern)
                colour = QStringLiteral("not solid");
            else if (brush.color() == QColor(Qt::lightGray))
                colour = QStringLiteral("grey");
            else if (brush.color() == QColor(Qt::red))
                colour = QStringLiteral("red");
            else
                colour = brush.color().name();
        }
        if (row->data(0, Qt::ForegroundRole).isValid())
            colour += QStringLiteral(", name coloured");
        if (row->toolTip(1) != row->text(1))
            colour += QStringLiteral(", no value tip");
        rows << row->text(0) + QStringLiteral(" = ") + row->text(1) + QStringLiteral(" [") + colour + QLatin1Char(']');
    }
    return rows;
}

// Pane rows with only names and colours: pointer values differ in every run.
QStringList namesAndColours(QTreeWidget* pane)
{
    QStringList rows;
    for (const QString& row : colouredRows(pane))
        rows << row.section(QStringLiteral(" = "), 0, 0) + QLatin1Char(' ')
                + row.section(QLatin1Char('['), -1).prepend('[');
    return rows;
}

QString policyName(QSizePolicy::Policy policy)
{
    return QString::fromLatin1(QMetaEnum::fromType<QSizePolicy::Policy>().valueToKey(policy));
}

// A layout's items: widgets and layouts by object name (an empty layout is
// marked so), spacers by size and policies.
QStringList describeLayout(QLayout* layout)
{
    QStringList items;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem* item = layout->itemAt(i);
        if (item->widget()) {
            items << item->widget()->objectName();
        } else if (item->layout()) {
            items << item->layout()->objectName()
                    + (item->layout()->count() == 0 ? QStringLiteral(" (empty)") : QString());
        } else if (QSpacerItem* spacer = item->spacerItem()) {
            items << QStringLiteral("spacer %1x%2 %3/%4")
                         .arg(spacer->sizeHint().width())
                         .arg(spacer->sizeHint().height())
                         .arg(policyName(spacer->sizePolicy().horizontalPolicy()))
                         .arg(policyName(spacer->sizePolicy().verticalPolicy()));
        }
    }
    return items;
}

QStringList headerTexts(QTreeWidget* tree)
{
    QStringList texts;
    for (int i = 0; i < tree->columnCount(); ++i)
        texts << tree->headerItem()->text(i);
    return texts;
}

QStringList dumpTree(QTreeWidget* tree)
{
    QStringList lines;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        lines << rowPath(*it);
    return lines;
}

// A user's click on the box's indicator.
void clickCheckBox(QCheckBox* box)
{
    QStyleOptionButton option;
    option.initFrom(box);
    const QRect indicator = box->style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, box);
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, indicator.center());
}

// A user's click on a row; its ancestors are expanded first so that it can be seen.
void clickRow(QTreeWidget* tree, QTreeWidgetItem* row)
{
    for (QTreeWidgetItem* parent = row->parent(); parent; parent = parent->parent())
        parent->setExpanded(true);
    tree->scrollToItem(row);
    const QRect rect = tree->visualItemRect(row);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
}

// How many connections a signal of \a object has: QObject::receivers is
// protected, and a member pointer taken through this class reaches it.
struct ReceiverCount : QObject
{
    using QObject::receivers;
};

int receiverCount(const QObject* object, const char* signal)
{
    const auto receivers = &ReceiverCount::receivers;
    return (object->*receivers)(signal);
}

using Brennvik::Test::ContextMarkingTranslator;

} // namespace

class tst_DisplayModelDialogCloneMode : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    // widgets and switching
    void switchingOnBuildsClonedWidgets();
    void clonedWidgetTextsAreTranslatedInFormContext();
    void switchingOffLeavesEmptyColumn();
    void everyRebuildMakesFreshClone();
    void switchingOnWidensWithinScreen_data();
    void switchingOnWidensWithinScreen();
    void switchingOnMirrorsExpansion_data();
    void switchingOnMirrorsExpansion();

    // tree marks
    void identicalCloneMarksNothing();
    void treeMarks_data();
    void treeMarks();
    void missingChildMarkingStartsAtGrandparent();
    void childCountTestIsOneSided_data();
    void childCountTestIsOneSided();
    void topLevelRowIsNeverPaintedUpwards_data();
    void topLevelRowIsNeverPaintedUpwards();
    void missingDuplicateRowIsExempt_data();
    void missingDuplicateRowIsExempt();

    // property colours
    void propertyValuesAreColoured_data();
    void propertyValuesAreColoured();
    void pointerPropertiesNeverRed_data();
    void pointerPropertiesNeverRed();
    void compareModeCheckedWithDifferentRowsGreysAll();
    void compareModeChangeNeedsPresenter_data();
    void compareModeChangeNeedsPresenter();

    // mirroring
    void currentRowIsMirroredBothWays();
    void expansionIsMirroredBothWays();
    void everyRebuildConnectsAgain();

    // 3D view
    void showCloneIn3dHandsViewModelsToPresenter();
    void showCloneIn3dWithoutPresenterOnlyStoresState();

private:
    // A shown dialog of \a viewModel; with clone mode on when \a cloneOn.
    DisplayModelDialog* openDialog(const std::shared_ptr<SceneViewModel>& viewModel, bool cloneOn,
                                   DrawAreaPresenter* presenter = nullptr);
    void switchCloneOn(DisplayModelDialog* dialog);

    std::unique_ptr<DisplayModelDialog> m_dialog;
};

DisplayModelDialog* tst_DisplayModelDialogCloneMode::openDialog(const std::shared_ptr<SceneViewModel>& viewModel,
                                                                bool cloneOn, DrawAreaPresenter* presenter)
{
    m_dialog = std::make_unique<DisplayModelDialog>(nullptr);
    m_dialog->setDrawAreaPresenter(presenter);
    m_dialog->setViewModel(viewModel);
    m_dialog->show();
    if (!QTest::qWaitForWindowExposed(m_dialog.get()))
        return nullptr;
    if (cloneOn) {
        switchCloneOn(m_dialog.get());
        if (!Access::useClone(*m_dialog))
            return nullptr;
    }
    return m_dialog.get();
}

void tst_DisplayModelDialogCloneMode::switchCloneOn(DisplayModelDialog* dialog)
{
    clickCheckBox(dialog->m_useCloneCheckBox);
    // Widgets added to a shown dialog's layout are shown and laid out by posted events.
    QCoreApplication::processEvents();
}

void tst_DisplayModelDialogCloneMode::cleanup()
{
    m_dialog.reset();
    // Widgets that clone mode scheduled for deletion go now.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// ---------------------------------------------------------------- widgets and switching

void tst_DisplayModelDialogCloneMode::switchingOnBuildsClonedWidgets()
{
    auto viewModel = makeViewModel(buildRuleTree());
    DisplayModelDialog* dialog = openDialog(viewModel, false);
    QVERIFY(dialog);
    QVERIFY(!Access::clonedTree(*dialog));
    QCOMPARE(describeLayout(dialog->m_mainHLayout), (QStringList{"_2", "m_displayItemTreeWidget"}));
    QSpacerItem* const originalBusinessSpacer = dialog->horizontalSpacer_4;
    QSpacerItem* const originalDisplaySpacer = dialog->horizontalSpacer_5;

    switchCloneOn(dialog);
    QVERIFY(dialog->m_useCloneCheckBox->isChecked());
    QVERIFY(Access::useClone(*dialog));
    QVERIFY(dialog->m_showCloneIn3dCheckBox->isEnabled());
    QVERIFY(dialog->m_propertyCompareMode->isEnabled());
    QVERIFY(dialog->m_propertyCompareMode->isChecked());

    // The cloned tree: the library's tree without display item actions.
    DisplayItemTreeWidget* tree = Access::clonedTree(*dialog);
    QVERIFY(tree);
    QVERIFY(typeid(*tree) == typeid(DisplayItemTreeWidget));
    QCOMPARE(tree, dialog->findChild<DisplayItemTreeWidget*>(QStringLiteral("m_clonedDisplayItemTreeWidget")));
    QCOMPARE(tree->parentWidget(), static_cast<QWidget*>(dialog));
    QVERIFY(tree->expandsOnDoubleClick());
    QVERIFY(!dialog->m_displayItemTreeWidget->expandsOnDoubleClick());
    QVERIFY(tree->header()->stretchLastSection());
    QCOMPARE(tree->header()->sectionResizeMode(0), QHeaderView::Stretch);
    QCOMPARE(headerTexts(tree), QStringList{"Cloned display items"});
    QCOMPARE(dumpTree(tree), dumpTree(dialog->m_displayItemTreeWidget));
    QCOMPARE(Access::clonedTopRow(*dialog), dynamic_cast<DisplayItemTreeWidgetItem*>(tree->topLevelItem(0)));

    const Test::ContextMenuVisit visit = Test::rightClick(tree, tree->visualItemRect(tree->topLevelItem(0)).center());
    QVERIFY(visit.accepted);
    QVERIFY2(!visit.entries.contains(QStringLiteral("&Select/deselect display item"))
                 && !visit.entries.contains(QStringLiteral("Make subtree invisible"))
                 && !visit.entries.contains(QStringLiteral("Make subtree visible")),
             qPrintable(visit.entries.join(", ")));

    // The column of cloned property panes, right of the cloned tree.
    QCOMPARE(describeLayout(dialog->m_mainHLayout),
             (QStringList{"_2", "m_displayItemTreeWidget", "m_clonedDisplayItemTreeWidget", "m_vl_clonedProperties"}));
    QVBoxLayout* column = Access::clonedPropertiesColumn(*dialog);
    QCOMPARE(column->spacing(), 6);
    QCOMPARE(describeLayout(column),
             (QStringList{"m_hl_cloned_business_props", "m_businessObjectProperties", "m_hl_cloned_display_props",
                          "m_clonedDisplayItemProperties"}));
    QCOMPARE(Access::clonedBusinessHeader(*dialog)->spacing(), 0);
    QCOMPARE(Access::clonedDisplayHeader(*dialog)->spacing(), 0);
    QCOMPARE(describeLayout(Access::clonedBusinessHeader(*dialog)),
             (QStringList{"m_lbl_cloned_business_obj_props", "spacer 40x20 Expanding/Minimum"}));
    QCOMPARE(describeLayout(Access::clonedDisplayHeader(*dialog)),
             (QStringList{"m_lbl_cloned_display_props", "spacer 40x20 Expanding/Minimum"}));
    QCOMPARE(Access::clonedBusinessLabel(*dialog)->text(), QStringLiteral("Cloned business object properties"));
    QCOMPARE(Access::clonedDisplayLabel(*dialog)->text(), QStringLiteral("Cloned display item properties"));

    // The cloned business pane repeats the original pane's object name.
    QTreeWidget* businessPane = Access::clonedBusinessPane(*dialog);
    QTreeWidget* displayPane = Access::clonedDisplayPane(*dialog);
    QCOMPARE(businessPane->objectName(), QStringLiteral("m_businessObjectProperties"));
    const QList<QTreeWidget*> sameName
        = dialog->findChildren<QTreeWidget*>(QStringLiteral("m_businessObjectProperties"));
    QCOMPARE(sameName.size(), 2);
    QVERIFY(sameName.contains(businessPane));
    QVERIFY(sameName.contains(dialog->m_businessObjectProperties));
    QCOMPARE(displayPane, dialog->findChild<QTreeWidget*>(QStringLiteral("m_clonedDisplayItemProperties")));
    QCOMPARE(headerTexts(businessPane), (QStringList{"Name", "Value"}));
    QCOMPARE(headerTexts(displayPane), (QStringList{"Name", "Value"}));

    // The form's spacer members now name the cloned headers' spacers; the
    // original spacers stay where they were.
    QCOMPARE(dialog->horizontalSpacer_4, Access::clonedBusinessHeader(*dialog)->itemAt(1)->spacerItem());
    QCOMPARE(dialog->horizontalSpacer_5, Access::clonedDisplayHeader(*dialog)->itemAt(1)->spacerItem());
    QCOMPARE(dialog->_3->itemAt(1)->spacerItem(), originalBusinessSpacer);
    QCOMPARE(dialog->_4->itemAt(1)->spacerItem(), originalDisplaySpacer);
}

void tst_DisplayModelDialogCloneMode::clonedWidgetTextsAreTranslatedInFormContext()
{
    DisplayModelDialog* dialog = openDialog(makeViewModel(buildRuleTree()), false);
    QVERIFY(dialog);
    ContextMarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    switchCloneOn(dialog);
    QCoreApplication::removeTranslator(&translator);

    const QString context = QStringLiteral("DisplayModelDialogClass:");
    QCOMPARE(headerTexts(Access::clonedTree(*dialog)), QStringList{context + "Cloned display items"});
    QCOMPARE(Access::clonedBusinessLabel(*dialog)->text(), context + "Cloned business object properties");
    QCOMPARE(Access::clonedDisplayLabel(*dialog)->text(), context + "Cloned display item properties");
    QCOMPARE(headerTexts(Access::clonedBusinessPane(*dialog)), (QStringList{context + "Name", context + "Value"}));
    QCOMPARE(headerTexts(Access::clonedDisplayPane(*dialog)), (QStringList{context + "Name", context + "Value"}));
}

void tst_DisplayModelDialogCloneMode::switchingOffLeavesEmptyColumn()
{
    auto viewModel = makeViewModel(buildRuleTree());
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    const QStringList originalRows = dumpTree(dialog->m_displayItemTreeWidget);
    clickRow(Access::clonedTree(*dialog), rowByPath(Access::clonedTree(*dialog), QStringLiteral("root/A/B")));
    QCOMPARE(rowPath(dialog->m_displayItemTreeWidget->currentItem()), QStringLiteral("root/A/B"));

    QPointer<QWidget> tree = Access::clonedTree(*dialog);
    QPointer<QWidget> businessPane = Access::clonedBusinessPane(*dialog);
    QPointer<QWidget> displayPane = Access::clonedDisplayPane(*dialog);
    QPointer<QWidget> label = Access::clonedBusinessLabel(*dialog);
    QVBoxLayout* const firstColumn = Access::clonedPropertiesColumn(*dialog);

    clickCheckBox(dialog->m_useCloneCheckBox);
    QVERIFY(!dialog->m_useCloneCheckBox->isChecked());
    QVERIFY(!Access::useClone(*dialog));
    // The tree goes at once, the panes and labels with the next deferred deletions.
    QVERIFY(tree.isNull());
    QVERIFY(!Access::clonedTree(*dialog));
    QVERIFY(!businessPane.isNull());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(businessPane.isNull());
    QVERIFY(displayPane.isNull());
    QVERIFY(label.isNull());
    QVERIFY(!Access::clonedViewModel(*dialog));
    QVERIFY(!dialog->m_showCloneIn3dCheckBox->isEnabled());
    QVERIFY(!dialog->m_propertyCompareMode->isEnabled());

    // The emptied column is left behind; the original side is untouched.
    QCOMPARE(Access::clonedPropertiesColumn(*dialog), firstColumn);
    QCOMPARE(describeLayout(dialog->m_mainHLayout),
             (QStringList{"_2", "m_displayItemTreeWidget", "m_vl_clonedProperties (empty)"}));
    QCOMPARE(dumpTree(dialog->m_displayItemTreeWidget), originalRows);
    QCOMPARE(rowPath(dialog->m_displayItemTreeWidget->currentItem()), QStringLiteral("root/A/B"));

    // Every switch-on adds a new column, every switch-off leaves one more empty one.
    switchCloneOn(dialog);
    QCOMPARE(describeLayout(dialog->m_mainHLayout),
             (QStringList{"_2", "m_displayItemTreeWidget", "m_vl_clonedProperties (empty)",
                          "m_clonedDisplayItemTreeWidget", "m_vl_clonedProperties"}));
    QVERIFY(Access::clonedPropertiesColumn(*dialog) != firstColumn);
    QCOMPARE(dumpTree(Access::clonedTree(*dialog)), originalRows);
    clickCheckBox(dialog->m_useCloneCheckBox);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(describeLayout(dialog->m_mainHLayout),
             (QStringList{"_2", "m_displayItemTreeWidget", "m_vl_clonedProperties (empty)",
                          "m_vl_clonedProperties (empty)"}));
    QCOMPARE(dialog->findChildren<QTreeWidget*>(QStringLiteral("m_businessObjectProperties")),
             QList<QTreeWidget*>{dialog->m_businessObjectProperties});
}

void tst_DisplayModelDialogCloneMode::everyRebuildMakesFreshClone()
{
    auto viewModel = makeViewModel(buildRuleTree());
    DisplayModelDialog* dialog = openDialog(viewModel, false);
    QVERIFY(dialog);
    QCOMPARE(viewModel->cloneCount(), 0);

    switchCloneOn(dialog);
    QCOMPARE(viewModel->cloneCount(), 1);
    std::shared_ptr<ViewModelInterface> firstClone = Access::clonedViewModel(*dialog);
    QVERIFY(firstClone);
    QVERIFY(firstClone != std::shared_ptr<ViewModelInterface>(viewModel));
    const auto firstCloneRoot = firstClone->getDisplayModel()->getRootDisplayItem();
    QCOMPARE(Access::clonedTopRow(*dialog)->getDisplayItem(), firstCloneRoot);
    QVERIFY(firstCloneRoot != viewModel->displayModel().getRootDisplayItem());
    QVERIFY(marks(Access::clonedTree(*dialog)).isEmpty());
    std::weak_ptr<ViewModelInterface> weakFirst = firstClone;
    firstClone.reset();

    // A rebuild asks for a new clone, which shows what copying does now.
    setDefects(*viewModel, {{CloneDefect::Kind::FlipVisibility, "B"}});
    dialog->setViewModel(viewModel);
    QCOMPARE(viewModel->cloneCount(), 2);
    QVERIFY(weakFirst.expired());
    QCOMPARE(Access::clonedTopRow(*dialog)->getDisplayItem(),
             Access::clonedViewModel(*dialog)->getDisplayModel()->getRootDisplayItem());
    QCOMPARE(marks(Access::clonedTree(*dialog)),
             (QStringList{"root/A [different visible_different]", "root/A/B [different visible_different]"}));

    // Switching off releases the clone and makes no new one.
    std::weak_ptr<ViewModelInterface> weakSecond = Access::clonedViewModel(*dialog);
    clickCheckBox(dialog->m_useCloneCheckBox);
    QCOMPARE(viewModel->cloneCount(), 2);
    QVERIFY(!Access::clonedViewModel(*dialog));
    QVERIFY(weakSecond.expired());
}

void tst_DisplayModelDialogCloneMode::switchingOnWidensWithinScreen_data()
{
    QTest::addColumn<double>("startWidthPart"); // of the available width; at least the form's minimum
    QTest::newRow("room to widen") << 0.0;
    QTest::newRow("as wide as the screen") << 1.0;
}

void tst_DisplayModelDialogCloneMode::switchingOnWidensWithinScreen()
{
    QFETCH(double, startWidthPart);
    DisplayModelDialog* dialog = openDialog(makeViewModel(buildRuleTree()), false);
    QVERIFY(dialog);
    // The test screen is small: a tiny font lets the form fit in half its width.
    QFont font = dialog->font();
    font.setPixelSize(4);
    dialog->setFont(font);
    QCoreApplication::processEvents();
    dialog->layout()->activate();
    const QRect available = dialog->screen()->availableGeometry();
    QVERIFY2(dialog->minimumSizeHint().width() < available.width() - 100,
             qPrintable(QString::number(dialog->minimumSizeHint().width())));
    dialog->resize(qMax(dialog->minimumSizeHint().width(), int(available.width() * startWidthPart)), 450);
    dialog->move(available.right() - dialog->frameGeometry().width() * 3 / 4, available.top());
    QCoreApplication::processEvents();
    const QSize before = dialog->size();
    const int frameExtra = dialog->frameGeometry().width() - dialog->width();

    switchCloneOn(dialog);
    // Twice as wide, as far as the screen allows, and on the screen.
    const int expectedWidth = qMax(before.width(), qMin(2 * before.width(), available.width() - frameExtra));
    QCOMPARE(dialog->width(), expectedWidth);
    QVERIFY(dialog->width() > before.width() || before.width() + frameExtra >= available.width());
    QCOMPARE(dialog->height(), before.height());
    // Moved left as far as needed to stay on the screen, where it fits at all.
    if (dialog->frameGeometry().width() <= available.width())
        QVERIFY(available.contains(dialog->frameGeometry()));

    // Switching off gives the size back.
    clickCheckBox(dialog->m_useCloneCheckBox);
    QCoreApplication::processEvents();
    QVERIFY(!Access::useClone(*dialog));
    QCOMPARE(dialog->size(), before);
}

void tst_DisplayModelDialogCloneMode::switchingOnMirrorsExpansion_data()
{
    QTest::addColumn<QStringList>("expanded");
    QTest::newRow("nothing") << QStringList{};
    QTest::newRow("top row") << QStringList{"root"};
    QTest::newRow("a path") << QStringList{"root", "root/A", "root/A/D"};
    QTest::newRow("below a collapsed row") << QStringList{"root", "root/A/B", "root/A/D"};
}

void tst_DisplayModelDialogCloneMode::switchingOnMirrorsExpansion()
{
    QFETCH(QStringList, expanded);
    DisplayModelDialog* dialog = openDialog(makeViewModel(buildRuleTree()), false);
    QVERIFY(dialog);
    QTreeWidget* original = dialog->m_displayItemTreeWidget;
    for (const QString& path : expanded)
        rowByPath(original, path)->setExpanded(true);

    switchCloneOn(dialog);
    DisplayItemTreeWidget* cloned = Access::clonedTree(*dialog);
    QVERIFY(cloned);
    QStringList clonedExpanded;
    for (QTreeWidgetItemIterator it(cloned); *it; ++it) {
        if ((*it)->isExpanded())
            clonedExpanded << rowPath(*it);
    }
    QCOMPARE(clonedExpanded, expanded);
    // Mirroring into the clone changed nothing in the original.
    QStringList originalExpanded;
    for (QTreeWidgetItemIterator it(original); *it; ++it) {
        if ((*it)->isExpanded())
            originalExpanded << rowPath(*it);
    }
    QCOMPARE(originalExpanded, expanded);
}

// ---------------------------------------------------------------- tree marks

void tst_DisplayModelDialogCloneMode::identicalCloneMarksNothing()
{
    // The sample has duplicate rows, shells, labelable items and edit-model rows.
    auto viewModel = buildSampleViewModel();
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    DisplayItemTreeWidget* clonedTree = Access::clonedTree(*dialog);
    QVERIFY(clonedTree->topLevelItemCount() == 1);
    QCOMPARE(marks(clonedTree), QStringList());
    QCOMPARE(markFormProblem(clonedTree), QString());
    for (QTreeWidgetItemIterator it(clonedTree); *it; ++it)
        QVERIFY2(debugIconName((*it)->icon(0)) != QLatin1String("visible_different"), qPrintable(rowPath(*it)));

    // Every row, made current, shows its clone's values all grey.
    int compared = 0;
    for (QTreeWidgetItemIterator it(dialog->m_displayItemTreeWidget); *it; ++it) {
        auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(*it);
        if (!row)
            continue; // edit-model rows have no counterpart in the clone
        dialog->m_displayItemTreeWidget->setCurrentItem(row);
        QTreeWidgetItem* clonedCurrent = clonedTree->currentItem();
        QVERIFY(clonedCurrent);
        QCOMPARE(rowPath(clonedCurrent), rowPath(row));
        QVERIFY(Access::onlyCompareMirrored(*dialog));
        const QStringList rows = namesAndColours(Access::clonedBusinessPane(*dialog))
            + namesAndColours(Access::clonedDisplayPane(*dialog));
        QVERIFY(rows.contains(QStringLiteral("pointer [grey]")));
        QVERIFY(rows.contains(QStringLiteral("pointer (DisplayItemInterface) [grey]")));
        for (const QString& line : rows)
            QVERIFY2(line.endsWith(QLatin1String("[grey]")), qPrintable(rowPath(row) + ": " + line));
        ++compared;
    }
    QVERIFY(compared > 100);
}

void tst_DisplayModelDialogCloneMode::treeMarks_data()
{
    QTest::addColumn<DefectList>("defects");
    QTest::addColumn<QStringList>("expected");
    using K = CloneDefect::Kind;

    QTest::newRow("faithful clone") << DefectList{} << QStringList{};
    QTest::newRow("visibility of a leaf")
        << DefectList{{K::FlipVisibility, "C1"}}
        << QStringList{"root/A [different visible_different]", "root/A/B [different visible_different]",
                       "root/A/B/C1 [different visible_different]"};
    QTest::newRow("visibility of a child of the top row")
        << DefectList{{K::FlipVisibility, "E"}} << QStringList{"root/E [different visible_different]"};
    QTest::newRow("visibility of the top row itself")
        << DefectList{{K::FlipVisibility, "root"}} << QStringList{"root [different visible_different]"};
    QTest::newRow("added leaf") << DefectList{{K::AddChild, "B"}}
                                << QStringList{"root/A [bold]", "root/A/B [bold]", "root/A/B/Unexpected child [bold]"};
    QTest::newRow("repeated subtree") << DefectList{{K::RepeatChild, "D"}}
                                      << QStringList{"root/A [bold]", "root/A/D[2] [bold]", "root/A/D[2]/D1 [bold]"};
    QTest::newRow("repeated subtree in the middle")
        << DefectList{{K::RepeatChild, "B"}}
        << QStringList{"root/A [bold]",         "root/A/B[1] [bold]", "root/A/B[1]/C1 [bold]",
                       "root/A/B[1]/C2 [bold]", "root/A/D [bold]",    "root/A/D/D1 [bold]"};
    QTest::newRow("added child of the top row")
        << DefectList{{K::AddChild, "root"}} << QStringList{"root [bold]", "root/Unexpected child [bold]"};
    QTest::newRow("missing last leaf") << DefectList{{K::DropChild, "C2"}} << QStringList{"root/A [bold]"};
    QTest::newRow("missing first leaf") << DefectList{{K::DropChild, "C1"}}
                                        << QStringList{"root/A [bold]", "root/A/B [bold]", "root/A/B/C2 [bold]"};
    QTest::newRow("missing subtree") << DefectList{{K::DropChild, "B"}}
                                     << QStringList{"root/A [bold]", "root/A/D [bold]", "root/A/D/D1 [bold]"};
    QTest::newRow("missing child of the top row") << DefectList{{K::DropChild, "E"}} << QStringList{};
    QTest::newRow("shared subtree") << DefectList{{K::ShareChild, "B"}} << QStringList{};
    QTest::newRow("other type") << DefectList{{K::ChangeChildType, "D"}} << QStringList{};
    QTest::newRow("other property value") << DefectList{{K::ChangePropertyValue, "C1"}} << QStringList{};
    QTest::newRow("hidden and missing") << DefectList{{K::FlipVisibility, "D1"}, {K::DropChild, "C2"}}
                                        << QStringList{"root/A [bold, different visible_different]",
                                                       "root/A/D [different visible_different]",
                                                       "root/A/D/D1 [different visible_different]"};
}

void tst_DisplayModelDialogCloneMode::treeMarks()
{
    QFETCH(DefectList, defects);
    QFETCH(QStringList, expected);

    auto root = buildRuleTree();
    // The property defect needs a display property to change.
    findItem(root, "C1")->setDisplayProperty("colour", "red");
    auto viewModel = makeViewModel(root);
    setDefects(*viewModel, defects);
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    QVERIFY(viewModel->lastCloneUnappliedDefects().empty());

    QCOMPARE(marks(Access::clonedTree(*dialog)), expected);
    QCOMPARE(markFormProblem(Access::clonedTree(*dialog)), QString());
    // The original tree is never marked.
    QCOMPARE(marks(dialog->m_displayItemTreeWidget), QStringList());
    QCOMPARE(markFormProblem(dialog->m_displayItemTreeWidget), QString());
}

void tst_DisplayModelDialogCloneMode::missingChildMarkingStartsAtGrandparent()
{
    // root > P > A > B > (C1, C2); the clone lacks C2.
    auto root = Test::buildTree({"root", {{"P", {{"A", {{"B", {{"C1"}, {"C2"}}}}}}}}});
    auto viewModel = makeViewModel(root);
    setDefects(*viewModel, {{CloneDefect::Kind::DropChild, "C2"}});
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    DisplayItemTreeWidget* tree = Access::clonedTree(*dialog);

    // Marking starts at the missing row's grandparent A: its parent B stays plain.
    QVERIFY(!isBold(rowByPath(tree, QStringLiteral("root/P/A/B"))));
    QVERIFY(isBold(rowByPath(tree, QStringLiteral("root/P/A"))));
    QVERIFY(isBold(rowByPath(tree, QStringLiteral("root/P"))));
    QVERIFY(!isBold(rowByPath(tree, QStringLiteral("root"))));
    QCOMPARE(marks(tree), (QStringList{"root/P [bold]", "root/P/A [bold]"}));
}

void tst_DisplayModelDialogCloneMode::childCountTestIsOneSided_data()
{
    QTest::addColumn<DefectList>("defects");
    QTest::addColumn<bool>("parentBold");
    using K = CloneDefect::Kind;
    // Only a clone with more children than its original marks the parent row.
    QTest::newRow("clone has more children") << DefectList{{K::AddChild, "B"}} << true;
    QTest::newRow("clone has fewer children") << DefectList{{K::DropChild, "C2"}} << false;
}

void tst_DisplayModelDialogCloneMode::childCountTestIsOneSided()
{
    QFETCH(DefectList, defects);
    QFETCH(bool, parentBold);

    auto viewModel = makeViewModel(buildRuleTree());
    setDefects(*viewModel, defects);
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    QTreeWidgetItem* clonedB = rowByPath(Access::clonedTree(*dialog), QStringLiteral("root/A/B"));
    QVERIFY(clonedB);
    QVERIFY(clonedB->childCount()
            != rowByPath(dialog->m_displayItemTreeWidget, QStringLiteral("root/A/B"))->childCount());
    QCOMPARE(isBold(clonedB), parentBold);
    // Either way the grandparent A is bold.
    QVERIFY(isBold(rowByPath(Access::clonedTree(*dialog), QStringLiteral("root/A"))));
}

void tst_DisplayModelDialogCloneMode::topLevelRowIsNeverPaintedUpwards_data()
{
    QTest::addColumn<DefectList>("defects");
    QTest::addColumn<QStringList>("expected");
    using K = CloneDefect::Kind;
    // The upward walks stop below the top row.
    QTest::newRow("deep text difference")
        << DefectList{{K::DropChild, "C1"}} << QStringList{"root/A [bold]", "root/A/B [bold]", "root/A/B/C2 [bold]"};
    QTest::newRow("missing grandchild of the top row")
        << DefectList{{K::DropChild, "D1"}} << QStringList{"root/A [bold]"};
    // The marking of a missing child of the top row would start above the top row.
    QTest::newRow("missing child of the top row") << DefectList{{K::DropChild, "E"}} << QStringList{};
    // E moves to A's place and is bold; the rows missing below it would start
    // marking at the top row, which stays plain.
    QTest::newRow("missing subtree under the top row")
        << DefectList{{K::DropChild, "A"}} << QStringList{"root/E [bold]"};
    QTest::newRow("deep visibility difference")
        << DefectList{{K::FlipVisibility, "D1"}}
        << QStringList{"root/A [different visible_different]", "root/A/D [different visible_different]",
                       "root/A/D/D1 [different visible_different]"};
}

void tst_DisplayModelDialogCloneMode::topLevelRowIsNeverPaintedUpwards()
{
    QFETCH(DefectList, defects);
    QFETCH(QStringList, expected);

    auto viewModel = makeViewModel(buildRuleTree());
    setDefects(*viewModel, defects);
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    DisplayItemTreeWidgetItem* top = Access::clonedTopRow(*dialog);
    QVERIFY(top);
    QVERIFY(!isBold(top));
    QVERIFY(!top->isDifferentVisibility());
    QCOMPARE(int(top->font(0).weight()), int(QFont::Normal));
    QCOMPARE(marks(Access::clonedTree(*dialog)), expected);
}

void tst_DisplayModelDialogCloneMode::missingDuplicateRowIsExempt_data()
{
    QTest::addColumn<DefectList>("defects");
    QTest::addColumn<QStringList>("expected");
    using K = CloneDefect::Kind;
    // The module lists only S1 in the clone: the missing duplicate row of S2 marks nothing.
    QTest::newRow("duplicate row missing") << DefectList{{K::DropGeometryEntry, "Module"}} << QStringList{};
    // S2 gone altogether: its proper row marks from its grandparent Module up.
    QTest::newRow("geometry item missing")
        << DefectList{{K::DropChild, "S2"}} << QStringList{"root/Process [bold]", "root/Process/Module [bold]"};
}

void tst_DisplayModelDialogCloneMode::missingDuplicateRowIsExempt()
{
    QFETCH(DefectList, defects);
    QFETCH(QStringList, expected);

    auto viewModel = makeViewModel(buildGeometryTree());
    setDefects(*viewModel, defects);
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    QVERIFY(viewModel->lastCloneUnappliedDefects().empty());

    QTreeWidget* original = dialog->m_displayItemTreeWidget;
    QCOMPARE(dumpTree(original),
             (QStringList{"root", "root/Process", "root/Process/Module", "root/Process/Module/Geometry",
                          "root/Process/Module/Geometry/S1", "root/Process/Module/Geometry/S2",
                          "root/Process/Module/S1", "root/Process/Module/S2"}));
    auto* lastDuplicate
        = dynamic_cast<DisplayItemTreeWidgetItem*>(original->topLevelItem(0)->child(0)->child(0)->child(2));
    QVERIFY(lastDuplicate && lastDuplicate->isDuplicate());
    QTreeWidgetItem* clonedModule = rowByPath(Access::clonedTree(*dialog), QStringLiteral("root/Process/Module"));
    QCOMPARE(clonedModule->childCount(), 2);

    QCOMPARE(marks(Access::clonedTree(*dialog)), expected);
}

// ---------------------------------------------------------------- property colours

void tst_DisplayModelDialogCloneMode::propertyValuesAreColoured_data()
{
    QTest::addColumn<DefectList>("defects");
    QTest::addColumn<QStringList>("business");
    QTest::addColumn<QStringList>("display");
    using K = CloneDefect::Kind;

    QTest::newRow("faithful") << DefectList{} << QStringList{"pointer [grey]", "material [grey]"}
                              << QStringList{"pointer (DisplayItemInterface) [grey]", "display item type [grey]",
                                             "colour [grey]", "width [grey]"};
    // The first display property ("colour") gets " (cloned)" appended.
    QTest::newRow("changed value") << DefectList{{K::ChangePropertyValue, "C1"}}
                                   << QStringList{"pointer [grey]", "material [grey]"}
                                   << QStringList{"pointer (DisplayItemInterface) [grey]", "display item type [grey]",
                                                  "colour [red]", "width [grey]"};
    // A labelable copy: another type and two label rows beyond the end of the original list.
    QTest::newRow("other type") << DefectList{{K::ChangeChildType, "C1"}}
                                << QStringList{"pointer [grey]", "material [grey]"}
                                << QStringList{"pointer (DisplayItemInterface) [grey]",
                                               "display item type [red]",
                                               "colour [grey]",
                                               "width [grey]",
                                               "Label [red]",
                                               "Labels allowed [red]"};
}

void tst_DisplayModelDialogCloneMode::propertyValuesAreColoured()
{
    QFETCH(DefectList, defects);
    QFETCH(QStringList, business);
    QFETCH(QStringList, display);

    auto root = buildRuleTree();
    auto c1 = findItem(root, "C1");
    c1->setBusinessProperty("material", "steel");
    c1->setDisplayProperty("colour", "red");
    c1->setDisplayProperty("width", "2");
    auto viewModel = makeViewModel(root);
    setDefects(*viewModel, defects);
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);

    clickRow(dialog->m_displayItemTreeWidget,
             rowByPath(dialog->m_displayItemTreeWidget, QStringLiteral("root/A/B/C1")));
    QCOMPARE(rowPath(dialog->m_displayItemTreeWidget->currentItem()), QStringLiteral("root/A/B/C1"));
    QCOMPARE(rowPath(Access::clonedTree(*dialog)->currentItem()), QStringLiteral("root/A/B/C1"));
    QCOMPARE(namesAndColours(Access::clonedBusinessPane(*dialog)), business);
    QCOMPARE(namesAndColours(Access::clonedDisplayPane(*dialog)), display);
    // The cloned panes show the clone's values; the original panes stay uncoloured.
    const QStringList displayRows = colouredRows(Access::clonedDisplayPane(*dialog));
    const QString colourRow = displayRows.filter(QStringLiteral("colour = ")).value(0);
    QCOMPARE(colourRow.section(QLatin1Char('['), 0, 0).trimmed(),
             defects.isEmpty() || defects.first().first != CloneDefect::Kind::ChangePropertyValue
                 ? QStringLiteral("colour = red")
                 : QStringLiteral("colour = red (cloned)"));
    for (const QString& line : colouredRows(dialog->m_displayItemProperties))
        QVERIFY2(line.endsWith(QLatin1String("[plain]")), qPrintable(line));
}

void tst_DisplayModelDialogCloneMode::pointerPropertiesNeverRed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("colour");
    QTest::newRow("pointer") << "pointer"
                             << "grey";
    QTest::newRow("pointer (DisplayItemInterface)") << "pointer (DisplayItemInterface)"
                                                    << "grey";
    // Only the two exact names are exempt.
    QTest::newRow("Pointer") << "Pointer"
                             << "red";
    QTest::newRow("pointer id") << "pointer id"
                                << "red";
}

void tst_DisplayModelDialogCloneMode::pointerPropertiesNeverRed()
{
    QFETCH(QString, name);
    QFETCH(QString, colour);

    auto root = buildRuleTree();
    findItem(root, "D1")->setDisplayProperty(name.toStdString(), "0x1000");
    auto viewModel = makeViewModel(root);
    viewModel->setCloneDefects(
        {CloneDefect{CloneDefect::Kind::ChangePropertyValue, "D1", name.toStdString(), "0x2000"}});
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    QVERIFY(viewModel->lastCloneUnappliedDefects().empty());

    clickRow(dialog->m_displayItemTreeWidget,
             rowByPath(dialog->m_displayItemTreeWidget, QStringLiteral("root/A/D/D1")));
    QCOMPARE(rowPath(Access::clonedTree(*dialog)->currentItem()), QStringLiteral("root/A/D/D1"));
    const QStringList rows = colouredRows(Access::clonedDisplayPane(*dialog));
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows.at(2), name + QStringLiteral(" = 0x2000 [") + colour + QLatin1Char(']'));
    // The host's own pointer rows differ between model and copy and stay grey.
    QCOMPARE(namesAndColours(Access::clonedDisplayPane(*dialog)).at(0),
             QStringLiteral("pointer (DisplayItemInterface) [grey]"));
    QCOMPARE(namesAndColours(Access::clonedBusinessPane(*dialog)), QStringList{"pointer [grey]"});
}

void tst_DisplayModelDialogCloneMode::compareModeCheckedWithDifferentRowsGreysAll()
{
    // root > P > (A, B, C); the clone lacks B, so C' stands where B stands.
    auto root = Test::buildTree({"root", {{"P", {{"A"}, {"B"}, {"C"}}}}});
    findItem(root, "B")->setDisplayProperty("colour", "red");
    findItem(root, "C")->setDisplayProperty("colour", "blue");
    auto viewModel = makeViewModel(root);
    setDefects(*viewModel, {{CloneDefect::Kind::DropChild, "B"}});
    SceneDrawAreaPresenter presenter;
    DisplayModelDialog* dialog = openDialog(viewModel, true, &presenter);
    QVERIFY(dialog);
    QVERIFY(dialog->m_propertyCompareMode->isChecked());

    // The user picks C' in the cloned tree; the original tree follows by position to B.
    DisplayItemTreeWidget* clonedTree = Access::clonedTree(*dialog);
    clickRow(clonedTree, rowByPath(clonedTree, QStringLiteral("root/P/C")));
    QCOMPARE(rowPath(clonedTree->currentItem()), QStringLiteral("root/P/C"));
    QCOMPARE(rowPath(dialog->m_displayItemTreeWidget->currentItem()), QStringLiteral("root/P/B"));
    QVERIFY(!Access::onlyCompareMirrored(*dialog));
    const QStringList grey{"pointer (DisplayItemInterface) [grey]", "display item type [grey]", "colour = blue [grey]"};
    QStringList display = colouredRows(Access::clonedDisplayPane(*dialog));
    QCOMPARE(display.size(), 3);
    QCOMPARE(namesAndColours(Access::clonedDisplayPane(*dialog)).mid(0, 2), grey.mid(0, 2));
    QCOMPARE(display.at(2), grey.at(2));
    QCOMPARE(namesAndColours(Access::clonedBusinessPane(*dialog)), QStringList{"pointer [grey]"});

    // Unchecked, the same two rows are compared: C's colour differs from B's.
    clickCheckBox(dialog->m_propertyCompareMode);
    QVERIFY(!dialog->m_propertyCompareMode->isChecked());
    QVERIFY(Access::onlyCompareMirrored(*dialog));
    display = colouredRows(Access::clonedDisplayPane(*dialog));
    QCOMPARE(display.at(2), QStringLiteral("colour = blue [red]"));
}

void tst_DisplayModelDialogCloneMode::compareModeChangeNeedsPresenter_data()
{
    QTest::addColumn<bool>("withPresenter");
    QTest::newRow("no draw area presenter") << false;
    QTest::newRow("draw area presenter") << true;
}

void tst_DisplayModelDialogCloneMode::compareModeChangeNeedsPresenter()
{
    QFETCH(bool, withPresenter);

    auto root = Test::buildTree({"root", {{"P", {{"A"}, {"B"}, {"C"}}}}});
    findItem(root, "B")->setDisplayProperty("colour", "red");
    findItem(root, "C")->setDisplayProperty("colour", "blue");
    auto viewModel = makeViewModel(root);
    setDefects(*viewModel, {{CloneDefect::Kind::DropChild, "B"}});
    SceneDrawAreaPresenter presenter;
    DisplayModelDialog* dialog = openDialog(viewModel, true, withPresenter ? &presenter : nullptr);
    QVERIFY(dialog);
    DisplayItemTreeWidget* clonedTree = Access::clonedTree(*dialog);
    clickRow(clonedTree, rowByPath(clonedTree, QStringLiteral("root/P/C")));
    const QStringList before = colouredRows(Access::clonedDisplayPane(*dialog));
    QCOMPARE(before.value(2), QStringLiteral("colour = blue [grey]"));

    clickCheckBox(dialog->m_propertyCompareMode);
    QVERIFY(!dialog->m_propertyCompareMode->isChecked());
    if (withPresenter) {
        QCOMPARE(colouredRows(Access::clonedDisplayPane(*dialog)).value(2), QStringLiteral("colour = blue [red]"));
        QCOMPARE(presenter.showCount(), 0);
    } else {
        // Nothing changes until the current row changes.
        QCOMPARE(colouredRows(Access::clonedDisplayPane(*dialog)), before);
        QVERIFY(!Access::onlyCompareMirrored(*dialog));
    }

    // The next row change compares by the new setting.
    clickRow(clonedTree, rowByPath(clonedTree, QStringLiteral("root/P/A")));
    QCOMPARE(rowPath(dialog->m_displayItemTreeWidget->currentItem()), QStringLiteral("root/P/A"));
    clickRow(clonedTree, rowByPath(clonedTree, QStringLiteral("root/P/C")));
    QCOMPARE(rowPath(dialog->m_displayItemTreeWidget->currentItem()), QStringLiteral("root/P/B"));
    QCOMPARE(colouredRows(Access::clonedDisplayPane(*dialog)).value(2), QStringLiteral("colour = blue [red]"));
}

// ---------------------------------------------------------------- mirroring

void tst_DisplayModelDialogCloneMode::currentRowIsMirroredBothWays()
{
    auto root = buildRuleTree();
    findItem(root, "C2")->setBusinessProperty("id", "c2");
    findItem(root, "E")->setBusinessProperty("id", "e");
    auto viewModel = makeViewModel(root);
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    QTreeWidget* original = dialog->m_displayItemTreeWidget;
    DisplayItemTreeWidget* cloned = Access::clonedTree(*dialog);
    const auto clonedRoot = Access::clonedViewModel(*dialog)->getDisplayModel()->getRootDisplayItem();
    QSignalSpy originalChanges(original, &QTreeWidget::currentItemChanged);
    QSignalSpy clonedChanges(cloned, &QTreeWidget::currentItemChanged);

    // Original to clone: the row at the same place, showing the clone's item.
    clickRow(original, rowByPath(original, QStringLiteral("root/A/B/C2")));
    QCOMPARE(rowPath(cloned->currentItem()), QStringLiteral("root/A/B/C2"));
    QCOMPARE(dynamic_cast<DisplayItemTreeWidgetItem*>(cloned->currentItem())->getDisplayItem(),
             std::shared_ptr<DisplayItemInterface>(findItem(clonedRoot, "C2")));
    QCOMPARE(originalChanges.count(), 1);
    QCOMPARE(clonedChanges.count(), 1);
    QVERIFY(!Access::syncingCurrentItem(*dialog));
    QCOMPARE(colouredRows(Access::clonedBusinessPane(*dialog)).value(1), QStringLiteral("id = c2 [grey]"));
    QCOMPARE(colouredRows(dialog->m_businessObjectProperties).value(1), QStringLiteral("id = c2 [plain]"));

    // Clone to original.
    clickRow(cloned, rowByPath(cloned, QStringLiteral("root/E")));
    QCOMPARE(rowPath(original->currentItem()), QStringLiteral("root/E"));
    QCOMPARE(dynamic_cast<DisplayItemTreeWidgetItem*>(original->currentItem())->getDisplayItem(),
             std::shared_ptr<DisplayItemInterface>(findItem(root, "E")));
    QCOMPARE(originalChanges.count(), 2);
    QCOMPARE(clonedChanges.count(), 2);
    QVERIFY(!Access::syncingCurrentItem(*dialog));
    QCOMPARE(colouredRows(dialog->m_businessObjectProperties).value(1), QStringLiteral("id = e [plain]"));
    QCOMPARE(colouredRows(Access::clonedBusinessPane(*dialog)).value(1), QStringLiteral("id = e [grey]"));
}

void tst_DisplayModelDialogCloneMode::expansionIsMirroredBothWays()
{
    auto viewModel = makeViewModel(buildRuleTree());
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    QTreeWidget* original = dialog->m_displayItemTreeWidget;
    DisplayItemTreeWidget* cloned = Access::clonedTree(*dialog);
    const auto expanded
        = [](QTreeWidget* tree, const char* path) { return rowByPath(tree, QString::fromLatin1(path))->isExpanded(); };
    QVERIFY(!expanded(cloned, "root"));

    original->expandItem(rowByPath(original, QStringLiteral("root")));
    QVERIFY(expanded(cloned, "root"));
    original->expandItem(rowByPath(original, QStringLiteral("root/A")));
    QVERIFY(expanded(cloned, "root/A"));
    QVERIFY(!expanded(cloned, "root/A/B"));

    // The cloned tree drives the original just the same.
    cloned->expandItem(rowByPath(cloned, QStringLiteral("root/A/D")));
    QVERIFY(expanded(original, "root/A/D"));
    QVERIFY(!expanded(original, "root/A/B"));
    cloned->collapseItem(rowByPath(cloned, QStringLiteral("root/A")));
    QVERIFY(!expanded(original, "root/A"));
    QVERIFY(expanded(original, "root"));

    original->collapseItem(rowByPath(original, QStringLiteral("root")));
    QVERIFY(!expanded(cloned, "root"));

    // A user's double click expands a cloned row (the cloned tree expands on
    // double click), and the original row follows.
    cloned->expandItem(rowByPath(cloned, QStringLiteral("root")));
    QTreeWidgetItem* clonedE = rowByPath(cloned, QStringLiteral("root/E"));
    QVERIFY(expanded(original, "root"));
    QVERIFY(clonedE->childCount() == 0);
    QTreeWidgetItem* clonedA = rowByPath(cloned, QStringLiteral("root/A"));
    QVERIFY(!clonedA->isExpanded());
    const QPoint onA = cloned->visualItemRect(clonedA).center();
    // What a user's double click delivers: the view expands only the row the first press hit.
    QTest::mousePress(cloned->viewport(), Qt::LeftButton, Qt::NoModifier, onA);
    QTest::mouseRelease(cloned->viewport(), Qt::LeftButton, Qt::NoModifier, onA);
    QTest::mouseDClick(cloned->viewport(), Qt::LeftButton, Qt::NoModifier, onA);
    QTest::mouseRelease(cloned->viewport(), Qt::LeftButton, Qt::NoModifier, onA);
    QVERIFY(clonedA->isExpanded());
    QVERIFY(expanded(original, "root/A"));
}

void tst_DisplayModelDialogCloneMode::everyRebuildConnectsAgain()
{
    auto viewModel = makeViewModel(buildRuleTree());
    DisplayModelDialog* dialog = openDialog(viewModel, false);
    QVERIFY(dialog);
    QTreeWidget* original = dialog->m_displayItemTreeWidget;
    const int expandedBefore = receiverCount(original, SIGNAL(itemExpanded(QTreeWidgetItem*)));
    const int collapsedBefore = receiverCount(original, SIGNAL(itemCollapsed(QTreeWidgetItem*)));

    switchCloneOn(dialog);
    DisplayItemTreeWidget* cloned = Access::clonedTree(*dialog);
    const int currentBefore = receiverCount(cloned, SIGNAL(currentItemChanged(QTreeWidgetItem*, QTreeWidgetItem*)));
    QCOMPARE(receiverCount(original, SIGNAL(itemExpanded(QTreeWidgetItem*))), expandedBefore + 1);
    QCOMPARE(receiverCount(original, SIGNAL(itemCollapsed(QTreeWidgetItem*))), collapsedBefore + 1);

    // Plain connections at every rebuild, none of them undone.
    dialog->setViewModel(viewModel);
    dialog->setViewModel(viewModel);
    QCOMPARE(receiverCount(original, SIGNAL(itemExpanded(QTreeWidgetItem*))), expandedBefore + 3);
    QCOMPARE(receiverCount(original, SIGNAL(itemCollapsed(QTreeWidgetItem*))), collapsedBefore + 3);
    QCOMPARE(receiverCount(cloned, SIGNAL(currentItemChanged(QTreeWidgetItem*, QTreeWidgetItem*))), currentBefore + 2);
    QCOMPARE(receiverCount(cloned, SIGNAL(itemExpanded(QTreeWidgetItem*))),
             receiverCount(cloned, SIGNAL(itemCollapsed(QTreeWidgetItem*))));

    // Mirroring works as before; the repeated slot calls change nothing more.
    original->expandItem(rowByPath(original, QStringLiteral("root")));
    QVERIFY(rowByPath(cloned, QStringLiteral("root"))->isExpanded());
    original->collapseItem(rowByPath(original, QStringLiteral("root")));
    QVERIFY(!rowByPath(cloned, QStringLiteral("root"))->isExpanded());
}

// ---------------------------------------------------------------- 3D view

void tst_DisplayModelDialogCloneMode::showCloneIn3dHandsViewModelsToPresenter()
{
    auto viewModel = makeViewModel(buildRuleTree());
    SceneDrawAreaPresenter presenter;
    presenter.showViewModel(viewModel);
    DisplayModelDialog* dialog = openDialog(viewModel, true, &presenter);
    QVERIFY(dialog);
    const std::shared_ptr<ViewModelInterface> original = viewModel;
    // Clone mode alone leaves the draw area alone.
    QCOMPARE(presenter.showCount(), 1);

    clickCheckBox(dialog->m_showCloneIn3dCheckBox);
    QVERIFY(Access::showCloneIn3d(*dialog));
    QCOMPARE(presenter.showCount(), 2);
    QVERIFY(Access::clonedViewModel(*dialog));
    QCOMPARE(presenter.getViewModel(), Access::clonedViewModel(*dialog));

    clickCheckBox(dialog->m_showCloneIn3dCheckBox);
    QVERIFY(!Access::showCloneIn3d(*dialog));
    QCOMPARE(presenter.showCount(), 3);
    QCOMPARE(presenter.getViewModel(), original);

    clickCheckBox(dialog->m_showCloneIn3dCheckBox);
    QCOMPARE(presenter.getViewModel(), Access::clonedViewModel(*dialog));

    // Hiding the dialog gives the original back, showing it hands the clone over again.
    dialog->hide();
    QCOMPARE(presenter.getViewModel(), original);
    dialog->show();
    QCOMPARE(presenter.getViewModel(), Access::clonedViewModel(*dialog));

    // Clone mode off: the original is drawn; the 3D setting is kept, the box disabled.
    const int before = presenter.showCount();
    clickCheckBox(dialog->m_useCloneCheckBox);
    QCOMPARE(presenter.showCount(), before + 1);
    QCOMPARE(presenter.getViewModel(), original);
    QVERIFY(Access::showCloneIn3d(*dialog));
    QVERIFY(dialog->m_showCloneIn3dCheckBox->isChecked());
    QVERIFY(!dialog->m_showCloneIn3dCheckBox->isEnabled());

    // On again: a fresh clone goes straight to the draw area.
    const int clones = viewModel->cloneCount();
    switchCloneOn(dialog);
    QCOMPARE(viewModel->cloneCount(), clones + 1);
    QCOMPARE(presenter.showCount(), before + 2);
    QCOMPARE(presenter.getViewModel(), Access::clonedViewModel(*dialog));
}

void tst_DisplayModelDialogCloneMode::showCloneIn3dWithoutPresenterOnlyStoresState()
{
    auto viewModel = makeViewModel(buildRuleTree());
    DisplayModelDialog* dialog = openDialog(viewModel, true);
    QVERIFY(dialog);
    clickCheckBox(dialog->m_showCloneIn3dCheckBox);
    QVERIFY(Access::showCloneIn3d(*dialog));

    // A presenter set later gets the clone at once.
    SceneDrawAreaPresenter presenter;
    dialog->setDrawAreaPresenter(&presenter);
    QCOMPARE(presenter.showCount(), 1);
    QCOMPARE(presenter.getViewModel(), Access::clonedViewModel(*dialog));
    dialog->setDrawAreaPresenter(nullptr);
    clickCheckBox(dialog->m_showCloneIn3dCheckBox);
    QVERIFY(!Access::showCloneIn3d(*dialog));
    QCOMPARE(presenter.showCount(), 1);
}

QTEST_MAIN(tst_DisplayModelDialogCloneMode)
#include "tst_displaymodeldialog_clonemode.moc"
