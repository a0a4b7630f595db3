// Contexts on off-screen surfaces.

#include "platform/glcontext.h"

#include <EGL/egl.h>
#include <GL/gl.h>

#include "platform/gldevice.h"
#include "tests/support/engine.h"
#include "vornik/rasterizer/startup.h"

using ContextTest = EngineTest;

TEST(FormatDistance, IsZeroForWhatWasAskedFor)
{
    EXPECT_EQ(formatDistance({24, 8, 24}, {24, 8, 24}), 0);
    EXPECT_EQ(formatDistance({16, 0, 16}, {16, 0, 16}), 0);
    EXPECT_EQ(formatDistance({32, 8, 24}, {24, 8, 24}), 0) << "32 bits are 24 and a byte of padding or alpha";
}

TEST(FormatDistance, MissingBitsWeighMoreThanSurplusOnes)
{
    EXPECT_LT(formatDistance({16, 0, 16}, {24, 8, 32}), formatDistance({17, 0, 16}, {16, 0, 16}));
    EXPECT_LT(formatDistance({24, 0, 32}, {24, 0, 24}), formatDistance({24, 0, 32}, {24, 0, 16}));
    EXPECT_LT(formatDistance({24, 0, 24}, {24, 0, 24}), formatDistance({24, 0, 24}, {24, 0, 32}));
    EXPECT_LT(formatDistance({24, 0, 24}, {24, 0, 24}), formatDistance({24, 0, 24}, {24, 8, 24}));
    EXPECT_LT(formatDistance({24, 8, 24}, {24, 8, 24}), formatDistance({24, 8, 24}, {24, 0, 24}));
}

TEST(FormatDistance, ColourComesFirstAndDepthLast)
{
    EXPECT_GT(formatDistance({24, 8, 24}, {23, 8, 24}), formatDistance({24, 8, 24}, {24, 7, 24}));
    EXPECT_GT(formatDistance({24, 8, 24}, {24, 7, 24}), formatDistance({24, 8, 24}, {24, 8, 23}));
}

TEST_F(ContextTest, NullDeviceAnswersEveryCall)
{
    EXPECT_EQ(vrkPlatformOpenDevice(nullptr), nullptr);
    EXPECT_EQ(vrkPlatformSetFormat(nullptr, {32, 8, 24}), FormatResult::noneFits);
    EXPECT_EQ(vrkPlatformFormatBits(nullptr).color, 0);
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
    const VRKNativeWindow window = {nullptr, 0, 8, 8};
    const VRKDeviceContext device = vrkPlatformOpenDevice(&window);
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(vrkPlatformCreateContext(device), nullptr);
    EXPECT_EQ(vrkPlatformFormatBits(device).depth, 0);
    vrkPlatformSwapBuffers(device);
}

TEST_F(ContextTest, FormatIsTheNearestThatExists)
{
    const VRKNativeWindow window = {nullptr, 0, 8, 8};
    const auto obtained = [&](const SurfaceBits& wanted)
    {
        const VRKDeviceContext device = vrkPlatformOpenDevice(&window);
        EXPECT_EQ(vrkPlatformSetFormat(device, wanted), FormatResult::set);
        return vrkPlatformFormatBits(device);
    };
    EXPECT_EQ(obtained({32, 8, 24}).alpha, 8);
    EXPECT_EQ(obtained({32, 8, 24}).depth, 24);
    EXPECT_EQ(obtained({32, 8, 24}).color, 32);
    EXPECT_EQ(obtained({32, 0, 0}).depth, 0);
    EXPECT_EQ(obtained({24, 0, 24}).alpha, 0);
    EXPECT_EQ(obtained({24, 0, 24}).color, 24);
    EXPECT_EQ(obtained({24, 0, 16}).depth, 16);
}

TEST_F(ContextTest, OlderContextOnlyStopsBeingCurrent)
{
    const VRKNativeWindow window = {nullptr, 0, width, height};
    const VRKDeviceContext oldDevice = VRK_hDC;
    const VRKRenderingContext old = VRK_hGLRC;
    glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    vrkClear();
    ASSERT_EQ(vrkInitViewport(&window, 32, 8, 24, false, 0, true), 0);
    vrkClear();
    EXPECT_TRUE(pixelIs(3, 3, {0, 0, 0, 0}));
    vrkPlatformSwapBuffers(oldDevice);
    ASSERT_TRUE(vrkPlatformMakeCurrent(oldDevice, old));
    EXPECT_TRUE(pixelIs(3, 3, {255, 0, 0, 255}));
}

TEST_F(ContextTest, KnowsWhetherAContextIsCurrent)
{
    EXPECT_TRUE(vrkPlatformHasContext());
    releaseOffscreenContext();
    EXPECT_FALSE(vrkPlatformHasContext());
    ASSERT_TRUE(vrkPlatformMakeCurrent(VRK_hDC, VRK_hGLRC));
    EXPECT_TRUE(vrkPlatformHasContext());
}

TEST_F(ContextTest, HostsOwnChoiceOfInterfaceStays)
{
    ASSERT_TRUE(eglBindAPI(EGL_OPENGL_ES_API));
    const VRKNativeWindow window = {nullptr, 0, 8, 8};
    EXPECT_EQ(vrkInitViewport(&window, 32, 8, 24, false, 0, true), 0);
    EXPECT_TRUE(vrkPlatformHasContext());
    EXPECT_EQ(eglQueryAPI(), static_cast<EGLenum>(EGL_OPENGL_ES_API));
    EXPECT_NE(glGetString(GL_VERSION), nullptr);
}

TEST_F(ContextTest, SurfaceWithoutAreaKeepsItsSize)
{
    const VRKNativeWindow window = {nullptr, 0, 0, 7};
    const VRKDeviceContext device = vrkPlatformOpenDevice(&window);
    EXPECT_EQ(vrkPlatformSetFormat(device, {32, 8, 24}), FormatResult::set);
    EXPECT_TRUE(vrkPlatformMakeCurrent(device, vrkPlatformCreateContext(device)));
    int size[2] = {5, 5};
    vrkPlatformClientSize(&window, &size[0], &size[1]);
    EXPECT_EQ(size[0], 0);
    EXPECT_EQ(size[1], 7);
    VRK_hGLRC = nullptr; // another context is current now: the next test starts anew
}
