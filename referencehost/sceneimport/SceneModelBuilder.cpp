#include "SceneModelBuilder.h"

#include "SceneText.h"

#include <array>

namespace Brennvik {

namespace {

std::array<float, 16> toFloats(const aiMatrix4x4& matrix)
{
    std::array<float, 16> numbers{};
    for (unsigned row = 0; row < 4; ++row) {
        for (unsigned column = 0; column < 4; ++column)
            numbers[row * 4 + column] = static_cast<float>(matrix[row][column]);
    }
    return numbers;
}

/// Appends \a reason to the item's "skipped" display property.
void noteSkipped(DisplayItem& item, const std::string& reason)
{
    const std::optional<std::string> earlier = item.displayProperty("skipped");
    item.setDisplayProperty("skipped", earlier ? *earlier + "; " + reason : reason);
}

} // namespace

std::string SceneModelBuilder::indexPathText(std::size_t indexPath) const
{
    std::vector<unsigned> indexes;
    for (; indexPath != 0; indexPath = m_indexPaths[indexPath].first)
        indexes.push_back(m_indexPaths[indexPath].second);
    if (indexes.empty())
        return "/";
    std::string text;
    for (auto it = indexes.rbegin(); it != indexes.rend(); ++it)
        text += "/" + std::to_string(*it);
    return text;
}

SceneModelBuilder::SceneModelBuilder(const aiScene& scene)
    : m_scene(scene)
    , m_triangles(scene.mMeshes ? scene.mNumMeshes : 0)
    , m_trianglesMade(m_triangles.size(), false)
{
    for (unsigned i = 0; m_scene.mCameras && i < m_scene.mNumCameras; ++i) {
        if (m_scene.mCameras[i])
            m_namedNodes.emplace(SceneText::fromAiString(m_scene.mCameras[i]->mName), nullptr);
    }
    for (unsigned i = 0; m_scene.mLights && i < m_scene.mNumLights; ++i) {
        if (m_scene.mLights[i])
            m_namedNodes.emplace(SceneText::fromAiString(m_scene.mLights[i]->mName), nullptr);
    }
}

std::shared_ptr<DisplayItem> SceneModelBuilder::build(const Progress& progress)
{
    if (!m_scene.mRootNode)
        return nullptr;
    const std::size_t total = progress ? countNodes() : 0;
    const std::size_t reportEvery = std::max<std::size_t>(1, total / 100);
    std::size_t made = 0;

    std::shared_ptr<DisplayItem> root;
    m_indexPaths.assign(1, {0, 0});
    std::vector<PendingNode> stack{{m_scene.mRootNode, nullptr, 0, m_scene.mRootNode->mTransformation}};
    m_seen.insert(m_scene.mRootNode);
    while (!stack.empty()) {
        const PendingNode pending = std::move(stack.back());
        stack.pop_back();
        std::shared_ptr<DisplayItem> item = makeNodeItem(pending);
        if (pending.parent)
            pending.parent->appendChild(item);
        else
            root = item;
        addMeshItems(*item, *pending.node, pending.toScene);
        pushChildren(pending, *item, stack);
        if (progress && (++made % reportEvery == 0 || made == total))
            progress(made, total);
    }
    addCamerasAndLights(*root);
    return root;
}

std::size_t SceneModelBuilder::countNodes() const
{
    std::size_t count = 0;
    std::unordered_set<const aiNode*> seen{m_scene.mRootNode};
    std::vector<const aiNode*> stack{m_scene.mRootNode};
    while (!stack.empty()) {
        const aiNode* node = stack.back();
        stack.pop_back();
        ++count;
        for (unsigned i = 0; node->mChildren && i < node->mNumChildren; ++i) {
            const aiNode* child = node->mChildren[i];
            if (child && seen.insert(child).second)
                stack.push_back(child);
        }
    }
    return count;
}

std::shared_ptr<DisplayItem> SceneModelBuilder::makeNodeItem(const PendingNode& pending)
{
    const std::string name = SceneText::fromAiString(pending.node->mName);
    auto item = std::make_shared<DisplayItem>(name.empty() ? indexPathText(pending.indexPath) : name);
    if (pending.node->mMetaData)
        item->setBusinessProperties(SceneText::metadataProperties(*pending.node->mMetaData));
    item->setDisplayProperty("transformation", SceneText::matrixText(pending.node->mTransformation));
    const auto named = name.empty() ? m_namedNodes.end() : m_namedNodes.find(name);
    if (named != m_namedNodes.end() && !named->second)
        named->second = item.get();
    return item;
}

void SceneModelBuilder::addMeshItems(DisplayItem& nodeItem, const aiNode& node, const aiMatrix4x4& toScene)
{
    if (!node.mMeshes)
        return;
    std::vector<std::shared_ptr<DisplayItem>> meshItems;
    for (unsigned i = 0; i < node.mNumMeshes; ++i) {
        const unsigned meshIndex = node.mMeshes[i];
        if (meshIndex >= m_triangles.size() || !m_scene.mMeshes[meshIndex]) {
            noteSkipped(nodeItem, "mesh " + std::to_string(meshIndex) + " is not in the scene");
            continue;
        }
        meshItems.push_back(makeMeshItem(meshIndex, toScene));
    }
    if (!meshItems.empty())
        nodeItem.appendChildren(meshItems);
}

std::shared_ptr<SceneObjectItem> SceneModelBuilder::makeMeshItem(unsigned meshIndex, const aiMatrix4x4& toScene)
{
    const aiMesh& mesh = *m_scene.mMeshes[meshIndex];
    const std::string name = SceneText::fromAiString(mesh.mName);
    auto item = std::make_shared<SceneObjectItem>(SceneObjectItem::Kind::Mesh,
                                                  name.empty() ? "mesh " + std::to_string(meshIndex) : name);
    if (m_scene.mMaterials && mesh.mMaterialIndex < m_scene.mNumMaterials && m_scene.mMaterials[mesh.mMaterialIndex])
        item->setBusinessProperty("material",
                                  SceneText::fromAiString(m_scene.mMaterials[mesh.mMaterialIndex]->GetName()));
    item->setDisplayProperties({{"mesh", std::to_string(meshIndex)},
                                {"vertices", std::to_string(mesh.mNumVertices)},
                                {"faces", std::to_string(mesh.mNumFaces)},
                                {"bones", std::to_string(mesh.mNumBones)},
                                {"primitive types", SceneText::primitiveTypesText(mesh)},
                                {"bounding box", SceneText::boundingBoxText(mesh)}});
    item->setTriangles(triangles(meshIndex));
    item->setSceneTransformation(toFloats(toScene));
    return item;
}

std::shared_ptr<const MeshTriangles> SceneModelBuilder::triangles(unsigned meshIndex)
{
    if (m_trianglesMade[meshIndex])
        return m_triangles[meshIndex];
    m_trianglesMade[meshIndex] = true;
    const aiMesh& mesh = *m_scene.mMeshes[meshIndex];
    if (!mesh.mVertices || !mesh.mFaces)
        return nullptr;
    auto made = std::make_shared<MeshTriangles>();
    for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
        const aiFace& face = mesh.mFaces[i];
        if (face.mNumIndices != 3 || !face.mIndices)
            continue;
        if (face.mIndices[0] >= mesh.mNumVertices || face.mIndices[1] >= mesh.mNumVertices
            || face.mIndices[2] >= mesh.mNumVertices)
            continue;
        made->indices.insert(made->indices.end(), face.mIndices, face.mIndices + 3);
    }
    if (made->indices.empty())
        return nullptr;
    made->positions.reserve(std::size_t(mesh.mNumVertices) * 3);
    for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
        const aiVector3D& v = mesh.mVertices[i];
        made->positions.insert(made->positions.end(), {v.x, v.y, v.z});
    }
    m_triangles[meshIndex] = std::move(made);
    return m_triangles[meshIndex];
}

