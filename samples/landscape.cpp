// Sky, hills, quays, mole, lighthouse and water.
//
// Reflections are geometry: what stands at the water is built a second time, coarser and mirrored below it,
// and the water is drawn over that with an opacity that changes from ripple to ripple.

#include "samples/landscape.h"

#include <algorithm>

#include "samples/motion.h"
#include "samples/textures.h"

namespace sample
{

constexpr float skyRadius = 1600;

static void skyHalf(Mesh& mesh, int material, float fromAzimuth, int columns, int rows, int mirrorShift)
{
    Builder b(mesh);
    b.material = material;
    b.mirrorShift = mirrorShift;
    std::vector<Vec3> points;
    std::vector<Vec2> coords;
    for (int r = 0; r <= rows; ++r)
    {
        for (int c = 0; c <= columns; ++c)
        {
            // Seen from inside, azimuth runs to the left.
            const float u = 1 - static_cast<float>(c) / static_cast<float>(columns);
            const float v = static_cast<float>(r) / static_cast<float>(rows);
            const float azimuth = fromAzimuth + u * pi, elevation = skyElevation(v);
            const float flat = skyRadius * std::cos(elevation);
            points.push_back(
                {flat * std::cos(azimuth), flat * std::sin(azimuth), skyRadius * std::sin(elevation)});
            // Half a pixel off the border, where the image would wrap round to its other end.
            coords.push_back({mix(0.5f / 1024, 1 - 0.5f / 1024, u), mix(1.0f / 512, 1 - 1.0f / 512, v)});
        }
    }
    b.net(points, coords, columns + 1, b.newGroup());
}

void addSky(Scene& scene)
{
    Mesh& sky = scene.addMesh("Sky");
    skyHalf(sky, skyFront, skySeam, 20, 9, 0);
    skyHalf(sky, skyBack, skySeam + pi, 9, 9, 0);
    Mesh& mirrored = scene.addMesh("Sky below");
    skyHalf(mirrored, skyFront, skySeam, 14, 7, materialCount);
    skyHalf(mirrored, skyBack, skySeam + pi, 6, 7, materialCount);
}

// Height of the land; it rises inland and falls to the open sea in the west.
static float landHeight(float azimuth, float distance)
{
    const float x = distance * std::cos(azimuth), y = distance * std::sin(azimuth);
    const float rise = smoothStep(62, 330, distance);
    const float west = smoothStep(2.06f, 1.5f, azimuth);
    const float shape = cloudsInSpace({x * 0.009f + 7, y * 0.009f + 3, 0}, 4, 601);
    const float ridge = mix(12, 62, shape * shape * 1.7f);
    return -1.5f + (rise * ridge + 3) * west + 3 * west * smoothStep(62, 80, distance);
}

float groundHeight(Vec2 place)
{
    return landHeight(std::atan2(place.y, place.x), std::sqrt(place.x * place.x + place.y * place.y));
}

// The land behind the first ridge, lower and longer to the west.
static float farHeight(float azimuth, float distance)
{
    const float shape = cloudsInSpace({azimuth * 2.3f + 1, 0, distance * 0.002f}, 5, 602);
    const float west = smoothStep(2.34f, 1.9f, azimuth);
    return -3 + west * (20 + 150 * shape * shape) * smoothStep(560, 900, distance);
}

using Height = float (*)(float azimuth, float distance);

// Land between two distances, seen from the harbour, finer near by. It ends a little below the water.
static void landStrip(Builder& b, Height height, Vec2 reach, Vec2 azimuths, int columns, int rows, float tile)
{
    // What mirrors the land stays below the water, too.
    const float seabed = b.mirrorShift ? 0.1f : -0.1f;
    std::vector<Vec3> points;
    std::vector<Vec2> coords;
    for (int r = 0; r <= rows; ++r)
    {
        for (int c = 0; c <= columns; ++c)
        {
            const float t = static_cast<float>(r) / static_cast<float>(rows);
            const float distance = mix(reach.x, reach.y, t * t);
            const float azimuth =
                mix(azimuths.x, azimuths.y, static_cast<float>(c) / static_cast<float>(columns));
            const Vec3 p = {distance * std::cos(azimuth), distance * std::sin(azimuth),
                            std::max(height(azimuth, distance), seabed)};
            points.push_back(p);
            coords.push_back({p.x / tile, p.y / tile});
        }
    }
    b.net(points, coords, columns + 1, b.newGroup());
}

// Takes the flat ground under the water away: through the water the mirrored sky is seen.
static void dropSeabed(Mesh& mesh)
{
    std::erase_if(mesh.faces,
                  [&](const Face& f)
                  {
                      return std::max({std::abs(mesh.points[f.a].z), std::abs(mesh.points[f.b].z),
                                       std::abs(mesh.points[f.c].z)}) < 0.11f;
                  });
}

void addHills(Scene& scene)
{
    Mesh &far = scene.addMesh("Far hills"), &near = scene.addMesh("Hills"),
         &below = scene.addMesh("Hills below");
    Builder f(far), n(near), m(below);
    f.material = farHills;
    landStrip(f, farHeight, {560, 900}, {2.4f, -0.9f}, 50, 2, 260);
    n.material = m.material = hills;
    landStrip(n, landHeight, {64, 484}, {2.1f, -0.95f}, 50, 7, 130);
    m.mirrorShift = materialCount;
    landStrip(m, landHeight, {64, 484}, {2.1f, -0.95f}, 20, 5, 130);
    for (Mesh* mesh : {&far, &near, &below})
        dropSeabed(*mesh);
}

// A stretch of quay wall from a to b, the water on the left of the way, with its coping.
static void wallAlong(Builder& b, Vec2 from, Vec2 to, float height)
{
    const Vec3 start = {from.x, from.y, -0.06f};
    const Vec3 along = Vec3{to.x, to.y, 0} - Vec3{from.x, from.y, 0};
    b.material = quayWall;
    const float len = length(along);
    // Vertices under the water or the coping lie in the dark: the rows next to them are kept narrow.
    const int columns = std::max(1, static_cast<int>(len / b.cell));
    std::vector<Vec3> points;
    std::vector<Vec2> coords;
    for (const float z : {0.0f, 0.16f, height - 0.2f, height + 0.06f})
    {
        for (int c = 0; c <= columns; ++c)
        {
            const float s = 1 - static_cast<float>(c) / static_cast<float>(columns);
            points.push_back(start + along * s + Vec3{0, 0, z});
            coords.push_back({(1 - s) * len / 6, 0.02f + 0.96f * z / (height + 0.06f)});
        }
    }
    b.net(points, coords, columns + 1, b.newGroup());
    if (b.mirrorShift)
        return;
    // The coping stands out over the wall a little.
    const Vec3 out = unit(Vec3{-along.y, along.x, 0}) * 0.12f;
    const Vec3 top = {from.x, from.y, height};
    b.material = rock;
    b.panel(top + along + out + Vec3{0, 0, -0.13f}, along * -1, {0, 0, 0.16f}, {{0, 0}, {len / 2, 0.09f}});
    b.panel(top + along + out + Vec3{0, 0, 0.03f}, along * -1, out * -5.0f, {{0, 0.1f}, {len / 2, 0.42f}});
}

constexpr float landsEnd = -48; ///< the western end of the ground behind the quays

void addQuays(Scene& scene)
{
    Mesh& ground = scene.addMesh("Quay");
    Builder b(ground);
    b.material = paving;
    const auto patch = [&](float x0, float y0, float x1, float y1, float size)
    {
        b.cell = size;
        b.panel({x0, y0, quayHeight}, {x1 - x0, 0, 0}, {0, y1 - y0, 0},
                {{x0 / 3.6f, y0 / 3.6f}, {x1 / 3.6f, y1 / 3.6f}});
    };
    patch(0.2f, -22, 10, -8, 0.68f);
    patch(0.2f, -8, 10, 8, 1.3f);
    patch(0.2f, 8, 10, 46, 2.3f);
    patch(0.2f, -46, 10, -22, 4.0f);
    patch(-37, 46, 10, 55, 2.2f);
    b.material = grass;
    b.cell = 8;
    b.panel({10, -60, quayHeight}, {60, 0, 0}, {0, 115, 0}, {{0, 0}, {15, 28}});
    b.panel({landsEnd, 55, quayHeight}, {70 - landsEnd, 0, 0}, {0, 22, 0}, {{0, 0}, {29, 6}});

    Mesh& walls = scene.addMesh("Quay walls");
    Mesh& below = scene.addMesh("Quay walls below");
    for (const bool mirrored : {false, true})
    {
        Builder w(mirrored ? below : walls);
        w.mirrorShift = mirrored ? materialCount : 0;
        w.cell = mirrored ? 20 : 3.4f;
        wallAlong(w, {0, -46}, {0, 46}, quayHeight);
        wallAlong(w, {0, 46}, {-37, 46}, quayHeight);
        wallAlong(w, {-37, 46}, {-37, 55}, quayHeight);
        wallAlong(w, {-37, 55}, {landsEnd, 55}, quayHeight);
        wallAlong(w, {landsEnd, 55}, {landsEnd, 77}, quayHeight);
    }
}

// The mole bends from the north quay to the lighthouse: a causeway with a parapet on its sea side.
static const Vec2 moleLine[] = {{-33.2f, 46}, {-33.5f, 42}, {-32.5f, 37}, {-30, 32}, {-27, 28}};

static void moleSection(Builder& b, size_t i, float width, float height)
{
    const Vec2 p = moleLine[i], q = moleLine[i + 1];
    const auto side = [&](size_t k)
    {
        const Vec2 before = moleLine[k > 0 ? k - 1 : 0], after = moleLine[std::min<size_t>(k + 1, 4)];
        const Vec3 s = unit({-(after.y - before.y), after.x - before.x, 0});
        return Vec2{s.x, s.y};
    };
    const Vec2 s0 = side(i), s1 = side(i + 1);
    const Vec2 left0 = p + s0 * width, left1 = q + s1 * width, right0 = p - s0 * width,
               right1 = q - s1 * width;
    wallAlong(b, left0, left1, height);
    wallAlong(b, right1, right0, height);
    if (b.mirrorShift)
        return;
    b.material = paving;
    const auto up = [&](Vec2 v) { return Vec3{v.x, v.y, height}; };
    std::vector<Vec3> points;
    std::vector<Vec2> coords;
    for (int r = 0; r <= 4; ++r)
    {
        for (int c = 0; c <= 3; ++c)
        {
            const float s = static_cast<float>(c) / 3, t = static_cast<float>(r) / 4;
            const Vec3 v = mix(mix(up(left0), up(right0), s), mix(up(left1), up(right1), s), t);
            points.push_back(v);
            coords.push_back({v.x / 3.6f, v.y / 3.6f});
        }
    }
    b.net(points, coords, 4, b.newGroup());
}

void addMole(Scene& scene)
{
    Mesh& mole = scene.addMesh("Mole");
    Mesh& below = scene.addMesh("Mole below");
    for (const bool mirrored : {false, true})
    {
        Builder b(mirrored ? below : mole);
        b.mirrorShift = mirrored ? materialCount : 0;
        b.cell = mirrored ? 20 : 3;
        for (size_t i = 0; i < 4; ++i)
            moleSection(b, i, 2.4f, quayHeight);
        // The round head under the lighthouse.
        b.material = quayWall;
        const Vec3 head = {lighthousePlace.x, lighthousePlace.y, 0};
        b.turned(head,
                 {{6.3f, -0.06f, 0.02f},
                  {6.25f, 0.12f, 0.1f},
                  {6.05f, 1.35f, 0.8f},
                  {6.0f, 1.6f, 0.9f, true},
                  {6.15f, 1.62f, 0.9f},
                  {6.15f, 1.8f, 0.98f, true}},
                 mirrored ? 12 : 18, 6);
        if (mirrored)
            continue;
        b.material = paving;
        b.disc(head + Vec3{0, 0, 1.8f}, 6.15f, 18, {{0, 0}, {3.4f, 3.4f}});
        // Rocks break the waves around the head and along the sea side.
        b.material = rock;
        for (uint32_t i = 0; i < 17; ++i)
        {
            const float a = 2.1f + 3.9f * static_cast<float>(i) / 16;
            const float d = 6.6f + 1.5f * randomValue(i, 1), size = 0.7f + 0.8f * randomValue(i, 2);
            b.frame =
                Frame::turned(head + Vec3{d * std::cos(a), d * std::sin(a), 0}, 360 * randomValue(i, 3));
            b.frame.z = Vec3{0.3f * (randomValue(i, 4) - 0.5f), 0.2f, 0.6f + 0.4f * randomValue(i, 5)};
            b.turned({}, {{size, -0.06f, 0}, {size * 0.8f, 0.55f * size, 0.5f}, {0, size, 1}}, 5, 1, 0.8f);
        }
    }
}

void addLighthouse(Scene& scene)
{
    const float h = lighthouseHeight;
    Mesh& below = scene.addMesh("Lighthouse below");
    Builder m(below);
    m.mirrorShift = materialCount;
    m.material = lighthouseWall;
    m.turned(lighthousePlace, {{2.35f, -0.3f, 0}, {1.55f, h, 1}}, 10, 1);
    m.material = lampGlass;
    m.turned(lighthousePlace + Vec3{0, 0, h + 0.3f}, {{0.95f, 0, 0}, {0.95f, 1.9f, 1, true}, {0, 3, 1}}, 8,
             8);

    Mesh& tower = scene.addMesh("Lighthouse");
    Builder b(tower);
    b.material = lighthouseWall;
    std::vector<Ring> wall;
    for (int i = 0; i <= 7; ++i)
    {
        const float t = static_cast<float>(i) / 7;
        wall.push_back({2.35f - 0.8f * std::sqrt(t), t * h, t});
    }
    b.turned(lighthousePlace, wall, 16, 1);
    b.material = rock;
    b.turned(lighthousePlace, {{2.9f, -0.3f, 0}, {2.9f, 0.35f, 0.3f, true}, {2.4f, 0.36f, 0.5f}}, 20, 6);
    // The gallery on its brackets, with a railing.
    b.material = lighthouseWall;
    b.turned(lighthousePlace + Vec3{0, 0, h},
             {{1.55f, -0.9f, 0.1f}, {2.2f, 0, 0.14f, true}, {2.2f, 0.16f, 0.15f, true}, {0.9f, 0.17f, 0.19f}},
             20, 1);
    b.material = iron;
    for (int i = 0; i < 11; ++i)
    {
        const float a0 = 2 * pi * static_cast<float>(i) / 11, a1 = 2 * pi * static_cast<float>(i + 1) / 11;
        const Vec3 top = lighthousePlace + Vec3{0, 0, h + 0.15f};
        const Vec3 p = top + Vec3{2.1f * std::cos(a0), 2.1f * std::sin(a0), 0};
        const Vec3 q = top + Vec3{2.1f * std::cos(a1), 2.1f * std::sin(a1), 0};
        b.rod(p, p + Vec3{0, 0, 0.95f}, 0.035f, 0.035f, 3, 1);
        b.rod(p + Vec3{0, 0, 0.95f}, q + Vec3{0, 0, 0.95f}, 0.04f, 0.04f, 3, 1);
        b.rod(p + Vec3{0, 0, 0.5f}, q + Vec3{0, 0, 0.5f}, 0.025f, 0.025f, 3, 1);
    }
    b.material = lampGlass;
    b.turned(lighthousePlace + Vec3{0, 0, h + 0.17f}, {{0.95f, 0, 0}, {0.95f, 1.9f, 0.95f, true}}, 10, 10);
    b.material = roofTiles;
    b.turned(lighthousePlace + Vec3{0, 0, h + 2.05f},
             {{1.25f, 0, 0},
              {1.2f, 0.1f, 0.05f, true},
              {0.62f, 0.75f, 0.3f},
              {0.12f, 1.15f, 0.5f},
              {0.12f, 1.3f, 0.5f, true},
              {0.22f, 1.4f, 0.5f},
              {0, 1.62f, 0.6f}},
             14, 3);

    // The lamp turns once in the course of the animation, hung on the tower.
    Mesh& lens = scene.addMesh("Lighthouse lamp");
    Builder l(lens);
    l.material = beacon;
    l.box(lighthousePlace + Vec3{-0.45f, -0.12f, h + 0.6f}, lighthousePlace + Vec3{0.45f, 0.12f, h + 1.7f},
          1);
    lens.parent = "Lighthouse";
    lens.pivot = lighthousePlace + Vec3{0, 0, h + 1.15f};
    lens.hasPivot = true;
    lens.rotations = turning({0, 0, 1}, 90, [](float t) { return 2 * pi * t; });
}

void addWater(Scene& scene)
{
    Mesh& sea = scene.addMesh("Water");
    Builder b(sea);
    b.material = water;
    // Lines lie close together where the cameras are, and the outermost reach to the horizon.
    const auto lines = [](std::vector<float> near, float from, float to)
    {
        std::vector<float> all = {from, from * 0.4f, -150};
        all.insert(all.end(), near.begin(), near.end());
        for (const float far : {150.0f, to * 0.4f, to})
            all.push_back(far);
        return all;
    };
    std::vector<float> xs, ys;
    for (int i = 0; i <= 14; ++i)
        xs.push_back(-70 + 71 * std::sin(static_cast<float>(i) / 14 * pi / 2));
    for (int i = 0; i <= 18; ++i)
        ys.push_back(-34 + 84 * std::pow(static_cast<float>(i) / 18, 1.3f));
    xs = lines(xs, -1550, 1550);
    ys = lines(ys, -1550, 1550);
    std::vector<Vec3> points;
    std::vector<Vec2> coords;
    for (size_t j = 0; j < ys.size(); ++j)
    {
        for (size_t i = 0; i < xs.size(); ++i)
        {
            const bool inner = i > 2 && i + 4 < xs.size() && j > 2 && j + 4 < ys.size();
            const float swell =
                0.035f * (randomValue(static_cast<uint32_t>(i), static_cast<uint32_t>(j), 7) - 0.5f);
            points.push_back({xs[i], ys[j], inner ? swell : 0});
            coords.push_back({xs[i] / 13, ys[j] / 13});
        }
    }
    b.net(points, coords, static_cast<int>(xs.size()), b.newGroup());
    sortFarToNear(sea, {4, -26, 4});
}

// The way of the low light over the waves, from the horizon to the eye.
void addGlitter(Scene& scene, Vec3 eye)
{
    Mesh& mesh = scene.addMesh("Glitter");
    Builder b(mesh);
    b.material = glitter;
    b.frame = Frame::turned({eye.x, eye.y, 0.05f}, 135.5f - 90);
    const float reach[] = {12, 26, 50, 95, 190, 420, 1300};
    for (int i = 0; i < 6; ++i)
    {
        const float from = reach[i], to = reach[i + 1], w0 = 3 + from * 0.12f, w1 = 3 + to * 0.12f;
        const float v = static_cast<float>(i);
        b.net({{-w0, from, 0}, {w0, from, 0}, {-w1, to, 0}, {w1, to, 0}},
              {{0, v}, {1, v}, {0, v + 1}, {1, v + 1}}, 2, b.newGroup());
    }
    sortFarToNear(mesh, eye);
}

} // namespace sample
