#include "SharedIconData.h"

#include "RowColumns.h"

#include <QAbstractItemModel>
#include <QIcon>
#include <QTreeWidget>
#include <QTreeWidgetItem>
#include <QVariant>
#include <QVector>

namespace Brennvik {

namespace {

// A detached row that shows only \a icon in column 0; one per icon, kept for
// the life of the process like the icons themselves.
const QTreeWidgetItem& templateRow(const QIcon& icon)
{
    struct Template
    {
        qint64 iconKey;
        const QTreeWidgetItem* row;
    };
    static QVector<Template>* templates = new QVector<Template>;
    for (const Template& entry : qAsConst(*templates)) {
        if (entry.iconKey == icon.cacheKey())
            return *entry.row;
    }
    auto* row = new QTreeWidgetItem;
    row->setIcon(NameColumn, icon);
    templates->append({icon.cacheKey(), row});
    return *row;
}

// QTreeWidget::indexFromItem is protected; a pointer to it taken through a
// derived class is the legal way to ask any tree widget for a row's index.
struct TreeIndex : QTreeWidget
{
    static QModelIndex of(const QTreeWidget& tree, const QTreeWidgetItem& row, int column)
    {
        using IndexFromItem = QModelIndex (QTreeWidget::*)(const QTreeWidgetItem*, int) const;
        const IndexFromItem indexFromItem = &TreeIndex::indexFromItem;
        return (tree.*indexFromItem)(&row, column);
    }
};

// A row is as QTreeWidgetItem's constructor left it when it has no column
// data (Qt adds none without adding a column), and flags and child indicator
// are still the defaults that the template row carries too.
bool isFresh(const QTreeWidgetItem& row, const QTreeWidgetItem& templ)
{
    return row.columnCount() == 0 && row.flags() == templ.flags()
        && row.childIndicatorPolicy() == templ.childIndicatorPolicy();
}

// Whether \a row shows \a icon in column 0 already: the same icon data.
bool showsIcon(const QTreeWidgetItem& row, const QIcon& icon)
{
    const QVariant shown = row.data(NameColumn, Qt::DecorationRole);
    return shown.userType() == QMetaType::QIcon && shown.value<QIcon>().cacheKey() == icon.cacheKey();
}

} // namespace

void showRowIcon(QTreeWidgetItem& row, const QIcon& icon)
{
    // Nothing changes, and nothing is announced, as Qt 5's setIcon does; Qt
    // 6's finds no icon equal to another and would announce a change.
    if (showsIcon(row, icon))
        return;
    const QTreeWidgetItem& templ = templateRow(icon);
    QTreeWidget* tree = row.treeWidget();
    // Asking a sorting tree for an index runs a sort that Qt's own setIcon
    // leaves pending; such rows keep Qt's way.
    if (!isFresh(row, templ) || (tree && tree->isSortingEnabled())) {
        row.setIcon(NameColumn, icon);
        return;
    }
    // Copies exactly what the template holds: its column data (shared, not
    // duplicated), flags and child indicator, equal to the fresh row's own.
    row = templ;
    if (!tree)
        return;
    // What QTreeWidgetItem::setData announces for a new icon.
    const QModelIndex index = TreeIndex::of(*tree, row, NameColumn);
    emit tree->model()->dataChanged(index, index, {Qt::DecorationRole});
}

} // namespace Brennvik
