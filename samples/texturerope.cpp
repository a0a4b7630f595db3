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
// Each brightens and fades once in a round, in its own time.
Image paintGlitter(int frame)
{
    const float time = static_cast<float>(frame) / animationFrames;
    return paint(256, 256,
                 [time](float u, float v)
                 {
                     const float own = 2 * noise(u * 16, v * 64, 16, 64, 412);
                     const float twinkle = std::sin(2 * pi * (time + own)) - std::sin(2 * pi * own);
                     const float n = clouds(u, v, 8, 48, 2, 411) + 0.06f * twinkle;
                     const float side = clamp01(1 - std::abs(u - 0.5f) * 2);
                     Rgba c = mix(rgb(0xffb35c), rgb(0xfff2cf), smoothStep(0.5f, 0.75f, n));
                     c.a = 0.9f * smoothStep(0.72f - 0.3f * side, 0.84f - 0.26f * side, n) * side;
                     return c;
                 });
}

// From the hub at the lower edge to the tip; the cloth is reefed over the outer third.
Image paintSail()
{
    return paint(64, 256,
                 [](float u, float v)
                 {
                     const auto bars = [](float x, float width)
                     { return 1 - smoothStep(width, width * 1.6f, std::abs(fraction(x) - 0.5f)); };
                     const float lattice = std::max(bars(v * 15, 0.10f), bars(u * 2.92f + 0.24f, 0.075f));
                     const float reef = 0.64f + 0.05f * std::sin(u * pi);
                     const float cloth = u > 0.12f && v < reef ? 1.0f : 0.0f;
                     const float fold = clouds(u, v, 4, 8, 3, 421);
                     Rgba c = mix(rgb(0x6a5236), rgb(0xe8d8b4), cloth) * (0.8f + 0.4f * fold);
                     c = c * (cloth > 0 ? 1 - 0.22f * lattice : 1);
                     c.a = std::max(cloth, lattice);
                     return c;
                 });
}

// Seen from below and behind: wings raised in an arc, dark at the tips.
Image paintGull()
{
    return paint(128, 64,
                 [](float u, float v)
                 {
                     const float x = std::abs(u - 0.5f) * 2;
                     const float arc =
                         0.40f + 0.36f * std::sin(std::min(x * 1.5f, 1.0f) * pi * 0.62f) - 0.34f * x * x;
                     const float thick = 0.13f * (1 - x) * (0.6f + x) + 0.012f;
                     const float bodyX = (u - 0.5f) / 0.055f, bodyY = (v - 0.40f) / 0.17f;
                     const float body = (std::sqrt(bodyX * bodyX + bodyY * bodyY) - 1) * 0.1f;
                     const float wing = x < 0.97f ? std::abs(v - arc) - thick : 1.0f;
                     const float d = std::min(wing, body);
                     Rgba c = mix(rgb(0xfdf4e4), rgb(0x50535a), smoothStep(0.72f, 0.95f, x));
                     c = c * (v < arc ? 0.86f : 1.0f);
                     c.a = 1 - smoothStep(-0.015f, 0.03f, d);
                     return c;
                 });
}

} // namespace sample
