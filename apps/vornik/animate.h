// Putting a group at a moment of its animation.
#pragma once

#include "vornik/vornik.h"

/// Moves objects to a frame of their tracks, and textures that have frames to one of theirs.
void showFrame(OGroup* group, int frame, int textureFrame);
