// vornik console: the engine's console in a terminal, on a pipe, or with a script.
#pragma once

#include <string>

struct ConsoleOptions
{
    std::string script; ///< "-" for standard input; empty reads lines instead
    int width = 1280;   ///< of what SHOT draws
    int height = 720;
};

/// @return the exit status: 0; the number of the first line that failed, unless they are typed on a terminal;
/// 1 if the script or OpenGL can't be had
int console(const ConsoleOptions& options);
