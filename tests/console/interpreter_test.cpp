#include "tests/console/consoletest.h"

#include <cmath>
#include <filesystem>

#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

using Interpreter = ConsoleTest;

static const std::string missing = "Missing parameters! Parse failed!\n";
static const std::string notFound = std::string("Command not found!\n") + parseFailed;

TEST_F(Interpreter, EchoesTheLineAsTyped)
{
    EXPECT_EQ(console.parse("hElp sEt"), 0);
    EXPECT_EQ(drained(console), ">hElp sEt\nSET [varname] [value]\nExample: SET VAR1 60\n\n");
}

TEST_F(Interpreter, CaseDoesNotMatter)
{
    EXPECT_EQ(said("help set"), said("HELP SET"));
    EXPECT_EQ(said("iNfO"), "Vornik Console v0.1\n");
}

TEST_F(Interpreter, RefusesWhatIsNoCommand)
{
    for (const char* line : {"", " ", " HELP", "HELPP", "HEL", "\tHELP", "HELP\t", "SET\tVAR0", "%s%n"})
        EXPECT_EQ(said(line, 18), notFound) << line;
}

TEST_F(Interpreter, Takes255CharactersAndNoMore)
{
    float value = 0;
    const std::string name(248, 'n');
    console.addVar(&value, name.c_str());
    const std::string longest = "SET " + name + " 12";
    ASSERT_EQ(longest.size(), 255u);
    EXPECT_EQ(said(longest), "Variable " + std::string(248, 'N') + " set to 12\n");
    EXPECT_EQ(said(longest + "3", 18), std::string("Command line too long!\n") + parseFailed);
    EXPECT_EQ(value, 12.0f);
    EXPECT_EQ(said(std::string(100000, 'x'), 18), std::string("Command line too long!\n") + parseFailed);
}

TEST_F(Interpreter, AnEchoThatDoesNotFitIsDropped)
{
    EXPECT_EQ(console.command(std::string(600000, 'x').c_str()), 18);
    EXPECT_EQ(drained(console), std::string("Command line too long!\n") + parseFailed);
}

TEST_F(Interpreter, HelpListsTheCommands)
{
    EXPECT_EQ(
        said("HELP"),
        "Current commands available:\n\nACTIVETLIST, ACTIVEPLIST, ACTIVECAMERA, CLS, CLEAR3DS, DIR, "
        "EFUNCLIST, EVAL, EVARLIST, EXECSCRIPT, EXIT, FOV, GAMMA, GET, HELP, INFO, LOAD3DS, MEM, RELOAD3DS, "
        "SCENEINFO, SET\n\n");
}

TEST_F(Interpreter, HelpTellsOfEachCommand)
{
    const struct
    {
        const char* name;
        const char* text;
    } texts[] = {
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
         "LOAD3DS [name] [matdir] [/r] [/a] [/m] [/s] [/x] clears and loads a new .3DS file to "
         "internal OGroup.\nIf /r specified lights are raytraced\nIf /a specified only animation is "
         "loaded\nIf /m specified only materials are loaded\nIf /s specified smoothing groups are "
         "calculated\nIf /x specified texture modifier is enabled\n\n"},
        {"EVARLIST", "EVARLIST lists all public external variables\n\n"},
        {"EFUNCLIST", "EFUNCLIST lists all public external functions\n\n"},
        {"EVAL", "[value] EVAL [value] execute external function\n\n"},
        {"CLS", "CLS request clear console window\n\n"},
        {"CLEAR3DS", "CLEAR3DS unloads OG which has been assigned to console\n\n"},
        {"DIR", "DIR [filename] shows directory listing (can use wildcards)\n\n"},
        {"EXECSCRIPT", "EXECSCRIPT [filename] executes a text file\n\n"},
    };
    for (const auto& entry : texts)
        EXPECT_EQ(said(std::string("HELP ") + entry.name), entry.text);
    for (const char* name : {"", "NOTHING", "SE", "SETT"})
        EXPECT_EQ(said(std::string("HELP ") + name), "Command does not exist!\n\n") << name;
    EXPECT_EQ(said("HELP  SET"), "Command does not exist!\n\n"); // word 1 is empty
    EXPECT_EQ(said("HELP SET GET"), texts[6].text);
}

TEST_F(Interpreter, InfoTellsTheVersionOfTheLanguage)
{
    EXPECT_EQ(said("INFO"), "Vornik Console v0.1\n");
    EXPECT_EQ(said("INFO and more words"), "Vornik Console v0.1\n");
}

