// The records behind VRK_hDC and VRK_hGLRC where they are our own: one kind of device for X11 windows, one
// for off-screen surfaces.
#pragma once

#include <memory>

#include "platform/glcontext.h"

struct VRKDeviceContextRecord
{
    virtual ~VRKDeviceContextRecord() = default;
    virtual FormatResult setFormat(const SurfaceBits& wanted) = 0;
    virtual void* createContext() = 0;
    virtual bool makeCurrent(void* context) = 0;
    virtual void swapBuffers() = 0;

    SurfaceBits bits = {0, 0, 0}; ///< of the format, once there is one
};

struct VRKRenderingContextRecord
{
    void* context; ///< the system's handle
};

/// @return null if the window is gone
std::unique_ptr<VRKDeviceContextRecord> openWindowDevice(VRKWindow window);
std::unique_ptr<VRKDeviceContextRecord> openOffscreenDevice(VRKWindow window);

void windowSize(VRKWindow window, int* width, int* height);

// A thread holds one context at a time, whichever system made it: the other has to let go first.
bool windowContextIsCurrent();
void releaseWindowContext();
bool offscreenContextIsCurrent();
void releaseOffscreenContext();

/// How far a format is from the wanted bits; 0 is a perfect match. Both count color without alpha.
int formatDistance(const SurfaceBits& wanted, const SurfaceBits& offered);
