// Memory that runs out: each call for memory in turn finds none, through a load, a frame, a tree and its
// queries. Nothing crashes and nothing escapes to the host; what could not be made is missing.

#include <gtest/gtest.h>

#include <GL/gl.h>

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
#include "vornik/assets/texture.h"
#include "vornik/console/console.h"
#include "vornik/core/errorlog.h"
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

static void drawFrame(Loaded& scene)
{
    scene->render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT | VRK_RENDER_CULL);
    scene->render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_ANIMATE_TEXTURES);
}

// Once the transparent stack has its size a frame takes no memory at all.
TEST_F(OutOfMemory, Frame)
{
    // What OpenGL's driver does at first frames goes in part through code that is counted.
    for (int i = 0; i < 3; ++i)
    {
        Loaded first = loaded();
        drawFrame(first);
        glFinish();
    }
    failEachCall<Loaded>([&] { return loaded(); }, drawFrame);
    EXPECT_EQ(calls, 0);
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

// Images that a host reads by itself.
TEST_F(OutOfMemory, Images)
{
    folder.write("B.JPG", writeJpeg(Picture(8, 8)));
    folder.write("C.IFL", std::string("A.TGA\nB.JPG\n"));
    const std::string directory = folder.root() + "/";
    for (const bool tolerant : {false, true})
        failEachCall<std::unique_ptr<Texture>>([] { return std::make_unique<Texture>(); },
                                               [&](std::unique_ptr<Texture>& texture)
                                               {
                                                   texture->acceptSubstitutes = tolerant;
                                                   texture->setBaseDir(directory.c_str());
                                                   texture->setFilename("C.IFL", 0);
                                                   texture->extractNames();
                                                   for (int frame = 1; frame <= 2; ++frame)
                                                   {
                                                       texture->loadTexture(frame, 0.5f);
                                                       texture->sharpenTexture();
                                                       texture->uploadTexture(frame);
                                                   }
                                                   texture->setBaseDir("D\\");
                                                   texture->setFilename("A.TGA", 1);
                                                   texture->loadTexture(1, pack.c_str(), 1.0f);
                                               });
    EXPECT_GT(calls, 10);
}

TEST_F(OutOfMemory, LightsFile)
{
    const std::string lights = folder.path("LIGHTS.BIN");
    failEachCall<Loaded>([&] { return loaded(); },
                         [&](Loaded& scene)
                         {
                             scene->groups[0]->saveLights(lights.c_str());
                             scene->groups[0]->loadLights(lights.c_str());
                             scene->groups[0]->applyLights();
                         });
    EXPECT_GT(calls, 2);
}

static float squareOf(float x)
{
    return x * x;
}

static void doNothing() {}

// A console as a host starts it: the sink of reports, with a scene, variables and functions.
static void startConsole(Console* console, Scene* scene, float* variable)
{
    vrkInitErrorLog(console);
    console->setScene(scene);
    console->addVar(variable, "a variable of a rather long name");
    console->addVar(variable);
    console->addFunc(squareOf, "a function of a rather long name");
    console->addFunc(doNothing, "none");
}

TEST_F(OutOfMemory, ConsoleCommands)
{
    const std::string place = folder.root() + "/";
    const std::string lines[] = {
        "a command that nobody knows, and a long one",
        "help",
        "help load3ds",
        "info",
        "mem",
        "sceneinfo",
        "evarlist",
        "efunclist",
        "set var1 2.5",
        "get var1",
        "eval none",
        "dir " + place + "*.3ds",
        "gamma 0.75",
        "fov 60",
        "load3ds " + file + " " + place + " /s /r /o",
        "reload3ds /x /c",
        "activetlist 0",
        "activeplist 0",
        "activecamera 0",
        "clear3ds",
        "cls",
        "exit",
    };
    failEachCall<Loaded>([] { return std::make_unique<Scene>(); },
                         [&](Loaded& scene)
                         {
                             float variable = 1;
                             Console console;
                             startConsole(&console, scene.get(), &variable);
                             for (const std::string& line : lines)
                                 console.command(line.c_str());
                             vrkInitErrorLog(3);
                         });
    EXPECT_GT(calls, 20);
}

TEST_F(OutOfMemory, Script)
{
    const std::string inner = folder.write("INNER.TXT", std::string("#info\n#gamma 0.75\n"));
    const std::string script = folder.write("OUTER.TXT", "a comment\n#load3ds " + file + " " + folder.root() +
                                                             " /r\n#execscript " + inner + "\n#exit\n");
    failEachCall<Loaded>([] { return std::make_unique<Scene>(); },
                         [&](Loaded& scene)
                         {
                             float variable = 1;
                             Console console;
                             startConsole(&console, scene.get(), &variable);
                             console.readScript(script.c_str());
                             vrkInitErrorLog(3);
                         });
    EXPECT_GT(calls, 20);
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
