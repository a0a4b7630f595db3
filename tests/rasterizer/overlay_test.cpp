#include "vornik/rasterizer/overlay.h"

#include <functional>

#include "tests/rasterizer/overlayfixture.h"
#include "vornik/rasterizer/fog.h"
#include "vornik/rasterizer/state.h"

// What stands around a drawing on the far plane when culling, depth test and texturing are on, as after the
// start.
static const Calls bracketBegin = {
    "glMatrixMode(GL_PROJECTION)", "glLoadIdentity()",         "glOrtho(0, 640, 0, 480, 1e-07, 1)",
    "glMatrixMode(GL_MODELVIEW)",  "glLoadIdentity()",         "glTranslatef(0, 0, -1)",
    "glIsEnabled(GL_CULL_FACE)",   "glDisable(GL_CULL_FACE)",  "glIsEnabled(GL_FOG)",
    "glIsEnabled(GL_DEPTH_TEST)",  "glDisable(GL_DEPTH_TEST)", "glIsEnabled(GL_TEXTURE_2D)",
    "glDisable(GL_TEXTURE_2D)",    "glIsEnabled(GL_BLEND)",    "glEnable(GL_BLEND)"};
static const Calls bracketEnd =
    perspective + identity +
    Calls{"glEnable(GL_CULL_FACE)", "glDisable(GL_FOG)", "glEnable(GL_DEPTH_TEST)", "glEnable(GL_TEXTURE_2D)",
          "glDisable(GL_BLEND)"};

static Calls bracketed(const Calls& drawing)
{
    return bracketBegin + drawing + bracketEnd;
}

TEST_F(OverlayTest, LinesAreSentWithBothEndsAtTheFirstPoint)
{
    setWindow(640, 480);
    Vertex2D a = {10, 20}, b = {300, 400};
    color = {0.5f, 0.25f, 1, 0.75f};
    GLRecorder gl;
    vrkDrawLine(&a, &b, &color);
    EXPECT_EQ(gl.calls(), bracketed({"glBegin(GL_LINES)", "glColor4f(0.5, 0.25, 1, 0.75)",
                                     "glVertex3f(10, 460, 0)", "glVertex3f(10, 460, 0)", "glEnd()"}));
}

TEST_F(OverlayTest, LinesOfSpaceKeepTheDepthOfTheFirstPoint)
{
    setWindow(640, 480);
    Vertex3D a = {10, 20, 0.5f}, b = {300, 400, 0.25f};
    GLRecorder gl;
    vrkDrawLine(&a, &b, &color);
    EXPECT_EQ(gl.calls(), bracketed({"glBegin(GL_LINES)", "glColor4f(1, 0, 0, 1)", "glVertex3f(10, 460, 0.5)",
                                     "glVertex3f(10, 460, 0.5)", "glEnd()"}));
}

TEST_F(OverlayTest, LinesAndBoxesLeaveTheirPointsMirrored)
{
    setWindow(640, 480);
    Vertex2D a = {10, 20}, b = {300, 400};
    vrkDrawLine(&a, &b, &color);
    EXPECT_EQ(a.x, 10);
    EXPECT_EQ(a.y, 460);
    EXPECT_EQ(b.x, 300);
    EXPECT_EQ(b.y, 80);
    vrkDrawFilledBox(&a, &b, &color);
    EXPECT_EQ(a.y, 20);
    EXPECT_EQ(b.y, 400);
    vrkDrawFilledBox(&a, &b, &color, &color, &color, &color);
    EXPECT_EQ(a.y, 460);
    EXPECT_EQ(b.y, 80);

    Vertex3D c = {10, 20, 3}, d = {300, 400, 4};
    vrkDrawLine(&c, &d, &color);
    EXPECT_EQ(c.y, 460);
    EXPECT_EQ(c.z, 3);
    EXPECT_EQ(d.y, 80);
    EXPECT_EQ(d.z, 4);
}

TEST_F(OverlayTest, SwitchesThatAreRightAlreadyAreNotTouchedBeforeTheDrawing)
{
    // Culling, fog, depth test, texturing, blending, alpha test.
    setSwitches({false, true, false, false, true, false});
    Vertex2D a = {10, 20}, b = {300, 400};
    GLRecorder gl;
    vrkDrawFilledBox(&a, &b, &color);
    EXPECT_EQ(gl.only({"glEnable", "glDisable", "glBegin"}),
              (Calls{"glDisable(GL_FOG)", "glBegin(GL_QUADS)", "glDisable(GL_CULL_FACE)", "glEnable(GL_FOG)",
                     "glDisable(GL_DEPTH_TEST)", "glDisable(GL_TEXTURE_2D)", "glEnable(GL_BLEND)"}));
}

