#ifndef VORNIK_LIGHTING_H
#define VORNIK_LIGHTING_H

// Light that is traced once and kept per vertex.

#include "vornik/lighting/vertexlight.h"

#endif
