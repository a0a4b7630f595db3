#ifndef VORNIK_ASSETS_READ3DSOBJECT_H
#define VORNIK_ASSETS_READ3DSOBJECT_H

#include "vornik/export.h"

class OGroup;

/// Reads one object chunk (0x4000) at the cursor of vrkLoader: a mesh, a light or a camera, added to the
/// group if the flags ask for its kind.
/// @param length  of the chunk, its header included, which has been read
/// @param flags   LOAD_... bits
VRK_API void read3dsObject(int length, OGroup* group, int flags);

#endif
