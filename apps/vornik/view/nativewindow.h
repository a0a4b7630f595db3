// What the engine needs of an SDL window on each system. SDL makes no OpenGL context: the engine makes its
// own.
#pragma once

#include "vornik/platform.h"

struct SDL_Window;

/// Says which kind of window SDL is to make; before SDL starts.
void prepareNativeWindows();

/// Can OpenGL draw on such a window? If not, the next window of SDL will be one of a kind that it can draw
/// on.
bool suitsOpenGL(SDL_Window* window);

/// Is there somebody to make windows fill the screen? SDL only asks, and takes it for done.
bool hasWindowManager(SDL_Window* window);

/// The window as initVornik takes it; null if SDL doesn't tell. Stays as it is until the next call.
VRKWindow nativeWindow(SDL_Window* window);
