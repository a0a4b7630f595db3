// A tower mill: the cap turns with the wind on the tower, the sails on the cap.
//
// The mill stands in a frame of its own: the sails look to -y, z = 0 is its foot.

#include "samples/mill.h"

#include "samples/landscape.h"
#include "samples/motion.h"

namespace sample
{

constexpr Vec2 millPlace = {8, 122};
constexpr float towerHeight = 14;
constexpr float sailLength = 10.5f, sailWidth = 2.3f;
constexpr Vec3 hub = {0, -3.4f, towerHeight + 1.1f};

static Frame millFrame()
{
    return Frame::turned({millPlace.x, millPlace.y, groundHeight(millPlace)}, -24);
}

// The wall of the tower at a part of its height.
static float wallRadius(float t)
{
    return 3.7f - 1.5f * std::sqrt(t);
}

static void openings(Builder& b)
{
    // Sunk at their feet and out at their heads, for the wall leans.
    const auto opening = [&](float middle, float low, float width, float height, Patch patch)
    {
        const float out = -wallRadius(low / towerHeight) - 0.03f;
        b.panel({middle - width / 2, out, low}, {width, 0, 0}, {0, 0.12f, height}, patch);
    };
    b.material = doors;
    opening(0, 0.3f, 1.5f, 2.7f, cellOf(2, 0, 4, 1));
    b.material = windowsLit;
    opening(0, 5.6f, 0.95f, 1.5f, cellOf(0, 0, 4, 2));
    opening(0, 9.4f, 0.85f, 1.3f, cellOf(0, 0, 4, 2));
}

static void gallery(Builder& b)
{
    const float z = 4.3f, r = 5.0f;
    const int posts = 12;
    b.material = planksGrey;
    b.turned({}, {{r, z, 0.5f}, {r, z + 0.2f, 0.55f, true}, {3, z + 0.21f, 1}}, posts, 6);
    for (int i = 0; i < posts; ++i)
    {
        const auto corner = [&](int k)
        {
            const float a = 2 * pi * static_cast<float>(k) / posts;
            return Vec3{(r - 0.1f) * std::cos(a), (r - 0.1f) * std::sin(a), z + 0.2f};
        };
        const Vec3 p = corner(i), up = {0, 0, 1.1f};
        b.rod(p, p + up, 0.07f, 0.07f, 3, 1);
        b.rod(p + up, corner(i + 1) + up, 0.07f, 0.07f, 3, 1);
        if (i % 2 == 0)
            b.rod(Vec3{p.x * 0.66f, p.y * 0.66f, z - 1.9f}, p - Vec3{0, 0, 0.2f}, 0.1f, 0.1f, 3, 1);
    }
}

void addMill(Scene& scene)
{
    Mesh& tower = scene.addMesh("Mill");
    Builder b(tower);
    b.frame = millFrame();
    b.material = plasterCream;
    std::vector<Ring> wall;
    for (const float t : {0.0f, 0.12f, 0.3f, 0.55f, 0.8f, 1.0f})
        wall.push_back({wallRadius(t), t * towerHeight, t});
    b.turned({}, wall, 14, 2);
    b.material = rock;
    b.turned({}, {{5.2f, -5, 0}, {4.4f, 0.25f, 2, true}, {3.4f, 0.26f, 2.3f}}, 14, 6);
    openings(b);
    gallery(b);

    Mesh& cap = scene.addMesh("Mill cap");
    Builder c(cap);
    c.frame = b.frame;
    c.material = roofTiles;
    c.turned(
        {0, 0, towerHeight},
        {{2.5f, -0.15f, 0}, {2.55f, 0.5f, 0.2f, true}, {2.3f, 1.3f, 0.5f}, {1.4f, 2.4f, 0.9f}, {0, 3, 1.2f}},
        12, 4);
    c.material = planksGrey;
    c.rod({0, 0.5f, towerHeight + 0.9f}, hub, 0.4f, 0.32f, 6, 1.5f);
    // The pole that turns the cap reaches down to the gallery.
    c.rod({0, 2.2f, towerHeight + 0.7f}, {0, 5.6f, 5.2f}, 0.14f, 0.1f, 4, 1.5f);
    for (const float x : {-1.9f, 1.9f})
        c.rod({x, 1.2f, towerHeight + 0.2f}, {0, 5.2f, 6.4f}, 0.1f, 0.08f, 4, 1.5f);
    cap.parent = tower.name;
    cap.pivot = b.frame.point({0, 0, towerHeight});
    cap.hasPivot = true;
    cap.rotations = turning({0, 0, 1}, 12, [](float t) { return 0.3f * swing(t, 1); });
}

void addMillSails(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Mill sails");
    Builder b(mesh);
    b.frame = millFrame();
    b.cell = 3.2f;
    for (int i = 0; i < 4; ++i)
    {
        const float a = pi / 2 * (static_cast<float>(i) + 0.22f), c = std::cos(a), s = std::sin(a);
        const Vec3 along = {c, 0, s}, side = {s, 0, -c};
        b.material = mastWood;
        b.rod(hub, hub + along * sailLength, 0.2f, 0.1f, 4, 2);
        b.material = sail;
        b.panel(hub + Vec3{0, -0.16f, 0} + along * 1.5f - side * 0.25f, side * sailWidth,
                along * (sailLength - 1.6f), {});
    }
    b.material = iron;
    b.rod(hub + Vec3{0, 0.2f, 0}, hub + Vec3{0, -0.5f, 0}, 0.45f, 0.2f, 6, 1);
    mesh.parent = "Mill cap";
    mesh.pivot = b.frame.point(hub);
    mesh.hasPivot = true;
    mesh.rotations = turning(b.frame.y, 12, [](float t) { return 4 * pi * t; });
}

} // namespace sample
