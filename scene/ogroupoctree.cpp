// The octree of a group, and the size of its world.

#include <cmath>
#include <initializer_list>
#include <new>

#include "core/facecorners.h"
#include "rasterizer/d3d/d3dmesh.h"
#include "vornik/animation/path.h"
#include "vornik/core/errorlog.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/spatial/octree.h"

int OGroup::constructOctree()
{
    if (meshCount == 0)
        return vrkPutToErrorLog("Cannot create octree for OGroup! Possible memory leak or OGroup is NULL!",
                                44);
    // A tree that is there already is the host's now.
    octree = new (std::nothrow) octreeNode;
    if (!octree)
        return 0;
    for (int i = 0; i < meshCount; i++)
        for (int face = 0; meshes[i] && meshes[i]->visible && face < meshes[i]->faceCount; face++)
            octree->insert(meshes[i], face, true);
    octree->adjustSize();
    octree->split(5, 5, nullptr);
    octree->makePlanes(0.001f);
    return 0;
}

// The largest difference in one coordinate between two corners of one face.
static float largestSide(const Mesh& mesh)
{
    float largest = 0.0f;
    const auto compare = [&](const Vertex3D& a, const Vertex3D& b)
    {
        for (const float difference : {a.x - b.x, a.y - b.y, a.z - b.z})
            if (std::fabs(difference) > largest)
                largest = std::fabs(difference);
    };
    for (int i = 0; mesh.faces && mesh.calculatedVertices && i < mesh.faceCount; i++)
    {
        const Facelist& face = mesh.faces[i];
        if (!hasCorners(face, mesh.vertexCount))
            continue;
        const Vertex3D* v = mesh.calculatedVertices;
        compare(v[face.a], v[face.b]);
        compare(v[face.b], v[face.c]);
        compare(v[face.c], v[face.a]);
    }
    return largest;
}

static void scaleMesh(Mesh* mesh, float scale)
{
    releaseD3DMesh(mesh->d3dMesh);
    for (int i = 0; mesh->calculatedVertices && i < mesh->vertexCount; i++)
        mesh->calculatedVertices[i] *= scale;
    mesh->position *= scale;
    mesh->pivot *= scale;
    mesh->radius *= scale;
}

static void scalePaths(PathList* list, float scale)
{
    for (int i = 0; i < list->pathCount && i < VRK_PATH_CAPACITY; i++)
    {
        VRKPath* path = list->paths[i];
        for (int k = 0; path && path->kind == VRK_TRACK_POSITION && k < path->keyCount; k++)
            for (float& coordinate : path->keys[k].position)
                coordinate *= scale;
    }
    for (int i = 0; list->pivots && i < list->pivotCount; i++)
        list->pivots[i].pivot *= scale;
}

void OGroup::adjustSize(Mesh* reference, float size)
{
    if (!reference)
        return;
    reference->visible = 0;
    const float scale = size / largestSide(*reference);
    // Without an extent there is no measure.
    if (!std::isfinite(scale))
        return;
    for (int i = 0; i < meshCount; i++)
        if (meshes[i])
            scaleMesh(meshes[i], scale);
    for (int i = 0; i < pathListCount; i++)
        if (pathLists[i])
            scalePaths(pathLists[i], scale);
    for (int i = 0; i < lightCount; i++)
        if (lights[i])
            lights[i]->location *= scale;
    for (int i = 0; i < cameraCount; i++)
        if (cameras[i])
            cameras[i]->eye *= scale;
    delete octree;
    octree = nullptr;
    constructOctree();
    // Without a camera nothing is drawn; rasterizers with meshes of their own make them anew.
    render(VRK_RENDER_BASIC | VRK_RENDER_COMPILE_LIST | VRK_RENDER_SOLID, nullptr);
    render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_BASIC | VRK_RENDER_COMPILE_LIST, nullptr);
}
