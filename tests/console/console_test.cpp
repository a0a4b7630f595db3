#include "tests/console/consoletest.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "apps/vornik/surface.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/scene.h"

using ConsoleStore = ConsoleTest;

static float floatGiven;
static int intGiven;
static std::string called;

static void voidOfFloat(float value)
{
    called = "voidOfFloat";
    floatGiven = value;
}
static void voidOfInt(int value)
{
    called = "voidOfInt";
    intGiven = value;
}
static void voidOfNothing()
{
    called = "voidOfNothing";
}
static int intOfFloat(float value)
{
    called = "intOfFloat";
    floatGiven = value;
    return 7;
}
static int intOfInt(int value)
{
    called = "intOfInt";
    intGiven = value;
    return value * 2;
}
static int intOfNothing()
{
    called = "intOfNothing";
    return -3;
}
static float floatOfFloat(float value)
{
    called = "floatOfFloat";
    return value * 0.5f;
}
static float floatOfInt(int value)
{
    called = "floatOfInt";
    return static_cast<float>(value) + 0.25f;
}
static float floatOfNothing()
{
    called = "floatOfNothing";
    return 1.5f;
}

TEST(Console, BeginsWithItsBannerAndNothingElse)
{
    Console console;
    EXPECT_EQ(console.text, std::string("Vornik Console v1.0\n"));
    EXPECT_EQ(console.varCount, 0);
    for (const int32_t count : console.funcCounts)
        EXPECT_EQ(count, 0);
    EXPECT_EQ(console.lastLoad, std::string());
    EXPECT_EQ(console.varPointers[0], nullptr);
    EXPECT_EQ(console.varNames[1023], nullptr);
    EXPECT_EQ(console.voidFloatFuncs[0], nullptr);
    EXPECT_EQ(console.floatNames[63], nullptr);
    EXPECT_EQ(console.progressFunc, nullptr);
    EXPECT_EQ(console.scene, nullptr);
    EXPECT_FALSE(console.exitRequest());
    EXPECT_FALSE(console.clearRequest());
}

TEST(Console, GivesItsTextOnce)
{
    Console console;
    std::vector<char> out(VRK_CONSOLE_TEXT, 'x');
    EXPECT_EQ(console.getText(out.data()), 20);
    EXPECT_STREQ(out.data(), "Vornik Console v1.0\n");
    EXPECT_EQ(console.getText(out.data()), 0);
    EXPECT_STREQ(out.data(), "");
}

TEST(Console, FieldsStandInTheirOrder)
{
    Console console;
    const auto at = [&console](const void* field)
    { return static_cast<const char*>(field) - reinterpret_cast<const char*>(&console); };
    const std::vector<ptrdiff_t> places = {
        at(&console.varCount),       at(console.funcCounts),    at(console.lastLoad),
        at(console.varPointers),     at(console.varNames),      at(console.voidFloatFuncs),
        at(console.voidFloatNames),  at(console.voidIntFuncs),  at(console.voidIntNames),
        at(console.voidFuncs),       at(console.voidNames),     at(console.intFloatFuncs),
        at(console.intFloatNames),   at(console.intIntFuncs),   at(console.intIntNames),
        at(console.intFuncs),        at(console.intNames),      at(console.floatFloatFuncs),
        at(console.floatFloatNames), at(console.floatIntFuncs), at(console.floatIntNames),
        at(console.floatFuncs),      at(console.floatNames),    at(&console.progressFunc),
        at(&console.text),           at(&console.scene),        at(&console.exitFlag),
        at(&console.clearFlag)};
    const ptrdiff_t array = 64 * sizeof(void*);
    EXPECT_EQ(places[0], 0);
    EXPECT_EQ(places[1], 4);
    EXPECT_EQ(places[2], 40);
    EXPECT_EQ(places[3], 296);
    for (size_t i = 4; i <= 5; ++i)
        EXPECT_EQ(places[i] - places[i - 1], 1024 * static_cast<ptrdiff_t>(sizeof(void*)));
    for (size_t i = 6; i <= 23; ++i)
        EXPECT_EQ(places[i] - places[i - 1], array) << i;
    for (size_t i = 24; i <= 26; ++i)
        EXPECT_EQ(places[i] - places[i - 1], static_cast<ptrdiff_t>(sizeof(void*))) << i;
    EXPECT_EQ(places[27] - places[26], 1);
}

TEST_F(ConsoleStore, TakesNoNullScene)
{
    Scene scene;
    EXPECT_EQ(console.setScene(&scene), 0);
    EXPECT_EQ(console.setScene(nullptr), 25);
    EXPECT_EQ(console.scene, &scene);
    EXPECT_EQ(drained(console), sceneIsNull);
}

