// Boats lofted from stations: half-breadths along the length, flared towards the rail. Only what stands above
// the water is built.
//
// A boat stands in a frame of its own: the bow along y, the water at z = 0.

#include "samples/boats.h"

#include <algorithm>

#include "samples/landscape.h"
#include "samples/motion.h"
#include "samples/props.h"

namespace sample
{

enum Rig
{
    oars,
    sloop,
    trawler,
    ketch
};

struct Boat
{
    const char* name;
    Vec2 place;
    float heading; ///< degrees from y, counter-clockwise
    float length, beam, freeboard;
    int band; ///< of the image of the hulls
    Rig rig;
};

static const Boat boats[] = {
    {"Ketch",
     {
         -13.5f,
         21,
     },
     62,
     14,
     3.7f,
     1.35f,
     1,
     ketch},
    {"Trawler", {-2.55f, 11.5f}, 2, 10.5f, 3.4f, 1.25f, 0, trawler},
    {"Sloop", {-2.2f, -4.6f}, -1, 8.2f, 2.6f, 0.95f, 2, sloop},
    {"Sloop far", {-2.5f, 26}, 3, 9, 2.8f, 1.0f, 3, sloop},
    {"Smack", {-17, 42.5f}, 94, 9.5f, 3.0f, 1.05f, 2, sloop},
    {"Rowing boat", {-6.6f, -8.2f}, -38, 4.3f, 1.55f, 0.5f, 1, oars},
    {"Dinghy", {-2.7f, -12.4f}, 17, 3.7f, 1.4f, 0.45f, 3, oars},
    {"Skiff", {-10.5f, 5.5f}, 118, 4.2f, 1.5f, 0.48f, 0, oars},
};

/// In lengths of the boat.
struct Mast
{
    float along, top, boom;
};

static std::vector<Mast> mastsOf(Rig rig)
{
    switch (rig)
    {
    case sloop:
        return {{0.12f, 1.18f, 0.42f}};
    case ketch:
        return {{0.14f, 1.02f, 0.40f}, {-0.27f, 0.72f, 0.24f}};
    case trawler:
        return {{-0.08f, 0.78f, 0.3f}};
    default:
        return {};
    }
}

class BoatBuilder
{
public:
    BoatBuilder(Builder& builder, const Boat& boat) : b(builder), plan(boat) {}

    void hull(bool fine)
    {
        shell(fine ? 10 : 6, fine ? 4 : 2);
        if (!fine)
            return;
        rail();
        if (plan.rig == oars)
            inside();
        else
        {
            deckAndTransom();
            deckHouse();
        }
    }

    void masts(bool fine)
    {
        const float l = plan.length;
        for (const Mast& m : mastsOf(plan.rig))
            mast(m.along * l, m.top * l, m.boom * l, fine);
        if (fine && plan.rig != oars)
        {
            b.material = mastWood;
            if (plan.rig != trawler)
                b.rod(station(1, 1, 0) + Vec3{0, -0.4f, 0.05f}, bowspritEnd(), 0.09f, 0.05f, 5, 2);
            return;
        }
    }

    void rigging(Vec3 eye)
    {
        const float l = plan.length;
        const std::vector<Mast> all = mastsOf(plan.rig);
        for (size_t i = 0; i < all.size(); ++i)
            stays(all[i].along * l, all[i].top * l, eye, i == 0 && plan.rig != trawler);
        b.material = ropes;
        if (plan.rig == ketch)
            line({0, 0.14f * l, 1.0f * l}, {0, -0.27f * l, 0.70f * l}, eye, 0.15f);
    }

    /// A pennant, in a mesh of its own. @return the masthead that it turns about
    Vec3 pennant(const Mast& m)
    {
        const Vec3 head = {0, m.along * plan.length - 0.1f, m.top * plan.length};
        b.material = awning;
        const int top = b.point(head, {0, 1}), foot = b.point(head - Vec3{0, 0, 0.4f}, {0, 0});
        const int middle = b.point(head + Vec3{0.06f, -0.5f, -0.07f}, {0.7f, 0.8f}),
                  below = b.point(head + Vec3{0.06f, -0.5f, -0.33f}, {0.7f, 0.2f});
        const int tip = b.point(head + Vec3{-0.02f, -1.1f, -0.2f}, {1.4f, 0.5f});
        const uint32_t group = b.newGroup();
        b.quad(foot, below, middle, top, group);
        b.triangle(below, tip, middle, group);
        return b.frame.point(head);
    }

private:
    Builder& b;
    const Boat& plan;

