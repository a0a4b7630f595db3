// Noise by Perlin's lattice method with a smooth fade ("Improving Noise", 2002), and cells after Worley ("A
// Cellular Texture Basis Function", 1996).

#include "samples/painting.h"

#include <algorithm>
#include <array>

namespace sample
{

static int wrap(int i, int period)
{
    const int m = i % period;
    return m < 0 ? m + period : m;
}

static float fade(float t)
{
    return t * t * t * (t * (t * 6 - 15) + 10);
}

static float slope(int x, int y, uint32_t seed, float dx, float dy)
{
    static const std::array<Vec2, 64> directions = []
    {
        std::array<Vec2, 64> all;
        for (size_t i = 0; i < all.size(); ++i)
        {
            const float a = 2 * pi * static_cast<float>(i) / 64;
            all[i] = {std::cos(a), std::sin(a)};
        }
        return all;
    }();
    const float chosen = randomValue(static_cast<uint32_t>(x), static_cast<uint32_t>(y), seed) * 64;
    const Vec2 d = directions[static_cast<size_t>(chosen)];
    return d.x * dx + d.y * dy;
}

float noise(float x, float y, int px, int py, uint32_t seed)
{
    const float fx = std::floor(x), fy = std::floor(y);
    const int x0 = wrap(static_cast<int>(fx), px), y0 = wrap(static_cast<int>(fy), py);
    const int x1 = wrap(x0 + 1, px), y1 = wrap(y0 + 1, py);
    const float dx = x - fx, dy = y - fy;
    const float low = mix(slope(x0, y0, seed, dx, dy), slope(x1, y0, seed, dx - 1, dy), fade(dx));
    const float high = mix(slope(x0, y1, seed, dx, dy - 1), slope(x1, y1, seed, dx - 1, dy - 1), fade(dx));
    return clamp01(0.5f + 0.75f * mix(low, high, fade(dy)));
}

float clouds(float u, float v, int cu, int cv, int octaves, uint32_t seed)
{
    float sum = 0, weight = 0, strength = 1;
    for (int o = 0; o < octaves; ++o)
    {
        const uint32_t octaveSeed = seed + static_cast<uint32_t>(o) * 977;
        sum += strength * noise(u * static_cast<float>(cu), v * static_cast<float>(cv), cu, cv, octaveSeed);
        weight += strength;
        strength *= 0.55f;
        cu *= 2;
        cv *= 2;
    }
    return sum / weight;
}

static float noiseInSpace(Vec3 p, uint32_t seed)
{
    const Vec3 f = {std::floor(p.x), std::floor(p.y), std::floor(p.z)};
    const Vec3 d = p - f;
    const auto corner = [&](int i, int j, int k)
    {
        const auto lattice = [](float base, int step)
        { return static_cast<uint32_t>(static_cast<int>(base) + step); };
        return randomValue(lattice(f.x, i), lattice(f.y, j) * 131 + lattice(f.z, k) * 7919, seed);
    };
    const auto row = [&](int j, int k) { return mix(corner(0, j, k), corner(1, j, k), fade(d.x)); };
    const auto layer = [&](int k) { return mix(row(0, k), row(1, k), fade(d.y)); };
    return mix(layer(0), layer(1), fade(d.z));
}

float cloudsInSpace(Vec3 p, int octaves, uint32_t seed)
{
    float sum = 0, weight = 0, strength = 1;
    for (int o = 0; o < octaves; ++o)
    {
        sum += strength * noiseInSpace(p, seed + static_cast<uint32_t>(o) * 977);
        weight += strength;
        strength *= 0.5f;
        p = p * 2.03f;
    }
    return sum / weight;
}

Cell cellAt(float u, float v, int cu, int cv, float jitter, uint32_t seed)
{
    const float x = u * static_cast<float>(cu), y = v * static_cast<float>(cv);
    const int ix = static_cast<int>(std::floor(x)), iy = static_cast<int>(std::floor(y));
    float nearest = 9, second = 9;
    uint32_t id = 0;
    for (int j = iy - 1; j <= iy + 1; ++j)
    {
        for (int i = ix - 1; i <= ix + 1; ++i)
        {
            const auto wx = static_cast<uint32_t>(wrap(i, cu)), wy = static_cast<uint32_t>(wrap(j, cv));
            const float ox = 0.5f + jitter * (randomValue(wx, wy, seed) - 0.5f);
            const float oy = 0.5f + jitter * (randomValue(wx, wy, seed + 1) - 0.5f);
            const float dx = static_cast<float>(i) + ox - x, dy = static_cast<float>(j) + oy - y;
            const float d = std::sqrt(dx * dx + dy * dy);
            if (d < nearest)
            {
                second = nearest;
                nearest = d;
                id = wx * 7919 + wy;
            }
            else if (d < second)
                second = d;
        }
    }
    return {(second - nearest) * 0.5f, id};
}

Course courseAt(float u, float v, int across, int courses, float unevenness, uint32_t seed)
{
    const float y = v * static_cast<float>(courses);
    const int row = wrap(static_cast<int>(std::floor(y)), courses);
    const float t = fraction(y);
    const float shift = (row % 2 ? 0.5f : 0) + unevenness * randomValue(static_cast<uint32_t>(row), 5, seed);
    const float x = u * static_cast<float>(across) + shift;
    const auto border = [&](int i)
    {
        const auto k = static_cast<uint32_t>(wrap(i, across) * 512 + row);
        return static_cast<float>(i) + unevenness * 0.8f * (randomValue(k, 9, seed) - 0.5f);
    };
    int stone = static_cast<int>(std::floor(x));
    if (x < border(stone))
        --stone;
    else if (x >= border(stone + 1))
        ++stone;
    const float left = border(stone), right = border(stone + 1);
    const float stretch = static_cast<float>(courses) / static_cast<float>(across);
    const float edge = std::min(std::min(x - left, right - x) * stretch, std::min(t, 1 - t));
    return {edge, (x - left) / (right - left), t, static_cast<uint32_t>(wrap(stone, across) * 512 + row)};
}

Image paint(int width, int height, const Painter& painter, int across)
{
    Image image{width, height, std::vector<Rgba>(static_cast<size_t>(width) * static_cast<size_t>(height))};
    const int samples = across * across;
    const auto inside = [across](int sample)
    { return (static_cast<float>(sample) + 0.5f) / static_cast<float>(across); };
    for (int y = 0; y < height; ++y)
    {
        for (int x = 0; x < width; ++x)
        {
            Rgba sum = {0, 0, 0, 0};
            for (int s = 0; s < samples; ++s)
            {
                const Rgba c =
                    painter((static_cast<float>(x) + inside(s % across)) / static_cast<float>(width),
                            (static_cast<float>(y) + inside(s / across)) / static_cast<float>(height));
                sum = {sum.r + c.r, sum.g + c.g, sum.b + c.b, sum.a + c.a};
            }
            const float share = 1 / static_cast<float>(samples);
            image.at(x, y) = {sum.r * share, sum.g * share, sum.b * share, sum.a * share};
        }
    }
    return image;
}

Rgba smoothAt(const Image& image, float u, float v)
{
    const int x = static_cast<int>(u * static_cast<float>(image.width)) - 2;
    const int y = static_cast<int>(v * static_cast<float>(image.height)) - 2;
    Rgba sum = {0, 0, 0, 0};
    for (int i = 0; i < 16; ++i)
    {
        const Rgba& c = image.at(wrap(x + i % 4, image.width), wrap(y + i / 4, image.height));
        sum = {sum.r + c.r, sum.g + c.g, sum.b + c.b, sum.a + c.a};
    }
    return {sum.r / 16, sum.g / 16, sum.b / 16, sum.a / 16};
}

void emboss(Image& image, float depth, const Painter& relief)
{
    const Image heights = paint(image.width, image.height, relief, 1);
    for (int y = 0; y < image.height; ++y)
    {
        for (int x = 0; x < image.width; ++x)
        {
            const int left = wrap(x - 1, image.width), up = wrap(y + 1, image.height);
            const float rise = heights.at(x, y).r * 2 - heights.at(left, y).r - heights.at(x, up).r;
            image.at(x, y) = image.at(x, y) * std::clamp(1 + depth * rise, 0.4f, 1.7f);
        }
    }
}

} // namespace sample
