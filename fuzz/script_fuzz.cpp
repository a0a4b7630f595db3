// Scripts of any content, which may run one another and themselves.

#include "fuzz/consolehost.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    ConsoleHost host;
    const std::string path = inputFile("S", data, size);
    host.console.readScript(path.c_str());
    host.drain();
    return 0;
}
