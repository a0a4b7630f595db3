// Where the code may ask which system it is built for: in the public header that names the host's window and
// marks what the library exports. All else that differs lies in files of one system.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

static const fs::path root = VORNIK_SOURCE;

static std::vector<fs::path> sourcesIn(const std::string& folder)
{
    std::vector<fs::path> sources;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / folder))
        if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
            sources.push_back(entry.path());
    return sources;
}

using Words = std::vector<std::string>;

// Has a file a line of the preprocessor with one of the words?
static bool asks(const fs::path& file, const Words& words)
{
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
    {
        const size_t first = line.find_first_not_of(" \t");
        if (first == std::string::npos || line[first] != '#')
            continue;
        for (const std::string& word : words)
            if (line.find(word) != std::string::npos)
                return true;
    }
    return false;
}

// The files that do, relative to the root.
static std::vector<std::string> askersIn(const std::vector<std::string>& folders, const Words& words)
{
    std::vector<std::string> askers;
    for (const std::string& folder : folders)
        for (const fs::path& file : sourcesIn(folder))
            if (asks(file, words))
                askers.push_back(fs::relative(file, root).generic_string());
    std::sort(askers.begin(), askers.end());
    return askers;
}

TEST(Systems, AreAskedForInOnePublicHeaderOnly)
{
    const std::vector<std::string> askers =
        askersIn({"include", "core", "rasterizer", "scene", "assets", "animation", "spatial", "lighting",
                  "particles", "console", "apps", "examples", "samples", "fuzz", "bench"},
                 {"WIN32", "WIN64", "__linux", "__unix", "__APPLE__", "__MINGW", "__CYGWIN", "_MSC_VER"});
    EXPECT_EQ(askers, (std::vector<std::string>{"include/vornik/platform.h"}));
}

TEST(Systems, ServeTheEngineThroughPlatformOnly)
{
    const std::vector<std::string> users =
        askersIn({"include", "core", "rasterizer", "scene", "assets", "animation", "spatial", "lighting",
                  "particles", "console"},
                 {"<windows.h>", "<io.h>", "<direct.h>", "<ddraw.h>", "<d3d.h>", "<unistd.h>", "<fcntl.h>",
                  "<dirent.h>", "<sys/", "<X11/", "<EGL/", "<GL/glx"});
    EXPECT_EQ(users, (std::vector<std::string>{"rasterizer/d3d/com_win32.h"}));
}