TEST_F(ConsoleStore, KeepsTheProgressFunction)
{
    EXPECT_EQ(console.addProgressFunc(voidOfFloat), 0);
    EXPECT_EQ(console.progressFunc, voidOfFloat);
    EXPECT_EQ(console.addProgressFunc(nullptr), 0);
    EXPECT_EQ(console.progressFunc, nullptr);
}

TEST_F(ConsoleStore, NamesVariablesByTheirNumber)
{
    float a = 1, b = 2;
    EXPECT_EQ(console.addVar(&a), 0);
    EXPECT_EQ(console.addVar(&b, "speed"), 0);
    EXPECT_EQ(console.addVar(&a), 0);
    EXPECT_EQ(console.varCount, 3);
    EXPECT_STREQ(console.varNames[0], "VAR0");
    EXPECT_STREQ(console.varNames[1], "SPEED");
    EXPECT_STREQ(console.varNames[2], "VAR2");
    EXPECT_EQ(console.varPointers[1], &b);
}

TEST_F(ConsoleStore, HoldsNoMoreThan1024Variables)
{
    float value = 5;
    for (int i = 0; i < 1024; ++i)
        ASSERT_EQ(console.addVar(&value), 0) << i;
    EXPECT_STREQ(console.varNames[1023], "VAR1023");
    EXPECT_EQ(drained(console), "");
    EXPECT_EQ(console.addVar(&value), 22);
    EXPECT_EQ(console.addVar(&value, "MORE"), 22);
    EXPECT_EQ(console.varCount, 1024);
    EXPECT_EQ(console.getEVar("MORE"), -1.0f);
    const std::string full =
        "VarList is full (Console) create another Console or increase number of maxVars\n";
    EXPECT_EQ(drained(console), full + full);
}

template <class Function>
static void fillSignature(Console& console, Function f, int signature)
{
    for (int i = 0; i < 64; ++i)
        ASSERT_EQ(console.addFunc(f, ("F" + std::to_string(i)).c_str()), 0);
    EXPECT_EQ(console.addFunc(f, "MORE"), 29);
    EXPECT_EQ(console.funcCounts[signature], 64);
    EXPECT_EQ(drained(console), "FuncList(n) is full (Console) create another Console or increase number of "
                                "maxFuncs(n)\n");
}

TEST_F(ConsoleStore, Holds64FunctionsOfEachSignature)
{
    fillSignature(console, voidOfFloat, 0);
    fillSignature(console, voidOfInt, 1);
    fillSignature(console, voidOfNothing, 2);
    fillSignature(console, intOfFloat, 3);
    fillSignature(console, intOfInt, 4);
    fillSignature(console, intOfNothing, 5);
    fillSignature(console, floatOfFloat, 6);
    fillSignature(console, floatOfInt, 7);
    fillSignature(console, floatOfNothing, 8);
    EXPECT_STREQ(console.voidFloatNames[63], "F63");
    EXPECT_EQ(console.floatFuncs[63], floatOfNothing);
    called = "";
    EXPECT_EQ(console.evalEFunc("MORE", 0, 0), 0.0f);
    EXPECT_EQ(called, "");
}

TEST_F(ConsoleStore, CallsEachSignatureWithItsArgument)
{
    console.addFunc(voidOfFloat, "VF");
    console.addFunc(voidOfInt, "VI");
    console.addFunc(voidOfNothing, "VV");
    console.addFunc(intOfFloat, "IF");
    console.addFunc(intOfInt, "II");
    console.addFunc(intOfNothing, "IV");
    console.addFunc(floatOfFloat, "FF");
    console.addFunc(floatOfInt, "FI");
    console.addFunc(floatOfNothing, "FV");
    const auto expectCall = [this](const char* name, const std::string& function, float result)
    {
        called = "";
        EXPECT_EQ(console.evalEFunc(name, 12, 2.5f), result) << name;
        EXPECT_EQ(called, function);
    };
    floatGiven = 0;
    intGiven = 0;
    expectCall("VF", "voidOfFloat", 0.0f);
    EXPECT_EQ(floatGiven, 2.5f);
    expectCall("VI", "voidOfInt", 0.0f);
    EXPECT_EQ(intGiven, 12);
    expectCall("VV", "voidOfNothing", 0.0f);
    floatGiven = 0;
    expectCall("IF", "intOfFloat", 7.0f);
    EXPECT_EQ(floatGiven, 2.5f);
    expectCall("II", "intOfInt", 24.0f);
    expectCall("IV", "intOfNothing", -3.0f);
    expectCall("FF", "floatOfFloat", 1.25f);
    expectCall("FI", "floatOfInt", 12.25f);
    expectCall("FV", "floatOfNothing", 1.5f);
    expectCall("NOBODY", "", 0.0f);
}

