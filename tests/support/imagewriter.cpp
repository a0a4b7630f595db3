#include "tests/support/imagewriter.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/jpeg.h"

Picture::Picture(int pictureWidth, int pictureHeight, uint32_t rgbaColor)
    : width(pictureWidth), height(pictureHeight),
      rgba(static_cast<size_t>(pictureWidth) * static_cast<size_t>(pictureHeight) * 4)
{
    for (size_t i = 0; i < rgba.size(); ++i)
        rgba[i] = static_cast<uint8_t>(rgbaColor >> (24 - 8 * (i % 4)));
}

static void putPixel(std::vector<uint8_t>* out, const uint8_t* rgba, int bits)
{
    if (bits == 8)
    {
        out->push_back(rgba[0]);
        return;
    }
    out->insert(out->end(), {rgba[2], rgba[1], rgba[0]});
    if (bits == 32)
        out->push_back(rgba[3]);
}

static bool samePixel(const uint8_t* a, const uint8_t* b, int bits)
{
    return std::memcmp(a, b, static_cast<size_t>(bits / 8)) == 0;
}

// Packets of equal pixels where there are any, of single ones elsewhere; none crosses a row.
static void putPackedRow(std::vector<uint8_t>* out, const uint8_t* row, int width, int bits)
{
    int x = 0;
    while (x < width)
    {
        int run = 1;
        while (x + run < width && run < 128 && samePixel(row + x * 4, row + (x + run) * 4, bits))
            ++run;
        if (run > 1)
        {
            out->push_back(static_cast<uint8_t>(128 + run - 1));
            putPixel(out, row + x * 4, bits);
            x += run;
            continue;
        }
        int single = 1;
        while (
            x + single < width && single < 128 &&
            (x + single + 1 == width || !samePixel(row + (x + single) * 4, row + (x + single + 1) * 4, bits)))
            ++single;
        out->push_back(static_cast<uint8_t>(single - 1));
        for (int i = 0; i < single; ++i)
            putPixel(out, row + (x + i) * 4, bits);
        x += single;
    }
}

std::vector<uint8_t> writeTga(const Picture& picture, const TgaOptions& options)
{
    std::vector<uint8_t> out(18, 0);
    out[0] = static_cast<uint8_t>(options.identification.size());
    out[2] = static_cast<uint8_t>((options.bits == 8 ? 3 : 2) + (options.packed ? 8 : 0));
    out[12] = static_cast<uint8_t>(picture.width);
    out[13] = static_cast<uint8_t>(picture.width >> 8);
    out[14] = static_cast<uint8_t>(picture.height);
    out[15] = static_cast<uint8_t>(picture.height >> 8);
    out[16] = static_cast<uint8_t>(options.bits);
    out[17] = static_cast<uint8_t>((options.bits == 32 ? 8 : 0) | (options.topOrigin ? 0x20 : 0));
    std::copy(options.identification.begin(), options.identification.end(), std::back_inserter(out));

    for (int i = 0; i < picture.height; ++i)
    {
        const uint8_t* row = picture.at(0, options.topOrigin ? i : picture.height - 1 - i);
        if (options.packed)
            putPackedRow(&out, row, picture.width, options.bits);
        else
            for (int x = 0; x < picture.width; ++x)
                putPixel(&out, row + x * 4, options.bits);
    }
    return out;
}

std::vector<uint8_t> writeJpeg(const Picture& picture, int quality)
{
    return jpegEncode(picture.rgba.data(), picture.width, picture.height, quality, 4);
}

bool saveFile(const std::string& path, const std::vector<uint8_t>& bytes)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}
