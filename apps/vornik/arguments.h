// Values on the command line.
#pragma once

#include <string>

#include "vornik/vornik.h"

/// "1280x720" to two numbers from 1 to 16384. @return false if it is something else
bool parseSize(const std::string& text, int* width, int* height);

/// "RRGGBB", with or without a #, or a colour's name. @return false if it is neither
bool parseColor(const std::string& text, Color* color);
