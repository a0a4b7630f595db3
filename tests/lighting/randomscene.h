// Small random scenes that are hard on shadow rays.
#pragma once

#include <random>

#include "vornik/core/vectors.h"

class Light;
class OGroup;

enum class SceneKind
{
    Soup,       ///< loose triangles of all sizes
    Lattice,    ///< whole coordinates: corners aligned with vertices, lights in the planes of faces
    Terrain,    ///< a height field of shared vertices
    Magnitudes, ///< corners between 2^-20 and 2^20
    Extreme,    ///< up to the largest float, infinities and no numbers
    Slivers,    ///< needles, points and folded faces
    Tilted,     ///< faces of one oblique plane, which the light may stand in
    Tiny,       ///< faces near the limit of intersect2
    Offset,     ///< small faces moved far away, where positions lose precision
    Count
};

/// Fills a group with 1 to 3 meshes; the normals are random.
void fillRandomGroup(OGroup* group, SceneKind kind, std::mt19937& random);
/// A lamp for such groups: anywhere, on a vertex, on a lattice point or in the plane of a face.
Light* makeRandomLight(const OGroup& group, SceneKind kind, std::mt19937& random);
