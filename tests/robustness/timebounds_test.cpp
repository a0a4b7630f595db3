// Inputs that are small for what a plain walk would make of them: every count that a file can drive is driven
// against another. Each ends within a time that a walk of all for each would pass many times over.
//
// The times are wide, for slow machines and for builds with checks.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <pthread.h>

#include "tests/support/engine.h"
#include "tests/support/testmesh.h"
#include "tests/support/writer3ds.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/lighting/vertexlight.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/spatial/octree.h"

#if defined(__SANITIZE_ADDRESS__)
static const double slower = 8;
#else
static const double slower = 1;
#endif

class TimeBounds : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        vrkInitErrorLog(3);
    }

    // Seconds are of a build without checks, and of processor time: the machine may have other work.
    template <class Work>
    void expectWithin(double seconds, Work work)
    {
        const std::clock_t begin = std::clock();
        work();
        const double taken = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
        RecordProperty("milliseconds", static_cast<int>(taken * 1e3));
        if (std::getenv("VORNIK_TIMES"))
            std::printf("%s: %.3f s\n", ::testing::UnitTest::GetInstance()->current_test_info()->name(),
                        taken);
        EXPECT_LT(taken, seconds * slower);
    }

    int load(const std::vector<uint8_t>& bytes, int flags)
    {
        return load3ds(folder.write("SCENE.3DS", bytes).c_str(), &group, "", flags, nullptr, nullptr);
    }

    OGroup group;
};

static ChunkWriter fileStart()
{
    ChunkWriter file;
    file.open(0x4D4D);
    return file;
}

static void addEmptyMesh(ChunkWriter* file, const std::string& name)
{
    file->open(0x4000).text(name).open(0x4100).close().close();
}

// As many headers of nodes as there is room for in 7 MB, each of which names the last of 4,096 meshes.
TEST_F(TimeBounds, NamesInTheKeyframer)
{
    ChunkWriter file = fileStart();
    file.open(0x3D3D);
    for (int i = 0; i < 4096; ++i)
        addEmptyMesh(&file, "a rather long name of a mesh " + std::to_string(i));
    file.close().open(0xB000);
    for (int i = 0; i < 120000; ++i)
        file.open(0xB010).text("a rather long name of a mesh 4095").u16(0).u16(0).i16(7).close();
    expectWithin(3,
                 [&]
                 {
                     EXPECT_EQ(load(file.finish(), LOAD_MESHES | LOAD_KEYFRAMES), 0);
                     ASSERT_EQ(group.meshCount, 4096);
                     EXPECT_EQ(group.meshes[4095]->parentId, 7);
                 });
}

TEST_F(TimeBounds, ParentsOfAFullGroup)
{
    ChunkWriter file = fileStart();
    for (int i = 0; i < 4096; ++i)
        addEmptyMesh(&file, std::to_string(i));
    file.open(0xB000);
    for (int i = 0; i < 4096; ++i)
        file.open(0xB030)
            .i16(static_cast<int16_t>(i))
            .close()
            .open(0xB010)
            .text(std::to_string(i))
            .u16(0)
            .u16(0)
            .i16(4095)
            .close();
    expectWithin(1,
                 [&]
                 {
                     EXPECT_EQ(load(file.finish(), LOAD_MESHES | LOAD_KEYFRAMES), 0);
                     for (int i = 0; i < group.meshCount; ++i)
                         ASSERT_EQ(group.meshes[i]->parent, group.meshes[4095]);
                 });
}

// Nodes of the tolerant reading that name a mesh again get copies of it: of one vertex and 65,535 faces.
TEST_F(TimeBounds, InstancesOfManyFaces)
{
    Scene3ds scene;
    Mesh3ds mesh;
    mesh.name = "m";
    mesh.vertices = {{0, 0, 0}};
    mesh.faces.resize(65535);
    scene.meshes = {mesh};
    for (int i = 0; i < 4000; ++i)
    {
        Node3ds node;
        node.name = "m";
        scene.nodes.push_back(node);
    }
    expectWithin(6,
                 [&]
                 {
                     EXPECT_EQ(load(build3ds(scene), LOAD_MESHES | LOAD_KEYFRAMES | LOAD_TOLERANT), 0);
                     int64_t faces = 0;
                     for (int i = 0; i < group.meshCount; ++i)
                         faces += group.meshes[i]->faceCount;
                     EXPECT_EQ(group.meshCount, 4000);
                     EXPECT_EQ(faces, 65535 * (1 + (1 << 21) / 65535));
                 });
}

static void addCamera(ChunkWriter* file, const std::string& name)
{
    file->open(0x4000)
        .text(name)
        .open(0x4700)
        .vector({0, 0, 0})
        .vector({1, 0, 0})
        .f32(0)
        .f32(50)
        .close()
        .close();
}

