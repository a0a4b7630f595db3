#include "fuzz/imagefile.h"

#include "fuzz/harness.h"
#include "vornik/assets/texture.h"

void readImageFile(const char* name, const uint8_t* data, size_t size)
{
    startSilentEngine();
    inputFile(name, data, size);
    for (const bool substitutes : {false, true})
        for (const float scale : {1.0f, 0.5f})
        {
            Texture texture;
            texture.setBaseDir(inputFolder().c_str());
            texture.setFilename(name, 0);
            texture.acceptSubstitutes = substitutes;
            if (texture.extractNames() == 0 && texture.loadTexture(1, scale) == 0)
                texture.multiply();
            texture.uploadTexture(1);
        }
}
