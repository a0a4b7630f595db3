#pragma once

#include "animation/tracks.h"

class Object;
class OGroup;

/// What OGroup::doAnimation does, with a way to find tracks.
int applyAnimation(const OGroup& group, Object* object, Object* self, FindTracks find);
