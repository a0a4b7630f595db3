#include <algorithm>

#include "rasterizer/d3d/choose.h"
#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/enumerate_win32.h"
#include "tests/support/d3dwindow.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

using D3DStartTest = D3DWindowTest;

TEST(D3DIdentifiers, AreTheLibrarys)
{
    EXPECT_EQ(fromSystem(IID_IDirect3DHALDevice), d3d::halDevice);
    EXPECT_EQ(fromSystem(IID_IDirect3DTnLHalDevice), d3d::tnlHalDevice);
    const D3DGuid back = fromSystem(toSystem(d3d::halDevice));
    EXPECT_EQ(back, d3d::halDevice);
}

TEST(D3DPixelFormats, SurviveTheWayThereAndBack)
{
    const D3DPixelFormat color = {DDPF_RGB | DDPF_ALPHAPIXELS, 16, 0xF00, 0xF0, 0xF, 0xF000, 0, 0};
    EXPECT_EQ(fromSystem(toSystem(color)), color);
    const D3DPixelFormat depth = {DDPF_ZBUFFER | DDPF_STENCILBUFFER, 32, 0, 0, 0, 0, 0xFFFFFF00, 8};
    EXPECT_EQ(fromSystem(toSystem(depth)), depth);
}

TEST(D3DEnumeration, FindsThePrimaryDriverWithItsDevicesAndModes)
{
    std::vector<D3DDriverReport> drivers;
    ASSERT_EQ(enumerateDrivers(&drivers), 0u);
    const auto primary =
        std::find_if(drivers.begin(), drivers.end(), [](const auto& d) { return d.primary; });
    ASSERT_NE(primary, drivers.end());
    EXPECT_FALSE(primary->modes.empty());
    EXPECT_TRUE(primary->hardware.caps2 & d3d::canRenderWindowed);
    const auto hal = std::find_if(primary->devices.begin(), primary->devices.end(),
                                  [](const auto& d) { return d.caps.guid == d3d::halDevice; });
    ASSERT_NE(hal, primary->devices.end());
    EXPECT_TRUE(hal->caps.device & d3d::hardwareRasterization);
    EXPECT_FALSE(hal->name.empty());
    D3DDeviceTable table;
    EXPECT_EQ(collectDevices(drivers, &table), 0u);
    EXPECT_NE(selectDevice(&table, false, 0), nullptr);
}

TEST_F(D3DStartTest, StartsInAWindow)
{
    ASSERT_EQ(start(), 0) << log();
    EXPECT_EQ(d3d->active, 1);
    EXPECT_EQ(vrkViewport.width, 64.0f);
    EXPECT_EQ(vrkViewport.height, 48.0f);
    EXPECT_EQ(d3d->backBufferDescription.width, 64u);
    EXPECT_EQ(d3d->backBufferDescription.height, 48u);
    EXPECT_GE(d3d->backBufferDescription.format.bits, 16u);
    // Which of the plain ones depends on what the drivers call hardware.
    EXPECT_TRUE(d3d->selectedDevice->hardware);
    EXPECT_TRUE(d3d->selectedDevice->desktopCompatible);
    EXPECT_NE(*d3d->selectedDevice->device, d3d::tnlHalDevice);
    EXPECT_TRUE(system->boxes.empty());
    EXPECT_EQ(log(), "");
}

TEST_F(D3DStartTest, TransformDeviceOnRequest)
{
    ASSERT_EQ(start(true), 0);
    EXPECT_EQ(*d3d->selectedDevice->device, d3d::tnlHalDevice);
}

TEST_F(D3DStartTest, SecondaryDeviceStartsWhereThereIsOne)
{
    ASSERT_EQ(start(false, 1), 0);
    Color c = {1, 0, 0, 1};
    vrkSetClearColor(&c);
    vrkClear();
    EXPECT_TRUE(pixelIs(5, 5, {252, 0, 0, 255}));
}

