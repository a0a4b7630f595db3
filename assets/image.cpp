// The way from the name of an image in a scene to pixels in a Texture.

#include "vornik/assets/image.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "assets/packread.h"
#include "assets/tga.h"
#include "core/memorylasts.h"
#include "platform/file.h"
#include "vornik/assets/pack.h"
#include "vornik/assets/texture.h"
#include "vornik/core/errorlog.h"
#include "vornik/core/memory.h"

enum
{
    pathCapacity = 256
};

// Where a texture's files are: loose, or in a pack and nowhere else.
struct Source
{
    bool packed;
    const char* pack; // null unless packed
};

bool isTextureSizeLegal(int width, int height)
{
    const auto legal = [](int size) { return size >= 1 && size <= 2048 && (size & (size - 1)) == 0; };
    return legal(width) && legal(height);
}

static void join(const Texture& texture, int index, char (&path)[pathCapacity])
{
    // A path that doesn't fit is cut, and then names no file.
    const int length = std::snprintf(path, sizeof path, "%s%s", texture.baseDir, texture.names[index]);
    if (length >= pathCapacity)
        path[pathCapacity - 1] = 0;
}

static int extractNamesFrom(Texture& texture, const Source& source)
{
    char path[pathCapacity];
    join(texture, 0, path);
    if (!texture.checkExtension(path, ".IFL"))
    {
        texture.frameCount = 1;
        return 0;
    }

    const std::unique_ptr<String[]> lines(new (std::nothrow) String[64]);
    const int count = !lines          ? 0
                      : source.packed ? readPackedImageList(path, lines.get(), source.pack)
                                      : readImageList(path, lines.get());
    if (count < 1)
        return vrkPutToErrorLog("Error loading .IFL file", 7);
    for (int i = 0; i < count; ++i)
    {
        char name[sizeof lines[i].data + 1];
        std::snprintf(name, sizeof name, "%.*s", lines[i].length(), lines[i].data);
        texture.setFilename(name, i + 1);
    }
    texture.frameCount = count;
    return 0;
}

int Texture::extractNames()
{
    return extractNamesFrom(*this, {false, nullptr});
}

int Texture::extractNames(const char* packName)
{
    return extractNamesFrom(*this, {true, packName});
}

// Allocates the block that an image is read into. It also covers the size that the texture has, since a frame
// that can't be read is uploaded with the size of the frame before it.
static void allocateBlock(Texture& texture)
{
    vrkFree(reinterpret_cast<char**>(&texture.pixels));
    size_t bytes = VRK_IMAGE_BLOCK;
    if (texture.width > 0 && texture.height > 0)
    {
        const size_t held = static_cast<size_t>(texture.width) * static_cast<size_t>(texture.height) * 4;
        bytes = held > bytes ? held : bytes;
    }
    texture.pixels = static_cast<uint8_t*>(std::calloc(bytes, 1));
}

// Strictly, a JPEG of which only the header can be read leaves an empty image of its size.
static bool readJpegInto(Texture& texture, const Source& source, const char* path)
{
    int width = texture.width;
    int height = texture.height;
    const bool read = loadJPEG(path, &texture.pixels, &width, &height, false, source.pack);
    if (read || !texture.acceptSubstitutes)
    {
        texture.width = width;
        texture.height = height;
    }
    if (read)
        texture.bytesPerPixel = 3;
    else
        allocateBlock(texture);
    return read;
}

static int readTgaInto(Texture& texture, const Source& source, const char* path)
{
    const TgaReading reading = texture.acceptSubstitutes ? TgaReading::tolerant : TgaReading::strict;
    if (source.packed)
        return readPackedTGA(path, reading, &texture.pixels, &texture.width, &texture.height,
                             &texture.bytesPerPixel, source.pack);
    return readTGA(path, reading, &texture.pixels, &texture.width, &texture.height, &texture.bytesPerPixel);
}

static void replaceExtension(char* path, const char* extension)
{
    std::strcpy(path + std::strlen(path) - 3, extension);
}

