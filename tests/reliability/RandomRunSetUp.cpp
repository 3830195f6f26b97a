#include "RandomRun.h"

#include <debugmenucontent/displaymodel2d/DisplayModel2DDialog.h>
#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/EditorDisplayModel.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/model/ShellItem.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include "Plot2DHost.h"
#include "TestTree.h"

#include <QListWidget>
#include <QTest>
#include <QTreeWidget>

namespace Brennvik::Test {

std::shared_ptr<DisplayItem> RandomRun::makeRandomItem(int depth)
{
    std::shared_ptr<DisplayItem> item;
    const int kind = pick(10);
    if (kind == 0) {
        item = std::make_shared<ShellItem>(freshName(), "Tool", "t" + std::to_string(m_nameCounter));
    } else if (kind == 1) {
        item = std::make_shared<LabelableItem>(freshName(), "label", chance(50));
    } else if (kind == 2 && depth > 0) {
        // A module with its "Geometry" group, whose items it lists again.
        auto module = std::make_shared<GeometryModuleItem>(freshName());
        auto group = std::make_shared<DisplayItem>("Geometry");
        module->appendChild(group);
        const int n = 1 + pick(2);
        for (int i = 0; i < n; ++i) {
            auto g = std::make_shared<DisplayItem>(freshName());
            group->appendChild(g);
            module->addGeometryDisplayItem(g);
        }
        item = module;
    } else if (kind == 3) {
        item = std::make_shared<DisplayItem>("Geometry");
    } else if (kind == 4 && m_brokenTreesOn) {
        auto broken = std::make_shared<BrokenItem>(freshName());
        broken->setFlaws(randomFlaws());
        item = broken;
    } else {
        item = std::make_shared<DisplayItem>(freshName());
    }
    if (chance(20))
        item->setVisible(false);
    if (chance(15))
        item->setSelectionAllowed(false);
    if (chance(15))
        item->setSelectable(false);
    if (chance(40))
        item->setBusinessProperty("material", chance(50) ? "DC04" : "AA6016");
    if (chance(30))
        item->setDisplayProperty("colour", chance(50) ? "red" : "blue");
    const int children = depth > 0 ? pick(4) : 0;
    for (int i = 0; i < children; ++i)
        item->appendChild(makeRandomItem(depth - 1));
    return item;
}

// None to three: empty references, the item itself, its parent or grandparent.
std::vector<BrokenItem::Flaw> RandomRun::randomFlaws()
{
    std::vector<BrokenItem::Flaw> flaws(std::size_t(pick(4)));
    for (auto& flaw : flaws) {
        flaw.position = std::size_t(pick(4));
        flaw.ancestorLevel = chance(50) ? -1 : pick(3);
    }
    return flaws;
}

std::shared_ptr<SceneViewModel> RandomRun::makeRandomViewModel()
{
    auto rootItem = std::make_shared<DisplayItem>("Root");
    const int children = 2 + pick(4);
    for (int i = 0; i < children; ++i)
        rootItem->appendChild(makeRandomItem(3));
    auto viewModel = makeViewModel(rootItem);
    if (chance(40)) {
        EditorDisplayModel& editor = viewModel->ensureEditorDisplayModel();
        const int n = 1 + pick(3);
        for (int i = 0; i < n; ++i) {
            auto primitive = editor.addEditModelPrimitive("edit " + freshName());
            primitive->setProperties({{"handle", std::to_string(i)}});
        }
    }
    return viewModel;
}

void RandomRun::setUp()
{
    setUpDialog();
    setUp2D();
}

void RandomRun::setUpDialog()
{
    m_viewModel = makeRandomViewModel();
    m_dialog = new DisplayModelDialog(nullptr);
    m_dialog->setDrawAreaPresenter(&m_presenter);
    m_dialog->resize(900, 700);
    watch(m_dialog->m_displayItemTreeWidget, m_testers);
    watch(m_dialog->m_businessObjectProperties, m_testers);
    watch(m_dialog->m_displayItemProperties, m_testers);
    m_dialog->show();
    (void)QTest::qWaitForWindowExposed(m_dialog);
    m_dialog->setViewModel(m_viewModel);
    rebuildExpected(false);
    // A row change made outside clone mode prints what it makes current.
    QObject::connect(m_dialog->m_displayItemTreeWidget, &QTreeWidget::currentItemChanged, m_dialog, [this]() {
        if (!currentMayBounce())
            m_panesUnreliable = false;
    });
}

// The 2D side: plots at distinct places, labels at distinct anchors.
void RandomRun::setUp2D()
{
    m_plotHost = std::make_unique<Plot2DHost>();
    m_plotHost->show();
    addPlots();
    addLabels();
    m_dialog2D = new DisplayModel2DDialog(m_plotHost->presenter(), nullptr);
    m_dialog2D->setViewModel(m_plotHost->viewModel());
    watch(m_dialog2D->m_displayItemTreeWidget, m_testers);
    watch(m_dialog2D->m_businessObjectProperties, m_testers);
    watch(m_dialog2D->m_displayItemProperties, m_testers);
    watch(m_dialog2D->m_plotListWdg, m_testers);
    m_dialog2D->move(0, 0);
    m_dialog2D->show();
    (void)QTest::qWaitForWindowExposed(m_dialog2D);
    // The show lists the plots and selects the first row.
    m_selectedModel2D = nullptr;
    const int row = m_dialog2D->m_plotListWdg->currentRow();
    if (row >= 0)
        m_selectedModel2D = m_dialog2D->getDisplayModelOfSelectedPlot();
    rebuildExpected2D();
}

void RandomRun::addPlots()
{
    const int plots = 2 + pick(3);
    for (int i = 0; i < plots; ++i) {
        auto plotRoot = std::make_shared<DisplayItem2D>("plot " + std::to_string(i));
        for (int c = 0; c < 1 + pick(3); ++c) {
            auto child = std::make_shared<DisplayItem2D>("curve " + freshName());
            if (chance(50))
                child->appendChild(std::make_shared<DisplayItem2D>("point " + freshName()));
            plotRoot->appendChild(child);
        }
        const QPoint pos(10 + 130 * (i % 3) + pick(5), 10 + 90 * (i / 3) + pick(5));
        m_scene.plots.push_back(m_plotHost->addPlot(pos, plotRoot));
        m_scene.plotPositions.push_back(pos);
    }
}

void RandomRun::addLabels()
{
    const int labels = 1 + pick(2);
    for (int i = 0; i < labels; ++i) {
        const QPoint point(300 + 40 * i + pick(10), 400 + pick(50));
        auto labelRoot = std::make_shared<DisplayItem2D>("label plot " + std::to_string(i));
        labelRoot->appendChild(std::make_shared<DisplayItem2D>("legend " + freshName()));
        // The view's projection puts world (x, y) at pixel (x, -y).
        auto label = m_plotHost->addLabel("label " + std::to_string(i),
                                          Vector<float, 3>(float(point.x()), float(-point.y()), 0.0f), labelRoot);
        m_scene.labels.push_back(label);
        m_scene.labelPoints.push_back(point);
        m_scene.labelModels.push_back(Plot2DHost::modelOf(*label));
    }
}

// The host lets go of the items it held out of the tree. Rows may still show
// them (a geometry list names them) and the call that dropped them may still
// be changing them, so they stay alive until the next step, as removed items do.
void RandomRun::dropDetached()
{
    m_keptAlive.insert(m_keptAlive.end(), m_detached.begin(), m_detached.end());
    m_detached.clear();
}

void RandomRun::replaceViewModel(std::shared_ptr<SceneViewModel> next)
{
    if (chance(50))
        m_spareViewModel = m_viewModel;
    // The old one stays until the next step: the call that replaced it may still be running on it.
    m_keptAlive.push_back(m_viewModel);
    m_viewModel = std::move(next);
    dropDetached();
    m_dialog->setViewModel(m_viewModel);
    if (cloneMode()) {
        ++m_clonesMade;
        ++m_cloneRebuilds;
    }
    rebuildExpected(false);
}

} // namespace Brennvik::Test
