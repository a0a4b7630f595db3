#include "vornik/core/vectors.h"

#include <cfloat>
#include <cmath>
#include <limits>
#include <tuple>
#include <type_traits>

#include <gtest/gtest.h>

#define EXPECT_VERTEX(v, ex, ey, ez)                                                                         \
    do                                                                                                       \
    {                                                                                                        \
        const Vertex3D tested = (v);                                                                         \
        EXPECT_EQ(tested.x, ex);                                                                             \
        EXPECT_EQ(tested.y, ey);                                                                             \
        EXPECT_EQ(tested.z, ez);                                                                             \
    } while (false)

TEST(Vectors, RecordsArePackedAsTheRasterizersTakeThem)
{
    EXPECT_EQ(sizeof(Vertex2D), 8u);
    EXPECT_EQ(sizeof(Vertex3D), 12u);
    EXPECT_EQ(sizeof(Vertex4D), 16u);
    EXPECT_EQ(sizeof(Color), 16u);
    EXPECT_EQ(sizeof(VRKCounter), 16u);
    EXPECT_EQ(sizeof(Cube), 24u);
    EXPECT_EQ(sizeof(Triangle), 20u);
    EXPECT_EQ(sizeof(Facelist), 6u);
    EXPECT_EQ(sizeof(Textlist), 4u);
    EXPECT_EQ(sizeof(EdgeNormal), 72u);
    EXPECT_EQ(sizeof(Viewport), 24u);
    EXPECT_EQ(offsetof(PlaneList, face), 0u);
    EXPECT_TRUE(std::is_trivially_copyable<Vertex3D>::value);
}

TEST(Vectors, OperatorsWorkByComponent)
{
    const Vertex3D a = {1, 2, 3}, b = {5, 7, 11};
    EXPECT_VERTEX(a + b, 6, 9, 14);
    EXPECT_VERTEX(b - a, 4, 5, 8);
    EXPECT_VERTEX(-a, -1, -2, -3);
    EXPECT_EQ(a * b, 52.0f);
    EXPECT_VERTEX(a ^ b, 1, 4, -3);

    Vertex3D c = a;
    Vertex3D& added = (c += b);
    EXPECT_EQ(&added, &c);
    EXPECT_VERTEX(c, 6, 9, 14);
    Vertex3D& subtracted = (c -= a);
    EXPECT_EQ(&subtracted, &c);
    EXPECT_VERTEX(c, 5, 7, 11);
    c *= 2.0f;
    EXPECT_VERTEX(c, 10, 14, 22);
    c /= 4.0f;
    EXPECT_VERTEX(c, 2.5f, 3.5f, 5.5f);
    static_assert(std::is_void<decltype(c *= 1.0f)>::value, "scaling returns nothing");
    static_assert(std::is_void<decltype(c /= 1.0f)>::value, "scaling returns nothing");
}

TEST(Vectors, AVertexConvertsToItsLength)
{
    const Vertex3D v = {2, 3, 6};
    EXPECT_EQ(static_cast<float>(v), 7.0f);
}

TEST(Vectors, DivisionByZeroIsNotCaught)
{
    Vertex3D v = {1, -1, 0};
    v /= 0.0f;
    EXPECT_TRUE(std::isinf(v.x) && v.x > 0);
    EXPECT_TRUE(std::isinf(v.y) && v.y < 0);
    EXPECT_TRUE(std::isnan(v.z));
}

TEST(Vectors, NormalizeGivesUnitLengthAndKeepsZero)
{
    Vertex3D v = {0, 3, 4};
    v.normalize();
    EXPECT_VERTEX(v, 0, 0.6f, 0.8f);
    Vertex3D zero = {0, 0, 0};
    zero.normalize();
    EXPECT_VERTEX(zero, 0, 0, 0);
    // There is no tolerance: a length that is tiny but not 0 is divided by.
    Vertex3D tiny = {1e-18f, 0, 0};
    tiny.normalize();
    EXPECT_FLOAT_EQ(tiny.x, 1.0f);
}

