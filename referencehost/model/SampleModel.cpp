#include "SampleModel.h"

#include "DisplayItem.h"
#include "FixedEntryOwner.h"
#include "GeometryModuleItem.h"
#include "LabelableItem.h"
#include "ProcessStepProvider.h"
#include "SceneContext.h"
#include "SceneDisplayModel.h"
#include "SceneViewModel.h"
#include "ShellItem.h"
#include "ToolKeyLookup.h"
#include "ToolKeySource.h"

#include <hostcontract/EditorDisplayModel.h>

#include <cmath>
#include <cstdio>
#include <deque>
#include <random>
#include <string>
#include <vector>

namespace Brennvik {

namespace {

std::string fixed(double value, int decimals)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    return buffer;
}

std::string twoDigits(int value)
{
    return value < 10 ? "0" + std::to_string(value) : std::to_string(value);
}

// Nobody observes a model that is still being built, so the added events
// raised while assembling it reach no one.
template<typename T, typename... Args>
std::shared_ptr<T> add(const std::shared_ptr<DisplayItem>& parent, Args&&... args)
{
    auto item = std::make_shared<T>(std::forward<Args>(args)...);
    parent->appendChild(item);
    return item;
}

std::shared_ptr<DisplayItem> group(const std::shared_ptr<DisplayItem>& parent, const std::string& name)
{
    auto item = add<DisplayItem>(parent, name);
    item->setDisplayProperty("render mode", "group");
    return item;
}

void styleSurface(DisplayItem& item, const std::string& color, double transparency)
{
    item.setDisplayProperty("color", color);
    item.setDisplayProperty("render mode", "shaded");
    item.setDisplayProperty("transparency", fixed(transparency, 2));
}

std::shared_ptr<ShellItem> addTool(const std::shared_ptr<DisplayItem>& operation, const std::string& opCode,
                                   const std::string& name, const std::string& code, const std::string& material,
                                   int faceCount, const std::string& color)
{
    auto tool = add<ShellItem>(operation, name, "Tool", name);
    tool->setBusinessProperty("tool id", opCode + "-" + code);
    tool->setBusinessProperty("material", material);
    tool->setBusinessProperty("contact", "Penalty, friction 0.12");
    tool->setBusinessProperty("elements", std::to_string(2400 + 611 * faceCount));
    styleSurface(*tool, color, 0.0);
    auto surfaces = group(tool, "Surfaces");
    for (int face = 1; face <= faceCount; ++face) {
        auto item = add<DisplayItem>(surfaces, "Face " + std::to_string(face));
        item->setBusinessProperty("surface id", opCode + "-" + code + "-F" + twoDigits(face));
        item->setBusinessProperty("area", fixed(1850.0 + 317.5 * face, 1) + " mm2");
        styleSurface(*item, color, 0.0);
    }
    return tool;
}

std::shared_ptr<GeometryModuleItem> addGeometryModule(const std::shared_ptr<DisplayItem>& parent,
                                                      const std::string& name,
                                                      const std::vector<std::string>& geometryNames,
                                                      const std::string& color)
{
    auto module = add<GeometryModuleItem>(parent, name);
    module->setBusinessProperty("module type", "Geometry");
    module->setBusinessProperty("source", "door_inner_lh_v07.igs");
    module->setDisplayProperty("render mode", "group");
    auto geometry = group(module, "Geometry");
    int index = 1;
    for (const auto& geometryName : geometryNames) {
        auto item = add<DisplayItem>(geometry, geometryName);
        item->setBusinessProperty("surface id", "G" + twoDigits(index));
        item->setBusinessProperty("patches", std::to_string(4 + 3 * index));
        item->setBusinessProperty("tolerance", "0.01 mm");
        styleSurface(*item, color, 0.3);
        module->addGeometryDisplayItem(item);
        ++index;
    }
    return module;
}

void buildPart(const std::shared_ptr<DisplayItem>& root, std::shared_ptr<DisplayItem>& blankOut)
{
    auto part = group(root, "Part");
    part->setBusinessProperty("part number", "5N0 831 051 C");
    part->setBusinessProperty("description", "Door inner panel LH");

    auto blank = add<ShellItem>(part, "Blank", "Blank", "DC04 1.20 mm");
    blank->setBusinessProperty("material", "DC04");
    blank->setBusinessProperty("thickness", "1.20 mm");
    blank->setBusinessProperty("yield stress", "162 MPa");
    blank->setBusinessProperty("elements", "48210");
    blank->setBusinessProperty("mesh", "adaptive, 3 levels");
    styleSurface(*blank, "#d8d8e0", 0.0);
    blank->setSelected(true);
    blankOut = blank;

    auto elementSets = group(blank, "Element sets");
    static const char* const setNames[]
        = {"Window frame", "Belt line",    "Hinge area",    "Lock area",   "Speaker pocket", "Armrest",
           "Lower edge",   "Inner radius", "Handle recess", "Mirror flag", "Seal flange",    "Drain holes"};
    int setIndex = 0;
    for (const char* name : setNames) {
        auto set = add<DisplayItem>(elementSets, name);
        set->setBusinessProperty("elements", std::to_string(1200 + 397 * setIndex));
        set->setBusinessProperty("max thinning", fixed(8.5 + 1.75 * setIndex, 1) + " %");
        set->setDisplayProperty("color", setIndex % 2 ? "#7fb3d5" : "#a9cce3");
        set->setDisplayProperty("render mode", "mesh");
        ++setIndex;
    }

    auto curves = group(blank, "Boundary curves");
    curves->setVisible(false);
    for (const std::string name : {"Outer contour", "Hole 1", "Hole 2", "Hole 3", "Hole 4"}) {
        auto curve = add<DisplayItem>(curves, name);
        curve->setBusinessProperty("length", fixed(name == "Outer contour" ? 4236.8 : 94.2, 1) + " mm");
        curve->setDisplayProperty("color", "#202020");
        curve->setDisplayProperty("line width", "2");
    }

    std::vector<std::string> partSurfaces;
    for (int i = 1; i <= 16; ++i)
        partSurfaces.push_back("Part surface " + twoDigits(i));
    addGeometryModule(part, "Part geometry", partSurfaces, "#c0c0c8");
}

std::shared_ptr<DisplayItem> addOperation(const std::shared_ptr<DisplayItem>& process, const std::string& code,
                                          const std::string& kind, const std::string& press, double stroke)
{
    auto operation = add<DisplayItem>(process, code + " " + kind);
    operation->setBusinessProperty("operation", kind);
    operation->setBusinessProperty("press", press);
    operation->setBusinessProperty("stroke", fixed(stroke, 1) + " mm");
    operation->setBusinessProperty("velocity", "1000 mm/s");
    operation->setDisplayProperty("render mode", "group");
    return operation;
}

void buildProcess(const std::shared_ptr<DisplayItem>& root, ProcessStepProvider& steps)
{
    auto process = group(root, "Process");
    process->setBusinessProperty("process type", "Transfer press line");
    process->setBusinessProperty("operations", "4");

    auto op10 = addOperation(process, "OP10", "Drawing", "Schuler 2000 t", 145.0);
    steps.appendStep(op10);
    addTool(op10, "OP10", "Upper die", "UD", "GGG70L", 8, "#e59866");
    auto punch = addTool(op10, "OP10", "Punch", "PU", "GGG70L", 8, "#82e0aa");
    punch->setSelectable(false);
    auto binder = addTool(op10, "OP10", "Binder", "BI", "GG25", 6, "#f7dc6f");
    binder->setVisible(false);
    binder->setBusinessProperty("binder force", "1800 kN");
    auto beads = group(op10, "Drawbeads");
    for (int i = 1; i <= 6; ++i) {
        auto bead = add<DisplayItem>(beads, "Drawbead " + std::to_string(i));
        bead->setBusinessProperty("restraining force", fixed(95.0 + 12.5 * i, 1) + " N/mm");
        bead->setBusinessProperty("lift force", fixed(31.0 + 4.0 * i, 1) + " N/mm");
        bead->setDisplayProperty("color", "#5d6d7e");
        bead->setDisplayProperty("line width", "3");
    }
    addGeometryModule(op10, "Tool geometry OP10", {"Die face", "Addendum", "Binder surface", "Punch opening line"},
                      "#f0b27a");

    auto op20 = addOperation(process, "OP20", "Trimming", "Schuler 800 t", 90.0);
    steps.appendStep(op20);
    addTool(op20, "OP20", "Trim steel upper", "TU", "1.2379", 6, "#bb8fce");
    addTool(op20, "OP20", "Trim steel lower", "TL", "1.2379", 6, "#a569bd");
    addTool(op20, "OP20", "Pad", "PA", "GGG70L", 5, "#76d7c4");
    auto trimLines = group(op20, "Trim lines");
    for (int i = 1; i <= 5; ++i) {
        auto line = add<DisplayItem>(trimLines, "Trim line " + std::to_string(i));
        line->setBusinessProperty("length", fixed(380.0 + 115.3 * i, 1) + " mm");
        line->setBusinessProperty("cutting angle", fixed(2.5 * i, 1) + " deg");
        line->setDisplayProperty("color", "#c0392b");
        line->setDisplayProperty("line width", "2");
    }
    addGeometryModule(op20, "Trim geometry OP20", {"Trim outline", "Scrap cutters"}, "#d98880");

    auto op30 = addOperation(process, "OP30", "Flanging", "Schuler 800 t", 75.0);
    steps.appendStep(op30);
    addTool(op30, "OP30", "Flange steel", "FS", "1.2379", 7, "#85c1e9");
    addTool(op30, "OP30", "Pad", "PA", "GGG70L", 5, "#76d7c4");
    addTool(op30, "OP30", "Post", "PO", "GGG70L", 4, "#abebc6");

    auto op40 = addOperation(process, "OP40", "Restrike", "Schuler 800 t", 40.0);
    steps.appendStep(op40);
    addTool(op40, "OP40", "Upper die", "UD", "GGG70L", 6, "#e59866");
    addTool(op40, "OP40", "Lower die", "LD", "GGG70L", 6, "#f5b041");
}

void buildResults(const std::shared_ptr<DisplayItem>& root)
{
    auto results = group(root, "Results");
    results->setSelectionAllowed(false);
    results->setBusinessProperty("state", "OP40, end of stroke");

    auto thinning = add<DisplayItem>(results, "Thinning");
    thinning->setBusinessProperty("min", "-24.8 %");
    thinning->setBusinessProperty("max", "6.1 %");
    thinning->setDisplayProperty("color map", "blue-red, 12 levels");
    thinning->setDisplayProperty("render mode", "contour");

    auto limit = group(results, "Forming limit");
    for (const std::string zone : {"Safe", "Compression", "Marginal", "Cracks", "Insufficient stretch"}) {
        auto item = add<DisplayItem>(limit, zone);
        item->setBusinessProperty("elements", std::to_string(zone == "Safe" ? 39817 : 211 * (1 + zone.size() % 5)));
        item->setDisplayProperty("color", zone == "Cracks" ? "#ff0000" : zone == "Marginal" ? "#ffd700" : "#00a000");
    }
    limit->childAt(3)->setVisible(false);

    auto points = group(results, "Measurement points");
    for (int i = 1; i <= 40; ++i) {
        const double thickness = 1.20 * (1.0 - 0.004 * ((i * 37) % 61));
        const double change = (thickness / 1.20 - 1.0) * 100.0;
        auto point = add<LabelableItem>(points, "MP " + twoDigits(i),
                                        "t = " + fixed(thickness, 2) + " mm / " + fixed(change, 1) + " %", i % 7 != 0);
        point->setBusinessProperty("node", std::to_string(10000 + 173 * i));
        point->setBusinessProperty("position",
                                   "(" + fixed(112.5 * (i % 8), 1) + ", " + fixed(95.0 * (i / 8), 1) + ", "
                                       + fixed(18.0 + std::sin(i) * 12.0, 1) + ")");
        point->setBusinessProperty("thickness", fixed(thickness, 3) + " mm");
        point->setDisplayProperty("marker", "sphere");
        point->setDisplayProperty("color", change < -15.0 ? "#ff0000" : "#000000");
        if (i % 9 == 0)
            point->setVisible(false);
    }

    auto sections = group(results, "Section cuts");
    for (const std::string cut : {"Section X = 250", "Section X = 610", "Section Y = 380"}) {
        auto section = add<DisplayItem>(sections, cut);
        section->setBusinessProperty("plane", cut.substr(8));
        section->setDisplayProperty("color", "#000080");
        section->setDisplayProperty("line width", "2");
    }
}

void buildEditor(EditorDisplayModel& editor)
{
    for (int i = 1; i <= 3; ++i) {
        auto point = editor.addEditModelPrimitive("Pick point " + std::to_string(i));
        point->setProperties({{"position", "(" + fixed(180.0 * i, 1) + ", 240.0, 35.5)"}, {"snap", "node"}});
    }
    auto guide = editor.addEditModelPrimitive("Guide line");
    guide->setProperties({{"from", "(0.0, 0.0, 0.0)"}, {"to", "(980.0, 0.0, 0.0)"}});
    guide->setSelectable(false);
    auto plane = editor.addEditModelPrimitive("Cutting plane X = 250");
    plane->setProperties({{"normal", "(1, 0, 0)"}, {"offset", "250.0 mm"}});
    plane->setIsVisible(false);
}

std::shared_ptr<DisplayItem> buildLabels()
{
    auto root = std::make_shared<DisplayItem>("Plot labels");
    for (const std::string name : {"FLD title", "Thinning legend", "Max thinning", "Min thinning", "Time stamp"}) {
        auto label = add<LabelableItem>(root, name, name + " label", true);
        label->setBusinessProperty("plot", name == "FLD title" ? "Forming limit diagram" : "Thinning");
        label->setDisplayProperty("font", "Sans 9");
    }
    return root;
}

// A geometry module of the generated model: its "Geometry" group holds
// \a leaves surfaces, which the module lists.
std::shared_ptr<GeometryModuleItem> makeSyntheticModule(std::size_t serial, std::size_t leaves)
{
    auto module = std::make_shared<GeometryModuleItem>("Module " + std::to_string(serial));
    auto geometry = std::make_shared<DisplayItem>("Geometry");
    std::vector<std::shared_ptr<DisplayItem>> surfaces;
    surfaces.reserve(leaves);
    for (std::size_t leaf = 1; leaf <= leaves; ++leaf) {
        auto surface = std::make_shared<DisplayItem>("Surface " + std::to_string(serial) + "." + std::to_string(leaf));
        surface->setDisplayProperty("render mode", "shaded");
        module->addGeometryDisplayItem(surface);
        surfaces.push_back(std::move(surface));
    }
    geometry->appendChildren(surfaces);
    module->appendChild(geometry);
    return module;
}

} // namespace

