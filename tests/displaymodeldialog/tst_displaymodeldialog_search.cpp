#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/EditorDisplayModel.h>
#include <hostcontract/ViewModelInterface.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include "../common/TestTree.h"
#include "../common/DisplayModelDialogTestAccess.h"

#include <QBrush>
#include <QComboBox>
#include <QHash>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <limits>
#include <memory>

Q_DECLARE_METATYPE(QTreeWidgetItem*)

using namespace Brennvik;
using Brennvik::Test::buildTree;
using Brennvik::Test::findItem;
using Brennvik::Test::preOrder;
using Access = Brennvik::DisplayModelDialogTestAccess;

namespace {

const QString NoRow = QStringLiteral("<none>");

using Brennvik::Test::makeViewModel;

// A root whose count the host decides, whatever its children.
class HostCountedItem : public DisplayItem
{
public:
    HostCountedItem(std::string name, std::uint64_t count)
        : DisplayItem(std::move(name))
        , m_count(count)
    {
    }
    std::uint64_t getNumberOfDisplayItems() const override { return m_count; }

private:
    std::uint64_t m_count;
};

// A view model that has no display model (yet).
class ViewModelWithoutDisplayModel : public ViewModelInterface
{
public:
    std::shared_ptr<ViewModelInterface> cloneViewModel(bool) const override { return {}; }
    DisplayModel* getDisplayModel() const override { return nullptr; }
    EditorDisplayModel* getEditorDisplayModel() const override { return nullptr; }
    ViewBase* getView() const override { return nullptr; }
    DisplayModel* getLabelDisplayModel() const override { return nullptr; }
};

// The column-0 texts from the top row down to \a row, joined by "/".
QString rowPath(const QTreeWidgetItem* row)
{
    if (!row)
        return NoRow;
    QStringList texts;
    for (const QTreeWidgetItem* r = row; r; r = r->parent())
        texts.prepend(r->text(0));
    return texts.join(QLatin1Char('/'));
}

// The row named by texts from the top row down; the first child of each text.
QTreeWidgetItem* rowByPath(QTreeWidget* tree, const QString& path)
{
    const QStringList texts = path.split(QLatin1Char('/'));
    QTreeWidgetItem* row = nullptr;
    for (int i = 0; i < tree->topLevelItemCount() && !row; ++i) {
        if (tree->topLevelItem(i)->text(0) == texts.first())
            row = tree->topLevelItem(i);
    }
    for (int t = 1; row && t < texts.size(); ++t) {
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; i < row->childCount() && !next; ++i) {
            if (row->child(i)->text(0) == texts.at(t))
                next = row->child(i);
        }
        row = next;
    }
    return row;
}

QList<QTreeWidgetItem*> allRows(QTreeWidget* tree)
{
    QList<QTreeWidgetItem*> rows;
    for (QTreeWidgetItemIterator it(tree); *it; ++it)
        rows << *it;
    return rows;
}

// "number:text" entries, head (the source row) first.
QList<QPair<int, QString>> parsePath(const QStringList& entries)
{
    QList<QPair<int, QString>> path;
    for (const QString& entry : entries) {
        const int colon = entry.indexOf(QLatin1Char(':'));
        path.append(qMakePair(entry.left(colon).toInt(), entry.mid(colon + 1)));
    }
    return path;
}

// (name = value, colour of the value) of every row of a property pane.
QStringList colouredRows(QTreeWidget* pane)
{
    QStringList rows;
    for (int i = 0; i < pane->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = pane->topLevelItem(i);
        const QBrush brush = row->foreground(1);
        QString colour = QStringLiteral("?");
        if (brush.style() == Qt::SolidPattern && brush.color() == QColor(Qt::red))
            colour = QStringLiteral("red");
        else if (brush.style() == Qt::SolidPattern && brush.color() == QColor(Qt::lightGray))
            colour = QStringLiteral("grey");
        rows << row->text(0) + QStringLiteral(" = ") + row->text(1) + QStringLiteral(" [") + colour
                + QStringLiteral("]");
    }
    return rows;
}

bool paneHasRow(QTreeWidget* pane, const QString& name, const QString& value)
{
    for (int i = 0; i < pane->topLevelItemCount(); ++i) {
        if (pane->topLevelItem(i)->text(0) == name && pane->topLevelItem(i)->text(1) == value)
            return true;
    }
    return false;
}