TEST_F(OverlayTest, LinesOfTheEyeChangeNeitherProjectionNorPointsNorDepthTest)
{
    Vertex3D a = {1, 2, -3}, b = {4, 5, -6};
    vrkTranslate(1, 2, 3);
    GLRecorder gl;
    vrkDraw3DLine(&a, &b, &color);
    EXPECT_EQ(
        gl.calls(),
        (identity + Calls{"glIsEnabled(GL_CULL_FACE)", "glDisable(GL_CULL_FACE)", "glIsEnabled(GL_FOG)",
                          "glIsEnabled(GL_BLEND)", "glEnable(GL_BLEND)", "glIsEnabled(GL_TEXTURE_2D)",
                          "glDisable(GL_TEXTURE_2D)", "glBegin(GL_LINES)", "glColor4f(1, 0, 0, 1)",
                          "glVertex3f(1, 2, -3)", "glVertex3f(1, 2, -3)", "glEnd()", "glEnable(GL_CULL_FACE)",
                          "glDisable(GL_FOG)", "glDisable(GL_BLEND)", "glEnable(GL_TEXTURE_2D)"}));
    EXPECT_EQ(a.y, 2);
    EXPECT_EQ(b.y, 5);
}

TEST_F(OverlayTest, ABoxIsFourLinesAndLeavesItsPoints)
{
    setWindow(640, 480);
    Vertex2D a = {10, 20}, b = {300, 400};
    GLRecorder gl;
    vrkDrawBox(&a, &b, &color);
    EXPECT_EQ(gl.only({"glBegin", "glVertex3f"}),
              (Calls{"glBegin(GL_LINES)", "glVertex3f(10, 460, 0)", "glVertex3f(10, 460, 0)",
                     "glBegin(GL_LINES)", "glVertex3f(300, 460, 0)", "glVertex3f(300, 460, 0)",
                     "glBegin(GL_LINES)", "glVertex3f(300, 80, 0)", "glVertex3f(300, 80, 0)",
                     "glBegin(GL_LINES)", "glVertex3f(10, 80, 0)", "glVertex3f(10, 80, 0)"}));
    EXPECT_EQ(gl.count("gluPerspective"), 4);
    EXPECT_EQ(a.x, 10);
    EXPECT_EQ(a.y, 20);
    EXPECT_EQ(b.x, 300);
    EXPECT_EQ(b.y, 400);
}

TEST_F(OverlayTest, LinesLeaveNoTrackBetweenTheirEnds)
{
    Vertex2D a = {4, 4}, b = {60, 60};
    vrkDrawBox(&a, &b, &color);
    vrkDrawLine(&a, &b, &color);
    EXPECT_LE(drawnPixels(), 5); // a point at a corner, where the library draws one at all
}

TEST_F(OverlayTest, AFilledBoxIsOneQuad)
{
    setWindow(640, 480);
    Vertex2D a = {10, 20}, b = {300, 400};
    GLRecorder gl;
    vrkDrawFilledBox(&a, &b, &color);
    EXPECT_EQ(gl.calls(), bracketed({"glBegin(GL_QUADS)", "glColor4f(1, 0, 0, 1)", "glVertex3f(10, 460, 0)",
                                     "glVertex3f(300, 460, 0)", "glVertex3f(300, 80, 0)",
                                     "glVertex3f(10, 80, 0)", "glEnd()"}));
}

TEST_F(OverlayTest, AFilledBoxMayHaveAColourAtEachCorner)
{
    setWindow(640, 480);
    Vertex2D a = {10, 20}, b = {300, 400};
    Color c1 = {1, 0, 0, 1}, c2 = {0, 1, 0, 1}, c3 = {0, 0, 1, 1}, c4 = {2, 1, -1, 0.5f};
    GLRecorder gl;
    vrkDrawFilledBox(&a, &b, &c1, &c2, &c3, &c4);
    EXPECT_EQ(gl.calls(), bracketed({"glBegin(GL_QUADS)", "glColor4f(1, 0, 0, 1)", "glVertex3f(10, 460, 0)",
                                     "glColor4f(0, 1, 0, 1)", "glVertex3f(300, 460, 0)",
                                     "glColor4f(0, 0, 1, 1)", "glVertex3f(300, 80, 0)",
                                     "glColor4f(2, 1, -1, 0.5)", "glVertex3f(10, 80, 0)", "glEnd()"}));
    EXPECT_EQ(c4.r, 2); // as the caller gave it
}

