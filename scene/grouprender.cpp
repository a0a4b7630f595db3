// Drawing a group: one walk over the meshes, each with its matrix and all passes that the flags select.

#include <algorithm>

#include "scene/statictransform.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"

static void drawMesh(Mesh* mesh, int flags, TList* list)
{
    vrkPushMatrix();
    applyStaticTransform(*mesh);
    // Mesh::render asks whether the mesh is visible.
    mesh->render(flags, list);
    vrkPopMatrix();
}

int OGroup::render(int flags, Camera* camera)
{
    // Without a camera nothing is drawn, yet every mesh still goes through its matrix and Mesh::render.
    if (!camera)
        flags = 0;

    for (int i = 0; i < meshCount; i++)
    {
        Mesh* mesh = meshes[i];
        if (!mesh)
            continue;
        // The camera's heading, about the world's z axis. It stays in the mesh.
        if (mesh->billboard && camera)
            mesh->rotation.z = camera->rotation.x;
        drawMesh(mesh, flags, activeTList);
    }
    return 0;
}

int OGroup::renderObject(Object* object, int flags)
{
    if (!object)
        return vrkPutToErrorLog("Object is NULL, cannot use this!", 38);

    Mesh** end = meshes + meshCount;
    Mesh** slot = std::find_if(meshes, end, [object](const Mesh* mesh) { return mesh == object; });
    if (slot == end)
        return vrkPutToErrorLog("Object not found from OGroup given!", 39);
    drawMesh(*slot, flags, activeTList);

    // Frame frameCount itself is shown once before the wrap.
    if (animated && !(flags & VRK_RENDER_NO_ANIMATION))
        currentFrame = currentFrame >= frameCount ? 0 : currentFrame + 1;
    return 0;
}
