// Translation of values that a host passes into OpenGL's.
#pragma once

#include "vornik/rasterizer/startup.h"

#include <GL/gl.h>

#include <cmath>

/// The rasterizer's own value of a portable constant. @return false if the constant lies outside the table
inline bool translate(int constant, GLenum* value)
{
    if (constant < 0 || constant >= VRK_CONSTANT_COUNT)
        return false;
    *value = static_cast<GLenum>(vrkConvertCapTableOGL[constant]);
    return true;
}

/// Cuts the fraction off. What no int can hold is 0.
inline int truncated(float value)
{
    return std::fabs(value) < 2147483648.0f ? static_cast<int>(value) : 0;
}
