// Numbers in text, beside the C library. That of Windows reads fewer forms.

#include "core/number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

TEST(Number, NumbersAreReadAsTheLibraryReadsThem)
{
    for (const char* text : {"",
                             " ",
                             "5",
                             "-5",
                             "+5",
                             "2.5",
                             "-.5",
                             "5.",
                             ".",
                             "1E3",
                             "1e-3",
                             "1E",
                             "1E+",
                             "abc",
                             "12abc",
                             "--5",
                             "+-5",
                             "- 5",
                             "\t 7",
                             "0x10",
                             "0X",
                             "0XG",
                             "-0XG",
                             "-0XINF",
                             "-0x1.8p2",
                             "1,5",
                             "1.5.5",
                             "INF",
                             "-inf",
                             "0x-5",
                             "1E400",
                             "-1E400",
                             "1E-400",
                             "-1E-400",
                             "0",
                             "-0",
                             "00012",
                             "INFINITY",
                             "1E999999999999",
                             "1E-999999999999",
                             "0x1p-99999",
                             "0xEp99999",
                             "0X1EP-99999"})
    {
        const double expected = std::atof(text);
        const double value = numberFrom(text);
        EXPECT_EQ(value, expected) << text;
        EXPECT_EQ(std::signbit(value), std::signbit(expected)) << text;
    }
    EXPECT_TRUE(std::isnan(numberFrom("NAN")));
}
