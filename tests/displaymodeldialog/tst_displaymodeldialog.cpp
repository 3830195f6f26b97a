#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/BKCheckBox.h>
#include <hostcontract/EditorDisplayModel.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/FixedEntryOwner.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/ProcessStepProvider.h>
#include <referencehost/model/SceneContext.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneDrawAreaPresenter.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/model/ShellItem.h>
#include <referencehost/model/ToolKeyLookup.h>
#include <referencehost/model/ToolKeySource.h>

#include "../common/ContextMenuDriver.h"
#include "../common/ContextMarkingTranslator.h"
#include "../common/TestTree.h"
#include "../common/DebugIcons.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMetaEnum>
#include <QPushButton>
#include <QSet>
#include <QSpacerItem>
#include <QTest>
#include <QToolTip>
#include <QTranslator>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <memory>
#include <type_traits>
#include <typeinfo>

using namespace Brennvik;
using Brennvik::Test::debugIconName;

namespace {

using Brennvik::Test::makeViewModel;

std::shared_ptr<DisplayItem> addChild(const std::shared_ptr<DisplayItem>& parent, const std::string& name)
{
    auto child = std::make_shared<DisplayItem>(name);
    parent->appendChild(child);
    return child;
}

std::shared_ptr<GeometryModuleItem> addModule(const std::shared_ptr<DisplayItem>& parent, const std::string& name)
{
    auto module = std::make_shared<GeometryModuleItem>(name);
    parent->appendChild(module);
    return module;
}

// One line per row, pre-order: indent, text, item index (when set),
// "dup" for duplicate rows and "(edit)" for rows that are not display item rows.
void dumpRow(QTreeWidgetItem* row, int depth, QStringList& lines)
{
    QString line = QString(depth * 2, QLatin1Char(' ')) + row->text(0);
    if (auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row)) {
        if (itemRow->getItemIndex() >= 0)
            line += QStringLiteral(" #%1").arg(itemRow->getItemIndex());
        if (itemRow->isDuplicate())
            line += QStringLiteral(" dup");
    } else {
        line += QStringLiteral(" (edit)");
    }
    lines << line;
    for (int i = 0; i < row->childCount(); ++i)
        dumpRow(row->child(i), depth + 1, lines);
}

QStringList dumpTree(QTreeWidget* tree)
{
    QStringList lines;
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        dumpRow(tree->topLevelItem(i), 0, lines);
    return lines;
}

// The row reached from the top row by child positions.
QTreeWidgetItem* rowAt(QTreeWidget* tree, std::initializer_list<int> path)
{
    QTreeWidgetItem* row = tree->topLevelItem(0);
    for (int index : path) {
        if (!row)
            return nullptr;
        row = row->child(index);
    }
    return row;
}

DisplayItemTreeWidgetItem* itemRowAt(QTreeWidget* tree, std::initializer_list<int> path)
{
    return dynamic_cast<DisplayItemTreeWidgetItem*>(rowAt(tree, path));
}

// (name, value, tool tip) of every row of a property pane.
QStringList paneRows(QTreeWidget* pane)
{
    QStringList rows;
    for (int i = 0; i < pane->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = pane->topLevelItem(i);
        rows << row->text(0) + QStringLiteral(" = ") + row->text(1) + QStringLiteral(" (tip: ") + row->toolTip(1)
                + QStringLiteral(")");
    }
    return rows;
}

QStringList expectedRows(const PropertyList& properties)
{
    QStringList rows;
    for (const Property& property : properties) {
        const QString value = QString::fromStdString(property.second);
        rows << QString::fromStdString(property.first) + QStringLiteral(" = ") + value + QStringLiteral(" (tip: ")
                + value + QStringLiteral(")");
    }
    return rows;
}

QString policyName(QSizePolicy::Policy policy)
{
    return QString::fromLatin1(QMetaEnum::fromType<QSizePolicy::Policy>().valueToKey(policy));
}

// A layout's items in order: widgets and layouts by object name, spacers by
// size and policies, with the cell for grid layouts.
QStringList describeLayout(QLayout* layout)
{
    QStringList items;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem* item = layout->itemAt(i);
        QString text;
        if (item->widget()) {
            text = item->widget()->objectName();
        } else if (item->layout()) {
            text = item->layout()->objectName();
        } else if (QSpacerItem* spacer = item->spacerItem()) {
            text = QStringLiteral("spacer %1x%2 %3/%4")
                       .arg(spacer->sizeHint().width())
                       .arg(spacer->sizeHint().height())
                       .arg(policyName(spacer->sizePolicy().horizontalPolicy()))
                       .arg(policyName(spacer->sizePolicy().verticalPolicy()));
        }
        if (auto* grid = qobject_cast<QGridLayout*>(layout)) {
            int row = 0, column = 0, rowSpan = 0, columnSpan = 0;
            grid->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
            text += QStringLiteral(" @%1,%2 %3x%4").arg(row).arg(column).arg(rowSpan).arg(columnSpan);
        }
        items << text;
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

using Brennvik::Test::ContextMarkingTranslator;

} // namespace

class tst_DisplayModelDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();

    // form and lifecycle
    void dialogInheritsItsForm();
    void formWidgets_data();
    void formWidgets();
    void formLayouts_data();
    void formLayouts();
    void formFrameAndSize();
    void treeWidgetSettings();
    void searchTypeEntries_data();
    void searchTypeEntries();
    void textsAreTranslatedInTheFormContext();
    void freshDialogShowsEmptyForm();
    void emptyViewModelLeavesEmptyTreeAndDisablesDialog();
    void treeIsBuiltOnlyBySetViewModel();
    void mainTreeHasDisplayItemActions();
    void drawAreaIsLeftAloneOutsideCloneMode();
    void closingOnlyHides();
    void destructionUnregistersRowsAndReleasesViewModel();

    // tree building
    void rootWithoutChildrenAndEditPrimitives();
    void geometryDuplicates_data();
    void geometryDuplicates();
    void rebuildOnNewViewModelReplacesTree();
    void initialEntry_data();
    void initialEntry();
    void navigateSelectsEveryRowOfTheItem();

    // events from the model
    void addedSubtreeIsAppended();
    void subtreeAddedUnderDuplicateRow();
    void removedItemLosesOnlyItsFirstRow();
    void propertyChangesReprintCurrentRowOnly();
    void rowOfGoneItemNeverCrashes();
    void contextMenuHidesExactlyTheCollectedItems();

    // double click
    void doubleClickTogglesRowAndDuplicateChildren();
    void doubleClickInColumnOneChangesNothing();
    void doubleClickActsOnTheCurrentRow();
    void doubleClickTogglesEditModelRow();

    // property printing
    void labelableItemProperties_data();
    void labelableItemProperties();
    void plainItemHasNoLabelRows();
    void editModelRowFillsOnlyDisplayPane();
    void noCurrentRowEmptiesPanes();
    void valueToolTipOnHover();

private:
    void setModel(const std::shared_ptr<SceneViewModel>& viewModel);
    void doubleClickRow(QTreeWidgetItem* row);

    DisplayModelDialog* m_dialog = nullptr;      // shown once, cleared per case
    DisplayModelDialog* m_freshDialog = nullptr; // never given a view model
    QAbstractItemModelTester* m_modelTester = nullptr;
};

void tst_DisplayModelDialog::initTestCase()
{
    m_freshDialog = new DisplayModelDialog(nullptr);
    m_freshDialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_freshDialog));

    m_dialog = new DisplayModelDialog(nullptr);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog));
    // Watches every change the dialog makes to its tree, in every case.
    m_modelTester = new QAbstractItemModelTester(m_dialog->m_displayItemTreeWidget->model(),
                                                 QAbstractItemModelTester::FailureReportingMode::QtTest, this);
}

