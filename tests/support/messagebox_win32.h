// Answers the error log's message boxes of the own process.
#pragma once

#include <atomic>
#include <string>
#include <thread>

#include <windows.h>

struct MessageBoxLook
{
    std::string text; ///< of all boxes, one after the other
    HWND owner = nullptr;
    bool hasYes = false, hasNo = false, hasCancel = false;
};

/// Presses a button in every box that comes up while it lives.
class MessageBoxUser
{
public:
    /// @param button  IDYES or another
    explicit MessageBoxUser(int button);
    MessageBoxUser(const MessageBoxUser&) = delete;
    MessageBoxUser& operator=(const MessageBoxUser&) = delete;
    ~MessageBoxUser();

    /// Stops. @return the texts of the boxes, and how the last one looked
    const MessageBoxLook& finish();

private:
    void answer(int button);

    std::atomic<bool> stop = false;
    MessageBoxLook look;
    std::thread user;
};
