// Lights files, read into a group of two meshes and written back.

#include "fuzz/harness.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/ogroup.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    const std::string path = inputFile("SCENE.LIGHTS", data, size);
    OGroup group;
    group.addTList(new TList);
    for (const char* name : {"A", "B"})
        group.addMesh(makeMesh(name, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}));
    group.loadLights(path.c_str());
    group.applyLights();
    group.saveLights(path.c_str());
    return 0;
}
