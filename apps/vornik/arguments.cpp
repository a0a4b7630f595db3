#include "apps/vornik/arguments.h"

#include <cstdio>
#include <cstdlib>

enum
{
    longestSide = 16384,
    lastFrame = 1000000
};

bool parseSize(const std::string& text, int* width, int* height)
{
    // Five digits at most, so that the numbers fit.
    int used = 0;
    if (std::sscanf(text.c_str(), "%5dx%5d%n", width, height, &used) != 2 ||
        static_cast<size_t>(used) != text.size())
        return false;
    return *width >= 1 && *height >= 1 && *width <= longestSide && *height <= longestSide;
}

bool parseFrames(const std::string& text, int* first, int* last)
{
    int used = 0;
    if (std::sscanf(text.c_str(), "%7d..%7d%n", first, last, &used) != 2 ||
        static_cast<size_t>(used) != text.size())
        return false;
    return *first >= 0 && *last >= *first && *last <= lastFrame;
}

static std::string colorDigits(const std::string& text)
{
    static const struct
    {
        const char* name;
        const char* digits;
    } names[] = {{"black", "000000"}, {"white", "ffffff"}, {"grey", "808080"}, {"gray", "808080"},
                 {"red", "c03030"},   {"green", "30a050"}, {"blue", "3050c0"}, {"sky", "9fc4e8"}};
    for (const auto& entry : names)
        if (text == entry.name)
            return entry.digits;
    return !text.empty() && text[0] == '#' ? text.substr(1) : text;
}

bool parseColor(const std::string& text, Color* color)
{
    const std::string digits = colorDigits(text);
    if (digits.size() != 6 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
        return false;
    const long value = std::strtol(digits.c_str(), nullptr, 16);
    *color = {static_cast<float>(value >> 16) / 255.0f, static_cast<float>(value >> 8 & 255) / 255.0f,
              static_cast<float>(value & 255) / 255.0f, 1.0f};
    return true;
}
