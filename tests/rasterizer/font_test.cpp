#include "vornik/rasterizer/font.h"

#include <GL/gl.h>

#include <algorithm>
#include <limits>
#include <set>

#include "platform/glcontext.h"
#include "tests/rasterizer/fonttest.h"
#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/openglfunction.h"
#include "vornik/rasterizer/fog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

using Calls = std::vector<std::string>;
TEST_F(FontTest, TheSearchEndsAtTheLastName)
{
    GLRecorder gl;
    gl.takenLists = 100000;
    EXPECT_EQ(vrkInitFont(), 0);
    EXPECT_EQ(vrkFontBase, 16384);
    EXPECT_TRUE(isList(16384 + 127));
    glDeleteLists(16384, 128);
}

TEST_F(FontTest, WithoutAContextThereIsNoFont)
{
    releaseContext();
    EXPECT_EQ(vrkInitFont(), 49);
    vrkPlatformMakeCurrent(VRK_hDC, VRK_hGLRC);
    EXPECT_TRUE(logged("Cannot create fonts!"));
}

TEST_F(FontTest, OtherRasterizersNeedNoFont)
{
    for (const int number : {1, 7, -1})
    {
        vrkSelectRasterizer(number);
        vrkFontBase = 5;
        GLRecorder gl;
        EXPECT_EQ(vrkInitFont(), 0);
        EXPECT_EQ(vrkFontBase, 5);
        vrkWrite(10, 20, &white, "text");
        EXPECT_EQ(gl.calls(), Calls{}) << number;
    }
}

TEST_F(FontTest, TextMovesTheRasterPositionAndCallsItsLists)
{
    vrkViewport.height = 480;
    vrkWrite(30, 470, &white, "x"); // leaves the position at 38, 10
    GLRecorder gl;
    vrkWrite(12, 20.5f, &white, "%d%c", 4, 'A');
    Calls calls = gl.calls();
    std::erase(calls, "glGetBooleanv(GL_CURRENT_RASTER_POSITION_VALID, ptr)");
    std::erase(calls, "glGetFloatv(GL_CURRENT_RASTER_COLOR, ptr)");
    EXPECT_EQ(calls,
              (Calls{"glDisable(GL_TEXTURE_2D)", "glDisable(GL_BLEND)", "glColor3f(1, 1, 1)",
                     "glGetFloatv(GL_CURRENT_RASTER_POSITION, ptr)", "glBitmap(1, 1, 0, 0, -26, 449.5, ptr)",
                     "glListBase(0)", "glCallLists(2, GL_UNSIGNED_BYTE, {52, 65})", "glListBase(0)",
                     "glEnable(GL_TEXTURE_2D)", "glEnable(GL_BLEND)"}));
}

TEST_F(FontTest, BlendingAndTexturingAreOnAfterwardsEvenIfTheyWereOff)
{
    vrkDisable(VRK_TEXTURE_2D);
    vrkDisable(VRK_BLEND);
    vrkWrite(10, 20, &white, "text");
    EXPECT_TRUE(vrkIsEnabled(VRK_TEXTURE_2D));
    EXPECT_TRUE(vrkIsEnabled(VRK_BLEND));
}

TEST_F(FontTest, AChangeOfColourIsTakenOnce)
{
    GLRecorder gl;
    vrkWrite(0, 20, &orange, "H");
    vrkWrite(8, 20, &orange, "H");
    vrkWrite(16, 20, &white, "H");
    const Calls text = {"glDisable(GL_TEXTURE_2D)", "glDisable(GL_BLEND)"};
    const Calls rest = {"glListBase(0)", "glListBase(0)", "glEnable(GL_TEXTURE_2D)", "glEnable(GL_BLEND)"};
    Calls expected;
    for (const Calls& color :
         {Calls{"glColor3f(1, 0.5, 0)", "glRasterPos2f(0, 0)"}, Calls{"glColor3f(1, 0.5, 0)"},
          Calls{"glColor3f(1, 1, 1)", "glRasterPos2f(0, 0)"}})
        for (const Calls* part : {&text, &color, &rest})
            expected.insert(expected.end(), part->begin(), part->end());
    EXPECT_EQ(gl.only({"glEnable", "glDisable", "glColor3f", "glRasterPos2f", "glListBase"}), expected);
}

TEST_F(FontTest, LongTextIsCut)
{
    const std::string text(3000, 'x');
    GLRecorder gl;
    vrkWrite(0, 20, &white, "%s", text.c_str());
    vrkWrite(0, 20, &white, "%s", std::string(1024, 'x').c_str());
    vrkWrite(0, 20, &white, "%s", std::string(1023, 'x').c_str());
    const Calls calls = gl.only({"glCallLists"});
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0].rfind("glCallLists(1024,", 0), 0u);
    EXPECT_EQ(calls[1].rfind("glCallLists(1024,", 0), 0u);
    EXPECT_EQ(calls[2].rfind("glCallLists(1023,", 0), 0u);
}

TEST_F(FontTest, CodesAbove127DrawNothingEvenWhereListsOfThatNameExist)
{
    const Picture plain = drawn("AB");
    glNewList(0xE9, GL_COMPILE);
    glBitmap(0, 0, 0, 0, 50, 0, nullptr);
    glEndList();
    EXPECT_EQ(drawn("A\xE9\x80\xFF"
                    "B"),
              plain);
    GLRecorder gl;
    vrkWrite(0, 20, &white, "A\xE9");
    EXPECT_EQ(gl.count("glCallLists"), 1);
    EXPECT_EQ(gl.calls().at(gl.calls().size() - 4), "glCallLists(2, GL_UNSIGNED_BYTE, {65, 0})");
}

TEST_F(FontTest, WithoutFormatOrColourNothingHappens)
{
    GLRecorder gl;
    vrkWrite(0, 20, &white, nullptr);
    vrkWrite(0, 20, nullptr, "text");
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(FontTest, PlacesOutOfReachDrawNothingAndHarmNoLaterText)
{
    const Picture plain = drawn("AB");
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    for (const float beyond : {nothing, infinite, -infinite, 3e38f, -3e38f, 1e6f})
    {
        vrkClear();
        vrkDisable(VRK_BLEND);
        vrkWrite(beyond, 20, &white, "AB");
        EXPECT_TRUE(vrkIsEnabled(VRK_BLEND));
        vrkWrite(0, beyond, &white, "AB");
        EXPECT_EQ(drawnPixels(), 0);
        EXPECT_EQ(drawn("AB"), plain);
    }
    const Viewport kept = vrkViewport;
    vrkViewport.height = nothing;
    vrkWrite(0, 20, &white, "AB");
    vrkViewport = kept;
    EXPECT_EQ(drawn("AB"), plain);
    // Text that starts left of the window shows what reaches into it.
    vrkClear();
    vrkWrite(-8, 20, &white, "AB");
    EXPECT_EQ(picture(0, 0, 8, 32), (drawn("B"), picture(0, 0, 8, 32)));
}
