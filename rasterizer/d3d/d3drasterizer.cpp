// The life of rasterizer 1: start, surfaces lost and built again, shutdown.

#include "rasterizer/d3d/d3drasterizer.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

#include "rasterizer/d3d/choose.h"
#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/errorbox.h"
#include "rasterizer/d3d/portabletable.h"
#include "rasterizer/d3d/viewmatrix.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"

D3DRasterizer* vrkDirect3D = nullptr;

static int pauseCount = 0;

static const float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

D3DRasterizer* selectedDirect3D()
{
    return vrkSelectedRasterizer == 1 ? vrkDirect3D : nullptr;
}

bool makeDirect3D()
{
    if (!vrkDirect3D)
        if (std::unique_ptr<D3DSystem> system = makeD3DSystem())
            vrkDirect3D = new (std::nothrow) D3DRasterizer(std::move(system));
    return vrkDirect3D != nullptr;
}

D3DRasterizer::D3DRasterizer(std::unique_ptr<D3DSystem> libraries)
    : device(nullptr), backBufferDescription{}, useDepthBuffer(1), selectedDevice(nullptr), useTnL(0),
      secondaryDevice(0), ready(0), active(0), clearColor(0), window(nullptr), system(std::move(libraries)),
      width(0), height(0), colorBits(0), builtWindowed(true)
{
    std::copy(std::begin(identity), std::end(identity), viewMatrix);
    std::copy(std::begin(identity), std::end(identity), projectionMatrix);
}

D3DRasterizer::~D3DRasterizer()
{
    shutdown();
}

int D3DRasterizer::pause()
{
    return setPaused(true);
}

int D3DRasterizer::resume()
{
    return setPaused(false);
}

int D3DRasterizer::setPaused(bool paused)
{
    pauseCount += paused ? 1 : -1;
    active = pauseCount == 0;
    if (paused && pauseCount == 1 && surfaces && !builtWindowed)
        surfaces->giveScreenBack();
    return 1;
}

void D3DRasterizer::showError(uint32_t code, int mode)
{
    system->showBox(window, errorBoxCaption, errorBoxText(code, mode).c_str(), mode == boxNoHardware);
}

uint32_t D3DRasterizer::chooseDevice(bool windowed)
try
{
    std::vector<D3DDriverReport> drivers;
    uint32_t code = system->enumerate(&drivers);
    if (!d3d::isFailure(code))
        code = collectDevices(drivers, &devices);
    if (d3d::isFailure(code))
        return code;
    selectedDevice = selectDevice(&devices, useTnL, secondaryDevice);
    if (!selectedDevice)
        return d3d::noSuitableDevice;
    selectedDevice->windowed = windowed;
    return d3d::ok;
}
catch (const std::bad_alloc&)
{
    return d3d::outOfMemory;
}

// Makes the surfaces for the mode and brings the device into the state that all drawing expects.
uint32_t D3DRasterizer::setUpMode()
{
    selectMode(selectedDevice, width, height, colorBits);
    builtWindowed = selectedDevice->windowed;
    const D3DSurfacesRequest request = {selectedDevice, window, !selectedDevice->windowed,
                                        selectedDevice->stereo, useDepthBuffer > 0};
    const uint32_t code = surfaces->create(request);
    if (d3d::isFailure(code))
        return code;
    device = surfaces->device();
    backBufferDescription = surfaces->backBuffer();
    ready = 1;
    restoreState();
    return d3d::ok;
}

uint32_t D3DRasterizer::initialize(VRKWindow hostWindow, int pixelWidth, int pixelHeight, int bits,
                                   bool wantTnL, int wantSecondary, bool windowed)
{
    shutdown();
    useTnL = wantTnL;
    secondaryDevice = wantSecondary;
    window = hostWindow;
    width = pixelWidth;
    height = pixelHeight;
    colorBits = bits;

    uint32_t code = chooseDevice(windowed);
    if (!d3d::isFailure(code))
    {
        surfaces = system->makeSurfaces();
        if (!surfaces)
            code = d3d::outOfMemory;
    }
    if (d3d::isFailure(code))
    {
        showError(code, boxApplicationExits);
        return code;
    }

    code = setUpMode();
    if (d3d::isFailure(code))
    {
        showError(code, boxNoHardware);
        shutdown();
        return d3d::failed;
    }
    matrixStack.emplace();
    fillDirect3DConstants();
    active = 1;
    return d3d::ok;
}

