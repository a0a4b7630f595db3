// Windows on a real X server: the one of DISPLAY, and one without GLX that a test starts for itself.

#include "platform/glcontext.h"
#include "tests/support/engine.h"
#include "vornik/rasterizer/startup.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

// Last: Xlib defines plain words as macros.
#include <GL/glx.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

// A connection and one window on it, made as a host would.
class TestWindow
{
public:
    TestWindow() = default;
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;
    ~TestWindow() { close(); }

    // A virtual server starts over when its last client leaves and takes nobody in meanwhile.
    bool connect(const char* name = nullptr)
    {
        for (int tries = 0; !display && tries < 40; ++tries)
        {
            if (tries > 0)
                usleep(50000);
            display = XOpenDisplay(name);
        }
        return display != nullptr;
    }

    void create(int width, int height, Visual* visual = nullptr, int depth = 0)
    {
        const int screen = DefaultScreen(display);
        visual = visual ? visual : DefaultVisual(display, screen);
        XSetWindowAttributes attributes = {};
        attributes.colormap = XCreateColormap(display, RootWindow(display, screen), visual, AllocNone);
        window =
            XCreateWindow(display, RootWindow(display, screen), 0, 0, static_cast<unsigned>(width),
                          static_cast<unsigned>(height), 0, depth ? depth : DefaultDepth(display, screen),
                          InputOutput, visual, CWColormap | CWBorderPixel, &attributes);
        XMapWindow(display, window);
        XSync(display, False);
    }

    void close()
    {
        if (display)
            XCloseDisplay(display);
        display = nullptr;
    }

    VRKNativeWindow native() const { return {display, window, -5, -5}; } // the size is not ours to say

    int start(int color = 32, int alpha = 0, int depth = 24) const
    {
        const VRKNativeWindow handle = native();
        return vrkInitViewport(&handle, color, alpha, depth, false, 0, true);
    }

    unsigned long shownPixel(int x, int y) const
    {
        XImage* image = XGetImage(display, window, x, y, 1, 1, AllPlanes, ZPixmap);
        const unsigned long value = image ? XGetPixel(image, 0, 0) & 0xffffff : 0xdead0000;
        if (image)
            XDestroyImage(image);
        return value;
    }

    Display* display = nullptr;
    Window window = 0;
};

class WindowTest : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        static bool reachable = getenv("DISPLAY") != nullptr;
        reachable = reachable && host.connect();
        if (!reachable)
            GTEST_SKIP() << "no X server to open a window on";
    }

    // The context goes before its connection, as in a host that ends in good order.
    void TearDown() override
    {
        if (glXGetCurrentDisplay())
            glXMakeCurrent(glXGetCurrentDisplay(), None, nullptr);
        VRK_hGLRC = nullptr;
        EngineTest::TearDown();
    }

    TestWindow host;
};

static int hostErrors = 0;

static int countError(Display*, XErrorEvent*)
{
    ++hostErrors;
    return 0;
}

static const char* const fails = "Requested Colorbits: 32 Alphabits: 0 Depthbits: 24\n"
                                 "Choose pix format failed!\n"
                                 "Fatal error, cannot create rendering context!\n";

TEST_F(WindowTest, ShowsWhatWasDrawnAfterTheSwap)
{
    host.create(80, 40);
    ASSERT_EQ(host.start(), 0) << log();
    EXPECT_EQ(vrkViewport.width, 80.0f);
    EXPECT_EQ(vrkViewport.height, 40.0f);
    EXPECT_EQ(vrkViewport.aspect, 2.0f);

    glClearColor(1.0f, 0.0f, 1.0f, 1.0f);
    vrkClear();
    vrkSwapBuffers();
    glFinish();
    EXPECT_EQ(host.shownPixel(40, 20), 0xff00fful);

    // Two buffers: drawing doesn't show before the swap.
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    vrkClear();
    glFinish();
    EXPECT_EQ(host.shownPixel(40, 20), 0xff00fful);
    vrkSwapBuffers();
    glFinish();
    EXPECT_EQ(host.shownPixel(40, 20), 0x00ff00ul);
}

TEST_F(WindowTest, LogsTheBitsOfTheWindow)
{
    host.create(16, 16);
    ASSERT_EQ(host.start(32, 0, 32), 0);
    GLint depth = 0;
    glGetIntegerv(GL_DEPTH_BITS, &depth);
    EXPECT_TRUE(logged("Requested Colorbits: 32 Alphabits: 0 Depthbits: 32"));
    EXPECT_NE(log().find("\nResponse Colorbits: "), std::string::npos);
    EXPECT_NE(log().find("Depthbits: " + std::to_string(depth) + "\nOpenGL information:"), std::string::npos)
        << log();
    EXPECT_GE(depth, 16);
}

