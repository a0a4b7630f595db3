#include "vornik/core/errorlog.h"

#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/tempfolder.h"

static const VRKError beforeAnyStart = vrkError;

class ErrorLog : public ::testing::Test
{
protected:
    void SetUp() override { saved = vrkError; }
    void TearDown() override { vrkError = saved; }

    TempFolder folder;

private:
    VRKError saved = {};
};

TEST_F(ErrorLog, BeginsWithAFileThatHasNoName)
{
    EXPECT_EQ(beforeAnyStart.file, nullptr);
    EXPECT_EQ(beforeAnyStart.mode, 0);
    EXPECT_STREQ(beforeAnyStart.fileName, "");
    EXPECT_EQ(beforeAnyStart.console, nullptr);
}

TEST_F(ErrorLog, KeepsTheHandleOfTheLastOpen)
{
    vrkError.file = nullptr;
    vrkInitErrorLog(folder.path("a.log").c_str());
    EXPECT_EQ(vrkError.file, nullptr);
    vrkPutToErrorLog("first", 1);
    EXPECT_NE(vrkError.file, nullptr);
    vrkInitErrorLog(folder.path("no/such/folder.log").c_str());
    vrkPutToErrorLog("lost", 1);
    EXPECT_EQ(vrkError.file, nullptr);
}

TEST_F(ErrorLog, InitByNameStoresTheNameAndOpensNothing)
{
    vrkError.mode = 3;
    vrkInitErrorLog(folder.path("a.log").c_str());
    EXPECT_EQ(vrkError.mode, 0);
    EXPECT_EQ(vrkError.fileName, folder.path("a.log"));
    EXPECT_FALSE(std::filesystem::exists(folder.path("a.log")));
}

TEST_F(ErrorLog, ALongNameIsCut)
{
    vrkInitErrorLog(std::string(200, 'x').c_str());
    EXPECT_EQ(std::strlen(vrkError.fileName), 63u);
}

TEST_F(ErrorLog, InitByTheNameThatItHasGoesBackToTheFile)
{
    vrkInitErrorLog("abcdef.log");
    vrkError.mode = 3;
    vrkInitErrorLog(vrkError.fileName);
    EXPECT_STREQ(vrkError.fileName, "abcdef.log");
    EXPECT_EQ(vrkError.mode, 0);
    vrkInitErrorLog(vrkError.fileName + 3);
    EXPECT_STREQ(vrkError.fileName, "def.log");
    vrkInitErrorLog(static_cast<const char*>(nullptr));
    EXPECT_STREQ(vrkError.fileName, "");
}

TEST_F(ErrorLog, LinesAreAppendedAndTheNumberComesBack)
{
    vrkInitErrorLog(folder.path("a.log").c_str());
    EXPECT_EQ(vrkPutToErrorLog("first", 41), 41);
    EXPECT_EQ(vrkPutToErrorLog("second", 0), 0);
    EXPECT_EQ(vrkPutToErrorLog("", -7), -7);
    EXPECT_EQ(folder.readText("a.log"), "first\nsecond\n\n");
    vrkInitErrorLog(folder.path("a.log").c_str());
    vrkPutToErrorLog("third", 1);
    EXPECT_EQ(folder.readText("a.log"), "first\nsecond\n\nthird\n");
}

TEST_F(ErrorLog, AFileThatCannotBeOpenedIsPassedOver)
{
    vrkInitErrorLog(folder.path("no/such/folder.log").c_str());
    EXPECT_EQ(vrkPutToErrorLog("lost", 5), 5);
}

TEST_F(ErrorLog, AMessageThatDoesNotFitIsCutAndKeepsItsLineFeed)
{
    vrkInitErrorLog(folder.path("a.log").c_str());
    EXPECT_EQ(vrkPutToErrorLog(std::string(5000, 'x').c_str(), 5), 5);
    EXPECT_EQ(folder.readText("a.log"), std::string(1022, 'x') + "\n");
}

TEST_F(ErrorLog, SilentModesReachNoSink)
{
    vrkInitErrorLog(folder.path("a.log").c_str());
    for (const int mode : {3, 4, -1, 99})
    {
        vrkInitErrorLog(mode);
        EXPECT_EQ(vrkError.mode, mode);
        EXPECT_EQ(vrkPutToErrorLog("nothing", 9), 9);
    }
    EXPECT_EQ(folder.readText("a.log"), "");
}

TEST_F(ErrorLog, ANullConsoleSwallowsReports)
{
    vrkInitErrorLog(static_cast<Console*>(nullptr));
    EXPECT_EQ(vrkError.mode, 2);
    EXPECT_EQ(vrkError.console, nullptr);
    EXPECT_EQ(vrkPutToErrorLog("nothing", 9), 9);
}

TEST_F(ErrorLog, InfoTellsVersionAndFormats)
{
    VRKInfo info;
    vrkInfo(&info);
    EXPECT_EQ(info.majorVersion, 0);
    EXPECT_EQ(info.minorVersion, 1);
    const std::string text = info.text;
    const size_t firstLine = text.find('\n');
    EXPECT_NE(text.substr(0, firstLine).find("Vornik"), std::string::npos);
    EXPECT_EQ(text.substr(firstLine + 1), "Rasterizer support: OpenGL, Direct3D\n"
                                          "Fileformat support: .3DS\n"
                                          "Texture format support: .JPG, .TGA, .IFL\n"
                                          "Mesh format support: .3DS\n");
}