TEST_F(Interpreter, MemTellsKilobytesAndPercent)
{
    const std::string text = said("MEM");
    unsigned long long numbers[4] = {};
    int percent = -1;
    int used = 0;
    ASSERT_EQ(std::sscanf(text.c_str(),
                          "Free memory available (phys/page): %llu Kbytes  -  %llu Kbytes\n"
                          "Total memory (phys/page): %llu Kbytes  -  %llu Kbytes\nMemory usage : %d%%\n%n",
                          &numbers[0], &numbers[1], &numbers[2], &numbers[3], &percent, &used),
              5)
        << text;
    EXPECT_EQ(static_cast<size_t>(used), text.size());
    EXPECT_EQ(text, "Free memory available (phys/page): " + std::to_string(numbers[0]) + " Kbytes  -  " +
                        std::to_string(numbers[1]) + " Kbytes\nTotal memory (phys/page): " +
                        std::to_string(numbers[2]) + " Kbytes  -  " + std::to_string(numbers[3]) +
                        " Kbytes\nMemory usage : " + std::to_string(percent) + "%\n");
    EXPECT_GT(numbers[0], 1000u);
    EXPECT_GE(numbers[2], numbers[0]);
    EXPECT_GE(numbers[3], numbers[1]);
    EXPECT_GE(percent, 0);
    EXPECT_LE(percent, 100);
}

TEST_F(Interpreter, ExitIsARequest)
{
    EXPECT_EQ(said("exit"), "Exit requested!\n");
    EXPECT_FALSE(console.clearRequest());
    EXPECT_TRUE(console.exitRequest());
    EXPECT_FALSE(console.exitRequest());
}

TEST_F(Interpreter, ClearIsARequestAndKeepsTheText)
{
    console.addText("before ");
    EXPECT_EQ(console.command("CLS"), 0);
    EXPECT_EQ(drained(console), "before >CLS\nClear requested!\n");
    EXPECT_FALSE(console.exitRequest());
    EXPECT_TRUE(console.clearRequest());
    EXPECT_FALSE(console.clearRequest());
}

TEST_F(Interpreter, SetStoresAndTellsTheValueCut)
{
    float value = 0;
    console.addVar(&value, "speed");
    EXPECT_EQ(said("SET speed 60"), "Variable SPEED set to 60\n");
    EXPECT_EQ(value, 60.0f);
    EXPECT_EQ(said("set SPEED 2.75 and more"), "Variable SPEED set to 2\n");
    EXPECT_EQ(value, 2.75f);
    EXPECT_EQ(said("SET SPEED 1e2"), "Variable SPEED set to 100\n");
    EXPECT_EQ(said("SET SPEED -0.5"), "Variable SPEED set to 0\n");
    EXPECT_EQ(value, -0.5f);
    EXPECT_EQ(said("SET SPEED nonsense"), "Variable SPEED set to 0\n");
    EXPECT_EQ(value, 0.0f);
}

TEST_F(Interpreter, SetCountsSpacesNotWords)
{
    float value = 5;
    console.addVar(&value);
    EXPECT_EQ(said("SET", 21), missing);
    EXPECT_EQ(said("SET VAR0"), "Variable VAR0 set to 0\n");
    EXPECT_EQ(value, 0.0f);
    EXPECT_EQ(said("SET  VAR0 5"), "Variable not found\n"); // word 1 is empty
    EXPECT_EQ(value, 0.0f);
    EXPECT_EQ(said("SET "), "Variable not found\n");
}

TEST_F(Interpreter, SetTakesStoredNegativesForFaults)
{
    float value = 0;
    console.addVar(&value);
    console.addVar(nullptr, "NONE");
    const std::string null = "Error! Variable found but reference is NULL\n";
    EXPECT_EQ(said("SET NOBODY 4"), "Variable not found\n");
    EXPECT_EQ(said("SET NONE 4"), null);
    EXPECT_EQ(said("SET VAR0 -1"), "Variable not found\n");
    EXPECT_EQ(value, -1.0f);
    EXPECT_EQ(said("SET VAR0 -2.9"), null);
    EXPECT_EQ(value, -2.9f);
    EXPECT_EQ(said("SET VAR0 -3"), "");
    EXPECT_EQ(value, -3.0f);
}

TEST_F(Interpreter, SetOfValuesBeyondAllBounds)
{
    float value = 0;
    console.addVar(&value);
    EXPECT_EQ(said("SET VAR0 1E999"), "Variable VAR0 set to 2147483647\n");
    EXPECT_TRUE(std::isinf(value));
    EXPECT_EQ(said("SET VAR0 -1E30"), "");
    EXPECT_EQ(value, -1e30f);
    EXPECT_EQ(said("SET VAR0 NAN"), "Variable VAR0 set to 0\n");
    EXPECT_TRUE(std::isnan(value));
}