TEST(Vectors, FreeNormalizeKeepsZeroToo)
{
    Vertex3D v = {0, 0, -5};
    vrkNormalize(&v);
    EXPECT_VERTEX(v, 0, 0, -1);
    Vertex3D zero = {0, 0, 0};
    vrkNormalize(&zero);
    EXPECT_VERTEX(zero, 0, 0, 0);
}

TEST(Vectors, OnlyFreeNormalizeStretchesAVectorWhoseLengthUnderflows)
{
    const Vertex3D tiny = {1e-30f, 0, -2e-30f}; // its squares are 0
    Vertex3D member = tiny;
    member.normalize();
    EXPECT_VERTEX(member, 0, 0, 0);
    Vertex3D free = tiny;
    vrkNormalize(&free);
    EXPECT_VERTEX(free, tiny.x / FLT_MIN, 0, tiny.z / FLT_MIN);
}

TEST(Vectors, SettersStoreTheirArguments)
{
    Vertex2D v2;
    vrkSetVertex2D(&v2, 1, 2);
    EXPECT_EQ(v2.x, 1);
    EXPECT_EQ(v2.y, 2);
    Vertex3D v3;
    vrkSetVertex3D(&v3, 1, 2, 3);
    EXPECT_VERTEX(v3, 1, 2, 3);
    Vertex4D v4;
    vrkSetVertex4D(&v4, 1, 2, 3, 4);
    EXPECT_EQ(v4.w, 1);
    EXPECT_EQ(v4.x, 2);
    EXPECT_EQ(v4.y, 3);
    EXPECT_EQ(v4.z, 4);
}

TEST(Vectors, AddAndSubMayWriteToAnOperand)
{
    Vertex3D a = {1, 2, 3};
    const Vertex3D b = {10, 20, 30};
    vrkAddVectors(&a, &b, &a);
    EXPECT_VERTEX(a, 11, 22, 33);
    vrkSubVectors(&a, &b, &a);
    EXPECT_VERTEX(a, 1, 2, 3);
}

TEST(Vectors, DotProductsSumFromZToX)
{
    // With this order the large terms cancel first and the small one survives.
    const Vertex3D a = {1.0f, -1e10f, 1e10f}, b = {1, 1, 1};
    EXPECT_EQ(dotProd(&a, &b), 1.0f);
    EXPECT_EQ(vrkDotVectors(&a, &b), 1.0f);
}

TEST(Vectors, CrossProductOfAxes)
{
    const Vertex3D x = {1, 0, 0}, y = {0, 1, 0};
    Vertex3D z;
    crossProd(&x, &y, &z);
    EXPECT_VERTEX(z, 0, 0, 1);
}

TEST(Vectors, AnglesConvertInDoublePrecision)
{
    EXPECT_EQ(vrkRad(180.0f), static_cast<float>(180.0 * 0.017453292519943295));
    EXPECT_EQ(vrkUnRad(1.0f), static_cast<float>(57.29577951308232));
    EXPECT_NEAR(vrkDSin(30.0f), 0.5f, 1e-6f);
    EXPECT_NEAR(vrkDCos(60.0f), 0.5f, 1e-6f);
    // They turn the angle as vrkRad has rounded it, so half a turn has a little sine.
    EXPECT_EQ(vrkDSin(180.0f), static_cast<float>(std::sin(static_cast<double>(vrkRad(180.0f)))));
    EXPECT_EQ(vrkDCos(90.0f), static_cast<float>(std::cos(static_cast<double>(vrkRad(90.0f)))));
}

TEST(Vectors, Distances)
{
    const Vertex3D a = {1, 2, 3}, b = {3, 5, 9};
    EXPECT_EQ(vrkDistance(&a, &b), 7.0f);
    EXPECT_EQ(vrkFakeDistance(&a, &b), 49.0f);
    const Vertex2D p = {0, 0}, q = {3, 4};
    EXPECT_EQ(vrkDistance(&p, &q), 5.0f);
}

