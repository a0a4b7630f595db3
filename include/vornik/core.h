#ifndef VORNIK_CORE_H
#define VORNIK_CORE_H

// Value records, vector and matrix arithmetic, the engine's string, the error log.

#include "vornik/core/errorlog.h"
#include "vornik/core/matrices.h"
#include "vornik/core/memory.h"
#include "vornik/core/string.h"
#include "vornik/core/vectors.h"

#endif
