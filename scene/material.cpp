#include "vornik/scene/material.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "particles/livingsources.h"
#include "vornik/assets/texture.h"
#include "vornik/core/errorlog.h"
#include "vornik/core/memory.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/texture.h"

Material::Material()
    : name("DEFAULT"), id(0), selfIllumination(0.0f), transparency(0.0f), firstTexture(nullptr),
      secondTexture(nullptr), opacityTexture(nullptr), reflectionTexture(nullptr), ambient(nullptr),
      specular(nullptr), diffuse(nullptr), next(nullptr), tiled(1), twoSided(0), wire(0), wireSize(0.0f)
{
}

Material::~Material()
{
    forgetMaterial(this);
    delete firstTexture;
    delete secondTexture;
    delete opacityTexture;
    delete reflectionTexture;
}

void Material::setName(const char* text)
{
    std::snprintf(name, sizeof name, "%s", text);
}

int Material::addFirstTexture(Texture* texture)
{
    firstTexture = texture;
    return 0;
}

int Material::addSecondTexture(Texture* texture)
{
    secondTexture = texture;
    return 0;
}

int Material::addOpacityTexture(Texture* texture)
{
    opacityTexture = texture;
    return 0;
}

int Material::addReflectionTexture(Texture* texture)
{
    reflectionTexture = texture;
    return 0;
}

int Material::addAmbientColor(Color* color)
{
    ambient = color;
    return 0;
}

int Material::addSpecularColor(Color* color)
{
    specular = color;
    return 0;
}

int Material::addDiffuseColor(Color* color)
{
    diffuse = color;
    return 0;
}

static size_t pixelCount(const Texture& image)
{
    if (image.width < 1 || image.height < 1)
        return 0;
    return static_cast<size_t>(image.width) * static_cast<size_t>(image.height);
}

// Nearest sample of source for each pixel of a width x height image. Source rows are taken at the stride of
// the destination's width, which is how opacity maps of another size have always been fitted; samples that
// fall behind the source's end are transparent black. The texture goes on telling the source's size, so the
// block has room for as many pixels.
static uint8_t* scaledPixels(const Texture& source, int width, int height)
{
    const size_t available = pixelCount(source);
    const size_t wanted = static_cast<size_t>(width) * static_cast<size_t>(height);
    uint8_t* scaled = static_cast<uint8_t*>(std::calloc(std::max(wanted, available), 4));
    if (!scaled)
        return nullptr;

    const float ratioX = static_cast<float>(source.width) / static_cast<float>(width);
    const float ratioY = static_cast<float>(source.height) / static_cast<float>(height);
    uint8_t* out = scaled;
    for (int y = 0; y < height; ++y)
    {
        const size_t row = static_cast<size_t>(static_cast<float>(y) * ratioY) * static_cast<size_t>(width);
        for (int x = 0; x < width; ++x, out += 4)
        {
            const size_t index = row + static_cast<size_t>(static_cast<float>(x) * ratioX);
            if (index < available)
                std::memcpy(out, source.pixels + index * 4, 4);
        }
    }
    return scaled;
}

static void copyAlpha(uint8_t* image, const uint8_t* opacity, size_t count)
{
    for (size_t i = 0; i < count; ++i)
        image[i * 4 + 3] = opacity[i * 4 + 3];
}

// Bytes count as signed, so 200 is -56; the average's low 8 bits are the alpha.
static void averageToAlpha(uint8_t* image, const uint8_t* opacity, size_t count)
{
    const int8_t* bytes = reinterpret_cast<const int8_t*>(opacity);
    for (size_t i = 0; i < count; ++i)
        image[i * 4 + 3] = static_cast<uint8_t>((bytes[i * 4] + bytes[i * 4 + 1] + bytes[i * 4 + 2]) / 3);
}

void Material::calcAlpha()
{
    if (!firstTexture)
        return;
    firstTexture->environment = VRK_MODULATE;
    if (!opacityTexture || !opacityTexture->pixels || !firstTexture->pixels)
        return;

    const size_t count = pixelCount(*firstTexture);
    if (count > 0 &&
        (opacityTexture->width != firstTexture->width || opacityTexture->height != firstTexture->height))
    {
        uint8_t* scaled = scaledPixels(*opacityTexture, firstTexture->width, firstTexture->height);
        if (!scaled)
            return;
        vrkFree(reinterpret_cast<char**>(&opacityTexture->pixels));
        opacityTexture->pixels = scaled;
    }

    if (opacityTexture->bytesPerPixel == 4)
        copyAlpha(firstTexture->pixels, opacityTexture->pixels, count);
    else if (opacityTexture->bytesPerPixel == 3)
        averageToAlpha(firstTexture->pixels, opacityTexture->pixels, count);
    firstTexture->environment = VRK_DECAL;
    transparency = 1.0f;
}

// Low 8 bits of the whole number; what no integer can hold is 0.
static uint8_t colorByte(float channel)
{
    const float scaled = channel * 255.0f;
    if (!(std::fabs(scaled) < 2147483648.0f))
        return 0;
    return static_cast<uint8_t>(static_cast<int>(scaled));
}

int Material::makeTextureFromColor()
{
    if (!diffuse)
        return vrkPutToErrorLog("Material contains no diffuse values", 30);

    Texture* texture = new (std::nothrow) Texture;
    if (!texture)
        return 0;
    addFirstTexture(texture);
    const int side = 4;
    texture->pixels = static_cast<uint8_t*>(std::malloc(side * side * 4));
    if (!texture->pixels)
        return 0;
    const uint8_t color[4] = {colorByte(diffuse->r), colorByte(diffuse->g), colorByte(diffuse->b),
                              colorByte(diffuse->a)};
    for (int i = 0; i < side * side; ++i)
        std::memcpy(texture->pixels + i * 4, color, 4);

    const int textureName = texture->seekFreeTextureID();
    if (textureName < 0)
        return vrkPutToErrorLog("Cannot upload texture (possible openGL error)", 11);
    texture->textureIDs[0] = textureName;
    texture->width = texture->height = side;
    texture->setFilename("VRKCreated.VRK", 0);
    vrkUploadTexture(texture, 0);
    vrkFree(reinterpret_cast<char**>(&texture->pixels));
    return 0;
}
