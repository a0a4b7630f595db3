// Translation of values that a host passes into OpenGL's.
#pragma once

#include "rasterizer/truncate.h"
#include "vornik/rasterizer/startup.h"

#include <GL/gl.h>

/// The rasterizer's own value of a portable constant. @return false if the constant lies outside the table
inline bool translate(int constant, GLenum* value)
{
    if (constant < 0 || constant >= VRK_CONSTANT_COUNT)
        return false;
    *value = static_cast<GLenum>(vrkConvertCapTableOGL[constant]);
    return true;
}
