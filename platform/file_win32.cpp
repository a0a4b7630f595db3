// Windows ignores case and takes both kinds of slash by itself. What is left to us: folders and devices are
// no files here either, and a scene may well name an image "CON.JPG".

#include "platform/file.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <io.h>
#include <windows.h>

std::string vrkResolveName(const char* name)
{
    if (!name || !*name || GetFileAttributesA(name) == INVALID_FILE_ATTRIBUTES)
        return "";
    return name;
}

static bool isPlainFile(FILE* file)
{
    return GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)))) == FILE_TYPE_DISK;
}

FILE* vrkOpenFile(const char* name, const char* mode)
{
    if (!name || !*name)
        return nullptr;
    FILE* file = std::fopen(name, mode);
    if (!file || std::strchr(mode, 'w') || std::strchr(mode, 'a') || isPlainFile(file))
        return file;
    std::fclose(file);
    return nullptr;
}

bool vrkSeek(FILE* file, uint64_t place)
{
    return _fseeki64(file, static_cast<__int64>(place), SEEK_SET) == 0;
}

uint64_t vrkTell(FILE* file)
{
    const __int64 place = _ftelli64(file);
    return place > 0 ? static_cast<uint64_t>(place) : 0;
}

uint64_t vrkLength(FILE* file)
{
    const __int64 length = _filelengthi64(_fileno(file));
    return length > 0 ? static_cast<uint64_t>(length) : 0;
}

char* vrkReadFile(const char* name, size_t padding, size_t* size)
{
    FILE* file = vrkOpenFile(name, "rb");
    if (!file)
        return nullptr;

    const __int64 length = _filelengthi64(_fileno(file));
    char* block = nullptr;
    if (length >= 0 && length <= INT_MAX)
        block = static_cast<char*>(std::malloc(static_cast<size_t>(length) + padding + 1));
    if (block)
    {
        const size_t bytes = static_cast<size_t>(length);
        *size = std::fread(block, 1, bytes, file);
        // The padding, and what a file that shrank meanwhile has left.
        std::memset(block + *size, 0, bytes - *size + padding + 1);
    }
    std::fclose(file);
    return block;
}
