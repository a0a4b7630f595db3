// Lists of image names, with the images that they name.

#include "fuzz/harness.h"
#include "vornik/assets/image.h"
#include "vornik/assets/texture.h"
#include "vornik/core/string.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    const std::string path = inputFile("LIST.IFL", data, size);
    String lines[64];
    readImageList(path.c_str(), lines);
    Texture texture;
    texture.setBaseDir(inputFolder().c_str());
    texture.setFilename("LIST.IFL", 0);
    texture.acceptSubstitutes = size % 2 == 1;
    if (texture.extractNames() == 0)
        for (int frame = 1; frame <= texture.frameCount; ++frame)
            if (texture.loadTexture(frame, 1.0f) == 0)
                texture.uploadTexture(frame);
    return 0;
}
