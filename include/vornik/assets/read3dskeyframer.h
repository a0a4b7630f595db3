#ifndef VORNIK_ASSETS_READ3DSKEYFRAMER_H
#define VORNIK_ASSETS_READ3DSKEYFRAMER_H

#include "vornik/export.h"

class OGroup;
class PathList;

/// Reads the keyframer chunk (0xB000) at the cursor of vrkLoader: tracks, pivots, node numbers and the
/// frames. Objects are found by name, so they must be in the group.
/// @param length  of the chunk, its header included, which has been read
/// @param paths   takes the tracks
/// @return 0; 37 for a node that names no object, logged. The tolerant reading has no such failure
VRK_API int read3dsKeyframer(int length, OGroup* group, PathList* paths);

#endif
