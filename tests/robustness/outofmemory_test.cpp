// Memory that runs out: each call for memory in turn finds none, through a load, a frame, a tree and its
// queries. Nothing crashes and nothing escapes to the host; what could not be made is missing.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "apps/vornik/packformat.h"
#include "tests/support/allocations.h"
#include "tests/support/completescene.h"
#include "tests/support/engine.h"
#include "tests/support/imagewriter.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/pack.h"
#include "vornik/lighting/vertexlight.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/scene/scene.h"
#include "vornik/spatial/queries.h"

static const int everything = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_KEYFRAMES | LOAD_MATERIALS |
                              LOAD_SMOOTHING | LOAD_COMBINE | LOAD_TEXTURE_32BIT;

class OutOfMemory : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        file = folder.write("SCENE.3DS", build3ds(completeScene()));
        folder.write("A.TGA", writeTga(Picture(8, 8)));
        const std::vector<uint8_t> scene = build3ds(completeScene()), image = writeTga(Picture(8, 8));
        pack = folder.write("X.PAK", buildPack({{"SCENE.3DS", {scene.begin(), scene.end()}},
                                                {"D\\A.TGA", {image.begin(), image.end()}}}));
    }
    void TearDown() override
    {
        failAllocation(0);
        packClose();
        EngineTest::TearDown();
    }

    // Runs work with the first, the second, ... call for memory failing, up to the first run that has fewer
    // calls. prepare and finish have all the memory they want.
    template <class State>
    void failEachCall(std::function<State()> prepare, std::function<void(State&)> work)
    {
        for (long n = 1; n < 100000; ++n)
        {
            SCOPED_TRACE(n);
            State state = prepare();
            failAllocation(n);
            ASSERT_NO_THROW(work(state));
            if (!failAllocation(0))
            {
                calls = n - 1;
                return;
            }
        }
        FAIL() << "no end of calls for memory";
    }

    std::unique_ptr<Scene> loaded(int flags = everything)
    {
        auto scene = std::make_unique<Scene>();
        EXPECT_NE(scene->createOGroup(file.c_str(), flags, folder.root().c_str(), 0, nullptr, nullptr),
                  nullptr);
        return scene;
    }

    std::string file, pack;
    long calls = 0; // that failed, one after the other
};

using Loaded = std::unique_ptr<Scene>;

TEST_F(OutOfMemory, Load)
{
    const std::string directory = folder.root();
    for (const int flags : {everything, everything | LOAD_TOLERANT})
        failEachCall<Loaded>(
            [] { return std::make_unique<Scene>(); },
            [&](Loaded& scene)
            {
                if (scene->createOGroup(file.c_str(), flags, directory.c_str(), 0, nullptr, nullptr))
                    scene->render(VRK_RENDER_SOLID);
            });
    EXPECT_GT(calls, 5);
}

TEST_F(OutOfMemory, LoadFromAPack)
{
    failEachCall<Loaded>([] { return std::make_unique<Scene>(); },
                         [&](Loaded& scene)
                         {
                             scene->createOGroup("scene.3ds", everything | LOAD_FROM_PACK | LOAD_TOLERANT,
                                                 "d", 0, nullptr, pack.c_str());
                         });
    EXPECT_GT(calls, 5);
}

// Once the transparent stack has its size a frame takes no memory at all.
TEST_F(OutOfMemory, Frame)
{
    failEachCall<Loaded>([&] { return loaded(); },
                         [](Loaded& scene)
                         {
                             scene->render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT | VRK_RENDER_CULL);
                             scene->render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_ANIMATE_TEXTURES);
                         });
}

TEST_F(OutOfMemory, Light)
{
    failEachCall<Loaded>([&] { return loaded(); },
                         [](Loaded& scene)
                         {
                             scene->groups[0]->calcDynamicLights(VRK_LIGHT_SHADOWS);
                             scene->calcDynamicLights(VRK_LIGHT_SHADOWS);
                         });
    EXPECT_GT(calls, 5);
}

TEST_F(OutOfMemory, TreeAndQueries)
{
    failEachCall<Loaded>([&] { return loaded(); },
                         [](Loaded& scene)
                         {
                             OGroup* group = scene->groups[0];
                             group->constructOctree();
                             Vertex3D from = {1, 1, 5}, to = {1, 1, -5}, normal = {0, 0, 0};
                             vrkRaySceneDistance(&from, &to, group);
                             vrkRayScene(&from, &to, 10, group);
                             vrkCheckHeight(&from, &to, group);
                             vrkCheckNegativeHeight(&from, &to, group);
                             vrkCheckCollision(&to, &from, 1, group, true, &normal, 3);
                         });
    EXPECT_GT(calls, 5);
}

TEST_F(OutOfMemory, WorkOnAGroup)
{
    failEachCall<Loaded>([&] { return loaded(everything & ~(LOAD_SMOOTHING | LOAD_COMBINE)); },
                         [](Loaded& scene)
                         {
                             OGroup* group = scene->groups[0];
                             Mesh* mesh = group->meshes[0];
                             mesh->prepareSmoothing();
                             mesh->calcNormals();
                             mesh->calcEdgeNormals();
                             mesh->sortFacesByMaterial();
                             mesh->expandObject(mesh->vertexCount + 3, mesh->faceCount + 1);
                             delete static_cast<Mesh*>(mesh->copyObject());
                             group->closeCombine(0.5f);
                             group->adjustSize(mesh, 2);
                             group->markAttach(true, mesh);
                             group->attach();
                             scene->render(VRK_RENDER_SOLID);
                         });
    EXPECT_GT(calls, 5);
}