TEST_F(ConsoleStore, SearchesSignaturesInTheirOrder)
{
    console.addFunc(floatOfNothing, "F");
    const auto calledNow = [this]
    {
        console.evalEFunc("F", 1, 1);
        return called;
    };
    EXPECT_EQ(calledNow(), "floatOfNothing");
    console.addFunc(floatOfInt, "F");
    EXPECT_EQ(calledNow(), "floatOfInt");
    console.addFunc(floatOfFloat, "F");
    EXPECT_EQ(calledNow(), "floatOfFloat");
    console.addFunc(intOfNothing, "F");
    EXPECT_EQ(calledNow(), "intOfNothing");
    console.addFunc(intOfInt, "F");
    EXPECT_EQ(calledNow(), "intOfInt");
    console.addFunc(intOfFloat, "F");
    EXPECT_EQ(calledNow(), "intOfFloat");
    console.addFunc(voidOfNothing, "F");
    EXPECT_EQ(calledNow(), "voidOfNothing");
    console.addFunc(voidOfInt, "F");
    EXPECT_EQ(calledNow(), "voidOfInt");
    console.addFunc(voidOfFloat, "F");
    EXPECT_EQ(calledNow(), "voidOfFloat");
}

TEST_F(ConsoleStore, OfEqualNamesTheLastOneCounts)
{
    console.addFunc(
        +[](int) { return 1; }, "twice");
    console.addFunc(
        +[](int) { return 2; }, "TWICE");
    EXPECT_EQ(console.evalEFunc("TWICE", 0, 0), 2.0f);

    float first = 1, second = 2;
    console.addVar(&first, "speed");
    console.addVar(&second, "SPEED");
    EXPECT_EQ(console.getEVar("SPEED"), 2.0f);
    EXPECT_EQ(console.setEVar("SPEED", 9.0f), 9);
    EXPECT_EQ(first, 1.0f);
    EXPECT_EQ(second, 9.0f);
}

TEST_F(ConsoleStore, NullFunctionsAnswerMinusTwo)
{
    console.addFunc(floatOfNothing, "F");
    console.addFunc(static_cast<void (*)(float)>(nullptr), "F");
    EXPECT_EQ(console.evalEFunc("F", 0, 0), -2.0f);
}

TEST_F(ConsoleStore, NamesOfAnyLengthAreKeptWholeInUpperCase)
{
    const std::string name = "a name that is much longer than five characters " + std::string(3000, 'x');
    console.addFunc(intOfNothing, name.c_str());
    float value = 4;
    console.addVar(&value, name.c_str());
    std::string raised = name;
    for (char& c : raised)
        c = static_cast<char>(std::toupper(c));
    EXPECT_EQ(console.intNames[0], raised);
    EXPECT_EQ(console.varNames[0], raised);
    EXPECT_EQ(console.evalEFunc(raised.c_str(), 0, 0), -3.0f);
    EXPECT_EQ(console.getEVar(raised.c_str()), 4.0f);
    EXPECT_EQ(console.getEVar(name.c_str()), -1.0f); // names asked for are compared exactly
}

TEST_F(ConsoleStore, ValuesComeAndGoThroughThePointer)
{
    float value = 3.25f;
    console.addVar(&value, "v");
    console.addVar(nullptr, "none");
    EXPECT_EQ(console.getEVar("V"), 3.25f);
    EXPECT_EQ(console.getEVar("NOBODY"), -1.0f);
    EXPECT_EQ(console.getEVar("NONE"), -2.0f);
    EXPECT_EQ(console.setEVar("V", 2.75f), 2);
    EXPECT_EQ(value, 2.75f);
    EXPECT_EQ(console.setEVar("V", -1.5f), -1);
    EXPECT_EQ(value, -1.5f);
    EXPECT_EQ(console.setEVar("NOBODY", 5), -1);
    EXPECT_EQ(console.setEVar("NONE", 5), -2);
}

TEST_F(ConsoleStore, ValuesBeyondAnIntAnswerTheNearest)
{
    float value = 0;
    console.addVar(&value);
    EXPECT_EQ(console.setEVar("VAR0", 1e20f), std::numeric_limits<int>::max());
    EXPECT_EQ(value, 1e20f);
    EXPECT_EQ(console.setEVar("VAR0", 2147483648.0f), std::numeric_limits<int>::max());
    EXPECT_EQ(console.setEVar("VAR0", 2147483520.0f), 2147483520);
    EXPECT_EQ(console.setEVar("VAR0", -INFINITY), std::numeric_limits<int>::min());
    EXPECT_EQ(console.setEVar("VAR0", NAN), 0);
    EXPECT_TRUE(std::isnan(value));
}

