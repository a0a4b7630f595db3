#ifndef VORNIK_EXPORT_H
#define VORNIK_EXPORT_H

// Where VRK_API comes from, which marks what the shared library exports.

#include "vornik/platform.h"

#endif