TEST_F(D3DStartTest, StartsAndStopsTwice)
{
    for (int i = 0; i < 2; ++i)
    {
        ASSERT_EQ(start(), 0);
        vrkClear();
        vrkSwapBuffers();
        EXPECT_EQ(d3d->shutdown(), 0u); // nothing is left behind
        vrkUnInit3D();
    }
    ASSERT_EQ(start(), 0);
    ASSERT_EQ(start(), 0); // without a stop between
}

TEST_F(D3DStartTest, NothingInTheWindowFails)
{
    DestroyWindow(window);
    EXPECT_EQ(start(), 53);
    EXPECT_EQ(log(), "Fatal! DX has run out of memory!\n");
    ASSERT_EQ(system->boxes.size(), 1u);
    EXPECT_TRUE(system->boxes[0].starts_with("Id3d: "));
    EXPECT_TRUE(system->boxes[0].ends_with("Unable to initialize 3D hardware"));
}

TEST_F(D3DStartTest, DefaultStatesAreTheDevices)
{
    ASSERT_EQ(start(), 0);
    const std::pair<D3DRENDERSTATETYPE, DWORD> states[] = {{D3DRENDERSTATE_AMBIENT, 0},
                                                           {D3DRENDERSTATE_SRCBLEND, D3DBLEND_ONE},
                                                           {D3DRENDERSTATE_DESTBLEND, D3DBLEND_ONE},
                                                           {D3DRENDERSTATE_ZENABLE, 1},
                                                           {D3DRENDERSTATE_ALPHATESTENABLE, 1},
                                                           {D3DRENDERSTATE_ALPHAREF, 127},
                                                           {D3DRENDERSTATE_ALPHAFUNC, D3DCMP_GREATER},
                                                           {D3DRENDERSTATE_SHADEMODE, D3DSHADE_GOURAUD},
                                                           {D3DRENDERSTATE_LIGHTING, 0},
                                                           {D3DRENDERSTATE_DITHERENABLE, 0},
                                                           {D3DRENDERSTATE_SPECULARENABLE, 0},
                                                           {D3DRENDERSTATE_FOGENABLE, 0},
                                                           {D3DRENDERSTATE_FOGTABLEMODE, D3DFOG_EXP2},
                                                           {D3DRENDERSTATE_FOGCOLOR, 0x7F7F7F7F}};
    for (const auto& [state, value] : states)
        EXPECT_EQ(d3d->device->renderState(state), value) << state;
    const std::pair<D3DTEXTURESTAGESTATETYPE, DWORD> stages[] = {
        {D3DTSS_COLOROP, D3DTOP_MODULATE}, {D3DTSS_COLORARG1, D3DTA_TEXTURE},
        {D3DTSS_COLORARG2, D3DTA_DIFFUSE}, {D3DTSS_ALPHAOP, D3DTOP_SELECTARG1},
        {D3DTSS_ALPHAARG1, D3DTA_TEXTURE}, {D3DTSS_MINFILTER, D3DTFN_LINEAR},
        {D3DTSS_MAGFILTER, D3DTFG_LINEAR}, {D3DTSS_MIPFILTER, D3DTFP_LINEAR},
        {D3DTSS_ADDRESS, D3DTADDRESS_WRAP}};
    for (const auto& [kind, value] : stages)
        EXPECT_EQ(d3d->device->stageState(0, kind), value) << kind;
}

TEST_F(D3DStartTest, ClearedWhiteIs252)
{
    ASSERT_EQ(start(), 0);
    Color c = {3.0f, 0.5f, -1.0f, 1.0f};
    vrkSetClearColor(&c);
    vrkClear();
    EXPECT_TRUE(pixelIs(0, 0, {252, 126, 0, 255}));
    EXPECT_TRUE(pixelIs(63, 47, {252, 126, 0, 255}));
}

// The window system takes its time to show what was presented, and paints the window before that.
static bool screenShows(int x, int y, COLORREF color)
{
    for (int i = 0; i < 100; ++i)
    {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&message);
        const HDC screen = GetDC(nullptr);
        const COLORREF found = GetPixel(screen, x, y);
        ReleaseDC(nullptr, screen);
        if (found == color)
            return true;
        Sleep(20);
        vrkSwapBuffers();
    }
    return false;
}

