// Text by display lists of bitmaps; Direct3D has the window system write it.

#include "vornik/rasterizer/font.h"

#include <GL/gl.h>

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform/font.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/faces.h"
#include "vornik/rasterizer/startup.h"

int vrkInitFont()
{
    if (vrkSelectedRasterizer == 0)
    {
        int base = 0;
        while (vrkIsList(base) && base < 16384)
            ++base;
        vrkFontBase = base;
        if (!vrkPlatformMakeFont(VRK_hDC, base))
            return vrkPutToErrorLog("Cannot create fonts!", 49);
    }
    return 0;
}

// Would bitmaps come out in this colour, and at all?
static bool rasterHas(const Color& c)
{
    GLboolean valid = GL_FALSE;
    GLfloat color[4] = {};
    glGetBooleanv(GL_CURRENT_RASTER_POSITION_VALID, &valid);
    glGetFloatv(GL_CURRENT_RASTER_COLOR, color);
    return valid && color[0] == c.r && color[1] == c.g && color[2] == c.b;
}

// Bitmaps have the colour that was current when the raster position was last set. This sets it: to a place on
// the window's front, without any distance that fog could act on.
static void takeRasterColor()
{
    glPushAttrib(GL_TRANSFORM_BIT);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glTranslatef(0.0f, 0.0f, -1.0f);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glRasterPos2f(0.0f, 0.0f);
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glPopAttrib();
}

// An empty bitmap moves the raster position by pixels, wherever it is and without the matrices.
static void moveRaster(float x, float y)
{
    const GLubyte empty = 0;
    GLfloat position[4] = {};
    glGetFloatv(GL_CURRENT_RASTER_POSITION, position);
    glBitmap(1, 1, 0.0f, 0.0f, x - position[0], y - position[1], &empty);
}

// Above 127 the font has no lists, but a mesh may: 0 stands for nothing.
static void dropOtherCodes(char* text)
{
    for (; *text; ++text)
        if (static_cast<unsigned char>(*text) > 127)
            *text = 0;
}

// No window is so large, and moves of that size would lose the fractions of all later text, or the raster
// position altogether.
static bool isWithinReach(float coordinate)
{
    return std::fabs(coordinate) < 32768.0f;
}

static void writeBitmaps(float x, float y, const Color& c, char* text)
{
    const GLsizei length = static_cast<GLsizei>(std::strlen(text));
    dropOtherCodes(text);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    glColor3f(c.r, c.g, c.b);
    if (isWithinReach(x) && isWithinReach(y))
    {
        if (!rasterHas(c))
            takeRasterColor();
        moveRaster(x, y);
        glListBase(static_cast<GLuint>(vrkFontBase));
        glCallLists(length, GL_UNSIGNED_BYTE, text);
        glListBase(0);
    }
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
}

void vrkWrite(float x, float y, Color* c, const char* format, ...)
{
    if (!c || !format)
        return;
    char text[1024 + 1];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length < 0)
        text[0] = 0;

    if (vrkSelectedRasterizer == 0)
        writeBitmaps(x, vrkViewport.height - y, *c, text);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->write(x, y, *c, text);
}
