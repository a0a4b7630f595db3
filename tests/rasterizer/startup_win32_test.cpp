// Start-up on a window of the system.

#include "vornik/rasterizer/startup.h"

#include <GL/gl.h>

#include "tests/support/engine.h"
#include "vornik/rasterizer/font.h"

using StartupTest = EngineTest;

TEST_F(StartupTest, HandlesAreTheSystems)
{
    EXPECT_EQ(VRK_hDC, wglGetCurrentDC());
    EXPECT_EQ(VRK_hGLRC, wglGetCurrentContext());
    EXPECT_EQ(VRK_hPalette, nullptr);
}

TEST_F(StartupTest, WindowOnTheScreenShowsWhatWasDrawn)
{
    const VRKWindow window = surface(32, 32);
    ShowWindow(window, SW_SHOWNOACTIVATE);
    ASSERT_EQ(vrkInitViewport(window, 32, 0, 24, false, 0, true), 0);
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    vrkClear();
    vrkSwapBuffers();
    glFinish();
    const HDC screen = GetDC(nullptr);
    EXPECT_EQ(GetPixel(screen, 10, 10), RGB(0, 0, 255));
    ReleaseDC(nullptr, screen);
    ShowWindow(window, SW_HIDE);
}

TEST_F(StartupTest, FontIsTheSystemFont)
{
    ASSERT_EQ(vrkInitFont(), 0);
    EXPECT_EQ(GetCurrentObject(VRK_hDC, OBJ_FONT), GetStockObject(SYSTEM_FONT));
    for (int code = 1; code < 128; ++code)
        EXPECT_TRUE(glIsList(static_cast<GLuint>(vrkFontBase + code))) << code;
}

// How far a character moves the text on.
static float advance(int code)
{
    GLfloat before[4], after[4];
    glRasterPos2f(0.0f, 0.0f);
    glGetFloatv(GL_CURRENT_RASTER_POSITION, before);
    glCallList(static_cast<GLuint>(vrkFontBase + code));
    glGetFloatv(GL_CURRENT_RASTER_POSITION, after);
    return after[0] - before[0];
}

TEST_F(StartupTest, EachPrintableCharacterMovesTheTextOn)
{
    ASSERT_EQ(vrkInitFont(), 0);
    glMatrixMode(GL_PROJECTION); // the eye is no place for a raster position
    glLoadIdentity();
    for (int code = ' '; code < 127; ++code)
        EXPECT_GT(advance(code), 0.0f) << code;
    INT blank = 0;
    ASSERT_TRUE(GetCharWidth32A(VRK_hDC, ' ', ' ', &blank));
    EXPECT_EQ(advance(' '), static_cast<float>(blank));
}
