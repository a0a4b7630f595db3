#pragma once

#include "vornik/core/vectors.h"

/// Are all corners of a face among so many vertices?
inline bool hasCorners(const Facelist& face, int vertexCount)
{
    return face.a < vertexCount && face.b < vertexCount && face.c < vertexCount;
}
