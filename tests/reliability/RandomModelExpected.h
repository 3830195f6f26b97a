#pragma once

// The trees the dialogs are expected to show, kept by the dialogs' rules
// independently of the library: rows of added items are appended last, only
// the first row of a removed item goes, row texts are set once, geometry
// modules list their items a second time after a "Geometry" row.

#include <hostcontract/DisplayItemInterface.h>

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QTreeWidgetItem;

namespace Brennvik {

class DisplayItem;
class DisplayItem2D;
class DisplayModel2D;
class EditorDisplayItem;
class EditorDisplayModel;

namespace Test {

/// The text a display item's row starts with.
QString expectedRowText(const std::shared_ptr<DisplayItemInterface>& item);

/// The items of \a root's subtree in pre-order as the host holds them: real
/// children only, since a broken item's extra entries are no part of the model.
std::vector<std::shared_ptr<DisplayItem>> hostPreOrder(const std::shared_ptr<DisplayItem>& root);

// ------------------------------------------------------------------ 3D tree

struct ExpectedRow
{
    bool edit = false;
    std::weak_ptr<DisplayItemInterface> item;
    std::weak_ptr<EditorDisplayItem> editItem;
    QString text;
    bool duplicate = false;
    int itemIndex = -1;
    bool bold = false;
    bool different = false;
    // The icon the row showed when the last event reached it: a row whose item
    // has gone keeps it until something refreshes it.
    QString lastIcon;
    // The icon may be either (a gone row that a cut-short operation may or
    // may not have refreshed): taken from the tree at the next check.
    bool anyIcon = false;
    ExpectedRow* parent = nullptr;
    std::vector<std::unique_ptr<ExpectedRow>> children;

    QString iconFor(const std::shared_ptr<DisplayItemInterface>& alive) const;
    QString expectedIcon() const;
};

using RowList = std::vector<std::unique_ptr<ExpectedRow>>;

/// The original tree's rows: \a root's, then an edit-model row per primitive of \a editor.
void buildExpectedTree(RowList& rows, const std::shared_ptr<DisplayItemInterface>& root, EditorDisplayModel* editor);
/// The cloned tree's rows from \a clonedRoot, marked as the dialog marks
/// them against the original tree's \a original.
void buildExpectedClone(RowList& original, RowList& cloned, const std::shared_ptr<DisplayItemInterface>& clonedRoot);

/// Every row of \a original and \a cloned that observes \a parent appends rows for \a items, last.
void expectAdded(RowList& original, RowList& cloned, const DisplayItemInterface* parent, const DisplayItemList& items);
/// Every row of \a original and \a cloned that observes \a parent loses its
/// first row of each removed item.
void expectRemoved(RowList& original, RowList& cloned, const DisplayItemInterface* parent, const DisplayItemSet& items);
/// What each row whose item is alive (and each edit-model row) shows now
/// becomes what it keeps once its item goes.
void refreshLastIcons(RowList& original, RowList& cloned);

bool contains(RowList& list, const ExpectedRow* wanted);
/// The expected row at the place of \a actual (the trees were found alike after the last step).
ExpectedRow* expectedFor(RowList& list, QTreeWidgetItem* actual);

// ------------------------------------------------------------------ 2D tree

struct Expected2DRow
{
    std::shared_ptr<DisplayItem2D> item;
    QString text;
    std::vector<std::unique_ptr<Expected2DRow>> children;
};

/// The rows of \a model's tree; none without a model or a root.
std::unique_ptr<Expected2DRow> buildExpected2D(DisplayModel2D* model);
void collect2DRows(Expected2DRow& row, std::vector<Expected2DRow*>& out);
void expect2DAdded(Expected2DRow* top, const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child);
void expect2DRemoved(Expected2DRow* top, const DisplayItem2D* parent, const std::shared_ptr<DisplayItem2D>& child);

// ------------------------------------------------------------------ clone comparison dialog

/// The texts of a tree built by the clone comparison dialog from \a root: one
/// row per item in pre-order, by the same rules for broken trees.
QStringList comparisonTexts(const std::shared_ptr<DisplayItemInterface>& root);
/// The clone comparison dialog's report on \a original and \a cloned.
QStringList comparisonReport(const std::shared_ptr<DisplayItemInterface>& original,
                             const std::shared_ptr<DisplayItemInterface>& cloned);

} // namespace Test
} // namespace Brennvik
