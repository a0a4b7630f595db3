// Wood, iron and cloth.

#include <algorithm>

#include "samples/textures.h"

namespace sample
{

static float grain(float along, float across, int cu, int cv, uint32_t seed)
{
    const float bend = 0.02f * noise(along * 4, across * 8, 4, 8, seed + 7);
    return clouds(along, across + bend, cu, cv, 3, seed);
}

Image paintPlanks(Rgba light, Rgba dark, int boards, uint32_t seed)
{
    const auto board = [=](float u, float v) { return courseAt(u, v, 2, boards, 0.6f, seed); };
    Image image =
        paint(256, 256,
              [&](float u, float v)
              {
                  const Course c = board(u, v);
                  const float tone = 0.35f * randomValue(c.id, 1, seed) +
                                     0.75f * grain(u, v, 3, boards * 8, seed + c.id % 5);
                  Rgba wood = mix(dark, light, clamp01(tone)) * (0.85f + 0.3f * randomValue(c.id, 2, seed));
                  const float nail =
                      std::min(std::abs(c.s - 0.04f), std::abs(c.s - 0.96f)) * 30 + std::abs(c.t - 0.5f) * 6;
                  wood = mix(rgb(0x2a221c), wood, smoothStep(0.5f, 0.9f, nail));
                  return mix(dark * 0.35f, wood, smoothStep(0.0f, 0.09f, c.edge));
              });
    emboss(image, 0.8f,
           [&](float u, float v)
           {
               return Rgba{smoothStep(0.0f, 0.14f, board(u, v).edge) +
                               0.4f * grain(u, v, 3, boards * 8, seed),
                           0, 0, 1};
           });
    return image;
}

Image paintMast()
{
    return paint(64, 256,
                 [](float u, float v)
                 {
                     const Rgba c = mix(rgb(0x8a5a2e), rgb(0xd09a56), clouds(u, v, 16, 3, 3, 101));
                     const float ring = smoothStep(0.47f, 0.48f, std::abs(fraction(v * 4) - 0.5f));
                     return mix(c * (0.9f + 0.2f * clouds(u, v, 2, 8, 3, 102)), rgb(0x3a3632), ring);
                 });
}

Image paintHulls()
{
    struct Colours
    {
        Rgba bottom, side, stripe, rail;
    };
    static const Colours boats[] = {{rgb(0x7a2f25), rgb(0x2c5a72), rgb(0xf2ead6), rgb(0x9a6a3a)},
                                    {rgb(0x2e4c3a), rgb(0xe9e2d0), rgb(0xb8452f), rgb(0x8a5a30)},
                                    {rgb(0x34302c), rgb(0x9c3b2a), rgb(0xf0dfae), rgb(0xa8743e)},
                                    {rgb(0x5c2a22), rgb(0x3d7a5c), rgb(0xf2ead6), rgb(0xb08048)}};
    Image image = paint(512, 512,
                        [&](float u, float v)
                        {
                            const Colours& boat = boats[std::min(static_cast<int>(v * 4), 3)];
                            const float t = fraction(v * 4);
                            const Course strake = courseAt(u, t, 2, 9, 0.5f, 111);
                            Rgba c = t < 0.17f ? boat.bottom : t > 0.93f ? boat.rail : boat.side;
                            if (t > 0.8f && t < 0.88f)
                                c = boat.stripe;
                            if (t > 0.17f && t < 0.2f)
                                c = boat.stripe;
                            c = c * (0.84f + 0.32f * clouds(u, v, 10, 20, 4, 112));
                            c = c * mix(0.62f, 1.0f, smoothStep(0.0f, 0.09f, strake.edge));
                            // Paint wears off along the strakes, and rust runs down.
                            const float bare = smoothStep(0.66f, 0.72f, clouds(u, v, 6, 40, 4, 113));
                            c = mix(c, rgb(0x8c7355), 0.55f * bare);
                            const float runs = smoothStep(0.6f, 0.8f, clouds(u, v, 60, 8, 2, 114)) *
                                               smoothStep(0.3f, 0.8f, t);
                            return mix(c, rgb(0x6a4128), 0.4f * runs);
                        });
    return image;
}

Image paintBarrel()
{
    const auto hoopAt = [](float v)
    {
        const float places[] = {0.05f, 0.24f, 0.76f, 0.95f};
        float nearest = 1;
        for (const float place : places)
            nearest = std::min(nearest, std::abs(v - place));
        return nearest;
    };
    const auto stave = [](float u) { return std::min(fraction(u * 16), 1 - fraction(u * 16)); };
    Image image = paint(256, 256,
                        [&](float u, float v)
                        {
                            const auto id = static_cast<uint32_t>(u * 16);
                            Rgba wood = mix(rgb(0x5e3a1e), rgb(0xa9743f), clouds(u, v, 64, 4, 3, 121));
                            wood = wood * (0.8f + 0.4f * randomValue(id, 122));
                            wood = wood * mix(0.4f, 1.0f, smoothStep(0.0f, 0.08f, stave(u)));
                            const Rgba iron = mix(rgb(0x4a4643), rgb(0x7d5b42), clouds(u, v, 20, 20, 3, 123));
                            return mix(iron, wood, smoothStep(0.028f, 0.034f, hoopAt(v)));
                        });
    emboss(image, 1.2f,
           [&](float u, float v)
           {
               const float hoop = 1 - smoothStep(0.025f, 0.04f, hoopAt(v));
               return Rgba{hoop + 0.5f * smoothStep(0.0f, 0.12f, stave(u)), 0, 0, 1};
           });
    return image;
}

Image paintCrate()
{
    const auto frame = [](float u, float v)
    {
        const float rim = std::min(std::min(u, 1 - u), std::min(v, 1 - v));
        const float brace = std::abs(u - v) * 0.7071f;
        return std::min(rim - 0.12f, brace - 0.06f);
    };
    Image image = paint(
        256, 256,
        [&](float u, float v)
        {
            const Course board = courseAt(u, v, 1, 5, 0, 131);
            const float tone = clouds(u, v, 4, 48, 3, 132);
            Rgba c = mix(rgb(0x7a5632), rgb(0xc19a62), tone) * (0.75f + 0.25f * randomValue(board.id, 133));
            c = c * mix(0.3f, 1.0f, smoothStep(0.0f, 0.06f, board.edge));
            const float d = frame(u, v);
            const Rgba batten = mix(rgb(0x8a6238), rgb(0xd0a86c), clouds(u, v, 24, 24, 3, 134));
            c = mix(batten, c * mix(0.55f, 1.0f, smoothStep(0.0f, 0.06f, d)), smoothStep(-0.006f, 0.006f, d));
            return c;
        });
    emboss(image, 0.9f,
           [&](float u, float v) {
               return Rgba{1 - smoothStep(-0.02f, 0.02f, frame(u, v)), 0, 0, 1};
           });
    return image;
}

Image paintIron()
{
    return paint(64, 64,
                 [](float u, float v)
                 {
                     const Rgba c = mix(rgb(0x2d3236), rgb(0x565a5a), clouds(u, v, 8, 8, 4, 141));
                     return mix(c, rgb(0x7d4f33),
                                0.7f * smoothStep(0.58f, 0.75f, clouds(u, v, 6, 6, 3, 142)));
                 });
}

Image paintBrass()
{
    return paint(64, 64,
                 [](float u, float v)
                 { return mix(rgb(0x8a5f22), rgb(0xe8bb62), clouds(u, v, 2, 6, 4, 146)); });
}

Image paintCanvas()
{
    return paint(128, 128,
                 [](float u, float v)
                 {
                     const float weave = 0.5f + 0.25f * std::sin(u * 128 * pi) * std::sin(v * 128 * pi);
                     const float fold = clouds(u, v, 3, 14, 3, 151);
                     return mix(rgb(0xa8926c), rgb(0xf1e3c4), clamp01(fold * 1.1f)) * (0.92f + 0.16f * weave);
                 });
}

Image paintAwning()
{
    return paint(128, 128,
                 [](float u, float v)
                 {
                     const bool red = static_cast<int>(u * 8) % 2 == 0;
                     const Rgba c = red ? rgb(0xb23a2e) : rgb(0xf0e4cc);
                     return c * (0.82f + 0.3f * clouds(u, v, 4, 4, 4, 161)) * mix(0.8f, 1.0f, v);
                 });
}

} // namespace sample
