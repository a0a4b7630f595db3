// The folder in which a reader of the manual tries out what it says.
#pragma once

#include <string>

#include "tests/support/tempfolder.h"

/// The root of the repository.
extern const std::string source;

std::string readFile(const std::string& path);

/// The end of what a command printed: that is where it says what went wrong.
std::string endOf(const std::string& output);

/// The repository's root as it is behind a build. It is the reader's home folder as well.
class Scratch
{
public:
    Scratch();

    /// The sample scene, under the names that pages use.
    void addSample() const;
    /// An installation in "vornik", where pkg-config finds it, and a host beside it.
    void addInstallation();
    /// Runs a script in the folder. @return its exit status; what it printed is in output
    int run(const std::string& script);

    TempFolder folder;
    std::string output;

private:
    void writeProgram(const std::string& name, const std::string& text) const;
};
