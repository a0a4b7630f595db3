// Material chunks of a .3DS file: materials with their colours, percentages, switches and maps.

#include "vornik/assets/read3dsmaterial.h"

#include <math.h>
#include <stdlib.h>

#include "assets/chunkwalk.h"
#include "assets/loadmaterials.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/loader.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/vectors.h"
#include "vornik/scene/material.h"

static const float byteToChannel = 0.003921569f;

static bool isColorChunk(uint16_t id)
{
    return id >= 0x0010 && id <= 0x0013;
}

static void readFloatColor(Color* color)
{
    color->r = vrkLoader.getFloat();
    color->g = vrkLoader.getFloat();
    color->b = vrkLoader.getFloat();
}

// Old hosts know colours of 128 and more as negative.
static float readChannel()
{
    const char value = vrkLoader.getChar();
    const int channel = loaderTolerant ? static_cast<uint8_t>(value) : static_cast<int8_t>(value);
    return static_cast<float>(channel) * byteToChannel;
}

Color* read3dsColor()
{
    auto* color = static_cast<Color*>(malloc(sizeof(Color)));
    if (!color)
        return nullptr;
    *color = {0, 0, 0, 1};
    const uint16_t id = vrkLoader.chunkID;
    if (id == 0x0010 || (id == 0x0013 && loaderTolerant))
        readFloatColor(color);
    else if (id == 0x0011 || id == 0x0012)
    {
        color->r = readChannel();
        color->g = readChannel();
        color->b = readChannel();
    }
    else
        skipForward();
    return color;
}

// The colour inside a chunk: strictly its first child, whatever that is, tolerantly its first colour or null.
static Color* readInnerColor(uint32_t length)
{
    if (!loaderTolerant)
    {
        vrkLoader.getChunkID();
        return read3dsColor();
    }
    ChunkWalk children(length, 0);
    while (children.next())
    {
        if (isColorChunk(vrkLoader.chunkID))
            return read3dsColor();
    }
    return nullptr;
}

// A float of a file as an integer; what doesn't fit, or is no number, counts as 0.
static int toInt(float value)
{
    return value > -2147483648.0f && value < 2147483648.0f ? static_cast<int>(value) : 0;
}

// Most writers of float percentages store 0 to 1, some 0 to 100.
static float fractionOf(float percent)
{
    return percent > 1.0f ? percent * 0.01f : percent;
}

// The percentage inside a chunk as a fraction. Strictly the first two bytes of its first child, whatever that
// is.
static float readInnerFraction(uint32_t length, float missing)
{
    if (!loaderTolerant)
    {
        vrkLoader.getChunkID();
        return static_cast<float>(vrkLoader.getShort()) * 0.01f;
    }
    ChunkWalk children(length, 0);
    while (children.next())
    {
        if (vrkLoader.chunkID == 0x0030)
            return static_cast<float>(vrkLoader.getShort()) * 0.01f;
        if (vrkLoader.chunkID == 0x0031)
            return fractionOf(vrkLoader.getFloat());
    }
    return missing;
}

static void readMapPercent(Texture* texture)
{
    const bool isFloat = vrkLoader.chunkID == 0x0031;
    if (!isFloat)
        texture->percent = vrkLoader.getShort();
    else if (loaderTolerant)
        texture->percent = toInt(roundf(fractionOf(vrkLoader.getFloat()) * 100.0f));
    else
        texture->percent = toInt(vrkLoader.getFloat());
}

static void readMapName(Texture* texture, const TList* list)
{
    char name[256] = "";
    vrkLoader.getString(name, sizeof(name));
    texture->setFilename(name, 0);
    if (list)
        texture->setBaseDir(list->baseDirectory);
}

void read3dsTextureMap(int length, Texture* texture, TList* list, Material* material)
{
    // The walk takes the length of a whole chunk.
    ChunkWalk walk(static_cast<int64_t>(length) + 6, 6);
    while (walk.next())
    {
        switch (vrkLoader.chunkID)
        {
        case 0x0030:
        case 0x0031:
            readMapPercent(texture);
            break;
        case 0xA300:
            readMapName(texture, list);
            break;
        case 0xA351: // this one value only: other bits beside it leave the map tiled
            if (vrkLoader.getShort() == 0x10 && material)
                material->tiled = 0;
            break;
        case 0xA354:
            texture->scaleU = vrkLoader.getFloat();
            break;
        case 0xA356:
            texture->scaleV = vrkLoader.getFloat();
            break;
        case 0xA358:
            texture->offsetU = vrkLoader.getFloat();
            break;
        case 0xA35A:
            texture->offsetV = vrkLoader.getFloat();
            break;
        case 0xA35C:
            texture->rotation = vrkLoader.getFloat();
            break;
        default:
            walk.skip();
        }
    }
}

