// Reads what the viewer writes on the screen.
#pragma once

#include <string>

#include "tests/apps/program.h"

/// The line of text in the engine's font that begins at x over a base line. @param baseLine  from the top
/// @param ink  its colour
/// @return the text without blanks at its end, with a '?' for what is no character
std::string textAt(const Bitmap& picture, int x, int baseLine, const Rgb& ink);
