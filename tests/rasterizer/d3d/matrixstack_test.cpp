#include "rasterizer/d3d/matrixstack.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

using Floats = std::vector<float>;

static Floats top(const D3DMatrixStack& stack)
{
    return Floats(std::begin(stack.top()), std::end(stack.top()));
}

static const Floats identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

TEST(D3DMatrixStack, BeginsWithTheIdentity)
{
    EXPECT_EQ(top(D3DMatrixStack()), identity);
}

TEST(D3DMatrixStack, PushDoublesAndPopReturns)
{
    D3DMatrixStack stack;
    stack.translateLocal(1, 2, 3);
    const Floats before = top(stack);
    stack.push();
    EXPECT_EQ(top(stack), before);
    stack.scaleLocal(2, 2, 2);
    EXPECT_NE(top(stack), before);
    stack.pop();
    EXPECT_EQ(top(stack), before);
}

TEST(D3DMatrixStack, LastMatrixStays)
{
    D3DMatrixStack stack;
    stack.translateLocal(1, 2, 3);
    const Floats before = top(stack);
    for (int i = 0; i < 3; ++i)
        stack.pop();
    EXPECT_EQ(top(stack), before);
}

TEST(D3DMatrixStack, IsAsDeepAsItIsAskedToBe)
{
    D3DMatrixStack stack;
    for (int i = 0; i < 1000; ++i)
    {
        stack.push();
        stack.translateLocal(1, 0, 0);
    }
    EXPECT_EQ(stack.top()[12], 1000.0f);
    for (int i = 0; i < 1000; ++i)
        stack.pop();
    EXPECT_EQ(top(stack), identity);
}

TEST(D3DMatrixStack, NewestTransformActsFirst)
{
    D3DMatrixStack stack;
    stack.translateLocal(10, 20, 30);
    stack.scaleLocal(2, 3, 4);
    EXPECT_EQ(top(stack), (Floats{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 10, 20, 30, 1}));

    stack.loadIdentity();
    stack.scaleLocal(2, 3, 4);
    stack.translateLocal(10, 20, 30);
    EXPECT_EQ(top(stack), (Floats{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 20, 60, 120, 1}));
}

TEST(D3DMatrixStack, LoadIdentityKeepsTheOthers)
{
    D3DMatrixStack stack;
    stack.translateLocal(1, 2, 3);
    stack.push();
    stack.loadIdentity();
    EXPECT_EQ(top(stack), identity);
    stack.pop();
    EXPECT_EQ(stack.top()[14], 3.0f);
}

static Floats turned(float radians, float x, float y, float z)
{
    D3DMatrixStack stack;
    stack.rotateLocal(radians, x, y, z);
    return top(stack);
}

TEST(D3DMatrixStack, TurnsCounterClockwiseSeenAgainstTheAxis)
{
    const float quarter = std::acos(0.0f);
    const Floats aboutZ = turned(quarter, 0, 0, 1);
    // The x axis, first row, becomes the y axis.
    EXPECT_NEAR(aboutZ[0], 0.0f, 1e-6f);
    EXPECT_NEAR(aboutZ[1], 1.0f, 1e-6f);
    const Floats aboutX = turned(quarter, 1, 0, 0);
    EXPECT_NEAR(aboutX[6], 1.0f, 1e-6f); // y becomes z
    const Floats aboutY = turned(quarter, 0, 1, 0);
    EXPECT_NEAR(aboutY[8], 1.0f, 1e-6f); // z becomes x
}

TEST(D3DMatrixStack, LengthOfTheAxisDoesNotMatter)
{
    EXPECT_EQ(turned(0.7f, 0, 0, 8), turned(0.7f, 0, 0, 1));
    EXPECT_EQ(turned(0.7f, 0, 0, 0), identity);
    EXPECT_EQ(turned(0.7f, NAN, 0, 0), identity);
}

TEST(D3DMatrixStack, MultipliesOnTheLocalSide)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<float> value(-2, 2);
    float a[16], b[16];
    for (int i = 0; i < 16; ++i)
    {
        a[i] = value(random);
        b[i] = value(random);
    }
    D3DMatrixStack stack;
    stack.multiplyLocal(a);
    EXPECT_EQ(top(stack), Floats(std::begin(a), std::end(a)));
    stack.multiplyLocal(b);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
        {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k)
                sum += double(b[row * 4 + k]) * double(a[k * 4 + column]);
            EXPECT_NEAR(stack.top()[row * 4 + column], sum, 1e-5) << row << ' ' << column;
        }
}
