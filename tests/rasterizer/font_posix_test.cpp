// The glyphs of our own, and the lists that hold them.

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
