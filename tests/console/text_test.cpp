#include "console/text.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "tests/console/germanlocale.h"
#include "tests/support/tempfolder.h"

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

TEST(ConsoleText, HexadecimalsAreLowCaseAndOf32Bits)
{
    EXPECT_EQ(hexadecimal(uint64_t{0}), "0");
    EXPECT_EQ(hexadecimal(uint64_t{0xABC}), "abc");
    EXPECT_EQ(hexadecimal(uint64_t{0x123456789ABCDEF0}), "9abcdef0");
    EXPECT_EQ(hexadecimal(reinterpret_cast<const void*>(uintptr_t{0xF00})), "f00");
}

// German numbers for the test, and the old ones afterwards.
struct GermanScope
{
    GermanScope() : before(std::setlocale(LC_ALL, nullptr)), isSet(setGermanLocale(folder.root())) {}
    GermanScope(const GermanScope&) = delete;
    GermanScope& operator=(const GermanScope&) = delete;
    ~GermanScope() { std::setlocale(LC_ALL, before.c_str()); }

    const std::string before;
    TempFolder folder;
    bool isSet;
};

TEST(ConsoleText, IsTheSameInEveryLocale)
{
    const GermanScope german;
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
