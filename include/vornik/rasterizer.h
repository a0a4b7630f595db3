#ifndef VORNIK_RASTERIZER_H
#define VORNIK_RASTERIZER_H

// Start-up, rasterizer selection and every call that touches a graphics library.

#include "vornik/rasterizer/faces.h"
#include "vornik/rasterizer/fog.h"
#include "vornik/rasterizer/font.h"
#include "vornik/rasterizer/frustum.h"
#include "vornik/rasterizer/overlay.h"
#include "vornik/rasterizer/screenshot.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/rasterizer/transparent.h"

#endif