/*
 * The tree that the searches run over:
 *
 *   root
 *     alpha    business ("Pointer", "0x1A00")
 *       alpha1 display  ("note", "0x1a")
 *       alpha2 display  ("POINTER target", "see 0X1aFF")
 *     beta     display  ("pointer", "1a")
 *       beta1  business ("material", "Steel DX54")
 *     module   a geometry module item
 *       gamma  display  ("comment", "steel"), ("pattern", "st*l"), ("blank type", "module blank")
 */
std::shared_ptr<DisplayItem> buildSearchTree()
{
    auto root = buildTree({"root", {{"alpha", {{"alpha1"}, {"alpha2"}}}, {"beta", {{"beta1"}}}}});
    auto module = std::make_shared<GeometryModuleItem>("module");
    root->appendChild(module);
    module->appendChild(std::make_shared<DisplayItem>("gamma"));

    findItem(root, "alpha")->setBusinessProperty("Pointer", "0x1A00");
    findItem(root, "alpha1")->setDisplayProperty("note", "0x1a");
    findItem(root, "alpha2")->setDisplayProperty("POINTER target", "see 0X1aFF");
    findItem(root, "beta")->setDisplayProperty("pointer", "1a");
    findItem(root, "beta1")->setBusinessProperty("material", "Steel DX54");
    findItem(root, "gamma")->setDisplayProperty("comment", "steel");
    findItem(root, "gamma")->setDisplayProperty("pattern", "st*l");
    findItem(root, "gamma")->setDisplayProperty("blank type", "module blank");
    return root;
}

/*
 * The tree that the path walkers run over (item indices after the names):
 *
 *   root
 *     a #0: a0 #0, a1 #1
 *     b #1: b0 #0, b1 #1 (b10 #0)
 *     c #2: c0 #0, c1 #1, c #2
 */
std::shared_ptr<DisplayItem> buildPathTree()
{
    return buildTree(
        {"root", {{"a", {{"a0"}, {"a1"}}}, {"b", {{"b0"}, {"b1", {{"b10"}}}}}, {"c", {{"c0"}, {"c1"}, {"c"}}}}});
}

} // namespace

class tst_DisplayModelDialogSearch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();

    // find next
    void findNextStepsThroughMatches_data();
    void findNextStepsThroughMatches();
    void findNextFoldsCaseBeyondAscii_data();
    void findNextFoldsCaseBeyondAscii();
    void findNextStartsAfterTheCurrentRow_data();
    void findNextStartsAfterTheCurrentRow();
    void lastMatchCurrentChangesNothing();
    void foundRowIsCurrentSelectedAndPrinted();
    void collapsedRowsAreSearched();
    void duplicateRowIsFoundAtEachPosition();
    void findDoesNothing_data();
    void findDoesNothing();

    // item count
    void updateWritesHostCount_data();
    void updateWritesHostCount();
    void updateWithoutViewModelWritesZero();

    // path walkers
    void processItem_data();
    void processItem();
    void processItemComparesRowAtSamePosition();
    void processItemIgnoresNullRowAndForeignEntry();
    void expandCollapseItem_data();
    void expandCollapseItem();

private:
    void setModel(const std::shared_ptr<ViewModelInterface>& viewModel);
    void typeSearchValue(const QString& text);
    void chooseCriterion(int criterion);
    void clickFindNext();
    void clickRow(const QString& path);
    QString currentRow() const;
    void verifyNoAddressContains(const std::shared_ptr<DisplayItem>& root, const QString& text);

    DisplayModelDialog* m_dialog = nullptr; // shown once, its model replaced per case
};

void tst_DisplayModelDialogSearch::initTestCase()
{
    // For the spies on currentItemChanged.
    qRegisterMetaType<QTreeWidgetItem*>();
    m_dialog = new DisplayModelDialog(nullptr);
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_dialog));
}

void tst_DisplayModelDialogSearch::cleanupTestCase()
{
    delete m_dialog;
}

void tst_DisplayModelDialogSearch::cleanup()
{
    m_dialog->setViewModel({});
    m_dialog->m_searchValueLE->clear();
    m_dialog->m_searchTypeCB->setCurrentIndex(0);
    m_dialog->m_displayItemCountLE->clear();
    Access::expandPath(*m_dialog).clear();
    Access::onlyCompareMirrored(*m_dialog) = true;
    Access::setClonedPanes(*m_dialog, nullptr, nullptr);
}

void tst_DisplayModelDialogSearch::setModel(const std::shared_ptr<ViewModelInterface>& viewModel)
{
    m_dialog->setViewModel(viewModel);
    m_dialog->m_displayItemTreeWidget->expandAll();
}

