#include "assets/packread.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "platform/file.h"
#include "vornik/assets/pack.h"

uint64_t packLength()
{
    return vrkLength(packStream);
}

// A name without what differs between systems and habits: "./a/b" becomes "A\\B".
static std::string plainName(std::string name)
{
    for (char& c : name)
        c = c == '/' ? '\\' : static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    size_t start = 0;
    while (name.compare(start, 1, "\\") == 0 || name.compare(start, 2, ".\\") == 0)
        ++start;
    return name.substr(start);
}

std::string resolvePackedName(const std::string& name)
{
    if (packFindEntry(name.c_str()) >= 0)
        return name;
    const std::string plain = plainName(name);
    for (uint32_t i = 0; packDirectory && i < packEntryCount && !plain.empty(); ++i)
        if (plainName(packDirectory[i].name) == plain)
            return packDirectory[i].name;
    return "";
}

char* readPackedFile(const char* packName, const char* name, size_t padding, size_t* size)
{
    if (packOpen(packName) != 0)
        return nullptr;
    PackHandle* handle = packFileOpen(name, "rb");
    if (!handle)
        return nullptr;

    const uint64_t bytes = std::min<uint64_t>(packFileSize(handle), packLength());
    char* block = bytes <= INT_MAX ? static_cast<char*>(std::calloc(bytes + padding + 1, 1)) : nullptr;
    if (block)
        *size = packFileRead(block, 1, bytes, handle);
    packFileClose(handle);
    packClose();
    return block;
}
