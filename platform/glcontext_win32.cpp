// OpenGL on windows of the system itself. The handles that the host sees are the system's.

#include "platform/glcontext.h"

#include <windows.h>

#include <vector>

#include "platform/palette.h"

VRKDeviceContext vrkPlatformOpenDevice(VRKWindow window)
{
    // Without the test null would stand for the whole screen.
    return IsWindow(window) ? GetDC(window) : nullptr;
}

FormatResult vrkPlatformSetFormat(VRKDeviceContext device, const SurfaceBits& wanted)
{
    PIXELFORMATDESCRIPTOR format = {};
    format.nSize = sizeof format;
    format.nVersion = 1;
    format.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
    format.iPixelType = PFD_TYPE_RGBA;
    format.cColorBits = static_cast<BYTE>(wanted.color);
    format.cAlphaBits = static_cast<BYTE>(wanted.alpha);
    format.cDepthBits = static_cast<BYTE>(wanted.depth);

    const int number = ChoosePixelFormat(device, &format);
    if (number == 0)
        return FormatResult::noneFits;
    return SetPixelFormat(device, number, &format) == 1 ? FormatResult::set : FormatResult::refused;
}

// All zeros without a format.
static PIXELFORMATDESCRIPTOR currentFormat(VRKDeviceContext device)
{
    PIXELFORMATDESCRIPTOR format = {};
    const int number = GetPixelFormat(device);
    if (number == 0 || !DescribePixelFormat(device, number, sizeof format, &format))
        return {};
    return format;
}

SurfaceBits vrkPlatformFormatBits(VRKDeviceContext device)
{
    const PIXELFORMATDESCRIPTOR format = currentFormat(device);
    return {format.cColorBits, format.cAlphaBits, format.cDepthBits};
}

VRKPalette vrkPlatformCreatePalette(VRKDeviceContext device)
{
    const PIXELFORMATDESCRIPTOR format = currentFormat(device);
    if (!(format.dwFlags & PFD_NEED_PALETTE))
        return nullptr;
    const std::vector<PaletteColor> colors =
        vrkPaletteColors(format.cColorBits, {format.cRedBits, format.cRedShift},
                         {format.cGreenBits, format.cGreenShift}, {format.cBlueBits, format.cBlueShift});

    // A LOGPALETTE: two words, the version and the count, and then the entries.
    std::vector<PALETTEENTRY> block(1 + colors.size());
    auto* palette = reinterpret_cast<LOGPALETTE*>(block.data());
    palette->palVersion = 0x300;
    palette->palNumEntries = static_cast<WORD>(colors.size());
    for (size_t i = 0; i < colors.size(); ++i)
        block[1 + i] = {colors[i].red, colors[i].green, colors[i].blue, 0};

    const HPALETTE handle = CreatePalette(palette);
    if (handle)
    {
        SelectPalette(device, handle, FALSE);
        RealizePalette(device);
    }
    return handle;
}

VRKRenderingContext vrkPlatformCreateContext(VRKDeviceContext device)
{
    return wglCreateContext(device);
}

bool vrkPlatformMakeCurrent(VRKDeviceContext device, VRKRenderingContext context)
{
    return device && context && wglMakeCurrent(device, context);
}

bool vrkPlatformHasContext()
{
    return wglGetCurrentContext() != nullptr;
}

void vrkPlatformClientSize(VRKWindow window, int* width, int* height)
{
    RECT area = {};
    GetClientRect(window, &area);
    *width = static_cast<int>(area.right);
    *height = static_cast<int>(area.bottom);
}

void vrkPlatformSwapBuffers(VRKDeviceContext device)
{
    SwapBuffers(device);
}