TEST_F(ConsoleStore, TextThatDoesNotFitIsDropped)
{
    const std::string most(511990, 'a');
    EXPECT_EQ(console.addText(most.c_str()), 0);
    EXPECT_EQ(console.addText("0123456789"), 0); // exactly 512,000
    EXPECT_EQ(std::strlen(console.text), 511990u);
    EXPECT_EQ(console.addText("012345678"), 0); // one below
    EXPECT_EQ(std::strlen(console.text), 511999u);
    EXPECT_EQ(console.addText("x"), 0);
    EXPECT_EQ(console.addText(""), 0);
    EXPECT_EQ(drained(console), most + "012345678");
    console.addText("again");
    EXPECT_EQ(drained(console), "again");
}

TEST_F(ConsoleStore, CommandsNeverOverrunTheText)
{
    float value = 1;
    for (int i = 0; i < 1024; ++i)
        console.addVar(&value, std::string(200, 'n').c_str());
    for (int i = 0; i < 40; ++i)
        for (const char* line : {"HELP", "EVARLIST", "MEM", "GET X", "NO SUCH", "EFUNCLIST", "DIR *"})
            console.command(line);
    const std::string text = drained(console);
    EXPECT_LT(text.size(), 512000u);
    EXPECT_GT(text.size(), 511900u);
}

TEST_F(ConsoleStore, ATextWithoutItsEndIsTakenToTheEndOfTheBlock)
{
    std::memset(console.text, 'x', VRK_CONSOLE_TEXT);
    console.addText("more");
    EXPECT_EQ(drained(console), std::string(511999, 'x'));
}

TEST_F(ConsoleStore, RequestsAreAnsweredOnce)
{
    console.exitFlag = 1;
    EXPECT_TRUE(console.exitRequest());
    EXPECT_FALSE(console.exitRequest());
    console.clearFlag = 1;
    EXPECT_TRUE(console.clearRequest());
    EXPECT_FALSE(console.clearRequest());
    EXPECT_FALSE(console.exitRequest());
}

TEST_F(ConsoleStore, NullArgumentsAreHarmless)
{
    float value = 1;
    EXPECT_EQ(console.addVar(&value, nullptr), 0);
    EXPECT_STREQ(console.varNames[0], "VAR0");
    EXPECT_EQ(console.addFunc(intOfNothing, nullptr), 0);
    EXPECT_STREQ(console.intNames[0], "");
    EXPECT_EQ(console.getEVar(nullptr), -1.0f);
    EXPECT_EQ(console.setEVar(nullptr, 1), -1);
    EXPECT_EQ(console.evalEFunc(nullptr, 0, 0), 0.0f);
    EXPECT_EQ(console.addText(nullptr), 0);
    console.addText("kept");
    EXPECT_EQ(console.getText(nullptr), 0);
    console.dir(nullptr);
    EXPECT_EQ(drained(console), "kept");
    EXPECT_EQ(console.readScript(nullptr), 31);
    EXPECT_EQ(drained(console), "Script file not found!\n");
    EXPECT_EQ(console.command(nullptr), 18);
    EXPECT_EQ(drained(console), std::string(">\nCommand not found!\n") + parseFailed);
    EXPECT_EQ(console.readln(nullptr).length(), 0);
}

TEST_F(ConsoleStore, HostsMayReleaseTheText)
{
    std::free(console.text);
    console.text = nullptr;
    console.addText("lost");
    char out[4] = "xyz";
    EXPECT_EQ(console.getText(out), 0);
    EXPECT_EQ(console.command("HELP"), 0);
}

TEST_F(ConsoleStore, HearsReportsWithTheirLineFeed)
{
    EXPECT_EQ(vrkPutToErrorLog("100% %s %n", 41), 41);
    EXPECT_EQ(vrkPutToErrorLog("", 0), 0);
    EXPECT_EQ(drained(console), "100% %s %n\n\n");
    vrkInitErrorLog(3);
    vrkPutToErrorLog("unheard", 1);
    EXPECT_EQ(drained(console), "");
}

TEST(Console, ThatIsGoneHearsNothing)
{
    const VRKError saved = vrkError;
    {
        Console console;
        vrkInitErrorLog(&console);
    }
    EXPECT_EQ(vrkError.console, nullptr);
    EXPECT_EQ(vrkPutToErrorLog("to nobody", 9), 9);
    vrkError = saved;
}

TEST_F(ConsoleStore, HearsTheStartOfTheEngine)
{
    static const Surface surface(32, 32);
    ASSERT_EQ(initVornik(0, surface.window(), &console, 32, 0, 24, 25, false, 0, true), 0);
    EXPECT_EQ(vrkError.mode, 2);
    EXPECT_EQ(vrkGetFPS(), 25);
    const std::string text = drained(console);
    EXPECT_EQ(text.rfind("Requested Colorbits: 32 Alphabits: 0 Depthbits: 24\nResponse Colorbits: ", 0), 0u);
    EXPECT_NE(text.find("OpenGL information:\n  Vendor: "), std::string::npos);
}
