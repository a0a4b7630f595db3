// The palette of a display that shows indices: it holds the colours that the pixel format's bits stand for.
#pragma once

#include <cstdint>
#include <vector>

/// Where one channel lies in a pixel.
struct ChannelBits
{
    int count; ///< 0 for a channel that the format doesn't have
    int shift;
};

struct PaletteColor
{
    uint8_t red, green, blue;
};

/// Colour of each pixel value from 0 to 2 ^ colorBits - 1. Empty for more than 15 bits: no palette can count
/// so many.
std::vector<PaletteColor> vrkPaletteColors(int colorBits, const ChannelBits& red, const ChannelBits& green,
                                           const ChannelBits& blue);
