#pragma once

#include <QList>
#include <QPair>
#include <QString>

#include <functional>
#include <vector>

class QTreeWidgetItem;

namespace Brennvik {

class DisplayItemTreeWidget;

/// A row named by its way up to the top: the row first, then each ancestor,
/// the top-level row last; each pair holds a number (a position among the
/// siblings or an item index) and the row's column-0 text.
using ExpandPath = QList<QPair<int, QString>>;

/// What a walk along the expansion path does to the row that the path names.
enum class PathAction { MakeCurrent, Expand, Collapse };

/// The item index of a display item row; -1 for other rows.
int itemIndexOf(QTreeWidgetItem* row);

/// The position of \a entry in \a path, found by address: equal pairs may
/// stand at several levels. -1 when it is not an element of the path.
int pathPosition(const ExpandPath& path, const QPair<int, QString>* entry);

/// Appends the way from \a source up to its top-level row to \a path: the
/// source with \a firstNumber, then each ancestor with its position under its
/// parent (0 for the top-level row).
void fillExpandPath(ExpandPath& path, QTreeWidgetItem* source, int firstNumber);

/// Set while a current-row change of one tree is mirrored into the other: the
/// mirrored change comes back through the other tree's slot, which must not
/// mirror it again. The flag is cleared when the guard goes, whether this
/// guard set it or found it set; hosts have always seen it cleared so.
class CurrentRowSyncGuard
{
public:
    explicit CurrentRowSyncGuard(bool& syncing)
        : m_syncing(syncing)
        , m_entered(!syncing)
    {
        m_syncing = true;
    }
    ~CurrentRowSyncGuard() { m_syncing = false; }
    CurrentRowSyncGuard(const CurrentRowSyncGuard&) = delete;
    CurrentRowSyncGuard& operator=(const CurrentRowSyncGuard&) = delete;

    /// Whether no mirroring was under way when the guard was made.
    bool entered() const { return m_entered; }

private:
    bool& m_syncing;
    bool m_entered;
};

/// The walks along the dialog's expansion path, which find in one tree the
/// row that corresponds to a row of the other tree. Rows correspond when
/// their positions among their siblings and their column-0 texts are equal.
class ExpandPathWalk
{
public:
    /// Called when a walk that makes rows current has made current a row at
    /// the source's position that shows another text; the dialog then compares
    /// the two rows' properties.
    using MirroredRowShown = std::function<void(QTreeWidgetItem* row)>;

    /// \a path is the dialog's expansion path; it must outlive the walk.
    ExpandPathWalk(ExpandPath& path, MirroredRowShown mirroredRowShown);

    /// Walks down from \a item along the path, from \a entry (an element of
    /// it, the top-level end) towards its head, and does \a action to the row
    /// that the path names. \a level is handed down and decides nothing.
    void walk(QTreeWidgetItem* item, int level, const QPair<int, QString>* entry, PathAction action);

    /// Makes the path the way up from \a source (with \a firstNumber for the
    /// source itself), walks \a target from its top row along it, and hands the
    /// path back as it found it.
    void mirror(DisplayItemTreeWidget* target, QTreeWidgetItem* source, int firstNumber, PathAction action);

private:
    struct PathFrame;
    class PathIndex;
    enum class PathStep { NextChild, Stop, Descend };

    void walkFrom(QTreeWidgetItem* item, int level, int entry, PathAction action);
    void openPathFrame(std::vector<PathFrame>& stack, QTreeWidgetItem* item, int level, int entry,
                       const PathIndex& index) const;
    int nextSweepEntry(const PathFrame& frame, int entry, const PathIndex& index) const;
    PathStep stepExpandPath(PathFrame& frame, PathAction action, QTreeWidgetItem*& descendInto);
    void applyPathAction(QTreeWidgetItem* row, PathAction action);

    ExpandPath& m_path;
    MirroredRowShown m_mirroredRowShown;
};

} // namespace Brennvik
