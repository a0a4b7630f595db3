#include "vornik/rasterizer/font.h"

#include <GL/gl.h>

#include <algorithm>
#include <limits>
#include <set>

#include "platform/gldevice.h"
#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "vornik/rasterizer/fog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

using Calls = std::vector<std::string>;
using Picture = std::vector<std::string>;

// Text on a surface of 128 by 32 pixels. After the start bitmaps are white, so that white text needs nothing
// more than its documented calls.
class FontTest : public EngineTest
{
protected:
    FontTest() : EngineTest(128, 32) {}

    void SetUp() override
    {
        EngineTest::SetUp();
        ASSERT_EQ(vrkInitFont(), 0);
    }

    void TearDown() override
    {
        glDeleteLists(1, 1000);
        vrkFontBase = 0;
        EngineTest::TearDown();
    }

    // A part of the window, rows from the top, drawn pixels as '#'.
    Picture picture(int left, int top, int w, int h) const
    {
        const std::vector<Pixel> all = pixels();
        Picture rows;
        for (int y = top; y < top + h; ++y)
        {
            rows.emplace_back();
            for (int x = left; x < left + w; ++x)
            {
                const Pixel& p = all[static_cast<size_t>((height - 1 - y) * width + x)];
                rows.back() += p.r || p.g || p.b ? '#' : '.';
            }
        }
        return rows;
    }

    Picture whole() const { return picture(0, 0, width, height); }

    // What a text alone looks like, with its base line under row 20.
    Picture drawn(const std::string& text)
    {
        vrkClear();
        vrkWrite(0, 20, &white, "%s", text.c_str());
        return whole();
    }

    Color white = {1, 1, 1, 1};
    Color orange = {1, 0.5f, 0, 0};
};

static bool isList(int name)
{
    const GLRecorder::Pause unheard;
    return glIsList(static_cast<GLuint>(name));
}

TEST_F(FontTest, ListsStandFromTheFirstFreeNameOn)
{
    EXPECT_EQ(vrkFontBase, 0);
    GLRecorder gl;
    EXPECT_EQ(vrkInitFont(), 0);
    EXPECT_EQ(gl.only({"glIsList"}), (Calls{"glIsList(0)"}));
    EXPECT_EQ(gl.count("glNewList"), 127); // 0 is no name of a list
    for (int code = 1; code < 128; ++code)
        EXPECT_TRUE(isList(code)) << code;
    EXPECT_FALSE(isList(128));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_EQ(log(), "");
}

TEST_F(FontTest, TakenNamesAreSteppedOver)
{
    GLRecorder gl;
    gl.takenLists = 300;
    EXPECT_EQ(vrkInitFont(), 0);
    EXPECT_EQ(vrkFontBase, 300);
    EXPECT_EQ(gl.count("glIsList"), 301);
    EXPECT_EQ(gl.count("glNewList"), 128);
    for (int code = 0; code < 128; ++code)
        EXPECT_TRUE(isList(300 + code)) << code;
    EXPECT_FALSE(isList(428));
    gl.clear();
    const Picture high = drawn("Base");
    EXPECT_EQ(gl.countExact("glListBase(300)"), 1);
    vrkFontBase = 0;
    EXPECT_EQ(drawn("Base"), high);
}

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
    releaseOffscreenContext();
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

TEST_F(FontTest, GlyphsComeOutWhateverTheHostsPixelLayout)
{
    const Picture plain = drawn("Layout");
    glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 77);
    glPixelStorei(GL_UNPACK_SKIP_ROWS, 3);
    glPixelStorei(GL_UNPACK_SKIP_PIXELS, 5);
    glPixelStorei(GL_UNPACK_LSB_FIRST, GL_TRUE);
    EXPECT_EQ(vrkInitFont(), 0);
    GLint kept = 0;
    glGetIntegerv(GL_UNPACK_ROW_LENGTH, &kept);
    EXPECT_EQ(kept, 77);
    EXPECT_EQ(drawn("Layout"), plain);
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

TEST_F(FontTest, LettersStandOnTheirBaseLine)
{
    vrkWrite(40, 20, &white, "Ag");
    EXPECT_EQ(picture(40, 9, 16, 15), (Picture{
                                          "................", //
                                          "...#............", //
                                          "..###...........", //
                                          ".##.##..........", //
                                          "##...##..######.", //
                                          "##...##.##...##.", //
                                          "##...##.##...##.", //
                                          "#######.##...##.", //
                                          "##...##.##...##.", //
                                          "##...##.##...##.", //
                                          "##...##..######.", // row 19, over the base line
                                          ".............##.", //
                                          ".............##.", //
                                          ".........#####..", //
                                          "................", //
                                      }));
    EXPECT_EQ(picture(0, 0, 40, 32), Picture(32, std::string(40, '.')));
}

