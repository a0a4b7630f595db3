#include "platform/palette.h"

static uint8_t channelValue(unsigned pixel, const ChannelBits& bits)
{
    unsigned mask = (1u << (bits.count & 31)) - 1;
    if (mask == 0)
        mask = 1;
    return static_cast<uint8_t>((pixel >> (bits.shift & 31) & mask) * 255 / mask);
}

std::vector<PaletteColor> vrkPaletteColors(int colorBits, const ChannelBits& red, const ChannelBits& green,
                                           const ChannelBits& blue)
{
    std::vector<PaletteColor> colors;
    if (colorBits < 0 || colorBits > 15)
        return colors;
    for (unsigned i = 0; i < 1u << colorBits; ++i)
        colors.push_back({channelValue(i, red), channelValue(i, green), channelValue(i, blue)});
    return colors;
}
