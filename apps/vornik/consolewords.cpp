#include "apps/vornik/consolewords.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

const Words& consoleCommands()
{
    static const Words names = {"ACTIVECAMERA", "ACTIVEPLIST", "ACTIVETLIST", "CLEAR3DS",   "CLS",     "DIR",
                                "EFUNCLIST",    "EVAL",        "EVARLIST",    "EXECSCRIPT", "EXIT",    "FOV",
                                "GAMMA",        "GET",         "HELP",        "INFO",       "LOAD3DS", "MEM",
                                "RELOAD3DS",    "SCENEINFO",   "SET"};
    return names;
}

static void addNames(char* const* names, int count, Words* words)
{
    words->insert(words->end(), names, names + count);
}

static Words functionsOf(const Console& console)
{
    Words words;
    const int32_t* counts = console.funcCounts;
    addNames(console.voidFloatNames, counts[0], &words);
    addNames(console.voidIntNames, counts[1], &words);
    addNames(console.voidNames, counts[2], &words);
    addNames(console.intFloatNames, counts[3], &words);
    addNames(console.intIntNames, counts[4], &words);
    addNames(console.intNames, counts[5], &words);
    addNames(console.floatFloatNames, counts[6], &words);
    addNames(console.floatIntNames, counts[7], &words);
    addNames(console.floatNames, counts[8], &words);
    return words;
}

static Words variablesOf(const Console& console)
{
    Words words;
    addNames(console.varNames, console.varCount, &words);
    return words;
}

// Files and folders beside what is typed. Names with blanks are left out: the console can't take them.
static Words filesFor(const std::string& typed)
{
    const size_t slash = typed.find_last_of('/');
    const std::string folder = slash == std::string::npos ? "" : typed.substr(0, slash + 1);
    Words words;
    std::error_code failed;
    fs::directory_iterator entry(folder.empty() ? "." : folder, failed);
    while (!failed && entry != fs::directory_iterator())
    {
        std::string name = entry->path().filename().string();
        std::error_code unknown;
        if (entry->is_directory(unknown))
            name += '/';
        if (name[0] != '.' && name.find(' ') == std::string::npos)
            words.push_back(folder + name);
        entry.increment(failed);
    }
    return words;
}

static std::string upperCase(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

Words wordsFor(const Console& console, const std::string& before)
{
    const size_t space = before.find(' ');
    if (space == std::string::npos)
        return consoleCommands();
    const std::string command = upperCase(before.substr(0, space));
    const size_t last = before.find_last_of(' ');
    const bool isFirst = last == space; // of the words behind the command

    Words words;
    if (command == "HELP" && isFirst)
        words = consoleCommands();
    else if (command == "EVAL" && isFirst)
        words = functionsOf(console);
    else if ((command == "SET" || command == "GET") && isFirst)
        words = variablesOf(console);
    else if (command == "LOAD3DS" || ((command == "DIR" || command == "EXECSCRIPT") && isFirst))
        words = filesFor(before.substr(last + 1));
    std::sort(words.begin(), words.end());
    return words;
}
