#ifndef VORNIK_ASSETS_LOAD3DS_H
#define VORNIK_ASSETS_LOAD3DS_H

// The engine's one scene loader.

#include "vornik/export.h"

class OGroup;

/// Load flags.
enum VRKLoadFlag
{
    LOAD_CLEAR = 0x0001,     ///< OGroup::load and Scene::createOGroup delete first; load3ds doesn't read it
    LOAD_MESHES = 0x0004,    ///< keep and finish meshes
    LOAD_LIGHTS = 0x0008,    ///< keep lights
    LOAD_CAMERAS = 0x0010,   ///< keep cameras
    LOAD_KEYFRAMES = 0x0020, ///< read animation and hierarchy
    LOAD_MATERIALS = 0x0040, ///< make a TList and load images
    LOAD_LIGHTING = 0x0080,  ///< Scene::createOGroup traces the lights; load3ds doesn't read it
    LOAD_SMOOTHING = 0x0100, ///< Mesh::prepareSmoothing
    LOAD_TEXTURE_MODIFIER = 0x0200, ///< Texture::multiply on each image
    LOAD_COMBINE = 0x0400,          ///< OGroup::closeCombine(0.5)
    LOAD_OCTREE = 0x0800,           ///< OGroup::constructOctree
    LOAD_TEXTURE_32BIT = 0x1000,    ///< 8 bits a channel instead of 4
    LOAD_TEXTURE_HALF = 0x2000,     ///< images at scale 0.5
    LOAD_NO_MIPMAP = 0x4000,        ///< no mip levels
    LOAD_FROM_PACK = 0x8000,        ///< file and images from a pack
    /// For files from the wild: takes chunk ends from the file's own lengths, keeps every material, reads
    /// byte colours as 0 to 255 and percentages in each form that exporters write, plays nodes as their
    /// makers meant them (docs/animation.md). Off, the results of old hosts stand.
    LOAD_TOLERANT = 0x10000
};

/// Reads a .3DS file (chunks under 0x4D4D) and adds its objects to a group. Keeps the file's axes and units.
/// @param fileName           found without regard to case and with backslashes as separators
/// @param materialDirectory  of the images; null counts as empty
/// @param flags              LOAD_... bits
/// @param progress           may be null; called with the fraction done, which is no number while the images
///                           of a file without materials are loaded
/// @param packName           pack that holds the file and its images; read only with LOAD_FROM_PACK
/// @return 0, 13 (can't be opened) or 14 (not a .3DS file), already logged. A truncated file is no error.
VRK_API int load3ds(const char* fileName, OGroup* group, const char* materialDirectory, int flags,
                    void (*progress)(float), const char* packName);

#endif
