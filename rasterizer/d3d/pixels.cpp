#include "rasterizer/d3d/pixels.h"

#include <algorithm>
#include <bit>
#include <cstring>

// A byte under a mask of any width up to 32 bits. A wider mask gets the byte in its high bits.
static uint32_t placed(uint32_t byte, uint32_t mask)
{
    if (mask == 0)
        return 0;
    const int shift = std::countr_zero(mask);
    const int width = std::bit_width(mask >> shift);
    const uint32_t value = width <= 8 ? byte >> (8 - width) : byte << (width - 8);
    return (value << shift) & mask;
}

uint32_t convertPixel(uint32_t rgba, const D3DPixelFormat& format)
{
    return placed(rgba >> 24, format.red) | placed(rgba >> 16 & 255, format.green) |
           placed(rgba >> 8 & 255, format.blue) | placed(rgba & 255, format.alpha);
}

// The average of four pixels, channel by channel.
static uint32_t averaged(uint32_t a, uint32_t b, uint32_t c, uint32_t d)
{
    uint32_t result = 0;
    for (int shift = 0; shift < 32; shift += 8)
        result |= ((a >> shift & 255) + (b >> shift & 255) + (c >> shift & 255) + (d >> shift & 255) + 2) / 4
                  << shift;
    return result;
}

std::vector<uint32_t> halved(const D3DImage& image)
{
    const int width = std::max(image.width / 2, 1);
    const int height = std::max(image.height / 2, 1);
    std::vector<uint32_t> result;
    result.reserve(static_cast<size_t>(width) * static_cast<size_t>(height));
    for (int y = 0; y < height; ++y)
    {
        const uint32_t* upper = image.pixels + int64_t(2) * y * image.width;
        const uint32_t* lower = image.height > 1 ? upper + image.width : upper;
        for (int x = 0; x < width; ++x)
        {
            const int left = 2 * x;
            const int right = image.width > 1 ? left + 1 : left;
            result.push_back(averaged(upper[left], upper[right], lower[left], lower[right]));
        }
    }
    return result;
}

void copyToLevel(const D3DImage& image, const D3DTextureSurface::Level& level, const D3DPixelFormat& format)
{
    const size_t bytes = format.bits / 8;
    for (int y = 0; y < level.height; ++y)
    {
        const int64_t sourceY = int64_t(y) * image.height / level.height;
        uint8_t* to = level.bits + int64_t(y) * level.pitch;
        for (int x = 0; x < level.width; ++x, to += bytes)
        {
            const int64_t sourceX = int64_t(x) * image.width / level.width;
            const uint32_t pixel = convertPixel(image.pixels[sourceY * image.width + sourceX], format);
            std::memcpy(to, &pixel, bytes); // both systems keep the low byte first
        }
    }
}