void tst_DisplayModelDialogSearch::typeSearchValue(const QString& text)
{
    m_dialog->m_searchValueLE->clear();
    QTest::keyClicks(m_dialog->m_searchValueLE, text);
    QCOMPARE(m_dialog->m_searchValueLE->text(), text);
}

// With the keyboard, as a user picks an entry of a closed combo box.
void tst_DisplayModelDialogSearch::chooseCriterion(int criterion)
{
    QComboBox* combo = m_dialog->m_searchTypeCB;
    const int index = combo->findData(criterion);
    QVERIFY(index >= 0);
    QTest::keyClick(combo, Qt::Key_Home);
    for (int i = 0; i < index; ++i)
        QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(combo->currentIndex(), index);
}

void tst_DisplayModelDialogSearch::clickFindNext()
{
    QTest::mouseClick(m_dialog->m_findDisplayItemPB, Qt::LeftButton);
}

void tst_DisplayModelDialogSearch::clickRow(const QString& path)
{
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QTreeWidgetItem* row = rowByPath(tree, path);
    QVERIFY2(row, qPrintable(path));
    tree->scrollToItem(row);
    const QRect rect = tree->visualItemRect(row);
    QVERIFY(rect.isValid());
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());
    QCOMPARE(currentRow(), path);
}

QString tst_DisplayModelDialogSearch::currentRow() const
{
    return rowPath(m_dialog->m_displayItemTreeWidget->currentItem());
}

// The host's pointer values are addresses; a search text that an address
// happens to contain would make the expected matches wrong.
void tst_DisplayModelDialogSearch::verifyNoAddressContains(const std::shared_ptr<DisplayItem>& root,
                                                           const QString& text)
{
    for (const auto& item : preOrder(root)) {
        PropertyList business;
        PropertyList display;
        item->getProperties(business, display);
        for (const PropertyList* list : {&business, &display}) {
            for (const Property& property : *list) {
                if (QString::fromStdString(property.first).startsWith(QLatin1String("pointer")))
                    QVERIFY2(!QString::fromStdString(property.second).contains(text, Qt::CaseInsensitive),
                             "an address contains the search text; the expected matches do not hold");
            }
        }
    }
}

// ---------------------------------------------------------------- find next

void tst_DisplayModelDialogSearch::findNextStepsThroughMatches_data()
{
    QTest::addColumn<int>("criterion");
    QTest::addColumn<QString>("searchValue");
    QTest::addColumn<QStringList>("expected"); // current row after each click, then it stays

    const QStringList everyRow{"root",      "root/alpha",      "root/alpha/alpha1", "root/alpha/alpha2",
                               "root/beta", "root/beta/beta1", "root/module",       "root/module/gamma"};

    QTest::newRow("pointer: name and value in any case")
        << 1 << "0x1A" << QStringList{"root/alpha", "root/alpha/alpha2"};
    QTest::newRow("pointer: every address") << 1 << "0x" << everyRow;
    QTest::newRow("pointer: value without the name") << 1 << "steel" << QStringList{};
    QTest::newRow("any: value whatever the name")
        << 0 << "0x1a" << QStringList{"root/alpha", "root/alpha/alpha1", "root/alpha/alpha2"};
    QTest::newRow("any: both lists, any case") << 0 << "STEEL" << QStringList{"root/beta/beta1", "root/module/gamma"};
    QTest::newRow("any: asterisk is a plain character") << 0 << "st*l" << QStringList{"root/module/gamma"};
    QTest::newRow("any: lone asterisk") << 0 << "*" << QStringList{"root/module/gamma"};
    QTest::newRow("any: no match") << 0 << "nothing like this" << QStringList{};
    QTest::newRow("display item type: one type") << 2 << "module" << QStringList{"root/module"};
    QTest::newRow("display item type: every row, depth first") << 2 << "item" << everyRow;
    QTest::newRow("display item type: other names do not count") << 2 << "steel" << QStringList{};
}

void tst_DisplayModelDialogSearch::findNextStepsThroughMatches()
{
    QFETCH(int, criterion);
    QFETCH(QString, searchValue);
    QFETCH(QStringList, expected);

    auto root = buildSearchTree();
    verifyNoAddressContains(root, QStringLiteral("0x1a"));
    setModel(makeViewModel(root));
    QCOMPARE(currentRow(), NoRow);

    typeSearchValue(searchValue);
    chooseCriterion(criterion);
    if (QTest::currentTestFailed())
        return;

    for (const QString& row : expected) {
        clickFindNext();
        QCOMPARE(currentRow(), row);
    }
    // At the end the search stays where it is: no wrap to the top.
    const QString last = expected.isEmpty() ? NoRow : expected.last();
    for (int i = 0; i < 2; ++i) {
        clickFindNext();
        QCOMPARE(currentRow(), last);
    }
}

