// The pass of a load that reads the images of materials.

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "tests/assets/loadtest.h"
#include "tests/support/imagewriter.h"
#include "vornik/assets/texture.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"

class LoadTextures : public LoadTest
{
};

TEST_F(LoadTextures, ProgressOfTheTexturePassCountsMaterials)
{
    ASSERT_EQ(load({.materials = {paired("A"), paired("B")}}, LOAD_MATERIALS), 0);
    ASSERT_GE(fractions.size(), 7u);
    const std::vector<float> passes(fractions.end() - 7, fractions.end());
    EXPECT_EQ(passes, (std::vector<float>{0.5f, 1.0f / 2.0f * 0.2f + 0.5f, 1.0f * 0.2f + 0.5f, 0.7f, 0.9f,
                                          0.95f, 1.0f}));
}

TEST_F(LoadTextures, ProgressIsNoNumberWithoutMaterialsInTheFile)
{
    ASSERT_EQ(load(ChunkWriter().empty(0x4D4D).finish(), LOAD_MATERIALS), 0);
    ASSERT_EQ(fractions.size(), 5u);
    EXPECT_TRUE(std::isnan(fractions[0]));
}

TEST_F(LoadTextures, MaterialWithoutImageGetsOneOfItsColor)
{
    ASSERT_EQ(load({.materials = {paired("A")}}, LOAD_MATERIALS), 0);
    for (int id : {0, 1})
    {
        ASSERT_NE(material(id)->firstTexture, nullptr);
        EXPECT_STREQ(material(id)->firstTexture->names[0], "VRKCreated.VRK");
        EXPECT_EQ(material(id)->firstTexture->width, 4);
        EXPECT_GT(material(id)->firstTexture->textureIDs[0], 0);
    }
}

TEST_F(LoadTextures, MaterialWithoutColorIsReported)
{
    ASSERT_EQ(load({.materials = {{.name = "A"}}}, LOAD_MATERIALS), 0);
    EXPECT_TRUE(logged("Material contains no diffuse values"));
}

TEST_F(LoadTextures, FirstTextureIsReadAndHandedToTheRasterizer)
{
    folder.write("WALL.TGA", writeTga(Picture(8, 4, 0x336699FF)));
    ASSERT_EQ(load({.materials = {paired("A", {{.file = "wall.tga"},
                                               {.slot = MAP_3DS_REFLECTION, .file = "wall.tga"},
                                               {.slot = MAP_3DS_TEXTURE2, .file = "wall.tga"}})}},
                   LOAD_MATERIALS),
              0);
    const Texture* texture = material(1)->firstTexture;
    EXPECT_EQ(texture->width, 8);
    EXPECT_EQ(texture->height, 4);
    EXPECT_GT(texture->textureIDs[0], 0);
    EXPECT_EQ(texture->pixels, nullptr);
    // The other maps are named and never read.
    EXPECT_EQ(material(1)->reflectionTexture->width, 0);
    EXPECT_EQ(material(1)->secondTexture->width, 0);
    EXPECT_EQ(material(1)->secondTexture->textureIDs[0], 0);
}

TEST_F(LoadTextures, HalfFlagScalesImages)
{
    folder.write("WALL.TGA", writeTga(Picture(64, 64, 0x336699FF)));
    const Scene3ds scene = {.materials = {paired("A", {{.file = "WALL.TGA"}})}};
    ASSERT_EQ(load(scene, LOAD_MATERIALS | LOAD_TEXTURE_HALF), 0);
    EXPECT_EQ(material(1)->firstTexture->width, 16); // an exact power falls to the next one below
}

TEST_F(LoadTextures, FramesOfAListAreReadBehindItsName)
{
    folder.write("ONE.TGA", writeTga(Picture(2, 2, 0xFF0000FF)));
    folder.write("TWO.TGA", writeTga(Picture(4, 4, 0x00FF00FF)));
    folder.write("FILM.IFL", "ONE.TGA\nTWO.TGA\n");
    ASSERT_EQ(load({.materials = {paired("A", {{.file = "FILM.IFL"}})}}, LOAD_MATERIALS), 0);
    const Texture* texture = material(1)->firstTexture;
    EXPECT_EQ(texture->frameCount, 2);
    EXPECT_EQ(texture->width, 4); // of the frame read last
    EXPECT_GT(texture->textureIDs[0], 0);
    EXPECT_GT(texture->textureIDs[1], 0);
    EXPECT_EQ(texture->textureIDs[2], 0);
    EXPECT_NE(texture->textureIDs[0], texture->textureIDs[1]);
}

TEST_F(LoadTextures, OpacityMapIsFoldedInAndDropped)
{
    folder.write("WALL.TGA", writeTga(Picture(4, 4, 0x336699FF)));
    folder.write("HOLES.TGA", writeTga(Picture(4, 4, 0x303030FF)));
    const Scene3ds scene = {
        .materials = {paired("A", {{.file = "WALL.TGA"}, {.slot = MAP_3DS_OPACITY, .file = "HOLES.TGA"}})}};
    ASSERT_EQ(load(scene, LOAD_MATERIALS), 0);
    EXPECT_EQ(material(1)->firstTexture->environment, VRK_DECAL);
    EXPECT_EQ(material(1)->transparency, 1.0f);
    EXPECT_EQ(material(1)->opacityTexture->pixels, nullptr);
    EXPECT_EQ(material(1)->opacityTexture->width, 4);
    EXPECT_EQ(material(1)->opacityTexture->textureIDs[0], 0);
}

