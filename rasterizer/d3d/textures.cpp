#include "rasterizer/d3d/textures.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <unordered_map>

#include "rasterizer/d3d/choose.h"
#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/pixels.h"

// Frees the list when the process ends.
struct TextureList
{
    D3DTextureEntry* newest = nullptr;
    std::unordered_map<uint32_t, D3DTextureEntry*> byName; // every bind asks for one

    ~TextureList() { forgetAllTextures(); }
};

static TextureList textures;

// From the end of the list on, for which the list is turned round first.
void forgetAllTextures()
{
    textures.byName.clear();
    D3DTextureEntry* oldest = nullptr;
    while (D3DTextureEntry* entry = textures.newest)
    {
        textures.newest = entry->next;
        entry->next = oldest;
        oldest = entry;
    }
    while (D3DTextureEntry* entry = oldest)
    {
        oldest = entry->next;
        (void)entry->surface.release();
        delete entry;
    }
}

D3DTextureEntry* findTexture(uint32_t textureName)
{
    const auto found = textures.byName.find(textureName);
    return found != textures.byName.end() ? found->second : nullptr;
}

static std::vector<uint32_t> packedPixels(int width, int height, const uint8_t* rgba)
{
    std::vector<uint32_t> pixels(static_cast<size_t>(width) * static_cast<size_t>(height));
    for (uint32_t& pixel : pixels)
    {
        pixel = uint32_t(rgba[0]) << 24 | uint32_t(rgba[1]) << 16 | uint32_t(rgba[2]) << 8 | rgba[3];
        rgba += 4;
    }
    return pixels;
}

D3DTextureEntry* addTexture(uint32_t textureName, const char* file, int width, int height,
                            const uint8_t* rgba, uint32_t flags)
try
{
    if (D3DTextureEntry* known = findTexture(textureName))
        return known;
    auto entry = std::make_unique<D3DTextureEntry>();
    std::snprintf(entry->name, sizeof entry->name, "%s", file);
    entry->width = width;
    entry->height = height;
    entry->bitsPerPixel = 32;
    entry->flags = flags;
    entry->mipmap = flags & textureWithMipMaps;
    entry->textureName = textureName;
    entry->pixels = packedPixels(width, height, rgba);
    entry->next = textures.newest;
    textures.byName[textureName] = entry.get();
    return textures.newest = entry.release();
}
catch (const std::bad_alloc&)
{
    return nullptr;
}

static void fillSurface(const D3DTextureEntry& entry, D3DTextureSurface* surface)
{
    D3DImage image = {entry.width, entry.height, entry.pixels.data()};
    std::vector<uint32_t> smaller;
    for (int i = 0; i < surface->levelCount(); ++i)
    {
        if (i > 0)
        {
            smaller = halved(image);
            image = {std::max(image.width / 2, 1), std::max(image.height / 2, 1), smaller.data()};
        }
        D3DTextureSurface::Level level;
        if (!surface->lock(i, &level))
            continue;
        copyToLevel(image, level, surface->format());
        surface->unlock(i);
    }
}

uint32_t buildTexture(D3DTextureEntry* entry, const D3DTextureTarget& target)
try
{
    entry->surface.reset();
    if (!target.device)
        return d3d::invalidArgument;

    const std::vector<D3DPixelFormat> formats = target.device->textureFormats();
    const D3DPixelFormat* format = chooseTextureFormat(formats, entry->flags & textureOf32Bits ? 32 : 16,
                                                       entry->flags & textureWithAlpha);
    if (!format)
        return d3d::failed;

    const D3DSize size = textureSize(entry->width, entry->height, target.caps);
    const D3DTextureRequest request = {size.width,    size.height,      entry->mipmap ? mipLevels(size) : 1,
                                       entry->mipmap, !target.hardware, *format};
    entry->surface = target.device->createTexture(request);
    if (!entry->surface)
        return d3d::outOfMemory;
    fillSurface(*entry, entry->surface.get());
    return d3d::ok;
}
catch (const std::bad_alloc&)
{
    return d3d::outOfMemory;
}

void buildAllTextures(const D3DTextureTarget& target)
{
    for (D3DTextureEntry* entry = textures.newest; entry; entry = entry->next)
        buildTexture(entry, target);
}

void releaseAllTextures()
{
    for (D3DTextureEntry* entry = textures.newest; entry; entry = entry->next)
        entry->surface.reset();
}

D3DTextureSurface* textureSurface(uint32_t textureName)
{
    const D3DTextureEntry* entry = findTexture(textureName);
    return entry ? entry->surface.get() : nullptr;
}
