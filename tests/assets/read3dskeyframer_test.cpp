#include "vornik/assets/read3dskeyframer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "assets/chunkwalk.h"
#include "assets/loadkeyframes.h"
#include "assets/loadnodes.h"
#include "tests/assets/loaderblock.h"
#include "tests/support/engine.h"
#include "tests/support/testmesh.h"
#include "tests/support/writer3ds.h"
#include "vornik/animation/path.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/read3dsobject.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

// The strict reader on chunks of a test, with a mesh "M", a light "L" and a camera "C" in the group.
class Keyframer : public ::testing::Test
{
protected:
    Keyframer()
    {
        loaderTolerant = false;
        keyframesRead = false;
        mesh = makeMesh("M", {{0, 0, 0}}, {});
        mesh->pivot = {0, 0, 0};
        light = new Light;
        light->setName("L");
        camera = new Camera;
        camera->setName("C");
        group->addMesh(mesh);
        group->addLight(light);
        group->addCamera(camera);
    }
    // The content of a keyframer chunk. @return the reader's result
    int read(ChunkWriter content)
    {
        ChunkWriter out;
        out.open(0xB000).bytes(content.finish()).close();
        return readWhole(out.finish());
    }
    int readWhole(std::vector<uint8_t> bytes)
    {
        LoaderBlock block(std::move(bytes));
        return read3dsKeyframer(block.enter(), group.get(), paths.get());
    }
    static ChunkWriter node(uint16_t kind, const char* name, int parent = -1, int id = 0)
    {
        ChunkWriter out;
        out.open(kind).open(0xB030).i16(int16_t(id)).close();
        out.open(0xB010).text(name).u16(0).u16(0).i16(int16_t(parent)).close();
        return out;
    }
    // The header of a track as the strict reading sees it.
    static ChunkWriter& track(ChunkWriter& out, uint16_t id, int count)
    {
        return out.open(id).u16(0).u32(0).u32(0).u32(static_cast<uint32_t>(count));
    }

    LogCapture log;
    std::unique_ptr<OGroup> group{new OGroup};
    std::unique_ptr<PathList> paths{new PathList};
    Mesh* mesh = nullptr;
    Light* light = nullptr;
    Camera* camera = nullptr;
};

TEST_F(Keyframer, SegmentGivesTheFrames)
{
    ChunkWriter out;
    out.open(0xB008).i32(7).i32(9).close();
    out.open(0xB008).i32(10).i32(100).close(); // the later one wins
    EXPECT_EQ(read(out), 0);
    EXPECT_EQ(group->firstFrame, 10);
    EXPECT_EQ(group->lastFrame, 100);
    EXPECT_EQ(group->frameCount, 90);
    EXPECT_EQ(paths->firstFrame, 10);
    EXPECT_EQ(paths->lastFrame, 100);
    EXPECT_EQ(paths->frameCount, 90);
    EXPECT_TRUE(keyframesRead);
}

TEST_F(Keyframer, SegmentOfAnyNumbersDoesNotOverflow)
{
    ChunkWriter out;
    out.open(0xB008).u32(0x80000000).u32(0x7FFFFFFF).close();
    EXPECT_EQ(read(out), 0);
    EXPECT_EQ(group->frameCount, -1);
}

TEST_F(Keyframer, NodesNumberTheirObjects)
{
    mesh->parent = light;
    light->parent = camera;
    ChunkWriter out;
    out.bytes(node(0xB002, "M", -1, 3).finish()).bytes(node(0xB005, "L", 3, 9).finish());
    EXPECT_EQ(read(out), 0);
    EXPECT_EQ(mesh->objectId, 3);
    EXPECT_EQ(mesh->parentId, -1);
    EXPECT_EQ(mesh->parent, nullptr);
    EXPECT_EQ(light->objectId, 9);
    EXPECT_EQ(light->parentId, 3);
    EXPECT_EQ(light->parent, camera); // found in a later pass
}

TEST_F(Keyframer, TargetOverwritesItsCamera)
{
    ChunkWriter out;
    out.bytes(node(0xB003, "C", -1, 4).finish()).bytes(node(0xB004, "C", 2, 5).finish());
    read(out);
    EXPECT_EQ(camera->objectId, 5);
    EXPECT_EQ(camera->parentId, 2);
}

TEST_F(Keyframer, NodeWithoutANumberTakesTheOneBefore)
{
    ChunkWriter out;
    out.open(0xB002).open(0xB010).text("M").u16(0).u16(0).i16(-1).close().close();
    out.bytes(node(0xB005, "L", -1, 8).finish());
    out.open(0xB003).open(0xB010).text("C").u16(0).u16(0).i16(-1).close().close();
    read(out);
    EXPECT_EQ(mesh->objectId, 0);
    EXPECT_EQ(camera->objectId, 8);
}

TEST_F(Keyframer, UnknownObjectIsFatal)
{
    ChunkWriter out = node(0xB002, "M");
    ChunkWriter all;
    track(out, 0xB020, 0).close();
    all.bytes(out.finish()).bytes(node(0xB002, "$$$DUMMY").finish()).bytes(node(0xB005, "L", -1, 5).finish());
    EXPECT_EQ(read(all), 37);
    EXPECT_EQ(log.text(), "Fatal keyframer error in .3DS loader!\n");
    EXPECT_FALSE(keyframesRead);
    EXPECT_EQ(paths->pathCount, 1); // what was read so far stays
    EXPECT_EQ(light->objectId, 0);
}

