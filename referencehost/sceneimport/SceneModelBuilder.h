#pragma once

#include <referencehost/model/SceneObjectItem.h>

#include <assimp/scene.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Brennvik {

/// Makes the display items of one imported scene (see SceneImport for the
/// tree it makes). The scene's node tree is walked with an explicit stack:
/// a skeleton may be thousands of levels deep.
class SceneModelBuilder
{
public:
    /// Told the nodes made so far and the scene's number of nodes.
    using Progress = std::function<void(std::size_t done, std::size_t total)>;

    explicit SceneModelBuilder(const aiScene& scene);

    /// The root item of the scene's tree; null when the scene has no root node.
    std::shared_ptr<DisplayItem> build(const Progress& progress = {});

private:
    /// A node still to make, with the item it goes under.
    struct PendingNode
    {
        const aiNode* node;
        DisplayItem* parent;
        /// The node's entry in m_indexPaths.
        std::size_t indexPath;
        aiMatrix4x4 toScene;
    };

    /// "/0/2" for the third child of the root's first child; "/" for the root.
    std::string indexPathText(std::size_t indexPath) const;

    std::size_t countNodes() const;
    std::shared_ptr<DisplayItem> makeNodeItem(const PendingNode& pending);
    void addMeshItems(DisplayItem& nodeItem, const aiNode& node, const aiMatrix4x4& toScene);
    std::shared_ptr<SceneObjectItem> makeMeshItem(unsigned meshIndex, const aiMatrix4x4& toScene);
    /// The triangles of the mesh numbered \a meshIndex, made on first use.
    std::shared_ptr<const MeshTriangles> triangles(unsigned meshIndex);
    /// Pushes the children of \a pending's node, last first, skipping broken ones.
    void pushChildren(const PendingNode& pending, DisplayItem& nodeItem, std::vector<PendingNode>& stack);
    void addCamerasAndLights(DisplayItem& root);
    /// A camera or light named as the node \a nodeName that carries it (\a unnamed without a name).
    void addSceneObject(DisplayItem& root, SceneObjectItem::Kind kind, const aiString& nodeName,
                        const std::string& unnamed, PropertyList properties);
    /// Hangs \a item under the node named \a nodeName, or under \a root with a note.
    void attachToNamedNode(DisplayItem& root, const std::string& nodeName, std::shared_ptr<SceneObjectItem> item);

    const aiScene& m_scene;
    std::vector<std::shared_ptr<const MeshTriangles>> m_triangles;
    std::vector<bool> m_trianglesMade;
    std::unordered_set<const aiNode*> m_seen;
    /// Where each node met is among its parent's children: the entry of the
    /// parent and the index; the root's is first. Texts are made only for
    /// unnamed nodes: in a deep skeleton the paths of all nodes together
    /// would grow with the square of its depth.
    std::vector<std::pair<std::size_t, unsigned>> m_indexPaths;
    /// The names cameras and lights refer to, and the first node item of each.
    std::unordered_map<std::string, DisplayItem*> m_namedNodes;
};

} // namespace Brennvik
