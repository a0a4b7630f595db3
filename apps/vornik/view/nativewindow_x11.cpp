#include "apps/vornik/view/nativewindow.h"

#include <string>

#include <SDL.h>
#include <SDL_syswm.h>

// Last: Xlib defines plain words as macros.
#include <GL/glx.h>

void prepareNativeWindows()
{
    SDL_SetHint(SDL_HINT_VIDEODRIVER, "x11");
}

static bool readWindow(SDL_Window* window, Display** display, Window* drawable)
{
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    if (!SDL_GetWindowWMInfo(window, &info) || info.subsystem != SDL_SYSWM_X11)
        return false;
    *display = info.info.x11.display;
    *drawable = info.info.x11.window;
    return true;
}

static int configOf(Display* display, XVisualInfo* visual, int attribute)
{
    int value = 0;
    return glXGetConfig(display, visual, attribute, &value) == 0 ? value : 0;
}

static bool fits(Display* display, VisualID id)
{
    XVisualInfo wanted = {};
    wanted.visualid = id;
    int count = 0;
    XVisualInfo* found = XGetVisualInfo(display, VisualIDMask, &wanted, &count);
    const bool does = count > 0 && configOf(display, found, GLX_USE_GL) &&
                      configOf(display, found, GLX_RGBA) && configOf(display, found, GLX_DOUBLEBUFFER) &&
                      configOf(display, found, GLX_DEPTH_SIZE) >= 16;
    if (found)
        XFree(found);
    return does;
}

bool suitsOpenGL(SDL_Window* window)
{
    Display* display = nullptr;
    Window drawable = 0;
    XWindowAttributes attributes = {};
    if (!readWindow(window, &display, &drawable) || !XGetWindowAttributes(display, drawable, &attributes) ||
        !glXQueryExtension(display, nullptr, nullptr) ||
        fits(display, XVisualIDFromVisual(attributes.visual)))
        return true; // or the engine will say what is wrong

    int wanted[] = {GLX_RGBA, GLX_DOUBLEBUFFER, GLX_RED_SIZE, 8,   GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE,
                    8,        GLX_DEPTH_SIZE,   24,           None};
    XVisualInfo* visual = glXChooseVisual(display, XScreenNumberOfScreen(attributes.screen), wanted);
    if (!visual)
        return true;
    SDL_SetHint(SDL_HINT_VIDEO_X11_WINDOW_VISUALID, std::to_string(visual->visualid).c_str());
    XFree(visual);
    return false;
}

// A window manager leaves the name of a window of its own on the root window.
bool hasWindowManager(SDL_Window* window)
{
    Display* display = nullptr;
    Window drawable = 0;
    if (!readWindow(window, &display, &drawable))
        return true;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char* value = nullptr;
    XGetWindowProperty(display, DefaultRootWindow(display),
                       XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False), 0, 1, False, AnyPropertyType,
                       &type, &format, &count, &rest, &value);
    if (value)
        XFree(value);
    return count > 0;
}

VRKWindow nativeWindow(SDL_Window* window)
{
    static VRKNativeWindow native;
    Display* display = nullptr;
    Window drawable = 0;
    if (!readWindow(window, &display, &drawable))
        return nullptr;
    native = {display, drawable, 0, 0};
    return &native;
}
