// Bringing a file into the engine, and what its images came to.
#pragma once

#include <string>
#include <vector>

#include "apps/vornik/scenefile.h"
#include "vornik/vornik.h"

struct LoadOptions
{
    std::string pack;     ///< pack that has the scene and its images; empty for loose files
    std::string textures; ///< folder of the images, of the pack's if there is one; empty for the scene's own
    bool classic = false;
    bool smooth = true;
    bool keyframes = true;
};

/// What is wrong with the options, for people; empty if nothing is.
std::string problemOf(const LoadOptions& options, const SceneFile& file);

/// Reads the file into a new group of the scene. The engine must run, silently or not.
/// The process moves into the folder of loose images: the engine keeps paths short, and a name in that folder
/// always fits. So make other paths absolute first.
/// @return null if the engine refuses the file
OGroup* loadScene(Scene* scene, const SceneFile& file, const LoadOptions& options);

enum class ImageState
{
    read,
    missing,   ///< there is no such file
    unreadable ///< it is there, in a form that can't be read
};

/// One image that a material names.
struct ImageUse
{
    Material* material;
    Texture* texture;
    const char* role; ///< "texture", "opacity", "reflection" or "second texture"
    ImageState state;
};

/// Reads a texture's first image. @param pack  empty for loose files
bool loadImage(Texture* texture, const std::string& pack);

/// The images of all materials. Reads those that the loader leaves alone.
std::vector<ImageUse> findImages(OGroup* group, const std::string& pack);
