// Vectors side by side, in plain loops of fixed length that a compiler turns into instructions on several of
// them at once: roots and divisions are most of the work on normals. Each vector gets the operations of
// Vertex3D in the same order, so its bits are the same. Sources that include this are compiled without
// errno and traps of arithmetic (CMakeLists.txt), which nobody reads and which would keep the loops apart.
#pragma once

#include <array>
#include <cfloat>
#include <cmath>

#include "vornik/core/vectors.h"

struct VectorBlock
{
    static constexpr int size = 16;
    using Numbers = std::array<float, size>;

    Numbers x, y, z;

    void set(int i, const Vertex3D& v)
    {
        const size_t at = static_cast<size_t>(i);
        x[at] = v.x;
        y[at] = v.y;
        z[at] = v.z;
    }
    Vertex3D operator[](int i) const
    {
        const size_t at = static_cast<size_t>(i);
        return {x[at], y[at], z[at]};
    }

    /// As Vertex3D::normalize: what has no length becomes 0, 0, 0.
    void normalize();
    /// As vrkNormalize: what has no length is divided by the smallest normal float.
    void normalizeBySmallest();
};

inline VectorBlock operator+(const VectorBlock& a, const VectorBlock& b)
{
    VectorBlock r;
    for (size_t i = 0; i < VectorBlock::size; ++i)
    {
        r.x[i] = a.x[i] + b.x[i];
        r.y[i] = a.y[i] + b.y[i];
        r.z[i] = a.z[i] + b.z[i];
    }
    return r;
}

inline VectorBlock operator-(const VectorBlock& a, const VectorBlock& b)
{
    VectorBlock r;
    for (size_t i = 0; i < VectorBlock::size; ++i)
    {
        r.x[i] = a.x[i] - b.x[i];
        r.y[i] = a.y[i] - b.y[i];
        r.z[i] = a.z[i] - b.z[i];
    }
    return r;
}

/// Cross products.
inline VectorBlock operator^(const VectorBlock& a, const VectorBlock& b)
{
    VectorBlock r;
    for (size_t i = 0; i < VectorBlock::size; ++i)
    {
        r.x[i] = a.y[i] * b.z[i] - b.y[i] * a.z[i];
        r.y[i] = b.x[i] * a.z[i] - a.x[i] * b.z[i];
        r.z[i] = b.y[i] * a.x[i] - a.y[i] * b.x[i];
    }
    return r;
}

inline void operator/=(VectorBlock& v, const VectorBlock::Numbers& by)
{
    for (size_t i = 0; i < VectorBlock::size; ++i)
    {
        v.x[i] /= by[i];
        v.y[i] /= by[i];
        v.z[i] /= by[i];
    }
}

inline float lengthAt(const VectorBlock& v, size_t i)
{
    return std::sqrt(v.x[i] * v.x[i] + v.y[i] * v.y[i] + v.z[i] * v.z[i]);
}

inline void VectorBlock::normalize()
{
    for (size_t i = 0; i < size; ++i)
    {
        const float length = lengthAt(*this, i);
        x[i] = length == 0.0f ? 0.0f : x[i] / length;
        y[i] = length == 0.0f ? 0.0f : y[i] / length;
        z[i] = length == 0.0f ? 0.0f : z[i] / length;
    }
}

inline void VectorBlock::normalizeBySmallest()
{
    Numbers lengths;
    for (size_t i = 0; i < size; ++i)
    {
        const float length = lengthAt(*this, i);
        lengths[i] = length == 0.0f ? FLT_MIN : length;
    }
    *this /= lengths;
}