TEST_F(Keyframer, PivotsGoToTheirObjects)
{
    ChunkWriter before;
    before.open(0xB013).vector({9, 9, 9}).close(); // in front of any node: nobody's
    ChunkWriter first = node(0xB002, "M"), second = node(0xB005, "L"), third = node(0xB003, "C");
    first.open(0xB013).vector({1, 2, 3}).close();
    second.open(0xB013).vector({4, 5, 6}).close();
    third.open(0xB013).vector({7, 8, 9}).close().open(0xB013).vector({10, 11, 12}).close();
    before.bytes(first.finish()).bytes(second.finish()).bytes(third.finish());
    read(before);
    EXPECT_EQ(mesh->pivot.y, 2.0f);
    EXPECT_EQ(light->pivot.z, 6.0f);
    EXPECT_EQ(camera->pivot.x, 10.0f);
    ASSERT_EQ(paths->pivotCount, 3); // one for each object: there is no room for a fourth
    EXPECT_EQ(paths->pivots[2].object, camera);
    EXPECT_EQ(paths->pivots[2].pivot.x, 7.0f);
    EXPECT_EQ(paths->pivots[0].object, mesh);
    EXPECT_EQ(paths->pivots[1].object, light);
    EXPECT_EQ(paths->pivots[1].pivot.x, 4.0f);
}

TEST_F(Keyframer, CutPivotIsMinusOne)
{
    ChunkWriter out;
    out.header(0xB000, 900).bytes(node(0xB002, "M").finish()).header(0xB013, 18).f32(5);
    EXPECT_EQ(readWhole(out.finish()), 0);
    EXPECT_EQ(mesh->pivot.x, 5.0f);
    EXPECT_EQ(mesh->pivot.y, -1.0f);
    EXPECT_EQ(mesh->pivot.z, -1.0f);
}

// The header of the section counts in its length and not in what was read of it.
TEST_F(Keyframer, ReadsTheChunkBehindTheSectionToo)
{
    ChunkWriter out;
    out.open(0xB000).open(0xB008).i32(1).i32(2).close().close();
    out.open(0xB008).i32(3).i32(7).close();
    out.open(0xB008).i32(10).i32(20).close();
    EXPECT_EQ(readWhole(out.finish()), 0);
    EXPECT_EQ(group->firstFrame, 3);
    EXPECT_EQ(group->lastFrame, 7);
}

// Whatever that chunk claims to be as long as.
TEST_F(Keyframer, ReadsOneChunkOfASectionWithoutLength)
{
    for (const int length : {0, -5, std::numeric_limits<int>::min()})
        for (const uint32_t claimed : {14U, 0U})
        {
            LoaderBlock block(ChunkWriter()
                                  .header(0xB008, claimed)
                                  .i32(4)
                                  .i32(5)
                                  .open(0xB008)
                                  .i32(8)
                                  .i32(9)
                                  .close()
                                  .finish());
            group->firstFrame = 0;
            EXPECT_EQ(read3dsKeyframer(length, group.get(), paths.get()), 0);
            EXPECT_EQ(group->firstFrame, 4) << length << " " << claimed;
        }
}

TEST_F(Keyframer, PositionTrack)
{
    ChunkWriter out = node(0xB002, "M");
    track(out, 0xB020, 2);
    out.u16(5).u16(0).u16(0).vector({1, 2, 3});
    out.u16(40000).u16(0).u16(0).vector({4, 5, 6}).close();
    read(out);
    ASSERT_EQ(paths->pathCount, 1);
    const VRKPath& path = *paths->paths[0];
    EXPECT_EQ(path.object, mesh);
    EXPECT_EQ(path.kind, 0);
    EXPECT_EQ(path.nodeType, 5);
    ASSERT_EQ(path.keyCount, 3);
    EXPECT_EQ(path.keys[0].frame, 5);
    EXPECT_EQ(path.keys[0].position[0], 1.0f);
    EXPECT_EQ(path.keys[0].position[2], 3.0f);
    EXPECT_EQ(path.keys[1].frame, 40000 - 65536); // signed
    EXPECT_EQ(path.keys[2].frame, 65535);
    EXPECT_EQ(path.keys[2].position[1], 5.0f);
}

TEST_F(Keyframer, RotationTrack)
{
    ChunkWriter out = node(0xB003, "C");
    track(out, 0xB021, 2);
    out.u16(5).u16(0).u16(0).f32(1.5f).vector({1, 2, 3});
    out.u16(40000).u16(0).u16(0).f32(-0.5f).vector({4, 5, 6}).close();
    read(out);
    const VRKPath& path = *paths->paths[0];
    EXPECT_EQ(path.object, camera);
    EXPECT_EQ(path.kind, 1);
    EXPECT_EQ(path.nodeType, 7);
    EXPECT_EQ(path.keys[0].rotation[0], 1.0f);
    EXPECT_EQ(path.keys[0].rotation[2], 3.0f);
    EXPECT_EQ(path.keys[0].rotation[3], vrkUnRad(1.5f));
    EXPECT_EQ(path.keys[1].frame, 40000); // unsigned
    EXPECT_EQ(path.keys[1].rotation[3], vrkUnRad(-0.5f));
}

