#include "rasterizer/d3d/com_win32.h"

#include <cstring>

#include "rasterizer/d3d/constants.h"

static_assert(sizeof(GUID) == sizeof(D3DGuid));

// A format of depths tells its depth where others tell the size of a pixel.
D3DPixelFormat fromSystem(const DDPIXELFORMAT& format)
{
    D3DPixelFormat result = {};
    result.flags = format.dwFlags;
    if (format.dwFlags & DDPF_ZBUFFER)
    {
        result.bits = format.dwZBufferBitDepth;
        result.stencilBits = format.dwStencilBitDepth;
        result.depthMask = format.dwZBitMask;
        return result;
    }
    result.bits = format.dwFlags & DDPF_FOURCC ? 0 : format.dwRGBBitCount;
    result.red = format.dwRBitMask;
    result.green = format.dwGBitMask;
    result.blue = format.dwBBitMask;
    result.alpha = format.dwFlags & DDPF_ALPHAPIXELS ? format.dwRGBAlphaBitMask : 0;
    return result;
}

DDPIXELFORMAT toSystem(const D3DPixelFormat& format)
{
    DDPIXELFORMAT result = sized<DDPIXELFORMAT>();
    result.dwFlags = format.flags;
    if (format.flags & d3d::pixelsDepth)
    {
        result.dwZBufferBitDepth = format.bits;
        result.dwStencilBitDepth = format.stencilBits;
        result.dwZBitMask = format.depthMask;
        if (format.flags & d3d::pixelsStencil && format.stencilBits < 32)
            result.dwStencilBitMask = ~format.depthMask;
        return result;
    }
    result.dwRGBBitCount = format.bits;
    result.dwRBitMask = format.red;
    result.dwGBitMask = format.green;
    result.dwBBitMask = format.blue;
    result.dwRGBAlphaBitMask = format.alpha;
    return result;
}

D3DGuid fromSystem(const GUID& guid)
{
    D3DGuid result;
    std::memcpy(&result, &guid, sizeof result);
    return result;
}

GUID toSystem(const D3DGuid& guid)
{
    GUID result;
    std::memcpy(&result, &guid, sizeof result);
    return result;
}

D3DMode modeOf(const DDSURFACEDESC2& description)
{
    return {description.dwWidth, description.dwHeight, description.ddpfPixelFormat.dwRGBBitCount,
            description.dwRefreshRate};
}
