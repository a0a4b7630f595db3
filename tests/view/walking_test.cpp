#include "apps/vornik/view/walking.h"

#include "tests/view/rooms.h"

#include <cmath>

class WalkingTest : public StageTest
{
protected:
    // Steps until the given time is over.
    void walkFor(float seconds, const Stride& stride)
    {
        for (int i = 0; i < static_cast<int>(seconds * walkStepsASecond); ++i)
            walkStep(&walker, body, stride, stage.group);
    }

    void enter(const Scene3ds& scene, const Vertex3D& feet)
    {
        show(scene);
        ASSERT_EQ(stage.group->constructOctree(), 0);
        walker.feet = walker.foothold = feet;
    }

    static Stride towards(float x, float y)
    {
        Stride stride;
        stride.direction = {x, y, 0};
        return stride;
    }

    Body body; // of a person in metres
    Walker walker;
};

TEST_F(WalkingTest, FallsToTheFloorAndStaysThere)
{
    enter(room(), {1, 2, 2});
    walkFor(0.1f, {});
    EXPECT_FALSE(walker.onGround);
    EXPECT_LT(walker.feet.z, 2.0f);
    EXPECT_GT(walker.feet.z, 1.8f);
    walkFor(2.0f, {});
    EXPECT_TRUE(walker.onGround);
    EXPECT_NEAR(walker.feet.z, 0.0f, 1e-4f);
    EXPECT_EQ(walker.feet.x, 1.0f);
    EXPECT_EQ(walker.feet.y, 2.0f);
}

TEST_F(WalkingTest, StopsAtAWallAtItsRadius)
{
    enter(room(), {0, 0, 0});
    for (const auto& way : {towards(1, 0), towards(0, -1), towards(-1, 0), towards(0, 1)})
    {
        walker.feet = {0, 0, 0};
        walkFor(4.0f, way);
        const Vertex3D reached = walker.feet;
        EXPECT_NEAR(reached * way.direction, 5.0f - body.radius, 0.05f);
        EXPECT_NEAR(float(reached), 5.0f - body.radius, 0.05f);
    }
}

TEST_F(WalkingTest, SlidesAlongAWall)
{
    enter(room(), {3, 0, 0});
    walkFor(1.5f, towards(std::sqrt(0.5f), std::sqrt(0.5f)));
    EXPECT_NEAR(walker.feet.x, 5.0f - body.radius, 0.05f);
    EXPECT_GT(walker.feet.y, 2.0f);
    EXPECT_NEAR(walker.feet.z, 0.0f, 1e-4f);
}

TEST_F(WalkingTest, CornerHoldsTheWalker)
{
    enter(room(), {3, 3, 0});
    walkFor(10.0f, towards(0.8f, 0.6f));
    EXPECT_NEAR(walker.feet.x, 5.0f - body.radius, 0.05f);
    EXPECT_NEAR(walker.feet.y, 5.0f - body.radius, 0.05f);
}

TEST_F(WalkingTest, RunningDoesNotBreakThroughAWall)
{
    enter(room(), {0, 0, 0});
    body.speed = 300.0f; // 6 metres a step
    Stride stride = towards(1, 0.1f);
    stride.run = true;
    walkFor(2.0f, stride);
    EXPECT_LT(walker.feet.x, 5.0f);
    EXPECT_LT(walker.feet.y, 5.0f);
}

TEST_F(WalkingTest, ClimbsWhatIsNoHigherThanAStep)
{
    Scene3ds scene = room();
    scene.meshes.push_back(rectangle("riser", {2, -5, 0}, {2, 5, 0.3f}, "-x"));
    scene.meshes.push_back(rectangle("landing", {2, -5, 0.3f}, {5, 5, 0.3f}, "+z"));
    enter(scene, {0, 0, 0});
    walkFor(1.0f, towards(1, 0));
    EXPECT_GT(walker.feet.x, 3.0f);
    EXPECT_NEAR(walker.feet.z, 0.3f, 1e-3f);
    // And down again, without a fall.
    walkFor(1.0f, towards(-1, 0));
    EXPECT_LT(walker.feet.x, 1.0f);
    EXPECT_NEAR(walker.feet.z, 0.0f, 1e-3f);
}

TEST_F(WalkingTest, StopsAtWhatIsHigherThanAStep)
{
    Scene3ds scene = room();
    scene.meshes.push_back(rectangle("riser", {2, -5, 0}, {2, 5, 0.9f}, "-x"));
    scene.meshes.push_back(rectangle("top", {2, -5, 0.9f}, {5, 5, 0.9f}, "+z"));
    enter(scene, {0, 0, 0});
    walkFor(3.0f, towards(1, 0));
    EXPECT_NEAR(walker.feet.x, 2.0f - body.radius, 0.05f);
    EXPECT_NEAR(walker.feet.z, 0.0f, 1e-3f);
}

