#include "vornik/rasterizer/frustum.h"

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include <GL/gl.h>

#include "core/directions.h"
#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/object.h"

static void expectVector(const Vertex3D& v, float x, float y, float z)
{
    EXPECT_NEAR(v.x, x, 1e-5);
    EXPECT_NEAR(v.y, y, 1e-5);
    EXPECT_NEAR(v.z, z, 1e-5);
}

class FrustumTest : public ::testing::Test
{
protected:
    FrustumTest() : before(vrkViewport)
    {
        vrkViewport.fov = 90;
        vrkViewport.aspect = 1;
        vrkViewport.farClip = 100;
        camera.eye = {0, 0, 0};
        camera.target = {1, 0, 0};
    }
    ~FrustumTest() override { vrkViewport = before; }
    bool isInside(Vertex3D position, float radius)
    {
        Mesh mesh;
        mesh.position = position;
        mesh.radius = radius;
        vrkMakeFrustrum(&camera, &frustum);
        return vrkIsObjectInFrustrum(&frustum, &mesh);
    }

    const Viewport before;
    Camera camera;
    Frustrum frustum = {};
};

TEST_F(FrustumTest, PlanesOfALevelView)
{
    vrkMakeFrustrum(&camera, &frustum);
    const float half = std::sqrt(0.5f);
    expectVector(frustum.normal[0], -half, 0, half);
    expectVector(frustum.normal[1], -half, 0, -half);
    expectVector(frustum.normal[2], -half, half, 0);
    expectVector(frustum.normal[3], -half, -half, 0);
    expectVector(frustum.normal[4], 1, 0, 0);
    expectVector(frustum.point[4], 100, 0, 0);
}

static bool same(const Vertex3D& a, const Vertex3D& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

TEST_F(FrustumTest, EachStepRoundsForItself)
{
    std::mt19937 random(6);
    std::uniform_real_distribution<float> place(-50, 50);
    const float tangent = std::tan(vrkRad(45));
    for (int i = 0; i < 200; ++i)
    {
        camera.eye = {place(random), place(random), place(random)};
        camera.target = {place(random), place(random), place(random)};
        vrkMakeFrustrum(&camera, &frustum);

        Vertex3D view = unit(camera.target - camera.eye);
        Vertex3D up = unit(Vertex3D{0, 0, 1} - scaled(view, view.z));
        view.normalize(); // once more, as the far plane is below
        const Vertex3D right = unit(up ^ view);
        const Vertex3D expected[5] = {unit(up - scaled(view, tangent)), unit(scaled(-view, tangent) - up),
                                      unit(right - scaled(view, tangent)),
                                      unit(scaled(-view, tangent) - right), unit(view)};
        for (int plane = 0; plane < 5; ++plane)
            EXPECT_TRUE(same(frustum.normal[plane], expected[plane])) << i << ' ' << plane;
        EXPECT_TRUE(same(frustum.point[4], scaled(expected[4], 100))) << i;
    }
}

TEST_F(FrustumTest, SideAngleIsTheUpperOneTimesTheAspect)
{
    vrkViewport.fov = 60;
    vrkViewport.aspect = 1.5f;
    vrkMakeFrustrum(&camera, &frustum);
    const float upper = vrkRad(30), side = vrkRad(45);
    expectVector(frustum.normal[0], -std::sin(upper), 0, std::cos(upper));
    expectVector(frustum.normal[2], -std::sin(side), std::cos(side), 0);
}

TEST_F(FrustumTest, PlanesStandAtTheEyeButTheFarOne)
{
    camera.eye = {5, 6, 7};
    camera.target = {5, 10, 7};
    vrkMakeFrustrum(&camera, &frustum);
    for (int i = 0; i < 4; ++i)
        expectVector(frustum.point[i], 5, 6, 7);
    expectVector(frustum.point[4], 0, 100, 0); // from the world's origin
}

TEST_F(FrustumTest, EyeOnItsTargetIsMoved)
{
    camera.eye = camera.target = {5, 6, 7};
    vrkMakeFrustrum(&camera, &frustum);
    expectVector(camera.eye, 0, 0, 0);
    expectVector(camera.target, 6, 6, 7);
    const float length = std::sqrt(121.0f);
    expectVector(frustum.normal[4], 6 / length, 6 / length, 7 / length);
}

TEST_F(FrustumTest, EyeAndTargetMayBeAMillionthApart)
{
    camera.target = {1.1e-6f, 0, 0};
    vrkMakeFrustrum(&camera, &frustum);
    EXPECT_EQ(camera.target.x, 1.1e-6f);
    expectVector(frustum.normal[4], 1, 0, 0);
    camera.target = {0, 0.9e-6f, 0};
    vrkMakeFrustrum(&camera, &frustum);
    EXPECT_EQ(camera.target.x, 1.0f);
    EXPECT_EQ(camera.target.y, 0.0f);
}

TEST_F(FrustumTest, StraightDownThereIsNeitherUpNorRight)
{
    camera.target = {0, 0, -9};
    vrkMakeFrustrum(&camera, &frustum);
    expectVector(frustum.normal[0], 0, 0, 1); // -view
    expectVector(frustum.normal[1], 0, 0, 1);
    expectVector(frustum.normal[2], 0, 0, 1); // -view
    expectVector(frustum.normal[3], 0, 0, 1);
    expectVector(frustum.normal[4], 0, 0, -1);
}

TEST_F(FrustumTest, NoCameraLeavesTheRecord)
{
    Frustrum untouched = {};
    untouched.point[3].y = 42;
    vrkMakeFrustrum(nullptr, &untouched);
    EXPECT_EQ(untouched.point[3].y, 42.0f);
    vrkMakeFrustrum(&camera, nullptr);
    EXPECT_TRUE(vrkIsObjectInFrustrum(nullptr, nullptr));
}

TEST_F(FrustumTest, SpheresThatTouchAreInside)
{
    // In front of the plane to the top by 1 and by 1.01, measured along its normal.
    const float half = std::sqrt(0.5f);
    EXPECT_TRUE(isInside({10 - half, 0, 10 + half}, 1.0001f));
    EXPECT_FALSE(isInside({10 - 1.01f * half, 0, 10 + 1.01f * half}, 1));
    EXPECT_FALSE(isInside({10 - 1.01f * half, 10 + 1.01f * half, 0}, 1));
    EXPECT_FALSE(isInside({10 - 1.01f * half, -10 - 1.01f * half, 0}, 1));
    EXPECT_FALSE(isInside({10 - 1.01f * half, 0, -10 - 1.01f * half}, 1));
    camera.eye = {0, 0, 0};
    Mesh mesh;
    Frustrum flat = {};
    flat.normal[2] = {0, 1, 0};
    mesh.position = {0, 4, 0};
    mesh.radius = 4;
    EXPECT_TRUE(vrkIsObjectInFrustrum(&flat, &mesh));
    mesh.position.y = std::nextafter(4.0f, 5.0f);
    EXPECT_FALSE(vrkIsObjectInFrustrum(&flat, &mesh));
}

TEST_F(FrustumTest, FarPlaneIsNotAsked)
{
    EXPECT_TRUE(isInside({1000, 0, 0}, 1));
    EXPECT_FALSE(isInside({-10, 0, 0}, 1));
}

class InsideTest : public ::testing::Test
{
protected:
    // A pyramid with its corners counter-clockwise seen from outside.
    std::unique_ptr<Mesh> mesh{makeMesh("P", {{0, 0, 0}, {3, 0, 0}, {0, 3, 0}, {0, 0, 3}},
                                        {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}}, {10, 0, 0})};
    bool has(Vertex3D point) { return vrkPointInsideObject(mesh.get(), &point); }
};

