// What a Vertex3D can't do with operators, since it becomes its length wherever a number is wanted. The
// engine has the same for itself; the host uses public headers only.
#pragma once

#include "vornik/core/vectors.h"

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
