#include "vornik/scene/object.h"

#include <cmath>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "vornik/scene/mesh.h"

TEST(Object, Defaults)
{
    const Object object;
    EXPECT_EQ(object.name, nullptr);
    EXPECT_EQ(object.parent, nullptr);
    EXPECT_EQ(object.objectId, 0);
    EXPECT_EQ(object.parentId, 0);
    EXPECT_EQ(object.visible, 1);
    EXPECT_EQ(object.special, 0);
    EXPECT_EQ(object.specialType, 0);
    EXPECT_EQ(object.specialFade, 0.0f);
}

TEST(Object, SetNameKeepsACopyOfAnyLength)
{
    Object object;
    std::string text(300, 'n');
    object.setName(text.c_str());
    text[0] = 'x';
    EXPECT_EQ(object.name, std::string(300, 'n'));
    object.setName("other");
    EXPECT_STREQ(object.name, "other");
    object.setName(object.name);
    EXPECT_STREQ(object.name, "other");
}

TEST(Object, CopiesShareTheName)
{
    Object object;
    object.setName("shared");
    object.position = {1, 2, 3};
    object.objectId = 7;
    const std::unique_ptr<Object> copy(object.copyObject());
    EXPECT_EQ(copy->name, object.name);
    EXPECT_EQ(copy->position.y, 2.0f);
    EXPECT_EQ(copy->objectId, 7);
}

TEST(Object, CopiesHaveEveryField)
{
    Object parent;
    Object object;
    object.location = {1, 2, 3};
    object.rotation = {4, 5, 6, 7};
    object.position = {8, 9, 10};
    object.pivot = {11, 12, 13};
    object.parent = &parent;
    object.objectId = 14;
    object.parentId = 15;
    object.setSpecial(16);
    object.specialFade = 0.5f;
    const std::unique_ptr<Object> copy(object.copyObject());
    EXPECT_EQ(copy->location.x, 1.0f);
    EXPECT_EQ(copy->location.z, 3.0f);
    EXPECT_EQ(copy->rotation.x, 4.0f);
    EXPECT_EQ(copy->rotation.w, 7.0f);
    EXPECT_EQ(copy->position.z, 10.0f);
    EXPECT_EQ(copy->pivot.x, 11.0f);
    EXPECT_EQ(copy->parent, &parent);
    EXPECT_EQ(copy->objectId, 14);
    EXPECT_EQ(copy->parentId, 15);
    EXPECT_EQ(copy->visible, 0);
    EXPECT_EQ(copy->special, 1);
    EXPECT_EQ(copy->specialType, 16);
    EXPECT_EQ(copy->specialFade, 0.5f);
}

TEST(Object, ANameLivesAsLongAsAnyCopy)
{
    auto object = std::make_unique<Mesh>();
    object->setName("shared");
    const std::unique_ptr<Object> copy(object->Object::copyObject());
    const std::unique_ptr<Mesh> second(static_cast<Mesh*>(object->copyObject()));
    object.reset();
    EXPECT_STREQ(copy->name, "shared");
    copy->setName("other");
    EXPECT_STREQ(second->name, "shared");
}

TEST(Object, CopiesByAssignmentShareTheName)
{
    Light light;
    light.setName("lamp");
    {
        Light other;
        other.setName("gone");
        other = light;
        EXPECT_EQ(other.name, light.name);
        const Light& self = other;
        other = self;
    }
    EXPECT_STREQ(light.name, "lamp");
}

TEST(Object, SetSpecialHides)
{
    Object object;
    object.setSpecial(2);
    EXPECT_EQ(object.special, 1);
    EXPECT_EQ(object.specialType, 2);
    EXPECT_EQ(object.visible, 0);
}

TEST(Light, Defaults)
{
    const Light light;
    EXPECT_EQ(light.color.r, 255.0f);
    EXPECT_EQ(light.color.a, 255.0f);
    EXPECT_EQ(light.innerRange, 0.0f);
    EXPECT_EQ(light.outerRange, 10000.0f);
    EXPECT_EQ(light.visible, 1);
}

TEST(Light, CopyIsALight)
{
    Light light;
    light.outerRange = 5;
    light.innerRange = 3;
    const std::unique_ptr<Light> copy(static_cast<Light*>(light.copyObject()));
    EXPECT_EQ(copy->outerRange, 5.0f);
    EXPECT_EQ(copy->innerRange, 3.0f);
    EXPECT_EQ(copy->color.g, 255.0f);
}

static void expectVertex(const Vertex3D& v, float x, float y, float z)
{
    EXPECT_NEAR(v.x, x, 1e-5f);
    EXPECT_NEAR(v.y, y, 1e-5f);
    EXPECT_NEAR(v.z, z, 1e-5f);
}

// A camera that looks along heading and pitch from the origin.
static Camera facing(float heading, float pitch)
{
    Camera camera;
    camera.rotation = {heading, pitch, 0, 0};
    return camera;
}

TEST(Camera, Defaults)
{
    const Camera camera;
    expectVertex(camera.eye, 0, 0, 0);
    expectVertex(camera.target, 0, 0, 0);
    EXPECT_EQ(camera.roll, 0.0f);
    EXPECT_EQ(camera.lens, 0.0f);
    EXPECT_EQ(camera.fov, 90.0f);
}

