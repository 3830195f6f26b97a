#include <hostcontract/TreeViewIndex.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QHash>
#include <QObject>
#include <QThread>
#include <QVector>

#include <algorithm>

namespace Brennvik {

namespace {

/// Subtree sizes of a model's rows, filled lazily and dropped whenever the
/// model's structure changes. Lives as a child of the model, so repeated
/// lookups (two trees compared row by row) cost a few hash look-ups each
/// instead of a walk over every row before the one asked for.
///
/// Only sizes are kept; model indexes are always asked afresh from the
/// model, so a model that changes without telling gives wrong positions at
/// worst, never an index to a row that is gone.
class DepthFirstIndexCache : public QObject
{
    Q_OBJECT
public:
    explicit DepthFirstIndexCache(const QAbstractItemModel* model)
        : m_model(model)
    {
    }

    /// The cache of \a model, made on first use.
    static DepthFirstIndexCache* of(QAbstractItemModel* model)
    {
        auto* cache = model->findChild<DepthFirstIndexCache*>(QString(), Qt::FindDirectChildrenOnly);
        if (cache)
            return cache;
        cache = new DepthFirstIndexCache(model);
        cache->setParent(model);
        const auto drop = [cache]() { cache->clear(); };
        // "About to" as well: views and their owners look rows up while the
        // model is half way through a change.
        connect(model, &QAbstractItemModel::rowsAboutToBeInserted, cache, drop);
        connect(model, &QAbstractItemModel::rowsInserted, cache, drop);
        connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, cache, drop);
        connect(model, &QAbstractItemModel::rowsRemoved, cache, drop);
        connect(model, &QAbstractItemModel::rowsAboutToBeMoved, cache, drop);
        connect(model, &QAbstractItemModel::rowsMoved, cache, drop);
        connect(model, &QAbstractItemModel::columnsInserted, cache, drop);
        connect(model, &QAbstractItemModel::columnsRemoved, cache, drop);
        connect(model, &QAbstractItemModel::columnsMoved, cache, drop);
        connect(model, &QAbstractItemModel::layoutAboutToBeChanged, cache, drop);
        connect(model, &QAbstractItemModel::layoutChanged, cache, drop);
        connect(model, &QAbstractItemModel::modelAboutToBeReset, cache, drop);
        connect(model, &QAbstractItemModel::modelReset, cache, drop);
        return cache;
    }

    void clear() { m_children.clear(); }

    /// Pre-order position of the row of \a index (column 0); -1 if the row
    /// is not part of the walk (it hangs below a column other than 0).
    int position(const QModelIndex& index)
    {
        int position = 0;
        QModelIndex current = index;
        while (current.isValid()) {
            const QModelIndex parent = current.parent();
            if (parent.isValid() && parent.column() != 0)
                return -1;
            if (!measure(parent, current.row()))
                return -1;
            position += m_children.value(parent).offsets.at(current.row());
            if (parent.isValid())
                ++position; // the parent itself comes before its children
            current = parent;
        }
        return position;
    }

    /// The column-0 index of the row at \a position; invalid when out of range.
    QModelIndex indexAt(int position)
    {
        if (position < 0)
            return QModelIndex();
        QModelIndex parent;
        int remaining = position; // rows to skip within the children of parent
        for (;;) {
            // Measure children until one reaches past the position.
            for (;;) {
                const Children& children = childrenOf(parent);
                if (children.complete() || children.offsets.constLast() > remaining)
                    break;
                // The next unmeasured child starts exactly here: it is the
                // row, and its subtree need not be walked (row 0 of a large
                // tree is found at once).
                if (children.offsets.constLast() == remaining)
                    return m_model->index(children.offsets.size() - 1, 0, parent);
                if (!measure(parent, children.offsets.size()))
                    return QModelIndex();
            }
            const Children& children = childrenOf(parent);
            if (children.offsets.constLast() <= remaining)
                return QModelIndex(); // beyond the last row
            // The last child that starts at or before the position.
            const auto next = std::upper_bound(children.offsets.cbegin(), children.offsets.cend(), remaining);
            const int row = static_cast<int>(next - children.offsets.cbegin()) - 1;
            const QModelIndex child = m_model->index(row, 0, parent);
            if (!child.isValid())
                return QModelIndex();
            remaining -= children.offsets.at(row);
            if (remaining == 0)
                return child;
            --remaining; // the child itself
            parent = child;
        }
    }

private:
    /// What is known of the children of one row.
    struct Children
    {
        int rowCount = -1;
        /// offsets[r]: rows of the walk between the first child and child r
        /// (the sizes of the subtrees of children 0..r-1); offsets[rowCount]
        /// is the number of descendants once every child is measured.
        QVector<int> offsets;

