// Puts the shared chunk cursor on bytes of a test.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "vornik/assets/loader.h"

/// Holds a block, with the padding that vrkLoader needs, and starts vrkLoader on it.
class LoaderBlock
{
public:
    explicit LoaderBlock(std::vector<uint8_t> content) : bytes(std::move(content))
    {
        const auto size = static_cast<int>(bytes.size());
        bytes.resize(bytes.size() + VRK_LOADER_PADDING);
        vrkLoader.initData(reinterpret_cast<char*>(bytes.data()), size);
    }
    LoaderBlock(const LoaderBlock&) = delete;
    LoaderBlock& operator=(const LoaderBlock&) = delete;
    ~LoaderBlock() { vrkLoader = Loader(); }

    /// Reads a chunk header. @return the chunk's length
    int enter()
    {
        vrkLoader.getChunkID();
        return static_cast<int>(vrkLoader.chunkLength);
    }

    /// Bytes in front of the cursor.
    size_t offset() const { return static_cast<size_t>(vrkLoader.current - bytes.data()); }

private:
    std::vector<uint8_t> bytes;
};
