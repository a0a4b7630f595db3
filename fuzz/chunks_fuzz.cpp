// The chunk reader: a sequence of its calls on a block of any content.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <vector>

#include "fuzz/harness.h"
#include "vornik/assets/loader.h"

static void call(Loader* loader, int operation)
{
    char text[64];
    std::vector<char> longText(static_cast<size_t>(loader->size) + 16);
    switch (operation)
    {
    case 0:
        loader->getFloat();
        break;
    case 1:
        loader->getInt();
        break;
    case 2:
        loader->getShort();
        break;
    case 3:
        loader->getChar();
        break;
    case 4:
        loader->getString(longText.data());
        break;
    case 5:
        loader->getString(text, sizeof text);
        break;
    case 6:
        loader->getString(text, 1);
        break;
    case 7:
        loader->getChunkID();
        break;
    case 8:
        loader->finishCurrentChunk();
        break;
    case 9:
        loader->checkFormat();
        break;
    case 10:
        loader->skipChunk();
        break;
    case 11:
        loader->toStart();
        break;
    default:
        loader->copyFloat(text, sizeof text / sizeof(float));
        break;
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    FuzzedDataProvider input(data, size);
    const std::vector<int> operations = [&]
    {
        std::vector<int> made(input.ConsumeIntegralInRange<size_t>(0, 256));
        for (int& operation : made)
            operation = input.ConsumeIntegralInRange(0, 12);
        return made;
    }();
    const std::vector<char> bytes = input.ConsumeRemainingBytes<char>();
    std::vector<char> block(bytes.size() + VRK_LOADER_PADDING, 0);
    if (!bytes.empty())
        std::memcpy(block.data(), bytes.data(), bytes.size());

    Loader loader;
    loader.initData(block.data(), static_cast<int>(bytes.size()));
    for (const int operation : operations)
        call(&loader, operation);
    return 0;
}
