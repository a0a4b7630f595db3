#ifndef VORNIK_ASSETS_IMAGE_H
#define VORNIK_ASSETS_IMAGE_H

// Readers of JPEG and TGA images and of IFL image lists, in loose files and in packs.
//
// Images come out as RGBA, 4 bytes a pixel, rows bottom-up. The readers take the address of a malloc block of
// VRK_IMAGE_BLOCK bytes and grow it where the image needs more.
//
// The readers of packs open the pack and close it again. They leave it open where it hasn't got the member,
// and where a TGA is of a depth or type that can't be read.

#include <stdint.h>
#include <stdio.h>

#include "vornik/core/string.h"
#include "vornik/export.h"

struct PackHandle;

enum
{
    VRK_IMAGE_BLOCK = 0x400000 ///< bytes of a texture's pixel block: 1024 x 1024 texels
};

/// Both a power of two from 1 to 2048?
VRK_API bool isTextureSizeLegal(int width, int height);

/// Reads a JPEG.
/// @param image          [in, out] address of the block; false at once for null or a null block
/// @param width, height  [out] pixels; also where only the header can be read, and the result is false
/// @param alphaOnly      reads grey and writes it to the alpha bytes only
/// @param packName       pack to read from; null for a loose file
VRK_API bool loadJPEG(const char* name, uint8_t** image, int* width, int* height, bool alphaOnly,
                      const char* packName);

/// Reads a TGA file of type 2 or 10 with 24 or 32 bits; rows stay in the file's order.
/// @param image          [in, out] address of the block
/// @param bytesPerPixel  [out] of the file
/// @return 0, 46 (can't be opened), 47 (under 24 bits) or 48 (another type), logged
VRK_API int loadTGA(const char* name, uint8_t** image, int* width, int* height, int* bytesPerPixel);

/// loadTGA from a pack. An image that ends too early goes on with what lies behind it in the pack.
VRK_API int loadPackedTGA(const char* name, uint8_t** image, int* width, int* height, int* bytesPerPixel,
                          const char* packName);

/// Reads the lines of a list of image names, in order, without lines of up to 4 characters.
/// @param strings  [64], out: at most 63 are kept
/// @return the number of lines kept, -1 if the file can't be opened
VRK_API int readImageList(const char* path, String* strings);

/// readImageList from a pack. @return also -1 if the pack can't be opened or hasn't got the list
VRK_API int readPackedImageList(const char* path, String* strings, const char* packName);

/// Reads one line of a list. A last line without a line feed repeats its last character.
VRK_API String readImageListLine(FILE* file);

/// readImageListLine from the open pack. Goes on behind the member's end until a line ends or the pack does.
VRK_API String readPackedImageListLine(PackHandle* handle);

#endif
