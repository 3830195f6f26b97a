#pragma once

#include <QHash>
#include <QSet>

#include <memory>

class QTreeWidgetItem;

namespace Brennvik {

class DisplayItemInterface;

/// Finds the child rows of one parent row by the display item they show.
///
/// A parent with many children keeps one: a run of removals would
/// otherwise scan all the siblings for each removed item. It holds the first
/// child row of each item, and which items more than one row shows, for the
/// parent's first indexedCount rows; rows appended later are indexed on the
/// next search, and an index that finds the rows changed behind its back
/// starts over.
class ChildRowIndex
{
public:
    /// Below this many children a plain scan is as fast as keeping an index.
    static constexpr int MinimumChildCount = 256;

    /// An empty index of the children of \a parent, which must outlive it.
    explicit ChildRowIndex(QTreeWidgetItem& parent);

    /// Takes the first child row that shows \a item out of the parent and
    /// returns it (the caller owns it); null when none does or \a item is null.
    QTreeWidgetItem* takeFirstChildShowing(const std::shared_ptr<DisplayItemInterface>& item);
    /// How many of the parent's rows, from the first, the index covers: rows
    /// appended since are indexed on the next take, and an index that had to
    /// fall back on a scan covers none until then.
    int indexedCount() const;

    /// The position of the first child row of \a parent from \a from on that
    /// shows \a item; -1 when none does. Rows of other kinds never match.
    static int positionOfFirstChildShowing(const QTreeWidgetItem& parent,
                                           const std::shared_ptr<DisplayItemInterface>& item, int from);
    /// The position of \a row among the children of \a parent, searched
    /// outwards from \a start (clamped to the children); -1 when it is not one.
    static int positionOfChildRow(const QTreeWidgetItem& parent, const QTreeWidgetItem* row, int start);

private:
    void clear();
    void indexChildren(int from);

    QTreeWidgetItem& m_parent;
    QHash<const DisplayItemInterface*, QTreeWidgetItem*> m_firstRow;
    QSet<const DisplayItemInterface*> m_sharedItems;
    int m_indexedCount = 0;
    // Where the last row was taken: removals tend to come in the order of
    // the rows, so the next one is found close by.
    int m_searchStart = 0;
};

} // namespace Brennvik
