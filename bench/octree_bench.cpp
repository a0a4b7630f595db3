// The octree: its building, and the queries of a host that walks through a scene.
//
// The scenes are hilly ground in tiles of 1,000 triangles on a square of 1,000 units. Rays are 10 units long,
// across the whole scene, and straight down; spheres have a radius of 5 units.

#include <benchmark/benchmark.h>

#include <vector>

#include "bench/hillyground.h"
#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

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
