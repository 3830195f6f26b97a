#include <hostcontract/EditorDisplayModel.h>

#include <algorithm>
#include <stdexcept>

namespace Brennvik {

EditorDisplayModel::EditorDisplayModel() = default;

EditorDisplayModel::~EditorDisplayModel() = default;

const std::vector<std::shared_ptr<EditorDisplayItem>>& EditorDisplayModel::getAllEditModelPrimitives() const
{
    return m_primitives;
}

std::shared_ptr<EditorDisplayItem> EditorDisplayModel::addEditModelPrimitive(std::string displayName)
{
    auto primitive = std::make_shared<EditorDisplayItem>(std::move(displayName), this);
    m_primitives.push_back(primitive);
    return primitive;
}

void EditorDisplayModel::appendEditModelPrimitive(std::shared_ptr<EditorDisplayItem> primitive)
{
    if (!primitive)
        throw std::invalid_argument("EditorDisplayModel::appendEditModelPrimitive: empty primitive");
    m_primitives.push_back(std::move(primitive));
}

bool EditorDisplayModel::removeEditModelPrimitive(const std::shared_ptr<EditorDisplayItem>& primitive)
{
    const auto it = std::find(m_primitives.begin(), m_primitives.end(), primitive);
    if (!primitive || it == m_primitives.end())
        return false;
    m_primitives.erase(it);
    return true;
}

void EditorDisplayModel::clear()
{
    m_primitives.clear();
}

void EditorDisplayModel::updateViews()
{
    ++m_viewUpdateCount;
    // Copy: the listener may replace itself.
    const auto callback = m_viewsUpdated;
    if (callback)
        callback();
}

int EditorDisplayModel::viewUpdateCount() const
{
    return m_viewUpdateCount;
}

void EditorDisplayModel::setViewsUpdatedCallback(std::function<void()> callback)
{
    m_viewsUpdated = std::move(callback);
}

} // namespace Brennvik