        bool complete() const { return offsets.size() == rowCount + 1; }
    };

    Children& childrenOf(const QModelIndex& parent)
    {
        auto it = m_children.find(parent);
        if (it == m_children.end()) {
            Children children;
            children.rowCount = m_model->rowCount(parent);
            children.offsets.append(0);
            it = m_children.insert(parent, children);
        }
        return it.value();
    }

    /// Makes offsets[row] of \a parent known. Iterative, so that deep trees
    /// do not exhaust the call stack. False when \a row is beyond the rows.
    bool measure(const QModelIndex& parent, int row)
    {
        if (row > childrenOf(parent).rowCount)
            return false;

        struct Frame
        {
            QModelIndex node;
            int wanted; // offsets[wanted] of node must be known
        };
        QVector<Frame> stack{{parent, row}};
        while (!stack.isEmpty()) {
            const Frame frame = stack.constLast();
            const int known = childrenOf(frame.node).offsets.size();
            if (known > frame.wanted) {
                stack.removeLast();
                continue;
            }
            // Measure the subtree of the next child (known - 1).
            const QModelIndex child = m_model->index(known - 1, 0, frame.node);
            int childSize = 1;
            if (child.isValid() && m_model->rowCount(child) > 0) {
                const Children& grandChildren = childrenOf(child);
                if (!grandChildren.complete()) {
                    stack.append({child, grandChildren.rowCount});
                    continue;
                }
                childSize += grandChildren.offsets.constLast();
            }
            // Looked up again: childrenOf(child) may have moved the entries.
            Children& children = childrenOf(frame.node);
            children.offsets.append(children.offsets.constLast() + childSize);
        }
        return true;
    }

    const QAbstractItemModel* m_model;
    QHash<QModelIndex, Children> m_children;
};

QAbstractItemModel* modelOf(const QAbstractItemView* view)
{
    return view ? view->model() : nullptr;
}

template<typename Lookup>
auto withCache(QAbstractItemModel* model, Lookup lookup)
{
    // The cache must live in the model's thread; elsewhere it serves one call.
    if (model->thread() != QThread::currentThread()) {
        DepthFirstIndexCache once(model);
        return lookup(once);
    }
    return lookup(*DepthFirstIndexCache::of(model));
}

} // namespace

int getDFSIdx(const QAbstractItemView* view, const QModelIndex& index)
{
    QAbstractItemModel* model = modelOf(view);
    if (!model || !index.isValid() || index.model() != model)
        return -1;
    const QModelIndex row = model->index(index.row(), 0, index.parent());
    if (!row.isValid())
        return -1;
    return withCache(model, [&row](DepthFirstIndexCache& cache) { return cache.position(row); });
}

QModelIndex indexFromDFSIdx(const QAbstractItemView* view, int dfsIndex)
{
    QAbstractItemModel* model = modelOf(view);
    if (!model || dfsIndex < 0)
        return QModelIndex();
    return withCache(model, [dfsIndex](DepthFirstIndexCache& cache) { return cache.indexAt(dfsIndex); });
}

} // namespace Brennvik

#include "TreeViewIndex.moc"
