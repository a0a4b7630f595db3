#ifndef VORNIK_SPATIAL_H
#define VORNIK_SPATIAL_H

// Questions that a host asks of the geometry.

#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

#endif
