// A loose scene file: loaded with any flags, also a second and a third time into the same group, then used.
// The last three bytes of the input are the flags; a reader of the file finds them behind its end.

#include "fuzz/harness.h"
#include "fuzz/usescene.h"
#include "vornik/assets/load3ds.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"
#include "vornik/spatial/octree.h"

// Bits that the loads leave free.
enum
{
    behindAnother = 0x20000, // the scene has a group already
    insertAgain = 0x40000,
    loadAgain = 0x80000
};

// A host deletes the tree that a further load would replace.
static void deleteTree(OGroup* group)
{
    delete group->octree;
    group->octree = nullptr;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    int flags = 0;
    for (size_t i = 0; i < 3 && i < size; ++i)
        flags |= data[size - 1 - i] << (8 * i);
    const std::string file = inputFile("SCENE.3DS", data, size);
    const int loadFlags = flags & ~LOAD_FROM_PACK;
    const char* images = inputFolder().c_str();
    Scene scene;
    if (flags & behindAnother)
        scene.createOGroup(file.c_str(), LOAD_MESHES | LOAD_CAMERAS, images, 0, nullptr, nullptr);
    OGroup* group = scene.createOGroup(file.c_str(), loadFlags, images, flags >> 20, nullptr, nullptr);
    if (!group)
        return 0;
    if (flags & insertAgain)
    {
        deleteTree(group);
        scene.insertMesh(group, file.c_str(), loadFlags, images, nullptr);
    }
    if (flags & loadAgain)
    {
        deleteTree(group);
        group->load(file.c_str(), loadFlags, images);
        scene.camera = nullptr; // the group may have been cleared
        scene.setCamera(group, 0);
    }
    useScene(&scene, group);
    return 0;
}
