#include "tests/apps/program.h"
#include "tests/apps/scenes.h"

using Direct3DPictureTest = ProgramTest;

TEST_F(Direct3DPictureTest, ThereIsNoneHere)
{
    write("box.3ds", boxScene());
    const RunResult result = run({"render", "box.3ds", "-o", "box.png", "--rasterizer", "1"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("this system has no Direct3D"), std::string::npos) << result.err;
    EXPECT_FALSE(exists("box.png"));
}
