// Three floats at the cursor of vrkLoader.
#pragma once

#include <cmath>

#include "vornik/assets/loader.h"
#include "vornik/core/vectors.h"

inline Vertex3D readVector()
{
    Vertex3D v;
    v.x = vrkLoader.getFloat();
    v.y = vrkLoader.getFloat();
    v.z = vrkLoader.getFloat();
    return v;
}

inline bool isFinite(const Vertex3D& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}
