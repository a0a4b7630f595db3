#include "vornik/scene/material.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "vornik/assets/texture.h"
#include "vornik/rasterizer/texture.h"

TEST(Material, Defaults)
{
    const Material material;
    EXPECT_STREQ(material.name, "DEFAULT");
    EXPECT_EQ(material.id, 0);
    EXPECT_EQ(material.selfIllumination, 0.0f);
    EXPECT_EQ(material.transparency, 0.0f);
    EXPECT_EQ(material.firstTexture, nullptr);
    EXPECT_EQ(material.secondTexture, nullptr);
    EXPECT_EQ(material.opacityTexture, nullptr);
    EXPECT_EQ(material.reflectionTexture, nullptr);
    EXPECT_EQ(material.ambient, nullptr);
    EXPECT_EQ(material.diffuse, nullptr);
    EXPECT_EQ(material.specular, nullptr);
    EXPECT_EQ(material.next, nullptr);
    EXPECT_EQ(material.tiled, 1);
    EXPECT_EQ(material.twoSided, 0);
    EXPECT_EQ(material.wire, 0);
    EXPECT_EQ(material.wireSize, 0.0f);
}

TEST(Material, LongNamesAreCut)
{
    Material material;
    material.setName(std::string(500, 'm').c_str());
    EXPECT_EQ(std::string(material.name), std::string(255, 'm'));
}

TEST(Material, SlotsTakeTexturesAndColours)
{
    Material material;
    Texture *first = new Texture, *second = new Texture, *opacity = new Texture, *reflection = new Texture;
    EXPECT_EQ(material.addFirstTexture(first), 0);
    EXPECT_EQ(material.addSecondTexture(second), 0);
    EXPECT_EQ(material.addOpacityTexture(opacity), 0);
    EXPECT_EQ(material.addReflectionTexture(reflection), 0);
    EXPECT_EQ(material.firstTexture, first);
    EXPECT_EQ(material.secondTexture, second);
    EXPECT_EQ(material.opacityTexture, opacity);
    EXPECT_EQ(material.reflectionTexture, reflection);
    Color colors[3];
    EXPECT_EQ(material.addAmbientColor(&colors[0]), 0);
    EXPECT_EQ(material.addSpecularColor(&colors[1]), 0);
    EXPECT_EQ(material.addDiffuseColor(&colors[2]), 0);
    EXPECT_EQ(material.ambient, &colors[0]);
    EXPECT_EQ(material.specular, &colors[1]);
    EXPECT_EQ(material.diffuse, &colors[2]);
}

// A texture whose pixels are counted up in their red byte, with all bytes of pixel i equal to value(i).
template <typename Value>
static Texture* makeImage(int width, int height, int bytesPerPixel, Value value)
{
    Texture* texture = new Texture;
    texture->width = width;
    texture->height = height;
    texture->bytesPerPixel = bytesPerPixel;
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    texture->pixels = static_cast<uint8_t*>(std::malloc(count * 4));
    for (size_t i = 0; i < count; ++i)
        std::memset(texture->pixels + i * 4, value(static_cast<int>(i)), 4);
    return texture;
}

static uint8_t alphaOf(const Material& material, int pixel)
{
    return material.firstTexture->pixels[pixel * 4 + 3];
}

TEST(Material, AnOpacityImageOfFourBytesGivesItsAlpha)
{
    Material material;
    material.addFirstTexture(makeImage(4, 2, 3, [](int) { return 9; }));
    material.addOpacityTexture(makeImage(4, 2, 4, [](int i) { return i * 10; }));
    material.calcAlpha();
    EXPECT_EQ(material.firstTexture->environment, 13);
    EXPECT_EQ(material.transparency, 1.0f);
    for (int i = 0; i < 8; ++i)
    {
        EXPECT_EQ(alphaOf(material, i), i * 10);
        EXPECT_EQ(material.firstTexture->pixels[i * 4], 9);
    }
}

