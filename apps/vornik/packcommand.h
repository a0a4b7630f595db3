// The command line of vornik pack.
#pragma once

#include <functional>

namespace CLI
{
class App;
}

/// Adds the subcommand with its own. @return runs the one that was given, for the exit status; it may be
/// called once the command line has been read and names vornik pack
std::function<int()> addPack(CLI::App* app);
