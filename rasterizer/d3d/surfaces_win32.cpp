#include "rasterizer/d3d/surfaces_win32.h"

#include <cstring>
#include <vector>

#include "rasterizer/d3d/choose.h"
#include "rasterizer/d3d/constants.h"

// Missing video memory is told as it is, every other failure by what could not be had.
static uint32_t surfaceFailure(HRESULT result, uint32_t otherwise)
{
    return result == DDERR_OUTOFVIDEOMEMORY ? d3d::outOfVideoMemory : otherwise;
}

static DWORD memoryFor(const D3DGuid& device)
{
    return device == d3d::halDevice || device == d3d::tnlHalDevice ? DDSCAPS_VIDEOMEMORY
                                                                   : DDSCAPS_SYSTEMMEMORY;
}

WindowsD3DSurfaces::~WindowsD3DSurfaces()
{
    release();
}

uint32_t WindowsD3DSurfaces::create(const D3DSurfacesRequest& request)
{
    window = request.window;
    fullScreen = request.fullScreen;
    depthMemory = memoryFor(*request.record->device);
    uint32_t result = createDirectDraw(*request.record);
    if (!d3d::isFailure(result))
        result = fullScreen ? createFullScreen(request) : createWindowed();
    if (!d3d::isFailure(result))
        result = createDevice(*request.record);
    if (!d3d::isFailure(result) && request.depthBuffer)
        result = createDepthBuffer(*request.record);
    return result;
}

uint32_t WindowsD3DSurfaces::createDirectDraw(const D3DDeviceRecord& record)
{
    GUID driver = {};
    if (record.driver)
        driver = toSystem(*record.driver);
    if (FAILED(DirectDrawCreateEx(record.driver ? &driver : nullptr, directDraw.receiveUntyped(),
                                  IID_IDirectDraw7, nullptr)))
        return d3d::directDrawFailed;

    const DWORD level = fullScreen ? DDSCL_EXCLUSIVE | DDSCL_FULLSCREEN | DDSCL_ALLOWREBOOT : DDSCL_NORMAL;
    if (FAILED(directDraw->SetCooperativeLevel(window, level | DDSCL_FPUSETUP)))
        return d3d::cooperativeLevelFailed;

    DDSURFACEDESC2 current = sized<DDSURFACEDESC2>();
    if (FAILED(directDraw->GetDisplayMode(&current)) || current.ddpfPixelFormat.dwRGBBitCount <= 8)
        return d3d::desktopTooShallow;
    return d3d::ok;
}

uint32_t WindowsD3DSurfaces::createFullScreen(const D3DSurfacesRequest& request)
{
    const D3DMode& mode = request.record->fullScreenMode;
    renderWidth = mode.width;
    renderHeight = mode.height;
    viewport = {0, 0, static_cast<LONG>(mode.width), static_cast<LONG>(mode.height)};
    const bool standardVga = mode.width == 320 && mode.height == 200 && mode.bits == 8;
    // A device that offers no mode at all has none to set.
    if (mode.width == 0 ||
        FAILED(directDraw->SetDisplayMode(mode.width, mode.height, mode.bits, mode.refreshRate,
                                          standardVga ? DDSDM_STANDARDVGAMODE : 0)))
        return d3d::badDisplayMode;

    DDSURFACEDESC2 description = sized<DDSURFACEDESC2>();
    description.dwFlags = DDSD_CAPS | DDSD_BACKBUFFERCOUNT;
    description.ddsCaps.dwCaps = DDSCAPS_3DDEVICE | DDSCAPS_PRIMARYSURFACE | DDSCAPS_FLIP | DDSCAPS_COMPLEX;
    description.dwBackBufferCount = 2;
    if (request.stereo)
    {
        description.ddsCaps.dwCaps |= DDSCAPS_VIDEOMEMORY;
        description.ddsCaps.dwCaps2 |= DDSCAPS2_STEREOSURFACELEFT;
    }
    const HRESULT made = directDraw->CreateSurface(&description, primary.receive(), nullptr);
    if (FAILED(made))
        return surfaceFailure(made, d3d::primaryFailed);

    DDSCAPS2 caps = {};
    caps.dwCaps = DDSCAPS_BACKBUFFER;
    if (FAILED(primary->GetAttachedSurface(&caps, back.receive())))
        return d3d::backBufferFailed;
    return d3d::ok;
}

// Where the part of a window that is drawn on lies on the screen.
static RECT clientOnScreen(HWND window)
{
    RECT area = {};
    GetClientRect(window, &area);
    POINT corner = {0, 0};
    ClientToScreen(window, &corner);
    OffsetRect(&area, corner.x, corner.y);
    return area;
}

uint32_t WindowsD3DSurfaces::createWindowed()
{
    viewport = clientOnScreen(window);
    renderWidth = static_cast<DWORD>(viewport.right - viewport.left);
    renderHeight = static_cast<DWORD>(viewport.bottom - viewport.top);

    DDSURFACEDESC2 description = sized<DDSURFACEDESC2>();
    description.dwFlags = DDSD_CAPS;
    description.ddsCaps.dwCaps = DDSCAPS_PRIMARYSURFACE;
    HRESULT made = directDraw->CreateSurface(&description, primary.receive(), nullptr);
    if (FAILED(made))
        return surfaceFailure(made, d3d::primaryFailed);

    ComHolder<IDirectDrawClipper> clipper;
    if (FAILED(directDraw->CreateClipper(0, clipper.receive(), nullptr)) ||
        FAILED(clipper->SetHWnd(0, window)) || FAILED(primary->SetClipper(clipper.get())))
        return d3d::clipperFailed;

    description.dwFlags = DDSD_WIDTH | DDSD_HEIGHT | DDSD_CAPS;
    description.dwWidth = renderWidth;
    description.dwHeight = renderHeight;
    description.ddsCaps.dwCaps = DDSCAPS_OFFSCREENPLAIN | DDSCAPS_3DDEVICE;
    made = directDraw->CreateSurface(&description, back.receive(), nullptr);
    if (FAILED(made))
        return surfaceFailure(made, d3d::backBufferFailed);
    return d3d::ok;
}

