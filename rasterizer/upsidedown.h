// Images whose rows run the other way.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

/// Exchanges the rows of an image of four bytes a pixel.
inline void turnUpsideDown(uint8_t* pixels, int width, int height)
{
    const size_t row = static_cast<size_t>(width) * 4;
    for (int i = 0; i < height / 2; ++i)
        std::swap_ranges(pixels + row * static_cast<size_t>(i), pixels + row * static_cast<size_t>(i + 1),
                         pixels + row * static_cast<size_t>(height - 1 - i));
}
