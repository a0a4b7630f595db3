#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include "vornik/animation/path.h"

// The tangents step by step, as they are defined.
static void plainCalcTans(VRKPath* path)
{
    const int n = path->keyCount;
    for (int pass = 0; pass < 2; ++pass)
        for (int k = 0; k < n; ++k)
        {
            const Key& prev = path->keys[k == 0 ? n - 1 : k - 1];
            Key& key = path->keys[k];
            const Key& next = path->keys[k == n - 1 ? 0 : k + 1];
            const float T = key.tension, C = key.continuity, B = key.bias;
            const float a = 0.5f * (1 + B) * (1 - T) * (1 - C);
            const float b = (1 - T) * (1 + C) * (1 - B);
            const float c = 0.5f * (1 + B) * (1 - T) * (1 + C);
            const float d = (1 - T) * (1 - C) * (1 - B);
            const float f1 = static_cast<float>(2 * key.frame / (prev.frame + key.frame));
            const float s = prev.frame + next.frame == 0 ? 1.0f : static_cast<float>(prev.frame + next.frame);
            const float f2 = 2.0f * static_cast<float>(prev.frame) / s;
            for (int j = 0; j < 3; ++j)
            {
                const float* p = pass == 0 ? prev.rotation : prev.position;
                const float* v = pass == 0 ? key.rotation : key.position;
                const float* q = pass == 0 ? next.rotation : next.position;
                key.tangentIn[j] = (v[j] - p[j]) * a + (q[j] - v[j]) * b;
                key.tangentOut[j] = (v[j] - p[j]) * c + (q[j] - v[j]) * d;
            }
            if (pass == 0)
            {
                key.tangentIn[3] = (next.rotation[3] - key.rotation[3]) * b + key.rotation[3] * a;
                key.tangentOut[3] = (next.rotation[3] - key.rotation[3]) * d + key.rotation[3] * c;
            }
            for (int j = 0; n > 1 && j < 4; ++j)
                key.tangentIn[j] = key.tangentIn[j] * f1 * f2;
        }
}

static VRKPath* randomTrack(std::mt19937& random, int keys, int kind)
{
    const auto value = [&] { return static_cast<float>(random() % 2001) / 100.0f - 10.0f; };
    VRKPath* path = new VRKPath(keys, 5, kind, nullptr);
    int frame = 0;
    for (int k = 0; k < keys; ++k, frame += 1 + static_cast<int>(random() % 20))
        if (kind == VRK_TRACK_POSITION)
            path->set(k, value(), value(), value(), frame);
        else
            path->set(k, value(), value(), value(), value(), frame);
    return path;
}

TEST(Spline, TangentsHaveTheBitsOfThePlainOnes)
{
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round)
    {
        const int keys = 1 + static_cast<int>(random() % 8);
        const int kind = static_cast<int>(random() % 2);
        std::mt19937 same = random;
        const std::unique_ptr<VRKPath> fast(randomTrack(random, keys, kind)),
            plain(randomTrack(same, keys, kind));
        fast->calcTans();
        plainCalcTans(plain.get());
        for (int k = 0; k <= keys; ++k)
            for (int j = 0; j < 4; ++j)
            {
                EXPECT_EQ(fast->keys[k].tangentIn[j], plain->keys[k].tangentIn[j]);
                EXPECT_EQ(fast->keys[k].tangentOut[j], plain->keys[k].tangentOut[j]);
            }
    }
}

TEST(Spline, WeightsOfSetKeys)
{
    VRKPath path(2, 5, 0, nullptr);
    path.set(0, 0, 0, 0, 10);
    path.set(1, 0, 0, 8, 10);
    path.keys[2].position[0] = 108; // so that each step is seen by itself
    path.calcTans();
    // 2 * 10 / 20 is 1 in whole numbers; 2 * 10 / (10 + 65535) in others.
    EXPECT_FLOAT_EQ(path.keys[1].tangentIn[0], (8 * 0.0375f + 100 * 0.075f) * (20.0f / 65545.0f));
    EXPECT_FLOAT_EQ(path.keys[1].tangentOut[0], 8 * 0.1125f + 100 * 0.025f);
}

TEST(Spline, RotationTracksKeepTheTangentOfTheAngleOnly)
{
    VRKPath path(2, 5, 1, nullptr);
    path.set(0, 0, 0, 1, 10, 5);
    path.set(1, 0, 1, 0, 20, 9);
    path.calcTans();
    for (int k = 0; k < 3; ++k)
        for (int j = 0; j < 3; ++j)
        {
            EXPECT_EQ(path.keys[k].tangentIn[j], 0.0f);
            EXPECT_EQ(path.keys[k].tangentOut[j], 0.0f);
        }
    EXPECT_FLOAT_EQ(path.keys[0].tangentOut[3], 10 * 0.025f + 10 * 0.1125f);
}

