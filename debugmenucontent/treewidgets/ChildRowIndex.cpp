#include "ChildRowIndex.h"

#include "DisplayItemTreeWidgetItem.h"

#include <hostcontract/DisplayItemInterface.h>

#include <QTreeWidgetItem>
#include <QtGlobal>

#include <algorithm>

namespace Brennvik {

ChildRowIndex::ChildRowIndex(QTreeWidgetItem& parent)
    : m_parent(parent)
{
}

QTreeWidgetItem* ChildRowIndex::takeFirstChildShowing(const std::shared_ptr<DisplayItemInterface>& item)
{
    if (!item)
        return nullptr;
    // Rows are only ever appended by the dialog, so a grown list needs its
    // tail indexed; a shrunk one was changed behind the index's back.
    const int count = m_parent.childCount();
    if (count < m_indexedCount)
        clear();
    if (count > m_indexedCount)
        indexChildren(m_indexedCount);

    const auto found = m_firstRow.find(item.get());
    if (found == m_firstRow.end()) {
        // Not indexed: a row whose item was still gone at indexing time may
        // show it now (a reused address); the scan decides.
        const int position = positionOfFirstChildShowing(m_parent, item, 0);
        if (position < 0)
            return nullptr;
        clear();
        return m_parent.takeChild(position);
    }

    QTreeWidgetItem* candidate = found.value();
    // The search compares pointers only, so a stale entry is never dereferenced.
    const int position = positionOfChildRow(m_parent, candidate, m_searchStart);
    const DisplayItemTreeWidgetItem* row
        = position < 0 ? nullptr : DisplayItemTreeWidgetItem::asDisplayItemRow(candidate);
    if (!row || !row->showsDisplayItem(item)) {
        clear();
        const int scanned = positionOfFirstChildShowing(m_parent, item, 0);
        return scanned < 0 ? nullptr : m_parent.takeChild(scanned);
    }

    m_parent.takeChild(position);
    --m_indexedCount;
    m_searchStart = position;
    // The next row of a shared item, if any, is after the one taken.
    const int next = m_sharedItems.contains(item.get()) ? positionOfFirstChildShowing(m_parent, item, position) : -1;
    if (next >= 0)
        found.value() = m_parent.child(next);
    else
        m_firstRow.erase(found);
    return candidate;
}

int ChildRowIndex::indexedCount() const
{
    return m_indexedCount;
}

int ChildRowIndex::positionOfFirstChildShowing(const QTreeWidgetItem& parent,
                                               const std::shared_ptr<DisplayItemInterface>& item, int from)
{
    const int count = parent.childCount();
    for (int i = from; i < count; ++i) {
        const DisplayItemTreeWidgetItem* row = DisplayItemTreeWidgetItem::asDisplayItemRow(parent.child(i));
        if (row && row->showsDisplayItem(item))
            return i;
    }
    return -1;
}

int ChildRowIndex::positionOfChildRow(const QTreeWidgetItem& parent, const QTreeWidgetItem* row, int start)
{
    // Outwards from start, both ways: QTreeWidgetItem::indexOfChild scans
    // from the front, which costs the row's position on every removal.
    const int count = parent.childCount();
    if (count == 0)
        return -1;
    start = qBound(0, start, count - 1);
    const int reach = std::max(start, count - 1 - start);
    for (int distance = 0; distance <= reach; ++distance) {
        if (start + distance < count && parent.child(start + distance) == row)
            return start + distance;
        if (distance > 0 && distance <= start && parent.child(start - distance) == row)
            return start - distance;
    }
    return -1;
}

void ChildRowIndex::clear()
{
    m_firstRow.clear();
    m_sharedItems.clear();
    m_indexedCount = 0;
    m_searchStart = 0;
}

void ChildRowIndex::indexChildren(int from)
{
    const int count = m_parent.childCount();
    m_firstRow.reserve(count);
    for (int i = from; i < count; ++i) {
        QTreeWidgetItem* candidate = m_parent.child(i);
        DisplayItemTreeWidgetItem* row = DisplayItemTreeWidgetItem::asDisplayItemRow(candidate);
        const std::shared_ptr<DisplayItemInterface> item = row ? row->getDisplayItem() : nullptr;
        if (!item)
            continue;
        if (m_firstRow.contains(item.get()))
            m_sharedItems.insert(item.get());
        else
            m_firstRow.insert(item.get(), candidate);
    }
    m_indexedCount = count;
}

} // namespace Brennvik
