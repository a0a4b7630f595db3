#ifndef VORNIK_PLATFORM_H
#define VORNIK_PLATFORM_H

// The one public header that differs between systems: the host's window and the handles made for it, and the
// mark of what the shared library exports. Programs that link the engine's objects into themselves define
// VORNIK_STATIC.

#if defined(_WIN32)

#if defined(VORNIK_BUILDING)
#define VRK_API __declspec(dllexport)
#elif defined(VORNIK_STATIC)
#define VRK_API
#else
#define VRK_API __declspec(dllimport)
#endif

struct HWND__;
struct HDC__;
struct HGLRC__;
struct HPALETTE__;
typedef HWND__* VRKWindow; ///< the HWND of the host
typedef HDC__* VRKDeviceContext;
typedef HGLRC__* VRKRenderingContext;
typedef HPALETTE__* VRKPalette;

#else

/// Marks what the shared library exports.
#define VRK_API __attribute__((visibility("default")))

/// Where to draw: an X11 window of the host, or an off-screen surface that needs no display server.
struct VRKNativeWindow
{
    void* display;        ///< Display* of the host's X11 connection; null asks for an off-screen surface
    unsigned long window; ///< X11 Window of the host; unused off-screen
    int width, height;    ///< size of the off-screen surface in pixels; ignored for a window
};

struct VRKDeviceContextRecord;
struct VRKRenderingContextRecord;
struct VRKPaletteRecord;
typedef const VRKNativeWindow* VRKWindow;               ///< read during start-up only; the host keeps it
typedef VRKDeviceContextRecord* VRKDeviceContext;       ///< the platform's own record, null until the start
typedef VRKRenderingContextRecord* VRKRenderingContext; ///< the same
typedef VRKPaletteRecord* VRKPalette;                   ///< null off Windows

#endif

#endif
