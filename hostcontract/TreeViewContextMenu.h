#pragma once

#include "HostExport.h"

#include <QIcon>
#include <QModelIndex>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QString>
#include <QVector>

class QAction;
class QMenu;
class QTreeView;

namespace Brennvik {

/// The kit's context menu for tree views. The caller's actions come first;
/// after them the kit adds its own entries, which serve every tree view:
/// "Expand recursively" and "Copy" act on the row under the mouse,
/// "Collapse all" on the whole view. Made with new for one opening and
/// deleted afterwards.
class BRENNVIK_HOST_EXPORT TreeViewContextMenu : public QObject
{
    Q_OBJECT
public:
    /// The kit's own entries.
    enum BuiltInAction { ExpandRecursively = 0, CollapseAll = 1, CopySubtree = 2, BuiltInActionCount = 3 };

    /// A menu for \a view, to open at \a pos in the view's viewport coordinates.
    TreeViewContextMenu(QTreeView* view, const QPoint& pos);
    ~TreeViewContextMenu() override;

    /// Adds a caller-owned action, in call order. \a inCallerSection true puts
    /// it among the caller's entries above the kit's; false after the kit's.
    /// The menu does not take ownership.
    void appendAction(QAction* action, bool inCallerSection);

    /// Opens the menu modally at the position given to the constructor and
    /// triggers the chosen action. Stores the chosen action (null if none) in
    /// \a chosen when that is not null. Returns the position of the chosen
    /// entry among the menu's actions, -1 when the menu was dismissed.
    int show(QAction** chosen);

    /// The row the menu was opened on (column 0); invalid over empty space.
    QModelIndex contextIndex() const;

    /// The subtree of \a index as text: one line per row, two spaces of
    /// indent per level, the row's columns separated by tabs.
    static QString subtreeAsText(const QModelIndex& index);

protected:
    virtual QString actionText(int builtInAction);
    virtual QString actionToolTip(int builtInAction);
    virtual QIcon actionIcon(int builtInAction) const;
    /// Last chance to change the menu before it opens.
    virtual void adjustMenu();

    QMenu* menu() const;

private:
    void expandRecursively();
    void collapseAll();
    void copySubtree();

    QPointer<QTreeView> m_view;
    QPoint m_pos;
    QPersistentModelIndex m_index;
    QMenu* m_menu;
    QVector<QAction*> m_callerActions;
    QVector<QAction*> m_trailingActions;
};

} // namespace Brennvik
