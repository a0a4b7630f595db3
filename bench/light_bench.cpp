// Shadow pass of the vertex lighting: through the tree, beside the plain loop over all faces, in one run.
//
// The scene is hilly ground with boulders on it under one light, in meshes of at most 65,536 vertices. A pass
// traces every vertex. The plain loop takes minutes for that, so it traces a sample, spread evenly over all
// vertices; times are compared by ray. The ratio printed at the end charges the tree with its building,
// shared out over the rays of a whole pass.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/lighting/vertexlight.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

using Clock = std::chrono::steady_clock;

static double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

static float height(float x, float y)
{
    return 6.0f * std::sin(x * 0.11f) * std::cos(y * 0.07f) + std::sin(x * 0.7f + y);
}

// Ground of 2 * side * side faces on a square of 200 units; side at most 255.
static Mesh* makeGround(int side)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    const float step = 200.0f / float(side);
    for (int y = 0; y <= side; y++)
        for (int x = 0; x <= side; x++)
        {
            float px = float(x) * step - 100.0f, py = float(y) * step - 100.0f;
            vertices.push_back({px, py, height(px, py)});
        }
    for (int y = 0; y < side; y++)
        for (int x = 0; x < side; x++)
        {
            uint16_t a = uint16_t(y * (side + 1) + x), b = uint16_t(a + 1), c = uint16_t(a + side + 1);
            faces.push_back({a, b, c});
            faces.push_back({b, uint16_t(c + 1), c});
        }
    return makeMesh("ground", vertices, faces);
}

// A ball of 200 faces.
static Mesh* makeBoulder(float radius, Vertex3D position)
{
    const int around = 10, up = 11;
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int j = 0; j <= up; j++)
        for (int i = 0; i < around; i++)
        {
            float tilt = 3.14159f * float(j) / float(up),
                  turn = 6.28318f * (float(i) + 0.5f * float(j)) / around;
            vertices.push_back({radius * std::sin(tilt) * std::cos(turn),
                                radius * std::sin(tilt) * std::sin(turn), -radius * std::cos(tilt)});
        }
    for (int j = 0; j < up; j++)
        for (int i = 0; i < around; i++)
        {
            uint16_t a = uint16_t(j * around + i), b = uint16_t(j * around + (i + 1) % around);
            uint16_t c = uint16_t(a + around), d = uint16_t(b + around);
            if (j > 0)
                faces.push_back({a, b, c});
            if (j < up - 1)
                faces.push_back({b, d, c});
        }
    return makeMesh("boulder", vertices, faces, position);
}

namespace
{
struct Landscape
{
    OGroup group;
    Light light;
    int faces = 0;
    int vertices = 0;

    explicit Landscape(int wantedFaces)
    {
        add(makeGround(std::min(250, int(std::sqrt(float(wantedFaces) * 0.25f)))));
        std::mt19937 random(42);
        std::uniform_real_distribution<float> place(-100.0f, 100.0f), size(0.5f, 4.0f);
        while (faces < wantedFaces - 100)
        {
            float x = place(random), y = place(random), radius = size(random);
            add(makeBoulder(radius, {x, y, height(x, y) + radius * 0.5f}));
        }
        light.location = {13.3f, -27.7f, 60.1f};
        light.color = {1.0f, 1.0f, 1.0f, 1.0f};
    }

    void add(Mesh* mesh)
    {
        group.addMesh(mesh);
        faces += mesh->faceCount;
        vertices += mesh->vertexCount;
    }
};
} // namespace

static Landscape& landscape(int faces)
{
    static std::map<int, std::unique_ptr<Landscape>> made;
    std::unique_ptr<Landscape>& scene = made[faces];
    if (!scene)
        scene = std::make_unique<Landscape>(faces);
    return *scene;
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
