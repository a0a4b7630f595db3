// The octree: its building, and the queries of a host that walks through a scene.
//
// The scenes are hilly ground in tiles of 1,000 triangles on a square of 1,000 units. Rays are 10 units long,
// across the whole scene, and straight down; spheres have a radius of 5 units.

#include <benchmark/benchmark.h>

#include <cmath>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

static const float worldSide = 1000.0f;

static float heightAt(float x, float y)
{
    return 20.0f * std::sin(x * 0.021f) * std::cos(y * 0.017f) + 2.0f * std::sin(x * 0.3f + y * 0.2f);
}

// A tile of 25 by 20 squares whose lower left corner is at x, y.
static Mesh* makeTile(float x, float y, float width, float height)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int j = 0; j <= 20; ++j)
        for (int i = 0; i <= 25; ++i)
        {
            const float px = x + width * float(i) / 25, py = y + height * float(j) / 20;
            vertices.push_back({px, py, heightAt(px, py)});
        }
    for (uint16_t j = 0; j < 20; ++j)
        for (uint16_t i = 0; i < 25; ++i)
        {
            const uint16_t a = uint16_t(j * 26 + i), c = uint16_t(a + 26);
            faces.push_back({a, uint16_t(a + 1), c});
            faces.push_back({uint16_t(a + 1), uint16_t(c + 1), c});
        }
    Mesh* mesh = makeMesh("tile", vertices, faces);
    mesh->pivot = {0, 0, 0};
    mesh->rotation = {0, 0, 0, 0};
    mesh->calcEdgeNormals();
    return mesh;
}

// Groups are made once, without their tree.
static OGroup* groundOf(int triangles)
{
    static std::map<int, std::unique_ptr<OGroup>> made;
    std::unique_ptr<OGroup>& group = made[triangles];
    if (group)
        return group.get();
    vrkSelectRasterizer(7); // nothing is drawn
    group = std::make_unique<OGroup>();
    group->addTList(new TList);
    const int side = static_cast<int>(std::lround(std::sqrt(triangles / 1000.0)));
    const float tile = worldSide / static_cast<float>(side);
    for (int i = 0; i < side * side; ++i)
        group->addMesh(makeTile(float(i % side) * tile, float(i / side) * tile, tile, tile));
    return group.get();
}

static void build(OGroup* group)
{
    delete group->octree;
    group->octree = nullptr;
    group->constructOctree();
}

static OGroup* treeOf(int triangles)
{
    OGroup* group = groundOf(triangles);
    if (!group->octree)
        build(group);
    return group;
}

static void buildTree(benchmark::State& state)
{
    OGroup* group = groundOf(static_cast<int>(state.range(0)));
    for (auto _ : state)
        build(group);
    state.SetItemsProcessed(state.iterations() * group->meshCount * 1000);
}

struct Ray
{
    Vertex3D start, end;
};

enum RayKind
{
    shortRays,
    longRays,
    raysDown
};

static std::vector<Ray> makeRays(RayKind kind)
{
    std::mt19937 random(1);
    const auto any = [&](float low, float high)
    { return low + (high - low) * static_cast<float>(random() % 65536) / 65536; };
    std::vector<Ray> rays;
    for (int i = 0; i < 1024; ++i)
    {
        Ray ray;
        ray.start = {any(20, 980), any(20, 980), 0};
        ray.start.z = heightAt(ray.start.x, ray.start.y) + any(1, 15);
        ray.end = {any(20, 980), any(20, 980), any(-10, 30)};
        if (kind == shortRays)
        {
            Vertex3D step = ray.end - ray.start;
            step.normalize();
            step *= 10;
            ray.end = ray.start + step;
        }
        if (kind == raysDown)
            ray.end = {ray.start.x, ray.start.y, -50};
        rays.push_back(ray);
    }
    return rays;
}

template <class Ask>
static void askRays(benchmark::State& state, RayKind kind, Ask ask)
{
    OGroup* group = treeOf(static_cast<int>(state.range(0)));
    std::vector<Ray> rays = makeRays(kind);
    size_t i = 0;
    for (auto _ : state)
    {
        Ray& ray = rays[i++ % rays.size()];
        benchmark::DoNotOptimize(ask(&ray, group));
    }
    state.SetItemsProcessed(state.iterations());
}

static float distance(Ray* ray, OGroup* group)
{
    return vrkRaySceneDistance(&ray->start, &ray->end, group);
}

static void rayDistanceShort(benchmark::State& state)
{
    askRays(state, shortRays, distance);
}

static void rayDistanceLong(benchmark::State& state)
{
    askRays(state, longRays, distance);
}

static void rayDistanceDown(benchmark::State& state)
{
    askRays(state, raysDown, distance);
}

static void rayBlocked(benchmark::State& state)
{
    askRays(state, longRays,
            [](Ray* ray, OGroup* group)
            { return vrkRayScene(&ray->start, &ray->end, vrkDistance(&ray->start, &ray->end), group); });
}

static void heightBelow(benchmark::State& state)
{
    askRays(state, raysDown,
            [](Ray* ray, OGroup* group) { return vrkCheckHeight(&ray->start, &ray->end, group).z; });
}

static void slide(benchmark::State& state)
{
    const int passes = static_cast<int>(state.range(1));
    askRays(state, shortRays,
            [passes](Ray* ray, OGroup* group)
            {
                Vertex3D position = ray->end, normal;
                return vrkCheckCollision(&position, &ray->start, 5, group, true, &normal, passes);
            });
}

BENCHMARK(buildTree)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(rayDistanceShort)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(rayDistanceLong)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(rayDistanceDown)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(rayBlocked)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(heightBelow)->Arg(10000)->Arg(100000)->Arg(1000000);
BENCHMARK(slide)->ArgsProduct({{10000, 100000, 1000000}, {1, 3, 5}});

BENCHMARK_MAIN();