void tst_DisplayModelDialog::cleanupTestCase()
{
    delete m_modelTester;
    delete m_dialog;
    delete m_freshDialog;
}

void tst_DisplayModelDialog::cleanup()
{
    m_dialog->setViewModel({});
    QCOMPARE(m_dialog->m_displayItemTreeWidget->topLevelItemCount(), 0);
}

void tst_DisplayModelDialog::setModel(const std::shared_ptr<SceneViewModel>& viewModel)
{
    m_dialog->setViewModel(viewModel);
    m_dialog->m_displayItemTreeWidget->expandAll();
}

void tst_DisplayModelDialog::doubleClickRow(QTreeWidgetItem* row)
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->scrollToItem(row);
    const QRect rect = tree->visualItemRect(row);
    QVERIFY(rect.isValid());
    // What a user's double click delivers: the view reacts to the double
    // click only on the row that the first press hit.
    const QPoint pos = rect.center();
    QTest::mousePress(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
    QTest::mouseRelease(tree->viewport(), Qt::LeftButton, Qt::NoModifier, pos);
}

// ---------------------------------------------------------------- form and lifecycle

void tst_DisplayModelDialog::dialogInheritsItsForm()
{
    static_assert(std::is_base_of_v<QDialog, DisplayModelDialog>, "a dialog");
    static_assert(std::is_base_of_v<Ui::DisplayModelDialogClass, DisplayModelDialog>, "with its form");

    // The form members are the widgets of the dialog, found by their object names.
    DisplayModelDialog* dialog = m_freshDialog;
    QCOMPARE(dialog->objectName(), QStringLiteral("DisplayModelDialogClass"));
    QCOMPARE(static_cast<QWidget*>(dialog->m_displayItemTreeWidget),
             dialog->findChild<QWidget*>(QStringLiteral("m_displayItemTreeWidget")));
    QCOMPARE(static_cast<QWidget*>(dialog->m_useCloneCheckBox),
             dialog->findChild<QWidget*>(QStringLiteral("m_useCloneCheckBox")));
    QCOMPARE(static_cast<QLayout*>(dialog->m_mainHLayout),
             dialog->findChild<QLayout*>(QStringLiteral("m_mainHLayout")));

    // Exactly the library's tree widget, not a stand-in.
    QVERIFY(typeid(*dialog->m_displayItemTreeWidget) == typeid(DisplayItemTreeWidget));
    QCOMPARE(dialog->m_displayItemTreeWidget->metaObject()->className(), "Brennvik::DisplayItemTreeWidget");
    QCOMPARE(dialog->m_displayItemTreeWidget->parentWidget(), static_cast<QWidget*>(dialog));
}

void tst_DisplayModelDialog::formWidgets_data()
{
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("parentName");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<int>("checked"); // -1: not a check box
    QTest::addColumn<QVariantMap>("properties");

    const QString dialog = QStringLiteral("DisplayModelDialogClass");
    const QString frame = QStringLiteral("frame");
    const QVariantMap none;

    QTest::newRow("frame") << "frame"
                           << "QFrame" << dialog << QString() << true << -1 << none;
    QTest::newRow("search value label") << "m_searchValueLbl_3"
                                        << "QLabel" << frame << "Search Value:" << true << -1 << none;
    QTest::newRow("search value") << "m_searchValueLE"
                                  << "QLineEdit" << frame << QString() << true << -1
                                  << QVariantMap{{"readOnly", false}};
    QTest::newRow("search criteria label") << "m_searchTypeLbl_3"
                                           << "QLabel" << frame << "Search Criteria:" << true << -1 << none;
    QTest::newRow("search criteria") << "m_searchTypeCB"
                                     << "QComboBox" << frame << "Any (*)" << true << -1 << none;
    QTest::newRow("count label") << "label_3"
                                 << "QLabel" << frame << "Number of Display Items:" << true << -1 << none;
    QTest::newRow("count") << "m_displayItemCountLE"
                           << "QLineEdit" << frame << QString() << true << -1 << QVariantMap{{"readOnly", true}};
    QTest::newRow("update") << "m_displayItemCountPB"
                            << "QPushButton" << frame << "Update" << true << -1 << none;
    QTest::newRow("find next") << "m_findDisplayItemPB"
                               << "QPushButton" << frame << "Find next" << true << -1 << none;
    QTest::newRow("clone") << "m_useCloneCheckBox"
                           << "Brennvik::BKCheckBox" << frame << "Clone" << true << 0 << none;
    QTest::newRow("clone in 3D") << "m_showCloneIn3dCheckBox"
                                 << "Brennvik::BKCheckBox" << frame << "Show Clone in 3D View" << false << 0 << none;
    QTest::newRow("compare mode") << "m_propertyCompareMode"
                                  << "Brennvik::BKCheckBox" << frame << "Only compare mirrored item properties" << false
                                  << 1 << none;
    QTest::newRow("business label") << "label_2"
                                    << "QLabel" << dialog << "Business object properties" << true << -1
                                    << QVariantMap{{"indent", 3}};
    QTest::newRow("business pane") << "m_businessObjectProperties"
                                   << "QTreeWidget" << dialog << "Name|Value" << true << -1
                                   << QVariantMap{{"columnCount", 2}};
    QTest::newRow("display label") << "label"
                                   << "QLabel" << dialog << "Display item properties" << true << -1
                                   << QVariantMap{{"indent", 3}};
    QTest::newRow("display pane") << "m_displayItemProperties"
                                  << "QTreeWidget" << dialog << "Name|Value" << true << -1
                                  << QVariantMap{{"columnCount", 2}};
    QTest::newRow("tree") << "m_displayItemTreeWidget"
                          << "Brennvik::DisplayItemTreeWidget" << dialog << "Display items" << true << -1
                          << QVariantMap{{"columnCount", 1}, {"expandsOnDoubleClick", false}};
}

void tst_DisplayModelDialog::formWidgets()
{
    QFETCH(QString, objectName);
    QFETCH(QString, className);
    QFETCH(QString, parentName);
    QFETCH(QString, text);
    QFETCH(bool, enabled);
    QFETCH(int, checked);
    QFETCH(QVariantMap, properties);

    const QList<QWidget*> found = m_freshDialog->findChildren<QWidget*>(objectName);
    QCOMPARE(found.size(), 1);
    QWidget* widget = found.first();
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);
    QCOMPARE(widget->parentWidget()->objectName(), parentName);

    QString shownText;
    if (auto* label = qobject_cast<QLabel*>(widget))
        shownText = label->text();
    else if (auto* button = qobject_cast<QAbstractButton*>(widget))
        shownText = button->text();
    else if (auto* lineEdit = qobject_cast<QLineEdit*>(widget))
        shownText = lineEdit->text();
    else if (auto* combo = qobject_cast<QComboBox*>(widget))
        shownText = combo->currentText();
    else if (auto* tree = qobject_cast<QTreeWidget*>(widget))
        shownText = headerTexts(tree).join(QLatin1Char('|'));
    QCOMPARE(shownText, text);

    QCOMPARE(widget->isEnabled(), enabled);
    if (checked >= 0) {
        auto* checkBox = qobject_cast<BKCheckBox*>(widget);
        QVERIFY(checkBox);
        QCOMPARE(checkBox->isChecked(), checked == 1);
    }
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        QCOMPARE(widget->property(it.key().toLatin1().constData()), it.value());
}