void tst_DisplayModelDialogSearch::findNextFoldsCaseBeyondAscii_data()
{
    QTest::addColumn<QString>("searchValue");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("ASCII in any case") << "PLAIN text" << QStringList{"root/plain"};
    QTest::newRow("ASCII text, a value with a sign that folds to it")
        << "k-factor" << QStringList{"root/kelvin", "root/plain"};
    QTest::newRow("non-ASCII text in another case") << QString::fromUtf8("\xc3\xa4rger") << QStringList{"root/umlaut"};
    QTest::newRow("ASCII text is no match for a non-ASCII letter") << "arger" << QStringList{};
}

// Values with characters beyond ASCII take Qt's full case folding; the rest
// is compared byte by byte. Both must give what Qt's folding gives.
void tst_DisplayModelDialogSearch::findNextFoldsCaseBeyondAscii()
{
    QFETCH(QString, searchValue);
    QFETCH(QStringList, expected);

    auto root = buildTree({"root", {{"kelvin"}, {"umlaut"}, {"plain"}}});
    // U+212A KELVIN SIGN folds to "k".
    findItem(root, "kelvin")->setDisplayProperty("factor", "\xe2\x84\xaa-FACTOR");
    findItem(root, "umlaut")->setDisplayProperty("mood", "\xc3\x84RGER");
    findItem(root, "plain")->setDisplayProperty("note", "plain TEXT, k-factor");
    setModel(makeViewModel(root));

    // QTest types ASCII only; other text is set as a paste would set it.
    const bool ascii = std::all_of(searchValue.begin(), searchValue.end(), [](QChar c) { return c.unicode() < 0x80; });
    if (ascii)
        typeSearchValue(searchValue);
    else
        m_dialog->m_searchValueLE->setText(searchValue);
    chooseCriterion(0);
    if (QTest::currentTestFailed())
        return;
    for (const QString& row : expected) {
        clickFindNext();
        QCOMPARE(currentRow(), row);
    }
    const QString last = expected.isEmpty() ? NoRow : expected.last();
    clickFindNext();
    QCOMPARE(currentRow(), last);
}

void tst_DisplayModelDialogSearch::findNextStartsAfterTheCurrentRow_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("searchValue");
    QTest::addColumn<QString>("expected");

    QTest::newRow("from a match to the next") << "root/alpha"
                                              << "0x1a"
                                              << "root/alpha/alpha1";
    QTest::newRow("into a later sibling's subtree") << "root/alpha/alpha2"
                                                    << "steel"
                                                    << "root/beta/beta1";
    QTest::newRow("the start row's own match is passed over") << "root/module/gamma"
                                                              << "steel"
                                                              << "root/module/gamma";
    QTest::newRow("matches before the start are not found") << "root/beta"
                                                            << "0x1a"
                                                            << "root/beta";
}

void tst_DisplayModelDialogSearch::findNextStartsAfterTheCurrentRow()
{
    QFETCH(QString, start);
    QFETCH(QString, searchValue);
    QFETCH(QString, expected);

    auto root = buildSearchTree();
    verifyNoAddressContains(root, QStringLiteral("0x1a"));
    setModel(makeViewModel(root));
    clickRow(start);
    typeSearchValue(searchValue);
    chooseCriterion(0);
    if (QTest::currentTestFailed())
        return;

    clickFindNext();
    QCOMPARE(currentRow(), expected);
}

void tst_DisplayModelDialogSearch::lastMatchCurrentChangesNothing()
{
    auto root = buildSearchTree();
    setModel(makeViewModel(root));
    typeSearchValue(QStringLiteral("steel"));
    chooseCriterion(0);
    clickFindNext();
    clickFindNext();
    QCOMPARE(currentRow(), QStringLiteral("root/module/gamma"));

    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QTreeWidgetItem* last = tree->currentItem();
    const QList<QTreeWidgetItem*> selected = tree->selectedItems();
    QCOMPARE(selected, QList<QTreeWidgetItem*>{last});
    QVERIFY(paneHasRow(m_dialog->m_displayItemProperties, QStringLiteral("comment"), QStringLiteral("steel")));
    QSignalSpy currentChanges(tree, &QTreeWidget::currentItemChanged);
    QSignalSpy selectionChanges(tree, &QTreeWidget::itemSelectionChanged);

    clickFindNext();

    QCOMPARE(tree->currentItem(), last);
    QCOMPARE(tree->selectedItems(), selected);
    QCOMPARE(currentChanges.count(), 0);
    QCOMPARE(selectionChanges.count(), 0);
    QVERIFY(paneHasRow(m_dialog->m_displayItemProperties, QStringLiteral("comment"), QStringLiteral("steel")));
}

