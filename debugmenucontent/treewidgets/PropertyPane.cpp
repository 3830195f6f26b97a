#include "PropertyPane.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTreeWidget>

namespace Brennvik {

QTreeWidgetItem* makePropertyRow(const Property& property)
{
    const QString name = QString::fromStdString(property.first);
    const QString value = QString::fromStdString(property.second);
    auto* row = new QTreeWidgetItem(QStringList{name, value});
    // Narrow panes cut long names and values off; the tool tips show them whole.
    row->setToolTip(0, name);
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
