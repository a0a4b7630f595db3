// Pixel operations of Texture against plain versions that follow the definitions step by step.

#include "vornik/assets/texture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

using Bytes = std::vector<uint8_t>;

static void setImage(Texture* texture, int width, int height, const Bytes& bytes)
{
    std::free(texture->pixels);
    texture->width = width;
    texture->height = height;
    texture->pixels = static_cast<uint8_t*>(std::malloc(bytes.size()));
    std::memcpy(texture->pixels, bytes.data(), bytes.size());
}

static Bytes image(const Texture& texture)
{
    return Bytes(texture.pixels, texture.pixels + texture.width * texture.height * 4);
}

static Bytes randomImage(std::mt19937& random, int width, int height)
{
    Bytes bytes(static_cast<size_t>(width * height * 4));
    for (uint8_t& byte : bytes)
        byte = static_cast<uint8_t>(random());
    return bytes;
}

static Bytes flatImage(int width, int height, uint8_t value)
{
    return Bytes(static_cast<size_t>(width * height * 4), value);
}

static uint8_t limited(int value)
{
    return static_cast<uint8_t>(value < 0 ? 0 : value > 255 ? 255 : value);
}

// One pixel and channel of an image; a reading of the byte as signed is asked for with isSigned.
static int byteAt(const Bytes& bytes, int width, int x, int y, int channel, bool isSigned)
{
    const uint8_t byte = bytes[static_cast<size_t>((y * width + x) * 4 + channel)];
    return isSigned ? static_cast<int8_t>(byte) : byte;
}

static Bytes plainFilter(const Bytes& bytes, int width, int height, const int* k, bool isSigned = false)
{
    const int sum = k[0] + k[1] + k[2] + k[3] + k[4] + k[5] + k[6] + k[7] + k[8];
    if (sum == 0)
        return bytes;
    Bytes result = bytes;
    for (int y = 1; y <= height - 2; ++y)
        for (int x = 1; x <= width - 2; ++x)
            for (int c = 0; c < 4; ++c)
            {
                const auto at = [&](int dx, int dy)
                { return byteAt(bytes, width, x + dx, y + dy, c, isSigned); };
                const int total = k[0] * at(-1, -1) + k[1] * at(0, -1) + k[2] * at(1, -1) + k[3] * at(-1, 0) +
                                  k[4] * at(0, 0) + k[5] * at(1, 0) + k[6] * at(-1, 1) + k[7] * at(0, 1) +
                                  k[8] * at(1, 1);
                result[static_cast<size_t>((y * width + x) * 4 + c)] = limited(total / sum);
            }
    return result;
}

static const int sharpen[9] = {-1, -2, -1, -2, 19, -2, -1, -2, -1};

static Bytes plainScale(const Bytes& bytes, int width, int height, int newWidth, int newHeight)
{
    const int blockWidth = width / newWidth;
    const int blockHeight = height / newHeight;
    Bytes result;
    for (int y = 0; y < newHeight; ++y)
        for (int x = 0; x < newWidth; ++x)
            for (int c = 0; c < 4; ++c)
            {
                unsigned sum = 0;
                for (int row = y * blockHeight; row < (y + 1) * blockHeight; ++row)
                    for (int column = x * blockWidth; column < (x + 1) * blockWidth; ++column)
                        sum += static_cast<unsigned>(byteAt(bytes, width, column, row, c, false));
                const unsigned mean = sum / static_cast<unsigned>(blockWidth * blockHeight);
                result.push_back(static_cast<uint8_t>(mean > 255 ? 255 : mean));
            }
    return plainFilter(result, newWidth, newHeight, sharpen);
}

// A texture whose image is random, and the same bytes beside it.
class TextureImage : public ::testing::Test
{
protected:
    void make(int width, int height)
    {
        before = randomImage(random, width, height);
        setImage(&texture, width, height, before);
    }
    void makeFlat(int width, int height, uint8_t value)
    {
        before = flatImage(width, height, value);
        setImage(&texture, width, height, before);
    }
    void expectSize(int width, int height) const
    {
        EXPECT_EQ(texture.width, width);
        EXPECT_EQ(texture.height, height);
    }

    std::mt19937 random{7};
    Texture texture;
    Bytes before;
};

