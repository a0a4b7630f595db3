// Names and kinds of files that only Windows has.

#include <string>

#include "tests/platform/openfile.h"

TEST_F(OpenFile, DevicesAreNoFilesToRead)
{
    for (const char* name : {"NUL", "nul", "CON"})
    {
        size_t size = 0;
        EXPECT_EQ(vrkOpenFile(name, "rb"), nullptr) << name;
        EXPECT_EQ(vrkReadFile(name, 0, &size), nullptr) << name;
    }
    FILE* sink = vrkOpenFile("NUL", "at");
    EXPECT_NE(sink, nullptr);
    if (sink)
        fclose(sink);
}

TEST_F(OpenFile, LinesOfTextEndAsTheSystemHasIt)
{
    FILE* file = vrkOpenFile(folder.path("text").c_str(), "at");
    ASSERT_NE(file, nullptr);
    fputs("one\n", file);
    fclose(file);
    EXPECT_EQ(folder.read("text"), "one\r\n");
    EXPECT_EQ(folder.readText("text"), "one\n");
}
