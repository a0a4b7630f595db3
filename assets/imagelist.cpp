// IFL files: one image name a line, played as an animation.

#include "vornik/assets/image.h"

#include <cstdio>

#include "platform/file.h"

enum
{
    mostFrames = 63, // a texture keeps 64 names, the first of which is the list's own
    lineCapacity = 255
};

String readImageListLine(FILE* file)
{
    String line(lineCapacity);
    int length = 0;
    int byte = 0;
    // A read at the end of the file leaves the byte as it was: a last line without a line feed therefore
    // repeats its last character. End the list with a line feed.
    const auto next = [&]
    {
        const int c = std::fgetc(file);
        if (c != EOF)
            byte = c;
        return byte;
    };

    while (!std::feof(file))
    {
        int c = next();
        if (c == '\r')
        {
            // The byte behind a carriage return is dropped, whatever it is.
            c = next();
            if (c == '\r' || c == '\n' || c == 27)
                break;
            continue;
        }
        if (c == '\n' || c == 27)
            break;
        if (length < lineCapacity)
            line.data[length++] = static_cast<char>(c);
    }
    return line;
}

int readImageList(const char* path, String* strings)
{
    FILE* file = vrkOpenFile(path, "rb");
    if (!file)
        return -1;

    int count = 0;
    while (!std::feof(file) && count < mostFrames)
    {
        const String line = readImageListLine(file);
        // Too short to be the name of an image.
        if (line.trim().length() > 4)
            strings[count++] = line;
    }
    std::fclose(file);
    return count;
}
