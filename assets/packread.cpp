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

static char plainCharacter(char c)
{
    return c == '/' ? '\\' : static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

static bool isSeparator(char c)
{
    return c == '/' || c == '\\';
}

// A name without what leads nowhere in front of it: "./a/b" becomes "a/b".
static const char* plainStart(const char* name)
{
    while (isSeparator(*name) || (*name == '.' && isSeparator(name[1])))
        ++name;
    return name;
}

// Are two names one but for what differs between systems and habits?
static bool isSameName(const char* a, const char* b)
{
    for (; *a && plainCharacter(*a) == plainCharacter(*b); ++a)
        ++b;
    return !*a && !*b;
}

std::string resolvePackedName(const std::string& name)
{
    if (packFindEntry(name.c_str()) >= 0)
        return name;
    const char* plain = plainStart(name.c_str());
    for (uint32_t i = 0; packDirectory && i < packEntryCount && *plain; ++i)
        if (isSameName(plainStart(packDirectory[i].name), plain))
            return packDirectory[i].name;
    return "";
}

char* readPackedFile(const char* packName, const char* name, size_t padding, size_t* size)
{
    if (!packName || packOpen(packName) != 0)
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
