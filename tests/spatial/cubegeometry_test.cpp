// Triangles and segments against cubes.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/spatial/plaincube.h"
#include "tests/spatial/randomgroup.h"
#include "vornik/spatial/octree.h"

TEST(CubeGeometry, SegmentsAgainstTheCube)
{
    const auto hits = [](Vertex3D p, Vertex3D q) { return segmentIntersectsCube(&p, &q); };
    EXPECT_TRUE(hits({0, 0, 0}, {0.1f, 0, 0})); // wholly inside
    EXPECT_TRUE(hits({0, 0, 0}, {0, 0, 0}));
    EXPECT_TRUE(hits({-2, 0, 0}, {2, 0, 0}));
    EXPECT_TRUE(hits({-2, 0.5f, 0.5f}, {2, 0.5f, 0.5f})); // along an edge
    EXPECT_FALSE(hits({-2, 0.51f, 0}, {2, 0.51f, 0}));
    EXPECT_FALSE(hits({-2, 0, 0}, {-0.6f, 0, 0}));
    EXPECT_FALSE(hits({0.6f, 0, 0}, {2, 0, 0}));
    EXPECT_TRUE(hits({-1, 0, 0}, {0, 1, 0})); // touches an edge
    EXPECT_FALSE(hits({-1.1f, 0, 0}, {0, 1.1f, 0}));
}

// Corners on a grid, where coordinates are equal, nought and on the sides of the cube, and anywhere.
static Vertex3D anyCorner(std::mt19937& random, bool isOnGrid)
{
    const auto step = [&] { return static_cast<float>(static_cast<int>(random() % 9) - 4) * 0.25f; };
    return isOnGrid ? Vertex3D{step(), step(), step()} : anyPoint(random, 1);
}

TEST(CubeGeometry, AnswersAsDefinedOnSidesEdgesAndTies)
{
    std::mt19937 random(4);
    int windings = 0, segments = 0, polygons = 0;
    for (int round = 0; round < 200000; ++round)
    {
        const bool isOnGrid = round % 4 != 0;
        const Vertex3D t[3] = {anyCorner(random, isOnGrid), anyCorner(random, isOnGrid),
                               anyCorner(random, isOnGrid)};
        const Vertex3D point = anyCorner(random, isOnGrid), any = anyCorner(random, isOnGrid);
        const Vertex3D normal = round % 3 == 0 ? any : calcPlaneNormal(&t[0], &t[1], &t[2]);
        const int winding = polygonContainsPoint(t, &normal, &point);
        ASSERT_EQ(winding, plainWindings(t, normal, point)) << round;
        const bool segment = segmentIntersectsCube(&t[0], &t[1]);
        ASSERT_EQ(segment, plainSegmentIntersectsCube(t[0], t[1])) << round;
        const Vertex3D large[3] = {{t[0].x * 3, t[0].y * 3, t[0].z * 3},
                                   {t[1].x * 3, t[1].y * 3, t[1].z * 3},
                                   {t[2].x * 3, t[2].y * 3, t[2].z * 3}};
        for (const Vertex3D* asked : {t, large})
        {
            const bool polygon = polygonIntersectsCube(asked, &normal);
            ASSERT_EQ(polygon, plainPolygonIntersectsCube(asked, normal)) << round;
            polygons += polygon;
        }
        windings += winding != 0;
        segments += segment;
    }
    EXPECT_GT(windings, 1000);
    EXPECT_GT(segments, 1000);
    EXPECT_GT(polygons, 1000);
}

// A point of the triangle in the cube, found by a fine net: a hit that can't be denied.
static bool hasNetPointInCube(const Vertex3D* t, float half)
{
    const int n = 40;
    for (int i = 0; i <= n; ++i)
        for (int j = 0; i + j <= n; ++j)
        {
            const float u = float(i) / n, v = float(j) / n, w = 1 - u - v;
            const Vertex3D p = {t[0].x * w + t[1].x * u + t[2].x * v, t[0].y * w + t[1].y * u + t[2].y * v,
                                t[0].z * w + t[1].z * u + t[2].z * v};
            if (std::fabs(p.x) <= half && std::fabs(p.y) <= half && std::fabs(p.z) <= half)
                return true;
        }
    return false;
}