void tst_DisplayModelDialog::formLayouts_data()
{
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("owner"); // widget whose layout it is, or the layout that holds it
    QTest::addColumn<int>("spacing");
    QTest::addColumn<QString>("margins"); // left,top,right,bottom; checked for the layouts of widgets only
    QTest::addColumn<QStringList>("items");

    const QString spacer = QStringLiteral("spacer 0x0 Expanding/Minimum");

    QTest::newRow("verticalLayout") << "verticalLayout"
                                    << "QVBoxLayout"
                                    << "DisplayModelDialogClass" << 2 << "0,4,0,4"
                                    << QStringList{"frame", "m_mainHLayout"};
    QTest::newRow("gridLayout")
        << "gridLayout"
        << "QGridLayout"
        << "frame" << 6 << "11,11,11,11"
        << QStringList{spacer + " @0,2 1x1",         "horizontalLayout_2 @1,0 1x1",   spacer + " @1,2 1x1",
                       "horizontalLayout @0,0 1x1",  "m_displayItemCountPB @0,1 1x1", "m_findDisplayItemPB @1,1 1x1",
                       "horizontalLayout_3 @2,1 1x3"};
    QTest::newRow("horizontalLayout_2") << "horizontalLayout_2"
                                        << "QHBoxLayout"
                                        << "gridLayout" << 6 << QString()
                                        << QStringList{"m_searchValueLbl_3", "m_searchValueLE", "m_searchTypeLbl_3",
                                                       "m_searchTypeCB"};
    QTest::newRow("horizontalLayout") << "horizontalLayout"
                                      << "QHBoxLayout"
                                      << "gridLayout" << 6 << QString()
                                      << QStringList{"label_3", "m_displayItemCountLE"};
    QTest::newRow("horizontalLayout_3") << "horizontalLayout_3"
                                        << "QHBoxLayout"
                                        << "gridLayout" << 6 << QString()
                                        << QStringList{spacer, "m_useCloneCheckBox", "m_showCloneIn3dCheckBox",
                                                       "m_propertyCompareMode"};
    QTest::newRow("m_mainHLayout") << "m_mainHLayout"
                                   << "QHBoxLayout"
                                   << "verticalLayout" << 6 << QString()
                                   << QStringList{"_2", "m_displayItemTreeWidget"};
    QTest::newRow("_2") << "_2"
                        << "QVBoxLayout"
                        << "m_mainHLayout" << 6 << QString()
                        << QStringList{"_3", "m_businessObjectProperties", "_4", "m_displayItemProperties"};
    QTest::newRow("_3") << "_3"
                        << "QHBoxLayout"
                        << "_2" << 0 << QString() << QStringList{"label_2", spacer};
    QTest::newRow("_4") << "_4"
                        << "QHBoxLayout"
                        << "_2" << 0 << QString() << QStringList{"label", spacer};
}

void tst_DisplayModelDialog::formLayouts()
{
    QFETCH(QString, objectName);
    QFETCH(QString, className);
    QFETCH(QString, owner);
    QFETCH(int, spacing);
    QFETCH(QString, margins);
    QFETCH(QStringList, items);

    const QList<QLayout*> found = m_freshDialog->findChildren<QLayout*>(objectName);
    QCOMPARE(found.size(), 1);
    QLayout* layout = found.first();
    QCOMPARE(QString::fromLatin1(layout->metaObject()->className()), className);
    QCOMPARE(layout->spacing(), spacing);
    if (QWidget* widget = qobject_cast<QWidget*>(layout->parent())) {
        QCOMPARE(widget->objectName(), owner);
        QCOMPARE(widget->layout(), layout);
        const QMargins m = layout->contentsMargins();
        QCOMPARE(QStringLiteral("%1,%2,%3,%4").arg(m.left()).arg(m.top()).arg(m.right()).arg(m.bottom()), margins);
    } else {
        QVERIFY(layout->parent());
        QCOMPARE(layout->parent()->objectName(), owner);
    }
    QCOMPARE(describeLayout(layout), items);
}

void tst_DisplayModelDialog::formFrameAndSize()
{
    auto* frame = m_freshDialog->findChild<QFrame*>(QStringLiteral("frame"));
    QVERIFY(frame);
    QCOMPARE(frame->frameShape(), QFrame::NoFrame);
    QCOMPARE(frame->frameShadow(), QFrame::Raised);
    QCOMPARE(frame->minimumSize(), QSize(0, 0));
    QCOMPARE(frame->baseSize(), QSize(0, 0));

    DisplayModelDialog dialog(nullptr);
    QCOMPARE(dialog.size(), QSize(764, 902));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("DisplayModelDialog"));
}

void tst_DisplayModelDialog::treeWidgetSettings()
{
    DisplayItemTreeWidget* tree = m_freshDialog->m_displayItemTreeWidget;
    QVERIFY(!tree->expandsOnDoubleClick());
    QCOMPARE(tree->header()->defaultSectionSize(), 40);
    QVERIFY(!tree->header()->stretchLastSection());
    QCOMPARE(tree->header()->sectionResizeMode(0), QHeaderView::Stretch);
    QCOMPARE(headerTexts(tree), QStringList{QStringLiteral("Display items")});
}

void tst_DisplayModelDialog::searchTypeEntries_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::newRow("any") << 0 << "Any (*)";
    QTest::newRow("pointer") << 1 << "pointer";
    QTest::newRow("type") << 2 << "display item type";
}

void tst_DisplayModelDialog::searchTypeEntries()
{
    QFETCH(int, index);
    QFETCH(QString, text);
    QComboBox* combo = m_freshDialog->m_searchTypeCB;
    QCOMPARE(combo->count(), 3);
    QCOMPARE(combo->currentIndex(), 0);
    QCOMPARE(combo->itemText(index), text);
    const QVariant data = combo->itemData(index);
    QCOMPARE(data.userType(), int(QMetaType::Int));
    QCOMPARE(data.toInt(), index);
}

void tst_DisplayModelDialog::textsAreTranslatedInTheFormContext()
{
    ContextMarkingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    DisplayModelDialog dialog(nullptr);
    QCoreApplication::removeTranslator(&translator);

    const QString context = QStringLiteral("DisplayModelDialogClass:");
    QCOMPARE(dialog.windowTitle(), context + "DisplayModelDialog");
    QCOMPARE(dialog.m_searchValueLbl_3->text(), context + "Search Value:");
    QCOMPARE(dialog.m_findDisplayItemPB->text(), context + "Find next");
    QCOMPARE(dialog.m_propertyCompareMode->text(), context + "Only compare mirrored item properties");
    QCOMPARE(dialog.label->text(), context + "Display item properties");

    // The constructor's header texts go through tr; the search criteria do not.
    const QString name = dialog.m_businessObjectProperties->headerItem()->text(0);
    QVERIFY2(name != QLatin1String("Name") && name.endsWith(QLatin1String(":Name")), qPrintable(name));
    QVERIFY(dialog.m_displayItemProperties->headerItem()->text(1).endsWith(QLatin1String(":Value")));
    QCOMPARE(dialog.m_searchTypeCB->itemText(0), QStringLiteral("Any (*)"));
    QCOMPARE(dialog.m_searchTypeCB->itemText(2), QStringLiteral("display item type"));
}

