// With nobody at a terminal the questions go to standard error and count as answered.

#include "tests/support/answersyes.h"

#include <gtest/gtest.h>

struct AnswersYes::System
{
    bool finished = false;
};

AnswersYes::AnswersYes() : system(new System)
{
    testing::internal::CaptureStderr();
}

AnswersYes::~AnswersYes()
{
    finish();
}

std::string AnswersYes::finish()
{
    if (system->finished)
        return "";
    system->finished = true;
    return testing::internal::GetCapturedStderr();
}
