#include "apps/vornik/view/hud.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "apps/vornik/view/bindings.h"
#include "vornik/vornik.h"

static const float margin = 8.0f;
static const float baseLine = 12.0f; // from the top of a row
static const float column = hudColumn;
static const float row = hudRow;

static const Color dark = {0.04f, 0.05f, 0.08f, 0.72f};
static const Color darker = {0.04f, 0.05f, 0.08f, 0.86f};
static const Color bright = {0.94f, 0.95f, 0.97f, 1.0f};
static const Color soft = {0.66f, 0.72f, 0.8f, 1.0f};
static const Color accent = {1.0f, 0.76f, 0.35f, 1.0f};

Hud::Hud(int pictureWidth, int pictureHeight)
    : width(static_cast<float>(pictureWidth)), height(static_cast<float>(pictureHeight))
{
    vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA);
    vrkDisable(VRK_DEPTH_TEST); // text obeys it
}

Hud::~Hud()
{
    vrkEnable(VRK_DEPTH_TEST);
    vrkDisable(VRK_BLEND); // text leaves it on
}

// The overlay writes into the records that it is given, so each call gets its own.
void Hud::box(float x, float y, float boxWidth, float boxHeight, const Color& color)
{
    Vertex2D a = {x, y}, b = {x + boxWidth, y + boxHeight};
    Color fill = color;
    vrkDrawFilledBox(&a, &b, &fill);
}

void Hud::write(float x, float y, const Color& color, const char* text)
{
    Color ink = color;
    vrkWrite(std::round(x), std::round(y + baseLine), &ink, "%s", text);
}

static float widthOf(const char* text)
{
    return column * static_cast<float>(std::strlen(text));
}

static float widest(const std::vector<std::string>& lines)
{
    float most = 0.0f;
    for (const std::string& line : lines)
        most = std::max(most, widthOf(line.c_str()));
    return most;
}

void FigureLines::add(const char* format, ...)
{
    if (used == most)
        return;
    char* line = lines[used++];
    va_list values;
    va_start(values, format);
    std::vsnprintf(line, longest, format, values); // NOLINT(clang-analyzer-valist.Uninitialized)
    va_end(values);
}

void Hud::drawFigures(const FigureLines& lines)
{
    float wide = 0.0f;
    for (int i = 0; i < lines.count(); ++i)
        wide = std::max(wide, widthOf(lines.line(i)));
    box(margin, margin, wide + 2.0f * margin, row * static_cast<float>(lines.count()) + margin, dark);
    for (int i = 0; i < lines.count(); ++i)
        write(2.0f * margin, 1.5f * margin + row * static_cast<float>(i), i == 0 ? bright : soft,
              lines.line(i));
}

void Hud::drawHint(const char* text)
{
    const float top = height - row - 2.0f * margin;
    box(margin, top, widthOf(text) + 2.0f * margin, row + margin, dark);
    write(2.0f * margin, top + margin / 2.0f, bright, text);
}

void Hud::drawMessages(const std::vector<std::string>& lines)
{
    if (lines.empty())
        return;
    const float high = row * static_cast<float>(lines.size());
    const float top = height - high - row - 4.5f * margin;
    box(margin, top, widest(lines) + 2.0f * margin, high + margin, dark);
    for (size_t i = 0; i < lines.size(); ++i)
        write(2.0f * margin, top + margin / 2.0f + row * static_cast<float>(i), accent, lines[i].c_str());
}

// How far apart the lines of the help stand: closer where the picture is low, as long as they can be read.
static float helpRow(float pictureHeight, float lines)
{
    return std::clamp(std::floor((pictureHeight - 2.0f * margin) / lines), row - 3.0f, row);
}

