// Resolves names component by component: an exact entry first, and only where that fails a search of the
// folder, so that a name that is right costs no directory read.

#include "platform/file.h"

#include <cctype>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <strings.h>
#include <sys/stat.h>
#include <vector>

#include "core/memorylasts.h"
#include "platform/openfolder.h"

static bool exists(const std::string& path)
{
    struct stat entry;
    return stat(path.c_str(), &entry) == 0;
}

// Devices and pipes may block, or have no end.
static bool isPlainFile(const std::string& path)
{
    struct stat entry;
    return stat(path.c_str(), &entry) == 0 && S_ISREG(entry.st_mode);
}

static bool isFolder(const std::string& path)
{
    struct stat entry;
    return stat(path.c_str(), &entry) == 0 && S_ISDIR(entry.st_mode);
}

// The entry of a folder that equals a name but for case, the first in byte order; empty if there is none.
static std::string entryInOtherCase(const std::string& folder, const std::string& name)
{
    std::string best;
    const OpenFolder entries(opendir(folder.empty() ? "." : folder.c_str()));
    if (!entries)
        return best;
    while (const dirent* entry = readdir(entries.get()))
        if (strcasecmp(entry->d_name, name.c_str()) == 0 && (best.empty() || best > entry->d_name))
            best = entry->d_name;
    return best;
}

static std::vector<std::string> components(const char* name)
{
    std::vector<std::string> parts(1);
    for (const char* c = name; *c; ++c)
    {
        if (*c == '/' || *c == '\\')
            parts.emplace_back();
        else
            parts.back() += *c;
    }
    return parts;
}

// Path of one entry of a folder, in the case in which it exists; empty if there is none.
static std::string findEntry(const std::string& folder, const std::string& name)
{
    if (exists(folder + name))
        return folder + name;
    const std::string entry = entryInOtherCase(folder, name);
    return entry.empty() ? entry : folder + entry;
}

// Resolves all components but the last. @return the folder with a closing slash, empty for the current one
static bool resolveFolder(const std::vector<std::string>& parts, std::string* folder)
{
    folder->clear();
    for (size_t i = 0; i + 1 < parts.size(); ++i)
    {
        if (parts[i].empty())
        {
            if (i == 0)
                *folder = "/";
            continue;
        }
        const std::string path = findEntry(*folder, parts[i]);
        if (path.empty() || !isFolder(path))
            return false;
        *folder = path + "/";
    }
    return true;
}

std::string vrkResolveName(const char* name)
{
    if (!name || !*name)
        return "";
    if (exists(name))
        return name;
    const std::vector<std::string> parts = components(name);
    std::string folder;
    if (!resolveFolder(parts, &folder))
        return "";
    return parts.back().empty() ? folder : findEntry(folder, parts.back());
}

static std::string nameToCreate(const char* name)
{
    std::string existing = vrkResolveName(name);
    if (!existing.empty())
        return existing;
    const std::vector<std::string> parts = components(name);
    std::string folder;
    return resolveFolder(parts, &folder) ? folder + parts.back() : "";
}

static FILE* openFound(const char* name, const char* mode)
{
    const bool creates = std::strchr(mode, 'w') || std::strchr(mode, 'a');
    const std::string path = creates ? nameToCreate(name) : vrkResolveName(name);
    if (path.empty() || (creates ? isFolder(path) : !isPlainFile(path)))
        return nullptr;

    // The text flag of other systems means nothing here.
    std::string plainMode;
    for (const char* c = mode; *c; ++c)
        if (*c != 't')
            plainMode += *c;
    return std::fopen(path.c_str(), plainMode.c_str());
}

FILE* vrkOpenFile(const char* name, const char* mode)
{
    FILE* file = nullptr;
    if (name && *name)
        whileMemoryLasts([&] { file = openFound(name, mode); });
    return file;
}

bool vrkSeek(FILE* file, uint64_t place)
{
    return fseeko(file, static_cast<off_t>(place), SEEK_SET) == 0;
}

uint64_t vrkTell(FILE* file)
{
    const off_t place = ftello(file);
    return place > 0 ? static_cast<uint64_t>(place) : 0;
}

uint64_t vrkLength(FILE* file)
{
    struct stat entry;
    return fstat(fileno(file), &entry) == 0 && entry.st_size > 0 ? static_cast<uint64_t>(entry.st_size) : 0;
}

char* vrkReadFile(const char* name, size_t padding, size_t* size)
{
    FILE* file = vrkOpenFile(name, "rb");
    if (!file)
        return nullptr;

    struct stat entry;
    char* block = nullptr;
    if (fstat(fileno(file), &entry) == 0 && S_ISREG(entry.st_mode) && entry.st_size <= INT_MAX)
        block = static_cast<char*>(std::malloc(static_cast<size_t>(entry.st_size) + padding + 1));
    if (block)
    {
        const size_t bytes = static_cast<size_t>(entry.st_size);
        *size = std::fread(block, 1, bytes, file);
        // The padding, and what a file that shrank meanwhile has left.
        std::memset(block + *size, 0, bytes - *size + padding + 1);
    }
    std::fclose(file);
    return block;
}
