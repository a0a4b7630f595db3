#include "platform/memory.h"

#include <gtest/gtest.h>
#include <windows.h>

TEST(Memory, FiguresAgreeWithTheSystem)
{
    const MemoryFigures figures = vrkPlatformMemory();
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    ASSERT_TRUE(GlobalMemoryStatusEx(&status));
    EXPECT_EQ(figures.totalPhysical, status.ullTotalPhys);
    EXPECT_GT(figures.freePhysical, 0u);
    EXPECT_LE(figures.freePhysical, figures.totalPhysical);
    EXPECT_EQ(figures.totalPage, status.ullTotalPageFile);
    EXPECT_LE(figures.freePage, figures.totalPage);
    EXPECT_NEAR(figures.usedPercent, static_cast<int>(status.dwMemoryLoad), 5);
}
