// Painting of images from functions: noise, cells and mixing.
//
// An image is a function of u (to the right) and v (upwards) from 0 to 1. All noise takes whole periods, so
// that images tile.
#pragma once

#include <cmath>
#include <cstdint>
#include <functional>
#include <vector>

#include "samples/geometry.h"

namespace sample
{

struct Rgba
{
    float r = 0, g = 0, b = 0, a = 1;
};

inline Rgba operator*(Rgba c, float s)
{
    return {c.r * s, c.g * s, c.b * s, c.a};
}
inline Rgba operator+(Rgba a, Rgba b)
{
    return {a.r + b.r, a.g + b.g, a.b + b.b, a.a};
}
inline Rgba mix(Rgba a, Rgba b, float t)
{
    return {mix(a.r, b.r, t), mix(a.g, b.g, t), mix(a.b, b.b, t), mix(a.a, b.a, t)};
}
/// From bytes, as a colour picker shows them.
constexpr Rgba rgb(int hex)
{
    return {static_cast<float>(hex >> 16 & 255) / 255.0f, static_cast<float>(hex >> 8 & 255) / 255.0f,
            static_cast<float>(hex & 255) / 255.0f, 1};
}
inline float clamp01(float x)
{
    return x < 0 ? 0 : x > 1 ? 1 : x;
}
inline float smoothStep(float low, float high, float x)
{
    const float t = clamp01((x - low) / (high - low));
    return t * t * (3 - 2 * t);
}
inline float fraction(float x)
{
    return x - std::floor(x);
}

/// Smooth noise from 0 to 1 that repeats after px and py lattice steps.
float noise(float x, float y, int px, int py, uint32_t seed);
/// Octaves of noise over the image; the first has cu by cv lattice steps. Mean 0.5.
float clouds(float u, float v, int cu, int cv, int octaves, uint32_t seed);
/// Octaves of noise in space, without period. Mean 0.5.
float cloudsInSpace(Vec3 p, int octaves, uint32_t seed);

/// The nearest of cu by cv jittered points.
struct Cell
{
    float edge; ///< 0 on the border to the next cell, growing inwards, in cell sizes
    uint32_t id;
};
Cell cellAt(float u, float v, int cu, int cv, float jitter, uint32_t seed);

/// Courses of stones, bricks or boards.
struct Course
{
    float edge; ///< distance to the nearest joint in courses
    float s, t; ///< place within the stone, 0 to 1
    uint32_t id;
};
/// @param across  stones in a course  @param courses  from v = 0 up  @param unevenness  0 to about 0.6
Course courseAt(float u, float v, int across, int courses, float unevenness, uint32_t seed);

struct Image
{
    int width = 0, height = 0;
    std::vector<Rgba> pixels; ///< rows from the bottom up

    const Rgba& at(int x, int y) const { return pixels[static_cast<size_t>(y * width + x)]; }
    Rgba& at(int x, int y) { return pixels[static_cast<size_t>(y * width + x)]; }
};

using Painter = std::function<Rgba(float u, float v)>;

/// Samples the painter at the pixels.
/// @param across  samples along each side of a pixel; 1 does for what has no edges
Image paint(int width, int height, const Painter& painter, int across = 2);

/// Mean of the pixels around a place, over about four by four.
Rgba smoothAt(const Image& image, float u, float v);

/// Lights a painted surface from the upper left as if bright places stood out. @param depth  about 0.5 to 3
void emboss(Image& image, float depth, const Painter& relief);

} // namespace sample