TEST(Spline, NeighboursAtFrameZeroDoNotDivide)
{
    VRKPath path(3, 5, 0, nullptr);
    for (int k = 0; k < 4; ++k)
        path.keys[k].position[0] = static_cast<float>(k);
    path.calcTans();
    for (int k = 0; k < 4; ++k)
        EXPECT_TRUE(std::isfinite(path.keys[k].tangentIn[0]));
}

TEST(Spline, KeysAreMetAtTheirFrames)
{
    std::mt19937 random(6);
    const std::unique_ptr<VRKPath> path(randomTrack(random, 6, 0));
    path->calcTans();
    for (int k = 0; k < 6; ++k)
    {
        const Key key = path->interpolateKey(static_cast<float>(path->keys[k].frame));
        for (int j = 0; j < 3; ++j)
            EXPECT_EQ(key.position[j], path->keys[k].position[j]);
    }
}

TEST(Spline, HermiteBetweenTwoKeys)
{
    VRKPath path(2, 5, 0, nullptr);
    path.set(0, 0, 0, 0, 0);
    path.set(1, 0, 0, 10, 4);
    path.keys[0].tangentOut[0] = 3;
    path.keys[1].tangentIn[0] = 5;
    path.keys[0].rotation[3] = 0;
    path.keys[1].rotation[3] = 90;
    path.keys[1].tangentIn[3] = 7;
    const Key key = path.interpolateKey(1.0f); // a quarter of the way
    const float h1 = 2 / 64.0f - 3 / 16.0f + 1, h2 = 3 / 16.0f - 2 / 64.0f;
    const float h3 = 1 / 64.0f - 2 / 16.0f + 0.25f, h4 = 1 / 64.0f - 1 / 16.0f;
    EXPECT_EQ(key.position[0], h1 * 0 + h2 * 10 + h4 * 5 + h3 * 3);
    EXPECT_EQ(key.rotation[0], h4 * 5 + h3 * 3); // axes share the tangents
    EXPECT_EQ(key.rotation[3], h2 * 90 + h4 * 7);
    EXPECT_EQ(key.frame, 0);
    EXPECT_EQ(key.tension, 0.0f);
}

// Of whole frames and spans there are hundreds of which a power function of floats misses the nearest one.
TEST(Spline, PowersAreRoundedOnce)
{
    VRKPath path(2, 5, 0, nullptr);
    for (int span = 1; span <= 200; ++span)
        for (int frame = 0; frame <= span; ++frame)
        {
            path.set(0, 0, 0, 0, 0);
            path.set(1, 0, 0, 0, span);
            path.keys[0].tangentOut[0] = 1;
            const double t = static_cast<float>(frame) / static_cast<float>(span);
            const float t1 = static_cast<float>(t);
            const float t2 = static_cast<float>(t * t);
            const float t3 = static_cast<float>(t * t * t);
            const float expected = frame == span ? 0.0f : t3 - 2 * t2 + t1;
            ASSERT_EQ(path.interpolateKey(static_cast<float>(frame)).position[0], expected)
                << frame << " of " << span;
        }
}

TEST(Spline, FramesInFrontOfTheFirstKeyExtrapolate)
{
    VRKPath path(2, 5, 0, nullptr);
    path.set(0, 0, 0, 0, 10);
    path.set(1, 0, 0, 8, 20);
    const float t = -0.5f;
    EXPECT_EQ(path.interpolateKey(5).position[0], (3 * t * t - 2 * t * t * t) * 8);
}

TEST(Spline, OfKeysOutOfOrderTheLastThatQualifiesWins)
{
    VRKPath path(3, 5, 0, nullptr);
    path.set(0, 0, 0, 1, 0);
    path.set(1, 0, 0, 2, 30);
    path.set(2, 0, 0, 3, 10);
    EXPECT_EQ(path.interpolateKey(10).position[0], 3.0f);
}

TEST(Spline, NothingIsReadBehindTheLastKey)
{
    VRKPath path(1, 5, 0, nullptr);
    path.set(0, 0, 0, 6, 3);
    EXPECT_EQ(path.interpolateKey(65535).position[0], 6.0f);
    EXPECT_EQ(path.interpolateKey(100000).position[0], 6.0f);
    VRKPath empty(0, 5, 0, nullptr);
    EXPECT_EQ(empty.interpolateKey(7).position[0], 0.0f);
}
