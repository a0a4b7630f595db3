#include "apps/vornik/view/pilot.h"

#include "tests/view/rooms.h"

#include <cmath>

class PilotTest : public StageTest
{
protected:
    void begin(const Scene3ds& scene, int camera = -1, char up = 'z')
    {
        options.framing.upAxis = up;
        show(scene);
        pilot.begin(stage, up, camera, false);
    }

    Vertex3D eye() const { return pilot.view(stage).camera.eye; }

    Vertex3D forward() const
    {
        const View view = pilot.view(stage);
        Vertex3D direction = view.camera.target - view.camera.eye;
        direction.normalize();
        return direction;
    }

    // Holds keys for a second, in pictures of a 50th.
    void hold(const Held& held)
    {
        for (int i = 0; i < 50; ++i)
            pilot.move(stage, held, 0.02);
    }

    void expectAt(const Vertex3D& place, float tolerance)
    {
        EXPECT_NEAR(eye().x, place.x, tolerance);
        EXPECT_NEAR(eye().y, place.y, tolerance);
        EXPECT_NEAR(eye().z, place.z, tolerance);
    }

    Pilot pilot;
};

static Scene3ds boxWithCameras()
{
    Scene3ds scene = boxScene();
    scene.cameras = {frontCamera("First", 0, 10), frontCamera("Second", 3, 20)};
    return scene;
}

TEST_F(PilotTest, BeginsAtTheFirstCameraOrSeesAll)
{
    begin(boxWithCameras());
    EXPECT_EQ(pilot.camera(), 1);
    expectAt({0, -10, 0}, 1e-3f);
    begin(boxWithCameras(), 2);
    expectAt({3, -20, 0}, 1e-3f);
    begin(boxWithCameras(), 9); // there are two
    EXPECT_EQ(pilot.camera(), 2);
    begin(boxWithCameras(), 0);
    EXPECT_EQ(pilot.camera(), 0);
    const Vertex3D framed = stage.firstView.camera.eye;
    expectAt(framed, 1e-3f);
    begin(boxScene());
    EXPECT_EQ(pilot.camera(), 0);
}

TEST_F(PilotTest, CamerasGoAround)
{
    begin(boxWithCameras());
    pilot.setCamera(2, stage);
    EXPECT_EQ(pilot.camera(), 2);
    pilot.setCamera(3, stage);
    EXPECT_EQ(pilot.camera(), 1);
}

TEST_F(PilotTest, OwnEyeStartsWhereTheCameraStood)
{
    begin(boxWithCameras());
    const View before = pilot.view(stage);
    pilot.setCamera(0, stage);
    EXPECT_EQ(pilot.camera(), 0);
    expectAt({0, -10, 0}, 1e-3f);
    EXPECT_NEAR(pilot.view(stage).camera.fov, before.camera.fov, 1e-3f);
    EXPECT_NEAR(forward().y, 1.0f, 1e-3f);
}

TEST_F(PilotTest, MouseLeavesTheCameraAndTurnsAroundTheScene)
{
    begin(boxWithCameras());
    pilot.drag(stage, 100.0f, 0.0f, false, 600.0f);
    EXPECT_EQ(pilot.camera(), 0);
    EXPECT_LT(eye().x, -3.0f);
    EXPECT_NEAR(float(eye()), 10.0f, 0.01f);
    pilot.drag(stage, 0.0f, -100.0f, false, 600.0f); // up: the eye sinks
    EXPECT_LT(eye().z, -3.0f);
}

TEST_F(PilotTest, SecondButtonShiftsWhatTheMouseHolds)
{
    begin(boxWithCameras());
    const float fov = pilot.view(stage).camera.fov;
    // Half the height of the window is tan(fov / 2) at the centre.
    pilot.drag(stage, 0.0f, 300.0f, true, 600.0f);
    EXPECT_NEAR(eye().z, 10.0f * std::tan(vrkRad(fov) / 2.0f), 0.05f);
    EXPECT_NEAR(forward().y, 1.0f, 1e-4f);
}

TEST_F(PilotTest, WheelZoomsAndNeverPassesTheCentre)
{
    begin(boxWithCameras());
    pilot.wheel(stage, 1.0f);
    EXPECT_NEAR(eye().y, -8.5f, 0.01f);
    pilot.wheel(stage, -1.0f);
    EXPECT_NEAR(eye().y, -10.0f, 0.01f);
    pilot.wheel(stage, 500.0f);
    EXPECT_LT(eye().y, 0.0f);
}