TEST_F(OverlayTest, AFilledBoxCoversItsPixelsFromTheTopLeftWhateverIsInFront)
{
    glClearDepth(0.0); // nothing passes the depth test
    vrkClear();
    vrkSetFog({0, 1, 0, 1}, 0.0f, 0.001f);
    Vertex2D a = {10, 20}, b = {30, 24};
    vrkDrawFilledBox(&a, &b, &color);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
        {
            const bool inside = x >= 10 && x < 30 && y >= 20 && y < 24;
            ASSERT_TRUE(pixelIs(x, 63 - y, inside ? red : black)) << x << ", " << y;
        }
}

TEST_F(OverlayTest, ASecondCallDrawsAtTheMirroredPlace)
{
    Vertex2D a = {10, 4}, b = {30, 8};
    vrkDrawFilledBox(&a, &b, &color);
    EXPECT_TRUE(pixelIs(20, 63 - 5, red));
    EXPECT_TRUE(pixelIs(20, 5, black));
    vrkDrawFilledBox(&a, &b, &color);
    EXPECT_TRUE(pixelIs(20, 5, red));
}

TEST_F(OverlayTest, AFilledBoxRunsFromColourToColourAndBlends)
{
    Vertex2D a = {0, 0}, b = {64, 64};
    Color c1 = {1, 0, 0, 1}, c2 = {0, 1, 0, 1}, c3 = {0, 0, 1, 1}, c4 = {1, 1, 1, 1};
    vrkDrawFilledBox(&a, &b, &c1, &c2, &c3, &c4);
    EXPECT_TRUE(pixelIs(0, 63, red, 12));
    EXPECT_TRUE(pixelIs(63, 63, green, 12));
    EXPECT_TRUE(pixelIs(63, 0, blue, 12));
    EXPECT_TRUE(pixelIs(0, 0, white, 12));

    vrkClear();
    vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA);
    Color half = {1, 1, 1, 0.5f};
    Vertex2D c = {0, 0}, d = {64, 64};
    vrkDrawFilledBox(&c, &d, &half);
    EXPECT_TRUE(pixelIs(32, 32, {128, 128, 128, 255}, 1));
}

TEST_F(OverlayTest, LinesAndBoxesLeaveThePerspectiveAndAnIdentity)
{
    const std::vector<std::function<void()>> drawings = {[this]
                                                         {
                                                             Vertex2D a = {1, 2}, b = {3, 4};
                                                             vrkDrawLine(&a, &b, &color);
                                                         },
                                                         [this]
                                                         {
                                                             Vertex3D a = {1, 2, 0}, b = {3, 4, 0};
                                                             vrkDrawLine(&a, &b, &color);
                                                         },
                                                         [this]
                                                         {
                                                             Vertex2D a = {1, 2}, b = {3, 4};
                                                             vrkDrawFilledBox(&a, &b, &color);
                                                         },
                                                         [this]
                                                         {
                                                             Vertex2D a = {1, 2}, b = {3, 4};
                                                             vrkDrawFilledBox(&a, &b, &color, &color, &color,
                                                                              &color);
                                                         }};
    vrkInitMatrix();
    const std::vector<float> identityMatrix = matrix(GL_MODELVIEW_MATRIX);
    vrkSetFOV(50);
    const std::vector<float> wanted = matrix(GL_PROJECTION_MATRIX);
    for (const auto& draw : drawings)
    {
        vrkSetMatrixType(VRK_PROJECTION);
        vrkInitMatrix();
        vrkSetMatrixType(VRK_MODELVIEW);
        vrkTranslate(1, 2, 3);
        draw();
        EXPECT_EQ(matrix(GL_PROJECTION_MATRIX), wanted);
        EXPECT_EQ(matrix(GL_MODELVIEW_MATRIX), identityMatrix);
        GLint mode = 0;
        glGetIntegerv(GL_MATRIX_MODE, &mode);
        EXPECT_EQ(mode, GL_MODELVIEW);
    }
}
