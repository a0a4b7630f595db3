// A library beside the engine: the same triangles, asked the same questions.
//
// Each library has a source of its own. Those that were not there to build with are left out, and the
// programs say so.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "bench/tiledscene.h"
#include "vornik/scene/mesh.h"

struct Corners
{
    Vertex3D a, b, c;
};

struct Peer
{
    std::string name;
    double buildSeconds;
    std::function<bool(const Ray&)> nearest; ///< is the nearest hit within the ray's length?
    std::function<bool(const Ray&)> any;     ///< any hit; null where a library has no search that stops early
    std::function<bool(const Ray&, float radius)>
        move; ///< does a sphere meet anything? null without such a call
};

// The peers that were built in; prints a line for each that wasn't.
std::vector<Peer> makePeers(const std::vector<Corners>& triangles);

Peer makeIrrlicht(const std::vector<Corners>& triangles);
Peer makeEmbree(const std::vector<Corners>& triangles);
Peer makeBullet(const std::vector<Corners>& triangles);
Peer makeOpenSceneGraph(const std::vector<Corners>& triangles);

std::vector<Corners> trianglesOf(OGroup* group);