// Opens a node; its tracks may follow.
static void openNode(ChunkWriter* file, uint16_t type, int number, const std::string& name, int parent)
{
    file->open(type).open(0xB030).i16(static_cast<int16_t>(number)).close();
    file->open(0xB010).text(name).u16(0).u16(0).i16(static_cast<int16_t>(parent)).close();
}

static void addPositions(ChunkWriter* file, const std::vector<int>& frames)
{
    file->open(0xB020).u16(0).u32(0).u32(0).u32(static_cast<uint32_t>(frames.size()));
    for (const int frame : frames)
        file->i32(frame).u16(0).vector({1, 2, 3});
    file->close();
}

// What hangs from a camera gets a key for each frame, each of which looks for its place among the camera's.
TEST_F(TimeBounds, MeshesBelowACameraOfManyKeys)
{
    ChunkWriter file = fileStart();
    addCamera(&file, "C");
    for (int i = 0; i < 200; ++i)
        addEmptyMesh(&file, std::to_string(i));
    file.open(0xB000);
    openNode(&file, 0xB003, 0, "C", -1);
    std::vector<int> frames(150000, 0);
    frames.back() = 5000;
    addPositions(&file, frames);
    file.close();
    for (int i = 0; i < 200; ++i)
    {
        openNode(&file, 0xB002, i + 1, std::to_string(i), 0);
        addPositions(&file, {0, 4096});
        file.close();
    }
    expectWithin(
        2, [&]
        { EXPECT_EQ(load(file.finish(), LOAD_MESHES | LOAD_CAMERAS | LOAD_KEYFRAMES | LOAD_TOLERANT), 0); });
}

