// A system without DirectDraw: there is nothing to start.

#include "rasterizer/d3d/system.h"

std::unique_ptr<D3DSystem> makeD3DSystem()
{
    return nullptr;
}
