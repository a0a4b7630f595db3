// TGA and JPEG files in memory, for tests and the sample.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// An image of 4 bytes a pixel, RGBA, rows from the top.
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;

    Picture() = default;
    /// All pixels of one colour.
    Picture(int pictureWidth, int pictureHeight, uint32_t rgbaColor = 0x000000FF);

    uint8_t* at(int x, int y)
    {
        return &rgba[(static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 4];
    }
    const uint8_t* at(int x, int y) const { return const_cast<Picture*>(this)->at(x, y); }
};

struct TgaOptions
{
    bool packed = false;             ///< run-length encoded, type 10 or 11 instead of 2 or 3
    int bits = 24;                   ///< 24 or 32; 8 writes the red channel as grey
    bool topOrigin = false;          ///< rows from the top, told by the descriptor
    std::string identification = {}; ///< text in front of the pixels
};

std::vector<uint8_t> writeTga(const Picture& picture, const TgaOptions& options = {});

/// Alpha is dropped. @param quality  1 to 100
std::vector<uint8_t> writeJpeg(const Picture& picture, int quality = 90);

/// Writes a file. @return whether that worked
bool saveFile(const std::string& path, const std::vector<uint8_t>& bytes);
