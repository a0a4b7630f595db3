// A pack with a scene and its images: the input is the whole pack, the scene its member SCENE.3DS. The last
// three bytes are the load flags.

#include "fuzz/harness.h"
#include "fuzz/usescene.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/pack.h"
#include "vornik/scene/scene.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    int flags = LOAD_FROM_PACK;
    for (size_t i = 0; i < 3 && i < size; ++i)
        flags |= data[size - 1 - i] << (8 * i);
    const std::string pack = inputFile("SCENES.PAK", data, size);
    Scene scene;
    OGroup* group = scene.createOGroup("SCENE.3DS", flags, "", flags >> 20, nullptr, pack.c_str());
    if (group)
        useScene(&scene, group);
    packClose();
    return 0;
}
