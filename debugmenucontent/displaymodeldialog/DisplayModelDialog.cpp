#include "DisplayModelDialog.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>
#include <debugmenucontent/treewidgets/EditModelTreeWidgetItem.h>

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

#include <QBrush>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLayout>
#include <QLayoutItem>
#include <QPushButton>
#include <QStringList>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVariant>

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

// Whether the row's display item has a property matching the search. With an
// empty name fragment ("Any (*)") only the value counts. Both tests ignore case.
bool rowMatches(QTreeWidgetItem* row, const QString& nameFragment, const QString& searchValue)
{
    auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row);
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
            if (!nameFragment.isEmpty()
                && !QString::fromStdString(property.first).contains(nameFragment, Qt::CaseInsensitive))
                continue;
            if (QString::fromStdString(property.second).contains(searchValue, Qt::CaseInsensitive))
                return true;
        }
        return false;
    };
    return listMatches(businessObjectProperties) || listMatches(displayItemProperties);
}

// Pre-order over \a row and its subtree, collapsed rows included. Rows up to
// and including the pending start row are passed over; returns the first
// matching row after it, or null.
QTreeWidgetItem* findMatchingRow(QTreeWidgetItem* row, QTreeWidgetItem*& pendingStart, const QString& nameFragment,
                                 const QString& searchValue)
{
    if (pendingStart) {
        if (row == pendingStart)
            pendingStart = nullptr;
    } else if (rowMatches(row, nameFragment, searchValue)) {
        return row;
    }
    for (int i = 0; i < row->childCount(); ++i) {
        if (QTreeWidgetItem* found = findMatchingRow(row->child(i), pendingStart, nameFragment, searchValue))
            return found;
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
{
    setupUi(this);

    // The form's "1"/"2" header texts are placeholders.
    const QStringList propertyHeaders{tr("Name"), tr("Value")};
    m_businessObjectProperties->setHeaderLabels(propertyHeaders);
    m_displayItemTreeWidget->setHeaderLabel(tr("Display items"));
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
    // TODO(clone mode): connect the stateChanged of m_useCloneCheckBox to
    // onUseCloneStateChanged, of m_showCloneIn3dCheckBox to onShowClone3dStateChanged
    // and of m_propertyCompareMode to onPropertyCompareModeChanged.
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
    if (!cloneOnly)
        m_displayItemTreeWidget->clear();
    if (m_clonedDisplayItemTreeWidget)
        m_clonedDisplayItemTreeWidget->clear();

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
        auto* topRow = new DisplayItemTreeWidgetItem(m_displayItemTreeWidget, root, this, false);
        buildTreeRecursively(topRow, root, false, false);

        if (EditorDisplayModel* editorDisplayModel = m_viewModel->getEditorDisplayModel()) {
            for (const std::shared_ptr<EditorDisplayItem>& primitive : editorDisplayModel->getAllEditModelPrimitives())
                new EditModelTreeWidgetItem(topRow, primitive, this, -1);
        }

        if (const std::shared_ptr<ActiveContext> context = displayModel->getActiveContext()) {
            switch (context->getContextKind()) {
            case ContextKind::ProcessStep:
                if (Kind6Provider* provider = displayModel->getKind6Provider())
                    navigateToInitialEntry(provider->getDisplayItemAt(displayModel->getKind6Index()), false, true);
                break;
            case ContextKind::Tool:
                if (Kind7Source* source = displayModel->getKind7Source()) {
                    if (const std::shared_ptr<Kind7Lookup> lookup = displayModel->getKind7Lookup())
                        navigateToInitialEntry(lookup->findDisplayItem(source->getKey()), false, false);
                }
                break;
            default:
                if (DefaultEntryOwner* owner = displayModel->getDefaultEntryOwner())
                    navigateToInitialEntry(owner->getEntryDisplayItem(), false, false);
                break;
            }
        }
    }

    // TODO(clone mode): build the cloned tree here when m_clonedViewModel is set
    // (m_clonedTopRow, compareRecursiveTree per top-level row, the expansion and
    // current-row connections, then syncExpandedTreeItems).
}

void DisplayModelDialog::buildTreeRecursively(DisplayItemTreeWidgetItem* parentRow,
                                              std::shared_ptr<DisplayItemInterface> item, bool geometrySeen,
                                              bool duplicate)
{
    if (!parentRow || !item)
        return;

    int index = 0;
    for (const std::shared_ptr<DisplayItemInterface>& child : item->getChildren()) {
        auto* row = new DisplayItemTreeWidgetItem(parentRow, child, this, duplicate);
        row->setItemIndex(index);
        buildTreeRecursively(row, child, geometrySeen, duplicate);
        // Once the "Geometry" group is built, geometry modules after it list
        // their geometry a second time.
        if (!geometrySeen && row->text(0) == QLatin1String("Geometry"))
            geometrySeen = true;
        ++index;
    }

    if (!geometrySeen || duplicate)
        return;
    const auto geometryModule = std::dynamic_pointer_cast<GeometryModuleDisplayItemInterface>(item);
    if (!geometryModule)
        return;
    for (const std::shared_ptr<DisplayItemInterface>& entry : geometryModule->getGeometryDisplayItems()) {
        auto* row = new DisplayItemTreeWidgetItem(parentRow, entry, this, true);
        row->setItemIndex(index);
        buildTreeRecursively(row, entry, true, true);
        ++index;
    }
}

void DisplayModelDialog::addChildRecursively(DisplayItemTreeWidgetItem* parentRow,
                                             std::shared_ptr<DisplayItemInterface> item, bool duplicate)
{
    if (!parentRow)
        return;
    auto* row = new DisplayItemTreeWidgetItem(parentRow, item, this, duplicate);
    // The duplicate flag goes in as geometrySeen: a subtree added under a
    // duplicate row starts with geometry lists enabled.
    buildTreeRecursively(row, item, duplicate, false);
}

void DisplayModelDialog::displayItemAdded(DisplayItemTreeWidgetItem* parentRow, std::shared_ptr<DisplayItemInterface> item)
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
    for (const std::shared_ptr<DisplayItemInterface>& item : items) {
        if (!item)
            continue;
        // Only the first row goes, even when several rows under this parent show the item.
        for (int i = 0; i < parentRow->childCount(); ++i) {
            auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(parentRow->child(i));
            if (row && row->getDisplayItem() == item) {
                delete parentRow->takeChild(i);
                break;
            }
        }
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
    for (QTreeWidgetItemIterator it(tree); *it; ++it) {
        auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(*it);
        if (!row)
            continue;
        const std::shared_ptr<DisplayItemInterface> rowItem = row->getDisplayItem();
        if (!rowItem || rowItem != item)
            continue;
        row->setSelected(true);
        tree->setCurrentItem(row, 0, QItemSelectionModel::NoUpdate);
        row->setExpanded(expand);
        tree->scrollToItem(row);
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

// entry is a position in m_expandPath: moving it "back" goes one pair nearer
// the head (the source row), and the pair "after" it is its parent's.
void DisplayModelDialog::walkExpandPath(QTreeWidgetItem* item, int level, int entry, PathAction action)
{
    if (!item || entry < 0 || entry >= m_expandPath.size())
        return;

    // Copies: making a row current may reach code that rewrites the path.
    const QPair<int, QString> first = m_expandPath.first();
    // Fixed for this call; later moves of entry do not change it.
    const bool hasNext = m_expandPath.at(entry) != first;
    const QPair<int, QString> next = hasNext ? m_expandPath.at(entry - 1) : QPair<int, QString>();

    while (entry >= 0) {
        for (int i = 0; i < item->childCount(); ++i) {
            // The path may have been used up or rewritten by a deeper step.
            if (entry < 0 || entry >= m_expandPath.size())
                return;
            QTreeWidgetItem* child = item->child(i);
            const QString childText = child->text(0);
            const QString itemText = item->text(0);
            const int itemIndex = itemIndexOf(item);
            const QPair<int, QString> current = m_expandPath.at(entry);
            const bool afterFitsItem = entry + 1 < m_expandPath.size()
                                       && m_expandPath.at(entry + 1).second == itemText
                                       && m_expandPath.at(entry + 1).first == itemIndex;

            if (current.second != itemText && !afterFitsItem)
                continue;
            if (hasNext && next.first == i && next.second == childText && next == first) {
                applyPathAction(child, action);
                return;
            }
            if (current.first == i && current.second == childText) {
                applyPathAction(item, action);
                return;
            }
            if (!hasNext && current == first) {
                applyPathAction(item, action);
                return;
            }
            // Same position but another text: the row there is shown with its
            // properties compared.
            if (current == first && current.first == i && afterFitsItem) {
                applyPathAction(child, action);
                if (action == PathAction::MakeCurrent) {
                    m_onlyCompareMirrored = true;
                    const auto* original =
                        dynamic_cast<const DisplayItemTreeWidgetItem*>(m_displayItemTreeWidget->currentItem());
                    compareProperties(original, dynamic_cast<const DisplayItemTreeWidgetItem*>(child));
                }
                return;
            }
            if (!hasNext)
                return;
            if (next.second == childText && next.first == i) {
                --entry;
                --level;
                walkExpandPath(child, level, entry, action);
            }
        }
        --entry;
    }
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
    for (int i = 0; i < m_displayItemTreeWidget->topLevelItemCount(); ++i) {
        QTreeWidgetItem* found =
            findMatchingRow(m_displayItemTreeWidget->topLevelItem(i), pendingStart, nameFragment, searchValue);
        if (found) {
            m_displayItemTreeWidget->setCurrentItem(found);
            return;
        }
    }
}

void DisplayModelDialog::onCurrentTreeWidgetItemChanged(QTreeWidgetItem* current)
{
    if (!m_syncingCurrentItem) {
        m_syncingCurrentItem = true;
        // TODO(clone mode): syncExpandedTreeItems(m_clonedDisplayItemTreeWidget, current);
    }
    m_syncingCurrentItem = false;
    printProperties(current);
}

void DisplayModelDialog::onTreeWidgetItemDoubleClicked(QTreeWidgetItem* item, int column)
{
    // Acts on the current row, which the click has just made current.
    QTreeWidgetItem* current = m_displayItemTreeWidget->currentItem();
    if (auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(current)) {
        if (column != 0)
            return;
        row->toggleVisibility();
        // Duplicate children show geometry that belongs to this row's item too.
        for (int i = 0; i < row->childCount(); ++i) {
            auto* child = dynamic_cast<DisplayItemTreeWidgetItem*>(row->child(i));
            if (child && child->isDuplicate())
                child->toggleVisibility();
        }
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
