// What a frame costs in the engine alone: OpenGL is silent here (silentgl.cpp), so that nothing but the
// engine's own work and its calls is measured.
//
// Every benchmark draws one frame an iteration and prints the time for each mesh, face or particle. The
// scenes are a patch of ground of 100,000 triangles, 4,000 boxes on a square around the camera, 10,000
// transparent faces in 100 meshes, and 100 particle sources of 1,000 quads.

#include <benchmark/benchmark.h>

#include <chrono>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "bench/framestage.h"
#include "vornik/animation/path.h"
#include "vornik/particles/particlesource.h"
#include "vornik/rasterizer/frustum.h"
#include "vornik/rasterizer/transparent.h"
#include "vornik/scene/material.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"

// Time for one of count things in each iteration.
static benchmark::Counter each(int count)
{
    return {double(count), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert};
}

static void groundOf100000Triangles(benchmark::State& state)
{
    Stage stage(1);
    stage.group->addMesh(makeGround(250, 200, {0.0f, 0.0f, 0.0f}));
    finish(*stage.group->meshes[0], 1);
    for (auto _ : state)
        stage.render(int(state.range(0)));
    state.counters["per_face"] = each(stage.group->meshes[0]->faceCount);
}
BENCHMARK(groundOf100000Triangles)->ArgName("flags")->Arg(VRK_RENDER_SOLID);
BENCHMARK(groundOf100000Triangles)->ArgName("flags")->Arg(VRK_RENDER_SOLID | VRK_RENDER_BASIC);

// Each box goes to and fro, or, every second one, turns: a track of six keys each.
static void animate(OGroup& group)
{
    PathList* list = new PathList;
    list->lastFrame = list->frameCount = 100;
    for (int i = 0; i < group.meshCount; i++)
    {
        Mesh* mesh = group.meshes[i];
        const bool turns = i % 2 == 1;
        const int keys = 6;
        VRKPath* path =
            new VRKPath(keys, VRK_NODE_OBJECT, turns ? VRK_TRACK_ROTATION : VRK_TRACK_POSITION, mesh);
        for (int k = 0; k < keys; k++)
            if (turns)
                path->set(k, 1.0f, 0.0f, 0.0f, 30.0f, k * 20);
            else
                path->set(k, mesh->position.z, mesh->position.y, mesh->position.x + float(k % 2), k * 20);
        list->addPath(path);
    }
    group.addPathList(list);
    group.setActivePathList(0);
    group.animated = 1;
}

static int inView(Stage& stage)
{
    Frustrum frustrum;
    vrkMakeFrustrum(&stage.camera, &frustrum);
    int count = 0;
    for (int i = 0; i < stage.group->meshCount; i++)
        count += vrkIsObjectInFrustrum(&frustrum, stage.group->meshes[i]);
    return count;
}

// Made once and kept: in memory that older scenes have left in pieces a frame takes up to twice as long.
static Stage& boxStage(bool animated, int materials)
{
    static std::map<std::pair<bool, int>, std::unique_ptr<Stage>> made;
    std::unique_ptr<Stage>& stage = made[{animated, materials}];
    if (!stage)
    {
        stage = std::make_unique<Stage>(materials);
        addBoxes(*stage->group, materials);
        if (animated)
            animate(*stage->group);
    }
    return *stage;
}

static void boxes(benchmark::State& state, int flags, bool animated, int materials)
{
    Stage& stage = boxStage(animated, materials);
    int frame = 0;
    for (auto _ : state)
    {
        stage.group->setCurrentFrame(frame++ % 100);
        stage.render(flags);
    }
    state.counters["per_mesh"] = each(stage.group->meshCount);
    state.counters["drawn"] = flags & VRK_RENDER_CULL ? inView(stage) : stage.group->meshCount;
}
BENCHMARK_CAPTURE(boxes, still, VRK_RENDER_SOLID, false, 20);
BENCHMARK_CAPTURE(boxes, stillCulled, VRK_RENDER_SOLID | VRK_RENDER_CULL, false, 20);
BENCHMARK_CAPTURE(boxes, stillFromLists, VRK_RENDER_SOLID | VRK_RENDER_CALL_LIST, false, 20);
BENCHMARK_CAPTURE(boxes, stillOf500Materials, VRK_RENDER_SOLID, false, 500);
BENCHMARK_CAPTURE(boxes, animated, VRK_RENDER_SOLID, true, 20);
BENCHMARK_CAPTURE(boxes, animatedCulled, VRK_RENDER_SOLID | VRK_RENDER_CULL, true, 20);

