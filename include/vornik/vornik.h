#ifndef VORNIK_VORNIK_H
#define VORNIK_VORNIK_H

// Everything that Vornik exports, subsystem by subsystem.

#include "vornik/animation.h"
#include "vornik/assets.h"
#include "vornik/console.h"
#include "vornik/core.h"
#include "vornik/lighting.h"
#include "vornik/particles.h"
#include "vornik/rasterizer.h"
#include "vornik/scene.h"
#include "vornik/spatial.h"

#endif
