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

// Qt keeps a row's column data (all roles but the text) in a private vector,
// and a row's virtual table is fixed, so no public call tells whether a row
// still shares that vector with a template row. An explicit instantiation may
// name a private member (such names are exempt from access checks), and this
// one hands out the member pointer; a Qt that renames the member fails to build.
struct ColumnDataTag
{
    friend auto columnDataMember(ColumnDataTag);
};

template<auto member>
struct ColumnDataAccess
{
    friend auto columnDataMember(ColumnDataTag) { return member; }
};

template struct ColumnDataAccess<&QTreeWidgetItem::values>;

const auto& columnData(const QTreeWidgetItem& row)
{
    return row.*columnDataMember(ColumnDataTag{});
}

auto& columnData(QTreeWidgetItem& row)
{
    return row.*columnDataMember(ColumnDataTag{});
}

// Gives \a row the column data of \a templ, shared. Qt's element type is
// private and incomplete here, so this file only swaps the vectors; copying
// and releasing them is left to QTreeWidgetItem's assignment, inside Qt.
void shareColumnData(QTreeWidgetItem& row, const QTreeWidgetItem& templ)
{
    // The carrier keeps the row's former data until the next call: another
    // template's, none, or on Qt 6 a row's copy of a template's outer vector,
    // so it holds one small vector at most.
    static auto* const carrier = new QTreeWidgetItem;
    *carrier = templ;
    columnData(*carrier).swap(columnData(row));
}

// A detached row that shows only one icon in column 0; one per icon, kept for
// the life of the process like the icons themselves.
struct TemplateRow
{
    qint64 iconKey;
    const QTreeWidgetItem* row;
};

QVector<TemplateRow>& templateRows()
{
    static auto* rows = new QVector<TemplateRow>;
    return *rows;
}

const QTreeWidgetItem& templateRow(const QIcon& icon)
{
    for (const TemplateRow& entry : qAsConst(templateRows())) {
        if (entry.iconKey == icon.cacheKey())
            return *entry.row;
    }
    auto* row = new QTreeWidgetItem;
    row->setIcon(NameColumn, icon);
    templateRows().append({icon.cacheKey(), row});
    return *row;
}

// The template row whose column data \a row holds untouched: one column, the
// template's own vector for it (Qt copies shared data as soon as anything of
// the row changes). Qt 6 copies the outer vector when a row enters a tree but
// keeps sharing the column's; null when the row has data of its own or none.
const QTreeWidgetItem* sharedTemplate(const QTreeWidgetItem& row)
{
    const auto& data = columnData(row);
    if (data.size() != 1)
        return nullptr;
    for (const TemplateRow& entry : qAsConst(templateRows())) {
        if (data.at(0).isSharedWith(columnData(*entry.row).at(0)))
            return entry.row;
    }
    return nullptr;
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

// Whether \a row shows \a icon in column 0 already: the same icon data.
bool showsIcon(const QTreeWidgetItem& row, const QIcon& icon)
{
    const QVariant shown = row.data(NameColumn, Qt::DecorationRole);
    return shown.userType() == QMetaType::QIcon && shown.value<QIcon>().cacheKey() == icon.cacheKey();
}

} // namespace

void showRowIcon(QTreeWidgetItem& row, const QIcon& icon)
{
    const QTreeWidgetItem& templ = templateRow(icon);
    const QTreeWidgetItem* shared = sharedTemplate(row);
    // Nothing changes, and nothing is announced, as Qt 5's setIcon does; Qt
    // 6's finds no icon equal to another and would announce a change.
    if (shared == &templ)
        return;
    // A row without column data holds nothing that sharing could lose.
    const bool ownData = !shared && !columnData(row).isEmpty();
    if (ownData && showsIcon(row, icon))
        return;
    QTreeWidget* tree = row.treeWidget();
    // Asking a sorting tree for an index runs a sort that Qt's own setIcon
    // leaves pending; such rows keep Qt's way.
    if (ownData || (tree && tree->isSortingEnabled())) {
        row.setIcon(NameColumn, icon);
        return;
    }
    // Exactly what setIcon would leave, shared instead of copied: the text is
    // kept apart from the column data, and flags are not part of it.
    shareColumnData(row, templ);
    if (!tree)
        return;
    // What QTreeWidgetItem::setData announces for a new icon.
    const QModelIndex index = TreeIndex::of(*tree, row, NameColumn);
    emit tree->model()->dataChanged(index, index, {Qt::DecorationRole});
}

} // namespace Brennvik