uint32_t WindowsD3DSurfaces::createDevice(const D3DDeviceRecord& record)
{
    if (FAILED(directDraw->QueryInterface(IID_IDirect3D7, direct3D.receiveUntyped())))
        return d3d::direct3DFailed;
    const GUID guid = toSystem(*record.device);
    if (FAILED(direct3D->CreateDevice(guid, back.get(), device3D.receive())))
        return d3d::deviceFailed;
    wrapped.emplace(directDraw.get(), direct3D.get(), device3D.get());
    D3DVIEWPORT7 view = {0, 0, renderWidth, renderHeight, 0.0f, 1.0f};
    return FAILED(device3D->SetViewport(&view)) ? d3d::viewportFailed : d3d::ok;
}

static HRESULT CALLBACK takeFormat(DDPIXELFORMAT* format, void* context)
{
    static_cast<std::vector<D3DPixelFormat>*>(context)->push_back(fromSystem(*format));
    return D3DENUMRET_OK;
}

uint32_t WindowsD3DSurfaces::createDepthBuffer(const D3DDeviceRecord& record)
{
    if (record.caps.triangleRaster & d3d::hiddenSurfacesWithoutDepth)
        return d3d::ok;
    DDSURFACEDESC2 description = sized<DDSURFACEDESC2>();
    if (FAILED(back->GetSurfaceDesc(&description)))
        return d3d::backBufferFailed;

    std::vector<D3DPixelFormat> formats;
    direct3D->EnumZBufferFormats(toSystem(*record.device), takeFormat, &formats);
    const D3DPixelFormat* format = chooseDepthFormat(formats, description.ddpfPixelFormat.dwRGBBitCount);
    if (!format)
        return d3d::depthBufferFailed;

    description.dwFlags = DDSD_WIDTH | DDSD_HEIGHT | DDSD_CAPS | DDSD_PIXELFORMAT;
    description.ddsCaps = {};
    description.ddsCaps.dwCaps = DDSCAPS_ZBUFFER | depthMemory;
    description.ddpfPixelFormat = toSystem(*format);
    const HRESULT made = directDraw->CreateSurface(&description, depth.receive(), nullptr);
    if (FAILED(made))
        return surfaceFailure(made, d3d::depthBufferFailed);
    if (FAILED(back->AddAttachedSurface(depth.get())))
        return d3d::depthBufferFailed;
    // Only now the device sees the Z-buffer. One whose depth doesn't suit it is refused here.
    const HRESULT set = device3D->SetRenderTarget(back.get(), 0);
    if (FAILED(set))
        return set == DDERR_INVALIDPIXELFORMAT ? d3d::depthBufferDepth : d3d::renderTargetFailed;
    return d3d::ok;
}

uint32_t WindowsD3DSurfaces::release()
{
    if (directDraw)
        directDraw->SetCooperativeLevel(window, DDSCL_NORMAL);
    wrapped.reset();
    ULONG left = device3D.release();
    back.release();
    depth.release();
    primary.release();
    direct3D.release();
    left += directDraw.release();
    return left > 0 ? d3d::stillReferenced : d3d::ok;
}

D3DDevice* WindowsD3DSurfaces::device()
{
    return wrapped ? &*wrapped : nullptr;
}

D3DBackBufferDescription WindowsD3DSurfaces::backBuffer()
{
    DDSURFACEDESC2 description = sized<DDSURFACEDESC2>();
    if (!back || FAILED(back->GetSurfaceDesc(&description)))
        return {};
    return {description.dwWidth, description.dwHeight, fromSystem(description.ddpfPixelFormat)};
}

uint32_t WindowsD3DSurfaces::testCooperativeLevel()
{
    return directDraw ? code(directDraw->TestCooperativeLevel()) : d3d::ok;
}

uint32_t WindowsD3DSurfaces::present()
{
    if (!primary)
        return d3d::primaryGone;
    if (fullScreen)
        return code(primary->Flip(nullptr, DDFLIP_WAIT));
    // The window may have been moved since the last frame.
    const RECT now = clientOnScreen(window);
    OffsetRect(&viewport, now.left - viewport.left, now.top - viewport.top);
    return code(primary->Blt(&viewport, back.get(), nullptr, DDBLT_WAIT, nullptr));
}

uint32_t WindowsD3DSurfaces::restoreAll()
{
    return directDraw ? code(directDraw->RestoreAllSurfaces()) : d3d::primaryGone;
}

void WindowsD3DSurfaces::giveScreenBack()
{
    if (!fullScreen || !directDraw)
        return;
    directDraw->FlipToGDISurface();
    DrawMenuBar(window);
    RedrawWindow(window, nullptr, nullptr, RDW_FRAME);
}

void WindowsD3DSurfaces::writeText(int x, int y, uint32_t color, const char* text)
{
    HDC context = nullptr;
    if (!back || FAILED(back->GetDC(&context)))
        return;
    SetTextColor(context, color);
    SetBkMode(context, TRANSPARENT);
    ExtTextOutA(context, x, y, 0, nullptr, text, static_cast<UINT>(std::strlen(text)), nullptr);
    back->ReleaseDC(context);
}