void Hud::drawHelp()
{
    const float keyColumn = 12.0f * column;
    float wide = 0.0f, lines = 0.0f;
    for (const Binding& binding : bindings())
        if (binding.text)
        {
            wide = std::max(wide, keyColumn + widthOf(binding.text));
            lines += binding.command == Command::none ? 1.5f : 1.0f;
        }
    const float apart = helpRow(height, lines), high = lines * apart;
    const float left = std::max(std::floor((width - wide) / 2.0f), 2.0f * margin);
    float y = std::max(std::floor((height - high) / 2.0f), margin);
    box(left - 2.0f * margin, y - margin, wide + 4.0f * margin, high + 2.0f * margin, darker);
    for (const Binding& binding : bindings())
    {
        if (!binding.text)
            continue;
        if (binding.command == Command::none)
        {
            y += 0.5f * apart;
            write(left, y, accent, binding.text);
        }
        else
        {
            write(left + column, y, bright, binding.keys ? binding.keys : binding.key);
            write(left + keyColumn, y, soft, binding.text);
        }
        y += apart;
    }
}

// The upper half of the picture.
int consoleRows(int pictureHeight)
{
    return std::max((pictureHeight / 2 - 2 * hudRow) / hudRow, 2);
}

int consoleColumns(int pictureWidth)
{
    return std::max((pictureWidth - 2 * static_cast<int>(margin)) / hudColumn, 20);
}

int messageColumns(int pictureWidth)
{
    return consoleColumns(pictureWidth - 2 * static_cast<int>(margin));
}

void Hud::drawConsole(const ConsoleText& console)
{
    const int rows = consoleRows(static_cast<int>(height));
    const float bottom = row * static_cast<float>(rows) + 2.0f * margin + row;
    box(0, 0, width, bottom, darker);
    box(0, bottom, width, 2, accent);
    for (int i = 0; i < rows; ++i)
        if (!console.row(i).empty())
            write(margin, margin + row * static_cast<float>(i), soft, console.row(i).c_str());
    if (console.rowsBelow() > 0)
        write(width - margin - widthOf("more below"), bottom - row - margin / 2.0f, accent, "more below");

    // Of a long line the part around the cursor.
    const int room = consoleColumns(static_cast<int>(width)) - 3;
    const int from = std::max(console.cursor() - room, 0);
    const float y = bottom - row - margin / 2.0f;
    write(margin, y, accent, ">");
    char shown[512]; // a line has 255 characters at most
    std::snprintf(shown, sizeof shown, "%.*s", room, console.line().c_str() + from);
    write(margin + 2.0f * column, y, bright, shown);
    box(margin + column * static_cast<float>(2 + console.cursor() - from), y + baseLine + 2.0f, column, 2,
        bright);
}

void Hud::drawProgress(const std::string& text, float fraction)
{
    const float wide = std::min(480.0f, width - 4.0f * margin);
    const float left = std::floor((width - wide) / 2.0f), top = std::floor(height / 2.0f) - row;
    box(left - margin, top - margin, wide + 2.0f * margin, 2.0f * row + 2.0f * margin, darker);
    write(left, top, bright, text.c_str());
    box(left, top + 1.25f * row, wide, 0.5f * row, {0.2f, 0.22f, 0.27f, 1.0f});
    box(left, top + 1.25f * row, wide * std::clamp(fraction, 0.0f, 1.0f), 0.5f * row, accent);
}

// Between words where there are any.
void Messages::say(const std::string& text, double now, int columns)
{
    const size_t room = static_cast<size_t>(std::max(columns, 1));
    size_t from = 0;
    while (text.size() - from > room)
    {
        const size_t blank = text.rfind(' ', from + room);
        const size_t end = blank == std::string::npos || blank <= from ? from + room : blank;
        add(text.substr(from, end - from), now);
        from = end < text.size() && text[end] == ' ' ? end + 1 : end;
    }
    add(text.substr(from), now);
}

void Messages::add(const std::string& line, double now)
{
    const size_t most = 6;
    if (lines.size() == most)
    {
        lines.erase(lines.begin());
        ends.erase(ends.begin());
    }
    lines.push_back(line);
    ends.push_back(now + 5.0);
}

const std::vector<std::string>& Messages::at(double now)
{
    while (!ends.empty() && ends.front() <= now)
    {
        lines.erase(lines.begin());
        ends.erase(ends.begin());
    }
    return lines;
}
