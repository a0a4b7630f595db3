// The images that rasterizer 1 was given, by name, and their surfaces on the device. An image stays until the
// process ends, so that surfaces can be built again whenever the device loses them.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "rasterizer/d3d/system.h"

/// Flags of an entry.
enum D3DTextureFlags
{
    textureOf32Bits = 4,
    textureOf16Bits = 8,
    textureWithAlpha = 16,
    textureWithMipMaps = 32
};

/// One image, node of a list with the newest first.
struct D3DTextureEntry
{
    D3DTextureEntry* next;
    char name[80];
    int width, height;
    uint32_t stage;
    int bitsPerPixel; ///< of the image: always 32
    uint32_t flags;
    bool mipmap;
    uint32_t textureName;
    std::unique_ptr<D3DTextureSurface> surface; ///< null until built, and where the device has none to give
    std::vector<uint32_t> pixels;               ///< [width * height], R highest, then G, B, A
};

/// Where surfaces are built.
struct D3DTextureTarget
{
    D3DDevice* device; ///< null builds nothing
    bool hardware;     ///< its textures are managed by the library; others lie in system memory
    uint32_t caps;     ///< of its triangles' textures
};

/// @return null if no image has the name
D3DTextureEntry* findTexture(uint32_t textureName);

/// Keeps a copy of an image under a name. A name that has one keeps it, with the flags it came with.
/// @param rgba  [width * height * 4]. @return null if there is no memory
D3DTextureEntry* addTexture(uint32_t textureName, const char* file, int width, int height,
                            const uint8_t* rgba, uint32_t flags);

/// Builds the surface of an image anew. @return 0 or a code
uint32_t buildTexture(D3DTextureEntry* entry, const D3DTextureTarget& target);

/// The same for all images.
void buildAllTextures(const D3DTextureTarget& target);
/// Releases all surfaces; the images stay.
void releaseAllTextures();
/// Forgets all images, as the end of the process does. Surfaces that still stand then belong to a device that
/// the host never stopped; the library may be gone before them, so they are left to the system.
void forgetAllTextures();
/// The surface of a name, or null.
D3DTextureSurface* textureSurface(uint32_t textureName);
