// Colours as the words of Direct3D: alpha highest, then red, green, blue.
#pragma once

#include <cstdint>

#include "vornik/core/vectors.h"

/// Forces the record itself into 0 to 1 and packs it. Full white is 252 in each channel: the factor is not
/// 255.
uint32_t packLimited(Color* c);

/// Packs without any limit, by the factor 255: a channel beyond 1 runs over into the ones above it.
uint32_t packUnlimited(const Color& c);

/// The color of text on a window: red lowest, each channel by the factor 255 and cut to its byte.
uint32_t packForWindow(const Color& c);