void tst_DisplayModelDialogSearch::foundRowIsCurrentSelectedAndPrinted()
{
    auto root = buildSearchTree();
    setModel(makeViewModel(root));
    QCOMPARE(m_dialog->m_businessObjectProperties->topLevelItemCount(), 0);

    typeSearchValue(QStringLiteral("dx54"));
    clickFindNext();

    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QCOMPARE(currentRow(), QStringLiteral("root/beta/beta1"));
    QCOMPARE(tree->selectedItems(), QList<QTreeWidgetItem*>{tree->currentItem()});
    // The current-row slot printed the found item.
    QVERIFY(paneHasRow(m_dialog->m_businessObjectProperties, QStringLiteral("material"), QStringLiteral("Steel DX54")));
    QVERIFY(paneHasRow(m_dialog->m_displayItemProperties, QStringLiteral("display item type"),
                       QStringLiteral("DisplayItem")));
}

void tst_DisplayModelDialogSearch::collapsedRowsAreSearched()
{
    auto root = buildSearchTree();
    setModel(makeViewModel(root));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    tree->collapseAll();
    QVERIFY(!rowByPath(tree, QStringLiteral("root"))->isExpanded());

    typeSearchValue(QStringLiteral("steel"));
    clickFindNext();
    QCOMPARE(currentRow(), QStringLiteral("root/beta/beta1"));
    clickFindNext();
    QCOMPARE(currentRow(), QStringLiteral("root/module/gamma"));
}

void tst_DisplayModelDialogSearch::duplicateRowIsFoundAtEachPosition()
{
    // g1 has its place under the "Geometry" group and is listed by the module
    // after it, so it is shown a second time as a duplicate row.
    auto root = buildTree({"root", {{"Geometry", {{"g1"}}}}});
    auto module = std::make_shared<GeometryModuleItem>("module");
    root->appendChild(module);
    module->appendChild(std::make_shared<DisplayItem>("m1"));
    auto g1 = findItem(root, "g1");
    g1->setDisplayProperty("tag", "needle");
    module->addGeometryDisplayItem(g1);
    setModel(makeViewModel(root));

    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    auto* original = dynamic_cast<DisplayItemTreeWidgetItem*>(rowByPath(tree, QStringLiteral("root/Geometry/g1")));
    auto* duplicate = dynamic_cast<DisplayItemTreeWidgetItem*>(rowByPath(tree, QStringLiteral("root/module/g1")));
    QVERIFY(original && duplicate);
    QVERIFY(!original->isDuplicate());
    QVERIFY(duplicate->isDuplicate());
    QCOMPARE(duplicate->getDisplayItem(), original->getDisplayItem());

    typeSearchValue(QStringLiteral("needle"));
    clickFindNext();
    QCOMPARE(tree->currentItem(), static_cast<QTreeWidgetItem*>(original));
    clickFindNext();
    QCOMPARE(tree->currentItem(), static_cast<QTreeWidgetItem*>(duplicate));
    clickFindNext();
    QCOMPARE(tree->currentItem(), static_cast<QTreeWidgetItem*>(duplicate));
}

void tst_DisplayModelDialogSearch::findDoesNothing_data()
{
    QTest::addColumn<QString>("searchValue");
    QTest::addColumn<QVariant>("criterionData"); // data of an extra combo entry; invalid: use "Any (*)"

    QTest::newRow("empty search value") << QString() << QVariant();
    QTest::newRow("unknown criterion 3") << "0x" << QVariant(3);
    QTest::newRow("negative criterion") << "0x" << QVariant(-1);
    QTest::newRow("criterion that is no number") << "0x" << QVariant(QStringLiteral("pointer"));
}

void tst_DisplayModelDialogSearch::findDoesNothing()
{
    QFETCH(QString, searchValue);
    QFETCH(QVariant, criterionData);

    auto root = buildSearchTree();
    setModel(makeViewModel(root));
    QComboBox* combo = m_dialog->m_searchTypeCB;
    const int entries = combo->count();
    if (criterionData.isValid()) {
        // An entry that the dialog never makes, standing for a criterion it does not know.
        combo->addItem(QStringLiteral("other"), criterionData);
        QTest::keyClick(combo, Qt::Key_End);
        QCOMPARE(combo->currentIndex(), entries);
    }
    typeSearchValue(searchValue);

    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QSignalSpy currentChanges(tree, &QTreeWidget::currentItemChanged);
    clickFindNext();
    clickFindNext();
    const QString found = currentRow();
    const int changes = currentChanges.count();

    combo->setCurrentIndex(0);
    while (combo->count() > entries)
        combo->removeItem(combo->count() - 1);

    QCOMPARE(found, NoRow);
    QCOMPARE(changes, 0);
}

