// What docs/console.md shows of the console is what the console prints.

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "tests/docs/page.h"
#include "tests/docs/scratch.h"

using Lines = std::vector<std::string>;

static Lines linesOf(const std::string& text, char end = '\n')
{
    Lines lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line, end);)
        lines.push_back(line);
    return lines;
}

// Amounts of memory and addresses differ from run to run.
static std::string withoutChance(std::string line)
{
    for (const char* words : {" memory", "Memory usage", "0x", "Active camera"})
        if (line.find(words) != std::string::npos)
        {
            line.erase(
                std::remove_if(line.begin(), line.end(), [](unsigned char c) { return std::isxdigit(c); }),
                line.end());
            break;
        }
    return line;
}

// What a block shows from its first prompt on, with prompts as without a terminal.
static Lines shownIn(const Block& block)
{
    Lines shown;
    for (std::string line : linesOf(block.text))
    {
        if (line.rfind("> ", 0) == 0)
            line.erase(1, 1);
        if (!shown.empty() || line.rfind('>', 0) == 0)
            shown.push_back(withoutChance(line));
    }
    return shown;
}

// The lines to type for it, those of the note first. What stands behind a script is the script's.
static Lines typedFor(const Block& block)
{
    Lines typed = linesOf(block.note("console"), '|');
    for (const std::string& line : linesOf(block.text))
    {
        if (line.rfind('>', 0) != 0)
            continue;
        typed.push_back(line.substr(line.find_first_not_of("> ")));
        if (typed.back().rfind("EXECSCRIPT ", 0) == 0)
            break;
    }
    return typed;
}

TEST(ConsolePage, ShowsWhatTheConsolePrints)
{
    const std::vector<Page> pages = manualPages();
    const auto page =
        std::find_if(pages.begin(), pages.end(), [](const Page& p) { return p.name == "docs/console.md"; });
    ASSERT_NE(page, pages.end());
    Scratch scratch;
    scratch.addSample();
    int count = 0;
    for (const Block& block : page->blocks)
    {
        if (block.has("file"))
            scratch.folder.write(block.note("file"), block.text);
        if (!block.has("console"))
            continue;
        ++count;
        std::string input;
        for (const std::string& line : typedFor(block))
            input += line + "\n";
        scratch.folder.write("typed.txt", input);
        scratch.run("vornik console < typed.txt"); // its status is that of the first line that fails
        Lines printed = linesOf(scratch.output);
        for (std::string& line : printed)
            line = withoutChance(line);
        const Lines shown = shownIn(block);
        ASSERT_FALSE(shown.empty()) << page->name << ":" << block.line;
        const Lines last(printed.end() - std::min(shown.size(), printed.size()), printed.end());
        EXPECT_EQ(last, shown) << page->name << ":" << block.line << "\n" << scratch.output;
    }
    EXPECT_GT(count, 10);
}
