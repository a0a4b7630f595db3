// What the headers declare is in the shared library, and nothing else is.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

TEST(Exports, AreWhatTheHeadersDeclare)
{
    std::ifstream file(VORNIK_EXPORTS);
    std::string output;
    std::getline(file, output, '\0');
    EXPECT_GT(std::atoi(output.c_str()), 250) << output; // begins with a word where a name is astray
    EXPECT_EQ(output.find("missing"), std::string::npos) << output;
    EXPECT_EQ(output.find("no header"), std::string::npos) << output;
}
