#include "rasterizer/d3d/viewmatrix.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using Floats = std::vector<float>;

class ViewMatrix : public ::testing::Test
{
protected:
    float m[16] = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 7};
    Vertex3D from = {0, 0, 0}, at = {1, 0, 0};

    Floats build(const Vertex3D& up = {0, 0, 1})
    {
        buildViewMatrix(m, &from, &at, up);
        return Floats(std::begin(m), std::end(m));
    }

    // Where a point of the world lies to the right of, above and before the eye.
    Vertex3D seen(const Vertex3D& p) const
    {
        return {p.x * m[0] + p.y * m[4] + p.z * m[8] + m[12], p.x * m[1] + p.y * m[5] + p.z * m[9] + m[13],
                p.x * m[2] + p.y * m[6] + p.z * m[10] + m[14]};
    }
};

TEST_F(ViewMatrix, ColumnsAreRightUpAndView)
{
    EXPECT_EQ(build(), (Floats{0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1}));
}

TEST_F(ViewMatrix, LeftOfAWorldWithZUpIsToTheRight)
{
    from = {10, 20, 30};
    at = {13, 20, 30};
    build();
    const Vertex3D p = seen({15, 22, 33});
    EXPECT_FLOAT_EQ(p.x, 2);
    EXPECT_FLOAT_EQ(p.y, 3);
    EXPECT_FLOAT_EQ(p.z, 5);
}

TEST_F(ViewMatrix, UpIsMadeUpright)
{
    at = {1, 0, 1};
    build();
    const float half = std::sqrt(0.5f);
    EXPECT_NEAR(m[1], -half, 1e-6f);
    EXPECT_NEAR(m[9], half, 1e-6f);
    EXPECT_NEAR(m[2], half, 1e-6f);
    EXPECT_NEAR(m[4], 1.0f, 1e-6f);
}

TEST_F(ViewMatrix, CoincidingPointsAreMovedApart)
{
    from = at = {4, 5, 6};
    build();
    EXPECT_EQ(from.x, 0.0f);
    EXPECT_EQ(from.y, 0.0f);
    EXPECT_EQ(from.z, 0.0f);
    EXPECT_EQ(at.x, 5.0f);
    EXPECT_EQ(at.y, 5.0f);
    EXPECT_EQ(at.z, 6.0f);
    EXPECT_NEAR(m[2], 5.0f / std::sqrt(86.0f), 1e-6f);
}

TEST_F(ViewMatrix, PointsAMicrometreApartAreNotMoved)
{
    at = {2e-6f, 0, 0};
    build();
    EXPECT_EQ(at.x, 2e-6f);
    EXPECT_EQ(m[2], 1.0f);
}

TEST_F(ViewMatrix, ViewAlongUpTakesTheYAxisForUp)
{
    at = {0, 0, 1};
    EXPECT_EQ(build(), (Floats{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
}

TEST_F(ViewMatrix, ViewAndUpAlongYTakeTheZAxisForUp)
{
    at = {0, 1, 0};
    EXPECT_EQ(build({0, 1, 0}), (Floats{-1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1}));
}

TEST_F(ViewMatrix, WithoutAnyDirectionTheMatrixStays)
{
    at = {NAN, 0, 0};
    EXPECT_EQ(build()[0], 7.0f);
    from = at = {-1, 0, 0}; // moved onto each other again
    EXPECT_EQ(build()[0], 7.0f);
}

TEST(ProjectionMatrix, ElementsByTheFormula)
{
    float m[16];
    const float fov = 2.0f * std::atan(0.5f); // height 2
    ASSERT_TRUE(buildProjectionMatrix(m, fov, 0.75f, 1.0f, 5.0f));
    const float expected[16] = {1.5f, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1.25f, 1, 0, 0, -1.25f, 0};
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(m[i], expected[i], 1e-6f) << i;
}

TEST(ProjectionMatrix, NarrowViewsAndThinSlicesFail)
{
    float m[16] = {3};
    EXPECT_FALSE(buildProjectionMatrix(m, 1.0f, 1.0f, 2.0f, 2.009f));
    EXPECT_FALSE(buildProjectionMatrix(m, 1.0f, 1.0f, 2.0f, 1.991f));
    EXPECT_FALSE(buildProjectionMatrix(m, 0.0f, 1.0f, 1.0f, 2.0f));
    EXPECT_FALSE(buildProjectionMatrix(m, 0.0199f, 1.0f, 1.0f, 2.0f));
    EXPECT_EQ(m[0], 3.0f);
    EXPECT_TRUE(buildProjectionMatrix(m, 0.0202f, 1.0f, 1.0f, 1.02f));
}
