// TGA images.

#include <cstdlib>

#include "fuzz/harness.h"
#include "fuzz/imagefile.h"
#include "vornik/assets/image.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    readImageFile("IMAGE.TGA", data, size);
    auto* block = static_cast<uint8_t*>(std::malloc(VRK_IMAGE_BLOCK));
    int width = 0, height = 0, bytesPerPixel = 0;
    loadTGA((inputFolder() + "IMAGE.TGA").c_str(), &block, &width, &height, &bytesPerPixel);
    std::free(block);
    return 0;
}
