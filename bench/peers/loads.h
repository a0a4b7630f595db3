// A library beside the engine: the same file, read into its own scene.
#pragma once

#include <cstddef>

struct Loaded
{
    double seconds;   ///< processor time of the load alone, without the release behind it
    size_t triangles; ///< 0 if the file didn't load
};

/// Each loads, counts and releases. What a library keeps between loads it has to drop.
using LoadFile = Loaded (*)(const char* file);
Loaded loadWithIrrlicht(const char* file);
Loaded loadWithAssimp(const char* file);
Loaded loadWithAssimpDone(const char* file); ///< with identical corners joined
Loaded loadWithLib3ds(const char* file);
Loaded loadWithOpenSceneGraph(const char* file);
