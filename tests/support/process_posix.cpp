#include "tests/support/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

static void redirect(int stream, const std::string& file, int mode)
{
    dup2(open(file.empty() ? "/dev/null" : file.c_str(), mode, 0600), stream);
}

int runProcess(const std::vector<std::string>& command, const std::string& folder, const ProcessFiles& files)
{
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0)
    {
        redirect(STDIN_FILENO, files.input, O_RDONLY);
        redirect(STDOUT_FILENO, files.output, O_WRONLY | O_CREAT | O_TRUNC);
        redirect(STDERR_FILENO, files.error, O_WRONLY | O_CREAT | O_TRUNC);
        alarm(longestProcess); // holds for what it becomes
        if (chdir(folder.c_str()) == 0)
            execv(arguments[0], arguments.data());
        _exit(127);
    }
    int status = -1;
    if (child < 0 || waitpid(child, &status, 0) < 0 || !WIFEXITED(status) || WEXITSTATUS(status) == 127)
        return -1;
    return WEXITSTATUS(status);
}