uint32_t D3DRasterizer::releaseSurfaces()
{
    releaseAllTextures();
    device = nullptr;
    return surfaces->release();
}

uint32_t D3DRasterizer::shutdown()
{
    ready = 0;
    active = 0;
    if (!surfaces)
        return d3d::ok;
    const uint32_t code = releaseSurfaces();
    surfaces.reset();
    selectedDevice = nullptr;
    for (D3DDeviceRecord& record : devices.records)
        record.modes = {};
    devices.count = 0;
    return code;
}

void D3DRasterizer::restoreState()
{
    restoreTextures();
    device->setMaterial({0.0f, 0.0f, 0.0f, 1.0f}, {0.0f, 0.0f, 0.0f, 1.0f});
    device->setTransform(d3d::view, viewMatrix);
    // Until vrkSetFOV knows better.
    buildProjectionMatrix(projectionMatrix, 1.5700000524520874f, 1.0f, 1.0f, 500.0f);
    device->setTransform(d3d::projection, projectionMatrix);

    setRenderState(d3d::ambient, 0u);
    vrkBlendFunc(VRK_ONE, VRK_ONE);
    enable(VRK_DEPTH_TEST);
    enable(VRK_ALPHA_TEST);
    vrkAlphaFunc(VRK_GREATER, 0.5f);
    vrkShadeModel(VRK_SMOOTH);
    setRenderState(d3d::lighting, 0u);
    setRenderState(d3d::ditherEnable, 0u);
    setRenderState(d3d::specularEnable, 0u);

    setColorStage(0, d3d::modulate, d3d::argTexture, d3d::argDiffuse);
    setAlphaStage(0, d3d::selectArg1, d3d::argTexture, d3d::argDiffuse);
    device->setStageState(0, d3d::minFilter, d3d::filterLinear);
    device->setStageState(0, d3d::magFilter, d3d::filterLinear);
    device->setStageState(0, d3d::mipFilter, vrkGetMipMapType() == 35 ? d3d::mipLinear : d3d::mipPoint);
    device->setStageState(0, d3d::address, d3d::addressWrap);

    enable(VRK_FOG);
    setDensityFog({0.5f, 0.5f, 0.5f, 0.5f}, 0.01f);
    disable(VRK_FOG);
}

void D3DRasterizer::rebuildSurfaces()
{
    releaseSurfaces();
    if (selectedDevice->windowed != builtWindowed)
    {
        if (selectedDevice->windowed)
            system->makeWindowNormal(window);
        else
            system->makeWindowFullScreen(window);
    }
    const uint32_t code = setUpMode();
    if (d3d::isFailure(code))
    {
        showError(code, boxApplicationExits);
        system->closeWindow(window);
        return;
    }
    // The device came up with the projection of a start.
    setProjection(vrkViewport.fov, vrkViewport.aspect, vrkViewport.nearClip, vrkViewport.farClip);
}

void D3DRasterizer::clear(uint32_t flags, float z)
{
    if (device)
        device->clear(flags & (d3d::clearTarget | d3d::clearDepth), clearColor, z);
}

uint32_t D3DRasterizer::present()
{
    if (!surfaces)
        return d3d::primaryGone;
    const uint32_t code = surfaces->present();
    return code == d3d::surfaceLost ? restoreSurfaces() : code;
}

// While another program has the screen, surfaces stay lost: then the next frame tries again.
uint32_t D3DRasterizer::restoreSurfaces()
{
    const uint32_t code = surfaces->restoreAll();
    if (!d3d::isFailure(code))
        restoreTextures();
    return code;
}

void D3DRasterizer::beginScene()
{
    if (!device)
        return;
    // That somebody else has the screen to himself is no reason to stop: what is drawn then isn't seen.
    if (surfaces->testCooperativeLevel() == d3d::wrongMode && selectedDevice->windowed)
        rebuildSurfaces();
    if (!device)
        return;
    if (d3d::isFailure(device->beginScene()))
        system->showBox(window, errorBoxCaption, "BeginScene failed", false);
}

void D3DRasterizer::endScene()
{
    if (device)
        device->endScene();
}

void D3DRasterizer::restoreTextures()
{
    buildAllTextures(textureTarget());
}

D3DTextureTarget D3DRasterizer::textureTarget() const
{
    if (!device)
        return {};
    return {device, selectedDevice->hardware, selectedDevice->caps.triangleTexture};
}
