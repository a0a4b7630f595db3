// OpenGL on an off-screen pixel buffer, through EGL, with no display server.

#include "platform/gldevice.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <vector>

// Binds desktop OpenGL while it lives: a host may use EGL for itself with another of its interfaces.
class DesktopAPI
{
public:
    DesktopAPI() : before(eglQueryAPI()), bound(eglBindAPI(EGL_OPENGL_API) == EGL_TRUE) {}
    DesktopAPI(const DesktopAPI&) = delete;
    DesktopAPI& operator=(const DesktopAPI&) = delete;
    ~DesktopAPI() { eglBindAPI(before); }

    bool available() const { return bound; }

private:
    EGLenum before;
    bool bound;
};

static bool clientOffers(const char* extension)
{
    const char* list = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    return list && std::strstr(list, extension);
}

static bool usable(EGLDisplay display)
{
    return display != EGL_NO_DISPLAY && eglInitialize(display, nullptr, nullptr) == EGL_TRUE;
}

// A display that draws without windows: the surfaceless platform, else a device of its own, else what the
// system has by default.
static EGLDisplay openDisplay()
{
    const auto platformDisplay =
        reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    if (platformDisplay && clientOffers("EGL_MESA_platform_surfaceless"))
    {
        const EGLDisplay display =
            platformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        if (usable(display))
            return display;
    }

    const auto queryDevices =
        reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    if (platformDisplay && queryDevices && clientOffers("EGL_EXT_platform_device"))
    {
        EGLDeviceEXT devices[8];
        EGLint count = 0;
        if (!queryDevices(8, devices, &count))
            count = 0;
        for (EGLint i = 0; i < count; ++i)
        {
            const EGLDisplay display = platformDisplay(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr);
            if (usable(display))
                return display;
        }
    }

    const EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
    return usable(display) ? display : EGL_NO_DISPLAY;
}

// One display serves every surface of the process.
static EGLDisplay sharedDisplay()
{
    static EGLDisplay display = EGL_NO_DISPLAY;
    if (display == EGL_NO_DISPLAY)
        display = openDisplay();
    return display;
}

static int configValue(EGLDisplay display, EGLConfig config, EGLint attribute)
{
    EGLint value = 0;
    return eglGetConfigAttrib(display, config, attribute, &value) ? value : 0;
}

static int configDistance(EGLDisplay display, EGLConfig config, const SurfaceBits& wanted)
{
    const auto value = [=](EGLint attribute) { return configValue(display, config, attribute); };
    const SurfaceBits offered = {value(EGL_RED_SIZE) + value(EGL_GREEN_SIZE) + value(EGL_BLUE_SIZE),
                                 value(EGL_ALPHA_SIZE), value(EGL_DEPTH_SIZE)};
    const int slow = value(EGL_CONFIG_CAVEAT) == EGL_NONE ? 0 : 100000;
    const int unasked = value(EGL_STENCIL_SIZE) + value(EGL_SAMPLES);
    return slow + 100 * formatDistance(wanted, offered) + unasked;
}

struct OffscreenDevice : VRKDeviceContextRecord
{
    int width = 0;
    int height = 0;
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLSurface surface = EGL_NO_SURFACE;

    FormatResult setFormat(const SurfaceBits& wanted) override;
    void* createContext() override;
    bool makeCurrent(void* context) override;
    void swapBuffers() override {} // a pixel buffer is shown to nobody

    bool findConfig(const SurfaceBits& wanted);
    bool createSurface();
};

bool OffscreenDevice::findConfig(const SurfaceBits& wanted)
{
    const EGLint needed[] = {EGL_SURFACE_TYPE, EGL_PBUFFER_BIT,       EGL_RENDERABLE_TYPE,
                             EGL_OPENGL_BIT,   EGL_COLOR_BUFFER_TYPE, EGL_RGB_BUFFER,
                             EGL_NONE};
    EGLint count = 0;
    if (!eglChooseConfig(display, needed, nullptr, 0, &count) || count <= 0)
        return false;
    std::vector<EGLConfig> configs(static_cast<size_t>(count));
    if (!eglChooseConfig(display, needed, configs.data(), count, &count))
        return false;
    configs.resize(static_cast<size_t>(count));

    int nearest = INT_MAX;
    for (EGLConfig candidate : configs)
    {
        const int distance = configDistance(display, candidate, wanted);
        if (distance < nearest)
        {
            nearest = distance;
            config = candidate;
        }
    }
    return nearest != INT_MAX;
}

// A surface without area gets one pixel a side: the viewport stays empty, but the context has where to stand.
bool OffscreenDevice::createSurface()
{
    if (width < 0 || height < 0 || width > configValue(display, config, EGL_MAX_PBUFFER_WIDTH) ||
        height > configValue(display, config, EGL_MAX_PBUFFER_HEIGHT))
        return false;
    const EGLint size[] = {EGL_WIDTH, std::max(width, 1), EGL_HEIGHT, std::max(height, 1), EGL_NONE};
    surface = eglCreatePbufferSurface(display, config, size);
    return surface != EGL_NO_SURFACE;
}

FormatResult OffscreenDevice::setFormat(const SurfaceBits& wanted)
{
    const DesktopAPI api;
    display = sharedDisplay();
    if (!api.available() || display == EGL_NO_DISPLAY || !findConfig(wanted))
        return FormatResult::noneFits;
    if (!createSurface())
        return FormatResult::refused;
    bits = {configValue(display, config, EGL_BUFFER_SIZE), configValue(display, config, EGL_ALPHA_SIZE),
            configValue(display, config, EGL_DEPTH_SIZE)};
    return FormatResult::set;
}

void* OffscreenDevice::createContext()
{
    if (surface == EGL_NO_SURFACE)
        return nullptr;
    const DesktopAPI api;
    return eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
}

bool OffscreenDevice::makeCurrent(void* context)
{
    releaseWindowContext();
    const DesktopAPI api;
    return eglMakeCurrent(display, surface, surface, context) == EGL_TRUE;
}

std::unique_ptr<VRKDeviceContextRecord> openOffscreenDevice(VRKWindow window)
{
    auto device = std::make_unique<OffscreenDevice>();
    device->width = window->width;
    device->height = window->height;
    return device;
}

bool offscreenContextIsCurrent()
{
    const DesktopAPI api;
    return eglGetCurrentContext() != EGL_NO_CONTEXT;
}

void releaseOffscreenContext()
{
    const DesktopAPI api;
    if (eglGetCurrentContext() != EGL_NO_CONTEXT)
        eglMakeCurrent(eglGetCurrentDisplay(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}