// ---------------------------------------------------------------- item count

void tst_DisplayModelDialogSearch::updateWritesHostCount_data()
{
    QTest::addColumn<int>("scenario");
    QTest::addColumn<QString>("expected");

    QTest::newRow("items, not rows: duplicates and edit rows left out") << 0 << "5";
    QTest::newRow("the host's own count, unsigned, no grouping") << 1 << "18446744073709551615";
    QTest::newRow("display model without root") << 2 << "0";
    QTest::newRow("view model without display model") << 3 << "0";
}

void tst_DisplayModelDialogSearch::updateWritesHostCount()
{
    QFETCH(int, scenario);
    QFETCH(QString, expected);

    std::shared_ptr<ViewModelInterface> viewModel;
    switch (scenario) {
    case 0: {
        // root, Geometry, g1, g2, module: 5 items in 9 rows.
        auto root = buildTree({"root", {{"Geometry", {{"g1"}, {"g2"}}}}});
        auto module = std::make_shared<GeometryModuleItem>("module");
        root->appendChild(module);
        module->addGeometryDisplayItem(findItem(root, "g1"));
        module->addGeometryDisplayItem(findItem(root, "g2"));
        auto sceneViewModel = makeViewModel(root);
        sceneViewModel->ensureEditorDisplayModel().addEditModelPrimitive("edit 1");
        sceneViewModel->ensureEditorDisplayModel().addEditModelPrimitive("edit 2");
        viewModel = sceneViewModel;
        break;
    }
    case 1: {
        auto root = std::make_shared<HostCountedItem>("root", std::numeric_limits<std::uint64_t>::max());
        root->appendChild(std::make_shared<DisplayItem>("child"));
        viewModel = makeViewModel(root);
        break;
    }
    case 2:
        viewModel = std::make_shared<SceneViewModel>();
        break;
    default:
        viewModel = std::make_shared<ViewModelWithoutDisplayModel>();
        break;
    }
    setModel(viewModel);
    QVERIFY(m_dialog->isEnabled());
    if (scenario == 0)
        QCOMPARE(allRows(m_dialog->m_displayItemTreeWidget).size(), 9);

    // Whatever the counter showed before is replaced.
    m_dialog->m_displayItemCountLE->setText(QStringLiteral("stale"));
    QTest::mouseClick(m_dialog->m_displayItemCountPB, Qt::LeftButton);
    QCOMPARE(m_dialog->m_displayItemCountLE->text(), expected);
}

void tst_DisplayModelDialogSearch::updateWithoutViewModelWritesZero()
{
    // A dialog that was never given a view model is enabled; the shared one
    // is disabled once its model has been taken away.
    DisplayModelDialog dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(dialog.isEnabled());
    QCOMPARE(dialog.m_displayItemCountLE->text(), QString());

    QTest::mouseClick(dialog.m_displayItemCountPB, Qt::LeftButton);
    QCOMPARE(dialog.m_displayItemCountLE->text(), QStringLiteral("0"));
}

// ---------------------------------------------------------------- path walkers

void tst_DisplayModelDialogSearch::processItem_data()
{
    QTest::addColumn<QString>("start");    // row the walk starts at
    QTest::addColumn<QStringList>("path"); // "number:text", head (source row) first
    QTest::addColumn<QString>("expected"); // row the path names; empty: nothing happens
    QTest::addColumn<bool>("compared");    // the row was taken by position, its properties compared

    QTest::newRow("the top row itself") << "root" << QStringList{"0:root"} << "root" << false;
    QTest::newRow("child of the top row") << "root" << QStringList{"1:b", "0:root"} << "root/b" << false;
    QTest::newRow("grandchild, first branch") << "root" << QStringList{"1:a1", "0:a", "0:root"} << "root/a/a1" << false;
    QTest::newRow("grandchild, later branch") << "root" << QStringList{"1:b1", "1:b", "0:root"} << "root/b/b1" << false;
    QTest::newRow("three levels down") << "root" << QStringList{"0:b10", "1:b1", "1:b", "0:root"} << "root/b/b1/b10"
                                       << false;
    QTest::newRow("renamed row at the same position")
        << "root" << QStringList{"1:b1 renamed", "1:b", "0:root"} << "root/b/b1" << true;
    QTest::newRow("position wins over text") << "root" << QStringList{"0:b1", "1:b", "0:root"} << "root/b/b0" << true;
    QTest::newRow("a child fits the parent's pair")
        << "root" << QStringList{"1:zz", "2:c", "0:root"} << "root/c" << false;
    // The pair nearer the source is taken once, before the entry moves on:
    // here only the second pass over c's children reaches it.
    QTest::newRow("next pair fixed at the start") << "root/c" << QStringList{"2:c", "9:zz"} << "root/c/c" << false;
    QTest::newRow("path that no longer fits") << "root" << QStringList{"1:x", "1:y", "0:root"} << QString() << false;
    QTest::newRow("row without children") << "root/a/a0" << QStringList{"0:a0"} << QString() << false;
}

