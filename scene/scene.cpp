// The groups that a host holds, and the camera through which all of them are drawn.

#include "vornik/scene/scene.h"

#include <algorithm>
#include <iterator>
#include <new>

#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/textures.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

SceneParams::SceneParams()
    : params0(0), params1(0), params2(15), params3(0), params4(0), params5(0), params6(0), params7(0),
      params8(0), switch0(0), switch1(0), switch2(0), switch3(0), switch4(1), switch5(1), switch6(1),
      unused(0)
{
}

Scene::Scene() : groupCount(0), groups(), camera(nullptr), parameters(new (std::nothrow) SceneParams) {}

Scene::~Scene()
{
    OGroup** end = groups + groupCount;
    for (OGroup** slot = groups; slot < end; slot++)
    {
        OGroup* group = *slot;
        // A group that stands in two slots goes once.
        std::replace(slot, end, group, static_cast<OGroup*>(nullptr));
        delete group;
    }
    delete parameters;
}

int Scene::setParameters(const SceneParams* values)
{
    if (parameters && values)
        *parameters = *values;
    return 0;
}

SceneParams* Scene::getParameters()
{
    return parameters;
}

int Scene::deleteOGroup(OGroup* group)
{
    int slot = getOGID(group);
    if (slot < 0)
        return vrkPutToErrorLog("ObjectGroup not found in OGroupList! OGroup not deleted!", 20);

    std::copy(groups + slot + 1, groups + groupCount, groups + slot);
    groups[--groupCount] = nullptr;

    for (int i = 0; i < group->cameraCount; i++)
        if (group->cameras[i] == camera)
            camera = nullptr;

    // A group that was listed twice lives on in its other slot.
    if (getOGID(group) < 0)
        delete group;
    return 0;
}

int Scene::getOGID(OGroup* group)
{
    int slot = -1;
    for (int i = 0; group && i < groupCount; i++)
        if (groups[i] == group)
            slot = i;
    return slot;
}

int Scene::setCamera(OGroup* group, int cameraIndex)
{
    if (!group || cameraIndex < 0 || cameraIndex >= std::min<int>(group->cameraCount, maxCameras) ||
        !group->cameras[cameraIndex])
        return vrkPutToErrorLog("Camera cannot be found!", 27);
    camera = group->cameras[cameraIndex];
    vrkSetFOV(camera);
    return 0;
}

static void drawOnce(const Texture* texture)
{
    D3DRasterizer* d3d = selectedDirect3D();
    if (!d3d || !texture)
        return;
    static const D3DScreenVertex quad[] = {{0.0f, 64.0f, 1.0f, 1.0f, 0xFFFFFFFF, 0, 0.0f, 1.0f},
                                           {0.0f, 0.0f, 1.0f, 1.0f, 0xFFFFFFFF, 0, 0.0f, 0.0f},
                                           {64.0f, 64.0f, 1.0f, 1.0f, 0xFFFFFFFF, 0, 1.0f, 1.0f},
                                           {64.0f, 0.0f, 1.0f, 1.0f, 0xFFFFFFFF, 0, 1.0f, 0.0f}};
    const int frames = std::min<int>(texture->frameCount, int(std::size(texture->textureIDs)));
    for (int frame = 0; frame < frames; frame++)
    {
        d3d->setTexture(textureSurface(static_cast<uint32_t>(texture->textureIDs[frame])));
        d3d->drawStrip(quad);
    }
}

void Scene::prepareMaterialsForDX()
{
    vrkClear();
    vrkDXBeginScene();
    for (int g = 0; g < groupCount; g++)
        for (int t = 0; groups[g] && t < groups[g]->tlistCount; t++)
            if (const TList* list = groups[g]->tlists[t])
                for (const Material* material = list->first; material; material = material->next)
                    drawOnce(material->firstTexture);
    vrkDXEndScene();
    vrkSwapBuffers();
}

int Scene::render(int flags)
{
    vrkInitMatrix();
    vrkLookWithCamera(camera);
    for (int i = 0; i < groupCount; i++)
        if (groups[i])
            groups[i]->render(flags, camera);
    return 0;
}

int Scene::render(int groupId, int flags)
{
    vrkInitMatrix();
    vrkLookWithCamera(camera);
    if (groupId >= 0 && groupId < int(sizeof(groups) / sizeof(groups[0])) && groups[groupId])
        groups[groupId]->render(flags, camera);
    return 0;
}
