// What the manual shows works: its C++ compiles as old hosts compile it, its programs run, its commands run
// in a folder with the sample scene, and its links lead somewhere.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tests/docs/page.h"
#include "tests/docs/scratch.h"

namespace fs = std::filesystem;

// The block as a source file whose errors point into the page.
static std::string sourceOf(const Page& page, const Block& block)
{
    const std::string text = "#line " + std::to_string(block.line) + " \"" + page.name + "\"\n" + block.text;
    if (!block.has("in"))
        return block.isProgram() ? text : "#include \"vornik/vornik.h\"\n" + text;
    std::string setting = readFile(source + "/tests/docs/settings/" + block.note("in") + ".cpp");
    const std::string place = "// block\n";
    const size_t at = setting.find(place);
    EXPECT_NE(at, std::string::npos) << page.name << ": no setting " << block.note("in");
    return at == std::string::npos ? text : setting.replace(at, place.size(), text);
}

static std::string compilerFor(const Block& block)
{
    const bool windows = block.note("needs") == "windows";
    return (windows ? "x86_64-w64-mingw32-g++-posix" : "g++") +
           std::string(" -std=c++11 -Wall -Wextra -Wpedantic -Werror -Wno-unused -Iinclude ");
}

class ManualPage : public ::testing::TestWithParam<Page>
{
protected:
    Scratch scratch;
};

TEST_P(ManualPage, HasCodeThatCompiles)
{
    for (const Block& block : GetParam().blocks)
    {
        if (block.language != "cpp" || (block.note("needs") == "windows" && !WITH_MINGW))
            continue;
        scratch.folder.write("block.cpp", sourceOf(GetParam(), block));
        const bool runs = block.isProgram() && !block.has("needs");
        EXPECT_EQ(
            scratch.run(compilerFor(block) + (runs ? "block.cpp -o program -Lbuild/release/lib -lvornik -lGL"
                                                   : "-fsyntax-only block.cpp")),
            0)
            << endOf(scratch.output);
        if (!runs)
            continue;
        scratch.addSample();
        EXPECT_EQ(scratch.run("./program " + block.note("run")), 0)
            << GetParam().name << ":" << block.line << "\n"
            << endOf(scratch.output) << scratch.folder.read("VRKERROR.LOG");
    }
}

// Commands for Windows make programs where the engine has been cross-built.
static bool canRun(const Block& block)
{
    return !block.has("needs") || (block.note("needs") == "windows" && WITH_MINGW &&
                                   fs::exists(source + "/build/windows/libvornik.dll.a"));
}

TEST_P(ManualPage, HasCommandsThatRun)
{
    if (GetParam().hasLanguage("sh"))
        scratch.addSample();
    if (readFile(source + "/" + GetParam().name).find("pkg-config") != std::string::npos)
        scratch.addInstallation();
    for (const Block& block : GetParam().blocks)
    {
        if (block.has("file"))
            scratch.folder.write(block.note("file"), block.text);
        if (block.language != "sh" || !canRun(block))
            continue;
        EXPECT_EQ(scratch.run(block.text), 0) << GetParam().name << ":" << block.line << "\n"
                                              << endOf(scratch.output);
    }
}

// A project of CMake's around the few lines that a page shows of it.
static std::string projectOf(const Block& block)
{
    if (block.text.find("project(") != std::string::npos)
        return block.text;
    std::string around = "cmake_minimum_required(VERSION 3.25)\nproject(host LANGUAGES CXX)\n";
    for (const char* name : {"host", "my_host"})
        around += std::string("add_executable(") + name + " host.cpp)\n";
    return around + block.text;
}

TEST_P(ManualPage, HasProjectsThatAreBuilt)
{
    for (const Block& block : GetParam().blocks)
    {
        if (block.language != "cmake")
            continue;
        Scratch project;
        project.addInstallation();
        project.folder.write("CMakeLists.txt", projectOf(block));
        std::string command = "cmake -S . -B made -DCMAKE_CXX_FLAGS='" HOST_FLAGS "' ";
        // Vornik as a part is built by the tests of the installation; here its place in a project is looked
        // at.
        if (block.text.find("add_subdirectory(vornik)") != std::string::npos)
            command = "rm -r vornik && ln -s '" + source + "' vornik && " + command;
        else
            command += "-DCMAKE_PREFIX_PATH=$PWD/vornik && cmake --build made --target host";
        EXPECT_EQ(project.run(command), 0) << GetParam().name << ":" << block.line << "\n"
                                           << endOf(project.output);
    }
}

