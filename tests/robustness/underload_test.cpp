// What happens often, many times over: loads and deletions, commands, frames of particles, full lists. Memory
// and open files stay where they are.
//
// VORNIK_LOAD_ROUNDS sets the number of rounds, 10,000 for a thorough run; a few hundred serve every day.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "apps/vornik/packformat.h"
#include "tests/support/allocations.h"
#include "tests/support/completescene.h"
#include "tests/support/engine.h"
#include "tests/support/imagewriter.h"
#include "tests/support/testmesh.h"
#include "vornik/animation/path.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/pack.h"
#include "vornik/assets/tlist.h"
#include "vornik/console/console.h"
#include "vornik/core/errorlog.h"
#include "vornik/lighting/vertexlight.h"
#include "vornik/particles/particlesource.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/scene/scene.h"

namespace fs = std::filesystem;

static const int everything = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_KEYFRAMES | LOAD_MATERIALS |
                              LOAD_LIGHTING | LOAD_SMOOTHING | LOAD_COMBINE | LOAD_OCTREE;

static int rounds()
{
    const char* wanted = std::getenv("VORNIK_LOAD_ROUNDS");
    return wanted ? std::atoi(wanted) : 200;
}

static long openFiles()
{
    const auto all = fs::directory_iterator("/proc/self/fd");
    return std::distance(fs::begin(all), fs::end(all));
}

static std::string text(const std::vector<uint8_t>& bytes)
{
    return {bytes.begin(), bytes.end()};
}

class UnderLoad : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        vrkInitErrorLog(3);
        scene = build3ds(completeScene());
        file = folder.write("SCENE.3DS", scene);
        folder.write("A.TGA", writeTga(Picture(8, 8)));
        pack = folder.write("X.PAK", buildPack({{"SCENE.3DS", text(scene)},
                                                {"D\\A.TGA", text(writeTga(Picture(8, 8)))},
                                                {"BROKEN.3DS", "no scene"}}));
    }
    void TearDown() override
    {
        packClose();
        EngineTest::TearDown();
    }

    // Does it once to settle, then many times.
    template <class Work>
    void expectFlat(Work work)
    {
        work();
        work();
        // Listing a folder goes through code that is counted in part: not between the two looks at memory.
        const long files = openFiles();
        const long long held = heldBytes();
        for (int i = rounds(); i > 0 && !HasFailure(); --i)
            work();
        EXPECT_EQ(heldBytes(), held);
        EXPECT_EQ(openFiles(), files);
    }

    void loadOnce(const std::string& name, int flags, const char* directory, const char* packName)
    {
        Scene whole;
        if (OGroup* group =
                whole.createOGroup(name.c_str(), flags, directory, VRK_LIGHT_SHADOWS, nullptr, packName))
        {
            whole.render(VRK_RENDER_SOLID);
            EXPECT_EQ(whole.deleteOGroup(group), 0);
        }
    }

    std::vector<uint8_t> scene;
    std::string file, pack;
};

TEST_F(UnderLoad, LooseScenesComeAndGo)
{
    expectFlat([&] { loadOnce(file, everything, folder.root().c_str(), nullptr); });
    expectFlat([&] { loadOnce(file, everything | LOAD_TOLERANT, folder.root().c_str(), nullptr); });
}

TEST_F(UnderLoad, ScenesOfAPackComeAndGo)
{
    expectFlat([&] { loadOnce("scene.3ds", everything | LOAD_FROM_PACK, "d", pack.c_str()); });
    expectFlat([&]
               { loadOnce("scene.3ds", everything | LOAD_FROM_PACK | LOAD_TOLERANT, "d", pack.c_str()); });
}

TEST_F(UnderLoad, FailingLoadsKeepNothing)
{
    const std::string broken = folder.write("BROKEN.3DS", std::string("no scene"));
    const std::string cut = folder.write("CUT.3DS", std::vector<uint8_t>(scene.begin(), scene.begin() + 700));
    // A missing member leaves the pack open, and only the last one is.
    expectFlat(
        [&]
        {
            loadOnce(broken, everything, "", nullptr);
            loadOnce(cut, everything, "", nullptr);
            loadOnce(folder.path("NONE.3DS"), everything, "", nullptr);
            loadOnce(folder.root(), everything, "", nullptr);
            loadOnce("broken.3ds", everything | LOAD_FROM_PACK, "d", pack.c_str());
            loadOnce("none.3ds", everything | LOAD_FROM_PACK, "d", pack.c_str());
            loadOnce("none.3ds", everything | LOAD_FROM_PACK, "d", file.c_str());
        });
}

TEST_F(UnderLoad, AGroupThatIsClearedAndFilledAgainStaysAsLarge)
{
    OGroup group;
    expectFlat(
        [&]
        {
            group.load(file.c_str(), everything | LOAD_CLEAR, folder.root().c_str());
            EXPECT_EQ(group.meshCount, 2);
        });
}

// A fountain.
static void spout(ParticleSource* source, Particle* particle)
{
    if (!particle)
        return;
    particle->life = particle->maxLife = 30;
    particle->position = source->position;
    particle->velocity = source->direction;
}

TEST_F(UnderLoad, ParticlesRunForHours)
{
    ParticleSource source;
    source.initParticles(16);
    const Vertex3D position = {0, 0, 0}, direction = {0.1f, 0.2f, 0.5f};
    const Color color = {1, 1, 1, 1};
    source.initSource(&position, &direction, nullptr, &color, nullptr, nullptr, 1.0f, 1.0f, VRK_SRC_ALPHA,
                      VRK_ONE, spout, nullptr, true);
    const long long held = heldBytes();
    for (int frame = 0; frame < 100 * rounds(); ++frame)
        source.update();
    EXPECT_EQ(heldBytes(), held);
}