TEST(Material, AnOpacityImageOfThreeBytesGivesTheSignedAverage)
{
    Material material;
    material.addFirstTexture(makeImage(4, 1, 3, [](int) { return 9; }));
    material.addOpacityTexture(makeImage(4, 1, 3, [](int i) { return i == 0 ? 100 : 200; }));
    uint8_t* opacity = material.opacityTexture->pixels;
    const uint8_t third[3] = {255, 255, 0}, fourth[3] = {1, 1, 0};
    std::memcpy(opacity + 8, third, 3);
    std::memcpy(opacity + 12, fourth, 3);
    material.calcAlpha();
    EXPECT_EQ(alphaOf(material, 0), 100);
    EXPECT_EQ(alphaOf(material, 1), 200);
    EXPECT_EQ(alphaOf(material, 2), 0); // (-1 - 1 + 0) / 3 truncates
    EXPECT_EQ(alphaOf(material, 3), 0); // (1 + 1 + 0) / 3
}

TEST(Material, AnOpacityImageOfAnotherDepthChangesNoAlpha)
{
    Material material;
    material.addFirstTexture(makeImage(2, 1, 3, [](int) { return 9; }));
    material.addOpacityTexture(makeImage(2, 1, 1, [](int) { return 77; }));
    material.calcAlpha();
    EXPECT_EQ(alphaOf(material, 0), 9);
    EXPECT_EQ(material.firstTexture->environment, 13);
    EXPECT_EQ(material.transparency, 1.0f);
}

TEST(Material, WithoutBothImagesTheMaterialStaysOrdinary)
{
    Material material;
    material.calcAlpha(); // no texture at all
    material.addFirstTexture(makeImage(2, 1, 3, [](int) { return 9; }));
    material.firstTexture->environment = 13;
    material.calcAlpha();
    EXPECT_EQ(material.firstTexture->environment, 12);
    EXPECT_EQ(material.transparency, 0.0f);
    material.addOpacityTexture(new Texture);
    material.calcAlpha();
    EXPECT_EQ(material.firstTexture->environment, 12);
    EXPECT_EQ(material.transparency, 0.0f);
}

TEST(Material, AnOpacityImageThatHasShrunkCanBeReadAtItsOldSize)
{
    Material material;
    material.addFirstTexture(makeImage(2, 2, 3, [](int) { return 9; }));
    material.addOpacityTexture(makeImage(64, 64, 4, [](int) { return 5; }));
    material.calcAlpha();
    EXPECT_EQ(material.opacityTexture->width, 64);
    const uint8_t* pixels = material.opacityTexture->pixels;
    EXPECT_EQ(pixels[2 * 2 * 4 - 1], 5);
    EXPECT_EQ(pixels[64 * 64 * 4 - 1], 0);
    material.calcAlpha();
    EXPECT_EQ(alphaOf(material, 0), 5);
}

TEST(Material, ALargerOpacityImageIsSampledAtTheStrideOfTheDestination)
{
    Material material;
    material.addFirstTexture(makeImage(2, 2, 3, [](int) { return 9; }));
    material.addOpacityTexture(makeImage(4, 4, 4, [](int i) { return i; }));
    material.calcAlpha();
    // Rows 0 and 2, columns 0 and 2, but rows are two pixels apart.
    EXPECT_EQ(alphaOf(material, 0), 0);
    EXPECT_EQ(alphaOf(material, 1), 2);
    EXPECT_EQ(alphaOf(material, 2), 4);
    EXPECT_EQ(alphaOf(material, 3), 6);
    EXPECT_EQ(material.opacityTexture->width, 4);
    EXPECT_EQ(material.opacityTexture->height, 4);
}

TEST(Material, ASmallerOpacityImageRunsOutAndIsClearFromThere)
{
    Material material;
    material.addFirstTexture(makeImage(4, 4, 3, [](int) { return 9; }));
    material.addOpacityTexture(makeImage(2, 2, 4, [](int i) { return 10 + i; }));
    material.calcAlpha();
    // Row 0 reads pixels 0, 0, 1, 1; row 2 begins at index 4, which the image doesn't have.
    const int expected[16] = {10, 10, 11, 11, 10, 10, 11, 11};
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(alphaOf(material, i), expected[i]) << i;
}

