// Points through a matrix as OpenGL gives it: 16 doubles, column by column.
#pragma once

#include "vornik/core/vectors.h"

inline Vertex3D transformPoint(const double* m, const Vertex3D& v)
{
    return {static_cast<float>(m[0] * v.x + m[4] * v.y + m[8] * v.z + m[12]),
            static_cast<float>(m[1] * v.x + m[5] * v.y + m[9] * v.z + m[13]),
            static_cast<float>(m[2] * v.x + m[6] * v.y + m[10] * v.z + m[14])};
}

/// Without the translation.
inline Vertex3D transformDirection(const double* m, const Vertex3D& v)
{
    return {static_cast<float>(m[0] * v.x + m[4] * v.y + m[8] * v.z),
            static_cast<float>(m[1] * v.x + m[5] * v.y + m[9] * v.z),
            static_cast<float>(m[2] * v.x + m[6] * v.y + m[10] * v.z)};
}
