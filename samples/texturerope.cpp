// Images that are mostly see-through. What is clear keeps the colour of what is near it: filtering then
// leaves no dark rims.

#include <algorithm>

#include "samples/textures.h"

namespace sample
{

Image paintRope()
{
    return paint(32, 128,
                 [](float u, float v)
                 {
                     const float across = std::abs(u - 0.5f) * 2;
                     const float twist = fraction(v * 10 + u * 1.2f);
                     Rgba c = mix(rgb(0x5c452a), rgb(0xc2a06c),
                                  smoothStep(0.0f, 0.5f, std::min(twist, 1 - twist)));
                     c = c * (1.1f - 0.5f * across);
                     c.a = 1 - smoothStep(0.36f, 0.62f, across);
                     return c;
                 });
}

Image paintNet()
{
    return paint(256, 256,
                 [](float u, float v)
                 {
                     const float wobble = 0.02f * (noise(u * 6, v * 6, 6, 6, 401) - 0.5f);
                     const float a = std::abs(fraction((u + v + wobble) * 10) - 0.5f);
                     const float b = std::abs(fraction((u - v + wobble) * 10) - 0.5f);
                     const float line = 0.5f - std::max(a, b);
                     const float knot = 1 - smoothStep(0.08f, 0.14f, 1 - a - b);
                     Rgba c = mix(rgb(0x3f5a58), rgb(0x8a9a84), clouds(u, v, 6, 6, 3, 402));
                     c.a = std::max(1 - smoothStep(0.045f, 0.085f, line), knot);
                     return c;
                 });
}

// Three shrouds that run together at the top, with rungs.
Image paintRatlines()
{
    return paint(128, 256,
                 [](float u, float v)
                 {
                     float line = 1;
                     for (const float shroud : {0.05f, 0.5f, 0.95f})
                         line = std::min(line, std::abs(u - shroud) * 1.0f);
                     const float rung = std::abs(fraction(v * 14) - 0.5f) * 0.12f;
                     Rgba c = rgb(0x4a3826);
                     c.a = std::max(1 - smoothStep(0.018f, 0.034f, line),
                                    0.85f * (1 - smoothStep(0.005f, 0.011f, rung)));
                     return c;
                 });
}

static float fromMiddle(float u, float v)
{
    return std::sqrt((u - 0.5f) * (u - 0.5f) + (v - 0.5f) * (v - 0.5f)) * 2;
}

Image paintGlow()
{
    return paint(64, 64,
                 [](float u, float v)
                 {
                     const float d = clamp01(1 - fromMiddle(u, v));
                     Rgba c = mix(rgb(0xff9a3c), rgb(0xfff0c8), d * d);
                     c.a = 0.8f * d * d * d;
                     return c;
                 });
}

Image paintShade()
{
    return paint(64, 64,
                 [](float u, float v)
                 {
                     Rgba c = rgb(0x14110e);
                     c.a = 0.72f * smoothStep(0.0f, 0.75f, 1 - fromMiddle(u, v));
                     return c;
                 });
}

// The path of the sun on the water: sparks that lie across the way to the eye, thinning out to the sides.
Image paintGlitter()
{
    return paint(256, 256,
                 [](float u, float v)
                 {
                     const float n = clouds(u, v, 8, 48, 2, 411);
                     const float side = clamp01(1 - std::abs(u - 0.5f) * 2);
                     const float ends = smoothStep(0.0f, 0.25f, v) * smoothStep(0.0f, 0.15f, 1 - v);
                     Rgba c = mix(rgb(0xffb35c), rgb(0xfff2cf), smoothStep(0.5f, 0.75f, n));
                     c.a = 0.9f * smoothStep(0.72f - 0.3f * side, 0.84f - 0.26f * side, n) * side * ends;
                     return c;
                 });
}

Image paintGull()
{
    return paint(128, 64,
                 [](float u, float v)
                 {
                     const float x = std::abs(u - 0.5f) * 2;
                     const float wing =
                         0.45f + 0.42f * std::sin(std::min(x * 1.25f, 1.0f) * pi * 0.8f) - 0.3f * x * x;
                     const float thick = 0.11f * (1 - x) + 0.015f;
                     const float body = x < 0.09f ? std::abs(v - 0.42f) - 0.16f : 1.0f;
                     const float d = std::min(std::abs(v - wing) - thick, body);
                     Rgba c = mix(rgb(0xf6efe2), rgb(0x575a60), smoothStep(0.7f, 0.95f, x));
                     c.a = 1 - smoothStep(-0.01f, 0.03f, d);
                     return c;
                 });
}

} // namespace sample