TEST_F(Keyframer, KeyFlagsAreNotLookedAt)
{
    ChunkWriter out = node(0xB002, "M");
    track(out, 0xB020, 1);
    out.u16(1).u16(0).u16(31).vector({1, 2, 3}).close();
    read(out);
    EXPECT_EQ(paths->paths[0]->keys[0].position[0], 1.0f);
}

TEST_F(Keyframer, TracksWithoutKeysMakePaths)
{
    ChunkWriter out = node(0xB002, "M");
    track(out, 0xB020, 0).close();
    track(out, 0xB021, 0xFFFF).close(); // a count below 0
    read(out);
    ASSERT_EQ(paths->pathCount, 2);
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_EQ(paths->paths[i]->keyCount, 1);
        EXPECT_EQ(paths->paths[i]->keys[0].frame, 0);
    }
}

TEST_F(Keyframer, TrackInFrontOfAnyNodeMovesNothing)
{
    ChunkWriter out;
    track(out, 0xB020, 0).close();
    out.bytes(node(0xB002, "M").finish());
    track(out, 0xB020, 0).close();
    read(out);
    EXPECT_EQ(paths->paths[0]->object, nullptr);
    EXPECT_EQ(paths->paths[0]->nodeType, 0);
    EXPECT_EQ(paths->paths[1]->object, mesh);
}

TEST_F(Keyframer, TypeOfANodeIsThatOfTheLastTag)
{
    ChunkWriter out;
    out.open(0xB004).close().open(0xB010).text("M").u16(0).u16(0).i16(-1).close();
    track(out, 0xB020, 0).close();
    read(out);
    EXPECT_EQ(paths->paths[0]->nodeType, VRK_NODE_TARGET);
    EXPECT_EQ(paths->paths[0]->object, mesh);
}

TEST_F(Keyframer, OtherChunksArePassedOver)
{
    ChunkWriter out;
    out.open(0xB00A).zeros(9).close().open(0xB009).u32(5).close();
    out.open(0xB001).bytes(node(0xB030, "$AMBIENT$").finish()).close(); // its header names no object
    out.open(0xB002).open(0xB010).text("M").u16(0).u16(0).i16(-1).close();
    for (const uint16_t id : {0xB011, 0xB014, 0xB022, 0xB023, 0xB024, 0xB025, 0xB026, 0xB029})
        out.open(id).zeros(30).close();
    out.close();
    EXPECT_EQ(read(out), 0);
    EXPECT_EQ(paths->pathCount, 0);
    EXPECT_TRUE(keyframesRead);
}

TEST_F(Keyframer, FullListDropsTheTrack)
{
    for (int i = 0; i < VRK_PATH_CAPACITY; ++i)
        paths->addPath(new VRKPath(5, 0, nullptr));
    ChunkWriter out = node(0xB002, "M", -1, 6);
    track(out, 0xB020, 1).u16(1).u16(0).u16(0).vector({1, 2, 3}).close();
    EXPECT_EQ(read(out), 0);
    EXPECT_EQ(mesh->objectId, 6);
    EXPECT_EQ(log.text(),
              "PathList is full (VRKPath) create another PathList or increase number of maxPaths\n");
}

TEST_F(Keyframer, CutFilesEndWhereTheyEnd)
{
    ChunkWriter content = node(0xB002, "M");
    content.open(0xB013).vector({1, 2, 3}).close();
    track(content, 0xB020, 2).zeros(36).close();
    track(content, 0xB021, 2).zeros(44).close();
    ChunkWriter out;
    const std::vector<uint8_t> whole = out.open(0xB000).bytes(content.finish()).close().finish();
    for (size_t length = 6; length < whole.size(); ++length)
    {
        paths.reset(new PathList);
        const int result = readWhole({whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length)});
        EXPECT_TRUE(result == 0 || result == 37);
    }
}

TEST_F(Keyframer, KeysBehindTheEndOfTheFileAreMinusOne)
{
    ChunkWriter out = node(0xB002, "M");
    track(out, 0xB020, 32767).u16(1).u16(0).u16(0).vector({1, 2, 3}).close();
    read(out);
    ASSERT_EQ(paths->pathCount, 1);
    const VRKPath& path = *paths->paths[0];
    ASSERT_EQ(path.keyCount, 32768);
    EXPECT_EQ(path.keys[0].position[0], 1.0f);
    EXPECT_EQ(path.keys[0].frame, 1);
    for (int k = 1; k < 32768; ++k)
    {
        ASSERT_EQ(path.keys[k].position[0], -1.0f) << k;
        ASSERT_EQ(path.keys[k].position[2], -1.0f) << k;
        ASSERT_EQ(path.keys[k].frame, k == 32767 ? 65535 : 0) << k;
    }
}

TEST_F(Keyframer, TurnsBehindTheEndOfTheFileAreMinusOne)
{
    ChunkWriter out = node(0xB002, "M");
    track(out, 0xB021, 3).u16(1).u16(0).u16(0).f32(1).vector({1, 2, 3}).close();
    read(out);
    const VRKPath& path = *paths->paths[0];
    ASSERT_EQ(path.keyCount, 4);
    EXPECT_EQ(path.keys[0].rotation[3], vrkUnRad(1.0f));
    for (int k = 1; k < 4; ++k)
    {
        EXPECT_EQ(path.keys[k].rotation[0], -1.0f);
        EXPECT_EQ(path.keys[k].rotation[3], vrkUnRad(-1.0f));
        EXPECT_EQ(path.keys[k].frame, k == 3 ? 65535 : 0);
    }
}

