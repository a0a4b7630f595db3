// Scenes that come out of a pack with all that belongs to them.

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "apps/vornik/packformat.h"
#include "tests/support/engine.h"
#include "tests/support/imagewriter.h"
#include "tests/support/writer3ds.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/pack.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

static const int packed = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_FROM_PACK;

static std::string text(const std::vector<uint8_t>& bytes)
{
    return std::string(bytes.begin(), bytes.end());
}

static Scene3ds example()
{
    Scene3ds scene;
    const auto material = [](const char* name, const std::vector<Map3ds>& maps)
    {
        return Material3ds{.name = name,
                           .diffuse = {{0.2f, 0.4f, 0.1f}, {0.1f, 0.1f, 0.1f, COLOR_3DS_LINEAR_BYTE}},
                           .maps = maps};
    };
    scene.materials = {
        material("wall", {{.file = "Wall.jpg"}, {.slot = MAP_3DS_OPACITY, .file = "holes.tga"}}),
        material("fire", {{.file = "fire.ifl"}})};
    scene.meshes = {{.name = "M", .vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, .faces = {{0, 1, 2}}}};
    scene.cameras = {{.name = "C", .target = {0, 1, 0}}};
    return scene;
}

class PackedScene : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        group = std::make_unique<OGroup>();
        pack = folder.write("x.pak", content());
    }
    void TearDown() override
    {
        group.reset();
        packClose();
        EngineTest::TearDown();
    }

    static std::string content()
    {
        return buildPack({{"DATA\\SCENE.3DS", text(build3ds(example()))},
                          {"DATA\\WALL.JPG", text(writeJpeg(Picture(8, 8)))},
                          {"DATA\\HOLES.TGA", text(writeTga(Picture(8, 8, 0x40404040)))},
                          {"DATA\\FIRE.IFL", "F1.TGA\nF2.TGA\n"},
                          {"DATA\\F1.TGA", text(writeTga(Picture(4, 4)))},
                          {"DATA\\F2.TGA", text(writeTga(Picture(16, 16)))}});
    }
    int load(const char* name, int flags = packed)
    {
        return load3ds(name, group.get(), "data", flags, nullptr, pack.c_str());
    }

    std::unique_ptr<OGroup> group;
    std::string pack;
};

TEST_F(PackedScene, SceneImagesAndListsComeFromThePack)
{
    ASSERT_EQ(load("data\\scene.3ds"), 0);
    EXPECT_EQ(group->meshCount, 1);
    EXPECT_EQ(group->cameraCount, 1);
    TList* list = group->tlists[0];
    const Texture* wall = list->seekMaterial("wall")->firstTexture;
    EXPECT_EQ(wall->width, 8);
    EXPECT_EQ(list->seekMaterial("wall")->opacityTexture->width, 8);
    const Texture* fire = list->seekMaterial("fire")->firstTexture;
    EXPECT_EQ(fire->frameCount, 2);
    EXPECT_EQ(fire->width, 16); // of its last frame
    EXPECT_NE(fire->textureIDs[0], fire->textureIDs[1]);
    EXPECT_EQ(log(), "Start loading...\nStart processing...\n");
    EXPECT_EQ(packStream, nullptr);
}

TEST_F(PackedScene, ImagesAtHalfTheScale)
{
    ASSERT_EQ(load("data\\scene.3ds", packed | LOAD_TEXTURE_HALF), 0);
    EXPECT_EQ(group->tlists[0]->seekMaterial("wall")->firstTexture->width, 2);
}

TEST_F(PackedScene, TolerantLoadFindsSubstitutes)
{
    Scene3ds scene = example();
    scene.materials = {{.name = "wall", .maps = {{.file = "C:\\ART\\BRICK.BMP"}}}};
    pack = folder.write("x.pak", buildPack({{"SCENE.3DS", text(build3ds(scene))},
                                            {"DATA\\BRICK.TGA", text(writeTga(Picture(6, 3)))}}));
    ASSERT_EQ(load("scene.3ds", packed | LOAD_TOLERANT), 0);
    EXPECT_EQ(group->tlists[0]->seekMaterial("wall")->firstTexture->width, 6);
}

TEST_F(PackedScene, WhatCannotBeOpened)
{
    EXPECT_EQ(load3ds("data\\scene.3ds", group.get(), "data", packed, nullptr, nullptr), 13);
    EXPECT_EQ(load3ds("data\\scene.3ds", group.get(), "data", packed, nullptr, "none.pak"), 13);
    EXPECT_EQ(load("x"), 13);
    EXPECT_EQ(load(nullptr), 13);
    EXPECT_EQ(packStream, nullptr);
    EXPECT_EQ(load("scene.3ds"), 13);
    EXPECT_NE(packStream, nullptr); // a pack without the member stays open
    std::string expected;
    for (int i = 0; i < 5; ++i)
        expected += "Start loading...\nCannot open .3DS file (possible disk error)\n";
    EXPECT_EQ(log(), expected);
    EXPECT_EQ(group->tlistCount, 0);
}

TEST_F(PackedScene, WithoutANameOfAPackNoneIsTouched)
{
    ASSERT_EQ(packOpen(pack.c_str()), 0);
    FILE* stream = packStream;
    EXPECT_EQ(load3ds("data\\scene.3ds", group.get(), "data", packed, nullptr, nullptr), 13);
    EXPECT_EQ(packStream, stream);
    EXPECT_GE(packFindEntry("data\\scene.3ds"), 0);
}

