// The command language: one line, one command.
//
// There is no quoting and there are no expressions. A word is what stands between two spaces, and the number
// of spaces is what a command counts as its arguments. A command that ran answers 0 even if it found fault:
// what it has to say stands in the text.

#include <string>

#include "console/commandline.h"
#include "console/help.h"
#include "console/loadcommands.h"
#include "console/memoryreport.h"
#include "core/memorylasts.h"
#include "vornik/console/console.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

static void append(Console* console, const std::string& text)
{
    console->addText(text.c_str());
}

static int help(Console* console, const CommandLine& line)
{
    console->addText(line.countSpaces() == 0 ? helpList() : helpText(line.getWord(1)));
    return 0;
}

static int info(Console* console, const CommandLine& /*line*/)
{
    // The language has a version of its own, below the banner's.
    console->addText("Vornik Console v0.1\n");
    return 0;
}

static int memory(Console* console, const CommandLine& /*line*/)
{
    appendMemoryReport(console, vrkPlatformMemory());
    return 0;
}

static int requestExit(Console* console, const CommandLine& /*line*/)
{
    console->addText("Exit requested!\n");
    console->exitFlag = 1;
    return 0;
}

static int requestClear(Console* console, const CommandLine& /*line*/)
{
    console->addText("Clear requested!\n");
    console->clearFlag = 1;
    return 0;
}

static int sceneInfo(Console* console, const CommandLine& /*line*/)
{
    console->SceneInfo();
    return 0;
}

static int listVariables(Console* console, const CommandLine& /*line*/)
{
    console->listEVars();
    return 0;
}

static int listFunctions(Console* console, const CommandLine& /*line*/)
{
    console->listEFuncs();
    return 0;
}

static void appendVariableFault(Console* console, bool notFound, bool isNull)
{
    if (notFound)
        console->addText("Variable not found\n");
    if (isNull)
        console->addText("Error! Variable found but reference is NULL\n");
}

static int set(Console* console, const CommandLine& line)
{
    const std::string name = line.getWord(1);
    const int result = console->setEVar(name.c_str(), static_cast<float>(line.number(2)));
    if (result >= 0)
        append(console, "Variable " + name + " set to " + std::to_string(result) + "\n");
    // A value of -1 or -2 that was stored reads as a fault here: it answers with the same number.
    appendVariableFault(console, result == -1, result == -2);
    return 0;
}

static int evaluate(Console* console, const CommandLine& line)
{
    const std::string name = line.getWord(1);
    const float result =
        console->evalEFunc(name.c_str(), line.integer(2), static_cast<float>(line.number(2)));
    append(console, "Function (" + name + ") returned a value (" + decimal(result) + ")\n");
    return 0;
}

static int listFiles(Console* console, const CommandLine& line)
{
    console->dir(line.getWord(1).c_str());
    return 0;
}

static int get(Console* console, const CommandLine& line)
{
    const std::string name = line.getWord(1);
    const float value = console->getEVar(name.c_str());
    append(console, "Variable " + name + " = " + decimal(value) + "\n");
    appendVariableFault(console, value == -1.0f, value == -2.0f);
    return 0;
}

static int executeScript(Console* console, const CommandLine& line)
{
    console->readScript(line.getWord(1).c_str());
    return 0;
}

static OGroup* firstGroup(Console* console)
{
    return console->scene ? console->scene->groups[0] : nullptr;
}

static int gamma(Console* console, const CommandLine& line)
{
    vrkSetGamma(static_cast<float>(line.number(1)));
    if (OGroup* group = firstGroup(console))
        group->applyLights();
    console->addText("Gamma value changed.\n");
    return 0;
}

static int fieldOfView(Console* console, const CommandLine& line)
{
    const double value = line.number(1);
    if (!(value >= 1.0 && value <= 179.0))
        return vrkPutToErrorLog("Invalid value (value out of range)!", 52);
    vrkSetFOV(static_cast<float>(value));
    console->addText("Fov value changed.\n");
    return 0;
}

// One of the commands that choose a list or a camera of the first group by number.
static int choose(Console* console, const CommandLine& line, int (OGroup::*setActive)(int), const char* done)
{
    if (!console->scene)
        return vrkPutToErrorLog("Scene used in functioncall is NULL!", 25);
    OGroup* group = firstGroup(console);
    if (!group)
        return vrkPutToErrorLog("OGroup used in functioncall is NULL!", 26);
    // The group reports a number that it doesn't have; the text follows all the same.
    (group->*setActive)(line.integer(1));
    console->addText(done);
    return 0;
}

static int activeMaterials(Console* console, const CommandLine& line)
{
    return choose(console, line, &OGroup::setActiveTList, "ActiveTList change completed.\n");
}

static int activePaths(Console* console, const CommandLine& line)
{
    return choose(console, line, &OGroup::setActivePathList, "ActivePathList change completed.\n");
}

static int activeCamera(Console* console, const CommandLine& line)
{
    return choose(console, line, &OGroup::setActiveCamera, "ActiveCamera change completed.\n");
}

struct Command
{
    const char* name;
    int spaces; ///< that the line must have
    int (*run)(Console* console, const CommandLine& line);
};

static const Command commands[] = {
    {"HELP", 0, help},
    {"INFO", 0, info},
    {"MEM", 0, memory},
    {"EXIT", 0, requestExit},
    {"CLS", 0, requestClear},
    {"SCENEINFO", 0, sceneInfo},
    {"EVARLIST", 0, listVariables},
    {"EFUNCLIST", 0, listFunctions},
    {"SET", 1, set},
    {"EVAL", 0, evaluate},
    {"DIR", 1, listFiles},
    {"GET", 1, get},
    {"EXECSCRIPT", 1, executeScript},
    {"GAMMA", 1, gamma},
    {"FOV", 1, fieldOfView},
    {"ACTIVETLIST", 1, activeMaterials},
    {"ACTIVEPLIST", 1, activePaths},
    {"ACTIVECAMERA", 1, activeCamera},
    {"LOAD3DS", 2, load3dsCommand},
    {"RELOAD3DS", 0, reload3dsCommand},
    {"CLEAR3DS", 0, clear3dsCommand},
};

static int refuse(Console* console, const char* text)
{
    console->addText(text);
    return vrkPutToErrorLog("VRK Console parser failed to parse commandline!", 18);
}

static int obey(Console* console, const char* typed)
{
    const std::string echo = typed ? typed : "";
    append(console, ">" + echo + "\n");
    if (echo.size() > VRK_CONSOLE_LINE)
        return refuse(console, "Command line too long!\n");

    const CommandLine line(echo);
    const std::string name = line.getWord(0);
    for (const Command& command : commands)
    {
        if (name != command.name)
            continue;
        if (line.countSpaces() < command.spaces)
            return vrkPutToErrorLog("Missing parameters! Parse failed!", 21);
        return command.run(console, line);
    }
    return refuse(console, "Command not found!\n");
}

int Console::parse(const char* typed)
{
    int result = 0;
    if (!whileMemoryLasts([&] { result = obey(this, typed); }))
        return refuse(this, "Out of memory!\n");
    return result;
}
