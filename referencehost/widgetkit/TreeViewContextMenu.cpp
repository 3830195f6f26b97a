#include <hostcontract/TreeViewContextMenu.h>

#include <QAbstractItemModel>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QTreeView>
#include <QVector>

namespace Brennvik {

namespace {

bool containsAction(const QMenu* menu, const QAction* action)
{
    if (!menu)
        return false;
    const QList<QAction*> actions = menu->actions();
    for (const QAction* entry : actions) {
        if (entry == action || containsAction(entry->menu(), action))
            return true;
    }
    return false;
}

} // namespace

TreeViewContextMenu::TreeViewContextMenu(QTreeView* view, const QPoint& pos)
    : m_view(view)
    , m_pos(pos)
    , m_menu(new QMenu(view))
{
    if (view) {
        const QModelIndex index = view->indexAt(pos);
        if (index.isValid())
            m_index = index.sibling(index.row(), 0);
    }
    // The view owns the menu as a child widget and may take it along when it
    // is deleted first.
    connect(m_menu, &QObject::destroyed, this, [this]() { m_menu = nullptr; });
}

TreeViewContextMenu::~TreeViewContextMenu()
{
    QMenu* menu = m_menu;
    m_menu = nullptr;
    delete menu;
}

void TreeViewContextMenu::appendAction(QAction* action, bool inCallerSection)
{
    if (!action)
        return;
    if (inCallerSection)
        m_callerActions.append(action);
    else
        m_trailingActions.append(action);
}

int TreeViewContextMenu::show(QAction** chosen)
{
    if (chosen)
        *chosen = nullptr;
    if (!m_menu || !m_view)
        return -1;

    // Built here, not in the constructor, so that the texts and icons of a
    // subclass's overrides are used.
    m_menu->clear();
    for (QAction* action : qAsConst(m_callerActions))
        m_menu->addAction(action);
    if (!m_callerActions.isEmpty())
        m_menu->addSeparator();

    for (int builtIn = 0; builtIn < BuiltInActionCount; ++builtIn) {
        auto* action = new QAction(actionIcon(builtIn), actionText(builtIn), m_menu);
        const QString tip = actionToolTip(builtIn);
        action->setToolTip(tip);
        action->setStatusTip(tip);
        switch (builtIn) {
        case ExpandRecursively:
            action->setEnabled(m_index.isValid());
            connect(action, &QAction::triggered, this, [this]() { expandRecursively(); });
            break;
        case CollapseAll:
            connect(action, &QAction::triggered, this, [this]() { collapseAll(); });
            break;
        case CopySubtree:
            action->setEnabled(m_index.isValid());
            connect(action, &QAction::triggered, this, [this]() { copySubtree(); });
            break;
        default:
            break;
        }
        m_menu->addAction(action);
    }

    if (!m_trailingActions.isEmpty()) {
        m_menu->addSeparator();
        for (QAction* action : qAsConst(m_trailingActions))
            m_menu->addAction(action);
    }

    adjustMenu();
    if (!m_menu || !m_view)
        return -1;

    // Taken before the menu runs: the view, and the menu with it, may be
    // deleted by the chosen action.
    const QList<QAction*> entries = m_menu->actions();
    QAction* action = m_menu->exec(m_view->viewport()->mapToGlobal(m_pos));
    if (!action)
        return -1;
    int position = entries.indexOf(action);
    // An action of a caller's submenu counts as its submenu's entry.
    for (int i = 0; position < 0 && m_menu && i < entries.size(); ++i) {
        if (m_menu->actions().contains(entries.at(i)) && containsAction(entries.at(i)->menu(), action))
            position = i;
    }
    if (position < 0)
        return -1;
    if (chosen)
        *chosen = action;
    return position;
}

QModelIndex TreeViewContextMenu::contextIndex() const
{
    return m_index;
}

QString TreeViewContextMenu::subtreeAsText(const QModelIndex& index)
{
    if (!index.isValid())
        return QString();
    const QAbstractItemModel* model = index.model();

    QStringList lines;
    // Pre-order walk with an explicit stack: deep trees do not exhaust the call stack.
    struct Pending
    {
        QModelIndex index;
        int depth;
    };
    QVector<Pending> stack{{index.sibling(index.row(), 0), 0}};
    while (!stack.isEmpty()) {
        const Pending current = stack.takeLast();
        const QModelIndex parent = current.index.parent();
        const int row = current.index.row();

        QStringList cells;
        const int columns = model->columnCount(parent);
        for (int column = 0; column < columns; ++column)
            cells << model->index(row, column, parent).data(Qt::DisplayRole).toString();
        lines << QString(2 * current.depth, QLatin1Char(' ')) + cells.join(QLatin1Char('\t'));

        // Pushed last to first, so that the first child is taken next.
        for (int child = model->rowCount(current.index) - 1; child >= 0; --child)
            stack.append({model->index(child, 0, current.index), current.depth + 1});
    }
    return lines.join(QLatin1Char('\n'));
}

QString TreeViewContextMenu::actionText(int builtInAction)
{
    switch (builtInAction) {
    case ExpandRecursively:
        return tr("Expand recursively");
    case CollapseAll:
        return tr("Collapse all");
    case CopySubtree:
        return tr("Copy");
    default:
        return QString();
    }
}

QString TreeViewContextMenu::actionToolTip(int builtInAction)
{
    switch (builtInAction) {
    case ExpandRecursively:
        return tr("Expand this row and every row below it");
    case CollapseAll:
        return tr("Collapse every row of the tree");
    case CopySubtree:
        return tr("Copy this row and the rows below it as indented text");
    default:
        return QString();
    }
}

QIcon TreeViewContextMenu::actionIcon(int builtInAction) const
{
    // Icons of the desktop theme where there is one; the entries read well without.
    switch (builtInAction) {
    case ExpandRecursively:
        return QIcon::fromTheme(QStringLiteral("list-add"));
    case CollapseAll:
        return QIcon::fromTheme(QStringLiteral("list-remove"));
    case CopySubtree:
        return QIcon::fromTheme(QStringLiteral("edit-copy"));
    default:
        return QIcon();
    }
}

void TreeViewContextMenu::adjustMenu()
{
}

QMenu* TreeViewContextMenu::menu() const
{
    return m_menu;
}

void TreeViewContextMenu::expandRecursively()
{
    if (m_view && m_index.isValid())
        m_view->expandRecursively(m_index);
}

void TreeViewContextMenu::collapseAll()
{
    if (m_view)
        m_view->collapseAll();
}

void TreeViewContextMenu::copySubtree()
{
    if (m_index.isValid())
        QGuiApplication::clipboard()->setText(subtreeAsText(m_index));
}

} // namespace Brennvik
