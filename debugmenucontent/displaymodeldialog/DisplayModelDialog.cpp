#include "DisplayModelDialog.h"

#include "ClonedPanes.h"
#include "GuardedRow.h"
#include "NoMatchMark.h"
#include "PropertySearch.h"
#include "RowProperties.h"
#include "RowRemovalWatch.h"
#include "SearchField.h"
#include "TreeBuilding.h"
#include "TreeMirroring.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>
#include <debugmenucontent/treewidgets/EditModelTreeWidgetItem.h>
#include <debugmenucontent/treewidgets/KeepOpenOnEscape.h>
#include <debugmenucontent/treewidgets/PropertyPane.h>
#include <debugmenucontent/treewidgets/PropertyPaneCopy.h>
#include <debugmenucontent/treewidgets/RowTeardown.h>
#include <debugmenucontent/treewidgets/WaitCursor.h>

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/DrawAreaPresenter.h>
#include <hostcontract/EditorDisplayItem.h>
#include <hostcontract/EditorDisplayModel.h>
#include <hostcontract/HostTypes.h>
#include <hostcontract/ViewModelInterface.h>

#include <QBoxLayout>
#include <QCheckBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QStringList>
#include <QTreeWidget>
#include <QVariant>

#include <optional>
#include <utility>
#include <vector>