TEST(Vectors, DistancesSumFromZToX)
{
    // Each 1 alone is lost beside 2 ^ 24; together, and first, they count.
    const Vertex3D a = {0, 0, 0}, b = {4096, 1, 1};
    EXPECT_EQ(vrkFakeDistance(&a, &b), 16777218.0f);
    EXPECT_EQ(vrkDistance(&a, &b), std::sqrt(16777218.0f));
}

static float bearing(float x, float y)
{
    const Vertex2D from = {0, 0}, to = {x, y};
    return vrkAngle(&from, &to);
}

TEST(Vectors, BearingsOnTheAxes)
{
    EXPECT_EQ(bearing(0, -1), 360.0f);
    EXPECT_EQ(bearing(1, 0), 90.0f);
    EXPECT_EQ(bearing(0, 1), 180.0f);
    EXPECT_EQ(bearing(-1, 0), 270.0f);
    EXPECT_EQ(bearing(0, 0), 270.0f);
}

TEST(Vectors, BearingsBetweenTheAxes)
{
    EXPECT_NEAR(bearing(1, -1), 45.0f, 1e-4f);
    EXPECT_NEAR(bearing(1, 1), 135.0f, 1e-4f);
    EXPECT_NEAR(bearing(-1, 1), 225.0f, 1e-4f);
    EXPECT_NEAR(bearing(-1, -1), 315.0f, 1e-4f);
    for (int degrees = 1; degrees < 360; ++degrees)
    {
        const float radians = vrkRad(static_cast<float>(degrees));
        EXPECT_NEAR(bearing(std::sin(radians) * 7, -std::cos(radians) * 7), static_cast<float>(degrees),
                    0.05f);
    }
}

TEST(Vectors, BearingRoundsTheLengthTheSineAndTheCosineOnceEach)
{
    // Lengths of 17 and 25: the sine is the only rounding before 1 - s * s.
    for (const auto& [x, y, length] : {std::tuple{8.0f, -15.0f, 17.0f}, {7.0f, -24.0f, 25.0f}})
    {
        const double s = -y / length;
        const double c = static_cast<float>(1.0 - s * s);
        EXPECT_EQ(bearing(x, y), static_cast<float>(std::atan(std::sqrt(c) / s) * 57.29577951308232));
    }
}

TEST(Vectors, BearingOfPointsThatAreHardlyApart)
{
    // The squares of such differences are nothing to a float.
    const float tiny = 1e-30f;
    EXPECT_EQ(bearing(0, -tiny), 360.0f);
    EXPECT_EQ(bearing(tiny, 0), 90.0f);
    EXPECT_EQ(bearing(0, tiny), 180.0f);
    EXPECT_EQ(bearing(-tiny, 0), 270.0f);
    EXPECT_NEAR(bearing(tiny, -tiny), 45.0f, 1e-4f);
    EXPECT_NEAR(bearing(1e25f, 1e25f), 135.0f, 1e-4f); // nor has it any for these
}

TEST(Vectors, BearingOfTwoPointsInSpaceIsAlwaysZero)
{
    const Vertex3D a = {1, 2, 3}, b = {-4, 5, 6};
    const Vertex2D angle = vrkAngle(&a, &b);
    EXPECT_EQ(angle.x, 0.0f);
    EXPECT_EQ(angle.y, 0.0f);
}

TEST(Vectors, CalcAnglesGivesHeadingAndElevation)
{
    const Vertex3D from = {1, 1, 1}, level = {3, 1, 1}, up = {1, 1, 5}, slope = {3, 1, 3};
    float heading, elevation;
    vrkCalcAngles(&from, &level, heading, elevation);
    EXPECT_EQ(heading, 90.0f);
    EXPECT_EQ(elevation, 90.0f);
    vrkCalcAngles(&from, &up, heading, elevation);
    EXPECT_EQ(heading, 270.0f);
    EXPECT_EQ(elevation, 180.0f);
    vrkCalcAngles(&from, &slope, heading, elevation);
    EXPECT_EQ(heading, 90.0f);
    EXPECT_NEAR(elevation, 135.0f, 1e-4f);
}

