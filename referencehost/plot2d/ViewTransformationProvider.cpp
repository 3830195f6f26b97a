#include <hostcontract/ViewTransformationProvider.h>

#include <referencehost/model/HostCallLog.h>

#include <cmath>

namespace Brennvik {

namespace {
constexpr float DegreesToRadians = 3.14159265358979323846f / 180.0f;
} // namespace

ViewTransformationProvider::ViewTransformationProvider() = default;

Vector<float, 3> ViewTransformationProvider::transformWorldToPixelCoordinates(const Vector<float, 3>& world) const
{
    HostCallLog::note("transformWorldToPixelCoordinates");
    const float a = m_azimuth * DegreesToRadians;
    const float e = m_elevation * DegreesToRadians;
    // Turn about the world z axis ...
    const float x1 = world.x() * std::cos(a) - world.y() * std::sin(a);
    const float y1 = world.x() * std::sin(a) + world.y() * std::cos(a);
    const float z1 = world.z();
    // ... then tilt about the screen's x axis.
    const float up = y1 * std::cos(e) + z1 * std::sin(e);
    const float depth = -y1 * std::sin(e) + z1 * std::cos(e);
    return Vector<float, 3>(m_originX + m_scale * x1, m_originY - m_scale * up, depth);
}

void ViewTransformationProvider::setScale(float pixelsPerUnit)
{
    if (pixelsPerUnit > 0.0f)
        m_scale = pixelsPerUnit;
}

float ViewTransformationProvider::scale() const
{
    return m_scale;
}

void ViewTransformationProvider::setOrigin(float x, float y)
{
    m_originX = x;
    m_originY = y;
}

float ViewTransformationProvider::originX() const
{
    return m_originX;
}

float ViewTransformationProvider::originY() const
{
    return m_originY;
}

void ViewTransformationProvider::setAzimuth(float degrees)
{
    m_azimuth = degrees;
}

float ViewTransformationProvider::azimuth() const
{
    return m_azimuth;
}

void ViewTransformationProvider::setElevation(float degrees)
{
    m_elevation = degrees;
}

float ViewTransformationProvider::elevation() const
{
    return m_elevation;
}

} // namespace Brennvik
