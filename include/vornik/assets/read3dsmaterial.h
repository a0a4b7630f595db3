#ifndef VORNIK_ASSETS_READ3DSMATERIAL_H
#define VORNIK_ASSETS_READ3DSMATERIAL_H

// Readers of the material chunks of a .3DS file. All work at the cursor of vrkLoader.

#include "vornik/core/vectors.h"
#include "vornik/export.h"

class Material;
class TList;
class Texture;

/// Reads one material chunk (0xAFFF) into the TList of the running load. No image is read.
/// @param length  of the chunk, its header included, which has been read
/// @param flags   LOAD_... bits
VRK_API void read3dsMaterial(int length, int flags);

/// Reads the inside of a map chunk. @param length  of the chunk without its header
VRK_API void read3dsTextureMap(int length, Texture* texture, TList* list, Material* material);

/// Reads a colour chunk whose header has just been read. Byte channels are taken as signed: 128 and more come
/// out negative, unless the load is tolerant.
/// @return a new Color, a malloc block that the caller owns; null, with nothing read, if memory doesn't
/// suffice
VRK_API Color* read3dsColor();

#endif
