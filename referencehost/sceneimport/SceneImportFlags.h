#pragma once

#include <assimp/postprocess.h>

namespace Brennvik {

/// What Assimp does to a scene before it is shown: polygons become
/// triangles (the 3D view draws triangles), and a scene whose parts refer
/// to what is not there is refused rather than shown broken. Neither
/// changes the node tree.
constexpr unsigned sceneImportFlags = aiProcess_Triangulate | aiProcess_ValidateDataStructure;

} // namespace Brennvik
