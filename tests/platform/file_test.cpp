#include "platform/file.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "tests/platform/openfile.h"
#include "tests/support/workingfolder.h"

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

TEST_F(OpenFile, AFolderIsNeverAFile)
{
    folder.write("Folder/file", std::string("x"));
    EXPECT_EQ(vrkOpenFile(folder.path("Folder").c_str(), "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile(folder.path("FOLDER").c_str(), "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile(folder.path("folder\\").c_str(), "rb"), nullptr);
    EXPECT_EQ(vrkOpenFile(folder.path("Folder").c_str(), "wb"), nullptr);
    EXPECT_EQ(vrkOpenFile(folder.path("Folder/file/more").c_str(), "rb"), nullptr);
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
    EXPECT_EQ(folder.readText("Engine.LOG"), "one\ntwo\n");
}

TEST_F(OpenFile, RelativeNamesStartInTheCurrentFolder)
{
    folder.write("Inner/File.txt", std::string("x"));
    const WorkingFolder inside(folder.root());
    FILE* file = vrkOpenFile("inner\\FILE.TXT", "rb");
    FILE* dotted = vrkOpenFile(".\\INNER\\file.txt", "rb");
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
}
