// A window that is never shown: the back buffer is there all the same.

#include "apps/vornik/surface.h"

#include <windows.h>

struct Surface::System
{
    HWND window;
};

Surface::Surface(int width, int height)
    : system(new System{CreateWindowExA(0, "STATIC", "Vornik", WS_POPUP, 0, 0, width, height, nullptr,
                                        nullptr, GetModuleHandleA(nullptr), nullptr)})
{
}

Surface::~Surface()
{
    DestroyWindow(system->window);
}

VRKWindow Surface::window() const
{
    return system->window;
}
