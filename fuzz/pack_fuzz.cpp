// The pack layer: the input is a pack, and every member is looked up, read and read past its end.

#include <string>
#include <vector>

#include "fuzz/harness.h"
#include "vornik/assets/image.h"
#include "vornik/assets/pack.h"
#include "vornik/core/string.h"

static void readMember(const char* name)
{
    PackHandle* handle = packFileOpen(name, "rb");
    if (!handle)
        return;
    std::vector<char> bytes(packFileSize(handle) % 4096 + 1);
    for (int i = 0; i < 3 && !packFileEof(handle); ++i)
        packFileRead(bytes.data(), 1, bytes.size(), handle);
    packFileRead(bytes.data(), bytes.size(), 1, handle);
    packFileSize(handle);
    for (int i = 0; i < 4; ++i)
        readPackedImageListLine(handle);
    packFileClose(handle);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    const std::string pack = inputFile("ANY.PAK", data, size);
    String lines[64];
    if (packOpen(pack.c_str()) == 0)
    {
        for (uint32_t i = 0; i < packEntryCount && i < 64; ++i)
            readMember(std::string(packDirectory[i].name, sizeof packDirectory[i].name).c_str());
        readMember("NOT THERE");
    }
    packClose();
    readPackedImageList("FIRE.IFL", lines, pack.c_str());
    packClose();
    return 0;
}
