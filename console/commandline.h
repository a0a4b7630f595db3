// One line of the command language, raised to upper case: words between single spaces, and switches anywhere.
#pragma once

#include <string>

#include "console/text.h"
#include "core/number.h"

class CommandLine
{
public:
    explicit CommandLine(const std::string& typed) : line(upperCase(typed)) {}

    const std::string& text() const { return line; }
    /// How many arguments there are: each of several spaces in a row counts.
    int countSpaces() const;
    /// What stands between a space and the next; word 0 comes before the first. Empty between two spaces and
    /// past the end.
    std::string getWord(int index) const;
    /// Does the line have this text anywhere, within a word too? @param text  in upper case
    bool findSwitch(const char* text) const { return line.find(text) != std::string::npos; }

    double number(int index) const { return numberFrom(getWord(index)); }
    int integer(int index) const { return integerFrom(getWord(index)); }

private:
    std::string line;
};
