// A thread waits for the message boxes and presses their buttons.

#include "tests/support/answersyes.h"

#include "tests/support/messagebox_win32.h"

struct AnswersYes::System
{
    MessageBoxUser user{IDYES};
};

AnswersYes::AnswersYes() : system(new System) {}

AnswersYes::~AnswersYes() = default;

std::string AnswersYes::finish()
{
    return system->user.finish().text;
}