TEST(Material, AnOpacityImageIsScaledWhereEitherSideDiffers)
{
    Material lower;
    lower.addFirstTexture(makeImage(2, 2, 3, [](int) { return 9; }));
    lower.addOpacityTexture(makeImage(2, 1, 4, [](int i) { return 10 + i; }));
    lower.calcAlpha();
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(alphaOf(lower, i), 10 + i % 2) << i;

    Material wider;
    wider.addFirstTexture(makeImage(2, 1, 3, [](int) { return 9; }));
    wider.addOpacityTexture(makeImage(3, 1, 4, [](int i) { return 10 + i; }));
    wider.calcAlpha();
    EXPECT_EQ(alphaOf(wider, 0), 10);
    EXPECT_EQ(alphaOf(wider, 1), 11); // column 1.5
}

class MaterialTexture : public EngineTest
{
};

TEST_F(MaterialTexture, WithoutADiffuseColourThereIsNoTexture)
{
    Material material;
    EXPECT_EQ(material.makeTextureFromColor(), 30);
    EXPECT_TRUE(logged("Material contains no diffuse values"));
    EXPECT_EQ(material.firstTexture, nullptr);
}

TEST_F(MaterialTexture, AColourBecomesASmallTexture)
{
    Material material;
    Color color = {1, 0.5f, 0, 1};
    material.addDiffuseColor(&color);
    EXPECT_EQ(material.makeTextureFromColor(), 0);
    ASSERT_NE(material.firstTexture, nullptr);
    const Texture& texture = *material.firstTexture;
    EXPECT_EQ(texture.width, 4);
    EXPECT_EQ(texture.height, 4);
    EXPECT_STREQ(texture.names[0], "VRKCreated.VRK");
    EXPECT_EQ(texture.pixels, nullptr);
    EXPECT_TRUE(vrkTextureUploaded(texture.textureIDs[0]));
}

TEST_F(MaterialTexture, WithoutANameTheTextureStaysWithItsPixels)
{
    Material material;
    // Truncated, and the low 8 bits of what is out of range: -51 and 510.
    Color color = {0.999f, 0.5f, -0.2f, 2.0f};
    material.addDiffuseColor(&color);
    GLRecorder gl(GLRecorder::swallow);
    gl.textureName = 0xFFFFFFFF; // negative as a number of the engine
    EXPECT_EQ(material.makeTextureFromColor(), 11);
    EXPECT_TRUE(logged("Cannot upload texture (possible openGL error)"));
    ASSERT_NE(material.firstTexture, nullptr);
    ASSERT_NE(material.firstTexture->pixels, nullptr);
    EXPECT_EQ(material.firstTexture->width, 0);
    EXPECT_EQ(material.firstTexture->textureIDs[0], 0);
    const uint8_t expected[4] = {254, 127, 205, 254};
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ(material.firstTexture->pixels[i], expected[i % 4]) << i;
}

TEST_F(MaterialTexture, WhatNoIntegerHoldsIsBlack)
{
    Material material;
    Color color = {std::nanf(""), 1e30f, -1e30f, 1};
    material.addDiffuseColor(&color);
    GLRecorder gl(GLRecorder::swallow);
    gl.textureName = 0xFFFFFFFF;
    EXPECT_EQ(material.makeTextureFromColor(), 11);
    const uint8_t expected[4] = {0, 0, 0, 255};
    EXPECT_EQ(std::memcmp(material.firstTexture->pixels, expected, 4), 0);
}

TEST_F(MaterialTexture, DestructionReleasesTheTextures)
{
    int name = 0;
    {
        Material material;
        Color color = {1, 0, 0, 1};
        material.addDiffuseColor(&color);
        material.makeTextureFromColor();
        name = material.firstTexture->textureIDs[0];
        EXPECT_TRUE(vrkTextureUploaded(name));
    }
    EXPECT_FALSE(vrkTextureUploaded(name));
}
