// The command language: lines of any kind against a console with a scene, functions and variables.

#include "fuzz/consolehost.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    ConsoleHost host;
    std::string line;
    for (size_t i = 0; i <= size; ++i)
        if (i == size || data[i] == '\n')
        {
            host.console.command(line.c_str());
            line.clear();
        }
        else
            line += static_cast<char>(data[i]);
    host.drain();
    return 0;
}