TEST_F(WindowTest, UsesTheVisualOfTheWindow)
{
    XVisualInfo wanted = {};
    wanted.screen = DefaultScreen(host.display);
    wanted.c_class = TrueColor;
    int count = 0;
    XVisualInfo* visuals = XGetVisualInfo(host.display, VisualScreenMask | VisualClassMask, &wanted, &count);
    ASSERT_GT(count, 0);
    int drawnOn = 0;
    for (int i = 0; i < count && drawnOn < 6; i += 1 + count / 12)
    {
        host.create(16, 16, visuals[i].visual, visuals[i].depth);
        if (host.start() != 0)
            continue; // not every visual can do OpenGL
        ++drawnOn;

        int config = 0;
        glXQueryContext(host.display, glXGetCurrentContext(), GLX_FBCONFIG_ID, &config);
        const int byId[] = {GLX_FBCONFIG_ID, config, None};
        int found = 0;
        GLXFBConfig* configs = glXChooseFBConfig(host.display, wanted.screen, byId, &found);
        ASSERT_EQ(found, 1);
        int visual = 0;
        glXGetFBConfigAttrib(host.display, configs[0], GLX_VISUAL_ID, &visual);
        XFree(configs);
        EXPECT_EQ(static_cast<VisualID>(visual), visuals[i].visualid);
        vrkClear();
        vrkSwapBuffers();
        glFinish();
        EXPECT_EQ(host.shownPixel(3, 3), 0ul);
    }
    XFree(visuals);
    EXPECT_GT(drawnOn, 0);
}

TEST_F(WindowTest, StartsAgainOnTheSameWindow)
{
    host.create(32, 32);
    ASSERT_EQ(host.start(), 0);
    const VRKRenderingContext first = VRK_hGLRC;
    ASSERT_EQ(host.start(), 0) << log();
    EXPECT_NE(VRK_hGLRC, first);
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    vrkClear();
    vrkSwapBuffers();
    glFinish();
    EXPECT_EQ(host.shownPixel(9, 9), 0x0000fful);
}

TEST_F(WindowTest, OffscreenAndWindowTakeTurns)
{
    const VRKDeviceContext offscreenDevice = VRK_hDC;
    const VRKRenderingContext offscreen = VRK_hGLRC;
    glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    vrkClear();

    host.create(width, height);
    ASSERT_EQ(host.start(), 0) << log();
    const VRKDeviceContext windowDevice = VRK_hDC;
    const VRKRenderingContext onWindow = VRK_hGLRC;
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    vrkClear();
    EXPECT_TRUE(pixelIs(5, 5, {0, 255, 0, 255}));

    ASSERT_TRUE(vrkPlatformMakeCurrent(offscreenDevice, offscreen));
    EXPECT_TRUE(pixelIs(5, 5, {255, 0, 0, 255}));
    ASSERT_TRUE(vrkPlatformMakeCurrent(windowDevice, onWindow));
    EXPECT_TRUE(pixelIs(5, 5, {0, 255, 0, 255}));

    const VRKNativeWindow again = {nullptr, 0, width, height};
    ASSERT_EQ(vrkInitViewport(&again, 32, 8, 24, false, 0, true), 0);
    vrkClear();
    EXPECT_TRUE(pixelIs(5, 5, {0, 0, 0, 0}));
    EXPECT_TRUE(vrkPlatformHasContext());
    EXPECT_EQ(glXGetCurrentContext(), nullptr);
}

TEST_F(WindowTest, WindowThatIsGoneEndsIn41)
{
    host.create(32, 32);
    XDestroyWindow(host.display, host.window);
    EXPECT_EQ(host.start(), 41);
    EXPECT_EQ(log(), fails);
    EXPECT_EQ(VRK_hGLRC, nullptr);
    vrkSwapBuffers();
}

TEST_F(WindowTest, WindowThatNeverWasEndsIn41)
{
    for (const Window invented : {0ul, 1ul, 0x7fffffful})
    {
        host.window = invented;
        EXPECT_EQ(host.start(), 41) << invented;
    }
}

TEST_F(WindowTest, WindowThatGoesAfterTheStartDoesNoHarm)
{
    host.create(32, 32);
    ASSERT_EQ(host.start(), 0);
    vrkClear();
    vrkSwapBuffers();
    const XErrorHandler before = XSetErrorHandler(countError);
    XDestroyWindow(host.display, host.window);
    XSync(host.display, False);
    vrkSwapBuffers();
    XSync(host.display, False);
    XSetErrorHandler(before);

    const VRKNativeWindow next = {nullptr, 0, width, height};
    EXPECT_EQ(vrkInitViewport(&next, 32, 8, 24, false, 0, true), 0);
}