void tst_DisplayModelDialog::freshDialogShowsEmptyForm()
{
    DisplayModelDialog* dialog = m_freshDialog;
    QVERIFY(dialog->isVisible());
    QVERIFY(dialog->isEnabled());
    QCOMPARE(dialog->m_displayItemTreeWidget->topLevelItemCount(), 0);
    QCOMPARE(dialog->m_businessObjectProperties->topLevelItemCount(), 0);
    QCOMPARE(dialog->m_displayItemProperties->topLevelItemCount(), 0);
    QCOMPARE(dialog->m_searchTypeCB->currentText(), QStringLiteral("Any (*)"));
    QVERIFY(dialog->m_searchValueLE->text().isEmpty());
    QVERIFY(dialog->m_displayItemCountLE->text().isEmpty());
    QVERIFY(dialog->m_useCloneCheckBox->isEnabled());
    QVERIFY(!dialog->m_useCloneCheckBox->isChecked());
    QVERIFY(!dialog->m_showCloneIn3dCheckBox->isEnabled());
    QVERIFY(!dialog->m_propertyCompareMode->isEnabled());
    QVERIFY(dialog->m_propertyCompareMode->isChecked());
}

void tst_DisplayModelDialog::emptyViewModelLeavesEmptyTreeAndDisablesDialog()
{
    auto root = std::make_shared<DisplayItem>("Root");
    addChild(root, "Child");
    setModel(makeViewModel(root));
    QVERIFY(m_dialog->isEnabled());
    QCOMPARE(m_dialog->m_displayItemTreeWidget->topLevelItemCount(), 1);
    m_dialog->m_displayItemTreeWidget->setCurrentItem(rowAt(m_dialog->m_displayItemTreeWidget, {0}));
    QVERIFY(m_dialog->m_displayItemProperties->topLevelItemCount() > 0);

    m_dialog->setViewModel({});
    QCOMPARE(m_dialog->m_displayItemTreeWidget->topLevelItemCount(), 0);
    QVERIFY(!m_dialog->isEnabled());
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItemCount(), 0);
    QCOMPARE(m_dialog->m_businessObjectProperties->topLevelItemCount(), 0);
    // The rows are gone, so nobody observes the items any more.
    QCOMPARE(root->observerCount(), std::size_t(0));

    // A view model without a root is shown as an empty, enabled dialog.
    setModel(std::make_shared<SceneViewModel>());
    QCOMPARE(m_dialog->m_displayItemTreeWidget->topLevelItemCount(), 0);
    QVERIFY(m_dialog->isEnabled());
}

void tst_DisplayModelDialog::treeIsBuiltOnlyBySetViewModel()
{
    // The constructor builds nothing, and the draw area presenter is no model source.
    DisplayModelDialog dialog(nullptr);
    SceneDrawAreaPresenter presenter;
    auto viewModel = makeViewModel(std::make_shared<DisplayItem>("Root"));
    presenter.showViewModel(viewModel);
    dialog.setDrawAreaPresenter(&presenter);
    QCOMPARE(dialog.m_displayItemTreeWidget->topLevelItemCount(), 0);
    dialog.setViewModel(viewModel);
    QCOMPARE(dumpTree(dialog.m_displayItemTreeWidget), QStringList{QStringLiteral("Root")});
}

void tst_DisplayModelDialog::mainTreeHasDisplayItemActions()
{
    auto root = std::make_shared<DisplayItem>("Root");
    addChild(root, "Child");
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;

    const QPoint onChild = tree->visualItemRect(rowAt(tree, {0})).center();
    const Brennvik::Test::ContextMenuVisit visit = Brennvik::Test::rightClick(tree, onChild);
    QVERIFY(visit.opened);
    QVERIFY2(visit.entries.contains(QStringLiteral("&Select/deselect display item")),
             qPrintable(visit.entries.join(", ")));
    QVERIFY(visit.entries.contains(QStringLiteral("&Delete display item")));
    QVERIFY(visit.entries.contains(QStringLiteral("Make subtree invisible")));
    QVERIFY(visit.entries.contains(QStringLiteral("Make subtree visible")));
}

void tst_DisplayModelDialog::drawAreaIsLeftAloneOutsideCloneMode()
{
    SceneDrawAreaPresenter presenter;
    auto viewModel = makeViewModel(std::make_shared<DisplayItem>("Root"));
    presenter.showViewModel(viewModel);
    QCOMPARE(presenter.showCount(), 1);

    DisplayModelDialog dialog(nullptr);
    dialog.setDrawAreaPresenter(&presenter);
    dialog.setViewModel(viewModel);
    dialog.show();
    dialog.hide();
    dialog.show();
    dialog.setViewModel(makeViewModel(std::make_shared<DisplayItem>("Other")));
    dialog.hide();
    QCOMPARE(presenter.showCount(), 1);
    QCOMPARE(presenter.getViewModel(), std::shared_ptr<ViewModelInterface>(viewModel));

    // A null presenter is only stored.
    dialog.setDrawAreaPresenter(nullptr);
    dialog.show();
    dialog.hide();
    QCOMPARE(presenter.showCount(), 1);
}

void tst_DisplayModelDialog::closingOnlyHides()
{
    DisplayModelDialog dialog(nullptr);
    dialog.setViewModel(makeViewModel(std::make_shared<DisplayItem>("Root")));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(dialog.close());
    QVERIFY(!dialog.isVisible());
    QVERIFY(!dialog.testAttribute(Qt::WA_DeleteOnClose));
    // The dialog keeps its tree and can be shown again.
    QCOMPARE(dialog.m_displayItemTreeWidget->topLevelItemCount(), 1);
    dialog.show();
    QVERIFY(dialog.isVisible());
}

void tst_DisplayModelDialog::destructionUnregistersRowsAndReleasesViewModel()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto child = addChild(root, "Child");
    std::weak_ptr<SceneViewModel> weakViewModel;
    {
        auto viewModel = makeViewModel(root);
        weakViewModel = viewModel;
        auto* dialog = new DisplayModelDialog(nullptr);
        dialog->setViewModel(viewModel);
        viewModel.reset();
        QVERIFY(!weakViewModel.expired());
        QCOMPARE(root->observerCount(), std::size_t(1));
        QCOMPARE(child->observerCount(), std::size_t(1));
        delete dialog;
    }
    QVERIFY(weakViewModel.expired());
    QCOMPARE(root->observerCount(), std::size_t(0));
    QCOMPARE(child->observerCount(), std::size_t(0));
}

// ---------------------------------------------------------------- tree building

void tst_DisplayModelDialog::rootWithoutChildrenAndEditPrimitives()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto viewModel = makeViewModel(root);
    EditorDisplayModel& editor = viewModel->ensureEditorDisplayModel();
    editor.addEditModelPrimitive("Pick point");
    editor.addEditModelPrimitive("Cutting plane");
    setModel(viewModel);

    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QCOMPARE(dumpTree(tree), (QStringList{"Root", "  Pick point (edit)", "  Cutting plane (edit)"}));
    QCOMPARE(tree->topLevelItem(0)->type(), 1000);
    for (int i = 0; i < 2; ++i) {
        QTreeWidgetItem* editRow = rowAt(tree, {i});
        QCOMPARE(editRow->type(), 1000);
        QVERIFY(editRow->text(1).isEmpty());
        QCOMPARE(debugIconName(editRow->icon(0)), QStringLiteral("visible"));
    }

    // Edit-model rows follow the display item rows of the root.
    addChild(root, "Late child");
    setModel(viewModel);
    QCOMPARE(dumpTree(tree), (QStringList{"Root", "  Late child #0", "  Pick point (edit)", "  Cutting plane (edit)"}));

    // Without an editor only the display items are shown.
    viewModel->removeEditorDisplayModel();
    setModel(viewModel);
    QCOMPARE(dumpTree(tree), (QStringList{"Root", "  Late child #0"}));
}

