// Contestants are asked through their standard input and answer on descriptor 3, since some libraries print.

#include "bench/peers/contest.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "bench/peers/timing.h"

namespace
{
const int answers = 3;

struct Process
{
    pid_t id = 0;
    FILE* ask = nullptr;
    FILE* answer = nullptr;
};
} // namespace

static void become(const Contestant& contestant, int input, int output)
{
    dup2(input, 10);
    dup2(output, 11);
    dup2(10, STDIN_FILENO);
    dup2(11, answers);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    for (int i = 4; i < 256; ++i)
        close(i);
    std::vector<char*> arguments = {const_cast<char*>("contestant")};
    for (const std::string& argument : contestant.arguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execv("/proc/self/exe", arguments.data());
    _exit(127);
}

static Process start(const Contestant& contestant)
{
    int asking[2], answering[2];
    if (pipe2(asking, O_CLOEXEC) != 0 || pipe2(answering, O_CLOEXEC) != 0)
        return {};
    std::fflush(stdout);
    Process process;
    process.id = fork();
    if (process.id == 0)
        become(contestant, asking[0], answering[1]);
    close(asking[0]);
    close(answering[1]);
    process.ask = fdopen(asking[1], "w");
    process.answer = fdopen(answering[0], "r");
    return process;
}

static void playRound(Process* process, Score* score)
{
    char note[256] = "";
    double seconds = 0, before = 0, peak = 0;
    std::fputs("go\n", process->ask);
    std::fflush(process->ask);
    if (std::fscanf(process->answer, "%lf %lf %lf %255[^\n]", &seconds, &before, &peak, note) < 4)
        return;
    score->seconds.push_back(seconds);
    score->before = before;
    score->peak = peak;
    score->note = note;
}

static void finish(Process* process)
{
    std::fclose(process->ask);
    std::fclose(process->answer);
    waitpid(process->id, nullptr, 0);
}

std::vector<Score> runContest(const std::vector<Contestant>& contestants, int starts, int rounds)
{
    signal(SIGPIPE, SIG_IGN); // one that has failed leaves a gap
    std::vector<Score> scores;
    for (const Contestant& contestant : contestants)
        scores.push_back({.name = contestant.name});
    for (int i = 0; i < starts; ++i)
    {
        std::vector<Process> processes;
        for (const Contestant& contestant : contestants)
            processes.push_back(start(contestant));
        for (int round = 0; round < rounds; ++round)
            for (size_t c = 0; c < processes.size(); ++c)
                playRound(&processes[c], &scores[c]);
        for (Process& process : processes)
            finish(&process);
    }
    return scores;
}

void printScores(const std::vector<Score>& scores)
{
    for (const Score& score : scores)
    {
        if (score.seconds.empty() || score.seconds.size() != scores[0].seconds.size())
        {
            std::printf("  %-34s failed\n", score.name.c_str());
            continue;
        }
        std::vector<double> ratios;
        for (size_t i = 0; i < score.seconds.size(); ++i)
            ratios.push_back(scores[0].seconds[i] / score.seconds[i]);
        std::printf("  %-34s %10.3f ms   ours / theirs %6.3f   peak %7.1f MB, ours / theirs %6.3f   "
                    "grew by %7.1f MB   %s\n",
                    score.name.c_str(), median(score.seconds) * 1e3, median(ratios), score.peak,
                    scores[0].peak / score.peak, score.peak - score.before, score.note.c_str());
    }
    std::fflush(stdout);
}

// A line of what the system says of this process, in MB.
static double memory(const std::string& wanted)
{
    std::ifstream status("/proc/self/status");
    std::string name;
    double kilobytes = 0;
    while (status >> name)
    {
        if (name == wanted && status >> kilobytes)
            break;
        status.ignore(1000, '\n');
    }
    return kilobytes / 1024;
}

int answerRounds(const std::function<Round()>& play)
{
    FILE* const out = fdopen(answers, "w");
    if (!out)
        return 1;
    // The peak so far belongs to the preparations, and is forgotten.
    std::ofstream("/proc/self/clear_refs") << 5;
    const double before = memory("VmRSS:");
    double peak = 0;
    char line[16];
    while (std::fgets(line, sizeof line, stdin))
    {
        const Round round = play();
        if (peak == 0)
            peak = memory("VmHWM:");
        std::fprintf(out, "%.9f %.3f %.3f %s\n", round.seconds, before, peak, round.note.c_str());
        std::fflush(out);
    }
    std::fclose(out);
    return 0;
}
