// How much memory the system has.
#pragma once

#include <cstdint>

/// Bytes; what the system doesn't tell is 0.
struct MemoryFigures
{
    uint64_t freePhysical; ///< can be had without swapping
    uint64_t totalPhysical;
    uint64_t freePage; ///< of the page file or the swap space
    uint64_t totalPage;
    int usedPercent; ///< of the physical memory, cut
};

MemoryFigures vrkPlatformMemory();
