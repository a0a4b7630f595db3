#include "apps/vornik/view/playback.h"

#include <gtest/gtest.h>

TEST(Playback, RunsThirtyFramesASecondAndStartsOver)
{
    Playback playback;
    playback.begin(60);
    EXPECT_EQ(playback.frame(), 0);
    playback.advance(1.0001);
    EXPECT_EQ(playback.frame(), 30);
    playback.advance(1.5);
    EXPECT_EQ(playback.frame(), 15);
}

TEST(Playback, IsTheSameForManyShortPictures)
{
    Playback playback;
    playback.begin(1000);
    for (int i = 0; i < 1000; ++i)
        playback.advance(0.01);
    EXPECT_NEAR(playback.frame(), 300, 1);
}

TEST(Playback, PauseHoldsTheFrame)
{
    Playback playback;
    playback.begin(60);
    playback.advance(0.5001);
    playback.togglePlaying();
    EXPECT_FALSE(playback.isPlaying());
    playback.advance(5.0);
    EXPECT_EQ(playback.frame(), 15);
    playback.togglePlaying();
    playback.advance(0.5);
    EXPECT_EQ(playback.frame(), 30);
}

TEST(Playback, StepsPauseAndWrapBothWays)
{
    Playback playback;
    playback.begin(10);
    playback.step(-1);
    EXPECT_FALSE(playback.isPlaying());
    EXPECT_EQ(playback.frame(), 9);
    playback.step(2);
    EXPECT_EQ(playback.frame(), 1);
    playback.rewind();
    EXPECT_EQ(playback.frame(), 0);
    playback.goTo(23);
    EXPECT_EQ(playback.frame(), 3);
    playback.goTo(-2);
    EXPECT_EQ(playback.frame(), 8);
}

TEST(Playback, PaceHasLimits)
{
    Playback playback;
    playback.begin(600);
    playback.faster();
    playback.advance(1.0001);
    EXPECT_EQ(playback.frame(), 60);
    for (int i = 0; i < 20; ++i)
        playback.faster();
    EXPECT_EQ(playback.pace(), 16.0);
    for (int i = 0; i < 20; ++i)
        playback.slower();
    EXPECT_EQ(playback.pace(), 1.0 / 16.0);
}

TEST(Playback, StandsStillWithoutFramesWhileTexturesGoOn)
{
    Playback playback;
    playback.begin(0);
    playback.advance(2.0001);
    EXPECT_EQ(playback.frame(), 0);
    EXPECT_EQ(playback.textureFrame(), 60);
    playback.begin(-5);
    EXPECT_EQ(playback.frame(), 0);
}

TEST(Playback, LastsForDays)
{
    Playback playback;
    playback.begin(65535);
    for (int i = 0; i < 1000; ++i)
        playback.advance(1e6);
    EXPECT_GE(playback.frame(), 0);
    EXPECT_LT(playback.frame(), 65535);
}
