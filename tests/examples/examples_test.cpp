// Every example compiles by the line in its head and does what it promises.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>

#include "tests/apps/scenes.h"
#include "tests/view/viewerwindow.h"

namespace fs = std::filesystem;

// The line behind "//   g++" in an example's head.
static std::string compileLine(const std::string& name)
{
    std::ifstream file(VORNIK_SOURCE "/examples/" + name + ".cpp");
    std::string line;
    const std::string mark = "//   ";
    while (std::getline(file, line))
        if (line.rfind(mark + "g++ ", 0) == 0)
            return line.substr(mark.size());
    return "";
}

class ExampleTest : public ViewerTest, public ::testing::WithParamInterface<const char*>
{
protected:
    void SetUp() override
    {
        ViewerTest::SetUp();
        if (std::string(GetParam()) == "sdl2" && std::system("sdl2-config --version > /dev/null 2>&1") != 0)
            GTEST_SKIP() << "no SDL2 to compile with";
    }

    // A folder that looks like the repository's root behind a build. The program that is made stays there.
    static const std::string& compiled(const std::string& name)
    {
        static TempFolder root;
        static std::string error;
        fs::create_directories(root.path("build/release"));
        if (!fs::exists(root.path("examples")))
        {
            fs::create_directory_symlink(VORNIK_SOURCE "/examples", root.path("examples"));
            fs::create_directory_symlink(VORNIK_SOURCE "/include", root.path("include"));
            fs::create_directory_symlink(VORNIK_LIBRARY_FOLDER, root.path("build/release/lib"));
        }
        if (!fs::exists(root.path(name)))
        {
            const std::string command = "cd '" + root.root() + "' && " + compileLine(name) + " 2> errors";
            EXPECT_EQ(std::system(command.c_str()), 0) << root.read("errors");
        }
        return root.root();
    }

    std::string commandOf(const std::string& arguments)
    {
        std::string environment = "LD_LIBRARY_PATH=build/release/lib ASAN_OPTIONS=detect_leaks=0 ";
#ifdef VORNIK_SANITIZE
        environment += "LD_PRELOAD=$(g++ -print-file-name=libasan.so) "; // the program itself is plain
#endif
        return "cd '" + compiled(GetParam()) + "' && " + environment + "./" + GetParam() + " " + arguments;
    }

    std::string boxPath()
    {
        Scene3ds scene = boxScene();
        scene.cameras = {frontCamera("Front", 0, 5)};
        return folder.path(write("box.3ds", scene));
    }

    int statusOf(const std::string& arguments)
    {
        const int status = std::system((commandOf(arguments) + " 2> /dev/null").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

static bool isRed(const Rgb& p)
{
    return p.r > 40 && p.r > 2 * p.g && p.r > 2 * p.b;
}

TEST_P(ExampleTest, EndsBehindTheFramesAskedFor)
{
    EXPECT_EQ(statusOf(boxPath() + " . 3"), 0);
}

TEST_P(ExampleTest, ShowsTheSceneAndEndsOnEscape)
{
    openCommand(commandOf(boxPath()));
    EXPECT_TRUE(soon([this] { return isRed(pixel(400, 300)); })) << streams.read("err");
    resize(500, 400);
    EXPECT_TRUE(soon([this] { return grab().width == 500 && isRed(pixel(250, 200)); }));
    quit();
}

TEST_P(ExampleTest, ShowsASceneWithoutCameraAndEndsWithItsWindow)
{
    openCommand(commandOf(folder.path(write("box.3ds", boxScene()))));
    EXPECT_TRUE(soon([this] { return isRed(pixel(400, 300)); })) << streams.read("err");
    askToClose();
    EXPECT_EQ(waitForEnd(), 0) << streams.read("err");
}

TEST_P(ExampleTest, SaysWhenThereIsNothingToShow)
{
    EXPECT_EQ(statusOf(folder.path("none.3ds")), 1);
    EXPECT_EQ(statusOf(""), 1);
}

INSTANTIATE_TEST_SUITE_P(Hosts, ExampleTest, ::testing::Values("sdl2", "x11"),
                         [](const auto& host) { return std::string(host.param); });
