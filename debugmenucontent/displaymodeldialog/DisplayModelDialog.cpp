#include "DisplayModelDialog.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>
#include <debugmenucontent/treewidgets/EditModelTreeWidgetItem.h>
#include <debugmenucontent/treewidgets/RowGuard.h>
#include <debugmenucontent/treewidgets/RowTeardown.h>

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/DrawAreaPresenter.h>
#include <hostcontract/EditorDisplayItem.h>
#include <hostcontract/EditorDisplayModel.h>
#include <hostcontract/GeometryModuleDisplayItemInterface.h>
#include <hostcontract/HostTypes.h>
#include <hostcontract/InitialEntryLookups.h>
#include <hostcontract/LabelableDisplayItemInterface.h>
#include <hostcontract/ViewModelInterface.h>

#include <QBoxLayout>
#include <QBrush>
#include <QCheckBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QFont>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLayoutItem>
#include <QPushButton>
#include <QSizePolicy>
#include <QSpacerItem>
#include <QStringList>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVariant>

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <tuple>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Brennvik {

namespace {

// The property lists of a display item row: the host's own pairs, then, for
// a labelable item, its label and whether labels are allowed, last in the
// display-item list. Both lists stay empty when the row's item has gone.
void collectDisplayItemProperties(const DisplayItemTreeWidgetItem* row, PropertyList& businessObjectProperties,
                                  PropertyList& displayItemProperties)
{
    if (!row)
        return;
    // getDisplayItem only locks the row's weak reference; the row is not changed.
    const std::shared_ptr<DisplayItemInterface> item = const_cast<DisplayItemTreeWidgetItem*>(row)->getDisplayItem();
    if (!item)
        return;
    item->getProperties(businessObjectProperties, displayItemProperties);
    if (const auto labelable = std::dynamic_pointer_cast<LabelableDisplayItemInterface>(item)) {
        displayItemProperties.emplace_back("Label", labelable->getLabel());
        displayItemProperties.emplace_back("Labels allowed", labelable->areLabelsAllowed() ? "true" : "false");
    }
}

// One top-level (name, value) row per property; the value is also the tool
// tip, so that long values can be read in full.
void fillPropertyPane(QTreeWidget* pane, const PropertyList& properties)
{
    QList<QTreeWidgetItem*> rows;
    for (const Property& property : properties) {
        const QString name = QString::fromStdString(property.first);
        const QString value = QString::fromStdString(property.second);
        auto* row = new QTreeWidgetItem(QStringList{name, value});
        row->setToolTip(1, value);
        rows.append(row);
    }
    pane->addTopLevelItems(rows);
}

// Fills a cloned property pane with \a cloned and colours each value against
// the pair at the same position of \a original: red when it differs, light
// grey when it is equal or not compared. Returns whether a value differed.
// Pointer values always differ between a model and its copy, so they count as equal.
bool fillComparedPane(QTreeWidget* pane, const PropertyList& cloned, const PropertyList& original, bool compare)
{
    if (pane)
        pane->clear();
    bool differs = false;
    auto originalIt = original.cbegin();
    for (const Property& property : cloned) {
        bool equal = true;
        if (compare && !original.empty()) {
            // A value beyond the end of the original list has nothing to equal.
            equal = originalIt != original.cend() && originalIt->second == property.second;
            if (property.first == "pointer" || property.first == "pointer (DisplayItemInterface)")
                equal = true;
        }
        if (originalIt != original.cend())
            ++originalIt;
        if (!equal)
            differs = true;
        if (!pane)
            continue;
        const QString value = QString::fromStdString(property.second);
        auto* row = new QTreeWidgetItem(pane, QStringList{QString::fromStdString(property.first), value});
        row->setToolTip(1, value);
        row->setForeground(1, QBrush(equal ? Qt::lightGray : Qt::red, Qt::SolidPattern));
    }
    return differs;
}

// A search text, prepared once per search: Qt's case-insensitive match, with
// a byte-wise shortcut for the usual case of ASCII on both sides (the host's
// texts are UTF-8; converting every property to a QString would cost more than
// reading the properties).
class SearchText
{
public:
    explicit SearchText(const QString& text)
        : m_text(text)
        , m_utf8(text.toStdString())
        , m_ascii(isAscii(m_utf8))
    {
    }

    bool isEmpty() const { return m_text.isEmpty(); }

    /// Whether \a haystack contains the text, ignoring case.
    bool foundIn(const std::string& haystack) const
    {
        // Non-ASCII characters can fold to ASCII ones (the Kelvin sign to "k"),
        // so only an all-ASCII haystack takes the shortcut.
        if (m_ascii && isAscii(haystack)) {
            const auto equal = [](char a, char b) { return asciiLower(a) == asciiLower(b); };
            return std::search(haystack.begin(), haystack.end(), m_utf8.begin(), m_utf8.end(), equal) != haystack.end();
        }
        return QString::fromStdString(haystack).contains(m_text, Qt::CaseInsensitive);
    }

private:
    static bool isAscii(const std::string& text)
    {
        return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    }
    static char asciiLower(char c) { return (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c; }

    QString m_text;
    std::string m_utf8;
    bool m_ascii;
};

// Whether the row's display item has a property matching the search. With an
// empty name fragment ("Any (*)") only the value counts. Both tests ignore case.
bool rowMatches(QTreeWidgetItem* row, const SearchText& nameFragment, const SearchText& searchValue)
{
    DisplayItemTreeWidgetItem* itemRow = DisplayItemTreeWidgetItem::asDisplayItemRow(row);
    if (!itemRow)
        return false;
    const std::shared_ptr<DisplayItemInterface> item = itemRow->getDisplayItem();
    if (!item)
        return false;

    PropertyList businessObjectProperties;
    PropertyList displayItemProperties;
    item->getProperties(businessObjectProperties, displayItemProperties);
    const auto listMatches = [&](const PropertyList& properties) {
        for (const Property& property : properties) {
            if (!nameFragment.isEmpty() && !nameFragment.foundIn(property.first))
                continue;
            if (searchValue.foundIn(property.second))
                return true;
        }
        return false;
    };
    return listMatches(businessObjectProperties) || listMatches(displayItemProperties);
}

// Tells whether the dialog has removed rows since the watch began. A search
// asks the host for every row's properties, and the host's events may remove
// the rows the walk stands on: the search then ends quietly.
class RowRemovalWatch
{
public:
    explicit RowRemovalWatch(const quint64& removals)
        : m_removals(removals)
        , m_start(removals)
    {
    }
    bool rowsRemoved() const { return m_removals != m_start; }

private:
    const quint64& m_removals;
    quint64 m_start;
};

// Whether \a row is the first to test: a pending start row is passed over
// (and the search begins after it) when it is met.
bool testsRow(QTreeWidgetItem* row, QTreeWidgetItem*& pendingStart)
{
    if (!pendingStart)
        return true;
    if (row == pendingStart)
        pendingStart = nullptr;
    return false;
}

// Pre-order from \a top with an explicit stack of (row, next child), so that
// a deep tree does not exhaust the call stack; children are read as the walk
// reaches them, as a recursive walk would. Null when nothing matches or rows
// went while the host was asked.
QTreeWidgetItem* findMatchingRow(QTreeWidgetItem* top, QTreeWidgetItem*& pendingStart, const SearchText& nameFragment,
                                 const SearchText& searchValue, const RowRemovalWatch& watch)
{
    const auto matches = [&](QTreeWidgetItem* row) {
        return testsRow(row, pendingStart) && rowMatches(row, nameFragment, searchValue);
    };
    if (matches(top))
        return watch.rowsRemoved() ? nullptr : top;
    std::vector<std::pair<QTreeWidgetItem*, int>> stack{{top, 0}};
    while (!stack.empty() && !watch.rowsRemoved()) {
        auto& [row, next] = stack.back();
        if (next >= row->childCount()) {
            stack.pop_back();
            continue;
        }
        QTreeWidgetItem* child = row->child(next++);
        if (matches(child))
            return watch.rowsRemoved() ? nullptr : child;
        stack.emplace_back(child, 0);
    }
    return nullptr;
}

// The position of \a entry in \a path, found by address: equal pairs may
// stand at several levels. -1 when it is not an element of the path.
int pathPosition(const QList<QPair<int, QString>>& path, const QPair<int, QString>* entry)
{
    for (int i = 0; i < path.size(); ++i) {
        if (&path.at(i) == entry)
            return i;
    }
    return -1;
}

// The item index of a display item row; other rows have none.
int itemIndexOf(QTreeWidgetItem* row)
{
    auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row);
    return itemRow ? itemRow->getItemIndex() : -1;
}

// A row of either tree of the dialog, followed across a call into the host.
template<typename Row>
RowGuard<Row> guardRow(Row* row)
{
    auto* tree = row ? dynamic_cast<DisplayItemTreeWidget*>(row->treeWidget()) : nullptr;
    return RowGuard<Row>(row, tree ? tree->getModelIndexFromItem(row, 0) : QModelIndex());
}

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

    // Shown, though disabled until clone mode is on.
    m_propertyCompareMode->setChecked(m_onlyCompareMirrored);

    // The user data is the search criterion; the texts are not translated.
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
    if (!layout)
        return;
    while (QLayoutItem* item = layout->takeAt(0)) {
        // Later, not now: the widget may be in the middle of delivering the
        // signal that led here.
        if (QWidget* widget = item->widget())
            widget->deleteLater();
        if (QLayout* childLayout = item->layout())
            clearLayout(childLayout);
        delete item;
    }
}

void DisplayModelDialog::rebuildTree(bool cloneOnly)
{
    ++m_rowRemovals;
    if (!cloneOnly)
        clearRowsDeepestFirst(m_displayItemTreeWidget);
    if (m_clonedDisplayItemTreeWidget) {
        clearRowsDeepestFirst(m_clonedDisplayItemTreeWidget);
        m_clonedTopRow = nullptr;
    }

    // A fresh copy at every rebuild, so that the clone shows what copying does now.
    if (m_viewModel && m_useClone)
        m_clonedViewModel = m_viewModel->cloneViewModel(false);
    else
        m_clonedViewModel.reset();

    if (!m_viewModel)
        return;
    DisplayModel* displayModel = m_viewModel->getDisplayModel();
    if (!displayModel)
        return;
    const std::shared_ptr<DisplayItemInterface> root = displayModel->getRootDisplayItem();
    if (!root)
        return;

    if (!cloneOnly) {
        // The initial entry is looked up first so that the build can note its
        // rows; walking a large tree afterwards to find them costs as much as
        // a good part of the build.
        bool expandEntry = false;
        const std::optional<std::shared_ptr<DisplayItemInterface>> entry = initialEntry(*displayModel, expandEntry);
        m_entryRowsItem = entry ? *entry : nullptr;
        m_entryRows.clear();

        auto* topRow = new DisplayItemTreeWidgetItem(m_displayItemTreeWidget, root, this, false);
        noteIfEntryRow(topRow, root);
        buildDetached(m_displayItemTreeWidget, topRow, root);

        if (EditorDisplayModel* editorDisplayModel = m_viewModel->getEditorDisplayModel()) {
            for (const std::shared_ptr<EditorDisplayItem>& primitive : editorDisplayModel->getAllEditModelPrimitives())
                new EditModelTreeWidgetItem(topRow, primitive, this, -1);
        }

        if (entry)
            navigateToInitialEntry(*entry, false, expandEntry);
        m_entryRowsItem.reset();
        m_entryRows.clear();
    }

    if (!m_clonedViewModel || !m_clonedDisplayItemTreeWidget)
        return;
    DisplayModel* clonedDisplayModel = m_clonedViewModel->getDisplayModel();
    if (!clonedDisplayModel)
        return;
    const std::shared_ptr<DisplayItemInterface> clonedRoot = clonedDisplayModel->getRootDisplayItem();
    if (!clonedRoot)
        return;

    m_clonedTopRow = new DisplayItemTreeWidgetItem(m_clonedDisplayItemTreeWidget, clonedRoot, this, false);
    buildDetached(m_clonedDisplayItemTreeWidget, m_clonedTopRow, clonedRoot);

    for (int i = 0; i < m_displayItemTreeWidget->topLevelItemCount(); ++i) {
        auto* mainRow = dynamic_cast<DisplayItemTreeWidgetItem*>(m_displayItemTreeWidget->topLevelItem(i));
        auto* clonedRow = dynamic_cast<DisplayItemTreeWidgetItem*>(m_clonedDisplayItemTreeWidget->topLevelItem(i));
        compareRecursiveTree(mainRow, clonedRow, clonedRow ? clonedRow->parent() : nullptr);
    }

    // Made anew at every rebuild and never undone: after several rebuilds an
    // expansion reaches the other tree once per connection.
    connect(m_clonedDisplayItemTreeWidget, &QTreeWidget::currentItemChanged, this,
            &DisplayModelDialog::onCurrentClonedTreeWidgetItemChanged);
    connect(m_displayItemTreeWidget, &QTreeWidget::itemExpanded, this, &DisplayModelDialog::setClonedExpanded);
    connect(m_displayItemTreeWidget, &QTreeWidget::itemCollapsed, this, &DisplayModelDialog::setClonedCollapsed);
    connect(m_clonedDisplayItemTreeWidget, &QTreeWidget::itemExpanded, this, &DisplayModelDialog::setOrigExpanded);
    connect(m_clonedDisplayItemTreeWidget, &QTreeWidget::itemCollapsed, this, &DisplayModelDialog::setOrigCollapsed);

    syncExpandedTreeItems(m_clonedDisplayItemTreeWidget, m_displayItemTreeWidget->currentItem());
}

std::optional<std::shared_ptr<DisplayItemInterface>> DisplayModelDialog::initialEntry(DisplayModel& displayModel,
                                                                                      bool& expand) const
{
    const std::shared_ptr<ActiveContext> context = displayModel.getActiveContext();
    if (!context)
        return std::nullopt;
    switch (context->getContextKind()) {
    case ContextKind::ProcessStep:
        if (Kind6Provider* provider = displayModel.getKind6Provider()) {
            expand = true;
            return provider->getDisplayItemAt(displayModel.getKind6Index());
        }
        break;
    case ContextKind::Tool:
        if (Kind7Source* source = displayModel.getKind7Source()) {
            if (const std::shared_ptr<Kind7Lookup> lookup = displayModel.getKind7Lookup()) {
                expand = false;
                return lookup->findDisplayItem(source->getKey());
            }
        }
        break;
    default:
        if (DefaultEntryOwner* owner = displayModel.getDefaultEntryOwner()) {
            expand = false;
            return owner->getEntryDisplayItem();
        }
        break;
    }
    return std::nullopt;
}

void DisplayModelDialog::noteIfEntryRow(DisplayItemTreeWidgetItem* row,
                                        const std::shared_ptr<DisplayItemInterface>& item)
{
    if (m_entryRowsItem && item == m_entryRowsItem)
        m_entryRows.push_back(row);
}

void DisplayModelDialog::buildDetached(QTreeWidget* tree, DisplayItemTreeWidgetItem* topRow,
                                       const std::shared_ptr<DisplayItemInterface>& root)
{
    // Rows added under a row that the tree shows each cost the view a
    // notification; built out of the tree, the whole subtree goes in as one row.
    const int position = tree->indexOfTopLevelItem(topRow);
    if (position >= 0)
        tree->takeTopLevelItem(position);
    buildTreeRecursively(topRow, root, false, false);
    if (position >= 0)
        tree->insertTopLevelItem(position, topRow);
}

namespace {

// One item whose rows are being made: its children first, then, when the
// item is a geometry module after a "Geometry" row, its geometry list.
struct BuildFrame
{
    DisplayItemTreeWidgetItem* parentRow;
    std::shared_ptr<DisplayItemInterface> item;
    DisplayItemList pending;
    std::size_t next;
    int index;
    bool geometrySeen;
    bool duplicate;
    bool listingGeometry;
};

} // namespace

// Depth first with an explicit stack, in the order of a recursive build: the
// host's tree may be a chain far deeper than the call stack. An empty child
// gets no row. An item met again on its own way down (it lists itself or an
// ancestor) gets a row that shows it, and nothing below that row.
void DisplayModelDialog::buildTreeRecursively(DisplayItemTreeWidgetItem* parentRow,
                                              std::shared_ptr<DisplayItemInterface> item, bool geometrySeen,
                                              bool duplicate)
{
    if (!parentRow || !item)
        return;

    // The host's events may remove rows that the frames stand on: the build
    // then ends quietly where it is.
    const RowRemovalWatch watch(m_rowRemovals);
    std::unordered_set<const DisplayItemInterface*> onPath{item.get()};
    std::vector<BuildFrame> stack;
    stack.push_back({parentRow, item, item->getChildren(), 0, 0, geometrySeen, duplicate, false});
    while (!stack.empty() && !watch.rowsRemoved()) {
        BuildFrame& frame = stack.back();
        if (frame.next == frame.pending.size()) {
            // Once the "Geometry" group is built, geometry modules after it
            // list their geometry a second time.
            if (!frame.listingGeometry && frame.geometrySeen && !frame.duplicate) {
                frame.listingGeometry = true;
                if (const auto module = std::dynamic_pointer_cast<GeometryModuleDisplayItemInterface>(frame.item)) {
                    frame.pending = module->getGeometryDisplayItems();
                    frame.next = 0;
                    continue;
                }
            }
            onPath.erase(frame.item.get());
            stack.pop_back();
            continue;
        }

        const std::shared_ptr<DisplayItemInterface> child = frame.pending[frame.next++];
        if (!child)
            continue;
        // Rows of a geometry list, and every row below them, are duplicates.
        const bool childDuplicate = frame.listingGeometry || frame.duplicate;
        const bool childGeometrySeen = frame.listingGeometry || frame.geometrySeen;
        auto* row = new DisplayItemTreeWidgetItem(frame.parentRow, child, this, childDuplicate);
        noteIfEntryRow(row, child);
        row->setItemIndex(frame.index++);
        // The row's text is set once, so it can be tested before its subtree is built.
        if (!frame.listingGeometry && !frame.geometrySeen && row->text(0) == QLatin1String("Geometry"))
            frame.geometrySeen = true;
        if (!onPath.insert(child.get()).second)
            continue;
        DisplayItemList grandChildren = child->getChildren();
        stack.push_back({row, child, std::move(grandChildren), 0, 0, childGeometrySeen, childDuplicate, false});
    }
}

void DisplayModelDialog::addChildRecursively(DisplayItemTreeWidgetItem* parentRow,
                                             std::shared_ptr<DisplayItemInterface> item, bool duplicate)
{
    if (!parentRow)
        return;
    auto* row = new DisplayItemTreeWidgetItem(parentRow, item, this, duplicate);
    // A subtree is built out of the tree and put back in one insertion (see
    // buildDetached); a leaf needs neither step.
    const bool detach = item && !item->getChildren().empty();
    if (detach)
        parentRow->takeChild(parentRow->childCount() - 1);
    // The duplicate flag goes in as geometrySeen: a subtree added under a
    // duplicate row starts with geometry lists enabled. The host's events
    // during the build may remove rows, the parent among them: a parent that
    // the tree shows is followed; one outside it counts as gone.
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
    addChildRecursively(parentRow, item, parentRow->isDuplicate());
}

void DisplayModelDialog::displayItemModified(DisplayItemTreeWidgetItem* row)
{
    if (row && dynamic_cast<DisplayItemTreeWidgetItem*>(m_displayItemTreeWidget->currentItem()) == row)
        printProperties(row);
}

void DisplayModelDialog::displayItemModified(EditModelTreeWidgetItem* row)
{
    if (row && dynamic_cast<EditModelTreeWidgetItem*>(m_displayItemTreeWidget->currentItem()) == row)
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
        // Only the first row goes, even when several rows under this parent show the item.
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
    // The rows of the item in tree order: noted by the build that has just
    // run (the entry item is only set from the lookup until the navigation
    // after it), or found by a walk over the whole tree. No item has no rows.
    std::vector<DisplayItemTreeWidgetItem*> rows;
    if (!inClonedTree && item && item == m_entryRowsItem) {
        rows = m_entryRows;
    } else {
        for (QTreeWidgetItemIterator it(tree); item && *it; ++it) {
            auto* row = DisplayItemTreeWidgetItem::asDisplayItemRow(*it);
            if (row && row->showsDisplayItem(item))
                rows.push_back(row);
        }
    }
    // Making a row current prints its properties, and the host's events may
    // remove rows meanwhile: only rows that are still there are gone on with.
    std::vector<RowGuard<DisplayItemTreeWidgetItem>> guardedRows;
    guardedRows.reserve(rows.size());
    for (DisplayItemTreeWidgetItem* row : rows)
        guardedRows.push_back(guardRow(row));
    for (const RowGuard<DisplayItemTreeWidgetItem>& guardedRow : guardedRows) {
        if (DisplayItemTreeWidgetItem* row = guardedRow.get()) {
            row->setSelected(true);
            tree->setCurrentItem(row, 0, QItemSelectionModel::NoUpdate);
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
    if (const auto* row = dynamic_cast<const DisplayItemTreeWidgetItem*>(item)) {
        collectDisplayItemProperties(row, businessObjectProperties, displayItemProperties);
    } else if (const auto* editRow = dynamic_cast<const EditModelTreeWidgetItem*>(item)) {
        // Edit primitives have one list only; it goes to the display item pane.
        if (const std::shared_ptr<EditorDisplayItem> editItem = editRow->getEditorDisplayItem())
            editItem->getProperties(displayItemProperties);
    }

    fillPropertyPane(m_displayItemProperties, displayItemProperties);
    fillPropertyPane(m_businessObjectProperties, businessObjectProperties);
}

bool DisplayModelDialog::compareProperties(const DisplayItemTreeWidgetItem* original,
                                           const DisplayItemTreeWidgetItem* cloned)
{
    PropertyList originalBusinessObjectProperties;
    PropertyList originalDisplayItemProperties;
    collectDisplayItemProperties(original, originalBusinessObjectProperties, originalDisplayItemProperties);
    PropertyList clonedBusinessObjectProperties;
    PropertyList clonedDisplayItemProperties;
    collectDisplayItemProperties(cloned, clonedBusinessObjectProperties, clonedDisplayItemProperties);

    // The cloned panes exist only in clone mode; the comparison is made without them too.
    bool differs = fillComparedPane(m_clonedDisplayItemProperties, clonedDisplayItemProperties,
                                    originalDisplayItemProperties, m_onlyCompareMirrored);
    if (fillComparedPane(m_clonedBusinessObjectProperties, clonedBusinessObjectProperties,
                         originalBusinessObjectProperties, m_onlyCompareMirrored))
        differs = true;
    return differs;
}

void DisplayModelDialog::processItem(QTreeWidgetItem* item, int level, const QPair<int, QString>* entry)
{
    walkExpandPath(item, level, pathPosition(m_expandPath, entry), PathAction::MakeCurrent);
}

void DisplayModelDialog::expandCollapseItem(QTreeWidgetItem* item, int level, const QPair<int, QString>* entry,
                                            bool expand)
{
    walkExpandPath(item, level, pathPosition(m_expandPath, entry), expand ? PathAction::Expand : PathAction::Collapse);
}

struct DisplayModelDialog::PathFrame
{
    QTreeWidgetItem* item;
    int level;
    // A position in m_expandPath: moving it "back" goes one pair nearer the
    // head (the source row), and the pair "after" it is its parent's.
    int entry;
    // The next child of item to look at in the current sweep over its children.
    int child;
    // Copies, fixed when the frame opens; later moves of entry do not change
    // them, and making a row current may reach code that rewrites the path.
    QPair<int, QString> first;
    bool hasNext;
    QPair<int, QString> next;
};

// Where each text stands in the expansion path. A sweep over a row's children
// does nothing at an entry that neither fits the row nor is followed by a pair
// that fits it; on a long path the walk jumps over such entries instead of
// sweeping once per pair, which would cost the path's length at every level.
class DisplayModelDialog::ExpandPathIndex
{
public:
    explicit ExpandPathIndex(const QList<QPair<int, QString>>& path)
        : m_path(path)
    {
        m_byText.resize(path.size());
        std::iota(m_byText.begin(), m_byText.end(), 0);
        m_byTextAndNumber = m_byText;
        std::sort(m_byText.begin(), m_byText.end(), [&path](int a, int b) {
            return std::make_pair(std::cref(path.at(a).second), a) < std::make_pair(std::cref(path.at(b).second), b);
        });
        std::sort(m_byTextAndNumber.begin(), m_byTextAndNumber.end(), [&path](int a, int b) {
            return std::make_tuple(std::cref(path.at(a).second), path.at(a).first, a)
                < std::make_tuple(std::cref(path.at(b).second), path.at(b).first, b);
        });
    }

    /// Whether the index still describes \a path (it has not been rewritten since).
    bool describes(const QList<QPair<int, QString>>& path) const { return path.isSharedWith(m_path); }

    /// The last entry at or before \a from at which a sweep over the children
    /// of a row with \a text and item index \a number can do anything: the
    /// pair there has the row's text, or the pair after it has the row's text
    /// and number. -1 when there is none.
    int lastEntryFitting(int from, const QString& text, int number) const
    {
        const auto byText = [this, &text](int position) { return m_path.at(position).second < text; };
        const auto textBegin = std::partition_point(m_byText.begin(), m_byText.end(), byText);
        const auto textEnd = std::partition_point(textBegin, m_byText.end(), [this, &text, from](int position) {
            return m_path.at(position).second == text && position <= from;
        });
        const int fitting = textEnd == textBegin ? -1 : *(textEnd - 1);

        const auto numbered = [this, &text, number](int position) {
            const QPair<int, QString>& pair = m_path.at(position);
            return pair.second < text || (pair.second == text && pair.first < number);
        };
        const auto numberBegin = std::partition_point(m_byTextAndNumber.begin(), m_byTextAndNumber.end(), numbered);
        const auto numberEnd
            = std::partition_point(numberBegin, m_byTextAndNumber.end(), [this, &text, number, from](int position) {
                  const QPair<int, QString>& pair = m_path.at(position);
                  return pair.second == text && pair.first == number && position <= from + 1;
              });
        const int followedByFitting = numberEnd == numberBegin ? -1 : *(numberEnd - 1) - 1;
        return std::max(fitting, followedByFitting);
    }

private:
    QList<QPair<int, QString>> m_path;
    // Positions of the path, by text and then position; and by text, number and position.
    std::vector<int> m_byText;
    std::vector<int> m_byTextAndNumber;
};

// The walk of a recursive descent, with an explicit stack of frames: the
// path may name a row a million levels down. Each frame sweeps over its
// row's children once per entry, from its own entry back to the head.
void DisplayModelDialog::walkExpandPath(QTreeWidgetItem* item, int level, int entry, PathAction action)
{
    const ExpandPathIndex index(m_expandPath);
    std::vector<PathFrame> stack;
    openPathFrame(stack, item, level, entry, index);
    while (!stack.empty()) {
        PathFrame& frame = stack.back();
        if (frame.entry < 0) {
            stack.pop_back();
            continue;
        }
        if (frame.child >= frame.item->childCount()) {
            // After the last child move entry one pair back.
            frame.child = 0;
            frame.entry = nextSweepEntry(frame, frame.entry - 1, index);
            continue;
        }
        QTreeWidgetItem* descendInto = nullptr;
        switch (stepExpandPath(frame, action, descendInto)) {
        case PathStep::NextChild:
            break;
        case PathStep::Stop:
            stack.pop_back();
            break;
        case PathStep::Descend:
            openPathFrame(stack, descendInto, frame.level, frame.entry, index);
            break;
        }
    }
}

void DisplayModelDialog::openPathFrame(std::vector<PathFrame>& stack, QTreeWidgetItem* item, int level, int entry,
                                       const ExpandPathIndex& index)
{
    if (!item || entry < 0 || entry >= m_expandPath.size())
        return;
    PathFrame frame{item, level, entry, 0, m_expandPath.constFirst(), false, QPair<int, QString>()};
    frame.hasNext = m_expandPath.at(entry) != frame.first;
    if (frame.hasNext)
        frame.next = m_expandPath.at(entry - 1);
    frame.entry = nextSweepEntry(frame, entry, index);
    stack.push_back(std::move(frame));
}

// \a entry itself, or the last entry before it at which a sweep over the
// frame's children can do anything; -1 ends the frame.
int DisplayModelDialog::nextSweepEntry(const PathFrame& frame, int entry, const ExpandPathIndex& index) const
{
    if (entry < 0 || !index.describes(m_expandPath))
        return entry;
    return index.lastEntryFitting(entry, frame.item->text(0), itemIndexOf(frame.item));
}

// Looks at the frame's next child at the frame's entry.
DisplayModelDialog::PathStep DisplayModelDialog::stepExpandPath(PathFrame& frame, PathAction action,
                                                                QTreeWidgetItem*& descendInto)
{
    const int i = frame.child++;
    // The path may have been used up or rewritten by a deeper step.
    if (frame.entry < 0 || frame.entry >= m_expandPath.size())
        return PathStep::Stop;
    QTreeWidgetItem* const item = frame.item;
    QTreeWidgetItem* const child = item->child(i);
    const QString childText = child->text(0);
    const QString itemText = item->text(0);
    const int itemIndex = itemIndexOf(item);
    const QPair<int, QString> current = m_expandPath.at(frame.entry);
    const bool afterFitsItem = frame.entry + 1 < m_expandPath.size()
        && m_expandPath.at(frame.entry + 1).second == itemText && m_expandPath.at(frame.entry + 1).first == itemIndex;
    const QPair<int, QString>& first = frame.first;
    const QPair<int, QString>& next = frame.next;

    if (current.second != itemText && !afterFitsItem)
        return PathStep::NextChild;
    if (frame.hasNext && next.first == i && next.second == childText && next == first) {
        applyPathAction(child, action);
        return PathStep::Stop;
    }
    if (current.first == i && current.second == childText) {
        applyPathAction(item, action);
        return PathStep::Stop;
    }
    if (!frame.hasNext && current == first) {
        applyPathAction(item, action);
        return PathStep::Stop;
    }
    // Same position but another text: the row there is shown with its
    // properties compared.
    if (current == first && current.first == i && afterFitsItem) {
        // Making the row current prints properties, and the host's events
        // may remove the row meanwhile.
        const RowGuard<QTreeWidgetItem> guardedChild = guardRow(child);
        applyPathAction(child, action);
        if (action == PathAction::MakeCurrent && guardedChild.get()) {
            m_onlyCompareMirrored = true;
            const auto* original
                = dynamic_cast<const DisplayItemTreeWidgetItem*>(m_displayItemTreeWidget->currentItem());
            compareProperties(original, dynamic_cast<const DisplayItemTreeWidgetItem*>(guardedChild.get()));
        }
        return PathStep::Stop;
    }
    if (!frame.hasNext)
        return PathStep::Stop;
    if (next.second == childText && next.first == i) {
        --frame.entry;
        --frame.level;
        descendInto = child;
        return PathStep::Descend;
    }
    return PathStep::NextChild;
}

void DisplayModelDialog::applyPathAction(QTreeWidgetItem* row, PathAction action)
{
    QTreeWidget* tree = row->treeWidget();
    if (!tree)
        return;
    switch (action) {
    case PathAction::MakeCurrent:
        tree->setCurrentItem(row);
        break;
    case PathAction::Expand:
        if (row->childCount() > 0)
            tree->expandItem(row);
        break;
    case PathAction::Collapse:
        if (row->childCount() > 0)
            tree->collapseItem(row);
        break;
    }
}

void DisplayModelDialog::onDisplayItemCountClicked()
{
    // The host's count: duplicate and edit-model rows are not display items of their own.
    std::uint64_t count = 0;
    if (m_viewModel) {
        if (DisplayModel* displayModel = m_viewModel->getDisplayModel()) {
            if (const std::shared_ptr<DisplayItemInterface> root = displayModel->getRootDisplayItem())
                count = root->getNumberOfDisplayItems();
        }
    }
    m_displayItemCountLE->setText(QString::number(static_cast<qulonglong>(count)));
}

void DisplayModelDialog::onFindDisplayItemClicked()
{
    const QString searchValue = m_searchValueLE->text();
    if (searchValue.isEmpty())
        return;

    bool isNumber = false;
    const int criterion = m_searchTypeCB->currentData().toInt(&isNumber);
    if (!isNumber)
        return;
    QString nameFragment;
    switch (criterion) {
    case 0:
        break;
    case 1:
        nameFragment = QStringLiteral("pointer");
        break;
    case 2:
        nameFragment = QStringLiteral("display item type");
        break;
    default:
        return;
    }

    // "Find next": the search starts after the current row and does not wrap.
    QTreeWidgetItem* pendingStart = m_displayItemTreeWidget->currentItem();
    const SearchText name(nameFragment);
    const SearchText value(searchValue);
    const RowRemovalWatch watch(m_rowRemovals);
    for (int i = 0; i < m_displayItemTreeWidget->topLevelItemCount(); ++i) {
        QTreeWidgetItem* found
            = findMatchingRow(m_displayItemTreeWidget->topLevelItem(i), pendingStart, name, value, watch);
        if (watch.rowsRemoved())
            return;
        if (found) {
            m_displayItemTreeWidget->setCurrentItem(found);
            return;
        }
    }
}

void DisplayModelDialog::onCurrentTreeWidgetItemChanged(QTreeWidgetItem* current)
{
    // Mirroring asks the host for the properties of both sides, and its
    // events may remove the row; the change that removal makes prints the panes.
    const RowGuard<QTreeWidgetItem> guardedCurrent = guardRow(current);
    // The mirrored change in the cloned tree comes back through its own slot,
    // which finds the guard set and does not mirror it back here.
    if (!m_syncingCurrentItem) {
        m_syncingCurrentItem = true;
        syncExpandedTreeItems(m_clonedDisplayItemTreeWidget, current);
    }
    m_syncingCurrentItem = false;
    if (current && !guardedCurrent.get())
        return;
    printProperties(current);
}

void DisplayModelDialog::onTreeWidgetItemDoubleClicked(QTreeWidgetItem* item, int column)
{
    // Acts on the current row, which the click has just made current.
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

// ---------------------------------------------------------------- clone mode

void DisplayModelDialog::createClonedWidgets()
{
    const char* const context = "DisplayModelDialogClass";
    const QStringList propertyHeaders{QCoreApplication::translate(context, "Name"),
                                      QCoreApplication::translate(context, "Value")};

    m_clonedDisplayItemTreeWidget = new DisplayItemTreeWidget(this, false);
    m_clonedDisplayItemTreeWidget->setObjectName(QStringLiteral("m_clonedDisplayItemTreeWidget"));
    m_clonedDisplayItemTreeWidget->setExpandsOnDoubleClick(true);
    m_clonedDisplayItemTreeWidget->header()->setStretchLastSection(true);
    m_clonedDisplayItemTreeWidget->headerItem()->setText(0,
                                                         QCoreApplication::translate(context, "Cloned display items"));
    m_mainHLayout->addWidget(m_clonedDisplayItemTreeWidget);
    m_clonedDisplayItemTreeWidget->header()->setSectionResizeMode(0, QHeaderView::Stretch);

    m_vl_clonedProperties = new QVBoxLayout();
    m_vl_clonedProperties->setSpacing(6);
    m_vl_clonedProperties->setObjectName(QStringLiteral("m_vl_clonedProperties"));

    m_hl_cloned_business_props = new QHBoxLayout();
    m_hl_cloned_business_props->setSpacing(0);
    m_hl_cloned_business_props->setObjectName(QStringLiteral("m_hl_cloned_business_props"));
    m_lbl_cloned_business_obj_props = new QLabel(this);
    m_lbl_cloned_business_obj_props->setObjectName(QStringLiteral("m_lbl_cloned_business_obj_props"));
    m_lbl_cloned_business_obj_props->setText(QCoreApplication::translate(context, "Cloned business object properties"));
    m_hl_cloned_business_props->addWidget(m_lbl_cloned_business_obj_props);
    // The form's spacer member now names the cloned header's spacer; the
    // original spacer stays in its layout, which owns it.
    horizontalSpacer_4 = new QSpacerItem(40, 20, QSizePolicy::Expanding, QSizePolicy::Minimum);
    m_hl_cloned_business_props->addItem(horizontalSpacer_4);
    m_vl_clonedProperties->addLayout(m_hl_cloned_business_props);

    m_clonedBusinessObjectProperties = new QTreeWidget(this);
    // The original pane's object name, kept so on purpose.
    m_clonedBusinessObjectProperties->setObjectName(QStringLiteral("m_businessObjectProperties"));
    m_clonedBusinessObjectProperties->setColumnCount(2);
    m_clonedBusinessObjectProperties->setHeaderLabels(propertyHeaders);
    m_vl_clonedProperties->addWidget(m_clonedBusinessObjectProperties);

    m_hl_cloned_display_props = new QHBoxLayout();
    m_hl_cloned_display_props->setSpacing(0);
    m_hl_cloned_display_props->setObjectName(QStringLiteral("m_hl_cloned_display_props"));
    m_lbl_cloned_display_props = new QLabel(this);
    m_lbl_cloned_display_props->setObjectName(QStringLiteral("m_lbl_cloned_display_props"));
    m_lbl_cloned_display_props->setText(QCoreApplication::translate(context, "Cloned display item properties"));
    m_hl_cloned_display_props->addWidget(m_lbl_cloned_display_props);
    horizontalSpacer_5 = new QSpacerItem(40, 20, QSizePolicy::Expanding, QSizePolicy::Minimum);
    m_hl_cloned_display_props->addItem(horizontalSpacer_5);
    m_vl_clonedProperties->addLayout(m_hl_cloned_display_props);

    m_clonedDisplayItemProperties = new QTreeWidget(this);
    m_clonedDisplayItemProperties->setObjectName(QStringLiteral("m_clonedDisplayItemProperties"));
    m_clonedDisplayItemProperties->setColumnCount(2);
    m_clonedDisplayItemProperties->setHeaderLabels(propertyHeaders);
    m_vl_clonedProperties->addWidget(m_clonedDisplayItemProperties);

    m_mainHLayout->addLayout(m_vl_clonedProperties);
}

void DisplayModelDialog::removeClonedWidgets()
{
    if (!m_clonedDisplayItemTreeWidget)
        return;
    m_mainHLayout->removeWidget(m_clonedDisplayItemTreeWidget);
    delete m_clonedDisplayItemTreeWidget;
    m_clonedDisplayItemTreeWidget = nullptr;
    m_clonedTopRow = nullptr;
    // The emptied column stays in m_mainHLayout; the next switch-on adds a new one.
    clearLayout(m_vl_clonedProperties);
}

void DisplayModelDialog::onUseCloneStateChanged(int state)
{
    m_useClone = state == Qt::Checked;
    if (m_useClone)
        createClonedWidgets();
    else
        removeClonedWidgets();
    m_showCloneIn3dCheckBox->setEnabled(m_useClone);
    m_propertyCompareMode->setEnabled(m_useClone);
    rebuildTree(true);
    if (m_showCloneIn3d && m_drawAreaPresenter)
        m_drawAreaPresenter->showViewModel(m_useClone ? m_clonedViewModel : m_viewModel);
}

void DisplayModelDialog::onShowClone3dStateChanged(int state)
{
    m_showCloneIn3d = state == Qt::Checked;
    if (!m_drawAreaPresenter)
        return;
    m_drawAreaPresenter->showViewModel(m_useClone && state == Qt::Checked ? m_clonedViewModel : m_viewModel);
}

void DisplayModelDialog::onPropertyCompareModeChanged(int /*state*/)
{
    // Without a draw area the cloned panes keep what they show until the next
    // row change; that dependency is intended.
    if (!m_drawAreaPresenter)
        return;
    // No cloned tree: clone mode is off and its panes are on their way out.
    if (!m_clonedDisplayItemTreeWidget)
        return;
    printClonedProperties(dynamic_cast<DisplayItemTreeWidgetItem*>(m_clonedDisplayItemTreeWidget->currentItem()));
}

void DisplayModelDialog::onCurrentClonedTreeWidgetItemChanged(QTreeWidgetItem* current)
{
    if (!m_syncingCurrentItem) {
        m_syncingCurrentItem = true;
        syncExpandedTreeItems(m_displayItemTreeWidget, current);
    }
    m_syncingCurrentItem = false;
    printClonedProperties(current);
}

void DisplayModelDialog::printClonedProperties(const QTreeWidgetItem* clonedRow)
{
    if (m_clonedDisplayItemProperties)
        m_clonedDisplayItemProperties->clear();
    if (m_clonedBusinessObjectProperties)
        m_clonedBusinessObjectProperties->clear();

    const auto* cloned = dynamic_cast<const DisplayItemTreeWidgetItem*>(clonedRow);
    if (!cloned)
        return;
    const auto* original = dynamic_cast<const DisplayItemTreeWidgetItem*>(m_displayItemTreeWidget->currentItem());

    // Checked: values are compared only while both trees show a row of the same name.
    bool compare = true;
    if (m_propertyCompareMode->isChecked())
        compare = original && original->text(0) == cloned->text(0);
    m_onlyCompareMirrored = compare;
    compareProperties(original, cloned);
}

// A pre-order walk over pairs of rows at the same position, with an explicit
// stack: the trees may show a chain far deeper than the call stack.
void DisplayModelDialog::compareRecursiveTree(DisplayItemTreeWidgetItem* original, DisplayItemTreeWidgetItem* cloned,
                                              QTreeWidgetItem* clonedParent)
{
    std::vector<ComparedRows> pending{{original, cloned, clonedParent}};
    while (!pending.empty()) {
        const ComparedRows rows = pending.back();
        pending.pop_back();
        compareRowPair(rows, pending);
    }
}

// Compares one pair and appends the pairs of their children to \a pending,
// last child first, so that they come off the stack in order.
void DisplayModelDialog::compareRowPair(const ComparedRows& rows, std::vector<ComparedRows>& pending)
{
    DisplayItemTreeWidgetItem* const original = rows.original;
    DisplayItemTreeWidgetItem* const cloned = rows.cloned;
    if (!cloned) {
        // A child missing in the clone. The marking starts at clonedParent,
        // which the caller hands down as the grandparent of the missing row;
        // a missing duplicate row is no defect of the clone.
        if (rows.clonedParent && original && !original->isDuplicate())
            paintFalseClonedAncestors(rows.clonedParent);
        return;
    }

    if (!original) {
        // A row that the original lacks: it and its whole subtree are extra.
        paintFalseClonedItem(cloned);
        for (int i = cloned->childCount() - 1; i >= 0; --i)
            pending.push_back(
                {nullptr, DisplayItemTreeWidgetItem::asDisplayItemRow(cloned->child(i)), cloned->parent()});
        return;
    }

    // Only fewer children in the original count here: a clone that lost
    // children is marked above, from the missing rows' grandparent.
    if (original->text(0) != cloned->text(0) || original->childCount() < cloned->childCount()
        || original->getItemIndex() != cloned->getItemIndex()) {
        paintFalseClonedItem(cloned);
        paintFalseClonedAncestors(cloned->parent());
    }

    const std::shared_ptr<DisplayItemInterface> originalItem = original->getDisplayItem();
    const std::shared_ptr<DisplayItemInterface> clonedItem = cloned->getDisplayItem();
    if (originalItem && clonedItem && originalItem->isVisible() != clonedItem->isVisible())
        markDifferentVisibilityUpwards(cloned);

    const int count = std::max(original->childCount(), cloned->childCount());
    for (int i = count - 1; i >= 0; --i) {
        pending.push_back({DisplayItemTreeWidgetItem::asDisplayItemRow(original->child(i)),
                           DisplayItemTreeWidgetItem::asDisplayItemRow(cloned->child(i)), cloned->parent()});
    }
}

void DisplayModelDialog::paintFalseClonedItem(DisplayItemTreeWidgetItem* row)
{
    if (!row)
        return;
    QFont font = row->font(0);
    font.setWeight(75);
    row->setFont(0, font);
    // The bold text is the mark; the brush paints nothing.
    QBrush brush(Qt::red, Qt::SolidPattern);
    brush.setStyle(Qt::NoBrush);
    row->setForeground(0, brush);
}

// From \a row upwards, every row that has a parent: the top-level row is never marked.
void DisplayModelDialog::paintFalseClonedAncestors(QTreeWidgetItem* row)
{
    for (QTreeWidgetItem* ancestor = row; ancestor && ancestor->parent(); ancestor = ancestor->parent())
        paintFalseClonedItem(dynamic_cast<DisplayItemTreeWidgetItem*>(ancestor));
}

void DisplayModelDialog::markDifferentVisibilityUpwards(DisplayItemTreeWidgetItem* row)
{
    row->setDifferentVisibility(true);
    for (QTreeWidgetItem* ancestor = row->parent(); ancestor && ancestor->parent(); ancestor = ancestor->parent()) {
        if (auto* ancestorRow = dynamic_cast<DisplayItemTreeWidgetItem*>(ancestor))
            ancestorRow->setDifferentVisibility(true);
    }
}

// m_expandPath becomes the way from \a source up to its top-level row: the
// source first with \a firstNumber, then each ancestor with its position
// under its parent (0 for the top-level row).
void DisplayModelDialog::fillExpandPath(QTreeWidgetItem* source, int firstNumber)
{
    m_expandPath.append(qMakePair(firstNumber, source->text(0)));
    for (QTreeWidgetItem* ancestor = source->parent(); ancestor; ancestor = ancestor->parent()) {
        QTreeWidgetItem* parent = ancestor->parent();
        m_expandPath.append(qMakePair(parent ? parent->indexOfChild(ancestor) : 0, ancestor->text(0)));
    }
}

void DisplayModelDialog::syncExpandedTreeItems(DisplayItemTreeWidget* target, QTreeWidgetItem* source)
{
    QTreeWidget* sourceTree = source ? source->treeWidget() : nullptr;
    walkMirroredPath(target, source, sourceTree ? sourceTree->currentIndex().row() : -1, PathAction::MakeCurrent);
}

void DisplayModelDialog::syncTreeItemsForExpandingCollapsing(DisplayItemTreeWidget* target, QTreeWidgetItem* source,
                                                             bool expand)
{
    walkMirroredPath(target, source, source ? itemIndexOf(source) : -1,
                     expand ? PathAction::Expand : PathAction::Collapse);
}

// A sync may start inside another one's walk along m_expandPath: making a row
// current scrolls to it, which expands its ancestors, which mirrors those
// expansions into the other tree. So each sync hands the path back as it found
// it, and the interrupted walk goes on along its own path.
void DisplayModelDialog::walkMirroredPath(DisplayItemTreeWidget* target, QTreeWidgetItem* source, int firstNumber,
                                          PathAction action)
{
    const QList<QPair<int, QString>> interruptedPath = m_expandPath;
    m_expandPath.clear();
    if (target && source) {
        fillExpandPath(source, firstNumber);
        // From the top row, starting at the path's last pair (the top-level row).
        QTreeWidgetItem* top = target->itemFromDFSIndex(0);
        const int level = m_expandPath.size() - 1;
        if (action == PathAction::MakeCurrent)
            processItem(top, level, &m_expandPath.last());
        else
            expandCollapseItem(top, level, &m_expandPath.last(), action == PathAction::Expand);
    }
    m_expandPath = interruptedPath;
}

void DisplayModelDialog::setOrigExpanded(QTreeWidgetItem* item)
{
    syncTreeItemsForExpandingCollapsing(m_displayItemTreeWidget, item, true);
}

void DisplayModelDialog::setOrigCollapsed(QTreeWidgetItem* item)
{
    syncTreeItemsForExpandingCollapsing(m_displayItemTreeWidget, item, false);
}

void DisplayModelDialog::setClonedExpanded(QTreeWidgetItem* item)
{
    syncTreeItemsForExpandingCollapsing(m_clonedDisplayItemTreeWidget, item, true);
}

void DisplayModelDialog::setClonedCollapsed(QTreeWidgetItem* item)
{
    syncTreeItemsForExpandingCollapsing(m_clonedDisplayItemTreeWidget, item, false);
}

} // namespace Brennvik
