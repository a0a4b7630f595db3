// Runs the program by the shell, or on a terminal of its own.

#include "tests/apps/program.h"

#include <chrono>
#include <cstdlib>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

static std::string quoted(const std::string& text)
{
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

std::string commandLine(const std::string& folder, const std::vector<std::string>& arguments)
{
    std::string command = "cd " + quoted(folder) + " && ";
    // The leak checker misreads the thread-local blocks of libraries where they lie at certain addresses.
    if (!std::getenv("ASAN_OPTIONS"))
        command += "ASAN_OPTIONS=intercept_tls_get_addr=0 ";
    // The graphics driver keeps memory to the end of the process.
    if (!std::getenv("LSAN_OPTIONS"))
        command +=
            "LSAN_OPTIONS=" + quoted("suppressions=" VORNIK_SUPPRESSIONS ":print_suppressions=0") + " ";
    command += quoted(VORNIK_PROGRAM);
    for (const std::string& argument : arguments)
        command += " " + quoted(argument);
    return command;
}

RunResult ProgramTest::run(const std::vector<std::string>& arguments, const std::string& input) const
{
    const TempFolder streams;
    const std::string command = commandLine(folder.root(), arguments) + " < " +
                                quoted(streams.write("in", input)) + " > " + quoted(streams.path("out")) +
                                " 2> " + quoted(streams.path("err"));
    const int status = std::system(command.c_str());
    RunResult result;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = streams.read("out");
    result.err = streams.read("err");
    return result;
}

// A line editor shows its prompt before it takes single keys. What is pressed between is a line to the
// terminal, which keeps a control key such as the end of input to itself.
static bool waitsForKeys(int terminal, const std::string& shown)
{
    termios settings;
    return shown.size() >= 2 && shown.compare(shown.size() - 2, 2, "> ") == 0 &&
           tcgetattr(terminal, &settings) == 0 && !(settings.c_lflag & ICANON);
}

std::string ProgramTest::runOnTerminal(const std::vector<std::string>& arguments,
                                       const std::vector<std::string>& keys) const
{
    const std::string command = "export TERM=xterm; " + commandLine(folder.root(), arguments);
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0)
    {
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    std::string shown;
    size_t pressed = 0;
    size_t shownBefore = 0; // the last key
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    while (child > 0)
    {
        pollfd output = {terminal, POLLIN, 0};
        if (poll(&output, 1, 10) > 0)
        {
            char buffer[4096];
            const ssize_t got = read(terminal, buffer, sizeof buffer);
            if (got <= 0)
                break;
            shown.append(buffer, static_cast<size_t>(got));
        }
        else if (pressed < keys.size() && shown.size() > shownBefore && waitsForKeys(terminal, shown))
        {
            const std::string& key = keys[pressed++];
            shownBefore = shown.size();
            if (::write(terminal, key.data(), key.size()) < 0)
                break;
        }
        if (std::chrono::steady_clock::now() > end)
        {
            ADD_FAILURE() << "the program doesn't end; it shows: " << shown;
            break;
        }
    }
    close(terminal); // ends what is still there
    int status = 0;
    waitpid(child, &status, 0);
    return shown;
}

bool ProgramTest::hasTerminals()
{
    return true;
}

bool ProgramTest::hasPython()
{
    return true;
}
