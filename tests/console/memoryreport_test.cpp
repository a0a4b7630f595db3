#include "console/memoryreport.h"

#include <gtest/gtest.h>

#include <vector>

#include "vornik/console/console.h"

TEST(MemoryReport, TellsFiveFiguresInWholeKilobytes)
{
    MemoryFigures figures = {};
    figures.freePhysical = 5 * 1024 + 1023;
    figures.freePage = 6 * 1024 + 512;
    figures.totalPhysical = 7 * 1024;
    figures.totalPage = 8ull * 1024 * 1024 * 1024 + 1;
    figures.usedPercent = 42;
    Console console;
    std::vector<char> text(VRK_CONSOLE_TEXT);
    console.getText(text.data());
    appendMemoryReport(&console, figures);
    console.getText(text.data());
    EXPECT_STREQ(text.data(), "Free memory available (phys/page): 5 Kbytes  -  6 Kbytes\n"
                              "Total memory (phys/page): 7 Kbytes  -  8388608 Kbytes\n"
                              "Memory usage : 42%\n");
}
