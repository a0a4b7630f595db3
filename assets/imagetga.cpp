// TGA images, plain and run-length encoded. The file is read whole; what is missing of it leaves pixels
// black, and transparent where they have an alpha of their own. Runs end with the image.

#include "vornik/assets/image.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "assets/packread.h"
#include "assets/tga.h"
#include "platform/file.h"
#include "rasterizer/upsidedown.h"
#include "vornik/assets/pack.h"
#include "vornik/core/errorlog.h"

enum
{
    headerSize = 18,
    plainColor = 2,
    plainGrey = 3,
    packedColor = 10,
    packedGrey = 11,
    topOrigin = 0x20
};

struct Stream
{
    const uint8_t* current;
    const uint8_t* end;
};

struct Header
{
    int identificationSize, type, width, height, depth, descriptor;
};

static Header parseHeader(const uint8_t* header)
{
    return {header[0],
            header[2],
            header[12] | header[13] << 8,
            header[14] | header[15] << 8,
            static_cast<int8_t>(header[16]),
            header[17]};
}

// Reads one pixel and stores it as RGBA. One that isn't there whole ends the stream.
static void readPixel(Stream* stream, int bytesPerPixel, uint8_t* rgba)
{
    static const uint8_t missing[4] = {};
    const bool there = stream->end - stream->current >= bytesPerPixel;
    const uint8_t* source = there ? stream->current : missing;
    stream->current = there ? stream->current + bytesPerPixel : stream->end;
    if (bytesPerPixel == 1)
    {
        rgba[0] = rgba[1] = rgba[2] = source[0];
        rgba[3] = 255;
        return;
    }
    rgba[0] = source[2];
    rgba[1] = source[1];
    rgba[2] = source[0];
    rgba[3] = bytesPerPixel == 3 ? 255 : source[3];
}

static void readPlain(Stream* stream, int bytesPerPixel, uint8_t* out, const uint8_t* end)
{
    for (; out < end; out += 4)
        readPixel(stream, bytesPerPixel, out);
}

static void readPacked(Stream* stream, int bytesPerPixel, uint8_t* out, const uint8_t* end)
{
    while (out < end && stream->current < stream->end)
    {
        const int packet = *stream->current++;
        const ptrdiff_t room = (end - out) / 4;
        const ptrdiff_t count = std::min<ptrdiff_t>((packet & 127) + 1, room);
        if (packet < 128)
        {
            readPlain(stream, bytesPerPixel, out, out + count * 4);
        }
        else
        {
            uint8_t pixel[4];
            readPixel(stream, bytesPerPixel, pixel);
            for (ptrdiff_t i = 0; i < count; ++i)
                std::memcpy(out + i * 4, pixel, 4);
        }
        out += count * 4;
    }
    readPlain(stream, bytesPerPixel, out, end);
}

static bool isColor(const Header& header)
{
    return header.type == plainColor || header.type == packedColor;
}

static bool isGrey(const Header& header)
{
    return (header.type == plainGrey || header.type == packedGrey) && header.depth == 8;
}

// The block for an image of a size, cleared; null without one, and if the file can't hold so many pixels.
static uint8_t* prepareBlock(uint8_t** image, const Header& header, size_t fileSize)
{
    if (!*image)
        return nullptr;
    const size_t bytes = static_cast<size_t>(header.width) * static_cast<size_t>(header.height) * 4;
    if (bytes > VRK_IMAGE_BLOCK)
    {
        // The best packing makes 128 pixels of a few bytes; a header that claims more than that is made up.
        if (bytes / 4 / 128 > fileSize)
            return nullptr;
        void* larger = std::realloc(*image, bytes);
        if (!larger)
            return nullptr;
        *image = static_cast<uint8_t*>(larger);
    }
    std::memset(*image, 0, bytes);
    return *image;
}

