// What the headers declare is in the shared library, nothing else is, and it changes on purpose only.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

static std::string exports(const std::string& arguments)
{
    std::FILE* pipe = popen(("python3 '" VORNIK_EXPORTS "' " + arguments).c_str(), "r");
    std::string output;
    char line[1024];
    while (pipe && std::fgets(line, sizeof line, pipe))
        output += line;
    EXPECT_TRUE(pipe && pclose(pipe) == 0);
    return output;
}

TEST(Exports, AreWhatTheHeadersDeclare)
{
    const std::string output = exports("'" VORNIK_LIBRARY "' '" VORNIK_HEADERS "'");
    EXPECT_GT(std::atoi(output.c_str()), 250) << output; // begins with a word where a name is astray
    EXPECT_EQ(output.find("missing"), std::string::npos) << output;
    EXPECT_EQ(output.find("no header"), std::string::npos) << output;
}

TEST(Exports, KeepNamesAndParameters)
{
    std::ifstream file(VORNIK_EXPORTED);
    const std::string kept((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    ASSERT_NE(kept.find("vrkClear()\n"), std::string::npos);
    EXPECT_EQ(exports("--list '" VORNIK_LIBRARY "'"), kept)
        << "If hosts are to see this change, run make exports and tell of it in CHANGELOG.md.";
}
