#include "console/text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>

#include "tests/support/germanlocale.h"

TEST(ConsoleText, HexadecimalsAreLowCaseAndOf32Bits)
{
    EXPECT_EQ(hexadecimal(uint64_t{0}), "0");
    EXPECT_EQ(hexadecimal(uint64_t{0xABC}), "abc");
    EXPECT_EQ(hexadecimal(uint64_t{0x123456789ABCDEF0}), "9abcdef0");
    EXPECT_EQ(hexadecimal(reinterpret_cast<const void*>(uintptr_t{0xF00})), "f00");
}

TEST(ConsoleText, IsTheSameInEveryLocale)
{
    const GermanScope german;
    if (!german.isSet)
        GTEST_SKIP() << "this system can't make locales";
    char shown[16];
    std::snprintf(shown, sizeof shown, "%.1f", 0.5);
    ASSERT_STREQ(shown, "0,5");
    EXPECT_EQ(decimal(2.5f), "2.500000");
}

TEST(ConsoleText, LettersAreRaisedOneByOne)
{
    EXPECT_EQ(upperCase("load3ds a\\b.3ds \xE4z{`"), "LOAD3DS A\\B.3DS \xE4Z{`");
    EXPECT_EQ(upperCase(""), "");
}
