#pragma once

#include "HostExport.h"
#include "Vector.h"

namespace Brennvik {

/// The projection of a 3D view: turns world points into pixel positions
/// relative to the view's widget.
///
/// An orthographic camera: the world is turned about its z axis by the
/// azimuth, then tilted towards the viewer about the screen's x axis by the
/// elevation, scaled by the pixels per world unit and placed so that the
/// world origin lands on the origin pixel. World y points up on screen, pixel
/// y down. The default maps (x, y, z) to the pixel (x, -y) with depth z.
class BRENNVIK_HOST_EXPORT ViewTransformationProvider
{
public:
    ViewTransformationProvider();

    /// x and y: pixel position relative to the view widget's top left corner;
    /// z: depth towards the viewer, in world units.
    Vector<float, 3> transformWorldToPixelCoordinates(const Vector<float, 3>& world) const;

    /// Pixels per world unit; must be positive (other values are ignored).
    void setScale(float pixelsPerUnit);
    float scale() const;
    /// Pixel position of the world origin.
    void setOrigin(float x, float y);
    float originX() const;
    float originY() const;
    /// Turn about the world z axis, in degrees.
    void setAzimuth(float degrees);
    float azimuth() const;
    /// Tilt about the screen's x axis, in degrees.
    void setElevation(float degrees);
    float elevation() const;

private:
    float m_scale = 1.0f;
    float m_originX = 0.0f;
    float m_originY = 0.0f;
    float m_azimuth = 0.0f;
    float m_elevation = 0.0f;
};

} // namespace Brennvik