void tst_DisplayModelDialog::geometryDuplicates_data()
{
    QTest::addColumn<QString>("groupName");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("after the Geometry group")
        << "Geometry"
        << QStringList{"Root",      "  A #0",   "    a1 #0",      "  Geometry #1", "    g1 #0",        "      g1a #0",
                       "    g2 #1", "  B #2",   "    b1 #0",      "    g1 #1 dup", "      g1a #0 dup", "    g2 #2 dup",
                       "  C #3",    "    D #0", "      g2 #0 dup"};
    // Only the exact text counts.
    QTest::newRow("no group named exactly Geometry")
        << "geometry" << QStringList{"Root",      "  A #0", "    a1 #0", "  geometry #1", "    g1 #0", "      g1a #0",
                                     "    g2 #1", "  B #2", "    b1 #0", "  C #3",        "    D #0"};
}

void tst_DisplayModelDialog::geometryDuplicates()
{
    QFETCH(QString, groupName);
    QFETCH(QStringList, expected);

    // A lists geometry but comes before the group; g1 lists g2 but is inside
    // the group (and, below B, inside a duplicate subtree); B follows the
    // group; D is nested below a later sibling of the group.
    auto root = std::make_shared<DisplayItem>("Root");
    auto a = addModule(root, "A");
    addChild(a, "a1");
    auto group = addChild(root, groupName.toStdString());
    auto g1 = addModule(group, "g1");
    addChild(g1, "g1a");
    auto g2 = addChild(group, "g2");
    auto b = addModule(root, "B");
    addChild(b, "b1");
    auto c = addChild(root, "C");
    auto d = addModule(c, "D");
    a->addGeometryDisplayItem(g1);
    g1->addGeometryDisplayItem(g2);
    b->addGeometryDisplayItem(g1);
    b->addGeometryDisplayItem(g2);
    d->addGeometryDisplayItem(g2);

    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QCOMPARE(dumpTree(tree), expected);

    // Duplicate rows follow their items like any row.
    if (groupName == QLatin1String("Geometry")) {
        auto* duplicate = itemRowAt(tree, {2, 1});
        QVERIFY(duplicate && duplicate->isDuplicate());
        QCOMPARE(duplicate->getDisplayItem(), std::shared_ptr<DisplayItemInterface>(g1));
        QCOMPARE(debugIconName(duplicate->icon(0)), QStringLiteral("visible_duplicate"));
        QCOMPARE(g1->observerCount(), std::size_t(2));
    }
}

void tst_DisplayModelDialog::rebuildOnNewViewModelReplacesTree()
{
    auto first = std::make_shared<DisplayItem>("First");
    addChild(first, "One");
    auto second = std::make_shared<DisplayItem>("Second");
    addChild(second, "Two");
    addChild(second, "Three");

    setModel(makeViewModel(first));
    QCOMPARE(dumpTree(m_dialog->m_displayItemTreeWidget), (QStringList{"First", "  One #0"}));
    setModel(makeViewModel(second));
    QCOMPARE(dumpTree(m_dialog->m_displayItemTreeWidget), (QStringList{"Second", "  Two #0", "  Three #1"}));
    QCOMPARE(first->observerCount(), std::size_t(0));
}

void tst_DisplayModelDialog::initialEntry_data()
{
    QTest::addColumn<int>("kind"); // -1: no active context
    QTest::addColumn<bool>("withLookups");
    QTest::addColumn<QString>("entry");                // name of the item the lookups give; empty: a gone item
    QTest::addColumn<QStringList>("expectedSelected"); // rows by their dump line
    QTest::addColumn<QString>("expectedCurrent");
    QTest::addColumn<bool>("expectedExpanded"); // of the current row
    QTest::addColumn<bool>("topExpanded");

    QTest::newRow("kind 6 expands every row of the step")
        << 6 << true << "x" << QStringList{"    x #0", "    x #1 dup"} << "    x #1 dup" << true << true;
    QTest::newRow("kind 7 collapses the tool")
        << 7 << true << "P" << QStringList{"  P #1"} << "  P #1" << false << true;
    QTest::newRow("other kinds use the default entry")
        << 3 << true << "c" << QStringList{"    c #0"} << "    c #0" << false << true;
    // Without the lookup objects nothing is navigated to, so the top row stays as built.
    QTest::newRow("kind 6 without provider") << 6 << false << "x" << QStringList() << QString() << false << false;
    QTest::newRow("kind 7 without lookup") << 7 << false << "x" << QStringList() << QString() << false << false;
    QTest::newRow("no default entry owner") << 3 << false << "x" << QStringList() << QString() << false << false;
    QTest::newRow("gone entry matches no row") << 3 << true << "" << QStringList() << QString() << false << true;
    QTest::newRow("no active context") << -1 << true << "x" << QStringList() << QString() << false << false;
}

void tst_DisplayModelDialog::initialEntry()
{
    QFETCH(int, kind);
    QFETCH(bool, withLookups);
    QFETCH(QString, entry);
    QFETCH(QStringList, expectedSelected);
    QFETCH(QString, expectedCurrent);
    QFETCH(bool, expectedExpanded);
    QFETCH(bool, topExpanded);

    // x is shown twice: under the group and as a duplicate under P.
    auto root = std::make_shared<DisplayItem>("Root");
    auto group = addChild(root, "Geometry");
    auto x = addChild(group, "x");
    addChild(x, "x1");
    auto p = addModule(root, "P");
    addChild(p, "c");
    p->addGeometryDisplayItem(x);
    auto viewModel = makeViewModel(root);
    SceneDisplayModel& displayModel = viewModel->displayModel();

    auto gone = std::make_shared<DisplayItem>("gone");
    std::shared_ptr<DisplayItem> target = entry.isEmpty() ? gone : root->findByDisplayName(entry.toStdString());
    QVERIFY(target);
    if (kind >= 0)
        displayModel.setActiveContext(std::make_shared<SceneContext>(kind, "context"));
    if (withLookups) {
        auto steps = std::make_shared<ProcessStepProvider>();
        steps->appendStep(std::make_shared<DisplayItem>("other step"));
        steps->appendStep(target);
        displayModel.setKind6Provider(steps);
        displayModel.setKind6Index(1);
        displayModel.setKind7Source(std::make_shared<ToolKeySource>(target->getDisplayName()));
        displayModel.setKind7Lookup(std::make_shared<ToolKeyLookup>(root, std::string()));
        displayModel.setDefaultEntryOwner(std::make_shared<FixedEntryOwner>(target));
    }
    // The default entry owner holds its entry weakly: it gives an empty reference now.
    if (entry.isEmpty())
        target.reset();
    gone.reset();

    m_dialog->setViewModel(viewModel);
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;

    QStringList selected;
    QString current;
    bool currentExpanded = false;
    QStringList lines = dumpTree(tree);
    int line = 0;
    for (QTreeWidgetItemIterator it(tree); *it; ++it, ++line) {
        if ((*it)->isSelected())
            selected << lines.at(line);
        if (*it == tree->currentItem()) {
            current = lines.at(line);
            currentExpanded = (*it)->isExpanded();
        }
    }
    QCOMPARE(selected, expectedSelected);
    QCOMPARE(current, expectedCurrent);
    QCOMPARE(currentExpanded, expectedExpanded);
    QCOMPARE(tree->topLevelItem(0)->isExpanded(), topExpanded);
    if (!expectedCurrent.isEmpty()) {
        // The current row's properties are printed.
        PropertyList business, display;
        target->getProperties(business, display);
        QCOMPARE(paneRows(m_dialog->m_businessObjectProperties), expectedRows(business));
    }
}

