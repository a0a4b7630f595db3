// What the shared library defines changes on purpose only. On Windows some types are others.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

static std::string exports(const std::string& arguments)
{
    std::FILE* pipe = popen(("python3 '" VORNIK_EXPORTS_SCRIPT "' " + arguments).c_str(), "r");
    std::string output;
    char line[1024];
    while (pipe && std::fgets(line, sizeof line, pipe))
        output += line;
    EXPECT_TRUE(pipe && pclose(pipe) == 0);
    return output;
}

TEST(Exports, KeepNamesAndParameters)
{
    std::ifstream file(VORNIK_EXPORTED);
    const std::string kept((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    ASSERT_NE(kept.find("vrkClear()\n"), std::string::npos);
    EXPECT_EQ(exports("--list '" VORNIK_LIBRARY "'"), kept)
        << "If hosts are to see this change, run make exports and tell of it in CHANGELOG.md.";
}
