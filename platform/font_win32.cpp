// The font as display lists of the system font's bitmaps.

#include "platform/font.h"

#include <windows.h>

bool vrkPlatformMakeFont(VRKDeviceContext device, int base)
{
    SelectObject(device, GetStockObject(SYSTEM_FONT));
    return wglGetCurrentContext() && wglUseFontBitmapsA(device, 0, 128, static_cast<DWORD>(base)) != FALSE;
}
