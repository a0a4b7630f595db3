// Images on their way into the pixel formats of a device.
#pragma once

#include <cstdint>
#include <vector>

#include "rasterizer/d3d/system.h"

/// An image of words with R highest, then G, B, A.
struct D3DImage
{
    int width, height;
    const uint32_t* pixels;
};

/// A pixel in a format: of each channel the highest bits that its mask holds.
uint32_t convertPixel(uint32_t rgba, const D3DPixelFormat& format);

/// Half of each side: every pixel the average of four, or of two where a side has only one pixel. What is odd
/// at the end of a side is left out.
std::vector<uint32_t> halved(const D3DImage& image);

/// Fills a level with the image, stretched to its size by taking the nearest pixels.
void copyToLevel(const D3DImage& image, const D3DTextureSurface::Level& level, const D3DPixelFormat& format);
