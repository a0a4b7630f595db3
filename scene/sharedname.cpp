// Most names have one holder. Only those with more are listed, by their address, so that a name which a host
// has put in itself is freed like any other.

#include "scene/sharedname.h"

#include <unordered_map>

#include "core/memorylasts.h"
#include "vornik/core/memory.h"

// Holders beyond the first. Never destroyed: a host's static objects may outlive it.
static std::unordered_map<char*, int>& furtherHolders()
{
    static auto* holders = new std::unordered_map<char*, int>;
    return *holders;
}

char* shareName(char* name)
{
    const bool noted = !name || whileMemoryLasts([&] { ++furtherHolders()[name]; });
    return noted ? name : nullptr;
}

void releaseName(char** name)
{
    const auto shared = furtherHolders().find(*name);
    if (shared == furtherHolders().end())
    {
        vrkFree(name);
        return;
    }
    if (--shared->second == 0)
        furtherHolders().erase(shared);
    *name = nullptr;
}