TEST_F(PilotTest, FliesWhereItLooksByTheSizeOfTheScene)
{
    begin(boxWithCameras());
    EXPECT_EQ(pilot.setMovement(Movement::fly, stage), "");
    Held held;
    held.forward = true;
    hold(held);
    const float way = eye().y + 10.0f;
    EXPECT_GT(way, 0.5f);
    EXPECT_LT(way, 2.0f);
    held.fast = true;
    hold(held);
    EXPECT_NEAR(eye().y + 10.0f - way, 4.0f * way, 0.05f);
    pilot.drag(stage, 300.0f, 0.0f, false, 600.0f); // 90 degrees to the right
    EXPECT_NEAR(forward().x, 1.0f, 1e-3f);
    held = {};
    held.up = true;
    const float before = eye().z;
    hold(held);
    EXPECT_NEAR(eye().z - before, way, 0.05f);
    pilot.wheel(stage, 2.0f);
    EXPECT_NEAR(pilot.flySpeed, 1.5625f, 1e-4f);
}

TEST_F(PilotTest, FlightIsTheSameForAllPictureRates)
{
    begin(boxWithCameras());
    pilot.setMovement(Movement::fly, stage);
    Held held;
    held.right = true;
    pilot.move(stage, held, 0.2);
    const float once = eye().x;
    for (int i = 0; i < 100; ++i)
        pilot.move(stage, held, 0.002);
    EXPECT_NEAR(eye().x, 2.0f * once, 1e-3f);
}

TEST_F(PilotTest, KeysOrbitToo)
{
    begin(boxWithCameras());
    Held held;
    held.right = true;
    hold(held);
    EXPECT_GT(std::fabs(eye().x), 3.0f);
    EXPECT_NEAR(float(eye()), 10.0f, 0.05f);
    held = {};
    held.forward = true;
    hold(held);
    EXPECT_LT(float(eye()), 5.0f);
}

TEST_F(PilotTest, WalkFallsToTheFloorAndStopsAtTheWall)
{
    Scene3ds scene = room();
    scene.cameras = {frontCamera("Inside", 0, 2)};
    scene.cameras[0].eye.z = scene.cameras[0].target.z = 2.5f;
    begin(scene);
    EXPECT_EQ(pilot.setMovement(Movement::walk, stage), "");
    EXPECT_EQ(pilot.camera(), 0);
    hold({});
    expectAt({0, -2, pilot.walk.body.eyeHeight}, 0.01f);
    Held held;
    held.forward = held.fast = true;
    for (int i = 0; i < 10; ++i)
        hold(held);
    expectAt({0, 5.0f - pilot.walk.body.radius, pilot.walk.body.eyeHeight}, 0.05f);
    held = {};
    held.turnRight = true;
    hold(held); // 90 degrees
    EXPECT_NEAR(forward().x, 1.0f, 0.01f);
    // Out of the walk the eye stays in place.
    const Vertex3D stood = eye();
    EXPECT_EQ(pilot.setMovement(Movement::fly, stage), "");
    expectAt(stood, 1e-3f);
}

TEST_F(PilotTest, WalkerCanBeMadeAnotherSize)
{
    begin(room());
    pilot.setMovement(Movement::walk, stage);
    const float height = pilot.walk.body.eyeHeight;
    pilot.resizeWalker(2.0f);
    EXPECT_FLOAT_EQ(pilot.walk.body.eyeHeight, 2.0f * height);
    hold({});
    EXPECT_NEAR(eye().z, 2.0f * height, 0.01f);
    for (int i = 0; i < 100; ++i)
        pilot.resizeWalker(0.1f);
    EXPECT_NEAR(pilot.walk.body.eyeHeight, 0.01f * height, 1e-4f * height);
}

TEST_F(PilotTest, StrangeMeasuresAreBroughtBack)
{
    begin(room());
    pilot.setMovement(Movement::walk, stage);
    Body& body = pilot.walk.body;
    for (const float strange : {NAN, -INFINITY, INFINITY, -1.0f, 1e30f})
    {
        pilot.flySpeed = body.eyeHeight = body.speed = body.gravity = strange;
        pilot.limit();
        EXPECT_GT(pilot.flySpeed, 0.0f);
        EXPECT_LE(pilot.flySpeed, 100.0f);
        EXPECT_GT(body.eyeHeight, body.radius);
        EXPECT_GE(body.speed, 0.0f);
        EXPECT_GE(body.gravity, 0.0f);
        EXPECT_LT(body.eyeHeight + body.speed + body.gravity, 1e4f);
        Held held;
        held.forward = held.up = true;
        hold(held);
        EXPECT_TRUE(std::isfinite(eye().x) && std::isfinite(eye().y) && std::isfinite(eye().z));
    }
}

