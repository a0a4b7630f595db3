// Stone and walls: paving, quay blocks, bricks, timber frames and plaster.

#include <algorithm>

#include "samples/textures.h"

namespace sample
{

static Rgba varied(Rgba colour, uint32_t id, float strength)
{
    const float shade = 1 + strength * (randomValue(id, 1) - 0.5f);
    const float warmth = strength * 0.35f * (randomValue(id, 2) - 0.5f);
    return {colour.r * (shade + warmth), colour.g * shade, colour.b * (shade - warmth), colour.a};
}

Image paintPaving()
{
    const auto stone = [](float u, float v)
    {
        const float bend = 0.012f * (noise(u * 12, v * 12, 12, 12, 4) - 0.5f);
        return courseAt(u + bend, v + bend, 9, 14, 0.45f, 11);
    };
    const auto relief = [&](float u, float v)
    {
        const float edge = stone(u, v).edge;
        const float height = 0.7f * smoothStep(0.0f, 0.24f, edge) + 0.4f * clouds(u, v, 16, 16, 3, 12);
        return Rgba{height, 0, 0, 1};
    };
    Image image =
        paint(512, 512,
              [&](float u, float v)
              {
                  const Course c = stone(u, v);
                  const Rgba joint =
                      mix(rgb(0x4a4438), rgb(0x55583c), smoothStep(0.5f, 0.65f, clouds(u, v, 5, 5, 3, 3)));
                  Rgba face = varied(mix(rgb(0xc0ac90), rgb(0xa09890), randomValue(c.id, 3)), c.id, 0.34f);
                  face = face * (0.78f + 0.44f * clouds(u, v, 24, 24, 3, 8));
                  const float worn = smoothStep(0.35f, 0.7f, clouds(u, v, 2, 2, 3, 21));
                  return mix(joint, face * (0.88f + 0.2f * worn), smoothStep(0.03f, 0.11f, c.edge));
              });
    emboss(image, 1.5f, relief);
    return image;
}

Image paintQuayWall()
{
    const auto block = [](float u, float v)
    {
        const float bend = 0.01f * (noise(u * 10, v * 5, 10, 5, 4) - 0.5f);
        return courseAt(u + bend * 0.5f, std::min(v + bend, 0.999f), 5, 4, 0.4f, 31);
    };
    Image image =
        paint(512, 256,
              [&](float u, float v)
              {
                  const Course c = block(u, v);
                  Rgba face = varied(rgb(0xa1937c), c.id, 0.3f) * (0.72f + 0.55f * clouds(u, v, 12, 6, 4, 5));
                  face = mix(rgb(0x3a3428), face, smoothStep(0.01f, 0.06f, c.edge));
                  // Weed grows up to where the tide reaches, in tongues.
                  const float tide = 0.34f + 0.3f * (clouds(u, 0.3f, 16, 1, 3, 9) - 0.5f);
                  const Rgba weed = mix(rgb(0x2b3a1c), rgb(0x56612c), clouds(u, v, 30, 10, 2, 6));
                  face = mix(weed, face, smoothStep(tide - 0.12f, tide + 0.2f, v));
                  return face * mix(0.45f, 1.0f, smoothStep(0.0f, 0.12f, v));
              });
    emboss(image, 1.3f,
           [&](float u, float v) {
               return Rgba{smoothStep(0.0f, 0.12f, block(u, v).edge) + 0.5f * clouds(u, v, 20, 10, 3, 5), 0,
                           0, 1};
           });
    return image;
}

Image paintRock()
{
    const auto relief = [](float u, float v)
    {
        const Cell c = cellAt(u + 0.03f * clouds(u, v, 6, 6, 2, 7), v, 6, 6, 0.9f, 41);
        return Rgba{0.6f * smoothStep(0.0f, 0.3f, c.edge) + 0.8f * clouds(u, v, 8, 8, 4, 42), 0, 0, 1};
    };
    Image image =
        paint(256, 256,
              [](float u, float v)
              {
                  const Rgba c = mix(rgb(0x6f665a), rgb(0xa89a83), clouds(u, v, 4, 4, 5, 43));
                  return mix(c, rgb(0x5d6136), 0.6f * smoothStep(0.55f, 0.7f, clouds(u, v, 6, 6, 3, 44)));
              });
    emboss(image, 2.0f, relief);
    return image;
}

Image paintBricks()
{
    const auto brick = [](float u, float v) { return courseAt(u, v, 12, 36, 0.04f, 51); };
    Image image =
        paint(512, 512,
              [&](float u, float v)
              {
                  const Course c = brick(u, v);
                  const Rgba mortar = rgb(0xb7a78e) * (0.8f + 0.3f * noise(u * 60, v * 60, 60, 60, 2));
                  Rgba face = varied(mix(rgb(0xa0553a), rgb(0x7c3c2c), randomValue(c.id, 4)), c.id, 0.35f);
                  if (randomValue(c.id, 6) > 0.93f)
                      face = rgb(0x5c3a33);
                  face = face * (0.8f + 0.4f * clouds(u, v, 32, 32, 3, 52));
                  const Rgba wall = mix(mortar, face, smoothStep(0.08f, 0.16f, c.edge));
                  return wall * (0.8f + 0.4f * clouds(u, v, 3, 3, 3, 53));
              });
    emboss(image, 0.8f,
           [&](float u, float v) {
               return Rgba{smoothStep(0.05f, 0.2f, brick(u, v).edge), 0, 0, 1};
           });
    return image;
}

// Grime that rises from the ground and runs down from above.
static float grime(float u, float v, uint32_t seed)
{
    const float foot = 1 - smoothStep(0.0f, 0.09f + 0.1f * clouds(u, 0.5f, 12, 1, 3, seed), v);
    const float runs = smoothStep(0.56f, 0.8f, clouds(u, v, 28, 3, 3, seed + 1));
    return clamp01(0.55f * foot + 0.35f * runs);
}

Image paintPlaster(Rgba colour, uint32_t seed)
{
    const auto brick = [](float u, float v) { return courseAt(u, v, 30, 90, 0.04f, 61); };
    const auto bare = [seed](float u, float v)
    {
        const float low = 1 - smoothStep(0.02f, 0.5f, v);
        return smoothStep(0.672f, 0.69f, clouds(u, v, 5, 5, 4, seed) + 0.1f * low);
    };
    Image image = paint(512, 512,
                        [&](float u, float v)
                        {
                            Rgba c = colour * (0.84f + 0.32f * clouds(u, v, 5, 5, 5, seed + 3));
                            c = c * (0.94f + 0.12f * noise(u * 128, v * 128, 128, 128, seed));
                            c = mix(c, mix(colour, rgb(0xffffff), 0.35f),
                                    0.5f * smoothStep(0.55f, 0.7f, clouds(u, v, 3, 4, 3, seed + 9)));
                            const Course b = brick(u, v);
                            const Rgba bricks = mix(rgb(0xa99a82), varied(rgb(0x935240), b.id, 0.3f),
                                                    smoothStep(0.08f, 0.2f, b.edge));
                            c = mix(c, bricks, bare(u, v));
                            return mix(c, c * 0.5f, grime(u, v, seed + 5));
                        });
    emboss(image, 0.7f,
           [&](float u, float v) {
               return Rgba{1 - bare(u, v) + 0.25f * noise(u * 64, v * 64, 64, 64, seed), 0, 0, 1};
           });
    return image;
}

// Ten metres of wall: posts every 1.25, rails every 2.5, and braces in some of the fields.
Image paintTimberFrame()
{
    const auto beam = [](float u, float v)
    {
        const float bend = 0.004f * (noise(u * 8, v * 8, 8, 8, 71) - 0.5f);
        const float x = (u + bend) * 8, y = (v + bend) * 4;
        const float post = std::min(fraction(x), 1 - fraction(x)) * 1.25f;
        const float rail = std::min(fraction(y), 1 - fraction(y)) * 2.5f;
        float d = std::min(post - 0.09f, rail - 0.1f);
        const auto field = static_cast<uint32_t>(static_cast<int>(x) * 8 + static_cast<int>(y));
        const float kind = randomValue(field, 72);
        const float across = kind < 0.2f ? fraction(x) : 1 - fraction(x);
        if (kind < 0.4f)
            d = std::min(d, std::abs(across - fraction(y)) * 1.1f - 0.08f);
        return d;
    };
    Image image = paint(512, 512,
                        [&](float u, float v)
                        {
                            Rgba wall = rgb(0xe3d3b0) * (0.86f + 0.28f * clouds(u, v, 6, 6, 5, 73));
                            wall = mix(wall, wall * 0.5f, grime(u, v, 74));
                            const Rgba wood = mix(rgb(0x3b2618), rgb(0x65452c), clouds(u, v, 40, 40, 3, 75));
                            const float d = beam(u, v);
                            const Rgba shaded = wall * mix(0.6f, 1.0f, smoothStep(0.0f, 0.1f, d));
                            return mix(wood, shaded, smoothStep(-0.012f, 0.012f, d));
                        });
    emboss(image, 0.8f,
           [&](float u, float v) {
               return Rgba{1 - smoothStep(-0.04f, 0.03f, beam(u, v)), 0, 0, 1};
           });
    return image;
}

// Once round and once up the tower: white and red bands on rendered stone, with small windows.
Image paintLighthouse()
{
    return paint(512, 512,
                 [](float u, float v)
                 {
                     const float edge = v * 5 + 0.03f * (noise(u * 40, v * 4, 40, 4, 81) - 0.5f);
                     const bool red = static_cast<int>(edge) % 2 == 1;
                     Rgba c = red ? rgb(0xb5402f) : rgb(0xf0e6d6);
                     c = c * (0.84f + 0.3f * clouds(u, v, 8, 8, 5, 82));
                     const Course stone = courseAt(u, v, 16, 40, 0.1f, 83);
                     c = c * mix(0.86f, 1.0f, smoothStep(0.02f, 0.12f, stone.edge));
                     const float runs = smoothStep(0.55f, 0.8f, clouds(u, v, 40, 3, 3, 84));
                     c = mix(c, rgb(0x7a5f4a), 0.35f * runs);
                     const float foot = 1 - smoothStep(0.0f, 0.1f, v);
                     c = mix(c, rgb(0x59543f), 0.6f * foot);
                     for (int i = 0; i < 4; ++i)
                     {
                         const float x =
                             std::abs(fraction(u - 0.16f - 0.25f * static_cast<float>(i) + 0.5f) - 0.5f) * 11;
                         const float y = std::abs(v - 0.3f - 0.155f * static_cast<float>(i % 3)) * 15;
                         if (x < 0.36f && y < 0.56f)
                             c = x < 0.26f && y < 0.46f && x > 0.03f ? rgb(0x2c3440) : rgb(0xc9bba2);
                     }
                     return c;
                 });
}

} // namespace sample