TEST(Camera, MovesEyeAlone)
{
    Camera camera;
    camera.moveTo(1, 2, 3);
    camera.moveBy(10, 20, 30);
    expectVertex(camera.eye, 11, 22, 33);
    expectVertex(camera.getPosition(), 11, 22, 33);
    expectVertex(camera.target, 0, 0, 0);
}

TEST(Camera, MovesEyeAndTarget)
{
    Camera camera;
    camera.moveTo(1, 2, 3, 4, 5, 6);
    camera.moveBy(1, 1, 1, 2, 2, 2);
    expectVertex(camera.eye, 2, 3, 4);
    expectVertex(camera.target, 6, 7, 8);
}

TEST(Camera, FliesForwardAndBack)
{
    Camera level = facing(0, 90);
    level.forward(2);
    expectVertex(level.eye, 0, 2, 0);
    level.reverse(2);
    expectVertex(level.eye, 0, 0, 0);

    Camera left = facing(90, 90);
    left.forward(2);
    expectVertex(left.eye, -2, 0, 0);

    Camera down = facing(40, 0);
    down.forward(2);
    expectVertex(down.eye, 0, 0, -2);
    expectVertex(down.target, 0, 0, 0);
}

TEST(Camera, StepsAsideByTheSineOfThePitch)
{
    Camera level = facing(0, 90);
    level.eye.z = 5;
    level.stepLeft(2);
    expectVertex(level.eye, -2, 0, 5);
    level.stepRight(3);
    expectVertex(level.eye, 1, 0, 5);

    Camera raised = facing(0, 30);
    raised.stepLeft(2);
    expectVertex(raised.eye, -1, 0, 0);

    Camera down = facing(0, 0);
    down.stepLeft(2);
    expectVertex(down.eye, 0, 0, 0);
}

TEST(Camera, FliesAndStepsByHeadingAndPitchTogether)
{
    const float root = std::sqrt(3.0f); // 30 degrees: sine 1 / 2, cosine root / 2; 60: the other way round
    Camera camera = facing(30, 60);
    camera.eye = {1, 2, 3};
    camera.target = {7, 8, 9};
    camera.forward(4);
    expectVertex(camera.eye, 1 - root, 2 + 3, 3 - 2);
    camera.reverse(4);
    expectVertex(camera.eye, 1, 2, 3);
    camera.stepLeft(4);
    expectVertex(camera.eye, 1 - 3, 2 - root, 3);
    camera.stepRight(4);
    expectVertex(camera.eye, 1, 2, 3);
    expectVertex(camera.target, 7, 8, 9);
    camera.targetFromRotation(4);
    expectVertex(camera.eye, 1, 2, 3);
    expectVertex(camera.target, 1 - root, 2 + 3, 3 - 2);
}

TEST(Camera, FieldOfViewFollowsTheLens)
{
    Camera camera;
    camera.calcFOV();
    EXPECT_EQ(camera.fov, 178.1292f);
    camera.lens = 50;
    camera.calcFOV();
    EXPECT_NEAR(camera.fov, 46.36f, 0.01f);
    camera.lens = 1000;
    camera.calcFOV();
    EXPECT_EQ(camera.fov, 1000.0f * 1000.0f * 0.046432316f - 1000.0f * 4.9570117f + 178.1292f);
}

TEST(Camera, TargetStandsInTheDirectionOfFlight)
{
    Camera camera = facing(90, 90);
    camera.eye = {1, 2, 3};
    camera.targetFromRotation(10);
    expectVertex(camera.target, -9, 2, 3);
    camera.rotation = {0, 0, 0, 0};
    camera.targetFromRotation(10);
    expectVertex(camera.target, 1, 2, -7);
    camera.rotation = {0, 180, 0, 0};
    camera.targetFromRotation(10);
    expectVertex(camera.target, 1, 2, 13);
}

TEST(Camera, RotationFromTargetTakesTheBearings)
{
    Camera camera;
    camera.eye = {1, 1, 1};
    camera.target = {3, 1, 1};
    camera.rotationFromTarget();
    const Vertex2D from = {1, 1}, to = {3, 1}, low = {0, 1}, high = {2, 1};
    EXPECT_EQ(camera.rotation.x, vrkAngle(&from, &to));
    EXPECT_EQ(camera.rotation.y, vrkAngle(&low, &high));
    EXPECT_EQ(camera.rotation.x, 90.0f);
    EXPECT_EQ(camera.rotation.y, 90.0f);
    camera.target = {3, 1, 3};
    camera.rotationFromTarget();
    EXPECT_NEAR(camera.rotation.y, 135.0f, 1e-4f);
}

TEST(Camera, CopyIsACamera)
{
    Camera camera;
    camera.roll = 12;
    camera.lens = 35;
    camera.fov = 60;
    camera.moveTo(1, 2, 3, 4, 5, 6);
    const std::unique_ptr<Camera> copy(static_cast<Camera*>(camera.copyObject()));
    EXPECT_EQ(copy->roll, 12.0f);
    EXPECT_EQ(copy->lens, 35.0f);
    EXPECT_EQ(copy->fov, 60.0f);
    expectVertex(copy->eye, 1, 2, 3);
    expectVertex(copy->target, 4, 5, 6);
}
