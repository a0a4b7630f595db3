// assimp's .3DS importer. It computes smooth normals in any case; corners are its vertices unless asked to
// join those that are alike.

#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <assimp/Importer.hpp>

#include "bench/peers/loads.h"
#include "bench/peers/timing.h"

static Loaded load(const char* file, unsigned int steps)
{
    const double begin = processorSeconds();
    Assimp::Importer importer;
    const aiScene* const scene = importer.ReadFile(file, steps);
    Loaded loaded = {processorSeconds() - begin, 0};
    for (unsigned int i = 0; scene && i < scene->mNumMeshes; ++i)
        loaded.triangles += scene->mMeshes[i]->mNumFaces;
    return loaded;
}

Loaded loadWithAssimp(const char* file)
{
    return load(file, 0);
}

Loaded loadWithAssimpDone(const char* file)
{
    return load(file, aiProcess_JoinIdenticalVertices);
}