TEST_F(PilotTest, SaysWhyThereIsNoWalk)
{
    Scene3ds walls = room();
    walls.meshes.erase(walls.meshes.begin());
    begin(walls);
    EXPECT_EQ(pilot.setMovement(Movement::walk, stage), "no ground to stand on");
    EXPECT_EQ(pilot.movement(), Movement::orbit);
    begin(room(), -1, 'y');
    EXPECT_NE(pilot.setMovement(Movement::walk, stage), "");
    EXPECT_EQ(pilot.movement(), Movement::orbit);
    EXPECT_FALSE(pilot.isUpright());
}

TEST_F(PilotTest, FrameAllSeesTheSceneAgain)
{
    begin(boxWithCameras());
    pilot.frameAll(stage);
    EXPECT_EQ(pilot.camera(), 0);
    expectAt(stage.firstView.camera.eye, 1e-3f);
    pilot.setMovement(Movement::fly, stage);
    Held held;
    held.back = true;
    hold(held);
    pilot.frameAll(stage);
    expectAt(stage.firstView.camera.eye, 1e-3f);
}

TEST_F(PilotTest, FrameAllSeesTheCoreAndThenItsSurroundings)
{
    Scene3ds scene;
    scene.meshes = {floorGrid("floor", 0, -10, 10, 12),
                    rectangle("sky", {-900, -900, 500}, {900, 900, 500}, "-z")};
    begin(scene);
    const Vertex3D core = stage.coreView.camera.eye, all = stage.firstView.camera.eye;
    EXPECT_GT(float(all - core), 500.0f);
    expectAt(core, 1e-3f);
    pilot.frameAll(stage);
    expectAt(all, 1e-2f);
    pilot.frameAll(stage);
    expectAt(core, 1e-3f);
    pilot.wheel(stage, 1); // from anywhere else the core comes first
    pilot.frameAll(stage);
    expectAt(core, 1e-3f);
    pilot.drag(stage, 100, 0, false, 300); // around the middle of the core
    const Vertex3D middle = stage.core.middle();
    EXPECT_NEAR(float(eye() - middle), float(core - middle), 0.1f);
    begin(scene);
    expectAt(core, 1e-3f);
}

TEST_F(PilotTest, ChosenFieldOfViewHoldsUntilTheNextCamera)
{
    begin(boxWithCameras());
    const float own = pilot.view(stage).camera.fov;
    pilot.setFov(100.0f);
    EXPECT_EQ(pilot.view(stage).camera.fov, 100.0f);
    pilot.setCamera(2, stage);
    EXPECT_EQ(pilot.view(stage).camera.fov, own);
    pilot.setFov(500.0f);
    EXPECT_EQ(pilot.view(stage).camera.fov, 170.0f);
}

TEST_F(PilotTest, EmptyStageDoesNoHarm)
{
    pilot.begin(stage, 'z', -1, false);
    Held held;
    held.forward = true;
    hold(held);
    pilot.drag(stage, 5, 5, false, 0);
    pilot.drag(stage, 5, 5, true, 0);
    pilot.wheel(stage, 3);
    pilot.setCamera(1, stage);
    pilot.setMovement(Movement::walk, stage);
    pilot.frameAll(stage);
    EXPECT_EQ(pilot.camera(), 0);
    EXPECT_TRUE(std::isfinite(eye().x));
}

TEST_F(PilotTest, CameraFollowsItsTracks)
{
    Scene3ds scene = boxScene();
    scene.cameras = {frontCamera("Mover", 0, 10)};
    Node3ds camera, target;
    camera.kind = NODE_3DS_CAMERA;
    camera.id = 0;
    camera.name = target.name = "Mover";
    camera.positions = {{0, {0, -10, 0}, {}}, {50, {0, -60, 0}, {}}};
    target.kind = NODE_3DS_CAMERA_TARGET;
    target.id = 1;
    target.positions = {{0, {0, 0, 0}, {}}};
    scene.nodes = {camera, target};
    scene.segment = {{0, 50}};
    begin(scene);
    stage.group->setCurrentFrame(20);
    expectAt({0, -30, 0}, 0.1f);
}
