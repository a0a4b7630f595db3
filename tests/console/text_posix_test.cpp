// Numbers as text, beside the C library. That of Windows has no sign of NaN.

#include "console/text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>

TEST(ConsoleText, DecimalsArePrintedAsTheLibraryPrintsThem)
{
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i)
    {
        const uint32_t bits = static_cast<uint32_t>(random());
        float value;
        static_assert(sizeof value == sizeof bits);
        __builtin_memcpy(&value, &bits, sizeof value);
        char expected[128];
        std::snprintf(expected, sizeof expected, "%f", static_cast<double>(value));
        EXPECT_EQ(decimal(value), expected);
    }
    EXPECT_EQ(decimal(-1.0f), "-1.000000");
    EXPECT_EQ(decimal(0.0f), "0.000000");
    EXPECT_EQ(decimal(INFINITY), "inf");
}
