#include "vornik/core/matrices.h"

#include <cmath>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

TEST(Matrices, InitializeTouchesEveryFourthFloatOfABlockOf64)
{
    float block[4][4][4];
    float* flat = &block[0][0][0];
    for (int i = 0; i < 64; ++i)
        flat[i] = 9.0f;
    vrkInitializeMatrix(&block[0]);
    for (int i = 0; i < 64; ++i)
    {
        const bool one = i == 0 || i == 20 || i == 40 || i == 60;
        EXPECT_EQ(flat[i], i % 4 != 0 ? 9.0f : one ? 1.0f : 0.0f) << i;
    }
}

TEST(Matrices, TransposingSwapsRowsAndColumns)
{
    float m[16];
    for (int i = 0; i < 16; ++i)
        m[i] = static_cast<float>(i);
    vrkMatrixColumnToRow(m);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_EQ(m[row * 4 + column], static_cast<float>(column * 4 + row));
    vrkMatrixRowToColumn(m);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(m[i], static_cast<float>(i));
}

TEST(Matrices, StridedTransposingLeavesTheFloatsBetween)
{
    float block[4][4][4];
    float* flat = &block[0][0][0];
    for (int i = 0; i < 64; ++i)
        flat[i] = static_cast<float>(i);
    vrkMatrixColumnToRow(&block[0]);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
        {
            EXPECT_EQ(flat[i * 16 + j * 4], static_cast<float>(j * 16 + i * 4));
            EXPECT_EQ(flat[i * 16 + j * 4 + 1], static_cast<float>(i * 16 + j * 4 + 1));
        }
    vrkMatrixRowToColumn(&block[0]);
    for (int i = 0; i < 64; ++i)
        EXPECT_EQ(flat[i], static_cast<float>(i));
}

TEST(Matrices, InverseOfATranslationIsItsOpposite)
{
    float in[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {1, 2, 3, 1}};
    float out[4][4];
    ASSERT_TRUE(vrkInvertMatrix(out, in));
    const float expected[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {-1, -2, -3, 1}};
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ((&out[0][0])[i], (&expected[0][0])[i]) << i;
}

TEST(Matrices, InverseTimesMatrixIsTheIdentity)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(-2, 2);
    for (int round = 0; round < 100; ++round)
    {
        float in[4][4], out[4][4];
        for (auto& row : in)
            for (float& element : row)
                element = value(random);
        for (int i = 0; i < 3; ++i)
        {
            in[i][i] += 5.0f;
            in[i][3] = 0.0f;
        }
        in[3][3] = 1.0f;
        ASSERT_TRUE(vrkInvertMatrix(out, in));
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column)
            {
                float sum = 0;
                for (int k = 0; k < 4; ++k)
                    sum += in[row][k] * out[k][column];
                EXPECT_NEAR(sum, row == column ? 1.0f : 0.0f, 1e-5f);
            }
    }
}

TEST(Matrices, InverseAcceptsOnlyAffineMatrices)
{
    const int lastColumn[] = {3, 7, 11, 15};
    for (const int index : lastColumn)
    {
        float in[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
        float out[4][4];
        (&in[0][0])[index] += 0.0005f;
        EXPECT_TRUE(vrkInvertMatrix(out, in));
        EXPECT_EQ(out[0][3], 0.0f);
        EXPECT_EQ(out[3][3], 1.0f);

        (&in[0][0])[index] += 0.0015f;
        std::memset(static_cast<void*>(out), 0x55, sizeof out);
        float untouched[4][4];
        std::memcpy(untouched, out, sizeof out);
        EXPECT_FALSE(vrkInvertMatrix(out, in));
        EXPECT_EQ(std::memcmp(untouched, out, sizeof out), 0);
    }
}

TEST(Matrices, InverseAcceptsTheToleranceItself)
{
    const float tolerance = 0.0010000000474974513f;
    float in[4][4] = {{1, 0, 0, tolerance}, {0, 1, 0, -tolerance}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    float out[4][4];
    EXPECT_TRUE(vrkInvertMatrix(out, in));
    in[1][3] = std::nextafter(-tolerance, -1.0f);
    EXPECT_FALSE(vrkInvertMatrix(out, in));
}

TEST(Matrices, InverseOfASingularMatrixIsNotFinite)
{
    float in[4][4] = {};
    in[3][3] = 1.0f;
    float out[4][4];
    EXPECT_TRUE(vrkInvertMatrix(out, in));
    EXPECT_FALSE(std::isfinite(out[0][0]));
}

static void fill(const Vertex4D& q, float (&m)[4][4])
{
    float* rows[4] = {m[0], m[1], m[2], m[3]};
    Quaternion2Mat(rows, &q);
}

TEST(Matrices, QuaternionsOfOneAndOfZeroGiveTheIdentity)
{
    for (const float w : {1.0f, 0.0f})
    {
        float m[4][4];
        fill({0, 0, 0, w}, m);
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column)
                EXPECT_EQ(m[row][column], row == column ? 1.0f : 0.0f);
    }
}

TEST(Matrices, QuaternionElements)
{
    float m[4][4];
    fill({2, 3, 5, 7}, m);
    const float expected[4][4] = {{1 - 2 * (9 + 25), 2 * (6 - 35), 2 * (21 + 10), 0},
                                  {2 * (35 + 6), 1 - 2 * (4 + 25), 2 * (15 - 14), 0},
                                  {2 * (10 - 21), 2 * (14 + 15), 1 - 2 * (4 + 9), 0},
                                  {0, 0, 0, 1}};
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ((&m[0][0])[i], (&expected[0][0])[i]) << i;
}

TEST(Matrices, IdentityToQuaternionHasNoAxis)
{
    float m[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    Vertex4D q;
    Mat2Quaternion(m, &q);
    EXPECT_EQ(q.w, 0.0f);
    EXPECT_TRUE(std::isnan(q.x) && std::isnan(q.y) && std::isnan(q.z));
}

TEST(Matrices, QuarterTurnToQuaternionTakesTheSineOfTheDegrees)
{
    float m[4][4] = {{0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    Vertex4D q;
    Mat2Quaternion(m, &q);
    EXPECT_NEAR(q.w, 90.0f, 1e-4f);
    const double t = std::sqrt(2.0);
    EXPECT_NEAR(q.z, (2.0 / (2.0 * t)) / std::sin(static_cast<double>(q.w) * 0.5), 1e-4);
    EXPECT_EQ(q.x, 0.0f);
    EXPECT_EQ(q.y, 0.0f);
}

TEST(Matrices, AxisIsMadeOfTheDifferencesAcrossTheDiagonal)
{
    float m[4][4] = {{0.25f, 6, -2, 0}, {3, 0.5f, 1.5f, 0}, {0, 0.5f, 0.5f, 0}, {0, 0, 0, 1}};
    Vertex4D q;
    Mat2Quaternion(m, &q); // t is 1.5 and u 3
    EXPECT_EQ(q.w, vrkUnRad(static_cast<float>(2.0 * std::acos(0.75))));
    const double s = std::sin(q.w * 0.5);
    EXPECT_NEAR(q.x, (1.5 - 0.5) / 3.0 / s, 1e-5);
    EXPECT_NEAR(q.y, (0.0 + 2.0) / 3.0 / s, 1e-5);
    EXPECT_NEAR(q.z, (6.0 - 3.0) / 3.0 / s, 1e-5);
}