TEST_F(D3DStartTest, PresentedPictureIsOnTheScreenWhereTheWindowIs)
{
    ASSERT_EQ(start(), 0);
    Color c = {1.0f, 0.5f, 0.25f, 1.0f};
    vrkSetClearColor(&c);
    vrkClear();
    vrkSwapBuffers();
    EXPECT_TRUE(screenShows(25, 15, RGB(252, 126, 63)));
    SetWindowPos(window, nullptr, 200, 150, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    vrkSwapBuffers();
    EXPECT_TRUE(screenShows(205, 155, RGB(252, 126, 63)));
}

TEST_F(D3DStartTest, ChangedModeRebuildsAndDrawsOn)
{
    ASSERT_EQ(start(), 0);
    system->cooperativeLevel = d3d::wrongMode;
    vrkDXBeginScene();
    EXPECT_TRUE(system->boxes.empty());
    Color c = {0, 1, 0, 1};
    vrkSetClearColor(&c);
    vrkClear();
    vrkDXEndScene();
    EXPECT_TRUE(pixelIs(9, 9, {0, 252, 0, 255}));
    EXPECT_EQ(d3d->shutdown(), 0u);
}

TEST_F(D3DStartTest, WindowBecomesAFullScreenAndComesBack)
{
    const HDC screen = GetDC(nullptr);
    const int screenWidth = GetDeviceCaps(screen, HORZRES), screenHeight = GetDeviceCaps(screen, VERTRES);
    ReleaseDC(nullptr, screen);
    const LONG style = GetWindowLongA(window, GWL_STYLE);
    RECT before, after;
    GetWindowRect(window, &before);

    ASSERT_EQ(start(), 0);
    // The screen's own mode, which every screen can show.
    d3d->selectedDevice->modes = {{DWORD(screenWidth), DWORD(screenHeight), 32, 0}};
    d3d->selectedDevice->fullScreenMode = d3d->selectedDevice->modes[0];
    d3d->selectedDevice->windowed = false;
    system->cooperativeLevel = d3d::wrongMode;
    vrkDXBeginScene(); // still thinks of a window, but the record says otherwise: nothing is rebuilt
    EXPECT_EQ(d3d->backBufferDescription.width, 64u);
    vrkDXEndScene();

    d3d->selectedDevice->windowed = true;
    system->makeWindowFullScreen(window);
    EXPECT_EQ(GetWindowLongA(window, GWL_STYLE) & LONG(WS_POPUP | WS_VISIBLE | WS_SYSMENU),
              LONG(WS_POPUP | WS_VISIBLE | WS_SYSMENU));
    SetWindowPos(window, nullptr, 0, 0, 300, 300, 0);
    system->makeWindowNormal(window);
    EXPECT_EQ(GetWindowLongA(window, GWL_STYLE), style);
    GetWindowRect(window, &after);
    EXPECT_TRUE(EqualRect(&before, &after));
}

TEST_F(D3DStartTest, FullScreenInTheScreensOwnMode)
{
    const HDC screen = GetDC(nullptr);
    const int screenWidth = GetDeviceCaps(screen, HORZRES), screenHeight = GetDeviceCaps(screen, VERTRES);
    ReleaseDC(nullptr, screen);
    SetWindowPos(window, nullptr, 0, 0, screenWidth, screenHeight, 0);
    ASSERT_EQ(start(false, 0, false), 0) << (system->boxes.empty() ? "" : system->boxes.back());
    EXPECT_EQ(d3d->backBufferDescription.width, DWORD(screenWidth));
    EXPECT_EQ(d3d->backBufferDescription.height, DWORD(screenHeight));
    Color c = {1, 0, 0, 1};
    vrkSetClearColor(&c);
    for (int i = 0; i < 3; ++i)
    {
        vrkDXBeginScene();
        vrkClear();
        vrkDXEndScene();
        vrkSwapBuffers();
    }
    d3d->pause();
    d3d->resume();
    EXPECT_EQ(d3d->shutdown(), 0u);
    EXPECT_TRUE(system->boxes.empty());
}
