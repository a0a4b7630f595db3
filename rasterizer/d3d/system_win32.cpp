#include "rasterizer/d3d/system_win32.h"

#include <new>

#include "rasterizer/d3d/enumerate_win32.h"
#include "rasterizer/d3d/surfaces_win32.h"

std::unique_ptr<D3DSystem> makeD3DSystem()
{
    return std::unique_ptr<D3DSystem>(new (std::nothrow) WindowsD3DSystem);
}

uint32_t WindowsD3DSystem::enumerate(std::vector<D3DDriverReport>* drivers)
{
    return enumerateDrivers(drivers);
}

std::unique_ptr<D3DSurfaces> WindowsD3DSystem::makeSurfaces()
{
    return std::unique_ptr<D3DSurfaces>(new (std::nothrow) WindowsD3DSurfaces);
}

void WindowsD3DSystem::showBox(VRKWindow window, const char* caption, const char* text, bool warning)
{
    MessageBoxA(window, text, caption, MB_OK | (warning ? MB_ICONWARNING : MB_ICONERROR));
}

void WindowsD3DSystem::makeWindowFullScreen(VRKWindow window)
{
    keptStyle = GetWindowLongA(window, GWL_STYLE);
    GetWindowRect(window, &keptPlace);
    SetWindowLongA(window, GWL_STYLE, static_cast<LONG>(WS_POPUP | WS_VISIBLE | WS_SYSMENU));
}

void WindowsD3DSystem::makeWindowNormal(VRKWindow window)
{
    SetWindowLongA(window, GWL_STYLE, keptStyle);
    SetWindowPos(window, HWND_NOTOPMOST, keptPlace.left, keptPlace.top, keptPlace.right - keptPlace.left,
                 keptPlace.bottom - keptPlace.top, SWP_SHOWWINDOW);
}

void WindowsD3DSystem::closeWindow(VRKWindow window)
{
    SendMessageA(window, WM_CLOSE, 0, 0);
}