TEST(CubeGeometry, TrianglesAgainstTheCube)
{
    std::mt19937 random(5);
    int hits = 0, misses = 0;
    for (int round = 0; round < 4000; ++round)
    {
        const Vertex3D t[3] = {anyPoint(random, 2), anyPoint(random, 2), anyPoint(random, 2)};
        const Vertex3D normal = calcPlaneNormal(&t[0], &t[1], &t[2]);
        const bool result = polygonIntersectsCube(t, &normal);
        ++(result ? hits : misses);
        EXPECT_TRUE(result || !hasNetPointInCube(t, 0.499f));
        EXPECT_TRUE(!result || hasNetPointInCube(t, 0.65f));
    }
    EXPECT_GT(hits, 500);
    EXPECT_GT(misses, 500);
    const Vertex3D point[3] = {{2, 2, 2}, {2, 2, 2}, {2, 2, 2}}, none = {0, 0, 0};
    EXPECT_FALSE(polygonIntersectsCube(point, &none));
}

TEST(CubeGeometry, BoxesAnswerAsWithoutShortcuts)
{
    std::mt19937 random(15);
    int hits = 0;
    for (int round = 0; round < 200000; ++round)
    {
        const float size = round % 3 == 0 ? 0.001f : round % 3 == 1 ? 1.0f : 50.0f;
        const Vertex3D low = anyPoint(random, 5), about = low + anyPoint(random, 2) + anyPoint(random, size);
        const float width = 0.001f + std::fabs(anyNumber(random, 3));
        const Vertex3D high = {low.x + width, low.y + width, low.z + width};
        Vertex3D t[3] = {about + anyPoint(random, size), about + anyPoint(random, size),
                         about + anyPoint(random, size)};
        if (round % 17 == 0)
            t[1] = t[0];
        if (round % 5 == 0)
            t[0].z = t[1].z = t[2].z = high.z; // on a side
        const bool result = triangleIntersectsBox(t, &low, &high);
        ASSERT_EQ(result, plainTriangleIntersectsBox(t, low, high)) << round;
        hits += result;
    }
    EXPECT_GT(hits, 10000);
}

TEST(CubeGeometry, WindingsAroundAPoint)
{
    const Vertex3D t[3] = {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
    Vertex3D inside = {1, 1, 9}, outside = {3, 3, 0}, up = {0, 0, 1}, down = {0, 0, -1};
    EXPECT_NE(polygonContainsPoint(t, &up, &inside), 0); // along the normal
    EXPECT_NE(polygonContainsPoint(t, &down, &inside), 0);
    EXPECT_EQ(polygonContainsPoint(t, &up, &outside), 0);
    // Of equal components the later axis is dropped: x and y here, z is left out.
    const Vertex3D slanted[3] = {{0, 0, 0}, {4, 0, -4}, {0, 4, 0}};
    Vertex3D normal = {1, 0, 1};
    EXPECT_NE(polygonContainsPoint(slanted, &normal, &inside), 0);
}

TEST(CubeGeometry, BoxesAreTakenOnePerCentWider)
{
    const Vertex3D low = {0, 0, 0}, high = {10, 10, 10};
    Vertex3D a = {10.04f, 5, 5}, b = {20, 5, 5}, c = {10.06f, 5, 5};
    EXPECT_TRUE(segmentIntersectsBox(&a, &b, &low, &high));
    EXPECT_FALSE(segmentIntersectsBox(&c, &b, &low, &high));
    const Vertex3D touching[3] = {{10.04f, 5, 5}, {12, 5, 5}, {12, 6, 5}};
    const Vertex3D apart[3] = {{10.06f, 5, 5}, {12, 5, 5}, {12, 6, 5}};
    EXPECT_TRUE(triangleIntersectsBox(touching, &low, &high));
    EXPECT_FALSE(triangleIntersectsBox(apart, &low, &high));
    EXPECT_FALSE(segmentIntersectsBox(&a, &b, &low, &low)); // no width
    EXPECT_FALSE(triangleIntersectsBox(touching, &low, &low));
    const Vertex3D here[3] = {low, low, low}; // not even in its middle
    EXPECT_FALSE(segmentIntersectsBox(&here[0], &here[1], &low, &low));
    EXPECT_FALSE(triangleIntersectsBox(here, &low, &low));
}