// The bytes go on behind size with as many zeros as a header has.
static int parse(const uint8_t* bytes, size_t size, TgaReading reading, uint8_t** image, int* width,
                 int* height, int* bytesPerPixel)
{
    const Header header = parseHeader(bytes);
    const bool grey = reading == TgaReading::tolerant && isGrey(header);
    if (header.depth < 24 && !grey)
        return vrkPutToErrorLog("TGA depth is too low!", 47);
    // A pixel of more than 4 bytes has no meaning in any type.
    if (!(grey || isColor(header)) || header.depth / 8 > 4)
        return vrkPutToErrorLog("Imagetype is unknown!", 48);
    uint8_t* out = prepareBlock(image, header, size);
    if (!out)
        return vrkPutToErrorLog("Imagetype is unknown!", 48);

    *width = header.width;
    *height = header.height;
    *bytesPerPixel = grey ? 3 : header.depth / 8;

    const int skipped = reading == TgaReading::tolerant ? header.identificationSize : 0;
    const size_t begin = std::min<size_t>(headerSize + static_cast<size_t>(skipped), size);
    Stream stream = {bytes + begin, bytes + size};
    const uint8_t* end = out + static_cast<size_t>(header.width) * static_cast<size_t>(header.height) * 4;
    if (header.type == plainColor || header.type == plainGrey)
        readPlain(&stream, header.depth / 8, out, end);
    else
        readPacked(&stream, header.depth / 8, out, end);
    if (reading == TgaReading::tolerant && header.descriptor & topOrigin)
        turnUpsideDown(out, header.width, header.height);
    return 0;
}

int readTGA(const char* name, TgaReading reading, uint8_t** image, int* width, int* height,
            int* bytesPerPixel)
{
    size_t size = 0;
    char* file = vrkReadFile(name, headerSize, &size);
    if (!file)
        return vrkPutToErrorLog("File not found!", 46);
    const int result =
        parse(reinterpret_cast<const uint8_t*>(file), size, reading, image, width, height, bytesPerPixel);
    std::free(file);
    return result;
}

// The most bytes that an image can take behind its header: every pixel with a packet byte of its own.
static uint64_t mostBytes(const Header& header)
{
    const auto pixels = static_cast<uint64_t>(header.width) * static_cast<uint64_t>(header.height);
    const int pixelSize = std::max(header.depth, 0) / 8;
    return static_cast<uint64_t>(header.identificationSize) + pixels * static_cast<uint64_t>(pixelSize + 1);
}

// Header and pixels are two reads, and neither is stopped by the member's end.
static char* readMember(PackHandle* handle, size_t* size)
{
    uint8_t start[headerSize] = {};
    size_t read = packFileRead(start, 1, headerSize, handle);
    const uint64_t rest = std::min(mostBytes(parseHeader(start)), packLength());
    auto* bytes = static_cast<char*>(std::calloc(headerSize + rest + headerSize, 1));
    if (!bytes)
        return nullptr;
    std::memcpy(bytes, start, headerSize);
    if (read == headerSize)
        read += packFileRead(bytes + headerSize, 1, rest, handle);
    *size = read;
    return bytes;
}

int readPackedTGA(const char* name, TgaReading reading, uint8_t** image, int* width, int* height,
                  int* bytesPerPixel, const char* packName)
{
    PackHandle* handle = packOpen(packName) == 0 ? packFileOpen(name, "rb") : nullptr;
    if (!handle)
        return vrkPutToErrorLog("File not found!", 46);
    size_t size = 0;
    char* member = readMember(handle, &size);
    packFileClose(handle);
    if (!member)
        return vrkPutToErrorLog("File not found!", 46);
    const int result =
        parse(reinterpret_cast<const uint8_t*>(member), size, reading, image, width, height, bytesPerPixel);
    std::free(member);
    // An image that is refused leaves its pack open.
    if (result == 0)
        packClose();
    return result;
}

int loadPackedTGA(const char* name, uint8_t** image, int* width, int* height, int* bytesPerPixel,
                  const char* packName)
{
    return readPackedTGA(name, TgaReading::strict, image, width, height, bytesPerPixel, packName);
}

int loadTGA(const char* name, uint8_t** image, int* width, int* height, int* bytesPerPixel)
{
    return readTGA(name, TgaReading::strict, image, width, height, bytesPerPixel);
}
