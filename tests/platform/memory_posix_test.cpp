#include "platform/memory.h"

#include <gtest/gtest.h>

#include <unistd.h>

TEST(Memory, FiguresAgreeWithTheSystem)
{
    const MemoryFigures figures = vrkPlatformMemory();
    const auto pages = static_cast<uint64_t>(sysconf(_SC_PHYS_PAGES));
    EXPECT_EQ(figures.totalPhysical, pages * static_cast<uint64_t>(sysconf(_SC_PAGESIZE)));
    EXPECT_GT(figures.freePhysical, 0u);
    EXPECT_LE(figures.freePhysical, figures.totalPhysical);
    EXPECT_LE(figures.freePage, figures.totalPage);
    EXPECT_EQ(figures.usedPercent,
              static_cast<int>((figures.totalPhysical - figures.freePhysical) * 100 / figures.totalPhysical));
}
