#include "apps/vornik/view/nativewindow.h"

#include <SDL.h>
#include <SDL_syswm.h>

void prepareNativeWindows() {}

bool suitsOpenGL(SDL_Window*)
{
    return true; // a window takes its pixel format when the engine starts
}

bool hasWindowManager(SDL_Window*)
{
    return true;
}

VRKWindow nativeWindow(SDL_Window* window)
{
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    const bool known = SDL_GetWindowWMInfo(window, &info) && info.subsystem == SDL_SYSWM_WINDOWS;
    return known ? info.info.win.window : nullptr;
}
