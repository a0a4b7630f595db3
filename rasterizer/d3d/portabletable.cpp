#include "rasterizer/d3d/portabletable.h"

#include <algorithm>
#include <iterator>

#include "vornik/rasterizer/startup.h"

static const int constants[] = {
    0,  // VRK_TEXTURE
    1,  // VRK_PROJECTION
    2,  // VRK_MODELVIEW
    3,  // VRK_TEXTURE_2D
    4,  // VRK_FOG
    5,  // VRK_BLEND
    6,  // VRK_COLOR_MATERIAL
    7,  // VRK_CULL_FACE
    1,  // VRK_FLAT: flat shading
    2,  // VRK_SMOOTH: Gouraud shading
    15, // VRK_ALPHA_TEST
    11, // VRK_DEPTH_TEST
    12, // VRK_MODULATE
    13, // VRK_DECAL
    14, // VRK_TEXENV_BLEND
    0,  // 15 to 17 are free
    0,  //
    0,  //
    5,  // VRK_SRC_ALPHA: blend factors
    7,  // VRK_DST_ALPHA
    2,  // VRK_ONE
    6,  // VRK_ONE_MINUS_SRC_ALPHA
    9,  // VRK_DST_COLOR
    3,  // VRK_SRC_COLOR
    1,  // VRK_ZERO
    3,  // VRK_EQUAL: comparisons
    4,  // VRK_LEQUAL
    7,  // VRK_GEQUAL
    0,  // VRK_FALSE
    1,  // VRK_TRUE
    30, // VRK_COMPILE
    31, // VRK_COMPILE_AND_EXECUTE
    5,  // VRK_GREATER: a comparison
    0,  // VRK_ENABLE_BIT
};
static_assert(std::size(constants) == VRK_CONSTANT_COUNT);

void fillDirect3DConstants()
{
    std::copy(std::begin(constants), std::end(constants), vrkConvertCapTableOGL);
}
