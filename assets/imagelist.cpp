// IFL files: one image name a line, played as an animation.

#include "vornik/assets/image.h"

#include <cstdio>

#include "platform/file.h"
#include "vornik/assets/pack.h"

enum
{
    mostFrames = 63, // a texture keeps 64 names, the first of which is the list's own
    lineCapacity = 255
};

struct FileBytes
{
    FILE* file;

    bool read(char* byte) { return std::fread(byte, 1, 1, file) == 1; }
    bool atEnd() const { return std::feof(file) || std::ferror(file); }
    bool isDone() const { return atEnd(); }
};

// Lines end where the pack does; only the list as a whole ends with its member.
struct MemberBytes
{
    PackHandle* handle;
    bool exhausted = false;

    bool read(char* byte)
    {
        exhausted = packFileRead(byte, 1, 1, handle) != 1;
        return !exhausted;
    }
    bool atEnd() const { return exhausted; }
    bool isDone() const { return exhausted || packFileEof(handle); }
};

template <typename Bytes>
static String readLine(Bytes* bytes)
{
    String line(lineCapacity);
    int length = 0;
    // A read at the end of the file leaves the byte as it was: a last line without a line feed therefore
    // repeats its last character. End the list with a line feed.
    char byte = 0;
    while (!bytes->atEnd())
    {
        bytes->read(&byte);
        if (byte == '\r')
        {
            // The byte behind a carriage return is dropped, whatever it is.
            bytes->read(&byte);
            if (byte == '\r' || byte == '\n' || byte == 27)
                break;
            continue;
        }
        if (byte == '\n' || byte == 27)
            break;
        if (length < lineCapacity)
            line.data[length++] = byte;
    }
    return line;
}

template <typename Bytes>
static int readLines(Bytes* bytes, String* strings)
{
    int count = 0;
    while (!bytes->isDone() && count < mostFrames)
    {
        const String line = readLine(bytes);
        // Too short to be the name of an image.
        if (line.trim().length() > 4)
            strings[count++] = line;
    }
    return count;
}

String readImageListLine(FILE* file)
{
    FileBytes bytes = {file};
    return readLine(&bytes);
}

String readPackedImageListLine(PackHandle* handle)
{
    MemberBytes bytes = {handle};
    return readLine(&bytes);
}

int readImageList(const char* path, String* strings)
{
    FILE* file = vrkOpenFile(path, "rb");
    if (!file)
        return -1;
    FileBytes bytes = {file};
    const int count = readLines(&bytes, strings);
    std::fclose(file);
    return count;
}

int readPackedImageList(const char* path, String* strings, const char* packName)
{
    PackHandle* handle = packOpen(packName) == 0 ? packFileOpen(path, "rb") : nullptr;
    if (!handle)
        return -1;
    MemberBytes bytes = {handle};
    const int count = readLines(&bytes, strings);
    packFileClose(handle);
    packClose();
    return count;
}
