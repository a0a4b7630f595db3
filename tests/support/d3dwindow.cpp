#include "tests/support/d3dwindow.h"

#include <sstream>
#include <utility>

#include "rasterizer/d3d/textures.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

// Surfaces that can be told to say that something has happened to them.
class TestSurfaces : public WindowsD3DSurfaces
{
public:
    explicit TestSurfaces(QuietD3DSystem* owner) : system(owner) {}
    uint32_t testCooperativeLevel() override
    {
        const uint32_t told = std::exchange(system->cooperativeLevel, 0);
        return told ? told : WindowsD3DSurfaces::testCooperativeLevel();
    }
    uint32_t present() override
    {
        const uint32_t told = std::exchange(system->presentResult, 0);
        return told ? told : WindowsD3DSurfaces::present();
    }

private:
    QuietD3DSystem* system;
};

std::unique_ptr<D3DSurfaces> QuietD3DSystem::makeSurfaces()
{
    return std::make_unique<TestSurfaces>(this);
}

void QuietD3DSystem::showBox(VRKWindow, const char* caption, const char* text, bool)
{
    boxes.push_back(std::string(caption) + ": " + text);
}

void QuietD3DSystem::closeWindow(VRKWindow)
{
    ++windowsClosed;
}

D3DWindowTest::D3DWindowTest() : window(nullptr), system(nullptr), d3d(nullptr) {}

D3DWindowTest::~D3DWindowTest() = default;

void D3DWindowTest::SetUp()
{
    open();
    ASSERT_NE(window, nullptr) << "no window on this display";
}

void D3DWindowTest::TearDown()
{
    close();
}

void D3DWindowTest::open()
{
    vrkInitErrorLog(folder.path("log").c_str());
    window = CreateWindowA("STATIC", "Vornik", WS_POPUP | WS_VISIBLE, 20, 10, width, height, nullptr, nullptr,
                           nullptr, nullptr);
    auto libraries = std::make_unique<QuietD3DSystem>();
    system = libraries.get();
    d3d = vrkDirect3D = new D3DRasterizer(std::move(libraries));
    EXPECT_EQ(vrkSelectRasterizer(1), 0);
    vrkSetFPS(100);
    vrkSetGamma(1.0f);
    vrkCurrentMipMapType = 35;
}

void D3DWindowTest::close()
{
    EXPECT_EQ(d3d->shutdown(), 0u);
    delete d3d;
    vrkDirect3D = nullptr;
    forgetAllTextures();
    vrkSelectRasterizer(0);
    DestroyWindow(window);
    vrkInitErrorLog(3);
}

int D3DWindowTest::start(bool useTnL, int secondaryDevice, bool windowed, int colorBits)
{
    return vrkInitViewport(window, colorBits, 0, 32, useTnL, secondaryDevice, windowed);
}

std::vector<Pixel> D3DWindowTest::pixels()
{
    std::vector<Pixel> result;
    IDirectDrawSurface7* back = surfaces().renderTarget();
    DDSURFACEDESC2 locked = sized<DDSURFACEDESC2>();
    if (FAILED(back->Lock(nullptr, &locked, DDLOCK_WAIT | DDLOCK_READONLY, nullptr)))
        return result;
    for (DWORD y = 0; y < locked.dwHeight; ++y)
    {
        const auto* row = reinterpret_cast<const uint32_t*>(static_cast<const char*>(locked.lpSurface) +
                                                            static_cast<ptrdiff_t>(y) * locked.lPitch);
        for (DWORD x = 0; x < locked.dwWidth; ++x)
            result.push_back({int(row[x] >> 16 & 255), int(row[x] >> 8 & 255), int(row[x] & 255), 255});
    }
    back->Unlock(nullptr);
    return result;
}

Pixel D3DWindowTest::pixel(int x, int y)
{
    return pixels().at(static_cast<size_t>(y * width + x));
}

::testing::AssertionResult D3DWindowTest::pixelIs(int x, int y, const Pixel& expected, int tolerance)
{
    const Pixel found = pixel(x, y);
    if (isNear(found, expected, tolerance))
        return ::testing::AssertionSuccess();
    std::ostringstream text;
    text << "pixel " << x << ", " << y << " is " << found << " instead of " << expected;
    return ::testing::AssertionFailure() << text.str();
}

int D3DWindowTest::drawnPixels()
{
    int drawn = 0;
    for (const Pixel& p : pixels())
        drawn += p.r || p.g || p.b;
    return drawn;
}

// What the tests of a suite share.
static struct
{
    HWND window = nullptr;
    QuietD3DSystem* system = nullptr;
} shared;

void D3DDrawingTest::SetUp()
{
    if (vrkDirect3D)
    {
        window = shared.window;
        system = shared.system;
        d3d = vrkDirect3D;
        system->boxes.clear();
        vrkInitErrorLog(folder.path("log").c_str());
        vrkSelectRasterizer(1);
    }
    else
        open();
    shared = {window, system};
    ASSERT_TRUE(d3d->device || start() == 0) << (system->boxes.empty() ? "" : system->boxes.back());
    d3d->restoreState();
    vrkSetFOV(90.0f);
    vrkDisable(VRK_TEXTURE);
    vrkDisable(VRK_BLEND);
    vrkEnable(VRK_CULL_FACE);
    vrkDepthFunc(VRK_LEQUAL);
    vrkDepthMask(VRK_TRUE);

    Color black = {0, 0, 0, 0};
    vrkSetClearColor(&black);
    vrkClear();
    vrkDXBeginScene();
    vrkInitMatrix();
    vrkLookAt(0, 0, 0, 1, 0, 0, 0, 0, 1);
}

void D3DDrawingTest::TearDown()
{
    vrkDXEndScene();
    releaseAllTextures();
    forgetAllTextures();
    vrkSelectRasterizer(0);
    vrkInitErrorLog(3);
}

void D3DDrawingTest::TearDownTestSuite()
{
    EXPECT_EQ(vrkDirect3D->shutdown(), 0u);
    delete vrkDirect3D;
    vrkDirect3D = nullptr;
    DestroyWindow(shared.window);
}
