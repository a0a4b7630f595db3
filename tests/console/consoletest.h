// A console that hears the reports, in a folder of its own.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/tempfolder.h"
#include "vornik/console/console.h"
#include "vornik/core/errorlog.h"

/// Takes the text of a console.
inline std::string drained(Console& console)
{
    std::vector<char> out(VRK_CONSOLE_TEXT);
    const int length = console.getText(out.data());
    EXPECT_EQ(std::string(out.data()).size(), static_cast<size_t>(length));
    return out.data();
}

/// The text of the console that each kind of fault leaves.
inline const char* const parseFailed = "VRK Console parser failed to parse commandline!\n";
inline const char* const sceneIsNull = "Scene used in functioncall is NULL!\n";

/// While it lives, reports go to its console, relative names start in its folder, and the banner is drained.
struct ConsoleScope
{
    ConsoleScope() : savedLog(vrkError), before(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder.root());
        vrkInitErrorLog(&console);
        drained(console);
    }
    ConsoleScope(const ConsoleScope&) = delete;
    ConsoleScope& operator=(const ConsoleScope&) = delete;
    ~ConsoleScope()
    {
        std::filesystem::current_path(before);
        vrkError = savedLog;
    }

    /// What a line answers with, the echo taken off. Fails the test where there is no echo or another number.
    std::string said(const std::string& line, int number = 0)
    {
        EXPECT_EQ(console.command(line.c_str()), number) << line;
        const std::string text = drained(console);
        const std::string echo = ">" + line + "\n";
        EXPECT_EQ(text.substr(0, echo.size()), echo);
        return text.size() < echo.size() ? text : text.substr(echo.size());
    }

    TempFolder folder;
    Console console;

private:
    VRKError savedLog;
    std::filesystem::path before;
};

class ConsoleTest : public ::testing::Test, protected ConsoleScope
{
};
