// The shared library driven by a host that sees only its public headers.

#include <gtest/gtest.h>

#include <GL/gl.h>

#include <filesystem>
#include <string>
#include <vector>

#include "apps/vornik/surface.h"
#include "tests/support/tempfolder.h"
#include "tests/support/writer3ds.h"
#include "vornik/vornik.h"

int drawTriangle(VRKWindow surface);

static int redAt(int x, int y)
{
    unsigned char pixel[4] = {};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
    return pixel[0];
}

// In a folder of its own, where the engine writes its log.
class Host : public ::testing::Test
{
protected:
    Host() : before(std::filesystem::current_path()) { std::filesystem::current_path(folder.root()); }
    ~Host() override
    {
        vrkInitErrorLog(3);
        std::filesystem::current_path(before);
    }
    TempFolder folder;
    std::filesystem::path before;
};

TEST_F(Host, OfTheOldestLanguageDraws)
{
    const Surface surface(64, 48);
    EXPECT_EQ(drawTriangle(surface.window()), 0);
    EXPECT_GT(redAt(32, 20), 200);
    EXPECT_EQ(redAt(1, 46), 0);
    EXPECT_NE(folder.readText("VRKERROR.LOG"), "");
}

TEST_F(Host, HoldsManyGroups)
{
    const Surface surface(32, 32);
    ASSERT_EQ(initVornik(0, surface.window()), 0);
    const std::string file = folder.write(
        "a.3ds",
        build3ds(
            {.meshes = {{.name = "M", .vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, .faces = {{0, 1, 2}}}},
             .cameras = {{.name = "C", .target = {0, 1, 0}}}}));
    Scene scene;
    for (int i = 0; i < 300; ++i)
    {
        OGroup* group = scene.createOGroup(file.c_str(), LOAD_MESHES | LOAD_CAMERAS | LOAD_MATERIALS, "", 0,
                                           nullptr, nullptr);
        EXPECT_EQ(group != nullptr, i < 256) << i;
    }
    EXPECT_EQ(scene.groupCount, 256);
    EXPECT_EQ(scene.render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW), 0);
    while (scene.groupCount > 0)
        ASSERT_EQ(scene.deleteOGroup(scene.groups[scene.groupCount / 2]), 0);
    EXPECT_EQ(scene.camera, nullptr);
}

TEST_F(Host, ReadsItsOwnChunks)
{
    // The chunk reader is there for hosts that keep data of their own in a scene file.
    ChunkWriter out;
    out.open(0x1234).u16(77).text("own data").close();
    const std::vector<uint8_t> bytes = out.finish();
    std::vector<char> block(bytes.begin(), bytes.end());
    block.resize(bytes.size() + VRK_LOADER_PADDING);
    vrkLoader.initData(block.data(), static_cast<int>(bytes.size()));
    vrkLoader.getChunkID();
    EXPECT_EQ(vrkLoader.chunkID, 0x1234);
    EXPECT_EQ(vrkLoader.getShort(), 77);
    char text[16] = {};
    vrkLoader.getString(text, sizeof text);
    EXPECT_STREQ(text, "own data");
    EXPECT_TRUE(vrkLoader.atEnd);
}
