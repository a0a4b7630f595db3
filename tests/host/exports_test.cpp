// What the headers declare is in the shared library, and nothing else is.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

TEST(Exports, AreWhatTheHeadersDeclare)
{
    std::FILE* pipe = popen("python3 '" VORNIK_EXPORTS "' '" VORNIK_LIBRARY "' '" VORNIK_HEADERS "'", "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    char line[1024];
    while (std::fgets(line, sizeof line, pipe))
        output += line;
    ASSERT_EQ(pclose(pipe), 0);
    EXPECT_GT(std::atoi(output.c_str()), 250) << output; // begins with a word where a name is astray
    EXPECT_EQ(output.find("missing"), std::string::npos) << output;
    EXPECT_EQ(output.find("no header"), std::string::npos) << output;
}
