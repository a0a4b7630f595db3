#include "core/number.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "tests/support/germanlocale.h"

TEST(Number, IntegersAreReadAsTheLibraryReadsThem)
{
    for (const char* text : {"", " ", "5", "-5", "+5", "2.5", "abc", "12abc", "--5", "- 5", "\t 7", "0x10",
                             "007", "2147483647", "-2147483648"})
        EXPECT_EQ(integerFrom(text), std::atoi(text)) << text;
}

TEST(Number, IntegersThatAreTooLargeAreTheNearest)
{
    EXPECT_EQ(integerFrom("2147483648"), INT_MAX);
    EXPECT_EQ(integerFrom("-2147483649"), INT_MIN);
    EXPECT_EQ(integerFrom(std::string(250, '9')), INT_MAX);
    EXPECT_EQ(integerFrom("-" + std::string(250, '9')), INT_MIN);
}

TEST(Number, ManyDigitsWithoutAnExponentAreInfiniteOrNothing)
{
    const std::string zeros(400, '0');
    EXPECT_EQ(numberFrom("1" + zeros), INFINITY);
    EXPECT_EQ(numberFrom("-1" + zeros + ".5"), -INFINITY);
    EXPECT_EQ(numberFrom("0." + zeros + "1"), 0.0);
    EXPECT_EQ(numberFrom("." + zeros + "1"), 0.0);
    EXPECT_EQ(numberFrom(zeros + "." + zeros + "1"), 0.0);
    EXPECT_EQ(numberFrom(zeros + "2.5"), 2.5);
}

TEST(Number, WordsForNumbersCountOnlyByThemselves)
{
    for (const char* text : {"0XINF", "0xinfinity", "-0XINF", "0XNAN"})
        EXPECT_EQ(numberFrom(text), 0.0) << text; // the digit in front of them
    EXPECT_EQ(numberFrom("0XABP1"), 342.0);
    EXPECT_EQ(numberFrom("0X.8"), 0.5);
}

TEST(Number, HasADecimalPointInEveryLocale)
{
    const GermanScope german;
    if (!german.isSet)
        GTEST_SKIP() << "this system can't make locales";
    char shown[16];
    std::snprintf(shown, sizeof shown, "%.1f", 0.5);
    ASSERT_STREQ(shown, "0,5");
    EXPECT_EQ(numberFrom("2.5"), 2.5);
    EXPECT_EQ(numberFrom("2,5"), 2.0);
}