// Runs work where a host's thread with little room for calls within calls would.
static void runOnSmallStack(std::function<void()> work)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 << 10), 0);
    pthread_t thread;
    const auto run = [](void* argument) -> void*
    {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST_F(TimeBounds, AHierarchyOfEightThousandNodesTakesNoStack)
{
    const int nodes = 8000;
    ChunkWriter file = fileStart();
    addCamera(&file, "C");
    addEmptyMesh(&file, "M");
    file.open(0xB000);
    for (int i = 0; i < nodes; ++i)
    {
        openNode(&file, i == nodes - 1 ? 0xB003 : 0xB004, i, "C", i - 1);
        file.close();
    }
    openNode(&file, 0xB002, nodes, "M", nodes - 1);
    addPositions(&file, {0, 1});
    file.close();
    const std::string name = folder.write("SCENE.3DS", file.finish());
    const int selected = vrkSelectedRasterizer;
    vrkSelectedRasterizer = 7; // no context is current in the thread
    runOnSmallStack(
        [&]
        {
            EXPECT_EQ(load3ds(name.c_str(), &group, "",
                              LOAD_MESHES | LOAD_CAMERAS | LOAD_KEYFRAMES | LOAD_TOLERANT, nullptr, nullptr),
                      0);
        });
    vrkSelectedRasterizer = selected;
    EXPECT_EQ(group.meshCount, 1);
}

// Names that the hash function of GCC's library, MurmurHash64A by Austin Appleby, takes for one: any first
// eight bytes, and the second eight that lead back to the same state.
static std::string nameOfOneHash(std::mt19937_64* random)
{
    const uint64_t factor = 0xC6A4A7935BD1E995u, seed = 0xC70F6907u;
    const uint64_t inverse = []
    {
        uint64_t x = factor;
        for (int i = 0; i < 6; ++i)
            x *= 2 - factor * x;
        return x;
    }();
    const auto mix = [](uint64_t k) { return k >> 47 ^ k; }; // its own inverse
    for (;;)
    {
        const uint64_t first = (*random)();
        const uint64_t state = (seed ^ 16 * factor ^ mix(first * factor) * factor) * factor;
        const uint64_t second = mix((state ^ 1) * inverse) * inverse;
        std::string name(16, 0);
        std::memcpy(name.data(), &first, 8);
        std::memcpy(name.data() + 8, &second, 8);
        if (name.find('\0') == std::string::npos)
            return name;
    }
}

TEST_F(TimeBounds, MaterialsWhoseNamesShareOneHash)
{
    std::mt19937_64 random(7);
    EXPECT_EQ(std::hash<std::string>()(nameOfOneHash(&random)),
              std::hash<std::string>()(nameOfOneHash(&random)));
    ChunkWriter file = fileStart();
    for (int i = 0; i < 80000; ++i)
        file.open(0xAFFF).open(0xA000).text(nameOfOneHash(&random)).close().close();
    const int selected = vrkSelectedRasterizer;
    vrkSelectedRasterizer = 7; // images are made by none
    expectWithin(1, [&] { EXPECT_EQ(load(file.finish(), LOAD_MATERIALS), 0); });
    vrkSelectedRasterizer = selected;
}

// A list of 200,000 materials and a mesh with a face for each of its last ones.
class ManyMaterials : public TimeBounds
{
protected:
    static constexpr int materials = 200000, used = 10000;

    void SetUp() override
    {
        TimeBounds::SetUp();
        auto* list = new TList;
        Material* last = list->first;
        for (int i = 1; i < materials; ++i)
        {
            last->next = new Material;
            last->next->id = last->id + 1;
            last = last->next;
        }
        group.addTList(list);
        mesh = makeMesh("m", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, std::vector<Facelist>(used, {0, 1, 2}));
        for (int i = 0; i < used; ++i)
            mesh->faceMaterials[i].materialIndex = materials - 1 - i;
        last->selfIllumination = 1.0f;
        mesh->sortFacesByMaterial();
        group.addMesh(mesh);
    }

    Mesh* mesh = nullptr;
};

TEST_F(ManyMaterials, InAFrame)
{
    Camera camera;
    camera.eye = {0, 0, 5};
    expectWithin(1.5, [&] { EXPECT_EQ(group.render(VRK_RENDER_SOLID, &camera), 0); });
}

TEST_F(ManyMaterials, OfOneObject)
{
    expectWithin(1.5, [&] { EXPECT_EQ(group.renderObject(mesh, VRK_RENDER_SOLID), 0); });
}

TEST_F(ManyMaterials, InALightPass)
{
    expectWithin(1, [&] { group.calcDynamicLight(nullptr, VRK_LIGHT_CLEAR); });
    EXPECT_EQ(mesh->lightColors[0].r, 1.0f) << "the last material of the list glows";
}

// Small faces close together on all sides of a ball: no two share a plane, all stand in one leaf.
static Mesh* makeBall(int faces, float size)
{
    std::mt19937 random(7);
    std::normal_distribution<float> any;
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> corners;
    for (int i = 0; i < faces; ++i)
    {
        Vertex3D n = {any(random), any(random), any(random)};
        n.normalize();
        Vertex3D side = n ^ Vertex3D { 0.3f, 0.5f, 0.8f }, up = n ^ side;
        n *= size;
        side *= size * 0.01f;
        up *= size * 0.01f;
        const auto first = static_cast<uint16_t>(vertices.size());
        vertices.insert(vertices.end(), {n, n + side, n + up});
        corners.push_back({first, static_cast<uint16_t>(first + 1), static_cast<uint16_t>(first + 2)});
    }
    return makeMesh("ball", vertices, corners);
}

TEST_F(TimeBounds, PlanesOfOneLeaf)
{
    octreeNode tree;
    std::vector<std::unique_ptr<Mesh>> balls;
    for (int i = 0; i < 3; ++i)
    {
        balls.emplace_back(makeBall(20000, 1.0f + static_cast<float>(i)));
        for (int face = 0; face < 20000; ++face)
            tree.insert(balls.back().get(), face, true);
    }
    expectWithin(8, [&] { tree.makePlanes(0.001f); });
    int64_t faces = 0;
    for (const Plane* plane = tree.planes; plane; plane = plane->next)
        faces += plane->faceCount;
    EXPECT_EQ(faces, 60000);
}

// A tree that a host lets grow deep has leaves so fine that a walk by quarters of them never ends.
TEST_F(TimeBounds, AWalkThroughAVeryDeepTree)
{
    octreeNode tree;
    std::unique_ptr<Mesh> mesh(makeBall(40, 1));
    for (int face = 0; face < 40; ++face)
        tree.insert(mesh.get(), face, true);
    tree.adjustSize();
    tree.split(1, 60, nullptr);
    Vertex3D from = {tree.min.x * 0.9f, 0.1f, 0.2f}, to = {tree.max.x * 0.9f, 0.3f, 0.1f};
    octreeNode* out[64];
    expectWithin(6, [&] { EXPECT_GT(tree.traverseRayOLD(&from, &to, out, 64), 0); });
}

TEST_F(TimeBounds, AttachingManyMeshesWithATree)
{
    for (int i = 0; i < 2048; ++i)
    {
        Mesh* mesh = makeMesh("m", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, std::vector<Facelist>(40, {0, 1, 2}),
                              {static_cast<float>(i % 64), static_cast<float>(i / 64), 0});
        mesh->attachMark = 1;
        ASSERT_EQ(group.addMesh(mesh), 0);
    }
    EXPECT_EQ(group.constructOctree(), 0);
    expectWithin(10, [&] { group.attach(); });
    EXPECT_EQ(group.octree, nullptr);
}
