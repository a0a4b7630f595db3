#include "tests/view/screentext.h"

#include <cstdlib>

#include "platform/fontglyphs.h"

static bool isInk(const Rgb& pixel, const Rgb& ink)
{
    return std::abs(pixel.r - ink.r) <= 2 && std::abs(pixel.g - ink.g) <= 2 && std::abs(pixel.b - ink.b) <= 2;
}

// Pixels of a cell, row by row from the top; the last column runs over from neighbours and doesn't count.
static std::string cellAt(const Bitmap& picture, int x, int top, const Rgb& ink)
{
    std::string cell;
    for (int row = 0; row < glyphHeight; ++row)
        for (int column = 0; column + 1 < glyphWidth; ++column)
        {
            const int px = x + column, py = top + row;
            const bool inside = px >= 0 && px < picture.width && py >= 0 && py < picture.height;
            cell += inside && isInk(picture.at(px, py), ink) ? '#' : '.';
        }
    return cell;
}

static std::string glyph(int index)
{
    std::string cell;
    for (const char* row : glyphSheet[index / glyphsInBand])
        cell.append(row + index % glyphsInBand * (glyphWidth + 1), glyphWidth - 1);
    return cell;
}

static char characterOf(const std::string& cell)
{
    for (int index = 0; index < glyphBands * glyphsInBand; ++index)
        if (glyph(index) == cell)
            return static_cast<char>(firstGlyph + index);
    return '?';
}

std::string textAt(const Bitmap& picture, int x, int baseLine, const Rgb& ink)
{
    std::string text;
    for (; x < picture.width; x += glyphWidth)
        text += characterOf(cellAt(picture, x, baseLine + glyphRowsBelowBaseLine - glyphHeight, ink));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}
