#pragma once

// Comparisons of what the dialogs show with what they are expected to show.
// Each returns an empty string when they agree, otherwise what differs.

#include "RandomModelExpected.h"

#include <QPoint>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QIcon;
class QListWidget;
class QTreeWidget;

namespace Brennvik {

class BkHQWidget2D;
class DebugCloneDisplayModelDialog;
class DisplayModel2D;
class DisplayModel2DDialog;
class DisplayModelDialog;
class PlotLabelItem;

namespace Test {

/// The icon a row shows, by name.
QString iconName(const QIcon& icon);
/// A property pane's rows as "name = value [tool tip]".
QStringList paneLines(const QTreeWidget* pane);
/// The lines a pane shows for \a properties.
QStringList propertyLines(const PropertyList& properties);

/// \a tree's rows against \a expected; \a name starts the path of a difference.
QString checkTree(QTreeWidget* tree, RowList& expected, const QString& name);
/// The display model dialog's property panes against the current row's item.
QString checkPropertyPanes(DisplayModelDialog& dialog);

/// The 2D side as the host laid it out: plot widgets at their positions,
/// labels at their anchors' pixels, and their display models.
struct PlotScene
{
    std::vector<BkHQWidget2D*> plots;
    std::vector<QPoint> plotPositions;
    std::vector<std::shared_ptr<PlotLabelItem>> labels;
    std::vector<QPoint> labelPoints;
    std::vector<DisplayModel2D*> labelModels;
};

/// The 2D dialog's plot list against the visible plots and labels of \a scene.
QString checkPlotListing(const PlotScene& scene, const QListWidget& list);
/// The display model that a plot list entry with \a text stands for; null for none.
DisplayModel2D* modelOfListEntry(const PlotScene& scene, const QString& text);
/// The 2D dialog's tree and property panes against \a expected (null: no model).
QString check2DTree(DisplayModel2DDialog& dialog, Expected2DRow* expected);

/// The texts of the clone comparison dialog's two trees, each closed by "|".
QStringList cloneDialogShape(DebugCloneDisplayModelDialog& dialog);

} // namespace Test
} // namespace Brennvik
