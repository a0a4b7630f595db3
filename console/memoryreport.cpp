#include "console/memoryreport.h"

#include <string>

#include "vornik/console/console.h"

static std::string kilobytes(uint64_t bytes)
{
    return std::to_string(bytes / 1024) + " Kbytes";
}

void appendMemoryReport(Console* console, const MemoryFigures& figures)
{
    const std::string pieces[] = {
        "Free memory available (phys/page): " + kilobytes(figures.freePhysical) + "  -  ",
        kilobytes(figures.freePage) + "\n",
        "Total memory (phys/page): " + kilobytes(figures.totalPhysical) + "  -  ",
        kilobytes(figures.totalPage) + "\n", "Memory usage : " + std::to_string(figures.usedPercent) + "%\n"};
    for (const std::string& piece : pieces)
        console->addText(piece.c_str());
}