    float deckHeight(float s) const
    {
        const float e = 2 * s - 1;
        return plan.freeboard * (0.86f + 0.30f * e * e + 0.2f * s);
    }

    float halfBreadth(float s) const
    {
        const float stern = plan.rig == oars ? 0.72f : 0.66f;
        const float shape =
            s < 0.42f ? mix(stern, 1, std::sin(s / 0.42f * pi / 2)) : 1 - std::pow((s - 0.42f) / 0.58f, 2.3f);
        return plan.beam * 0.5f * std::max(shape, 0.012f);
    }

    /// Point of the hull: s from stern to bow, t from the water to the rail.
    Vec3 station(float s, float t, float side) const
    {
        const float flare = mix(0.80f - 0.22f * s * s, 1, std::sqrt(t));
        const float rake = plan.length * 0.07f * (t - 1) * (s > 0.5f ? (s - 0.5f) * 2 : (s - 0.5f) * 0.6f);
        return {side * halfBreadth(s) * flare, (s - 0.5f) * plan.length + rake, t * deckHeight(s) - 0.04f};
    }

    void shell(int stations, int rows)
    {
        b.material = hulls;
        for (const float side : {-1.0f, 1.0f})
        {
            std::vector<Vec3> points;
            std::vector<Vec2> coords;
            for (int r = 0; r <= rows; ++r)
            {
                for (int i = 0; i <= stations; ++i)
                {
                    const float along = static_cast<float>(i) / static_cast<float>(stations);
                    const float s = side > 0 ? along : 1 - along,
                                t = static_cast<float>(r) / static_cast<float>(rows);
                    points.push_back(station(s, t, side));
                    coords.push_back(
                        {s * plan.length / 8, (static_cast<float>(plan.band) + 0.02f + 0.96f * t) / 4});
                }
            }
            b.net(points, coords, stations + 1, b.newGroup());
        }
        // The transom, narrowing towards the water like the stations.
        std::vector<Vec3> points;
        std::vector<Vec2> coords;
        for (int r = 0; r <= 2; ++r)
        {
            const float t = static_cast<float>(r) / 2;
            for (const float side : {-1.0f, 1.0f})
            {
                points.push_back(station(0, t, side));
                coords.push_back(
                    {side * plan.beam / 20, (static_cast<float>(plan.band) + 0.02f + 0.96f * t) / 4});
            }
        }
        b.net(points, coords, 2, b.newGroup());
    }

    void rail()
    {
        b.material = planksWarm;
        for (const float side : {-1.0f, 1.0f})
        {
            std::vector<Vec3> points;
            std::vector<Vec2> coords;
            for (int row = 0; row < 2; ++row)
            {
                for (int i = 0; i <= 10; ++i)
                {
                    const float s = static_cast<float>(i) / 10;
                    const bool outer = (row == 0) == (side > 0);
                    Vec3 p = station(s, 1, side);
                    p.x += side * (outer ? 0.05f : -0.1f);
                    if (p.x * side < 0)
                        p.x = 0;
                    p.z += 0.03f;
                    points.push_back(p);
                    coords.push_back({s * plan.length / 2, outer ? 0.0f : 0.12f});
                }
            }
            b.net(points, coords, 11, b.newGroup());
        }
    }

    // Floor across the hull at a part of its height.
    void floorAt(float t, float from, float to)
    {
        std::vector<Vec3> points;
        std::vector<Vec2> coords;
        for (int i = 0; i <= 6; ++i)
        {
            const float s = mix(from, to, static_cast<float>(i) / 6);
            for (const float side : {-1.0f, 0.0f, 1.0f})
            {
                Vec3 p = station(s, t, side);
                p.x *= 0.97f;
                points.push_back(p);
                coords.push_back({p.y / 2, p.x / 2});
            }
        }
        b.net(points, coords, 3, b.newGroup());
    }