TEST_F(LoadTextures, FramesOfAnOpacityMapGoByItsOwnNumber)
{
    for (const char* name : {"WALL.TGA", "ONE.TGA", "TWO.TGA"})
        folder.write(name, writeTga(Picture(4, 4, 0x336699FF)));
    folder.write("FILM.IFL", "ONE.TGA\nTWO.TGA\n");
    folder.write("HOLE1.TGA", writeTga(Picture(8, 8, 0x303030FF)));
    folder.write("HOLE2.TGA", writeTga(Picture(16, 16, 0x303030FF)));
    folder.write("HOLES.IFL", "HOLE1.TGA\nHOLE2.TGA\n");
    const auto opacity = [](const char* name) { return Map3ds{.slot = MAP_3DS_OPACITY, .file = name}; };

    // The first frame of the list on a single image.
    ASSERT_EQ(
        load({.materials = {paired("A", {{.file = "WALL.TGA"}, opacity("HOLES.IFL")})}}, LOAD_MATERIALS), 0);
    EXPECT_EQ(material(1)->opacityTexture->frameCount, 2);
    EXPECT_EQ(material(1)->opacityTexture->width, 8);
    EXPECT_FALSE(logged("Texture (image) format not supported"));

    // A single image has no second frame for that of a list.
    group = std::make_unique<OGroup>();
    ASSERT_EQ(
        load({.materials = {paired("A", {{.file = "FILM.IFL"}, opacity("HOLE2.TGA")})}}, LOAD_MATERIALS), 0);
    EXPECT_EQ(material(1)->opacityTexture->width, 16);
    EXPECT_GT(material(1)->firstTexture->textureIDs[1], 0);
    EXPECT_TRUE(logged("Texture (image) format not supported"));
}

TEST_F(LoadTextures, OpacityMapWithoutAFirstTextureIsLeft)
{
    ASSERT_EQ(
        load({.materials = {paired("A", {{.slot = MAP_3DS_OPACITY, .file = "NONE.TGA"}})}}, LOAD_MATERIALS),
        0);
    EXPECT_STREQ(material(1)->firstTexture->names[0], "VRKCreated.VRK");
    EXPECT_EQ(material(1)->transparency, 0.0f);
    EXPECT_FALSE(logged("Error loading .TGA file"));
}

TEST_F(LoadTextures, MissingImageIsReportedAndTheLoadGoesOn)
{
    folder.write("WALL.TGA", writeTga(Picture(4, 4, 0x336699FF)));
    ASSERT_EQ(load({.materials = {paired("A", {{.file = "NONE.TGA"}}), paired("B", {{.file = "WALL.TGA"}})}},
                   LOAD_MATERIALS),
              0);
    EXPECT_TRUE(logged("Error loading .TGA file"));
    EXPECT_EQ(material(2)->firstTexture->width, 4);
    // What there is is handed over all the same.
    EXPECT_GT(material(1)->firstTexture->textureIDs[0], 0);
    EXPECT_EQ(material(1)->firstTexture->pixels, nullptr);
}

// Reads the texture of the first material back as one pixel.
static Pixel textureColor(const OGroup* group)
{
    const Texture* texture = group->tlists[0]->getMaterial(1)->firstTexture;
    uint8_t bytes[8 * 8 * 4] = {};
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture->textureIDs[0]));
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
    return {bytes[0], bytes[1], bytes[2], bytes[3]};
}

TEST_F(LoadTextures, ModifierFlagRaisesTheContrastOfImages)
{
    folder.write("WALL.TGA", writeTga(Picture(8, 8, 0x64503CFF)));
    const Scene3ds scene = {.materials = {paired("A", {{.file = "WALL.TGA"}})}};
    ASSERT_EQ(load(scene, LOAD_MATERIALS | LOAD_TEXTURE_32BIT), 0);
    EXPECT_EQ(textureColor(group.get()), (Pixel{100, 80, 60, 255}));
    group = std::make_unique<OGroup>();
    ASSERT_EQ(load(scene, LOAD_MATERIALS | LOAD_TEXTURE_32BIT | LOAD_TEXTURE_MODIFIER), 0);
    EXPECT_EQ(textureColor(group.get()), (Pixel{172, 132, 92, 255}));
}

TEST_F(LoadTextures, ModifierFlagRaisesTheContrastOfOpacityMapsToo)
{
    folder.write("WALL.TGA", writeTga(Picture(8, 8, 0x64503CFF)));
    folder.write("HOLES.TGA", writeTga(Picture(8, 8, 0x282828FF)));
    const Scene3ds scene = {
        .materials = {paired("A", {{.file = "WALL.TGA"}, {.slot = MAP_3DS_OPACITY, .file = "HOLES.TGA"}})}};
    ASSERT_EQ(load(scene, LOAD_MATERIALS | LOAD_TEXTURE_32BIT), 0);
    EXPECT_EQ(textureColor(group.get()).a, 40);
    group = std::make_unique<OGroup>();
    ASSERT_EQ(load(scene, LOAD_MATERIALS | LOAD_TEXTURE_32BIT | LOAD_TEXTURE_MODIFIER), 0);
    EXPECT_EQ(textureColor(group.get()).a, 52);
}
