#include "assets/objectnames.h"

#include <map>
#include <string>

#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

namespace
{

// The first object of each name in one list, which is read on where it was left.
template <class T>
class NamedList
{
public:
    T* find(T* const* slots, int count, const std::string& name)
    {
        note(slots, count);
        const auto found = first.find(name);
        if (found == first.end())
            return nullptr;
        // A host that is told of the progress may take objects out of the group.
        if (isStill(slots, count, found->second, name))
            return slots[found->second];
        first.clear();
        noted = 0;
        note(slots, count);
        const auto again = first.find(name);
        return again == first.end() ? nullptr : slots[again->second];
    }

private:
    void note(T* const* slots, int count)
    {
        for (; noted < count; ++noted)
            if (slots[noted] && slots[noted]->name)
                first.emplace(slots[noted]->name, noted);
    }
    static bool isStill(T* const* slots, int count, int slot, const std::string& name)
    {
        return slot < count && slots[slot] && slots[slot]->name && name == slots[slot]->name;
    }

    std::map<std::string, int> first; // slots; sorted, since a file may choose names of one hash
    int noted = 0;
};

struct ObjectNames
{
    const OGroup* group = nullptr;
    NamedList<Mesh> meshes = {};
    NamedList<Light> lights = {};
    NamedList<Camera> cameras = {};
};

} // namespace

static ObjectNames names;

void beginObjectNames(OGroup* group)
{
    endObjectNames();
    names.group = group;
}

void endObjectNames()
{
    if (names.group)
        names = {};
}

Object* findNamedObject(OGroup* group, const char* name)
{
    if (group != names.group)
        return group->findObject(name);
    if (Mesh* mesh = names.meshes.find(group->meshes, group->meshCount, name))
        return mesh;
    if (Light* light = names.lights.find(group->lights, group->lightCount, name))
        return light;
    return names.cameras.find(group->cameras, group->cameraCount, name);
}
