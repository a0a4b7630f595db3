// Answers what the engine asks of the user.
#pragma once

#include <memory>
#include <string>

/// Says yes to every question of the error log while it lives.
class AnswersYes
{
public:
    AnswersYes();
    AnswersYes(const AnswersYes&) = delete;
    AnswersYes& operator=(const AnswersYes&) = delete;
    ~AnswersYes();

    /// Stops. @return what was asked, one text after the other
    std::string finish();

private:
    struct System;
    std::unique_ptr<System> system;
};