    void deckAndTransom()
    {
        b.material = deck;
        floorAt(0.72f, 0.01f, 0.985f);
    }

    void inside()
    {
        b.material = deck;
        floorAt(0.25f, 0.01f, 0.97f);
        b.material = planksWarm;
        for (const float s : {0.08f, 0.36f, 0.62f, 0.86f})
        {
            const float half = halfBreadth(s) * 0.92f, y = (s - 0.5f) * plan.length,
                        z = deckHeight(s) * 0.72f;
            b.box({-half, y - 0.13f, z - 0.05f}, {half, y + 0.13f, z}, 1.2f, "yYZ");
        }
        b.material = mastWood;
        b.rod({-0.22f, -1.3f, 0.5f}, {-0.30f, 1.2f, 0.55f}, 0.035f, 0.03f, 4, 2);
        b.rod({0.24f, -1.2f, 0.5f}, {0.18f, 1.3f, 0.57f}, 0.035f, 0.03f, 4, 2);
    }

    void deckHouse()
    {
        const float z = plan.freeboard * 0.7f, l = plan.length;
        if (plan.rig == trawler)
        {
            wheelHouse({0, -0.22f * l, z});
            b.material = planksGrey;
            b.box({-0.6f, 0.08f * l, z}, {0.6f, 0.22f * l, z + 0.42f}, 1.5f, "xXyYZ");
            return;
        }
        b.material = planksWarm;
        b.box({-0.24f * plan.beam, -0.2f * l, z}, {0.24f * plan.beam, 0.06f * l, z + 0.52f}, 1.6f, "xXyY");
        b.material = deck;
        b.box({-0.26f * plan.beam, -0.21f * l, z + 0.52f}, {0.26f * plan.beam, 0.07f * l, z + 0.6f}, 1.6f);
        b.material = brass;
        for (const float y : {-0.15f, -0.07f, 0.01f})
        {
            for (const float side : {-1.0f, 1.0f})
                b.rod({side * 0.235f * plan.beam, y * l, z + 0.3f},
                      {side * (0.245f * plan.beam + 0.03f), y * l, z + 0.3f}, 0.12f, 0.09f, 6, 1);
        }
    }

    void wheelHouse(Vec3 foot)
    {
        const float w = 0.78f, d = 1.0f, height = 2.05f;
        b.frame = Frame::at(foot).within(b.frame);
        b.cell = 1;
        b.material = hulls;
        b.crate({-w, -d, 0}, {w, d, height}, {{0, 0.30f}, {0.3f, 0.44f}}, "xXyY");
        b.cell = 100;
        b.material = planksWarm;
        b.box({-w - 0.15f, -d - 0.2f, height}, {w + 0.15f, d + 0.25f, height + 0.12f}, 1.5f);
        b.box({-w - 0.03f, -d - 0.03f, 0}, {w + 0.03f, d + 0.03f, 0.35f}, 1.5f, "xXyY");
        b.material = windowsLit;
        const Patch glass = cellOf(0, 0, 4, 2);
        const Vec3 size = {0, 0, 0.75f};
        b.panel({-w - 0.03f, d - 0.15f, 1.1f}, {0, -0.75f, 0}, size, glass);
        b.panel({-w - 0.03f, -0.1f, 1.1f}, {0, -0.75f, 0}, size, glass);
        b.panel({w + 0.03f, -d + 0.15f, 1.1f}, {0, 0.75f, 0}, size, glass);
        b.panel({-w + 0.1f, -d - 0.03f, 1.1f}, {1.4f, 0, 0}, size, glass);
        b.material = iron;
        b.rod({0.3f, -0.4f, height}, {0.3f, -0.4f, height + 0.9f}, 0.13f, 0.13f, 7, 1);
        b.frame = Frame::at(foot * -1).within(b.frame);
    }

    Vec3 bowspritEnd() const { return station(1, 1, 0) + Vec3{0, plan.length * 0.14f, 0.35f}; }