void tst_DisplayModelDialogSearch::processItem()
{
    QFETCH(QString, start);
    QFETCH(QStringList, path);
    QFETCH(QString, expected);
    QFETCH(bool, compared);

    setModel(makeViewModel(buildPathTree()));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QTreeWidgetItem* startRow = rowByPath(tree, start);
    QVERIFY(startRow);
    QTreeWidgetItem* before = rowByPath(tree, QStringLiteral("root/a/a1"));
    QVERIFY(before);

    QList<QPair<int, QString>>& expandPath = Access::expandPath(*m_dialog);
    expandPath = parsePath(path);
    const int pairs = expandPath.size();

    // The level is handed on but decides nothing: the result is the same for any.
    for (int level : {pairs - 1, 0, 17}) {
        tree->setCurrentItem(before);
        Access::onlyCompareMirrored(*m_dialog) = false;

        m_dialog->processItem(startRow, level, &expandPath.last());

        QCOMPARE(currentRow(), expected.isEmpty() ? QStringLiteral("root/a/a1") : expected);
        QCOMPARE(Access::onlyCompareMirrored(*m_dialog), compared);
        QCOMPARE(expandPath, parsePath(path));
    }
}

void tst_DisplayModelDialogSearch::processItemComparesRowAtSamePosition()
{
    auto root = buildPathTree();
    findItem(root, "b1")->setBusinessProperty("material", "steel");
    findItem(root, "b1")->setDisplayProperty("colour", "blue");
    findItem(root, "b1")->setDisplayProperty("width", "2");
    setModel(makeViewModel(root));
    clickRow(QStringLiteral("root/b/b1"));

    // A second tree whose row at b1's place shows an item of another name and
    // with other values: the row of the other tree that corresponds by position.
    auto other = buildTree({"root", {{"a"}, {"b", {{"b0"}, {"b1 copy"}}}}});
    auto copy = findItem(other, "b1 copy");
    copy->setBusinessProperty("material", "aluminium");
    copy->setDisplayProperty("colour", "blue");
    copy->setDisplayProperty("width", "3");
    copy->setDisplayProperty("extra", "x");
    DisplayItemTreeWidget otherTree(nullptr, false);
    auto* otherTop = new DisplayItemTreeWidgetItem(&otherTree, other, nullptr, false);
    for (int i = 0; i < 2; ++i) {
        auto* row = new DisplayItemTreeWidgetItem(otherTop, other->childAt(i), nullptr, false);
        row->setItemIndex(i);
        for (int j = 0; j < static_cast<int>(other->childAt(i)->childCount()); ++j)
            (new DisplayItemTreeWidgetItem(row, other->childAt(i)->childAt(j), nullptr, false))->setItemIndex(j);
    }
    QTreeWidget businessPane;
    QTreeWidget displayPane;
    businessPane.setColumnCount(2);
    displayPane.setColumnCount(2);
    Access::setClonedPanes(*m_dialog, &businessPane, &displayPane);
    Access::onlyCompareMirrored(*m_dialog) = false;

    QList<QPair<int, QString>>& expandPath = Access::expandPath(*m_dialog);
    expandPath = parsePath({"1:b1", "1:b", "0:root"});
    m_dialog->processItem(otherTop, expandPath.size() - 1, &expandPath.last());

    QCOMPARE(rowPath(otherTree.currentItem()), QStringLiteral("root/b/b1 copy"));
    QCOMPARE(currentRow(), QStringLiteral("root/b/b1"));
    QVERIFY(Access::onlyCompareMirrored(*m_dialog));
    // Values are compared position by position; pointers never count as different.
    const QString copyAddress = QString::fromStdString(DisplayItem::addressText(copy.get()));
    const QString copyInterface
        = QString::fromStdString(DisplayItem::addressText(static_cast<const DisplayItemInterface*>(copy.get())));
    QCOMPARE(colouredRows(&businessPane),
             (QStringList{"pointer = " + copyAddress + " [grey]", "material = aluminium [red]"}));
    QCOMPARE(colouredRows(&displayPane),
             (QStringList{"pointer (DisplayItemInterface) = " + copyInterface + " [grey]",
                          "display item type = DisplayItem [grey]", "colour = blue [grey]", "width = 3 [red]",
                          "extra = x [red]"}));
}

