// Start-up where it differs from that on Windows: no Direct3D, and surfaces of its own.

#include "vornik/rasterizer/startup.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <limits>

#include "tests/support/engine.h"
#include "tests/support/workingfolder.h"

using StartupTest = EngineTest;

static VRKNativeWindow offscreen(int width, int height)
{
    return {nullptr, 0, width, height};
}

TEST_F(StartupTest, RasterizerOneCannotBeCreatedHere)
{
    std::fill(std::begin(vrkConvertCapTableOGL), std::end(vrkConvertCapTableOGL), 77);
    EXPECT_EQ(vrkSelectRasterizer(1), -1);
    EXPECT_EQ(vrkSelectedRasterizer, 1);
    for (const int value : vrkConvertCapTableOGL)
        EXPECT_EQ(value, 77);
}

TEST_F(StartupTest, StartReturnsAtOnceWhenTheRasterizerIsMissing)
{
    const WorkingFolder inside(folder.root());
    const VRKWindow window = surface(32, 32);
    vrkSetFPS(3);
    vrkSetGamma(0.5f);
    const VRKRenderingContext before = VRK_hGLRC;
    EXPECT_EQ(initVornik(1, window), -1);
    EXPECT_EQ(initVornik(1, window, nullptr, 32, 0, 24, 50, false, 0, true), -1);
    EXPECT_EQ(vrkGetFPS(), 3);
    EXPECT_EQ(vrkGetGamma(), 0.5f);
    EXPECT_EQ(VRK_hGLRC, before);
}

TEST_F(StartupTest, SurfaceThatCannotBeMadeIsLoggedAndEndsIn41)
{
    for (const VRKNativeWindow& window :
         {offscreen(-1, 64), offscreen(64, -1), offscreen(std::numeric_limits<int>::max(), 64),
          offscreen(64, std::numeric_limits<int>::max())})
    {
        std::remove(folder.path("log").c_str());
        EXPECT_EQ(vrkInitViewport(&window, 32, 8, 24, false, 0, true), 41);
        EXPECT_EQ(log(), "Requested Colorbits: 32 Alphabits: 8 Depthbits: 24\n"
                         "Set pix format failed!\n"
                         "Fatal error, cannot create rendering context!\n");
        EXPECT_EQ(VRK_hGLRC, nullptr);
        vrkSwapBuffers();
    }
}

TEST_F(StartupTest, SwapOffscreenKeepsThePicture)
{
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    vrkClear();
    vrkSwapBuffers();
    EXPECT_TRUE(pixelIs(10, 10, {0, 0, 255, 255}));
}
