#include "RandomModelChecks.h"

#include <debugmenucontent/clonecomparison/DebugCloneDisplayModelDialog.h>
#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/LabelableDisplayItemInterface.h>

#include <referencehost/plot2d/PlotLabelItem.h>

#include "DebugIcons.h"
#include "Plot2DHost.h"

#include <QHash>
#include <QIcon>
#include <QListWidget>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <algorithm>

namespace Brennvik::Test {

namespace {

QString checkRow(QTreeWidgetItem* actual, ExpectedRow* expected, const QString& path)
{
    const QString where = path + QLatin1Char('/') + expected->text;
    auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(actual);
    if (expected->edit) {
        if (itemRow || actual->type() != QTreeWidgetItem::UserType)
            return where + QStringLiteral(": expected an edit-model row");
    } else {
        if (!itemRow)
            return where + QStringLiteral(": expected a display item row");
        if (itemRow->getDisplayItem() != expected->item.lock())
            return where + QStringLiteral(": shows another item");
        if (itemRow->isDuplicate() != expected->duplicate)
            return where + QStringLiteral(": duplicate flag %1").arg(itemRow->isDuplicate());
        if (itemRow->getItemIndex() != expected->itemIndex)
            return where
                + QStringLiteral(": item index %1, expected %2").arg(itemRow->getItemIndex()).arg(expected->itemIndex);
        if (itemRow->isDifferentVisibility() != expected->different)
            return where + QStringLiteral(": different-visibility mark %1").arg(itemRow->isDifferentVisibility());
        if ((actual->font(0).weight() == QFont::Bold) != expected->bold)
            return where + QStringLiteral(": bold %1").arg(actual->font(0).weight() == QFont::Bold);
        if (!actual->text(1).isEmpty())
            return where + QStringLiteral(": column 1 shows %1").arg(actual->text(1));
    }
    if (actual->text(0) != expected->text)
        return where + QStringLiteral(": text \"%1\"").arg(actual->text(0));
    const QString icon = iconName(actual->icon(0));
    if (expected->anyIcon && (icon == expected->expectedIcon() || icon == QLatin1String("visible_different"))) {
        expected->lastIcon = icon;
        expected->anyIcon = false;
    }
    if (icon != expected->expectedIcon())
        return where + QStringLiteral(": icon %1, expected %2").arg(icon, expected->expectedIcon());
    if (actual->childCount() != int(expected->children.size())) {
        QStringList actualTexts;
        for (int i = 0; i < actual->childCount(); ++i)
            actualTexts << actual->child(i)->text(0);
        QStringList expectedTexts;
        for (const auto& child : expected->children)
            expectedTexts << child->text;
        return where
            + QStringLiteral(": %1 child rows (%2), expected %3 (%4)")
                  .arg(actual->childCount())
                  .arg(actualTexts.join(QStringLiteral(", ")))
                  .arg(expected->children.size())
                  .arg(expectedTexts.join(QStringLiteral(", ")));
    }
    for (int i = 0; i < actual->childCount(); ++i) {
        const QString problem = checkRow(actual->child(i), expected->children[std::size_t(i)].get(), where);
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

QString plotEntryText(const QPoint& position)
{
    return QStringLiteral("Plot at (%1, %2)").arg(position.x()).arg(position.y());
}

QString labelEntryText(const QPoint& point)
{
    return QStringLiteral("PlotLabel at (%1, %2)").arg(point.x()).arg(point.y());
}

QString check2DRow(QTreeWidgetItem* actual, Expected2DRow* expected, QString path)
{
    path += QLatin1Char('/') + expected->text;
    if (actual->text(0) != expected->text)
        return path + QStringLiteral(": text \"%1\"").arg(actual->text(0));
    const QString icon = iconName(actual->icon(0));
    const QString wanted = expected->item->getVisibility() == DisplayItem2D::Visible ? QStringLiteral("visible")
                                                                                     : QStringLiteral("not_visible");
    if (icon != wanted)
        return path + QStringLiteral(": icon %1, expected %2").arg(icon, wanted);
    if (actual->childCount() != int(expected->children.size()))
        return path
            + QStringLiteral(": %1 child rows, expected %2").arg(actual->childCount()).arg(expected->children.size());
    for (int i = 0; i < actual->childCount(); ++i) {
        const QString problem = check2DRow(actual->child(i), expected->children[std::size_t(i)].get(), path);
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

// The current row's properties: the item's display list and business list.
QString check2DPanes(DisplayModel2DDialog& dialog, Expected2DRow* expected)
{
    QTreeWidgetItem* current = dialog.m_displayItemTreeWidget->currentItem();
    PropertyList business;
    PropertyList display;
    // As in the 3D tree, a current row below a removed row goes without a
    // current-row change, and the panes keep what they showed.
    if (!current)
        return QString();
    {
        // Find the expected row at the same place to learn its item.
        QList<int> path;
        for (QTreeWidgetItem* r = current; r->parent(); r = r->parent())
            path.prepend(r->parent()->indexOfChild(r));
        Expected2DRow* row = expected;
        for (int i : path)
            row = row->children[std::size_t(i)].get();
        row->item->getProperties(business, display);
    }
    if (paneLines(dialog.m_displayItemProperties) != propertyLines(display))
        return QStringLiteral("2D display item pane: %1")
            .arg(paneLines(dialog.m_displayItemProperties).join(QStringLiteral("; ")));
    if (paneLines(dialog.m_businessObjectProperties) != propertyLines(business))
        return QStringLiteral("2D business pane: %1")
            .arg(paneLines(dialog.m_businessObjectProperties).join(QStringLiteral("; ")));
    return QString();
}

} // namespace

// The icon's name is memoised per icon, since rows share the library's few icon objects.
QString iconName(const QIcon& icon)
{
    static QHash<qint64, QString> names;
    if (icon.isNull())
        return QString();
    const qint64 key = icon.cacheKey();
    auto it = names.find(key);
    if (it == names.end())
        it = names.insert(key, debugIconName(icon));
    return it.value();
}

QStringList paneLines(const QTreeWidget* pane)
{
    QStringList lines;
    for (int i = 0; pane && i < pane->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = pane->topLevelItem(i);
        lines << row->text(0) + QStringLiteral(" = ") + row->text(1) + QStringLiteral(" [") + row->toolTip(1)
                + QLatin1Char(']');
    }
    return lines;
}

QStringList propertyLines(const PropertyList& properties)
{
    QStringList lines;
    for (const auto& [name, value] : properties) {
        const QString v = QString::fromStdString(value);
        lines << QString::fromStdString(name) + QStringLiteral(" = ") + v + QStringLiteral(" [") + v + QLatin1Char(']');
    }
    return lines;
}

QString checkTree(QTreeWidget* tree, RowList& expected, const QString& name)
{
    if (tree->topLevelItemCount() != int(expected.size()))
        return name + QStringLiteral(": %1 top rows, expected %2").arg(tree->topLevelItemCount()).arg(expected.size());
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QString problem = checkRow(tree->topLevelItem(i), expected[std::size_t(i)].get(), name);
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

QString checkPropertyPanes(DisplayModelDialog& dialog)
{
    QTreeWidgetItem* current = dialog.m_displayItemTreeWidget->currentItem();
    PropertyList business;
    PropertyList display;
    if (auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(current)) {
        const auto item = row->getDisplayItem();
        // A gone item's panes keep what was printed last; nothing to compare with.
        if (!item)
            return QString();
        item->getProperties(business, display);
        if (const auto labelable = std::dynamic_pointer_cast<LabelableDisplayItemInterface>(item)) {
            display.emplace_back("Label", labelable->getLabel());
            display.emplace_back("Labels allowed", labelable->areLabelsAllowed() ? "true" : "false");
        }
    } else if (!current) {
        // A current row can vanish without a current-row change: Qt says nothing
        // when the current row was below a removed row. The panes then keep what
        // they showed (tst_goneitems covers it); nothing to compare here.
        return QString();
    } else {
        // An edit-model row: its primitive changes silently, so the pane shows
        // what it had when the row was last printed.
        return QString();
    }
    // A module's geometry list loses items that have gone without an event.
    const auto withoutGeometryCount = [](QStringList lines) {
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const QString& l) { return l.startsWith(QLatin1String("geometry items = ")); }),
                    lines.end());
        return lines;
    };
    if (withoutGeometryCount(paneLines(dialog.m_displayItemProperties)) != withoutGeometryCount(propertyLines(display)))
        return QStringLiteral("display item pane of %1: %2, expected %3")
            .arg(current ? current->text(0) : QStringLiteral("no row"),
                 paneLines(dialog.m_displayItemProperties).join(QStringLiteral("; ")),
                 propertyLines(display).join(QStringLiteral("; ")));
    if (paneLines(dialog.m_businessObjectProperties) != propertyLines(business))
        return QStringLiteral("business object pane: %1")
            .arg(paneLines(dialog.m_businessObjectProperties).join(QStringLiteral("; ")));
    return QString();
}

QString checkPlotListing(const PlotScene& scene, const QListWidget& list)
{
    // Visible plots by position (top to bottom, then left to right), then visible labels alike.
    std::vector<std::pair<QPoint, QString>> plots;
    for (std::size_t i = 0; i < scene.plots.size(); ++i) {
        if (scene.plots[i]->isVisible())
            plots.emplace_back(scene.plotPositions[i], plotEntryText(scene.plotPositions[i]));
    }
    std::vector<std::pair<QPoint, QString>> labels;
    for (std::size_t i = 0; i < scene.labels.size(); ++i) {
        if (scene.labels[i]->isVisible())
            labels.emplace_back(scene.labelPoints[i], labelEntryText(scene.labelPoints[i]));
    }
    const auto byPosition = [](const std::pair<QPoint, QString>& a, const std::pair<QPoint, QString>& b) {
        return a.first.y() < b.first.y() || (a.first.y() == b.first.y() && a.first.x() < b.first.x());
    };
    std::sort(plots.begin(), plots.end(), byPosition);
    std::sort(labels.begin(), labels.end(), byPosition);
    QStringList expected;
    for (const auto& p : plots)
        expected << p.second;
    for (const auto& l : labels)
        expected << l.second;
    QStringList actual;
    for (int i = 0; i < list.count(); ++i)
        actual << list.item(i)->text();
    if (actual != expected)
        return QStringLiteral("plot list %1, expected %2")
            .arg(actual.join(QStringLiteral("; ")), expected.join(QStringLiteral("; ")));
    return QString();
}

DisplayModel2D* modelOfListEntry(const PlotScene& scene, const QString& text)
{
    DisplayModel2D* model = nullptr;
    for (std::size_t i = 0; i < scene.plots.size(); ++i) {
        if (text == plotEntryText(scene.plotPositions[i]))
            model = Plot2DHost::modelOf(scene.plots[i]);
    }
    for (std::size_t i = 0; i < scene.labels.size(); ++i) {
        if (text == labelEntryText(scene.labelPoints[i]))
            model = scene.labelModels[i];
    }
    return model;
}

QString check2DTree(DisplayModel2DDialog& dialog, Expected2DRow* expected)
{
    QTreeWidget* tree = dialog.m_displayItemTreeWidget;
    if (!expected)
        return tree->topLevelItemCount() == 0 ? QString() : QStringLiteral("2D tree: rows without a model");
    if (tree->topLevelItemCount() != 1)
        return QStringLiteral("2D tree: %1 top rows").arg(tree->topLevelItemCount());
    const QString problem = check2DRow(tree->topLevelItem(0), expected, QStringLiteral("2D tree"));
    if (!problem.isEmpty())
        return problem;
    return check2DPanes(dialog, expected);
}

QStringList cloneDialogShape(DebugCloneDisplayModelDialog& dialog)
{
    QStringList shape;
    for (QTreeWidget* tree : {static_cast<QTreeWidget*>(dialog.m_displayItemTree),
                              static_cast<QTreeWidget*>(dialog.m_clonedDisplayItemTree)}) {
        for (QTreeWidgetItemIterator it(tree); *it; ++it)
            shape << (*it)->text(0);
        shape << QStringLiteral("|");
    }
    return shape;
}

} // namespace Brennvik::Test
