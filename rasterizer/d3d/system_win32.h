#pragma once

#include "rasterizer/d3d/com_win32.h"
#include "rasterizer/d3d/system.h"

/// DirectDraw, Direct3D and the windows of the system.
class WindowsD3DSystem : public D3DSystem
{
public:
    uint32_t enumerate(std::vector<D3DDriverReport>* drivers) override;
    std::unique_ptr<D3DSurfaces> makeSurfaces() override;
    void showBox(VRKWindow window, const char* caption, const char* text, bool warning) override;
    void makeWindowFullScreen(VRKWindow window) override;
    void makeWindowNormal(VRKWindow window) override;
    void closeWindow(VRKWindow window) override;

private:
    LONG keptStyle = 0;
    RECT keptPlace = {};
};
