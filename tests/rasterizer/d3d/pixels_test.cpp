#include "rasterizer/d3d/pixels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "rasterizer/d3d/packedcolor.h"
#include "tests/support/d3drecorder.h"

TEST(PackedColor, FullWhiteIs252)
{
    Color c = {1.0f, 0.5f, 0.25f, 1.0f};
    EXPECT_EQ(packLimited(&c), 0xFCFC7E3Fu);
}

TEST(PackedColor, ForcesTheRecordIntoRange)
{
    Color c = {2.0f, -1.0f, 0.5f, 3.0f};
    EXPECT_EQ(packLimited(&c), 0xFCFC007Eu);
    EXPECT_EQ(c.r, 1.0f);
    EXPECT_EQ(c.g, 0.0f);
    EXPECT_EQ(c.b, 0.5f);
    EXPECT_EQ(c.a, 1.0f);
}

TEST(PackedColor, NoNumberIsBlack)
{
    Color c = {NAN, 1.0f, INFINITY, -INFINITY};
    EXPECT_EQ(packLimited(&c), 0x0000FCFCu);
}

TEST(PackedColor, FogHasFullRangeAndRunsOver)
{
    EXPECT_EQ(packUnlimited({1.0f, 0.5f, 0.0f, 1.0f}), 0xFFFF7F00u);
    EXPECT_EQ(packUnlimited({0.0f, 2.0f, 0.0f, 0.0f}), 510u << 8);
}

TEST(PackedColor, TextHasRedLowest)
{
    EXPECT_EQ(packForWindow({1.0f, 0.5f, 0.25f, 0.0f}), 0x003F7FFFu);
    EXPECT_EQ(packForWindow({2.0f, 0.0f, 0.0f, 0.0f}), 510u & 255);
}

TEST(ConvertPixel, TakesTheHighBitsOfEachChannel)
{
    const std::vector<D3DPixelFormat> formats = commonTextureFormats();
    const uint32_t rgba = 0xFF8040C0;
    EXPECT_EQ(convertPixel(rgba, formats[0]), 0xF800u | (0x80u >> 2) << 5 | 0x40u >> 3);
    EXPECT_EQ(convertPixel(rgba, formats[1]), 0x8000u | 0x1Fu << 10 | 0x10u << 5 | 0x08u);
    EXPECT_EQ(convertPixel(rgba, formats[2]), 0xCF84u);
    EXPECT_EQ(convertPixel(rgba, formats[3]), 0xC0FF8040u);
    EXPECT_EQ(convertPixel(0xFFFFFFFF, formats[2]), 0xFFFFu);
    EXPECT_EQ(convertPixel(0x0000007F, formats[1]), 0u);
    EXPECT_EQ(convertPixel(0x00000080, formats[1]), 0x8000u);
}

TEST(ConvertPixel, MasksOfAnyWidthAreFilledFromTheTop)
{
    const D3DPixelFormat wide = {0, 32, 0x3FF00000, 0x000FFC00, 0x000003FF, 0xC0000000, 0, 0};
    EXPECT_EQ(convertPixel(0xFF000000, wide), 0x3FC00000u);
    EXPECT_EQ(convertPixel(0x00FF00C0, wide), 0xC00FF000u);
    EXPECT_EQ(convertPixel(0xFFFFFFFF, D3DPixelFormat{}), 0u);
}

TEST(CopyToLevel, StretchesByTheNearestPixels)
{
    const uint32_t image[] = {0xFF0000FF, 0x00FF00FF, 0x0000FFFF};
    const D3DPixelFormat format = commonTextureFormats()[3];
    std::vector<uint8_t> bits(2 * 20, 0xCD);
    copyToLevel({3, 1, image}, {bits.data(), 20, 4, 2}, format);
    uint32_t row[4];
    for (int y = 0; y < 2; ++y)
    {
        std::memcpy(row, bits.data() + y * 20, sizeof row);
        EXPECT_EQ(row[0], 0xFFFF0000u);
        EXPECT_EQ(row[1], 0xFFFF0000u);
        EXPECT_EQ(row[2], 0xFF00FF00u);
        EXPECT_EQ(row[3], 0xFF0000FFu);
        EXPECT_EQ(bits[size_t(y) * 20 + 16], 0xCD); // the gap between rows
    }
}

TEST(CopyToLevel, SixteenBitsLieSideBySide)
{
    const uint32_t image[] = {0xFF0000FF, 0x00FF00FF};
    uint16_t bits[2] = {};
    copyToLevel({2, 1, image}, {reinterpret_cast<uint8_t*>(bits), 4, 2, 1}, commonTextureFormats()[2]);
    EXPECT_EQ(bits[0], 0xFF00);
    EXPECT_EQ(bits[1], 0xF0F0);
}

TEST(Halved, AveragesFourPixelsChannelByChannel)
{
    const uint32_t image[] = {0x00000000, 0x04000000, 0x11111111, 0x99999999, //
                              0x00FF0000, 0x040000FF, 0x11111111, 0x99999999, //
                              0x12345678, 0x12345678, 0x12345678, 0x12345678};
    EXPECT_EQ(halved({4, 3, image}), (std::vector<uint32_t>{0x02400040, 0x55555555}));
    EXPECT_EQ(halved({1, 2, image}), (std::vector<uint32_t>{0x02000000}));
    EXPECT_EQ(halved({2, 1, image}), (std::vector<uint32_t>{0x02000000}));
    EXPECT_EQ(halved({1, 1, image + 2}), (std::vector<uint32_t>{0x11111111}));
}

TEST(CopyToLevel, TakesPixelsOfALargerImage)
{
    std::vector<uint32_t> image(16);
    for (uint32_t i = 0; i < 16; ++i)
        image[i] = i << 24;
    uint32_t bits[4];
    copyToLevel({4, 4, image.data()}, {reinterpret_cast<uint8_t*>(bits), 8, 2, 2}, commonTextureFormats()[3]);
    EXPECT_EQ(bits[0], 0u);
    EXPECT_EQ(bits[1], 2u << 16);
    EXPECT_EQ(bits[2], 8u << 16);
    EXPECT_EQ(bits[3], 10u << 16);
}
