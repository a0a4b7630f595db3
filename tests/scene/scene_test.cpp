#include "vornik/scene/scene.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

static OGroup* addGroup(Scene& scene)
{
    return scene.groups[scene.groupCount++] = new OGroup;
}

static Camera* addCamera(OGroup* group, float fov)
{
    Camera* camera = new Camera;
    camera->fov = fov;
    camera->eye = {0, 0, 5};
    camera->target = {0, 10, 5};
    group->addCamera(camera);
    return camera;
}

TEST(SceneParams, HaveTheirDefaults)
{
    EXPECT_EQ(sizeof(SceneParams), 44u);
    const SceneParams p;
    for (int32_t value :
         {p.params0, p.params1, p.params3, p.params4, p.params5, p.params6, p.params7, p.params8})
        EXPECT_EQ(value, 0);
    EXPECT_EQ(p.params2, 15);
    for (uint8_t value : {p.switch0, p.switch1, p.switch2, p.switch3})
        EXPECT_EQ(value, 0);
    for (uint8_t value : {p.switch4, p.switch5, p.switch6})
        EXPECT_EQ(value, 1);
}

TEST(Scene, StartsEmptyWithDefaultParameters)
{
    Scene scene;
    EXPECT_EQ(scene.groupCount, 0);
    for (OGroup* group : scene.groups)
        EXPECT_EQ(group, nullptr);
    EXPECT_EQ(std::size(scene.groups), 256u);
    EXPECT_EQ(scene.camera, nullptr);
    ASSERT_NE(scene.parameters, nullptr);
    EXPECT_EQ(scene.parameters->params2, 15);
    EXPECT_EQ(scene.parameters->switch5, 1);
}

TEST(Scene, KeepsACopyOfTheParameters)
{
    Scene scene;
    SceneParams* own = scene.getParameters();
    SceneParams values;
    memset(static_cast<void*>(&values), 0x5A, sizeof(values));
    EXPECT_EQ(scene.setParameters(&values), 0);
    EXPECT_EQ(scene.getParameters(), own);
    EXPECT_EQ(scene.parameters, own);
    EXPECT_NE(own, &values);
    EXPECT_EQ(memcmp(own, &values, 44), 0);
    EXPECT_EQ(scene.setParameters(nullptr), 0);
    EXPECT_EQ(own->params8, 0x5A5A5A5A);
}

TEST(Scene, DeletingAGroupClosesTheGap)
{
    Scene scene;
    OGroup *a = addGroup(scene), *b = addGroup(scene), *c = addGroup(scene);
    EXPECT_EQ(scene.deleteOGroup(b), 0);
    EXPECT_EQ(scene.groupCount, 2);
    EXPECT_EQ(scene.groups[0], a);
    EXPECT_EQ(scene.groups[1], c);
    EXPECT_EQ(scene.groups[2], nullptr);
}

TEST(Scene, RefusesToDeleteAStranger)
{
    LogCapture log;
    Scene scene;
    addGroup(scene);
    OGroup stranger;
    EXPECT_EQ(scene.deleteOGroup(&stranger), 20);
    EXPECT_EQ(scene.deleteOGroup(nullptr), 20);
    EXPECT_EQ(scene.groupCount, 1);
    const std::string line = "ObjectGroup not found in OGroupList! OGroup not deleted!\n";
    EXPECT_EQ(log.text(), line + line);
}

TEST(Scene, TheCameraGoesWithItsGroup)
{
    Scene scene;
    OGroup *a = addGroup(scene), *b = addGroup(scene);
    addCamera(a, 90);
    addCamera(a, 90);
    addCamera(b, 90);
    scene.camera = a->cameras[1];
    scene.deleteOGroup(b);
    EXPECT_EQ(scene.camera, a->cameras[1]);
    addGroup(scene);
    addCamera(scene.groups[1], 90);
    scene.deleteOGroup(a);
    EXPECT_EQ(scene.camera, nullptr);
}

TEST(Scene, AGroupListedTwiceCountsByItsLastSlot)
{
    Scene scene;
    OGroup *a = addGroup(scene), *b = addGroup(scene);
    scene.groups[scene.groupCount++] = a;
    EXPECT_EQ(scene.getOGID(a), 2);
    EXPECT_EQ(scene.getOGID(b), 1);
    EXPECT_EQ(scene.deleteOGroup(a), 0);
    EXPECT_EQ(scene.groupCount, 2);
    EXPECT_EQ(scene.getOGID(a), 0);
    EXPECT_EQ(scene.getOGID(b), 1);
    scene.groups[scene.groupCount++] = a; // the destructor takes it once
}

TEST(Scene, UnknownGroupsHaveNoSlot)
{
    Scene scene;
    OGroup stranger;
    EXPECT_EQ(scene.getOGID(&stranger), -1);
    addGroup(scene);
    EXPECT_EQ(scene.getOGID(&stranger), -1);
    EXPECT_EQ(scene.getOGID(nullptr), -1);
    EXPECT_EQ(scene.getOGID(scene.groups[0]), 0);
}

TEST(Scene, SetCameraTakesTheFieldOfView)
{
    Scene scene;
    OGroup* group = addGroup(scene);
    addCamera(group, 60);
    Camera* second = addCamera(group, 45);
    EXPECT_EQ(scene.setCamera(group, 1), 0);
    EXPECT_EQ(scene.camera, second);
    EXPECT_EQ(vrkGetFOV(), 45.0f);
}

TEST(Scene, SetCameraRefusesIndicesWithoutCamera)
{
    for (int index : {1, 64, 1000000, -1})
    {
        LogCapture log;
        Scene scene;
        OGroup* group = addGroup(scene);
        Camera* camera = scene.camera = addCamera(group, 60);
        EXPECT_EQ(scene.setCamera(group, index), 27);
        EXPECT_EQ(scene.camera, camera);
        EXPECT_EQ(log.text(), "Camera cannot be found!\n");
    }
    LogCapture log;
    Scene scene;
    EXPECT_EQ(scene.setCamera(nullptr, 0), 27);
}

using ScenePreparation = EngineTest;

TEST_F(ScenePreparation, OnOpenGLClearsAndShowsAFrameAndNoMore)
{
    Scene scene;
    addGroup(scene)->addTList(new TList);
    GLRecorder gl;
    scene.prepareMaterialsForDX();
    EXPECT_EQ(gl.calls(), (std::vector<std::string>{"glClear(GL_COLOR_BUFFER_BIT|GL_DEPTH_BUFFER_BIT)"}))
        << gl.text();
}
