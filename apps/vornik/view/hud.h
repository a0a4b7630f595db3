// What lies over the picture: figures, messages, help, console and progress, by the engine's overlay calls.
//
// The calls leave the model-view matrix and some switches changed, so all of this comes last in a frame.
#pragma once

#include <string>
#include <vector>

#include "apps/vornik/view/consoletext.h"
#include "vornik/core/vectors.h"

/// Size of a character of the engine's font.
enum HudFont
{
    hudColumn = 8,
    hudRow = 16
};

/// Lines that change with every picture, kept without taking memory.
class FigureLines
{
public:
    void clear() { used = 0; }
    /// Formatted as by printf and cut to fit.
    void add(const char* format, ...) __attribute__((format(printf, 2, 3)));
    int count() const { return used; }
    const char* line(int index) const { return lines[index]; }

private:
    enum
    {
        most = 10,
        longest = 120
    };
    char lines[most][longest];
    int used = 0;
};

/// A place for drawing over a picture of this size. Sets what drawing needs and puts it back when it goes.
class Hud
{
public:
    Hud(int pictureWidth, int pictureHeight);
    Hud(const Hud&) = delete;
    Hud& operator=(const Hud&) = delete;
    ~Hud();

    /// Lines in the upper left corner.
    void drawFigures(const FigureLines& lines);
    /// A line at the lower edge.
    void drawHint(const char* text);
    /// Lines above the hint.
    void drawMessages(const std::vector<std::string>& lines);
    void drawHelp();
    void drawConsole(const ConsoleText& console);
    /// In the middle. @param fraction  0 to 1
    void drawProgress(const std::string& text, float fraction);

private:
    void box(float x, float y, float boxWidth, float boxHeight, const Color& color);
    void write(float x, float y, const Color& color, const char* text);

    const float width, height;
};

/// Lines of text that fit into the console of a picture of this size.
int consoleRows(int pictureHeight);
int consoleColumns(int pictureWidth);
/// Characters of a message that fit beside one another.
int messageColumns(int pictureWidth);

/// What was said lately, in lines that fit the picture. Each stays for some seconds.
class Messages
{
public:
    /// @param columns  that a line of the picture has room for
    void say(const std::string& text, double now, int columns);
    /// Those that still stand, the newest last.
    const std::vector<std::string>& at(double now);

private:
    void add(const std::string& line, double now);

    std::vector<std::string> lines;
    std::vector<double> ends; // beside lines
};
