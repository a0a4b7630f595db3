// Baked light on the command line, and the figures of the octree.

#include "tests/apps/program.h"
#include "tests/apps/scenes.h"

#include <cstdlib>
#include <regex>
#include <string>

class Bake : public ProgramTest
{
protected:
    // A floor, a box over it, and a lamp above both.
    void SetUp() override
    {
        Scene3ds scene;
        scene.materials = {plainMaterial("grey", 0.8f, 0.8f, 0.8f)};
        scene.meshes = {floorGrid("Floor", 0, -5, 5, 12), box("Box", {-1, -1, 1.1f}, {1, 1, 2.2f}, "grey")};
        scene.lights = {{.name = "Lamp",
                         .position = {0.3f, 0.2f, 9.7f},
                         .color = {{1, 1, 1, COLOR_3DS_FLOAT}},
                         .innerRange = 50.0f,
                         .outerRange = 100.0f}};
        scene.cameras = {{.name = "Eye", .eye = {0, -14, 9}, .target = {0, 0, 0}}};
        write("scene.3ds", scene);
    }
    RunResult bake(const std::vector<std::string>& options = {})
    {
        std::vector<std::string> arguments = {"bake", "scene.3ds", "-o", "scene.lights"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments);
    }
};

TEST_F(Bake, PictureOfBakedLightIsThatOfTracedLight)
{
    const RunResult result = bake({"--shadows"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out + result.err, "");
    const Bitmap traced = render("scene.3ds", {"--shadows"});
    const Bitmap baked = render("scene.3ds", {"--lights", "scene.lights"});
    EXPECT_EQ(baked.rgb, traced.rgb);
    EXPECT_NE(render("scene.3ds").rgb, baked.rgb); // without the shadow
}

TEST_F(Bake, FileHasAColourForEachVertex)
{
    ASSERT_EQ(bake({"--no-smooth"}).status, 0);
    const std::string info = run({"info", "scene.3ds", "--json"}).out;
    const size_t at = info.find("\"vertices\": ");
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(folder.read("scene.lights").size(),
              16u * static_cast<size_t>(std::atoi(info.c_str() + at + 12)));
}

TEST_F(Bake, LightOfAnotherSceneIsRefused)
{
    write("other.3ds", boxScene());
    ASSERT_EQ(bake().status, 0);
    const RunResult other = run({"render", "other.3ds", "-o", "a.png", "--lights", "scene.lights"});
    EXPECT_EQ(other.status, 1);
    EXPECT_NE(other.err.find("scene.lights"), std::string::npos);
    EXPECT_EQ(run({"render", "scene.3ds", "-o", "a.png", "--lights", "none.lights"}).status, 1);
    EXPECT_FALSE(exists("a.png"));
}

TEST_F(Bake, FilesThatCannotBeServed)
{
    EXPECT_EQ(run({"bake", "none.3ds", "-o", "a.lights"}).status, 1);
    EXPECT_EQ(run({"bake", "scene.3ds", "-o", "none/a.lights"}).status, 1);
    EXPECT_EQ(run({"bake", "scene.3ds"}).status, 2);
    folder.write("bad.3ds", std::string("no scene"));
    EXPECT_EQ(run({"bake", "bad.3ds", "-o", "a.lights"}).status, 1);
    EXPECT_FALSE(exists("a.lights"));
}

TEST_F(Bake, ProgressAppearsOnTerminalsOnly)
{
    if (!hasTerminals())
        GTEST_SKIP() << "no terminal to run on";
    EXPECT_NE(runOnTerminal({"bake", "scene.3ds", "-o", "a.lights"}).find("100 %"), std::string::npos);
    EXPECT_EQ(runOnTerminal({"bake", "scene.3ds", "-o", "a.lights", "--quiet"}).find("%"), std::string::npos);
}

TEST_F(Bake, FiguresOfTheOctree)
{
    const std::string people = run({"info", "scene.3ds", "--octree"}).out;
    const std::regex figures(
        "Octree: ([0-9]+) leaves, depth [1-9], [0-9]+\\.[0-9] faces a leaf, [1-9][0-9]* planes, "
        "[0-9]+\\.[0-9] MB, built in [0-9]+\\.[0-9]{3} s\n");
    EXPECT_TRUE(std::regex_search(people, figures)) << people;
    EXPECT_EQ(run({"info", "scene.3ds"}).out.find("Octree"), std::string::npos);
    const std::string programs = run({"info", "scene.3ds", "--octree", "--json"}).out;
    const size_t at = programs.find("\"leaves\": ");
    ASSERT_NE(at, std::string::npos) << programs;
    for (const char* name : {"nodes", "depth", "references", "planes", "bytes", "seconds"})
        EXPECT_NE(programs.find("\"" + std::string(name) + "\": "), std::string::npos) << programs;
    EXPECT_GT(std::atoi(programs.c_str() + at + 10), 8);
}
