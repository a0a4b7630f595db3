#include "bench/peers/peer.h"

#include <cstdio>

std::vector<Corners> trianglesOf(OGroup* group)
{
    std::vector<Corners> all;
    for (int i = 0; i < group->meshCount; ++i)
        for (int face = 0; face < group->meshes[i]->faceCount; ++face)
        {
            const Mesh& mesh = *group->meshes[i];
            const Facelist& f = mesh.faces[face];
            all.push_back(
                {mesh.calculatedVertices[f.a], mesh.calculatedVertices[f.b], mesh.calculatedVertices[f.c]});
        }
    return all;
}

std::vector<Peer> makePeers([[maybe_unused]] const std::vector<Corners>& triangles)
{
    std::vector<Peer> peers;
#ifdef HAS_IRRLICHT
    peers.push_back(makeIrrlicht(triangles));
#else
    std::puts("Irrlicht was not there to build with (libirrlicht-dev)");
#endif
#ifdef HAS_EMBREE
    peers.push_back(makeEmbree(triangles));
#else
    std::puts("Embree was not there to build with (libembree-dev)");
#endif
#ifdef HAS_BULLET
    peers.push_back(makeBullet(triangles));
#else
    std::puts("Bullet was not there to build with (libbullet-dev)");
#endif
#ifdef HAS_OPENSCENEGRAPH
    peers.push_back(makeOpenSceneGraph(triangles));
#else
    std::puts("OpenSceneGraph was not there to build with (libopenscenegraph-dev)");
#endif
    return peers;
}
