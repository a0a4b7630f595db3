// Names and kinds of files that Windows doesn't have.

#include <string>

#include <sys/stat.h>

#include "tests/platform/openfile.h"

TEST_F(OpenFile, NamesAsGivenComeFirst)
{
    folder.write("maps/Wood.jpg", std::string("wood"));
    folder.write("maps\\Wood.jpg", std::string("backslash"));
    EXPECT_EQ(content("maps/Wood.jpg"), "wood");
    EXPECT_EQ(content("maps\\Wood.jpg"), "backslash");
}

TEST_F(OpenFile, AnExactMatchWinsThenByteOrder)
{
    folder.write("name.txt", std::string("lower"));
    folder.write("Name.txt", std::string("capital"));
    folder.write("NAME.txt", std::string("upper"));
    EXPECT_EQ(content("name.txt"), "lower");
    EXPECT_EQ(content("nAmE.txt"), "upper");
    folder.write("sub/Name.txt", std::string("capital"));
    folder.write("sub/name.txt", std::string("lower"));
    EXPECT_EQ(content("sub/NAME.TXT"), "capital");
}

TEST_F(OpenFile, ReadingTakesPlainFilesOnly)
{
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(vrkOpenFile(pipe.c_str(), "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile("/dev/zero", "rb"), nullptr);
    size_t size = 0;
    EXPECT_EQ(vrkReadFile("/dev/zero", 0, &size), nullptr);
    FILE* sink = vrkOpenFile("/dev/null", "at");
    EXPECT_NE(sink, nullptr);
    if (sink)
        std::fclose(sink);
}
