// The console: lines as they are typed, and the same bytes as a script that the lines may run. A @ stands for
// the folder of the script and of a scene.

#include <sstream>
#include <string>

#include "fuzz/harness.h"
#include "tests/support/completescene.h"
#include "tests/support/imagewriter.h"
#include "vornik/console/console.h"
#include "vornik/core/errorlog.h"
#include "vornik/scene/scene.h"

static float variable;

static void startWithScene()
{
    startSilentEngine();
    static const bool started = saveFile(inputFolder() + "SCENE.3DS", build3ds(completeScene()));
    static_cast<void>(started);
}

static std::string withFolders(const uint8_t* data, size_t size)
{
    std::string text;
    for (const uint8_t* c = data; c < data + size; ++c)
        text += *c == '@' ? inputFolder() : std::string(1, static_cast<char>(*c));
    return text;
}

static void registerAll(Console* console)
{
    console->addVar(&variable, "speed");
    console->addVar(nullptr, "null");
    console->addFunc(
        +[](float value) { variable = value; }, "set");
    console->addFunc(
        +[](int value) { return value; }, "int");
    console->addFunc(
        +[] { return variable; }, "get");
    console->addFunc(static_cast<int (*)()>(nullptr), "none");
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startWithScene();
    Scene scene;
    Console console;
    console.setScene(&scene);
    registerAll(&console);
    vrkInitErrorLog(&console);

    const std::string script = withFolders(data, size);
    inputFile("SCRIPT.TXT", reinterpret_cast<const uint8_t*>(script.data()), script.size());
    std::istringstream lines(script);
    for (std::string line; std::getline(lines, line);)
        console.command(line.c_str());
    static char text[VRK_CONSOLE_TEXT];
    console.getText(text);
    vrkInitErrorLog(3);
    return 0;
}
