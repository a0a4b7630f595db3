// The operations on pixels: any size, kernel and scale.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz/harness.h"
#include "vornik/assets/texture.h"

static void operate(Texture* texture, FuzzedDataProvider* input)
{
    int kernel[9];
    switch (input->ConsumeIntegralInRange(0, 4))
    {
    case 0:
        texture->multiply();
        break;
    case 1:
        for (int& weight : kernel)
            weight = input->ConsumeIntegral<int>();
        texture->filter(kernel);
        break;
    case 2:
        texture->sharpenTexture();
        break;
    case 3:
        texture->scaleTexture(input->ConsumeFloatingPoint<float>());
        break;
    default:
        texture->updateTexture(input->ConsumeIntegral<int>());
        break;
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    FuzzedDataProvider input(data, size);
    Texture texture;
    texture.width = input.ConsumeIntegralInRange(0, 96);
    texture.height = input.ConsumeIntegralInRange(0, 96);
    texture.bitsPerTexel = input.ConsumeBool() ? 32 : 16;
    const auto bytes = static_cast<size_t>(texture.width) * static_cast<size_t>(texture.height) * 4;
    texture.pixels = static_cast<uint8_t*>(std::calloc(bytes + 1, 1));
    const int operations = input.ConsumeIntegralInRange(0, 8);
    const std::vector<uint8_t> pixels = input.ConsumeBytes<uint8_t>(bytes);
    if (!pixels.empty())
        std::memcpy(texture.pixels, pixels.data(), pixels.size());
    for (int i = 0; i < operations && texture.pixels; ++i)
        operate(&texture, &input);
    return 0;
}
