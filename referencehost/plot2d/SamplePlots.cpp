#include "SamplePlots.h"

#include "PlotAxisItem2D.h"
#include "PlotCurveItem2D.h"
#include "PlotLegendItem2D.h"

#include <cmath>
#include <vector>

namespace Brennvik {

namespace {

std::vector<QPointF> forceOverStroke(double peak, double stroke)
{
    std::vector<QPointF> points;
    constexpr int Steps = 40;
    for (int i = 0; i <= Steps; ++i) {
        const double s = stroke * i / Steps;
        // Rises while the sheet is drawn in, then levels off.
        points.emplace_back(s, peak * (1.0 - std::exp(-3.0 * s / stroke)));
    }
    return points;
}

} // namespace

std::shared_ptr<DisplayItem2D> buildSamplePlotTree(const std::string& title, const std::string& valueTitle)
{
    auto root = std::make_shared<DisplayItem2D>(title);
    root->setBusinessProperty("plot", title);

    auto axes = std::make_shared<DisplayItem2D>("Axes");
    axes->appendChild(std::make_shared<PlotAxisItem2D>("Stroke axis", Qt::Horizontal, "Stroke [mm]"));
    axes->appendChild(std::make_shared<PlotAxisItem2D>("Value axis", Qt::Vertical, valueTitle));
    root->appendChild(axes);

    auto curves = std::make_shared<DisplayItem2D>("Curves");
    const struct
    {
        const char* name;
        QColor color;
        double peak;
    } tools[] = {{"Punch", QColor(0x1f, 0x77, 0xb4), 820.0},
                 {"Binder", QColor(0xff, 0x7f, 0x0e), 310.0},
                 {"Die", QColor(0x2c, 0xa0, 0x2c), 540.0}};
    for (const auto& tool : tools) {
        auto curve = std::make_shared<PlotCurveItem2D>(tool.name, tool.color, forceOverStroke(tool.peak, 120.0));
        curve->setBusinessProperty("tool", tool.name);
        curve->setBusinessProperty("unit", "kN");
        curves->appendChild(curve);
    }
    root->appendChild(curves);

    root->appendChild(std::make_shared<PlotLegendItem2D>("Legend"));
    return root;
}

} // namespace Brennvik
