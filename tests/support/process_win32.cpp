#include "tests/support/process_win32.h"

#include <cstdio>

// Once in some thousand times Wine fails to start a program, before anything of the program has run.
constexpr int mostStarts = 6;

// As the C library of the other program takes it apart again.
static std::string quoted(const std::string& argument)
{
    std::string result = "\"";
    size_t backslashes = 0;
    for (const char c : argument)
    {
        if (c == '"')
            result += std::string(backslashes + 1, '\\'); // doubled before a quote, and one for the quote
        backslashes = c == '\\' ? backslashes + 1 : 0;
        result += c;
    }
    return result + std::string(backslashes, '\\') + "\"";
}

static HANDLE openStream(const std::string& path, bool write)
{
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    return CreateFileA(path.empty() ? "NUL" : path.c_str(), write ? GENERIC_WRITE : GENERIC_READ,
                       FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, write ? CREATE_ALWAYS : OPEN_EXISTING,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

// Says why a start has failed. @return whether another one may do better
static bool mayStartLater(const std::string& program)
{
    const DWORD error = GetLastError();
    std::fprintf(stderr, "%s can't be started: error %lu\n", program.c_str(), error);
    Sleep(500);
    return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
}

HANDLE startProcess(const std::vector<std::string>& command, const std::string& folder,
                    const ProcessFiles& files)
{
    std::string line;
    for (const std::string& argument : command)
        line += (line.empty() ? "" : " ") + quoted(argument);

    STARTUPINFOA start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = openStream(files.input, false);
    start.hStdOutput = openStream(files.output, true);
    start.hStdError = openStream(files.error, true);
    PROCESS_INFORMATION process = {};
    bool tryAgain = true;
    for (int i = 0; i < mostStarts && tryAgain; ++i)
        tryAgain = !CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(),
                                   &start, &process) &&
                   mayStartLater(command[0]);
    if (process.hThread)
        CloseHandle(process.hThread);
    for (const HANDLE stream : {start.hStdInput, start.hStdOutput, start.hStdError})
        CloseHandle(stream);
    return process.hProcess;
}

int runProcess(const std::vector<std::string>& command, const std::string& folder, const ProcessFiles& files)
{
    DWORD status = static_cast<DWORD>(-1);
    if (const HANDLE process = startProcess(command, folder, files))
    {
        if (WaitForSingleObject(process, longestProcess * 1000) == WAIT_OBJECT_0)
            GetExitCodeProcess(process, &status);
        else
            TerminateProcess(process, status); // it may wait for somebody to close a box
        CloseHandle(process);
    }
    return static_cast<int>(status);
}