void tst_DisplayModelDialogSearch::processItemIgnoresNullRowAndForeignEntry()
{
    setModel(makeViewModel(buildPathTree()));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QTreeWidgetItem* before = rowByPath(tree, QStringLiteral("root/a/a1"));
    tree->setCurrentItem(before);
    QList<QPair<int, QString>>& expandPath = Access::expandPath(*m_dialog);
    expandPath = parsePath({"1:b", "0:root"});
    QTreeWidgetItem* top = rowByPath(tree, QStringLiteral("root"));

    m_dialog->processItem(nullptr, 1, &expandPath.last());
    m_dialog->expandCollapseItem(nullptr, 1, &expandPath.last(), false);
    QCOMPARE(tree->currentItem(), before);

    // An equal pair that is not an element of the path names nothing.
    const QPair<int, QString> foreign = expandPath.last();
    m_dialog->processItem(top, 1, &foreign);
    m_dialog->expandCollapseItem(top, 1, &foreign, false);
    QCOMPARE(tree->currentItem(), before);
    QVERIFY(top->isExpanded());

    // The same pair taken from the path does name b.
    m_dialog->processItem(top, 1, &expandPath.last());
    QCOMPARE(currentRow(), QStringLiteral("root/b"));
}

void tst_DisplayModelDialogSearch::expandCollapseItem_data()
{
    processItem_data();
}

void tst_DisplayModelDialogSearch::expandCollapseItem()
{
    QFETCH(QString, start);
    QFETCH(QStringList, path);
    QFETCH(QString, expected);

    setModel(makeViewModel(buildPathTree()));
    QTreeWidget* tree = m_dialog->m_displayItemTreeWidget;
    QTreeWidgetItem* startRow = rowByPath(tree, start);
    QVERIFY(startRow);
    QTreeWidgetItem* target = expected.isEmpty() ? nullptr : rowByPath(tree, expected);
    QVERIFY(expected.isEmpty() || target);
    QTreeWidgetItem* current = rowByPath(tree, QStringLiteral("root/a/a1"));
    tree->setCurrentItem(current);

    QList<QPair<int, QString>>& expandPath = Access::expandPath(*m_dialog);
    expandPath = parsePath(path);
    QTreeWidget businessPane;
    QTreeWidget displayPane;
    Access::setClonedPanes(*m_dialog, &businessPane, &displayPane);
    Access::onlyCompareMirrored(*m_dialog) = false;
    QSignalSpy currentChanges(tree, &QTreeWidget::currentItemChanged);

    for (bool expand : {true, false}) {
        // Every row starts in the other state; only the named row may change,
        // and only when it has children.
        if (expand)
            tree->collapseAll();
        else
            tree->expandAll();
        QHash<QTreeWidgetItem*, bool> before;
        for (QTreeWidgetItem* row : allRows(tree))
            before.insert(row, row->isExpanded());

        m_dialog->expandCollapseItem(startRow, expandPath.size() - 1, &expandPath.last(), expand);

        QStringList changed;
        for (QTreeWidgetItem* row : allRows(tree)) {
            if (row->isExpanded() != before.value(row))
                changed << rowPath(row);
        }
        const bool targetChanges = target && target->childCount() > 0;
        QCOMPARE(changed, targetChanges ? QStringList{expected} : QStringList{});
        if (targetChanges)
            QCOMPARE(target->isExpanded(), expand);
    }

    // Nothing of processItem's current row or comparison.
    QCOMPARE(currentChanges.count(), 0);
    QCOMPARE(tree->currentItem(), current);
    QVERIFY(!Access::onlyCompareMirrored(*m_dialog));
    QCOMPARE(businessPane.topLevelItemCount(), 0);
    QCOMPARE(displayPane.topLevelItemCount(), 0);
}

QTEST_MAIN(tst_DisplayModelDialogSearch)
#include "tst_displaymodeldialog_search.moc"
