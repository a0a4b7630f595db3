#include "platform/listing.h"

#include <algorithm>
#include <windows.h>

static uint64_t sizeOf(const WIN32_FIND_DATAA& entry)
{
    if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
        return 0;
    return static_cast<uint64_t>(entry.nFileSizeHigh) << 32 | entry.nFileSizeLow;
}

std::vector<ListedFile> vrkListFiles(const char* pattern)
{
    std::vector<ListedFile> files;
    WIN32_FIND_DATAA entry;
    const HANDLE search = pattern && *pattern ? FindFirstFileA(pattern, &entry) : INVALID_HANDLE_VALUE;
    if (search == INVALID_HANDLE_VALUE)
        return files;
    do
        files.push_back({entry.cFileName, sizeOf(entry)});
    while (FindNextFileA(search, &entry));
    FindClose(search);
    std::sort(files.begin(), files.end(),
              [](const ListedFile& a, const ListedFile& b) { return a.name < b.name; });
    return files;
}
