#ifndef VORNIK_CORE_MEMORY_H
#define VORNIK_CORE_MEMORY_H

#include "vornik/export.h"

/// Frees the malloc block that a pointer variable holds, if any, and clears the variable.
/// @param block  address of any pointer variable, cast to char**
VRK_API void vrkFree(char** block);

#endif