TEST_F(Keyframer, ReadsStrictlyBehindATolerantLoad)
{
    const TempFolder folder;
    const Scene3ds scene = {.nodes = {{.name = "D"}}};
    for (const auto& bytes : {build3ds(scene), std::vector<uint8_t>{1, 2, 3}})
    {
        OGroup other;
        load3ds(folder.write("s.3ds", bytes).c_str(), &other, "", LOAD_KEYFRAMES | LOAD_TOLERANT, nullptr,
                nullptr);
        EXPECT_EQ(read(node(0xB002, "$$$DUMMY")), 37);
    }
    LoaderBlock object(ChunkWriter().open(0x4000).text("A").close().finish());
    read3dsObject(object.enter(), group.get(), LOAD_TOLERANT);
    EXPECT_EQ(read(node(0xB002, "$$$DUMMY")), 37);
}

// Whole files in the tolerant reading.
class TolerantKeyframer : public EngineTest
{
protected:
    void load(const Scene3ds& scene, int flags = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS)
    {
        group.reset(new OGroup);
        ASSERT_EQ(load3ds(folder.write("s.3ds", build3ds(scene)).c_str(), group.get(), "",
                          flags | LOAD_KEYFRAMES | LOAD_TOLERANT, nullptr, nullptr),
                  0);
    }
    Mesh* mesh(const char* name) { return static_cast<Mesh*>(group->findObject(name)); }
    // Where vertex i stands in the world at a frame.
    Vertex3D place(Mesh* of, int frame, int i = 0)
    {
        group->currentFrame = frame;
        group->transformVertices(of);
        return of->transformedVertices[i];
    }
    static Mesh3ds triangle(const char* name)
    {
        return {.name = name, .vertices = {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}}, .faces = {{0, 1, 2}}};
    }
    void expectPlace(Mesh* of, int frame, float x, float y, float z, int i = 0)
    {
        const Vertex3D v = place(of, frame, i);
        EXPECT_NEAR(v.x, x, 1e-4) << frame;
        EXPECT_NEAR(v.y, y, 1e-4) << frame;
        EXPECT_NEAR(v.z, z, 1e-4) << frame;
    }

    std::unique_ptr<OGroup> group;
};

TEST_F(TolerantKeyframer, MeshStandsAtItsFirstKeyUpToIt)
{
    load({.meshes = {triangle("M")},
          .nodes = {{.name = "M", .positions = {{10, {0, 0, 0}}, {20, {30, 0, 0}}}}},
          .segment = {{0, 100}}});
    EXPECT_EQ(group->animated, 1);
    EXPECT_EQ(group->frameCount, 100);
    for (const int frame : {-5, 0, 10})
        expectPlace(mesh("M"), frame, 0, 0, 0);
    expectPlace(mesh("M"), 15, 15, 0, 0);
    for (const int frame : {20, 99, 5000, 70000})
        expectPlace(mesh("M"), frame, 30, 0, 0);
}

TEST_F(TolerantKeyframer, KeysInFrontOfFrameZeroAndOnOneFrame)
{
    load(
        {.meshes = {triangle("M")},
         .nodes = {{.name = "M",
                    .positions = {{-10, {0, 0, 0}}, {10, {20, 0, 0}}, {10, {50, 0, 0}}, {20, {60, 0, 0}}}}}});
    expectPlace(mesh("M"), 0, 10, 0, 0);
    expectPlace(mesh("M"), 10, 20, 0, 0);
    expectPlace(mesh("M"), 11, 51, 0, 0);
}

TEST_F(TolerantKeyframer, SplineValuesArePassedOver)
{
    load({.meshes = {triangle("M")},
          .nodes = {{.name = "M",
                     .positions = {{0, {0, 0, 0}, {31, {1, 2, 3, 4, 5}}}, {10, {20, 0, 0}, {9, {7, 8}}}},
                     .rotations = {{0, 0, {0, 0, 1}, {4, {3}}}, {10, 1.5f, {0, 0, 1}, {16, {2}}}}}}});
    expectPlace(mesh("M"), 10, 20, 0, 0);
    const VRKPath* turns = group->activePathList->paths[1];
    EXPECT_EQ(turns->keys[1].rotation[3], vrkUnRad(1.5f));
}

TEST_F(TolerantKeyframer, LongFramesAreWhole)
{
    load({.meshes = {triangle("M")},
          .nodes = {{.name = "M", .positions = {{0, {0, 0, 0}}, {50000, {5, 0, 0}}, {80000, {8, 0, 0}}}}}});
    expectPlace(mesh("M"), 40000, 4, 0, 0);
    expectPlace(mesh("M"), 70000, 7, 0, 0);
}

TEST_F(TolerantKeyframer, LengthServesWithoutASegment)
{
    ChunkWriter keys;
    Scene3ds scene = {.meshes = {triangle("M")}, .nodes = {{.name = "M"}}};
    std::vector<uint8_t> bytes = build3ds(scene);
    for (size_t i = 0; i + 1 < bytes.size(); ++i)
        if (bytes[i] == 0x0A && bytes[i + 1] == 0xB0)
            bytes[i + 9] = 77; // behind revision and an empty name
    group.reset(new OGroup);
    load3ds(folder.write("l.3ds", bytes).c_str(), group.get(), "",
            LOAD_MESHES | LOAD_KEYFRAMES | LOAD_TOLERANT, nullptr, nullptr);
    EXPECT_EQ(group->frameCount, 77);
}

