#include "console/help.h"

struct HelpEntry
{
    const char* name;
    const char* text;
};

static const HelpEntry entries[] = {
    {"FOV", "FOV [value] set FOV value (normal = 90 range [1-179])\n\n"},
    {"GAMMA", "GAMMA [value] set gamma value (normal = 0.75)\n\n"},
    {"ACTIVETLIST", "ACTIVETLIST [n] set active MaterialList\n\n"},
    {"ACTIVEPLIST", "ACTIVEPLIST [n] set active PathList\n\n"},
    {"ACTIVECAMERA", "ACTIVECAMERA [n] set active Camera\n\n"},
    {"RELOAD3DS", "RELOAD3DS reloads current scene\n\n"},
    {"SET", "SET [varname] [value]\nExample: SET VAR1 60\n\n"},
    {"GET", "[value] GET [varname]\nExample: GET VAR1 Result: 60\n\n"},
    {"INFO", "INFO shows info about console\n"},
    {"MEM", "MEM shows available memory information\n"},
    {"HELP", "HELP [command name]\nExample: HELP SET\n\n"},
    {"EXIT", "EXIT set exitFlag on.\n\n"},
    {"SCENEINFO", "SCENEINFO shows information about assigned ObjectGroup\n\n"},
    {"LOAD3DS",
     "LOAD3DS [name] [matdir] [/r] [/a] [/m] [/s] [/x] clears and loads a new .3DS file to internal "
     "OGroup.\n"
     "If /r specified lights are raytraced\n"
     "If /a specified only animation is loaded\n"
     "If /m specified only materials are loaded\n"
     "If /s specified smoothing groups are calculated\n"
     "If /x specified texture modifier is enabled\n\n"},
    {"EVARLIST", "EVARLIST lists all public external variables\n\n"},
    {"EFUNCLIST", "EFUNCLIST lists all public external functions\n\n"},
    {"EVAL", "[value] EVAL [value] execute external function\n\n"},
    {"CLS", "CLS request clear console window\n\n"},
    {"CLEAR3DS", "CLEAR3DS unloads OG which has been assigned to console\n\n"},
    {"DIR", "DIR [filename] shows directory listing (can use wildcards)\n\n"},
    {"EXECSCRIPT", "EXECSCRIPT [filename] executes a text file\n\n"},
};

const char* helpText(const std::string& command)
{
    for (const HelpEntry& entry : entries)
        if (command == entry.name)
            return entry.text;
    return "Command does not exist!\n\n";
}

const char* helpList()
{
    return "Current commands available:\n\n"
           "ACTIVETLIST, ACTIVEPLIST, ACTIVECAMERA, CLS, CLEAR3DS, DIR, EFUNCLIST, EVAL, EVARLIST, "
           "EXECSCRIPT, "
           "EXIT, FOV, GAMMA, GET, HELP, INFO, LOAD3DS, MEM, RELOAD3DS, SCENEINFO, SET\n\n";
}
