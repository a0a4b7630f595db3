// A loose scene file: loaded with any flags, then used. The last three bytes of the input are the load flags;
// a reader of the file finds them behind its end.

#include "fuzz/harness.h"
#include "fuzz/usescene.h"
#include "vornik/assets/load3ds.h"
#include "vornik/scene/scene.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    int flags = 0;
    for (size_t i = 0; i < 3 && i < size; ++i)
        flags |= data[size - 1 - i] << (8 * i);
    const std::string file = inputFile("SCENE.3DS", data, size);
    Scene scene;
    OGroup* group = scene.createOGroup(file.c_str(), flags & ~LOAD_FROM_PACK, inputFolder().c_str(),
                                       flags >> 20, nullptr, nullptr);
    if (group)
        useScene(&scene, group);
    return 0;
}
