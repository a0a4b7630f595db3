// Words that may stand at the cursor of a console's line, for the Tab key.
#pragma once

#include <string>
#include <vector>

#include "vornik/console.h"

/// All commands of the console, sorted.
const std::vector<std::string>& consoleCommands();

/// Sorted: commands for the first word; behind a command what it takes, which is names of the console's
/// functions or variables, commands, or files of a folder.
/// @param before  the line up to the cursor
std::vector<std::string> wordsFor(const Console& console, const std::string& before);
