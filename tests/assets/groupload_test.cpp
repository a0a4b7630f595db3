#include <gtest/gtest.h>

#include <string>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/writer3ds.h"
#include "vornik/assets/load3ds.h"
#include "vornik/lighting/vertexlight.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

static const int objects = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS;

// A scene, and a file with a triangle, a light and a camera.
class GroupLoad : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        file = folder.write(
            "scene.3ds",
            build3ds({.meshes = {{.name = "M",
                                  .vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}},
                                  .faces = {{0, 1, 2}}}},
                      .lights = {{.name = "L", .position = {0, 0, 5}, .color = {{1, 1, 1, COLOR_3DS_FLOAT}}}},
                      .cameras = {{.name = "C", .lens = 50}}}));
    }
    OGroup* create(int flags) { return scene.createOGroup(file.c_str(), flags, "", 0, nullptr, nullptr); }

    Scene scene;
    std::string file;
};

TEST_F(GroupLoad, MakesAGroupOfTheFile)
{
    OGroup* group = create(objects);
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(scene.groupCount, 1);
    EXPECT_EQ(scene.groups[0], group);
    EXPECT_EQ(group->meshCount, 1);
    EXPECT_EQ(scene.camera, group->cameras[0]);
    EXPECT_FALSE(logged("Camera cannot be found!"));
}

TEST_F(GroupLoad, FirstCameraStays)
{
    OGroup* without = create(LOAD_MESHES);
    ASSERT_NE(without, nullptr);
    EXPECT_EQ(scene.camera, nullptr);
    EXPECT_TRUE(logged("Camera cannot be found!"));
    OGroup* first = create(objects);
    EXPECT_EQ(scene.camera, first->cameras[0]);
    create(objects);
    EXPECT_EQ(scene.camera, first->cameras[0]);
}

TEST_F(GroupLoad, FailedLoadLeavesNoGroup)
{
    create(objects);
    EXPECT_EQ(scene.createOGroup("none.3ds", objects, "", 0, nullptr, nullptr), nullptr);
    EXPECT_EQ(scene.groupCount, 1);
    EXPECT_EQ(scene.groups[1], nullptr);
    EXPECT_TRUE(logged("Cannot open .3DS file (possible disk error)"));
}

TEST_F(GroupLoad, ClearFlagDeletesEverySecondGroup)
{
    OGroup* groups[4];
    for (OGroup*& group : groups)
        group = create(LOAD_MESHES);
    EXPECT_EQ(scene.createOGroup("none.3ds", LOAD_CLEAR, "", 0, nullptr, nullptr), nullptr);
    ASSERT_EQ(scene.groupCount, 2);
    EXPECT_EQ(scene.groups[0], groups[1]);
    EXPECT_EQ(scene.groups[1], groups[3]);
}

TEST_F(GroupLoad, Group257IsRefusedInSilence)
{
    for (int i = 0; i < 256; i++)
        scene.groups[scene.groupCount++] = new OGroup;
    EXPECT_EQ(create(objects), nullptr);
    EXPECT_EQ(scene.groupCount, 256);
    EXPECT_EQ(log(), "");
    // What the flag deleted stays deleted, and there is room.
    EXPECT_NE(create(objects | LOAD_CLEAR), nullptr);
    EXPECT_EQ(scene.groupCount, 129);
}

TEST_F(GroupLoad, LightingFlagTracesTheLights)
{
    EXPECT_EQ(create(objects)->meshes[0]->lightColors[0].r, 0.0f);
    const float added = create(objects | LOAD_LIGHTING)->meshes[0]->lightColors[0].r;
    EXPECT_GT(added, 0.0f);
    const int flags = objects | LOAD_LIGHTING;
    OGroup* other = scene.createOGroup(file.c_str(), flags, "", VRK_LIGHT_SUBTRACT, nullptr, nullptr);
    EXPECT_LT(other->meshes[0]->lightColors[0].r, added);
}

static float lastFraction;

TEST_F(GroupLoad, ProgressIsPassedOn)
{
    lastFraction = 0;
    scene.createOGroup(
        file.c_str(), objects, "", 0, [](float fraction) { lastFraction = fraction; }, nullptr);
    EXPECT_EQ(lastFraction, 1.0f);
}

TEST_F(GroupLoad, CreationDrawsNothingAndCompilesNoList)
{
    GLRecorder gl;
    create(objects);
    EXPECT_EQ(gl.count("glDrawElements"), 0);
    EXPECT_EQ(gl.count("glNewList"), 0);
}

TEST_F(GroupLoad, EveryMeshGoesThroughTwoRendersWithoutCamera)
{
    GLRecorder gl;
    OGroup group;
    group.load(file.c_str(), objects, "");
    const int loading = gl.count("glPushMatrix");
    gl.clear();
    ASSERT_EQ(create(objects)->meshCount, 1);
    EXPECT_EQ(gl.count("glPushMatrix") - loading, 2);
}

TEST_F(GroupLoad, InsertsIntoAGroupByNumberOrPointer)
{
    OGroup* group = create(objects);
    EXPECT_EQ(scene.insertMesh(0, file.c_str(), LOAD_MESHES, "", nullptr), 0);
    EXPECT_EQ(group->meshCount, 2);
    EXPECT_EQ(scene.insertMesh(group, file.c_str(), LOAD_MESHES, "", nullptr), 0);
    EXPECT_EQ(group->meshCount, 3);
    EXPECT_EQ(scene.insertMesh(group, "none.3ds", LOAD_MESHES, "", nullptr), 13);
    EXPECT_EQ(scene.groupCount, 1);
}

TEST_F(GroupLoad, InsertNeedsAGroupOfTheScene)
{
    const std::string message = "ObjectGroup not found in OGroupList! OGroup not deleted!\n";
    OGroup stranger;
    EXPECT_EQ(scene.insertMesh(&stranger, file.c_str(), LOAD_MESHES, "", nullptr), 20);
    EXPECT_EQ(log(), message);
    for (int slot : {-1, 0, 256})
        EXPECT_EQ(scene.insertMesh(slot, file.c_str(), LOAD_MESHES, "", nullptr), 20);
    EXPECT_EQ(scene.insertMesh(static_cast<OGroup*>(nullptr), file.c_str(), LOAD_MESHES, "", nullptr), 20);
    EXPECT_EQ(stranger.meshCount, 0);
}

TEST_F(GroupLoad, GroupLoadsIntoItselfAndAnswersNought)
{
    OGroup group;
    EXPECT_EQ(group.load(file.c_str(), objects, ""), 0);
    EXPECT_EQ(group.meshCount, 1);
    EXPECT_EQ(group.load(file.c_str(), objects, ""), 0);
    EXPECT_EQ(group.meshCount, 2);
    EXPECT_EQ(group.load(file.c_str(), objects | LOAD_CLEAR, ""), 0);
    EXPECT_EQ(group.meshCount, 1);
    EXPECT_EQ(group.load("none.3ds", LOAD_CLEAR, ""), 0);
    EXPECT_EQ(group.meshCount, 0);
    EXPECT_TRUE(logged("Cannot open .3DS file (possible disk error)"));
}
