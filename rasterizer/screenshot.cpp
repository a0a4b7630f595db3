// The picture, read back and saved.

#include "vornik/rasterizer/screenshot.h"

#include <GL/gl.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/file.h"
#include "platform/jpeg.h"
#include "rasterizer/constants.h"
#include "rasterizer/upsidedown.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

static void readPixels(void* buffer, int width, int height)
{
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, buffer);
}

void vrkGetBuffer(char* buffer, int width, int height)
{
    if (vrkSelectedRasterizer == 0 && buffer)
        readPixels(buffer, width, height);
}

static bool isTaken(const char* name)
{
    FILE* file = vrkOpenFile(name, "rb");
    if (file)
        std::fclose(file);
    return file;
}

// @return false if all thousand names are taken
static bool findFreeName(char (&name)[24])
{
    for (int n = 0; n <= 999; ++n)
    {
        std::snprintf(name, sizeof name, "Shot%04d.jpg", n);
        if (!isTaken(name))
            return true;
    }
    return false;
}

// Rows without gaps, whatever layout the host reads its own pixels in.
static void readPlainRows(uint8_t* pixels, int width, int height)
{
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    for (const GLenum name : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS})
        glPixelStorei(name, 0);
    readPixels(pixels, width, height);
    glPopClientAttrib();
}

static void saveJpeg(const char* name, const uint8_t* rgba, int width, int height)
{
    const std::vector<uint8_t> stream = jpegEncode(rgba, width, height, 90, 4);
    if (stream.empty())
        return;
    FILE* file = vrkOpenFile(name, "wb");
    if (!file)
        return;
    std::fwrite(stream.data(), 1, stream.size(), file);
    std::fclose(file);
}

// A block for the picture, black. @return null for a size that no picture has
static uint8_t* makeImage(int width, int height)
{
    if (width < 1 || height < 1 || static_cast<int64_t>(width) * height > INT_MAX / 4)
        return nullptr;
    return static_cast<uint8_t*>(std::calloc(static_cast<size_t>(width) * static_cast<size_t>(height), 4));
}

void vrkScreenShot()
{
    char name[24];
    if ((vrkSelectedRasterizer != 0 && vrkSelectedRasterizer != 1) || !findFreeName(name))
        return;
    const Viewport* viewport = vrkGetViewport();
    const int width = truncated(viewport->width);
    const int height = truncated(viewport->height);
    uint8_t* pixels = makeImage(width, height);
    if (!pixels)
        return;
    // Direct3D's picture isn't read: it is saved black.
    if (vrkSelectedRasterizer == 0)
        readPlainRows(pixels, width, height);
    turnUpsideDown(pixels, width, height);
    saveJpeg(name, pixels, width, height);
    std::free(pixels);
}
