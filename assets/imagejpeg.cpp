// JPEG images, from loose files and from packs: decoded by platform/jpeg and laid out as textures want them.

#include "vornik/assets/image.h"

#include <cstdlib>

#include "assets/packread.h"
#include "platform/file.h"
#include "platform/jpeg.h"

// Rows from the top into target rows from the bottom up. One channel goes to the alpha bytes only, so that an
// alpha plane can be laid over an image that is already there.
static void expand(const JpegImage& source, uint8_t* image)
{
    const uint8_t* in = source.pixels.data();
    for (int y = source.height - 1; y >= 0; --y)
    {
        uint8_t* out = image + static_cast<size_t>(y) * static_cast<size_t>(source.width) * 4;
        for (int x = 0; x < source.width; ++x, in += source.channels, out += 4)
        {
            if (source.channels == 1)
            {
                out[3] = in[0];
                continue;
            }
            out[0] = in[0];
            out[1] = in[1];
            out[2] = in[2];
            out[3] = 255;
        }
    }
}

bool loadJPEG(const char* name, uint8_t** image, int* width, int* height, bool alphaOnly,
              const char* packName)
{
    if (!image || !*image)
        return false;

    size_t size = 0;
    char* file = packName ? readPackedFile(packName, name, 0, &size) : vrkReadFile(name, 0, &size);
    if (!file)
        return false;
    JpegImage decoded;
    const bool readable = jpegDecode(reinterpret_cast<const uint8_t*>(file), size, alphaOnly, &decoded);
    std::free(file);
    if (decoded.width < 1 || decoded.height < 1)
        return false;
    if (!readable)
    {
        *width = decoded.width;
        *height = decoded.height;
        return false;
    }

    const size_t bytes = static_cast<size_t>(decoded.width) * static_cast<size_t>(decoded.height) * 4;
    if (bytes > VRK_IMAGE_BLOCK)
    {
        void* larger = std::realloc(*image, bytes);
        if (!larger)
            return false;
        *image = static_cast<uint8_t*>(larger);
    }
    *width = decoded.width;
    *height = decoded.height;
    expand(decoded, *image);
    return true;
}
