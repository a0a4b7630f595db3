// Runs another program.
#pragma once

#include <string>
#include <vector>

struct ProcessFiles
{
    std::string input, output, error; ///< of the program's streams; an empty name stands for no file
};

/// Seconds that a program may take.
constexpr unsigned longestProcess = 300;

/// Runs a program to its end. @param command  the program's file and its arguments
/// @return its exit status; -1 if it can't be started or doesn't end by itself, or not in time
int runProcess(const std::vector<std::string>& command, const std::string& folder = ".",
               const ProcessFiles& files = {});
