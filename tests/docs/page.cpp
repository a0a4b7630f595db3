#include "tests/docs/page.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

static std::string trimmed(const std::string& text)
{
    const size_t from = text.find_first_not_of(" \t");
    return from == std::string::npos ? "" : text.substr(from, text.find_last_not_of(" \t") - from + 1);
}

// "in: frame; file: a.cpp" as a map.
static std::map<std::string, std::string> notesOf(const std::string& line)
{
    std::map<std::string, std::string> notes;
    const std::string open = "<!-- ", close = " -->";
    const size_t end = line.rfind(close);
    if (line.rfind(open, 0) != 0 || end == std::string::npos)
        return notes;
    std::string rest = line.substr(open.size(), end - open.size()) + ";";
    for (size_t cut = rest.find(';'); cut != std::string::npos; cut = rest.find(';'))
    {
        const std::string note = rest.substr(0, cut);
        const size_t colon = note.find(':');
        if (colon != std::string::npos)
            notes[trimmed(note.substr(0, colon))] = trimmed(note.substr(colon + 1));
        rest = rest.substr(cut + 1);
    }
    return notes;
}

static void addLinks(const std::string& line, std::vector<std::string>* links)
{
    for (size_t at = line.find("]("); at != std::string::npos; at = line.find("](", at + 1))
        links->push_back(line.substr(at + 2, line.find(')', at) - at - 2));
}

// "## Start and stop" as "start-and-stop".
static std::string anchorOf(const std::string& heading)
{
    std::string anchor;
    for (const unsigned char c : heading.substr(heading.find(' ') + 1))
        if (std::isalnum(c) || c == '-')
            anchor += static_cast<char>(std::tolower(c));
        else if (c == ' ')
            anchor += '-';
    return anchor;
}

Page readPage(const std::string& name)
{
    Page page;
    page.name = name;
    std::ifstream file(VORNIK_SOURCE "/" + name);
    std::string line, before;
    bool inside = false;
    for (int number = 1; std::getline(file, line); ++number)
    {
        if (line.rfind("```", 0) == 0)
        {
            inside = !inside;
            if (inside)
                page.blocks.push_back({line.substr(3), "", number + 1, notesOf(before)});
        }
        else if (inside)
            page.blocks.back().text += line + "\n";
        else
        {
            addLinks(line, &page.links);
            if (line.rfind('#', 0) == 0)
                page.anchors.push_back(anchorOf(line));
        }
        before = line;
    }
    return page;
}

bool Page::hasLanguage(const std::string& language) const
{
    return std::any_of(blocks.begin(), blocks.end(),
                       [&](const Block& block) { return block.language == language; });
}

void PrintTo(const Page& page, std::ostream* out)
{
    *out << page.name;
}

std::vector<Page> manualPages()
{
    std::vector<std::string> names = {"README.md", "CONTRIBUTING.md"};
    for (const auto& entry : fs::directory_iterator(VORNIK_SOURCE "/docs"))
        if (entry.path().extension() == ".md")
            names.push_back("docs/" + entry.path().filename().string());
    std::sort(names.begin(), names.end());
    std::vector<Page> pages;
    for (const std::string& name : names)
        pages.push_back(readPage(name));
    return pages;
}

std::string testName(const Page& page)
{
    std::string name = page.name.substr(0, page.name.size() - 3);
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}