TEST_F(WindowTest, WindowForInputOnlyCannotBeDrawnOn)
{
    host.window = XCreateWindow(host.display, DefaultRootWindow(host.display), 0, 0, 16, 16, 0, 0, InputOnly,
                                nullptr, 0, nullptr);
    XSync(host.display, False);
    EXPECT_EQ(host.start(), 41);
    EXPECT_TRUE(logged("Choose pix format failed!") || logged("Set pix format failed!")) << log();
    EXPECT_EQ(VRK_hGLRC, nullptr);
}

TEST_F(WindowTest, ErrorHandlerOfTheHostIsPutBack)
{
    host.create(32, 32);
    const XErrorHandler before = XSetErrorHandler(countError);
    hostErrors = 0;
    EXPECT_EQ(host.start(), 0);
    XDestroyWindow(host.display, host.window);
    EXPECT_EQ(host.start(), 41);
    EXPECT_EQ(hostErrors, 0);
    EXPECT_EQ(XSetErrorHandler(before), countError);
}

TEST_F(WindowTest, ErrorsOfTheHostsOwnRequestsStayTheHosts)
{
    host.create(32, 32);
    const XErrorHandler before = XSetErrorHandler(countError);
    hostErrors = 0;
    XMapWindow(host.display, 0x7ffffff); // answered only during the start
    EXPECT_EQ(host.start(), 0);
    EXPECT_EQ(hostErrors, 1);
    XSetErrorHandler(before);
}

TEST_F(WindowTest, ConnectionMayCloseBeforeTheNextStart)
{
    host.create(32, 32);
    ASSERT_EQ(host.start(), 0);
    vrkClear();
    vrkSwapBuffers();
    host.close();

    const VRKNativeWindow next = {nullptr, 0, width, height};
    ASSERT_EQ(vrkInitViewport(&next, 32, 8, 24, false, 0, true), 0);
    glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    vrkClear();
    EXPECT_TRUE(pixelIs(5, 5, {255, 0, 0, 255}));

    TestWindow another;
    ASSERT_TRUE(another.connect());
    another.create(20, 20);
    EXPECT_EQ(another.start(), 0);
    glXMakeCurrent(another.display, None, nullptr);
}

TEST_F(WindowTest, GLXContextCountsAsCurrent)
{
    host.create(32, 32);
    ASSERT_EQ(host.start(), 0);
    EXPECT_TRUE(vrkPlatformHasContext());
    glXMakeCurrent(host.display, None, nullptr);
    EXPECT_FALSE(vrkPlatformHasContext());
}

// An X server without GLX, for as long as the object lives.
class ServerWithoutGLX
{
public:
    ServerWithoutGLX()
    {
        int channel[2];
        if (pipe(channel) != 0)
            return;
        process = fork();
        if (process == 0)
        {
            dup2(channel[1], 3);
            const int nowhere = open("/dev/null", O_WRONLY);
            dup2(nowhere, STDOUT_FILENO);
            dup2(nowhere, STDERR_FILENO);
            execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", "320x200x24", "-nolisten", "tcp",
                   "-extension", "GLX", static_cast<char*>(nullptr));
            _exit(1);
        }
        ::close(channel[1]);
        char number[16] = {};
        size_t length = 0;
        while (length < sizeof number - 1 && read(channel[0], number + length, 1) == 1 &&
               number[length] != '\n')
            ++length;
        ::close(channel[0]);
        if (length > 0)
            name = ":" + std::string(number, length);
    }
    ServerWithoutGLX(const ServerWithoutGLX&) = delete;
    ServerWithoutGLX& operator=(const ServerWithoutGLX&) = delete;
    ~ServerWithoutGLX()
    {
        if (process <= 0)
            return;
        kill(process, SIGTERM);
        waitpid(process, nullptr, 0);
    }

    std::string name; ///< empty if there is no such server

private:
    pid_t process = -1;
};

using ServerTest = EngineTest;

TEST_F(ServerTest, DisplayWithoutGLXEndsIn41)
{
    const ServerWithoutGLX server;
    if (server.name.empty())
        GTEST_SKIP() << "no Xvfb to start";
    TestWindow host;
    ASSERT_TRUE(host.connect(server.name.c_str()));
    host.create(32, 32);
    EXPECT_EQ(host.start(), 41);
    EXPECT_EQ(log(), fails);
    EXPECT_EQ(VRK_hGLRC, nullptr);
    vrkSwapBuffers();
}
