// Lines from a person: editing, a history of the session, and completion of the first word.
#pragma once

#include <memory>
#include <string>
#include <vector>

class LineEditor
{
public:
    /// @param words  that the tabulator completes at the start of a line, whatever their case
    LineEditor(const std::string& prompt, const std::vector<std::string>& words);
    ~LineEditor();

    /// Are standard input and output a terminal?
    static bool isPossible();

    /// Waits for a line. @param line  [out] without its end. @return false when there are no more
    bool read(std::string* line);

    /// Clears the terminal.
    void clearScreen();

private:
    struct State;
    std::unique_ptr<State> state;
};
