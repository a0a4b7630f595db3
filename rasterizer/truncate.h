// Floats of a host on their way into whole numbers.
#pragma once

#include <cmath>

/// Cuts the fraction off. What no int can hold is 0.
inline int truncated(float value)
{
    return std::fabs(value) < 2147483648.0f ? static_cast<int>(value) : 0;
}
