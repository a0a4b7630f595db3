// Commands of the shell, as one who installs and links Vornik types them.
#pragma once

#include <set>
#include <string>
#include <vector>

struct ShellResult
{
    int status = -1;
    std::string out; ///< standard output and standard error
};

/// Runs a command in a folder.
ShellResult shell(const std::string& folder, const std::string& command);

std::vector<std::string> linesOf(const std::string& text);

/// Words of a text, without repetition.
std::set<std::string> wordsOf(const std::string& text);

/// Installs the build, or one component of it, into a prefix. @return what that printed
ShellResult installInto(const std::string& prefix, const std::string& component = "");

/// A scene of one triangle with a camera, for hosts to load.
std::vector<unsigned char> smallScene();
