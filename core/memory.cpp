#include "vornik/core/memory.h"

#include <cstdlib>

void vrkFree(char** block)
{
    std::free(*block);
    *block = nullptr;
}