void tst_DisplayModelDialog::navigateSelectsEveryRowOfTheItem()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto group = addChild(root, "Geometry");
    auto x = addChild(group, "x");
    addChild(x, "x1");
    auto p = addModule(root, "P");
    p->addGeometryDisplayItem(x);
    m_dialog->setViewModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QTreeWidgetItem* first = rowAt(tree, {0, 0});
    QTreeWidgetItem* second = rowAt(tree, {1, 0});
    QCOMPARE(
        dumpTree(tree),
        (QStringList{"Root", "  Geometry #0", "    x #0", "      x1 #0", "  P #1", "    x #0 dup", "      x1 #0 dup"}));
    QVERIFY(!tree->topLevelItem(0)->isExpanded());

    m_dialog->navigateToInitialEntry(x, false, true);
    QCOMPARE(tree->selectedItems().size(), 2);
    QVERIFY(first->isSelected());
    QVERIFY(second->isSelected());
    QCOMPARE(tree->currentItem(), second);
    QVERIFY(first->isExpanded());
    QVERIFY(second->isExpanded());
    QVERIFY(tree->topLevelItem(0)->isExpanded());

    m_dialog->navigateToInitialEntry(x, false, false);
    QVERIFY(!first->isExpanded());
    QVERIFY(!second->isExpanded());
    QCOMPARE(tree->currentItem(), second);

    // An item the tree does not show changes nothing but the top row's expansion.
    tree->topLevelItem(0)->setExpanded(false);
    m_dialog->navigateToInitialEntry(std::make_shared<DisplayItem>("elsewhere"), false, true);
    QCOMPARE(tree->currentItem(), second);
    QVERIFY(tree->topLevelItem(0)->isExpanded());

    // There is no cloned tree outside clone mode.
    m_dialog->navigateToInitialEntry(x, true, true);
    QCOMPARE(tree->currentItem(), second);
}

// ---------------------------------------------------------------- events from the model

void tst_DisplayModelDialog::addedSubtreeIsAppended()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto x = addChild(root, "X");
    addChild(x, "existing");
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;

    auto s = std::make_shared<DisplayItem>("S");
    auto s1 = addChild(s, "s1");
    addChild(s1, "s11");
    addChild(s, "s2");
    x->appendChild(s);
    // Inserted first among the item's children, appended last among the rows.
    x->insertChild(0, std::make_shared<DisplayItem>("T"));
    x->appendChildren({std::make_shared<DisplayItem>("U"), std::make_shared<DisplayItem>("V")});

    QCOMPARE(dumpTree(tree),
             (QStringList{"Root", "  X #0", "    existing #0", "    S", "      s1 #0", "        s11 #0", "      s2 #1",
                          "    T", "    U", "    V"}));
    auto* sRow = itemRowAt(tree, {0, 1});
    QVERIFY(sRow);
    QCOMPARE(sRow->getDisplayItem(), std::shared_ptr<DisplayItemInterface>(s));
    QVERIFY(s->isObservedBy(sRow));
    QVERIFY(s1->isObservedBy(itemRowAt(tree, {0, 1, 0})));

    // The new rows follow their items further.
    s1->appendChild(std::make_shared<DisplayItem>("s12"));
    QCOMPARE(rowAt(tree, {0, 1, 0})->childCount(), 2);
    QCOMPARE(rowAt(tree, {0, 1, 0, 1})->text(0), QStringLiteral("s12"));
}

void tst_DisplayModelDialog::subtreeAddedUnderDuplicateRow()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto group = addChild(root, "Geometry");
    auto x = addChild(group, "x");
    auto p = addModule(root, "P");
    p->addGeometryDisplayItem(x);
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QCOMPARE(dumpTree(tree), (QStringList{"Root", "  Geometry #0", "    x #0", "  P #1", "    x #0 dup"}));

    // Both rows of x receive the added event. Under the duplicate row the new
    // row is a duplicate, its children are not, and geometry lists are on.
    auto m = std::make_shared<GeometryModuleItem>("M");
    addChild(m, "m1");
    auto listed = addChild(root, "listed");
    m->addGeometryDisplayItem(listed);
    x->appendChild(m);

    QCOMPARE(dumpTree(tree),
             (QStringList{"Root", "  Geometry #0", "    x #0", "      M", "        m1 #0", "  P #1", "    x #0 dup",
                          "      M dup", "        m1 #0", "        listed #1 dup", "  listed"}));
}

void tst_DisplayModelDialog::removedItemLosesOnlyItsFirstRow()
{
    // g is shown twice under G: as G's child and as a duplicate row.
    auto root = std::make_shared<DisplayItem>("Root");
    auto g = addModule(root, "G");
    addChild(g, "Geometry");
    auto shown = addChild(g, "g");
    addChild(shown, "g child");
    auto other = addChild(root, "other");
    g->addGeometryDisplayItem(shown);
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QCOMPARE(dumpTree(tree),
             (QStringList{"Root", "  G #0", "    Geometry #0", "    g #1", "      g child #0", "    g #2 dup",
                          "      g child #0 dup", "  other #1"}));

    QTreeWidgetItem* gRow = rowAt(tree, {0});
    tree->setCurrentItem(rowAt(tree, {0, 1}));
    g->removeChild(shown, false);
    QCOMPARE(dumpTree(tree),
             (QStringList{"Root", "  G #0", "    Geometry #0", "    g #2 dup", "      g child #0 dup", "  other #1"}));
    QCOMPARE(shown->observerCount(), std::size_t(1)); // only the duplicate row is left
    // The removed row was current; the sibling the tree moves to is printed.
    auto* current = dynamic_cast<DisplayItemTreeWidgetItem*>(tree->currentItem());
    QVERIFY(current);
    QCOMPARE(current->parent(), gRow);
    PropertyList business, display;
    current->getDisplayItem()->getProperties(business, display);
    QCOMPARE(paneRows(m_dialog->m_businessObjectProperties), expectedRows(business));

    // An item without a row under the parent is ignored.
    auto* rootRow = dynamic_cast<DisplayItemTreeWidgetItem*>(tree->topLevelItem(0));
    QVERIFY(rootRow);
    m_dialog->displayItemsRemoved(rootRow, {std::make_shared<DisplayItem>("stranger"), shown});
    QCOMPARE(dumpTree(tree),
             (QStringList{"Root", "  G #0", "    Geometry #0", "    g #2 dup", "      g child #0 dup", "  other #1"}));

    // Several items in one event.
    root->removeChildren({g, other});
    QCOMPARE(dumpTree(tree), QStringList{"Root"});
}

void tst_DisplayModelDialog::propertyChangesReprintCurrentRowOnly()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto a = addChild(root, "A");
    auto b = addChild(root, "B");
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(rowAt(tree, {0}));

    PropertyList business, display;
    a->getProperties(business, display);
    QCOMPARE(paneRows(m_dialog->m_businessObjectProperties), expectedRows(business));
    QCOMPARE(paneRows(m_dialog->m_displayItemProperties), expectedRows(display));

    // Another row's change leaves the panes alone: not even reprinted.
    QTreeWidgetItem* firstRow = m_dialog->m_businessObjectProperties->topLevelItem(0);
    b->setBusinessProperty("material", "DC04");
    QCOMPARE(m_dialog->m_businessObjectProperties->topLevelItem(0), firstRow);
    QCOMPARE(paneRows(m_dialog->m_businessObjectProperties), expectedRows(business));

    // The current row's change is printed at once.
    a->setBusinessProperty("material", "DX54");
    a->setDisplayProperty("colour", "red");
    business.clear();
    display.clear();
    a->getProperties(business, display);
    QVERIFY(paneRows(m_dialog->m_businessObjectProperties).contains(QStringLiteral("material = DX54 (tip: DX54)")));
    QVERIFY(paneRows(m_dialog->m_displayItemProperties).contains(QStringLiteral("colour = red (tip: red)")));
    QCOMPARE(paneRows(m_dialog->m_businessObjectProperties), expectedRows(business));
    QCOMPARE(paneRows(m_dialog->m_displayItemProperties), expectedRows(display));

    // A visual change reaches the dialog as a property change too, and switches the icon.
    firstRow = m_dialog->m_displayItemProperties->topLevelItem(0);
    a->setVisible(false);
    a->notifyVisualPropertiesChanged();
    QVERIFY(m_dialog->m_displayItemProperties->topLevelItem(0) != firstRow);
    QCOMPARE(debugIconName(rowAt(tree, {0})->icon(0)), QStringLiteral("not_visible"));
}