TEST_F(TextureImage, MultiplyDoublesTheDistanceFromTwentyEight)
{
    before.clear();
    for (int value = 0; value < 256; ++value)
        before.insert(before.end(), 4, static_cast<uint8_t>(value));
    setImage(&texture, 16, 16, before);
    texture.multiply();
    for (int value = 0; value < 256; ++value)
        for (int channel = 0; channel < 4; ++channel)
            EXPECT_EQ(texture.pixels[value * 4 + channel], channel == 3 ? value : limited(2 * value - 28));
    EXPECT_EQ(texture.pixels[13 * 4], 0);
    EXPECT_EQ(texture.pixels[14 * 4], 0);
    EXPECT_EQ(texture.pixels[141 * 4], 254);
    EXPECT_EQ(texture.pixels[142 * 4], 255);
}

TEST_F(TextureImage, MultiplyWorksInPlace)
{
    make(5, 3);
    const uint8_t* block = texture.pixels;
    texture.multiply();
    EXPECT_EQ(texture.pixels, block);
}

TEST_F(TextureImage, NothingHappensWithoutAnImage)
{
    texture.width = texture.height = 4;
    texture.multiply();
    texture.filter(sharpen);
    texture.sharpenTexture();
    texture.scaleTexture(0.5f);
    EXPECT_EQ(texture.pixels, nullptr);
    expectSize(4, 4);
}

TEST_F(TextureImage, EmptyImageStays)
{
    make(4, 4);
    for (const auto& [width, height] : {std::pair{4, 0}, {0, 4}, {-1, 4}, {4, -3}})
    {
        texture.width = width;
        texture.height = height;
        texture.multiply();
        texture.scaleTexture(0.5f);
        expectSize(width, height);
        EXPECT_EQ(Bytes(texture.pixels, texture.pixels + before.size()), before);
    }
    texture.filter(sharpen); // has no pixel to filter, and a buffer of none
    texture.sharpenTexture();
    ASSERT_NE(texture.pixels, nullptr);
}

TEST_F(TextureImage, FilterHasTheBytesOfThePlainOne)
{
    for (int round = 0; round < 200; ++round)
    {
        make(1 + static_cast<int>(random() % 20), 1 + static_cast<int>(random() % 20));
        int kernel[9];
        for (int& weight : kernel)
            weight = static_cast<int>(random() % 41) - 20;
        texture.filter(kernel);
        EXPECT_EQ(image(texture), plainFilter(before, texture.width, texture.height, kernel));
    }
}

TEST_F(TextureImage, FirstRowOfTheKernelMeetsTheRowBefore)
{
    make(3, 3);
    const int kernel[9] = {0, 1, 0, 0, 0, 0, 0, 0, 0};
    texture.filter(kernel);
    for (int channel = 0; channel < 4; ++channel)
        EXPECT_EQ(texture.pixels[(1 * 3 + 1) * 4 + channel], before[static_cast<size_t>(4 + channel)]);
}

TEST_F(TextureImage, IdentityKernelCopiesIntoANewBuffer)
{
    make(6, 5);
    const uint8_t* block = texture.pixels;
    const int identity[9] = {0, 0, 0, 0, 1, 0, 0, 0, 0};
    texture.filter(identity);
    EXPECT_EQ(image(texture), before);
    EXPECT_NE(texture.pixels, block);
}

TEST_F(TextureImage, KernelWithoutWeightDoesNothing)
{
    make(6, 5);
    uint8_t* block = texture.pixels;
    const int zeros[9] = {};
    const int edges[9] = {-1, 0, 1, -2, 0, 2, -1, 0, 1};
    texture.filter(zeros);
    texture.filter(edges);
    texture.filter(nullptr);
    EXPECT_EQ(texture.pixels, block);
    EXPECT_EQ(image(texture), before);
}

TEST_F(TextureImage, NegativeWeightsDivideWithTheirSign)
{
    make(7, 7);
    const int kernel[9] = {0, 0, 0, 0, -3, 0, 0, 0, 0};
    texture.filter(kernel);
    EXPECT_EQ(image(texture), before);
    const int lowered[9] = {1, 0, 0, 0, -3, 0, 0, 0, 0};
    makeFlat(5, 5, 90);
    texture.filter(lowered);
    EXPECT_EQ(texture.pixels[(2 * 5 + 2) * 4], 90);
}

TEST_F(TextureImage, DivisionTruncatesTowardsZero)
{
    makeFlat(3, 3, 0);
    const int kernel[9] = {0, 0, 0, 0, 1, 1, 0, 0, 0};
    texture.pixels[(1 * 3 + 1) * 4] = 7;
    texture.filter(kernel);
    EXPECT_EQ(texture.pixels[(1 * 3 + 1) * 4], 3);
    const int negative[9] = {0, 0, 0, 0, -1, 3, 0, 0, 0};
    makeFlat(3, 3, 0);
    texture.pixels[(1 * 3 + 1) * 4] = 1; // -1 / 2 is 0, and not -1 that would be limited to 0 as well
    texture.pixels[(1 * 3 + 2) * 4] = 1; // (-1 + 3) / 2
    texture.filter(negative);
    EXPECT_EQ(texture.pixels[(1 * 3 + 1) * 4], 1);
}