    void mast(float y, float top, float boom, bool fine)
    {
        b.material = mastWood;
        b.rod({0, y, plan.freeboard * 0.6f}, {0, y - 0.1f, top}, 0.13f, 0.06f, fine ? 7 : 4, 3);
        if (!fine)
            return;
        const float low = plan.freeboard + 1.0f;
        b.rod({0, y - 0.05f, low}, {0, y - boom, low + 0.15f}, 0.07f, 0.05f, 5, 2);
        if (plan.rig == trawler)
        {
            b.rod({0, y, low}, {0, y + 0.42f * plan.length, top * 0.8f}, 0.07f, 0.05f, 5, 2);
            return;
        }
        // The sail lies furled along the boom, with a lashing here and there.
        b.material = canvas;
        for (int i = 0; i < 5; ++i)
        {
            const float s = static_cast<float>(i) / 5, e = static_cast<float>(i + 1) / 5;
            const auto thick = [](float t)
            { return 0.09f + 0.15f * std::sqrt(std::sin(clamp01(t * 0.92f + 0.06f) * pi)); };
            const Vec3 p = {0, y - 0.1f - boom * 0.95f * s, low + 0.18f + 0.12f * s};
            const Vec3 q = {0, y - 0.1f - boom * 0.95f * e, low + 0.18f + 0.12f * e};
            b.rod(p, q, thick(s), thick(e), 7, 0.9f);
        }
    }

    void line(Vec3 from, Vec3 to, Vec3 eye, float sag)
    {
        b.ribbon(from, to, 0.085f, eye, {{0, 0}, {1, length(to - from) / 0.9f}}, sag, sag > 0 ? 5 : 1);
    }

