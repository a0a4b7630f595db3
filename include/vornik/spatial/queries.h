#ifndef VORNIK_SPATIAL_QUERIES_H
#define VORNIK_SPATIAL_QUERIES_H

// Questions about the geometry of a group: rays, heights, and spheres that move and slide. z is up.
//
// All but vrkCheckHeight2 and vrkRayBox ask the group's octree; without one they give the answer for nothing
// hit. Faces are hit from the side from which their corners wind counter-clockwise. A segment only chooses
// the leaves that are searched: a hit may lie beyond its end. Nothing is allocated. One query at a time:
// lists and marks are shared.

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Mesh;
class OGroup;

/// Moves a sphere and keeps it in front of what it hits, by the planes of the leaves around the place where
/// it wants to go and at the radius from there. A plane that the old place touches already is not hit.
/// @param position     [in, out] where it wants to go; where it may go
/// @param oldPosition  where it comes from
/// @param slide        goes on along what it hit, except in the last pass, which puts it back
/// @param normal       [out] of the last face hit; untouched if none was
/// @param iterations   passes; 3 let it slide around a corner
/// @return was anything hit?
VRK_API bool vrkCheckCollision(Vertex3D* position, Vertex3D* oldPosition, float radius, OGroup* group,
                               bool slide, Vertex3D* normal, int iterations);

/// Distance from start to the nearest face along a ray, the largest float if there is none. A face with an
/// opacity image stops every other ray, at random (rand).
VRK_API float vrkRaySceneDistance(Vertex3D* start, Vertex3D* end, OGroup* group);
/// Is any face along a ray closer than maxDistance?
VRK_API bool vrkRayScene(Vertex3D* start, Vertex3D* end, float maxDistance, OGroup* group);
/// Does a ray hit a face of a mesh? Reads transformedVertices: call OGroup::transformVertices first.
/// @param point  [out] on the first face that is hit, by number; may be null
VRK_API bool vrkRayBox(Vertex3D* start, Vertex3D* end, Mesh* mesh, Vertex3D* point);

/// The highest hit along a ray; (0, 0, -999999) if there is none.
VRK_API Vertex3D vrkCheckHeight(Vertex3D* start, Vertex3D* end, OGroup* group);
/// The same without the octree, among all faces. Hits at z = 0 and below are not seen; (0, 0, 0) if there is
/// none.
VRK_API Vertex3D vrkCheckHeight2(Vertex3D* start, Vertex3D* end, OGroup* group);
/// The lowest hit; (0, 0, 999999) if there is none.
VRK_API Vertex3D vrkCheckNegativeHeight(Vertex3D* start, Vertex3D* end, OGroup* group);

/// One-sided ray-triangle test. Corners wind counter-clockwise seen from the side that can be hit.
/// @return the hit as a fraction of end - start: 0 at start, 1 at end, more beyond it. -1 if parallel,
///         outside or seen from behind; other negative values lie behind start. Use only 0 and above.
/// Moeller and Trumbore, "Fast, Minimum Storage Ray/Triangle Intersection", 1997.
VRK_API float intersect2(const Vertex3D* start, const Vertex3D* end, const Vertex3D* a, const Vertex3D* b,
                         const Vertex3D* c);
/// Where the line through start and end meets the plane of a triangle.
VRK_API Vertex3D findIntersectionPoint(const Vertex3D* start, const Vertex3D* end, const Vertex3D* a,
                                       const Vertex3D* b, const Vertex3D* c);

/// Spins until the time has passed.
VRK_API void wait(unsigned int milliseconds);

#endif