TEST(Vectors, PlaneNormalIsNotNormalisedAndFaceNormalIs)
{
    const Vertex3D a = {0, 0, 0}, b = {4, 0, 0}, c = {0, 2, 0};
    EXPECT_VERTEX(calcPlaneNormal(&a, &b, &c), 0, 0, 8);
    EXPECT_VERTEX(calcNormal(&a, &b, &c), 0, 0, 1);
    EXPECT_VERTEX(calcNormal(&a, &c, &b), 0, 0, -1);
    EXPECT_VERTEX(calcNormal(&b, &b, &b), 0, 0, 0);
}

TEST(Vectors, IntersectIsOneSidedAndHasNoEnd)
{
    const Vertex3D tri[3] = {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
    const Vertex3D turned[3] = {tri[0], tri[2], tri[1]};
    const Vertex3D origin = {1, 1, 5}, shortEnd = {1, 1, 4.5f}, aside = {9, 9, 0}, edge = {2, 0, 0};
    // Hit where its corners run clockwise, seen from the origin.
    EXPECT_FALSE(intersect(tri, &origin, &shortEnd));
    EXPECT_TRUE(intersect(turned, &origin, &shortEnd));
    EXPECT_FALSE(intersect(turned, &origin, &aside));
    EXPECT_TRUE(intersect(turned, &origin, &edge));
}

TEST(Vectors, ClampLetsTheLowerLimitWin)
{
    float v = 5;
    clamp(&v, 0, 1);
    EXPECT_EQ(v, 1.0f);
    v = -5;
    clamp(&v, 0, 1);
    EXPECT_EQ(v, 0.0f);
    v = 0.5f;
    clamp(&v, 0, 1);
    EXPECT_EQ(v, 0.5f);
    for (const float start : {-3.0f, 0.0f, 0.5f, 1.0f, 7.0f})
    {
        v = start;
        clamp(&v, 1, 0);
        EXPECT_EQ(v, 1.0f);
    }
}

TEST(Vectors, MaximumKeepsTheSignAndTheEarlierOfEquals)
{
    EXPECT_EQ(maximum(-5, 3, 4), -5.0f);
    EXPECT_EQ(maximum(2, -2, 1), 2.0f);
    EXPECT_EQ(maximum(1, -2, 2), -2.0f);
    EXPECT_EQ(maximum(1, 2, -3), -3.0f);
}

TEST(Viewport, ResetLeavesTheSize)
{
    Viewport viewport = {640, 480, 1.5f, 1, 2, 3};
    viewport.reset();
    EXPECT_EQ(viewport.width, 640.0f);
    EXPECT_EQ(viewport.height, 480.0f);
    EXPECT_EQ(viewport.aspect, 1.5f);
    EXPECT_EQ(viewport.nearClip, 0.01f);
    EXPECT_EQ(viewport.farClip, 100000.0f);
    EXPECT_EQ(viewport.fov, 90.0f);
    viewport.calcAspect();
    EXPECT_EQ(viewport.aspect, 640.0f / 480.0f);
}

TEST(Cube, StoresItsValuesInOrder)
{
    Cube cube;
    cube.setValues(1, 2, 3, 4, 5, 6);
    const Cube copy = cube;
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(copy.values[i], static_cast<float>(i + 1));
}

TEST(Plane, StartsEmptyAndCreatesItsMembers)
{
    Plane plane;
    EXPECT_EQ(plane.flag, 0);
    EXPECT_EQ(plane.faces, nullptr);
    EXPECT_EQ(plane.faceCount, 0);
    EXPECT_EQ(plane.id, 0);
    EXPECT_EQ(plane.next, nullptr);
    plane.create(3);
    EXPECT_EQ(plane.faceCount, 3);
    plane.faces[2] = {7, nullptr};
    EXPECT_EQ(plane.faces[2].face, 7);
}

TEST(Plane, DestroysALongListWithoutRecursion)
{
    Plane* head = new Plane;
    for (int i = 0; i < 1000000; ++i)
    {
        Plane* plane = new Plane;
        plane->next = head;
        head = plane;
    }
    delete head;
}
