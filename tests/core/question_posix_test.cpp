// The question sink of the error log, on a terminal and without one.

#include <cstring>
#include <string>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "vornik/core/errorlog.h"

struct Outcome
{
    std::string shown;
    int status;
};

// Reports one message with the question sink in a child process. Its terminal gets the answer; without one,
// standard input is empty and standard error a pipe.
static Outcome ask(const char* message, const char* answer)
{
    int pipeEnds[2] = {-1, -1};
    int terminal = -1;
    if (!answer && pipe(pipeEnds) != 0)
        return {"no pipe", -1};
    const pid_t child = answer ? forkpty(&terminal, nullptr, nullptr, nullptr) : fork();
    if (child == 0)
    {
        if (!answer)
        {
            dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
            dup2(pipeEnds[1], STDERR_FILENO);
        }
        vrkInitErrorLog(1);
        const int number = vrkPutToErrorLog(message, 41);
        _exit(number);
    }
    if (answer && write(terminal, answer, std::strlen(answer)) < 0)
        return {"no terminal", -1};
    if (!answer)
        close(pipeEnds[1]);

    Outcome outcome;
    char buffer[256];
    ssize_t got;
    while ((got = read(answer ? terminal : pipeEnds[0], buffer, sizeof buffer)) > 0)
        outcome.shown.append(buffer, static_cast<size_t>(got));
    int status = 0;
    waitpid(child, &status, 0);
    outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    close(answer ? terminal : pipeEnds[0]);
    return outcome;
}

TEST(Question, WithNobodyToAskTheQuestionIsPrintedAndAnsweredYes)
{
    const Outcome outcome = ask("Trouble", nullptr);
    EXPECT_EQ(outcome.shown, "Trouble\n\nContinue?\n");
    EXPECT_EQ(outcome.status, 41);
}

TEST(Question, YesOnATerminalGoesOnWithTheNumber)
{
    const Outcome outcome = ask("Trouble", "y\n");
    EXPECT_NE(outcome.shown.find("VRK Error"), std::string::npos);
    EXPECT_NE(outcome.shown.find("Trouble"), std::string::npos);
    EXPECT_NE(outcome.shown.find("Continue?"), std::string::npos);
    EXPECT_EQ(outcome.status, 41);
}

TEST(Question, NoOnATerminalEndsTheProcessWithStatusZero)
{
    EXPECT_EQ(ask("Trouble", "n\n").status, 0);
}

TEST(Question, AnythingElseIsAskedAgain)
{
    EXPECT_EQ(ask("Trouble", "what\nn\n").status, 0);
    EXPECT_EQ(ask("Trouble", "what\ny\n").status, 41);
}
