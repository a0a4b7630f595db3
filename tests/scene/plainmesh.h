// The plain, quadratic forms of what Mesh computes at load time. They define the results.
#pragma once

#include "vornik/scene/mesh.h"

void plainCalcNormals(Mesh* mesh);
/// From originalVertices.
void plainCalcRadius(Mesh* mesh);
void plainSortFacesByMaterial(Mesh* mesh);
void plainPrepareSmoothing(Mesh* mesh);
/// World position by a whole round through the rasterizer's matrix stack.
Vertex3D plainCalculatedVertex(Mesh* mesh, int i);
