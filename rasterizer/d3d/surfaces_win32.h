// The surfaces of a window or of a full screen, with their device.
#pragma once

#include <optional>

#include "rasterizer/d3d/com_win32.h"
#include "rasterizer/d3d/device_win32.h"
#include "rasterizer/d3d/system.h"

class WindowsD3DSurfaces : public D3DSurfaces
{
public:
    ~WindowsD3DSurfaces() override;

    uint32_t create(const D3DSurfacesRequest& request) override;
    uint32_t release() override;
    D3DDevice* device() override;
    D3DBackBufferDescription backBuffer() override;
    uint32_t testCooperativeLevel() override;
    uint32_t present() override;
    uint32_t restoreAll() override;
    void giveScreenBack() override;
    void writeText(int x, int y, uint32_t color, const char* text) override;

    /// For whoever reads the picture: the surface that is drawn on.
    IDirectDrawSurface7* renderTarget() const { return back.get(); }

private:
    HWND window = nullptr;
    bool fullScreen = false;
    RECT viewport = {}; // in screen coordinates
    DWORD renderWidth = 0, renderHeight = 0;
    DWORD depthMemory = 0;
    ComHolder<IDirectDraw7> directDraw;
    ComHolder<IDirect3D7> direct3D;
    ComHolder<IDirectDrawSurface7> primary, back, depth;
    ComHolder<IDirect3DDevice7> device3D;
    std::optional<WindowsD3DDevice> wrapped;

    uint32_t createDirectDraw(const D3DDeviceRecord& record);
    uint32_t createFullScreen(const D3DSurfacesRequest& request);
    uint32_t createWindowed();
    uint32_t createDevice(const D3DDeviceRecord& record);
    uint32_t createDepthBuffer(const D3DDeviceRecord& record);
};
