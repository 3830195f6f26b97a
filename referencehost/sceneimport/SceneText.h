#pragma once

#include <hostcontract/DisplayItemInterface.h>

#include <assimp/camera.h>
#include <assimp/light.h>
#include <assimp/matrix4x4.h>
#include <assimp/mesh.h>
#include <assimp/metadata.h>

#include <string>

namespace Brennvik::SceneText {

// The texts of an imported scene's properties.

/// The text of \a text as the scene file holds it (UTF-8 as a rule).
std::string fromAiString(const aiString& text);
/// The metadata entries as (key, value) in order; a nested table is shown
/// as the number of its entries.
PropertyList metadataProperties(const aiMetadata& metadata);
/// 16 numbers, the rows separated by "; ".
std::string matrixText(const aiMatrix4x4& matrix);
/// "(x, y, z)".
std::string vectorText(const aiVector3D& vector);
/// "points, lines, triangles, polygons" as far as \a mesh has them; "none" for none.
std::string primitiveTypesText(const aiMesh& mesh);
/// "(min) to (max)" of the vertices; "empty" without vertices.
std::string boundingBoxText(const aiMesh& mesh);
/// Position, direction, field of view and clip planes.
PropertyList cameraProperties(const aiCamera& camera);
/// Type, position, direction, colours, attenuation and cone.
PropertyList lightProperties(const aiLight& light);

} // namespace Brennvik::SceneText
