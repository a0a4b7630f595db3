// What a console shows and how a line is typed into it: lines, scrolling, the line with its cursor, history.
//
// A model without window or engine; whoever draws it asks for the lines that are in sight.
#pragma once

#include <deque>
#include <string>
#include <vector>

enum class EditKey
{
    none,
    left,
    right,
    home,
    end,
    backspace,
    erase,
    up,
    down,
    pageUp,
    pageDown,
    complete,
    enter,
    clearLine
};

class ConsoleText
{
public:
    /// Adds text behind what is there; a line feed ends a line. Stays at the bottom unless scrolled up.
    void append(const std::string& text);
    /// Ends the last line if it is open, so that what follows begins a line.
    void endLine();
    void clear();

    /// Characters of a line and lines of a page, for wrapping and scrolling.
    void setSize(int columns, int rows);
    /// Line of the page, from the top; empty above the first. Wrapped at the columns.
    const std::string& row(int index) const;
    /// Up by some rows, or down below 0.
    void scroll(int by);
    /// Rows above the page, and below it.
    int rowsAbove() const;
    int rowsBelow() const { return scrolled; }

    /// Types text at the cursor. Other than printable ASCII is left out: the engine's font has no more.
    void type(const std::string& text);
    /// @return true if a line was entered: take it with takeLine()
    bool press(EditKey key);
    /// The line that was entered. It goes into the history.
    std::string takeLine();
    /// What may stand at the cursor, for the Tab key: sorted, complete words.
    void setWords(std::vector<std::string> words) { candidates = std::move(words); }

    const std::string& line() const { return typed; }
    int cursor() const { return position; }
    /// The word that the cursor stands in, up to it.
    std::string wordAtCursor() const;

private:
    void wrap();
    void wrapLine(const std::string& line);
    void recall(int step);
    void completeWord();

    std::deque<std::string> lines;   // as they came; the last one may be open
    std::deque<std::string> wrapped; // cut to the columns
    bool lineIsOpen = false;
    int columns = 80, rows = 20;
    int scrolled = 0; // rows below the page

    std::string typed;
    int position = 0;
    std::vector<std::string> history;
    size_t recalled = 0; // history.size() is the new line
    std::string unsent;  // the new line while the history is looked through
    std::vector<std::string> candidates;
};
