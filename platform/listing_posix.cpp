#include "platform/listing.h"

#include <algorithm>
#include <strings.h>
#include <sys/stat.h>

#include "platform/file.h"
#include "platform/openfolder.h"

static bool sameCharacter(char a, char b)
{
    return strncasecmp(&a, &b, 1) == 0;
}

// Goes back to the last * only: what an earlier one took can't help a later one.
static bool matches(const std::string& name, const std::string& pattern)
{
    size_t n = 0;
    size_t p = 0;
    size_t star = std::string::npos;
    size_t starEnd = 0; // end of what the last * takes
    while (n < name.size())
    {
        if (p < pattern.size() && pattern[p] == '*')
        {
            star = p++;
            starEnd = n;
        }
        else if (p < pattern.size() && (pattern[p] == '?' || sameCharacter(pattern[p], name[n])))
        {
            ++p;
            ++n;
        }
        else if (star != std::string::npos)
        {
            p = star + 1;
            n = ++starEnd;
        }
        else
            return false;
    }
    return pattern.find_first_not_of('*', p) == std::string::npos;
}

static bool isListed(const std::string& name, const std::string& pattern)
{
    if (matches(name, pattern))
        return true;
    const size_t stem = pattern.size() < 2 ? 0 : pattern.size() - 2;
    return pattern.compare(stem, 2, ".*") == 0 && name.find('.') == std::string::npos &&
           matches(name, pattern.substr(0, stem));
}

static uint64_t sizeOf(const std::string& path)
{
    struct stat entry;
    const bool isFile = stat(path.c_str(), &entry) == 0 && !S_ISDIR(entry.st_mode);
    return isFile ? static_cast<uint64_t>(entry.st_size) : 0;
}

std::vector<ListedFile> vrkListFiles(const char* pattern)
{
    std::vector<ListedFile> files;
    const std::string path = pattern ? pattern : "";
    const size_t nameStart = path.find_last_of("/\\") + 1; // 0 when there is no separator
    const std::string name = path.substr(nameStart);
    const std::string folder = nameStart == 0 ? "./" : vrkResolveName(path.substr(0, nameStart).c_str());
    const OpenFolder entries(folder.empty() || name.empty() ? nullptr : opendir(folder.c_str()));
    if (!entries)
        return files;
    while (const dirent* entry = readdir(entries.get()))
        if (isListed(entry->d_name, name))
            files.push_back({entry->d_name, sizeOf(folder + entry->d_name)});
    std::sort(files.begin(), files.end(),
              [](const ListedFile& a, const ListedFile& b) { return a.name < b.name; });
    return files;
}
