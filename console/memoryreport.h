// What MEM tells.
#pragma once

#include "platform/memory.h"

class Console;

/// Appends two lines of sizes and one of the share in use.
void appendMemoryReport(Console* console, const MemoryFigures& figures);
