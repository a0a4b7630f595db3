// Loading of .3DS files with all passes but images: chunks, materials, smoothing, normals, face order, edges.
//
// The scenes are hilly ground in tiles of 1,000 triangles (tilefile.h); the last benchmark has its triangles
// in one mesh instead. Loading is to grow with the file and no faster: the program ends with the ratio
// between the best and the worst rate of the scenes, and fails if it is above 2.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/tilefile.h"
#include "tests/support/tempfolder.h"
#include "vornik/assets/load3ds.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/ogroup.h"

namespace
{

// A file on the disk, and the rate at which it loaded best.
struct Sample
{
    TempFolder folder;
    std::string file;
    size_t bytes = 0;
    int triangles = 0;
    double bestRate = 0;

    Sample(int wanted, bool oneMesh) : triangles(wanted)
    {
        Scene3ds scene = makeTileScene();
        if (oneMesh)
            scene.meshes.push_back(makeTile(0, 25, wanted / 50, 0, 0));
        else
            for (int i = 0; i < wanted / 1000; i++)
                scene.meshes.push_back(makeTile(i, 25, 20, float(25 * (i % 32)), float(20 * (i / 32))));
        const std::vector<uint8_t> content = build3ds(scene);
        bytes = content.size();
        file = folder.write("scene.3ds", content);
    }
};

} // namespace

// Files are made once and kept, since Google Benchmark enters a benchmark several times.
static std::map<std::pair<int, bool>, std::unique_ptr<Sample>> made;

static Sample& sampleOf(int triangles, bool oneMesh)
{
    std::unique_ptr<Sample>& sample = made[{triangles, oneMesh}];
    if (!sample)
        sample = std::make_unique<Sample>(triangles, oneMesh);
    return *sample;
}

static double loadSeconds(const Sample& sample)
{
    OGroup group;
    const auto start = std::chrono::steady_clock::now();
    const int result =
        load3ds(sample.file.c_str(), &group, sample.folder.root().c_str(),
                LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_SMOOTHING | LOAD_TOLERANT,
                nullptr, nullptr);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result == 0 ? seconds : -1;
}

static void measure(benchmark::State& state, bool oneMesh)
{
    Sample& sample = sampleOf(int(state.range(0)), oneMesh);
    for (auto _ : state)
    {
        const double seconds = loadSeconds(sample);
        if (seconds < 0)
            return state.SkipWithError("the scene doesn't load");
        state.SetIterationTime(seconds);
        sample.bestRate = std::max(sample.bestRate, sample.triangles / seconds);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * sample.triangles);
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(sample.bytes));
    state.counters["MB"] = double(sample.bytes) / 1e6;
}

// items_per_second are triangles.
static void loadTiles(benchmark::State& state)
{
    measure(state, false);
}
BENCHMARK(loadTiles)->Arg(10000)->Arg(100000)->Arg(1000000)->UseManualTime()->Unit(benchmark::kMillisecond);

static void loadOneMesh(benchmark::State& state)
{
    measure(state, true);
}
BENCHMARK(loadOneMesh)->Arg(1000)->Arg(10000)->Arg(64000)->UseManualTime()->Unit(benchmark::kMillisecond);

// Of the best rates of the scenes of tiles, the highest over the lowest; 0 if none was measured.
static double rateRatio()
{
    double lowest = 0, highest = 0;
    for (const auto& [key, sample] : made)
    {
        if (key.second)
            continue;
        lowest = lowest == 0 ? sample->bestRate : std::min(lowest, sample->bestRate);
        highest = std::max(highest, sample->bestRate);
    }
    return lowest > 0 ? highest / lowest : 0;
}

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    vrkInitErrorLog(3);
    vrkSelectRasterizer(0);
    const VRKNativeWindow window = {nullptr, 0, 64, 64};
    if (vrkInitViewport(&window, 32, 8, 24, false, 0, true) != 0)
    {
        fprintf(stderr, "no off-screen surface\n");
        return 1;
    }
    initOpenGL();
    benchmark::RunSpecifiedBenchmarks();
    const double ratio = rateRatio();
    if (ratio > 0)
        printf("tiles: best rate / worst rate = %.2f (linear: no more than 2)\n", ratio);
    return ratio <= 2 ? 0 : 1;
}
