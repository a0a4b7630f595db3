#include "apps/vornik/loadscene.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>

#include "apps/vornik/packmember.h"
#include "apps/vornik/progressbar.h"

namespace fs = std::filesystem;

std::string problemOf(const LoadOptions& options, const SceneFile& file)
{
    if (!file.pack.empty())
    {
        const bool found =
            options.textures.empty() || !findFolder(file.pack, options.textures, file.path).empty();
        return found ? "" : options.textures + ": no such folder in " + options.pack;
    }
    std::error_code failed;
    if (!options.textures.empty() && !fs::is_directory(options.textures, failed))
        return options.textures + ": no such folder";
    return "";
}

static int loadFlags(const LoadOptions& options)
{
    int flags = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_TEXTURE_32BIT;
    if (options.smooth)
        flags |= LOAD_SMOOTHING;
    if (options.keyframes)
        flags |= LOAD_KEYFRAMES;
    if (!options.classic)
        flags |= LOAD_TOLERANT;
    return flags;
}

static OGroup* loadPacked(Scene* scene, const SceneFile& file, const LoadOptions& options)
{
    const std::string folder =
        options.textures.empty() ? folderOf(file.path) : findFolder(file.pack, options.textures, file.path);
    return scene->createOGroup(file.path.c_str(), loadFlags(options) | LOAD_FROM_PACK, folder.c_str(), 0,
                               showProgress, file.pack.c_str());
}

static OGroup* loadLoose(Scene* scene, const SceneFile& file, const LoadOptions& options)
{
    const fs::path path = fs::absolute(file.path);
    const fs::path folder = options.textures.empty() ? path.parent_path() : fs::path(options.textures);
    std::error_code failed;
    fs::current_path(folder, failed);
    return scene->createOGroup(path.string().c_str(), loadFlags(options), ".", 0, showProgress, nullptr);
}

OGroup* loadScene(Scene* scene, const SceneFile& file, const LoadOptions& options)
{
    OGroup* group = file.pack.empty() ? loadLoose(scene, file, options) : loadPacked(scene, file, options);
    clearProgress();
    return group;
}

static bool equalButForCase(const std::string& a, const std::string& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::toupper(x) == std::toupper(y); });
}

// Is there a file of this name in the folder of the images, which the process has moved into?
static bool isInFolder(const std::string& name)
{
    const std::string file = name.substr(name.find_last_of("\\/") + 1);
    std::error_code failed;
    for (const fs::directory_entry& entry : fs::directory_iterator(".", failed))
        if (equalButForCase(entry.path().filename().string(), file))
            return true;
    return false;
}

bool loadImage(Texture* texture, const std::string& pack)
{
    const bool packed = !pack.empty();
    packed ? texture->extractNames(pack.c_str()) : texture->extractNames();
    const int index = texture->frameCount > 1 ? 1 : 0;
    return (packed ? texture->loadTexture(index, pack.c_str(), 1.0f) : texture->loadTexture(index, 1.0f)) ==
           0;
}

// The loader reads the first texture and the opacity map; the rest is read here to see whether it is there.
static ImageState stateOf(Texture* texture, const std::string& pack)
{
    if (texture->width > 0)
        return ImageState::read;
    const bool isRead = loadImage(texture, pack) && texture->width > 0;
    vrkFree(reinterpret_cast<char**>(&texture->pixels));
    if (isRead)
        return ImageState::read;
    const std::string name = texture->names[0];
    const bool isThere = pack.empty() ? isInFolder(name) : hasMemberOfFile(pack, name);
    return isThere ? ImageState::unreadable : ImageState::missing;
}

std::vector<ImageUse> findImages(OGroup* group, const std::string& pack)
{
    std::vector<ImageUse> images;
    for (int i = 0; i < group->tlistCount; ++i)
        for (Material* material = group->tlists[i]->first; material; material = material->next)
        {
            const auto add = [&](Texture* texture, const char* role)
            {
                if (texture && std::strcmp(texture->names[0], "VRKCreated.VRK") != 0)
                    images.push_back({material, texture, role, stateOf(texture, pack)});
            };
            add(material->firstTexture, "texture");
            add(material->opacityTexture, "opacity");
            add(material->reflectionTexture, "reflection");
            add(material->secondTexture, "second texture");
        }
    return images;
}
