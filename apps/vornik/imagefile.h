// Pictures on disk.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Packed RGB, rows from the top.
struct Image
{
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgb;
};

/// The ending of a file's name with its dot, in lower case.
std::string nameEnding(const std::string& path);

/// Can saveImage write a file of this name? It goes by the ending: .png, .jpg or .jpeg.
bool isImageName(const std::string& path);

/// Writes a PNG or a JPEG. @return an empty text, or what went wrong
std::string saveImage(const std::string& path, const Image& image);

/// The mean of each block of factor x factor pixels.
Image shrink(const Image& image, int factor);
