// The font as display lists of bitmaps. X11 has no font that is sure to be there, and off-screen there is no
// X11.

#include "platform/font.h"

#include <GL/gl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/fontglyphs.h"
#include "platform/glcontext.h"

// Rows from the bottom, the leftmost pixel in the highest bit.
using Glyph = std::array<uint8_t, glyphHeight>;

static constexpr uint8_t rowBits(const char* pixels)
{
    unsigned bits = 0;
    for (int x = 0; x < glyphWidth; ++x)
        bits = bits << 1 | (pixels[x] == '#');
    return static_cast<uint8_t>(bits);
}

// The bitmaps of all 128 codes; those of control codes are empty.
static constexpr std::array<Glyph, 128> readSheet()
{
    std::array<Glyph, 128> all = {};
    for (size_t i = 0; i < glyphBands * glyphsInBand; ++i)
    {
        const char* const* band = glyphSheet[i / glyphsInBand];
        const size_t left = i % glyphsInBand * (glyphWidth + 1);
        for (size_t row = 0; row < glyphHeight; ++row)
            all[firstGlyph + i][glyphHeight - 1 - row] = rowBits(band[row] + left);
    }
    return all;
}

// Is a row one of eight cells, drawn in two characters, with gaps between them?
static constexpr bool isBandRow(std::string_view row)
{
    for (size_t x = 0; x < row.size(); ++x)
    {
        const bool gap = x % (glyphWidth + 1) == glyphWidth;
        if (gap ? row[x] != ' ' : row[x] != '#' && row[x] != '.')
            return false;
    }
    return row.size() == glyphsInBand * (glyphWidth + 1) - 1;
}

static constexpr bool sheetIsWhole()
{
    for (const auto& band : glyphSheet)
        for (const char* row : band)
            if (!isBandRow(row))
                return false;
    return true;
}

static_assert(sheetIsWhole());
static constexpr std::array<Glyph, 128> glyphs = readSheet();

bool vrkPlatformMakeFont(VRKDeviceContext /*device*/, int base)
{
    if (!vrkPlatformHasContext())
        return false;
    // One byte a row, whatever layout the host gives its own pixels in.
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_FALSE);
    for (const GLenum name : {GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS, GL_UNPACK_SKIP_PIXELS})
        glPixelStorei(name, 0);
    // Code 0 ends every text; its list stays empty where it has a name at all.
    for (int code = base > 0 ? 0 : 1; code < 128; ++code)
    {
        glNewList(static_cast<GLuint>(base + code), GL_COMPILE);
        if (code > 0)
            glBitmap(glyphWidth, glyphHeight, 0.0f, glyphRowsBelowBaseLine, glyphWidth, 0.0f,
                     glyphs[static_cast<size_t>(code)].data());
        glEndList();
    }
    glPopClientAttrib();
    return true;
}