TEST_F(FontTest, TextAtTheTopEdgeLiesAboveIt)
{
    vrkWrite(0, 0, &white, "TEXT");
    EXPECT_EQ(drawnPixels(), 0);
    vrkWrite(0, 2, &white, "H");
    EXPECT_EQ(picture(0, 0, 8, 3), (Picture{"##...##.", "##...##.", "........"}));
}

TEST_F(FontTest, TextHasTheColourWithoutItsAlphaOverAnything)
{
    vrkBlendFunc(VRK_ZERO, VRK_ONE); // blending would hide it
    vrkWrite(0, 20, &orange, "H");
    EXPECT_TRUE(pixelIs(0, 31 - 15, {255, 128, 0, 255}, 1));
    vrkWrite(8, 20, &white, "H");
    EXPECT_TRUE(pixelIs(8, 31 - 15, {255, 255, 255, 255}));
    vrkWrite(16, 20, &orange, "H");
    EXPECT_TRUE(pixelIs(16, 31 - 15, {255, 128, 0, 255}, 1));
    EXPECT_TRUE(pixelIs(0, 31 - 15, {255, 128, 0, 255}, 1));
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

TEST_F(FontTest, ColoursChangeNeitherMatricesNorDepthNorFog)
{
    vrkSetFog({0, 0, 0, 1}, 0.0f, 0.5f);
    vrkTranslate(1, 2, 3);
    vrkSetMatrixType(VRK_TEXTURE);
    float before[3][16], after[3][16];
    const GLenum names[] = {GL_MODELVIEW_MATRIX, GL_PROJECTION_MATRIX, GL_TEXTURE_MATRIX};
    for (int i = 0; i < 3; ++i)
        glGetFloatv(names[i], before[i]);
    vrkWrite(0, 20, &orange, "H");
    for (int i = 0; i < 3; ++i)
    {
        glGetFloatv(names[i], after[i]);
        EXPECT_TRUE(std::equal(before[i], before[i] + 16, after[i]));
    }
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(mode, GL_TEXTURE);
    EXPECT_TRUE(pixelIs(0, 31 - 15, {255, 128, 0, 255}, 1));
    EXPECT_EQ(depth(0, 31 - 15), 0.0f); // on the front, where nothing hides it
}

TEST_F(FontTest, ARasterPositionThatTheHostLostIsNoMatter)
{
    glRasterPos3f(0, 0, 100); // behind the eye
    vrkWrite(0, 20, &white, "H");
    EXPECT_EQ(drawnPixels(), 10 * 4 + 3);
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

TEST_F(FontTest, CodeZeroOfAHigherBaseTakesNoRoomEither)
{
    const Picture plain = drawn("AB");
    GLRecorder gl;
    gl.takenLists = 300;
    ASSERT_EQ(vrkInitFont(), 0);
    EXPECT_EQ(drawn("A\xE9"
                    "B"),
              plain);
}

TEST_F(FontTest, ControlCodesAreBlanks)
{
    const Picture spaced = drawn("A   B");
    EXPECT_EQ(drawn("A\n\t\x7f"
                    "B"),
              spaced);
}

TEST_F(FontTest, EachPrintableCharacterHasAGlyphOfItsOwnInsideItsCell)
{
    std::set<Picture> seen = {drawn(" ")};
    EXPECT_EQ(drawnPixels(), 0);
    for (char c = '!'; c <= '~'; ++c)
    {
        EXPECT_TRUE(seen.insert(drawn(std::string(1, c))).second) << c;
        const int inCell = drawnPixels();
        EXPECT_GE(inCell, 4) << c;
        EXPECT_LE(inCell, 50) << c;
        // Ten rows stand above the base line and three hang below; one more reaches up. Only the underscore
        // runs on into the next cell.
        const Picture cell = picture(0, 20 - 11, c == '_' ? 8 : 7, 14);
        size_t drawnInCell = 0;
        for (const std::string& row : cell)
            drawnInCell += static_cast<size_t>(std::count(row.begin(), row.end(), '#'));
        EXPECT_EQ(drawnInCell, static_cast<size_t>(inCell)) << c;
    }
}

TEST_F(FontTest, CharactersAreEightPixelsApart)
{
    drawn("H H");
    const Picture cell = picture(0, 6, 8, 20);
    EXPECT_EQ(picture(16, 6, 8, 20), cell);
    EXPECT_EQ(picture(8, 6, 8, 20), Picture(20, "........"));
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
    for (const float far : {nothing, infinite, -infinite, 3e38f, -3e38f, 1e6f})
    {
        vrkClear();
        vrkDisable(VRK_BLEND);
        vrkWrite(far, 20, &white, "AB");
        EXPECT_TRUE(vrkIsEnabled(VRK_BLEND));
        vrkWrite(0, far, &white, "AB");
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
