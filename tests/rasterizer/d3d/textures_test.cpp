#include "rasterizer/d3d/textures.h"

#include <cstdlib>
#include <cstring>

#include "rasterizer/d3d/constants.h"
#include "tests/support/d3drecorder.h"
#include "vornik/assets/texture.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/texture.h"

using Calls = std::vector<std::string>;

class D3DTextureTest : public D3DRecorderTest
{
protected:
    Texture texture;

    void SetUp() override
    {
        D3DRecorderTest::SetUp();
        ASSERT_EQ(start(), 0);
        texture.textureIDs[0] = static_cast<int32_t>(vrkCreateTextureName());
        fill(4, 4);
        script.calls.clear();
    }

    void TearDown() override
    {
        dropPixels();
        D3DRecorderTest::TearDown();
    }

    void dropPixels()
    {
        std::free(texture.pixels);
        texture.pixels = nullptr;
    }

    void fill(int width, int height, uint8_t r = 255, uint8_t g = 128, uint8_t b = 64, uint8_t a = 192)
    {
        std::free(texture.pixels);
        texture.width = width;
        texture.height = height;
        texture.pixels = static_cast<uint8_t*>(std::malloc(static_cast<size_t>(width * height * 4)));
        for (int i = 0; i < width * height; ++i)
        {
            const uint8_t pixel[] = {r, g, b, a};
            std::memcpy(texture.pixels + i * 4, pixel, 4);
        }
    }

    D3DTextureEntry* entry(int frame = 0)
    {
        return findTexture(static_cast<uint32_t>(texture.textureIDs[frame]));
    }
    const D3DTextureRequest& request() const { return script.textureRequests.back(); }
};

TEST_F(D3DTextureTest, NamesCountUp)
{
    const unsigned int first = vrkCreateTextureName();
    EXPECT_EQ(vrkCreateTextureName(), first + 1);
    EXPECT_EQ(vrkCreateTextureName(), first + 2);
}

TEST_F(D3DTextureTest, UploadKeepsTheImage)
{
    texture.setFilename("WALL.TGA", 0);
    EXPECT_FALSE(vrkTextureUploaded(texture.textureIDs[0]));
    EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
    EXPECT_TRUE(vrkTextureUploaded(texture.textureIDs[0]));
    const D3DTextureEntry* kept = entry();
    ASSERT_NE(kept, nullptr);
    EXPECT_STREQ(kept->name, "WALL.TGA");
    EXPECT_EQ(kept->width, 4);
    EXPECT_EQ(kept->height, 4);
    EXPECT_EQ(kept->bitsPerPixel, 32);
    EXPECT_EQ(kept->stage, 0u);
    EXPECT_TRUE(kept->mipmap);
    EXPECT_EQ(kept->pixels, std::vector<uint32_t>(16, 0xFF8040C0));
    EXPECT_NE(kept->surface, nullptr);
}

TEST_F(D3DTextureTest, NewestImageComesFirst)
{
    vrkUploadTexture(&texture, 0);
    D3DTextureEntry* first = entry();
    texture.textureIDs[1] = static_cast<int32_t>(vrkCreateTextureName());
    vrkUploadTexture(&texture, 1);
    EXPECT_EQ(entry(1)->next, first);
}

TEST_F(D3DTextureTest, FlagsTellDepthAndMipMaps)
{
    const std::tuple<int, bool, uint32_t> cases[] = {{16, true, 56},  {16, false, 24}, {32, true, 52},
                                                     {32, false, 20}, {24, true, 56},  {0, false, 24}};
    for (const auto& [bits, mipmap, flags] : cases)
    {
        texture.textureIDs[0] = static_cast<int32_t>(vrkCreateTextureName());
        texture.bitsPerTexel = bits;
        texture.mipmap = mipmap;
        vrkUploadTexture(&texture, 0);
        EXPECT_EQ(entry()->flags, flags) << bits;
        EXPECT_EQ(entry()->mipmap, mipmap);
        EXPECT_EQ(request().format.bits, bits == 32 ? 32u : 16u);
        EXPECT_EQ(request().mipmap, mipmap);
        EXPECT_EQ(request().levels, mipmap ? 2 : 1);
        EXPECT_FALSE(request().systemMemory);
    }
}