std::shared_ptr<SceneViewModel> buildSampleViewModel()
{
    auto viewModel = std::make_shared<SceneViewModel>();
    auto root = std::make_shared<DisplayItem>("Forming simulation");
    root->setBusinessProperty("project", "Door inner panel LH");
    root->setBusinessProperty("solver", "explicit, 8 threads");
    root->setBusinessProperty("unit system", "mm, t, s, N");
    root->setDisplayProperty("render mode", "group");

    std::shared_ptr<DisplayItem> blank;
    buildPart(root, blank);
    auto steps = std::make_shared<ProcessStepProvider>();
    buildProcess(root, *steps);
    buildResults(root);
    auto axes = add<DisplayItem>(root, "Coordinate system");
    axes->setSelectable(false);
    axes->setDisplayProperty("render mode", "axes");

    SceneDisplayModel& model = viewModel->displayModel();
    model.setRootDisplayItem(root);
    model.setActiveContext(std::make_shared<SceneContext>(ContextKind::ProcessStep, "OP20 Trimming"));
    model.setKind6Provider(steps);
    model.setKind6Index(1);
    model.setKind7Source(std::make_shared<ToolKeySource>("OP10-PU"));
    model.setKind7Lookup(std::make_shared<ToolKeyLookup>(root, "tool id"));
    model.setDefaultEntryOwner(std::make_shared<FixedEntryOwner>(blank));

    viewModel->labelDisplayModel().setRootDisplayItem(buildLabels());
    buildEditor(viewModel->ensureEditorDisplayModel());
    return viewModel;
}

