#include "apps/vornik/loadscene.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "apps/vornik/progressbar.h"

namespace fs = std::filesystem;

OGroup* loadScene(Scene* scene, const SceneFile& file, const LoadOptions& options)
{
    const fs::path path = fs::absolute(file.path);
    const fs::path folder = options.textures.empty() ? path.parent_path() : fs::path(options.textures);
    std::error_code failed;
    fs::current_path(folder, failed);

    int flags = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_TEXTURE_32BIT;
    if (options.smooth)
        flags |= LOAD_SMOOTHING;
    if (!options.classic)
        flags |= LOAD_TOLERANT;
    OGroup* group = scene->createOGroup(path.c_str(), flags, ".", 0, showProgress, nullptr);
    clearProgress();
    return group;
}

// The loader reads the first texture and the opacity map; the rest is read here to see whether it is there.
static bool canBeRead(Texture* texture)
{
    if (texture->width > 0)
        return true;
    texture->extractNames();
    const bool read = texture->loadTexture(texture->frameCount > 1 ? 1 : 0, 1.0f) == 0;
    vrkFree(reinterpret_cast<char**>(&texture->pixels));
    return read && texture->width > 0;
}

std::vector<ImageUse> findImages(OGroup* group)
{
    std::vector<ImageUse> images;
    for (int i = 0; i < group->tlistCount; ++i)
        for (Material* material = group->tlists[i]->first; material; material = material->next)
        {
            const auto add = [&](Texture* texture, const char* role)
            {
                if (texture && std::strcmp(texture->names[0], "VRKCreated.VRK") != 0)
                    images.push_back({material, texture, role, canBeRead(texture)});
            };
            add(material->firstTexture, "texture");
            add(material->opacityTexture, "opacity");
            add(material->reflectionTexture, "reflection");
            add(material->secondTexture, "second texture");
        }
    return images;
}