// A name in a format without a reader stands for the JPEG of the same stem. Its TGA is read, too, but then
// refused.
static int readSubstitute(Texture& texture, const Source& source, char* path)
{
    texture.bytesPerPixel = 3;
    replaceExtension(path, "JPG");
    if (readJpegInto(texture, source, path))
        return 0;
    replaceExtension(path, "TGA");
    if (readTgaInto(texture, source, path) == 0)
        return vrkPutToErrorLog("Error loading file", 10);
    return 0;
}

// The existing file that a tolerant load takes for a path: itself, or the JPEG or TGA of its stem, in the
// folder that it names or straight in the texture's folder. Empty if there is none.
static std::string findSubstitute(const Texture& texture, const Source& source, const std::string& name)
{
    if (source.packed && packOpen(source.pack) != 0)
        return "";
    const size_t dot = name.find_last_of('.');
    const std::string stem = name.substr(0, dot);
    const std::string extension = dot == std::string::npos ? "" : name.substr(dot);
    const bool readable = extension == ".JPG" || extension == ".TGA";
    const std::string file = stem.substr(stem.find_last_of("\\/") + 1);
    for (const std::string& place : {stem, file})
        for (const char* ending : {readable ? extension.c_str() : ".JPG", ".JPG", ".TGA"})
        {
            const std::string path = texture.baseDir + place + ending;
            std::string found = source.packed ? resolvePackedName(path) : vrkResolveName(path.c_str());
            if (!found.empty())
                return found;
        }
    return "";
}

static int readTolerant(Texture& texture, const Source& source, int index)
{
    char name[sizeof texture.names[index]];
    std::strcpy(name, texture.names[index]);
    texture.checkExtension(name, ".JPG"); // upper-cases
    const std::string found = findSubstitute(texture, source, name);
    std::string upper = found;
    if (!found.empty() && texture.checkExtension(upper.data(), ".JPG"))
        return readJpegInto(texture, source, found.c_str()) ? 0
                                                            : vrkPutToErrorLog("Error loading .JPG file", 8);
    if (!found.empty())
        return readTgaInto(texture, source, found.c_str()) == 0
                   ? 0
                   : vrkPutToErrorLog("Error loading .TGA file", 9);
    return vrkPutToErrorLog("Error loading file", 10);
}

static int readByExtension(Texture& texture, const Source& source, char* path)
{
    if (texture.checkExtension(path, ".JPG"))
        return readJpegInto(texture, source, path) ? 0 : vrkPutToErrorLog("Error loading .JPG file", 8);
    if (texture.checkExtension(path, ".PNG") || texture.checkExtension(path, ".TIF") ||
        texture.checkExtension(path, ".GIF"))
        return readSubstitute(texture, source, path);
    if (texture.checkExtension(path, ".TGA"))
        return readTgaInto(texture, source, path) == 0 ? 0 : vrkPutToErrorLog("Error loading .TGA file", 9);
    return vrkPutToErrorLog("Texture (image) format not supported", 6);
}

static int loadTextureFrom(Texture& texture, const Source& source, int index, float scale)
{
    if (index < 0 || index >= 64)
        return 0;
    char path[pathCapacity];
    join(texture, index, path);
    allocateBlock(texture);
    if (texture.checkExtension(path, ".IFL"))
    {
        // A list of one image has no frame of its own: the texture stays empty.
        vrkFree(reinterpret_cast<char**>(&texture.pixels));
        return 0;
    }

    int result = 0;
    if (!whileMemoryLasts(
            [&]
            {
                result = texture.acceptSubstitutes ? readTolerant(texture, source, index)
                                                   : readByExtension(texture, source, path);
            }))
        return vrkPutToErrorLog("Error loading file", 10);
    if (result != 0)
        return result;
    if (!texture.acceptSubstitutes && !isTextureSizeLegal(texture.width, texture.height))
        return vrkPutToErrorLog("Illegal texture size (width and height must be n^2)", 12);
    if (scale != 1.0f)
        texture.scaleTexture(scale);
    return 0;
}

int Texture::loadTexture(int index, float scale)
{
    return loadTextureFrom(*this, {false, nullptr}, index, scale);
}

int Texture::loadTexture(int index, const char* packName, float scale)
{
    return loadTextureFrom(*this, {true, packName}, index, scale);
}