    void stays(float y, float top, Vec3 worldEye, bool fore)
    {
        // The frame is a turn about z and a shift, so its inverse is its transpose.
        const Vec3 d = worldEye - b.frame.origin;
        const Vec3 eye = {dot(d, b.frame.x), dot(d, b.frame.y), dot(d, b.frame.z)};
        const Vec3 head = {0, y - 0.09f, top * 0.94f};
        b.material = ropes;
        line(head, fore ? bowspritEnd() : station(0.95f, 1, 0), eye, 0);
        if (fore)
            line(head - Vec3{0, 0, top * 0.16f}, station(0.99f, 1, 0), eye, 0);
        line(head, station(0.01f, 1, 0), eye, 0);
        const float s = y / plan.length + 0.5f;
        b.material = ratlines;
        for (const float side : {-1.0f, 1.0f})
        {
            const Vec3 fromP = station(s - 0.07f, 1, side), toP = station(s + 0.04f, 1, side);
            const Vec3 apex = head - Vec3{0, 0, top * 0.12f};
            const Vec3 spread = (toP - fromP) * 0.07f;
            b.net({fromP, toP, mix(fromP, apex, 0.5f), mix(toP, apex, 0.5f), apex - spread, apex + spread},
                  {{0.01f, 0.01f},
                   {0.99f, 0.01f},
                   {0.01f, 0.5f},
                   {0.99f, 0.5f},
                   {0.01f, 0.99f},
                   {0.99f, 0.99f}},
                  2, b.newGroup());
        }
    }
};

// Rocks about the long axis and heaves a little, each boat in its own time.
static void rocking(Mesh& mesh, const Boat& boat, int number, bool mirrored)
{
    mesh.pivot = {boat.place.x, boat.place.y, 0};
    mesh.hasPivot = true;
    const float down = mirrored ? -1.0f : 1.0f;
    const float roll = (boat.rig == oars ? 3.2f : 1.7f) * pi / 180 * down;
    const float heave = (boat.rig == oars ? 0.035f : 0.05f) * down;
    const int swings = boat.rig == oars ? 4 : 3;
    const float other = number % 2 == 0 ? 0.35f : -0.35f;
    mesh.rotations =
        turning(Frame::turned({}, boat.heading).y, 10,
                [=](float t) { return roll * (0.8f * swing(t, swings) + other * swing(t, swings - 1)); });
    mesh.positions = moving(12, [=](float t) { return Vec3{0, 0, heave * swing(t, 2 + number % 3)}; });
}

static Frame frameOf(const Boat& boat)
{
    return Frame::turned({boat.place.x, boat.place.y, 0}, boat.heading);
}

// The galley's stovepipe behind the wheel house. Hosts that have smoke let it rise from here.
static void addFunnel(Scene& scene, const Boat& boat)
{
    Mesh& mesh = scene.addMesh("Chimney");
    Builder b(mesh);
    b.frame = frameOf(boat);
    b.material = iron;
    b.turned({0.55f, -0.36f * boat.length, 0.8f},
             {{0.15f, 0, 0}, {0.13f, 2.5f, 0.8f, true}, {0.24f, 2.52f, 0.82f, true}, {0.2f, 2.8f, 1}}, 7, 1);
    mesh.parent = boat.name;
    mesh.pivot = {boat.place.x, boat.place.y, 0};
    mesh.hasPivot = true;
}

static void addPennants(Scene& scene, const Boat& boat, const std::string& spars)
{
    int swings = 7;
    for (const Mast& mast : mastsOf(boat.rig))
    {
        Mesh& flag = scene.addMesh(std::string(boat.name) + " flag" + std::to_string(swings - 6));
        Builder b(flag);
        b.frame = frameOf(boat);
        flag.pivot = BoatBuilder(b, boat).pennant(mast);
        flag.hasPivot = true;
        flag.parent = spars;
        flag.rotations = turning({0, 0, 1}, 5,
                                 [swings](float t)
                                 { return 0.22f * swing(t, swings) + 0.12f * swing(t, 2 * swings + 1); });
        ++swings;
    }
}

void addBoats(Scene& scene)
{
    int number = 0;
    for (const Boat& boat : boats)
    {
        const std::string name = boat.name;
        for (const bool mirrored : {false, true})
        {
            Mesh& hull = scene.addMesh(name + (mirrored ? "B" : ""));
            Builder b(hull);
            b.frame = frameOf(boat);
            b.mirrorShift = mirrored ? materialCount : 0;
            BoatBuilder builder(b, boat);
            builder.hull(!mirrored);
            rocking(hull, boat, number, mirrored);
            if (mirrored)
                builder.masts(false);
        }
        if (boat.rig != oars)
        {
            Mesh& spars = scene.addMesh(name + " spars");
            Builder b(spars);
            b.frame = frameOf(boat);
            BoatBuilder(b, boat).masts(true);
            spars.parent = name;
            spars.pivot = {boat.place.x, boat.place.y, 0};
            spars.hasPivot = true;
            if (boat.rig != trawler)
                addPennants(scene, boat, spars.name);
        }
        if (boat.rig == trawler)
            addFunnel(scene, boat);
        ++number;
    }
}

// Lines from the boats along the east quay to its bollards.
static void addMooring(Scene& scene, Vec3 eye)
{
    Mesh& mesh = scene.addMesh("Mooring");
    Builder b(mesh);
    b.material = ropes;
    for (const Boat& boat : boats)
    {
        if (boat.place.x < -4 || boat.rig == oars)
            continue;
        for (const float end : {-0.47f, 0.47f})
        {
            const Vec3 from = frameOf(boat).point({0.1f, end * boat.length, boat.freeboard * 1.1f});
            const Vec3 to = nearestBollard(from.y + end * 6);
            const float span = length(to - from);
            b.ribbon(from, to, 0.09f, eye, {{0, 0}, {1, span / 0.9f}}, 0.06f * span, 6);
        }
    }
    sortFarToNear(mesh, eye);
}

void addRigging(Scene& scene, Vec3 eye)
{
    for (const Boat& boat : boats)
    {
        if (boat.rig == oars)
            continue;
        Mesh& lines = scene.addMesh(std::string(boat.name) + " rig");
        Builder b(lines);
        b.frame = frameOf(boat);
        BoatBuilder(b, boat).rigging(eye);
        lines.parent = boat.name;
        lines.pivot = {boat.place.x, boat.place.y, 0};
        lines.hasPivot = true;
        sortFarToNear(lines, eye);
    }
    addMooring(scene, eye);
}

} // namespace sample
