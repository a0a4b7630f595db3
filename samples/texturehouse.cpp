// Roofs, windows and doors.

#include <algorithm>

#include "samples/textures.h"

namespace sample
{

// Pantiles: round across, each row lapping over the one below.
Image paintRoofTiles()
{
    const auto tile = [](float u, float v)
    {
        const int row = static_cast<int>(v * 14);
        const float shift = 0.1f * randomValue(static_cast<uint32_t>(row), 201);
        const auto column = static_cast<uint32_t>(static_cast<int>(u * 16 + shift) % 16);
        return Course{0, fraction(u * 16 + shift), fraction(v * 14),
                      column * 64 + static_cast<uint32_t>(row)};
    };
    const auto relief = [&](float u, float v)
    {
        const Course c = tile(u, v);
        return Rgba{0.9f * std::sin(c.s * pi) + 0.6f * (1 - c.t), 0, 0, 1};
    };
    Image image =
        paint(512, 512,
              [&](float u, float v)
              {
                  const Course c = tile(u, v);
                  Rgba clay = mix(rgb(0xb0563a), rgb(0x8c3e2a), randomValue(c.id, 202));
                  clay = mix(clay, rgb(0xcf7d50), 0.5f * smoothStep(0.75f, 0.95f, randomValue(c.id, 203)));
                  clay = clay * (0.78f + 0.44f * clouds(u, v, 16, 16, 3, 204));
                  clay = clay * mix(0.5f, 1.0f, smoothStep(0.0f, 0.3f, std::sin(c.s * pi)));
                  clay = clay * mix(1.0f, 0.55f, smoothStep(0.72f, 1.0f, c.t));
                  const float moss = smoothStep(0.57f, 0.72f, clouds(u, v, 4, 4, 4, 205));
                  return mix(clay, rgb(0x6b6a3a), 0.55f * moss);
              });
    emboss(image, 0.55f, relief);
    return image;
}

Image paintSlates()
{
    const auto slate = [](float u, float v) { return courseAt(u, v, 14, 18, 0.25f, 211); };
    Image image =
        paint(512, 512,
              [&](float u, float v)
              {
                  const Course c = slate(u, v);
                  Rgba stone = mix(rgb(0x59606c), rgb(0x77787c), randomValue(c.id, 212));
                  stone = mix(stone, rgb(0x7a6a60), 0.5f * smoothStep(0.8f, 0.9f, randomValue(c.id, 213)));
                  stone = stone * (0.8f + 0.4f * clouds(u, v, 10, 30, 3, 214));
                  stone = stone * mix(1.0f, 0.5f, smoothStep(0.75f, 1.0f, c.t));
                  const float moss = smoothStep(0.58f, 0.75f, clouds(u, v, 4, 4, 4, 215));
                  stone = mix(stone, rgb(0x74743f), 0.5f * moss);
                  return mix(rgb(0x24262a), stone, smoothStep(0.0f, 0.06f, c.edge));
              });
    emboss(image, 0.8f,
           [&](float u, float v)
           {
               const Course c = slate(u, v);
               return Rgba{(1 - c.t) * smoothStep(0.0f, 0.1f, c.edge), 0, 0, 1};
           });
    return image;
}

// Distance to the bars of a frame with columns by rows of panes, in parts of the window's width.
static float barDistance(float s, float t, int columns, int rows)
{
    const float rim = std::min(std::min(s, 1 - s), std::min(t, 1 - t) * 1.6f) - 0.085f;
    const float x = fraction(s * static_cast<float>(columns)), y = fraction(t * static_cast<float>(rows));
    const float bars = std::min(std::min(x, 1 - x) / static_cast<float>(columns),
                                std::min(y, 1 - y) * 1.6f / static_cast<float>(rows)) -
                       0.022f;
    return std::min(rim, bars);
}

static Rgba paneColour(float s, float t, bool lit, bool curtains)
{
    const float drape = curtains ? smoothStep(0.30f, 0.34f, std::abs(s - 0.5f) + 0.1f * (1 - t)) : 0;
    const float folds = 0.75f + 0.25f * std::sin(s * 60);
    if (lit)
    {
        const float glow = 1 - 0.55f * std::sqrt((s - 0.5f) * (s - 0.5f) + (t - 0.35f) * (t - 0.35f));
        const Rgba room = mix(rgb(0xc86018), rgb(0xffc66a), clamp01(glow * 1.15f - 0.15f));
        return mix(room, rgb(0xd9803a) * folds, 0.7f * drape);
    }
    // Old glass: the sky above, the far side of the harbour below, each pane tilted a little.
    const float tilt = 0.2f * noise(s * 4, t * 5, 8, 8, 221);
    const float sky = smoothStep(0.25f, 0.75f, t + tilt);
    const Rgba glass = mix(rgb(0x1d2630), rgb(0x8fa3b5), sky * 0.8f);
    return mix(glass, rgb(0xb9ae9c) * folds, 0.6f * drape);
}

static Rgba windowColour(float s, float t, bool lit, bool curtains)
{
    const float d = barDistance(s, t, 2, 3);
    const Rgba paint = rgb(0xe9e2d2) * (0.85f + 0.25f * noise(s * 20, t * 20, 32, 32, 222));
    const Rgba glass = paneColour(s, t, lit, curtains) * mix(0.55f, 1.0f, smoothStep(0.0f, 0.07f, d));
    return mix(lit ? paint * 0.8f : paint, glass, smoothStep(-0.006f, 0.006f, d));
}

static Rgba shutterColour(float s, float t, Rgba colour)
{
    const float rim = std::min(std::min(s, 1 - s), std::min(t, 1 - t) * 1.8f);
    const float slat = fraction(t * 16);
    const float panel = rim < 0.13f || std::abs(t - 0.5f) < 0.035f ? 1.0f : 0.55f + 0.5f * slat;
    return colour * panel * (0.85f + 0.3f * noise(s * 8, t * 24, 8, 32, 231));
}

Image paintWindows()
{
    return paint(512, 512,
                 [](float u, float v)
                 {
                     const int column = std::min(static_cast<int>(u * 4), 3);
                     const bool lit = v < 0.5f;
                     const float s = fraction(u * 4), t = fraction(v * 2);
                     if (column == 3)
                         return shutterColour(s, t, lit ? rgb(0x3f6a72) : rgb(0x4c6b3c));
                     if (column < 2)
                         return windowColour(s, t, lit, column == 1);
                     // A loft window with an arch of bricks.
                     const float x = (s - 0.5f) * 2, y = t * 2 - 0.6f;
                     const float arch =
                         std::max(std::abs(x) - 0.72f,
                                  y > 0.4f ? std::sqrt(x * x + (y - 0.4f) * (y - 0.4f)) - 0.72f : -1.0f);
                     const Rgba glass =
                         windowColour(clamp01(x * 0.69f + 0.5f), clamp01(t * 1.1f - 0.1f), lit, false);
                     return mix(glass, rgb(0x8d5a44) * (0.8f + 0.4f * noise(s * 30, t * 40, 32, 64, 5)),
                                smoothStep(-0.02f, 0.02f, arch));
                 });
}

static Rgba boardDoor(float s, float t, Rgba colour, bool pair)
{
    const float boards = fraction(s * 7);
    Rgba c = colour * (0.75f + 0.4f * clouds(s, t, 28, 3, 3, 241));
    c = c * mix(0.5f, 1.0f, smoothStep(0.0f, 0.12f, std::min(boards, 1 - boards)));
    const float strap = std::min(std::abs(t - 0.2f), std::abs(t - 0.78f));
    if (strap < 0.02f)
        c = rgb(0x33302e);
    if (pair && std::abs(s - 0.5f) < 0.012f)
        c = rgb(0x1d1814);
    return c;
}

static Rgba panelDoor(float s, float t, Rgba colour)
{
    if (t > 0.83f)
        return mix(rgb(0x4a3a28), rgb(0xffc46a),
                   smoothStep(0.02f, 0.05f, std::min(fraction(s * 3), 1 - fraction(s * 3))));
    const float x = std::abs(fraction(s * 2) - 0.5f), y = std::abs(fraction(t * 3.6f) - 0.5f);
    const float panel = std::max(x, y * 0.9f) - 0.34f;
    const Rgba c = colour * (0.85f + 0.3f * clouds(s, t, 10, 20, 3, 251));
    return c * mix(0.72f, 1.0f, smoothStep(0.0f, 0.06f, std::abs(panel)));
}

// A shop front: a lit window of small panes above a painted sill.
static Rgba shopFront(float s, float t)
{
    if (t < 0.28f || t > 0.9f)
        return panelDoor(s, t < 0.28f ? t * 2 : 0.4f, rgb(0x2f5548));
    const float d = barDistance(s, (t - 0.28f) / 0.62f, 4, 3);
    const Rgba room = mix(rgb(0xa84e14), rgb(0xffc468), clamp01(1.15f - 1.7f * std::abs(t - 0.55f)));
    const float goods = smoothStep(0.44f, 0.50f, t + 0.22f * noise(s * 11, 3, 16, 4, 261));
    return mix(rgb(0xc8b898) * 0.6f, room * mix(0.45f, 1.0f, goods), smoothStep(-0.006f, 0.006f, d));
}

Image paintDoors()
{
    return paint(512, 256,
                 [](float u, float v)
                 {
                     const float s = fraction(u * 4);
                     const int column = std::min(static_cast<int>(u * 4), 3);
                     const float rim = std::min(std::min(s, 1 - s), 1 - v);
                     if (rim < 0.05f)
                         return rgb(0xcfc2a8) * (0.8f + 0.3f * noise(s * 30, v * 60, 32, 64, 271));
                     switch (column)
                     {
                     case 0:
                         return panelDoor(s, v, rgb(0x2f5a4a));
                     case 1:
                         return panelDoor(s, v, rgb(0x7c2f26));
                     case 2:
                         return boardDoor(s, v, rgb(0x7d5a38), true);
                     default:
                         return shopFront(s, v);
                     }
                 });
}

// The flame wanders and flickers around the place that it has in frame 0.
Image paintLampGlass(int frame)
{
    const float turn = 2 * pi * static_cast<float>(frame) / animationFrames;
    const float x = 0.5f + 0.05f * std::sin(2 * turn), y = 0.45f + 0.05f * std::sin(3 * turn);
    const float size = 2.1f - 0.1f * std::cos(turn) + 0.5f * std::sin(turn) * std::sin(5 * turn);
    return paint(64, 64,
                 [=](float u, float v)
                 {
                     const float d = std::sqrt((u - x) * (u - x) + (v - y) * (v - y)) * size;
                     const float bar = std::min(u, 1 - u);
                     return mix(rgb(0x3a332c), mix(rgb(0xfff6d8), rgb(0xffb347), clamp01(d)),
                                smoothStep(0.04f, 0.09f, bar));
                 });
}

} // namespace sample