TEST_F(TolerantKeyframer, TurnsEndWithTheLastKey)
{
    load({.meshes = {triangle("M")},
          .nodes = {{.name = "M",
                     .positions = {{0, {0, 0, 0}}},
                     .rotations = {{0, 0, {0, 0, 1}}, {10, 3.14159265f / 2, {0, 0, -1}}}}}});
    expectPlace(mesh("M"), 0, 2, 0, 0, 1);
    expectPlace(mesh("M"), 5, std::sqrt(2.0f), std::sqrt(2.0f), 0, 1);
    for (const int frame : {10, 11, 500, 60000})
        expectPlace(mesh("M"), frame, 0, 2, 0, 1);
}

TEST_F(TolerantKeyframer, DummiesAreHiddenMeshes)
{
    load({.meshes = {triangle("M")},
          .nodes = {{.id = int16_t(0),
                     .name = "$$$DUMMY",
                     .instance = "Arm",
                     .positions = {{0, {5, 0, 0}}, {10, {15, 0, 0}}}},
                    {.id = int16_t(1), .name = "$$$DUMMY", .positions = {{0, {0, 0, 0}}}},
                    {.id = int16_t(2), .name = "M", .parent = 0, .positions = {{0, {-5, 0, 0}}}}}});
    EXPECT_EQ(group->meshCount, 3);
    Mesh* arm = mesh("Arm");
    ASSERT_NE(arm, nullptr);
    EXPECT_EQ(arm->visible, 0);
    EXPECT_EQ(arm->vertexCount, 0);
    EXPECT_EQ(mesh("M")->parent, arm);
    EXPECT_EQ(mesh("M")->parentId, 0);
    EXPECT_EQ(mesh("M")->objectId, 2);
    expectPlace(mesh("M"), 0, 0, 0, 0);
    expectPlace(mesh("M"), 10, 10, 0, 0);
    EXPECT_NE(mesh("$$$DUMMY"), nullptr);
}

TEST_F(TolerantKeyframer, NodeOfAnUnknownMeshIsADummy)
{
    load({.nodes = {{.name = "Gone"},
                    {.kind = NODE_3DS_LIGHT, .name = "NoLight"},
                    {.kind = NODE_3DS_CAMERA, .name = "NoCamera", .positions = {{0, {1, 2, 3}}}}}});
    ASSERT_EQ(group->meshCount, 1);
    EXPECT_STREQ(group->meshes[0]->name, "Gone");
    EXPECT_EQ(group->meshes[0]->visible, 0);
    EXPECT_FALSE(logged("Fatal keyframer error in .3DS loader!"));
}

TEST_F(TolerantKeyframer, InstancesAreCopies)
{
    load(
        {.meshes = {triangle("M")},
         .nodes = {
             {.name = "M", .positions = {{0, {0, 0, 0}}}},
             {.name = "M", .instance = "Second", .positions = {{0, {100, 0, 0}}}, .scales = {{0, {2, 2, 2}}}},
             {.name = "M", .positions = {{0, {0, 50, 0}}}}}});
    ASSERT_EQ(group->meshCount, 3);
    EXPECT_EQ(group->meshes[1]->vertexCount, 3);
    EXPECT_STREQ(group->meshes[1]->name, "Second");
    EXPECT_STREQ(group->meshes[2]->name, "M");
    EXPECT_NE(group->meshes[2]->name, group->meshes[0]->name);
    expectPlace(group->meshes[0], 0, 2, 0, 0, 1);
    expectPlace(group->meshes[1], 0, 104, 0, 0, 1);
    expectPlace(group->meshes[2], 0, 2, 50, 0, 1);
    EXPECT_EQ(group->meshes[1]->faces[0].b, 1);
    EXPECT_NEAR(group->meshes[1]->position.x, 102, 1e-4); // and so it stands without keys
}

TEST_F(TolerantKeyframer, MirroredInstanceIsTurnedInsideOut)
{
    load({.meshes = {triangle("M")},
          .nodes = {{.name = "M", .positions = {{0, {0, 0, 0}}}},
                    {.name = "M", .positions = {{0, {0, 0, 0}}}, .scales = {{0, {-1, 1, 1}}}}}});
    expectPlace(group->meshes[1], 0, -2, 0, 0, 1);
    EXPECT_EQ(group->meshes[1]->faces[0].b, 2);
    EXPECT_EQ(group->meshes[1]->faces[0].c, 1);
}

TEST_F(TolerantKeyframer, NodesWithoutNumbersGoByTheirPlace)
{
    load({.meshes = {triangle("A"), triangle("B")},
          .nodes = {{.name = "A", .positions = {{0, {7, 0, 0}}}},
                    {.name = "B", .parent = 0, .positions = {{0, {1, 0, 0}}}}}});
    EXPECT_EQ(mesh("B")->parent, mesh("A"));
    expectPlace(mesh("B"), 0, 8, 0, 0);
}

