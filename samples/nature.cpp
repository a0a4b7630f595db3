// Trees, ivy and gulls, and the glow of the lamps: cards with an opacity of their own, turned more or less to
// the eye of the first camera and kept far to near for it.

#include <algorithm>
#include <iterator>

#include "samples/landscape.h"
#include "samples/motion.h"
#include "samples/props.h"

namespace sample
{

struct Tree
{
    Vec3 foot;
    float height, crown;
    int cards;
};

static const Tree trees[] = {
    {{11.6f, 15.3f, 1.5f}, 7.6f, 2.5f, 44}, {{22, -10, 2}, 12.5f, 4.2f, 34},
    {{23.5f, 6, 2}, 13.5f, 4.6f, 34},       {{22, 31, 2}, 11.5f, 3.8f, 28},
    {{2.2f, 60.5f, 1.5f}, 10.5f, 3.6f, 34}, {{-41.5f, 58, 1.5f}, 8.5f, 3.2f, 28},
    {{-16, 70, 2}, 15.5f, 4.8f, 30},        {{24, 20, 2}, 12, 4.0f, 28},
    {{-31, 68, 2}, 12.5f, 4.0f, 24},
};

void addTrunks(Scene& scene)
{
    Mesh& mesh = scene.addMesh("Trunks");
    Builder b(mesh);
    b.material = planksGrey;
    for (const Tree& tree : trees)
    {
        const Vec3 fork = tree.foot + Vec3{0.15f, 0.1f, tree.height - tree.crown * 1.5f};
        b.rod(tree.foot - Vec3{0, 0, 0.3f}, fork, 0.09f * tree.crown, 0.055f * tree.crown, 5, 1.5f);
        for (int i = 0; i < 3; ++i)
        {
            const float a = 2 * pi * (static_cast<float>(i) / 3 + 0.1f);
            b.rod(fork, fork + Vec3{std::cos(a), std::sin(a), 1.5f} * (0.5f * tree.crown),
                  0.045f * tree.crown, 0.015f * tree.crown, 3, 1.5f);
        }
    }
}

static void crownOf(Builder& b, const Tree& tree, uint32_t seed, Vec3 eye)
{
    const Vec3 middle = tree.foot + Vec3{0.1f, 0.1f, tree.height - tree.crown};
    for (int i = 0; i < tree.cards; ++i)
    {
        const auto id = static_cast<uint32_t>(i);
        // Evenly over a sphere by the golden angle, a little flattened.
        const float z = 1 - 1.75f * (static_cast<float>(i) + 0.5f) / static_cast<float>(tree.cards);
        const float a = 2.399963f * static_cast<float>(i) + randomValue(seed, 1), flat = std::sqrt(1 - z * z);
        const Vec3 out = {flat * std::cos(a), flat * std::sin(a), z};
        const float reach = tree.crown * (0.55f + 0.3f * randomValue(seed, id, 2));
        const Vec3 p = middle + Vec3{out.x * reach, out.y * reach, out.z * reach * 0.85f};
        const Vec3 normal = unit(out * 1.1f + unit(eye - p) * 0.8f);
        const Vec3 right = unit(cross({0, 0, 1}, normal)), up = cross(normal, right);
        const float size = tree.crown * (0.85f + 0.4f * randomValue(seed, id, 3));
        const float turn = 0.9f * (randomValue(seed, id, 4) - 0.5f), c = std::cos(turn), s = std::sin(turn);
        b.card(p, (right * c + up * s) * size, (up * c - right * s) * size, {});
    }
}

static void ivyOn(Builder& b, float y, float width, float height, uint32_t seed)
{
    for (uint32_t i = 0; i < 16; ++i)
    {
        const float t = static_cast<float>(i) / 16, size = 1.5f - 0.7f * t;
        const float side = (randomValue(seed, i, 1) - 0.5f) * width * (1 - 0.6f * t);
        b.card({9.93f - 0.01f * static_cast<float>(i % 4), y + side, quayHeight + 0.5f + height * t},
               {0, -size, 0}, {0, 0, size}, {});
    }
}

void addLeaves(Scene& scene, Vec3 eye)
{
    const size_t count = sizeof(trees) / sizeof(trees[0]);
    std::vector<size_t> order;
    for (size_t i = 0; i < count; ++i)
        order.push_back(i);
    std::sort(order.begin(), order.end(),
              [&](size_t a, size_t c) { return length(trees[a].foot - eye) > length(trees[c].foot - eye); });
    for (const size_t i : order)
    {
        Mesh& mesh = scene.addMesh("Crown " + std::to_string(i + 1));
        Builder b(mesh);
        b.material = leaves;
        crownOf(b, trees[i], static_cast<uint32_t>(i) * 17 + 3, eye);
        sortFarToNear(mesh, eye);
    }
    Mesh& mesh = scene.addMesh("Ivy");
    Builder b(mesh);
    b.material = ivy;
    ivyOn(b, 31.4f, 2.2f, 5.2f, 21);
    ivyOn(b, -1.6f, 1.6f, 5.6f, 22);
    ivyOn(b, -16.5f, 1.3f, 4.2f, 23);
    sortFarToNear(mesh, eye);
}

void addFlowers(Scene& scene, const std::vector<Frame>& boxes, Vec3 eye)
{
    Mesh& mesh = scene.addMesh("Flowers");
    Builder b(mesh);
    b.material = flowers;
    for (const Frame& box : boxes)
    {
        b.frame = box;
        for (const float x : {-0.34f, 0.0f, 0.34f})
            b.card({x, -0.06f, 0.1f}, {0.55f, 0, 0}, {0, 0.12f, 0.5f}, {});
    }
    sortFarToNear(mesh, eye);
}

void addGulls(Scene& scene)
{
    struct Gull
    {
        Vec3 place;
        float span, turn;
    };
    static const Gull flock[] = {{{-9, 8, 10.5f}, 1.3f, 20},     {{-11.5f, 14, 12.2f}, 1.2f, -15},
                                 {{-5.5f, 19, 13.2f}, 1.3f, 10}, {{-19, 24, 11.5f}, 1.4f, 25},
                                 {{-22, 27, 13.8f}, 1.3f, -20},  {{-31, 30, 20.5f}, 1.3f, 5}};
    // Each flies a round of its own, the far ones first for the order of drawing.
    const std::vector<Vec3> round = {{0, 0, 0}, {5, -4, 0.6f}, {9, 2, -0.4f}, {4, 8, 0.9f}, {-3, 4, 0.3f}};
    for (size_t i = std::size(flock); i-- > 0;)
    {
        const Gull& gull = flock[i];
        Mesh& mesh = scene.addMesh("Gull " + std::to_string(i + 1));
        Builder b(mesh);
        b.material = gulls;
        const float a = gull.turn * pi / 180;
        b.card(gull.place, Vec3{std::cos(a), 0.2f, std::sin(a)} * gull.span,
               Vec3{-std::sin(a), 0.25f, std::cos(a)} * (gull.span * 0.5f), {});
        const float size = 0.7f + 0.12f * static_cast<float>(i), side = i % 2 == 0 ? size : -size;
        mesh.positions = moving(8,
                                [&](float t)
                                {
                                    const Vec3 p = onClosedCurve(round, t);
                                    return Vec3{p.x * side, p.y * size, p.z + 0.25f * swing(t, 5)};
                                });
    }
}

static void facing(Builder& b, Vec3 p, Vec3 eye, float width, float height)
{
    const Vec3 normal = unit(eye - p), right = unit(cross({0, 0, 1}, normal));
    b.card(p + normal * 0.35f, right * width, cross(normal, right) * height, {});
}

void addGlow(Scene& scene, Vec3 eye)
{
    Mesh& mesh = scene.addMesh("Glow");
    Builder b(mesh);
    b.material = glow;
    for (const Vec3 flame : lampPlaces())
        facing(b, flame, eye, 2.3f, 2.3f);
    facing(b, lighthousePlace + Vec3{0, 0, lighthouseHeight + 1.1f}, eye, 9, 9);
    sortFarToNear(mesh, eye);
}

void addGlowBelow(Scene& scene, Vec3 eye)
{
    Mesh& mesh = scene.addMesh("Glow below");
    Builder b(mesh);
    b.material = glow;
    for (const Vec3 flame : lampPlaces())
        facing(b, {flame.x - 1.6f, flame.y, -flame.z * 0.8f}, eye, 1.1f, 6);
    facing(b, {lighthousePlace.x, lighthousePlace.y, -lighthouseHeight}, eye, 3, 16);
    sortFarToNear(mesh, eye);
}

} // namespace sample
