#include "RandomModelExpected.h"

#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/EditorDisplayModel.h>
#include <hostcontract/GeometryModuleDisplayItemInterface.h>
#include <hostcontract/ShellDisplayItem.h>

#include <referencehost/model/DisplayItem.h>

#include <QTreeWidget>

#include <algorithm>
#include <typeinfo>

namespace Brennvik::Test {

namespace {

// The items on the way down from where a dialog's build started. A dialog
// gives an empty child no row, and an item already on the way down (the host
// listed the item itself or an ancestor among its children) a row with
// nothing below it. A build for added children starts at the added item.
using ItemPath = std::vector<const DisplayItemInterface*>;

bool isOnPath(const ItemPath& path, const DisplayItemInterface* item)
{
    return std::find(path.begin(), path.end(), item) != path.end();
}

ExpectedRow* appendRow(ExpectedRow* parent, RowList& list, const std::shared_ptr<DisplayItemInterface>& item,
                       bool duplicate)
{
    auto row = std::make_unique<ExpectedRow>();
    row->item = item;
    row->text = expectedRowText(item);
    row->duplicate = duplicate;
    row->parent = parent;
    row->lastIcon = row->iconFor(item);
    list.push_back(std::move(row));
    return list.back().get();
}

// The dialog's tree builder: children in model order with their positions,
// and, once a "Geometry" row has been built among the children here or
// further up, a geometry module's items again as duplicate rows at the end.
// \a path holds \a item and the items above it down from the build's start.
void buildRows(ExpectedRow* parentRow, const std::shared_ptr<DisplayItemInterface>& item, bool geometrySeen,
               bool duplicate, ItemPath& path)
{
    int index = 0;
    const auto addRow
        = [&](const std::shared_ptr<DisplayItemInterface>& child, bool childGeometrySeen, bool childDuplicate) {
              ExpectedRow* row = appendRow(parentRow, parentRow->children, child, childDuplicate);
              row->itemIndex = index++;
              if (!isOnPath(path, child.get())) {
                  path.push_back(child.get());
                  buildRows(row, child, childGeometrySeen, childDuplicate, path);
                  path.pop_back();
              }
              return row;
          };
    for (const auto& child : item->getChildren()) {
        if (!child)
            continue;
        const ExpectedRow* row = addRow(child, geometrySeen, duplicate);
        if (!geometrySeen && row->text == QLatin1String("Geometry"))
            geometrySeen = true;
    }
    if (!geometrySeen || duplicate)
        return;
    if (const auto module = std::dynamic_pointer_cast<GeometryModuleDisplayItemInterface>(item)) {
        for (const auto& entry : module->getGeometryDisplayItems()) {
            if (entry)
                addRow(entry, true, true);
        }
    }
}

// The rows a build from \a item makes below \a row.
void buildRowsFrom(ExpectedRow* row, const std::shared_ptr<DisplayItemInterface>& item, bool geometrySeen,
                   bool duplicate)
{
    if (!item)
        return;
    ItemPath path{item.get()};
    buildRows(row, item, geometrySeen, duplicate, path);
}

void collectRows(RowList& list, std::vector<ExpectedRow*>& out)
{
    for (auto& row : list) {
        out.push_back(row.get());
        collectRows(row->children, out);
    }
}

void markAncestorsBold(ExpectedRow* row)
{
    for (ExpectedRow* r = row; r && r->parent; r = r->parent)
        r->bold = true;
}

// Edit-model rows take part as "no row": only display item rows are compared.
void compareClone(ExpectedRow* original, ExpectedRow* cloned, ExpectedRow* clonedParent)
{
    if (original && original->edit)
        original = nullptr;
    if (!cloned) {
        if (clonedParent && original && !original->duplicate)
            markAncestorsBold(clonedParent);
        return;
    }
    if (!original) {
        cloned->bold = true;
        for (auto& child : cloned->children)
            compareClone(nullptr, child.get(), cloned->parent);
        return;
    }
    if (original->text != cloned->text || original->children.size() < cloned->children.size()
        || original->itemIndex != cloned->itemIndex) {
        cloned->bold = true;
        markAncestorsBold(cloned->parent);
    }
    const auto o = original->item.lock();
    const auto c = cloned->item.lock();
    if (o && c && o->isVisible() != c->isVisible()) {
        for (ExpectedRow* r = cloned; r && (r == cloned || r->parent); r = r->parent) {
            r->different = true;
            const auto alive = r->item.lock();
            r->lastIcon = r->iconFor(alive);
        }
    }
    const std::size_t n = std::max(original->children.size(), cloned->children.size());
    for (std::size_t i = 0; i < n; ++i) {
        ExpectedRow* oc = i < original->children.size() ? original->children[i].get() : nullptr;
        ExpectedRow* cc = i < cloned->children.size() ? cloned->children[i].get() : nullptr;
        compareClone(oc, cc, cloned->parent);
    }
}

void build2DRows(Expected2DRow& row)
{
    for (const auto& child : row.item->getChildren()) {
        auto childRow = std::make_unique<Expected2DRow>();
        childRow->item = child;
        childRow->text = QString::fromStdString(child->getDisplayName());
        build2DRows(*childRow);
        row.children.push_back(std::move(childRow));
    }
}

// The clone comparison dialog's report on \a original and \a cloned below
// the items of \a originalPath and \a clonedPath: a message and the
// original item's description per finding, a pair's before its children's.
// Children pair up by position when both lists are as long; a pair with an
// empty side is passed over, and one that repeats an item on the way down is
// compared but not descended into.
void addComparisonFindings(const std::shared_ptr<DisplayItemInterface>& original,
                           const std::shared_ptr<DisplayItemInterface>& cloned, ItemPath& originalPath,
                           ItemPath& clonedPath, QStringList& report)
{
    const auto finding = [&report](const char* message, const DisplayItemInterface& item) {
        report << QLatin1String(message) << QString::fromStdString(item.getDescription());
    };
    const DisplayItemList originalChildren = original->getChildren();
    const DisplayItemList clonedChildren = cloned->getChildren();
    if (originalChildren.size() != clonedChildren.size()) {
        finding("Child count differs", *original);
        return;
    }
    originalPath.push_back(original.get());
    clonedPath.push_back(cloned.get());
    for (std::size_t i = 0; i < originalChildren.size(); ++i) {
        const auto& o = originalChildren[i];
        const auto& c = clonedChildren[i];
        if (!o || !c)
            continue;
        if (typeid(*o) != typeid(*c)) {
            finding("Type differs", *o);
            continue;
        }
        if (o == c) {
            finding("Pointer was copied", *o);
            continue;
        }
        if (o->isVisible() != c->isVisible())
            finding("Visibility differs", *o);
        if (!isOnPath(originalPath, o.get()) && !isOnPath(clonedPath, c.get()))
            addComparisonFindings(o, c, originalPath, clonedPath, report);
    }
    originalPath.pop_back();
    clonedPath.pop_back();
}

} // namespace

QString expectedRowText(const std::shared_ptr<DisplayItemInterface>& item)
{
    if (!item)
        return QString();
    QString text = QString::fromStdString(item->getDisplayName());
    if (const auto shell = std::dynamic_pointer_cast<ShellDisplayItem>(item))
        text += QStringLiteral(" [") + QString::fromStdString(shell->getShellTypeAndNameAsString()) + QLatin1Char(']');
    return text;
}

std::vector<std::shared_ptr<DisplayItem>> hostPreOrder(const std::shared_ptr<DisplayItem>& root)
{
    std::vector<std::shared_ptr<DisplayItem>> items;
    std::vector<std::shared_ptr<DisplayItem>> pending;
    if (root)
        pending.push_back(root);
    while (!pending.empty()) {
        auto item = std::move(pending.back());
        pending.pop_back();
        const auto& children = item->children();
        pending.insert(pending.end(), children.rbegin(), children.rend());
        items.push_back(std::move(item));
    }
    return items;
}

// ------------------------------------------------------------------ 3D tree

QString ExpectedRow::iconFor(const std::shared_ptr<DisplayItemInterface>& alive) const
{
    if (edit) {
        const auto e = editItem.lock();
        if (!e)
            return lastIcon;
        return e->isVisible() ? QStringLiteral("visible") : QStringLiteral("not_visible");
    }
    if (!alive)
        return QStringLiteral("visible_different");
    if (alive->isVisible())
        return duplicate ? QStringLiteral("visible_duplicate")
            : different  ? QStringLiteral("visible_different")
                         : QStringLiteral("visible");
    return different ? QStringLiteral("visible_different") : QStringLiteral("not_visible");
}

QString ExpectedRow::expectedIcon() const
{
    if (edit)
        return iconFor(nullptr);
    const auto alive = item.lock();
    return alive ? iconFor(alive) : lastIcon;
}

void buildExpectedTree(RowList& rows, const std::shared_ptr<DisplayItemInterface>& root, EditorDisplayModel* editor)
{
    ExpectedRow* top = appendRow(nullptr, rows, root, false);
    buildRowsFrom(top, root, false, false);
    if (!editor)
        return;
    for (const auto& primitive : editor->getAllEditModelPrimitives()) {
        auto row = std::make_unique<ExpectedRow>();
        row->edit = true;
        row->editItem = primitive;
        row->text = QString::fromStdString(primitive->getDisplayName());
        row->lastIcon = row->iconFor(nullptr);
        row->parent = top;
        top->children.push_back(std::move(row));
    }
}

void buildExpectedClone(RowList& original, RowList& cloned, const std::shared_ptr<DisplayItemInterface>& clonedRoot)
{
    ExpectedRow* clonedTop = appendRow(nullptr, cloned, clonedRoot, false);
    buildRowsFrom(clonedTop, clonedRoot, false, false);
    for (std::size_t i = 0; i < original.size(); ++i) {
        ExpectedRow* clonedRow = i < cloned.size() ? cloned[i].get() : nullptr;
        compareClone(original[i].get(), clonedRow, clonedRow ? clonedRow->parent : nullptr);
    }
}

void expectAdded(RowList& original, RowList& cloned, const DisplayItemInterface* parent, const DisplayItemList& items)
{
    std::vector<ExpectedRow*> rows;
    collectRows(original, rows);
    collectRows(cloned, rows);
    for (ExpectedRow* row : rows) {
        if (row->edit || row->item.lock().get() != parent)
            continue;
        for (const auto& item : items) {
            ExpectedRow* added = appendRow(row, row->children, item, row->duplicate);
            buildRowsFrom(added, item, row->duplicate, false);
        }
    }
}

void expectRemoved(RowList& original, RowList& cloned, const DisplayItemInterface* parent, const DisplayItemSet& items)
{
    std::vector<ExpectedRow*> rows;
    collectRows(original, rows);
    collectRows(cloned, rows);
    for (ExpectedRow* row : rows) {
        if (!contains(original, row) && !contains(cloned, row))
            continue; // went with an earlier removal
        if (row->edit || row->item.lock().get() != parent)
            continue;
        for (const auto& item : items) {
            for (auto it = row->children.begin(); it != row->children.end(); ++it) {
                if (!(*it)->edit && (*it)->item.lock() == item) {
                    row->children.erase(it);
                    break;
                }
            }
        }
    }
}

void refreshLastIcons(RowList& original, RowList& cloned)
{
    std::vector<ExpectedRow*> rows;
    collectRows(original, rows);
    collectRows(cloned, rows);
    for (ExpectedRow* row : rows) {
        if (row->edit)
            row->lastIcon = row->iconFor(nullptr);
        else if (const auto alive = row->item.lock())
            row->lastIcon = row->iconFor(alive);
    }
}

bool contains(RowList& list, const ExpectedRow* wanted)
{
    for (auto& row : list) {
        if (row.get() == wanted || contains(row->children, wanted))
            return true;
    }
    return false;
}

// The expected row at the place of \a actual (the trees were found alike after the last step).
ExpectedRow* expectedFor(RowList& list, QTreeWidgetItem* actual)
{
    QList<int> path;
    QTreeWidgetItem* top = actual;
    for (; top->parent(); top = top->parent())
        path.prepend(top->parent()->indexOfChild(top));
    const int topIndex = top->treeWidget() ? top->treeWidget()->indexOfTopLevelItem(top) : -1;
    if (topIndex < 0 || std::size_t(topIndex) >= list.size())
        return nullptr;
    ExpectedRow* row = list[std::size_t(topIndex)].get();
    for (int i : path) {
        if (std::size_t(i) >= row->children.size())
            return nullptr;
        row = row->children[std::size_t(i)].get();
    }
    return row;
}

// ------------------------------------------------------------------ 2D tree

std::unique_ptr<Expected2DRow> buildExpected2D(DisplayModel2D* model)
{
    if (!model || !model->getRootDisplayItem())
        return nullptr;
    auto top = std::make_unique<Expected2DRow>();
    top->item = model->getRootDisplayItem();
    top->text = QString::fromStdString(top->item->getDisplayName());
    build2DRows(*top);
    return top;
}

void collect2DRows(Expected2DRow& row, std::vector<Expected2DRow*>& out)
{
    out.push_back(&row);
    for (auto& child : row.children)
        collect2DRows(*child, out);
}

namespace {

// The rows below \a top (and \a top) that show \a item.
std::vector<Expected2DRow*> rowsShowing(Expected2DRow* top, const DisplayItem2D* item)
{
    std::vector<Expected2DRow*> rows;
    if (top)
        collect2DRows(*top, rows);
    rows.erase(
        std::remove_if(rows.begin(), rows.end(), [item](const Expected2DRow* r) { return r->item.get() != item; }),
        rows.end());
    return rows;
}

} // namespace

void expect2DAdded(Expected2DRow* top, const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child)
{
    for (Expected2DRow* row : rowsShowing(top, parent)) {
        auto added = std::make_unique<Expected2DRow>();
        added->item = child;
        added->text = QString::fromStdString(child->getDisplayName());
        build2DRows(*added);
        row->children.push_back(std::move(added));
    }
}

void expect2DRemoved(Expected2DRow* top, const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child)
{
    for (Expected2DRow* row : rowsShowing(top, parent)) {
        for (auto it = row->children.begin(); it != row->children.end(); ++it) {
            if ((*it)->item == child) {
                row->children.erase(it);
                break;
            }
        }
        // A 2D item has one row; the rows collected after it may have gone with the erased one.
        return;
    }
}

// ------------------------------------------------------------------ clone comparison dialog

QStringList comparisonTexts(const std::shared_ptr<DisplayItemInterface>& root)
{
    QStringList texts;
    if (!root)
        return texts;
    struct Pending
    {
        std::shared_ptr<DisplayItemInterface> item;
        std::size_t depth;
    };
    std::vector<Pending> pending{{root, 0}};
    ItemPath path;
    while (!pending.empty()) {
        Pending next = std::move(pending.back());
        pending.pop_back();
        path.resize(next.depth);
        texts << expectedRowText(next.item);
        if (isOnPath(path, next.item.get()))
            continue;
        path.push_back(next.item.get());
        const DisplayItemList children = next.item->getChildren();
        for (auto it = children.rbegin(); it != children.rend(); ++it) {
            if (*it)
                pending.push_back({*it, next.depth + 1});
        }
    }
    return texts;
}

QStringList comparisonReport(const std::shared_ptr<DisplayItemInterface>& original,
                             const std::shared_ptr<DisplayItemInterface>& cloned)
{
    QStringList report;
    ItemPath originalPath;
    ItemPath clonedPath;
    addComparisonFindings(original, cloned, originalPath, clonedPath, report);
    if (report.isEmpty())
        report << QStringLiteral("Trees are equal");
    return report;
}

} // namespace Brennvik::Test