TEST_F(D3DTextureTest, SixteenBitsHaveFourOfAlpha)
{
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(request().format, commonTextureFormats()[2]);
    ASSERT_EQ(script.levels.size(), 2u);
    EXPECT_EQ(script.unlocks, 2);
    uint16_t texel;
    std::memcpy(&texel, script.levels[0].data(), 2);
    EXPECT_EQ(texel, 0xCF84);
    std::memcpy(&texel, script.levels[1].data(), 2); // the lower level
    EXPECT_EQ(texel, 0xCF84);
}

TEST_F(D3DTextureTest, LowerLevelsAreAverages)
{
    texture.bitsPerTexel = 32;
    fill(8, 8, 0, 0, 0, 0);
    for (int i = 0; i < 64; i += 2)
        texture.pixels[i * 4] = 200; // every second column is red
    vrkUploadTexture(&texture, 0);
    ASSERT_EQ(script.levels.size(), 3u);
    uint32_t texel;
    std::memcpy(&texel, script.levels[0].data(), 4);
    EXPECT_EQ(texel, 200u << 16);
    for (const size_t level : {1, 2})
    {
        std::memcpy(&texel, script.levels[level].data(), 4);
        EXPECT_EQ(texel, 100u << 16) << level;
    }
}

TEST_F(D3DTextureTest, ThirtyTwoBitsKeepAll)
{
    texture.bitsPerTexel = 32;
    texture.mipmap = false;
    vrkUploadTexture(&texture, 0);
    ASSERT_EQ(script.levels.size(), 1u);
    uint32_t texel;
    std::memcpy(&texel, script.levels[0].data(), 4);
    EXPECT_EQ(texel, 0xC0FF8040u);
}

TEST_F(D3DTextureTest, OddSizesAreRaised)
{
    fill(100, 33);
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(request().width, 128);
    EXPECT_EQ(request().height, 64);
    EXPECT_EQ(request().levels, 6);
    EXPECT_EQ(entry()->width, 100); // the image stays as it came

    d3d->selectedDevice->caps.triangleTexture = 0;
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(request().width, 100);
    EXPECT_EQ(request().height, 33);
}

TEST_F(D3DTextureTest, SoftwareDevicesKeepTexturesInSystemMemory)
{
    d3d->selectedDevice->hardware = false;
    vrkUploadTexture(&texture, 0);
    EXPECT_TRUE(request().systemMemory);
}

TEST_F(D3DTextureTest, SecondUploadUnderANameKeepsTheFirstImage)
{
    vrkUploadTexture(&texture, 0);
    fill(8, 8, 1, 2, 3, 4);
    texture.bitsPerTexel = 32;
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(entry()->width, 4);
    EXPECT_EQ(entry()->pixels.front(), 0xFF8040C0);
    EXPECT_EQ(script.textureRequests.size(), 2u); // built again all the same
    EXPECT_EQ(request().width, 4);
    EXPECT_EQ(request().format.bits, 16u);
    EXPECT_EQ(script.texturesAlive, 1);

    dropPixels(); // which aren't looked at any more
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(script.textureRequests.size(), 3u);
    EXPECT_EQ(script.texturesAlive, 1);
}

TEST_F(D3DTextureTest, NameWithoutAnImageStaysWithout)
{
    dropPixels();
    vrkUploadTexture(&texture, 0);
    EXPECT_FALSE(vrkTextureUploaded(texture.textureIDs[0]));
    EXPECT_EQ(script.texturesAlive, 0);
}

TEST_F(D3DTextureTest, DeletedTexturesStay)
{
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(vrkDeleteTexture(static_cast<unsigned>(texture.textureIDs[0])), 0);
    EXPECT_TRUE(vrkTextureUploaded(texture.textureIDs[0]));
    EXPECT_EQ(script.texturesAlive, 1);
}

