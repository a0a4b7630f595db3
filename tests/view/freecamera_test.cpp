#include "apps/vornik/view/freecamera.h"

#include <gtest/gtest.h>

#include <cmath>

static void expectNear(const Vertex3D& a, const Vertex3D& b, float tolerance = 1e-4f)
{
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

static const Axes upright = axesOf('z');

TEST(FreeCamera, LooksAsTheOtherEyeDid)
{
    for (const char up : {'x', 'y', 'z'})
    {
        const Axes axes = axesOf(up);
        const Vertex3D eye = {1, 2, 3}, target = {4, -1, 5};
        const FreeCamera camera = freeCameraAt(eye, target, axes, 2.0f);
        Vertex3D wanted = target - eye;
        wanted.normalize();
        expectNear(forwardOf(camera, axes), wanted);
        wanted *= 2.0f;
        expectNear(centreOf(camera, axes), eye + wanted);
    }
}

TEST(FreeCamera, StraightDownStopsAtTheSteepestPitch)
{
    const FreeCamera camera = freeCameraAt({0, 0, 5}, {0, 0, 0}, upright, 5.0f);
    EXPECT_EQ(camera.heading, 0.0f);
    EXPECT_EQ(camera.pitch, -89.0f);
}

TEST(FreeCamera, OrbitKeepsTheCentreAndItsDistance)
{
    FreeCamera camera = freeCameraAt({0, -10, 0}, {0, 0, 0}, upright, 10.0f);
    orbit(&camera, upright, 90.0f, 0.0f);
    expectNear(camera.eye, {-10, 0, 0}, 1e-3f);
    orbit(&camera, upright, 33.0f, -500.0f);
    EXPECT_EQ(camera.pitch, -89.0f);
    expectNear(centreOf(camera, upright), {0, 0, 0}, 1e-3f);
    EXPECT_NEAR(float(camera.eye), 10.0f, 1e-3f);
}

TEST(FreeCamera, LookTurnsOnTheSpot)
{
    FreeCamera camera = freeCameraAt({1, 1, 1}, {1, 2, 1}, upright, 1.0f);
    look(&camera, 90.0f, 30.0f);
    expectNear(camera.eye, {1, 1, 1});
    expectNear(forwardOf(camera, upright), {std::cos(vrkRad(30.0f)), 0, 0.5f});
    look(&camera, 720.0f, 90.0f);
    EXPECT_NEAR(camera.heading, 90.0f, 1e-3f);
    EXPECT_EQ(camera.pitch, 89.0f);
}

TEST(FreeCamera, PanMovesAlongThePicture)
{
    FreeCamera camera = freeCameraAt({0, -10, 0}, {0, 0, 0}, upright, 10.0f);
    pan(&camera, upright, 2.0f, 3.0f);
    expectNear(camera.eye, {2, -10, 3});
    expectNear(centreOf(camera, upright), {2, 0, 3});
}

TEST(FreeCamera, ZoomStopsInFrontOfTheCentre)
{
    FreeCamera camera = freeCameraAt({0, -10, 0}, {0, 0, 0}, upright, 10.0f);
    zoom(&camera, upright, 0.5f, 1.0f);
    expectNear(camera.eye, {0, -5, 0});
    zoom(&camera, upright, 0.001f, 1.0f);
    expectNear(camera.eye, {0, -1, 0});
}

TEST(FreeCamera, FlightGoesAlongTheSightButRisesStraight)
{
    FreeCamera camera = freeCameraAt({0, 0, 0}, {0, 1, 1}, upright, 1.0f);
    fly(&camera, upright, 2.0f, 0.0f, 0.0f);
    expectNear(camera.eye, {0, std::sqrt(2.0f), std::sqrt(2.0f)});
    fly(&camera, upright, 0.0f, 3.0f, 4.0f);
    expectNear(camera.eye, {3, std::sqrt(2.0f), std::sqrt(2.0f) + 4});
}

TEST(FreeCamera, ViewLooksAlongTheSightFarFromTheOrigin)
{
    const FreeCamera camera = freeCameraAt({1e6f, 1e6f, 0}, {1e6f, 1e6f + 100, 0}, upright, 0.001f);
    const View view = viewOf(camera, upright, 40.0f);
    Vertex3D forward = view.camera.target - view.camera.eye;
    forward.normalize();
    expectNear(forward, {0, 1, 0});
    EXPECT_EQ(view.camera.fov, 40.0f);
}

TEST(ClipRange, HoldsTheWholeBoxFromOutside)
{
    const Bounds box = {{-1, -1, -1}, {1, 1, 1}};
    for (const float distance : {0.0f, 1.0f, 3.0f, 100.0f, 1e5f})
    {
        const ClipRange range = clipRange(box, {0, -distance, 0}, 0.0f);
        EXPECT_GT(range.nearest, 0.0f);
        EXPECT_LE(range.nearest, std::max(distance - std::sqrt(3.0f), 0.01f)) << distance;
        EXPECT_GE(range.farthest, distance + std::sqrt(3.0f)) << distance;
    }
}

TEST(ClipRange, KeepsWhatIsClosest)
{
    const Bounds box = {{-1000, -1000, 0}, {1000, 1000, 10}};
    EXPECT_LE(clipRange(box, {0, 0, 2}, 0.05f).nearest, 0.05f);
    // But not at the price of all depth.
    const ClipRange range = clipRange(box, {0, 0, 2}, 1e-9f);
    EXPECT_GE(range.nearest, range.farthest * 0.9e-5f);
}

TEST(ClipRange, OfNothingIsUsable)
{
    const ClipRange range = clipRange(emptyBounds(), {0, 0, 0}, 0.0f);
    EXPECT_GT(range.nearest, 0.0f);
    EXPECT_GT(range.farthest, range.nearest);
    const ClipRange point = clipRange({{2, 2, 2}, {2, 2, 2}}, {2, 2, 2}, 0.0f);
    EXPECT_GT(point.nearest, 0.0f);
    EXPECT_GT(point.farthest, point.nearest);
}
