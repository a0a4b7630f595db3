// Shadow pass of the vertex lighting: through the tree, beside the plain loop over all faces, in one run.
//
// A pass traces every vertex. The plain loop takes minutes for that, so it traces a sample, spread evenly
// over all vertices; times are compared by ray. The ratio printed at the end charges the tree with its
// building, shared out over the rays of a whole pass.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <vector>

#include "bench/landscape.h"
#include "vornik/lighting/vertexlight.h"

using Clock = std::chrono::steady_clock;

static double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Seconds for a ray, building included: one whole pass.
static double treeSeconds(Landscape& scene)
{
    auto start = Clock::now();
    scene.group.calcDynamicLight(&scene.light, VRK_LIGHT_CLEAR | VRK_LIGHT_SHADOWS);
    return secondsSince(start) / scene.vertices;
}

// Seconds for a ray of the plain loop, over a sample of at least half a second. @param blocked  [out] share
static double plainSeconds(Landscape& scene, double* blocked)
{
    std::vector<std::pair<Mesh*, int>> targets;
    for (int m = 0; m < scene.group.meshCount; m++)
        for (int v = 0; v < scene.group.meshes[m]->vertexCount; v++)
            targets.push_back({scene.group.meshes[m], v});
    std::shuffle(targets.begin(), targets.end(), std::mt19937(7));

    auto start = Clock::now();
    size_t rays = 0, dark = 0;
    while (rays < targets.size() && (rays < 200 || secondsSince(start) < 0.5))
    {
        auto [mesh, v] = targets[rays++];
        dark += !scene.group.checkRay(&scene.light, &mesh->calculatedVertices[v], &mesh->position);
    }
    *blocked = double(dark) / double(rays);
    return secondsSince(start) / double(rays);
}

static void shadowPassThroughTree(benchmark::State& state)
{
    Landscape& scene = landscape(int(state.range(0)));
    for (auto _ : state)
        scene.group.calcDynamicLight(&scene.light, VRK_LIGHT_CLEAR | VRK_LIGHT_SHADOWS);
    state.counters["rays/s"] =
        benchmark::Counter(double(scene.vertices), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(shadowPassThroughTree)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(700000)
    ->Unit(benchmark::kMillisecond);

static void shadowRayByPlainLoop(benchmark::State& state)
{
    Landscape& scene = landscape(int(state.range(0)));
    size_t m = 0, v = 0;
    for (auto _ : state)
    {
        Mesh* mesh = scene.group.meshes[m];
        benchmark::DoNotOptimize(
            scene.group.checkRay(&scene.light, &mesh->calculatedVertices[v], &mesh->position));
        // Steps through meshes and vertices so that a short run meets all parts of the scene.
        m = (m + 1) % size_t(scene.group.meshCount);
        v = (v + 7919) % size_t(scene.group.meshes[m]->vertexCount);
    }
    state.counters["rays/s"] = benchmark::Counter(1.0, benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(shadowRayByPlainLoop)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

// Both ways in one run: "ratio" is how many times the plain loop's rays the tree traces in the same time.
// That of the plain loop is measured on a random sample of the scene's vertices.
static void shadowPassRatio(benchmark::State& state)
{
    Landscape& scene = landscape(int(state.range(0)));
    double tree = 0.0, plain = 0.0, blocked = 0.0;
    for (auto _ : state)
    {
        tree += treeSeconds(scene);
        plain += plainSeconds(scene, &blocked);
    }
    state.counters["faces"] = scene.faces;
    state.counters["vertices"] = scene.vertices;
    state.counters["blocked"] = blocked;
    state.counters["ratio"] = plain / tree;
}
BENCHMARK(shadowPassRatio)->Arg(1000)->Arg(10000)->Arg(100000)->Iterations(2)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
