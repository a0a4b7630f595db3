// Manual page and completion know the command line as the program itself tells it.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "tests/install/shell.h"
#include "tests/support/tempfolder.h"

using Names = std::set<std::string>;

static std::string help(const std::string& command)
{
    const ShellResult told = shell("/", "'" VORNIK_PROGRAM "' " + command + " --help");
    EXPECT_EQ(told.status, 0) << told.out;
    return told.out;
}

// First words of the lines under a heading of the help.
static std::vector<std::string> entries(const std::string& text, const std::string& heading)
{
    std::vector<std::string> found;
    bool inside = false;
    for (const std::string& line : linesOf(text))
    {
        if (line.rfind("  ", 0) != 0)
            inside = line == heading;
        else if (inside && line[2] != ' ')
            found.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
    return found;
}

// Option names of a text: "-o,--output FILE" gives two.
static Names optionsIn(const std::string& text)
{
    const std::string letters = "abcdefghijklmnopqrstuvwxyz0123456789-";
    Names names;
    for (size_t at = text.find('-'), end; at != std::string::npos; at = text.find('-', end))
    {
        end = std::min(text.find_first_not_of(letters, at), text.size());
        names.insert(text.substr(at, end - at));
    }
    return names;
}

static Names helpOptions(const std::string& command)
{
    Names names;
    for (const std::string& entry : entries(help(command), "Options:"))
        names.merge(optionsIn(entry));
    return names;
}

// All commands that take options, as they are typed: "render", "pack create".
static std::vector<std::string> commands(const std::string& above = "")
{
    std::vector<std::string> found;
    for (const std::string& name : entries(help(above), "Subcommands:"))
    {
        const std::string command = above.empty() ? name : above + " " + name;
        const std::vector<std::string> below = commands(command);
        if (below.empty())
            found.push_back(command);
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

static std::string manual()
{
    std::ifstream file(VORNIK_MANUAL);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

static std::string withPlainHyphens(std::string line)
{
    for (size_t at; (at = line.find("\\-")) != std::string::npos;)
        line.erase(at, 1);
    return line;
}

// Options that stand in the sections whose headings name the command: ".SS Light (render, view, bake)".
static Names manualOptions(const std::string& command)
{
    Names names = {"-h", "--help"}; // told once for all
    bool inside = false;
    for (const std::string& line : linesOf(manual()))
    {
        if (line.rfind(".SS ", 0) == 0 || line.rfind(".SH ", 0) == 0)
        {
            std::string named = line.substr(std::min(line.find('('), line.size()));
            std::replace(named.begin(), named.end(), '(', ',');
            std::replace(named.begin(), named.end(), ')', ',');
            inside = named.find(',' + command + ',') != std::string::npos ||
                     named.find(", " + command + ',') != std::string::npos;
        }
        else if (inside && line.rfind(".B", 0) == 0)
            names.merge(optionsIn(withPlainHyphens(line)));
    }
    return names;
}

// What bash offers for the last word of a line.
static Names offered(const std::string& line, const std::string& folder = "/")
{
    const ShellResult result =
        shell(folder, "bash -c '. \"$1\"; COMP_LINE=$2; read -ra COMP_WORDS <<< \"$2\"; "
                      "[[ $2 == *\" \" ]] && COMP_WORDS+=(\"\"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); "
                      "_vornik; printf \"%s\\n\" \"${COMPREPLY[@]}\"' - '" VORNIK_COMPLETION "' '" +
                          line + "'");
    EXPECT_EQ(result.status, 0) << result.out;
    return wordsOf(result.out);
}

TEST(CommandLine, HasACommandForEachTask)
{
    const std::vector<std::string> all = commands();
    const Names found(all.begin(), all.end());
    for (const char* command : {"render", "info", "bake", "console", "pack create", "pack verify"})
        EXPECT_EQ(found.count(command), 1u) << command;
    EXPECT_GT(helpOptions("render").size(), 20u);
}

TEST(Manual, TellsEveryCommandAndOption)
{
    for (const std::string& command : commands())
    {
        EXPECT_EQ(manualOptions(command), helpOptions(command)) << command;
        EXPECT_NE(manual().find("\n.B " + command + "\n"), std::string::npos) << command;
        EXPECT_NE(manual().find("\\fBvornik " + command + "\\fR"), std::string::npos) << command;
    }
}

TEST(Manual, IsSetWithoutAWarning)
{
    if (shell("/", "command -v groff").status != 0)
        GTEST_SKIP() << "groff sets manual pages";
    const ShellResult set = shell("/", "groff -man -Tutf8 -ww -z '" VORNIK_MANUAL "'");
    EXPECT_EQ(set.status, 0);
    EXPECT_EQ(set.out, "");
}

TEST(Completion, OffersTheCommands)
{
    const std::vector<std::string> chief = entries(help(""), "Subcommands:");
    Names expected = helpOptions("");
    expected.insert(chief.begin(), chief.end());
    Names found = offered("vornik ");
    if (expected.count("view") == 0) // built without the viewer
        found.erase("view");
    EXPECT_EQ(found, expected);

    const std::vector<std::string> verbs = entries(help("pack"), "Subcommands:");
    expected = helpOptions("pack");
    expected.insert(verbs.begin(), verbs.end());
    EXPECT_EQ(offered("vornik pack "), expected);
    EXPECT_EQ(offered("vornik re"), Names{"render"});
}

TEST(Completion, OffersTheOptionsOfEachCommand)
{
    for (const std::string& command : commands())
        EXPECT_EQ(offered("vornik " + command + " -"), helpOptions(command)) << command;
}

// What fish offers, without the descriptions behind.
static Names offeredByFish(const std::string& line, const std::string& folder = "/")
{
    const ShellResult result = shell(folder, "HOME=/nonexistent fish --no-config -c 'source $argv[1]; "
                                             "complete -C $argv[2]' '" VORNIK_COMPLETION_FISH "' '" +
                                                 line + "' 2> /dev/null | cut -f 1");
    EXPECT_EQ(result.status, 0) << result.out;
    return wordsOf(result.out);
}

TEST(Completion, OffersTheSameUnderFish)
{
    if (shell("/", "command -v fish").status != 0)
        GTEST_SKIP() << "no fish";
    EXPECT_EQ(offeredByFish("vornik -"), helpOptions(""));
    for (const std::string& command : commands())
    {
        EXPECT_EQ(offeredByFish("vornik " + command + " -"), helpOptions(command)) << command;
        const size_t verb = command.find(' ');
        const std::string above = verb == std::string::npos ? "" : command.substr(0, verb + 1);
        EXPECT_EQ(offeredByFish("vornik " + above).count(command.substr(above.size())), 1u) << command;
    }
    const TempFolder folder;
    for (const char* name : {"scene.3ds", "data.pak"})
        folder.write(name, std::string("x"));
    EXPECT_EQ(offeredByFish("vornik render sc", folder.root()), Names{"scene.3ds"});
    EXPECT_EQ(offeredByFish("vornik render --pack da", folder.root()), Names{"data.pak"});
    EXPECT_EQ(offeredByFish("vornik render --up "), (Names{"x", "y", "z"}));
}

TEST(Completion, OffersFilesThatFit)
{
    const TempFolder folder;
    for (const char* name :
         {"scene.3ds", "OLD.3DS", "a.txt", "data.pak", "b.lights", "maps/c.3ds", "old.png"})
        folder.write(name, std::string("x"));
    const std::string& in = folder.root();
    EXPECT_EQ(offered("vornik render ", in), (Names{"OLD.3DS", "maps", "scene.3ds"}));
    EXPECT_EQ(offered("vornik view sc", in), Names{"scene.3ds"});
    EXPECT_EQ(offered("vornik info maps/", in), Names{"maps/c.3ds"});
    EXPECT_EQ(offered("vornik render scene.3ds -o o", in), Names{"old.png"});
    EXPECT_EQ(offered("vornik render scene.3ds --pack ", in), (Names{"data.pak", "maps"}));
    EXPECT_EQ(offered("vornik render scene.3ds --lights ", in), (Names{"b.lights", "maps"}));
    EXPECT_EQ(offered("vornik render scene.3ds --textures ", in), Names{"maps"});
    EXPECT_EQ(offered("vornik pack list ", in), (Names{"data.pak", "maps"}));
    EXPECT_EQ(offered("vornik pack create new.pak a", in), Names{"a.txt"});
    EXPECT_EQ(offered("vornik console a", in), Names{"a.txt"});
}

TEST(Completion, OffersValuesOfAnOption)
{
    EXPECT_EQ(offered("vornik render a.3ds --up "), (Names{"x", "y", "z"}));
    EXPECT_EQ(offered("vornik view a.3ds --transparent s"), Names{"sorted"});
    EXPECT_EQ(offered("vornik render a.3ds --frames "), Names{});
}
