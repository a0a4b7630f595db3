// Sky, water and plants.
//
// The sky is a function of direction, so that the two halves of the dome, the reflection map and whatever
// else asks agree with each other.

#include <algorithm>

#include "samples/textures.h"

namespace sample
{

// Thickness of the clouds over a place of their layer.
static float cloudAt(float x, float y)
{
    const float bank = cloudsInSpace({x * 0.55f + 3, y * 0.55f, 0.5f}, 3, 301);
    const float puff = cloudsInSpace({x * 1.7f, y * 2.6f, 1.7f}, 6, 302);
    return bank * 0.62f + puff * 0.48f;
}

Rgba skyColour(Vec3 direction, Vec3 sun)
{
    const float height = std::max(direction.z, 0.0f);
    const Vec3 flat = unit({direction.x, direction.y, 0}), sunFlat = unit({sun.x, sun.y, 0});
    const float towards = 0.5f + 0.5f * dot(flat, sunFlat);
    const Rgba horizon = mix(rgb(0xd8b4a8), rgb(0xffc07c), towards * towards);
    const Rgba low = mix(rgb(0xa9b2c8), rgb(0xf3c2a0), towards * towards);
    const Rgba middle = mix(rgb(0x6f93c4), rgb(0x9fb6cc), towards);
    const Rgba zenith = mix(rgb(0x2f5896), rgb(0x4a77ae), towards);
    Rgba c = mix(horizon, low, smoothStep(0.0f, 0.16f, height));
    c = mix(c, middle, smoothStep(0.08f, 0.34f, height));
    c = mix(c, zenith, smoothStep(0.25f, 0.9f, height));

    const float glow = std::max(dot(direction, sun), 0.0f);
    c = c + rgb(0xff7a30) * (0.26f * std::pow(glow, 8.0f)) + rgb(0xffd9a8) * (0.42f * std::pow(glow, 60.0f));

    // A flat layer of clouds, seen under the angle of the view, lit on the side of the sun.
    const float reach = 1 / (height + 0.11f);
    const float x = direction.x * reach, y = direction.y * reach;
    const float d = cloudAt(x, y);
    const float cover = smoothStep(0.525f, 0.66f, d) * smoothStep(0.03f, 0.13f, height);
    const float lit = clamp01(0.5f + 7 * (d - cloudAt(x + sunFlat.x * 0.22f, y + sunFlat.y * 0.22f)));
    const Rgba shade = mix(rgb(0x8f86a0), rgb(0xc08f88), towards);
    const Rgba bright = mix(rgb(0xf4cdb4), rgb(0xfff0cc), towards);
    c = mix(c, mix(shade, bright, lit), 0.88f * cover);
    return {clamp01(c.r), clamp01(c.g), clamp01(c.b), 1};
}

float skyElevation(float v)
{
    return 0.5f * pi * std::pow(v, 1.7f);
}

Image paintSky(float fromAzimuth, Vec3 sun)
{
    return paint(
        1024, 512,
        [&](float u, float v)
        {
            const float azimuth = fromAzimuth + u * pi, elevation = skyElevation(v);
            const float flat = std::cos(elevation);
            return skyColour({flat * std::cos(azimuth), flat * std::sin(azimuth), std::sin(elevation)}, sun);
        },
        1);
}

// Ripples that are longer across than along the wind. Troughs let the reflections through, crests catch the
// sky.
Image paintWater()
{
    const auto height = [](float u, float v)
    {
        const float bend = 0.05f * (noise(u * 3, v * 4, 3, 4, 311) - 0.5f);
        const float swell = clouds(u + bend, v, 3, 9, 2, 312);
        const float ripple = clouds(u, v + bend, 7, 30, 3, 313);
        return 0.5f * swell + 0.5f * ripple;
    };
    return paint(512, 512,
                 [&](float u, float v)
                 {
                     const float h = height(u, v);
                     const float face = (h - height(u, v + 0.012f)) * 9;
                     const float lit = smoothStep(-0.2f, 1.0f, face);
                     Rgba c = mix(rgb(0x1a2640), rgb(0x66688c), smoothStep(0.25f, 0.75f, h));
                     c = mix(c, rgb(0xe8b98c), 0.65f * lit * lit);
                     const float spark = smoothStep(0.66f, 0.74f, h) * smoothStep(0.15f, 0.5f, face);
                     c = mix(c, rgb(0xffe9c0), spark);
                     c.a = clamp01(0.17f + 0.36f * smoothStep(0.35f, 0.65f, h) + 0.3f * lit * lit +
                                   0.4f * spark);
                     return c;
                 });
}

Image paintHills()
{
    const auto crown = [](float u, float v) { return cellAt(u, v, 40, 40, 0.9f, 321); };
    Image image =
        paint(512, 512,
              [&](float u, float v)
              {
                  const float wood = smoothStep(0.44f, 0.52f, clouds(u, v, 5, 5, 4, 322));
                  const Cell field = cellAt(u + 0.05f * noise(u * 8, v * 8, 8, 8, 323), v, 7, 7, 0.9f, 324);
                  const float kind = randomValue(field.id, 325);
                  Rgba meadow = kind < 0.4f ? rgb(0x8d8c4a) : kind < 0.7f ? rgb(0xb59f58) : rgb(0x6f8a44);
                  meadow = meadow * (0.85f + 0.3f * clouds(u, v, 30, 30, 3, 326));
                  meadow = mix(rgb(0x46552c), meadow, smoothStep(0.01f, 0.05f, field.edge));
                  const Cell c = crown(u, v);
                  Rgba tree = mix(rgb(0x2f4424), rgb(0x6a7434), randomValue(c.id, 327));
                  tree = tree * mix(0.5f, 1.1f, smoothStep(0.0f, 0.3f, c.edge));
                  // The haze of the evening takes some of the colour away.
                  return mix(mix(meadow, tree, wood), rgb(0xc4a98e), 0.26f);
              });
    emboss(image, 0.9f,
           [&](float u, float v)
           {
               const float wood = smoothStep(0.44f, 0.52f, clouds(u, v, 5, 5, 4, 322));
               return Rgba{wood * (0.4f + smoothStep(0.0f, 0.35f, crown(u, v).edge)), 0, 0, 1};
           });
    return image;
}

// So far off that only light and shade and the haze are left.
Image paintFarHills()
{
    return paint(128, 128,
                 [](float u, float v)
                 {
                     const Rgba c = mix(rgb(0x7f7a78), rgb(0xa2968a), clouds(u, v, 6, 6, 5, 328));
                     return mix(c, rgb(0xc9aa9c), 0.45f);
                 });
}

Image paintGrass()
{
    return paint(256, 256,
                 [](float u, float v)
                 {
                     const float blades = clouds(u, v, 40, 20, 3, 331);
                     const Rgba c = mix(rgb(0x4a5a28), rgb(0x97984c), blades);
                     return mix(c, rgb(0x8f8058), 0.7f * smoothStep(0.55f, 0.7f, clouds(u, v, 4, 4, 4, 332)));
                 });
}

// One leaf: an ellipse with a rib, painted over what is there.
static void stampLeaf(Image& image, Vec2 middle, float turn, float size, Rgba colour)
{
    const auto scale = static_cast<float>(image.width);
    const float c = std::cos(turn), s = std::sin(turn);
    const int reach = static_cast<int>(size * scale) + 2;
    const int mx = static_cast<int>(middle.x * scale), my = static_cast<int>(middle.y * scale);
    for (int y = std::max(my - reach, 0); y <= std::min(my + reach, image.height - 1); ++y)
    {
        for (int x = std::max(mx - reach, 0); x <= std::min(mx + reach, image.width - 1); ++x)
        {
            const float dx = (static_cast<float>(x) + 0.5f) / scale - middle.x;
            const float dy = (static_cast<float>(y) + 0.5f) / scale - middle.y;
            const float along = (c * dx + s * dy) / size, across = (c * dy - s * dx) / size;
            const float width = 0.46f * (1 - along * along);
            const float inside = smoothStep(0.0f, 0.12f, width - std::abs(across));
            if (std::abs(along) > 1 || inside <= 0)
                continue;
            Rgba& pixel = image.at(x, y);
            const float alpha = std::max(pixel.a, inside);
            pixel =
                mix(pixel, colour * (0.85f + 0.5f * across + (std::abs(across) < 0.05f ? 0.15f : 0)), inside);
            pixel.a = alpha;
        }
    }
}

// Leaves in a round heap, the upper left ones catching the light.
static Image leafHeap(int size, int count, float leaf, Rgba dark, Rgba light, uint32_t seed)
{
    Image image{size, size, std::vector<Rgba>(static_cast<size_t>(size * size), {dark.r, dark.g, dark.b, 0})};
    for (int i = 0; i < count; ++i)
    {
        const auto id = static_cast<uint32_t>(i);
        const float angle = randomValue(id, 1, seed) * 2 * pi;
        const float radius =
            0.42f * std::sqrt(randomValue(id, 2, seed)) * (0.75f + 0.25f * std::sin(angle * 5 + 1));
        const Vec2 middle = {0.5f + radius * std::cos(angle), 0.5f + radius * std::sin(angle)};
        const float depth = static_cast<float>(i) / static_cast<float>(count);
        const float sunny = clamp01(0.35f * depth + 0.9f * (0.55f + middle.y - middle.x * 0.7f - 0.4f));
        const Rgba colour = mix(dark, light, clamp01(sunny * (0.5f + 0.8f * randomValue(id, 3, seed))));
        stampLeaf(image, middle, randomValue(id, 4, seed) * 2 * pi,
                  leaf * (0.7f + 0.6f * randomValue(id, 5, seed)), colour);
    }
    return image;
}

Image paintLeaves()
{
    return leafHeap(256, 420, 0.05f, rgb(0x2c3d1a), rgb(0xa6a64a), 341);
}

Image paintIvy()
{
    return leafHeap(256, 330, 0.055f, rgb(0x23351a), rgb(0x7f9440), 351);
}

// Geraniums over the rim of a box.
Image paintFlowers()
{
    Image image = leafHeap(128, 160, 0.07f, rgb(0x2b4420), rgb(0x7f9a44), 361);
    for (uint32_t i = 0; i < 46; ++i)
    {
        const float angle = randomValue(i, 1, 362) * 2 * pi,
                    radius = 0.36f * std::sqrt(randomValue(i, 2, 362));
        const Rgba petal = mix(rgb(0xd8303a), rgb(0xff8fa0), randomValue(i, 3, 362));
        stampLeaf(image, {0.5f + radius * std::cos(angle), 0.55f + 0.8f * radius * std::sin(angle)},
                  angle * 3, 0.04f, petal);
    }
    return image;
}

Image paintReflection(Vec3 sun)
{
    return paint(128, 128,
                 [&](float u, float v)
                 {
                     const float x = u * 2 - 1, y = v * 2 - 1;
                     const float z = std::sqrt(std::max(0.0f, 1 - std::min(1.0f, x * x + y * y)));
                     return skyColour(unit({x, y, z * 0.8f + 0.05f}), sun);
                 });
}

} // namespace sample
