// The bitmap font: the system font on Windows, glyphs of our own elsewhere.
#pragma once

#include "vornik/platform.h"

/// Makes the display lists base to base + 127 of the current context, one for each character code from 0. A
/// list draws its character from the raster position on and moves that behind it. A base of 0 leaves code 0
/// without a list, since no list can have that name.
/// @return false if there is no context or the system gives no font
bool vrkPlatformMakeFont(VRKDeviceContext device, int base);
