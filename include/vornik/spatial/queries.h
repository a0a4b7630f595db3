#ifndef VORNIK_SPATIAL_QUERIES_H
#define VORNIK_SPATIAL_QUERIES_H

#include "vornik/core/vectors.h"
#include "vornik/export.h"

/// One-sided ray-triangle test. Corners wind counter-clockwise seen from the side that can be hit.
/// @return the hit as a fraction of end - start: 0 at start, 1 at end, more beyond it. -1 if parallel,
///         outside or seen from behind; other negative values lie behind start. Use only 0 and above.
/// Moeller and Trumbore, "Fast, Minimum Storage Ray/Triangle Intersection", 1997.
VRK_API float intersect2(const Vertex3D* start, const Vertex3D* end, const Vertex3D* a, const Vertex3D* b,
                         const Vertex3D* c);

#endif
