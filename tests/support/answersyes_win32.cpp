// A thread waits for the message boxes and presses their buttons.

#include "tests/support/answersyes.h"

#include <atomic>
#include <thread>

#include "tests/support/messagebox_win32.h"

struct AnswersYes::System
{
    std::atomic<bool> stop = false;
    std::string asked;
    std::thread user;

    void answer()
    {
        while (!stop)
        {
            MessageBoxLook look;
            if (pressInMessageBox("VRK Error", IDYES, &look))
                asked += look.text;
            else
                Sleep(2);
        }
    }
};

AnswersYes::AnswersYes() : system(new System)
{
    system->user = std::thread(&System::answer, system.get());
}

AnswersYes::~AnswersYes()
{
    finish();
}

std::string AnswersYes::finish()
{
    if (!system->user.joinable())
        return "";
    system->stop = true;
    system->user.join();
    return system->asked;
}