// A new material under the name at the cursor, in the list of the load; null without a list.
static Material* readMaterialName()
{
    char name[256] = "";
    vrkLoader.getString(name, sizeof(name));
    auto* material = new Material;
    material->setName(name);
    if (addLoadedMaterial(material))
        return material;
    delete material;
    return nullptr;
}

// Where a map chunk's texture goes.
struct MapSlot
{
    uint16_t id;
    Texture* Material::*texture;
    int (Material::*add)(Texture*);
};

static const MapSlot mapSlots[] = {
    {0xA200, &Material::firstTexture, &Material::addFirstTexture},
    {0xA210, &Material::opacityTexture, &Material::addOpacityTexture},
    {0xA220, &Material::reflectionTexture, &Material::addReflectionTexture},
    {0xA33A, &Material::secondTexture, &Material::addSecondTexture},
};

static const MapSlot* findMapSlot(uint16_t id)
{
    for (const MapSlot& slot : mapSlots)
    {
        if (slot.id == id)
            return &slot;
    }
    return nullptr;
}

static void readMap(Material* material, const MapSlot& slot, uint32_t length, int flags)
{
    auto* texture = new Texture;
    if (flags & LOAD_TEXTURE_32BIT)
        texture->bitsPerTexel = 32;
    if (flags & LOAD_NO_MIPMAP)
        texture->mipmap = false;
    texture->acceptSubstitutes = loaderTolerant;
    delete (material->*slot.texture); // of an earlier chunk of the same kind
    (material->*slot.add)(texture);
    read3dsTextureMap(static_cast<int>(static_cast<int64_t>(length) - 6), texture, loaderMaterials, material);
}

// Where a colour chunk's colour goes.
struct ColorSlot
{
    uint16_t id;
    int (Material::*add)(Color*);
};

static const ColorSlot colorSlots[] = {
    {0xA010, &Material::addAmbientColor},
    {0xA020, &Material::addDiffuseColor},
    {0xA030, &Material::addSpecularColor},
};

static const ColorSlot* findColorSlot(uint16_t id)
{
    for (const ColorSlot& slot : colorSlots)
    {
        if (slot.id == id)
            return &slot;
    }
    return nullptr;
}

static void readMaterialColor(Material* material, const ColorSlot& slot, uint32_t length)
{
    Color* color = readInnerColor(length);
    // Materials don't own their colours: the list does.
    if (color && loaderMaterials->keepColor(color))
        (material->*slot.add)(color);
}

// One child of a material that has its name.
static void readMaterialPart(Material* material, ChunkWalk& walk, int flags)
{
    const uint16_t id = vrkLoader.chunkID;
    const uint32_t length = walk.childLength();
    if (const ColorSlot* slot = findColorSlot(id))
        return readMaterialColor(material, *slot, length);
    if (const MapSlot* slot = findMapSlot(id))
        return readMap(material, *slot, length, flags);

    switch (id)
    {
    case 0xA050:
        material->transparency = readInnerFraction(length, material->transparency);
        break;
    case 0xA081:
        material->twoSided = 1;
        break;
    case 0xA084:
        material->selfIllumination = readInnerFraction(length, material->selfIllumination);
        break;
    case 0xA085:
        material->wire = 1;
        break;
    case 0xA087:
        material->wireSize = vrkLoader.getFloat();
        break;
    default:
        walk.skip();
    }
}

static void readMaterial(int length, int flags)
{
    Material* material = nullptr;
    ChunkWalk walk(length, 0);
    while (walk.next())
    {
        // Strictly, the header of the material itself isn't counted, so that a file with nothing counted
        // twice gives one chunk too many: the one behind the material, which is often the next material, and
        // passed over.
        if (vrkLoader.chunkID == 0xA000)
            material = readMaterialName();
        else if (material)
            readMaterialPart(material, walk, flags);
        else
            walk.skip();
    }
}

void read3dsMaterial(int length, int flags)
{
    loaderTolerant = (flags & LOAD_TOLERANT) != 0;
    readWhileMemoryLasts([&] { readMaterial(length, flags); });
}