void tst_DisplayModelDialog::contextMenuHidesExactlyTheCollectedItems()
{
    // Root { A { A1, Geometry { g1 } }, Geometry { g2 }, P (module listing g1, g2), B }
    auto root = std::make_shared<DisplayItem>("Root");
    auto a = addChild(root, "A");
    addChild(a, "A1");
    auto g1 = addChild(addChild(a, "Geometry"), "g1");
    auto g2 = addChild(addChild(root, "Geometry"), "g2");
    auto p = addModule(root, "P");
    p->addGeometryDisplayItem(g1);
    p->addGeometryDisplayItem(g2);
    addChild(root, "B");
    auto viewModel = makeViewModel(root);
    setModel(viewModel);
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QCOMPARE(dumpTree(tree),
             (QStringList{"Root", "  A #0", "    A1 #0", "    Geometry #1", "      g1 #0", "  Geometry #1", "    g2 #0",
                          "  P #2", "    g1 #0 dup", "    g2 #1 dup", "  B #3"}));

    // What the host collects for A is what must turn invisible, and nothing else.
    DisplayItemList collected;
    a->collectSubtree(collected);
    QSet<const DisplayItemInterface*> hidden;
    for (const auto& item : collected)
        hidden.insert(item.get());
    QVERIFY(hidden.contains(g1.get()));

    const int visibilityUpdates = viewModel->displayModel().visibilityUpdateCount();
    tree->scrollToItem(rowAt(tree, {0}));
    const auto visit = Brennvik::Test::rightClick(tree, tree->visualItemRect(rowAt(tree, {0})).center(),
                                                  QStringLiteral("Make subtree invisible"));
    QVERIFY(visit.triggered);
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), visibilityUpdates + 1);

    int checked = 0;
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(*it);
        QVERIFY(row);
        const bool shouldBeHidden = hidden.contains(row->getDisplayItem().get());
        QCOMPARE(row->getDisplayItem()->isVisible(), !shouldBeHidden);
        // A hidden duplicate row shows "not visible" like any other hidden row.
        const QString expected = shouldBeHidden ? QStringLiteral("not_visible")
            : row->isDuplicate()                ? QStringLiteral("visible_duplicate")
                                                : QStringLiteral("visible");
        QCOMPARE(debugIconName(row->icon(0)), expected);
        ++checked;
    }
    QCOMPARE(checked, 11);
}

void tst_DisplayModelDialog::rowOfGoneItemNeverCrashes()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto g = addModule(root, "G");
    addChild(g, "Geometry");
    auto shown = addChild(g, "g");
    g->addGeometryDisplayItem(shown);
    auto viewModel = makeViewModel(root);
    setModel(viewModel);
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;

    // Only the duplicate row is left once g is removed; dropping the last
    // reference leaves that row with a gone item.
    g->removeChild(shown, false);
    std::weak_ptr<DisplayItem> weakShown = shown;
    shown.reset();
    QVERIFY(weakShown.expired());
    auto* orphan = itemRowAt(tree, {0, 1});
    QVERIFY(orphan);
    QVERIFY(!orphan->getDisplayItem());

    tree->setCurrentItem(orphan);
    QCOMPARE(tree->currentItem(), orphan);
    QCOMPARE(m_dialog->m_businessObjectProperties->topLevelItemCount(), 0);
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItemCount(), 0);

    const int updates = viewModel->displayModel().visibilityUpdateCount();
    doubleClickRow(orphan);
    QCOMPARE(debugIconName(orphan->icon(0)), QStringLiteral("visible_different"));
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), updates + 1);

    // An empty entry does not match the row whose item has gone.
    tree->setCurrentItem(nullptr);
    m_dialog->navigateToInitialEntry({}, false, true);
    QVERIFY(!tree->currentItem());

    // Events that concern the gone item's parent still find their rows.
    g->appendChild(std::make_shared<DisplayItem>("new"));
    QCOMPARE(dumpTree(tree), (QStringList{"Root", "  G #0", "    Geometry #0", "    g #2 dup", "    new"}));
    g->removeChildren({g->childAt(1)});
    QCOMPARE(dumpTree(tree), (QStringList{"Root", "  G #0", "    Geometry #0", "    g #2 dup"}));
}

// ---------------------------------------------------------------- double click

void tst_DisplayModelDialog::doubleClickTogglesRowAndDuplicateChildren()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto group = addChild(root, "Geometry");
    auto x = addChild(group, "x");
    auto p = addModule(root, "P");
    auto c = addChild(p, "c");
    p->addGeometryDisplayItem(x);
    auto viewModel = makeViewModel(root);
    setModel(viewModel);
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QCOMPARE(dumpTree(tree), (QStringList{"Root", "  Geometry #0", "    x #0", "  P #1", "    c #0", "    x #1 dup"}));
    QTreeWidgetItem* pRow = rowAt(tree, {1});

    doubleClickRow(pRow);
    QCOMPARE(tree->currentItem(), pRow);
    QVERIFY(!p->isVisible());
    QVERIFY(!x->isVisible());
    QVERIFY(c->isVisible());
    QVERIFY(group->isVisible());
    QVERIFY(root->isVisible());
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), 1);
    // The host's events switched the icons of every row of the changed items.
    QCOMPARE(debugIconName(pRow->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(debugIconName(rowAt(tree, {1, 1})->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(debugIconName(rowAt(tree, {0, 0})->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(debugIconName(rowAt(tree, {1, 0})->icon(0)), QStringLiteral("visible"));
    // No expansion change on double click.
    QVERIFY(pRow->isExpanded());

    doubleClickRow(pRow);
    QVERIFY(p->isVisible());
    QVERIFY(x->isVisible());
    QVERIFY(c->isVisible());
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), 2);
    QCOMPARE(debugIconName(rowAt(tree, {1, 1})->icon(0)), QStringLiteral("visible_duplicate"));
}

void tst_DisplayModelDialog::doubleClickInColumnOneChangesNothing()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto a = addChild(root, "A");
    auto viewModel = makeViewModel(root);
    viewModel->ensureEditorDisplayModel().addEditModelPrimitive("Pick point");
    setModel(viewModel);
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;

    for (QTreeWidgetItem* row : {rowAt(tree, {0}), rowAt(tree, {1})}) {
        tree->setCurrentItem(row);
        emit tree->itemDoubleClicked(row, 1);
    }
    QVERIFY(a->isVisible());
    QVERIFY(viewModel->editorDisplayModel()->getAllEditModelPrimitives().front()->isVisible());
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), 0);
    QCOMPARE(viewModel->editorDisplayModel()->viewUpdateCount(), 0);

    // With no current row, a double click changes nothing either.
    tree->setCurrentItem(nullptr);
    emit tree->itemDoubleClicked(rowAt(tree, {0}), 0);
    QVERIFY(a->isVisible());
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), 0);
}

