// The viewer in a window of Windows, as a user meets it. What it does with keys in general is tested on
// Linux, where all of them are tried.
//
// Nothing waits for a fixed time: what is to come is polled for, with a deadline far beyond what a busy
// machine needs.

#include <chrono>
#include <cstring>
#include <thread>

#include "platform/jpeg.h"
#include "tests/apps/program.h"
#include "tests/apps/scenes.h"
#include "tests/support/process_win32.h"

using namespace std::chrono_literals;

static bool isRed(const Rgb& p)
{
    return p.r > 40 && p.r > 2 * p.g && p.r > 2 * p.b;
}

static bool isBright(const Rgb& p)
{
    return p.r > 220 && p.g > 220 && p.b > 220;
}

template <class Condition>
static bool soon(Condition condition)
{
    const auto deadline = std::chrono::steady_clock::now() + 120s;
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(30ms);
    }
    return true;
}

struct Search
{
    DWORD process;
    HWND found;
};

static BOOL CALLBACK lookAtWindow(HWND window, LPARAM parameter)
{
    Search* search = reinterpret_cast<Search*>(parameter);
    char title[200] = {};
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    GetWindowTextA(window, title, sizeof title);
    if (process == search->process && IsWindowVisible(window) && std::strstr(title, "Vornik"))
        search->found = window;
    return !search->found;
}

class ViewerOnWindows : public ProgramTest
{
protected:
    // 400 by 300 on black, with a red box straight in front of a camera.
    void SetUp() override
    {
        Scene3ds scene = boxScene();
        scene.cameras = {frontCamera("Front", 0, 6)};
        process = startProcess(
            {VORNIK_PROGRAM, "view", write("box.3ds", scene), "--size", "400x300", "--background", "black"},
            folder.root(), {"", streams.path("out"), streams.path("err")});
        ASSERT_NE(process, nullptr);
        ASSERT_TRUE(soon([this] { return (window = findWindow()) != nullptr; })) << streams.read("err");
        ASSERT_TRUE(soon([this] { return isRed(pixel(200, 150)); })) << streams.read("err");
    }

    void TearDown() override
    {
        if (process)
            TerminateProcess(process, 1);
        waitForEnd();
    }

    HWND findWindow() const
    {
        Search search = {GetProcessId(process), nullptr};
        EnumWindows(lookAtWindow, reinterpret_cast<LPARAM>(&search));
        return search.found;
    }

    // Down and up again.
    void press(UINT key) const
    {
        const LPARAM place = 1 | static_cast<LPARAM>(MapVirtualKeyA(key, MAPVK_VK_TO_VSC)) << 16;
        PostMessageA(window, WM_KEYDOWN, key, place);
        PostMessageA(window, WM_KEYUP, key, place | 0xC0000000);
    }

    // What the screen shows of the window's inside.
    Bitmap grab() const
    {
        RECT inside = {};
        POINT corner = {};
        GetClientRect(window, &inside);
        ClientToScreen(window, &corner);
        Bitmap picture;
        picture.width = inside.right;
        picture.height = inside.bottom;
        BITMAPINFO layout = {};
        layout.bmiHeader = {
            sizeof layout.bmiHeader, inside.right, -inside.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};

        const HDC screen = GetDC(nullptr), memory = CreateCompatibleDC(screen);
        void* bits = nullptr;
        const HBITMAP bitmap = CreateDIBSection(memory, &layout, DIB_RGB_COLORS, &bits, nullptr, 0);
        const HGDIOBJ before = SelectObject(memory, bitmap);
        BitBlt(memory, 0, 0, inside.right, inside.bottom, screen, corner.x, corner.y, SRCCOPY);
        GdiFlush();
        const auto* from = static_cast<const uint8_t*>(bits);
        for (int i = 0; bits && i < picture.width * picture.height; ++i, from += 4)
            picture.rgb.insert(picture.rgb.end(), {from[2], from[1], from[0]});
        SelectObject(memory, before);
        DeleteObject(bitmap);
        DeleteDC(memory);
        ReleaseDC(nullptr, screen);
        return picture;
    }

    Rgb pixel(int x, int y) const
    {
        const Bitmap shown = grab();
        return x < shown.width && y < shown.height ? shown.at(x, y) : Rgb{-1, -1, -1};
    }

    // @return the exit status, -1 if there is no end
    int waitForEnd()
    {
        DWORD status = static_cast<DWORD>(-1);
        if (process && WaitForSingleObject(process, 120'000) == WAIT_OBJECT_0)
            GetExitCodeProcess(process, &status);
        CloseHandle(process);
        process = nullptr;
        return static_cast<int>(status);
    }

    HANDLE process = nullptr;
    HWND window = nullptr;
    TempFolder streams;
};

TEST_F(ViewerOnWindows, ShowsTheSceneWithItsFiguresAndEndsOnEscape)
{
    const Bitmap shown = grab();
    EXPECT_EQ(shown.width, 400);
    EXPECT_EQ(shown.height, 300);
    EXPECT_EQ(shown.at(390, 150), (Rgb{0, 0, 0}));
    EXPECT_GT(shown.count(isBright), 40);
    press(VK_ESCAPE);
    EXPECT_EQ(waitForEnd(), 0) << streams.read("err");
}

TEST_F(ViewerOnWindows, KeySavesTheScreenAsAFile)
{
    press(VK_F12);
    EXPECT_TRUE(
        soon([this] { return folder.read("Shot0000.jpg").ends_with("\xFF\xD9"); })); // the last marker
    const std::string shot = folder.read("Shot0000.jpg");
    JpegImage picture;
    ASSERT_TRUE(jpegDecode(reinterpret_cast<const uint8_t*>(shot.data()), shot.size(), false, &picture));
    ASSERT_EQ(picture.width, 400);
    ASSERT_EQ(picture.height, 300);
    const uint8_t* middle = &picture.pixels[(150 * 400 + 200) * 3];
    EXPECT_TRUE(isRed({middle[0], middle[1], middle[2]}));
    const Bitmap shown = grab();
    EXPECT_GT(shown.count(isBright), 40); // it goes on
}

TEST_F(ViewerOnWindows, PictureFollowsTheWindowsSize)
{
    RECT wanted = {0, 0, 600, 500};
    AdjustWindowRect(&wanted, static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)), FALSE);
    SetWindowPos(window, nullptr, 0, 0, wanted.right - wanted.left, wanted.bottom - wanted.top,
                 SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_TRUE(
        soon([this] { return isRed(pixel(300, 250)) && !isRed(pixel(10, 10)) && grab().width == 600; }));
    PostMessageA(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(waitForEnd(), 0) << streams.read("err");
}
