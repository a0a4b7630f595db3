#include "apps/vornik/view/pace.h"

#include <gtest/gtest.h>

// Seconds that pass for some pictures, each of which takes a time of its own.
static double secondsFor(int pictures, double each, int refreshRate)
{
    Pace pace;
    double now = 100.0;
    pace.begin(now);
    for (int i = 0; i < pictures; ++i)
    {
        now += each;
        const double wait = pace.next(now, refreshRate);
        if (wait > 0.0)
            now += wait;
    }
    return now - 100.0;
}

TEST(Pace, IsATenthFasterThanTheDisplay)
{
    EXPECT_NEAR(secondsFor(660, 0.001, 60), 10.0, 0.02);
    EXPECT_NEAR(secondsFor(660, 0.012, 60), 10.0, 0.02); // whatever a picture takes
    EXPECT_NEAR(secondsFor(1320, 0.001, 120), 10.0, 0.02);
}

TEST(Pace, IsAtLeastThatOfSixtyHertz)
{
    EXPECT_NEAR(secondsFor(660, 0.001, 0), 10.0, 0.02);
    EXPECT_NEAR(secondsFor(660, 0.001, 24), 10.0, 0.02);
}

TEST(Pace, NeverWaitsWherePicturesTakeLonger)
{
    EXPECT_NEAR(secondsFor(100, 0.05, 60), 5.0, 1e-9);
}

TEST(Pace, AfterAPauseNoBurstFollows)
{
    Pace pace;
    pace.begin(0.0);
    EXPECT_LE(pace.next(5.0, 60), 0.0); // a load took five seconds
    double now = 5.0;
    for (int i = 0; i < 66; ++i)
    {
        now += 0.001;
        const double wait = pace.next(now, 60);
        now += wait > 0.0 ? wait : 0.0;
    }
    EXPECT_NEAR(now, 6.0, 0.04);
}