TEST_F(TolerantKeyframer, AmbientNodesAreLeftOut)
{
    load({.meshes = {triangle("M")},
          .nodes = {{.kind = NODE_3DS_AMBIENT, .name = "$AMBIENT$"},
                    {.name = "M", .positions = {{0, {3, 0, 0}}}}}});
    EXPECT_EQ(group->meshCount, 1);
    expectPlace(mesh("M"), 0, 3, 0, 0);
}

TEST_F(TolerantKeyframer, MeshesWithoutANodeStayWhereTheyAre)
{
    load(
        {.meshes = {triangle("A"), triangle("B")}, .nodes = {{.name = "A", .positions = {{0, {30, 0, 0}}}}}});
    expectPlace(mesh("B"), 0, 2, 0, 0, 1);
    EXPECT_EQ(mesh("B")->parent, nullptr);
}

TEST_F(TolerantKeyframer, WithoutNodesTheGroupIsStatic)
{
    load({.meshes = {triangle("A")}, .segment = {{0, 10}}});
    EXPECT_EQ(group->animated, 0);
}

TEST_F(TolerantKeyframer, MeshOfAMiddleWithoutAxesStays)
{
    // A converter that counts the pivot from the middle of the mesh, here (11, 1, 0).
    Mesh3ds mesh3ds = {.name = "M", .vertices = {{10, 0, 0}, {12, 0, 0}, {10, 2, 0}}, .faces = {{0, 1, 2}}};
    load({.meshes = {mesh3ds},
          .nodes = {{.name = "M", .pivot = Vertex3D{1, 0, 0}, .positions = {{0, {12, 1, 0}}}}}});
    EXPECT_EQ(mesh("M")->originalVertices[1].x, 1.0f);
    expectPlace(mesh("M"), 0, 12, 0, 0, 1);
    EXPECT_NEAR(mesh("M")->pivot.x, 1, 1e-5);
}

TEST_F(TolerantKeyframer, CameraTracks)
{
    load({.cameras = {{.name = "C", .eye = {1, 1, 1}, .target = {0, 9, 0}}},
          .nodes = {{.name = "$$$DUMMY", .positions = {{0, {0, 0, 100}}}},
                    {.kind = NODE_3DS_CAMERA,
                     .name = "C",
                     .parent = 0,
                     .positions = {{0, {0, 0, 0}}, {10, {10, 0, 0}}},
                     .rolls = {{5, 20}, {15, 40}}},
                    {.kind = NODE_3DS_CAMERA_TARGET,
                     .name = "C",
                     .positions = {{0, {0, 0, 0}}, {10, {0, 50, 0}}}}}});
    Camera* camera = group->cameras[0];
    for (const auto& [frame, x, y, roll] : {std::tuple{0, 0.0f, 0.0f, 20.0f},
                                            {5, 5.0f, 25.0f, 20.0f},
                                            {10, 10.0f, 50.0f, 30.0f},
                                            {40, 10.0f, 50.0f, 40.0f}})
    {
        group->currentFrame = frame;
        group->doCameraAnim(camera);
        EXPECT_NEAR(camera->eye.x, x, 1e-5);
        EXPECT_NEAR(camera->eye.z, 100, 1e-4); // where the dummy is
        EXPECT_NEAR(camera->target.y, y, 1e-5);
        EXPECT_NEAR(camera->roll, roll, 1e-5);
    }
}

TEST_F(TolerantKeyframer, CamerasTurnWhatTheyCarry)
{
    // The camera stands at x = 100 and looks along +x, then pans to +y and rolls; what hangs two units in
    // front of it and one to its right goes round with it.
    load({.meshes = {triangle("M")},
          .cameras = {{.name = "C", .eye = {100, 0, 0}, .target = {110, 0, 0}}},
          .nodes = {{.kind = NODE_3DS_CAMERA,
                     .id = int16_t(0),
                     .name = "C",
                     .positions = {{0, {100, 0, 0}}},
                     .rolls = {{0, 0}, {20, 0}, {30, 90}}},
                    {.kind = NODE_3DS_CAMERA_TARGET,
                     .id = int16_t(1),
                     .name = "C",
                     .positions = {{0, {110, 0, 0}}, {20, {100, 10, 0}}}},
                    {.id = int16_t(2), .name = "M", .parent = 0, .positions = {{0, {1, 0, -2}}}}}});
    Mesh* carried = mesh("M");
    EXPECT_EQ(carried->parent, nullptr);
    expectPlace(carried, 0, 102, -1, 0);
    expectPlace(carried, 20, 101, 2, 0);
    // In the middle of the pan it looks along (1, 1).
    const float half = std::sqrt(0.5f);
    expectPlace(carried, 10, 100 + 3 * half, half, 0);
    // Rolled by a quarter: what was to the right is above or below, as the engine's own roll has it.
    group->currentFrame = 30;
    Camera* camera = group->cameras[0];
    group->doCameraAnim(camera);
    EXPECT_EQ(camera->roll, 90.0f);
    const Vertex3D v = place(carried, 30);
    EXPECT_NEAR(v.x, 100, 1e-3);
    EXPECT_NEAR(v.y, 2, 1e-3);
    vrkInitMatrix();
    vrkLookWithCamera(camera);
    double m[16];
    vrkGetModelViewMatrix(m);
    EXPECT_NEAR(m[0] * v.x + m[4] * v.y + m[8] * v.z + m[12], 1, 1e-3); // to the right of the picture again
    EXPECT_NEAR(m[1] * v.x + m[5] * v.y + m[9] * v.z + m[13], 0, 1e-3);
    // And it turns with the camera: its first edge points to the right of the picture.
    const Vertex3D edge = place(carried, 30, 1) - v;
    EXPECT_NEAR(m[0] * edge.x + m[4] * edge.y + m[8] * edge.z, 2, 1e-3);
}

