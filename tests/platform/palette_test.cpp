#include "platform/palette.h"

#include <gtest/gtest.h>

static void expectColor(const PaletteColor& color, int red, int green, int blue)
{
    EXPECT_EQ(color.red, red);
    EXPECT_EQ(color.green, green);
    EXPECT_EQ(color.blue, blue);
}

TEST(Palette, SpreadsEachChannelOverTheWholeRange)
{
    // The usual eight bits: three of red, three of green, two of blue.
    const std::vector<PaletteColor> colors = vrkPaletteColors(8, {3, 0}, {3, 3}, {2, 6});
    ASSERT_EQ(colors.size(), 256u);
    expectColor(colors[0], 0, 0, 0);
    expectColor(colors[255], 255, 255, 255);
    expectColor(colors[0b01'000'001], 36, 0, 85); // 255 / 7 and 255 / 3, cut
    expectColor(colors[0b10'101'110], 6 * 255 / 7, 5 * 255 / 7, 2 * 255 / 3);
}

TEST(Palette, ChannelWithoutBitsStaysDark)
{
    const std::vector<PaletteColor> colors = vrkPaletteColors(4, {0, 4}, {4, 0}, {0, 0});
    ASSERT_EQ(colors.size(), 16u);
    expectColor(colors[15], 0, 255, 255); // blue takes the lowest bit as its own
    expectColor(colors[14], 0, 238, 0);
}

TEST(Palette, HasAnEntryForEachValueUpToWhatAPaletteCanCount)
{
    EXPECT_EQ(vrkPaletteColors(0, {1, 0}, {1, 0}, {1, 0}).size(), 1u);
    EXPECT_EQ(vrkPaletteColors(15, {5, 0}, {5, 5}, {5, 10}).size(), 32768u);
    EXPECT_TRUE(vrkPaletteColors(16, {5, 0}, {6, 5}, {5, 11}).empty());
    EXPECT_TRUE(vrkPaletteColors(-1, {5, 0}, {6, 5}, {5, 11}).empty());
    EXPECT_EQ(vrkPaletteColors(1, {99, 99}, {-1, -1}, {32, 32}).size(), 2u);
}
