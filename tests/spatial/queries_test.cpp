#include "vornik/spatial/queries.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

class Intersect2 : public ::testing::Test
{
protected:
    float hit(Vertex3D start, Vertex3D end) const { return intersect2(&start, &end, &a, &b, &c); }

    Vertex3D a = {0, 0, 0}, b = {4, 0, 0}, c = {0, 4, 0};
};

TEST_F(Intersect2, AnswersTheFractionOfTheSegment)
{
    EXPECT_EQ(hit({1, 1, 1}, {1, 1, -1}), 0.5f);
    EXPECT_EQ(hit({1, 1, 4}, {1, 1, 0}), 1.0f);
    EXPECT_EQ(hit({1, 1, 0}, {1, 1, -1}), 0.0f);
}

TEST_F(Intersect2, AnswersBeyondTheEndOfTheSegment)
{
    EXPECT_EQ(hit({1, 1, 3}, {1, 1, 2}), 3.0f);
}

TEST_F(Intersect2, AnswersBehindTheStartWithANegativeFraction)
{
    EXPECT_EQ(hit({1, 1, -2}, {1, 1, -3}), -2.0f);
}

TEST_F(Intersect2, HitsFromTheFrontOnly)
{
    EXPECT_EQ(hit({1, 1, -1}, {1, 1, 1}), -1.0f);
    std::swap(b, c);
    EXPECT_EQ(hit({1, 1, -1}, {1, 1, 1}), 0.5f);
}

TEST_F(Intersect2, MissesOutsideTheEdges)
{
    EXPECT_EQ(hit({-0.1f, 1, 1}, {-0.1f, 1, -1}), -1.0f);
    EXPECT_EQ(hit({1, -0.1f, 1}, {1, -0.1f, -1}), -1.0f);
    EXPECT_EQ(hit({2.1f, 2.1f, 1}, {2.1f, 2.1f, -1}), -1.0f);
    EXPECT_EQ(hit({5, 0, 1}, {5, 0, -1}), -1.0f);
}

TEST_F(Intersect2, EdgesAndCornersCount)
{
    EXPECT_EQ(hit({2, 0, 1}, {2, 0, -1}), 0.5f);
    EXPECT_EQ(hit({0, 0, 1}, {0, 0, -1}), 0.5f);
    EXPECT_EQ(hit({2, 2, 1}, {2, 2, -1}), 0.5f);
    EXPECT_EQ(hit({4, 0, 1}, {4, 0, -1}), 0.5f);
    EXPECT_EQ(hit({0, 4, 1}, {0, 4, -1}), 0.5f);
}

TEST_F(Intersect2, ParallelAndTinyFacesAreMissed)
{
    EXPECT_EQ(hit({-1, 1, 0}, {5, 1, 0}), -1.0f);
    b = {1e-6f, 0, 0};
    c = {0, 1e-6f, 0};
    EXPECT_EQ(hit({0, 0, 1}, {0, 0, -1}), 0.5f); // just large enough
    c = {0, 1e-7f, 0};
    EXPECT_EQ(hit({0, 0, 1}, {0, 0, -1}), -1.0f);
}

TEST_F(Intersect2, DegenerateFacesAreMissed)
{
    b = a;
    EXPECT_EQ(hit({0, 0, 1}, {0, 0, -1}), -1.0f);
}

TEST_F(Intersect2, ValuesThatAreNoNumbersNeverHit)
{
    b.x = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(hit({1, 1, 1}, {1, 1, -1}) >= 0.0f);
}
