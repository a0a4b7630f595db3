#include "tests/support/messagebox_win32.h"

static BOOL CALLBACK lookAtChild(HWND child, LPARAM parameter)
{
    MessageBoxLook* look = reinterpret_cast<MessageBoxLook*>(parameter);
    char text[2048] = {};
    GetWindowTextA(child, text, sizeof text);
    switch (GetDlgCtrlID(child))
    {
    case IDYES:
        look->hasYes = true;
        break;
    case IDNO:
        look->hasNo = true;
        break;
    case IDCANCEL:
        look->hasCancel = true;
        break;
    default:
        look->text += text;
    }
    return TRUE;
}

// @return false if there is no box
static bool press(int button, MessageBoxLook* look)
{
    static HWND pressed = nullptr; // a box may linger for a moment
    const HWND window = FindWindowA("#32770", "VRK Error");
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (!window || window == pressed || process != GetCurrentProcessId())
        return false;
    pressed = window;
    SendMessageA(window, WM_NULL, 0, 0); // answered once the box is complete
    look->owner = GetWindow(window, GW_OWNER);
    EnumChildWindows(window, lookAtChild, reinterpret_cast<LPARAM>(look));
    PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(button), 0);
    return true;
}

MessageBoxUser::MessageBoxUser(int button) : user(&MessageBoxUser::answer, this, button) {}

MessageBoxUser::~MessageBoxUser()
{
    finish();
}

void MessageBoxUser::answer(int button)
{
    while (!stop)
        if (!press(button, &look))
            Sleep(2);
}

const MessageBoxLook& MessageBoxUser::finish()
{
    stop = true;
    if (user.joinable())
        user.join();
    return look;
}