TEST_F(TolerantKeyframer, ParentsInACircleAreBroken)
{
    load({.meshes = {triangle("A"), triangle("B"), triangle("C")},
          .nodes = {{.name = "A", .parent = 2, .positions = {{0, {1, 0, 0}}}},
                    {.name = "B", .parent = 0, .positions = {{0, {1, 0, 0}}}},
                    {.name = "C", .parent = 1, .positions = {{0, {1, 0, 0}}}}}});
    int roots = 0;
    for (int i = 0; i < 3; ++i)
        roots += group->meshes[i]->parent == nullptr;
    EXPECT_EQ(roots, 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(std::isfinite(place(group->meshes[i], 0).x));
}

TEST_F(TolerantKeyframer, NumbersThatAreNoneDoNotSpread)
{
    const float nan = std::nanf(""), infinity = std::numeric_limits<float>::infinity();
    Mesh3ds odd = triangle("M");
    odd.axes = {{nan, 0, 0, 0, infinity, 0, 0, 0, 0, 0, 0, 0}};
    load({.meshes = {odd},
          .nodes = {{.name = "M",
                     .positions = {{0, {nan, 1, 2}}, {5, {infinity, 0, 0}}},
                     .rotations = {{0, nan, {0, 0, 1}}, {4, 1, {nan, infinity, 0}}},
                     .scales = {{0, {nan, 1, 1}}}}}});
    for (const int frame : {0, 3, 9})
        EXPECT_TRUE(std::isfinite(place(mesh("M"), frame).x));
    EXPECT_TRUE(std::isfinite(mesh("M")->position.x));
}

// Matrices of nodes as exporters mean them, in plain double precision: columns, with the place in the fourth.
struct PlainMatrix
{
    double m[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};

    PlainMatrix operator*(const PlainMatrix& b) const
    {
        PlainMatrix r;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 4; ++j)
                r.m[i][j] =
                    m[i][0] * b.m[0][j] + m[i][1] * b.m[1][j] + m[i][2] * b.m[2][j] + (j == 3 ? m[i][3] : 0);
        return r;
    }
    static PlainMatrix translation(const Vertex3D& v)
    {
        PlainMatrix r;
        r.m[0][3] = v.x;
        r.m[1][3] = v.y;
        r.m[2][3] = v.z;
        return r;
    }
    static PlainMatrix scaling(double x, double y, double z)
    {
        PlainMatrix r;
        r.m[0][0] = x;
        r.m[1][1] = y;
        r.m[2][2] = z;
        return r;
    }
    // By quaternion, from an axis of unit length.
    static PlainMatrix rotation(const Vertex3D& axis, double angle)
    {
        const double s = std::sin(angle / 2), w = std::cos(angle / 2);
        const double x = axis.x * s, y = axis.y * s, z = axis.z * s;
        PlainMatrix r;
        const double rows[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)},
                                   {2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)},
                                   {2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)}};
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                r.m[i][j] = rows[i][j];
        return r;
    }
};

// A node at a frame: place, then its turns, newest first, then its size.
static PlainMatrix plainNode(const Node3ds& node, int frame)
{
    size_t k = 0;
    while (k + 1 < node.positions.size() && node.positions[k + 1].frame <= frame)
        ++k;
    Vertex3D place = node.positions[k].position;
    if (k + 1 < node.positions.size() && frame > node.positions[k].frame)
    {
        const float t = float(frame - node.positions[k].frame) /
                        float(node.positions[k + 1].frame - node.positions[k].frame);
        Vertex3D step = node.positions[k + 1].position - place;
        step *= t;
        place += step;
    }
    PlainMatrix turns;
    for (size_t r = 0; r < node.rotations.size(); ++r)
    {
        const RotationKey3ds& key = node.rotations[r];
        double part = 1;
        if (r > 0 && frame < key.frame)
            part = std::max(0.0, double(frame - node.rotations[r - 1].frame) /
                                     (key.frame - node.rotations[r - 1].frame));
        turns = PlainMatrix::rotation(key.axis, -key.angle * part) * turns;
    }
    const Vertex3D s = node.scales.empty() ? Vertex3D{1, 1, 1} : node.scales[0].position;
    return PlainMatrix::translation(place) * turns * PlainMatrix::scaling(s.x, s.y, s.z);
}

