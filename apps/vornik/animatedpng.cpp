#include "apps/vornik/animatedpng.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <png.h>
#include <zlib.h>

bool isAnimationName(const std::string& path)
{
    return nameEnding(path) == ".apng";
}

static std::string bytes32(uint32_t value)
{
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
            static_cast<char>(value)};
}

static std::string bytes16(int value)
{
    return {static_cast<char>(value >> 8), static_cast<char>(value)};
}

static uint32_t read32(const std::string& text, size_t at)
{
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i)
        value = value << 8 | static_cast<uint8_t>(text[at + i]);
    return value;
}

// A whole PNG file in memory. @return what went wrong; empty if nothing did
static std::string encode(const Image& picture, std::string* out)
{
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(picture.width);
    png.height = static_cast<png_uint_32>(picture.height);
    png.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = 0;
    if (!png_image_write_to_memory(&png, nullptr, &size, 0, picture.rgb.data(), 0, nullptr))
        return png.message;
    out->resize(size);
    if (!png_image_write_to_memory(&png, out->data(), &size, 0, picture.rgb.data(), 0, nullptr))
        return png.message;
    out->resize(size);
    return "";
}

// The content of all chunks of one kind, one behind the other.
static std::string contentOf(const std::string& png, const char* type)
{
    std::string content;
    for (size_t at = 8; at + 12 <= png.size();)
    {
        const uint32_t length = read32(png, at);
        if (png.compare(at + 4, 4, type) == 0)
            content += png.substr(at + 8, length);
        at += 12 + length;
    }
    return content;
}

void AnimatedPng::writeChunk(const char* type, const std::string& data)
{
    const std::string body = type + data;
    const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
    const std::string chunk =
        bytes32(static_cast<uint32_t>(data.size())) + body + bytes32(static_cast<uint32_t>(sum));
    std::fwrite(chunk.data(), 1, chunk.size(), file.get());
}

std::string AnimatedPng::begin(const std::string& path, int width, int height, int pictures,
                               int picturesASecond)
{
    file.reset(std::fopen(path.c_str(), "wb"));
    if (!file)
        return std::strerror(errno);
    sequence = 0;
    rate = std::max(picturesASecond, 1);
    std::fwrite("\x89PNG\r\n\x1a\n", 1, 8, file.get());
    const char depthAndKind[] = {8, 2, 0, 0, 0}; // 8 bits a channel, RGB
    writeChunk("IHDR", bytes32(static_cast<uint32_t>(width)) + bytes32(static_cast<uint32_t>(height)) +
                           std::string(depthAndKind, sizeof depthAndKind));
    writeChunk("acTL", bytes32(static_cast<uint32_t>(pictures)) + bytes32(0));
    return "";
}

std::string AnimatedPng::add(const Image& picture)
{
    std::string png;
    std::string problem = encode(picture, &png);
    if (!problem.empty())
        return problem;
    const bool first = sequence == 0;
    const std::string place = bytes32(static_cast<uint32_t>(picture.width)) +
                              bytes32(static_cast<uint32_t>(picture.height)) + bytes32(0) + bytes32(0);
    writeChunk("fcTL", bytes32(sequence++) + place + bytes16(1) + bytes16(rate) + bytes16(0));
    // A reader that knows no animation shows the first picture.
    if (first)
        writeChunk("IDAT", contentOf(png, "IDAT"));
    else
        writeChunk("fdAT", bytes32(sequence++) + contentOf(png, "IDAT"));
    return std::ferror(file.get()) ? std::strerror(errno) : "";
}

std::string AnimatedPng::end()
{
    writeChunk("IEND", "");
    const bool failed = std::ferror(file.get());
    return std::fclose(file.release()) == 0 && !failed ? "" : std::strerror(errno);
}
