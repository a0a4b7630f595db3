#pragma once

#include <string>
#include <vector>

/// Runs a program to its end. @param command  the program and its arguments
/// @param input, output, error  files of its streams
/// @return its exit status; -1 if it can't be started
int runProcess(const std::vector<std::string>& command, const std::string& folder, const std::string& input,
               const std::string& output, const std::string& error);