TEST_F(WalkingTest, EyeClimbsAStepSmoothly)
{
    Scene3ds scene = room();
    scene.meshes.push_back(rectangle("landing", {2, -5, 0.3f}, {5, 5, 0.3f}, "+z"));
    show(scene);
    stage.group->constructOctree();
    Walk walk;
    walk.begin(body, {1, 0, 0});
    float last = walk.eye().z, most = 0.0f;
    for (int i = 0; i < 120; ++i)
    {
        walk.advance(1.0 / 60.0, towards(1, 0), stage.group);
        most = std::max(most, std::fabs(walk.eye().z - last));
        last = walk.eye().z;
    }
    EXPECT_NEAR(last, 0.3f + body.eyeHeight, 0.01f);
    EXPECT_LT(most, 0.1f);
}

TEST_F(WalkingTest, RampCarriesAndACliffWalksLikeAWall)
{
    Scene3ds scene = room();
    Mesh3ds ramp;
    ramp.name = "ramp";
    ramp.vertices = {{1, -5, 0}, {4, -5, 1.5f}, {4, 5, 1.5f}, {1, 5, 0}}; // about 27 degrees
    ramp.faces = {{0, 1, 2}, {0, 2, 3}};
    scene.meshes.push_back(ramp);
    enter(scene, {0, 0, 0});
    walkFor(0.7f, towards(1, 0));
    EXPECT_GT(walker.feet.x, 2.0f);
    EXPECT_NEAR(walker.feet.z, (walker.feet.x - 1.0f) / 2.0f, 0.05f);

    scene.meshes.back().vertices = {{1, -5, 0}, {2, -5, 3}, {2, 5, 3}, {1, 5, 0}}; // about 72 degrees
    enter(scene, {0, 0, 0});
    walker = {};
    walkFor(3.0f, towards(1, 0));
    EXPECT_LT(walker.feet.x, 1.1f);
    EXPECT_LT(walker.feet.z, 0.4f);
}

TEST_F(WalkingTest, JumpRisesAndComesBack)
{
    enter(room(), {0, 0, 0});
    walkFor(0.1f, {});
    Stride jump;
    jump.jump = true;
    walkFor(0.2f, jump);
    EXPECT_GT(walker.feet.z, 0.2f);
    walkFor(1.0f, {});
    EXPECT_NEAR(walker.feet.z, 0.0f, 1e-4f);
}

TEST_F(WalkingTest, CeilingEndsAJump)
{
    Scene3ds scene = room();
    scene.meshes.push_back(rectangle("ceiling", {-5, -5, 2.2f}, {5, 5, 2.2f}, "-z"));
    enter(scene, {0, 0, 0});
    Stride jump;
    jump.jump = true;
    float highest = 0.0f;
    for (int i = 0; i < 2 * walkStepsASecond; ++i)
    {
        walkStep(&walker, body, jump, stage.group);
        highest = std::max(highest, walker.feet.z);
    }
    EXPECT_LT(highest + body.eyeHeight, 2.2f);
}

TEST_F(WalkingTest, FallOutOfTheWorldComesBackToTheLastGround)
{
    Scene3ds scene;
    scene.meshes = {rectangle("plank", {-5, -1, 0}, {5, 1, 0}, "+z"),
                    rectangle("deep", {-9, -9, -8}, {-8, -8, -8}, "+z")};
    enter(scene, {0, 0, 0});
    walkFor(0.1f, {});
    walkFor(0.6f, towards(0, 1));
    EXPECT_FALSE(walker.onGround);
    walkFor(10.0f, {});
    EXPECT_TRUE(walker.onGround);
    EXPECT_NEAR(walker.feet.z, 0.0f, 1e-3f);
    EXPECT_LE(walker.feet.y, 1.0f);
}

TEST_F(WalkingTest, TimeGoesByStepsWhateverThePictures)
{
    show(room());
    stage.group->constructOctree();
    Walk quick, slow;
    quick.begin(body, {-3, -2, 1});
    slow.begin(body, {-3, -2, 1});
    for (int i = 0; i < 240; ++i)
        quick.advance(1.0 / 240.0, towards(0.9f, 0.2f), stage.group);
    for (int i = 0; i < 8; ++i)
        slow.advance(1.0 / 8.0, towards(0.9f, 0.2f), stage.group);
    const Vertex3D a = quick.eye(), b = slow.eye();
    EXPECT_NEAR(a.x, b.x, 0.05f);
    EXPECT_NEAR(a.y, b.y, 0.05f);
    EXPECT_NEAR(a.z, b.z, 0.05f);
    EXPECT_GT(a.x, -1.0f);
}

