// The console window edits lines and keeps their history by itself.

#include "apps/vornik/lineeditor.h"

#include <iostream>

#include <io.h>
#include <windows.h>

struct LineEditor::State
{
    std::string prompt;
};

LineEditor::LineEditor(const std::string& prompt, const std::vector<std::string>& /*words*/)
    : state(new State{prompt})
{
}

LineEditor::~LineEditor() = default;

bool LineEditor::isPossible()
{
    return _isatty(0) && _isatty(1);
}

bool LineEditor::read(std::string* line)
{
    std::cout << state->prompt << std::flush;
    return static_cast<bool>(std::getline(std::cin, *line));
}

void LineEditor::clearScreen()
{
    const HANDLE screen = GetStdHandle(STD_OUTPUT_HANDLE);
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (!GetConsoleScreenBufferInfo(screen, &info))
        return;
    DWORD written = 0;
    const DWORD cells = static_cast<DWORD>(info.dwSize.X) * static_cast<DWORD>(info.dwSize.Y);
    FillConsoleOutputCharacterA(screen, ' ', cells, {0, 0}, &written);
    SetConsoleCursorPosition(screen, {0, 0});
}
