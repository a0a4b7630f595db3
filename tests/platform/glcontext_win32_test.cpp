// Contexts on windows of the system.

#include "platform/glcontext.h"

#include <GL/gl.h>

#include "apps/vornik/surface.h"
#include "tests/support/engine.h"
#include "vornik/rasterizer/startup.h"

using ContextTest = EngineTest;

TEST_F(ContextTest, NullDeviceAnswersEveryCall)
{
    EXPECT_EQ(vrkPlatformOpenDevice(nullptr), nullptr);
    EXPECT_EQ(vrkPlatformSetFormat(nullptr, {32, 8, 24}), FormatResult::noneFits);
    EXPECT_EQ(vrkPlatformFormatBits(nullptr).color, 0);
    EXPECT_EQ(vrkPlatformCreatePalette(nullptr), nullptr);
    EXPECT_EQ(vrkPlatformCreateContext(nullptr), nullptr);
    EXPECT_FALSE(vrkPlatformMakeCurrent(nullptr, nullptr));
    EXPECT_FALSE(vrkPlatformMakeCurrent(VRK_hDC, nullptr));
    EXPECT_FALSE(vrkPlatformMakeCurrent(nullptr, VRK_hGLRC));
    vrkPlatformSwapBuffers(nullptr);
    int size[2] = {5, 5};
    vrkPlatformClientSize(nullptr, &size[0], &size[1]);
    EXPECT_EQ(size[0], 0);
    EXPECT_EQ(size[1], 0);
}

TEST_F(ContextTest, DeviceWithoutFormatHasNoContext)
{
    const Surface window(8, 8);
    const VRKDeviceContext device = vrkPlatformOpenDevice(window.window());
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(vrkPlatformCreateContext(device), nullptr);
    EXPECT_EQ(vrkPlatformFormatBits(device).depth, 0);
    vrkPlatformSwapBuffers(device);
}

TEST_F(ContextTest, FormatHasWhatWasAskedForAndTwoBuffers)
{
    const Surface window(8, 8);
    const VRKDeviceContext device = vrkPlatformOpenDevice(window.window());
    ASSERT_EQ(vrkPlatformSetFormat(device, {32, 8, 24}), FormatResult::set);
    const SurfaceBits bits = vrkPlatformFormatBits(device);
    EXPECT_EQ(bits.color, 32);
    EXPECT_EQ(bits.alpha, 8);
    EXPECT_EQ(bits.depth, 24);
    PIXELFORMATDESCRIPTOR format = {};
    ASSERT_NE(DescribePixelFormat(device, GetPixelFormat(device), sizeof format, &format), 0);
    const DWORD needed = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
    EXPECT_EQ(format.dwFlags & needed, needed);
    EXPECT_EQ(format.iPixelType, PFD_TYPE_RGBA);
    EXPECT_EQ(vrkPlatformCreatePalette(device), nullptr) << "the format shows colours, no indices";
}

TEST_F(ContextTest, WindowKeepsItsFirstFormatAndTheStartGoesOn)
{
    const VRKWindow window = surface(16, 16);
    const VRKDeviceContext device = GetDC(window);
    PIXELFORMATDESCRIPTOR single = {};
    single.nSize = sizeof single;
    single.nVersion = 1;
    single.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
    single.cColorBits = 24;
    single.cDepthBits = 16;
    ASSERT_TRUE(SetPixelFormat(device, ChoosePixelFormat(device, &single), &single));
    EXPECT_EQ(vrkInitViewport(window, 32, 8, 24, false, 0, true), 0);
    EXPECT_TRUE(logged("Set pix format failed!")) << log();
    EXPECT_FALSE(logged("Response")) << log();
    EXPECT_NE(VRK_hGLRC, nullptr);
}

TEST_F(ContextTest, WindowThatIsGoneEndsIn41)
{
    VRKWindow gone = nullptr;
    {
        const Surface window(8, 8);
        gone = window.window();
    }
    EXPECT_EQ(vrkInitViewport(gone, 32, 8, 24, false, 0, true), 41);
    EXPECT_EQ(log(), "Requested Colorbits: 32 Alphabits: 8 Depthbits: 24\n"
                     "Choose pix format failed!\n"
                     "Fatal error, cannot create rendering context!\n");
    EXPECT_EQ(VRK_hDC, nullptr);
    EXPECT_EQ(VRK_hGLRC, nullptr);
}

TEST_F(ContextTest, OlderContextOnlyStopsBeingCurrent)
{
    const VRKDeviceContext oldDevice = VRK_hDC;
    const VRKRenderingContext old = VRK_hGLRC;
    glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    vrkClear();
    ASSERT_EQ(vrkInitViewport(surface(width, height), 32, 8, 24, false, 0, true), 0);
    vrkClear();
    EXPECT_TRUE(pixelIs(3, 3, {0, 0, 0, 0}));
    ASSERT_TRUE(vrkPlatformMakeCurrent(oldDevice, old));
    EXPECT_TRUE(pixelIs(3, 3, {255, 0, 0, 255}));
}

TEST_F(ContextTest, KnowsWhetherAContextIsCurrent)
{
    EXPECT_TRUE(vrkPlatformHasContext());
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_FALSE(vrkPlatformHasContext());
    ASSERT_TRUE(vrkPlatformMakeCurrent(VRK_hDC, VRK_hGLRC));
    EXPECT_TRUE(vrkPlatformHasContext());
}

TEST_F(ContextTest, ClientAreaIsMeasuredWithoutItsFrame)
{
    const HWND framed = CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr,
                                        nullptr, nullptr, nullptr);
    RECT area = {};
    GetClientRect(framed, &area);
    int size[2] = {};
    vrkPlatformClientSize(framed, &size[0], &size[1]);
    EXPECT_EQ(size[0], area.right);
    EXPECT_EQ(size[1], area.bottom);
    EXPECT_LT(size[1], 200);
    DestroyWindow(framed);
}
