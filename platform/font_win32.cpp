// The font as display lists of the system font's bitmaps.

#include "platform/font.h"

#include <windows.h>

#include <GL/gl.h>

// The system makes the blank a bitmap of no size, which some drivers drop from a list together with its
// width: the words of a text would run together. A single dark pixel is kept.
static void makeBlank(VRKDeviceContext device, GLuint list)
{
    INT width = 0;
    if (!GetCharWidth32A(device, ' ', ' ', &width))
        return;
    const GLubyte dark = 0;
    glNewList(list, GL_COMPILE);
    glBitmap(1, 1, 0.0f, 0.0f, static_cast<GLfloat>(width), 0.0f, &dark);
    glEndList();
}

bool vrkPlatformMakeFont(VRKDeviceContext device, int base)
{
    SelectObject(device, GetStockObject(SYSTEM_FONT));
    if (!wglGetCurrentContext() || !wglUseFontBitmapsA(device, 0, 128, static_cast<DWORD>(base)))
        return false;
    makeBlank(device, static_cast<GLuint>(base + ' '));
    return true;
}
