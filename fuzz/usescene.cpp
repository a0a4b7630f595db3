#include "fuzz/usescene.h"

#include <cstdint>
#include <initializer_list>

#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/scene/scene.h"
#include "vornik/spatial/queries.h"

static void draw(Scene* scene, OGroup* group)
{
    for (const int frame : {0, 1, -3, 70000})
    {
        group->setCurrentFrame(frame);
        scene->render(VRK_RENDER_SOLID | VRK_RENDER_ANIMATE_TEXTURES | VRK_RENDER_ANIMATE_CAMERA);
        scene->render(VRK_RENDER_TRANSPARENT | VRK_RENDER_CULL);
        scene->render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_EFFECT | VRK_RENDER_WIRE);
    }
}

// Trees of very many faces would leave no time for the rest: the target octree has the time for them.
static bool isLarge(const OGroup& group)
{
    int64_t faces = 0;
    for (int i = 0; i < group.meshCount; ++i)
        faces += group.meshes[i]->faceCount;
    return faces > 8192;
}

static void ask(OGroup* group)
{
    if (!group->octree)
    {
        if (isLarge(*group))
            return;
        group->constructOctree();
    }
    Vertex3D from = {0, 0, 10}, to = {3, 2, -10}, normal = {0, 0, 0};
    if (group->meshCount > 0 && group->meshes[0]->vertexCount > 0)
        to = group->meshes[0]->calculatedVertex(0);
    vrkRaySceneDistance(&from, &to, group);
    vrkRayScene(&from, &to, 100, group);
    vrkCheckHeight(&from, &to, group);
    vrkCheckHeight2(&from, &to, group);
    vrkCheckNegativeHeight(&from, &to, group);
    Vertex3D moved = to;
    vrkCheckCollision(&moved, &from, 1, group, true, &normal, 3);
}

void useScene(Scene* scene, OGroup* group)
{
    draw(scene, group);
    for (int i = 0; i < group->meshCount; ++i)
        group->transformVertices(group->meshes[i]);
    ask(group);
    if (group->lightCount > 0)
    {
        group->calcDynamicLight(group->lights[0], 0);
        group->applyLights();
    }
    if (group->meshCount > 0)
        group->adjustSize(group->meshes[0], 2);
}
