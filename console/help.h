// The texts of HELP.
#pragma once

#include <string>

/// @param command  in upper case. @return the text; for a name that is no command the text that says so
const char* helpText(const std::string& command);

/// The list of all commands.
const char* helpList();
