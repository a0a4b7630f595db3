#include "platform/memory.h"

#include <windows.h>

MemoryFigures vrkPlatformMemory()
{
    MEMORYSTATUS status = {};
    status.dwLength = sizeof status;
    GlobalMemoryStatus(&status);
    MemoryFigures figures = {};
    figures.freePhysical = status.dwAvailPhys;
    figures.totalPhysical = status.dwTotalPhys;
    figures.freePage = status.dwAvailPageFile;
    figures.totalPage = status.dwTotalPageFile;
    figures.usedPercent = static_cast<int>(status.dwMemoryLoad);
    return figures;
}
