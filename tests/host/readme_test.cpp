// The host of the README, built from its text, draws what it says.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/imagewriter.h"
#include "tests/support/tempfolder.h"
#include "tests/support/writer3ds.h"

// A large wall with a red image, in front of a camera, and a lamp.
static Scene3ds wall()
{
    Scene3ds scene;
    scene.materials = {{.name = "wall",
                        .ambient = {{0.2f, 0.2f, 0.2f}},
                        .diffuse = {{0.8f, 0.8f, 0.8f}},
                        .specular = {{1, 1, 1}},
                        .maps = {{.file = "RED.TGA"}}}};
    scene.meshes = {{.name = "wall",
                     .vertices = {{-50, 40, -50}, {50, 40, -50}, {50, 40, 50}, {-50, 40, 50}},
                     .faces = {{0, 1, 2}, {0, 2, 3}},
                     .textureCoords = {{0, 0}, {1, 0}, {1, 1}, {0, 1}},
                     .groups = {{"wall", {0, 1}}}}};
    scene.lights = {{.name = "lamp",
                     .position = {0, -20, 0},
                     .color = {{1, 1, 1, COLOR_3DS_FLOAT}},
                     .innerRange = 500.0f,
                     .outerRange = 1000.0f}};
    scene.cameras = {{.name = "eye", .target = {0, 40, 0}}};
    return scene;
}

static int run(const TempFolder& folder, const std::string& arguments)
{
    const std::string command =
        "cd '" + folder.root() + "' && DISPLAY= ASAN_OPTIONS=detect_leaks=0 '" README_HOST "' " + arguments;
    return std::system(command.c_str());
}

TEST(Readme, HostDrawsAPicture)
{
    const TempFolder folder;
    folder.write("wall.3ds", build3ds(wall()));
    folder.write("maps/red.tga", writeTga(Picture(4, 4, 0xFF1000FF)));
    ASSERT_EQ(run(folder, "wall.3ds maps/ picture.ppm"), 0) << folder.readText("VRKERROR.LOG");

    const std::string picture = folder.read("picture.ppm");
    const std::string header = "P6 640 480 255\n";
    ASSERT_EQ(picture.size(), header.size() + 640 * 480 * 3);
    EXPECT_EQ(picture.substr(0, header.size()), header);
    const size_t middle = header.size() + (240 * 640 + 320) * 3;
    EXPECT_GT(static_cast<unsigned char>(picture[middle]), 150);
    EXPECT_LT(static_cast<unsigned char>(picture[middle + 1]), 40);
    EXPECT_LT(static_cast<unsigned char>(picture[middle + 2]), 40);
}

TEST(Readme, HostSaysWhenAFileIsMissing)
{
    const TempFolder folder;
    EXPECT_NE(run(folder, "none.3ds ./ picture.ppm"), 0);
    EXPECT_NE(folder.readText("VRKERROR.LOG"), "");
    EXPECT_EQ(folder.read("picture.ppm"), "");
    EXPECT_NE(run(folder, ""), 0);
}
