#include "apps/vornik/direct3d.h"

#include <algorithm>
#include <vector>

#include <windows.h>

#include "apps/vornik/drawing.h"

// The window lives until the process ends, as the engine does.
static HWND window;
static int samples; // along each side of a pixel

// Nothing but the engine paints the window.
static LRESULT CALLBACK handleMessage(HWND handle, UINT message, WPARAM first, LPARAM second)
{
    if (message == WM_ERASEBKGND)
        return 1;
    return DefWindowProcA(handle, message, first, second);
}

static void handleMessages()
{
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&message);
}

static HWND openWindow(int width, int height)
{
    WNDCLASSA kind = {};
    kind.lpfnWndProc = handleMessage;
    kind.hInstance = GetModuleHandleA(nullptr);
    kind.lpszClassName = "vornik";
    RegisterClassA(&kind);
    return CreateWindowExA(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, kind.lpszClassName, "Vornik",
                           WS_POPUP | WS_VISIBLE, 0, 0, width, height, nullptr, nullptr, kind.hInstance,
                           nullptr);
}

// As many samples as the screen has room for.
static int samplesThatFit(const PictureOptions& options)
{
    const int wide = GetSystemMetrics(SM_CXSCREEN) / options.width;
    const int high = GetSystemMetrics(SM_CYSCREEN) / options.height;
    return std::min({wide, high, options.samples});
}

std::string startDirect3D(const PictureOptions& options)
{
    samples = samplesThatFit(options);
    if (samples < 1)
        return "Direct3D draws on the screen, which is smaller than the picture";
    window = openWindow(options.width * samples, options.height * samples);
    if (!window)
        return "can't open a window";
    handleMessages();
    if (vrkSelectRasterizer(1) != 0 || vrkInitViewport(window, 32, 0, 24, false, 0, true) != 0)
        return "can't start Direct3D";
    return "";
}

// What the screen shows of the window.
static Image readScreen(int width, int height)
{
    Image image = {width, height, std::vector<uint8_t>(size_t(width) * size_t(height) * 3)};
    BITMAPINFO layout = {};
    layout.bmiHeader.biSize = sizeof layout.bmiHeader;
    layout.bmiHeader.biWidth = width;
    layout.bmiHeader.biHeight = -height; // rows from the top
    layout.bmiHeader.biPlanes = 1;
    layout.bmiHeader.biBitCount = 32;
    layout.bmiHeader.biCompression = BI_RGB;

    POINT corner = {0, 0};
    ClientToScreen(window, &corner);
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    void* bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(memory, &layout, DIB_RGB_COLORS, &bits, nullptr, 0);
    if (bitmap)
    {
        const HGDIOBJ before = SelectObject(memory, bitmap);
        BitBlt(memory, 0, 0, width, height, screen, corner.x, corner.y, SRCCOPY);
        GdiFlush();
        const auto* from = static_cast<const uint8_t*>(bits);
        for (size_t i = 0; i < image.rgb.size(); i += 3, from += 4)
        {
            image.rgb[i] = from[2];
            image.rgb[i + 1] = from[1];
            image.rgb[i + 2] = from[0];
        }
        SelectObject(memory, before);
        DeleteObject(bitmap);
    }
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return image;
}

enum
{
    longestWait = 250, // looks at the screen
    pause = 20         // milliseconds between them
};

static Image shownNow(const PictureOptions& options)
{
    handleMessages();
    return readScreen(options.width * samples, options.height * samples);
}

static bool isPlain(const Image& image, const uint8_t (&color)[3])
{
    for (size_t i = 0; i < image.rgb.size(); ++i)
        if (image.rgb[i] != color[i % 3])
            return false;
    return true;
}

// Shows a colour that no picture consists of, and waits for it: the window system shows frames in its own
// time.
static void showPlain(const PictureOptions& options, Color color, const uint8_t (&expected)[3])
{
    for (int i = 0; i < longestWait; ++i)
    {
        vrkSetClearColor(&color);
        vrkClear();
        vrkSwapBuffers();
        if (isPlain(shownNow(options), expected))
            return;
        Sleep(pause);
    }
}

// Waits until the plain colour has given way to the picture, and that no longer changes.
static Image waitForPicture(const PictureOptions& options, const uint8_t (&plain)[3])
{
    Image before = shownNow(options);
    for (int i = 0; i < longestWait; ++i)
    {
        Sleep(pause);
        Image now = shownNow(options);
        if (!isPlain(now, plain) && now.rgb == before.rgb)
            return now;
        before = std::move(now);
    }
    return before;
}

static void draw(OGroup* group, View* view, const PictureOptions& options)
{
    Color background = options.background;
    vrkSetClearColor(&background);
    vrkClear();
    vrkDXBeginScene();
    drawGroup(group, view, options.flags, Transparency::immediate);
    if (options.drawMore)
        options.drawMore(&view->camera);
    vrkDXEndScene();
    vrkSwapBuffers();
}

Image drawOnDirect3D(OGroup* group, View* view, const PictureOptions& options)
{
    setProjection(group, *view, static_cast<float>(options.width) / static_cast<float>(options.height));
    const uint8_t magenta[] = {252, 0, 252};
    showPlain(options, {1.0f, 0.0f, 1.0f, 1.0f}, magenta);
    draw(group, view, options);
    return shrink(waitForPicture(options, magenta), samples);
}