namespace Brennvik {

namespace {

// Toggles the row, then its duplicate children: they show geometry that
// belongs to the row's item too. Each toggle tells the host, whose events may
// remove rows; the children are those the row has after its own toggle, and
// only those still there are toggled.
void toggleWithDuplicateChildren(DisplayItemTreeWidgetItem* row)
{
    const RowGuard<DisplayItemTreeWidgetItem> guardedRow = guardRow(row);
    row->toggleVisibility();
    row = guardedRow.get();
    if (!row)
        return;

    std::vector<RowGuard<DisplayItemTreeWidgetItem>> duplicates;
    for (int i = 0; i < row->childCount(); ++i) {
        auto* child = dynamic_cast<DisplayItemTreeWidgetItem*>(row->child(i));
        if (child && child->isDuplicate())
            duplicates.push_back(guardRow(child));
    }
    for (const RowGuard<DisplayItemTreeWidgetItem>& duplicate : duplicates) {
        if (DisplayItemTreeWidgetItem* child = duplicate.get())
            child->toggleVisibility();
    }
}

// Where \a row stands among the children of \a parent: nearly always last,
// unless the host's events appended rows after it.
int lastPositionOf(QTreeWidgetItem& parent, QTreeWidgetItem* row)
{
    const int last = parent.childCount() - 1;
    return parent.child(last) == row ? last : parent.indexOfChild(row);
}

} // namespace

DisplayModelDialog::DisplayModelDialog(QWidget* parent)
    : QDialog(parent)
    , m_viewModel()
    , m_useClone(false)
    , m_showCloneIn3d(false)
    , m_drawAreaPresenter(nullptr)
    , m_clonedViewModel()
    , m_clonedDisplayItemTreeWidget(nullptr)
    , m_clonedTopRow(nullptr)
    , m_vl_clonedProperties(nullptr)
    , m_hl_cloned_business_props(nullptr)
    , m_hl_cloned_display_props(nullptr)
    , m_lbl_cloned_business_obj_props(nullptr)
    , m_lbl_cloned_display_props(nullptr)
    , m_clonedBusinessObjectProperties(nullptr)
    , m_clonedDisplayItemProperties(nullptr)
    , m_expandPath()
    , m_onlyCompareMirrored(true)
    , m_syncingCurrentItem(false)
    , m_rowRemovals(0)
    , m_rebuilds(0)
    , m_noMatchMark(nullptr)
{
    setupUi(this);

    // The form's "1"/"2" header texts are placeholders. Texts made here are
    // translated in the form's context, as the run-time widgets' texts are
    // (the dialog has no meta-object of its own for tr()).
    const char* const context = "DisplayModelDialogClass";
    const QStringList propertyHeaders{QCoreApplication::translate(context, "Name"),
                                      QCoreApplication::translate(context, "Value")};
    m_businessObjectProperties->setHeaderLabels(propertyHeaders);
    m_displayItemTreeWidget->setHeaderLabel(QCoreApplication::translate(context, "Display items"));
    m_displayItemTreeWidget->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_displayItemProperties->setHeaderLabels(propertyHeaders);
    addPropertyCopying(m_businessObjectProperties);
    addPropertyCopying(m_displayItemProperties);

    // Shown, though disabled until clone mode is on.
    m_propertyCompareMode->setChecked(m_onlyCompareMirrored);

    // The user data is the search criterion; the texts are not translated,
    // hosts' tools pick the entries by them.
    const char* const searchTypes[] = {"Any (*)", "pointer", "display item type"};
    for (int i = 0; i < 3; ++i)
        m_searchTypeCB->addItem(QString::fromLatin1(searchTypes[i]), QVariant(i));
    m_searchTypeCB->setCurrentIndex(0);

    connect(m_displayItemTreeWidget, &QTreeWidget::currentItemChanged, this,
            &DisplayModelDialog::onCurrentTreeWidgetItemChanged);
    connect(m_displayItemTreeWidget, &QTreeWidget::itemDoubleClicked, this,
            &DisplayModelDialog::onTreeWidgetItemDoubleClicked);
    connect(m_displayItemCountPB, &QPushButton::clicked, this, &DisplayModelDialog::onDisplayItemCountClicked);
    connect(m_findDisplayItemPB, &QPushButton::clicked, this, &DisplayModelDialog::onFindDisplayItemClicked);
    connect(m_useCloneCheckBox, &QCheckBox::stateChanged, this, &DisplayModelDialog::onUseCloneStateChanged);
    connect(m_showCloneIn3dCheckBox, &QCheckBox::stateChanged, this, &DisplayModelDialog::onShowClone3dStateChanged);
    connect(m_propertyCompareMode, &QCheckBox::stateChanged, this, &DisplayModelDialog::onPropertyCompareModeChanged);

    fitSearchField(*m_searchValueLE);
    installSearchKeys(*this, *m_searchValueLE, [this] { onFindDisplayItemClicked(); });
    m_noMatchMark = new NoMatchMark(*m_searchValueLE);
    keepOpenOnEscape(*this);
}

// The members release the expansion path, the clone and then the view model;
// the rows die with their tree widget.
DisplayModelDialog::~DisplayModelDialog() = default;

void DisplayModelDialog::setViewModel(std::shared_ptr<ViewModelInterface> viewModel)
{
    // The draw area must not keep drawing a clone of the model being replaced.
    if (m_showCloneIn3d && m_drawAreaPresenter && m_viewModel) {
        if (m_drawAreaPresenter->getViewModel())
            m_drawAreaPresenter->showViewModel(m_viewModel);
    }
    m_viewModel = std::move(viewModel);
    rebuildTree(false);
    setEnabled(m_viewModel != nullptr);
}

void DisplayModelDialog::setDrawAreaPresenter(DrawAreaPresenter* drawAreaPresenter)
{
    m_drawAreaPresenter = drawAreaPresenter;
    if (m_useClone && m_showCloneIn3d && m_drawAreaPresenter)
        m_drawAreaPresenter->showViewModel(m_clonedViewModel);
}

void DisplayModelDialog::setVisible(bool visible)
{
    QDialog::setVisible(visible);
    // The clone is drawn only while the dialog that shows it is visible.
    if (m_useClone && m_showCloneIn3d && m_drawAreaPresenter)
        m_drawAreaPresenter->showViewModel(visible ? m_clonedViewModel : m_viewModel);
}

void DisplayModelDialog::closeEvent(QCloseEvent* event)
{
    event->accept();
}

void DisplayModelDialog::clearLayout(QLayout* layout)
{
    Brennvik::clearLayout(layout);
}

void DisplayModelDialog::rebuildTree(bool cloneOnly)
{
    const WaitCursor waitCursor;
    ++m_rowRemovals;
    const quint64 rebuild = ++m_rebuilds;
    if (!cloneOnly)
        clearRowsDeepestFirst(m_displayItemTreeWidget);
    if (m_clonedDisplayItemTreeWidget) {
        clearRowsDeepestFirst(m_clonedDisplayItemTreeWidget);
        m_clonedTopRow = nullptr;
    }

    // A fresh copy at every rebuild, so that the clone shows what copying does now.
    if (m_viewModel && m_useClone) {
        std::shared_ptr<ViewModelInterface> clone = m_viewModel->cloneViewModel(false);
        if (rebuiltSince(rebuild))
            return;
        m_clonedViewModel = std::move(clone);
    } else {
        m_clonedViewModel.reset();
    }

    // Held here: the host's events during the build may hand the dialog another view model.
    const std::shared_ptr<ViewModelInterface> viewModel = m_viewModel;
    if (!viewModel)
        return;
    DisplayModel* displayModel = viewModel->getDisplayModel();
    if (!displayModel || rebuiltSince(rebuild))
        return;
    const std::shared_ptr<DisplayItemInterface> root = displayModel->getRootDisplayItem();
    if (!root || rebuiltSince(rebuild))
        return;

    if (!cloneOnly && !buildOriginalTree(*displayModel, root, rebuild))
        return;
    buildClonedTree(rebuild);
}

bool DisplayModelDialog::buildOriginalTree(DisplayModel& displayModel,
                                           const std::shared_ptr<DisplayItemInterface>& root, quint64 rebuild)
{
    auto* topRow = new DisplayItemTreeWidgetItem(m_displayItemTreeWidget, root, this, false,
                                                 DisplayItemTreeWidgetItem::ShownLater{});
    // A rebuild inside the host's calls clears the tree, this row with it.
    if (!topRow->showItem())
        return false;
    if (!buildDetached(m_displayItemTreeWidget, topRow, root, rebuild))
        return false;

    if (EditorDisplayModel* editorDisplayModel = m_viewModel->getEditorDisplayModel()) {
        const std::vector<std::shared_ptr<EditorDisplayItem>> primitives
            = editorDisplayModel->getAllEditModelPrimitives();
        for (const std::shared_ptr<EditorDisplayItem>& primitive : primitives) {
            if (rebuiltSince(rebuild))
                return false;
            new EditModelTreeWidgetItem(topRow, primitive, this, -1);
        }
    }
    if (rebuiltSince(rebuild))
        return false;

    // Asked for last: hosts work out their active context and its lookups
    // from the model that the build has just read.
    if (const std::optional<InitialEntry> entry = initialEntry(displayModel)) {
        if (rebuiltSince(rebuild))
            return false;
        navigateToInitialEntry(entry->item, false, entry->expand);
    }
    return !rebuiltSince(rebuild);
}

void DisplayModelDialog::buildClonedTree(quint64 rebuild)
{
    if (!m_clonedViewModel || !m_clonedDisplayItemTreeWidget)
        return;
    DisplayModel* clonedDisplayModel = m_clonedViewModel->getDisplayModel();
    if (!clonedDisplayModel)
        return;
    const std::shared_ptr<DisplayItemInterface> clonedRoot = clonedDisplayModel->getRootDisplayItem();
    if (!clonedRoot)
        return;

    if (rebuiltSince(rebuild))
        return;

    auto* clonedTopRow = new DisplayItemTreeWidgetItem(m_clonedDisplayItemTreeWidget, clonedRoot, this, false,
                                                       DisplayItemTreeWidgetItem::ShownLater{});
    if (!clonedTopRow->showItem())
        return;
    if (!buildDetached(m_clonedDisplayItemTreeWidget, clonedTopRow, clonedRoot, rebuild))
        return;
    m_clonedTopRow = clonedTopRow;

    // The comparison asks the host, whose events may start a rebuild.
    for (int i = 0; i < m_displayItemTreeWidget->topLevelItemCount() && !rebuiltSince(rebuild); ++i) {
        auto* mainRow = dynamic_cast<DisplayItemTreeWidgetItem*>(m_displayItemTreeWidget->topLevelItem(i));
        auto* clonedRow = dynamic_cast<DisplayItemTreeWidgetItem*>(m_clonedDisplayItemTreeWidget->topLevelItem(i));
        compareRecursiveTree(mainRow, clonedRow, clonedRow ? clonedRow->parent() : nullptr);
    }
    if (rebuiltSince(rebuild))
        return;

    // Made anew at every rebuild and never undone: after several rebuilds an
    // expansion reaches the other tree once per connection. Hosts' tools
    // count on that, so it is kept.
    connect(m_clonedDisplayItemTreeWidget, &QTreeWidget::currentItemChanged, this,
            &DisplayModelDialog::onCurrentClonedTreeWidgetItemChanged);
    connect(m_displayItemTreeWidget, &QTreeWidget::itemExpanded, this, &DisplayModelDialog::setClonedExpanded);
    connect(m_displayItemTreeWidget, &QTreeWidget::itemCollapsed, this, &DisplayModelDialog::setClonedCollapsed);
    connect(m_clonedDisplayItemTreeWidget, &QTreeWidget::itemExpanded, this, &DisplayModelDialog::setOrigExpanded);
    connect(m_clonedDisplayItemTreeWidget, &QTreeWidget::itemCollapsed, this, &DisplayModelDialog::setOrigCollapsed);

    syncExpandedTreeItems(m_clonedDisplayItemTreeWidget, m_displayItemTreeWidget->currentItem());
}

bool DisplayModelDialog::buildDetached(QTreeWidget* tree, DisplayItemTreeWidgetItem* topRow,
                                       const std::shared_ptr<DisplayItemInterface>& root, quint64 rebuild)
{
    // Rows added under a row that the tree shows each cost the view a
    // notification; built out of the tree, the whole subtree goes in as one row.
    const int position = tree->indexOfTopLevelItem(topRow);
    if (position >= 0)
        tree->takeTopLevelItem(position);
    buildTreeRecursively(topRow, root, false, false);
    // Out of the tree, the rows escaped a rebuild that began inside the host's
    // calls: that rebuild's tree stands, and these go.
    if (rebuiltSince(rebuild)) {
        deleteDetachedRows(topRow);
        return false;
    }
    if (position >= 0)
        tree->insertTopLevelItem(position, topRow);
    return true;
}

void DisplayModelDialog::buildTreeRecursively(DisplayItemTreeWidgetItem* parentRow,
                                              std::shared_ptr<DisplayItemInterface> item, bool geometrySeen,
                                              bool duplicate)
{
    // The host's events may remove rows that the build stands on: it then
    // ends quietly where it is.
    const RowRemovalWatch watch(m_rowRemovals);
    buildSubtreeRows(this, parentRow, item, geometrySeen, duplicate, watch);
}

void DisplayModelDialog::addChildRecursively(DisplayItemTreeWidgetItem* parentRow,
                                             std::shared_ptr<DisplayItemInterface> item, bool duplicate)
{
    if (!parentRow)
        return;
    auto* row
        = new DisplayItemTreeWidgetItem(parentRow, item, this, duplicate, DisplayItemTreeWidgetItem::ShownLater{});
    // Showing the row asks the host, whose events may delete it, or its parent and it.
    if (!row->showItem())
        return;
    // A subtree is built out of the tree and put back in one insertion (see
    // buildDetached); a leaf needs neither step. Rows gone while the host is
    // asked for the children end the addition.
    const RowRemovalWatch asking(m_rowRemovals);
    const bool detach = item && !item->getChildren().empty();
    if (asking.rowsRemoved())
        return;
    if (detach)
        parentRow->takeChild(lastPositionOf(*parentRow, row));
    // The duplicate flag goes in as geometrySeen, so a subtree added under a
    // duplicate row starts with geometry lists enabled; hosts have always seen
    // their added geometry listed so. The host's events during the build may
    // remove rows, the parent among them: a parent that the tree shows is
    // followed; one outside it counts as gone.
    const RowRemovalWatch watch(m_rowRemovals);
    const RowGuard<DisplayItemTreeWidgetItem> guardedParent = guardRow(parentRow);
    const bool parentShown = guardedParent.get() != nullptr;
    buildTreeRecursively(row, item, duplicate, false);
    if (!detach)
        return;
    const bool parentGone = watch.rowsRemoved() && (!parentShown || !guardedParent.get());
    if (parentGone)
        deleteDetachedRows(row);
    else
        parentRow->addChild(row);
}

void DisplayModelDialog::displayItemAdded(DisplayItemTreeWidgetItem* parentRow,
                                          std::shared_ptr<DisplayItemInterface> item)
{
    if (!parentRow)
        return;
    // Appended after the existing rows, wherever the item stands among its siblings.
    addChildRecursively(parentRow, item, parentRow->isDuplicate());
}

// Every row of a hidden subtree reports here; comparing the current row's
// address spares a cast per row.
void DisplayModelDialog::displayItemModified(DisplayItemTreeWidgetItem* row)
{
    if (row && m_displayItemTreeWidget->currentItem() == row)
        printProperties(row);
}

void DisplayModelDialog::displayItemModified(EditModelTreeWidgetItem* row)
{
    if (row && m_displayItemTreeWidget->currentItem() == row)
        printProperties(row);
}

void DisplayModelDialog::displayItemsModified(const std::list<std::shared_ptr<DisplayItemInterface>>& items)
{
    auto* currentRow = dynamic_cast<DisplayItemTreeWidgetItem*>(m_displayItemTreeWidget->currentItem());
    if (!currentRow)
        return;
    const std::shared_ptr<DisplayItemInterface> currentItem = currentRow->getDisplayItem();
    if (!currentItem)
        return;
    // Once per entry that is the current item, repeats included.
    for (const std::shared_ptr<DisplayItemInterface>& item : items) {
        if (item == currentItem)
            printProperties(currentRow);
    }
}

void DisplayModelDialog::displayItemsRemoved(DisplayItemTreeWidgetItem* parentRow,
                                             std::set<std::shared_ptr<DisplayItemInterface>> items)
{
    if (!parentRow)
        return;
    QTreeWidget* const tree = parentRow->treeWidget();
    const bool hadCurrent = tree && tree->currentItem();
    for (const std::shared_ptr<DisplayItemInterface>& item : items) {
        if (!item)
            continue;
        // Only the first row goes, even when several rows under this parent
        // show the item: hosts remove each row with its own event.
        if (QTreeWidgetItem* row = parentRow->takeFirstChildShowing(item)) {
            ++m_rowRemovals;
            deleteDetachedRows(row);
        }
    }
    // Qt drops a current row that was below a removed row without a
    // current-row change; the panes must not go on showing what has gone.
    if (hadCurrent && !tree->currentItem()) {
        if (tree == m_displayItemTreeWidget)
            onCurrentTreeWidgetItemChanged(nullptr);
        else if (tree == m_clonedDisplayItemTreeWidget)
            onCurrentClonedTreeWidgetItemChanged(nullptr);
    }
}

void DisplayModelDialog::navigateToInitialEntry(std::shared_ptr<DisplayItemInterface> item, bool inClonedTree,
                                                bool expand)
{
    DisplayItemTreeWidget* tree = inClonedTree ? m_clonedDisplayItemTreeWidget : m_displayItemTreeWidget;
    if (!tree)
        return;

    // Every row of the item, duplicates included, is selected; the last one
    // stays current. Making a row current must not undo the earlier selections.
    // Making a row current prints its properties, and the host's events may
    // remove rows meanwhile: only rows that are still there are gone on with.
    std::vector<RowGuard<DisplayItemTreeWidgetItem>> guardedRows;
    for (DisplayItemTreeWidgetItem* row : rowsShowing(tree, item))
        guardedRows.push_back(guardRow(row));
    for (const RowGuard<DisplayItemTreeWidgetItem>& guardedRow : guardedRows) {
        if (DisplayItemTreeWidgetItem* row = guardedRow.get()) {
            row->setSelected(true);
            setCurrentRowFollowed(tree, row, QItemSelectionModel::NoUpdate);
        }
        if (DisplayItemTreeWidgetItem* row = guardedRow.get()) {
            row->setExpanded(expand);
            tree->scrollToItem(row);
        }
    }

    if (QTreeWidgetItem* topRow = tree->itemFromDFSIndex(0))
        topRow->setExpanded(true);
}

void DisplayModelDialog::printProperties(const QTreeWidgetItem* item)
{
    m_displayItemProperties->clear();
    m_businessObjectProperties->clear();
    if (!item)
        return;

    PropertyList businessObjectProperties;
    PropertyList displayItemProperties;
    collectRowProperties(item, businessObjectProperties, displayItemProperties);
    fillPropertyPane(m_displayItemProperties, displayItemProperties);
    fillPropertyPane(m_businessObjectProperties, businessObjectProperties);
}

void DisplayModelDialog::onDisplayItemCountClicked()
{
    // The host's count: duplicate and edit-model rows are not display items of their own.
    const std::uint64_t count = displayItemCount(m_viewModel.get());
    m_displayItemCountLE->setText(QString::number(static_cast<qulonglong>(count)));
}

void DisplayModelDialog::onFindDisplayItemClicked()
{
    const QString searchValue = m_searchValueLE->text();
    if (searchValue.isEmpty())
        return;
    bool isNumber = false;
    const int criterion = m_searchTypeCB->currentData().toInt(&isNumber);
    const std::optional<QString> nameFragment = isNumber ? searchNameFragment(criterion) : std::nullopt;
    if (!nameFragment)
        return;

    // "Find next": the search starts after the current row and does not wrap.
    const WaitCursor waitCursor;
    const RowRemovalWatch watch(m_rowRemovals);
    QTreeWidgetItem* found = findNextMatchingRow(m_displayItemTreeWidget, m_displayItemTreeWidget->currentItem(),
                                                 *nameFragment, searchValue, watch);
    // Rows that went meanwhile end the search quietly; it found nothing to say.
    if (watch.rowsRemoved())
        return;
    if (!found) {
        m_noMatchMark->show();
        return;
    }
    m_noMatchMark->clear();
    setCurrentRowFollowed(m_displayItemTreeWidget, found);
}

void DisplayModelDialog::onCurrentTreeWidgetItemChanged(QTreeWidgetItem* current)
{
    // Mirroring asks the host for the properties of both sides, and its
    // events may remove the row; the change that removal makes prints the panes.
    const RowGuard<QTreeWidgetItem> guardedCurrent = guardRow(current);
    {
        // The mirrored change in the cloned tree comes back through its own
        // slot, which finds the guard set and does not mirror it back here.
        const CurrentRowSyncGuard syncing(m_syncingCurrentItem);
        if (syncing.entered())
            syncExpandedTreeItems(m_clonedDisplayItemTreeWidget, current);
    }
    if (current && !guardedCurrent.get())
        return;
    printProperties(current);
}

void DisplayModelDialog::onTreeWidgetItemDoubleClicked(QTreeWidgetItem* /*item*/, int column)
{
    // Acts on the current row, which the click has just made current; hosts
    // that double click from their own tools rely on the current row.
    QTreeWidgetItem* current = m_displayItemTreeWidget->currentItem();
    if (auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(current)) {
        if (column != 0)
            return;
        toggleWithDuplicateChildren(row);
    } else if (auto* editRow = dynamic_cast<EditModelTreeWidgetItem*>(current); editRow && column == 0) {
        editRow->toggleVisibility();
    } else {
        return;
    }

    if (m_viewModel) {
        if (DisplayModel* displayModel = m_viewModel->getDisplayModel())
            displayModel->doVisibilityUpdate();
    }
}

} // namespace Brennvik
