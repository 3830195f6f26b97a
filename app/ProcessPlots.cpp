#include "ProcessPlots.h"

#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/GenericPlotManager.h>
#include <hostcontract/PlotDescription.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/plot2d/PlotAxisItem2D.h>
#include <referencehost/plot2d/PlotCurveItem2D.h>
#include <referencehost/plot2d/PlotLabelItem.h>
#include <referencehost/plot2d/PlotLegendItem2D.h>

#include <QGridLayout>
#include <QLabel>
#include <QWidget>

#include <cmath>
#include <functional>

namespace Brennvik {

namespace {

struct CurveDefinition
{
    const char* name;
    QColor color;
    std::function<double(double)> value;
};

std::vector<QPointF> sample(const std::function<double(double)>& f, double from, double to, int steps = 48)
{
    std::vector<QPointF> points;
    points.reserve(static_cast<std::size_t>(steps) + 1);
    for (int i = 0; i <= steps; ++i) {
        const double x = from + (to - from) * i / steps;
        points.emplace_back(x, f(x));
    }
    return points;
}

std::shared_ptr<DisplayItem2D> buildPlotTree(const std::string& title, const std::string& xTitle,
                                             const std::string& yTitle, double xFrom, double xTo,
                                             const std::vector<CurveDefinition>& curves, const std::string& unit)
{
    auto root = std::make_shared<DisplayItem2D>(title);
    root->setBusinessProperty("plot", title);
    auto axes = std::make_shared<DisplayItem2D>("Axes");
    axes->appendChild(std::make_shared<PlotAxisItem2D>("Horizontal axis", Qt::Horizontal, xTitle));
    axes->appendChild(std::make_shared<PlotAxisItem2D>("Vertical axis", Qt::Vertical, yTitle));
    root->appendChild(axes);
    auto group = std::make_shared<DisplayItem2D>("Curves");
    for (const CurveDefinition& definition : curves) {
        auto curve = std::make_shared<PlotCurveItem2D>(definition.name, definition.color,
                                                       sample(definition.value, xFrom, xTo));
        curve->setBusinessProperty("unit", unit);
        group->appendChild(curve);
    }
    root->appendChild(group);
    root->appendChild(std::make_shared<PlotLegendItem2D>("Legend"));
    return root;
}

} // namespace

ProcessPlots::ProcessPlots()
{
    const auto add = [this](const QString& title, std::shared_ptr<DisplayItem2D> tree, bool process, float x, float y) {
        Plot plot;
        plot.manager = std::make_unique<GenericPlotManager>(title.toStdString());
        auto model = std::make_shared<DisplayModel2D>();
        model->setRootDisplayItem(std::move(tree));
        plot.manager->setDisplayModel2D(model);
        plot.description = std::make_shared<PlotDescription>(title.toStdString(), plot.manager->getDisplayModel2D());
        plot.title = title;
        plot.process = process;
        plot.anchorX = x;
        plot.anchorY = y;
        m_plots.push_back(std::move(plot));
    };

    // Drawing force of the OP10 tools: rises while the sheet is drawn in, then levels off.
    const auto drawIn
        = [](double peak) { return [peak](double s) { return peak * (1.0 - std::exp(-3.0 * s / 145.0)); }; };
    add(QStringLiteral("Press force OP10"),
        buildPlotTree("Press force OP10", "Stroke [mm]", "Force [kN]", 0.0, 145.0,
                      {{"Punch", QColor(0x1f, 0x77, 0xb4), drawIn(820.0)},
                       {"Binder", QColor(0xff, 0x7f, 0x0e), drawIn(310.0)},
                       {"Upper die", QColor(0x2c, 0xa0, 0x2c), drawIn(540.0)}},
                      "kN"),
        true, 70.0f, -70.0f);
    add(QStringLiteral("Blank holder force"),
        buildPlotTree("Blank holder force", "Stroke [mm]", "Force [kN]", 0.0, 145.0,
                      {{"Cushion pins", QColor(0x94, 0x67, 0xbd), [](double s) { return 1800.0 - 2.1 * s; }},
                       {"Nitrogen springs", QColor(0x8c, 0x56, 0x4b), [](double s) { return 600.0 + 1.4 * s; }}},
                      "kN"),
        true, 260.0f, -110.0f);
    // Material of the blank: Hollomon flow curve and a forming limit curve.
    add(QStringLiteral("Flow curve DC04"),
        buildPlotTree(
            "Flow curve DC04", "Plastic strain [-]", "Stress [MPa]", 0.0, 0.6,
            {{"Rolling direction", QColor(0xd6, 0x27, 0x28),
              [](double e) { return 530.0 * std::pow(e + 0.002, 0.22); }},
             {"Transverse", QColor(0x17, 0xbe, 0xcf), [](double e) { return 515.0 * std::pow(e + 0.002, 0.21); }}},
            "MPa"),
        false, 150.0f, -250.0f);
    add(QStringLiteral("Forming limit curve DC04"),
        buildPlotTree("Forming limit curve DC04", "Minor strain [-]", "Major strain [-]", -0.3, 0.3,
                      {{"FLC", QColor(0x7f, 0x7f, 0x7f),
                        [](double minor) { return minor < 0.0 ? 0.32 - 0.9 * minor : 0.32 + 0.45 * minor; }}},
                      "-"),
        false, 330.0f, -300.0f);
}

ProcessPlots::~ProcessPlots() = default;

int ProcessPlots::plotCount() const
{
    return static_cast<int>(m_plots.size());
}

GenericPlotManager* ProcessPlots::plot(int index) const
{
    return index >= 0 && index < plotCount() ? m_plots[static_cast<std::size_t>(index)].manager.get() : nullptr;
}

std::vector<BkHQWidget2D*> ProcessPlots::createProcessPlotWidgets(QWidget* parent) const
{
    std::vector<BkHQWidget2D*> widgets;
    for (const Plot& plot : m_plots) {
        if (!plot.process)
            continue;
        auto* widget = new BkHQWidget2D(parent);
        widget->setObjectName(QStringLiteral("plot: ") + plot.title);
        widget->setPlotManager(plot.manager.get());
        widgets.push_back(widget);
    }
    return widgets;
}

QWidget* ProcessPlots::createMaterialGeneratorWindow() const
{
    auto* window = new QWidget(nullptr, Qt::Window);
    window->setObjectName(QStringLiteral("materialGeneratorWindow"));
    window->setWindowTitle(tr("Material generator"));
    auto* layout = new QGridLayout(window);
    auto* heading = new QLabel(tr("DC04, 1.20 mm: Hollomon fit and forming limit"), window);
    layout->addWidget(heading, 0, 0, 1, 2);
    int column = 0;
    for (const Plot& plot : m_plots) {
        if (plot.process)
            continue;
        auto* widget = new BkHQWidget2D(window);
        widget->setObjectName(QStringLiteral("plot: ") + plot.title);
        widget->setPlotManager(plot.manager.get());
        layout->addWidget(widget, 1, column++);
    }
    window->resize(760, 340);
    return window;
}

void ProcessPlots::addPlotLabels(SceneViewModel& viewModel) const
{
    std::shared_ptr<DisplayItem> root = viewModel.labelDisplayModel().rootDisplayItem();
    if (!root) {
        root = std::make_shared<DisplayItem>("Plot labels");
        viewModel.labelDisplayModel().setRootDisplayItem(root);
    }
    for (const Plot& plot : m_plots) {
        const std::string title = plot.title.toStdString();
        root->appendChild(std::make_shared<PlotLabelItem>("Label " + title, title, plot.description,
                                                          Vector<float, 3>(plot.anchorX, plot.anchorY, 0.0f)));
    }
}

} // namespace Brennvik
