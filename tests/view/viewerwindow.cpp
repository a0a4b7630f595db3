#include "tests/view/viewerwindow.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// Last: Xlib defines plain words as macros.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

using namespace std::chrono_literals;

static int ignoreError(Display*, XErrorEvent*)
{
    return 0; // the window may go at any time
}

void ViewerTest::SetUp()
{
    display = XOpenDisplay(nullptr);
    if (!display)
        GTEST_SKIP() << "no display";
    XSetErrorHandler(ignoreError);
}

void ViewerTest::TearDown()
{
    if (process > 0 && waitpid(process, nullptr, WNOHANG) == 0)
    {
        terminate();
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    if (display)
        XCloseDisplay(display);
}

bool ViewerTest::soon(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + 60s;
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(30ms);
    }
    return true;
}

unsigned long ViewerTest::findWindow()
{
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    Window found = 0;
    if (!XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count))
        return 0;
    for (unsigned i = 0; i < count && !found; ++i)
    {
        XWindowAttributes attributes = {};
        char* name = nullptr;
        XFetchName(display, children[i], &name);
        if (name && std::strstr(name, "Vornik") && XGetWindowAttributes(display, children[i], &attributes) &&
            attributes.map_state == IsViewable)
            found = children[i];
        if (name)
            XFree(name);
    }
    if (children)
        XFree(children);
    return found;
}

