#pragma once

#include "DisplayItem.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace Brennvik {

/// The triangles of one mesh as the 3D view draws them, kept compact: a
/// mesh of a real scene may have millions of vertices, and several nodes may
/// show the same mesh (they share one MeshTriangles).
struct MeshTriangles
{
    /// x, y, z of each vertex in the mesh's own coordinates.
    std::vector<float> positions;
    /// Three vertex numbers per triangle; each less than positions.size() / 3.
    std::vector<std::uint32_t> indices;
};

/// An item made from an object of an imported 3D scene that is not a node: a
/// mesh a node shows, a camera or a light. What the scene file says about
/// it is in its ordinary properties; a mesh item also keeps its triangles and
/// where its node puts them, for drawing. A model file keeps such an item as
/// a plain display item with its properties (the triangles stay in the scene
/// file).
class BRENNVIK_HOST_EXPORT SceneObjectItem : public DisplayItem
{
public:
    enum class Kind { Mesh, Camera, Light };

    SceneObjectItem(Kind kind, std::string displayName);
    ~SceneObjectItem() override;

    Kind kind() const;

    /// The mesh's triangles; null for cameras and lights and for a mesh
    /// without triangles (points and lines only).
    const std::shared_ptr<const MeshTriangles>& triangles() const;
    void setTriangles(std::shared_ptr<const MeshTriangles> triangles);

    /// The transformation from the mesh's coordinates to the scene's: 16
    /// numbers row by row, the translation in the last column. Identity
    /// until set.
    const std::array<float, 16>& sceneTransformation() const;
    void setSceneTransformation(const std::array<float, 16>& transformation);

    /// "MeshItem", "CameraItem" or "LightItem".
    std::string typeName() const override;
    /// Shares the triangles with this item.
    std::shared_ptr<DisplayItem> copyWithoutChildren() const override;

private:
    std::shared_ptr<const MeshTriangles> m_triangles;
    std::array<float, 16> m_sceneTransformation;
    Kind m_kind;
};

} // namespace Brennvik
