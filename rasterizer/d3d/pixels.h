// Images on their way into the pixel formats of a device.
#pragma once

#include <cstdint>

#include "rasterizer/d3d/system.h"

/// An image of words with R highest, then G, B, A.
struct D3DImage
{
    int width, height;
    const uint32_t* pixels;
};

/// A pixel in a format: of each channel the highest bits that its mask holds.
uint32_t convertPixel(uint32_t rgba, const D3DPixelFormat& format);

/// Fills a level with the image, stretched to its size by taking the nearest pixels.
void copyToLevel(const D3DImage& image, const D3DTextureSurface::Level& level, const D3DPixelFormat& format);