// The word behind another in a line; empty if there is none.
static std::string wordBehind(const std::string& line, const std::string& first)
{
    std::istringstream words(line);
    std::string word, next;
    while (words >> word)
        if (word == first && words >> next)
            return next;
    return "";
}

// What can be said of a command that isn't run: targets of make, presets and scripts exist.
static void lookAt(const std::string& where, const std::string& line)
{
    const std::string command = line.substr(0, line.find(' ')), preset = wordBehind(line, "--preset");
    if (command == "make")
    {
        EXPECT_NE(readFile(source + "/Makefile").find("\n" + wordBehind(line, "make") + ":"),
                  std::string::npos)
            << where << ": " << line;
    }
    if (!preset.empty())
    {
        EXPECT_NE(readFile(source + "/CMakePresets.json").find("\"name\": \"" + preset + "\""),
                  std::string::npos)
            << where << ": " << line;
    }
    if (command.rfind("scripts/", 0) == 0 || command.rfind(".ci/", 0) == 0)
    {
        EXPECT_TRUE(fs::exists(source + "/" + command)) << where << ": " << line;
    }
}

TEST_P(ManualPage, HasPlausibleCommandsWhereTheyCannotRun)
{
    for (const Block& block : GetParam().blocks)
    {
        if (block.language != "sh" || canRun(block))
            continue;
        scratch.folder.write("looked-at.sh", block.text);
        EXPECT_EQ(scratch.run("bash -n looked-at.sh"), 0) << GetParam().name << ":" << block.line;
        std::istringstream lines(block.text);
        for (std::string line; std::getline(lines, line);)
            lookAt(GetParam().name, line);
    }
}

TEST_P(ManualPage, HasLinksThatLeadSomewhere)
{
    const fs::path folder = fs::path(GetParam().name).parent_path();
    for (const std::string& link : GetParam().links)
    {
        if (link.find("://") != std::string::npos)
            continue;
        const size_t hash = link.find('#');
        const std::string path = link.substr(0, hash);
        const std::string target = path.empty() ? GetParam().name : (folder / path).string();
        EXPECT_TRUE(fs::exists(source + "/" + target)) << GetParam().name << ": " << link;
        if (hash == std::string::npos)
            continue;
        const std::vector<std::string> anchors = readPage(target).anchors;
        EXPECT_NE(std::find(anchors.begin(), anchors.end(), link.substr(hash + 1)), anchors.end())
            << GetParam().name << ": " << link;
    }
}

// A page that nobody is led to might as well not be there.
TEST(Manual, IndexNamesEveryPage)
{
    const std::string index = readFile(source + "/docs/README.md");
    for (const Page& page : manualPages())
    {
        if (page.name.rfind("docs/", 0) != 0 || page.name == "docs/README.md")
            continue;
        EXPECT_NE(index.find("](" + page.name.substr(5) + ")"), std::string::npos) << page.name;
    }
}

// Blocks with a wrong name for their language, or a misspelt note, would pass unseen.
TEST(Manual, HasBlocksOfKnownKindsOnly)
{
    const std::vector<std::string> kinds = {"cpp", "sh", "cmake"};
    const std::vector<std::string> notes = {"in", "run", "file", "needs", "console"};
    const auto known = [](const std::vector<std::string>& list, const std::string& word)
    { return std::find(list.begin(), list.end(), word) != list.end(); };
    for (const Page& page : manualPages())
        for (const Block& block : page.blocks)
        {
            const bool isText = block.language.empty() && (block.has("console") || block.has("file"));
            EXPECT_TRUE(isText || known(kinds, block.language)) << page.name << ":" << block.line;
            for (const auto& note : block.notes)
                EXPECT_TRUE(known(notes, note.first)) << page.name << ":" << block.line << " " << note.first;
        }
}

INSTANTIATE_TEST_SUITE_P(All, ManualPage, ::testing::ValuesIn(manualPages()),
                         [](const auto& page) { return testName(page.param); });
