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
