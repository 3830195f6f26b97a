#include "SceneObjectItem.h"

namespace Brennvik {

namespace {

constexpr std::array<float, 16> identity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

} // namespace

SceneObjectItem::SceneObjectItem(Kind kind, std::string displayName)
    : DisplayItem(std::move(displayName))
    , m_sceneTransformation(identity)
    , m_kind(kind)
{
}

SceneObjectItem::~SceneObjectItem() = default;

SceneObjectItem::Kind SceneObjectItem::kind() const
{
    return m_kind;
}

const std::shared_ptr<const MeshTriangles>& SceneObjectItem::triangles() const
{
    return m_triangles;
}

void SceneObjectItem::setTriangles(std::shared_ptr<const MeshTriangles> triangles)
{
    m_triangles = std::move(triangles);
}

const std::array<float, 16>& SceneObjectItem::sceneTransformation() const
{
    return m_sceneTransformation;
}

void SceneObjectItem::setSceneTransformation(const std::array<float, 16>& transformation)
{
    m_sceneTransformation = transformation;
}

std::string SceneObjectItem::typeName() const
{
    switch (m_kind) {
    case Kind::Mesh:
        return "MeshItem";
    case Kind::Camera:
        return "CameraItem";
    case Kind::Light:
        return "LightItem";
    }
    return "DisplayItem";
}

std::shared_ptr<DisplayItem> SceneObjectItem::copyWithoutChildren() const
{
    auto copy = std::make_shared<SceneObjectItem>(m_kind, getDisplayName());
    copy->copyStateFrom(*this);
    copy->m_triangles = m_triangles;
    copy->m_sceneTransformation = m_sceneTransformation;
    return copy;
}

} // namespace Brennvik
