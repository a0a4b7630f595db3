#include "platform/file.h"

#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/tempfolder.h"

class OpenFile : public ::testing::Test
{
protected:
    // Content of the file that a name inside the folder opens; "(none)" if it opens none.
    std::string content(const std::string& name) const
    {
        FILE* file = vrkOpenFile(folder.path(name).c_str(), "rb");
        if (!file)
            return "(none)";
        char buffer[64];
        const size_t size = fread(buffer, 1, sizeof buffer, file);
        fclose(file);
        return std::string(buffer, size);
    }

    TempFolder folder;
};

TEST_F(OpenFile, NamesAsGivenComeFirst)
{
    folder.write("maps/Wood.jpg", std::string("wood"));
    folder.write("maps\\Wood.jpg", std::string("backslash"));
    EXPECT_EQ(content("maps/Wood.jpg"), "wood");
    EXPECT_EQ(content("maps\\Wood.jpg"), "backslash");
}

TEST_F(OpenFile, BackslashesSeparateAndCaseIsIgnored)
{
    folder.write("Textures/Walls/Brick.jpg", std::string("brick"));
    EXPECT_EQ(content("textures\\walls\\brick.jpg"), "brick");
    EXPECT_EQ(content("TEXTURES/WALLS\\BRICK.JPG"), "brick");
    EXPECT_EQ(content("Textures\\\\Walls//Brick.jpg"), "brick");
    EXPECT_EQ(content("textures\\walls\\stone.jpg"), "(none)");
}

TEST_F(OpenFile, AWholePathInUpperCaseIsFound)
{
    folder.write("Deep/er/file.3ds", std::string("scene"));
    std::string upper = folder.path("Deep/er/file.3ds");
    for (char& c : upper)
        c = static_cast<char>(toupper(c));
    FILE* file = vrkOpenFile(upper.c_str(), "rb");
    ASSERT_NE(file, nullptr);
    fclose(file);
}

TEST_F(OpenFile, DotsWorkAsComponents)
{
    folder.write("a/b/file", std::string("x"));
    EXPECT_EQ(content("A\\.\\B\\..\\b\\FILE"), "x");
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

TEST_F(OpenFile, AFolderIsNeverAFile)
{
    folder.write("Folder/file", std::string("x"));
    EXPECT_EQ(vrkOpenFile(folder.path("Folder").c_str(), "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile(folder.path("FOLDER").c_str(), "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile(folder.path("folder\\").c_str(), "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile(folder.path("Folder").c_str(), "wb"), nullptr);
    EXPECT_EQ(vrkOpenFile(folder.path("Folder/file/more").c_str(), "rb"), nullptr);
}

TEST_F(OpenFile, ReadingTakesPlainFilesOnly)
{
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(vrkOpenFile(pipe.c_str(), "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile("/dev/zero", "rb"), nullptr);
    FILE* sink = vrkOpenFile("/dev/null", "at");
    EXPECT_NE(sink, nullptr);
    if (sink)
        std::fclose(sink);
}

TEST_F(OpenFile, NoNameOpensNothing)
{
    EXPECT_EQ(vrkOpenFile(nullptr, "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile("", "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile("", "wb"), nullptr);
    EXPECT_EQ(vrkResolveName(""), "");
}

TEST_F(OpenFile, CreatingFindsTheFolderAndKeepsTheName)
{
    folder.write("Shots/old", std::string("x"));
    FILE* file = vrkOpenFile(folder.path("SHOTS\\New.log").c_str(), "wb");
    ASSERT_NE(file, nullptr);
    fputs("new", file);
    fclose(file);
    EXPECT_EQ(folder.read("Shots/New.log"), "new");
    EXPECT_EQ(vrkOpenFile(folder.path("nowhere\\New.log").c_str(), "wb"), nullptr);
}

TEST_F(OpenFile, CreatingWritesToAFileOfOtherCase)
{
    folder.write("Engine.LOG", std::string("one\n"));
    FILE* file = vrkOpenFile(folder.path("ENGINE.log").c_str(), "at");
    ASSERT_NE(file, nullptr);
    fputs("two\n", file);
    fclose(file);
    EXPECT_EQ(folder.read("Engine.LOG"), "one\ntwo\n");
}

TEST_F(OpenFile, RelativeNamesStartInTheCurrentFolder)
{
    folder.write("Inner/File.txt", std::string("x"));
    char before[4096];
    ASSERT_NE(getcwd(before, sizeof before), nullptr);
    ASSERT_EQ(chdir(folder.root().c_str()), 0);
    FILE* file = vrkOpenFile("inner\\FILE.TXT", "rb");
    FILE* dotted = vrkOpenFile(".\\INNER\\file.txt", "rb");
    EXPECT_EQ(chdir(before), 0);
    EXPECT_NE(file, nullptr);
    EXPECT_NE(dotted, nullptr);
    if (file)
        fclose(file);
    if (dotted)
        fclose(dotted);
}

TEST_F(OpenFile, ReadingAWholeFileAddsZeroBytes)
{
    folder.write("data", std::string("abc"));
    size_t size = 0;
    char* block = vrkReadFile(folder.path("DATA").c_str(), 4, &size);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(std::string(block, 7), std::string("abc\0\0\0\0", 7));
    free(block);

    folder.write("empty", std::string());
    block = vrkReadFile(folder.path("empty").c_str(), 0, &size);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(size, 0u);
    free(block);
    EXPECT_EQ(vrkReadFile(folder.path("missing").c_str(), 0, &size), nullptr);
    EXPECT_EQ(vrkReadFile("/dev/zero", 0, &size), nullptr);
}
