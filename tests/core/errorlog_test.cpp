#include "vornik/core/errorlog.h"

#include <cstring>
#include <string>
#include <vector>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/tempfolder.h"

class ErrorLog : public ::testing::Test
{
protected:
    void SetUp() override { saved = vrkError; }
    void TearDown() override { vrkError = saved; }

    TempFolder folder;

private:
    VRKError saved = {};
};

TEST_F(ErrorLog, InitByNameStoresTheNameAndOpensNothing)
{
    vrkError.mode = 3;
    vrkInitErrorLog(folder.path("a.log").c_str());
    EXPECT_EQ(vrkError.mode, 0);
    EXPECT_EQ(vrkError.fileName, folder.path("a.log"));
    EXPECT_NE(access(folder.path("a.log").c_str(), F_OK), 0);
}

TEST_F(ErrorLog, ALongNameIsCut)
{
    vrkInitErrorLog(std::string(200, 'x').c_str());
    EXPECT_EQ(std::strlen(vrkError.fileName), 63u);
}

TEST_F(ErrorLog, LinesAreAppendedAndTheNumberComesBack)
{
    vrkInitErrorLog(folder.path("a.log").c_str());
    EXPECT_EQ(vrkPutToErrorLog("first", 41), 41);
    EXPECT_EQ(vrkPutToErrorLog("second", 0), 0);
    EXPECT_EQ(vrkPutToErrorLog("", -7), -7);
    EXPECT_EQ(folder.read("a.log"), "first\nsecond\n\n");
    vrkInitErrorLog(folder.path("a.log").c_str());
    vrkPutToErrorLog("third", 1);
    EXPECT_EQ(folder.read("a.log"), "first\nsecond\n\nthird\n");
}

TEST_F(ErrorLog, AFileThatCannotBeOpenedIsPassedOver)
{
    vrkInitErrorLog(folder.path("no/such/folder.log").c_str());
    EXPECT_EQ(vrkPutToErrorLog("lost", 5), 5);
}

TEST_F(ErrorLog, AMessageThatDoesNotFitIsCutAndKeepsItsLineFeed)
{
    vrkInitErrorLog(folder.path("a.log").c_str());
    EXPECT_EQ(vrkPutToErrorLog(std::string(5000, 'x').c_str(), 5), 5);
    EXPECT_EQ(folder.read("a.log"), std::string(1022, 'x') + "\n");
}

TEST_F(ErrorLog, SilentModesReachNoSink)
{
    vrkInitErrorLog(folder.path("a.log").c_str());
    for (const int mode : {3, 4, -1, 99})
    {
        vrkInitErrorLog(mode);
        EXPECT_EQ(vrkError.mode, mode);
        EXPECT_EQ(vrkPutToErrorLog("nothing", 9), 9);
    }
    EXPECT_EQ(folder.read("a.log"), "");
}

TEST_F(ErrorLog, ANullConsoleSwallowsReports)
{
    vrkInitErrorLog(static_cast<Console*>(nullptr));
    EXPECT_EQ(vrkError.mode, 2);
    EXPECT_EQ(vrkError.console, nullptr);
    EXPECT_EQ(vrkPutToErrorLog("nothing", 9), 9);
}

TEST_F(ErrorLog, InfoTellsVersionAndFormats)
{
    VRKInfo info;
    vrkInfo(&info);
    EXPECT_EQ(info.majorVersion, 0);
    EXPECT_EQ(info.minorVersion, 1);
    const std::string text = info.text;
    const size_t firstLine = text.find('\n');
    EXPECT_NE(text.substr(0, firstLine).find("Vornik"), std::string::npos);
    EXPECT_EQ(text.substr(firstLine + 1), "Rasterizer support: OpenGL, Direct3D\n"
                                          "Fileformat support: .3DS\n"
                                          "Texture format support: .JPG, .TGA, .IFL\n"
                                          "Mesh format support: .3DS\n");
}

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

TEST_F(ErrorLog, WithNobodyToAskTheQuestionIsPrintedAndAnsweredYes)
{
    const Outcome outcome = ask("Trouble", nullptr);
    EXPECT_EQ(outcome.shown, "Trouble\n\nContinue?\n");
    EXPECT_EQ(outcome.status, 41);
}

TEST_F(ErrorLog, YesOnATerminalGoesOnWithTheNumber)
{
    const Outcome outcome = ask("Trouble", "y\n");
    EXPECT_NE(outcome.shown.find("VRK Error"), std::string::npos);
    EXPECT_NE(outcome.shown.find("Trouble"), std::string::npos);
    EXPECT_NE(outcome.shown.find("Continue?"), std::string::npos);
    EXPECT_EQ(outcome.status, 41);
}

TEST_F(ErrorLog, NoOnATerminalEndsTheProcessWithStatusZero)
{
    EXPECT_EQ(ask("Trouble", "n\n").status, 0);
}

TEST_F(ErrorLog, AnythingElseIsAskedAgain)
{
    EXPECT_EQ(ask("Trouble", "what\nn\n").status, 0);
    EXPECT_EQ(ask("Trouble", "what\ny\n").status, 41);
}
