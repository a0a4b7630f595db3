// Records of floats compared by their bits: 0 and -0 differ, and a NaN equals itself.
#pragma once

#include <cstring>
#include <type_traits>

/// Below, equal to or above 0, in the order of the bytes. For records without padding.
template <class T>
int compareBits(const T& a, const T& b)
{
    static_assert(std::is_trivially_copyable_v<T>);
    return std::memcmp(static_cast<const void*>(&a), static_cast<const void*>(&b), sizeof(T));
}

template <class T>
bool sameBits(const T& a, const T& b)
{
    return compareBits(a, b) == 0;
}
