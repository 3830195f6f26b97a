#pragma once

#include <hostcontract/Vector.h>

#include <memory>
#include <string>
#include <vector>

namespace Brennvik {

class BkHQWidget2D;
class MainWindowPresenter;
class PlotLabelDisplayItem;
class ViewModelInterface;

/// The steps of the 2D dialog's plot listing: which plots are on screen,
/// where, and the row texts that name them by their screen position.

/// The visible plot widgets of the left process designer, then those inside
/// the application's "MaterialGenerator" window. A widget found in both
/// places is listed twice.
std::vector<BkHQWidget2D*> gatherPlotWidgets(const MainWindowPresenter& presenter);

/// Orders \a plotWidgets top to bottom, then left to right, by their global
/// top-left corners. Widgets at the same place keep no particular order.
void sortByScreenPosition(std::vector<BkHQWidget2D*>& plotWidgets);

/// The device pixel ratio of the application's window, by which the row
/// texts turn logical positions into device pixels.
float listingPixelRatio();

/// "Plot at (X, Y)": the widget's global top-left corner in device pixels.
std::string plotRowText(const BkHQWidget2D* plotWidget, float pixelRatio);

/// A visible plot label of the 3D view and where it sits on screen, in
/// device pixels.
struct PlacedPlotLabel
{
    std::shared_ptr<PlotLabelDisplayItem> label;
    Vector<float, 3> point;
};

/// The visible plot labels of \a viewModel's label tree, placed on screen
/// and ordered top to bottom, then left to right. None when the view model
/// has no view, the view no widget or the view model no label model.
std::vector<PlacedPlotLabel> placePlotLabels(const ViewModelInterface& viewModel, float pixelRatio);

/// "PlotLabel at (x, y)" with the coordinates truncated toward zero.
std::string labelRowText(const Vector<float, 3>& point);

} // namespace Brennvik