TEST_F(UnderLoad, ASceneHoldsAsManyGroupsAsItHasSlots)
{
    Scene whole;
    for (int i = 0; i < 256; ++i)
        ASSERT_NE(whole.createOGroup(file.c_str(), LOAD_MESHES, "", 0, nullptr, nullptr), nullptr) << i;
    EXPECT_EQ(whole.createOGroup(file.c_str(), LOAD_MESHES, "", 0, nullptr, nullptr), nullptr);
    whole.camera = new Camera;
    whole.camera->eye = {0, -10, 2};
    whole.camera->target = {0, 0, 0};
    EXPECT_EQ(whole.render(VRK_RENDER_SOLID), 0);
    delete whole.camera;
    whole.camera = nullptr;
}

TEST_F(UnderLoad, AFullGroupDrawsAndAnswers)
{
    OGroup group;
    group.addTList(new TList);
    int added = 0;
    for (;; ++added)
    {
        Mesh* mesh = makeMesh("m", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}},
                              {static_cast<float>(added % 64), static_cast<float>(added / 64), 0});
        mesh->sortFacesByMaterial();
        if (group.addMesh(mesh) != 0)
        {
            delete mesh;
            break;
        }
    }
    EXPECT_EQ(added, 4096);
    EXPECT_EQ(group.constructOctree(), 0);
    Camera camera;
    camera.eye = {32, -20, 20};
    camera.target = {32, 32, 0};
    EXPECT_EQ(group.render(VRK_RENDER_SOLID, &camera), 0);
}

// Ten commands a round.
TEST_F(UnderLoad, ConsoleCommandsAreObeyedAllDay)
{
    Scene whole;
    Console console;
    vrkInitErrorLog(&console);
    console.setScene(&whole);
    float speed = 1;
    console.addVar(&speed, "speed");
    const std::string script = folder.write("S.TXT", std::string("#set speed 3\n#get speed\n#nothing\n"));
    const std::string commands[] = {"set speed 2.5",
                                    "eval none",
                                    "load3ds " + file + " " + folder.root() + " /s /r /c",
                                    "sceneinfo",
                                    "execscript " + script,
                                    "dir " + folder.path("*.*"),
                                    "activetlist 0",
                                    "help set",
                                    std::string(300, 'x'),
                                    "clear3ds"};
    std::vector<char> text(VRK_CONSOLE_TEXT);
    int round = 0;
    expectFlat(
        [&]
        {
            for (const std::string& command : commands)
                console.command(command.c_str());
            EXPECT_EQ(speed, 3.0f);
            EXPECT_EQ(whole.groupCount, 0);
            // The text overflows in between.
            if (++round % 1000 != 0)
                return;
            EXPECT_GT(console.getText(text.data()), 0);
        });
    vrkInitErrorLog(3);
}

// Fills every list of a group up to its capacity; each takes no more.
static void fillLists(OGroup* group)
{
    const auto fill = [](auto add, auto make)
    {
        for (auto* item = make();; item = make())
            if (add(item) != 0)
            {
                delete item;
                return;
            }
    };
    fill([&](Mesh* mesh) { return group->addMesh(mesh); },
         []
         {
             Mesh* mesh = makeMesh("m", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
             mesh->sortFacesByMaterial();
             return mesh;
         });
    fill([&](Light* light) { return group->addLight(light); }, [] { return new Light; });
    fill([&](Camera* camera) { return group->addCamera(camera); }, [] { return new Camera; });
    fill([&](TList* list) { return group->addTList(list); }, [] { return new TList; });
    fill([&](PathList* list) { return group->addPathList(list); }, [] { return new PathList; });
    fill([&](ParticleSource* source) { return group->addParticleSource(source); },
         [] { return new ParticleSource; });
    fill([&](VRKPath* path) { return group->pathLists[0]->addPath(path); },
         [] { return new VRKPath(2, VRK_NODE_OBJECT, VRK_TRACK_POSITION, nullptr); });
}

// What a file adds to lists without room is read and dropped.
TEST_F(UnderLoad, AGroupWhoseListsAreAllFullReadsDrawsAndLights)
{
    OGroup group;
    fillLists(&group);
    EXPECT_EQ(group.meshCount, maxMeshs);
    EXPECT_EQ(group.lightCount, maxLights);
    EXPECT_EQ(group.cameraCount, maxCameras);
    EXPECT_EQ(group.tlistCount, maxTLists);
    EXPECT_EQ(group.pathListCount, maxPaths);
    EXPECT_EQ(group.particleSourceCount, maxParticleSources);
    EXPECT_EQ(group.pathLists[0]->pathCount, VRK_PATH_CAPACITY);
    const long files = openFiles();
    const auto load = [&](int flags)
    { EXPECT_EQ(load3ds(file.c_str(), &group, folder.root().c_str(), flags, nullptr, nullptr), 0); };
    const int read = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_KEYFRAMES | LOAD_MATERIALS;
    load(read);
    const long long held = heldBytes();
    for (int i = 0; i < 5; ++i)
        for (const int flags : {read, read | LOAD_TOLERANT})
            load(flags);
    EXPECT_EQ(heldBytes(), held);
    EXPECT_EQ(openFiles(), files);
    EXPECT_EQ(group.meshCount, maxMeshs);
    EXPECT_EQ(group.tlistCount, maxTLists);

    group.calcDynamicLights(VRK_LIGHT_SHADOWS);
    Camera camera;
    camera.eye = {0, -20, 20};
    EXPECT_EQ(group.render(VRK_RENDER_SOLID | VRK_RENDER_ANIMATE_TEXTURES, &camera), 0);
}
