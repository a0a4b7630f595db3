// The reads of a Loader's values, for loops over lists: a compiler keeps the fields of a local Loader in
// registers, so that a value costs a load, an addition and a comparison.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

#include "vornik/assets/loader.h"
#include "vornik/core/vectors.h"

// To be called after every move of the cursor.
inline void noteEnd(Loader& loader)
{
    if (loader.current >= loader.data + loader.size)
        loader.atEnd = true;
}

// Little-endian, whatever the machine is. A value that straddles the end takes the rest from the padding. The
// width is known to the compiler, which makes one read of it.
template <int width>
uint32_t takeBytes(Loader& loader)
{
    const uint8_t* bytes = loader.current;
    uint32_t value = bytes[0];
    if constexpr (width > 1)
        value |= static_cast<uint32_t>(bytes[1]) << 8;
    if constexpr (width > 2)
        value |= static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
    loader.current += width;
    noteEnd(loader);
    return value;
}

inline float readFloat(Loader& loader)
{
    if (loader.atEnd)
        return -1.0f;
    const uint32_t bits = takeBytes<4>(loader);
    float value;
    std::memcpy(&value, &bits, sizeof(value));
    return value;
}

inline int readInt(Loader& loader)
{
    return loader.atEnd ? 0 : static_cast<int32_t>(takeBytes<4>(loader));
}

inline short readShort(Loader& loader)
{
    return loader.atEnd ? 0 : static_cast<int16_t>(takeBytes<2>(loader));
}

inline uint16_t readUnsignedShort(Loader& loader)
{
    return static_cast<uint16_t>(readShort(loader));
}

inline Vertex3D readVector(Loader& loader)
{
    Vertex3D v;
    v.x = readFloat(loader);
    v.y = readFloat(loader);
    v.z = readFloat(loader);
    return v;
}

/// Calls read(i, cursor) for each entry of a list at the cursor of vrkLoader.
template <class Read>
void readList(int count, Read read)
{
    Loader cursor = vrkLoader;
    for (int i = 0; i < count; ++i)
        read(i, cursor);
    vrkLoader = cursor;
}

inline bool isFinite(const Vertex3D& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}
