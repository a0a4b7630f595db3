// Scripts: text files whose commands begin with a '#'. All other lines are comments, also one that reads
// "<EOF>": a script runs to the end of its file.

#include <cstdio>

#include "platform/file.h"
#include "vornik/console/console.h"
#include "vornik/core/errorlog.h"

// Scripts that run now, one inside the other, and those that have begun since the outermost did, refused ones
// too; files that aren't there never begin. A script that calls itself ends by these: the depth alone would
// let one that does so twice begin 65,536 times.
static int running = 0;
static int begun = 0;

struct RunningScript
{
    RunningScript() { begun = ++running == 1 ? 1 : begun + 1; }
    RunningScript(const RunningScript&) = delete;
    RunningScript& operator=(const RunningScript&) = delete;
    ~RunningScript() { --running; }
};

static bool isTooMany()
{
    return begun > VRK_CONSOLE_SCRIPT_RUNS;
}

static int refuse(Console* console, const char* text)
{
    console->addText(text);
    return vrkPutToErrorLog("VRK Console parser failed to parse commandline!", 18);
}

static bool isLineEnd(int c)
{
    const int escape = 27;
    return c == '\r' || c == '\n' || c == escape;
}

String Console::readln(FILE* file)
{
    String line(VRK_CONSOLE_LINE);
    int length = 0;
    const auto add = [&](int c)
    {
        if (length < VRK_CONSOLE_LINE)
            line.data[length++] = static_cast<char>(c);
    };

    int last = '\n';
    for (int c = file ? std::fgetc(file) : EOF; !isLineEnd(c); c = std::fgetc(file))
    {
        if (c == EOF)
        {
            // The file doesn't end its last line: the character still in hand is taken once more.
            if (!isLineEnd(last))
                add(last);
            break;
        }
        add(c);
        last = c;
    }
    return line;
}

int Console::parseScriptLine(String line)
{
    if (line.charAt(0) != '#')
        return 0;
    String command = line.subString(1, VRK_CONSOLE_LINE).trim();
    int length = command.length();
    while (length > 0 && command.data[length - 1] == ' ') // trim leaves blanks at the end
        --length;
    char typed[VRK_CONSOLE_LINE + 1];
    std::snprintf(typed, sizeof typed, "%.*s", length, command.data);
    return parse(typed);
}

int Console::readScript(const char* fileName)
{
    FILE* file = vrkOpenFile(fileName, "rb");
    if (!file)
        return vrkPutToErrorLog("Script file not found!", 31);
    const RunningScript script;
    if (isTooMany() || running > VRK_CONSOLE_SCRIPTS)
    {
        std::fclose(file);
        return refuse(this, isTooMany() ? "Too many scripts!\n" : "Scripts are nested too deeply!\n");
    }
    while (!std::feof(file) && !std::ferror(file) && !isTooMany())
        parseScriptLine(readln(file));
    std::fclose(file);
    return isTooMany() ? 18 : 0; // reported by the one that was too many
}
