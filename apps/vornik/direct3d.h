// Pictures by rasterizer 1. Its picture can't be read through the engine, so it is drawn in a window that is
// shown, in front of all others, and taken from the screen.
#pragma once

#include <string>

#include "apps/vornik/picture.h"

/// Starts rasterizer 1 on a window of the picture's size. Load the scene after it.
/// @return what stands in the way; empty if nothing does
std::string startDirect3D(const PictureOptions& options);

/// Draws the group in that window. What is transparent isn't sorted, and the picture is the mirror image of
/// OpenGL's.
Image drawOnDirect3D(OGroup* group, View* view, const PictureOptions& options);
