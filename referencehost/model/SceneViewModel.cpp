#include "SceneViewModel.h"

#include "DisplayItem.h"
#include "DisplayItemCloner.h"
#include "HostCallLog.h"
#include "SceneDisplayModel.h"

#include <hostcontract/EditorDisplayModel.h>

namespace Brennvik {

SceneViewModel::SceneViewModel()
    : m_displayModel(std::make_unique<SceneDisplayModel>())
    , m_labelDisplayModel(std::make_unique<SceneDisplayModel>())
{
}

SceneViewModel::~SceneViewModel() = default;

std::shared_ptr<ViewModelInterface> SceneViewModel::cloneViewModel(bool shareGeometry) const
{
    return cloneSceneViewModel(shareGeometry);
}

DisplayModel* SceneViewModel::getDisplayModel() const
{
    return m_displayModel.get();
}

EditorDisplayModel* SceneViewModel::getEditorDisplayModel() const
{
    return m_editorDisplayModel.get();
}

ViewBase* SceneViewModel::getView() const
{
    HostCallLog::note("getView");
    return m_view;
}

DisplayModel* SceneViewModel::getLabelDisplayModel() const
{
    HostCallLog::note("getLabelDisplayModel");
    return m_labelDisplayModel.get();
}

std::shared_ptr<SceneViewModel> SceneViewModel::cloneSceneViewModel(bool /*shareGeometry*/) const
{
    auto copy = std::make_shared<SceneViewModel>();

    DisplayItemCloner cloner(m_cloneDefects);
    copy->m_displayModel->setRootDisplayItem(cloner.cloneTree(m_displayModel->rootDisplayItem(), true));
    copy->m_labelDisplayModel->setRootDisplayItem(cloner.cloneTree(m_labelDisplayModel->rootDisplayItem(), false));
    // Geometry lists may refer across trees; re-point them once all trees exist.
    cloner.remapReferences();
    copy->m_displayModel->copyEntryLookupsFrom(*m_displayModel, cloner.cloneMap());
    copy->m_labelDisplayModel->copyEntryLookupsFrom(*m_labelDisplayModel, cloner.cloneMap());

    if (m_editorDisplayModel) {
        EditorDisplayModel& editor = copy->ensureEditorDisplayModel();
        for (const auto& primitive : m_editorDisplayModel->getAllEditModelPrimitives()) {
            auto primitiveCopy = editor.addEditModelPrimitive(primitive->getDisplayName());
            primitiveCopy->setSelectable(primitive->isSelectable());
            primitiveCopy->setIsSelected(primitive->isSelected());
            primitiveCopy->setIsVisible(primitive->isVisible());
            PropertyList properties;
            primitive->getProperties(properties);
            primitiveCopy->setProperties(std::move(properties));
        }
    }

    ++m_cloneCount;
    m_lastCloneUnappliedDefects = cloner.unappliedDefects();
    return copy;
}

SceneDisplayModel& SceneViewModel::displayModel() const
{
    return *m_displayModel;
}

SceneDisplayModel& SceneViewModel::labelDisplayModel() const
{
    return *m_labelDisplayModel;
}

EditorDisplayModel* SceneViewModel::editorDisplayModel() const
{
    return m_editorDisplayModel.get();
}

EditorDisplayModel& SceneViewModel::ensureEditorDisplayModel()
{
    if (!m_editorDisplayModel)
        m_editorDisplayModel = std::make_unique<EditorDisplayModel>();
    return *m_editorDisplayModel;
}

void SceneViewModel::removeEditorDisplayModel()
{
    m_editorDisplayModel.reset();
}

void SceneViewModel::setView(ViewBase* view)
{
    m_view = view;
}

void SceneViewModel::setCloneDefects(std::vector<CloneDefect> defects)
{
    m_cloneDefects = std::move(defects);
}

const std::vector<CloneDefect>& SceneViewModel::cloneDefects() const
{
    return m_cloneDefects;
}

int SceneViewModel::cloneCount() const
{
    return m_cloneCount;
}

const std::vector<CloneDefect>& SceneViewModel::lastCloneUnappliedDefects() const
{
    return m_lastCloneUnappliedDefects;
}

} // namespace Brennvik
