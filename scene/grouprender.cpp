// Drawing a group: one walk over the meshes, each with its matrix and all passes that the flags select.

#include <algorithm>

#include "animation/ogroupanimation.h"
#include "scene/materialtable.h"
#include "scene/statictransform.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/frustum.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"

static void drawMesh(const OGroup& group, Mesh* mesh, int flags, bool animated, FindTracks find)
{
    vrkPushMatrix();
    if (animated)
        applyAnimation(group, mesh, mesh, find);
    else
        applyStaticTransform(*mesh);
    // Mesh::render asks whether the mesh is visible.
    mesh->render(flags, group.activeTList);
    vrkPopMatrix();
}

int OGroup::render(int flags, Camera* camera)
{
    // Without a camera nothing is drawn, yet every mesh still goes through its matrix and Mesh::render.
    if (!camera)
        flags = 0;
    if (flags & VRK_RENDER_ANIMATE_CAMERA)
    {
        doCameraAnim(camera);
        vrkInitMatrix();
        vrkLookWithCamera(camera);
    }
    Frustrum frustrum;
    if (flags & VRK_RENDER_CULL)
        vrkMakeFrustrum(camera, &frustrum);
    if (flags & VRK_RENDER_ANIMATE_TEXTURES)
        animateTextures();
    if (animated && activePathList)
        noteTracks(*activePathList);
    const NotedMaterials materials(activeTList);

    for (int i = 0; i < meshCount; i++)
    {
        Mesh* mesh = meshes[i];
        if (!mesh)
            continue;
        // By the static place of the mesh, wherever its tracks put it.
        if (flags & VRK_RENDER_CULL && !vrkIsObjectInFrustrum(&frustrum, mesh))
            continue;
        // The camera's heading, about the world's z axis. It stays in the mesh.
        if (mesh->billboard && camera)
            mesh->rotation.z = camera->rotation.x;
        drawMesh(*this, mesh, flags, animated, findNotedTracks);
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
    if (flags & VRK_RENDER_ANIMATE_TEXTURES)
        animateTextures();
    const NotedMaterials materials(activeTList);
    const bool plays = animated && !(flags & VRK_RENDER_NO_ANIMATION);
    drawMesh(*this, *slot, flags, plays, findTracks);

    // Frame frameCount itself is shown once before the wrap.
    if (plays)
        currentFrame = currentFrame >= frameCount ? 0 : currentFrame + 1;
    return 0;
}
