// Irrlicht's .3DS loader, on the driver that draws nothing. It computes normals, one for each corner.

#include <irrlicht/irrlicht.h>

#include "bench/peers/loads.h"
#include "bench/peers/timing.h"

using namespace irr;

static scene::ISceneManager* manager()
{
    static IrrlichtDevice* const device = []
    {
        SIrrlichtCreationParameters parameters;
        parameters.DriverType = video::EDT_NULL;
        parameters.LoggingLevel = ELL_NONE;
        return createDeviceEx(parameters);
    }();
    return device->getSceneManager();
}

Loaded loadWithIrrlicht(const char* file)
{
    scene::ISceneManager* const scenes = manager();
    const double begin = processorSeconds();
    scene::IAnimatedMesh* const mesh = scenes->getMesh(file);
    Loaded loaded = {processorSeconds() - begin, 0};
    for (u32 i = 0; mesh && i < mesh->getMesh(0)->getMeshBufferCount(); ++i)
        loaded.triangles += mesh->getMesh(0)->getMeshBuffer(i)->getIndexCount() / 3;
    scenes->getMeshCache()->clear();
    return loaded;
}