void ViewerTest::open(const std::vector<std::string>& arguments)
{
    std::vector<std::string> all = {"view"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    openCommand(commandLine(folder.root(), all));
}

void ViewerTest::openCommand(const std::string& given)
{
    const std::string command =
        given + " < /dev/null > '" + streams.path("out") + "' 2> '" + streams.path("err") + "'";
    ASSERT_TRUE(soon([this] { return findWindow() == 0; })) << "a viewer from elsewhere";
    process = fork();
    if (process == 0)
    {
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    ASSERT_TRUE(soon([this] { return (window = findWindow()) != 0; })) << streams.read("err");
    // Without a window manager nobody else gives the focus.
    ASSERT_TRUE(soon(
        [this]
        {
            XSetInputFocus(display, window, RevertToParent, CurrentTime);
            Window focused = 0;
            int revert = 0;
            XGetInputFocus(display, &focused, &revert);
            return focused == window;
        }));
}

int ViewerTest::waitForEnd()
{
    int status = 0;
    const bool ended = soon([&] { return waitpid(process, &status, WNOHANG) == process; });
    if (!ended)
        return -1;
    process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ViewerTest::quit()
{
    // Help and console take one press each.
    const auto hasEnded = [this]
    {
        press("Escape");
        siginfo_t info = {};
        return waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               info.si_pid == process;
    };
    EXPECT_TRUE(soon(hasEnded));
    EXPECT_EQ(waitForEnd(), 0) << streams.read("err");
}

void ViewerTest::hold(const std::string& key, bool down)
{
    const KeyCode code = XKeysymToKeycode(display, XStringToKeysym(key.c_str()));
    EXPECT_NE(code, 0) << key;
    XTestFakeKeyEvent(display, code, down, CurrentTime);
    XSync(display, False);
}

void ViewerTest::press(const std::string& key)
{
    hold(key, true);
    hold(key, false);
    std::this_thread::sleep_for(5ms); // what follows within two would pass for the key's repeat
}

void ViewerTest::type(const std::string& text)
{
    for (const char c : text)
        switch (c)
        {
        case '\n':
            press("Return");
            break;
        case ' ':
            press("space");
            break;
        case '.':
            press("period");
            break;
        case '/':
            press("slash");
            break;
        default:
            press(std::string(1, c));
            break;
        }
}

void ViewerTest::drag(int x, int y, unsigned button)
{
    XWarpPointer(display, None, window, 0, 0, 0, 0, 100, 100);
    XTestFakeButtonEvent(display, button, True, CurrentTime);
    for (int i = 1; i <= 4; ++i)
        XTestFakeRelativeMotionEvent(display, x / 4, y / 4, CurrentTime);
    XTestFakeButtonEvent(display, button, False, CurrentTime);
    XSync(display, False);
}

void ViewerTest::wheel(bool up)
{
    XTestFakeButtonEvent(display, up ? 4 : 5, True, CurrentTime);
    XTestFakeButtonEvent(display, up ? 4 : 5, False, CurrentTime);
    XSync(display, False);
}

void ViewerTest::resize(int width, int height)
{
    XResizeWindow(display, window, static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(display, False);
}

static XEvent clientMessage(Display* display, Window window, const char* type)
{
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, type, False);
    event.xclient.format = 32;
    return event;
}

void ViewerTest::askToClose()
{
    XEvent event = clientMessage(display, window, "WM_PROTOCOLS");
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    XSendEvent(display, window, False, NoEventMask, &event);
    XSync(display, False);
}

void ViewerTest::terminate()
{
    Atom type = 0;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char* value = nullptr;
    XGetWindowProperty(display, window, XInternAtom(display, "_NET_WM_PID", False), 0, 1, False, XA_CARDINAL,
                       &type, &format, &count, &rest, &value);
    if (count == 1)
        kill(static_cast<pid_t>(*reinterpret_cast<unsigned long*>(value)), SIGTERM);
    if (value)
        XFree(value);
}

// The source's side of the drag-and-drop protocol, version 5: enter, position, drop, and then the answer to
// the target's request for the list of files.
void ViewerTest::drop(const std::string& path)
{
    const Window source = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
    XSetSelectionOwner(display, XInternAtom(display, "XdndSelection", False), source, CurrentTime);

    XEvent enter = clientMessage(display, window, "XdndEnter");
    enter.xclient.data.l[0] = static_cast<long>(source);
    enter.xclient.data.l[1] = 5L << 24;
    enter.xclient.data.l[2] = static_cast<long>(XInternAtom(display, "text/uri-list", False));
    XEvent position = clientMessage(display, window, "XdndPosition");
    position.xclient.data.l[0] = static_cast<long>(source);
    position.xclient.data.l[2] = 50L << 16 | 50;
    position.xclient.data.l[4] = static_cast<long>(XInternAtom(display, "XdndActionCopy", False));
    XEvent release = clientMessage(display, window, "XdndDrop");
    release.xclient.data.l[0] = static_cast<long>(source);
    for (XEvent* event : {&enter, &position, &release})
        XSendEvent(display, window, False, NoEventMask, event);
    answerDrop(path);
    XDestroyWindow(display, source);
}

void ViewerTest::answerDrop(const std::string& path)
{
    const std::string list = "file://" + path + "\r\n";
    bool finished = false;
    const Atom finish = XInternAtom(display, "XdndFinished", False);
    soon(
        [&]
        {
            while (XPending(display) > 0)
            {
                XEvent event;
                XNextEvent(display, &event);
                if (event.type == ClientMessage && event.xclient.message_type == finish)
                    finished = true;
                if (event.type != SelectionRequest)
                    continue;
                const XSelectionRequestEvent& request = event.xselectionrequest;
                XChangeProperty(display, request.requestor, request.property, request.target, 8,
                                PropModeReplace, reinterpret_cast<const unsigned char*>(list.data()),
                                static_cast<int>(list.size()));
                XEvent answer = {};
                answer.xselection = {SelectionNotify,
                                     0,
                                     True,
                                     display,
                                     request.requestor,
                                     request.selection,
                                     request.target,
                                     request.property,
                                     request.time};
                XSendEvent(display, request.requestor, False, NoEventMask, &answer);
                XFlush(display);
            }
            return finished;
        });
    EXPECT_TRUE(finished) << "nobody took the file";
}

Bitmap ViewerTest::grab()
{
    Bitmap bitmap;
    XWindowAttributes attributes = {};
    if (!XGetWindowAttributes(display, window, &attributes))
        return bitmap;
    XImage* image = XGetImage(display, window, 0, 0, static_cast<unsigned>(attributes.width),
                              static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
    if (!image)
        return bitmap;
    bitmap.width = image->width;
    bitmap.height = image->height;
    for (int y = 0; y < image->height; ++y)
        for (int x = 0; x < image->width; ++x)
        {
            const unsigned long value = XGetPixel(image, x, y);
            for (const int shift : {16, 8, 0})
                bitmap.rgb.push_back(static_cast<uint8_t>(value >> shift & 255));
        }
    XDestroyImage(image);
    return bitmap;
}

Rgb ViewerTest::pixel(int x, int y)
{
    const Bitmap shown = grab();
    return x < shown.width && y < shown.height ? shown.at(x, y) : Rgb{-1, -1, -1};
}

int ViewerTest::screenWidth() const
{
    return DisplayWidth(display, DefaultScreen(display));
}

int ViewerTest::screenHeight() const
{
    return DisplayHeight(display, DefaultScreen(display));
}

bool ViewerTest::isOnScreen() const
{
    XWindowAttributes attributes = {};
    int x = 0, y = 0;
    Window child = 0;
    return XGetWindowAttributes(display, window, &attributes) &&
           XTranslateCoordinates(display, window, DefaultRootWindow(display), 0, 0, &x, &y, &child) &&
           x >= 0 && y >= 0 && x + attributes.width <= screenWidth() &&
           y + attributes.height <= screenHeight();
}

std::vector<std::string> ViewerTest::output() const
{
    std::vector<std::string> lines;
    const std::string text = streams.read("out");
    for (size_t from = 0, end; (end = text.find('\n', from)) != std::string::npos; from = end + 1)
        lines.push_back(text.substr(from, end - from));
    return lines;
}

std::vector<double> ViewerTest::askForEye()
{
    const size_t before = output().size();
    press("i");
    EXPECT_TRUE(soon([&] { return output().size() > before; }));
    std::vector<double> eye(3);
    if (output().empty() ||
        std::sscanf(output().back().c_str(), "eye %lf %lf %lf", &eye[0], &eye[1], &eye[2]) != 3)
        ADD_FAILURE() << "the viewer doesn't say where it is";
    return eye;
}
