#include "vornik/core/string.h"

#include <cmath>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/germanlocale.h"

static std::string text(const String& s)
{
    return std::string(s.data, static_cast<size_t>(s.length()));
}

TEST(String, ConstructorsSetSizeAndClear)
{
    EXPECT_EQ(String().size, 256);
    EXPECT_EQ(String().length(), 0);
    EXPECT_EQ(String(7).size, 7);
    EXPECT_EQ(String(0).length(), 0);
    const String abc("abc");
    EXPECT_EQ(abc.size, 3);
    EXPECT_EQ(abc.data[3], 0);
}

TEST(String, SizesAreLimitedToTheRecord)
{
    EXPECT_EQ(String(5000).size, 1024);
    EXPECT_EQ(String(-3).size, 0);
    const String longText(std::string(3000, 'x').c_str());
    EXPECT_EQ(longText.length(), 1024);
    EXPECT_EQ((longText + longText).length(), 1024);
    EXPECT_EQ((longText + 'y').length(), 1024);
    String broken("abc");
    broken.size = 100000;
    EXPECT_EQ(broken.length(), 3);
    broken.size = -1;
    EXPECT_EQ(broken.length(), 0);
}

TEST(String, TextEndsAtTheFirstZeroByteOrAtSize)
{
    String s("hello");
    EXPECT_EQ(s.length(), 5);
    s.data[2] = 0;
    EXPECT_EQ(s.length(), 2);
    String cut("hello");
    cut.size = 4;
    EXPECT_EQ(text(cut), "hell");
}

TEST(String, ClearKeepsTheSize)
{
    String s("hello");
    s.clear();
    EXPECT_EQ(s.size, 5);
    EXPECT_EQ(s.length(), 0);
}

TEST(String, CharAtIsSignedAndZeroOutside)
{
    const String s("a\xE4");
    EXPECT_EQ(s.charAt(0), 'a');
    EXPECT_EQ(s.charAt(1), static_cast<signed char>(0xE4));
    EXPECT_LT(s.charAt(1), 0);
    EXPECT_EQ(s.charAt(2), 0);
    EXPECT_EQ(s.charAt(-1), 0);
}

TEST(String, IndexOf)
{
    const String s("abcabc");
    EXPECT_EQ(s.indexOf('b'), 1);
    EXPECT_EQ(s.indexOf('b', 2), 4);
    EXPECT_EQ(s.indexOf('b', -5), 1);
    EXPECT_EQ(s.indexOf('b', 99), -1);
    EXPECT_EQ(s.indexOf('z'), -1);
    EXPECT_EQ(s.indexOf('\0'), -1);
}

TEST(String, IndexOfNumbers)
{
    const String s("ab12c3");
    EXPECT_EQ(s.indexOfNumber(), 2);
    EXPECT_EQ(s.indexOfNumber(4), 5);
    EXPECT_EQ(s.indexOfNotNumber(), 0);
    EXPECT_EQ(s.indexOfNotNumber(2), 4);
    EXPECT_EQ(String("abc").indexOfNumber(), -1);
    EXPECT_EQ(String("123").indexOfNotNumber(), -1);
}

TEST(String, CompareTo)
{
    EXPECT_EQ(String("abc").compareTo("abd"), -1);
    EXPECT_EQ(String("abd").compareTo("abc"), 1);
    EXPECT_EQ(String("abcd").compareTo("ab"), 2);
    EXPECT_EQ(String("ab").compareTo("abcd"), -2);
    EXPECT_EQ(String("ab").compareTo("ab"), 0);
    EXPECT_EQ(String("").compareTo(""), -1);
    EXPECT_EQ(String("ab").compareTo(String("ab")), 0);
    EXPECT_EQ(String("\xE4").compareTo("a"), -1); // signed characters
}

TEST(String, SubString)
{
    const String s("abc");
    EXPECT_EQ(text(s.subString(1, 99)), "bc");
    EXPECT_EQ(text(s.subString(2, 1)), "");
    EXPECT_EQ(text(s.subString(-1, 2)), "");
    EXPECT_EQ(text(s.subString(0, -1)), "");
    EXPECT_EQ(text(s.subString(1, 1)), "");
    EXPECT_EQ(s.subString(1, 2).size, 3);
    EXPECT_EQ(s.subString(2, 1).size, 1);
}

TEST(String, SubStringStaysWithinTheSize)
{
    String s("abcdef");
    s.size = 3;
    EXPECT_EQ(text(s.subString(1, 99)), "bc");
    EXPECT_EQ(text(s.subString(99, 99)), "");
}

TEST(String, TrimDropsLeadingBlanksOnly)
{
    EXPECT_EQ(text(String("  x ").trim()), "x ");
    EXPECT_EQ(text(String("\tx").trim()), "\tx");
    EXPECT_EQ(text(String("   ").trim()), "   ");
    EXPECT_EQ(text(String("").trim()), "");
}

TEST(String, FindNumber)
{
    EXPECT_EQ(String("level 3").findNumber(), 3.0f);
    EXPECT_EQ(String("x-2.5y").findNumber(), -2.5f);
    EXPECT_EQ(String("none").findNumber(), 0.0f);
    EXPECT_EQ(String("7.").findNumber(), 7.0f);
    EXPECT_EQ(String("12.5 ").findNumber(), 12.5f);
    EXPECT_EQ(String("12.5").findNumber(), 12.0f);
    EXPECT_EQ(String("-4 ").findNumber(), -4.0f);
    EXPECT_EQ(String("4e2 ").findNumber(), 4.0f);
}

TEST(String, NumberHasADecimalPointInEveryLocale)
{
    const GermanScope german;
    if (!german.isSet)
        GTEST_SKIP() << "this system can't make locales";
    EXPECT_EQ(String("a-12.5 ").findNumber(), -12.5f);
    EXPECT_EQ(String("a-12,5 ").findNumber(), -12.0f);
}

TEST(String, NumberOfManyDigitsIsInfinite)
{
    EXPECT_EQ(String(std::string(1000, '9').c_str()).findNumber(), INFINITY);
    EXPECT_EQ(String(("0." + std::string(900, '0') + "1 ").c_str()).findNumber(), 0.0f);
}

TEST(String, Concatenation)
{
    const String sum = String("ab") + String("cd");
    EXPECT_EQ(text(sum), "abcd");
    EXPECT_EQ(sum.size, 5);
    const String one = String("ab") + 'c';
    EXPECT_EQ(text(one), "abc");
    EXPECT_EQ(one.size, 3);
    EXPECT_EQ((String("ab") + '\0').length(), 2);
}

TEST(String, ConvertsToItsData)
{
    String s("abc");
    char* converted = s;
    EXPECT_EQ(converted, s.data);
    EXPECT_EQ(s.toChar(), s.data);
}
