// Values on the command line.
#pragma once

#include <string>

#include "vornik/vornik.h"

/// "1280x720" to two numbers from 1 to 16384. @return false if it is something else
bool parseSize(const std::string& text, int* width, int* height);

/// "10..60" to two numbers from 0 to 1,000,000, the second not below the first. @return false if it is
/// something else
bool parseFrames(const std::string& text, int* first, int* last);

/// "RRGGBB", with or without a #, or a colour's name. @return false if it is neither
bool parseColor(const std::string& text, Color* color);
