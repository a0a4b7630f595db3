// OpenGL on an X11 window of the host, through GLX.
//
// The window exists before the engine hears of it, so its visual settles which formats are possible. The
// window itself is the drawable: a GLX window of our own could be made once only, and hosts start again.

#include "platform/gldevice.h"

#include <GL/glx.h>
#include <X11/Xlib.h>

#include <climits>

// Turns the errors of one connection into an answer while it lives; Xlib would end the process. The handler
// is one for the whole process, so errors of other connections go on to the handler that was there before.
class ErrorTrap
{
public:
    explicit ErrorTrap(Display* trapped)
    {
        XSync(trapped, False); // errors of the host's own requests belong to the host's handler
        display = trapped;
        failed = false;
        before = XSetErrorHandler(note);
    }
    ErrorTrap(const ErrorTrap&) = delete;
    ErrorTrap& operator=(const ErrorTrap&) = delete;
    ~ErrorTrap()
    {
        XSync(display, False);
        XSetErrorHandler(before);
        display = nullptr;
    }

    bool caught()
    {
        XSync(display, False);
        return failed;
    }

private:
    static int note(Display* origin, XErrorEvent* event)
    {
        if (origin != display)
            return before ? before(origin, event) : 0;
        failed = true;
        return 0;
    }

    static Display* display;
    static bool failed;
    static XErrorHandler before;
};

Display* ErrorTrap::display = nullptr;
bool ErrorTrap::failed = false;
XErrorHandler ErrorTrap::before = nullptr;

static bool readAttributes(Display* display, Window window, XWindowAttributes* attributes)
{
    ErrorTrap trap(display);
    const bool answered = XGetWindowAttributes(display, window, attributes) != 0;
    return answered && !trap.caught();
}

static int configValue(Display* display, GLXFBConfig config, int attribute)
{
    int value = 0;
    return glXGetFBConfigAttrib(display, config, attribute, &value) == 0 ? value : 0;
}

// How well a configuration suits; INT_MAX if it can't draw on the visual at all.
static int configDistance(Display* display, GLXFBConfig config, VisualID visual, const SurfaceBits& wanted)
{
    const auto value = [=](int attribute) { return configValue(display, config, attribute); };
    if (static_cast<VisualID>(value(GLX_VISUAL_ID)) != visual ||
        !(value(GLX_DRAWABLE_TYPE) & GLX_WINDOW_BIT) || !(value(GLX_RENDER_TYPE) & GLX_RGBA_BIT))
        return INT_MAX;

    const SurfaceBits offered = {value(GLX_RED_SIZE) + value(GLX_GREEN_SIZE) + value(GLX_BLUE_SIZE),
                                 value(GLX_ALPHA_SIZE), value(GLX_DEPTH_SIZE)};
    const int oneBuffer = value(GLX_DOUBLEBUFFER) ? 0 : 1000000;
    const int slow = value(GLX_CONFIG_CAVEAT) == GLX_NONE ? 0 : 100000;
    const int unasked = value(GLX_STENCIL_SIZE) + value(GLX_ACCUM_RED_SIZE) + value(GLX_SAMPLES);
    return oneBuffer + slow + 100 * formatDistance(wanted, offered) + unasked;
}

struct WindowDevice : VRKDeviceContextRecord
{
    Display* display = nullptr;
    Window window = 0;
    int screen = 0;
    VisualID visual = 0;
    bool canBeDrawnOn = false;
    GLXFBConfig config = nullptr;
    bool twoBuffers = false;

    FormatResult setFormat(const SurfaceBits& wanted) override;
    void* createContext() override;
    bool makeCurrent(void* context) override;
    void swapBuffers() override;
};

FormatResult WindowDevice::setFormat(const SurfaceBits& wanted)
{
    ErrorTrap trap(display);
    if (!glXQueryExtension(display, nullptr, nullptr))
        return FormatResult::noneFits;

    int count = 0;
    GLXFBConfig* configs = glXGetFBConfigs(display, screen, &count);
    int nearest = INT_MAX;
    for (int i = 0; configs && i < count; ++i)
    {
        const int distance = configDistance(display, configs[i], visual, wanted);
        if (distance < nearest)
        {
            nearest = distance;
            config = configs[i];
        }
    }
    if (configs)
        XFree(configs);
    if (!config || trap.caught())
        return FormatResult::noneFits;
    if (!canBeDrawnOn)
        return FormatResult::refused;

    bits = {configValue(display, config, GLX_BUFFER_SIZE), configValue(display, config, GLX_ALPHA_SIZE),
            configValue(display, config, GLX_DEPTH_SIZE)};
    twoBuffers = configValue(display, config, GLX_DOUBLEBUFFER) != 0;
    return FormatResult::set;
}

void* WindowDevice::createContext()
{
    if (!config || !canBeDrawnOn)
        return nullptr;
    ErrorTrap trap(display);
    GLXContext context = glXCreateNewContext(display, config, GLX_RGBA_TYPE, nullptr, True);
    return trap.caught() ? nullptr : context;
}

bool WindowDevice::makeCurrent(void* context)
{
    releaseOffscreenContext();
    ErrorTrap trap(display);
    const bool current = glXMakeCurrent(display, window, static_cast<GLXContext>(context)) != 0;
    return current && !trap.caught();
}

void WindowDevice::swapBuffers()
{
    if (!config)
        return;
    if (twoBuffers)
        glXSwapBuffers(display, window);
    else
        glXWaitGL();
}

std::unique_ptr<VRKDeviceContextRecord> openWindowDevice(VRKWindow window)
{
    Display* display = static_cast<Display*>(window->display);
    XWindowAttributes attributes = {};
    if (!readAttributes(display, window->window, &attributes))
        return nullptr;

    auto device = std::make_unique<WindowDevice>();
    device->display = display;
    device->window = window->window;
    device->screen = XScreenNumberOfScreen(attributes.screen);
    device->visual = XVisualIDFromVisual(attributes.visual);
    device->canBeDrawnOn = attributes.c_class == InputOutput;
    return device;
}

void windowSize(VRKWindow window, int* width, int* height)
{
    XWindowAttributes attributes = {};
    if (!readAttributes(static_cast<Display*>(window->display), window->window, &attributes))
        return;
    *width = attributes.width;
    *height = attributes.height;
}

bool windowContextIsCurrent()
{
    return glXGetCurrentContext() != nullptr;
}

void releaseWindowContext()
{
    Display* display = glXGetCurrentDisplay();
    if (display)
        glXMakeCurrent(display, None, nullptr);
}
