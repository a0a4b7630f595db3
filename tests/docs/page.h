// The fenced blocks of a page of the manual.
#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

/// An HTML comment right above a block says how it is tested; readers don't see it:
///
///     <!-- in: frame -->             compiled inside settings/frame.cpp, in place of its line "// block"
///     <!-- run: harbour.3ds . -->    a whole program, run with these arguments
///     <!-- file: host.cpp -->        saved under this name for the commands further down the page
///     <!-- needs: root -->           (or network, window, time) looked at, not run
///     <!-- needs: windows -->        compiled, and run where the tree has been cross-built
///     <!-- console: SET FRAME 1 -->  what the console prints for the lines with a prompt in it, once it has
///                                    taken these (none or several, divided by bars)
///
/// Several of them in one comment are divided by semicolons.
struct Block
{
    std::string language; ///< behind the fence: "cpp", "sh", "cmake" or empty
    std::string text;
    int line = 0; ///< of the first line of text in the page, from 1
    std::map<std::string, std::string> notes;

    bool has(const std::string& note) const { return notes.count(note) > 0; }
    std::string note(const std::string& name) const { return has(name) ? notes.at(name) : ""; }
    bool isProgram() const { return text.find("int main(") != std::string::npos; }
};

struct Page
{
    std::string name; ///< path below the root of the sources, like "docs/packs.md"
    std::vector<Block> blocks;
    std::vector<std::string> links;   ///< targets of links and pictures
    std::vector<std::string> anchors; ///< of its headings, as links name them behind a #

    bool hasLanguage(const std::string& language) const;
};

/// For reports of failed tests.
void PrintTo(const Page& page, std::ostream* out);

/// README.md, CONTRIBUTING.md and all of docs/, in the order of their names.
std::vector<Page> manualPages();

/// The page of a file; without blocks and headings if there is none.
Page readPage(const std::string& name);

/// A page's name as part of the name of a test.
std::string testName(const Page& page);
