// The question sink of the error log: a message box, answered by a thread that waits for it.

#include <cstdlib>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <windows.h>

#include "vornik/core/errorlog.h"

struct Box
{
    std::string caption, text;
    HWND owner = nullptr;
    bool hasYes = false, hasNo = false, hasCancel = false;
};

static BOOL CALLBACK lookAtChild(HWND child, LPARAM parameter)
{
    Box* box = reinterpret_cast<Box*>(parameter);
    char text[2048] = {};
    GetWindowTextA(child, text, sizeof text);
    switch (GetDlgCtrlID(child))
    {
    case IDYES:
        box->hasYes = true;
        break;
    case IDNO:
        box->hasNo = true;
        break;
    case IDCANCEL:
        box->hasCancel = true;
        break;
    default:
        box->text += text;
    }
    return TRUE;
}

// Waits for a message box of this process, looks at it and presses a button.
static void press(int button, Box* box)
{
    HWND window = nullptr;
    while (!(window = FindWindowA("#32770", "VRK Error")))
        Sleep(5);
    SendMessageA(window, WM_NULL, 0, 0); // answered once the box is complete
    char caption[64] = {};
    GetWindowTextA(window, caption, sizeof caption);
    box->caption = caption;
    box->owner = GetWindow(window, GW_OWNER);
    EnumChildWindows(window, lookAtChild, reinterpret_cast<LPARAM>(box));
    PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(button), 0);
}

static int report(const char* message, int number, int button, Box* box)
{
    std::thread user(press, button, box);
    vrkInitErrorLog(1);
    const int result = vrkPutToErrorLog(message, number);
    vrkInitErrorLog(3);
    user.join();
    return result;
}

TEST(Question, YesGoesOnWithTheNumber)
{
    Box box;
    EXPECT_EQ(report("Trouble", 41, IDYES, &box), 41);
    EXPECT_EQ(box.caption, "VRK Error");
    EXPECT_EQ(box.text, "Trouble\n\nContinue?\n");
    EXPECT_EQ(box.owner, nullptr);
    EXPECT_TRUE(box.hasYes);
    EXPECT_TRUE(box.hasNo);
    EXPECT_FALSE(box.hasCancel);
}

TEST(Question, InformationIsAskedAboutToo)
{
    for (const int number : {0, 50})
    {
        Box box;
        EXPECT_EQ(report("Start loading...", number, IDYES, &box), number);
        EXPECT_EQ(box.text, "Start loading...\n\nContinue?\n");
    }
}

TEST(QuestionDeathTest, NoEndsTheProcessWithStatusZero)
{
    Box box;
    EXPECT_EXIT(
        {
            report("Trouble", 41, IDNO, &box);
            std::_Exit(3);
        },
        testing::ExitedWithCode(0), "");
}
