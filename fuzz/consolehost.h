// A host with a console, for the targets that type into it. It works in the folder of the inputs.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "fuzz/harness.h"
#include "vornik/console/console.h"
#include "vornik/core/errorlog.h"
#include "vornik/scene/scene.h"

inline float squareOf(float x)
{
    return x * x;
}

inline int nextOf(int i)
{
    return i == INT32_MAX ? 0 : i + 1;
}

inline void doNothing() {}

struct ConsoleHost
{
    Console console;
    Scene scene;
    float speed = 1;

    ConsoleHost()
    {
        std::filesystem::current_path(inputFolder());
        vrkInitErrorLog(&console);
        console.setScene(&scene);
        console.addVar(&speed, "speed");
        console.addVar(nullptr);
        console.addFunc(squareOf, "sqr");
        console.addFunc(nextOf, "next");
        console.addFunc(doNothing, "none");
    }
    ConsoleHost(const ConsoleHost&) = delete;
    ConsoleHost& operator=(const ConsoleHost&) = delete;
    ~ConsoleHost() { vrkInitErrorLog(3); }

    /// Takes the text, as a host does each frame.
    void drain()
    {
        std::vector<char> text(VRK_CONSOLE_TEXT);
        console.getText(text.data());
        console.exitRequest();
        console.clearRequest();
    }
};
