#include "platform/jpeg.h"
#include "tests/apps/program.h"
#include "tests/apps/scenes.h"

#include <cstdlib>

class Pictures : public ProgramTest
{
protected:
    void SetUp() override { write("box.3ds", boxScene()); }
};

TEST_F(Pictures, AreJpegByTheirEnding)
{
    for (const std::string name : {"a.jpg", "a.jpeg", "a.JPG"})
    {
        EXPECT_EQ(run({"render", "box.3ds", "-o", name, "--size", "64x48", "--background", "00ff00"}).status,
                  0);
        const std::string bytes = folder.read(name);
        JpegImage image;
        ASSERT_TRUE(jpegDecode(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), false, &image));
        EXPECT_EQ(image.width, 64);
        EXPECT_EQ(image.height, 48);
        EXPECT_NEAR(image.pixels[1], 255, 4); // the corner shows the background
        const size_t middle = (24 * 64 + 32) * 3;
        EXPECT_GT(image.pixels[middle], 2 * image.pixels[middle + 1]);
    }
}

TEST_F(Pictures, ArePngByTheirEnding)
{
    for (const std::string name : {"a.png", "a.PNG"})
    {
        EXPECT_EQ(run({"render", "box.3ds", "-o", name, "--size", "64x48"}).status, 0);
        EXPECT_EQ(readPng(name).width, 64);
        EXPECT_EQ(readPng(name).height, 48);
    }
}

TEST_F(Pictures, AreMadeAtTheUsualSizeUnlessAsked)
{
    EXPECT_EQ(run({"render", "box.3ds", "-o", "a.png", "--samples", "1"}).status, 0);
    EXPECT_EQ(readPng("a.png").width, 1280);
    EXPECT_EQ(readPng("a.png").height, 720);
}

TEST_F(Pictures, HaveTheBackgroundThatIsAsked)
{
    EXPECT_EQ(render("box.3ds", {"--background", "204060"}).at(0, 0), (Rgb{0x20, 0x40, 0x60}));
    EXPECT_EQ(render("box.3ds", {"--background", "#a0B0c0"}).at(0, 0), (Rgb{0xA0, 0xB0, 0xC0}));
    EXPECT_EQ(render("box.3ds", {"--background", "white"}).at(0, 0), (Rgb{255, 255, 255}));
}

TEST_F(Pictures, SmoothEdgesWithMoreSamples)
{
    Scene3ds scene;
    Material3ds glow = plainMaterial("glow", 1.0f, 1.0f, 1.0f);
    glow.selfIllumination = Percent3ds{100};
    scene.materials = {glow};
    scene.meshes = {box("Box", {-1, -1, -1}, {1, 1, 1}, "glow")};
    write("glow.3ds", scene);
    const auto isBetween = [](const Rgb& p) { return p.r > 20 && p.r < 235; };
    EXPECT_EQ(render("glow.3ds").count(isBetween), 0);
    EXPECT_GT(render("glow.3ds", {"--samples", "4"}).count(isBetween), 50);
}

// With 8 samples a tile is 256 pixels wide, so that this picture consists of several.
TEST_F(Pictures, OfSeveralTilesHaveNoSeams)
{
    const Bitmap whole = render("box.3ds", {"--size", "500x400"});
    const Bitmap tiled = render("box.3ds", {"--size", "500x400", "--samples", "8"});
    const int unlike = whole.count([](const Rgb&) { return true; });
    ASSERT_EQ(unlike, 500 * 400);
    int different = 0;
    for (int y = 0; y < 400; ++y)
        for (int x = 0; x < 500; ++x)
            different += std::abs(whole.at(x, y).r - tiled.at(x, y).r) > 40;
    EXPECT_LT(different, 2500); // edges only
    EXPECT_GT(whole.countUnlike({0, 0, 0}), 20000);
}

TEST_F(Pictures, LargerThanAnySurfaceAreMade)
{
    const Bitmap picture = render("box.3ds", {"--size", "5000x20"});
    EXPECT_EQ(picture.width, 5000);
    EXPECT_GT(picture.countUnlike({0, 0, 0}), 50);
}

TEST_F(Pictures, InWireShowEdgesOnly)
{
    const int solid = render("box.3ds").countUnlike({0, 0, 0});
    const int wire = render("box.3ds", {"--wire"}).countUnlike({0, 0, 0});
    EXPECT_GT(wire, 50);
    EXPECT_LT(wire, solid / 2);
}

TEST_F(Pictures, KeepWiresAsWideWithMoreSamples)
{
    const double plain = render("box.3ds", {"--wire"}).light();
    const double sampled = render("box.3ds", {"--wire", "--samples", "4"}).light();
    EXPECT_NEAR(sampled / plain, 1.0, 0.3);
}

TEST_F(Pictures, ShowBackFacesWhenAsked)
{
    Scene3ds scene;
    scene.meshes = {wall("Wall", 0, -1, 1)};
    Camera3ds camera;
    camera.name = "Behind";
    camera.eye = {0, 6, 0};
    camera.target = {0, 0, 0};
    scene.cameras = {camera};
    write("wall.3ds", scene);
    EXPECT_EQ(render("wall.3ds").countUnlike({0, 0, 0}), 0);
    const Bitmap shown = render("wall.3ds", {"--two-sided"});
    EXPECT_GT(shown.countUnlike({0, 0, 0}), 500);
    EXPECT_GT(shown.at(60, 45).r, 120); // lit from the viewer's side
}

TEST_F(Pictures, FlatShadingHasOneColorAFace)
{
    Scene3ds scene = boxScene();
    for (uint32_t& group : scene.meshes[0].smoothing)
        group = 1;
    scene.cameras = {frontCamera("Front", 0, 4)};
    write("round.3ds", scene);
    const Bitmap flat = render("round.3ds", {"--flat"});
    EXPECT_EQ(flat.at(50, 50), flat.at(46, 45));
}

TEST_F(Pictures, SmoothingSplitsCornersUnlessToldNotTo)
{
    // A roof of two sides that share their ridge, in groups of their own.
    Scene3ds scene;
    Mesh3ds roof;
    roof.name = "Roof";
    roof.vertices = {{-1, -1, 0}, {1, -1, 0}, {1, 0, 1}, {-1, 0, 1}, {1, 1, 0}, {-1, 1, 0}};
    roof.faces = {{0, 1, 2}, {0, 2, 3}, {3, 2, 4}, {3, 4, 5}};
    roof.smoothing = {1, 1, 2, 2};
    scene.meshes = {roof};
    write("roof.3ds", scene);
    const Bitmap split = render("roof.3ds");
    const Bitmap joined = render("roof.3ds", {"--no-smooth"});
    int different = 0;
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 120; ++x)
            different += std::abs(split.at(x, y).r - joined.at(x, y).r) > 8;
    EXPECT_GT(different, 200);
}
