// Scenes to ask, with all that files have.
#pragma once

#include <memory>
#include <random>

#include "vornik/core/vectors.h"

class OGroup;

/// Several meshes, moved, turned about pivots and not, with straddling and degenerate faces, pairs of faces
/// back to back, and four materials: plain, two-sided, with an opacity image, and one that the list doesn't
/// have. With its octree. Needs a running engine.
std::unique_ptr<OGroup> makeRandomGroup(std::mt19937& random, int meshes, int faces);

/// A number from -range to range.
float anyNumber(std::mt19937& random, float range);
Vertex3D anyPoint(std::mt19937& random, float range);
