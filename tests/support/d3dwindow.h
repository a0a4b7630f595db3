// Rasterizer 1 on the system's own libraries, in a window of 64 by 48 pixels whose picture is read from the
// back buffer. Windows only.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/surfaces_win32.h"
#include "rasterizer/d3d/system_win32.h"
#include "tests/support/engine.h"
#include "tests/support/tempfolder.h"

/// The libraries, with boxes noted instead of shown.
class QuietD3DSystem : public WindowsD3DSystem
{
public:
    std::unique_ptr<D3DSurfaces> makeSurfaces() override;
    void showBox(VRKWindow window, const char* caption, const char* text, bool warning) override;
    void closeWindow(VRKWindow window) override;

    std::vector<std::string> boxes;
    int windowsClosed = 0;
    uint32_t cooperativeLevel = 0; ///< said instead of the libraries' answer, once, when it isn't 0
    uint32_t presentResult = 0;    ///< the same of present
};

class D3DWindowTest : public ::testing::Test
{
protected:
    D3DWindowTest();
    // What SetUp makes, and TearDown takes away again.
    void open();
    void close();
    ~D3DWindowTest() override;
    void SetUp() override;
    void TearDown() override;

    /// @return what vrkInitViewport said
    int start(bool useTnL = false, int secondaryDevice = 0, bool windowed = true, int colorBits = 32);
    WindowsD3DSurfaces& surfaces() { return static_cast<WindowsD3DSurfaces&>(*d3d->surfaces); }
    /// Of the back buffer, counted from the top left.
    std::vector<Pixel> pixels();
    Pixel pixel(int x, int y);
    ::testing::AssertionResult pixelIs(int x, int y, const Pixel& expected, int tolerance = 0);
    /// Pixels that differ from black.
    int drawnPixels();
    std::string log() const { return folder.readText("log"); }

    const int width = 64, height = 48;
    HWND window;
    QuietD3DSystem* system;
    D3DRasterizer* d3d;
    TempFolder folder;
};

/// Started, in the state of a start, cleared to black, in a scene, with a camera at the origin that looks
/// along x: y runs to the right, z up. Starting takes its time, so the tests of a suite draw in one window.
class D3DDrawingTest : public D3DWindowTest
{
protected:
    void SetUp() override;
    void TearDown() override;
    static void TearDownTestSuite();
};
