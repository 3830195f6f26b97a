#include "SceneDisplayModel.h"

#include "DisplayItem.h"
#include "FixedEntryOwner.h"
#include "HostCallLog.h"
#include "ProcessStepProvider.h"
#include "SceneContext.h"
#include "ToolKeyLookup.h"
#include "ToolKeySource.h"

#include <stdexcept>

namespace Brennvik {

SceneDisplayModel::SceneDisplayModel() = default;

SceneDisplayModel::~SceneDisplayModel()
{
    if (m_root && m_root->m_displayModel == this)
        m_root->setDisplayModelRecursively(nullptr);
}

DefaultEntryOwner* SceneDisplayModel::getDefaultEntryOwner() const
{
    return m_defaultEntryOwner.get();
}

Kind7Source* SceneDisplayModel::getKind7Source() const
{
    return m_kind7Source.get();
}

Kind6Provider* SceneDisplayModel::getKind6Provider() const
{
    return m_kind6Provider.get();
}

std::shared_ptr<DisplayItemInterface> SceneDisplayModel::getRootDisplayItem() const
{
    HostCallLog::note("getRootDisplayItem");
    return m_root;
}

std::shared_ptr<Kind7Lookup> SceneDisplayModel::getKind7Lookup() const
{
    return m_kind7Lookup;
}

void SceneDisplayModel::doDisplayUpdate(DisplayUpdateKind kind)
{
    ++m_displayUpdateCounts[kind];
    m_lastDisplayUpdateKind = kind;
    runUpdateCallback();
}

void SceneDisplayModel::doVisibilityUpdate()
{
    ++m_visibilityUpdateCount;
    runUpdateCallback();
}

std::shared_ptr<ActiveContext> SceneDisplayModel::getActiveContext() const
{
    return m_activeContext;
}

Kind6Index SceneDisplayModel::getKind6Index() const
{
    return m_kind6Index;
}

void SceneDisplayModel::setRootDisplayItem(std::shared_ptr<DisplayItem> root)
{
    if (root == m_root)
        return;
    if (root && root->m_parent)
        throw std::invalid_argument("SceneDisplayModel::setRootDisplayItem: the root has a parent");
    if (root && root->m_displayModel && root->m_displayModel != this)
        throw std::invalid_argument("SceneDisplayModel::setRootDisplayItem: the root belongs to another model");
    if (m_root && m_root->m_displayModel == this)
        m_root->setDisplayModelRecursively(nullptr);
    m_root = std::move(root);
    if (m_root)
        m_root->setDisplayModelRecursively(this);
}

std::shared_ptr<DisplayItem> SceneDisplayModel::rootDisplayItem() const
{
    return m_root;
}

void SceneDisplayModel::setActiveContext(std::shared_ptr<ActiveContext> context)
{
    m_activeContext = std::move(context);
}

void SceneDisplayModel::setKind6Provider(std::shared_ptr<Kind6Provider> provider)
{
    m_kind6Provider = std::move(provider);
}

void SceneDisplayModel::setKind6Index(Kind6Index index)
{
    m_kind6Index = index;
}

void SceneDisplayModel::setKind7Source(std::shared_ptr<Kind7Source> source)
{
    m_kind7Source = std::move(source);
}

void SceneDisplayModel::setKind7Lookup(std::shared_ptr<Kind7Lookup> lookup)
{
    m_kind7Lookup = std::move(lookup);
}

void SceneDisplayModel::setDefaultEntryOwner(std::shared_ptr<DefaultEntryOwner> owner)
{
    m_defaultEntryOwner = std::move(owner);
}

void SceneDisplayModel::copyEntryLookupsFrom(const SceneDisplayModel& other, const DisplayItemCloneMap& map)
{
    if (const auto context = std::dynamic_pointer_cast<SceneContext>(other.m_activeContext))
        m_activeContext = std::make_shared<SceneContext>(context->getContextKind(), context->name());
    else
        m_activeContext = other.m_activeContext;

    if (const auto provider = std::dynamic_pointer_cast<ProcessStepProvider>(other.m_kind6Provider))
        m_kind6Provider = provider->remapped(map);
    else
        m_kind6Provider = other.m_kind6Provider;
    m_kind6Index = other.m_kind6Index;

    if (const auto source = std::dynamic_pointer_cast<ToolKeySource>(other.m_kind7Source))
        m_kind7Source = std::make_shared<ToolKeySource>(source->getKey());
    else
        m_kind7Source = other.m_kind7Source;

    if (const auto lookup = std::dynamic_pointer_cast<ToolKeyLookup>(other.m_kind7Lookup))
        m_kind7Lookup = lookup->remapped(map);
    else
        m_kind7Lookup = other.m_kind7Lookup;

    if (const auto owner = std::dynamic_pointer_cast<FixedEntryOwner>(other.m_defaultEntryOwner))
        m_defaultEntryOwner = owner->remapped(map);
    else
        m_defaultEntryOwner = other.m_defaultEntryOwner;
}

int SceneDisplayModel::displayUpdateCount(DisplayUpdateKind kind) const
{
    const auto it = m_displayUpdateCounts.find(kind);
    return it != m_displayUpdateCounts.end() ? it->second : 0;
}

int SceneDisplayModel::totalDisplayUpdateCount() const
{
    int total = 0;
    for (const auto& entry : m_displayUpdateCounts)
        total += entry.second;
    return total;
}

int SceneDisplayModel::visibilityUpdateCount() const
{
    return m_visibilityUpdateCount;
}

std::optional<DisplayUpdateKind> SceneDisplayModel::lastDisplayUpdateKind() const
{
    return m_lastDisplayUpdateKind;
}

void SceneDisplayModel::resetUpdateCounts()
{
    m_displayUpdateCounts.clear();
    m_lastDisplayUpdateKind.reset();
    m_visibilityUpdateCount = 0;
}

void SceneDisplayModel::setUpdateCallback(std::function<void()> callback)
{
    m_updateCallback = std::move(callback);
}

void SceneDisplayModel::runUpdateCallback()
{
    // A copy: the callback may replace or clear itself.
    const auto callback = m_updateCallback;
    if (callback)
        callback();
}

} // namespace Brennvik
