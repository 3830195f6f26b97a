#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <unordered_map>

class QTreeWidgetItem;

namespace Brennvik {

class DisplayItemInterface;
class DisplayItemTreeWidget;
class DisplayItemTreeWidgetItem;

/// The rows of a display item tree made on demand: a row's children are made
/// when the row is first expanded, so that a collapsed model of a million
/// items costs a handful of rows. A row whose children are still to be made
/// shows the expand indicator when its item has children.
///
/// An item is shown once: an empty child gets no row, and neither does an
/// item that already has a row (one a broken host lists again, in a cycle or
/// in a second place). Rows are deleted only by clear(), which the owner calls
/// when the host's tree has changed.
class LazyDisplayItemRows : public QObject
{
    Q_OBJECT
public:
    /// Fills \a tree, which becomes the parent of this object.
    explicit LazyDisplayItemRows(DisplayItemTreeWidget* tree);
    ~LazyDisplayItemRows() override;

    /// Deletes every row and makes the top row for \a root; null for an empty model.
    QTreeWidgetItem* showRoot(const std::shared_ptr<DisplayItemInterface>& root);
    /// Deletes every row, from the bottom up: any depth fits.
    void clear();

    /// Makes the child rows of \a row unless they are made already.
    void fetchChildren(QTreeWidgetItem* row);
    /// Makes every row of the tree and expands them all.
    void expandAll();
    /// Whether the child rows of \a row are still to be made.
    static bool hasUnfetchedChildren(const QTreeWidgetItem* row);

private:
    DisplayItemTreeWidgetItem* addRow(QTreeWidgetItem* parentRow, const std::shared_ptr<DisplayItemInterface>& item,
                                      int index);
    bool hasRow(const std::shared_ptr<DisplayItemInterface>& item) const;
    /// Makes the child rows of every row, top down. Returns the number of
    /// levels of rows; -1 when a host call cleared the rows meanwhile.
    int fetchAllChildren();
    /// Calls \a visit on every row and its level (1 for a top row) in
    /// pre-order until it returns false.
    void forEachRowTopDown(const std::function<bool(QTreeWidgetItem*, int)>& visit);

    /// The deepest tree that Qt's view expands in one go: its layout recurses
    /// once per level, taking a few hundred bytes of stack each time.
    static constexpr int MostLevelsExpandedAtOnce = 1000;

    DisplayItemTreeWidget* m_tree;
    // The row of every item shown, for the rule that an item is shown once.
    std::unordered_map<const DisplayItemInterface*, DisplayItemTreeWidgetItem*> m_rowOfItem;
    // Counts the clears: a host call that cleared the rows ends a walk over them.
    quint64 m_generation = 0;
};

} // namespace Brennvik
