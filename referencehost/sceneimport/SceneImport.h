#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <memory>

namespace Brennvik {

class SceneViewModel;

/// 3D scene files (glTF, FBX, COLLADA, OBJ, STL, IFC and the other formats
/// Assimp reads) as display models. Importing either gives a complete new
/// view model or one error naming the file and the reason; nothing is ever
/// half-built.
///
/// The model's tree follows the scene's nodes:
/// - one plain display item per node, in the scene's child order, named as
///   the node; an unnamed node is named by its index path ("/0/2" is the
///   third child of the root's first child, "/" the root); the scene's root
///   node is the model's root. Business properties: the node's metadata.
///   Display properties: "transformation" (the node's matrix, row by row);
/// - under a node, first one "MeshItem" (a SceneObjectItem) per mesh the
///   node shows, named as the mesh ("mesh N" when unnamed, N its number in
///   the scene), then the child nodes. Business properties: "material".
///   Display properties: "mesh", "vertices", "faces", "bones", "primitive
///   types", "bounding box". The item keeps the mesh's triangles (shared by
///   every node that shows the mesh) and the transformation into the scene;
/// - after its children, a "CameraItem" or "LightItem" under the node that
///   carries each camera and light (under the root, with a "node" property
///   saying so, when no node has its name).
/// A part of the scene that cannot be shown (a mesh number past the scene's
/// meshes, a node met twice) is left out; the item where it would have been
/// says so in a "skipped" display property.
class SceneImport
{
public:
    /// Told the per cent done so far (\a done of \a total, \a total being
    /// 100): reading the file is the first half, making the items the second.
    using Progress = std::function<void(std::size_t done, std::size_t total)>;

    /// Imports the scene file at \a path. Null on failure, with
    /// "path: reason" in \a error (which may be null).
    static std::shared_ptr<SceneViewModel> load(const QString& path, QString* error, const Progress& progress = {});
    /// As load(), for the file name's bytes as the system takes them.
    static std::shared_ptr<SceneViewModel> load(const QByteArray& nativePath, QString* error,
                                                const Progress& progress = {});
    /// Imports a scene from \a data, a file of the format whose extension is
    /// \a extension (e.g. "obj", "gltf"); \a name stands for it in messages.
    /// A format that refers to other files cannot reach them this way.
    static std::shared_ptr<SceneViewModel> loadFromData(const QByteArray& data, const QByteArray& extension,
                                                        const QString& name, QString* error);

    /// The extensions of the files Assimp can read, without dots, sorted.
    static QStringList fileExtensions();
};

} // namespace Brennvik