TEST_F(InsideTest, PointsInsideAndOnTheSurface)
{
    EXPECT_TRUE(has({10.5f, 0.5f, 0.5f}));
    EXPECT_TRUE(has({10, 0, 0}));
    EXPECT_TRUE(has({11, 1, 0}));
    EXPECT_FALSE(has({0.5f, 0.5f, 0.5f}));
    EXPECT_FALSE(has({10.5f, 0.5f, -0.001f}));
    EXPECT_FALSE(has({11.1f, 1, 1}));
}

TEST_F(InsideTest, EachCornerOfAFaceMayRefuseByItself)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> place(-50, 50);
    int refusals[3] = {};
    for (int i = 0; i < 300; ++i)
    {
        std::vector<Vertex3D> corners;
        for (int corner = 0; corner < 3; ++corner)
            corners.push_back({place(random), place(random), place(random)});
        mesh.reset(makeMesh("T", corners, {{0, 1, 2}}, {place(random), place(random), place(random)}));
        const Vertex3D normal = calcNormal(&corners[0], &corners[1], &corners[2]);
        Vertex3D point = corners[0] + corners[1] + corners[2];
        point /= 3.0f;
        point += mesh->position;

        int refusing = 0, last = 0;
        for (int corner = 0; corner < 3; ++corner)
            if ((point - (corners[size_t(corner)] + mesh->position)) * normal > 0.0f)
            {
                ++refusing;
                last = corner;
            }
        refusals[last] += refusing == 1;
        EXPECT_EQ(has(point), refusing == 0) << i;
    }
    for (const int alone : refusals)
        EXPECT_GT(alone, 0);
}

TEST_F(InsideTest, MeshWithoutFacesHoldsEverything)
{
    mesh->createFaces(0);
    EXPECT_TRUE(has({500, 0, 0}));
    EXPECT_TRUE(vrkPointInsideObject(nullptr, nullptr));
}

TEST_F(InsideTest, FacesWithCornersOutsideAreNotAsked)
{
    mesh->faces[0].b = 900;
    EXPECT_TRUE(has({10.5f, 0.5f, -0.001f}));
}

class VisibleTest : public EngineTest
{
};

TEST_F(VisibleTest, ReadsTheDepthOfAPixel)
{
    vrkClear();
    EXPECT_TRUE(vrkIsVisible(10, 10, 1));
    EXPECT_TRUE(vrkIsVisible(10, 10, 0));
    vrkInitMatrix();
    vrkDisable(VRK_TEXTURE_2D);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glRectf(-1, -1, 1, 0); // the lower half, at depth 0.5
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    EXPECT_TRUE(vrkIsVisible(10.9f, 10.9f, 0.4f));
    EXPECT_FALSE(vrkIsVisible(10, 10, 0.6f));
    EXPECT_TRUE(vrkIsVisible(10, 40, 0.6f));
}

TEST_F(VisibleTest, OtherRasterizersSeeNothing)
{
    GLRecorder gl;
    for (const int number : {1, 7})
    {
        vrkSelectedRasterizer = number;
        EXPECT_FALSE(vrkIsVisible(10, 10, 0));
    }
    vrkSelectedRasterizer = 0;
    EXPECT_EQ(gl.text(), "");
}
