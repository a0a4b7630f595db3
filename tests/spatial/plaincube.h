// The geometry of the tree as it is defined, without any shortcut.
#pragma once

#include "vornik/core/vectors.h"

int plainWindings(const Vertex3D* triangle, const Vertex3D& normal, const Vertex3D& point);
bool plainSegmentIntersectsCube(const Vertex3D& p, const Vertex3D& q);
bool plainPolygonIntersectsCube(const Vertex3D* triangle, const Vertex3D& normal);
bool plainTriangleIntersectsBox(const Vertex3D* triangle, const Vertex3D& min, const Vertex3D& max);
bool plainSegmentIntersectsBox(const Vertex3D& a, const Vertex3D& b, const Vertex3D& min,
                               const Vertex3D& max);