TEST_F(WalkingTest, LongPauseIsNoLongWay)
{
    show(room());
    stage.group->constructOctree();
    Walk walk;
    walk.begin(body, {-4, 0, 0});
    walk.advance(1000.0, towards(1, 0), stage.group);
    EXPECT_LT(walk.eye().x, -4.0f + body.speed * 0.3f);
    walk.advance(-5.0, towards(1, 0), stage.group);
}

TEST_F(WalkingTest, NothingHappensWithoutATree)
{
    show(room());
    walker.feet = {0, 0, 2};
    walkStep(&walker, body, towards(1, 0), nullptr);
    walkStep(&walker, body, towards(1, 0), stage.group);
    EXPECT_EQ(walker.feet.x, 0.0f);
    EXPECT_EQ(walker.feet.z, 2.0f);
    Vertex3D foothold;
    EXPECT_FALSE(findFoothold(stage.group, stage.bounds, body, {0, 0, 2}, {1, 0, 0}, &foothold));
}

TEST_F(WalkingTest, WalksInScenesOfAnyScale)
{
    for (const float scale : {1e-3f, 1.0f, 1e4f})
    {
        Scene3ds scene = room();
        for (Mesh3ds& mesh : scene.meshes)
            for (Vertex3D& vertex : mesh.vertices)
                vertex *= scale;
        show(scene);
        stage.group->constructOctree();
        body = bodyFor(stage.core, 1.0f);
        EXPECT_NEAR(body.eyeHeight / scale, 0.35f, 0.1f);
        Walk walk;
        walk.begin(body, {0, 0, scale});
        for (int i = 0; i < 900; ++i)
            walk.advance(1.0 / 60.0, towards(1, 0), stage.group);
        EXPECT_NEAR(walk.eye().x / scale, 5.0f - body.radius / scale, 0.05f) << scale;
        EXPECT_NEAR(walk.eye().z / scale, body.eyeHeight / scale, 0.01f) << scale;
    }
}

TEST_F(WalkingTest, FootholdIsUnderTheEyeIfThereIsGround)
{
    enter(room(), {0, 0, 0});
    Vertex3D foothold;
    ASSERT_TRUE(findFoothold(stage.group, stage.bounds, body, {2, 3, 2.5f}, {1, 0, 0}, &foothold));
    EXPECT_EQ(foothold.x, 2.0f);
    EXPECT_EQ(foothold.y, 3.0f);
    EXPECT_NEAR(foothold.z, 0.0f, 1e-4f);
}

TEST_F(WalkingTest, FootholdIsElseWhereTheEyeLooks)
{
    enter(room(), {0, 0, 0});
    Vertex3D foothold;
    // From far in front, slightly down.
    ASSERT_TRUE(findFoothold(stage.group, stage.bounds, body, {0, -40, 10}, {0, 0.97f, -0.24f}, &foothold));
    EXPECT_NEAR(foothold.x, 0.0f, 1e-3f);
    EXPECT_LT(foothold.y, 0.0f);
    EXPECT_NEAR(foothold.z, 0.0f, 1e-4f);
    // Looking away from all of it.
    ASSERT_TRUE(findFoothold(stage.group, stage.bounds, body, {0, -40, 10}, {0, -1, 0}, &foothold));
    EXPECT_LT(std::fabs(foothold.x), 5.0f);
    EXPECT_NEAR(foothold.z, 0.0f, 1e-4f);
}

TEST_F(WalkingTest, WallsAloneAreNoGround)
{
    Scene3ds scene = room();
    scene.meshes.erase(scene.meshes.begin());
    enter(scene, {0, 0, 0});
    Vertex3D foothold;
    EXPECT_FALSE(findFoothold(stage.group, stage.bounds, body, {0, 0, 2}, {1, 0, 0}, &foothold));
}

TEST(BodySize, SuitsFlatNarrowAndEmptyScenes)
{
    const Bounds scenes[] = {
        {{0, 0, 0}, {40, 0, 0}}, {{0, 0, 0}, {0, 0, 40}}, {{5, 5, 5}, {5, 5, 5}}, emptyBounds()};
    for (const Bounds& scene : scenes)
    {
        const Body body = bodyFor(scene, 1.0f);
        EXPECT_GT(body.eyeHeight, 0.0f);
        EXPECT_LT(body.radius, body.eyeHeight / 2.0f);
        EXPECT_GT(body.speed, 0.0f);
    }
    EXPECT_EQ(bodyFor(scenes[0], 1.0f).eyeHeight, 1.0f);
    EXPECT_EQ(bodyFor(scenes[0], 2.0f).eyeHeight, 2.0f);
}
