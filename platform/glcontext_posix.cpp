// Sends each call to the kind of device that the host's window asks for, and keeps the records.

#include "platform/glcontext.h"

#include <algorithm>
#include <vector>

#include "platform/gldevice.h"

// Everything that was ever handed out. A host may hold on to an older handle, so none is released.
static std::vector<std::unique_ptr<VRKDeviceContextRecord>>& devices()
{
    static auto* list = new std::vector<std::unique_ptr<VRKDeviceContextRecord>>;
    return *list;
}

static std::vector<std::unique_ptr<VRKRenderingContextRecord>>& contexts()
{
    static auto* list = new std::vector<std::unique_ptr<VRKRenderingContextRecord>>;
    return *list;
}

// Bits that are missing cost more than bits too many.
static int bitDistance(int wanted, int offered)
{
    return offered < wanted ? 100 * (wanted - offered) : offered - wanted;
}

int formatDistance(const SurfaceBits& wanted, const SurfaceBits& offered)
{
    // The usual 32 bits of colour are 24 and a byte that pads the pixel or holds alpha.
    const int color = wanted.color == 32 ? 24 : std::clamp(wanted.color, 0, 128);
    return 16 * bitDistance(color, offered.color) +
           4 * bitDistance(std::clamp(wanted.alpha, 0, 128), offered.alpha) +
           bitDistance(std::clamp(wanted.depth, 0, 128), offered.depth);
}

VRKDeviceContext vrkPlatformOpenDevice(VRKWindow window)
{
    if (!window)
        return nullptr;
    std::unique_ptr<VRKDeviceContextRecord> device =
        window->display ? openWindowDevice(window) : openOffscreenDevice(window);
    if (!device)
        return nullptr;
    devices().push_back(std::move(device));
    return devices().back().get();
}

FormatResult vrkPlatformSetFormat(VRKDeviceContext device, const SurfaceBits& wanted)
{
    return device ? device->setFormat(wanted) : FormatResult::noneFits;
}

SurfaceBits vrkPlatformFormatBits(VRKDeviceContext device)
{
    return device ? device->bits : SurfaceBits{0, 0, 0};
}

// No format that is chosen here draws through a palette.
VRKPalette vrkPlatformCreatePalette(VRKDeviceContext)
{
    return nullptr;
}

VRKRenderingContext vrkPlatformCreateContext(VRKDeviceContext device)
{
    void* context = device ? device->createContext() : nullptr;
    if (!context)
        return nullptr;
    contexts().push_back(std::make_unique<VRKRenderingContextRecord>());
    contexts().back()->context = context;
    return contexts().back().get();
}

bool vrkPlatformMakeCurrent(VRKDeviceContext device, VRKRenderingContext context)
{
    return device && context && device->makeCurrent(context->context);
}

bool vrkPlatformHasContext()
{
    return windowContextIsCurrent() || offscreenContextIsCurrent();
}

void vrkPlatformClientSize(VRKWindow window, int* width, int* height)
{
    *width = 0;
    *height = 0;
    if (!window)
        return;
    if (window->display)
        return windowSize(window, width, height);
    *width = window->width;
    *height = window->height;
}

void vrkPlatformSwapBuffers(VRKDeviceContext device)
{
    if (device)
        device->swapBuffers();
}