TEST_F(Interpreter, GetAlwaysTellsAValue)
{
    float value = 2.5f;
    console.addVar(&value, "v");
    console.addVar(nullptr, "none");
    EXPECT_EQ(said("GET v"), "Variable V = 2.500000\n");
    EXPECT_EQ(said("GET X"), "Variable X = -1.000000\nVariable not found\n");
    EXPECT_EQ(said("GET NONE"), "Variable NONE = -2.000000\nError! Variable found but reference is NULL\n");
    value = -1.0f;
    EXPECT_EQ(said("GET V"), "Variable V = -1.000000\nVariable not found\n");
    EXPECT_EQ(said("GET", 21), missing);
    EXPECT_EQ(said("GET "), "Variable  = -1.000000\nVariable not found\n");
    EXPECT_EQ(said("GET %s%n"), "Variable %S%N = -1.000000\nVariable not found\n");
}

static float floatGiven;
static int intGiven;

TEST_F(Interpreter, EvalReadsOneWordInBothForms)
{
    console.addFunc(
        +[](float value) { floatGiven = value; }, "takes_float");
    console.addFunc(
        +[](int value)
        {
            intGiven = value;
            return 0.5f;
        },
        "takes_int");
    EXPECT_EQ(said("EVAL takes_float 2.75"), "Function (TAKES_FLOAT) returned a value (0.000000)\n");
    EXPECT_EQ(floatGiven, 2.75f);
    EXPECT_EQ(said("EVAL takes_int 2.75"), "Function (TAKES_INT) returned a value (0.500000)\n");
    EXPECT_EQ(intGiven, 2);
    EXPECT_EQ(said("EVAL takes_int 99999999999"), "Function (TAKES_INT) returned a value (0.500000)\n");
    EXPECT_EQ(intGiven, 2147483647);
    EXPECT_EQ(said("EVAL takes_float"), "Function (TAKES_FLOAT) returned a value (0.000000)\n");
    EXPECT_EQ(floatGiven, 0.0f);
    EXPECT_EQ(said("EVAL nobody 5"), "Function (NOBODY) returned a value (0.000000)\n");
    EXPECT_EQ(said("EVAL"), "Function () returned a value (0.000000)\n");
    console.addFunc(static_cast<float (*)()>(nullptr), "null");
    EXPECT_EQ(said("EVAL null"), "Function (NULL) returned a value (-2.000000)\n");
}

TEST_F(Interpreter, GammaIsSetWithinItsBounds)
{
    vrkSetGamma(1.0f);
    EXPECT_EQ(said("GAMMA 0.75"), "Gamma value changed.\n");
    EXPECT_EQ(vrkGetGamma(), 0.75f);
    EXPECT_EQ(said("GAMMA 5"), "Gamma value changed.\n");
    EXPECT_EQ(vrkGetGamma(), 0.75f);
    EXPECT_EQ(said("GAMMA", 21), missing);
    vrkSetGamma(1.0f);
}

TEST_F(Interpreter, FieldOfViewLiesFrom1To179)
{
    vrkSelectRasterizer(2); // keeps the value without a surface
    const std::string invalid = "Invalid value (value out of range)!\n";
    for (const float value : {1.0f, 179.0f, 60.5f})
    {
        EXPECT_EQ(said("FOV " + std::to_string(value)), "Fov value changed.\n");
        EXPECT_EQ(vrkGetFOV(), value);
    }
    for (const char* value : {"0.5", "0.999999", "179.5", "180", "-90", "x", "", "NAN", "1E999"})
        EXPECT_EQ(said(std::string("FOV ") + value, 52), invalid) << value;
    EXPECT_EQ(said("FOV", 21), missing);
    EXPECT_EQ(vrkGetFOV(), 60.5f);
}

TEST_F(Interpreter, CommandsWithParametersNeedTheirSpaces)
{
    for (const char* line : {"SET", "DIR", "GET", "EXECSCRIPT", "GAMMA", "FOV", "ACTIVETLIST", "ACTIVEPLIST",
                             "ACTIVECAMERA", "LOAD3DS", "LOAD3DS A.3DS"})
        EXPECT_EQ(said(line, 21), missing) << line;
}

TEST_F(Interpreter, DirListsFilesAndTheirSizes)
{
    folder.write("data/a.3ds", std::string("1234567"));
    folder.write("data/B.3DS", std::string());
    folder.write("data/b.txt", std::string("12"));
    EXPECT_EQ(said("DIR data\\*.3ds"), "B.3DS\t0\na.3ds\t7\n");
    EXPECT_EQ(said("DIR d*"), "data\t0\n");
    EXPECT_EQ(said("DIR none*"), "");
    EXPECT_EQ(said("DIR "), "");
}

TEST_F(Interpreter, DirShowsTheLow32BitsOfASize)
{
    const std::string path = folder.write("large.pak", std::string());
    std::error_code failed;
    std::filesystem::resize_file(path, 0x180000005, failed); // takes no room on the disk
    if (failed)
        GTEST_SKIP() << "no files of that size here";
    EXPECT_EQ(said("DIR large.pak"), "large.pak\t-2147483643\n");
}
