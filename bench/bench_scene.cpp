// A real scene: importing Assimp's IFC test house, and building the display
// model dialog's tree of many copies of it under one root against the floor.

#include "BenchSupport.h"

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/sceneimport/SceneImport.h>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include <stdexcept>

namespace Brennvik::Bench {

namespace {

const QString sceneFile = QStringLiteral(BRENNVIK_ASSIMP_TESTMODELS "/IFC/AC14-FZK-Haus.ifc");

std::shared_ptr<SceneViewModel> importScene()
{
    QString error;
    std::shared_ptr<SceneViewModel> model = SceneImport::load(sceneFile, &error);
    if (!model)
        throw std::runtime_error(error.toStdString());
    return model;
}

/// \a copies deep copies of the scene under one root.
std::shared_ptr<SceneViewModel> copiesOfScene(int copies)
{
    const std::shared_ptr<SceneViewModel> scene = importScene();
    auto root = std::make_shared<DisplayItem>("Copies");
    for (int i = 0; i < copies; ++i)
        root->appendChild(scene->cloneSceneViewModel(false)->displayModel().rootDisplayItem());
    auto model = std::make_shared<SceneViewModel>();
    model->displayModel().setRootDisplayItem(root);
    return model;
}

long itemCount(const SceneViewModel& model)
{
    return static_cast<long>(model.displayModel().rootDisplayItem()->getNumberOfDisplayItems());
}

void sceneImport(benchmark::State& state, long n)
{
    Recorder recorder;
    for (auto _ : state) {
        PeakMemory memory;
        memory.reset();
        QElapsedTimer timer;
        timer.start();
        const std::shared_ptr<SceneViewModel> model = importScene();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
        recorder.add(memory);
    }
    recorder.finish(state, n);
}

} // namespace

void registerScene(const Config&)
{
    // 200 houses of 510 items each: about 100,000 items of a real scene's shape.
    constexpr int copies = 200;
    const long oneScene = itemCount(*importScene());
    registerCase(
        "SceneImport", "Library", oneScene, [oneScene](benchmark::State& state) { sceneImport(state, oneScene); }, 5);
    const long n = oneScene * copies + 1;
    registerCase(
        "SceneTreeBuild", "Library", n,
        [n](benchmark::State& state) { measureTreeBuild(state, copiesOfScene(copies), n); }, 3);
    registerCase(
        "SceneTreeBuild", "FloorSameRows", n,
        [n](benchmark::State& state) {
            measureFloorTreeBuild(state, copiesOfScene(copies), n, &fillSameRowsFloorTree);
        },
        3);
}

} // namespace Brennvik::Bench