TEST_F(D3DTextureTest, BindsTheSurfaceOfTheCurrentFrame)
{
    texture.textureIDs[1] = static_cast<int32_t>(vrkCreateTextureName());
    texture.textureIDs[2] = static_cast<int32_t>(vrkCreateTextureName());
    texture.mipmap = false;
    vrkUploadTexture(&texture, 0);
    vrkUploadTexture(&texture, 1);
    texture.rotation = 45.0f;
    texture.scaleU = 2.0f;
    script.calls.clear();
    for (const int frame : {1, 0, 2, -1, 64})
    {
        texture.currentFrame = frame;
        vrkSetTexture(&texture);
    }
    vrkSetTexture(nullptr);
    // No transform; frames without an image, or that don't exist, take the texture away.
    EXPECT_EQ(script.calls, (Calls{"texture 0 2", "texture 0 1", "texture 0 none", "texture 0 none",
                                   "texture 0 none", "texture 0 none"}));
}

TEST_F(D3DTextureTest, UploadBeforeTheStartIsBuiltAtTheStart)
{
    vrkUnInit3D();
    texture.mipmap = false;
    vrkUploadTexture(&texture, 0);
    EXPECT_TRUE(vrkTextureUploaded(texture.textureIDs[0]));
    EXPECT_EQ(entry()->surface, nullptr);
    EXPECT_EQ(buildTexture(entry(), {}), 0x80070057u);
    start();
    EXPECT_NE(entry()->surface, nullptr);
}

TEST_F(D3DTextureTest, ShutdownReleasesSurfacesAndKeepsImages)
{
    vrkUploadTexture(&texture, 0);
    vrkUnInit3D();
    EXPECT_EQ(script.texturesAlive, 0);
    EXPECT_TRUE(vrkTextureUploaded(texture.textureIDs[0]));
    start();
    EXPECT_GE(script.texturesAlive, 1);
    EXPECT_NE(textureSurface(entry()->textureName), nullptr);
}

TEST_F(D3DTextureTest, LostTexturesComeBackFromTheirImages)
{
    texture.mipmap = false;
    vrkUploadTexture(&texture, 0);
    fill(1, 1, 0, 0, 0, 0);
    script.levels.clear();
    script.presentResults = {d3d::surfaceLost};
    vrkSwapBuffers();
    ASSERT_FALSE(script.levels.empty());
    uint16_t texel;
    std::memcpy(&texel, script.levels.front().data(), 2); // the newest comes first
    EXPECT_EQ(texel, 0xCF84);

    script.levels.clear();
    vrkDXRestoreSurfaces();
    EXPECT_FALSE(script.levels.empty());
}

TEST_F(D3DTextureTest, TexturesWaitForSurfacesThatStayLost)
{
    vrkUploadTexture(&texture, 0);
    script.levels.clear();
    script.presentResults = {d3d::surfaceLost, d3d::surfaceLost};
    script.restoreResult = d3d::noExclusiveMode;
    vrkSwapBuffers();
    EXPECT_TRUE(script.levels.empty());
    script.restoreResult = d3d::ok;
    vrkSwapBuffers();
    EXPECT_FALSE(script.levels.empty());
}

TEST_F(D3DTextureTest, WhatTheDeviceRefusesIsDrawnUntextured)
{
    script.noTextures = true;
    EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
    EXPECT_EQ(buildTexture(entry(), d3d->textureTarget()), 0x8007000Eu);
    script.calls.clear();
    vrkSetTexture(&texture);
    EXPECT_EQ(script.calls, (Calls{"texture 0 none"}));

    script.noTextures = false;
    script.textureFormats.clear();
    EXPECT_EQ(buildTexture(entry(), d3d->textureTarget()), 0x80004005u);
    EXPECT_EQ(entry()->surface, nullptr);
}

TEST_F(D3DTextureTest, LevelsThatCannotBeLockedStayEmpty)
{
    script.noLocks = true;
    EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
    EXPECT_EQ(script.levels.size(), 0u);
    EXPECT_EQ(script.unlocks, 0);
}

TEST_F(D3DTextureTest, WithoutAnImageNothingIsUploaded)
{
    std::free(texture.pixels);
    texture.pixels = nullptr;
    vrkUploadTexture(&texture, 0);
    vrkUploadTexture(nullptr, 0);
    fill(4, 4);
    vrkUploadTexture(&texture, 64);
    vrkUploadTexture(&texture, -1);
    texture.width = 0;
    vrkUploadTexture(&texture, 0);
    EXPECT_FALSE(vrkTextureUploaded(texture.textureIDs[0]));
    EXPECT_EQ(script.textureRequests.size(), 0u);
}
