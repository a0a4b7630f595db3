#include "tests/apps/program.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <png.h>

int lineCount(const std::string& text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

Rgb Bitmap::at(int x, int y) const
{
    const size_t i = (static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)) * 3;
    return {rgb.at(i), rgb.at(i + 1), rgb.at(i + 2)};
}

int Bitmap::countUnlike(const Rgb& color) const
{
    return count(
        [&color](const Rgb& pixel) {
            return std::abs(pixel.r - color.r) + std::abs(pixel.g - color.g) + std::abs(pixel.b - color.b) >
                   12;
        });
}

double Bitmap::light() const
{
    double sum = 0;
    for (const uint8_t channel : rgb)
        sum += channel;
    return sum;
}

std::string ProgramTest::write(const std::string& name, const Scene3ds& scene) const
{
    folder.write(name, build3ds(scene));
    return name;
}

Bitmap ProgramTest::render(const std::string& file, const std::vector<std::string>& options) const
{
    std::vector<std::string> arguments = {"render", file, "-o", "picture.png"};
    for (const auto& usual :
         {std::pair("--size", "120x90"), std::pair("--background", "black"), std::pair("--samples", "1")})
        if (std::find(options.begin(), options.end(), usual.first) == options.end())
            arguments.insert(arguments.end(), {usual.first, usual.second});
    arguments.insert(arguments.end(), options.begin(), options.end());
    const RunResult result = run(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return readPng("picture.png");
}

Bitmap ProgramTest::readPng(const std::string& name) const
{
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    Bitmap bitmap;
    if (!png_image_begin_read_from_file(&png, folder.path(name).c_str()))
        return bitmap;
    png.format = PNG_FORMAT_RGB;
    bitmap.width = static_cast<int>(png.width);
    bitmap.height = static_cast<int>(png.height);
    bitmap.rgb.resize(PNG_IMAGE_SIZE(png));
    png_image_finish_read(&png, nullptr, bitmap.rgb.data(), 0, nullptr);
    return bitmap;
}

bool ProgramTest::exists(const std::string& name) const
{
    return std::filesystem::exists(folder.path(name));
}