static double secondsOfFrames(Stage& stage, int flags, int frames)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int frame = 0; frame < frames; frame++)
    {
        stage.group->setCurrentFrame(frame);
        stage.render(flags);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// In one run: how many times a frame of still boxes one of animated boxes takes, and how many times one that
// leaves out what isn't seen one that draws all.
static void boxesRatio(benchmark::State& state)
{
    Stage& still = boxStage(false, 20);
    Stage& animated = boxStage(true, 20);
    double stillSeconds = 0.0, animatedSeconds = 0.0, culledSeconds = 0.0;
    for (auto _ : state)
    {
        stillSeconds += secondsOfFrames(still, VRK_RENDER_SOLID, 100);
        animatedSeconds += secondsOfFrames(animated, VRK_RENDER_SOLID, 100);
        culledSeconds += secondsOfFrames(still, VRK_RENDER_SOLID | VRK_RENDER_CULL, 100);
    }
    state.counters["animated"] = animatedSeconds / stillSeconds;
    state.counters["culled"] = culledSeconds / stillSeconds;
}
BENCHMARK(boxesRatio)->Iterations(10)->Unit(benchmark::kMillisecond);

// 100 patches of 100 faces. Queued under each mesh's matrix, sorted as one and drawn face by face.
static void transparentFaces(benchmark::State& state)
{
    Stage stage(20, 0.5f);
    int faces = 0;
    for (int i = 0; i < 100; i++)
    {
        stage.group->addMesh(makeGround(10, 5, {float(i % 10) * 10.0f, float(i / 10) * 10.0f, float(i % 7)}));
        finish(*stage.group->meshes[i], 1 + i % 20);
        faces += stage.group->meshes[i]->faceCount;
    }
    vrkInitTransparentPlaneStack(faces);
    for (auto _ : state)
    {
        stage.render(VRK_RENDER_TRANSPARENT);
        vrkDrawTransparentPlanes(&stage.camera);
    }
    vrkUnInitTransparentPlaneStack();
    state.counters["faces"] = faces;
    state.counters["per_face"] = each(faces);
}
BENCHMARK(transparentFaces);

// Lives of 50 to 149 frames, so that about one particle in a hundred starts anew in a frame.
static void start(ParticleSource* source, Particle* particle)
{
    const int number = int(particle - source->particles);
    particle->position = {0.0f, 0.0f, 0.0f};
    particle->velocity = {float(number % 7) * 0.01f, float(number % 5) * 0.01f, 0.1f};
    particle->acceleration = {0.0f, 0.0f, -0.001f};
    particle->spin = {0.0f, 0.0f, 1.0f};
    particle->life = particle->maxLife = 50 + number % 100;
}

static const int sourceCount = 100, quadCount = 1000;

static std::vector<std::unique_ptr<ParticleSource>> makeSources()
{
    std::vector<std::unique_ptr<ParticleSource>> sources;
    for (int i = 0; i < sourceCount; i++)
    {
        sources.push_back(std::make_unique<ParticleSource>());
        Material* material = new Material;
        material->addFirstTexture(new Texture);
        sources[size_t(i)]->initParticles(quadCount);
        sources[size_t(i)]->initSource(nullptr, nullptr, material, nullptr, nullptr, nullptr, 1.0f, 1.0f, 0,
                                       0, start, nullptr, true);
        for (int frame = 0; frame < 200; frame++)
            sources[size_t(i)]->update();
    }
    return sources;
}

static void particleUpdate(benchmark::State& state)
{
    const auto sources = makeSources();
    for (auto _ : state)
        for (const auto& source : sources)
            source->update();
    state.counters["per_particle"] = each(sourceCount * quadCount);
}
BENCHMARK(particleUpdate);

static void particleDraw(benchmark::State& state)
{
    Stage stage(1);
    const auto sources = makeSources();
    for (auto _ : state)
        for (const auto& source : sources)
            source->draw(&stage.camera);
    state.counters["per_particle"] = each(sourceCount * quadCount);
}
BENCHMARK(particleDraw);

BENCHMARK_MAIN();