TEST_F(PackedScene, LooseFilesAreNoSubstitute)
{
    const std::string loose = folder.write("loose.3ds", build3ds(example()));
    EXPECT_EQ(load(loose.c_str()), 13);
    EXPECT_EQ(load("data\\scene.3ds", packed & ~LOAD_FROM_PACK), 13); // nor the other way round
    EXPECT_EQ(load(loose.c_str(), packed & ~LOAD_FROM_PACK), 0);
}

TEST_F(PackedScene, OtherMembersAreNoScene)
{
    pack = folder.write("x.pak", buildPack({{"TEXT.3DS", "hello"}, {"EMPTY.3DS", ""}, {"ONE.3DS", "M"}}));
    for (const char* name : {"text.3ds", "empty.3ds", "one.3ds"})
        EXPECT_EQ(load(name), 14) << name;
    EXPECT_EQ(packStream, nullptr);
    EXPECT_TRUE(logged("3DS file expected but something else encountered"));
}

TEST_F(PackedScene, MissingImagesReportAndTheLoadGoesOn)
{
    pack = folder.write("x.pak", buildPack({{"SCENE.3DS", text(build3ds(example()))}}));
    EXPECT_EQ(load("scene.3ds"), 0);
    EXPECT_EQ(group->meshCount, 1);
    EXPECT_TRUE(logged("Error loading .JPG file"));
    EXPECT_TRUE(logged("File not found!"));
    EXPECT_TRUE(logged("Error loading .IFL file"));
}

TEST_F(PackedScene, ThroughTheScene)
{
    Scene scene;
    OGroup* made = scene.createOGroup("data\\scene.3ds", packed, "data", 0, nullptr, pack.c_str());
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(scene.insertMesh(made, "data\\scene.3ds", packed, "data", pack.c_str()), 0);
    EXPECT_EQ(scene.insertMesh(0, "data\\scene.3ds", packed, "data", pack.c_str()), 0);
    EXPECT_EQ(made->meshCount, 3);
    EXPECT_EQ(scene.insertMesh(made, "none.3ds", packed, "data", pack.c_str()), 13);
    EXPECT_EQ(made->load("data\\scene.3ds", packed, "data"), 0); // it has no pack to name
    EXPECT_EQ(made->meshCount, 3);
    EXPECT_EQ(scene.createOGroup("none.3ds", packed, "data", 0, nullptr, pack.c_str()), nullptr);
}

TEST_F(PackedScene, MemberIsReadAtOnce)
{
    // At the size of the directory the one read gets other bytes: the member in front, which is a scene, too.
    Scene3ds first = example(), second = example();
    first.meshes[0].name = "FIRST";
    std::vector<uint8_t> data = build3ds(first), bytes;
    const std::vector<uint8_t> last = build3ds(second);
    const uint32_t directorySize = 3 * 264;
    ASSERT_LT(data.size(), directorySize);
    data.resize(directorySize);
    data.insert(data.end(), last.begin(), last.end());
    appendPackRecord(&bytes, 0, directorySize - 1, "FIRST.3DS");
    appendPackRecord(&bytes, directorySize, static_cast<uint32_t>(data.size() - 1), "SECOND.3DS");
    appendPackRecord(&bytes, 0xFFFFFFFF, 0, "");
    bytes.insert(bytes.end(), data.begin(), data.end());
    pack = folder.write("x.pak", bytes);
    ASSERT_EQ(load("second.3ds"), 0);
    EXPECT_STREQ(group->meshes[0]->name, "FIRST");
}

TEST_F(PackedScene, SceneOfAnyClaimedSize)
{
    std::vector<uint8_t> bytes;
    const std::vector<uint8_t> data = build3ds(example());
    appendPackRecord(&bytes, 0, 0xFFFFFFFE, "HUGE.3DS");
    appendPackRecord(&bytes, 9, 0, "REVERSED.3DS");
    appendPackRecord(&bytes, 0xFFFFFF00, 0xFFFFFFFE, "FAR.3DS");
    appendPackRecord(&bytes, 0xFFFFFFFF, 0, "");
    bytes.insert(bytes.end(), data.begin(), data.end());
    pack = folder.write("x.pak", bytes);
    EXPECT_EQ(load("huge.3ds"), 0);
    EXPECT_EQ(group->meshCount, 1);
    EXPECT_EQ(load("reversed.3ds"), 14);
    EXPECT_EQ(load("far.3ds"), 14);
}

TEST_F(PackedScene, DamagedPacksNeverHarm)
{
    const std::string whole = content();
    std::mt19937 random(7);
    for (size_t i = 0; i < whole.size() + 150;)
    {
        std::string bytes = whole;
        if (i < whole.size())
            bytes.resize(i);
        else
            for (int change = 0; change < 10; ++change)
                bytes[random() % bytes.size()] = static_cast<char>(random());
        pack = folder.write("x.pak", bytes);
        group = std::make_unique<OGroup>();
        const int result = load("data\\scene.3ds", packed | (i % 2 ? LOAD_TOLERANT : 0));
        EXPECT_TRUE(result == 0 || result == 13 || result == 14);
        // Every cut through the directory's edges, the scene and the lists; fewer through the images.
        i += i < 7 * 264 && i % 264 > 20 ? 13 : 1;
        i += i > 7 * 264 + 600 && i < whole.size() ? 6 : 0;
    }
}
