#include "console/text.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "tests/support/tempfolder.h"

TEST(ConsoleText, NumbersAreReadAsTheLibraryReadsThem)
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

TEST(ConsoleText, IntegersAreReadAsTheLibraryReadsThem)
{
    for (const char* text : {"", " ", "5", "-5", "+5", "2.5", "abc", "12abc", "--5", "- 5", "\t 7", "0x10",
                             "007", "2147483647", "-2147483648"})
        EXPECT_EQ(integerFrom(text), std::atoi(text)) << text;
}

TEST(ConsoleText, IntegersThatAreTooLargeAreTheNearest)
{
    EXPECT_EQ(integerFrom("2147483648"), INT_MAX);
    EXPECT_EQ(integerFrom("-2147483649"), INT_MIN);
    EXPECT_EQ(integerFrom(std::string(250, '9')), INT_MAX);
    EXPECT_EQ(integerFrom("-" + std::string(250, '9')), INT_MIN);
}

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

TEST(ConsoleText, HexadecimalsAreLowCaseAndOf32Bits)
{
    EXPECT_EQ(hexadecimal(uint64_t{0}), "0");
    EXPECT_EQ(hexadecimal(uint64_t{0xABC}), "abc");
    EXPECT_EQ(hexadecimal(uint64_t{0x123456789ABCDEF0}), "9abcdef0");
    EXPECT_EQ(hexadecimal(reinterpret_cast<const void*>(uintptr_t{0xF00})), "f00");
}

// A locale made for the test, and the old one afterwards.
struct LocaleScope
{
    explicit LocaleScope(const std::string& name) : before(std::setlocale(LC_ALL, nullptr))
    {
        std::system(
            ("localedef -i " + name + " -f UTF-8 " + folder.path(name) + " > /dev/null 2>&1").c_str());
        setenv("LOCPATH", folder.root().c_str(), 1);
        isSet = std::setlocale(LC_ALL, name.c_str()) != nullptr;
    }
    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;
    ~LocaleScope()
    {
        std::setlocale(LC_ALL, before.c_str());
        unsetenv("LOCPATH");
    }
    const std::string before;
    TempFolder folder;
    bool isSet;
};

TEST(ConsoleText, IsTheSameInEveryLocale)
{
    const LocaleScope german("de_DE");
    if (!german.isSet)
        GTEST_SKIP() << "this system can't make locales";
    char shown[16];
    std::snprintf(shown, sizeof shown, "%.1f", 0.5);
    ASSERT_STREQ(shown, "0,5");
    EXPECT_EQ(numberFrom("2.5"), 2.5);
    EXPECT_EQ(numberFrom("2,5"), 2.0);
    EXPECT_EQ(decimal(2.5f), "2.500000");
}

TEST(ConsoleText, LettersAreRaisedOneByOne)
{
    EXPECT_EQ(upperCase("load3ds a\\b.3ds \xE4z{`"), "LOAD3DS A\\B.3DS \xE4Z{`");
    EXPECT_EQ(upperCase(""), "");
}
