// Where scenes and groups are filled from files.

#include <new>

#include "vornik/assets/load3ds.h"
#include "vornik/core/errorlog.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

// The list closes its gap at every deletion while the walk moves on, so that every second group stays.
static void deleteEverySecondGroup(Scene* scene)
{
    const int count = scene->groupCount;
    for (int i = 0; i < count; i++)
    {
        if (scene->groups[i])
            scene->deleteOGroup(scene->groups[i]);
    }
}

OGroup* Scene::createOGroup(const char* file, int flags, const char* materialDirectory, int lightFlags,
                            void (*progress)(float), const char* packFile)
{
    if (flags & LOAD_CLEAR)
        deleteEverySecondGroup(this);
    if (groupCount >= 256)
        return nullptr;
    auto* group = new (std::nothrow) OGroup;
    if (!group)
        return nullptr;
    groups[groupCount++] = group;
    if (load3ds(file, group, materialDirectory, flags, progress, packFile) != 0)
    {
        deleteOGroup(group);
        return nullptr;
    }

    if (!camera)
        setCamera(group, 0);
    if (flags & LOAD_LIGHTING)
        group->calcDynamicLights(lightFlags);

    // These draw nothing, as there is no camera; on rasterizer 1 they build each visible mesh's own form.
    group->render(0x2420, nullptr);
    group->render(0x12400, nullptr);
    return group;
}

static int noSuchGroup()
{
    return vrkPutToErrorLog("ObjectGroup not found in OGroupList! OGroup not deleted!", 20);
}

int Scene::insertMesh(int groupId, const char* file, int flags, const char* materialDirectory,
                      const char* packFile)
{
    if (groupId < 0 || groupId >= groupCount || !groups[groupId])
        return noSuchGroup();
    return load3ds(file, groups[groupId], materialDirectory, flags, nullptr, packFile);
}

int Scene::insertMesh(OGroup* group, const char* file, int flags, const char* materialDirectory,
                      const char* packFile)
{
    if (getOGID(group) == -1)
        return noSuchGroup();
    return load3ds(file, group, materialDirectory, flags, nullptr, packFile);
}

int OGroup::load(const char* file, int flags, const char* materialDirectory)
{
    if (flags & LOAD_CLEAR)
        clear();
    load3ds(file, this, materialDirectory, flags, nullptr, nullptr);
    return 0;
}
