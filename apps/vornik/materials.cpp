#include "apps/vornik/materials.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "apps/vornik/text.h"

void reportMissingImages(const std::vector<ImageUse>& images)
{
    std::vector<std::string> told;
    for (const ImageUse& image : images)
    {
        const std::string name = image.texture->names[0];
        if (image.state == ImageState::read || std::find(told.begin(), told.end(), name) != told.end())
            continue;
        told.push_back(name);
        const char* problem = image.state == ImageState::missing ? "missing" : "unreadable";
        std::fprintf(stderr, "%s image: %s\n", problem, printable(name).c_str());
    }
}

static void useColorInstead(Material* material)
{
    delete material->firstTexture;
    material->firstTexture = nullptr;
    material->makeTextureFromColor();
}

// The loader has already folded the image that isn't there into the first one: all of it became clear.
static void makeOpaque(Material* material)
{
    material->transparency = 0.0f;
    if (material->firstTexture)
        material->firstTexture->environment = VRK_MODULATE;
}

// The loader leaves reflection images alone, and the engine lays them on at half strength whatever the file
// says: the strength goes into the image. Without an image the faces would be bleached.
static void loadReflection(Material* material, bool canBeRead, const std::string& pack)
{
    Texture* texture = material->reflectionTexture;
    if (!canBeRead || !loadImage(texture, pack))
    {
        delete texture;
        material->reflectionTexture = nullptr;
        return;
    }
    const int percent = std::clamp(static_cast<int>(texture->percent), 0, 100);
    const size_t bytes = static_cast<size_t>(texture->width) * static_cast<size_t>(texture->height) * 4;
    for (size_t i = 0; i < bytes; ++i)
        if (i % 4 != 3)
            texture->pixels[i] = static_cast<uint8_t>(texture->pixels[i] * percent / 100);
    texture->uploadTexture(0);
}

// Files tell how clear a material is; the engine draws the number as opacity.
static void turnTransparency(Material* material)
{
    const bool hasAlphaImage = material->firstTexture && material->firstTexture->environment == VRK_DECAL;
    if (material->transparency != 0.0f && !hasAlphaImage)
        material->transparency = std::clamp(1.0f - material->transparency, 0.02f, 1.0f);
}

// The engine's own default is a violet that says "no material". Editors show such faces in grey.
static void greyDefault(TList* list)
{
    static Color grey = {0.7f, 0.7f, 0.7f, 1.0f};
    list->first->addDiffuseColor(&grey);
    useColorInstead(list->first);
}

void completeMaterials(OGroup* group, const std::vector<ImageUse>& images, const std::string& pack,
                       bool classic)
{
    for (const ImageUse& image : images)
    {
        Material* material = image.material;
        const bool canBeRead = image.state == ImageState::read;
        if (image.texture == material->reflectionTexture && !classic)
            loadReflection(material, canBeRead, pack);
        else if (image.texture == material->opacityTexture && !canBeRead && !classic)
            makeOpaque(material);
        else if (image.texture == material->firstTexture && !canBeRead)
        {
            useColorInstead(material);
            if (material->opacityTexture && !classic)
                makeOpaque(material);
        }
    }
    if (classic)
        return;
    for (int i = 0; i < group->tlistCount; ++i)
    {
        greyDefault(group->tlists[i]);
        for (Material* material = group->tlists[i]->first; material; material = material->next)
            turnTransparency(material);
    }
}