TEST_F(TextureImage, LargestWeightsDoNotOverflow)
{
    makeFlat(3, 3, 255);
    const int most = 0x7FFFFFFF;
    const int kernel[9] = {most, most, most, most, most, most, most, most, most};
    texture.filter(kernel);
    EXPECT_EQ(texture.pixels[(1 * 3 + 1) * 4], 255);
}

TEST_F(TextureImage, SharpenReadsBytesAsSigned)
{
    for (int round = 0; round < 100; ++round)
    {
        make(1 + static_cast<int>(random() % 20), 1 + static_cast<int>(random() % 20));
        texture.sharpenTexture();
        EXPECT_EQ(image(texture), plainFilter(before, texture.width, texture.height, sharpen, true));
    }
}

TEST_F(TextureImage, BrightAreasStayInFilterAndBlackenInSharpen)
{
    const int center = (2 * 5 + 2) * 4;
    makeFlat(5, 5, 200);
    texture.filter(sharpen);
    EXPECT_EQ(texture.pixels[center], 200);
    texture.sharpenTexture();
    EXPECT_EQ(texture.pixels[center], 0);
    EXPECT_EQ(texture.pixels[0], 200); // the border stays
    makeFlat(5, 5, 127);
    texture.sharpenTexture();
    EXPECT_EQ(image(texture), before);
}

TEST_F(TextureImage, TwoRowsOrColumnsHaveNoInside)
{
    for (const auto& [width, height] : {std::pair{9, 2}, {2, 9}, {9, 1}, {1, 1}})
    {
        make(width, height);
        texture.filter(sharpen);
        EXPECT_EQ(image(texture), before);
        texture.sharpenTexture();
        EXPECT_EQ(image(texture), before);
    }
}

struct ScaleCase
{
    int width, height;
    float scale;
    int newWidth, newHeight;
};

TEST_F(TextureImage, ScaleFallsToThePowerOfTwoBelow)
{
    for (const ScaleCase& c : {ScaleCase{256, 128, 0.5f, 64, 32},
                               {256, 256, 0.3f, 64, 64},
                               {256, 256, 1.0f, 128, 128},
                               {2, 2, 0.5f, 1, 1},
                               {1, 1, 0.5f, 1, 1},
                               {1, 1, 1.0f, 1, 1},
                               {4, 1, 1.0f, 2, 1},
                               {8, 8, 0.0001f, 1, 1}, // nothing would be left
                               {100, 60, 1.0f, 64, 32},
                               {2048, 4, 0.5f, 512, 1}})
    {
        make(c.width, c.height);
        texture.scaleTexture(c.scale);
        expectSize(c.newWidth, c.newHeight);
        EXPECT_EQ(image(texture), plainScale(before, c.width, c.height, c.newWidth, c.newHeight))
            << c.width << " x " << c.height << " by " << c.scale;
    }
}

TEST_F(TextureImage, ScaleHasTheBytesOfThePlainOneAtAnySize)
{
    for (int round = 0; round < 60; ++round)
    {
        const int width = 1 + static_cast<int>(random() % 70);
        const int height = 1 + static_cast<int>(random() % 70);
        make(width, height);
        texture.scaleTexture(static_cast<float>(1 + random() % 1000) / 1000.0f);
        EXPECT_EQ(image(texture), plainScale(before, width, height, texture.width, texture.height));
    }
}

TEST_F(TextureImage, ExactPowersOfTwoFallOneFurther)
{
    for (int exponent = 1; exponent <= 11; ++exponent)
    {
        make(1 << exponent, 1);
        texture.scaleTexture(1.0f);
        expectSize(1 << (exponent - 1), 1);
    }
}

TEST_F(TextureImage, ScalesOutsideOfTheRangeDoNothing)
{
    make(8, 8);
    uint8_t* block = texture.pixels;
    for (const float scale : {2.0f, 1.0001f, 0.0f, -0.5f, std::nanf("")})
        texture.scaleTexture(scale);
    expectSize(8, 8);
    EXPECT_EQ(texture.pixels, block);
    EXPECT_EQ(image(texture), before);
}
