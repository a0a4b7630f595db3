#ifndef VORNIK_SCENE_H
#define VORNIK_SCENE_H

// The objects that a host holds and their drawing.

#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/scene/scene.h"

#endif