std::shared_ptr<SceneViewModel> buildSyntheticViewModel(std::size_t itemCount, unsigned seed,
                                                        const std::function<void(std::size_t, std::size_t)>& progress)
{
    auto viewModel = std::make_shared<SceneViewModel>();
    // mt19937 output is fixed by the standard; the draws below use only it, so a
    // seed gives the same model with every standard library.
    std::mt19937 random(seed);
    const auto draw = [&random](unsigned bound) { return static_cast<unsigned>(random() % bound); };

    auto root = std::make_shared<DisplayItem>("Synthetic model");
    root->setBusinessProperty("seed", std::to_string(seed));
    root->setDisplayProperty("render mode", "group");
    std::size_t count = 1;
    std::size_t serial = 0;

    const auto decorate = [&](DisplayItem& item) {
        item.setBusinessProperty("id", std::to_string(serial));
        item.setBusinessProperty("weight", fixed(draw(10000) / 100.0, 2));
        item.setDisplayProperty("color", "#" + std::to_string(100000 + draw(900000)));
        if (draw(10) == 0)
            item.setVisible(false);
    };

    // The frontier holds plain pointers: every item in it is owned by its
    // parent already, and at the end it holds nearly all leaves.
    std::deque<DisplayItem*> frontier{root.get()};
    std::vector<std::shared_ptr<DisplayItem>> children;
    const std::size_t reportStep = std::max<std::size_t>(itemCount / 100, 1);
    std::size_t nextReport = reportStep;
    while (count < itemCount && !frontier.empty()) {
        if (progress && count >= nextReport) {
            progress(count, itemCount);
            nextReport = count + reportStep;
        }
        DisplayItem* const parent = frontier.front();
        frontier.pop_front();
        const unsigned fanOut = 5 + draw(11);
        children.clear();
        for (unsigned i = 0; i < fanOut && count < itemCount; ++i) {
            ++serial;
            const unsigned roll = draw(100);
            const std::size_t remaining = itemCount - count;
            std::shared_ptr<DisplayItem> item;
            if (roll < 5 && remaining >= 3) {
                const std::size_t leaves = std::min<std::size_t>(1 + draw(6), remaining - 2);
                item = makeSyntheticModule(serial, leaves);
                count += 2 + leaves;
            } else if (roll < 20) {
                item = std::make_shared<ShellItem>("Shell " + std::to_string(serial), "Tool",
                                                   "Tool " + std::to_string(serial));
                ++count;
            } else if (roll < 30) {
                item = std::make_shared<LabelableItem>("Label " + std::to_string(serial),
                                                       "value " + std::to_string(draw(1000)), draw(2) == 0);
                ++count;
            } else {
                item = std::make_shared<DisplayItem>("Item " + std::to_string(serial));
                ++count;
            }
            decorate(*item);
            children.push_back(std::move(item));
        }
        // All at once: the parent's list of children is allocated once, at its size.
        parent->appendChildren(children);
        for (const auto& child : children)
            frontier.push_back(child.get());
    }

    SceneDisplayModel& model = viewModel->displayModel();
    model.setRootDisplayItem(root);
    model.setActiveContext(std::make_shared<SceneContext>(0, "Synthetic model"));
    model.setDefaultEntryOwner(std::make_shared<FixedEntryOwner>(root->childAt(0)));
    if (progress)
        progress(itemCount, itemCount);
    return viewModel;
}

} // namespace Brennvik
