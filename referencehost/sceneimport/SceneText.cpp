#include "SceneText.h"

#include <QString>

#include <algorithm>

namespace Brennvik::SceneText {

namespace {

std::string number(double value)
{
    return QString::number(value, 'g', 7).toStdString();
}

std::string colourText(const aiColor3D& colour)
{
    return "(" + number(colour.r) + ", " + number(colour.g) + ", " + number(colour.b) + ")";
}

std::string lightTypeText(aiLightSourceType type)
{
    switch (type) {
    case aiLightSource_DIRECTIONAL:
        return "directional";
    case aiLightSource_POINT:
        return "point";
    case aiLightSource_SPOT:
        return "spot";
    case aiLightSource_AMBIENT:
        return "ambient";
    case aiLightSource_AREA:
        return "area";
    default:
        return "undefined";
    }
}

/// The value of one metadata entry; the data pointer may be null in a broken scene.
std::string metadataValue(const aiMetadataEntry& entry)
{
    if (!entry.mData)
        return "(no value)";
    switch (entry.mType) {
    case AI_BOOL:
        return *static_cast<const bool*>(entry.mData) ? "true" : "false";
    case AI_INT32:
        return std::to_string(*static_cast<const int32_t*>(entry.mData));
    case AI_UINT64:
        return std::to_string(*static_cast<const uint64_t*>(entry.mData));
    case AI_FLOAT:
        return number(*static_cast<const float*>(entry.mData));
    case AI_DOUBLE:
        return number(*static_cast<const double*>(entry.mData));
    case AI_AISTRING:
        return fromAiString(*static_cast<const aiString*>(entry.mData));
    case AI_AIVECTOR3D:
        return vectorText(*static_cast<const aiVector3D*>(entry.mData));
    case AI_AIMETADATA:
        return "(" + std::to_string(static_cast<const aiMetadata*>(entry.mData)->mNumProperties) + " entries)";
    default:
        return "(metadata of type " + std::to_string(static_cast<int>(entry.mType)) + ")";
    }
}

} // namespace

std::string fromAiString(const aiString& text)
{
    return std::string(text.data, std::min<std::size_t>(text.length, MAXLEN - 1));
}

PropertyList metadataProperties(const aiMetadata& metadata)
{
    PropertyList properties;
    if (!metadata.mKeys || !metadata.mValues)
        return properties;
    for (unsigned i = 0; i < metadata.mNumProperties; ++i)
        properties.emplace_back(fromAiString(metadata.mKeys[i]), metadataValue(metadata.mValues[i]));
    return properties;
}

std::string matrixText(const aiMatrix4x4& matrix)
{
    std::string text;
    for (unsigned row = 0; row < 4; ++row) {
        if (row > 0)
            text += "; ";
        for (unsigned column = 0; column < 4; ++column) {
            if (column > 0)
                text += ' ';
            text += number(matrix[row][column]);
        }
    }
    return text;
}

std::string vectorText(const aiVector3D& vector)
{
    return "(" + number(vector.x) + ", " + number(vector.y) + ", " + number(vector.z) + ")";
}

std::string primitiveTypesText(const aiMesh& mesh)
{
    static const std::pair<unsigned, const char*> types[] = {{aiPrimitiveType_POINT, "points"},
                                                             {aiPrimitiveType_LINE, "lines"},
                                                             {aiPrimitiveType_TRIANGLE, "triangles"},
                                                             {aiPrimitiveType_POLYGON, "polygons"}};
    std::string text;
    for (const auto& [flag, name] : types) {
        if (!(mesh.mPrimitiveTypes & flag))
            continue;
        if (!text.empty())
            text += ", ";
        text += name;
    }
    return text.empty() ? "none" : text;
}

std::string boundingBoxText(const aiMesh& mesh)
{
    if (mesh.mNumVertices == 0 || !mesh.mVertices)
        return "empty";
    aiVector3D low = mesh.mVertices[0];
    aiVector3D high = low;
    for (unsigned i = 1; i < mesh.mNumVertices; ++i) {
        const aiVector3D& v = mesh.mVertices[i];
        low = aiVector3D(std::min(low.x, v.x), std::min(low.y, v.y), std::min(low.z, v.z));
        high = aiVector3D(std::max(high.x, v.x), std::max(high.y, v.y), std::max(high.z, v.z));
    }
    return vectorText(low) + " to " + vectorText(high);
}

PropertyList cameraProperties(const aiCamera& camera)
{
    return {{"position", vectorText(camera.mPosition)},
            {"look at", vectorText(camera.mLookAt)},
            {"up", vectorText(camera.mUp)},
            {"horizontal field of view (rad)", number(camera.mHorizontalFOV)},
            {"near clip plane", number(camera.mClipPlaneNear)},
            {"far clip plane", number(camera.mClipPlaneFar)},
            {"aspect", number(camera.mAspect)}};
}

PropertyList lightProperties(const aiLight& light)
{
    return {{"light type", lightTypeText(light.mType)},
            {"position", vectorText(light.mPosition)},
            {"direction", vectorText(light.mDirection)},
            {"diffuse colour", colourText(light.mColorDiffuse)},
            {"specular colour", colourText(light.mColorSpecular)},
            {"ambient colour", colourText(light.mColorAmbient)},
            {"attenuation",
             number(light.mAttenuationConstant) + " + " + number(light.mAttenuationLinear) + " d + "
                 + number(light.mAttenuationQuadratic) + " d²"},
            {"inner cone (rad)", number(light.mAngleInnerCone)},
            {"outer cone (rad)", number(light.mAngleOuterCone)}};
}

} // namespace Brennvik::SceneText