void tst_DisplayModelDialog::doubleClickActsOnTheCurrentRow()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto a = addChild(root, "A");
    auto b = addChild(root, "B");
    auto viewModel = makeViewModel(root);
    setModel(viewModel);
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;

    tree->setCurrentItem(rowAt(tree, {1}));
    emit tree->itemDoubleClicked(rowAt(tree, {0}), 0);
    QVERIFY(a->isVisible());
    QVERIFY(!b->isVisible());
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), 1);
}

void tst_DisplayModelDialog::doubleClickTogglesEditModelRow()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto viewModel = makeViewModel(root);
    EditorDisplayModel& editor = viewModel->ensureEditorDisplayModel();
    auto primitive = editor.addEditModelPrimitive("Pick point");
    primitive->setProperties({{"position", "(1, 2, 3)"}});
    setModel(viewModel);
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QTreeWidgetItem* editRow = rowAt(tree, {0});

    doubleClickRow(editRow);
    QCOMPARE(tree->currentItem(), editRow);
    QVERIFY(!primitive->isVisible());
    QCOMPARE(debugIconName(editRow->icon(0)), QStringLiteral("not_visible"));
    QCOMPARE(editor.viewUpdateCount(), 1);
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), 1);

    // The dialog is told, and reprints the current row's properties.
    primitive->setProperties({{"position", "(4, 5, 6)"}});
    QCOMPARE(paneRows(m_dialog->m_displayItemProperties), QStringList{"position = (1, 2, 3) (tip: (1, 2, 3))"});
    doubleClickRow(editRow);
    QVERIFY(primitive->isVisible());
    QCOMPARE(debugIconName(editRow->icon(0)), QStringLiteral("visible"));
    QCOMPARE(paneRows(m_dialog->m_displayItemProperties), QStringList{"position = (4, 5, 6) (tip: (4, 5, 6))"});
    QCOMPARE(editor.viewUpdateCount(), 2);
    QCOMPARE(viewModel->displayModel().visibilityUpdateCount(), 2);
}

// ---------------------------------------------------------------- property printing

void tst_DisplayModelDialog::labelableItemProperties_data()
{
    QTest::addColumn<bool>("labelsAllowed");
    QTest::addColumn<QString>("allowedText");
    QTest::newRow("labels allowed") << true << "true";
    QTest::newRow("labels not allowed") << false << "false";
}

void tst_DisplayModelDialog::labelableItemProperties()
{
    QFETCH(bool, labelsAllowed);
    QFETCH(QString, allowedText);

    auto root = std::make_shared<DisplayItem>("Root");
    auto point = std::make_shared<LabelableItem>("Point", "P1 label", labelsAllowed);
    root->appendChild(point);
    point->setDisplayProperty("size", "3 mm");
    point->setBusinessProperty("owner", "OP10");
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(rowAt(tree, {0}));

    PropertyList business, display;
    point->getProperties(business, display);
    QVERIFY(!display.empty());
    QStringList expectedDisplay = expectedRows(display);
    expectedDisplay << QStringLiteral("Label = P1 label (tip: P1 label)")
                    << QStringLiteral("Labels allowed = %1 (tip: %1)").arg(allowedText);
    QCOMPARE(paneRows(m_dialog->m_displayItemProperties), expectedDisplay);
    QCOMPARE(paneRows(m_dialog->m_businessObjectProperties), expectedRows(business));

    // The rows are plain top-level rows.
    for (QTreeWidget* pane : {m_dialog->m_displayItemProperties, m_dialog->m_businessObjectProperties}) {
        for (int i = 0; i < pane->topLevelItemCount(); ++i) {
            QCOMPARE(pane->topLevelItem(i)->type(), int(QTreeWidgetItem::Type));
            QCOMPARE(pane->topLevelItem(i)->childCount(), 0);
        }
    }

    // A changed label shows up, still after the host's rows.
    point->setLabel("renamed");
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItem(expectedDisplay.size() - 2)->text(1),
             QStringLiteral("renamed"));
}

void tst_DisplayModelDialog::plainItemHasNoLabelRows()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto shell = std::make_shared<ShellItem>("Punch", "Tool", "Punch");
    root->appendChild(shell);
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(rowAt(tree, {0}));

    PropertyList business, display;
    shell->getProperties(business, display);
    QCOMPARE(paneRows(m_dialog->m_displayItemProperties), expectedRows(display));
    QCOMPARE(paneRows(m_dialog->m_businessObjectProperties), expectedRows(business));
    const QList<QTreeWidgetItem*> labelRows
        = m_dialog->m_displayItemProperties->findItems(QStringLiteral("Label"), Qt::MatchStartsWith, 0);
    QVERIFY(labelRows.isEmpty());
}

void tst_DisplayModelDialog::editModelRowFillsOnlyDisplayPane()
{
    auto root = std::make_shared<DisplayItem>("Root");
    auto viewModel = makeViewModel(root);
    auto primitive = viewModel->ensureEditorDisplayModel().addEditModelPrimitive("Guide line");
    primitive->setProperties({{"start", "0"}, {"end", "10"}});
    setModel(viewModel);
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;

    tree->setCurrentItem(rowAt(tree, {0}));
    QCOMPARE(paneRows(m_dialog->m_displayItemProperties), (QStringList{"start = 0 (tip: 0)", "end = 10 (tip: 10)"}));
    QCOMPARE(m_dialog->m_businessObjectProperties->topLevelItemCount(), 0);

    // A primitive that has gone leaves both panes empty.
    viewModel->editorDisplayModel()->clear();
    primitive.reset();
    tree->setCurrentItem(tree->topLevelItem(0));
    tree->setCurrentItem(rowAt(tree, {0}));
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItemCount(), 0);
    QCOMPARE(m_dialog->m_businessObjectProperties->topLevelItemCount(), 0);
}

void tst_DisplayModelDialog::noCurrentRowEmptiesPanes()
{
    auto root = std::make_shared<DisplayItem>("Root");
    root->setBusinessProperty("part", "B-pillar");
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(tree->topLevelItem(0));
    QVERIFY(m_dialog->m_businessObjectProperties->topLevelItemCount() > 0);
    QVERIFY(m_dialog->m_displayItemProperties->topLevelItemCount() > 0);

    tree->setCurrentItem(nullptr);
    QCOMPARE(m_dialog->m_businessObjectProperties->topLevelItemCount(), 0);
    QCOMPARE(m_dialog->m_displayItemProperties->topLevelItemCount(), 0);
}

void tst_DisplayModelDialog::valueToolTipOnHover()
{
    const std::string longValue(300, 'v');
    auto root = std::make_shared<DisplayItem>("Root");
    root->setDisplayProperty("long", longValue);
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->setCurrentItem(tree->topLevelItem(0));

    QTreeWidget* pane = m_dialog->m_displayItemProperties;
    const QList<QTreeWidgetItem*> rows = pane->findItems(QStringLiteral("long"), Qt::MatchExactly, 0);
    QCOMPARE(rows.size(), 1);
    QTreeWidgetItem* row = rows.first();
    QCOMPARE(row->toolTip(0), QStringLiteral("long"));

    pane->scrollToItem(row);
    const QPoint pos = pane->visualItemRect(row).topLeft() + QPoint(pane->columnWidth(0) + 5, 3);
    QCOMPARE(pane->itemAt(pos), row);
    QCOMPARE(pane->columnAt(pos.x()), 1);
    QHelpEvent help(QEvent::ToolTip, pos, pane->viewport()->mapToGlobal(pos));
    QApplication::sendEvent(pane->viewport(), &help);
    QTRY_COMPARE(QToolTip::text(), QString::fromStdString(longValue));
    QToolTip::hideText();
}

QTEST_MAIN(tst_DisplayModelDialog)
#include "tst_displaymodeldialog.moc"
