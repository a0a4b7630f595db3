#ifndef VORNIK_RASTERIZER_FRUSTUM_H
#define VORNIK_RASTERIZER_FRUSTUM_H

// Cheap questions of what can be seen.

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Camera;
class Mesh;

/// The view volume: planes top, bottom, right, left and far, normals pointing outward, of unit length.
struct Frustrum
{
    /// One on each plane.
    Vertex3D point[5];
    /// Of each plane.
    Vertex3D normal[5];
};

/// Fills the record from a camera's eye and target and from the angles and the far clip of vrkViewport. The
/// half angle to the sides is that to the top times the aspect. A camera whose eye lies on its target is
/// moved to look along x. @param camera  null leaves the record as it is
VRK_API void vrkMakeFrustrum(Camera* camera, Frustrum* frustrum);

/// Does the sphere of radius about the mesh's position reach in between the four sides? The far plane isn't
/// asked.
VRK_API bool vrkIsObjectInFrustrum(Frustrum* frustrum, Mesh* mesh);

/// Is a point inside a convex mesh or on its surface? Asks calculatedVertices at the mesh's position. A mesh
/// without faces holds every point.
VRK_API bool vrkPointInsideObject(Mesh* mesh, Vertex3D* point);

/// Is nothing in front of a point? Reads the depth buffer, which waits for all drawing.
/// @param x, y  window coordinates. @param z  0 to 1
VRK_API bool vrkIsVisible(float x, float y, float z);

#endif
