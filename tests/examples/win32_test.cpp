// The host of examples/win32.cpp, which the build has compiled by the line in its head, on either rasterizer.

#include <gtest/gtest.h>

#include "tests/apps/scenes.h"
#include "tests/support/process.h"
#include "tests/support/tempfolder.h"
#include "tests/support/writer3ds.h"

class Win32Example : public ::testing::TestWithParam<const char*>
{
protected:
    int statusOf(const std::string& scene)
    {
        return runProcess({WIN32_HOST, scene, ".", "3", GetParam()}, folder.root(),
                          {"", "", folder.path("err")});
    }

    TempFolder folder;
};

TEST_P(Win32Example, ShowsAsManyFramesAsItIsTold)
{
    folder.write("box.3ds", build3ds(boxScene()));
    EXPECT_EQ(statusOf("box.3ds"), 0) << folder.read("err");
}

TEST_P(Win32Example, SaysWhenThereIsNothingToShow)
{
    EXPECT_EQ(statusOf("none.3ds"), 1);
    EXPECT_NE(folder.read("err").find("VRKERROR.LOG"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Rasterizers, Win32Example, ::testing::Values("0", "1"),
                         [](const auto& number) { return *number.param == '0' ? "OpenGL" : "Direct3D"; });
