// What the manual shows works: its C++ compiles as old hosts compile it, its programs run, its commands run
// in a folder with the sample scene, and its links lead somewhere.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/docs/page.h"
#include "tests/support/tempfolder.h"

namespace fs = std::filesystem;

static const std::string source = VORNIK_SOURCE;

static std::string readFile(const std::string& path)
{
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// The repository's root as it is behind a build, with the sample scene in it under the names that pages use.
class Scratch
{
public:
    Scratch()
    {
        fs::create_directories(folder.path("build/release/bin"));
        for (const char* name : {"include", "examples", "scripts", "cmake"})
            fs::create_directory_symlink(source + "/" + name, folder.path(name));
        fs::create_directory_symlink(VORNIK_LIBRARY_FOLDER, folder.path("build/release/lib"));
        // Nothing opens a window here: "vornik view" only looks at its options.
        writeProgram("build/release/bin/vornik",
                     "[ \"$1\" = view ] && exec '" VORNIK_PROGRAM
                     "' \"$@\" --help > /dev/null\nexec '" VORNIK_PROGRAM "' \"$@\"");
#ifdef VORNIK_SANITIZE
        writeProgram("build/release/bin/g++", "exec /usr/bin/g++ -fsanitize=address,undefined \"$@\"");
#endif
    }

    void addSample() const
    {
        for (const char* name : {"", "harbour", "folder"})
            fs::copy(VORNIK_SAMPLE, folder.path(name), fs::copy_options::recursive);
        for (const char* name : {"scene.3ds", "folder/scene.3ds"})
            fs::copy(folder.path("harbour.3ds"), folder.path(name));
    }

    // Runs a script in the folder. @return its exit status; what it printed is in output
    int run(const std::string& script)
    {
        folder.write("script.sh", script);
        const std::string environment =
            "export DISPLAY= ASAN_OPTIONS=detect_leaks=0:intercept_tls_get_addr=0 LC_ALL=C "
            "PATH=$PWD/build/release/bin:$PATH LD_LIBRARY_PATH=$PWD/build/release/lib";
        const int status = std::system(("cd '" + folder.root() + "' && " + environment +
                                        " && bash -eu script.sh < /dev/null > output 2>&1")
                                           .c_str());
        output = folder.read("output");
        return status;
    }

    TempFolder folder;
    std::string output;

private:
    void writeProgram(const std::string& name, const std::string& text) const
    {
        folder.write(name, "#!/bin/bash\n" + text + "\n");
        fs::permissions(folder.path(name), fs::perms::owner_all);
    }
};

// The end of what a command printed: that is where it says what went wrong.
static std::string endOf(const std::string& output)
{
    return output.size() > 1500 ? "..." + output.substr(output.size() - 1500) : output;
}

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

TEST_P(ManualPage, HasCommandsThatRun)
{
    if (GetParam().hasLanguage("sh"))
        scratch.addSample();
    for (const Block& block : GetParam().blocks)
    {
        if (block.has("file"))
            scratch.folder.write(block.note("file"), block.text);
        if (block.language != "sh" || block.has("needs"))
            continue;
        EXPECT_EQ(scratch.run(block.text), 0) << GetParam().name << ":" << block.line << "\n"
                                              << endOf(scratch.output);
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
        if (block.language != "sh" || !block.has("needs"))
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
    const fs::path folder = fs::path(source + "/" + GetParam().name).parent_path();
    for (const std::string& link : GetParam().links)
    {
        const std::string path = link.substr(0, link.find('#'));
        if (path.empty() || path.find("://") != std::string::npos)
            continue;
        EXPECT_TRUE(fs::exists(folder / path)) << GetParam().name << ": " << link;
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
    const std::vector<std::string> kinds = {"", "cpp", "sh", "cmake"};
    const std::vector<std::string> notes = {"in", "run", "file", "needs"};
    const auto known = [](const std::vector<std::string>& list, const std::string& word)
    { return std::find(list.begin(), list.end(), word) != list.end(); };
    for (const Page& page : manualPages())
        for (const Block& block : page.blocks)
        {
            EXPECT_TRUE(known(kinds, block.language)) << page.name << ":" << block.line;
            for (const auto& note : block.notes)
                EXPECT_TRUE(known(notes, note.first)) << page.name << ":" << block.line << " " << note.first;
        }
}

INSTANTIATE_TEST_SUITE_P(All, ManualPage, ::testing::ValuesIn(manualPages()),
                         [](const auto& page) { return testName(page.param); });
