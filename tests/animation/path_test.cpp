#include "vornik/animation/path.h"

#include <gtest/gtest.h>

static void expectPosition(const Key& key, float x, float y, float z)
{
    EXPECT_EQ(key.position[0], x);
    EXPECT_EQ(key.position[1], y);
    EXPECT_EQ(key.position[2], z);
}

TEST(VRKPath, HasAClosingKeyMore)
{
    const VRKPath path(3, VRK_NODE_CAMERA, VRK_TRACK_ROTATION, nullptr);
    EXPECT_EQ(path.keyCount, 4);
    EXPECT_EQ(path.nodeType, 7);
    EXPECT_EQ(path.kind, 1);
    EXPECT_EQ(path.object, nullptr);
    for (int k = 0; k < 4; ++k)
    {
        EXPECT_EQ(path.keys[k].frame, 0);
        EXPECT_EQ(path.keys[k].tension, 0.0f);
        expectPosition(path.keys[k], 0, 0, 0);
    }
}

TEST(VRKPath, WithoutKeys)
{
    VRKPath path(VRK_NODE_OBJECT, VRK_TRACK_POSITION, nullptr);
    EXPECT_EQ(path.keys, nullptr);
    EXPECT_EQ(path.keyCount, 0);
    path.set(0, 1, 2, 3, 4); // there is none to set
    path.calcTans();
    EXPECT_EQ(path.interpolateKey(5).position[0], 0.0f);
    path.initKeys(2);
    EXPECT_EQ(path.keyCount, 3);
    path.set(0, 1, 2, 3, 4);
    path.initKeys(-5);
    EXPECT_EQ(path.keyCount, 1);
    EXPECT_EQ(path.keys[0].frame, 0);
}

TEST(VRKPath, PositionArgumentsStandInReverse)
{
    VRKPath path(3, 5, 0, nullptr);
    path.set(1, 10, 20, 30, 7);
    expectPosition(path.keys[1], 30, 20, 10);
    EXPECT_EQ(path.keys[1].frame, 7);
    EXPECT_EQ(path.keys[1].tension, 0.9f);
    EXPECT_EQ(path.keys[1].continuity, 0.5f);
    EXPECT_EQ(path.keys[1].bias, 0.5f);
    EXPECT_EQ(path.keys[1].rotation[3], 0.0f);
}

TEST(VRKPath, KeyBehindTheOneSetCloses)
{
    VRKPath path(3, 5, 0, nullptr);
    path.set(2, 10, 20, 30, 7);
    expectPosition(path.keys[3], 30, 20, 10);
    EXPECT_EQ(path.keys[3].frame, 65535);
    EXPECT_EQ(path.keys[3].tension, 0.5f);
    EXPECT_EQ(path.keys[3].continuity, 0.5f);
    EXPECT_EQ(path.keys[3].bias, 0.5f);
    path.set(0, 1, 2, 3, 0);
    EXPECT_EQ(path.keys[1].frame, 65535); // until it is set itself
    path.set(1, 4, 5, 6, 3);
    EXPECT_EQ(path.keys[1].frame, 3);
    EXPECT_EQ(path.keys[2].frame, 65535);
}

TEST(VRKPath, RotationArgumentsStandInReverseButTheAngle)
{
    VRKPath path(1, 5, 1, nullptr);
    path.set(0, 1, 2, 3, 90, 12);
    for (int k = 0; k < 2; ++k)
    {
        EXPECT_EQ(path.keys[k].rotation[0], 3.0f);
        EXPECT_EQ(path.keys[k].rotation[1], 2.0f);
        EXPECT_EQ(path.keys[k].rotation[2], 1.0f);
        EXPECT_EQ(path.keys[k].rotation[3], 90.0f);
        expectPosition(path.keys[k], 0, 0, 0);
    }
    EXPECT_EQ(path.keys[0].frame, 12);
    EXPECT_EQ(path.keys[1].frame, 65535);
}

TEST(VRKPath, ScalarKey)
{
    VRKPath path(1, 7, 2, nullptr);
    path.set(0, 1, 2, 3, 0);
    path.set(0, 42.0f, 5);
    EXPECT_EQ(path.keys[0].value, 42.0f);
    EXPECT_EQ(path.keys[1].value, 42.0f);
    expectPosition(path.keys[0], 3, 2, 1); // other values stay
}

TEST(VRKPath, IndicesOutsideAreIgnored)
{
    VRKPath path(2, 5, 0, nullptr);
    path.set(-1, 1, 2, 3, 4);
    path.set(3, 1, 2, 3, 4);
    for (int k = 0; k < 3; ++k)
        expectPosition(path.keys[k], 0, 0, 0);
    path.set(2, 1, 2, 3, 4); // the last record has none behind it
    expectPosition(path.keys[2], 3, 2, 1);
}

TEST(VRKPath, AssignmentSharesTheKeys)
{
    VRKPath a(2, 5, 1, nullptr);
    VRKPath b(6, 0, nullptr);
    b = a;
    EXPECT_EQ(b.keys, a.keys);
    EXPECT_EQ(b.keyCount, 3);
    EXPECT_EQ(b.nodeType, 5);
    b.keys = nullptr;
}