void SceneModelBuilder::pushChildren(const PendingNode& pending, DisplayItem& nodeItem, std::vector<PendingNode>& stack)
{
    const aiNode& node = *pending.node;
    if (!node.mChildren)
        return;
    // Last first, so that the children come off the stack in their order.
    for (unsigned i = node.mNumChildren; i-- > 0;) {
        const aiNode* child = node.mChildren[i];
        if (!child) {
            noteSkipped(nodeItem, "child " + std::to_string(i) + " is missing");
            continue;
        }
        if (!m_seen.insert(child).second) {
            noteSkipped(nodeItem, "child " + std::to_string(i) + " is a node met before");
            continue;
        }
        m_indexPaths.emplace_back(pending.indexPath, i);
        stack.push_back({child, &nodeItem, m_indexPaths.size() - 1, pending.toScene * child->mTransformation});
    }
}

void SceneModelBuilder::addCamerasAndLights(DisplayItem& root)
{
    for (unsigned i = 0; m_scene.mCameras && i < m_scene.mNumCameras; ++i) {
        if (const aiCamera* camera = m_scene.mCameras[i]) {
            addSceneObject(root, SceneObjectItem::Kind::Camera, camera->mName, "camera " + std::to_string(i),
                           SceneText::cameraProperties(*camera));
        }
    }
    for (unsigned i = 0; m_scene.mLights && i < m_scene.mNumLights; ++i) {
        if (const aiLight* light = m_scene.mLights[i]) {
            addSceneObject(root, SceneObjectItem::Kind::Light, light->mName, "light " + std::to_string(i),
                           SceneText::lightProperties(*light));
        }
    }
}

void SceneModelBuilder::addSceneObject(DisplayItem& root, SceneObjectItem::Kind kind, const aiString& nodeName,
                                       const std::string& unnamed, PropertyList properties)
{
    const std::string name = SceneText::fromAiString(nodeName);
    auto item = std::make_shared<SceneObjectItem>(kind, name.empty() ? unnamed : name);
    item->setDisplayProperties(std::move(properties));
    attachToNamedNode(root, name, std::move(item));
}

void SceneModelBuilder::attachToNamedNode(DisplayItem& root, const std::string& nodeName,
                                          std::shared_ptr<SceneObjectItem> item)
{
    const auto named = m_namedNodes.find(nodeName);
    if (named != m_namedNodes.end() && named->second) {
        named->second->appendChild(std::move(item));
        return;
    }
    item->setDisplayProperty("node", "no node is named \"" + nodeName + "\"");
    root.appendChild(std::move(item));
}

} // namespace Brennvik
