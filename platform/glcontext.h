// OpenGL on the system's windows: the drawable, its pixel format, the context and the buffer swap.
//
// The calls follow one another as start-up needs them; each may be given what a failed step before it left
// behind. A device and a context live until the process ends: the engine never releases them, and a host that
// starts again draws with the newest. An older context merely stops being current.
#pragma once

#include "vornik/platform.h"

/// Bits of a surface, wanted or obtained.
struct SurfaceBits
{
    int color; ///< whole pixel; alpha counts where the surface has it
    int alpha;
    int depth;
};

enum class FormatResult
{
    set,      ///< the device can carry a context
    noneFits, ///< no format of the system suits the window
    refused   ///< a format was found but the surface can't be made with it
};

/// A device for the window. @return null if the window is null or gone; the other calls take that for a
/// device
VRKDeviceContext vrkPlatformOpenDevice(VRKWindow window);

/// Gives the device the format nearest to what is wanted. Missing bits weigh more than surplus ones; windows
/// prefer two buffers.
FormatResult vrkPlatformSetFormat(VRKDeviceContext device, const SurfaceBits& wanted);

/// What the format has; zeros without one.
SurfaceBits vrkPlatformFormatBits(VRKDeviceContext device);

/// Where the format draws by palette: makes it and selects it into the device. @return null where none is
/// needed, or the system refuses
VRKPalette vrkPlatformCreatePalette(VRKDeviceContext device);

/// A context for the device. @return null if the device has no format or the system refuses
VRKRenderingContext vrkPlatformCreateContext(VRKDeviceContext device);

/// Makes the context current on this thread, in place of any other. @return false if that fails
bool vrkPlatformMakeCurrent(VRKDeviceContext device, VRKRenderingContext context);

/// Has this thread a current context, the engine's or the host's?
bool vrkPlatformHasContext();

/// Size in pixels of the part of the window that is drawn on; 0 by 0 for a window that is gone.
void vrkPlatformClientSize(VRKWindow window, int* width, int* height);

/// Shows what was drawn. Off-screen, and without a device, there is nothing to show.
void vrkPlatformSwapBuffers(VRKDeviceContext device);
