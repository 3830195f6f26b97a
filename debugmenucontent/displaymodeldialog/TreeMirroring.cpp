#include "TreeMirroring.h"

#include "GuardedRow.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <QTreeWidget>

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace Brennvik {

namespace {

// Hands a path back as it was when the keeper was made. A mirroring may start
// inside another one's walk along the path: making a row current scrolls to
// it, which expands its ancestors, which mirrors those expansions into the
// other tree; the interrupted walk then goes on along its own path.
class InterruptedPathKeeper
{
public:
    explicit InterruptedPathKeeper(ExpandPath& path)
        : m_path(path)
        , m_interrupted(path)
    {
    }
    ~InterruptedPathKeeper() { m_path = m_interrupted; }
    InterruptedPathKeeper(const InterruptedPathKeeper&) = delete;
    InterruptedPathKeeper& operator=(const InterruptedPathKeeper&) = delete;

private:
    ExpandPath& m_path;
    const ExpandPath m_interrupted;
};

} // namespace

int itemIndexOf(QTreeWidgetItem* row)
{
    auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row);
    return itemRow ? itemRow->getItemIndex() : -1;
}

int pathPosition(const ExpandPath& path, const QPair<int, QString>* entry)
{
    for (int i = 0; i < path.size(); ++i) {
        if (&path.at(i) == entry)
            return i;
    }
    return -1;
}

void fillExpandPath(ExpandPath& path, QTreeWidgetItem* source, int firstNumber)
{
    path.append(qMakePair(firstNumber, source->text(0)));
    for (QTreeWidgetItem* ancestor = source->parent(); ancestor; ancestor = ancestor->parent()) {
        QTreeWidgetItem* parent = ancestor->parent();
        path.append(qMakePair(parent ? parent->indexOfChild(ancestor) : 0, ancestor->text(0)));
    }
}

struct ExpandPathWalk::PathFrame
{
    QTreeWidgetItem* item;
    int level;
    // A position in the path: moving it "back" goes one pair nearer the head
    // (the source row), and the pair "after" it is its parent's.
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
class ExpandPathWalk::PathIndex
{
public:
    explicit PathIndex(const ExpandPath& path)
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
    bool describes(const ExpandPath& path) const { return path.isSharedWith(m_path); }

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
    ExpandPath m_path;
    // Positions of the path, by text and then position; and by text, number and position.
    std::vector<int> m_byText;
    std::vector<int> m_byTextAndNumber;
};

ExpandPathWalk::ExpandPathWalk(ExpandPath& path, MirroredRowShown mirroredRowShown)
    : m_path(path)
    , m_mirroredRowShown(std::move(mirroredRowShown))
{
}

void ExpandPathWalk::walk(QTreeWidgetItem* item, int level, const QPair<int, QString>* entry, PathAction action)
{
    walkFrom(item, level, pathPosition(m_path, entry), action);
}

void ExpandPathWalk::mirror(DisplayItemTreeWidget* target, QTreeWidgetItem* source, int firstNumber, PathAction action)
{
    const InterruptedPathKeeper keeper(m_path);
    m_path.clear();
    if (!target || !source)
        return;
    fillExpandPath(m_path, source, firstNumber);
    // From the top row, starting at the path's last pair (the top-level row).
    walkFrom(target->itemFromDFSIndex(0), m_path.size() - 1, m_path.size() - 1, action);
}

// The walk of a recursive descent, with an explicit stack of frames: the
// path may name a row a million levels down. Each frame sweeps over its
// row's children once per entry, from its own entry back to the head.
void ExpandPathWalk::walkFrom(QTreeWidgetItem* item, int level, int entry, PathAction action)
{
    const PathIndex index(m_path);
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

void ExpandPathWalk::openPathFrame(std::vector<PathFrame>& stack, QTreeWidgetItem* item, int level, int entry,
                                   const PathIndex& index) const
{
    if (!item || entry < 0 || entry >= m_path.size())
        return;
    PathFrame frame{item, level, entry, 0, m_path.constFirst(), false, QPair<int, QString>()};
    frame.hasNext = m_path.at(entry) != frame.first;
    if (frame.hasNext)
        frame.next = m_path.at(entry - 1);
    frame.entry = nextSweepEntry(frame, entry, index);
    stack.push_back(std::move(frame));
}

// \a entry itself, or the last entry before it at which a sweep over the
// frame's children can do anything; -1 ends the frame.
int ExpandPathWalk::nextSweepEntry(const PathFrame& frame, int entry, const PathIndex& index) const
{
    if (entry < 0 || !index.describes(m_path))
        return entry;
    return index.lastEntryFitting(entry, frame.item->text(0), itemIndexOf(frame.item));
}

// Looks at the frame's next child at the frame's entry.
ExpandPathWalk::PathStep ExpandPathWalk::stepExpandPath(PathFrame& frame, PathAction action,
                                                        QTreeWidgetItem*& descendInto)
{
    const int i = frame.child++;
    // The path may have been used up or rewritten by a deeper step.
    if (frame.entry < 0 || frame.entry >= m_path.size())
        return PathStep::Stop;
    QTreeWidgetItem* const item = frame.item;
    QTreeWidgetItem* const child = item->child(i);
    const QString childText = child->text(0);
    const QString itemText = item->text(0);
    const int itemIndex = itemIndexOf(item);
    const QPair<int, QString> current = m_path.at(frame.entry);
    const bool afterFitsItem = frame.entry + 1 < m_path.size() && m_path.at(frame.entry + 1).second == itemText
        && m_path.at(frame.entry + 1).first == itemIndex;
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
        if (action == PathAction::MakeCurrent && guardedChild.get() && m_mirroredRowShown)
            m_mirroredRowShown(guardedChild.get());
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

void ExpandPathWalk::applyPathAction(QTreeWidgetItem* row, PathAction action)
{
    QTreeWidget* tree = row->treeWidget();
    if (!tree)
        return;
    switch (action) {
    case PathAction::MakeCurrent:
        setCurrentRowFollowed(tree, row);
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

} // namespace Brennvik
