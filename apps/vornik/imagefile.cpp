#include "apps/vornik/imagefile.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <png.h>

#include "platform/jpeg.h"

std::string nameEnding(const std::string& path)
{
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension;
}

static bool isJpegName(const std::string& path)
{
    return nameEnding(path) == ".jpg" || nameEnding(path) == ".jpeg";
}

bool isImageName(const std::string& path)
{
    return nameEnding(path) == ".png" || nameEnding(path) == ".apng" || isJpegName(path);
}

static std::string savePng(const std::string& path, const Image& image)
{
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(image.width);
    png.height = static_cast<png_uint_32>(image.height);
    png.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_file(&png, path.c_str(), 0, image.rgb.data(), 0, nullptr))
        return png.message;
    return "";
}

static std::string saveJpeg(const std::string& path, const Image& image)
{
    const std::vector<uint8_t> stream = jpegEncode(image.rgb.data(), image.width, image.height, 92);
    if (stream.empty())
        return "the image can't be encoded";
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        return std::strerror(errno);
    const bool written = std::fwrite(stream.data(), 1, stream.size(), file) == stream.size();
    return std::fclose(file) == 0 && written ? "" : std::strerror(errno);
}

std::string saveImage(const std::string& path, const Image& image)
{
    return isJpegName(path) ? saveJpeg(path, image) : savePng(path, image);
}

Image shrink(const Image& image, int factor)
{
    Image small = {image.width / factor, image.height / factor, {}};
    small.rgb.reserve(static_cast<size_t>(small.width) * static_cast<size_t>(small.height) * 3);
    for (int y = 0; y < small.height; ++y)
        for (int x = 0; x < small.width; ++x)
            for (int channel = 0; channel < 3; ++channel)
            {
                int sum = 0;
                for (int row = y * factor; row < (y + 1) * factor; ++row)
                    for (int column = x * factor; column < (x + 1) * factor; ++column)
                        sum += image.rgb[(static_cast<size_t>(row) * static_cast<size_t>(image.width) +
                                          static_cast<size_t>(column)) *
                                             3 +
                                         static_cast<size_t>(channel)];
                small.rgb.push_back(static_cast<uint8_t>((sum + factor * factor / 2) / (factor * factor)));
            }
    return small;
}
