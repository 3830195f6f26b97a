#include "PropertyPane.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTreeWidget>

namespace Brennvik {

QTreeWidgetItem* makePropertyRow(const Property& property)
{
    const QString value = QString::fromStdString(property.second);
    auto* row = new QTreeWidgetItem(QStringList{QString::fromStdString(property.first), value});
    row->setToolTip(1, value);
    return row;
}

void fillPropertyPane(QTreeWidget* pane, const PropertyList& properties)
{
    // One insertion for all rows: the view hears of them once.
    QList<QTreeWidgetItem*> rows;
    for (const Property& property : properties)
        rows.append(makePropertyRow(property));
    pane->addTopLevelItems(rows);
}

} // namespace Brennvik
