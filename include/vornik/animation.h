#ifndef VORNIK_ANIMATION_H
#define VORNIK_ANIMATION_H

// Keyframe tracks. What plays them are operations of OGroup (vornik/scene/ogroup.h).

#include "vornik/animation/path.h"

#endif
