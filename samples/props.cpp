// Things on the quays, each a few turned bodies, boxes and rods.

#include "samples/props.h"

#include <algorithm>

#include "samples/landscape.h"
#include "samples/motion.h"

namespace sample
{

constexpr float lampHeight = 3.55f; ///< of the flame above the quay

struct Spot
{
    float x, y;
    float turn = 0;
    float size = 1;
};

static const Spot standingBarrels[] = {
    {8.9f, -15.2f, 10}, {8.15f, -14.6f, 70},       {9.0f, -14.2f, 130, 0.9f},
    {1.9f, -9.4f, 40},  {1.25f, -8.6f, 200, 0.9f}, {8.8f, 3.4f, 15},
    {8.1f, 4.0f, 99},   {-5.6f, 53.6f, 30},        {-6.4f, 53.9f, 80}};
static const Spot lyingBarrels[] = {{2.55f, -8.35f, 65}, {7.3f, -13.4f, -25, 0.9f}};
static const Spot crates[] = {
    {1.5f, -13.0f, 8, 0.95f}, {2.55f, -12.6f, -6, 0.85f}, {1.75f, -11.9f, 20, 0.75f}, {8.7f, -6.6f, 3, 0.9f},
    {8.75f, -5.6f, -8, 0.8f}, {2.2f, 8.6f, 10, 0.9f},     {1.4f, 16.8f, -12, 1.0f},   {2.6f, 17.2f, 12, 0.8f},
    {-13, 52.5f, 5, 1.1f},    {-14.4f, 52.8f, -9, 0.9f}};
static const Spot upperCrates[] = {{1.95f, -12.65f, 31, 0.7f}, {8.7f, -6.1f, 22, 0.65f}};
static const Spot bollards[] = {{0.55f, -17.6f}, {0.55f, -11.0f}, {0.55f, -2.2f}, {0.55f, 5.4f},
                                {0.55f, 14.0f},  {0.55f, 23.0f},  {0.55f, 32.0f}};
static const Spot coils[] = {{1.1f, -16.9f}, {1.25f, -3.0f, 40, 0.85f}, {1.2f, 14.7f, 0, 0.9f}};
static const Spot baskets[] = {
    {3.4f, -12.9f}, {3.0f, -13.7f, 30, 0.85f}, {6.9f, 1.2f}, {6.2f, 1.7f, 0, 0.9f}, {9.1f, -7.6f, 0, 0.9f}};

const std::vector<Vec3>& lampPlaces()
{
    static const std::vector<Vec3> places = []
    {
        std::vector<Vec3> all;
        for (const float y : {-10.5f, 1.5f, 14.0f, 26.5f, 38.5f})
            all.push_back({8.2f, y, quayHeight + lampHeight});
        for (const float x : {-4.0f, -16.0f, -28.0f})
            all.push_back({x, 47.3f, quayHeight + lampHeight});
        return all;
    }();
    return places;
}

Vec3 nearestBollard(float y)
{
    const Spot* nearest = bollards;
    for (const Spot& s : bollards)
    {
        if (std::abs(s.y - y) < std::abs(nearest->y - y))
            nearest = &s;
    }
    return {nearest->x, nearest->y, quayHeight + 0.4f};
}

static Vec3 onQuay(const Spot& s, float z = 0)
{
    return {s.x, s.y, quayHeight + z};
}

static void lamp(Builder& b, Vec3 flame)
{
    const Vec3 foot = flame - Vec3{0, 0, lampHeight};
    b.material = iron;
    b.turned(foot,
             {{0.22f, 0, 0},
              {0.08f, 0.6f, 0.6f},
              {0.055f, 2.95f, 2.2f},
              {0.12f, 3.05f, 2.3f},
              {0.05f, 3.15f, 2.4f}},
             6, 1);
    const float low = 3.25f;
    b.material = lampGlass;
    b.turned(foot, {{0.165f, low, 0.02f}, {0.26f, low + 0.52f, 0.98f, true}}, 6, 6);
    b.material = iron;
    b.turned(foot,
             {{0.32f, low + 0.52f, 0},
              {0.3f, low + 0.56f, 0.1f, true},
              {0.08f, low + 0.8f, 0.4f},
              {0, low + 1.0f, 0.6f}},
             6, 1);
}

static void barrelBody(Builder& b, bool lidBelow)
{
    b.material = barrel;
    const float h = 0.98f;
    b.turned({},
             {{0.30f, 0, 0},
              {0.378f, 0.32f * h, 0.32f},
              {0.378f, 0.68f * h, 0.68f},
              {0.30f, h, 1, true},
              {0.26f, h - 0.05f, 0.93f}},
             10, 1);
    b.material = planksWarm;
    b.disc({0, 0, h - 0.05f}, 0.27f, 9, {{0, 0}, {0.4f, 0.4f}});
    if (lidBelow)
        b.disc({0, 0, 0.02f}, 0.29f, -9, {{0, 0}, {0.4f, 0.4f}});
}

static void barrels(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Barrels");
    Builder b(mesh);
    for (const Spot& s : standingBarrels)
    {
        b.frame = Frame::turned(onQuay(s), s.turn);
        b.frame.x = b.frame.x * s.size;
        b.frame.y = b.frame.y * s.size;
        b.frame.z = b.frame.z * s.size;
        barrelBody(b, false);
    }
    for (const Spot& s : lyingBarrels)
    {
        Frame f = Frame::turned(onQuay(s, 0.37f * s.size), s.turn);
        b.frame = {f.origin, f.y * s.size, f.z * s.size, f.x * s.size};
        barrelBody(b, true);
    }
}

static void cratesAndBaskets(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Crates");
    Builder b(mesh);
    b.cell = 0.5f;
    const auto crateAt = [&](const Spot& s, float z)
    {
        b.frame = Frame::turned(onQuay(s, z), s.turn);
        b.material = crateWood;
        const float half = s.size / 2;
        b.crate({-half, -half, 0.01f}, {half, half, s.size * 0.86f}, {});
    };
    for (const Spot& s : crates)
        crateAt(s, 0);
    crateAt(upperCrates[0], 0.86f * 0.85f);
    crateAt(upperCrates[1], 0.86f * 0.9f);

    Mesh& more = scene.addMesh("Baskets and coils");
    Builder m(more);
    for (const Spot& s : baskets)
    {
        m.frame = Frame::turned(onQuay(s), s.turn);
        m.material = planksWarm;
        m.turned({},
                 {{0.26f * s.size, 0, 0},
                  {0.36f * s.size, 0.4f * s.size, 0.4f, true},
                  {0.33f * s.size, 0.4f * s.size, 0.42f, true},
                  {0.3f * s.size, 0.28f * s.size, 0.5f}},
                 8, 3);
        m.material = canvas;
        m.disc({0, 0, 0.3f * s.size}, 0.31f * s.size, 8, {});
    }
    for (const Spot& s : coils)
    {
        m.frame = Frame::turned(onQuay(s), s.turn);
        m.material = canvas;
        for (int ring = 0; ring < 3; ++ring)
        {
            const float z = 0.11f * static_cast<float>(ring);
            const float r = (0.42f - 0.02f * static_cast<float>(ring)) * s.size;
            m.turned({0, 0, z}, {{r - 0.03f, 0, 0}, {r + 0.03f, 0.055f, 0.25f}, {r - 0.12f, 0.11f, 0.6f}}, 9,
                     6);
        }
    }
}

static void bollardsAndChain(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Bollards");
    Builder b(mesh);
    b.material = iron;
    for (const Spot& s : bollards)
        b.turned(
            onQuay(s),
            {{0.2f, 0, 0}, {0.14f, 0.34f, 0.4f}, {0.25f, 0.47f, 0.6f}, {0.23f, 0.56f, 0.7f}, {0, 0.6f, 1}}, 7,
            2);
    // Iron ladders down to the water.
    for (const float y : {-7.2f, 19.0f})
    {
        for (const float side : {-0.2f, 0.2f})
            b.rod({-0.12f, y + side, 0}, {-0.12f, y + side, quayHeight + 0.1f}, 0.025f, 0.025f, 3, 1);
        for (int i = 0; i < 5; ++i)
        {
            const float z = 0.15f + 0.3f * static_cast<float>(i);
            b.rod({-0.12f, y - 0.2f, z}, {-0.12f, y + 0.2f, z}, 0.018f, 0.018f, 3, 1);
        }
    }
}

// A wooden crane that turns on its foot, with a crate on its hook.
static void crane(Scene& scene)
{
    Mesh& foot = scene.addMesh("Crane");
    Builder f(foot);
    f.frame = Frame::turned({1.9f, 19.6f, quayHeight}, 8);
    f.material = rock;
    f.turned({}, {{0.75f, 0, 0}, {0.7f, 0.3f, 0.3f, true}, {0.1f, 0.32f, 0.5f}}, 10, 3);

    Mesh& jib = scene.addMesh("Crane jib");
    Builder b(jib);
    b.frame = f.frame;
    b.material = planksGrey;
    b.cell = 1;
    b.box({-0.17f, -0.17f, 0.3f}, {0.17f, 0.17f, 5.4f}, 1.4f);
    const auto beam = [&](Vec3 from, Vec3 to, float r) { b.rod(from, to, r, r, 4, 1.4f); };
    beam({0.9f, 0, 5.0f}, {-3.6f, 0, 6.0f}, 0.17f);
    beam({0, 0, 2.2f}, {-2.4f, 0, 5.62f}, 0.13f);
    beam({0.8f, 0, 5.0f}, {0.15f, 0, 1.0f}, 0.1f);
    b.material = iron;
    b.rod({-3.4f, 0, 5.95f}, {-3.4f, 0, 3.5f}, 0.025f, 0.025f, 3, 1);
    b.rod({-3.4f, 0, 5.95f}, {0.1f, 0, 1.3f}, 0.02f, 0.02f, 4, 1);
    b.rod({-0.28f, -0.3f, 1.3f}, {-0.28f, 0.3f, 1.3f}, 0.15f, 0.15f, 8, 1);

    jib.parent = foot.name;
    jib.pivot = b.frame.origin;
    jib.hasPivot = true;
    jib.rotations = turning({0, 0, 1}, 10, [](float t) { return 0.65f * swing(t, 1); });

    // The load hangs on the jib and sways.
    Mesh& load = scene.addMesh("Crane load");
    Builder l(load);
    l.frame = Frame::turned(b.frame.point({-3.4f, 0, 2.55f}), 30);
    l.material = crateWood;
    l.crate({-0.45f, -0.45f, 0}, {0.45f, 0.45f, 0.75f}, {}, "xXyYzZ");
    l.material = canvas;
    for (const float x : {-0.42f, 0.42f})
    {
        l.rod({x, -0.42f, 0.75f}, {0, 0, 1.0f}, 0.02f, 0.02f, 3, 1);
        l.rod({x, 0.42f, 0.75f}, {0, 0, 1.0f}, 0.02f, 0.02f, 3, 1);
    }
    load.parent = jib.name;
    load.pivot = b.frame.point({-3.4f, 0, 5.95f});
    load.hasPivot = true;
    load.rotations = turning({0, 1, 0}, 10, [](float t) { return 0.05f * swing(t, 3); });
}

static void stallAndCart(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Stall");
    Builder b(mesh);
    b.frame = Frame::turned({7.4f, -1.2f, quayHeight}, -90);
    b.material = planksGrey;
    for (const float x : {-1.3f, 1.3f})
    {
        b.rod({x, -0.7f, 0}, {x, -0.7f, 2.15f}, 0.05f, 0.05f, 5, 1);
        b.rod({x, 0.8f, 0}, {x, 0.8f, 2.5f}, 0.05f, 0.05f, 5, 1);
    }
    b.material = planksWarm;
    b.cell = 0.7f;
    b.box({-1.25f, -0.6f, 0.12f}, {1.25f, 0.5f, 0.85f}, 1.4f, "xXyYZ");
    b.material = awning;
    b.panel({-1.5f, -1.15f, 2.05f}, {3, 0, 0}, {0, 2.1f, 0.5f}, {{0, 0.15f}, {1, 1}});
    b.panel({-1.5f, -1.15f, 1.85f}, {3, 0, 0}, {0, 0, 0.2f}, {{0, 0}, {1, 0.15f}});
    b.material = crateWood;
    for (int i = 0; i < 3; ++i)
    {
        const float x = -0.95f + 0.8f * static_cast<float>(i);
        b.crate({x - 0.32f, -0.5f, 0.86f}, {x + 0.32f, 0, 1.06f}, {}, "xXyYZ");
    }

    Mesh& cart = scene.addMesh("Handcart");
    Builder c(cart);
    c.frame = Frame::turned({6.1f, -10.6f, quayHeight}, 28);
    c.material = planksGrey;
    c.cell = 0.6f;
    c.box({-0.55f, -0.9f, 0.55f}, {0.55f, 0.9f, 0.62f}, 1.2f);
    for (const float x : {-0.55f, 0.5f})
        c.box({x, -0.9f, 0.62f}, {x + 0.05f, 0.9f, 0.92f}, 1.2f, "xXyYZ");
    c.box({-0.5f, 0.85f, 0.62f}, {0.5f, 0.9f, 0.92f}, 1.2f, "yYZ");
    for (const float x : {-0.4f, 0.4f})
        c.rod({x, -0.8f, 0.58f}, {x * 0.8f, -2.0f, 0.15f}, 0.035f, 0.03f, 5, 1);
    for (const float x : {-0.66f, 0.66f})
    {
        for (int i = 0; i < 10; ++i)
        {
            const auto rim = [x](int k)
            {
                const float a = 2 * pi * static_cast<float>(k) / 10;
                return Vec3{x, 0.1f + 0.5f * std::cos(a), 0.5f + 0.5f * std::sin(a)};
            };
            c.rod(rim(i), rim(i + 1), 0.035f, 0.035f, 3, 1);
            if (i % 2 == 0)
                c.rod({x, 0.1f, 0.5f}, rim(i), 0.02f, 0.02f, 3, 1);
        }
    }
    c.material = canvas;
    for (int i = 0; i < 3; ++i)
    {
        const float y = -0.5f + 0.45f * static_cast<float>(i);
        c.turned({0.05f * static_cast<float>(i % 2) - 0.1f, y, 0.62f},
                 {{0.27f, 0, 0},
                  {0.36f, 0.2f, 0.3f},
                  {0.26f, 0.48f, 0.7f},
                  {0.08f, 0.58f, 0.9f},
                  {0.12f, 0.68f, 1}},
                 7, 2, 0.7f);
    }
}

// An old anchor, leaning on its stock.
static void anchor(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Anchor");
    Builder b(mesh);
    b.material = iron;
    b.frame = Frame::turned({4.35f, -15.6f, quayHeight + 0.1f}, 63);
    b.frame.z = unit(b.frame.z + b.frame.y * 2.4f);
    b.frame.y = cross(b.frame.z, b.frame.x);
    b.rod({0, 0, 0}, {0, 0, 1.55f}, 0.07f, 0.05f, 6, 0.6f);
    b.rod({0, -0.62f, 1.36f}, {0, 0.62f, 1.36f}, 0.04f, 0.04f, 5, 0.6f);
    for (const float side : {-1.0f, 1.0f})
    {
        b.rod({0, 0, 0.02f}, {side * 0.34f, 0, 0.1f}, 0.08f, 0.07f, 5, 0.6f);
        b.rod({side * 0.34f, 0, 0.1f}, {side * 0.6f, 0, 0.36f}, 0.07f, 0.045f, 5, 0.6f);
        b.rod({side * 0.47f, -0.16f, 0.3f}, {side * 0.62f, 0, 0.5f}, 0.03f, 0.03f, 3, 0.6f);
        b.rod({side * 0.47f, 0.16f, 0.3f}, {side * 0.62f, 0, 0.5f}, 0.03f, 0.03f, 3, 0.6f);
    }
    for (int i = 0; i < 8; ++i)
    {
        const auto ring = [](int k)
        {
            const float a = 2 * pi * static_cast<float>(k) / 8;
            return Vec3{0.13f * std::cos(a), 0, 1.67f + 0.13f * std::sin(a)};
        };
        b.rod(ring(i), ring(i + 1), 0.025f, 0.025f, 3, 0.6f);
    }
}

// The drying rack; its net comes with the blended meshes.
static const Vec3 rackFrom = {5.9f, 9.2f, quayHeight}, rackTo = {4.9f, 13.4f, quayHeight};

static void rack(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Drying rack");
    Builder b(mesh);
    b.material = planksGrey;
    for (const Vec3 end : {rackFrom, rackTo})
    {
        b.rod(end + Vec3{-0.7f, 0, 0}, end + Vec3{0.06f, 0, 2.45f}, 0.06f, 0.05f, 5, 1.2f);
        b.rod(end + Vec3{0.7f, 0, 0}, end + Vec3{-0.06f, 0, 2.45f}, 0.06f, 0.05f, 5, 1.2f);
    }
    b.rod(rackFrom + Vec3{0.05f, -0.3f, 2.3f}, rackTo + Vec3{-0.05f, 0.3f, 2.3f}, 0.055f, 0.055f, 5, 1.2f);
}

void addProps(Scene& scene)
{
    Mesh& lamps = scene.addMesh("Lamps");
    Builder b(lamps);
    for (const Vec3 flame : lampPlaces())
        lamp(b, flame);
    barrels(scene);
    cratesAndBaskets(scene);
    bollardsAndChain(scene);
    crane(scene);
    stallAndCart(scene);
    rack(scene);
    anchor(scene);
}

// Soft dark patches where things touch the ground: the light is worked out at vertices, which lie too far
// apart for these.
void addShades(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Shades");
    Builder b(mesh);
    b.material = shade;
    const auto patch = [&](Vec3 p, float turn, float width, float depth)
    {
        b.frame = Frame::turned({p.x, p.y, quayHeight + 0.014f}, turn);
        b.card({}, {width, 0, 0}, {0, depth, 0}, {});
    };
    for (const Spot& s : standingBarrels)
        patch(onQuay(s) + Vec3{0.12f, 0.04f, 0}, 0, 1.35f * s.size, 1.15f * s.size);
    for (const Spot& s : lyingBarrels)
        patch(onQuay(s), s.turn, 1.5f, 1.1f);
    for (const Spot& s : crates)
        patch(onQuay(s) + Vec3{0.12f, 0.03f, 0}, s.turn, 1.75f * s.size, 1.65f * s.size);
    for (const Spot& s : baskets)
        patch(onQuay(s) + Vec3{0.08f, 0, 0}, 0, 1.1f * s.size, 1.0f * s.size);
    for (const Spot& s : coils)
        patch(onQuay(s), 0, 1.5f * s.size, 1.4f * s.size);
    for (const Spot& s : bollards)
        patch(onQuay(s) + Vec3{0.05f, 0, 0}, 0, 0.85f, 0.8f);
    for (const Vec3 flame : lampPlaces())
        patch(flame, 0, 0.9f, 0.9f);
    patch({7.4f, -1.2f, 0}, 0, 2.6f, 4.2f);
    patch({6.1f, -10.6f, 0}, 28, 1.9f, 2.6f);
    patch({1.9f, 19.6f, 0}, 0, 2.2f, 2.2f);
    // Along the foot of the houses.
    b.frame = Frame::at({0, 0, quayHeight + 0.012f});
    for (int i = 0; i < 9; ++i)
        b.panel({9.15f, -26 + 8 * static_cast<float>(i), 0}, {0.95f, 0, 0}, {0, 8, 0},
                {{0, 0.5f}, {0.5f, 0.5f}});
    for (int i = 0; i < 5; ++i)
        b.panel({-34 + 9 * static_cast<float>(i), 54.1f, 0}, {9, 0, 0}, {0, 0.95f, 0},
                {{0.5f, 0}, {0.5f, 0.5f}});
}

void addNets(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Nets");
    Builder b(mesh);
    b.material = netting;
    const int columns = 8, rows = 5;
    for (const float side : {1.0f, -1.0f})
    {
        std::vector<Vec3> points;
        std::vector<Vec2> coords;
        for (int r = 0; r <= rows; ++r)
        {
            for (int c = 0; c <= columns; ++c)
            {
                const float s = static_cast<float>(c) / columns, t = static_cast<float>(r) / rows;
                const float sag = 0.22f * std::sin(s * pi * 3) * std::sin(s * pi * 3);
                const float fold = 0.1f * std::sin(s * 23 + t * 2) * (1 - t);
                Vec3 p = mix(rackFrom, rackTo, s);
                p = p + Vec3{side * (0.05f + (1 - t) * 0.55f) + fold, 0,
                             0.3f + sag * (1 - t) + t * (2.02f - sag * 0.3f)};
                points.push_back(p);
                coords.push_back({s * 3.4f, t * 1.6f + (side > 0 ? 0 : 0.37f)});
            }
        }
        b.net(points, coords, columns + 1, b.newGroup());
    }
}

} // namespace sample
