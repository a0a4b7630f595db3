// A contest between programs: each contestant is a process of its own, so that its memory and heap are its
// own, and all are asked in turn, round after round, so that what else the machine does falls on all alike.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct Contestant
{
    std::string name;
    std::vector<std::string> arguments; ///< for this program, which then calls answerRounds
};

/// What a contestant did in one round.
struct Round
{
    double seconds;
    std::string note; ///< what was made or drawn, to see that all did the same
};

struct Score
{
    std::string name;
    std::vector<double> seconds = {}; ///< one a round; empty if it failed
    double before = 0, peak = 0; ///< memory in MB: resident before the first round, and at most by its end
    std::string note = {};
};

/// Starts all contestants, asks each rounds times and ends them; all of it starts times over.
std::vector<Score> runContest(const std::vector<Contestant>& contestants, int starts, int rounds);

/// A line for each: the median time, and the median over the rounds of the first one's time by its own.
void printScores(const std::vector<Score>& scores);

/// The contestant's side: plays a round whenever asked, until there are no more. @return exit status
int answerRounds(const std::function<Round()>& play);