TEST_F(TolerantKeyframer, RandomHierarchiesStandWhereTheirMatricesPutThem)
{
    std::mt19937 random(12);
    const auto value = [&](float range)
    { return (static_cast<float>(random() % 2001) / 1000.0f - 1) * range; };
    const auto axis = [&]
    {
        Vertex3D v = {value(1), value(1), value(1) + 0.01f};
        v.normalize();
        return v;
    };
    for (int round = 0; round < 40; ++round)
    {
        Scene3ds scene;
        std::vector<PlainMatrix> toLocal;
        for (int i = 0; i < 6; ++i)
        {
            const std::string name = "M" + std::to_string(i);
            Mesh3ds m = {.name = name, .faces = {{0, 1, 2}}};
            for (int v = 0; v < 5; ++v)
                m.vertices.push_back({value(10), value(10), value(10)});
            // The mesh's own axes: turned, stretched, at times mirrored.
            const Vertex3D about = axis(), origin = {value(5), value(5), value(5)};
            const float angle = value(3), size = 1.5f + value(1), mirror = random() % 3 ? 1.0f : -1.0f;
            const PlainMatrix turn =
                PlainMatrix::rotation(about, angle) * PlainMatrix::scaling(size * mirror, size, size);
            m.axes.emplace();
            for (int column = 0; column < 3; ++column)
                for (int row = 0; row < 3; ++row)
                    (*m.axes)[static_cast<size_t>(column * 3 + row)] =
                        static_cast<float>(turn.m[row][column]);
            (*m.axes)[9] = origin.x, (*m.axes)[10] = origin.y, (*m.axes)[11] = origin.z;
            // Mirrored meshes are mirrored back along their own first axis.
            toLocal.push_back(PlainMatrix::scaling(mirror, 1, 1) *
                              PlainMatrix::scaling(mirror / size, 1 / size, 1 / size) *
                              PlainMatrix::rotation(about, -angle) *
                              PlainMatrix::translation({-origin.x, -origin.y, -origin.z}));
            scene.meshes.push_back(m);

            Node3ds node = {.id = int16_t(i * 3), .name = name};
            node.parent =
                i == 0 ? int16_t(-1) : int16_t(3 * static_cast<int>(random() % static_cast<unsigned>(i)));
            node.pivot = {value(4), value(4), value(4)};
            const int keys = 1 + static_cast<int>(random() % 4);
            for (int k = 0; k < keys; ++k)
                node.positions.push_back({k * 7, {value(20), value(20), value(20)}});
            for (int k = 0; k < 1 + static_cast<int>(random() % 4); ++k)
                node.rotations.push_back({k * 5, value(6), axis()});
            const float s = 1.2f + value(0.7f);
            node.scales = {{0, {s, s, s}}};
            scene.nodes.push_back(node);
        }
        load(scene);
        for (const int frame : {0, 3, 5, 7, 13, 30})
        {
            std::vector<PlainMatrix> world;
            for (size_t i = 0; i < 6; ++i)
            {
                const Node3ds& node = scene.nodes[i];
                const PlainMatrix own = plainNode(node, frame);
                world.push_back(node.parent < 0 ? own : world[static_cast<size_t>(node.parent / 3)] * own);
                const Vertex3D p = *node.pivot;
                const PlainMatrix all =
                    world.back() * PlainMatrix::translation({-p.x, -p.y, -p.z}) * toLocal[i];
                for (int v = 0; v < 5; ++v)
                {
                    const PlainMatrix at =
                        all * PlainMatrix::translation(scene.meshes[i].vertices[static_cast<size_t>(v)]);
                    const Vertex3D got = place(mesh(node.name.c_str()), frame, v);
                    ASSERT_NEAR(got.x, at.m[0][3], 0.02)
                        << "round " << round << " node " << i << " frame " << frame;
                    ASSERT_NEAR(got.y, at.m[1][3], 0.02);
                    ASSERT_NEAR(got.z, at.m[2][3], 0.02);
                }
            }
        }
    }
}

TEST_F(TolerantKeyframer, DamagedFilesNeverHarm)
{
    std::mt19937 random(21);
    const Scene3ds scene = {
        .meshes = {triangle("A"), triangle("B")},
        .cameras = {{.name = "C"}},
        .nodes = {{.name = "A",
                   .pivot = Vertex3D{1, 2, 3},
                   .positions = {{0, {1, 0, 0}}, {5, {2, 0, 0}}},
                   .rotations = {{0, 1, {0, 0, 1}}, {3, 1, {0, 1, 0}}},
                   .scales = {{0, {1, 1, 1}}}},
                  {.name = "A", .parent = 0, .instance = "X", .positions = {{0, {1, 0, 0}}}},
                  {.name = "$$$DUMMY", .parent = 1, .instance = "D", .positions = {{0, {1, 0, 0}}}},
                  {.kind = NODE_3DS_CAMERA, .name = "C", .positions = {{0, {1, 0, 0}}}, .rolls = {{0, 4}}}},
        .segment = {{0, 30}}};
    const std::vector<uint8_t> whole = build3ds(scene);
    for (int round = 0; round < 600; ++round)
    {
        std::vector<uint8_t> bytes = whole;
        if (round % 2)
            bytes.resize(random() % bytes.size());
        for (int change = 0; change < 4 && !bytes.empty(); ++change)
            bytes[random() % bytes.size()] = static_cast<uint8_t>(random());
        OGroup damaged;
        for (const int tolerant : {0, int(LOAD_TOLERANT)})
            load3ds(folder.write("d.3ds", bytes).c_str(), &damaged, "",
                    LOAD_MESHES | LOAD_CAMERAS | LOAD_KEYFRAMES | tolerant, nullptr, nullptr);
        for (int i = 0; i < damaged.meshCount; ++i)
            damaged.transformVertices(damaged.meshes[i]);
        for (int i = 0; i < damaged.cameraCount; ++i)
            damaged.doCameraAnim(damaged.cameras[i]);
    }
}
