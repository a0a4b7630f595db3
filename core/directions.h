// What a Vertex3D can't do with operators, since it becomes its length wherever a number is wanted.
#pragma once

#include "vornik/core/vectors.h"

inline float lengthOf(const Vertex3D& v)
{
    return v;
}

inline Vertex3D scaled(Vertex3D v, float factor)
{
    v *= factor;
    return v;
}

/// Of length 1; the zero vector stays.
inline Vertex3D unit(Vertex3D v)
{
    v.normalize();
    return v;
}
