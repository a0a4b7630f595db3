#include "platform/memory.h"

#include <cinttypes>
#include <cstdio>
#include <sys/sysinfo.h>

// Memory that can be had, caches that would be given up counted in; 0 where the system doesn't tell.
static uint64_t availableMemory()
{
    std::FILE* file = std::fopen("/proc/meminfo", "r");
    if (!file)
        return 0;
    uint64_t kilobytes = 0;
    char line[256];
    while (std::fgets(line, sizeof line, file))
        if (std::sscanf(line, "MemAvailable: %" SCNu64 " kB", &kilobytes) == 1)
            break;
    std::fclose(file);
    return kilobytes * 1024;
}

MemoryFigures vrkPlatformMemory()
{
    MemoryFigures figures = {};
    struct sysinfo system;
    if (sysinfo(&system) != 0)
        return figures;
    const uint64_t unit = system.mem_unit;
    figures.totalPhysical = system.totalram * unit;
    figures.freePhysical = availableMemory();
    if (figures.freePhysical == 0 || figures.freePhysical > figures.totalPhysical)
        figures.freePhysical = system.freeram * unit;
    figures.totalPage = system.totalswap * unit;
    figures.freePage = system.freeswap * unit;
    if (figures.totalPhysical > 0)
        figures.usedPercent =
            static_cast<int>((figures.totalPhysical - figures.freePhysical) * 100 / figures.totalPhysical);
    return figures;
}
