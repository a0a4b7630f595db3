#ifndef VORNIK_ASSETS_H
#define VORNIK_ASSETS_H

// Everything that reads a file into the scene model.

#include "vornik/assets/image.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/loader.h"
#include "vornik/assets/pack.h"
#include "vornik/assets/read3dskeyframer.h"
#include "vornik/assets/read3dsmaterial.h"
#include "vornik/assets/read3dsobject.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"

#endif
