// Looks at the message boxes of the own process and presses their buttons.
#pragma once

#include <string>

#include <windows.h>

struct MessageBoxLook
{
    std::string text;
    HWND owner = nullptr;
    bool hasYes = false, hasNo = false, hasCancel = false;
};

/// @param button  IDYES or another @return false if there is no such box
bool pressInMessageBox(const char* caption, int button, MessageBoxLook* look);
